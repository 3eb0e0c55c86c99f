// Owns the locks that guards are: one file in the runtime folder has a byte for every object.
#include "file_manager/metadata/object_guard.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>

#include <cerrno>
#include <thread>

#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr auto kPatience = std::chrono::seconds(5);
constexpr auto kPause = std::chrono::microseconds(500);

// Two objects that share a byte wait for each other, and that is all.
off_t ByteOf(dev_t inDevice, ino_t inInode) {
    constexpr UInt64 kFactor = 0x9E3779B97F4A7C15;
    return off_t((inInode ^ inDevice * kFactor) >> 2);
}

off_t ByteOf(const struct stat& inFacts) {
    return ByteOf(inFacts.st_dev, inFacts.st_ino);
}

OSErr LockUntil(int inFile, off_t inByte, std::chrono::steady_clock::time_point inDeadline) {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = inByte;
    lock.l_len = 1;
    while (fcntl(inFile, F_OFD_SETLK, &lock) != 0) {
        if (errno != EAGAIN && errno != EACCES && errno != EINTR) return OSErrFromErrno(errno);
        if (std::chrono::steady_clock::now() > inDeadline) return fBsyErr;
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
    LetGo();
}

void ObjectGuard::LetGo() {
    struct flock all = {};
    all.l_type = F_UNLCK;
    if (mFile) fcntl(mFile.Get(), F_OFD_SETLK, &all);
}

OSErr ObjectGuard::Lock(off_t inByte, Clock::time_point inDeadline) {
    if (mFile) {
        LetGo();
    } else if (const OSErr error = mFile.Open()) {
        return error;
    }
    return LockUntil(mFile.Get(), inByte, inDeadline);
}

// What the path names may change until the lock is there, and then the lock is on the wrong object.
OSErr ObjectGuard::Take(const std::string& inPath) {
    const auto deadline = Clock::now() + kPatience;
    while (Clock::now() < deadline) {
        struct stat before;
        if (lstat(inPath.c_str(), &before) != 0) return OSErrFromErrno(errno);
        if (const OSErr error = Lock(ByteOf(before), deadline)) return error;
        if (lstat(inPath.c_str(), &mFacts) != 0) return OSErrFromErrno(errno);
        if (IsSameObject(mFacts, before)) return noErr;
    }
    return fBsyErr;
}

OSErr ObjectGuard::TakeSeen(dev_t inDevice, ino_t inInode) {
    return Lock(ByteOf(inDevice, inInode), Clock::now() + kPatience);
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
