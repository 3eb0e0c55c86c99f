// Launching by alias and by creator, with applications that volumes know.
#include <gtest/gtest.h>

#include "support/Applications.h"
#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/files/LFile.h"

namespace {

constexpr OSType kOurs = 'VtTs';
std::vector<UInt32> sFronted;  // brought to the front
std::vector<AEEventID> sSent;  // events
UInt16 sFlags = 0;             // of the last launch

}  // namespace

OSErr SetFrontProcess(const ProcessSerialNumber* inPSN) {
    sFronted.push_back(inPSN->lowLongOfPSN);
    return noErr;
}

OSErr LaunchApplication(LaunchPBPtr ioBlock) {
    sFlags = ioBlock->launchControlFlags;
    return REAL_CALL(LaunchApplication)(ioBlock);
}

// Nothing is really asked to quit: that would be the test program.
OSErr AESend(const AppleEvent* inEvent, AppleEvent*, AESendMode, AESendPriority, SInt32, AEIdleUPP,
             AEFilterUPP) {
    AEEventID id = 0;
    EXPECT_EQ(
        AEGetAttributePtr(inEvent, keyEventIDAttr, typeType, nullptr, &id, sizeof id, nullptr),
        noErr);
    sSent.push_back(EndianU32_BtoN(id));
    return noErr;
}

namespace {

class LaunchBySignature : public testing::Test {
  protected:
    void SetUp() override {
        sFronted.clear();
        sSent.clear();
        // The machine's own volumes have nothing of ours, and are not bothered.
        gFileFaults.getVolumeInfo = [this](HParmBlkPtr ioBlock) {
            if (ioBlock->volumeParam.ioVolIndex > 1) return OSErr{nsvErr};
            if (ioBlock->volumeParam.ioVolIndex == 1) {
                ioBlock->volumeParam.ioVRefNum = mVolume.Number();
                ioBlock->volumeParam.ioVolIndex = 0;
            }
            return REAL_CALL(PBHGetVInfoSync)(ioBlock);
        };
    }
    void TearDown() override {
        ProcessSerialNumber psn = {0, kNoProcess};
        while (UProcess::IsRunning(kOurs, 'APPL')) {
            psn = UProcess::GetPSN(kOurs, 'APPL');
            KillProcess(&psn);
            ASSERT_TRUE(Eventually([&] {
                SProcessInfo info;
                return GetProcessInformation(&psn, info) == procNotFound;
            }));
        }
    }
    // An application that is one file, and known to its volume.
    FSSpec MakeKnown() {
        const auto path = mVolume.Root() / "Tools/Tester";
        std::filesystem::create_directories(mVolume.Root() / "Resources");
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(SCRIPTED_RECORDER, path);
        FSSpec file = mVolume.Spec(":Tools:Tester");
        Sign(file, kOurs, 'APPL');
        DTPBRec block = {};
        block.ioVRefNum = mVolume.Number();
        ThrowIfError(PBDTGetPath(&block));
        block.ioNamePtr = file.name;
        block.ioDirID = file.parID;
        block.ioFileCreator = kOurs;
        ThrowIfError(PBDTAddAPPLSync(&block));
        return file;
    }
    static bool Same(const FSSpec& inFirst, const FSSpec& inSecond) {
        return LFile::EqualFileSpec(inFirst, inSecond);
    }

