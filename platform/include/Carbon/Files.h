// Files and folders by volume, directory and name (FSSpec) or by reference (FSRef).
//
// Volumes have negative numbers from -100 downward, which stay with a volume for good. Directories
// have a number on their volume that is never given to another one: 2 is the volume's root, 1 the
// parent that the root is said to have. Both mean the same in every process of a user, so a file
// spec or a reference may travel in an event.
//
// Names are MacRoman, at most 63 characters, ':' never among them ('/' is an ordinary character and
// stands for a ':' on disk). A name on disk that does not fit (too long, in another script, not
// valid UTF-8) shows as its beginning, '#', a number in hexadecimal and its extension; that form
// names the same file in every process. Where names on disk differ only in case, each is reached by
// its exact spelling; a spelling that is none of them finds one that differs in case alone.
//
// Symbolic links are objects of their own here, except to FSPathMakeRef, which follows them.
//
// A file has two forks: the data fork is what other programs see, the resource fork lies with the
// Finder information in a file "._name" beside it, which no call here shows.
//
// Calls beginning with PB take everything in one record, named at the call; the others are short
// forms. Each answers noErr or a code of MacErrors.h, a PB call in `ioResult` too. A PB call works
// before it returns and leaves `ioCompletion` alone. Where a call names an object, these count:
//   ioVRefNum  the volume; 0 for the default one
//   ioDirID    a directory on it, whatever the record at hand calls the field; 0 for the volume's
//              root (with ioVRefNum 0 for the default directory)
//   ioNamePtr  a name or a path with colons, as FSMakeFSSpec takes them. Null or empty: the
//              directory itself. A path that begins with a volume's name overrides both numbers
// and these codes are common to all: nsvErr (no such volume), dirNFErr (a folder on the way is
// missing), fnfErr (the object is missing), bdNamErr (malformed), afpAccessDenied (the user may not
// look), paramErr (a null record), ioErr. A change may also answer wPrErr (volume mounted
// read-only), vLckdErr (volume locked), fLckdErr (object locked), dskFulErr. The calls name only
// their others.
//
// Dates here are seconds since 1904-01-01 00:00:00 local time, 0 for never; lengths are bytes.
#ifndef CARBON_FILES_H
#define CARBON_FILES_H

#include <Carbon/Finder.h>
#include <Carbon/MacTypes.h>
#include <Carbon/OSUtils.h>
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

// --- Parameter records ---
// Fillers are never read. What a call neither takes nor gives is left as it was.

typedef union ParamBlockRec ParamBlockRec;
typedef ParamBlockRec* ParmBlkPtr;
typedef union HParamBlockRec HParamBlockRec;
typedef HParamBlockRec* HParmBlkPtr;
typedef union CInfoPBRec CInfoPBRec;
typedef CInfoPBRec* CInfoPBPtr;

typedef void (*IOCompletionProcPtr)(ParmBlkPtr paramBlock);
typedef IOCompletionProcPtr IOCompletionUPP;

// The head of every record. ioNamePtr is a Str255 where a path goes in, a Str63 where a name comes
// out; null where neither is wanted.
#define PARAMETER_BLOCK_HEAD      \
    QElemPtr qLink;               \
    SInt16 qType;                 \
    SInt16 ioTrap;                \
    Ptr ioCmdAddr;                \
    IOCompletionUPP ioCompletion; \
    OSErr ioResult;               \
    StringPtr ioNamePtr;          \
    FSVolumeRefNum ioVRefNum

// Open forks: their number, what to read or write, where.
struct IOParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioRefNum;
    SInt8 ioVersNum;
    SInt8 ioPermssn;  // fsRdPerm and its like
    Ptr ioMisc;       // PBGetEOF, PBSetEOF: the length, see there; PBHRename: the new name
    Ptr ioBuffer;
    SInt32 ioReqCount;  // bytes wanted
    SInt32 ioActCount;  // bytes moved
    SInt16 ioPosMode;   // fsFromStart and its like, with the bits below them
    SInt32 ioPosOffset;
};
typedef struct IOParam IOParam;
typedef IOParam* IOParamPtr;

struct HIOParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioRefNum;
    SInt8 ioVersNum;
    SInt8 ioPermssn;  // fsRdPerm and its like
    Ptr ioMisc;       // PBGetEOF, PBSetEOF: the length, see there; PBHRename: the new name
    Ptr ioBuffer;
    SInt32 ioReqCount;  // bytes wanted
    SInt32 ioActCount;  // bytes moved
    SInt16 ioPosMode;   // fsFromStart and its like, with the bits below them
    SInt32 ioPosOffset;
};
typedef struct HIOParam HIOParam;
typedef HIOParam* HIOParamPtr;

// The same with a position of 64 bits, read when ioPosMode has kUseWidePositioning.
struct XIOParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioRefNum;
    SInt8 ioVersNum;
    SInt8 ioPermssn;
    Ptr ioMisc;
    Ptr ioBuffer;
    SInt32 ioReqCount;
    SInt32 ioActCount;
    SInt16 ioPosMode;
    wide ioWPosOffset;
};
typedef struct XIOParam XIOParam;
typedef XIOParam* XIOParamPtr;

// A file of a flat folder, as the oldest calls knew it.
struct FileParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioFRefNum;
    SInt8 ioFVersNum;
    SInt8 filler1;
    SInt16 ioFDirIndex;
    SInt8 ioFlAttrib;
    SInt8 ioFlVersNum;
    FInfo ioFlFndrInfo;
    UInt32 ioFlNum;
    UInt16 ioFlStBlk;
    SInt32 ioFlLgLen;
    SInt32 ioFlPyLen;
    UInt16 ioFlRStBlk;
    SInt32 ioFlRLgLen;
    SInt32 ioFlRPyLen;
    UInt32 ioFlCrDat;
    UInt32 ioFlMdDat;
};
typedef struct FileParam FileParam;
typedef FileParam* FileParamPtr;

// A volume, for calls that take no directory.
struct VolumeParam {
    PARAMETER_BLOCK_HEAD;
    UInt32 filler2;
    SInt16 ioVolIndex;
    UInt32 ioVCrDate;
    UInt32 ioVLsBkUp;
    UInt16 ioVAtrb;
    UInt16 ioVNmFls;
    UInt16 ioVDirSt;
    SInt16 ioVBlLn;
    UInt16 ioVNmAlBlks;
    UInt32 ioVAlBlkSiz;
    UInt32 ioVClpSiz;
    UInt16 ioAlBlSt;
    UInt32 ioVNxtFNum;
    UInt16 ioVFrBlk;
};
typedef struct VolumeParam VolumeParam;
typedef VolumeParam* VolumeParamPtr;

// Devices. No call of the File Manager takes these three.
struct CntrlParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioCRefNum;
    SInt16 csCode;
    SInt16 csParam[11];
};
typedef struct CntrlParam CntrlParam;
typedef CntrlParam* CntrlParamPtr;

struct SlotDevParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioSRefNum;
    SInt8 ioSVersNum;
    SInt8 ioSPermssn;
    Ptr ioSMix;
    SInt16 ioSFlags;
    SInt8 ioSlot;
    SInt8 ioID;
};
typedef struct SlotDevParam SlotDevParam;
typedef SlotDevParam* SlotDevParamPtr;

struct MultiDevParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioMRefNum;
    SInt8 ioMVersNum;
    SInt8 ioMPermssn;
    Ptr ioMMix;
    SInt16 ioMFlags;
    Ptr ioSEBlkPtr;
};
typedef struct MultiDevParam MultiDevParam;
typedef MultiDevParam* MultiDevParamPtr;

