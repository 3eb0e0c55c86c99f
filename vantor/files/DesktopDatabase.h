// Asking one volume for an application by its creator. Usable from C.
//
// The volume is named by a path or name that begins with it (may be null) and a volume reference
// number. -5012 (afpItemNotFound) says that there is no such application, other codes are the
// platform's. Nothing here throws.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Opens the desktop database of a volume.
//   outDTRefNum  for desktop calls only; written also when opening failed
//   outIsNew     true when the database was made just now and holds nothing
// Returns paramErr for a volume that has none: its desktop file is to be asked instead.
VANTOR_EXPORT OSErr DTOpen(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                           SInt16* outDTRefNum, Boolean* outIsNew);

// Finds an application of type 'APPL': in the desktop database (entries whose file is gone or has
// changed are passed over), in the desktop file of a volume without a database, and last, if
// `inSearchCatalog` says so, among all files of the volume.
//   outVRefNum   always a real volume reference number
//   outName      256 bytes
// After -5012 the outputs may name a file that was looked at and turned down. -39 (eofErr), which
// the search among all files may end with, comes with a file that is good.
VANTOR_EXPORT OSErr DTXGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                               OSType inCreator, Boolean inSearchCatalog,
                               FSVolumeRefNum* outVRefNum, SInt32* outParID, StringPtr outName);
// The same, always searching the catalog if need be.
VANTOR_EXPORT OSErr DTGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                              OSType inCreator, FSVolumeRefNum* outVRefNum, SInt32* outParID,
                              StringPtr outName);

// Both, with the answer as a file spec.
VANTOR_EXPORT OSErr FSpDTXGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                                  OSType inCreator, Boolean inSearchCatalog, FSSpec* outSpec);
VANTOR_EXPORT OSErr FSpDTGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                                 OSType inCreator, FSSpec* outSpec);

VANTOR_END_C
