// The right to change what belongs to one file or folder: its companion, who has it open.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/stat.h>

#include <chrono>
#include <string>

#include "file_manager/metadata/guard_file.h"

namespace carbon {

// Held by one holder among all processes of the user, until this is destroyed or the process ends.
// It follows the object through renames. Locks that other programs have on the object are theirs
// and do not count here. Nobody holds one while waiting for anything else, but for ObjectGuards.
class ObjectGuard {
  public:
    ObjectGuard() = default;
    ~ObjectGuard();
    ObjectGuard(const ObjectGuard&) = delete;
    ObjectGuard& operator=(const ObjectGuard&) = delete;

    // Waits for another holder, up to seconds: fBsyErr. fnfErr, dirNFErr, afpAccessDenied; permErr
    // where the runtime folder is not the user's own.
    OSErr Take(const std::string& inPath);
    // The same for an object seen a moment ago; it may be gone or have another name by now, which
    // is for the holder to see. There are no facts of it then. fBsyErr, permErr.
    OSErr TakeSeen(dev_t inDevice, ino_t inInode);

    const struct stat& Facts() const { return mFacts; }  // of the object

  private:
    using Clock = std::chrono::steady_clock;

    OSErr Lock(off_t inByte, Clock::time_point inDeadline);
    void LetGo();

    GuardFile mFile;
    struct stat mFacts {};
};

// Two objects at once, for what changes both. They are taken in one order by all, so that nobody
// waits in a circle.
class ObjectGuards {
  public:
    OSErr Take(const std::string& inOne, const std::string& inOther);  // codes as above

  private:
    ObjectGuard mFirst, mSecond;
};

}  // namespace carbon
