// Resource Manager: typed, numbered pieces of data kept in a file's resource fork.
//
// An open resource file has a map in memory; the data of a resource is read when it is first asked
// for and is a handle from then on, the same one each time. Files form a chain, the newest opened
// first, the System file (number 0, empty here) last. One of them is the current one: searches
// start there and go on to older files, and new resources go into it. The calls with a 1 in their
// name look at the current file alone. An application's own resources (Contents/Resources/NAME.rsrc
// of its bundle, else the resource fork of its program file) join the chain below all other files
// at the program's first call here; where there are none the chain begins with the System file.
//
// A fork is kept in the format of old and its numbers are big-endian, in the handles as in the
// file: nothing is swapped on loading. Resources that were compressed cannot be read as handles
// (CantDecompress). A fork holds less than 16 MiB of data, a map less than 64 KiB each of
// references and of names.
//
// Changes are made in memory; UpdateResFile and CloseResFile write the whole new fork beside the
// old one and let it take its place at once, so that the file always holds the one or the other.
//
// Every call but ResError, CurResFile and those of LowMem.h leaves its result code for ResError,
// noErr when it succeeded. A handle that is null, plain, detached or no longer live is not a
// resource (resNotFound). Names are MacRoman and compared without regard to case. Indexes count
// from 1. Calls may be made from any thread; the chain and the load flag are those of the process.
#ifndef CARBON_RESOURCES_H
#define CARBON_RESOURCES_H

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>

typedef SInt16 ResAttributes;
typedef SInt16 ResFileAttributes;
typedef SInt16 ResFileRefNum;
typedef SInt16 ResID;
typedef SInt16 ResourceCount;
typedef SInt16 ResourceIndex;

// Attributes of a resource. resChanged is never in a file; only resProtected has an effect at once.
enum {
    resSysRefBit = 7,
    resSysHeapBit = 6,
    resPurgeableBit = 5,
    resLockedBit = 4,
    resProtectedBit = 3,
    resPreloadBit = 2,
    resChangedBit = 1
};
enum {
    resSysHeap = 64,
    resPurgeable = 32,
    resLocked = 16,
    resProtected = 8,  // data, name and place in the file are not to be changed
    resPreload = 4,    // to be read as soon as the file is opened
    resChanged = 2     // to be written by the next update
};

// Attributes of an open file: changes stay in memory; the next update leaves no gaps, as every
// update here; something is to be written.
enum { mapReadOnlyBit = 7, mapCompactBit = 6, mapChangedBit = 5 };
enum { mapReadOnly = 128, mapCompact = 64, mapChanged = 32 };

// Numbers that no file of a caller has: what a failed call to open one gives, and the System file.
enum { kResFileNotOpened = -1, kSystemResFile = 0 };

// Places in the chain, for InsertResourceFile.
typedef SInt16 RsrcChainLocation;
enum {
    kRsrcChainBelowSystemMap = 0,
    kRsrcChainBelowApplicationMap = 1,
    kRsrcChainAboveApplicationMap = 2,
    kRsrcChainAboveAllMaps = 4
};

PLATFORM_DECLARATIONS_BEGIN

// The result of this thread's last Resource Manager call. Reading it does not change it.
OSErr ResError(void);

// --- Opening, making and closing files ---

// Opens the resource fork of a file, puts it on top of the chain and makes it the current file.
//   permission  of Files.h: fsCurPerm, fsRdPerm, fsWrPerm, fsRdWrPerm ...; with the first the file
//               is writable if it can be
// Gives the file's number, which is one of an open fork. A file that this process has open for
// writing already, asked for that again, gives the same number and stays where it is in the chain;
// asked for reading only it is opened once more. One opened for reading only is never written:
// changes stay in memory. While ResLoad is on, the resources marked resPreload are read at once.
// Failing, gives kResFileNotOpened: fnfErr, nsvErr, dirNFErr, bdNamErr; eofErr for an empty
// resource fork; mapReadErr for one that is damaged; permErr, opWrErr (another program is writing
// to it), wrPermErr, tmfoErr, memFullErr, ioErr.
ResFileRefNum FSpOpenResFile(const FSSpec* spec, SignedByte permission);
ResFileRefNum HOpenResFile(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName,
                           SInt8 permission);
ResFileRefNum OpenRFPerm(ConstStr255Param fileName, FSVolumeRefNum vRefNum, SInt8 permission);
ResFileRefNum FSOpenResFile(const FSRef* ref, SInt8 permission);

