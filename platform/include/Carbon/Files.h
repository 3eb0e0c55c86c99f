// Files and folders by volume, directory and name (FSSpec) or by reference (FSRef).
//
// Volumes have negative numbers from -100 downward, which stay with a volume for good. Directories
// have a number on their volume that is never given to another one: 2 is the volume's root, 1 the
// parent that the root is said to have. Both mean the same in every process of a user, so a spec or
// a reference may travel in an event.
//
// Names are MacRoman, at most 63 characters, ':' never among them ('/' is an ordinary character and
// stands for a ':' on disk). A name on disk that does not fit (too long, in another script, not
// valid UTF-8) shows as its beginning, '#', a number in hexadecimal and its extension; that form
// names the same file in every process. Where names on disk differ only in case, each is reached by
// its exact spelling; a spelling that is none of them finds one that differs in case alone.
//
// Symbolic links are objects of their own here, except to FSPathMakeRef, which follows them.
#ifndef CARBON_FILES_H
#define CARBON_FILES_H

#include <Carbon/Finder.h>
#include <Carbon/MacTypes.h>
#include <Carbon/TextCommon.h>
#include <Carbon/UTCUtils.h>

typedef SInt16 FSVolumeRefNum;

// Never the number of a volume; stands for the default volume.
enum { kFSInvalidVolumeRefNum = 0 };

// Directory IDs: the pretended parent of every volume's root, and the root.
enum { fsRtParID = 1, fsRtDirID = 2 };

#pragma pack(push, 2)

// A file or folder by its directory and name. In the machine's byte order, in descriptors
// big-endian. A volume's root is {its number, fsRtParID, the volume's name}.
struct FSSpec {
    FSVolumeRefNum vRefNum;
    SInt32 parID;  // a directory ID
    StrFileName name;
};
typedef struct FSSpec FSSpec;
typedef FSSpec* FSSpecPtr;
typedef FSSpecPtr* FSSpecHandle;
typedef const FSSpec* ConstFSSpecPtr;

// An existing file or folder. The bytes mean nothing to a caller: compare with FSCompareFSRefs.
// Holds while the computer runs, also after a rename.
struct FSRef {
    UInt8 hidden[80];
};
typedef struct FSRef FSRef;
typedef FSRef* FSRefPtr;

// A name in UTF-16, in the machine's byte order; ':' and '/' as in an FSSpec.
struct HFSUniStr255 {
    UInt16 length;  // units in use
    UniChar unicode[255];
};
typedef struct HFSUniStr255 HFSUniStr255;
typedef const HFSUniStr255* ConstHFSUniStr255Param;

// What FSGetCatalogInfo tells; only the fields asked for are filled. Sizes are bytes.
struct FSCatalogInfo {
    UInt16 nodeFlags;
    FSVolumeRefNum volume;
    UInt32 parentDirID;
    UInt32 nodeID;  // a folder's directory ID; for a file a number that is no directory ID
    UInt8 sharingFlags;
    UInt8 userPrivileges;  // what the user may not do: bit 0 see folders, 1 see files, 2 change
    UInt8 reserved1;
    UInt8 reserved2;
    UTCDateTime createDate;
    UTCDateTime contentModDate;
    UTCDateTime attributeModDate;
    UTCDateTime accessDate;
    UTCDateTime backupDate;   // zero when never backed up
    UInt32 permissions[4];    // user ID; group ID; a zero byte, the user's access (read 4, write 2,
                              // execute 1) as a byte, the mode as a UInt16; 0
    UInt8 finderInfo[16];     // an FInfo or a DInfo
    UInt8 extFinderInfo[16];  // an FXInfo or a DXInfo
    UInt64 dataLogicalSize;
    UInt64 dataPhysicalSize;
    UInt64 rsrcLogicalSize;
    UInt64 rsrcPhysicalSize;
    UInt32 valence;  // entries directly in a folder, 0 for a file
    TextEncoding textEncodingHint;
};
typedef struct FSCatalogInfo FSCatalogInfo;
typedef FSCatalogInfo* FSCatalogInfoPtr;

#pragma pack(pop)

// Bits of nodeFlags.
enum {
    kFSNodeLockedBit = 0,
    kFSNodeLockedMask = 0x0001,
    kFSNodeIsDirectoryBit = 4,
    kFSNodeIsDirectoryMask = 0x0010,
    kFSNodeHardLinkBit = 8,
    kFSNodeHardLinkMask = 0x0100
};

