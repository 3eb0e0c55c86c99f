// Icons from the desktop database.
#include "vantor/files/Icons.h"

#include "vantor/files/DesktopDatabase.h"
#include "vantor/files/DesktopFileIcons.h"

namespace {

// Bytes of each kind of icon; 0 for kinds that there are not.
Size SizeOf(SInt16 inIconType) {
    constexpr Size kSizes[] = {0,
                               kLargeIconSize,
                               kLarge4BitIconSize,
                               kLarge8BitIconSize,
                               kSmallIconSize,
                               kSmall4BitIconSize,
                               kSmall8BitIconSize};
    return inIconType >= kLargeIcon && inIconType <= kSmall8BitIcon ? kSizes[inIconType] : 0;
}

OSErr ReadIcon(SInt16 inDTRefNum, SInt16 inIconType, OSType inCreator, OSType inFileType,
               Handle inIcon) {
    DTPBRec block = {};
    block.ioDTRefNum = inDTRefNum;
    block.ioDTBuffer = *inIcon;
    block.ioDTReqCount = GetHandleSize(inIcon);
    block.ioIconType = UInt8(inIconType);
    block.ioFileCreator = inCreator;
    block.ioFileType = inFileType;
    HLock(inIcon);
    const OSErr err = PBDTGetIconSync(&block);
    HUnlock(inIcon);
    return err;
}

OSErr GetIconFromDatabase(SInt16 inDTRefNum, SInt16 inIconType, OSType inCreator, OSType inFileType,
                          Handle* outIcon) {
    const Size size = SizeOf(inIconType);
    if (size == 0) return paramErr;
    const Handle icon = NewHandle(size);
    if (icon == nullptr) return memFullErr;
    const OSErr err = ReadIcon(inDTRefNum, inIconType, inCreator, inFileType, icon);
    if (err == noErr)
        *outIcon = icon;
    else
        DisposeHandle(icon);
    return err;
}

}  // namespace

OSErr DTGetIcon(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt16 inIconType,
                OSType inCreator, OSType inFileType, Handle* outIcon) {
    *outIcon = nullptr;
    SInt16 desktop;
    Boolean isNew;
    if (DTOpen(inVolumeName, inVRefNum, &desktop, &isNew) != noErr) {
        return GetIconFromDesktopFile(inVolumeName, inVRefNum, inIconType, inCreator, inFileType,
                                      outIcon);
    }
    if (isNew) return afpItemNotFound;
    return GetIconFromDatabase(desktop, inIconType, inCreator, inFileType, outIcon);
}
