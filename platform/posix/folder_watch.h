// Tells in one system call whether anything has changed in a set of folders.
#pragma once

#include <string>

#include "posix/UniqueFd.h"

namespace carbon {

// Watches names that come, go or are replaced, and what is written to the files in a folder. It
// belongs to the process that made it: in a forked child it knows nothing.
class FolderWatch {
  public:
    FolderWatch();

    // Watches a folder or, while there is none, the nearest one above it in which it could appear.
    void Add(const std::string& inFolder);

    // Watches a file also for what is done to it under other names. One that is missing leaves the
    // watch unable to tell.
    void AddFile(const std::string& inFile);

    // Whether something may have changed since the watch was made; true also when it cannot tell.
    bool HasChanged();

  private:
    bool AddExisting(const std::string& inFolder);

    UniqueFd mQueue;
    unsigned mForks;
    bool mBlind;  // a folder could not be watched
};

}  // namespace carbon
