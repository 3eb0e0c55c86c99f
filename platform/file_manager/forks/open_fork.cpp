// Owns reading, writing and the mark.
#include "file_manager/forks/open_fork.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

namespace carbon {

namespace {

constexpr SInt16 kPositionMask = 3;
constexpr size_t kPiece = 64 * 1024;
constexpr size_t kLinePiece = 1024;

}  // namespace

OpenFork::OpenFork(const Facts& inFacts, UniqueFd inFile, std::unique_ptr<ForkStorage> inStorage)
    : mFacts(inFacts), mStorage(std::move(inStorage)), mFile(std::move(inFile)) {}

bool OpenFork::IsSameFork(dev_t inDevice, ino_t inInode, Fork inFork) const {
    return mFacts.device == inDevice && mFacts.inode == inInode && mFacts.fork == inFork;
}

OSErr OpenFork::FindPlace(SInt16 inMode, SInt64 inOffset, SInt64* outPlace) {
    SInt64 base = 0;
    switch (inMode & kPositionMask) {
        case fsAtMark:
            *outPlace = mMark;
            return noErr;
        case fsFromMark:
            base = mMark;
            break;
        case fsFromLEOF:
            if (const OSErr error = mStorage->GetLength(&base)) return error;
            break;
        default:
            break;
    }
    const bool isOutside = __builtin_add_overflow(base, inOffset, outPlace) || *outPlace < 0;
    return isOutside ? OSErr(posErr) : OSErr(noErr);
}

OSErr OpenFork::SetMark(SInt16 inMode, SInt64 inOffset) {
    const std::lock_guard lock(mMutex);
    SInt64 place = 0, length = 0;
    if (const OSErr error = FindPlace(inMode, inOffset, &place)) return error;
    if (const OSErr error = mStorage->GetLength(&length)) return error;
    mMark = std::min(place, length);
    return place > length ? OSErr(eofErr) : OSErr(noErr);
}

SInt64 OpenFork::Mark() {
    const std::lock_guard lock(mMutex);
    return mMark;
}

void OpenFork::PullMarkBack(SInt64 inLength) {
    const std::lock_guard lock(mMutex);
    mMark = std::min(mMark, inLength);
}

OSErr OpenFork::ReadAll(SInt64 inPlace, UInt8* outBytes, size_t inCount, size_t* outDone) {
    for (*outDone = 0; *outDone < inCount;) {
        size_t done = 0;
        const OSErr error = mStorage->Read(inPlace + SInt64(*outDone), outBytes + *outDone,
                                           inCount - *outDone, &done);
        *outDone += done;
        if (error != noErr) return error;
        if (done == 0) return eofErr;
    }
    return noErr;
}

OSErr OpenFork::WriteAll(SInt64 inPlace, const UInt8* inBytes, size_t inCount, size_t* outDone) {
    for (*outDone = 0; *outDone < inCount;) {
        size_t done = 0;
        const OSErr error = mStorage->Write(inPlace + SInt64(*outDone), inBytes + *outDone,
                                            inCount - *outDone, &done);
        *outDone += done;
        if (error != noErr) return error;
    }
    return noErr;
}

// Bytes behind the line's end are not the caller's to get.
OSErr OpenFork::ReadLine(UInt8 inEnd, UInt8* outBytes, size_t inCount, size_t* outDone) {
    UInt8 piece[kLinePiece];
    for (*outDone = 0; *outDone < inCount;) {
        size_t got = 0;
        const size_t wanted = std::min(sizeof piece, inCount - *outDone);
        const OSErr error = ReadAll(mMark + SInt64(*outDone), piece, wanted, &got);
        const auto* end = static_cast<const UInt8*>(std::memchr(piece, inEnd, got));
        const size_t taken = end ? size_t(end - piece) + 1 : got;
        std::memcpy(outBytes + *outDone, piece, taken);
        *outDone += taken;
        if (end || error != noErr) return end ? OSErr(noErr) : error;
    }
    return noErr;
}

// What the disk holds against what the caller has; `outDone` counts what agrees.
OSErr OpenFork::Compare(const UInt8* inBytes, size_t inCount, size_t* outDone) {
    if (const OSErr error = mStorage->ForgetCached(mMark, SInt64(inCount))) return error;
    std::vector<UInt8> piece(std::min(kPiece, inCount));
    for (*outDone = 0; *outDone < inCount;) {
        size_t got = 0;
        const size_t wanted = std::min(piece.size(), inCount - *outDone);
        const OSErr error = ReadAll(mMark + SInt64(*outDone), piece.data(), wanted, &got);
        if (std::memcmp(piece.data(), inBytes + *outDone, got) != 0) return ioErr;
        *outDone += got;
        if (error != noErr) return error;
    }
    return noErr;
}

OSErr OpenFork::Read(SInt16 inMode, SInt64 inOffset, void* outBytes, SInt32 inCount,
                     SInt32* outDone) {
    *outDone = 0;
    const std::lock_guard lock(mMutex);
    if (!(mFacts.uses & kReads)) return permErr;
    SInt64 place = 0;
    if (const OSErr error = FindPlace(inMode, inOffset, &place)) return error;
    if ((inMode & kPositionMask) != fsAtMark) {
        SInt64 length = 0;
        if (const OSErr error = mStorage->GetLength(&length)) return error;
        mMark = std::min(place, length);
        if (place > length) return eofErr;
    }
    if (const OSErr error = CheckRange(mMark, inCount)) return error;
    auto* bytes = static_cast<UInt8*>(outBytes);
    size_t done = 0;
    OSErr error = noErr;
    if (inMode & rdVerifyMask)
        error = Compare(bytes, size_t(inCount), &done);
    else if (inMode & newLineMask)
        error = ReadLine(UInt8(UInt16(inMode) >> 8), bytes, size_t(inCount), &done);
    else
        error = ReadAll(mMark, bytes, size_t(inCount), &done);
    mMark += SInt64(done);
    *outDone = SInt32(done);
    return error;
}

OSErr OpenFork::Write(SInt16 inMode, SInt64 inOffset, const void* inBytes, SInt32 inCount,
                      SInt32* outDone) {
    *outDone = 0;
    const std::lock_guard lock(mMutex);
    if (!(mFacts.uses & kWrites)) return wrPermErr;
    SInt64 place = 0;
    if (const OSErr error = FindPlace(inMode, inOffset, &place)) return error;
    mMark = place;
    if (const OSErr error = CheckRange(place, inCount)) return error;
    size_t done = 0;
    const OSErr error = WriteAll(place, static_cast<const UInt8*>(inBytes), size_t(inCount), &done);
    mIsChanged = mIsChanged || done > 0;
    mMark += SInt64(done);
    *outDone = SInt32(done);
    return error;
}

OSErr OpenFork::GetLength(SInt64* outLength) {
    const std::lock_guard lock(mMutex);
    return mStorage->GetLength(outLength);
}

OSErr OpenFork::SetLength(SInt64 inLength) {
    const std::lock_guard lock(mMutex);
    if (!(mFacts.uses & kWrites)) return wrPermErr;
    if (inLength < 0) return paramErr;
    SInt64 length = 0;
    if (const OSErr error = mStorage->GetLength(&length)) return error;
    const SInt64 first = std::min(length, inLength);
    if (const OSErr error = CheckRange(first, std::max(length, inLength) - first)) return error;
    if (const OSErr error = mStorage->SetLength(inLength)) return error;
    mMark = std::min(mMark, inLength);
    mIsChanged = true;
    return noErr;
}

OSErr OpenFork::Reserve(SInt64 inCount) {
    const std::lock_guard lock(mMutex);
    if (!(mFacts.uses & kWrites)) return wrPermErr;
    if (inCount < 0) return paramErr;
    return inCount == 0 ? OSErr(noErr) : mStorage->Reserve(inCount);
}

OSErr OpenFork::GetSpace(SInt64* outBytes) {
    const std::lock_guard lock(mMutex);
    return mStorage->GetSpace(outBytes);
}

OSErr OpenFork::Flush() {
    const std::lock_guard lock(mMutex);
    return mStorage->Flush();
}

OSErr OpenFork::Close() {
    const std::lock_guard lock(mMutex);
    const OSErr error = mStorage->Close();
    const int file = mFile.Release();
    if (mForks == ForkCount()) ReleaseForkUses(file);
    return close(file) == 0 ? error : OSErr(ioErr);
}

}  // namespace carbon
