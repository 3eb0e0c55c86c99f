// Owns the calls on a fork's length, its mark and its place on the disk.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <limits>

#include "file_manager/forks/fork_table.h"

namespace carbon {

namespace {

// The classic calls count in 32 bits.
OSErr Put(SInt64 inNumber, SInt32* outNumber) {
    if (inNumber > std::numeric_limits<SInt32>::max()) return fileBoundsErr;
    *outNumber = SInt32(inNumber);
    return noErr;
}

OSErr GetLength(SInt16 inNumber, SInt32* outLength) {
    std::shared_ptr<OpenFork> fork;
    SInt64 length = 0;
    OSErr error = outLength ? FindOpenFork(inNumber, &fork) : OSErr(paramErr);
    if (error == noErr) error = fork->GetLength(&length);
    return error == noErr ? Put(length, outLength) : error;
}

// The other paths to the fork may not stay behind its end.
OSErr SetLength(SInt16 inNumber, SInt32 inLength) {
    std::shared_ptr<OpenFork> fork;
    OSErr error = FindOpenFork(inNumber, &fork);
    if (error == noErr) error = fork->SetLength(inLength);
    if (error != noErr) return error;
    const auto& facts = fork->GetFacts();
    for (const auto& path : OpenPathsTo(facts.device, facts.inode, facts.fork))
        path.fork->PullMarkBack(inLength);
    return noErr;
}

OSErr GetMark(SInt16 inNumber, SInt32* outMark) {
    std::shared_ptr<OpenFork> fork;
    const OSErr error = outMark ? FindOpenFork(inNumber, &fork) : OSErr(paramErr);
    return error == noErr ? Put(fork->Mark(), outMark) : error;
}

OSErr SetMark(SInt16 inNumber, SInt16 inMode, SInt32 inOffset) {
    std::shared_ptr<OpenFork> fork;
    const OSErr error = FindOpenFork(inNumber, &fork);
    return error == noErr ? fork->SetMark(inMode, inOffset) : error;
}

OSErr Reserve(SInt16 inNumber, SInt32* ioCount) {
    std::shared_ptr<OpenFork> fork;
    OSErr error = ioCount ? FindOpenFork(inNumber, &fork) : OSErr(paramErr);
    if (error == noErr) error = fork->Reserve(*ioCount);
    if (error != noErr && ioCount) *ioCount = 0;
    return error;
}

OSErr GetLengthByBlock(IOParam* ioBlock) {
    SInt32 length = 0;
    ioBlock->ioResult = GetLength(ioBlock->ioRefNum, &length);
    if (ioBlock->ioResult == noErr) ioBlock->ioMisc = reinterpret_cast<Ptr>(intptr_t(length));
    return ioBlock->ioResult;
}

OSErr SetLengthByBlock(IOParam* ioBlock) {
    const auto length = reinterpret_cast<intptr_t>(ioBlock->ioMisc);
    return ioBlock->ioResult = SetLength(ioBlock->ioRefNum, SInt32(length));
}

OSErr GetMarkByBlock(IOParam* ioBlock) {
    ioBlock->ioPosMode = 0;
    ioBlock->ioReqCount = ioBlock->ioActCount = 0;
    SInt32 mark = 0;
    ioBlock->ioResult = GetMark(ioBlock->ioRefNum, &mark);
    ioBlock->ioPosOffset = mark;
    return ioBlock->ioResult;
}

OSErr SetMarkByBlock(IOParam* ioBlock) {
    const OSErr error = SetMark(ioBlock->ioRefNum, ioBlock->ioPosMode, ioBlock->ioPosOffset);
    SInt32 mark = 0;
    if (GetMark(ioBlock->ioRefNum, &mark) == noErr) ioBlock->ioPosOffset = mark;
    return ioBlock->ioResult = error;
}

OSErr ReserveByBlock(IOParam* ioBlock) {
    SInt32 count = ioBlock->ioReqCount;
    ioBlock->ioResult = Reserve(ioBlock->ioRefNum, &count);
    ioBlock->ioActCount = count;
    return ioBlock->ioResult;
}

}  // namespace

}  // namespace carbon

OSErr GetEOF(SInt16 refNum, SInt32* logEOF) {
    return carbon::GetLength(refNum, logEOF);
}

OSErr SetEOF(SInt16 refNum, SInt32 logEOF) {
    return carbon::SetLength(refNum, logEOF);
}

OSErr PBGetEOFSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::GetLengthByBlock(&paramBlock->ioParam) : OSErr(paramErr);
}

OSErr PBSetEOFSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::SetLengthByBlock(&paramBlock->ioParam) : OSErr(paramErr);
}

OSErr GetFPos(SInt16 refNum, SInt32* filePos) {
    return carbon::GetMark(refNum, filePos);
}

OSErr SetFPos(SInt16 refNum, SInt16 posMode, SInt32 posOff) {
    return carbon::SetMark(refNum, posMode, posOff);
}

OSErr PBGetFPosSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::GetMarkByBlock(&paramBlock->ioParam) : OSErr(paramErr);
}

OSErr PBSetFPosSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::SetMarkByBlock(&paramBlock->ioParam) : OSErr(paramErr);
}

OSErr Allocate(SInt16 refNum, SInt32* count) {
    return carbon::Reserve(refNum, count);
}

OSErr AllocContig(SInt16 refNum, SInt32* count) {
    return carbon::Reserve(refNum, count);
}

OSErr PBAllocateSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::ReserveByBlock(&paramBlock->ioParam) : OSErr(paramErr);
}

OSErr PBAllocContigSync(ParmBlkPtr paramBlock) {
    return PBAllocateSync(paramBlock);
}
