// Copying forks through a buffer, and writing that is read back.
#include "vantor/files/ForkCopy.h"

#include <algorithm>
#include <cstring>

#include "vantor/foundation/StPointer.h"

namespace {

constexpr SInt32 kKilobyte = 1024;
constexpr SInt32 kBlock = 512;                 // of a disk
constexpr SInt16 kPastTheCache = noCacheMask;  // and at the mark
constexpr SInt16 kVerifying = rdVerifyMask;    // and at the mark

SInt32 RoundDown(SInt32 inSize, SInt32 inUnit) {
    return inSize - inSize % inUnit;
}

// What can be had when memory is short, leaving some for others.
SInt32 LargestBuffer() {
    constexpr SInt32 kForOthers = 32768;
    const SInt32 limit = RoundDown(FreeMem() - kForOthers, kKilobyte);
    return std::max(kKilobyte, std::min(limit, RoundDown(MaxBlock(), kKilobyte)));
}

// Reads or writes at the mark; `ioCount` becomes what was moved.
OSErr Transfer(OSErr (*inCall)(ParmBlkPtr), SInt16 inRefNum, SInt16 inMode, void* ioBuffer,
               SInt32* ioCount) {
    ParamBlockRec block = {};
    block.ioParam.ioRefNum = inRefNum;
    block.ioParam.ioBuffer = static_cast<Ptr>(ioBuffer);
    block.ioParam.ioReqCount = *ioCount;
    block.ioParam.ioPosMode = inMode;
    const OSErr err = inCall(&block);
    *ioCount = block.ioParam.ioActCount;
    return err;
}

OSErr MakeReadyToCopy(SInt16 inSource, SInt16 inDestination) {
    SInt32 length = 0;
    OSErr err = GetEOF(inSource, &length);
    if (err == noErr) err = SetEOF(inDestination, length);  // the room is taken before the work
    if (err == noErr) err = SetFPos(inSource, fsFromStart, 0);
    if (err == noErr) err = SetFPos(inDestination, fsFromStart, 0);
    return err;
}

// Compares what the file has at its mark with `ioBuffer`, as far as the File Manager does that; it
// may as well read it into there.
OSErr FSReadVerify(SInt16 inRefNum, SInt32* ioCount, void* ioBuffer) {
    return Transfer(PBReadSync, inRefNum, kVerifying, ioBuffer, ioCount);
}

bool EqualMemory(const void* inFirst, const void* inSecond, SInt32 inLength) {
    return inFirst == inSecond || inLength == 0 ||
           std::memcmp(inFirst, inSecond, static_cast<std::size_t>(inLength)) == 0;
}

// Compares the file from its mark on with `inData`, by way of a block of `inBlockSize`.
OSErr Verify(SInt16 inRefNum, const char* inData, SInt32 inLength, Ptr ioBlock,
             SInt32 inBlockSize) {
    for (SInt32 at = 0; at < inLength;) {
        SInt32 chunk = std::min(inBlockSize, inLength - at);
        std::memcpy(ioBlock, inData + at, static_cast<std::size_t>(chunk));
        const SInt32 wanted = chunk;
        const OSErr err = FSReadVerify(inRefNum, &chunk, ioBlock);
        if (err != noErr) return err;
        if (!EqualMemory(ioBlock, inData + at, wanted)) return ioErr;
        at += wanted;
    }
    return noErr;
}

OSErr WriteFromMark(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
    SInt32 mark = 0;
    OSErr err = GetFPos(inRefNum, &mark);
    if (err == noErr) err = FSWrite(inRefNum, ioCount, inBuffer);
    if (err == noErr) err = SetFPos(inRefNum, fsFromStart, mark);
    return err;
}

}  // namespace

Ptr GetTempBuffer(SInt32 inRequest, SInt32* outActual) {
    SInt32 size = std::max(kKilobyte, RoundDown(inRequest, kKilobyte));
    Ptr buffer = NewPtr(size);
    if (buffer == nullptr && size > kKilobyte) {
        size = LargestBuffer();
        buffer = NewPtr(size);
    }
    *outActual = buffer != nullptr ? size : 0;
    return buffer;
}

OSErr CopyFork(SInt16 inSource, SInt16 inDestination, void* ioBuffer, SInt32 inSize) {
    if (ioBuffer == nullptr || inSize <= 0) return paramErr;
    const OSErr err = MakeReadyToCopy(inSource, inDestination);
    if (err != noErr) return err;
    const SInt32 size = inSize >= kBlock ? RoundDown(inSize, kBlock) : inSize;
    OSErr readErr = noErr, writeErr = noErr;
    while (readErr == noErr && writeErr == noErr) {
        SInt32 count = size;
        readErr = Transfer(PBReadSync, inSource, kPastTheCache, ioBuffer, &count);
        writeErr = Transfer(PBWriteSync, inDestination, kPastTheCache, ioBuffer, &count);
    }
    if (writeErr != noErr) return writeErr;
    return readErr == eofErr ? OSErr{noErr} : readErr;
}

OSErr FSWriteVerify(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
    const SInt32 length = *ioCount;
    SInt32 blockSize = length;
    StPointerBlock block(NewPtr(length));
    if (block.Get() == nullptr) block.Adopt(GetTempBuffer(length, &blockSize));
    if (block.Get() == nullptr) return memFullErr;
    const OSErr err = WriteFromMark(inRefNum, ioCount, inBuffer);
    if (err != noErr) return err;
    return Verify(inRefNum, static_cast<const char*>(inBuffer), length, block.Get(), blockSize);
}
