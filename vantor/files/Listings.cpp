// What is in a folder.
#include "vantor/files/Catalog.h"
#include "vantor/files/CatalogEntry.h"
#include "vantor/files/VolumeInfo.h"

namespace {

struct Folder {
    FSVolumeRefNum volume;
    SInt32 dirID;
};

OSErr FindFolderItself(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                       Folder* outFolder) {
    OSErr err = DetermineVRefNum(inName, inVRefNum, &outFolder->volume);
    if (err != noErr) return err;
    Boolean isFolder;
    err = GetDirectoryID(inVRefNum, inDirID, inName, &outFolder->dirID, &isFolder);
    return err == noErr && !isFolder ? OSErr{dirNFErr} : err;
}

// Reads the entry at an index as a file spec, and whether it is a folder.
OSErr ReadItem(const Folder& inFolder, SInt16 inIndex, FSSpec* outItem, bool* outIsFolder) {
    CInfoPBRec info = {};
    info.hFileInfo.ioNamePtr = outItem->name;
    info.hFileInfo.ioVRefNum = inFolder.volume;
    info.hFileInfo.ioDirID = inFolder.dirID;
    info.hFileInfo.ioFDirIndex = inIndex;
    const OSErr err = PBGetCatInfoSync(&info);
    if (err != noErr) return err;
    outItem->vRefNum = inFolder.volume;
    outItem->parID = info.hFileInfo.ioFlParID;
    *outIsFolder = (info.hFileInfo.ioFlAttrib & kioFlAttribDirMask) != 0;
    return noErr;
}

}  // namespace

OSErr GetDirItems(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                  Boolean inFiles, Boolean inFolders, FSSpec* outItems, SInt16 inCapacity,
                  SInt16* outCount, SInt16* ioIndex) {
    if (*ioIndex <= 0) return paramErr;
    Folder folder;
    OSErr err = FindFolderItself(inVRefNum, inDirID, inName, &folder);
    if (err != noErr) return err;
    *outCount = 0;
    while (*outCount < inCapacity) {
        if (*ioIndex <= 0) return paramErr;  // Kept: there is no number for the 32768th entry
        bool isFolder;
        err = ReadItem(folder, *ioIndex, &outItems[*outCount], &isFolder);
        if (err != noErr) break;
        *ioIndex = SInt16(*ioIndex + 1);
        if (isFolder ? inFolders : inFiles) ++*outCount;
    }
    return err;
}

OSErr FSpGetDirItems(const FSSpec* inFolder, Boolean inFiles, Boolean inFolders, FSSpec* outItems,
                     SInt16 inCapacity, SInt16* outCount, SInt16* ioIndex) {
    return GetDirItems(inFolder->vRefNum, inFolder->parID, inFolder->name, inFiles, inFolders,
                       outItems, inCapacity, outCount, ioIndex);
}