union ParamBlockRec {
    IOParam ioParam;
    FileParam fileParam;
    VolumeParam volumeParam;
    CntrlParam cntrlParam;
    SlotDevParam slotDevParam;
    MultiDevParam multiDevParam;
};

// A file in a directory.
struct HFileParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioFRefNum;
    SInt8 ioFVersNum;
    SInt8 filler1;
    SInt16 ioFDirIndex;
    SInt8 ioFlAttrib;
    SInt8 ioFlVersNum;
    FInfo ioFlFndrInfo;
    SInt32 ioDirID;
    UInt16 ioFlStBlk;
    SInt32 ioFlLgLen;  // of the data fork
    SInt32 ioFlPyLen;  // space it takes on the volume
    UInt16 ioFlRStBlk;
    SInt32 ioFlRLgLen;  // of the resource fork
    SInt32 ioFlRPyLen;
    UInt32 ioFlCrDat;
    UInt32 ioFlMdDat;
};
typedef struct HFileParam HFileParam;
typedef HFileParam* HFileParamPtr;

struct HVolumeParam {
    PARAMETER_BLOCK_HEAD;
    SInt32 filler2;
    SInt16 ioVolIndex;
    UInt32 ioVCrDate;
    UInt32 ioVLsMod;
    SInt16 ioVAtrb;   // kioVAtrbHardwareLockedMask and its like
    UInt16 ioVNmFls;  // entries in the root that are files
    UInt16 ioVBitMap;
    UInt16 ioAllocPtr;
    UInt16 ioVNmAlBlks;  // blocks of ioVAlBlkSiz bytes, at most 2 GiB in all
    UInt32 ioVAlBlkSiz;
    UInt32 ioVClpSiz;
    UInt16 ioAlBlSt;
    UInt32 ioVNxtCNID;  // the next directory ID
    UInt16 ioVFrBlk;    // free ones, at most 2 GiB in all
    UInt16 ioVSigWord;  // 0x4244
    SInt16 ioVDrvInfo;  // drive number
    SInt16 ioVDRefNum;  // negative
    SInt16 ioVFSID;     // 0 for a local volume, else that of its kind of file system
    UInt32 ioVBkUp;
    SInt16 ioVSeqNum;
    UInt32 ioVWrCnt;
    UInt32 ioVFilCnt;  // files on the volume, as far as the file system counts them
    UInt32 ioVDirCnt;
    SInt32 ioVFndrInfo[8];
};
typedef struct HVolumeParam HVolumeParam;
typedef HVolumeParam* HVolumeParamPtr;

struct XVolumeParam {
    PARAMETER_BLOCK_HEAD;
    UInt32 ioXVersion;  // 0
    SInt16 ioVolIndex;
    UInt32 ioVCrDate;
    UInt32 ioVLsMod;
    SInt16 ioVAtrb;
    UInt16 ioVNmFls;
    UInt16 ioVBitMap;
    UInt16 ioAllocPtr;
    UInt16 ioVNmAlBlks;
    UInt32 ioVAlBlkSiz;
    UInt32 ioVClpSiz;
    UInt16 ioAlBlSt;
    UInt32 ioVNxtCNID;
    UInt16 ioVFrBlk;
    UInt16 ioVSigWord;
    SInt16 ioVDrvInfo;
    SInt16 ioVDRefNum;
    SInt16 ioVFSID;
    UInt32 ioVBkUp;
    SInt16 ioVSeqNum;
    UInt32 ioVWrCnt;
    UInt32 ioVFilCnt;
    UInt32 ioVDirCnt;
    SInt32 ioVFndrInfo[8];
    UInt64 ioVTotalBytes;
    UInt64 ioVFreeBytes;
};
typedef struct XVolumeParam XVolumeParam;
typedef XVolumeParam* XVolumeParamPtr;

// Opening with deny modes, and the rights on a folder.
struct AccessParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioRefNum;
    SInt16 ioDenyModes;  // fsRdAccessPerm and its like
    SInt16 filler4;
    SInt8 filler5;
    SInt8 ioACUser;
    SInt32 filler6;
    SInt32 ioACOwnerID;  // user ID
    SInt32 ioACGroupID;
    SInt32 ioACAccess;  // kioACAccessOwnerMask and its like
    SInt32 ioDirID;
};
typedef struct AccessParam AccessParam;
typedef AccessParam* AccessParamPtr;

// Users and groups.
struct ObjParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 filler7;
    SInt16 ioObjType;        // kOwnerID2Name, kReturnNextUser and their like
    StringPtr ioObjNamePtr;  // a Str31
    SInt32 ioObjID;
};
typedef struct ObjParam ObjParam;
typedef ObjParam* ObjParamPtr;

// Copying, and moving under another name.
struct CopyParam {
    PARAMETER_BLOCK_HEAD;
    FSVolumeRefNum ioDstVRefNum;
    SInt16 filler8;
    StringPtr ioNewName;   // path of the destination folder below ioNewDirID; may be null
    StringPtr ioCopyName;  // the new name; null for the old one
    SInt32 ioNewDirID;
    SInt32 filler14;
    SInt32 filler15;
    SInt32 ioDirID;
};
typedef struct CopyParam CopyParam;
typedef CopyParam* CopyParamPtr;

// The default volume and directory. There are no working directories: ioWDVRefNum is a volume.
struct WDParam {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioWDCreated;
    SInt16 ioWDIndex;
    SInt32 ioWDProcID;
    FSVolumeRefNum ioWDVRefNum;
    SInt16 filler10;
    SInt32 filler11;
    SInt32 filler12;
    SInt32 filler13;
    SInt32 ioWDDirID;
};
typedef struct WDParam WDParam;
typedef WDParam* WDParamPtr;

struct WDPBRec {
    PARAMETER_BLOCK_HEAD;
    SInt16 filler1;
    SInt16 ioWDIndex;
    SInt32 ioWDProcID;
    FSVolumeRefNum ioWDVRefNum;
    SInt16 filler2[7];
    SInt32 ioWDDirID;
};
typedef struct WDPBRec WDPBRec;
typedef WDPBRec* WDPBPtr;

// File IDs, and exchanging files.
struct FIDParam {
    PARAMETER_BLOCK_HEAD;
    SInt32 filler14;
    StringPtr ioDestNamePtr;
    SInt32 filler15;
    SInt32 ioDestDirID;
    SInt32 filler16;
    SInt32 filler17;
    SInt32 ioSrcDirID;
    SInt16 filler18;
    SInt32 ioFileID;
};
typedef struct FIDParam FIDParam;
typedef FIDParam* FIDParamPtr;

// A file system's own rights.
struct ForeignPrivParam {
    PARAMETER_BLOCK_HEAD;
    SInt32 ioFiller21;
    SInt32 ioFiller22;
    Ptr ioForeignPrivBuffer;
    SInt32 ioForeignPrivActCount;
    SInt32 ioForeignPrivReqCount;
    SInt32 ioFiller23;
    SInt32 ioForeignPrivDirID;
    SInt32 ioForeignPrivInfo1;
    SInt32 ioForeignPrivInfo2;
    SInt32 ioForeignPrivInfo3;
    SInt32 ioForeignPrivInfo4;
};
typedef struct ForeignPrivParam ForeignPrivParam;
typedef ForeignPrivParam* ForeignPrivParamPtr;

