// Copying attributes and rights.
#include "vantor/files/Attributes.h"

#include "vantor/files/CatalogEntry.h"
#include "vantor/files/Sharing.h"
#include "vantor/files/VolumeInfo.h"
#include "vantor/files/VolumeParameters.h"

namespace {

constexpr SInt32 kParmsSize = 32;

StringPtr NameOrItself(ConstStr255Param inName) {
    return inName != nullptr && inName[0] != 0 ? const_cast<StringPtr>(inName) : nullptr;
}

OSErr Lock(FSVolumeRefNum inVRefNum, SInt32 inDirID, StringPtr inName) {
    HParamBlockRec block = {};
    block.fileParam.ioNamePtr = inName;
    block.fileParam.ioVRefNum = inVRefNum;
    block.fileParam.ioDirID = inDirID;
    return PBHSetFLockSync(&block);
}

void ForgetPlace(FInfo* ioInfo) {
    ioInfo->fdFlags = UInt16(ioInfo->fdFlags & ~kHasBeenInited);
}

OSErr ReadParms(FSVolumeRefNum inVRefNum, ConstStr255Param inName,
                GetVolParmsInfoBuffer* outParms) {
    *outParms = {};
    SInt32 size = kParmsSize;
    return HGetVolParms(inName, inVRefNum, outParms, &size);
}

bool SameServer(const GetVolParmsInfoBuffer& inSource, const GetVolParmsInfoBuffer& inOther) {
    return hasAccessCntl(&inSource) &&
           GetVolParmsInfoServerAdr(&inSource) == GetVolParmsInfoServerAdr(&inOther);
}

}  // namespace

OSErr CopyFileMgrAttributes(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                            ConstStr255Param inSourceName, FSVolumeRefNum inDestinationVRefNum,
                            SInt32 inDestinationDirID, ConstStr255Param inDestinationName,
                            Boolean inCopyLock) {
    CatalogEntry entry;
    OSErr err = entry.Read(inSourceVRefNum, inSourceDirID, inSourceName);
    if (err != noErr) return err;
    const bool isFolder = entry.IsFolder(), lock = inCopyLock && entry.IsLocked();
    const StringPtr name = NameOrItself(inDestinationName);
    entry.info.hFileInfo.ioVRefNum = inDestinationVRefNum;
    entry.info.hFileInfo.ioDirID = inDestinationDirID;
    entry.info.hFileInfo.ioNamePtr = name;
    ForgetPlace(&entry.info.hFileInfo.ioFlFndrInfo);
    err = PBSetCatInfoSync(&entry.info);
    if (err != noErr || !lock) return err;
    err = Lock(inDestinationVRefNum, inDestinationDirID, name);
    return isFolder ? OSErr{noErr} : err;  // not every volume can lock folders
}

OSErr FSpCopyFileMgrAttributes(const FSSpec* inSource, const FSSpec* inDestination,
                               Boolean inCopyLock) {
    return CopyFileMgrAttributes(inSource->vRefNum, inSource->parID, inSource->name,
                                 inDestination->vRefNum, inDestination->parID, inDestination->name,
                                 inCopyLock);
}

OSErr CopyDirectoryAccess(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                          ConstStr255Param inSourceName, FSVolumeRefNum inDestinationVRefNum,
                          SInt32 inDestinationDirID, ConstStr255Param inDestinationName) {
    GetVolParmsInfoBuffer source, destination;
    OSErr err = ReadParms(inDestinationVRefNum, inDestinationName, &destination);
    if (err != noErr || !hasAccessCntl(&destination)) return err;
    err = ReadParms(inSourceVRefNum, inSourceName, &source);
    if (err != noErr) return err;
    if (!SameServer(source, destination)) return paramErr;
    SInt32 owner, group, rights;
    err = HGetDirAccess(inSourceVRefNum, inSourceDirID, inSourceName, &owner, &group, &rights);
    if (err != noErr) return err;
    return HSetDirAccess(inDestinationVRefNum, inDestinationDirID, inDestinationName, owner, group,
                         rights);
}

OSErr FSpCopyDirectoryAccess(const FSSpec* inSource, const FSSpec* inDestination) {
    return CopyDirectoryAccess(inSource->vRefNum, inSource->parID, inSource->name,
                               inDestination->vRefNum, inDestination->parID, inDestination->name);
}