    MountedVolume mVolume;
    StFileFaults mFaults;
};

TEST_F(LaunchBySignature, FindsNothingWithoutAnError) {
    FSSpec spec;
    ProcessSerialNumber psn;
    EXPECT_FALSE(UProcess::Launch(kOurs, 'APPL', launchContinue, &spec, &psn));
    EXPECT_TRUE(sFronted.empty());
    EXPECT_TRUE(sSent.empty());
}

TEST_F(LaunchBySignature, LaunchesWhatAVolumeKnows) {
    const FSSpec file = MakeKnown();
    FSSpec spec = {};
    ProcessSerialNumber psn = {0, 0};
    ASSERT_TRUE(UProcess::Launch(kOurs, 'APPL', launchContinue | launchDontSwitch, &spec, &psn));
    EXPECT_TRUE(Same(spec, file));
    EXPECT_EQ(psn, UProcess::GetPSN(kOurs, 'APPL'));
    EXPECT_EQ(sFlags, launchContinue | launchDontSwitch | launchNoFileFlags);
    SProcessInfo info;
    UProcess::GetInfo(psn, info);
    EXPECT_TRUE(Same(info.mAppSpec, file));
}

TEST_F(LaunchBySignature, NeedsNeitherOutput) {
    MakeKnown();
    EXPECT_TRUE(
        UProcess::Launch(kOurs, 'APPL', launchContinue | launchDontSwitch, nullptr, nullptr));
    EXPECT_TRUE(UProcess::IsRunning(kOurs, 'APPL'));
    EXPECT_TRUE(
        UProcess::Launch(kOurs, 'APPL', launchContinue | launchDontSwitch, nullptr, nullptr));
}

TEST_F(LaunchBySignature, KeepsLookingForAnAPPLWhateverTypeWasAskedFor) {
    MakeKnown();
    ProcessSerialNumber psn = {0, 0};
    EXPECT_TRUE(UProcess::Launch(kOurs, 'appe', launchContinue | launchDontSwitch, nullptr, &psn));
    EXPECT_EQ(psn, UProcess::GetPSN(kOurs, 'APPL'));
}

TEST_F(LaunchBySignature, BringsForwardWhatRunsAlready) {
    const FSSpec file = MakeKnown();
    const ProcessSerialNumber running =
        UProcess::LaunchApp(file, launchContinue | launchDontSwitch);
    FSSpec spec = {};
    ProcessSerialNumber psn = {0, 0};
    EXPECT_TRUE(UProcess::Launch(kOurs, 'APPL', launchContinue, &spec, &psn));
    EXPECT_EQ(psn, running);
    EXPECT_TRUE(Same(spec, file));
    EXPECT_EQ(sFronted, std::vector<UInt32>{running.lowLongOfPSN});
    EXPECT_TRUE(sSent.empty());
    sFronted.clear();
    EXPECT_TRUE(UProcess::Launch(kOurs, 'APPL', launchContinue | launchDontSwitch, &spec, &psn));
    EXPECT_TRUE(sFronted.empty());
}

TEST_F(LaunchBySignature, OfWhatRunsAsksTheCallerToQuitUnlessItIsToContinue) {
    const FSSpec file = MakeKnown();
    UProcess::LaunchApp(file, launchContinue | launchDontSwitch);
    EXPECT_TRUE(UProcess::Launch(kOurs, 'APPL', launchDontSwitch, nullptr, nullptr));
    EXPECT_EQ(sSent, std::vector<AEEventID>{kAEQuitApplication});
}

TEST_F(LaunchBySignature, FailureOfAVolumeIsThrown) {
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{ioErr}; };
    EXPECT_EQ(
        CodeThrownBy([] { UProcess::Launch(kOurs, 'APPL', launchContinue, nullptr, nullptr); }),
        ioErr);
}

TEST_F(LaunchBySignature, AnAliasLeadsToTheFileWhereverItIs) {
    FSSpec file = MakeKnown();
    const AliasHandle alias = LFile(file).MakeAlias(nullptr);
    ASSERT_NE(alias, nullptr);
    ASSERT_EQ(FSpRename(&file, PString("Renamed")), noErr);
    const ProcessSerialNumber psn = UProcess::LaunchApp(alias, launchContinue | launchDontSwitch);
    SProcessInfo info;
    UProcess::GetInfo(psn, info);
    EXPECT_EQ(TextOf(info.mAppSpec.name), "Renamed");
    const FSSpec renamed = mVolume.Spec(":Tools:Renamed");
    KillProcess(&psn);
    ASSERT_TRUE(Eventually([&] { return GetProcessInformation(&psn, info) == procNotFound; }));
    ASSERT_EQ(FSpDelete(&renamed), noErr);
    EXPECT_EQ(CodeThrownBy([&] { UProcess::LaunchApp(alias, launchContinue); }), fnfErr);
    DisposeHandle(reinterpret_cast<Handle>(alias));
}

}  // namespace
