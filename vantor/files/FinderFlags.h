// Finder flags, type and creator, modification dates: changing them so that the Finder notices.
// Usable from C.
//
// An object is a directory on a volume and a name; a null or empty name is the directory itself.
// After a change the parent folder's modification date moves on, except for a volume's root.
// Results are the File Manager's.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Sets or clears `inBits` (kIsInvisible ...) in the object's Finder flags.
VANTOR_EXPORT OSErr ChangeFDFlags(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                  Boolean inSet, UInt16 inBits);
VANTOR_EXPORT OSErr FSpChangeFDFlags(const FSSpec* inSpec, Boolean inSet, UInt16 inBits);

// One flag each.
VANTOR_EXPORT OSErr SetIsInvisible(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                   ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpSetIsInvisible(const FSSpec* inSpec);
VANTOR_EXPORT OSErr ClearIsInvisible(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                     ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpClearIsInvisible(const FSSpec* inSpec);
VANTOR_EXPORT OSErr SetNameLocked(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                  ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpSetNameLocked(const FSSpec* inSpec);
VANTOR_EXPORT OSErr ClearNameLocked(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                    ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpClearNameLocked(const FSSpec* inSpec);
VANTOR_EXPORT OSErr SetIsStationery(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                    ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpSetIsStationery(const FSSpec* inSpec);
VANTOR_EXPORT OSErr ClearIsStationery(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                      ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpClearIsStationery(const FSSpec* inSpec);
VANTOR_EXPORT OSErr SetHasCustomIcon(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                     ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpSetHasCustomIcon(const FSSpec* inSpec);
VANTOR_EXPORT OSErr ClearHasCustomIcon(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                       ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpClearHasCustomIcon(const FSSpec* inSpec);
VANTOR_EXPORT OSErr ClearHasBeenInited(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                       ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpClearHasBeenInited(const FSSpec* inSpec);

// Sets a file's creator and type; 0 leaves one as it is. The name must be there. notAFileErr for a
// folder.
VANTOR_EXPORT OSErr ChangeCreatorType(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                      ConstStr255Param inName, OSType inCreator, OSType inType);
VANTOR_EXPORT OSErr FSpChangeCreatorType(const FSSpec* inSpec, OSType inCreator, OSType inType);

// Sets the object's modification date to now, or a second later when it is that already.
VANTOR_EXPORT OSErr BumpDate(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpBumpDate(const FSSpec* inSpec);

VANTOR_END_C
