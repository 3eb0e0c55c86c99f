// File IDs, which find a file again after a rename, and exchanging two files' contents. Usable from
// C.
//
// Volumes as in VolumeInfo.h. Each is one call of the File Manager, with its results.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Gives a file an ID. fidExists when it had one, which is told all the same; notAFileErr for a
// folder.
VANTOR_EXPORT OSErr CreateFileIDRef(FSVolumeRefNum inVRefNum, SInt32 inParentID,
                                    ConstStr255Param inName, SInt32* outFileID);
VANTOR_EXPORT OSErr FSpCreateFileIDRef(const FSSpec* inSpec, SInt32* outFileID);

// The folder and name of the file with an ID. `outName` (a Str63) may be null. fidNotFound.
VANTOR_EXPORT OSErr ResolveFileIDRef(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                                     SInt32 inFileID, SInt32* outParentID, StringPtr outName);
// The same as a file spec, with the volume's own number.
VANTOR_EXPORT OSErr FSpResolveFileIDRef(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                                        SInt32 inFileID, FSSpec* outSpec);

VANTOR_EXPORT OSErr DeleteFileIDRef(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                                    SInt32 inFileID);

// Exchanges the contents of two files of one volume; names and IDs stay.
VANTOR_EXPORT OSErr ExchangeFiles(FSVolumeRefNum inVRefNum, SInt32 inSourceDirID,
                                  ConstStr255Param inSourceName, SInt32 inDestinationDirID,
                                  ConstStr255Param inDestinationName);

VANTOR_END_C
