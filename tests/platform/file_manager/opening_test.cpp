// Who may open a fork beside whom, in this process and among several.
#include <fcntl.h>
#include <linux/capability.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <Platform/Platform.h>

#include <atomic>
#include <thread>

#include "ForkFixture.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/metadata/metadata.h"
#include "posix/UniqueFd.h"

namespace {

class OpeningTest : public ForkFixture {
  protected:
    void SetUp() override {
        ForkFixture::SetUp();
        Write("File", "text");
    }
    SInt16 OpenAs(bool inIsResource, SInt8 inPermission) {
        return inIsResource ? OpenResources("File", inPermission) : Open("File", inPermission);
    }
    void CloseAll() {
        for (const SInt16 number : mOpen) EXPECT_EQ(FSClose(number), noErr);
        mOpen.clear();
    }
    OSErr Lock() {
        return carbon::ChangeMetadata(Path("File"),
                                      [](carbon::Metadata* io) { io->facts.isLocked = true; });
    }
};

TEST_F(OpeningTest, AdmitsOneWriterOrSharedOnesButAnyReader) {
    const struct {
        SInt8 held, asked;
        OSErr error;
    } kCases[] = {{fsRdPerm, fsRdPerm, noErr},        {fsRdPerm, fsRdWrPerm, noErr},
                  {fsRdPerm, fsRdWrShPerm, noErr},    {fsRdWrPerm, fsRdPerm, noErr},
                  {fsWrPerm, fsRdPerm, noErr},        {fsRdWrPerm, fsWrPerm, opWrErr},
                  {fsRdWrPerm, fsRdWrPerm, opWrErr},  {fsRdWrPerm, fsRdWrShPerm, opWrErr},
                  {fsWrPerm, fsRdWrPerm, opWrErr},    {fsRdWrShPerm, fsRdPerm, noErr},
                  {fsRdWrShPerm, fsWrPerm, opWrErr},  {fsRdWrShPerm, fsRdWrPerm, opWrErr},
                  {fsRdWrShPerm, fsRdWrShPerm, noErr}};
    for (const bool isResource : {false, true}) {
        const std::string fork = isResource ? "resource" : "data";
        for (const auto& test : kCases) {
            ForkPeer peer;
            const SInt16 held = OpenAs(isResource, test.held);
            ASSERT_GT(held, 0);
            SInt16 second = OpenAs(isResource, test.asked);
            EXPECT_EQ(second < 0 ? second : 0, test.error) << +test.held << +test.asked << fork;
            if (second > 0) {
                EXPECT_EQ(FSClose(second), noErr);
                mOpen.pop_back();
            }
            EXPECT_EQ(peer.Open(Path("File"), fork, test.asked), test.error)
                << +test.held << ' ' << +test.asked << ' ' << fork;
            CloseAll();
        }
    }
}

TEST_F(OpeningTest, KeepsTheWritersNumberInRefNumAfterOpWrErr) {
    const SInt16 writer = Open("File", fsRdWrPerm);
    const FSSpec spec = SpecOf(Path("File"));
    SInt16 number = 0;
    EXPECT_EQ(FSpOpenDF(&spec, fsRdWrPerm, &number), opWrErr);
    EXPECT_EQ(number, writer);
    EXPECT_EQ(Put(number, "it is open"), noErr);
    EXPECT_EQ(FSpOpenRF(&spec, fsRdWrPerm, &number), noErr) << "the other fork is another matter";
    EXPECT_EQ(FSClose(number), noErr);
}

TEST_F(OpeningTest, TakesWhatIsLeftWithTheCurrentPermission) {
    const SInt16 first = Open("File", fsCurPerm), second = Open("File", fsCurPerm);
    EXPECT_EQ(Put(first, "new "), noErr);
    EXPECT_EQ(Put(second, "new "), wrPermErr);
    EXPECT_EQ(Get(second, 4), "new ");
    CloseAll();
    const SInt16 shared = Open("File", fsRdWrShPerm), third = Open("File", fsCurPerm);
    EXPECT_EQ(Put(shared, "one "), noErr);
    EXPECT_EQ(Put(third, "two "), noErr);
    CloseAll();
    ASSERT_EQ(Lock(), noErr);
    EXPECT_EQ(Put(Open("File", fsCurPerm), "x"), wrPermErr);
}

TEST_F(OpeningTest, RefusesToWriteWhatIsLocked) {
    ASSERT_EQ(Lock(), noErr);
    for (const SInt8 permission : {fsWrPerm, fsRdWrPerm, fsRdWrShPerm}) {
        EXPECT_EQ(Open("File", permission), permErr);
        EXPECT_EQ(OpenResources("File", permission), permErr);
    }
    EXPECT_GT(Open("File", fsRdPerm), 0);
}

// The volume in a folder of the test's, with options.
class OpeningOnVolumesTest : public ForkFixture {
  protected:
    void SetUp() override {
        ForkFixture::SetUp();
        MakeFolder("Disk");
        Write("Disk/File", "text");
    }
    void TearDown() override {
        ForkFixture::TearDown();
        EXPECT_EQ(PlatformUnmountFolder(mVolume), noErr);
    }
    FSSpec Mount(OptionBits inOptions) {
        EXPECT_EQ(PlatformMountFolderWithOptions(Path("Disk").c_str(), "Disk", inOptions, &mVolume),
                  noErr);
        return SpecOf(Path("Disk/File"));
    }
    FSVolumeRefNum mVolume = 0;
};

TEST_F(OpeningOnVolumesTest, RefusesToWriteOnALockedVolume) {
    const FSSpec spec = Mount(kPlatformMountSoftwareLocked);
    EXPECT_EQ(+spec.vRefNum, mVolume);
    SInt16 number = 0;
    EXPECT_EQ(FSpOpenDF(&spec, fsRdWrPerm, &number), wrPermErr);
    EXPECT_EQ(FSpOpenRF(&spec, fsWrPerm, &number), wrPermErr);
    ASSERT_EQ(FSpOpenDF(&spec, fsCurPerm, &number), noErr);
    mOpen.push_back(number);
    EXPECT_EQ(Put(number, "x"), wrPermErr);
    EXPECT_EQ(All(number), "text");
}

TEST_F(OpeningOnVolumesTest, KnowsNoDenyModesWhereTheVolumeHasNone) {
    Mount(kPlatformMountNoOpenDeny);
    SInt16 number = 0;
    EXPECT_EQ(Deny("Disk/File", fsRdAccessPerm, &number), paramErr);
    EXPECT_EQ(Deny("Disk/File", fsRdAccessPerm, &number, true), paramErr);
}

TEST_F(OpeningOnVolumesTest, LeavesDataForksToTheOlderCallWhereTheVolumeKnowsThatAlone) {
    FSSpec spec = Mount(kPlatformMountNoOpenDataFork);
    HParamBlockRec block{};
    block.ioParam.ioNamePtr = spec.name;
    block.ioParam.ioVRefNum = spec.vRefNum;
    block.fileParam.ioDirID = spec.parID;
    EXPECT_EQ(PBHOpenDFSync(&block), paramErr);
    ASSERT_EQ(PBHOpenSync(&block), noErr);
    mOpen.push_back(block.ioParam.ioRefNum);
    SInt16 number = 0;
    EXPECT_EQ(HOpenDF(spec.vRefNum, spec.parID, spec.name, fsRdPerm, &number), paramErr);
    ASSERT_EQ(HOpen(spec.vRefNum, spec.parID, spec.name, fsRdPerm, &number), noErr);
    mOpen.push_back(number);
}

// The superuser, too, is bound by the modes of files while this lives.
class WithoutOverride {
  public:
    WithoutOverride() {
        EXPECT_EQ(syscall(SYS_capget, &mHeader, mBefore), 0);
        auto bound = mBefore[0];
        bound.effective &= ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH);
        __user_cap_data_struct data[2] = {bound, mBefore[1]};
        EXPECT_EQ(syscall(SYS_capset, &mHeader, data), 0);
    }
    ~WithoutOverride() { EXPECT_EQ(syscall(SYS_capset, &mHeader, mBefore), 0); }
    WithoutOverride(const WithoutOverride&) = delete;
    WithoutOverride& operator=(const WithoutOverride&) = delete;