// Where a catalog search goes on. All zero starts one; the rest belongs to the search.
struct CatPositionRec {
    SInt32 initialize;
    SInt16 priv[6];
};
typedef struct CatPositionRec CatPositionRec;

typedef FSSpecPtr FSSpecArrayPtr;

struct CSParam {
    PARAMETER_BLOCK_HEAD;
    FSSpecArrayPtr ioMatchPtr;  // the caller's, of ioReqMatchCount specs
    SInt32 ioReqMatchCount;
    SInt32 ioActMatchCount;    // specs filled
    SInt32 ioSearchBits;       // fsSBFullName and its like
    CInfoPBPtr ioSearchInfo1;  // values, lower bounds
    CInfoPBPtr ioSearchInfo2;  // masks, upper bounds
    SInt32 ioSearchTime;       // milliseconds; microseconds when negative; 0 for no limit
    CatPositionRec ioCatPosition;
    Ptr ioOptBuffer;  // never used
    SInt32 ioOptBufSize;
};
typedef struct CSParam CSParam;
typedef CSParam* CSParamPtr;

union HParamBlockRec {
    HIOParam ioParam;
    HFileParam fileParam;
    HVolumeParam volumeParam;
    AccessParam accessParam;
    ObjParam objParam;
    CopyParam copyParam;
    WDParam wdParam;
    FIDParam fidParam;
    CSParam csParam;
    ForeignPrivParam foreignPrivParam;
};

// All that the catalog knows of a file, or of a folder. Both kinds share the places of
// ioFlAttrib, the directory ID, the parent's ID, the dates, and the two halves of the Finder
// information; ioDrNmFls lies where a file has ioFlStBlk.
struct HFileInfo {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioFRefNum;
    SInt8 ioFVersNum;
    SInt8 filler1;
    SInt16 ioFDirIndex;
    SInt8 ioFlAttrib;  // kioFlAttribLockedMask and its like
    SInt8 ioACUser;
    FInfo ioFlFndrInfo;
    SInt32 ioDirID;  // in: a directory; out: the file's own number
    UInt16 ioFlStBlk;
    SInt32 ioFlLgLen;  // of the data fork
    SInt32 ioFlPyLen;  // space it takes on the volume
    UInt16 ioFlRStBlk;
    SInt32 ioFlRLgLen;  // of the resource fork
    SInt32 ioFlRPyLen;
    UInt32 ioFlCrDat;
    UInt32 ioFlMdDat;
    UInt32 ioFlBkDat;
    FXInfo ioFlXFndrInfo;
    SInt32 ioFlParID;
    SInt32 ioFlClpSiz;
};
typedef struct HFileInfo HFileInfo;

struct DirInfo {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioFRefNum;
    SInt8 ioFVersNum;
    SInt8 filler1;
    SInt16 ioFDirIndex;
    SInt8 ioFlAttrib;
    SInt8 ioACUser;  // kioACUserNoMakeChangesMask and its like
    DInfo ioDrUsrWds;
    SInt32 ioDrDirID;  // in: a directory; out: the folder's own ID
    UInt16 ioDrNmFls;  // entries directly in it; 65535 when there are more
    SInt16 filler3[9];
    UInt32 ioDrCrDat;
    UInt32 ioDrMdDat;
    UInt32 ioDrBkDat;
    DXInfo ioDrFndrInfo;
    SInt32 ioDrParID;
};
typedef struct DirInfo DirInfo;

union CInfoPBRec {
    HFileInfo hFileInfo;
    DirInfo dirInfo;
};

// Short names and ProDOS types.
struct XCInfoPBRec {
    QElemPtr qLink;
    SInt16 qType;
    SInt16 ioTrap;
    Ptr ioCmdAddr;
    ProcPtr ioCompletion;
    OSErr ioResult;
    StringPtr ioNamePtr;
    FSVolumeRefNum ioVRefNum;
    SInt32 filler1;
    StringPtr ioShortNamePtr;
    SInt16 filler2;
    SInt16 ioPDType;
    SInt32 ioPDAuxType;
    SInt32 filler3[2];
    SInt32 ioDirID;
};
typedef struct XCInfoPBRec XCInfoPBRec;
typedef XCInfoPBRec* XCInfoPBPtr;

struct CMovePBRec {
    PARAMETER_BLOCK_HEAD;
    SInt32 filler1;
    StringPtr ioNewName;  // path of the destination folder below ioNewDirID; may be null
    SInt32 filler2;
    SInt32 ioNewDirID;
    SInt32 filler3[2];
    SInt32 ioDirID;
};
typedef struct CMovePBRec CMovePBRec;
typedef CMovePBRec* CMovePBPtr;

// An open fork.
struct FCBPBRec {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioRefNum;
    SInt16 filler;
    SInt16 ioFCBIndx;
    SInt16 filler1;
    SInt32 ioFCBFlNm;   // the file's number
    SInt16 ioFCBFlags;  // kioFCBWriteMask and its like
    UInt16 ioFCBStBlk;
    SInt32 ioFCBEOF;
    SInt32 ioFCBPLen;  // space it takes on the volume
    SInt32 ioFCBCrPs;  // the mark
    FSVolumeRefNum ioFCBVRefNum;
    SInt32 ioFCBClpSiz;
    SInt32 ioFCBParID;
};
typedef struct FCBPBRec FCBPBRec;
typedef FCBPBRec* FCBPBPtr;

// The desktop database.
struct DTPBRec {
    PARAMETER_BLOCK_HEAD;
    SInt16 ioDTRefNum;  // of an open database; never a file's
    SInt16 ioIndex;
    SInt32 ioTagInfo;
    Ptr ioDTBuffer;  // a comment's characters without a length, an icon's bits
    SInt32 ioDTReqCount;
    SInt32 ioDTActCount;
    SInt8 ioFiller1;
    UInt8 ioIconType;  // kLargeIcon and its like
    SInt16 ioFiller2;
    SInt32 ioDirID;
    OSType ioFileCreator;
    OSType ioFileType;
    SInt32 ioFiller3;
    SInt32 ioDTLgLen;
    SInt32 ioDTPyLen;
    SInt16 ioFiller4[14];
    SInt32 ioAPPLParID;
};
typedef struct DTPBRec DTPBRec;
typedef DTPBRec* DTPBPtr;

#undef PARAMETER_BLOCK_HEAD

// What a volume can do. Fields beyond vMServerAdr exist from the version on that is named.
struct GetVolParmsInfoBuffer {
    SInt16 vMVersion;
    SInt32 vMAttrib;  // 1 << bHasFileIDs and its like
    Handle vMLocalHand;
    SInt32 vMServerAdr;            // 0 for a volume of this machine
    SInt32 vMVolumeGrade;          // 2: the slower the higher, 0 for unrated
    SInt16 vMForeignPrivID;        // 2: fsUnixPriv
    SInt32 vMExtendedAttributes;   // 3: 1 << bIsEjectable and its like
    void* vMDeviceID;              // 4: null
    UniCharCount vMMaxNameLength;  // 5: UTF-16 units
};
typedef struct GetVolParmsInfoBuffer GetVolParmsInfoBuffer;

// --- Records that mount a server's volume ---
// Numbers in the machine's byte order. Offsets count bytes from the record's start to a Pascal
// string, 0 for none; `length` is that of the whole record.

typedef OSType VolumeType;

struct VolMountInfoHeader {
    SInt16 length;
    VolumeType media;
};
typedef struct VolMountInfoHeader VolMountInfoHeader;
typedef VolMountInfoHeader* VolMountInfoPtr;

