// Changing Finder information, and the dates that tell of it.
#include "vantor/files/FinderFlags.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/CatalogInfo.h"
#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

std::optional<UInt32> sNow;

}  // namespace

void GetDateTime(UInt32* outSeconds) {
    if (sNow)
        *outSeconds = *sNow;
    else
        REAL_CALL(GetDateTime)(outSeconds);
}

namespace {

constexpr UInt32 kLongAgo = 3000000000;

class FinderFlags : public ::testing::Test {
  protected:
    ~FinderFlags() override { sNow.reset(); }

    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder");
    const FSSpec mFile = mDisk.MakeFile("Folder/File");
    const FSSpec mFolderSpec = mDisk.Spec("Folder");
    const FSSpec mRoot = mDisk.Spec("");
};

TEST_F(FinderFlags, AreSetAndClearedByTheirNames) {
    struct Flag {
        OSErr (*set)(FSVolumeRefNum, SInt32, ConstStr255Param);
        OSErr (*clear)(FSVolumeRefNum, SInt32, ConstStr255Param);
        OSErr (*setSpec)(const FSSpec*);
        OSErr (*clearSpec)(const FSSpec*);
        UInt16 bit;
    };
    const std::vector<Flag> flags = {
        {SetIsInvisible, ClearIsInvisible, FSpSetIsInvisible, FSpClearIsInvisible, 0x4000},
        {SetNameLocked, ClearNameLocked, FSpSetNameLocked, FSpClearNameLocked, 0x1000},
        {SetIsStationery, ClearIsStationery, FSpSetIsStationery, FSpClearIsStationery, 0x0800},
        {SetHasCustomIcon, ClearHasCustomIcon, FSpSetHasCustomIcon, FSpClearHasCustomIcon, 0x0400},
    };
    for (const Flag& flag : flags) {
        EXPECT_EQ(flag.set(mFile.vRefNum, mFile.parID, mFile.name), noErr);
        EXPECT_EQ(FlagsOf(mFile), flag.bit);
        EXPECT_EQ(flag.clear(mFile.vRefNum, mFile.parID, mFile.name), noErr);
        EXPECT_EQ(FlagsOf(mFile), 0);
        EXPECT_EQ(flag.setSpec(&mFile), noErr);
        EXPECT_EQ(FlagsOf(mFile), flag.bit);
        EXPECT_EQ(flag.clearSpec(&mFile), noErr);
        EXPECT_EQ(FlagsOf(mFile), 0);
    }
}

TEST_F(FinderFlags, HasBeenInitedIsOnlyEverCleared) {
    ASSERT_EQ(FSpChangeFDFlags(&mFile, true, 0x0101), noErr);
    EXPECT_EQ(FSpClearHasBeenInited(&mFile), noErr);
    EXPECT_EQ(FlagsOf(mFile), 0x0001);
    ASSERT_EQ(FSpChangeFDFlags(&mFile, true, 0x0100), noErr);
    EXPECT_EQ(ClearHasBeenInited(mFile.vRefNum, mFile.parID, mFile.name), noErr);
    EXPECT_EQ(FlagsOf(mFile), 0x0001);
}

TEST_F(FinderFlags, OtherBitsAndTheTypeStay) {
    FInfo info = {};
    info.fdType = 'TEXT';
    info.fdCreator = 'ttxt';
    info.fdFlags = 0x2000;
    ASSERT_EQ(FSpSetFInfo(&mFile, &info), noErr);
    ASSERT_EQ(ChangeFDFlags(mDisk.Number(), mFolder, PString("File"), true, 0x4400), noErr);
    ASSERT_EQ(FSpGetFInfo(&mFile, &info), noErr);
    EXPECT_EQ(+info.fdFlags, 0x6400);
    EXPECT_EQ(+info.fdType, OSType{'TEXT'});
    EXPECT_EQ(+info.fdCreator, OSType{'ttxt'});
}

TEST_F(FinderFlags, OfTheDirectoryItselfAreThoseOfTheFolder) {
    EXPECT_EQ(SetHasCustomIcon(mDisk.Number(), mFolder, nullptr), noErr);
    EXPECT_EQ(FlagsOf(mFolderSpec), 0x0400);
    EXPECT_EQ(SetIsInvisible(mDisk.Number(), mFolder, PString("")), noErr);
    EXPECT_EQ(FlagsOf(mFolderSpec), 0x4400);
    EXPECT_EQ(FlagsOf(mFile), 0);
}

TEST_F(FinderFlags, MoveTheParentsDateOn) {
    SetDate(mFolderSpec, kLongAgo);
    ASSERT_EQ(FSpSetIsStationery(&mFile), noErr);
    EXPECT_GT(DateOf(mFolderSpec), kLongAgo);
    SetDate(mRoot, kLongAgo);
    ASSERT_EQ(SetHasCustomIcon(mDisk.Number(), mFolder, nullptr), noErr);
    EXPECT_GT(DateOf(mRoot), kLongAgo);
}

TEST_F(FinderFlags, OfAVolumesRootMoveNoDate) {
    SetDate(mRoot, kLongAgo);
    ASSERT_EQ(SetHasCustomIcon(mDisk.Number(), fsRtDirID, nullptr), noErr);
    EXPECT_EQ(FlagsOf(mRoot), 0x0400);
    EXPECT_EQ(DateOf(mRoot), kLongAgo);
}

TEST_F(FinderFlags, OfAPathOnAnotherVolumeMoveThatVolumesDates) {
    const MountedVolume other(0, "Other");
    const FSSpec file = other.MakeFile("Inner/File"), folder = other.Spec("Inner");
    SetDate(folder, kLongAgo);
    SetDate(mFolderSpec, kLongAgo);
    ASSERT_EQ(SetIsInvisible(mDisk.Number(), mFolder, PString("Other:Inner:File")), noErr);
    EXPECT_EQ(FlagsOf(file), 0x4000);
    EXPECT_GT(DateOf(folder), kLongAgo);
    EXPECT_EQ(DateOf(mFolderSpec), kLongAgo);
}

TEST_F(FinderFlags, OfWhatIsMissingAreRefused) {
    EXPECT_EQ(SetIsInvisible(mDisk.Number(), mFolder, PString("None")), fnfErr);
    EXPECT_EQ(SetIsInvisible(-32768, 2, PString("File")), nsvErr);
    EXPECT_EQ(ChangeCreatorType(mDisk.Number(), mFolder, PString("None"), 1, 1), fnfErr);
    EXPECT_EQ(BumpDate(mDisk.Number(), mFolder, PString("None")), fnfErr);
}

TEST_F(FinderFlags, OnALockedVolumeAreRefusedBeforeAnyDateMoves) {
    const MountedVolume locked(kPlatformMountSoftwareLocked, "Locked");
    std::filesystem::create_directory(locked.Root() / "Folder");
    EXPECT_EQ(SetIsInvisible(locked.Number(), fsRtDirID, PString("Folder")), vLckdErr);
    EXPECT_EQ(FlagsOf(locked.Spec("Folder")), 0);
}

TEST_F(FinderFlags, CreatorAndTypeOfZeroStayAsTheyAre) {
    FInfo info;
    ASSERT_EQ(ChangeCreatorType(mDisk.Number(), mFolder, PString("File"), 'ttxt', 'TEXT'), noErr);
    ASSERT_EQ(FSpChangeCreatorType(&mFile, 0, 'APPL'), noErr);
    ASSERT_EQ(FSpGetFInfo(&mFile, &info), noErr);
    EXPECT_EQ(+info.fdCreator, OSType{'ttxt'});
    EXPECT_EQ(+info.fdType, OSType{'APPL'});
    ASSERT_EQ(FSpChangeCreatorType(&mFile, 'Fv8k', 0), noErr);
    ASSERT_EQ(FSpGetFInfo(&mFile, &info), noErr);
    EXPECT_EQ(+info.fdCreator, OSType{'Fv8k'});
    EXPECT_EQ(+info.fdType, OSType{'APPL'});
}

TEST_F(FinderFlags, AFolderHasNoCreator) {
    EXPECT_EQ(FSpChangeCreatorType(&mFolderSpec, 'ttxt', 'TEXT'), notAFileErr);
    EXPECT_EQ(InfoOf(mFolderSpec).hFileInfo.ioFlFndrInfo.fdType, 0u);
}

TEST_F(FinderFlags, CreatorsMoveTheParentsDateToo) {
    SetDate(mFolderSpec, kLongAgo);
    ASSERT_EQ(FSpChangeCreatorType(&mFile, 'ttxt', 'TEXT'), noErr);
    EXPECT_GT(DateOf(mFolderSpec), kLongAgo);
}

TEST_F(FinderFlags, BumpedTwiceInOneSecondTheDateStillMovesOn) {
    sNow = kLongAgo;
    ASSERT_EQ(FSpBumpDate(&mFile), noErr);
    EXPECT_EQ(DateOf(mFile), kLongAgo);
    ASSERT_EQ(FSpBumpDate(&mFile), noErr);
    EXPECT_EQ(DateOf(mFile), kLongAgo + 1);
    ASSERT_EQ(BumpDate(mDisk.Number(), mFolder, PString("File")), noErr);
    EXPECT_EQ(DateOf(mFile), kLongAgo) << "only a date that is now already is passed";
}

TEST_F(FinderFlags, BumpedDirectoriesAreThemselves) {
    sNow = kLongAgo;
    ASSERT_EQ(BumpDate(mDisk.Number(), mFolder, nullptr), noErr);
    EXPECT_EQ(DateOf(mFolderSpec), kLongAgo);
    EXPECT_NE(DateOf(mFile), kLongAgo);
}

}  // namespace
