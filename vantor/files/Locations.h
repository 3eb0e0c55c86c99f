// Where a file or folder is: names, parents, paths. Usable from C.
//
// Names come out in a Str63, or a Str255 where a path is taken apart. Results are the File
// Manager's.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// The name of the folder with an ID. paramErr for a null `outName`.
VANTOR_EXPORT OSErr GetDirName(FSVolumeRefNum inVRefNum, SInt32 inDirID, StringPtr outName);

// The ID of the folder that holds an object, also where the path to it climbs ("::").
VANTOR_EXPORT OSErr GetParentID(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                SInt32* outParentID);

// The last name of a path; one colon at its end is passed over. notAFileErr, and an empty name,
// when it ends in none: an empty path, a volume's name ("Disk:"), a path that climbs at the end
// ("A::").
VANTOR_EXPORT OSErr GetFilenameFromPathname(ConstStr255Param inPath, StringPtr outName);

// Finds an object: its volume's own number, the folder that holds it, its name.
//   inPath  from the directory, or a full one; empty or null: the directory itself
// fnfErr when it is missing but could be made there: the outputs say where, as no directory.
// dirNFErr when the folder is missing too. The volume, the parent and the name are written always;
// 0 and empty where unknown.
VANTOR_EXPORT OSErr GetObjectLocation(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                      ConstStr255Param inPath, FSVolumeRefNum* outVRefNum,
                                      SInt32* outParentID, StringPtr outName,
                                      Boolean* outIsDirectory);

// The file an open fork belongs to. rfNumErr for a number that is no open fork's.
VANTOR_EXPORT OSErr GetFileLocation(SInt16 inRefNum, FSVolumeRefNum* outVRefNum,
                                    SInt32* outParentID, StringPtr outName);
VANTOR_EXPORT OSErr FSpGetFileLocation(SInt16 inRefNum, FSSpec* outSpec);

// Copies at most `inMaximum` characters, never half of a character of two bytes in the current
// script. Source and destination may be the same buffer; null ones are left alone.
VANTOR_EXPORT void TruncPString(StringPtr outDestination, ConstStr255Param inSource,
                                SInt16 inMaximum);

VANTOR_END_C
