// Owns locked ranges: the kernel's locks, moved to where no other program looks for any.
#include <Carbon/MacErrors.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "file_manager/forks/open_fork.h"
#include "file_manager/metadata/object_guard.h"
#include "file_manager/numbers/shared_counter.h"
#include "file_manager/numbers/state_folder.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr off_t kFirstOfData = off_t(1) << 60;
constexpr off_t kFirstOfResources = off_t(1) << 61;
constexpr SInt64 kLongestRange = SInt64(1) << 48;

// Counts the ranges that any process of the user has locked: as long as it stands still, nobody
// has to look for new ones.
SharedCounter& RangeLockings() {
    static SharedCounter& sCounter = *new SharedCounter(VolumesFolder() + "/ranges");
    return sCounter;
}

struct flock LockOn(Fork inFork, const ByteRange& inRange, short inType) {
    struct flock lock = {};
    lock.l_type = inType;
    lock.l_whence = SEEK_SET;
    lock.l_start = (inFork == Fork::kData ? kFirstOfData : kFirstOfResources) + inRange.start;
    lock.l_len = inRange.length;
    return lock;
}

// Each path's own opening of the file owns its locks, so any lock that shows is another's.
bool IsLockedByOthers(int inFile, Fork inFork, const ByteRange& inRange) {
    auto lock = LockOn(inFork, inRange, F_WRLCK);
    return fcntl(inFile, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

bool Overlap(const ByteRange& inOne, const ByteRange& inOther) {
    return inOne.start < inOther.start + inOther.length &&
           inOther.start < inOne.start + inOne.length;
}

ByteRange RangeAt(SInt64 inStart, SInt64 inCount) {
    const SInt64 most = std::max(SInt64(0), kLongestRange - inStart);
    return {inStart, inCount == -1 ? most : std::min(inCount, most)};
}

}  // namespace

OSErr OpenFork::CheckRange(SInt64 inPlace, SInt64 inCount) {
    const UInt64 edition = RangeLockings().Value();
    if (mRangesEdition != edition) {
        mRangesEdition = edition;
        mHasOthersRanges = IsLockedByOthers(mFile.Get(), mFacts.fork, {0, kLongestRange});
    }
    if (!mHasOthersRanges || inCount <= 0) return noErr;
    const bool isLocked = IsLockedByOthers(mFile.Get(), mFacts.fork, RangeAt(inPlace, inCount));
    return isLocked ? OSErr(fLckdErr) : OSErr(noErr);
}

// Under the file's guard, since asking and locking are two steps.
OSErr OpenFork::LockRange(SInt16 inMode, SInt64 inOffset, SInt64 inCount) {
    const std::lock_guard lock(mMutex);
    SInt64 place = 0;
    if (const OSErr error = FindPlace(inMode, inOffset, &place)) return error;
    const ByteRange range = RangeAt(place, inCount);
    if (range.length <= 0) return paramErr;
    ObjectGuard guard;
    const auto path = PathOfOpenFile(mFile.Get());
    const bool isDeleted = path.empty();  // and then nobody else comes to lock it
    if (const OSErr error = isDeleted ? OSErr(noErr) : guard.Take(path)) return error;
    const auto overlaps = [&](const ByteRange& inOther) { return Overlap(range, inOther); };
    if (std::any_of(mRanges.begin(), mRanges.end(), overlaps) ||
        IsLockedByOthers(mFile.Get(), mFacts.fork, range))
        return afpRangeOverlap;
    auto kernelLock = LockOn(mFacts.fork, range, F_RDLCK);
    if (fcntl(mFile.Get(), F_OFD_SETLK, &kernelLock) != 0)
        return errno == ENOLCK ? OSErr(afpNoMoreLocks) : OSErrFromErrno(errno);
    mRanges.push_back(range);
    RangeLockings().Increment();
    return noErr;
}

OSErr OpenFork::UnlockRange(SInt16 inMode, SInt64 inOffset, SInt64 inCount) {
    const std::lock_guard lock(mMutex);
    SInt64 place = 0;
    if (const OSErr error = FindPlace(inMode, inOffset, &place)) return error;
    const auto found = std::find(mRanges.begin(), mRanges.end(), RangeAt(place, inCount));
    if (found == mRanges.end()) return afpRangeNotLocked;
    auto kernelLock = LockOn(mFacts.fork, *found, F_UNLCK);
    if (fcntl(mFile.Get(), F_OFD_SETLK, &kernelLock) != 0) return OSErrFromErrno(errno);
    mRanges.erase(found);
    return noErr;
}

bool OpenFork::HasRangeLocks() {
    const std::lock_guard lock(mMutex);
    return !mRanges.empty();
}

}  // namespace carbon
