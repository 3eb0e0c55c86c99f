// Owns the locks that guards are: one file in the runtime folder has a byte for every object.
#include "file_manager/object_guard.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "posix/os_err.h"
#include "posix/runtime_folder.h"

namespace carbon {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(5);
constexpr auto kPause = std::chrono::microseconds(500);

// Two objects that share a byte wait for each other, and that is all.
off_t ByteOf(const struct stat& inFacts) {
    constexpr UInt64 kFactor = 0x9E3779B97F4A7C15;
    return off_t((inFacts.st_ino ^ inFacts.st_dev * kFactor) >> 2);
}

OSErr OpenLocks(UniqueFd* outFile) {
    std::string folder;
    if (const OSErr error = RuntimeFolder(&folder)) return error;
    const auto path = folder + "/guards";
    *outFile = UniqueFd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    return *outFile ? OSErr(noErr) : OSErrFromErrno(errno);
}

OSErr LockUntil(int inFile, off_t inByte, Clock::time_point inDeadline) {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = inByte;
    lock.l_len = 1;
    while (fcntl(inFile, F_OFD_SETLK, &lock) != 0) {
        if (errno != EAGAIN && errno != EACCES && errno != EINTR) return OSErrFromErrno(errno);
        if (Clock::now() > inDeadline) return fBsyErr;
        std::this_thread::sleep_for(kPause);
    }
    return noErr;
}

bool IsSameObject(const struct stat& inOne, const struct stat& inOther) {
    return inOne.st_dev == inOther.st_dev && inOne.st_ino == inOther.st_ino;
}

}  // namespace

// Closing would not be enough: a child that was forked meanwhile keeps the lock until its exec.
ObjectGuard::~ObjectGuard() {
    struct flock all = {};
    all.l_type = F_UNLCK;
    if (mLock) fcntl(mLock.Get(), F_OFD_SETLK, &all);
}

// What the path names may change until the lock is there, and then the lock is on the wrong object.
OSErr ObjectGuard::Take(const std::string& inPath) {
    const auto deadline = Clock::now() + kPatience;
    while (Clock::now() < deadline) {
        struct stat before;
        if (lstat(inPath.c_str(), &before) != 0) return OSErrFromErrno(errno);
        if (const OSErr error = OpenLocks(&mLock)) return error;
        if (const OSErr error = LockUntil(mLock.Get(), ByteOf(before), deadline)) return error;
        if (lstat(inPath.c_str(), &mFacts) != 0) return OSErrFromErrno(errno);
        if (IsSameObject(mFacts, before)) return noErr;
    }
    return fBsyErr;
}

OSErr ObjectGuards::Take(const std::string& inOne, const std::string& inOther) {
    struct stat one, other;
    if (lstat(inOne.c_str(), &one) != 0 || lstat(inOther.c_str(), &other) != 0)
        return OSErrFromErrno(errno);
    const bool isInOrder = ByteOf(one) <= ByteOf(other);
    if (const OSErr error = mFirst.Take(isInOrder ? inOne : inOther)) return error;
    if (ByteOf(one) == ByteOf(other)) return noErr;  // one lock is both
    return mSecond.Take(isInOrder ? inOther : inOne);
}

}  // namespace carbon
