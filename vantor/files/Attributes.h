// Carrying what the catalog knows of an object, and the rights on a folder, over to another one.
// Usable from C.
//
// Objects and volumes as in Catalog.h; results are the File Manager's.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Gives the destination the source's dates and Finder information; the Finder will find it a place.
//   inCopyLock  locks the destination when the source is locked. A folder that cannot be locked is
//               no error
VANTOR_EXPORT OSErr CopyFileMgrAttributes(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                                          ConstStr255Param inSourceName,
                                          FSVolumeRefNum inDestinationVRefNum,
                                          SInt32 inDestinationDirID,
                                          ConstStr255Param inDestinationName, Boolean inCopyLock);
VANTOR_EXPORT OSErr FSpCopyFileMgrAttributes(const FSSpec* inSource, const FSSpec* inDestination,
                                             Boolean inCopyLock);

// Gives a folder the owner, group and rights of another one on the same server. Nothing to do, and
// noErr, where the destination's volume has no such rights; paramErr where only the source's has
// none or it is elsewhere.
VANTOR_EXPORT OSErr CopyDirectoryAccess(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                                        ConstStr255Param inSourceName,
                                        FSVolumeRefNum inDestinationVRefNum,
                                        SInt32 inDestinationDirID,
                                        ConstStr255Param inDestinationName);
VANTOR_EXPORT OSErr FSpCopyDirectoryAccess(const FSSpec* inSource, const FSSpec* inDestination);

VANTOR_END_C