  private:
    __user_cap_header_struct mHeader{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct mBefore[2] = {};
};

TEST_F(OpeningTest, RefusesToWriteWhatTheUserMayNot) {
    const WithoutOverride bound;
    ASSERT_EQ(chmod(Path("File").c_str(), 0444), 0);
    EXPECT_EQ(Open("File", fsRdWrPerm), permErr);
    EXPECT_EQ(OpenResources("File", fsRdWrPerm), permErr);
    EXPECT_GT(Open("File", fsCurPerm), 0);
    ASSERT_EQ(chmod(Path("File").c_str(), 0), 0);
    EXPECT_EQ(Open("File", fsRdPerm), permErr);
    EXPECT_EQ(OpenResources("File", fsRdPerm), permErr);
}

TEST_F(OpeningTest, FindsNoForksInFoldersLinksAndNothing) {
    MakeFolder("Folder");
    std::filesystem::create_symlink("File", Path("Link"));
    ASSERT_EQ(mkfifo(Path("Pipe").c_str(), 0600), 0);
    EXPECT_EQ(Open("Folder", fsRdPerm), fnfErr);
    EXPECT_EQ(Open("Pipe", fsRdPerm), fnfErr);
    FSSpec spec = SpecOf(Path("File"));
    SInt16 number = 7;
    FSSpec link{};
    ASSERT_EQ(MakeSpec(spec.vRefNum, spec.parID, "Link", &link), noErr);
    EXPECT_EQ(FSpOpenDF(&link, fsRdPerm, &number), fnfErr);
    std::filesystem::remove(Path("File"));
    EXPECT_EQ(FSpOpenDF(&spec, fsRdPerm, &number), fnfErr);
    EXPECT_EQ(number, 0);
    spec.parID = 0x12345678;
    EXPECT_EQ(FSpOpenRF(&spec, fsRdPerm, &number), dirNFErr);
    spec.vRefNum = -31000;
    EXPECT_EQ(FSpOpenRF(&spec, fsRdPerm, &number), nsvErr);
    EXPECT_EQ(FSpOpenDF(nullptr, fsRdPerm, &number), paramErr);
    EXPECT_EQ(FSpOpenDF(&spec, fsRdPerm, nullptr), paramErr);
}

TEST_F(OpeningTest, GivesPathsByNameAndBlockTheSameForks) {
    const FSSpec spec = SpecOf(Path("File"));
    SInt16 number = 0;
    ASSERT_EQ(HOpen(spec.vRefNum, spec.parID, spec.name, fsRdPerm, &number), noErr);
    mOpen.push_back(number);
    EXPECT_EQ(All(number), "text");
    ASSERT_EQ(HOpenDF(spec.vRefNum, spec.parID, spec.name, fsRdPerm, &number), noErr);
    mOpen.push_back(number);
    EXPECT_EQ(All(number), "text");
    ASSERT_EQ(HOpenRF(spec.vRefNum, spec.parID, spec.name, fsRdPerm, &number), noErr);
    mOpen.push_back(number);
    EXPECT_EQ(All(number), "");
    FSVolumeRefNum volume = 0;
    EXPECT_EQ(GetVRefNum(number, &volume), noErr);
    EXPECT_EQ(volume, spec.vRefNum);
    EXPECT_EQ(GetVRefNum(30000, &volume), fnOpnErr);
}

TEST_F(OpeningTest, HoldsDenyModesAgainstAllOthers) {
    const struct {
        int held, asked;
        OSErr error;
    } kCases[] = {{0x21, 0x01, noErr},   {0x21, 0x02, permErr}, {0x21, 0x03, permErr},
                  {0x11, 0x01, permErr}, {0x11, 0x02, noErr},   {0x01, 0x11, permErr},
                  {0x01, 0x21, noErr},   {0x31, 0x01, permErr}, {0x31, 0x02, permErr},
                  {0x01, 0x01, noErr},   {0x03, 0x03, noErr},   {0x03, 0x21, permErr}};
    for (const bool isResource : {false, true}) {
        for (const auto& test : kCases) {
            ForkPeer peer;
            SInt16 number = 0;
            ASSERT_EQ(Deny("File", SInt16(test.held), &number, isResource), noErr);
            EXPECT_EQ(peer.Deny(Path("File"), isResource ? "resource" : "data", test.asked),
                      test.error)
                << std::hex << test.held << ' ' << test.asked;
            CloseAll();
        }
    }
}

TEST_F(OpeningTest, HoldsDenyModesAgainstPermissionsAndTheOtherWayRound) {
    ForkPeer peer;
    SInt16 number = 0;
    ASSERT_EQ(Deny("File", 0x21, &number), noErr);
    EXPECT_EQ(peer.Open(Path("File"), "data", fsRdWrPerm), permErr);
    EXPECT_EQ(peer.Open(Path("File"), "data", fsCurPerm), noErr);
    EXPECT_EQ(peer.Ask("write " + peer.Number() + "0 x"), "-61 ");
    CloseAll();
    EXPECT_EQ(Deny("File", 0x13, &number), permErr) << "the peer reads";
    ASSERT_EQ(Deny("File", 0x03, &number), noErr);
    EXPECT_EQ(peer.Open(Path("File"), "data", fsRdWrPerm), opWrErr);
    EXPECT_EQ(peer.Open(Path("File"), "data", fsRdWrShPerm), noErr);
}

TEST_F(OpeningTest, NamesItsOwnWriterWhereDenyModesMeetIt) {
    const SInt16 writer = Open("File", fsRdWrPerm);
    SInt16 number = 0;
    EXPECT_EQ(Deny("File", 0x03, &number), opWrErr);
    EXPECT_EQ(number, writer);
    EXPECT_EQ(Deny("File", 0x21, &number), opWrErr);
    EXPECT_EQ(number, writer);
}

TEST_F(OpeningTest, GivesAPathWithoutReadingNothingToRead) {
    char byte;
    SInt32 count = 1;
    EXPECT_EQ(FSRead(Open("File", fsWrPerm), &count, &byte), permErr);
    EXPECT_EQ(count, 0);
}

TEST_F(OpeningTest, ForgetsAProcessThatWasKilled) {
    ForkPeer peer;
    ASSERT_EQ(peer.Open(Path("File"), "data", fsRdWrPerm), noErr);
    ASSERT_EQ(peer.Open(Path("File"), "resource", fsRdWrPerm), noErr);
    EXPECT_EQ(Open("File", fsRdWrPerm), opWrErr);
    EXPECT_TRUE(carbon::IsOpenSomewhere(Path("File")));
    peer.Kill();
    EXPECT_FALSE(carbon::IsOpenSomewhere(Path("File")));
    EXPECT_GT(Open("File", fsRdWrPerm), 0);
    EXPECT_GT(OpenResources("File", fsRdWrPerm), 0);
}

TEST_F(OpeningTest, IsOverWhenItIsClosedThoughAChildHasInheritedIt) {
    const SInt16 number = Open("File", fsRdWrPerm);
    const pid_t child = fork();
    if (child == 0) {
        for (;;) pause();
    }
    mOpen.clear();
    EXPECT_EQ(FSClose(number), noErr);
    EXPECT_GT(Open("File", fsRdWrPerm), 0);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

// The child waited for ever for what a thread of its parent had held.
TEST_F(OpeningTest, HoldsInAChildOfAProcessWithThreads) {
    Write("One", "one");
    Write("Other", "other");
    const SInt16 one = Open("One", fsRdPerm), other = Open("Other", fsRdPerm);
    std::atomic<bool> isOver = false;
    std::thread asking([&] {
        while (!isOver) Mark(one);
    });
    for (int i = 0; i < 300; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            SInt32 length = 0;
            alarm(20);
            _exit(GetEOF(other, &length) == noErr && length == 5 ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << i;
        if (status != 0) break;
    }
    isOver = true;
    asking.join();
}

TEST_F(OpeningTest, ShowsInTheCatalogAndKeepsTheFileFromDeletion) {
    FSSpec spec = SpecOf(Path("File"));
    const auto attributes = [&] {
        CInfoPBRec block{};
        block.hFileInfo.ioNamePtr = spec.name;
        block.hFileInfo.ioVRefNum = spec.vRefNum;
        block.hFileInfo.ioDirID = spec.parID;
        EXPECT_EQ(PBGetCatInfoSync(&block), noErr);
        return UInt8(block.hFileInfo.ioFlAttrib);
    };
    EXPECT_EQ(attributes(), 0);
    Open("File", fsRdPerm);
    EXPECT_EQ(attributes(), +kioFlAttribDataOpenMask | kioFlAttribFileOpenMask);
    OpenResources("File", fsRdPerm);
    EXPECT_EQ(attributes(),
              +kioFlAttribDataOpenMask | kioFlAttribResOpenMask | kioFlAttribFileOpenMask);
    EXPECT_EQ(FSpDelete(&spec), fBsyErr);
    CloseAll();
    ForkPeer peer;
    ASSERT_EQ(peer.Open(Path("File"), "resource", fsRdPerm), noErr);
    EXPECT_EQ(FSpDelete(&spec), fBsyErr);
    peer.Kill();
    EXPECT_EQ(FSpDelete(&spec), noErr);
}

TEST_F(OpeningTest, IsNotHinderedByLocksThatOtherProgramsUse) {
    const carbon::UniqueFd file(open(Path("File").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(file.Get(), LOCK_EX), 0);
    EXPECT_EQ(Put(Open("File", fsRdWrPerm), "new"), noErr);
    EXPECT_EQ(Put(OpenResources("File", fsRdWrPerm), "new"), noErr);
    EXPECT_EQ(Lock(), noErr);
}

TEST_F(OpeningTest, NumbersPathsAfreshAndKnowsThoseThatAreNot) {
    const SInt16 number = Open("File", fsRdPerm);
    ASSERT_EQ(FSClose(number), noErr);
    mOpen.clear();
    EXPECT_EQ(FSClose(number), fnOpnErr);
    EXPECT_EQ(FSClose(0), rfNumErr);
    EXPECT_EQ(FSClose(-5), rfNumErr);
    EXPECT_NE(Open("File", fsRdPerm), number);
    SInt32 count = 1;
    char byte;
    EXPECT_EQ(FSRead(number, &count, &byte), fnOpnErr);
    EXPECT_EQ(SetEOF(number, 0), fnOpnErr);
    EXPECT_EQ(GetFPos(number, &count), fnOpnErr);
}

TEST_F(OpeningTest, TellsAboutEachPath) {
    MakeFolder("Folder");
    const SInt16 data = Open("File", fsRdPerm), resources = OpenResources("File", fsRdWrShPerm);
    ASSERT_EQ(SetFPos(data, fsFromStart, 3), noErr);
    ASSERT_EQ(Put(resources, "resources"), noErr);
    const FSSpec spec = SpecOf(Path("File"));
    Str63 name;
    FCBPBRec block{};
    block.ioNamePtr = name;
    block.ioRefNum = data;
    ASSERT_EQ(PBGetFCBInfoSync(&block), noErr);
    EXPECT_EQ(std::string(name, name + 1 + name[0]),
              "\x04"
              "File");
    EXPECT_EQ(+block.ioFCBParID, +spec.parID);
    EXPECT_EQ(+block.ioFCBVRefNum, +spec.vRefNum);
    EXPECT_EQ(+block.ioFCBEOF, 4);
    EXPECT_EQ(+block.ioFCBCrPs, 3);
    EXPECT_EQ(+block.ioFCBFlags, 0);
    EXPECT_EQ(UInt32(block.ioFCBFlNm), InfoOf(Path("File")).nodeID);
    ASSERT_EQ(carbon::MoveWithMetadata(Path("File"), Path("Folder/Other")), noErr);
    block.ioFCBIndx = 2;
    ASSERT_EQ(PBGetFCBInfoSync(&block), noErr);
    EXPECT_EQ(+block.ioRefNum, resources);
    EXPECT_EQ(std::string(name, name + 1 + name[0]),
              "\x05"
              "Other");
    EXPECT_EQ(+block.ioFCBParID, NumberOf(Path("Folder")));
    EXPECT_EQ(UInt16(block.ioFCBFlags),
              kioFCBWriteMask | kioFCBResourceMask | kioFCBSharedWriteMask | kioFCBModifiedMask);
    EXPECT_EQ(+block.ioFCBEOF, 9);
    block.ioFCBIndx = 3;
    EXPECT_EQ(PBGetFCBInfoSync(&block), fnOpnErr);
    block.ioFCBIndx = 0;
    block.ioRefNum = 30000;
    EXPECT_EQ(PBGetFCBInfoSync(&block), fnOpnErr);
}

TEST_F(OpeningTest, LeavesNoDescriptorsBehind) {
    const auto count = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    OpenResources("File", fsRdWrPerm);
    CloseAll();
    const auto before = count();
    ASSERT_EQ(Put(OpenResources("File", fsRdWrPerm), "x"), noErr);
    Open("File", fsRdWrPerm);
    EXPECT_EQ(Open("File", fsRdWrPerm), opWrErr);
    CloseAll();
    EXPECT_EQ(count(), before);
}

}  // namespace
