// What the Finder keeps about a file or folder: type, creator, flags, place on the desktop.
//
// Each record has 16 bytes. In memory they are in the machine's byte order, on disk big-endian.
// A file's type and creator are 0 where nobody recorded any.
#ifndef CARBON_FINDER_H
#define CARBON_FINDER_H

#include <Carbon/MacTypes.h>

// Bits of fdFlags and frFlags.
enum {
    kIsOnDesk = 0x0001,
    kColor = 0x000E,  // a number from 0 to 7, shifted left by one
    kIsShared = 0x0040,
    kHasNoINITs = 0x0080,
    kHasBeenInited = 0x0100,
    kHasCustomIcon = 0x0400,
    kIsStationery = 0x0800,
    kNameLocked = 0x1000,
    kHasBundle = 0x2000,
    kIsInvisible = 0x4000,
    kIsAlias = 0x8000
};

// Bits of extendedFinderFlags. With the first one set, the others say nothing.
enum {
    kExtendedFlagsAreInvalid = 0x8000,
    kExtendedFlagHasCustomBadge = 0x0100,
    kExtendedFlagObjectIsBusy = 0x0080,
    kExtendedFlagHasRoutingInfo = 0x0004
};

#pragma pack(push, 2)

struct FInfo {
    OSType fdType;
    OSType fdCreator;
    UInt16 fdFlags;
    Point fdLocation;
    SInt16 fdFldr;
};
typedef struct FInfo FInfo;

// The file's further half; fdScript and fdXFlags are the two halves of extendedFinderFlags.
struct FXInfo {
    SInt16 fdIconID;
    SInt16 fdReserved[3];
    SInt8 fdScript;
    SInt8 fdXFlags;
    SInt16 fdComment;
    SInt32 fdPutAway;  // a directory ID
};
typedef struct FXInfo FXInfo;

struct DInfo {
    Rect frRect;
    UInt16 frFlags;
    Point frLocation;
    SInt16 frView;
};
typedef struct DInfo DInfo;

struct DXInfo {
    Point frScroll;
    SInt32 frOpenChain;
    SInt8 frScript;
    SInt8 frXFlags;
    SInt16 frComment;
    SInt32 frPutAway;  // a directory ID
};
typedef struct DXInfo DXInfo;

// The same bytes under newer names.
struct FileInfo {
    OSType fileType;
    OSType fileCreator;
    UInt16 finderFlags;
    Point location;
    UInt16 reservedField;
};
typedef struct FileInfo FileInfo;

struct FolderInfo {
    Rect windowBounds;
    UInt16 finderFlags;
    Point location;
    UInt16 reservedField;
};
typedef struct FolderInfo FolderInfo;

struct ExtendedFileInfo {
    SInt16 reserved1[4];
    UInt16 extendedFinderFlags;
    SInt16 reserved2;
    SInt32 putAwayFolderID;
};
typedef struct ExtendedFileInfo ExtendedFileInfo;

struct ExtendedFolderInfo {
    Point scrollPosition;
    SInt32 reserved1;
    UInt16 extendedFinderFlags;
    SInt16 reserved2;
    SInt32 putAwayFolderID;
};
typedef struct ExtendedFolderInfo ExtendedFolderInfo;

#pragma pack(pop)

#endif
