// Aliases: records that remember a file, a folder or a volume and find it again after it was moved
// or renamed.
//
// A record begins with the application's own four bytes ("user type") and its size, both big-endian
// on every machine, as is what follows them, which is private. An alias may be kept in a file, a
// resource or an event and resolved by another process of the same user, also after a restart.
// Bytes that an application appended behind the record are kept.
//
// Linux: no server is asked to mount its volume.
#ifndef CARBON_ALIASES_H
#define CARBON_ALIASES_H

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>

union CInfoPBRec;

#pragma pack(push, 2)

// The head of an alias record; read it through the calls below.
struct AliasRecord {
    UInt8 hidden[6];
};
typedef struct AliasRecord AliasRecord;
typedef AliasRecord* AliasPtr;
typedef AliasPtr* AliasHandle;  // a Handle of the Memory Manager, owned by whoever made it

#pragma pack(pop)

enum { rAliasType = 'alis' };  // of the resource 0 in an alias file

// What GetAliasInfo tells. Numbers above asiParentName are the folders further up.
typedef SInt16 AliasInfoType;
enum {
    asiZoneName = -3,
    asiServerName = -2,
    asiVolumeName = -1,
    asiAliasName = 0,
    asiParentName = 1
};

// How to look for an object, a sum of these.
enum {
    kARMMountVol = 0x00000001,        // mount its volume
    kARMNoUI = 0x00000002,            // do not ask the user; nobody ever is
    kARMMultVols = 0x00000008,        // on all volumes
    kARMSearch = 0x00000100,          // by what the record knows: a fast search
    kARMSearchMore = 0x00000200,      // on the whole volume too: objects that look like it
    kARMSearchRelFirst = 0x00000400,  // from `fromFile` before the path
    kARMTryFileIDFirst = 0x00000800   // the object's number before its place
};

// How to follow an alias file, a sum of these.
enum { kResolveAliasFileNoUI = 0x00000001, kResolveAliasTryFileIDFirst = 0x00000002 };

// Chooses among matches: true leaves one out. `quitFlag` set to true ends the search.
typedef Boolean (*AliasFilterProcPtr)(union CInfoPBRec* cpbPtr, Boolean* quitFlag, Ptr myDataPtr);
typedef AliasFilterProcPtr AliasFilterUPP;

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers need no wrapping: New... returns the procedure, Dispose... does nothing,
// Invoke... calls it.
AliasFilterUPP NewAliasFilterUPP(AliasFilterProcPtr userRoutine);
void DisposeAliasFilterUPP(AliasFilterUPP userUPP);
Boolean InvokeAliasFilterUPP(union CInfoPBRec* cpbPtr, Boolean* quitFlag, Ptr myDataPtr,
                             AliasFilterUPP userUPP);

// Makes the alias of an existing object: its place, name, number, creation date, type, volume.
//   fromFile  null, or an object on the same volume from which the way to the target is kept too
//   alias     the new handle; null after an error
// Returns nsvErr, dirNFErr, fnfErr, memFullErr, diffVolErr when `fromFile` is on another volume,
// paramErr for null.
OSErr NewAlias(const FSSpec* fromFile, const FSSpec* target, AliasHandle* alias);
OSErr FSNewAlias(const FSRef* fromFile, const FSRef* target, AliasHandle* inAlias);

// Makes a short alias: volume, folder and name, which ResolveAlias never brings up to date. Errors
// as above.
OSErr NewAliasMinimal(const FSSpec* target, AliasHandle* alias);
OSErr FSNewAliasMinimal(const FSRef* target, AliasHandle* inAlias);

// The same from a full path ("Disk:Folder:File", MacRoman, `fullPathLength` bytes), of which
// nothing need exist. `zoneName` and `serverName` may be null and are kept for GetAliasInfo alone.
// bdNamErr when it is no full path, memFullErr, paramErr.
OSErr NewAliasMinimalFromFullPath(SInt16 fullPathLength, const void* fullPath,
                                  ConstStr32Param zoneName, ConstStr31Param serverName,
                                  AliasHandle* alias);

// Makes a handle's record the alias of another object. Its user type and what was appended stay.
//   wasChanged  whether the record is another one now
// Errors as those of NewAlias; the handle is unchanged after one.
OSErr UpdateAlias(const FSSpec* fromFile, const FSSpec* target, AliasHandle alias,
                  Boolean* wasChanged);
OSErr FSUpdateAlias(const FSRef* fromFile, const FSRef* target, AliasHandle alias,
                    Boolean* wasChanged);

