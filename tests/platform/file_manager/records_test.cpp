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
static_assert(fsRtParID == 1 && fsRtDirID == 2);

}  // namespace
