// Owns the lock that a guard is: the kernel's, on the object itself.
#include "file_manager/object_guard.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "file_manager/object_status.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr auto kPatience = std::chrono::seconds(5);
constexpr auto kPause = std::chrono::microseconds(500);
constexpr int kOpenFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;

bool CanBeOpened(const struct stat& inFacts) {
    return S_ISREG(inFacts.st_mode) || S_ISDIR(inFacts.st_mode);
}

int OpenForLock(const std::string& inPath, const struct stat& inFacts) {
    const auto path = CanBeOpened(inFacts) ? inPath : ParentOfPath(inPath);
    const int file = open(path.c_str(), O_RDONLY | kOpenFlags);
    return file < 0 && errno == EACCES ? open(path.c_str(), O_WRONLY | kOpenFlags) : file;
}

bool LockUntil(int inFile, std::chrono::steady_clock::time_point inDeadline) {
    while (flock(inFile, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return false;
        if (std::chrono::steady_clock::now() > inDeadline) {
            errno = EBUSY;
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

bool IsSameObject(const struct stat& inOne, const struct stat& inOther) {
    return inOne.st_dev == inOther.st_dev && inOne.st_ino == inOther.st_ino;
}

}  // namespace

// What the path names may change until the lock is there, and then the lock is on the wrong object.
OSErr ObjectGuard::Take(const std::string& inPath) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < deadline) {
        struct stat before, now;
        if (lstat(inPath.c_str(), &before) != 0) return OSErrFromErrno(errno);
        mFile = UniqueFd(OpenForLock(inPath, before));
        if (!mFile && (errno == ELOOP || errno == ENOENT)) continue;
        if (!mFile || !LockUntil(mFile.Get(), deadline)) return OSErrFromErrno(errno);
        if (lstat(inPath.c_str(), &now) != 0) return OSErrFromErrno(errno);
        if (fstat(mFile.Get(), &mFacts) != 0) return OSErrFromErrno(errno);
        const bool isLocked = !CanBeOpened(now) || IsSameObject(now, mFacts);
        mFacts = now;
        if (isLocked && IsSameObject(now, before)) return noErr;
    }
    return fBsyErr;
}

}  // namespace carbon