// Finds the object of an alias: at the recorded place, else by its number wherever it has moved on
// its volume, else by the way from `fromFile`. An object that was put in the recorded place wins
// over the original that was moved away.
//   fromFile    null, or where the way to the target begins, which is then tried first
//   target      the object. After fnfErr the missing object's place, good for making it anew
//   wasChanged  whether the record was brought up to date
// Returns nsvErr when its volume is not there, fnfErr when it is missing from its folder, dirNFErr
// when that is missing too, paramErr for bytes that are no alias record.
OSErr ResolveAlias(const FSSpec* fromFile, AliasHandle alias, FSSpec* target, Boolean* wasChanged);

// The same with kARMTryFileIDFirst, kARMMountVol and kARMNoUI chosen by the caller.
OSErr ResolveAliasWithMountFlags(const FSSpec* fromFile, AliasHandle alias, FSSpec* target,
                                 Boolean* wasChanged, UInt32 mountFlags);

// As references, which name existing objects only.
OSErr FSResolveAlias(const FSRef* fromFile, AliasHandle alias, FSRef* target, Boolean* wasChanged);
OSErr FSResolveAliasWithMountFlags(const FSRef* fromFile, AliasHandle alias, FSRef* target,
                                   Boolean* wasChanged, UInt32 mountFlags);

// Finds all objects that an alias may mean, the best first.
//   rulesMask    kARM... above
//   aliasCount   room in `aliasList`; then how many were found
//   needsUpdate  whether the record is out of date
//   aliasFilter  may be null; gets the object's catalog information and `yourDataPtr`
// Returns nsvErr, fnfErr when there is none, paramErr.
OSErr MatchAlias(const FSSpec* fromFile, UInt32 rulesMask, AliasHandle alias, SInt16* aliasCount,
                 FSSpec* aliasList, Boolean* needsUpdate, AliasFilterUPP aliasFilter,
                 void* yourDataPtr);

// Tells what a record holds, without looking for the object; an empty string for what it does not,
// and for folders above the root. MacRoman. paramErr for bytes that are no alias record.
OSErr GetAliasInfo(const AliasHandle alias, AliasInfoType index, Str63 theString);

// Whether an object is an alias file (Finder flag kIsAlias); `folderFlag` whether it is a folder.
OSErr IsAliasFile(const FSSpec* fileFSSpec, Boolean* aliasFileFlag, Boolean* folderFlag);
OSErr FSIsAliasFile(const FSRef* fileRef, Boolean* aliasFileFlag, Boolean* folderFlag);

// If the file spec names an alias file, makes it name the object that the alias in there means.
//   resolveAliasChains  whether to go on when that is an alias file too
//   targetIsFolder, wasAliased  may be null
// Returns noErr and changes nothing for any other object; else what ResolveAlias returns, or the
// Resource Manager's code when there is no alias in the file.
OSErr ResolveAliasFile(FSSpec* theSpec, Boolean resolveAliasChains, Boolean* targetIsFolder,
                       Boolean* wasAliased);
OSErr ResolveAliasFileWithMountFlags(FSSpec* theSpec, Boolean resolveAliasChains,
                                     Boolean* targetIsFolder, Boolean* wasAliased,
                                     UInt32 mountFlags);
OSErr FSResolveAliasFile(FSRef* theRef, Boolean resolveAliasChains, Boolean* targetIsFolder,
                         Boolean* wasAliased);
OSErr FSResolveAliasFileWithMountFlags(FSRef* theRef, Boolean resolveAliasChains,
                                       Boolean* targetIsFolder, Boolean* wasAliased,
                                       UInt32 mountFlags);

// Resolves the alias that was read from the alias file `fromFile`, which is where the way to the
// target begins. `logon` (whether the user may be asked for a password) is not needed here.
OSErr FollowFinderAlias(const FSSpec* fromFile, AliasHandle alias, Boolean logon, FSSpec* target,
                        Boolean* wasChanged);
OSErr FSFollowFinderAlias(FSRef* fromFile, AliasHandle alias, Boolean logon, FSRef* target,
                          Boolean* wasChanged);

// The head of a record: its size in bytes without what was appended, and the application's own four
// bytes. 0 for null.
Size GetAliasSize(AliasHandle alias);
Size GetAliasSizeFromPtr(const AliasRecord* alias);
OSType GetAliasUserType(AliasHandle alias);
OSType GetAliasUserTypeFromPtr(const AliasRecord* alias);
void SetAliasUserType(AliasHandle alias, OSType userType);
void SetAliasUserTypeWithPtr(AliasPtr alias, OSType userType);

PLATFORM_DECLARATIONS_END

#endif
