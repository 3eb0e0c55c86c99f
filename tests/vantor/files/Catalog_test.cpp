// One object of the catalog, and what is in a folder.
#include "vantor/files/Catalog.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <set>
#include <vector>

#include "support/CatalogInfo.h"
#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "vantor/files/VolumeParameters.h"

namespace {

namespace fs = std::filesystem;

class Catalog : public ::testing::Test {
  protected:
    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder");
    const FSSpec mFile = mDisk.MakeFile("Folder/File", "12345");
    const FSSpec mFolderSpec = mDisk.Spec("Folder");
};

TEST_F(Catalog, FinderInformationOfAFolderIsWrittenAndRead) {
    DInfo info = {};
    info.frRect = {1, 2, 3, 4};
    info.frView = 0x0102;
    ASSERT_EQ(SetDInfo(mDisk.Number(), fsRtDirID, PString("Folder"), &info), noErr);
    DInfo read = {};
    ASSERT_EQ(FSpGetDInfo(&mFolderSpec, &read), noErr);
    EXPECT_EQ(+read.frRect.right, 4);
    EXPECT_EQ(+read.frView, 0x0102);
    info.frView = 7;
    ASSERT_EQ(SetDInfo(mDisk.Number(), mFolder, nullptr, &info), noErr);
    ASSERT_EQ(GetDInfo(mDisk.Number(), mFolder, PString(""), &read), noErr);
    EXPECT_EQ(+read.frView, 7);
    info.frView = 8;
    ASSERT_EQ(FSpSetDInfo(&mFolderSpec, &info), noErr);
    ASSERT_EQ(GetDInfo(mDisk.Number(), mFolder, nullptr, &read), noErr);
    EXPECT_EQ(+read.frView, 8);
}

TEST_F(Catalog, FinderInformationOfAFileIsNoFolders) {
    DInfo info = {};
    info.frView = 1;
    EXPECT_EQ(FSpGetDInfo(&mFile, &info), dirNFErr);
    EXPECT_EQ(FSpSetDInfo(&mFile, &info), dirNFErr);
    EXPECT_EQ(+info.frView, 1);
    EXPECT_EQ(InfoOf(mFile).hFileInfo.ioFlFndrInfo.fdFldr, 0);
}

TEST_F(Catalog, DirectoryIDIsTheFoldersOwnOrTheFilesParent) {
    SInt32 id = 0;
    Boolean isFolder = false;
    ASSERT_EQ(GetDirectoryID(mDisk.Number(), fsRtDirID, PString("Folder"), &id, &isFolder), noErr);
    EXPECT_EQ(id, mFolder);
    EXPECT_TRUE(isFolder);
    ASSERT_EQ(FSpGetDirectoryID(&mFile, &id, &isFolder), noErr);
    EXPECT_EQ(id, mFolder);
    EXPECT_FALSE(isFolder);
    ASSERT_EQ(GetDirectoryID(mDisk.Number(), mFolder, nullptr, &id, &isFolder), noErr);
    EXPECT_EQ(id, mFolder);
    EXPECT_TRUE(isFolder);
    ASSERT_EQ(GetDirectoryID(0, 0, PString("Disk:"), &id, &isFolder), noErr);
    EXPECT_EQ(id, fsRtDirID);
    EXPECT_EQ(GetDirectoryID(mDisk.Number(), 2, PString("None"), &id, &isFolder), fnfErr);
}

TEST_F(Catalog, RightsAreThoseOfAFolder) {
    SInt8 rights = -1;
    ASSERT_EQ(GetIOACUser(mDisk.Number(), mFolder, nullptr, &rights), noErr);
    EXPECT_TRUE(userIsOwner(rights));
    EXPECT_TRUE(userHasFullAccess(rights));
    EXPECT_EQ(FSpGetIOACUser(&mFile, &rights), dirNFErr);
    EXPECT_EQ(FSpGetIOACUser(&mFolderSpec, &rights), noErr);
}

TEST_F(Catalog, RightsOfSomeoneElsesFolderAreNotTheOwners) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
    ASSERT_EQ(chown((mDisk.Root() / "Folder").c_str(), 12345, 12345), 0);
    SInt8 rights = 0;
    ASSERT_EQ(FSpGetIOACUser(&mFolderSpec, &rights), noErr);
    EXPECT_FALSE(userIsOwner(rights));
}

