// Moving under another name, on volumes with and without a call for it.
#include "vantor/files/MoveRename.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

std::optional<UInt32> sTicks;
std::optional<OSErr> sDirCreateError;
std::vector<std::string> sMade;  // the names folders were asked for under
int sMoveRenames = 0;

}  // namespace

UInt32 TickCount(void) {
    return sTicks ? *sTicks : REAL_CALL(TickCount)();
}

OSErr DirCreate(FSVolumeRefNum inVolume, SInt32 inParentID, ConstStr255Param inName,
                SInt32* outDirID) {
    sMade.push_back(TextOf(inName));
    if (sDirCreateError) return *sDirCreateError;
    return REAL_CALL(DirCreate)(inVolume, inParentID, inName, outDirID);
}

OSErr PBHMoveRenameSync(HParmBlkPtr ioBlock) {
    ++sMoveRenames;
    return REAL_CALL(PBHMoveRenameSync)(ioBlock);
}

namespace {

using Names = std::vector<std::string>;

class MoveRename : public ::testing::Test {
  protected:
    explicit MoveRename(OptionBits inOptions = 0) : mDisk(inOptions) {
        sMade.clear();
        sMoveRenames = 0;
    }
    ~MoveRename() override {
        sTicks.reset();
        sDirCreateError.reset();
    }

    OSErr Move(const char* inName, ConstStr255Param inNewName) const {
        return HMoveRenameCompat(mDisk.Number(), mFrom, PString(inName), mTo, nullptr, inNewName);
    }
    bool HasMoved() const { return !mDisk.Has("From/File") && mDisk.Read("To/New") == "text"; }
    bool IsAsBefore() const { return mDisk.Read("From/File") == "text" && !mDisk.Has("To/New"); }

    SInt32 TemporaryItems() const {
        FSVolumeRefNum volume = 0;
        SInt32 folder = 0;
        EXPECT_EQ(FindFolder(mDisk.Number(), kTemporaryFolderType, kCreateFolder, &volume, &folder),
                  noErr);
        EXPECT_EQ(volume, mDisk.Number());
        return folder;
    }
    int CountTemporaryItems() const {
        CInfoPBRec info = {};
        info.dirInfo.ioFDirIndex = -1;
        info.dirInfo.ioVRefNum = mDisk.Number();
        info.dirInfo.ioDrDirID = TemporaryItems();
        EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
        return info.dirInfo.ioDrNmFls;
    }

    const MountedVolume mDisk;
    const SInt32 mFrom = mDisk.MakeFolder("From"), mTo = mDisk.MakeFolder("To");
    const FSSpec mFile = mDisk.MakeFile("From/File", "text"), mToSpec = mDisk.Spec("To");
};

// Where the volume has no such call.
class MoveRenameEmulated : public MoveRename {
  protected:
    MoveRenameEmulated() : MoveRename(kPlatformMountNoMoveRename) {}
};

TEST_F(MoveRename, IsOneCallWhereTheVolumeHasIt) {
    EXPECT_EQ(Move("File", PString("New")), noErr);
    EXPECT_TRUE(HasMoved());
    EXPECT_EQ(sMoveRenames, 1);
    EXPECT_EQ(sMade, Names{});
}

TEST_F(MoveRename, IsOneCallAlsoWithoutANewName) {
    EXPECT_EQ(Move("File", nullptr), noErr);
    EXPECT_EQ(mDisk.Read("To/File"), "text");
    EXPECT_EQ(sMoveRenames, 1);
}

TEST_F(MoveRename, IsRefusedByVolumesWithoutTheCallItself) {
    EXPECT_EQ(HMoveRename(mDisk.Number(), mFrom, PString("File"), mTo, nullptr, PString("New")),
              noErr);
    EXPECT_TRUE(HasMoved());
    const MountedVolume plain(kPlatformMountNoMoveRename, "Plain");
    const SInt32 folder = plain.MakeFolder("Folder");
    plain.MakeFile("File");
    EXPECT_EQ(HMoveRename(plain.Number(), 2, PString("File"), folder, nullptr, PString("New")),
              paramErr);
    EXPECT_TRUE(plain.Has("File"));
}

TEST_F(MoveRename, GivesTheCallsOwnErrorBack) {
    mDisk.MakeFile("To/New");
    EXPECT_EQ(Move("File", PString("New")), dupFNErr);
    EXPECT_EQ(sMade, Names{}) << "no second way is tried";
}

TEST_F(MoveRename, StopsWhenTheVolumeCannotBeAsked) {
    const StFileFaults faults;
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{ioErr}; };
    EXPECT_EQ(Move("File", PString("New")), ioErr);
    EXPECT_TRUE(IsAsBefore());
    EXPECT_EQ(sMoveRenames, 0);
}

TEST_F(MoveRename, GoesRoundWhereTheVolumeDoesNotTell) {
    const StFileFaults faults;
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{paramErr}; };
    EXPECT_EQ(Move("File", PString("New")), noErr);
    EXPECT_TRUE(HasMoved());
    EXPECT_EQ(sMoveRenames, 0);
}

TEST_F(MoveRename, OfSpecsIsWithinOneVolume) {
    const MountedVolume other(0, "Other");
    const FSSpec root = other.Spec("");
    EXPECT_EQ(FSpMoveRenameCompat(&mFile, &root, PString("New")), diffVolErr);
    EXPECT_TRUE(IsAsBefore());
    EXPECT_EQ(FSpMoveRenameCompat(&mFile, &mToSpec, PString("New")), noErr);
    EXPECT_TRUE(HasMoved());
}

