// The fields of a volume's parameters and the bits in them.
#include "vantor/files/VolumeParameters.h"

namespace {

Boolean HasBit(const GetVolParmsInfoBuffer* inParms, int inBit) {
    return (GetVolParmsInfoAttrib(inParms) >> inBit & 1) != 0;
}

Boolean HasExtendedBit(const GetVolParmsInfoBuffer* inParms, int inBit) {
    return (GetVolParmsInfoExtendedAttributes(inParms) >> inBit & 1) != 0;
}

// What the user may not do: see folders, see files, make changes.
int DeniedRights(SInt8 inRights) {
    return inRights & 7;
}

}  // namespace

SInt16 GetVolParmsInfoVersion(const GetVolParmsInfoBuffer* inParms) {
    return inParms->vMVersion;
}

UInt32 GetVolParmsInfoAttrib(const GetVolParmsInfoBuffer* inParms) {
    return UInt32(inParms->vMAttrib);
}

Handle GetVolParmsInfoLocalHand(const GetVolParmsInfoBuffer* inParms) {
    return inParms->vMLocalHand;
}

SInt32 GetVolParmsInfoServerAdr(const GetVolParmsInfoBuffer* inParms) {
    return inParms->vMServerAdr;
}

SInt32 GetVolParmsInfoVolumeGrade(const GetVolParmsInfoBuffer* inParms) {
    return inParms->vMVersion > 1 ? inParms->vMVolumeGrade : 0;
}

SInt16 GetVolParmsInfoForeignPrivID(const GetVolParmsInfoBuffer* inParms) {
    return inParms->vMVersion > 1 ? inParms->vMForeignPrivID : SInt16{0};
}

UInt32 GetVolParmsInfoExtendedAttributes(const GetVolParmsInfoBuffer* inParms) {
    return inParms->vMVersion > 2 ? UInt32(inParms->vMExtendedAttributes) : 0;
}

Boolean isNetworkVolume(const GetVolParmsInfoBuffer* inParms) {
    return GetVolParmsInfoServerAdr(inParms) != 0;
}

Boolean hasLimitFCBs(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bLimitFCBs);
}

Boolean hasLocalWList(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bLocalWList);
}

Boolean hasNoMiniFndr(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoMiniFndr);
}

Boolean hasNoVNEdit(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoVNEdit);
}

Boolean hasNoLclSync(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoLclSync);
}

Boolean hasTrshOffLine(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bTrshOffLine);
}

Boolean hasNoSwitchTo(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoSwitchTo);
}

Boolean hasNoDeskItems(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoDeskItems);
}

Boolean hasNoBootBlks(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoBootBlks);
}

Boolean hasAccessCntl(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bAccessCntl);
}

Boolean hasNoSysDir(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bNoSysDir);
}

Boolean hasExtFSVol(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasExtFSVol);
}

Boolean hasOpenDeny(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasOpenDeny);
}

Boolean hasCopyFile(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasCopyFile);
}

Boolean hasMoveRename(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasMoveRename);
}

Boolean hasDesktopMgr(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasDesktopMgr);
}

Boolean hasShortName(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasShortName);
}

Boolean hasFolderLock(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasFolderLock);
}

Boolean hasPersonalAccessPrivileges(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasPersonalAccessPrivileges);
}

Boolean hasUserGroupList(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasUserGroupList);
}

Boolean hasCatSearch(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasCatSearch);
}

Boolean hasFileIDs(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasFileIDs);
}

Boolean hasBTreeMgr(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasBTreeMgr);
}

Boolean hasBlankAccessPrivileges(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bHasBlankAccessPrivileges);
}

Boolean supportsAsyncRequests(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bSupportsAsyncRequests);
}

Boolean supportsTrashVolumeCache(const GetVolParmsInfoBuffer* inParms) {
    return HasBit(inParms, bSupportsTrashVolumeCache);
}

Boolean volIsEjectable(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bIsEjectable);
}

Boolean volSupportsHFSPlusAPIs(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsHFSPlusAPIs);
}

Boolean volSupportsFSCatalogSearch(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsFSCatalogSearch);
}

Boolean volSupportsFSExchangeObjects(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsFSExchangeObjects);
}

Boolean volSupports2TBFiles(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupports2TBFiles);
}

Boolean volSupportsLongNames(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsLongNames);
}

Boolean volSupportsMultiScriptNames(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsMultiScriptNames);
}

Boolean volSupportsNamedForks(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsNamedForks);
}

Boolean volSupportsSubtreeIterators(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bSupportsSubtreeIterators);
}

Boolean volL2PCanMapFileBlocks(const GetVolParmsInfoBuffer* inParms) {
    return HasExtendedBit(inParms, bL2PCanMapFileBlocks);
}

Boolean userIsOwner(SInt8 inRights) {
    return (inRights & 0x80) == 0;
}

Boolean userHasFullAccess(SInt8 inRights) {
    return DeniedRights(inRights) == 0;
}

Boolean userHasDropBoxAccess(SInt8 inRights) {
    return DeniedRights(inRights) == 3;
}

Boolean userHasBulletinBoard(SInt8 inRights) {
    return DeniedRights(inRights) == 4;
}

Boolean userHasNoAccess(SInt8 inRights) {
    return DeniedRights(inRights) == 7;
}
