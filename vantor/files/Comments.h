// What the Finder shows as an object's comment. Usable from C.
//
// Objects as in Catalog.h. Results are the File Manager's and the Desktop Manager's.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Sets the comment; of more than 200 characters the first 200. paramErr on a volume without a
// desktop database.
VANTOR_EXPORT OSErr DTSetComment(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                 ConstStr255Param inComment);
VANTOR_EXPORT OSErr FSpDTSetComment(const FSSpec* inSpec, ConstStr255Param inComment);

// Gets the comment (a Str255), from the desktop database or the desktop file. afpItemNotFound, and
// an empty comment, when there is none; paramErr for a null `outComment`.
VANTOR_EXPORT OSErr DTGetComment(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                 StringPtr outComment);
VANTOR_EXPORT OSErr FSpDTGetComment(const FSSpec* inSpec, StringPtr outComment);

// Gives one object's comment to another. An empty one is not copied.
VANTOR_EXPORT OSErr DTCopyComment(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                                  ConstStr255Param inSourceName,
                                  FSVolumeRefNum inDestinationVRefNum, SInt32 inDestinationDirID,
                                  ConstStr255Param inDestinationName);
VANTOR_EXPORT OSErr FSpDTCopyComment(const FSSpec* inSource, const FSSpec* inDestination);

VANTOR_END_C
