// Changing Finder information and dates.
#include "vantor/files/FinderFlags.h"

#include "vantor/files/CatalogEntry.h"
#include "vantor/files/VolumeInfo.h"

namespace {

// A folder whose date changed is looked at again by the Finder.
OSErr BumpParent(FSVolumeRefNum inVRefNum, ConstStr255Param inName, SInt32 inParentID) {
    if (inParentID == fsRtParID) return noErr;
    FSVolumeRefNum volume;
    const OSErr err = DetermineVRefNum(inName, inVRefNum, &volume);
    return err == noErr ? BumpDate(volume, inParentID, nullptr) : err;
}

UInt16 Changed(UInt16 inFlags, Boolean inSet, UInt16 inBits) {
    return UInt16(inSet ? inFlags | inBits : inFlags & ~inBits);
}

// By its name, also where that is missing.
OSErr ReadNamed(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                CInfoPBRec* outInfo) {
    *outInfo = {};
    outInfo->hFileInfo.ioNamePtr = const_cast<StringPtr>(inName);
    outInfo->hFileInfo.ioVRefNum = inVRefNum;
    outInfo->hFileInfo.ioDirID = inDirID;
    return PBGetCatInfoSync(outInfo);
}

void ChangeSignature(FInfo* ioInfo, OSType inCreator, OSType inType) {
    if (inCreator != 0) ioInfo->fdCreator = inCreator;
    if (inType != 0) ioInfo->fdType = inType;
}

// Now, or a second later when that would be no change.
UInt32 NextDate(UInt32 inDate) {
    UInt32 now;
    GetDateTime(&now);
    return now == inDate ? now + 1 : now;
}

}  // namespace

OSErr ChangeFDFlags(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                    Boolean inSet, UInt16 inBits) {
    CatalogEntry entry;
    OSErr err = entry.Read(inVRefNum, inDirID, inName);
    if (err != noErr) return err;
    const SInt32 parentID = entry.ParentID();
    FInfo* const info =
        &entry.info.hFileInfo.ioFlFndrInfo;  // a folder's flags are in the same place
    info->fdFlags = Changed(info->fdFlags, inSet, inBits);
    err = entry.WriteBack(inDirID);
    return err == noErr ? BumpParent(inVRefNum, inName, parentID) : err;
}

OSErr FSpChangeFDFlags(const FSSpec* inSpec, Boolean inSet, UInt16 inBits) {
    return ChangeFDFlags(inSpec->vRefNum, inSpec->parID, inSpec->name, inSet, inBits);
}

OSErr ChangeCreatorType(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                        OSType inCreator, OSType inType) {
    CInfoPBRec info;
    OSErr err = ReadNamed(inVRefNum, inDirID, inName, &info);
    if (err != noErr) return err;
    if (info.hFileInfo.ioFlAttrib & kioFlAttribDirMask) return notAFileErr;
    const SInt32 parentID = info.hFileInfo.ioFlParID;
    ChangeSignature(&info.hFileInfo.ioFlFndrInfo, inCreator, inType);
    info.hFileInfo.ioDirID = inDirID;
    err = PBSetCatInfoSync(&info);
    return err == noErr ? BumpParent(inVRefNum, inName, parentID) : err;
}

OSErr FSpChangeCreatorType(const FSSpec* inSpec, OSType inCreator, OSType inType) {
    return ChangeCreatorType(inSpec->vRefNum, inSpec->parID, inSpec->name, inCreator, inType);
}

OSErr BumpDate(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    CatalogEntry entry;
    const OSErr err = entry.Read(inVRefNum, inDirID, inName);
    if (err != noErr) return err;
    HFileInfo* const info = &entry.info.hFileInfo;  // a folder's date is in the same place
    info->ioFlMdDat = NextDate(info->ioFlMdDat);
    return entry.WriteBack(inDirID);
}

OSErr FSpBumpDate(const FSSpec* inSpec) {
    return BumpDate(inSpec->vRefNum, inSpec->parID, inSpec->name);
}
