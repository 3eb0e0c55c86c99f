// Icons in the desktop file. For the functions of this folder.
#pragma once

#include <Carbon/Carbon.h>

// An icon for a creator's files of one type, as a new handle; null when there is none. Returns
// memFullErr, or afpItemNotFound for whatever else went wrong.
OSErr GetIconFromDesktopFile(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                             SInt16 inIconType, OSType inCreator, OSType inFileType,
                             Handle* outIcon);
