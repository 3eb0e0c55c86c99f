// One object's catalog record, read by name and written back. For the functions of this folder.
#pragma once

#include <Carbon/Carbon.h>

struct CatalogEntry {
    CInfoPBRec info = {};
    Str255 itself = {};  // the name, where the caller gave none

    // Reads the object; for a null or empty name, the directory itself.
    OSErr Read(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName);
    // Reads the folder with an ID.
    OSErr ReadFolder(FSVolumeRefNum inVRefNum, SInt32 inDirID) {
        return Read(inVRefNum, inDirID, nullptr);
    }
    // Writes what was read, and changed since, back. `inDirID` as it was for reading.
    OSErr WriteBack(SInt32 inDirID);

    bool IsFolder() const { return (info.hFileInfo.ioFlAttrib & kioFlAttribDirMask) != 0; }
    bool IsLocked() const { return (info.hFileInfo.ioFlAttrib & kioFlAttribLockedMask) != 0; }
    SInt32 ParentID() const { return info.hFileInfo.ioFlParID; }
};
