// What the catalog knows of one object.
#include "vantor/files/Catalog.h"

#include "vantor/files/CatalogEntry.h"

namespace {

OSErr ReadFolder(CatalogEntry* outEntry, FSVolumeRefNum inVRefNum, SInt32 inDirID,
                 ConstStr255Param inName) {
    const OSErr err = outEntry->Read(inVRefNum, inDirID, inName);
    return err == noErr && !outEntry->IsFolder() ? OSErr{dirNFErr} : err;
}

}  // namespace

OSErr GetDInfo(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName, DInfo* outInfo) {
    CatalogEntry entry;
    const OSErr err = ReadFolder(&entry, inVRefNum, inDirID, inName);
    if (err == noErr) *outInfo = entry.info.dirInfo.ioDrUsrWds;
    return err;
}

OSErr FSpGetDInfo(const FSSpec* inSpec, DInfo* outInfo) {
    return GetDInfo(inSpec->vRefNum, inSpec->parID, inSpec->name, outInfo);
}

OSErr SetDInfo(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
               const DInfo* inInfo) {
    CatalogEntry entry;
    const OSErr err = ReadFolder(&entry, inVRefNum, inDirID, inName);
    if (err != noErr) return err;
    entry.info.dirInfo.ioDrUsrWds = *inInfo;
    return entry.WriteBack(inDirID);
}

OSErr FSpSetDInfo(const FSSpec* inSpec, const DInfo* inInfo) {
    return SetDInfo(inSpec->vRefNum, inSpec->parID, inSpec->name, inInfo);
}

OSErr GetDirectoryID(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                     SInt32* outDirID, Boolean* outIsDirectory) {
    CatalogEntry entry;
    const OSErr err = entry.Read(inVRefNum, inDirID, inName);
    if (err != noErr) return err;
    *outIsDirectory = entry.IsFolder();
    *outDirID = entry.IsFolder() ? entry.info.dirInfo.ioDrDirID : entry.ParentID();
    return noErr;
}

OSErr FSpGetDirectoryID(const FSSpec* inSpec, SInt32* outDirID, Boolean* outIsDirectory) {
    return GetDirectoryID(inSpec->vRefNum, inSpec->parID, inSpec->name, outDirID, outIsDirectory);
}

OSErr GetIOACUser(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                  SInt8* outRights) {
    CatalogEntry entry;
    const OSErr err = ReadFolder(&entry, inVRefNum, inDirID, inName);
    if (err == noErr) *outRights = entry.info.dirInfo.ioACUser;
    return err;
}

OSErr FSpGetIOACUser(const FSSpec* inSpec, SInt8* outRights) {
    return GetIOACUser(inSpec->vRefNum, inSpec->parID, inSpec->name, outRights);
}

OSErr CheckObjectLock(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    CatalogEntry entry;
    const OSErr err = entry.Read(inVRefNum, inDirID, inName);
    return err == noErr && entry.IsLocked() ? OSErr{fLckdErr} : err;
}

OSErr FSpCheckObjectLock(const FSSpec* inSpec) {
    return CheckObjectLock(inSpec->vRefNum, inSpec->parID, inSpec->name);
}