TEST_F(Catalog, LocksAreSeenOnFilesAndFolders) {
    EXPECT_EQ(FSpCheckObjectLock(&mFile), noErr);
    ASSERT_EQ(FSpSetFLock(&mFile), noErr);
    EXPECT_EQ(FSpCheckObjectLock(&mFile), fLckdErr);
    EXPECT_EQ(CheckObjectLock(mDisk.Number(), mFolder, PString("File")), fLckdErr);
    EXPECT_EQ(CheckObjectLock(mDisk.Number(), mFolder, nullptr), noErr);
    EXPECT_EQ(CheckObjectLock(mDisk.Number(), mFolder, PString("None")), fnfErr);
    ASSERT_EQ(FSpRstFLock(&mFile), noErr);
}

TEST_F(Catalog, SizesOfBothForksAreTold) {
    SInt16 fork = 0;
    SInt32 count = 3, data = -1, resource = -1;
    ASSERT_EQ(FSpOpenRF(&mFile, fsRdWrPerm, &fork), noErr);
    ASSERT_EQ(FSWrite(fork, &count, "abc"), noErr);
    ASSERT_EQ(FSClose(fork), noErr);
    ASSERT_EQ(GetFileSize(mDisk.Number(), mFolder, PString("File"), &data, &resource), noErr);
    EXPECT_EQ(data, 5);
    EXPECT_EQ(resource, 3);
    EXPECT_EQ(FSpGetFileSize(&mFolderSpec, &data, &resource), fnfErr);
    EXPECT_EQ(data, 5);
}

TEST_F(Catalog, MinimalFilesHaveNoSignature) {
    ASSERT_EQ(HCreateMinimum(mDisk.Number(), mFolder, PString("New")), noErr);
    const FSSpec made = mDisk.Spec(":Folder:New");
    SInt32 data = -1, resource = -1;
    ASSERT_EQ(FSpGetFileSize(&made, &data, &resource), noErr);
    EXPECT_EQ(data + resource, 0);
    EXPECT_EQ(InfoOf(made).hFileInfo.ioFlFndrInfo.fdType, 0u);
    EXPECT_EQ(FSpCreateMinimum(&made), dupFNErr);
    EXPECT_EQ(FSpCreateMinimum(&mFolderSpec), dupFNErr);
}

class DirItems : public ::testing::Test {
  protected:
    DirItems() {
        for (const char* const name : {"b", "d", "f"})
            mDisk.MakeFile(std::string("Folder/") + name);
        for (const char* const name : {"a", "c", "e"})
            mDisk.MakeFolder(std::string("Folder/") + name);
    }

    // The names found from the index on, until the capacity is reached or the folder ends.
    std::vector<std::string> List(bool inFiles, bool inFolders, SInt16 inCapacity) {
        FSSpec items[8];
        SInt16 count = -1;
        mError = GetDirItems(mDisk.Number(), mFolder, nullptr, inFiles, inFolders, items,
                             inCapacity, &count, &mIndex);
        std::vector<std::string> names;
        for (SInt16 i = 0; i < count; ++i) {
            EXPECT_EQ(+items[i].vRefNum, mDisk.Number());
            EXPECT_EQ(+items[i].parID, mFolder);
            names.push_back(TextOf(items[i].name));
        }
        return names;
    }
    using Names = std::vector<std::string>;

    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder");
    SInt16 mIndex = 1;
    OSErr mError = noErr;
};

TEST_F(DirItems, AreAllUntilTheFolderEnds) {
    EXPECT_EQ(List(true, true, 8), (Names{"a", "b", "c", "d", "e", "f"}));
    EXPECT_EQ(mError, fnfErr);
    EXPECT_EQ(mIndex, 7);
}

