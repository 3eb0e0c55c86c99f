// Moving an object to another folder of its volume, under another name. Usable from C.
//
// The destination is a directory and a path from there to the folder; the path may be null. Results
// are the File Manager's.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// In one call, on volumes that have it. paramErr where they have not.
VANTOR_EXPORT OSErr HMoveRename(FSVolumeRefNum inVRefNum, SInt32 inSourceDirID,
                                ConstStr255Param inSourceName, SInt32 inDestinationDirID,
                                ConstStr255Param inDestinationPath, ConstStr255Param inNewName);
VANTOR_EXPORT OSErr FSpMoveRename(const FSSpec* inSource, const FSSpec* inDestination,
                                  ConstStr255Param inNewName);

// On every volume: where there is no such call, by way of a folder among the temporary items. When
// it fails the object is where it was, with its old name.
//   inNewName  null: only move
VANTOR_EXPORT OSErr HMoveRenameCompat(FSVolumeRefNum inVRefNum, SInt32 inSourceDirID,
                                      ConstStr255Param inSourceName, SInt32 inDestinationDirID,
                                      ConstStr255Param inDestinationPath,
                                      ConstStr255Param inNewName);
// diffVolErr when the two are not on one volume.
VANTOR_EXPORT OSErr FSpMoveRenameCompat(const FSSpec* inSource, const FSSpec* inDestination,
                                        ConstStr255Param inNewName);

VANTOR_END_C
