// Deleting a folder with all there is in it. Usable from C.
//
// The folder is named by a volume, a directory ID and a name or path below it; null or empty stands
// for the directory itself. Locked files are unlocked and deleted. Deletion stops at the first
// error, which is returned, with what was deleted by then gone. Nothing here throws.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Empties the folder and keeps it. Returns dirNFErr when the name is that of a file.
VANTOR_EXPORT OSErr DeleteDirectoryContents(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                            ConstStr255Param inName);
// Deletes the folder too.
VANTOR_EXPORT OSErr DeleteDirectory(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                    ConstStr255Param inName);

VANTOR_END_C
