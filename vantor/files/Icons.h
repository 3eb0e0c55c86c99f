// The icons of an application's documents, as a volume's desktop knows them. Usable from C.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// An icon for a creator's files of one type.
//   inVolumeName, inVRefNum  the volume, as in VolumeInfo.h
//   inIconType  kLargeIcon (256 bytes: bits and mask) to kSmall8BitIcon
//   outIcon     a new handle, the caller's; null when there is none
// afpItemNotFound when the desktop has no such icon; paramErr for another icon type, memFullErr. On
// a volume without a desktop database the desktop file is asked, where another icon type gives
// noErr and no icon.
VANTOR_EXPORT OSErr DTGetIcon(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                              SInt16 inIconType, OSType inCreator, OSType inFileType,
                              Handle* outIcon);

VANTOR_END_C