struct VolumeMountInfoHeader {
    SInt16 length;
    VolumeType media;
    SInt16 flags;  // volMountInteractMask and its like
};
typedef struct VolumeMountInfoHeader VolumeMountInfoHeader;
typedef VolumeMountInfoHeader* VolumeMountInfoHeaderPtr;

struct AFPVolMountInfo {
    SInt16 length;
    VolumeType media;  // AppleShareMediaType
    SInt16 flags;
    SInt8 nbpInterval;
    SInt8 nbpCount;
    SInt16 uamType;  // kNoUserAuthentication and its like
    SInt16 zoneNameOffset;
    SInt16 serverNameOffset;
    SInt16 volNameOffset;
    SInt16 userNameOffset;
    SInt16 userPasswordOffset;
    SInt16 volPasswordOffset;
    char AFPData[144];
};
typedef struct AFPVolMountInfo AFPVolMountInfo;
typedef AFPVolMountInfo* AFPVolMountInfoPtr;

struct AFPXVolMountInfo {
    SInt16 length;
    VolumeType media;
    SInt16 flags;  // with volMountExtendedFlagsMask
    SInt8 nbpInterval;
    SInt8 nbpCount;
    SInt16 uamType;
    SInt16 zoneNameOffset;
    SInt16 serverNameOffset;
    SInt16 volNameOffset;
    SInt16 userNameOffset;
    SInt16 userPasswordOffset;
    SInt16 volPasswordOffset;
    SInt16 extendedFlags;
    SInt16 uamNameOffset;
    SInt16 alternateAddressOffset;  // to an AFPAlternateAddress
    char AFPData[176];
};
typedef struct AFPXVolMountInfo AFPXVolMountInfo;
typedef AFPXVolMountInfo* AFPXVolMountInfoPtr;

#pragma pack(pop)

// --- Constants of references ---

// Bits of nodeFlags.
enum {
    kFSNodeLockedBit = 0,
    kFSNodeLockedMask = 0x0001,
    kFSNodeIsDirectoryBit = 4,
    kFSNodeIsDirectoryMask = 0x0010,
    kFSNodeHardLinkBit = 8,
    kFSNodeHardLinkMask = 0x0100
};

// A way through the entries of a folder.
typedef struct OpaqueFSIterator* FSIterator;
typedef UInt32 FSIteratorFlags;
enum { kFSIterateFlat = 0, kFSIterateSubtree = 1, kFSIterateDelete = 2 };

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

// One address of a server: fLength counts itself, the type and the data.
struct AFPTagData {
    UInt8 fLength;
    UInt8 fType;  // kAFPTagTypeIP and its like
    UInt8 fData[1];
};
typedef struct AFPTagData AFPTagData;

struct AFPAlternateAddress {
    UInt8 fVersion;  // 0
    UInt8 fAddressCount;
    UInt8 fAddressList[1];  // AFPTagData records, one after the other
};
typedef struct AFPAlternateAddress AFPAlternateAddress;

enum { AppleShareMediaType = 'afpm' };

enum {
    volMountNoLoginMsgFlagBit = 0,
    volMountNoLoginMsgFlagMask = 0x0001,
    volMountExtendedFlagsBit = 7,
    volMountExtendedFlagsMask = 0x0080,
    volMountChangedBit = 14,
    volMountChangedMask = 0x4000,
    volMountInteractBit = 15,
    volMountInteractMask = 0x8000,
    volMountFSReservedMask = 0x00FF,
    volMountSysReservedMask = 0xFF00
};

// Of uamType.
enum { kNoUserAuthentication = 1, kPassword = 2, kEncryptPassword = 3, kTwoWayEncryptPassword = 6 };

enum { kAFPExtendedFlagsAlternateAddressMask = 1 };

// Of fType and fLength.
enum { kAFPTagTypeIP = 1, kAFPTagTypeIPPort = 2, kAFPTagTypeDDP = 3, kAFPTagTypeDNS = 4 };
enum { kAFPTagLengthIP = 6, kAFPTagLengthIPPort = 8, kAFPTagLengthDDP = 6 };

// --- Constants of opening, reading and writing ---

// Permissions: fsCurPerm takes what can be had.
enum { fsCurPerm = 0, fsRdPerm = 1, fsWrPerm = 2, fsRdWrPerm = 3, fsRdWrShPerm = 4 };

// Deny modes: what is wanted, and what is denied to others.
enum { fsRdAccessPerm = 1, fsWrAccessPerm = 2, fsRdDenyPerm = 0x10, fsWrDenyPerm = 0x20 };

// Positions: at the mark (the offset is not read), from the start, the end, the mark.
enum { fsAtMark = 0, fsFromStart = 1, fsFromLEOF = 2, fsFromMark = 3 };

// Bits of ioPosMode: hints for caching; comparing with the buffer what is read instead of storing
// it; reading up to the byte in the high half of ioPosMode; a record with a position of 64 bits.
enum {
    pleaseCacheBit = 4,
    pleaseCacheMask = 0x0010,
    noCacheBit = 5,
    noCacheMask = 0x0020,
    rdVerifyBit = 6,
    rdVerifyMask = 0x0040,
    rdVerify = 64,
    forceReadBit = 6,
    forceReadMask = 0x0040,
    newLineBit = 7,
    newLineMask = 0x0080,
    newLineCharMask = 0xFF00,
    kWidePosOffsetBit = 8,
    kUseWidePositioning = 0x0100
};

// Bits of ioFCBFlags.
enum {
    kioFCBWriteBit = 8,
    kioFCBWriteMask = 0x0100,
    kioFCBResourceBit = 9,
    kioFCBResourceMask = 0x0200,
    kioFCBWriteLockedBit = 10,
    kioFCBWriteLockedMask = 0x0400,
    kioFCBLargeFileBit = 11,
    kioFCBLargeFileMask = 0x0800,
    kioFCBSharedWriteBit = 12,
    kioFCBSharedWriteMask = 0x1000,
    kioFCBFileLockedBit = 13,
    kioFCBFileLockedMask = 0x2000,
    kioFCBOwnClumpBit = 14,
    kioFCBOwnClumpMask = 0x4000,
    kioFCBModifiedBit = 15,
    kioFCBModifiedMask = 0x8000
};

// --- Constants of the catalog ---

// Bits of ioFlAttrib; those for open forks tell of forks that this process has open.
enum {
    kioFlAttribLockedBit = 0,
    kioFlAttribLockedMask = 0x01,
    kioFlAttribResOpenBit = 2,
    kioFlAttribResOpenMask = 0x04,
    kioFlAttribDataOpenBit = 3,
    kioFlAttribDataOpenMask = 0x08,
    kioFlAttribDirBit = 4,
    kioFlAttribDirMask = 0x10,
    ioDirFlg = 4,
    ioDirMask = 0x10,
    kioFlAttribCopyProtBit = 6,
    kioFlAttribCopyProtMask = 0x40,
    kioFlAttribFileOpenBit = 7,
    kioFlAttribFileOpenMask = 0x80,
    // of a folder
    kioFlAttribInSharedBit = 2,
    kioFlAttribInSharedMask = 0x04,
    kioFlAttribMountedBit = 3,
    kioFlAttribMountedMask = 0x08,
    kioFlAttribSharePointBit = 5,
    kioFlAttribSharePointMask = 0x20
};

