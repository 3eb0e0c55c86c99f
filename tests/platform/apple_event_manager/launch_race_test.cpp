// The first event after a launch, which may come before the application can be sent to; and the
// addresses that find an application without its number.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "file_manager/catalog/catalog.h"
#include "platform/launch_services/Bundle.h"
#include "support/Command.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

TemporaryHome gHome;

int gIdles;

Boolean StopAtThird(EventRecord*, SInt32* outSleep, RgnHandle*) {
    *outSleep = 2;
    return ++gIdles == 3;
}

class LaunchRace : public testing::Test {
  protected:
    void TearDown() override {
        // Until it is gone, launching the bundle again would find it running.
        const UInt32 start = TickCount();
        pid_t pid = -1;
        while (GetProcessPID(&mPsn, &pid) == noErr && TickCount() - start < 600) {
            kill(pid, SIGKILL);
            usleep(1000);
        }
    }
    void Launch(const std::string& inCommand) {
        BundleText text;
        text.program = "#!/bin/sh\nexec " + inCommand + "\n";
        FSSpec spec;
        const auto bundle = MakeBundle(gHome.Root() / "Applications", "Probe.app", text);
        ASSERT_EQ(carbon::SpecFromPath(bundle.string(), &spec), noErr);
        LaunchParamBlockRec block{};
        block.launchBlockID = extendedBlock;
        block.launchEPBLength = extendedBlockLen;
        block.launchControlFlags = launchContinue | launchNoFileFlags | launchDontSwitch;
        block.launchAppSpec = &spec;
        ASSERT_EQ(LaunchApplication(&block), noErr);
        mPsn = block.launchProcessSN;
    }
    void LaunchServer(const std::string& inWords) {
        Launch(ProgramFolder() + "/event_server " + inWords);
    }
    OSErr Ask(DescType inType, const void* inAddress, Size inSize, SInt32 inTimeOut = kNoTimeOut,
              AEIdleUPP inIdle = nullptr) {
        OwnedDesc address, event;
        AECreateDesc(inType, inAddress, inSize, &address);
        AECreateAppleEvent(kTestClass, 'echo', &address, kAutoGenerateReturnID, kAnyTransactionID,
                           &event);
        PutLong(&event, keyDirectObject, 12);
        AEDisposeDesc(&mReply);
        return AESend(&event, &mReply, kAEWaitReply, kAENormalPriority, inTimeOut, inIdle, nullptr);
    }
    OSErr AskNumber(SInt32 inTimeOut = kNoTimeOut, AEIdleUPP inIdle = nullptr) {
        const UInt32 number[2] = {0, EndianU32_NtoB(mPsn.lowLongOfPSN)};
        return Ask(typeProcessSerialNumber, number, sizeof number, inTimeOut, inIdle);
    }

    ProcessSerialNumber mPsn = {};
    OwnedDesc mReply;
};

TEST_F(LaunchRace, FirstEventWaitsForTheSocket) {
    LaunchServer("--late 600");
    EXPECT_EQ(AskNumber(), noErr);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), 12);
}

TEST_F(LaunchRace, IdleProcedureRunsMeanwhile) {
    Launch("sleep 60");
    gIdles = 0;
    EXPECT_EQ(AskNumber(kNoTimeOut, StopAtThird), errAEWaitCanceled);
    EXPECT_EQ(gIdles, 3);
}

TEST_F(LaunchRace, TimeOutCountsMeanwhile) {
    Launch("sleep 60");
    EXPECT_EQ(AskNumber(6), errAETimeout);
}

TEST_F(LaunchRace, ProgramThatEndsUnheardIsNotFound) {
    Launch("sleep 0.3");
    EXPECT_EQ(AskNumber(), procNotFound);
}

TEST_F(LaunchRace, ProgramThatNeverListensIsGivenUp) {
    Launch("sleep 60");
    EXPECT_EQ(AskNumber(), connectionInvalid);  // After the ten seconds that a start may take.
}

TEST_F(LaunchRace, CreatorAndBundleIdentifierFindTheApplication) {
    LaunchServer("");
    const UInt32 creator = EndianU32_NtoB('Prob');
    const std::string identifier = "example.probe";
    EXPECT_EQ(Ask(typeApplSignature, &creator, sizeof creator), noErr);
    EXPECT_EQ(Ask(typeApplicationBundleID, identifier.data(), static_cast<Size>(identifier.size())),
              noErr);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), 12);
    EXPECT_EQ(Ask(typeApplicationBundleID, identifier.data(), 5), procNotFound);
}

}  // namespace