TEST_F(DirItems, GoOnWhereTheArrayWasFull) {
    EXPECT_EQ(List(true, true, 4), (Names{"a", "b", "c", "d"}));
    EXPECT_EQ(mError, noErr);
    EXPECT_EQ(mIndex, 5);
    EXPECT_EQ(List(true, true, 4), (Names{"e", "f"}));
    EXPECT_EQ(mError, fnfErr);
}

TEST_F(DirItems, AreOfTheWantedKindOnly) {
    EXPECT_EQ(List(true, false, 2), (Names{"b", "d"}));
    EXPECT_EQ(mIndex, 5);
    mIndex = 1;
    EXPECT_EQ(List(false, true, 8), (Names{"a", "c", "e"}));
    EXPECT_EQ(mIndex, 7);
}

TEST_F(DirItems, OfNoKindFillNothingButReachTheEnd) {
    EXPECT_EQ(List(false, false, 1), Names{});
    EXPECT_EQ(mError, fnfErr);
    EXPECT_EQ(mIndex, 7);
}

TEST_F(DirItems, WithoutRoomStayWhereTheyAre) {
    EXPECT_EQ(List(true, true, 0), Names{});
    EXPECT_EQ(mError, noErr);
    EXPECT_EQ(mIndex, 1);
}

TEST_F(DirItems, NeedAnIndexFromOneOn) {
    for (const SInt16 index : {SInt16{0}, SInt16{-3}}) {
        mIndex = index;
        List(true, true, 8);
        EXPECT_EQ(mError, paramErr);
        EXPECT_EQ(mIndex, index);
    }
}

TEST_F(DirItems, AreOfFoldersOnly) {
    FSSpec item;
    SInt16 count = 5;
    const FSSpec file = mDisk.Spec(":Folder:b");
    EXPECT_EQ(FSpGetDirItems(&file, true, true, &item, 1, &count, &mIndex), dirNFErr);
    EXPECT_EQ(GetDirItems(mDisk.Number(), mFolder, PString("none"), true, true, &item, 1, &count,
                          &mIndex),
              fnfErr);
    EXPECT_EQ(count, 5);
}

TEST_F(DirItems, OfAPathAreOnItsVolume) {
    const MountedVolume other(0, "Other");
    FSSpec item;
    SInt16 count = 0;
    ASSERT_EQ(GetDirItems(other.Number(), 2, PString("Disk:Folder"), true, true, &item, 1, &count,
                          &mIndex),
              noErr);
    EXPECT_EQ(+item.vRefNum, mDisk.Number());
}

TEST_F(DirItems, DoNotShowWhatBelongsToAFile) {
    const FSSpec file = mDisk.Spec(":Folder:b");
    FInfo info = {};
    info.fdType = 'TEXT';
    ASSERT_EQ(FSpSetFInfo(&file, &info), noErr);
    ASSERT_TRUE(mDisk.Has("Folder/._b"));
    EXPECT_EQ(List(true, true, 8).size(), 6u);
}

TEST_F(DirItems, KeepNoNumberForThe32768thEntry) {
    const StFileFaults faults;
    gFileFaults.getCatalogInfo = [](CInfoPBPtr ioInfo) {  // a folder without an end
        if (ioInfo->hFileInfo.ioFDirIndex <= 0) return REAL_CALL(PBGetCatInfoSync)(ioInfo);
        ioInfo->hFileInfo.ioFlAttrib = 0;
        ioInfo->hFileInfo.ioFlParID = ioInfo->hFileInfo.ioDirID;
        return OSErr{noErr};
    };
    mIndex = 32765;
    EXPECT_EQ(List(true, true, 8).size(), 3u);
    EXPECT_EQ(mError, paramErr);
    EXPECT_EQ(mIndex, -32768);
}

TEST_F(DirItems, OfAFolderThatVanishesEndWithAnError) {
    EXPECT_EQ(List(true, true, 2).size(), 2u);
    fs::remove_all(mDisk.Root() / "Folder");
    EXPECT_EQ(List(true, true, 8), Names{});
    EXPECT_EQ(mError, dirNFErr);
}

}  // namespace