// Bits of ioACUser.
enum {
    kioACUserNoSeeFolderBit = 0,
    kioACUserNoSeeFolderMask = 0x01,
    kioACUserNoSeeFilesBit = 1,
    kioACUserNoSeeFilesMask = 0x02,
    kioACUserNoMakeChangesBit = 2,
    kioACUserNoMakeChangesMask = 0x04,
    kioACUserNotOwnerBit = 7,
    kioACUserNotOwnerMask = 0x80
};

// Bits of ioACAccess. Those of the user tell what the calling user may do.
enum {
    kioACAccessOwnerSearchBit = 0,
    kioACAccessOwnerSearchMask = 0x00000001,
    kioACAccessOwnerReadBit = 1,
    kioACAccessOwnerReadMask = 0x00000002,
    kioACAccessOwnerWriteBit = 2,
    kioACAccessOwnerWriteMask = 0x00000004,
    kioACAccessGroupSearchBit = 8,
    kioACAccessGroupSearchMask = 0x00000100,
    kioACAccessGroupReadBit = 9,
    kioACAccessGroupReadMask = 0x00000200,
    kioACAccessGroupWriteBit = 10,
    kioACAccessGroupWriteMask = 0x00000400,
    kioACAccessEveryoneSearchBit = 16,
    kioACAccessEveryoneSearchMask = 0x00010000,
    kioACAccessEveryoneReadBit = 17,
    kioACAccessEveryoneReadMask = 0x00020000,
    kioACAccessEveryoneWriteBit = 18,
    kioACAccessEveryoneWriteMask = 0x00040000,
    kioACAccessUserSearchBit = 24,
    kioACAccessUserSearchMask = 0x01000000,
    kioACAccessUserReadBit = 25,
    kioACAccessUserReadMask = 0x02000000,
    kioACAccessUserWriteBit = 26,
    kioACAccessUserWriteMask = 0x04000000,
    kioACAccessBlankAccessBit = 28,
    kioACAccessBlankAccessMask = 0x10000000,
    kioACAccessOwnerBit = 31,
    kioACAccessOwnerMask = (int)0x80000000
};
enum { kfullPrivileges = 0x00070007, kownerPrivileges = 0x00000007 };
enum { knoUser = 0, kadministratorUser = 1, knoGroup = 0 };

// Of ioObjType.
enum { kOwnerID2Name = 1, kGroupID2Name = 2, kOwnerName2ID = 3, kGroupName2ID = 4 };
enum { kReturnNextUser = 1, kReturnNextGroup = 2, kReturnNextUG = 3 };

// Of ioSearchBits.
enum {
    fsSBPartialNameBit = 0,
    fsSBFullNameBit = 1,
    fsSBFlAttribBit = 2,
    fsSBFlFndrInfoBit = 3,
    fsSBDrUsrWdsBit = 3,
    fsSBDrNmFlsBit = 4,
    fsSBFlLgLenBit = 5,
    fsSBFlPyLenBit = 6,
    fsSBFlRLgLenBit = 7,
    fsSBFlRPyLenBit = 8,
    fsSBFlCrDatBit = 9,
    fsSBDrCrDatBit = 9,
    fsSBFlMdDatBit = 10,
    fsSBDrMdDatBit = 10,
    fsSBFlBkDatBit = 11,
    fsSBDrBkDatBit = 11,
    fsSBFlXFndrInfoBit = 12,
    fsSBDrFndrInfoBit = 12,
    fsSBFlParIDBit = 13,
    fsSBDrParIDBit = 13,
    fsSBNegateBit = 14
};
enum {
    fsSBPartialName = 0x0001,
    fsSBFullName = 0x0002,
    fsSBFlAttrib = 0x0004,
    fsSBFlFndrInfo = 0x0008,
    fsSBDrUsrWds = 0x0008,
    fsSBDrNmFls = 0x0010,
    fsSBFlLgLen = 0x0020,
    fsSBFlPyLen = 0x0040,
    fsSBFlRLgLen = 0x0080,
    fsSBFlRPyLen = 0x0100,
    fsSBFlCrDat = 0x0200,
    fsSBDrCrDat = 0x0200,
    fsSBFlMdDat = 0x0400,
    fsSBDrMdDat = 0x0400,
    fsSBFlBkDat = 0x0800,
    fsSBDrBkDat = 0x0800,
    fsSBFlXFndrInfo = 0x1000,
    fsSBDrFndrInfo = 0x1000,
    fsSBFlParID = 0x2000,
    fsSBDrParID = 0x2000,
    fsSBNegate = 0x4000
};

// --- Constants of volumes ---

// Bits of ioVAtrb.
enum {
    kioVAtrbDefaultVolumeBit = 5,
    kioVAtrbDefaultVolumeMask = 0x0020,
    kioVAtrbFilesOpenBit = 6,
    kioVAtrbFilesOpenMask = 0x0040,
    kioVAtrbHardwareLockedBit = 7,
    kioVAtrbHardwareLockedMask = 0x0080,
    kioVAtrbSoftwareLockedBit = 15,
    kioVAtrbSoftwareLockedMask = 0x8000
};

// Bits of vMAttrib.
enum {
    bLimitFCBs = 31,
    bLocalWList = 30,
    bNoMiniFndr = 29,
    bNoVNEdit = 28,
    bNoLclSync = 27,
    bTrshOffLine = 26,
    bNoSwitchTo = 25,
    bNoDeskItems = 20,
    bNoBootBlks = 19,
    bAccessCntl = 18,
    bNoSysDir = 17,
    bHasExtFSVol = 16,
    bHasOpenDeny = 15,
    bHasCopyFile = 14,
    bHasMoveRename = 13,
    bHasDesktopMgr = 12,
    bHasShortName = 11,
    bHasFolderLock = 10,
    bHasPersonalAccessPrivileges = 9,
    bHasUserGroupList = 8,
    bHasCatSearch = 7,
    bHasFileIDs = 6,
    bHasBTreeMgr = 5,
    bHasBlankAccessPrivileges = 4,
    bSupportsAsyncRequests = 3,
    bSupportsTrashVolumeCache = 2,
    bHasDirectIO = 1
};

// Bits of vMExtendedAttributes.
enum {
    bIsEjectable = 0,
    bSupportsHFSPlusAPIs = 1,
    bSupportsFSCatalogSearch = 2,
    bSupportsFSExchangeObjects = 3,
    bSupports2TBFiles = 4,
    bSupportsLongNames = 5,
    bSupportsMultiScriptNames = 6,
    bSupportsNamedForks = 7,
    bSupportsSubtreeIterators = 8,
    bL2PCanMapFileBlocks = 9,
    bParentModDateChanges = 10,
    bAncestorModDateChanges = 11,
    bSupportsSymbolicLinks = 13,
    bIsAutoMounted = 14,
    bAllowCDiDataHandler = 17,
    bSupportsExclusiveLocks = 18,
    bSupportsJournaling = 19,
    bNoVolumeSizes = 20,
    bIsOnInternalBus = 21,
    bIsCaseSensitive = 22,
    bIsCasePreserving = 23,
    bDoNotDisplay = 24,
    bIsRemovable = 25,
    bNoRootTimes = 26,
    bIsOnExternalBus = 27,
    bSupportsExtendedFileSecurity = 28
};

// Of vMForeignPrivID.
enum { fsUnixPriv = 1 };

// --- Constants of the desktop database ---

// Of ioIconType, and the bytes that such an icon has.
enum {
    kLargeIcon = 1,
    kLarge4BitIcon = 2,
    kLarge8BitIcon = 3,
    kSmallIcon = 4,
    kSmall4BitIcon = 5,
    kSmall8BitIcon = 6,
    kicnsIconFamily = 239
};
enum {
    kLargeIconSize = 256,
    kLarge4BitIconSize = 512,
    kLarge8BitIconSize = 1024,
    kSmallIconSize = 64,
    kSmall4BitIconSize = 128,
    kSmall8BitIconSize = 256
};

