// Users and groups, and a foreign file system's own rights.
#include "vantor/files/Sharing.h"

namespace {

HParamBlockRec ObjectBlock(SInt16 inType, ConstStr255Param inName, SInt32 inID) {
    HParamBlockRec block = {};
    block.objParam.ioObjType = inType;
    block.objParam.ioObjNamePtr = const_cast<StringPtr>(inName);
    block.objParam.ioObjID = inID;
    return block;
}

HParamBlockRec OnVolume(HParamBlockRec inBlock, FSVolumeRefNum inVRefNum,
                        ConstStr255Param inVolumeName) {
    inBlock.objParam.ioVRefNum = inVRefNum;
    inBlock.objParam.ioNamePtr = const_cast<StringPtr>(inVolumeName);
    return inBlock;
}

HParamBlockRec PrivilegeBlock(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                              const void* inBuffer, SInt32 inSize) {
    HParamBlockRec block = {};
    block.foreignPrivParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.foreignPrivParam.ioVRefNum = inVRefNum;
    block.foreignPrivParam.ioForeignPrivDirID = inDirID;
    block.foreignPrivParam.ioForeignPrivBuffer = static_cast<Ptr>(const_cast<void*>(inBuffer));
    block.foreignPrivParam.ioForeignPrivReqCount = inSize;
    return block;
}

}  // namespace

OSErr HGetLogInInfo(FSVolumeRefNum inVRefNum, SInt16* outMethod, StringPtr outUser) {
    HParamBlockRec block = OnVolume(ObjectBlock(0, outUser, 0), inVRefNum, nullptr);
    const OSErr err = PBHGetLogInInfoSync(&block);
    if (err == noErr) *outMethod = block.objParam.ioObjType;
    return err;
}

OSErr HMapID(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt32 inID, SInt16 inType,
             StringPtr outName) {
    HParamBlockRec block = OnVolume(ObjectBlock(inType, outName, inID), inVRefNum, inVolumeName);
    return PBHMapIDSync(&block);
}

OSErr HMapName(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, ConstStr255Param inName,
               SInt16 inType, SInt32* outID) {
    HParamBlockRec block = OnVolume(ObjectBlock(inType, inName, 0), inVRefNum, inVolumeName);
    const OSErr err = PBHMapNameSync(&block);
    if (err == noErr) *outID = block.objParam.ioObjID;
    return err;
}

OSErr GetUGEntry(SInt16 inType, StringPtr outName, SInt32* ioID) {
    HParamBlockRec block = ObjectBlock(inType, outName, *ioID);
    const OSErr err = PBGetUGEntrySync(&block);
    if (err == noErr) *ioID = block.objParam.ioObjID;
    return err;
}

OSErr GetUGEntries(SInt16 inType, UGEntry* outEntries, SInt32 inCapacity, SInt32* outCount,
                   SInt32* ioID) {
    OSErr err = noErr;
    for (*outCount = 0; *outCount < inCapacity; ++*outCount) {
        UGEntry* const entry = &outEntries[*outCount];
        HParamBlockRec block = ObjectBlock(inType, entry->name, *ioID);
        err = PBGetUGEntrySync(&block);
        if (err != noErr) break;
        entry->objType = block.objParam.ioObjType;
        entry->objID = *ioID = block.objParam.ioObjID;
    }
    return err;
}

OSErr GetForeignPrivs(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                      void* outBuffer, SInt32* ioSize, SInt32* outInfo1, SInt32* outInfo2,
                      SInt32* outInfo3, SInt32* outInfo4) {
    HParamBlockRec block = PrivilegeBlock(inVRefNum, inDirID, inName, outBuffer, *ioSize);
    const OSErr err = PBGetForeignPrivsSync(&block);
    if (err != noErr) return err;
    *ioSize = block.foreignPrivParam.ioForeignPrivActCount;
    *outInfo1 = block.foreignPrivParam.ioForeignPrivInfo1;
    *outInfo2 = block.foreignPrivParam.ioForeignPrivInfo2;
    *outInfo3 = block.foreignPrivParam.ioForeignPrivInfo3;
    *outInfo4 = block.foreignPrivParam.ioForeignPrivInfo4;
    return noErr;
}

OSErr FSpGetForeignPrivs(const FSSpec* inSpec, void* outBuffer, SInt32* ioSize, SInt32* outInfo1,
                         SInt32* outInfo2, SInt32* outInfo3, SInt32* outInfo4) {
    return GetForeignPrivs(inSpec->vRefNum, inSpec->parID, inSpec->name, outBuffer, ioSize,
                           outInfo1, outInfo2, outInfo3, outInfo4);
}

OSErr SetForeignPrivs(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                      const void* inBuffer, SInt32* ioSize, SInt32 inInfo1, SInt32 inInfo2,
                      SInt32 inInfo3, SInt32 inInfo4) {
    HParamBlockRec block = PrivilegeBlock(inVRefNum, inDirID, inName, inBuffer, *ioSize);
    block.foreignPrivParam.ioForeignPrivInfo1 = inInfo1;
    block.foreignPrivParam.ioForeignPrivInfo2 = inInfo2;
    block.foreignPrivParam.ioForeignPrivInfo3 = inInfo3;
    block.foreignPrivParam.ioForeignPrivInfo4 = inInfo4;
    const OSErr err = PBSetForeignPrivsSync(&block);
    if (err == noErr) *ioSize = block.foreignPrivParam.ioForeignPrivActCount;
    return err;
}

OSErr FSpSetForeignPrivs(const FSSpec* inSpec, const void* inBuffer, SInt32* ioSize, SInt32 inInfo1,
                         SInt32 inInfo2, SInt32 inInfo3, SInt32 inInfo4) {
    return SetForeignPrivs(inSpec->vRefNum, inSpec->parID, inSpec->name, inBuffer, ioSize, inInfo1,
                           inInfo2, inInfo3, inInfo4);
}
