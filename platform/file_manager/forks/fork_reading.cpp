// Owns the calls that read and write forks.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include "file_manager/forks/fork_table.h"

namespace carbon {

namespace {

enum class Direction { kRead, kWrite };

OSErr Move(Direction inDirection, OpenFork& ioFork, SInt16 inMode, SInt64 inOffset, void* ioBuffer,
           SInt32 inCount, SInt32* outDone) {
    *outDone = 0;
    if (inCount < 0 || (inCount > 0 && !ioBuffer)) return paramErr;
    return inDirection == Direction::kRead
               ? ioFork.Read(inMode, inOffset, ioBuffer, inCount, outDone)
               : ioFork.Write(inMode, inOffset, ioBuffer, inCount, outDone);
}

OSErr MoveAtMark(Direction inDirection, SInt16 inNumber, SInt32* ioCount, void* ioBuffer) {
    if (!ioCount) return paramErr;
    std::shared_ptr<OpenFork> fork;
    const OSErr error = FindOpenFork(inNumber, &fork);
    const SInt32 count = *ioCount;
    *ioCount = 0;
    return error == noErr ? Move(inDirection, *fork, fsAtMark, 0, ioBuffer, count, ioCount) : error;
}

// With the newline bit the bits above it are the character, and none of them means another record.
bool IsWide(const ParamBlockRec& inBlock) {
    const SInt16 mode = inBlock.ioParam.ioPosMode;
    return (mode & kUseWidePositioning) && !(mode & newLineMask);
}

SInt64 OffsetIn(const ParamBlockRec& inBlock) {
    if (!IsWide(inBlock)) return inBlock.ioParam.ioPosOffset;
    const wide offset = reinterpret_cast<const XIOParam&>(inBlock).ioWPosOffset;
    return SInt64(UInt64(UInt32(offset.hi)) << 32 | offset.lo);
}

void PutMark(SInt64 inMark, ParamBlockRec* ioBlock) {
    if (IsWide(*ioBlock))
        reinterpret_cast<XIOParam*>(ioBlock)->ioWPosOffset = {SInt32(inMark >> 32), UInt32(inMark)};
    else
        ioBlock->ioParam.ioPosOffset = SInt32(inMark);
}

OSErr MoveByBlock(Direction inDirection, ParmBlkPtr ioBlock) {
    if (!ioBlock) return paramErr;
    auto& block = ioBlock->ioParam;
    block.ioActCount = 0;
    std::shared_ptr<OpenFork> fork;
    block.ioResult = FindOpenFork(block.ioRefNum, &fork);
    if (block.ioResult != noErr) return block.ioResult;
    SInt32 done = 0;
    block.ioResult = Move(inDirection, *fork, block.ioPosMode, OffsetIn(*ioBlock), block.ioBuffer,
                          block.ioReqCount, &done);
    block.ioActCount = done;
    PutMark(fork->Mark(), ioBlock);
    return block.ioResult;
}

}  // namespace

}  // namespace carbon

using carbon::Direction;

OSErr FSRead(SInt16 refNum, SInt32* count, void* buffPtr) {
    return carbon::MoveAtMark(Direction::kRead, refNum, count, buffPtr);
}

OSErr FSWrite(SInt16 refNum, SInt32* count, const void* buffPtr) {
    return carbon::MoveAtMark(Direction::kWrite, refNum, count, const_cast<void*>(buffPtr));
}

OSErr PBReadSync(ParmBlkPtr paramBlock) {
    return carbon::MoveByBlock(Direction::kRead, paramBlock);
}

OSErr PBWriteSync(ParmBlkPtr paramBlock) {
    return carbon::MoveByBlock(Direction::kWrite, paramBlock);
}
