// Owns the place of each use among the locks of a file.
#include "file_manager/forks/fork_locks.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>

#include <cerrno>

#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr off_t kFirstByte = off_t(1) << 62;
constexpr int kUses = 7;
constexpr off_t kBytesOfAFork = 16;

struct flock LockAt(Fork inFork, int inUse, int inCount, short inType) {
    struct flock lock = {};
    lock.l_type = inType;
    lock.l_whence = SEEK_SET;
    lock.l_start = kFirstByte + off_t(inFork) * kBytesOfAFork + inUse;
    lock.l_len = inCount;
    return lock;
}

bool IsHeld(int inFile, Fork inFork, int inUse, int inCount) {
    auto lock = LockAt(inFork, inUse, inCount, F_WRLCK);
    return fcntl(inFile, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace

OSErr HoldForkUses(int inFile, Fork inFork, ForkUses inUses) {
    for (int use = 0; use < kUses; ++use) {
        if (!(inUses & (1 << use))) continue;
        auto lock = LockAt(inFork, use, 1, F_RDLCK);
        if (fcntl(inFile, F_OFD_SETLK, &lock) == 0) continue;
        return errno == EAGAIN || errno == EACCES ? OSErr(fBsyErr) : OSErrFromErrno(errno);
    }
    return noErr;
}

void ReleaseForkUses(int inFile) {
    struct flock all = {};
    all.l_type = F_UNLCK;
    fcntl(inFile, F_OFD_SETLK, &all);
}

ForkUses ForkUsesOfOthers(int inFile, Fork inFork) {
    if (!IsHeld(inFile, inFork, 0, kUses)) return 0;
    ForkUses uses = 0;
    for (int use = 0; use < kUses; ++use) {
        if (IsHeld(inFile, inFork, use, 1)) uses |= ForkUses(1 << use);
    }
    return uses;
}

ForkUses UsesOfFork(const std::string& inPath, Fork inFork) {
    const UniqueFd file = OpenToAsk(AT_FDCWD, inPath);
    return file ? ForkUsesOfOthers(file.Get(), inFork) : ForkUses(0);
}

bool IsAnyForkInUse(const std::string& inPath) {
    const UniqueFd file = OpenToAsk(AT_FDCWD, inPath);
    return file && IsAnyForkInUse(file.Get());
}

bool IsAnyForkInUse(int inFile) {
    return IsHeld(inFile, Fork::kData, 0, int(kBytesOfAFork) + kUses);
}

UniqueFd OpenToAsk(int inFolder, const std::string& inName) {
    const int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    return UniqueFd(openat(inFolder, inName.c_str(), flags));
}

}  // namespace carbon
