// Starting and ending the recorder of one test.
#include "support/RecorderTest.h"

#include <signal.h>
#include <unistd.h>

#include <chrono>

#include "support/TemporaryHome.h"
#include "vantor/process/MoreProc.h"

namespace {

const TemporaryHome sHome;

}  // namespace

// Kept: the call leaves the reference it makes allocated.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:VantorMediaSettingInfo\n";
}

void RecorderTest::SetUp() {
    mBundle = std::make_unique<RecorderBundle>();
}

void RecorderTest::TearDown() {
    KillRecorder();
    EXPECT_EQ(VantorTerminateSession(), noErr);
    std::filesystem::remove_all(ApplicationsFolder());
}

void RecorderTest::StartRecorder() {
    ASSERT_EQ(VantorBringMirelToFront(), noErr);
    SInt32 code;
    ASSERT_EQ(VantorGetStatusCode(&code), noErr) << "answers events";
    mBundle->Forget();
}

void RecorderTest::KillRecorder() {
    ProcessSerialNumber psn;
    pid_t pid;
    if (MoreProcFindProcessByCreator('Fv8k', &psn) == noErr && GetProcessPID(&psn, &pid) == noErr) {
        kill(pid, SIGKILL);
    }
    EXPECT_TRUE(Eventually([&] { return !IsListed(); }));
}

bool RecorderTest::IsListed() const {
    ProcessSerialNumber psn;
    return MoreProcFindProcessByCreator('Fv8k', &psn) == noErr;
}