PLATFORM_DECLARATIONS_BEGIN

// --- Specs and references ---

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

// Begins to go through the entries of a folder, in the order in which an index counts them. The
// caller closes the iterator.
//   iteratorFlags  kFSIterateFlat
// Returns errFSBadFSRef, fnfErr, errFSNotAFolder, paramErr; errFSIteratorNotSupported for the other
// ways, errFSBadIteratorFlags for unknown ones.
OSErr FSOpenIterator(const FSRef* container, FSIteratorFlags iteratorFlags, FSIterator* iterator);
// Returns errFSIteratorNotFound.
OSErr FSCloseIterator(FSIterator iterator);

// Tells about the next entries of an iterator's folder, as they are now; the less is asked for, the
// less is looked at. Entries that come or go meanwhile may be told twice or passed over. Every
// output but actualObjects may be null; each array has room for maximumObjects items.
//   actualObjects     how many there were, also after errFSNoMoreItems; 0 after other errors
//   containerChanged  whether the folder's entries have changed since the iterator was opened
//   whichInfo         as for FSGetCatalogInfo, a file's valence being 0
// Returns errFSNoMoreItems when the end was reached, errFSIteratorNotFound, errFSBadItemCount for
// no items, errFSBadInfoBitmap, paramErr, dirNFErr when the folder is gone, afpAccessDenied.
OSErr FSGetCatalogInfoBulk(FSIterator iterator, ItemCount maximumObjects, ItemCount* actualObjects,
                           Boolean* containerChanged, FSCatalogInfoBitmap whichInfo,
                           FSCatalogInfo* catalogInfos, FSRef* refs, FSSpecPtr specs,
                           HFSUniStr255* names);

// Makes the reference of the object at a path: UTF-8, ending in a zero byte, relative ones from the
// working directory; symbolic links are followed. `isDirectory` may be null.
// Returns fnfErr, dirNFErr, afpAccessDenied, paramErr.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);

// Writes the absolute path of an object: UTF-8 with a zero byte at its end.
//   maxPathSize  bytes that `path` has room for, the zero byte included
// Returns pathTooLongErr when it does not fit, fnfErr when the object is gone, errFSBadFSRef.
OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 maxPathSize);

// --- Opening forks ---
// Short forms take the permission `permission` (fsCurPerm and its like) and give the fork's number,
// positive, which counts in this process only.
// Returns permErr (writing asked, and the file is locked or the user may not), wrPermErr (writing
// asked on a volume that is read-only or locked), opWrErr (some process of the user has the fork
// open for writing; when it is this one, `refNum` is the number of that path, which must not be
// closed by the caller of this), tmfoErr, and fnfErr for a folder too. A resource fork that does
// not exist yet opens as an empty one.

OSErr FSpOpenDF(const FSSpec* spec, SInt8 permission, SInt16* refNum);
OSErr FSpOpenRF(const FSSpec* spec, SInt8 permission, SInt16* refNum);
OSErr HOpen(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
            SInt16* refNum);
OSErr HOpenDF(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
              SInt16* refNum);
OSErr HOpenRF(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
              SInt16* refNum);

// ioParam: ioPermssn -> ioRefNum; fileParam.ioDirID is the directory. PBHOpen and PBHOpenDF open
// the data fork.
OSErr PBHOpenSync(HParmBlkPtr paramBlock);
OSErr PBHOpenDFSync(HParmBlkPtr paramBlock);
OSErr PBHOpenRFSync(HParmBlkPtr paramBlock);

// accessParam: ioDenyModes -> ioRefNum. Others of the user get from then on no more than the modes
// leave them. Returns permErr where modes held and modes asked conflict, opWrErr where this process
// itself writes the fork already, paramErr for a volume without bHasOpenDeny.
OSErr PBHOpenDenySync(HParmBlkPtr paramBlock);
OSErr PBHOpenRFDenySync(HParmBlkPtr paramBlock);

// --- Reading and writing ---
// `refNum` is an open fork's number; fnOpnErr for one that is not open, rfNumErr for one that never
// can be. A fork's length is the same for all that have it open; each path has its own mark.

// Reads or writes `count` bytes at the mark and leaves in `count` how many it were. Returns eofErr
// when the end came first, dskFulErr, wrPermErr for a path without permission to write, fLckdErr
// for a range that another path has locked, paramErr for a negative count.
OSErr FSRead(SInt16 refNum, SInt32* count, void* buffPtr);
OSErr FSWrite(SInt16 refNum, SInt32* count, const void* buffPtr);

// ioParam: ioPosMode and ioPosOffset say where, ioReqCount how much, ioBuffer what -> ioActCount,
// and ioPosOffset is the mark. With kUseWidePositioning the record is an XIOParam. Reading with
// rdVerifyMask compares and answers ioErr where the bytes differ. Returns posErr before the start.
OSErr PBReadSync(ParmBlkPtr paramBlock);
OSErr PBWriteSync(ParmBlkPtr paramBlock);

// Returns fnOpnErr, rfNumErr, ioErr (what had been written could not be kept).
OSErr FSClose(SInt16 refNum);
OSErr PBCloseSync(ParmBlkPtr paramBlock);

// The length of a fork. What growing adds is zero; shrinking takes a mark behind the end along.
// Returns dskFulErr with the length unchanged, wrPermErr, fileBoundsErr (2 GiB or longer).
// PB: ioMisc holds the number itself.
OSErr GetEOF(SInt16 refNum, SInt32* logEOF);
OSErr SetEOF(SInt16 refNum, SInt32 logEOF);
OSErr PBGetEOFSync(ParmBlkPtr paramBlock);
OSErr PBSetEOFSync(ParmBlkPtr paramBlock);

// The mark, from the start. Behind the end it goes to the end, with eofErr; before the start
// nothing changes, with posErr. PB: ioPosMode, ioPosOffset (the mark, on return).
OSErr GetFPos(SInt16 refNum, SInt32* filePos);
OSErr SetFPos(SInt16 refNum, SInt16 posMode, SInt32 posOff);
OSErr PBGetFPosSync(ParmBlkPtr paramBlock);
OSErr PBSetFPosSync(ParmBlkPtr paramBlock);

// Takes space for `count` bytes more behind the end, whose place does not change. Contiguous or
// not is the file system's affair. Returns dskFulErr. PB: ioReqCount -> ioActCount.
OSErr Allocate(SInt16 refNum, SInt32* count);
OSErr AllocContig(SInt16 refNum, SInt32* count);
OSErr PBAllocateSync(ParmBlkPtr paramBlock);
OSErr PBAllocContigSync(ParmBlkPtr paramBlock);

// ioParam: keeps other paths, of other processes too, from reading and writing ioReqCount bytes (-1
// for as many as there can be) at ioPosMode and ioPosOffset, and ends that. Closing ends it too.
// Returns afpRangeOverlap, afpRangeNotLocked (not locked in just this extent), afpNoMoreLocks.
OSErr PBLockRangeSync(ParmBlkPtr paramBlock);
OSErr PBUnlockRangeSync(ParmBlkPtr paramBlock);

