// What only servers did: owners and rights, users and groups, share points, copies made by the
// server itself. Usable from C.
//
// Each is one call of the File Manager, with its results: paramErr where a volume does not offer it
// (VolumeParameters.h tells). Outputs are written only on success.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// How the user was logged in to a volume (kNoUserAuthentication ...), and under which name.
VANTOR_EXPORT OSErr HGetLogInInfo(FSVolumeRefNum inVRefNum, SInt16* outMethod, StringPtr outUser);

// Owner, group and rights (kioACAccessOwnerReadMask ...) of a folder.
VANTOR_EXPORT OSErr HGetDirAccess(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                  SInt32* outOwnerID, SInt32* outGroupID, SInt32* outRights);
VANTOR_EXPORT OSErr FSpGetDirAccess(const FSSpec* inSpec, SInt32* outOwnerID, SInt32* outGroupID,
                                    SInt32* outRights);
VANTOR_EXPORT OSErr HSetDirAccess(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                  SInt32 inOwnerID, SInt32 inGroupID, SInt32 inRights);
VANTOR_EXPORT OSErr FSpSetDirAccess(const FSSpec* inSpec, SInt32 inOwnerID, SInt32 inGroupID,
                                    SInt32 inRights);

// From the ID of a user or group to the name (a Str31) and back; `inType` is kOwnerID2Name,
// kGroupID2Name, kOwnerName2ID or kGroupName2ID.
VANTOR_EXPORT OSErr HMapID(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt32 inID,
                           SInt16 inType, StringPtr outName);
VANTOR_EXPORT OSErr HMapName(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                             ConstStr255Param inName, SInt16 inType, SInt32* outID);

// A copy made by the server that both volumes are on.
//   inDestinationPath  from the directory to the folder; may be null
//   inCopyName         null: the old name
VANTOR_EXPORT OSErr HCopyFile(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                              ConstStr255Param inSourceName, FSVolumeRefNum inDestinationVRefNum,
                              SInt32 inDestinationDirID, ConstStr255Param inDestinationPath,
                              ConstStr255Param inCopyName);
// `inDestination` is the folder.
VANTOR_EXPORT OSErr FSpCopyFile(const FSSpec* inSource, const FSSpec* inDestination,
                                ConstStr255Param inCopyName);

// Makes a folder a share point, and ends that.
VANTOR_EXPORT OSErr Share(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpShare(const FSSpec* inSpec);
VANTOR_EXPORT OSErr Unshare(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName);
VANTOR_EXPORT OSErr FSpUnshare(const FSSpec* inSpec);

// A user or group of this machine.
struct UGEntry {
    SInt16 objType;  // as ioObjType came back
    SInt32 objID;
    Str31 name;
};
typedef struct UGEntry UGEntry;

// The user or group behind the one with the ID in `ioID` (0: the first), by kReturnNextUser,
// kReturnNextGroup or kReturnNextUG. fnfErr behind the last one.
VANTOR_EXPORT OSErr GetUGEntry(SInt16 inType, StringPtr outName, SInt32* ioID);
// As many of them as fit. noErr when all places were filled, else what ended it.
VANTOR_EXPORT OSErr GetUGEntries(SInt16 inType, UGEntry* outEntries, SInt32 inCapacity,
                                 SInt32* outCount, SInt32* ioID);

// A foreign file system's own rights on an object: bytes and four numbers, whose meaning the
// volume's foreign privilege model says.
//   ioSize  bytes the buffer holds, then bytes that came
VANTOR_EXPORT OSErr GetForeignPrivs(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                    ConstStr255Param inName, void* outBuffer, SInt32* ioSize,
                                    SInt32* outInfo1, SInt32* outInfo2, SInt32* outInfo3,
                                    SInt32* outInfo4);
VANTOR_EXPORT OSErr FSpGetForeignPrivs(const FSSpec* inSpec, void* outBuffer, SInt32* ioSize,
                                       SInt32* outInfo1, SInt32* outInfo2, SInt32* outInfo3,
                                       SInt32* outInfo4);
VANTOR_EXPORT OSErr SetForeignPrivs(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                    ConstStr255Param inName, const void* inBuffer, SInt32* ioSize,
                                    SInt32 inInfo1, SInt32 inInfo2, SInt32 inInfo3, SInt32 inInfo4);
VANTOR_EXPORT OSErr FSpSetForeignPrivs(const FSSpec* inSpec, const void* inBuffer, SInt32* ioSize,
                                       SInt32 inInfo1, SInt32 inInfo2, SInt32 inInfo3,
                                       SInt32 inInfo4);

VANTOR_END_C
