// A lock between processes that gives up at a deadline instead of waiting for a stopped holder.
#pragma once

#include <chrono>
#include <string>

#include "posix/UniqueFd.h"

namespace carbon {

class FileLock {
  public:
    // Creates the file if need be. Without success (see IsHeld) nothing is locked.
    FileLock(const std::string& inPath, std::chrono::milliseconds inPatience);
    bool IsHeld() const { return mHeld; }

  private:
    UniqueFd mFile;  // closing it unlocks
    bool mHeld = false;
};

}  // namespace carbon
