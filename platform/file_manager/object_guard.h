// The right to change what belongs to one file or folder: its companion, who has it open.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/stat.h>

#include <string>

#include "posix/UniqueFd.h"

namespace carbon {

// Held by one holder among all processes, until this is destroyed or the process ends. It follows
// the object through renames. Nobody holds one while waiting for anything but another guard.
class ObjectGuard {
  public:
    // Waits for another holder, up to seconds: fBsyErr. fnfErr, dirNFErr, afpAccessDenied.
    OSErr Take(const std::string& inPath);

    // The object itself, open at least for reading or writing; for a link or a device the folder
    // that it lies in.
    int File() const { return mFile.Get(); }
    const struct stat& Facts() const { return mFacts; }  // of the object

  private:
    UniqueFd mFile;  // closing it unlocks
    struct stat mFacts {};
};

}  // namespace carbon