// Which fields of an FSCatalogInfo are meant.
typedef UInt32 FSCatalogInfoBitmap;
enum {
    kFSCatInfoNone = 0x00000000,
    kFSCatInfoTextEncoding = 0x00000001,
    kFSCatInfoNodeFlags = 0x00000002,
    kFSCatInfoVolume = 0x00000004,
    kFSCatInfoParentDirID = 0x00000008,
    kFSCatInfoNodeID = 0x00000010,
    kFSCatInfoCreateDate = 0x00000020,
    kFSCatInfoContentMod = 0x00000040,
    kFSCatInfoAttrMod = 0x00000080,
    kFSCatInfoAccessDate = 0x00000100,
    kFSCatInfoBackupDate = 0x00000200,
    kFSCatInfoPermissions = 0x00000400,
    kFSCatInfoFinderInfo = 0x00000800,
    kFSCatInfoFinderXInfo = 0x00001000,
    kFSCatInfoValence = 0x00002000,
    kFSCatInfoDataSizes = 0x00004000,
    kFSCatInfoRsrcSizes = 0x00008000,
    kFSCatInfoSharingFlags = 0x00010000,
    kFSCatInfoUserPrivs = 0x00020000,
    kFSCatInfoUserAccess = 0x00080000,
    kFSCatInfoAllDates = 0x000003E0,
    kFSCatInfoGettableInfo = 0x0003FFFF
};

PLATFORM_DECLARATIONS_BEGIN

// Makes the file spec of the object that a volume, a directory and a name or path lead to.
//   vRefNum   the volume; 0 for the default one
//   dirID     a directory on it; 0 for its root (with vRefNum 0 too: for the default directory)
//   fileName  a name; ":Folder:File" below the directory; "Disk:Folder:File", which overrides both
//             numbers; each further colon in a run goes up one folder. Empty or null: the directory
//             itself
// Returns noErr when the object exists, its name spelled as on disk; fnfErr when only the last part
// is missing, the file spec then being good for creating it. After nsvErr (no such volume),
// dirNFErr (a folder on the way is missing), bdNamErr (malformed) and every other code the file
// spec is all zero.
OSErr FSMakeFSSpec(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, FSSpec* spec);

// Makes the reference of an existing object. Returns nsvErr, dirNFErr, fnfErr.
OSErr FSpMakeFSRef(const FSSpec* source, FSRef* newRef);

// Makes the reference of the object called `name` in the folder `parentRef`. The name is UTF-16, at
// most 255 units. Returns fnfErr when there is none, errFSNotAFolder, errFSBadFSRef,
// errFSMissingName, errFSNameTooLong, bdNamErr.
OSErr FSMakeFSRefUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                         TextEncoding textEncodingHint, FSRef* newRef);

// noErr when both name one object, errFSRefsDifferent when not, diffVolErr when not even the volume
// is the same. The object need not exist any more.
OSErr FSCompareFSRefs(const FSRef* ref1, const FSRef* ref2);

// Tells about an existing object. Every output may be null.
//   whichInfo    the fields to fill, among kFSCatInfoGettableInfo and kFSCatInfoUserAccess; must be
//                kFSCatInfoNone when catalogInfo is null
//   outName      the name as on disk, up to 255 units
//   parentRef    for a volume's root a reference that names nothing
// Returns errFSBadFSRef, fnfErr when the object is gone, errFSBadInfoBitmap, paramErr.
OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpec* fsSpec, FSRef* parentRef);

// Makes the reference of the object at a path: UTF-8, ending in a zero byte, relative ones from the
// working directory; symbolic links are followed. `isDirectory` may be null.
// Returns fnfErr, dirNFErr, afpAccessDenied, paramErr.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);

// Writes the absolute path of an object: UTF-8 with a zero byte at its end.
//   maxPathSize  bytes that `path` has room for, the zero byte included
// Returns pathTooLongErr when it does not fit, fnfErr when the object is gone, errFSBadFSRef.
OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 maxPathSize);

// The type, creator and flags of a file. Returns fnfErr for a folder too, nsvErr, dirNFErr.
OSErr FSpGetFInfo(const FSSpec* spec, FInfo* fndrInfo);

// The default volume and directory of this process, where FSMakeFSSpec starts when both numbers are
// 0: at first the root of the startup volume. `volName` (Str255) may be null, and receives the
// volume's name. Returns nsvErr when the volume is gone.
OSErr HGetVol(StringPtr volName, FSVolumeRefNum* vRefNum, SInt32* dirID);

// Sets them. A name that is a volume's path ("Disk:") overrides `vRefNum`; null names none.
// `dirID` 0 is the volume's root. Returns nsvErr, dirNFErr.
OSErr HSetVol(ConstStr63Param volName, FSVolumeRefNum vRefNum, SInt32 dirID);

PLATFORM_DECLARATIONS_END

#endif
