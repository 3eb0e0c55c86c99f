// Searching all files of a volume. Usable from C.
//
// Results are the File Manager's codes: noErr when the search stopped for a full array and may be
// continued, eofErr when all was searched (the matches found are valid), catChangedErr when a
// continued search met a changed catalog. One search at a time: positions are kept here. Nothing
// here throws.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// PBCatSearchSync for every volume: one without that call is walked through, folder by folder. Such
// a position is good for this process only, until the next search begins.
VANTOR_EXPORT OSErr PBCatSearchSyncCompat(CSParamPtr ioBlock);

// The files of a volume with a name, or with `inPartial` those whose name contains it, without
// regard to case.
//   inVolName  a path or name that begins with the volume; may be null
//   outFiles   room for `inRequested`
//   outFound   0 after errors
//   inNew      false goes on where the last call on this volume stopped
VANTOR_EXPORT OSErr NameFileSearch(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                                   ConstStr255Param inFileName, FSSpecPtr outFiles,
                                   SInt32 inRequested, SInt32* outFound, Boolean inNew,
                                   Boolean inPartial);

// The files of a volume with this creator and type; 0 for any. The rest as above, with a position
// of its own.
VANTOR_EXPORT OSErr CreatorTypeFileSearch(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                                          OSType inCreator, OSType inFileType, FSSpecPtr outFiles,
                                          SInt32 inRequested, SInt32* outFound, Boolean inNew);

VANTOR_END_C
