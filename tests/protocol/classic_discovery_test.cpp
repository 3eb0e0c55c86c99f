// Finding, judging and driving the recording application as on a system before Mac OS X: one file,
// of a type and a creator, that volumes know about.
#include <gtest/gtest.h>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/api/Vantor.h"
#include "vantor/controller/CVantor.h"
#include "vantor/process/MoreProc.h"
#include "vantor/process/UProcess.h"

namespace {

constexpr OSType kSignature = 'Fv8k';
constexpr UInt32 kOld = 0x06998000, kGood = 0x07508000;

class ClassicDiscovery : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(ReplaceGestaltValue(gestaltSystemVersion, 0x0922), noErr);
        CVantor::sRunningOnX = -1;
    }
    void TearDown() override { EndRecorder(); }

    // These are the volumes there are, in this order.
    void Mount(const std::vector<const MountedVolume*>& inVolumes) {
        std::vector<FSVolumeRefNum> numbers;
        for (const MountedVolume* volume : inVolumes) numbers.push_back(volume->Number());
        gFileFaults.getVolumeInfo = [numbers](HParmBlkPtr ioBlock) {
            const SInt16 index = ioBlock->volumeParam.ioVolIndex;
            if (index <= 0) return REAL_CALL(PBHGetVInfoSync)(ioBlock);
            if (static_cast<std::size_t>(index) > numbers.size()) return OSErr{nsvErr};
            ioBlock->volumeParam.ioVRefNum = numbers[static_cast<std::size_t>(index) - 1];
            ioBlock->volumeParam.ioVolIndex = 0;
            return REAL_CALL(PBHGetVInfoSync)(ioBlock);
        };
    }
    static FSSpec MakeKnown(const MountedVolume& inVolume, UInt32 inVersion) {
        const FSSpec file = inVolume.MakeApplication("Tools/Calverin", kSignature, inVersion);
        RegisterApplication(file, kSignature);
        return file;
    }
    // Databases say that they hold nothing.
    static void EmptyDatabases() {
        gFileFaults.openDatabaseInforming = [](DTPBPtr ioBlock) {
            const OSErr err = REAL_CALL(PBDTOpenInform)(ioBlock);
            ioBlock->ioTagInfo = 0;
            return err;
        };
    }
    // A file that can be launched and writes down what it is sent.
    static FSSpec MakeProgram(const MountedVolume& inVolume, UInt32 inVersion) {
        const auto path = inVolume.Root() / "Tools/Calverin";
        std::filesystem::create_directories(inVolume.Root() / "Resources");
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(SCRIPTED_RECORDER, path);
        const FSSpec file = inVolume.Spec(":Tools:Calverin");
        Sign(file, kSignature, 'APPL');
        AddResourceTo(file, 'vers', 1, BigEndianText(inVersion));
        RegisterApplication(file, kSignature);
        return file;
    }
    static void EndRecorder() {
        ProcessSerialNumber psn;
        if (MoreProcFindProcessByCreator(kSignature, &psn) == noErr) KillProcess(&psn);
        EXPECT_TRUE(Eventually(
            [&] { return MoreProcFindProcessByCreator(kSignature, &psn) == procNotFound; }));
        EXPECT_EQ(VantorTerminateSession(), noErr);
    }
    static Boolean IsValid(FSSpec inSpec) { return CVantor::IsMirelFileValid(inSpec); }
    static void ExpectFound(const FSSpec& inFile) {
        FSSpec found = {};
        EXPECT_EQ(CodeThrownBy([&] { CVantor::FindMirel(found); }), std::nullopt);
        EXPECT_EQ(found.vRefNum, inFile.vRefNum);
        EXPECT_EQ(+found.parID, +inFile.parID);
        EXPECT_EQ(TextOf(found.name), TextOf(inFile.name));
    }
    static std::optional<SInt32> CodeOfFinding() {
        FSSpec found = {};
        return CodeThrownBy([&] { CVantor::FindMirel(found); });
    }

    StFileFaults mFaults;
};

TEST_F(ClassicDiscovery, IsChosenByTheSystemsVersion) {
    EXPECT_FALSE(CVantor::RunningOnX());
    ASSERT_EQ(ReplaceGestaltValue(gestaltSystemVersion, 0x1000), noErr);
    EXPECT_FALSE(CVantor::RunningOnX()) << "asked once";
    CVantor::sRunningOnX = -1;
    EXPECT_TRUE(CVantor::RunningOnX());
}

TEST_F(ClassicDiscovery, FindsWhatTheDesktopDatabaseNames) {
    const MountedVolume volume;
    Mount({&volume});
    ExpectFound(MakeKnown(volume, kGood));
    EXPECT_TRUE(VantorIsMirelFound());
}

