// Owners, rights, share points and copies, one call each.
#include "vantor/files/Sharing.h"

namespace {

HParamBlockRec AccessBlock(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    HParamBlockRec block = {};
    block.accessParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.accessParam.ioVRefNum = inVRefNum;
    block.accessParam.ioDirID = inDirID;
    return block;
}

}  // namespace

OSErr HGetDirAccess(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                    SInt32* outOwnerID, SInt32* outGroupID, SInt32* outRights) {
    HParamBlockRec block = AccessBlock(inVRefNum, inDirID, inName);
    const OSErr err = PBHGetDirAccessSync(&block);
    if (err != noErr) return err;
    *outOwnerID = block.accessParam.ioACOwnerID;
    *outGroupID = block.accessParam.ioACGroupID;
    *outRights = block.accessParam.ioACAccess;
    return noErr;
}

OSErr FSpGetDirAccess(const FSSpec* inSpec, SInt32* outOwnerID, SInt32* outGroupID,
                      SInt32* outRights) {
    return HGetDirAccess(inSpec->vRefNum, inSpec->parID, inSpec->name, outOwnerID, outGroupID,
                         outRights);
}

OSErr HSetDirAccess(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                    SInt32 inOwnerID, SInt32 inGroupID, SInt32 inRights) {
    HParamBlockRec block = AccessBlock(inVRefNum, inDirID, inName);
    block.accessParam.ioACOwnerID = inOwnerID;
    block.accessParam.ioACGroupID = inGroupID;
    block.accessParam.ioACAccess = inRights;
    return PBHSetDirAccessSync(&block);
}

OSErr FSpSetDirAccess(const FSSpec* inSpec, SInt32 inOwnerID, SInt32 inGroupID, SInt32 inRights) {
    return HSetDirAccess(inSpec->vRefNum, inSpec->parID, inSpec->name, inOwnerID, inGroupID,
                         inRights);
}

OSErr HCopyFile(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID, ConstStr255Param inSourceName,
                FSVolumeRefNum inDestinationVRefNum, SInt32 inDestinationDirID,
                ConstStr255Param inDestinationPath, ConstStr255Param inCopyName) {
    HParamBlockRec block = {};
    block.copyParam.ioNamePtr = const_cast<StringPtr>(inSourceName);
    block.copyParam.ioVRefNum = inSourceVRefNum;
    block.copyParam.ioDirID = inSourceDirID;
    block.copyParam.ioDstVRefNum = inDestinationVRefNum;
    block.copyParam.ioNewDirID = inDestinationDirID;
    block.copyParam.ioNewName = const_cast<StringPtr>(inDestinationPath);
    block.copyParam.ioCopyName = const_cast<StringPtr>(inCopyName);
    return PBHCopyFileSync(&block);
}

OSErr FSpCopyFile(const FSSpec* inSource, const FSSpec* inDestination,
                  ConstStr255Param inCopyName) {
    return HCopyFile(inSource->vRefNum, inSource->parID, inSource->name, inDestination->vRefNum,
                     inDestination->parID, inDestination->name, inCopyName);
}

OSErr Share(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    HParamBlockRec block = AccessBlock(inVRefNum, inDirID, inName);
    return PBShareSync(&block);
}

OSErr FSpShare(const FSSpec* inSpec) {
    return Share(inSpec->vRefNum, inSpec->parID, inSpec->name);
}

OSErr Unshare(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    HParamBlockRec block = AccessBlock(inVRefNum, inDirID, inName);
    return PBUnshareSync(&block);
}

OSErr FSpUnshare(const FSSpec* inSpec) {
    return Unshare(inSpec->vRefNum, inSpec->parID, inSpec->name);
}