TEST_F(MoveRenameEmulated, OnlyMovesWithoutANewName) {
    EXPECT_EQ(Move("File", nullptr), noErr);
    EXPECT_EQ(mDisk.Read("To/File"), "text");
    EXPECT_EQ(sMade, Names{});
}

TEST_F(MoveRenameEmulated, GoesByWayOfTheTemporaryItems) {
    sTicks = 123456;
    EXPECT_EQ(Move("File", PString("New")), noErr);
    EXPECT_TRUE(HasMoved());
    EXPECT_EQ(sMade, Names{"123456"});
    EXPECT_EQ(CountTemporaryItems(), 0);
}

TEST_F(MoveRenameEmulated, TakesTheNewNameAlsoFromATakenOneAtHome) {
    mDisk.MakeFile("From/New", "other");  // where renaming in place would have failed
    EXPECT_EQ(Move("File", PString("New")), noErr);
    EXPECT_TRUE(HasMoved());
    EXPECT_EQ(mDisk.Read("From/New"), "other");
}

TEST_F(MoveRenameEmulated, FollowsPathsAtBothEnds) {
    EXPECT_EQ(HMoveRenameCompat(0, 0, PString("Disk:From:File"), fsRtDirID, PString(":To"),
                                PString("New")),
              noErr);
    EXPECT_TRUE(HasMoved());
}

TEST_F(MoveRenameEmulated, CarriesFoldersWithAllTheyHold) {
    mDisk.MakeFile("From/Folder/Inner", "inner");
    EXPECT_EQ(Move("Folder", PString("New")), noErr);
    EXPECT_EQ(mDisk.Read("To/New/Inner"), "inner");
}

TEST_F(MoveRenameEmulated, RaisesTheFirstCharacterWhenItsFolderExists) {
    sTicks = 123456;
    SInt32 made = 0;
    const SInt32 temporary = TemporaryItems();
    ASSERT_EQ(DirCreate(mDisk.Number(), temporary, PString("123456"), &made), noErr);
    ASSERT_EQ(DirCreate(mDisk.Number(), temporary, PString("223456"), &made), noErr);
    sMade.clear();
    EXPECT_EQ(Move("File", PString("New")), noErr);
    EXPECT_TRUE(HasMoved());
    EXPECT_EQ(sMade, (Names{"123456", "223456", "323456"}));
    EXPECT_EQ(CountTemporaryItems(), 2);
}

TEST_F(MoveRenameEmulated, StepsOverTheColonBehindNine) {
    sTicks = 987;
    SInt32 made = 0;
    ASSERT_EQ(DirCreate(mDisk.Number(), TemporaryItems(), PString("987"), &made), noErr);
    sMade.clear();
    EXPECT_EQ(Move("File", PString("New")), noErr);
    EXPECT_EQ(sMade, (Names{"987", ";87"}));
}

TEST_F(MoveRenameEmulated, GivesUpAfter64Retries) {
    sDirCreateError = dupFNErr;
    EXPECT_EQ(Move("File", PString("New")), dupFNErr);
    EXPECT_EQ(sMade.size(), 65u);
    EXPECT_TRUE(IsAsBefore());
}

TEST_F(MoveRenameEmulated, DoesNotRetryAfterAnyOtherError) {
    sDirCreateError = dskFulErr;
    EXPECT_EQ(Move("File", PString("New")), dskFulErr);
    EXPECT_EQ(sMade.size(), 1u);
    EXPECT_TRUE(IsAsBefore());
}

TEST_F(MoveRenameEmulated, PutsAllBackWhenTheNameIsTakenThere) {
    mDisk.MakeFile("To/New", "other");
    EXPECT_EQ(Move("File", PString("New")), dupFNErr);
    EXPECT_EQ(mDisk.Read("From/File"), "text");
    EXPECT_EQ(mDisk.Read("To/New"), "other");
    EXPECT_EQ(CountTemporaryItems(), 0);
}

TEST_F(MoveRenameEmulated, PutsAllBackWhenTheDestinationIsMissing) {
    EXPECT_EQ(HMoveRenameCompat(mDisk.Number(), mFrom, PString("File"), mTo, PString(":None"),
                                PString("New")),
              fnfErr);
    EXPECT_TRUE(IsAsBefore());
    EXPECT_EQ(CountTemporaryItems(), 0);
}

TEST_F(MoveRenameEmulated, PutsAllBackWhenTheNewNameIsNone) {
    EXPECT_EQ(Move("File", PString("A:B")), bdNamErr);
    EXPECT_TRUE(IsAsBefore());
    EXPECT_EQ(CountTemporaryItems(), 0);
}

TEST_F(MoveRenameEmulated, LeavesALockedFileWhereItIs) {
    ASSERT_EQ(FSpSetFLock(&mFile), noErr);
    EXPECT_EQ(Move("File", PString("New")), fLckdErr);
    EXPECT_TRUE(IsAsBefore());
    EXPECT_EQ(CountTemporaryItems(), 0);
    FSpRstFLock(&mFile);
}

TEST_F(MoveRenameEmulated, OfWhatIsMissingIsAnError) {
    EXPECT_EQ(Move("None", PString("New")), fnfErr);
    EXPECT_EQ(sMade, Names{});
}

}  // namespace
