// Reading and writing one catalog record.
#include "vantor/files/CatalogEntry.h"

OSErr CatalogEntry::Read(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    const bool named = inName != nullptr && inName[0] != 0;
    itself[0] = 0;
    info = {};  // a local file system leaves the access rights as they are: none denied
    info.hFileInfo.ioNamePtr = named ? const_cast<StringPtr>(inName) : itself;
    info.hFileInfo.ioFDirIndex = named ? SInt16{0} : SInt16{-1};
    info.hFileInfo.ioVRefNum = inVRefNum;
    info.hFileInfo.ioDirID = inDirID;
    return PBGetCatInfoSync(&info);
}

OSErr CatalogEntry::WriteBack(SInt32 inDirID) {
    info.hFileInfo.ioDirID = info.hFileInfo.ioNamePtr == itself ? ParentID() : inDirID;
    return PBSetCatInfoSync(&info);
}
