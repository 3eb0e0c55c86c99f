// Deleting folders from the inside out.
#include "vantor/files/DirectoryDeletion.h"

#include "vantor/files/Catalog.h"
#include "vantor/files/VolumeInfo.h"

namespace {

OSErr Unlock(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    HParamBlockRec block = {};
    block.fileParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.fileParam.ioVRefNum = inVRefNum;
    block.fileParam.ioDirID = inDirID;
    return PBHRstFLockSync(&block);
}

OSErr DeleteUnlocking(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    const OSErr err = HDelete(inVRefNum, inDirID, inName);
    if (err != fLckdErr) return err;
    const OSErr unlockErr = Unlock(inVRefNum, inDirID, inName);
    return unlockErr != noErr ? unlockErr : HDelete(inVRefNum, inDirID, inName);
}

OSErr DeleteLevel(FSVolumeRefNum inVRefNum, SInt32 inDirID);

// The first item is always the next one: those before it are gone.
OSErr DeleteFirstItem(FSVolumeRefNum inVRefNum, SInt32 inDirID) {
    Str255 name;
    CInfoPBRec item = {};
    item.hFileInfo.ioNamePtr = name;
    item.hFileInfo.ioVRefNum = inVRefNum;
    item.hFileInfo.ioFDirIndex = 1;
    item.hFileInfo.ioDirID = inDirID;
    OSErr err = PBGetCatInfoSync(&item);
    if (err != noErr) return err;
    if (!(item.hFileInfo.ioFlAttrib & kioFlAttribDirMask))
        return DeleteUnlocking(inVRefNum, inDirID, name);
    const SInt32 folder = item.dirInfo.ioDrDirID;
    err = DeleteLevel(inVRefNum, folder);
    return err != noErr ? err : DeleteUnlocking(inVRefNum, folder, nullptr);
}

OSErr DeleteLevel(FSVolumeRefNum inVRefNum, SInt32 inDirID) {
    OSErr err;
    do {
        err = DeleteFirstItem(inVRefNum, inDirID);
    } while (err == noErr);
    return err == fnfErr ? OSErr{noErr} : err;  // nothing left
}

}  // namespace

OSErr DeleteDirectoryContents(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    SInt32 folder = 0;
    Boolean isFolder = false;
    OSErr err = GetDirectoryID(inVRefNum, inDirID, inName, &folder, &isFolder);
    if (err != noErr) return err;
    if (!isFolder) return dirNFErr;
    FSVolumeRefNum volume;
    err = DetermineVRefNum(inName, inVRefNum, &volume);
    return err != noErr ? err : DeleteLevel(volume, folder);
}

OSErr DeleteDirectory(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    const OSErr err = DeleteDirectoryContents(inVRefNum, inDirID, inName);
    return err != noErr ? err : DeleteUnlocking(inVRefNum, inDirID, inName);
}
