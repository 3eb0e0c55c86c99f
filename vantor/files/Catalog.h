// One file or folder: its Finder information, IDs, rights, lengths, lock; and making a file. Usable
// from C.
//
// An object is a directory on a volume and a name; a null or empty name is the directory itself.
// The forms that take a file spec do the same. Results are the File Manager's (nsvErr, dirNFErr,
// fnfErr ...); outputs are written only on success.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// A folder's first half of Finder information. dirNFErr for a file.
VANTOR_EXPORT OSErr GetDInfo(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                             DInfo* outInfo);
VANTOR_EXPORT OSErr FSpGetDInfo(const FSSpec* inSpec, DInfo* outInfo);
VANTOR_EXPORT OSErr SetDInfo(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                             const DInfo* inInfo);
VANTOR_EXPORT OSErr FSpSetDInfo(const FSSpec* inSpec, const DInfo* inInfo);

// A folder's own ID, or the ID of the folder that a file lies in.
VANTOR_EXPORT OSErr GetDirectoryID(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                   ConstStr255Param inName, SInt32* outDirID,
                                   Boolean* outIsDirectory);
VANTOR_EXPORT OSErr FSpGetDirectoryID(const FSSpec* inSpec, SInt32* outDirID,
                                      Boolean* outIsDirectory);

// What the user may not do in a folder, as the user... functions of VolumeParameters.h read it.
// dirNFErr for a file.
VANTOR_EXPORT OSErr GetIOACUser(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                SInt8* outRights);
VANTOR_EXPORT OSErr FSpGetIOACUser(const FSSpec* inSpec, SInt8* outRights);

// fLckdErr when the object is locked, noErr when not.
VANTOR_EXPORT OSErr CheckObjectLock(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                    ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpCheckObjectLock(const FSSpec* inSpec);

// The bytes in a file's forks. fnfErr for a folder.
VANTOR_EXPORT OSErr GetFileSize(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                SInt32* outDataLength, SInt32* outResourceLength);
VANTOR_EXPORT OSErr FSpGetFileSize(const FSSpec* inSpec, SInt32* outDataLength,
                                   SInt32* outResourceLength);

// Makes an empty file without type and creator. dupFNErr when there is such an object.
VANTOR_EXPORT OSErr HCreateMinimum(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                   ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpCreateMinimum(const FSSpec* inSpec);

// Fills `outItems` with what is in a folder, from the entry at `ioIndex` on (1 is the first, and
// never lower: paramErr), folders and files as wanted.
//   outCount  items filled
//   ioIndex   where to go on; the last entry that can be asked for is the 32767th
// noErr when `inCapacity` items were filled, fnfErr when the folder has no more, dirNFErr when it
// is no folder.
VANTOR_EXPORT OSErr GetDirItems(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                Boolean inFiles, Boolean inFolders, FSSpec* outItems,
                                SInt16 inCapacity, SInt16* outCount, SInt16* ioIndex);
VANTOR_EXPORT OSErr FSpGetDirItems(const FSSpec* inFolder, Boolean inFiles, Boolean inFolders,
                                   FSSpec* outItems, SInt16 inCapacity, SInt16* outCount,
                                   SInt16* ioIndex);

VANTOR_END_C
