// An opening of the file whose bytes are the guards' locks.
#pragma once

#include <Carbon/MacTypes.h>

#include "posix/UniqueFd.h"

namespace carbon {

// Locks belong to an opening, so each guard has one for itself. A few stay open behind guards that
// are done with them, never in a child of the process.
class GuardFile {
  public:
    GuardFile() = default;
    ~GuardFile();  // the locks must have been let go
    GuardFile(const GuardFile&) = delete;
    GuardFile& operator=(const GuardFile&) = delete;

    OSErr Open();  // permErr where the runtime folder is not the user's own
    int Get() const { return mFile.Get(); }
    explicit operator bool() const { return bool(mFile); }

  private:
    UniqueFd mFile;
    unsigned mForks = 0;  // of this process, when it was opened
};

}  // namespace carbon