// Makes sure that what was written is on the disk: one fork, or all that this process has open on a
// volume, named as for UnmountVol.
OSErr PBFlushFileSync(ParmBlkPtr paramBlock);
OSErr FlushVol(ConstStr63Param volName, FSVolumeRefNum vRefNum);
OSErr PBFlushVolSync(ParmBlkPtr paramBlock);

// Tells about the open fork ioRefNum (ioFCBIndx 0), or the ioFCBIndx-th of this process on volume
// ioVRefNum, of all volumes when that is 0. ioNamePtr, a Str63 or null, receives the file's name.
// Returns fnOpnErr past the last one.
OSErr PBGetFCBInfoSync(FCBPBPtr paramBlock);

// The volume that an open fork lies on.
OSErr GetVRefNum(SInt16 fileRefNum, FSVolumeRefNum* vRefNum);

// --- The catalog ---

// PBMakeFSSpec: ioMisc points to the FSSpec, fileParam.ioDirID is the directory; else FSMakeFSSpec.
OSErr PBMakeFSSpecSync(HParmBlkPtr paramBlock);

// Tells about a file or a folder.
//   ioFDirIndex  positive: the entry of that number, from 1, in the directory ioDirID, in the order
//                of names without regard to case; fnfErr past the last. 0: the object that ioDirID
//                and ioNamePtr name. Negative: the directory ioDirID itself
//   ioNamePtr    read when the index is 0; otherwise, where it is not null, it receives the name
//   ioDirID      on return the object's own number, so a loop sets it anew each time
// While a directory does not change, its entries keep their numbers; when entry n goes, n + 1
// takes its number. A walk costs the same for each entry, however many there are.
OSErr PBGetCatInfoSync(CInfoPBPtr paramBlock);

// Sets the Finder information and the three dates of the object that ioDirID and ioNamePtr name;
// all the rest of the record is not read. fLckdErr for a locked file; a locked folder takes it.
OSErr PBSetCatInfoSync(CInfoPBPtr paramBlock);

// Always paramErr: there are no short names and no ProDOS types here.
OSErr PBGetXCatInfoSync(XCInfoPBPtr paramBlock);

// fileParam: ioFDirIndex as for PBGetCatInfo, but counting files only, with a negative one like 0
// -> Finder information, attributes, lengths, dates, ioDirID the file's number. fnfErr for a
// folder.
OSErr PBHGetFInfoSync(HParmBlkPtr paramBlock);

// Sets a file's type, creator and flags, and by the PB call its dates too. fnfErr for a folder,
// fLckdErr. The short forms deal with the 16 bytes only.
OSErr PBHSetFInfoSync(HParmBlkPtr paramBlock);
OSErr HGetFInfo(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, FInfo* fndrInfo);
OSErr HSetFInfo(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName,
                const FInfo* fndrInfo);
OSErr FSpGetFInfo(const FSSpec* spec, FInfo* fndrInfo);
OSErr FSpSetFInfo(const FSSpec* spec, const FInfo* fndrInfo);

// Locks a file or a folder (for who works through these calls) and unlocks it. What is locked is
// not written to, renamed, moved or deleted; paths that are open already go on. PB: fileParam.
OSErr HSetFLock(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName);
OSErr HRstFLock(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName);
OSErr FSpSetFLock(const FSSpec* spec);
OSErr FSpRstFLock(const FSSpec* spec);
OSErr PBHSetFLockSync(HParmBlkPtr paramBlock);
OSErr PBHRstFLockSync(HParmBlkPtr paramBlock);

// Makes an empty file. dupFNErr when there is an object of that name, a folder too. The PB call
// (fileParam) leaves type and creator 0.
OSErr HCreate(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, OSType creator,
              OSType fileType);
OSErr FSpCreate(const FSSpec* spec, OSType creator, OSType fileType, ScriptCode scriptTag);
OSErr PBHCreateSync(HParmBlkPtr paramBlock);

// Makes a folder and gives its directory ID. dupFNErr. PB: fileParam, ioDirID in and out.
OSErr DirCreate(FSVolumeRefNum vRefNum, SInt32 parentDirID, ConstStr255Param directoryName,
                SInt32* createdDirID);
OSErr FSpDirCreate(const FSSpec* spec, ScriptCode scriptTag, SInt32* createdDirID);
OSErr PBDirCreateSync(HParmBlkPtr paramBlock);

// Deletes a file with both forks, or an empty folder; a null name names the directory `dirID`.
// fBsyErr for a file that some process of the user has open, a folder with something in it, a
// volume's root. PB: fileParam.
OSErr HDelete(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName);
OSErr FSpDelete(const FSSpec* spec);
OSErr PBHDeleteSync(HParmBlkPtr paramBlock);

// Gives an object another name in its folder, or a mounted folder another volume name ("Disk:" as
// the old one). dupFNErr when another object has it; a name that differs only in case is no other.
// fLckdErr, and fBsyErr for a volume that keeps its name. The file spec is not changed.
// PB: fileParam, the new name in ioParam.ioMisc.
OSErr HRename(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param oldName,
              ConstStr255Param newName);
OSErr FSpRename(const FSSpec* spec, ConstStr255Param newName);
OSErr PBHRenameSync(HParmBlkPtr paramBlock);

// Moves an object into another folder of its volume, under the name it has. The folder is what
// newDirID and newName name. badMovErr into itself, or below itself, or into a file; dupFNErr;
// fLckdErr; diffVolErr. Open files may be moved.
OSErr CatMove(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param oldName, SInt32 newDirID,
              ConstStr255Param newName);
OSErr FSpCatMove(const FSSpec* source, const FSSpec* dest);
OSErr PBCatMoveSync(CMovePBPtr paramBlock);

// copyParam: the same, and a new name (ioCopyName) in one step. paramErr for a volume without
// bHasMoveRename.
OSErr PBHMoveRenameSync(HParmBlkPtr paramBlock);

// copyParam: copies a file with all that belongs to it into a folder (ioDstVRefNum, ioNewDirID,
// ioNewName) under the name ioCopyName. dupFNErr; paramErr for a folder and for a volume without
// bHasCopyFile; diffVolErr unless both are one volume; afpDenyConflict for a file being written.
OSErr PBHCopyFileSync(HParmBlkPtr paramBlock);

// Exchanges the contents of two files of one volume: both forks and the modification dates. Their
// names, file IDs, creation dates and Finder information stay. diffVolErr, sameFileErr,
// notAFileErr, fLckdErr, paramErr (this disk cannot). PB: fidParam, ioDestDirID, ioDestNamePtr.
OSErr FSpExchangeFiles(const FSSpec* source, const FSSpec* dest);
OSErr PBExchangeFilesSync(HParmBlkPtr paramBlock);

// fidParam: a file's ID, by which it is found after a rename or a move, for good. Create takes
// ioSrcDirID and ioNamePtr and gives ioFileID, with fidExists too; Resolve gives ioSrcDirID and,
// where ioNamePtr is not null, the name over the volume's name that may stand there; Delete
// forgets. notAFileErr for a folder, fidNotFound.
OSErr PBCreateFileIDRefSync(HParmBlkPtr paramBlock);
OSErr PBResolveFileIDRefSync(HParmBlkPtr paramBlock);
OSErr PBDeleteFileIDRefSync(HParmBlkPtr paramBlock);

// Looks for files and folders all over a volume.
// Returns noErr when the array is full or the time is over (call again with the same position),
// eofErr when all was searched, the last matches being in the array, catChangedErr when the catalog
// has changed since the position was made, paramErr for criteria that make no sense together and
// for a volume without bHasCatSearch.
OSErr PBCatSearchSync(CSParamPtr paramBlock);