TEST_F(ClassicDiscovery, FindsWhatTheDesktopFileNames) {
    const MountedVolume volume;
    Mount({&volume});
    const FSSpec file = volume.MakeApplication("Calverin", kSignature, kGood);
    const FSSpec desktop = volume.MakeFile("Desktop", 'ERIK', 'FNDR');
    AddResourceTo(desktop, 'APPL', 0,
                  BigEndianText(kSignature) + BigEndianText(fsRtDirID) + "\x08" + "Calverin\x55");
    // A volume that says it has a database which then cannot be opened in either way.
    gFileFaults.openDatabaseInforming = [](DTPBPtr) { return OSErr{paramErr}; };
    gFileFaults.openDatabase = [](DTPBPtr) { return OSErr{paramErr}; };
    gFileFaults.searchCatalog = [](CSParamPtr) {
        ADD_FAILURE() << "searched";
        return OSErr{paramErr};
    };
    ExpectFound(file);
}

TEST_F(ClassicDiscovery, FindsWhatTheCatalogHolds) {
    for (const OptionBits options : {OptionBits{0}, OptionBits{kPlatformMountNoCatalogSearch}}) {
        const MountedVolume volume(options);
        Mount({&volume});
        EmptyDatabases();
        const FSSpec file = volume.MakeApplication("Deep/Deeper/Calverin", kSignature, kGood);
        ExpectFound(file);
    }
}

TEST_F(ClassicDiscovery, TakesTheValidCopyOfASecondVolume) {
    const MountedVolume first(0, "First"), second(0, "Second");
    Mount({&first, &second});
    MakeKnown(first, kOld);
    ExpectFound(MakeKnown(second, kGood));
}

TEST_F(ClassicDiscovery, TakesTheFirstOfTwoValidCopies) {
    const MountedVolume first(0, "First"), second(0, "Second");
    Mount({&first, &second});
    MakeKnown(second, 0x08008000);
    ExpectFound(MakeKnown(first, kGood));
}

TEST_F(ClassicDiscovery, FindingNothingIsNotFound) {
    EXPECT_TRUE(kMirelNotFound == -11001 && kMirelInvalid == -11002);
    Mount({});
    EXPECT_EQ(CodeOfFinding(), kMirelNotFound);
    const MountedVolume volume;
    Mount({&volume});
    EXPECT_EQ(CodeOfFinding(), kMirelNotFound);
    EXPECT_FALSE(VantorIsMirelFound());
    EXPECT_EQ(VantorInitiateSession(), kMirelNotFound);
}

TEST_F(ClassicDiscovery, FindingOldCopiesOnlyIsInvalid) {
    const MountedVolume first(0, "First"), empty(0, "Empty");
    Mount({&first, &empty});
    MakeKnown(first, kOld);
    EXPECT_EQ(CodeOfFinding(), kMirelInvalid);
    EXPECT_EQ(VantorInitiateSession(), kMirelInvalid);
}

TEST_F(ClassicDiscovery, PassesOverServersAndVolumesWithoutDatabase) {
    const MountedVolume remote(kPlatformMountRemote, "Remote");
    const MountedVolume plain(kPlatformMountNoDesktopManager, "Plain");
    Mount({&remote, &plain});
    MakeKnown(remote, kGood);
    plain.MakeApplication("Calverin", kSignature, kGood);
    EXPECT_EQ(CodeOfFinding(), kMirelNotFound);
}

TEST_F(ClassicDiscovery, VolumeThatFailsEndsTheSearch) {
    const MountedVolume volume;
    Mount({&volume});
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{ioErr}; };
    EXPECT_EQ(CodeOfFinding(), ioErr);
}

TEST_F(ClassicDiscovery, FailedLookupIsAVolumeWithoutOne) {
    const MountedVolume first(0, "First"), second(0, "Second");
    Mount({&first, &second});
    const FSSpec good = MakeKnown(second, kGood);
    gFileFaults.openDatabaseInforming = [&](DTPBPtr ioBlock) {
        if (ioBlock->ioVRefNum == first.Number()) return OSErr{desktopDamagedErr};
        return REAL_CALL(PBDTOpenInform)(ioBlock);
    };
    ExpectFound(good);
}

// --- Judging a file ---

TEST_F(ClassicDiscovery, VersionsFrom7OnOfAnyStageAreValid) {
    const MountedVolume volume;
    int number = 0;
    const auto isValid = [&](UInt32 inVersion) {
        const std::string name = "Calverin " + std::to_string(++number);
        return IsValid(volume.MakeApplication(name, kSignature, inVersion));
    };
    for (const UInt32 version : {0x07000000u, 0x07002001u, 0x07004000u, 0x07008000u, 0x12040000u}) {
        EXPECT_TRUE(isValid(version)) << std::hex << version;
    }
    for (const UInt32 version : {0x06998000u, 0x06FFFFFFu, 0x01000000u, 0u}) {
        EXPECT_FALSE(isValid(version)) << std::hex << version;
    }
}

