// The volumes that are there: listing them, taking one away, the default one.
#include "vantor/files/VolumeInfo.h"

namespace {

OSErr GetRoot(SInt16 inIndex, FSSpec* outRoot) {
    HParamBlockRec block = {};
    block.volumeParam.ioNamePtr = outRoot->name;
    block.volumeParam.ioVolIndex = inIndex;
    const OSErr err = PBHGetVInfoSync(&block);
    if (err != noErr) return err;
    outRoot->parID = fsRtParID;
    outRoot->vRefNum = block.volumeParam.ioVRefNum;
    return noErr;
}

}  // namespace

OSErr UnmountAndEject(ConstStr255Param inPath, FSVolumeRefNum inVRefNum) {
    ParamBlockRec block = {};
    const OSErr err = DetermineVRefNum(inPath, inVRefNum, &block.volumeParam.ioVRefNum);
    return err == noErr ? PBUnmountVol(&block) : err;
}

OSErr OnLine(FSSpec* outVolumes, SInt16 inCapacity, SInt16* outCount, SInt16* ioIndex) {
    if (*ioIndex <= 0) return paramErr;
    OSErr err = noErr;
    for (*outCount = 0; *outCount < inCapacity; ++*outCount, ++*ioIndex) {
        err = GetRoot(*ioIndex, &outVolumes[*outCount]);
        if (err != noErr) break;
    }
    return err;
}

OSErr SetDefault(FSVolumeRefNum inNewVRefNum, SInt32 inNewDirID, FSVolumeRefNum* outOldVRefNum,
                 SInt32* outOldDirID) {
    const OSErr err = HGetVol(nullptr, outOldVRefNum, outOldDirID);
    return err == noErr ? HSetVol(nullptr, inNewVRefNum, inNewDirID) : err;
}

OSErr RestoreDefault(FSVolumeRefNum inOldVRefNum, SInt32 inOldDirID) {
    return HSetVol(nullptr, inOldVRefNum, inOldDirID);
}