// --- Rights ---

// accessParam: owner, group and rights of the folder that ioDirID and ioNamePtr name. Users and
// groups are those of the system. Setting is for the owner (afpAccessDenied); the bits that tell
// about the caller are 0 or as they will be told (else paramErr). paramErr for a volume without
// bAccessCntl, fnfErr for a file.
OSErr PBHGetDirAccessSync(HParmBlkPtr paramBlock);
OSErr PBHSetDirAccessSync(HParmBlkPtr paramBlock);

// objParam: from the number of a user or a group to its name, and back. fnfErr when there is none.
OSErr PBHMapIDSync(HParmBlkPtr paramBlock);
OSErr PBHMapNameSync(HParmBlkPtr paramBlock);

// objParam: the user, the group, or either (ioObjType) that follows ioObjID in the order of
// numbers; 0 starts -> ioObjType, ioObjID, ioObjNamePtr. fnfErr past the last. paramErr for a
// volume without bHasUserGroupList.
OSErr PBGetUGEntrySync(HParmBlkPtr paramBlock);

// The first three are always paramErr: nobody logs in to a volume here, and none shares folders.
// The others: user, group, mode and (only told) the user's access in ioForeignPrivInfo1 to 4.
OSErr PBHGetLogInInfoSync(HParmBlkPtr paramBlock);
OSErr PBShareSync(HParmBlkPtr paramBlock);
OSErr PBUnshareSync(HParmBlkPtr paramBlock);
OSErr PBGetForeignPrivsSync(HParmBlkPtr paramBlock);
OSErr PBSetForeignPrivsSync(HParmBlkPtr paramBlock);

// --- Volumes ---

// Tells about a volume.
//   ioVolIndex  positive: the volume of that number, from 1, in the order of mounting, the startup
//               volume first. 0: ioVRefNum (0 for the default volume). Negative: ioNamePtr, when it
//               is a volume's path ("Disk:" or longer), else ioVRefNum
//   ioNamePtr   receives the name; null for none
// Returns nsvErr past the last one. PBXGetVolInfo gives true sizes, where the other stops at 2 GiB;
// paramErr unless ioXVersion is 0.
OSErr PBHGetVInfoSync(HParmBlkPtr paramBlock);
OSErr PBXGetVolInfoSync(XVolumeParamPtr paramBlock);

// Sets what may be changed of a volume named as for UnmountVol: the software lock (ioVAtrb) and the
// backup date (ioVBkUp) of a mounted folder. wPrErr for the other volumes.
OSErr PBSetVInfoSync(HParmBlkPtr paramBlock);

// ioParam: writes what a volume can do, a GetVolParmsInfoBuffer, into ioBuffer, up to ioReqCount
// bytes of it -> ioActCount. A bit is set only where the call works. paramErr where the volume does
// not tell.
OSErr PBHGetVolParmsSync(HParmBlkPtr paramBlock);

// The default volume and directory of this process, where FSMakeFSSpec starts when both numbers are
// 0: at first the root of the startup volume. `volName` (Str63) may be null, and receives the
// volume's name. Returns nsvErr when the volume is gone. PB: ioVRefNum, ioWDVRefNum, ioWDDirID.
OSErr HGetVol(StringPtr volName, FSVolumeRefNum* vRefNum, SInt32* dirID);
OSErr PBHGetVolSync(WDPBPtr paramBlock);

// Sets them. A name that is a volume's path ("Disk:") overrides `vRefNum`; null names none.
// `dirID` 0 is the volume's root. Returns nsvErr, dirNFErr. PB: ioVRefNum, ioWDDirID.
OSErr HSetVol(ConstStr63Param volName, FSVolumeRefNum vRefNum, SInt32 dirID);
OSErr PBHSetVolSync(WDPBPtr paramBlock);

// Ends a folder's being a volume. A name that is a volume's path overrides `vRefNum`. fBsyErr while
// this process has a fork on it open, and for every other volume.
OSErr UnmountVol(ConstStr63Param volName, FSVolumeRefNum vRefNum);
OSErr PBUnmountVol(ParmBlkPtr paramBlock);

// ioParam: the record by which a server's volume is mounted again, and its length (a SInt16) in
// ioBuffer; without passwords. paramErr for a volume of this machine.
OSErr PBGetVolMountInfoSize(ParmBlkPtr paramBlock);
OSErr PBGetVolMountInfo(ParmBlkPtr paramBlock);

// ioParam: mounts the volume that the record in ioBuffer tells of, if it is one that this system
// knows: a mounted folder that counts as remote. Gives ioVRefNum. afpAlreadyMounted, afpNoServer
// for every other server, nsvErr, paramErr for a record that is none.
OSErr PBVolumeMount(ParmBlkPtr paramBlock);

// --- The desktop database ---
// One for each volume, shared by all processes of the user: where applications are, comments,
// icons. rfNumErr for a number that is no open database's, desktopDamagedErr, afpItemNotFound when
// it holds nothing of that kind.

// ioNamePtr, ioVRefNum (a volume) -> ioDTRefNum. OpenInform makes ioTagInfo 0 for a database that
// was empty, just made, else 1. extFSErr, and ioDTRefNum 0, for a volume without bHasDesktopMgr.
OSErr PBDTGetPath(DTPBPtr paramBlock);
OSErr PBDTOpenInform(DTPBPtr paramBlock);
OSErr PBDTCloseDown(DTPBPtr paramBlock);

// Where an application is. Add and Remove take ioFileCreator, ioDirID and ioNamePtr. Get takes
// ioFileCreator and ioIndex: 0 for the copy that was made last, 1 and up for each of them ->
// ioNamePtr, ioAPPLParID, ioTagInfo (the creation date). Adding the same place again replaces it.
// Add: fnfErr.
OSErr PBDTAddAPPLSync(DTPBPtr paramBlock);
OSErr PBDTRemoveAPPLSync(DTPBPtr paramBlock);
OSErr PBDTGetAPPLSync(DTPBPtr paramBlock);

// The comment of the object ioDirID and ioNamePtr name, in ioDTBuffer: ioDTReqCount bytes, of which
// 200 are kept; Get -> ioDTActCount.
OSErr PBDTSetCommentSync(DTPBPtr paramBlock);
OSErr PBDTGetCommentSync(DTPBPtr paramBlock);
OSErr PBDTRemoveCommentSync(DTPBPtr paramBlock);

// The icon of ioFileCreator, ioFileType and ioIconType in ioDTBuffer: ioDTReqCount bytes, Get ->
// ioDTActCount. GetIconInfo: the ioIndex-th icon of ioFileCreator -> ioFileType, ioIconType,
// ioDTActCount. afpIconTypeError where one of another size is there.
OSErr PBDTAddIconSync(DTPBPtr paramBlock);
OSErr PBDTGetIconSync(DTPBPtr paramBlock);
OSErr PBDTGetIconInfoSync(DTPBPtr paramBlock);

// ioDTRefNum -> ioVRefNum, ioDirID, ioNamePtr, the lengths, ioIndex: the database's own files.
OSErr PBDTGetInfoSync(DTPBPtr paramBlock);

// Makes sure that all is on the disk; empties the database; deletes it when closed (ioNamePtr,
// ioVRefNum name the volume; fBsyErr while open).
OSErr PBDTFlushSync(DTPBPtr paramBlock);
OSErr PBDTResetSync(DTPBPtr paramBlock);
OSErr PBDTDeleteSync(DTPBPtr paramBlock);

PLATFORM_DECLARATIONS_END

#endif
