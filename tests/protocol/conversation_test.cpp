// What must come out the same with the scripted recorder and with the real one.
#include <gmock/gmock.h>
#include <signal.h>

#include <fstream>

#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/controller/CVantor.h"

namespace {

enum class Peer { kScripted, kReal };

// The real recorder lies beside this program; a bundle of the test's own is newer and goes before.
class Conversation : public RecorderTest, public testing::WithParamInterface<Peer> {
  protected:
    void SetUp() override {
        RecorderTest::SetUp();
        if (IsReal()) std::filesystem::remove_all(mBundle->Path());
    }
    static bool IsReal() { return GetParam() == Peer::kReal; }

    static Boolean ServerMode() {
        Boolean on = 7;
        EXPECT_EQ(VantorGetServerMode(&on), noErr);
        return on;
    }

    // A file of the test's own, as the File Manager names it.
    FSSpec MakeFile() const {
        const std::string path = ApplicationsFolder().parent_path() / "a file.txt";
        std::ofstream(path) << std::string(5000, 'x');
        FSRef ref;
        FSSpec spec;
        ThrowIfError(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr));
        ThrowIfError(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr));
        return spec;
    }

    // The real one knows of a disc that it read back well; the scripted one was told to write.
    void ExpectWritten() const {
        if (IsReal()) {
            StAEDescriptor disc;
            disc.mDesc = CVantor::GetDiscOneDesc();
            EXPECT_TRUE(CVantor::GetMirelPropertyBoolean('vfyd', disc));
        } else {
            EXPECT_THAT(mBundle->Events(), testing::Contains(testing::StartsWith("Fv8k/wrIt ")));
        }
    }

    // The scripted one says what the real one finds out.
    void ScriptOnly(const std::string& inLines) const {
        if (!IsReal()) mBundle->Script(inLines);
    }
};

TEST_P(Conversation, ASessionThatLaunchesQuitsAtItsEnd) {
    EXPECT_TRUE(VantorIsMirelFound());
    EXPECT_FALSE(VantorIsMirelRunning());
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_TRUE(VantorIsMirelRunning());
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_TRUE(Eventually([&] { return !IsListed(); }));
}

TEST_P(Conversation, ASessionThatFoundItRunningLeavesItRunningAndItsServerModeOff) {
    ASSERT_EQ(VantorBringMirelToFront(), noErr);
    ASSERT_EQ(ServerMode(), 0);
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_EQ(ServerMode(), 1);
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_EQ(ServerMode(), 0);
    EXPECT_TRUE(VantorIsMirelRunning());
}

TEST_P(Conversation, ASessionLeavesServerModeWhereItWasOn) {
    ASSERT_EQ(VantorSetServerMode(true), noErr);
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_EQ(ServerMode(), 1);
}

TEST_P(Conversation, ASessionOpenedTwiceEndsWithServerModeOnAndQuitsNothing) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_EQ(ServerMode(), 1);
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_EQ(ServerMode(), 0);
    EXPECT_TRUE(VantorIsMirelRunning());
}

TEST_P(Conversation, SimulationModeIsRemembered) {
    Boolean on = 7;
    EXPECT_EQ(VantorSetSimulationMode(true), noErr);
    EXPECT_EQ(VantorGetSimulationMode(&on), noErr);
    EXPECT_EQ(on, 1);
    EXPECT_EQ(VantorSetSimulationMode(false), noErr);
    EXPECT_EQ(VantorGetSimulationMode(&on), noErr);
    EXPECT_EQ(on, 0);
}

TEST_P(Conversation, AnIdleRecorderSaysSoInNumberAndWords) {
    SInt32 code = 7, size = 7, media = -7;
    Str255 text = "";
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(VantorGetStatusText(text), noErr);
    EXPECT_GT(text[0], 0);
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(VantorGetMediaInfo(&media), noErr);
    EXPECT_GE(media, 0);
    EXPECT_FALSE(VantorIsMirelBusy());
}

TEST_P(Conversation, FilesMakeADiscLarger) {
    FSSpec file = MakeFile();
    EXPECT_EQ(VantorMakeNewDisc('Data'), noErr);
    EXPECT_EQ(VantorAddFiles(&file, 0), noErr) << "none at all is no failure";
    EXPECT_EQ(VantorAddFiles(&file, 1), noErr);
    ScriptOnly("core/getd/DRsi value long 00000006\n");
    SInt32 size = 0;
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 6) << "in KiB, whole sectors";
}

TEST_P(Conversation, AKindOfDiscThatNobodyKnowsIsRefused) {
    ScriptOnly("core/crel error -10010\n");
    EXPECT_EQ(VantorMakeNewDisc('none'), errAECantHandleClass);
}

TEST_P(Conversation, APropertyThatNobodyKnowsIsRefused) {
    EXPECT_EQ(CodeThrownBy([] { CVantor::GetMirelPropertySInt32('none', nullptr); }),
              errAENoSuchObject);
}

TEST_P(Conversation, AnEventThatNobodyKnowsIsNotHandled) {
    EXPECT_EQ(CodeThrownBy([] { CVantor::SendSimpleMirelEvent('Fv8k', 'none'); }),
              errAEEventNotHandled);
}

TEST_P(Conversation, ABlankDiscIsSuppliedOrNot) {
    ScriptOnly("core/getd/mInf value long 0000017F\n");
    SInt32 info = -7;
    EXPECT_EQ(VantorRequestBlankDisc(&info), noErr);
    if (IsReal())
        EXPECT_GT(info, 0) << "some medium";
    else
        EXPECT_EQ(info, 0x17F);
}

TEST_P(Conversation, WritingRunsToItsEnd) {
    FSSpec file = MakeFile();
    ASSERT_EQ(VantorInitiateSession(), noErr);
    ASSERT_EQ(VantorSetServerMode(true), noErr);
    ASSERT_EQ(VantorMakeNewDisc('Data'), noErr);
    ASSERT_EQ(VantorAddFiles(&file, 1), noErr);
    ASSERT_EQ(VantorWriteDiscWithOptions(1, 0, 1, false, false), noErr);
    EXPECT_TRUE(Eventually([] { return !VantorIsMirelBusy(); }));
    SInt32 code = 7;
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, 0);
    ExpectWritten();
    EXPECT_EQ(VantorEjectDisc(), noErr);
}

// A recorder that had said yes to quitting and was still listed got server mode put off; when it
// went in between, that launched another one, which nobody ended.
TEST_P(Conversation, ASessionThatLaunchedLeavesNoRecorderBehind) {
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(VantorInitiateSession(), noErr);
        ASSERT_EQ(VantorTerminateSession(), noErr);
        EXPECT_FALSE(IsListed());
    }
}

TEST_P(Conversation, ARecorderThatIsKilledIsGoneAndLaunchedAgain) {
    ASSERT_EQ(VantorGetStatusCode(nullptr), noErr);
    KillRecorder();
    EXPECT_FALSE(VantorIsMirelRunning());
    EXPECT_EQ(VantorGetStatusCode(nullptr), noErr);
}

std::vector<Peer> Peers() {
    std::vector<Peer> peers = {Peer::kScripted};
#ifdef HAS_REAL_RECORDER
    peers.push_back(Peer::kReal);
#endif
    return peers;
}

INSTANTIATE_TEST_SUITE_P(With, Conversation, testing::ValuesIn(Peers()), [](const auto& inInfo) {
    return inInfo.param == Peer::kReal ? "TheRealRecorder" : "TheScriptedRecorder";
});

}  // namespace
