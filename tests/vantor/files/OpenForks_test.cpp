// Opening with deny modes on volumes that have them and on volumes that do not.
#include "vantor/files/OpenForks.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

std::vector<std::string> sOpened;  // the calls that opened, with deny modes or permission
std::optional<OSErr> sDataForkError;

void Note(const char* inCall, int inMode) {
    sOpened.push_back(inCall + std::to_string(inMode));
}

}  // namespace

OSErr PBHOpenDenySync(HParmBlkPtr ioBlock) {
    Note("deny ", ioBlock->accessParam.ioDenyModes);
    return REAL_CALL(PBHOpenDenySync)(ioBlock);
}

OSErr PBHOpenRFDenySync(HParmBlkPtr ioBlock) {
    Note("resource deny ", ioBlock->accessParam.ioDenyModes);
    return REAL_CALL(PBHOpenRFDenySync)(ioBlock);
}

OSErr PBHOpenDFSync(HParmBlkPtr ioBlock) {
    Note("data ", ioBlock->ioParam.ioPermssn);
    return sDataForkError ? *sDataForkError : REAL_CALL(PBHOpenDFSync)(ioBlock);
}

OSErr PBHOpenSync(HParmBlkPtr ioBlock) {
    Note("plain ", ioBlock->ioParam.ioPermssn);
    return REAL_CALL(PBHOpenSync)(ioBlock);
}

OSErr PBHOpenRFSync(HParmBlkPtr ioBlock) {
    Note("resource ", ioBlock->ioParam.ioPermssn);
    return REAL_CALL(PBHOpenRFSync)(ioBlock);
}

namespace {

using Calls = std::vector<std::string>;

class OpenForks : public ::testing::Test {
  protected:
    OpenForks() { sOpened.clear(); }
    ~OpenForks() override {
        for (const SInt16 fork : mForks) FSClose(fork);
        sDataForkError.reset();
    }

    // Opens, and returns by which calls.
    Calls Open(const FSSpec& inFile, SInt16 inDenyModes, OSErr inExpected = noErr,
               bool inResource = false) {
        SInt16 fork = -99;
        sOpened.clear();
        const OSErr err = inResource ? FSpOpenRFAware(&inFile, inDenyModes, &fork)
                                     : FSpOpenAware(&inFile, inDenyModes, &fork);
        EXPECT_EQ(err, inExpected);
        if (err == noErr) mForks.push_back(fork);
        mLast = fork;
        return sOpened;
    }

    std::vector<SInt16> mForks;
    SInt16 mLast = 0;
};

TEST_F(OpenForks, TakeDenyModesAsTheyAreWhereTheVolumeKnowsThem) {
    const MountedVolume disk;
    const FSSpec file = disk.MakeFile("File", "text");
    EXPECT_EQ(Open(file, 0x11), Calls{"deny 17"});
    EXPECT_EQ(Open(file, 0x23, noErr, true), Calls{"resource deny 35"});
}

TEST_F(OpenForks, DenyToOthersWhatTheyShallNotHave) {
    const MountedVolume disk;
    const FSSpec file = disk.MakeFile("File", "text");
    Open(file, 0x21);
    Open(file, fsWrAccessPerm, permErr);
    Open(file, fsRdAccessPerm);
}

TEST_F(OpenForks, TakeTheNearestPermissionWhereTheVolumeKnowsNoDenyModes) {
    const MountedVolume disk(kPlatformMountNoOpenDeny);
    struct Row {
        SInt16 modes;
        const char* call;
    };
    for (const auto& [modes, call] :
         {Row{0, "data 0"}, Row{1, "data 1"}, Row{2, "data 4"}, Row{3, "data 4"},
          Row{0x11, "data 1"}, Row{0x12, "data 2"}, Row{0x13, "data 3"}, Row{0x23, "data 3"},
          Row{0x33, "data 3"}, Row{0x30, "data 0"}}) {
        const FSSpec file = disk.MakeFile("File" + std::to_string(modes), "text");
        EXPECT_EQ(Open(file, modes), Calls{call}) << modes;
    }
}

TEST_F(OpenForks, OpenTheResourceForkDirectly) {
    const MountedVolume disk(kPlatformMountNoOpenDeny | kPlatformMountNoOpenDataFork);
    const FSSpec file = disk.MakeFile("File");
    EXPECT_EQ(Open(file, 3, noErr, true), Calls{"resource 4"});
}

TEST_F(OpenForks, AskTheOldWayWhereDataForksAreNotKnown) {
    const MountedVolume disk(kPlatformMountNoOpenDeny | kPlatformMountNoOpenDataFork);
    const FSSpec file = disk.MakeFile("File");
    EXPECT_EQ(Open(file, 1), (Calls{"data 1", "plain 1"}));
}

TEST_F(OpenForks, AskTheOldWayAfterABadParameterOnly) {
    const MountedVolume disk(kPlatformMountNoOpenDeny);
    const FSSpec file = disk.MakeFile("File");
    sDataForkError = ioErr;
    EXPECT_EQ(Open(file, 1, ioErr), Calls{"data 1"});
}

TEST_F(OpenForks, GoOnWhenTheVolumeDoesNotTellWhatItCan) {
    const MountedVolume disk(kPlatformMountNoVolumeParameters);
    const FSSpec file = disk.MakeFile("File");
    EXPECT_EQ(Open(file, 2), Calls{"data 4"});
}

TEST_F(OpenForks, DoNotOpenAfterAnyOtherErrorOfTheVolume) {
    const MountedVolume disk;
    const FSSpec file = disk.MakeFile("File");
    const StFileFaults faults;
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{ioErr}; };
    EXPECT_EQ(Open(file, 1, ioErr), Calls{});
    EXPECT_EQ(mLast, -99);
}

