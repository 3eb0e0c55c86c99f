// Owns resource forks while they are open: the last part of a companion, which others may replace.
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "apple_event_manager/big_endian.h"
#include "file_manager/forks/fork_storage.h"
#include "file_manager/metadata/companion_file.h"
#include "file_manager/metadata/metadata_entries.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr SInt64 kLongestFork = 0x7FFFFFFF;

class ResourceStorage : public ForkStorage {
  public:
    ResourceStorage(int inFile, bool inIsShared) : mFile(inFile), mIsShared(inIsShared) {}

    OSErr Open() { return ReadAgain(); }

    OSErr Read(SInt64 inOffset, void* outBytes, size_t inCount, size_t* outDone) override;
    OSErr Write(SInt64 inOffset, const void* inBytes, size_t inCount, size_t* outDone) override;
    OSErr GetLength(SInt64* outLength) override;
    OSErr SetLength(SInt64 inLength) override;
    OSErr Reserve(SInt64 inCount) override;
    OSErr GetSpace(SInt64* outBytes) override;
    OSErr Flush() override;
    OSErr ForgetCached(SInt64 inOffset, SInt64 inCount) override;
    OSErr Close() override;

  private:
    OSErr Follow();
    OSErr ReadAgain();
    OSErr ReadLength();
    OSErr Prepare();
    OSErr PrepareUnder(const ObjectGuard& inGuard, const MetadataOwner& inOwner);
    OSErr PutLength(SInt64 inLength);
    OSErr TakeTurn(ObjectGuard* outTurn) const;
    OSErr FillGap(SInt64 inTo);
    OSErr Shrink(SInt64 inLength);

    const int mFile;       // the file whose fork this is
    const bool mIsShared;  // others may write beside this
    UniqueFd mCompanion;
    SInt64 mOffset = 0;      // of the fork in it
    SInt64 mLength = 0;      // as last seen
    off_t mLengthPlace = 0;  // where the companion's list tells it; 0 where there is no list
    UInt64 mEdition = 0;     // of all companions, when this one was looked at
    bool mIsPrepared = false;
    bool mIsChanged = false;
};

bool IsSameFile(int inFile, const std::string& inPath) {
    struct stat mine, there;
    return fstat(inFile, &mine) == 0 && stat(inPath.c_str(), &there) == 0 &&
           mine.st_dev == there.st_dev && mine.st_ino == there.st_ino;
}

// The place in the list where a companion tells the length of its fork.
off_t LengthPlaceIn(int inFile) {
    auto start = BytesAt(inFile, 0, kAppleDoubleListOffset);
    if (!IsAppleDouble(start)) return 0;
    start = BytesAt(inFile, 0, AppleDoubleListEnd(start));
    for (size_t at = kAppleDoubleListOffset; at + kAppleDoubleEntrySize <= start.size();
         at += kAppleDoubleEntrySize) {
        const bool isIt = ReadBigEndian<UInt32>(start.data() + at) == kResourceForkEntry;
        if (isIt) return off_t(at + 8);
    }
    return 0;
}

// Whether the companion has the form in which it can be written to and changed in place.
bool IsCanonical(const Companion& inCompanion, const AppleDoubleDocument& inWanted) {
    if (inCompanion.state != CompanionState::kSound) return false;
    const auto head = inWanted.BytesBeforeFork(inCompanion.forkLength);
    return BytesAt(inCompanion.file.Get(), 0, head.size()) == head;
}

// Somebody replaces a companion now and then; whether it was this one costs a look.
OSErr ResourceStorage::Follow() {
    const UInt64 edition = ReplacedCompanions().Value();
    if (edition == mEdition) return noErr;
    const auto path = PathOfOpenFile(mFile);
    const bool isSame = mCompanion && IsSameFile(mCompanion.Get(), CompanionPath(path, false));
    mEdition = edition;
    return path.empty() || isSame ? OSErr(noErr) : ReadAgain();
}