// The same for resources in any fork: with an empty name the data fork, with the name
// "RESOURCE_FORK" the resource fork, errFSBadForkName for another.
// The result code is returned as well; `refNum` receives kResFileNotOpened when it is not noErr.
OSErr FSOpenResourceFile(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName,
                         SInt8 permissions, ResFileRefNum* refNum);

// Makes a file with an empty resource map, or writes the map into the empty resource fork of an
// existing one, whose type and creator stay. dupFNErr, and nothing changed, when the fork is not
// empty; nsvErr, dirNFErr, bdNamErr, dskFulErr, wPrErr, afpAccessDenied.
//   creator, fileType  of a file that is made; zero with HCreateResFile
//   scriptTag          the script of the name; names here are MacRoman in any script
void FSpCreateResFile(const FSSpec* spec, OSType creator, OSType fileType, ScriptCode scriptTag);
void HCreateResFile(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName);

// The same in the folder `parentRef`, with a name of up to 255 UTF-16 units; of `catalogInfo`,
// which may be null, a new file takes the Finder information that `whichInfo` names. `newRef` and
// `newSpec` may be null. The second one takes a fork by name, as FSOpenResourceFile does, and also
// returns the result code; the third gives a map to a fork of an existing file.
void FSCreateResFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                     FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                     FSSpec* newSpec);
OSErr FSCreateResourceFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                           FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo,
                           UniCharCount forkNameLength, const UniChar* forkName, FSRef* newRef,
                           FSSpec* newSpec);
OSErr FSCreateResourceFork(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName,
                           UInt32 flags);

// Writes what has changed, if anything, as the whole new fork in place of the old one. Resources
// that were removed are left out. Does nothing for a file whose changes stay in memory.
// resFNotFound, dskFulErr and other file codes: the old fork is then still there and the changes
// are still to be written. addRefFailed when the fork would be larger than the format allows.
void UpdateResFile(ResFileRefNum refNum);

// Updates a file, disposes of its resources (handles detached before stay) and closes it. If it was
// the current file, the next one in the chain becomes that. A failed update is reported, and the
// file is closed with its old fork: where the changes matter, call UpdateResFile first.
// resFNotFound for a number that is none; 0, the System file, is left open.
void CloseResFile(ResFileRefNum refNum);

// --- The chain ---

// The number of the current file; 0 when that is the System file.
ResFileRefNum CurResFile(void);

// Makes an open file, or with 0 the System file, the current one. resFNotFound for another number:
// nothing is changed.
void UseResFile(ResFileRefNum refNum);

// The number of the file that owns a resource; -1 with resNotFound for any other handle.
ResFileRefNum HomeResFile(Handle theResource);

// Whether the resource fork of a file is open here, in the chain or out of it. `inChain` and
// `refNum`, which may be null, tell where; false and -1 otherwise. Of two numbers for the same file
// the newer one.
Boolean FSpResourceFileAlreadyOpen(const FSSpec* resourceFile, Boolean* inChain,
                                   ResFileRefNum* refNum);
Boolean FSResourceFileAlreadyOpen(const FSRef* resourceFileRef, Boolean* inChain,
                                  ResFileRefNum* refNum);

// Takes an open file out of the chain, without closing it, and puts one that is out of it back.
// Where the current file is taken out, the next one becomes that. resFNotFound for a number that is
// none or is where it was to go already; paramErr for a place that is none.
OSErr DetachResourceFile(ResFileRefNum refNum);
OSErr InsertResourceFile(ResFileRefNum refNum, RsrcChainLocation where);

// The first file of the chain, and the one that follows `curRefNum`. resFNotFound after the last.
OSErr GetTopResourceFile(ResFileRefNum* refNum);
OSErr GetNextResourceFile(ResFileRefNum curRefNum, ResFileRefNum* nextRefNum);

// Attributes of an open file. For another number resFNotFound and 0; setting does nothing then.
ResFileAttributes GetResFileAttrs(ResFileRefNum refNum);
void SetResFileAttrs(ResFileRefNum refNum, ResFileAttributes attrs);

// --- Finding resources ---

// Whether the data of a resource is read as soon as its handle is asked for, which is so until the
// program says otherwise. While it is off, a resource not yet read is an empty handle.
void SetResLoad(Boolean load);

// How many resources of a type there are: in the current file and those below it; in the current
// file.
ResourceCount CountResources(ResType theType);
ResourceCount Count1Resources(ResType theType);

