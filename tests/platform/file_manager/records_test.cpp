// Sizes and offsets that travel in events and files.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <cstddef>

namespace {

static_assert(sizeof(FSSpec) == 70 && offsetof(FSSpec, parID) == 2 && offsetof(FSSpec, name) == 6);
static_assert(sizeof(FSRef) == 80);
static_assert(sizeof(HFSUniStr255) == 512 && offsetof(HFSUniStr255, unicode) == 2);
static_assert(sizeof(UTCDateTime) == 8 && offsetof(UTCDateTime, lowSeconds) == 2);
static_assert(sizeof(FInfo) == 16 && offsetof(FInfo, fdFlags) == 8 &&
              offsetof(FInfo, fdFldr) == 14);
static_assert(sizeof(FXInfo) == 16 && offsetof(FXInfo, fdScript) == 8 &&
              offsetof(FXInfo, fdPutAway) == 12);
static_assert(sizeof(DInfo) == 16 && offsetof(DInfo, frView) == 14);
static_assert(sizeof(DXInfo) == 16 && offsetof(DXInfo, frComment) == 10);
static_assert(sizeof(FileInfo) == 16 && sizeof(FolderInfo) == 16);
static_assert(sizeof(ExtendedFileInfo) == 16 && sizeof(ExtendedFolderInfo) == 16);
static_assert(sizeof(FSCatalogInfo) == 144 && offsetof(FSCatalogInfo, createDate) == 16 &&
              offsetof(FSCatalogInfo, permissions) == 56 &&
              offsetof(FSCatalogInfo, finderInfo) == 72 &&
              offsetof(FSCatalogInfo, dataLogicalSize) == 104 &&
              offsetof(FSCatalogInfo, valence) == 136);
static_assert(sizeof(CatPositionRec) == 16 && offsetof(CatPositionRec, priv) == 4);
static_assert(sizeof(AFPVolMountInfo) == 168 && offsetof(AFPVolMountInfo, AFPData) == 24);
static_assert(sizeof(AFPXVolMountInfo) == 206 && offsetof(AFPXVolMountInfo, AFPData) == 30);
static_assert(sizeof(VolumeMountInfoHeader) == 8 && sizeof(VolMountInfoHeader) == 6);
static_assert(offsetof(GetVolParmsInfoBuffer, vMAttrib) == 2 &&
              sizeof(GetVolParmsInfoBuffer) == 40);

// What a program writes by one view of a record it may read by another.
constexpr size_t kHead = offsetof(IOParam, ioRefNum);
static_assert(offsetof(HFileInfo, ioDirID) == offsetof(DirInfo, ioDrDirID) &&
              offsetof(HFileInfo, ioFlStBlk) == offsetof(DirInfo, ioDrNmFls) &&
              offsetof(HFileInfo, ioFlParID) == offsetof(DirInfo, ioDrParID) &&
              offsetof(HFileInfo, ioFlFndrInfo) == offsetof(DirInfo, ioDrUsrWds) &&
              offsetof(HFileInfo, ioFlXFndrInfo) == offsetof(DirInfo, ioDrFndrInfo) &&
              offsetof(HFileInfo, ioFlCrDat) == offsetof(DirInfo, ioDrCrDat) &&
              offsetof(HFileInfo, ioFlBkDat) == offsetof(DirInfo, ioDrBkDat));
static_assert(offsetof(HFileParam, ioDirID) == kHead + 24 &&
              offsetof(AccessParam, ioDirID) == kHead + 24 &&
              offsetof(WDParam, ioWDDirID) == kHead + 24 &&
              offsetof(HFileInfo, ioDirID) == kHead + 24);
static_assert(offsetof(HIOParam, ioRefNum) == offsetof(AccessParam, ioRefNum) &&
              offsetof(HVolumeParam, ioVolIndex) == offsetof(XVolumeParam, ioVolIndex) &&
              offsetof(XVolumeParam, ioVTotalBytes) == sizeof(HVolumeParam));
static_assert(kUseWidePositioning == 0x100 && fsSBNegate == 0x4000 && bAccessCntl == 18);
static_assert(fsRtParID == 1 && fsRtDirID == 2);

}  // namespace