OSErr ResourceStorage::ReadAgain() {
    mEdition = ReplacedCompanions().Value();
    const auto path = PathOfOpenFile(mFile);
    if (path.empty()) return mCompanion ? OSErr(noErr) : OSErr(fnfErr);
    Companion companion;
    if (const OSErr error = ReadCompanion(path, &companion)) return error;
    if (companion.state == CompanionState::kDamaged) return ioErr;
    if (mIsPrepared) {
        companion.file =
            UniqueFd(open(CompanionPath(path, false).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
        if (!companion.file) return CompanionError(errno);
    }
    mCompanion = std::move(companion.file);
    mOffset = companion.forkOffset;
    mLength = companion.forkLength;
    mLengthPlace = mCompanion ? LengthPlaceIn(mCompanion.Get()) : 0;
    return noErr;
}

// The length that another path may have changed.
OSErr ResourceStorage::ReadLength() {
    if (const OSErr error = Follow()) return error;
    if (mLengthPlace == 0) return noErr;
    UInt8 bytes[4];
    if (pread(mCompanion.Get(), bytes, sizeof bytes, mLengthPlace) != sizeof bytes) return ioErr;
    mLength = ReadBigEndian<UInt32>(bytes);
    return noErr;
}

// Before the first change: the companion gets its form and the others learn that it has to stay.
OSErr ResourceStorage::Prepare() {
    if (mIsPrepared) return Follow();
    const auto path = PathOfOpenFile(mFile);
    if (path.empty()) return fnfErr;
    ObjectGuard guard;
    if (const OSErr error = guard.Take(path)) return error;
    if (const OSErr error = PrepareUnder(guard, path)) return error;
    mIsPrepared = true;
    const OSErr error = ReadAgain();
    mIsPrepared = error == noErr;
    return error;
}

OSErr ResourceStorage::PrepareUnder(const ObjectGuard& inGuard, const MetadataOwner& inOwner) {
    Companion companion;
    if (const OSErr error = ReadCompanion(inOwner, &companion)) return error;
    if (companion.state == CompanionState::kDamaged) return ioErr;
    PutFixedEntries(&companion.document);
    if (!IsCanonical(companion, companion.document)) {
        if (const OSErr error = ReplaceCompanion(inOwner, inGuard, companion)) return error;
    }
    return HoldForkUses(mFile, Fork::kResource, kWritesInPlace);
}

OSErr ResourceStorage::PutLength(SInt64 inLength) {
    UInt8 bytes[4];
    WriteBigEndian(bytes, UInt32(inLength));
    const auto count = pwrite(mCompanion.Get(), bytes, sizeof bytes, mLengthPlace);
    if (count != sizeof bytes) return count < 0 ? CompanionError(errno) : OSErr(ioErr);
    mLength = inLength;
    mIsChanged = true;
    return noErr;
}

// Those who write beside each other change the length one after the other: a length that was read
// before is another's by now, and writing it would cut off what the other has added.
OSErr ResourceStorage::TakeTurn(ObjectGuard* outTurn) const {
    const auto path = mIsShared ? PathOfOpenFile(mFile) : std::string();
    return path.empty() ? OSErr(noErr) : outTurn->Take(path);
}

// Zeros from the end to `inTo`; what a longer fork left there is none of theirs.
OSErr ResourceStorage::FillGap(SInt64 inTo) {
    struct stat facts;
    if (fstat(mCompanion.Get(), &facts) != 0) return CompanionError(errno);
    const std::vector<UInt8> zeros(64 * 1024);
    const SInt64 end = std::min(mOffset + inTo, SInt64(facts.st_size));
    for (SInt64 at = mOffset + mLength; at < end;) {
        const size_t count = std::min(zeros.size(), size_t(end - at));
        const auto written = pwrite(mCompanion.Get(), zeros.data(), count, at);
        if (written <= 0) return CompanionError(errno);
        at += written;
    }
    if (facts.st_size >= mOffset + inTo) return noErr;
    return GrowFile(mCompanion.Get(), facts.st_size, mOffset + inTo);
}

OSErr ResourceStorage::Read(SInt64 inOffset, void* outBytes, size_t inCount, size_t* outDone) {
    *outDone = 0;
    const bool mayHaveChanged =
        inOffset + SInt64(inCount) > mLength || mEdition != ReplacedCompanions().Value();
    if (mayHaveChanged) {
        if (const OSErr error = ReadLength()) return error;
    }
    if (inOffset >= mLength) return noErr;
    const size_t count = std::min(inCount, size_t(mLength - inOffset));
    return TakeCount(pread(mCompanion.Get(), outBytes, count, mOffset + inOffset), outDone);
}

OSErr ResourceStorage::Write(SInt64 inOffset, const void* inBytes, size_t inCount,
                             size_t* outDone) {
    *outDone = 0;
    if (inOffset + SInt64(inCount) > kLongestFork) return fileBoundsErr;
    OSErr error = Prepare();
    ObjectGuard turn;
    const bool mayGrow = mIsShared || inOffset + SInt64(inCount) > mLength;
    if (error == noErr && mayGrow) error = TakeTurn(&turn);
    if (error == noErr && mayGrow) error = ReadLength();
    if (error == noErr && inOffset > mLength) error = FillGap(inOffset);
    if (error != noErr) return error;
    mIsChanged = true;
    error = TakeCount(pwrite(mCompanion.Get(), inBytes, inCount, mOffset + inOffset), outDone);
    const SInt64 end = inOffset + SInt64(*outDone);
    return *outDone > 0 && end > mLength ? PutLength(end) : error;
}

OSErr ResourceStorage::GetLength(SInt64* outLength) {
    const OSErr error = ReadLength();
    *outLength = mLength;
    return error;
}

OSErr ResourceStorage::SetLength(SInt64 inLength) {
    if (inLength > kLongestFork) return fileBoundsErr;
    OSErr error = ReadLength();
    if (error != noErr || inLength == mLength) return error;
    error = Prepare();
    ObjectGuard turn;
    if (error == noErr) error = TakeTurn(&turn);
    if (error == noErr) error = ReadLength();
    if (error != noErr) return error;
    if (inLength < mLength) return Shrink(inLength);
    error = FillGap(inLength);
    return error == noErr ? PutLength(inLength) : error;
}

// While others have the fork open only the list says that it is shorter: nothing vanishes under
// a reader.
OSErr ResourceStorage::Shrink(SInt64 inLength) {
    if (const OSErr error = PutLength(inLength)) return error;
    if (ForkUsesOfOthers(mFile, Fork::kResource) != 0) return noErr;
    const int result = ftruncate(mCompanion.Get(), mOffset + inLength);
    return result == 0 ? OSErr(noErr) : CompanionError(errno);
}

OSErr ResourceStorage::Reserve(SInt64 inCount) {
    OSErr error = Prepare();
    if (error == noErr) error = ReadLength();
    if (error != noErr) return error;
    const auto end = mOffset + mLength;
    if (fallocate(mCompanion.Get(), FALLOC_FL_KEEP_SIZE, end, inCount) == 0) return noErr;
    return errno == EOPNOTSUPP ? OSErr(noErr) : CompanionError(errno);
}

OSErr ResourceStorage::GetSpace(SInt64* outBytes) {
    constexpr SInt64 kBlock = 4096;
    const OSErr error = ReadLength();
    *outBytes = (mLength + kBlock - 1) / kBlock * kBlock;
    return error;
}

OSErr ResourceStorage::Flush() {
    return !mCompanion || fsync(mCompanion.Get()) == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

OSErr ResourceStorage::ForgetCached(SInt64 inOffset, SInt64 inCount) {
    if (const OSErr error = Follow()) return error;
    if (!mCompanion) return noErr;
    if (fdatasync(mCompanion.Get()) != 0) return OSErrFromErrno(errno);
    return OSErrFromErrno(
        posix_fadvise(mCompanion.Get(), mOffset + inOffset, inCount, POSIX_FADV_DONTNEED));
}

// The file counts as changed when its resource fork is.
OSErr ResourceStorage::Close() {
    if (mIsChanged && futimens(mFile, nullptr) != 0) return OSErrFromErrno(errno);
    const int companion = mCompanion.Release();
    return companion < 0 || close(companion) == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

}  // namespace

OSErr NewResourceStorage(int inFile, bool inIsShared, std::unique_ptr<ForkStorage>* outStorage) {
    auto storage = std::make_unique<ResourceStorage>(inFile, inIsShared);
    const OSErr error = storage->Open();
    if (error == noErr) *outStorage = std::move(storage);
    return error;
}

}  // namespace carbon
