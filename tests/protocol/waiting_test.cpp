// Waiting for answers: the idle function, and recorders that die or never answer.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <thread>

#include "support/RecorderTest.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/controller/CVantor.h"

namespace {

int sIdleCalls = 0;

Boolean CountAndGoOn(EventRecord*, SInt32* outSleep, RgnHandle* outRegion) {
    ++sIdleCalls;
    *outSleep = 1;
    *outRegion = nullptr;
    return false;
}

Boolean StopAtTheThird(EventRecord* inEvent, SInt32* outSleep, RgnHandle* outRegion) {
    CountAndGoOn(inEvent, outSleep, outRegion);
    return sIdleCalls >= 3;
}

class Waiting : public RecorderTest {
  protected:
    void SetUp() override {
        RecorderTest::SetUp();
        StartRecorder();
        sIdleCalls = 0;
    }
    void TearDown() override {
        VantorSetAEIdleProc(nullptr);
        RecorderTest::TearDown();
    }
};

TEST_F(Waiting, RunsTheHostsIdleFunction) {
    VantorSetAEIdleProc(CountAndGoOn);
    Script("core/getd/sCod delay 200 value long 00000005\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), noErr);
    EXPECT_GE(sIdleCalls, 2);
}

TEST_F(Waiting, EndsWhenTheIdleFunctionSaysSo) {
    VantorSetAEIdleProc(StopAtTheThird);
    Script("core/getd/sCod silent\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), errAEWaitCanceled);
    EXPECT_EQ(sIdleCalls, 3);
}

TEST_F(Waiting, ALateAnswerDoesNotReachTheNextQuestion) {
    VantorSetAEIdleProc(StopAtTheThird);
    Script("core/getd/sCod delay 300 value long 00000005\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), errAEWaitCanceled);
    VantorSetAEIdleProc(nullptr);
    Script("core/getd/sCod value long 00000009\n");
    SInt32 code = 0;
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, 9);
}

TEST_F(Waiting, EndsWithin100MillisecondsWhenTheRecorderIsKilled) {
    Script("core/getd/sCod silent\n");
    ProcessSerialNumber psn;
    pid_t pid;
    ASSERT_TRUE(VantorGetMirelProcessSerialNumber(&psn));
    ASSERT_EQ(GetProcessPID(&psn, &pid), noErr);
    std::chrono::steady_clock::time_point killed;
    bool seen = false;
    std::thread killer([&] {
        seen = Eventually([&] { return !Events().empty(); });
        killed = std::chrono::steady_clock::now();
        kill(pid, SIGKILL);
    });
    EXPECT_EQ(VantorGetStatusCode(nullptr), connectionInvalid);
    const auto ended = std::chrono::steady_clock::now();
    killer.join();
    EXPECT_TRUE(seen) << "the question arrived";
    EXPECT_LT(ended - killed, std::chrono::milliseconds(100));
}

TEST_F(Waiting, EndsWhenTheRecorderDiesInItsHandler) {
    Script("core/getd/sCod die\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), connectionInvalid);
    EXPECT_TRUE(Eventually([&] { return !IsListed(); }));
}

TEST_F(Waiting, TheNextQuestionAfterADeathLaunchesAnotherRecorder) {
    Script("core/getd/sCod die\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), connectionInvalid);
    Script("");
    ASSERT_TRUE(Eventually([&] { return !IsListed(); }));
    EXPECT_EQ(VantorGetStatusCode(nullptr), noErr);
}

TEST(IdleFunction, IsTheLibrarysOwnUntilOneIsSetAndAgainAfterNull) {
    CVantor::sAEIdleProc = nullptr;  // as at the start
    const AEIdleUPP own = CVantor::GetAEIdleProc();
    EXPECT_EQ(own, MoreAESimpleIdleFunction);
    EXPECT_EQ(CVantor::GetAEIdleProc(), own) << "kept";
    VantorSetAEIdleProc(CountAndGoOn);
    EXPECT_EQ(CVantor::GetAEIdleProc(), CountAndGoOn);
    VantorSetAEIdleProc(nullptr);
    SInt32 sleep = 0;
    RgnHandle region = reinterpret_cast<RgnHandle>(&sleep);
    EXPECT_FALSE(InvokeAEIdleUPP(nullptr, &sleep, &region, CVantor::GetAEIdleProc()));
    EXPECT_EQ(sleep, 30);
    EXPECT_EQ(region, nullptr);
}

}  // namespace