TEST_F(OpenForks, LookAtTheLocksBeforeWriting) {
    const MountedVolume soft(kPlatformMountNoOpenDeny | kPlatformMountSoftwareLocked, "Soft");
    const MountedVolume hard(kPlatformMountNoOpenDeny | kPlatformMountHardwareLocked, "Hard");
    const FSSpec one = soft.MakeFile("File", "text"), two = hard.MakeFile("File", "text");
    EXPECT_EQ(Open(one, 2, vLckdErr), Calls{});
    EXPECT_EQ(Open(two, 0x13, wPrErr), Calls{});
    EXPECT_EQ(Open(two, 0x12, wPrErr, true), Calls{});
    EXPECT_EQ(Open(two, 0x11), Calls{"data 1"});
}

TEST_F(OpenForks, GiveANumberBackAlsoWhenOpeningFails) {
    const MountedVolume plain(kPlatformMountNoOpenDeny), full(0, "Full");
    for (const MountedVolume* const disk : {&plain, &full}) {
        Open(disk->Spec("None"), 1, fnfErr);
        EXPECT_NE(mLast, -99);
    }
}

TEST_F(OpenForks, FindTheFileByVolumeDirectoryAndName) {
    const MountedVolume disk;
    const SInt32 folder = disk.MakeFolder("Folder");
    disk.MakeFile("Folder/File", "text");
    SInt16 data = 0, resource = 0;
    ASSERT_EQ(HOpenAware(disk.Number(), folder, PString("File"), 1, &data), noErr);
    ASSERT_EQ(HOpenRFAware(0, 0, PString("Disk:Folder:File"), 1, &resource), noErr);
    mForks = {data, resource};
    SInt32 length = -1;
    EXPECT_EQ(GetEOF(data, &length), noErr);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(GetEOF(resource, &length), noErr);
    EXPECT_EQ(length, 0);
}

TEST_F(OpenForks, ShareWritingAndTellTheSecondWhoWritesAlone) {
    const MountedVolume disk(kPlatformMountNoOpenDeny);
    const FSSpec file = disk.MakeFile("File", "text");
    Open(file, 0x13);
    const SInt16 first = mLast;
    Open(file, 0x13, opWrErr);
    EXPECT_EQ(mLast, first) << "the path that is there already";
}

TEST_F(OpenForks, ReadAndWriteAtTheMarkWithoutKeepingBytes) {
    const MountedVolume disk;
    const FSSpec file = disk.MakeFile("File", "0123456789");
    Open(file, 3);
    char bytes[8] = "";
    SInt32 count = 4;
    const StFileFaults faults;
    std::vector<int> modes;
    gFileFaults.read = [&](ParmBlkPtr ioBlock) {
        modes.push_back(ioBlock->ioParam.ioPosMode);
        return REAL_CALL(PBReadSync)(ioBlock);
    };
    gFileFaults.write = [&](ParmBlkPtr ioBlock) {
        modes.push_back(ioBlock->ioParam.ioPosMode);
        return REAL_CALL(PBWriteSync)(ioBlock);
    };
    ASSERT_EQ(FSReadNoCache(mLast, &count, bytes), noErr);
    EXPECT_EQ(std::string(bytes, 4), "0123");
    count = 2;
    ASSERT_EQ(FSWriteNoCache(mLast, &count, "xy"), noErr);
    count = 8;
    EXPECT_EQ(FSReadNoCache(mLast, &count, bytes), eofErr);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(modes, (std::vector{0x20, 0x20, 0x20}));
    EXPECT_EQ(disk.Read("File"), "0123xy6789");
}

TEST_F(OpenForks, FlushAndRangesAreCallsOnTheFork) {
    const MountedVolume disk;
    const FSSpec file = disk.MakeFile("File", "0123456789");
    Open(file, 3);
    const SInt16 holder = mLast;
    EXPECT_EQ(FlushFile(holder), noErr);
    EXPECT_EQ(LockRange(holder, 4, 2), noErr);
    EXPECT_EQ(LockRange(holder, 4, 4), afpRangeOverlap);
    EXPECT_EQ(UnlockRange(holder, 4, 3), afpRangeNotLocked);
    EXPECT_EQ(UnlockRange(holder, 4, 2), noErr);
    EXPECT_EQ(FlushFile(0), rfNumErr);
}

TEST_F(OpenForks, LockedRangesKeepOtherPathsOut) {
    const MountedVolume disk;
    const FSSpec file = disk.MakeFile("File", "0123456789");
    Open(file, 1);
    const SInt16 holder = mLast;
    Open(file, 1);
    ASSERT_EQ(LockRange(holder, 4, 2), noErr);
    char bytes[8];
    SInt32 count = 4;
    EXPECT_EQ(FSReadNoCache(mLast, &count, bytes), fLckdErr);
    ASSERT_EQ(UnlockRange(holder, 4, 2), noErr);
    count = 4;
    EXPECT_EQ(FSReadNoCache(mLast, &count, bytes), noErr);
}

}  // namespace
