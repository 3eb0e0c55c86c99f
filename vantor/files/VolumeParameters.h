// What a volume can do: reading the buffer that HGetVolParms fills. Usable from C.
//
// The buffer grew with its version; a field that its version does not have yet reads as 0, and the
// tests of extended attributes as false. Each test tells about one bit, named after it.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// The fields.
VANTOR_EXPORT SInt16 GetVolParmsInfoVersion(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT UInt32 GetVolParmsInfoAttrib(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Handle GetVolParmsInfoLocalHand(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT SInt32 GetVolParmsInfoServerAdr(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT SInt32 GetVolParmsInfoVolumeGrade(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT SInt16 GetVolParmsInfoForeignPrivID(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT UInt32 GetVolParmsInfoExtendedAttributes(const GetVolParmsInfoBuffer* inParms);

// True when the volume has a server address.
VANTOR_EXPORT Boolean isNetworkVolume(const GetVolParmsInfoBuffer* inParms);

// Attributes, from the highest bit down.
VANTOR_EXPORT Boolean hasLimitFCBs(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasLocalWList(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoMiniFndr(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoVNEdit(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoLclSync(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasTrshOffLine(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoSwitchTo(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoDeskItems(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoBootBlks(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasAccessCntl(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasNoSysDir(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasExtFSVol(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasOpenDeny(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasCopyFile(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasMoveRename(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasDesktopMgr(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasShortName(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasFolderLock(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasPersonalAccessPrivileges(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasUserGroupList(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasCatSearch(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasFileIDs(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasBTreeMgr(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean hasBlankAccessPrivileges(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean supportsAsyncRequests(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean supportsTrashVolumeCache(const GetVolParmsInfoBuffer* inParms);

// Extended attributes, from the lowest bit up.
VANTOR_EXPORT Boolean volIsEjectable(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsHFSPlusAPIs(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsFSCatalogSearch(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsFSExchangeObjects(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupports2TBFiles(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsLongNames(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsMultiScriptNames(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsNamedForks(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volSupportsSubtreeIterators(const GetVolParmsInfoBuffer* inParms);
VANTOR_EXPORT Boolean volL2PCanMapFileBlocks(const GetVolParmsInfoBuffer* inParms);

// A user's rights in a folder, from the byte that GetIOACUser tells.
VANTOR_EXPORT Boolean userIsOwner(SInt8 inRights);
VANTOR_EXPORT Boolean userHasFullAccess(SInt8 inRights);
VANTOR_EXPORT Boolean userHasDropBoxAccess(SInt8 inRights);
VANTOR_EXPORT Boolean userHasBulletinBoard(SInt8 inRights);
VANTOR_EXPORT Boolean userHasNoAccess(SInt8 inRights);

VANTOR_END_C
