// What programs print of their events when the environment asks for it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include "support/Command.h"
#include "support/EventPeer.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

TemporaryHome gHome;

// Looked at by this program and by all that it starts.
const bool gAsks = setenv("AEDebugSends", "1", 1) == 0 && setenv("AEDebugReceives", "1", 1) == 0;

std::string Prefix(const std::string& inProgram, pid_t inPid) {
    return inProgram + " (" + std::to_string(inPid) + "): ";
}

OSErr Answer(const AppleEvent*, AppleEvent* ioReply, SInt32) {
    return PutLong(ioReply, keyDirectObject, 42);
}

OSErr Send(const ProcessSerialNumber& inTarget, AEEventID inID, AESendMode inMode) {
    OwnedDesc event, reply;
    MakeEvent(inTarget, inID, &event);
    PutLong(&event, keyDirectObject, 7);
    return AESend(&event, &reply, inMode, kAENormalPriority, kNoTimeOut, nullptr, nullptr);
}

// event_client's standard error after one event, with these variables.
std::string PrintedByClient(const std::vector<std::string>& inEnvironment) {
    EventPeer server = StartServer();
    CommandOptions options;
    options.environment = inEnvironment;
    const std::string number = std::to_string(server.Psn().lowLongOfPSN);
    const auto result = RunCommand({ProgramFolder() + "/event_client", number, "1"}, options);
    EXPECT_EQ(result.exitCode, 0);
    return result.errors;
}

}  // namespace

TEST(DebugPrints, ShowEventsToOneselfWithTheirReplies) {
    ASSERT_TRUE(gAsks);
    AEInstallEventHandler(kTestClass, 'answ', Answer, 0, false);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Send({0, kCurrentProcess}, 'answ', kAEWaitReply), noErr);
    const std::string printed = testing::internal::GetCapturedStderr();
    const std::string me = Prefix("test_debug_prints", getpid());
    EXPECT_THAT(printed, HasSubstr(me + "Sending an event: 'Test'\\'answ'{ '----':7, &'addr':"));
    EXPECT_THAT(printed, HasSubstr(me + "Received an event: 'Test'\\'answ'{ '----':7,"));
    EXPECT_THAT(printed, HasSubstr(me + "Got the reply: 'aevt'\\'ansr'{ '----':42,"));
}

TEST(DebugPrints, ShowErrorsOfSending) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(Send({2, 0}, 'answ', kAENoReply), procNotFound);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("Sending ended with error -600\n"));
}

TEST(DebugPrints, ShowWhatAnotherProgramReceivesAndReplies) {
    testing::internal::CaptureStderr();
    EventPeer server = StartServer();
    EXPECT_EQ(Send(server.Psn(), 'echo', kAEWaitReply), noErr);
    const std::string printed = testing::internal::GetCapturedStderr();
    const std::string peer = Prefix("event_server", server.Pid());
    EXPECT_THAT(printed, HasSubstr(peer + "Received an event: 'Test'\\'echo'{ '----':7,"));
    EXPECT_THAT(printed, HasSubstr(peer + "Replying: 'aevt'\\'ansr'{ '----':7,"));
}

TEST(DebugPrints, AreSilentUnlessAskedFor) {
    EXPECT_THAT(PrintedByClient({"AEDebugSends=1", "AEDebugReceives="}),
                HasSubstr("Sending an event: 'Test'\\'echo'"));
    EXPECT_THAT(PrintedByClient({"AEDebugSends=0", "AEDebugReceives=1"}), IsEmpty());
}
