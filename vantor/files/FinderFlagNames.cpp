// The Finder flags by their names.
#include "vantor/files/FinderFlags.h"

OSErr SetIsInvisible(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, true, kIsInvisible);
}

OSErr FSpSetIsInvisible(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, true, kIsInvisible);
}

OSErr ClearIsInvisible(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, false, kIsInvisible);
}

OSErr FSpClearIsInvisible(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, false, kIsInvisible);
}

OSErr SetNameLocked(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, true, kNameLocked);
}

OSErr FSpSetNameLocked(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, true, kNameLocked);
}

OSErr ClearNameLocked(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, false, kNameLocked);
}

OSErr FSpClearNameLocked(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, false, kNameLocked);
}

OSErr SetIsStationery(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, true, kIsStationery);
}

OSErr FSpSetIsStationery(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, true, kIsStationery);
}

OSErr ClearIsStationery(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, false, kIsStationery);
}

OSErr FSpClearIsStationery(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, false, kIsStationery);
}

OSErr SetHasCustomIcon(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, true, kHasCustomIcon);
}

OSErr FSpSetHasCustomIcon(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, true, kHasCustomIcon);
}

OSErr ClearHasCustomIcon(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, false, kHasCustomIcon);
}

OSErr FSpClearHasCustomIcon(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, false, kHasCustomIcon);
}

OSErr ClearHasBeenInited(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    return ChangeFDFlags(inVRefNum, inDirID, inName, false, kHasBeenInited);
}

OSErr FSpClearHasBeenInited(const FSSpec* inSpec) {
    return FSpChangeFDFlags(inSpec, false, kHasBeenInited);
}
