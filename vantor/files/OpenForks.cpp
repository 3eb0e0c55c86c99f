// Reading, writing and locking open forks.
#include "vantor/files/OpenForks.h"

#include "vantor/files/Locations.h"

namespace {

ParamBlockRec ForkBlock(SInt16 inRefNum) {
    ParamBlockRec block = {};
    block.ioParam.ioRefNum = inRefNum;
    return block;
}

// At the mark, without keeping the bytes in memory.
OSErr MoveBytes(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer,
                OSErr (*inMove)(ParmBlkPtr)) {
    ParamBlockRec block = ForkBlock(inRefNum);
    block.ioParam.ioBuffer = static_cast<Ptr>(const_cast<void*>(inBuffer));
    block.ioParam.ioReqCount = *ioCount;
    block.ioParam.ioPosMode = noCacheMask;  // fsAtMark is no bit
    const OSErr err = inMove(&block);
    *ioCount = block.ioParam.ioActCount;
    return err;
}

ParamBlockRec RangeBlock(SInt16 inRefNum, SInt32 inLength, SInt32 inStart) {
    ParamBlockRec block = ForkBlock(inRefNum);
    block.ioParam.ioReqCount = inLength;
    block.ioParam.ioPosMode = fsFromStart;
    block.ioParam.ioPosOffset = inStart;
    return block;
}

}  // namespace

OSErr FSReadNoCache(SInt16 inRefNum, SInt32* ioCount, void* outBuffer) {
    return MoveBytes(inRefNum, ioCount, outBuffer, &PBReadSync);
}

OSErr FSWriteNoCache(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
    return MoveBytes(inRefNum, ioCount, inBuffer, &PBWriteSync);
}

OSErr FlushFile(SInt16 inRefNum) {
    ParamBlockRec block = ForkBlock(inRefNum);
    return PBFlushFileSync(&block);
}

OSErr LockRange(SInt16 inRefNum, SInt32 inLength, SInt32 inStart) {
    ParamBlockRec block = RangeBlock(inRefNum, inLength, inStart);
    return PBLockRangeSync(&block);
}

OSErr UnlockRange(SInt16 inRefNum, SInt32 inLength, SInt32 inStart) {
    ParamBlockRec block = RangeBlock(inRefNum, inLength, inStart);
    return PBUnlockRangeSync(&block);
}

OSErr GetFileLocation(SInt16 inRefNum, FSVolumeRefNum* outVRefNum, SInt32* outParentID,
                      StringPtr outName) {
    FCBPBRec block = {};
    block.ioNamePtr = outName;
    block.ioRefNum = inRefNum;
    const OSErr err = PBGetFCBInfoSync(&block);
    if (err != noErr) return err;
    *outVRefNum = block.ioFCBVRefNum;
    *outParentID = block.ioFCBParID;
    return noErr;
}

OSErr FSpGetFileLocation(SInt16 inRefNum, FSSpec* outSpec) {
    SInt32 parentID;
    const OSErr err = GetFileLocation(inRefNum, &outSpec->vRefNum, &parentID, outSpec->name);
    if (err == noErr) outSpec->parID = parentID;
    return err;
}