TEST_F(ClassicDiscovery, KeepsComparingVersionsAsSignedWords) {
    const MountedVolume volume;
    EXPECT_FALSE(IsValid(volume.MakeApplication("Calverin", kSignature, 0x80000000)));
}

TEST_F(ClassicDiscovery, TypeAndCreatorMustBeRight) {
    const MountedVolume volume;
    const FSSpec file = volume.MakeApplication("Calverin", kSignature, kGood);
    EXPECT_TRUE(IsValid(file));
    Sign(file, kSignature, 'TEXT');
    EXPECT_FALSE(IsValid(file));
    Sign(file, 'Else', 'APPL');
    EXPECT_FALSE(IsValid(file));
    EXPECT_FALSE(IsValid(volume.Spec("Missing")));
}

TEST_F(ClassicDiscovery, FilesThatTellNoVersionAreInvalid) {
    const MountedVolume volume;
    EXPECT_FALSE(IsValid(volume.MakeFile("NoFork", kSignature, 'APPL'))) << "no resources at all";
    const FSSpec other = volume.MakeFile("Other", kSignature, 'APPL');
    AddResourceTo(other, 'vers', 2, BigEndianText(kGood));
    EXPECT_FALSE(IsValid(other)) << "resource 1 counts";
    const FSSpec brief = volume.MakeFile("Brief", kSignature, 'APPL');
    AddResourceTo(brief, 'vers', 1, "\x07\x50");
    EXPECT_FALSE(IsValid(brief));
    const FSSpec damaged = volume.MakeFile("Damaged", kSignature, 'APPL');
    SInt16 fork = 0;
    ASSERT_EQ(FSpOpenRF(&damaged, fsRdWrPerm, &fork), noErr);
    SInt32 count = 20;
    ASSERT_EQ(FSWrite(fork, &count, "this is no resource map"), noErr);
    ASSERT_EQ(FSClose(fork), noErr);
    EXPECT_FALSE(IsValid(damaged));
}

TEST_F(ClassicDiscovery, JudgingLeavesTheResourceManagerAsItWas) {
    const MountedVolume volume;
    const FSSpec file = volume.MakeApplication("Calverin", kSignature, kGood);
    const FSSpec brief = volume.MakeFile("Brief", kSignature, 'APPL');
    AddResourceTo(brief, 'TEST', 1, "data");
    const SInt16 top = FSpOpenResFile(&brief, fsRdPerm);
    UseResFile(0);  // not the one that is next below what the test opens
    for (const FSSpec& spec : {file, brief}) {
        for (const Boolean load : {true, false}) {
            SetResLoad(load);
            IsValid(spec);
            EXPECT_EQ(CurResFile(), 0);
            EXPECT_EQ(LMGetResLoad(), load);
        }
    }
    SetResLoad(true);
    EXPECT_FALSE(FSpResourceFileAlreadyOpen(&file, nullptr, nullptr));
    CloseResFile(top);
}

TEST_F(ClassicDiscovery, NoPathIsToldOfAFile) {
    const MountedVolume volume;
    if (CVantor::sMirelPath != nullptr) GTEST_SKIP() << "another test has examined a bundle";
    EXPECT_TRUE(IsValid(volume.MakeApplication("Calverin", kSignature, kGood)));
    EXPECT_EQ(VantorGetMirelPath(), nullptr);
}

// --- Driving it ---

TEST_F(ClassicDiscovery, LaunchesTheFileAndTalksToIt) {
    const MountedVolume volume;
    Mount({&volume});
    const FSSpec program = MakeProgram(volume, kGood);
    ASSERT_EQ(VantorInitiateSession(), noErr);
    SInt32 status = -1;
    EXPECT_EQ(VantorGetStatusCode(&status), noErr);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(VantorIsMirelRunning());
    SProcessInfo info;
    UProcess::GetInfo(UProcess::GetPSN(kSignature, 'APPL'), info);
    EXPECT_EQ(info.mAppSpec.vRefNum, program.vRefNum);
    EXPECT_EQ(TextOf(info.mAppSpec.name), "Calverin");
}

TEST_F(ClassicDiscovery, OldOneThatRunsMakesEveryRequestInvalid) {
    const MountedVolume volume;
    Mount({&volume});
    const FSSpec program = MakeProgram(volume, kOld);
    UProcess::LaunchApp(program, launchContinue | launchDontSwitch);
    SInt32 status;
    EXPECT_EQ(VantorGetStatusCode(&status), kMirelInvalid);
    EXPECT_FALSE(VantorIsMirelRunning());
    ProcessSerialNumber psn = {0, 0};
    EXPECT_EQ(CodeThrownBy([&] { CVantor::IsMirelRunning(&psn); }), kMirelInvalid);
    EXPECT_NE(+psn.lowLongOfPSN, 0u);
}

}  // namespace