// A resource by type and index: those of the current file first, in the order of its map. Null with
// resNotFound for an index of 0 or below or past the last; else as GetResource.
Handle GetIndResource(ResType theType, ResourceIndex itemIndex);
Handle Get1IndResource(ResType theType, ResourceIndex itemIndex);

// A resource by type and ID; its handle stays the file's, to be given back with ReleaseResource.
// Null: with resNotFound where there are resources of the type but none with that ID, with noErr
// where there are none of the type; with a Memory or File Manager code where it cannot be read.
Handle GetResource(ResType theType, ResID theID);
Handle Get1Resource(ResType theType, ResID theID);

// The same by name.
Handle GetNamedResource(ResType theType, ConstStr255Param name);
Handle Get1NamedResource(ResType theType, ConstStr255Param name);

// How many types there are, and the type with an index, 0 when there is none.
ResourceCount CountTypes(void);
ResourceCount Count1Types(void);
void GetIndType(ResType* theType, ResourceIndex itemIndex);
void Get1IndType(ResType* theType, ResourceIndex itemIndex);

// An ID that no resource of the type has; it may be below 128, but is never negative.
ResID UniqueID(ResType theType);
ResID Unique1ID(ResType theType);

// --- One resource ---

// Reads a resource whose handle is empty. Nothing, with noErr, for one that is in memory and for a
// handle that is no resource.
void LoadResource(Handle theResource);

// Frees a resource's memory; the handle is not valid afterwards. A changed resource stays, with
// noErr.
void ReleaseResource(Handle theResource);

// Makes the handle a plain one that the caller disposes of; the resource stays in the file.
// resAttrErr, and nothing done, for a changed resource.
void DetachResource(Handle theResource);

// ID, type and name of a resource, each to a variable that may be null; a resource without a name
// gives the empty string.
void GetResInfo(Handle theResource, ResID* theID, ResType* theType, Str255 name);

// Gives a resource another ID and name; an empty or null name leaves the name it had. resAttrErr,
// and nothing done, for a protected one. ChangedResource afterwards makes it last.
void SetResInfo(Handle theResource, ResID theID, ConstStr255Param name);

// The attributes of a resource, 0 for any other handle.
ResAttributes GetResAttrs(Handle theResource);

// Sets all of them, resChanged among them; the next update writes the others. Only resProtected
// has an effect before the file is opened again.
void SetResAttrs(Handle theResource, ResAttributes attrs);

// The length of a resource's data as last written, in bytes; -1 for any other handle. Nothing is
// read. GetMaxResourceSize may give more than there is, and does not here.
SInt32 GetResourceSizeOnDisk(Handle theResource);
SInt32 GetMaxResourceSize(Handle theResource);

// Copies bytes between memory and a resource's data as last written; `offset` and `count` are
// bytes. The handle is left as it is; resourceInMemory tells that it holds data, which may differ.
// inputOutOfBounds, and nothing done, for negative numbers and reading past the end. Writing past
// the end makes the resource longer, with writingPastEnd; resAttrErr for a protected resource.
void ReadPartialResource(Handle theResource, SInt32 offset, void* buffer, SInt32 count);
void WritePartialResource(Handle theResource, SInt32 offset, const void* buffer, SInt32 count);

// Changes the length of a resource's data as last written; what is added is zero. The handle is
// left as it is; resourceInMemory when it holds data. paramErr for a negative size, resAttrErr for
// a protected resource.
void SetResourceSize(Handle theResource, SInt32 newSize);

// --- Changing resources ---

// Makes a plain handle a resource of the current file, with resChanged as its only attribute. Its
// memory is the file's from then on. The name may be null. Whether the type has that ID already is
// not looked at. addResFailed for a null or dead handle, for one that is a resource, and where the
// current file is the System file; dskFulErr when there is no room for the file to come.
void AddResource(Handle theData, ResType theType, ResID theID, ConstStr255Param name);

// Marks a resource, and its file, as to be written. Protected: resAttrErr; no room on the disk:
// dskFulErr; neither changes anything.
void ChangedResource(Handle theResource);

// Takes over the data of a changed resource for the next update and clears resChanged. Nothing,
// with noErr, for one that is not changed or is protected, and in a file whose changes stay in
// memory. An empty handle makes the resource empty.
void WriteResource(Handle theResource);

// Takes a resource out of the current file; the handle is then a plain one that the caller disposes
// of. rmvResFailed, and nothing done, when it is protected, no resource, or in another file.
void RemoveResource(Handle theResource);

PLATFORM_DECLARATIONS_END

#endif
