// The Process Manager's calls, one by one.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

#include "platform/process_manager/Peer.h"
#include "process_manager/identity.h"
#include "process_manager/process_table.h"
#include "support/TemporaryHome.h"

namespace {

TemporaryHome sHome;

const ProcessSerialNumber kMe = {0, kCurrentProcess};
const ProcessSerialNumber kNobody = {0, 0x7FFFFFF0};

static_assert(sizeof(ProcessSerialNumber) == 8);
static_assert(sizeof(AppParameters) == 24 && offsetof(AppParameters, eventRefCon) == 16);
static_assert(offsetof(LaunchParamBlockRec, launchBlockID) == 6 &&
              offsetof(LaunchParamBlockRec, launchControlFlags) == 14 &&
              offsetof(LaunchParamBlockRec, launchAppSpec) == 16);
static_assert(extendedBlock == 0x4C43 && extendedBlockLen == 32);

ProcessSerialNumber Own() {
    ProcessSerialNumber psn = {};
    EXPECT_EQ(GetCurrentProcess(&psn), noErr);
    return psn;
}

Boolean Same(const ProcessSerialNumber& inA, const ProcessSerialNumber& inB) {
    Boolean same = 2;
    EXPECT_EQ(SameProcess(&inA, &inB, &same), noErr);
    return same;
}

TEST(Processes, CurrentProcessHasARealNumber) {
    const ProcessSerialNumber own = Own();
    EXPECT_EQ(UInt32(own.highLongOfPSN), 0u);
    EXPECT_GT(Low(own), UInt32(kCurrentProcess));
    EXPECT_EQ(Low(Own()), Low(own));
}

TEST(Processes, KeepsSameProcessComparingWithoutChecking) {
    EXPECT_TRUE(Same({0, 0}, {0, 0}));
    EXPECT_FALSE(Same({0, 0}, Own()));
    EXPECT_TRUE(Same(kMe, Own()));
    EXPECT_TRUE(Same(Own(), kMe));
    EXPECT_TRUE(Same(kNobody, kNobody));
    EXPECT_FALSE(Same({2, 0}, kMe));
}

TEST(Processes, InformationWritesOnlyWhatWasAskedFor) {
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    ASSERT_EQ(GetProcessInformation(&kMe, &info), noErr);
    EXPECT_TRUE(Same(info.processNumber, Own()));
    EXPECT_NE(Low(info.processNumber), UInt32(kCurrentProcess));
    EXPECT_EQ(info.processName, nullptr);
    EXPECT_EQ(info.processAppSpec, nullptr);
    EXPECT_EQ(info.processMode & 0x10C0, 0x10C0u);
    EXPECT_EQ(Low(info.processLauncher), 0u);
    EXPECT_LE(info.processLaunchDate, TickCount());
}

TEST(Processes, ActiveTimeGrowsWithTheWorkDone) {
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    ASSERT_EQ(GetProcessInformation(&kMe, &info), noErr);
    const UInt32 before = info.processActiveTime;
    timespec used = {};
    const auto target = before + 5;  // ticks
    while (UInt64(used.tv_sec) * 60 + UInt64(used.tv_nsec) * 60 / 1'000'000'000 < target)
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    ASSERT_EQ(GetProcessInformation(&kMe, &info), noErr);
    EXPECT_GE(info.processActiveTime, target);
    EXPECT_LT(info.processActiveTime, target + 600);
}

UInt32 ActiveTimeOf(const ProcessSerialNumber& inPsn) {
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    EXPECT_EQ(GetProcessInformation(&inPsn, &info), noErr);
    return info.processActiveTime;
}

// More processes than are remembered at a time, each asked again right after the others.
TEST(Processes, ActiveTimeIsEachProcessesOwn) {
    timespec used = {};
    while (used.tv_sec == 0) clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    const std::vector<Peer> idle(20);
    for (int round = 0; round < 3; ++round) {
        EXPECT_GE(ActiveTimeOf(kMe), 60u);
        for (const Peer& peer : idle) EXPECT_LT(ActiveTimeOf(peer.Psn()), 60u);
    }
}

TEST(Processes, NameFitsIntoThirtyTwoBytes) {
    UInt8 name[33];
    name[32] = 0xEE;
    carbon::ShortName("a name that is longer than thirty-one characters", name);
    EXPECT_EQ(name[0], 31);
    EXPECT_EQ(name[32], 0xEE);
    carbon::ShortName("\xC3\xA9\xE6\xBC\xA2!", name);  // the second character is not MacRoman
    EXPECT_EQ(std::string(name + 1, name + 1 + name[0]), "\x8E?!");
}

TEST(Processes, ShortInformationRecordIsRefused) {
    ProcessInfoRec info = {};
    info.processInfoLength = 59;
    EXPECT_EQ(GetProcessInformation(&kMe, &info), paramErr);
    info.processInfoLength = 68;
    EXPECT_EQ(GetProcessInformation(&kMe, &info), noErr);
}

TEST(Processes, UnknownProcessIsNotFoundByAnyCall) {
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    FSRef ref;
    CFStringRef name;
    pid_t pid = 77;
    ProcessSerialNumber psn = {5, 5};
    EXPECT_EQ(GetProcessInformation(&kNobody, &info), procNotFound);
    EXPECT_EQ(SetFrontProcess(&kNobody), procNotFound);
    EXPECT_EQ(SetFrontProcessWithOptions(&kNobody, 0), procNotFound);
    EXPECT_EQ(WakeUpProcess(&kNobody), procNotFound);
    EXPECT_EQ(KillProcess(&kNobody), procNotFound);
    EXPECT_EQ(GetProcessBundleLocation(&kNobody, &ref), procNotFound);
    EXPECT_EQ(CopyProcessName(&kNobody, &name), procNotFound);
    EXPECT_EQ(GetProcessPID(&kNobody, &pid), procNotFound);
    EXPECT_EQ(pid, 77);
    EXPECT_EQ(GetProcessForPID(1, &psn), procNotFound);
    EXPECT_EQ(Low(psn), 5u);
}

TEST(Processes, NullPointersAreParameterErrors) {
    Boolean same;
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    EXPECT_EQ(GetCurrentProcess(nullptr), paramErr);
    EXPECT_EQ(GetNextProcess(nullptr), paramErr);
    EXPECT_EQ(GetFrontProcess(nullptr), paramErr);
    EXPECT_EQ(SetFrontProcess(nullptr), paramErr);
    EXPECT_EQ(WakeUpProcess(nullptr), paramErr);
    EXPECT_EQ(KillProcess(nullptr), paramErr);
    EXPECT_EQ(GetProcessInformation(nullptr, &info), paramErr);
    EXPECT_EQ(GetProcessInformation(&kMe, nullptr), paramErr);
    EXPECT_EQ(SameProcess(&kMe, nullptr, &same), paramErr);
    EXPECT_EQ(SameProcess(&kMe, &kMe, nullptr), paramErr);
    EXPECT_EQ(GetProcessPID(&kMe, nullptr), paramErr);
    EXPECT_EQ(GetProcessForPID(getpid(), nullptr), paramErr);
    EXPECT_EQ(CopyProcessName(&kMe, nullptr), paramErr);
    EXPECT_EQ(GetProcessBundleLocation(&kMe, nullptr), paramErr);
}

TEST(Processes, LinuxNumberAndSerialNumberLeadToEachOther) {
    const Peer peer;
    const ProcessSerialNumber psn = peer.Psn();
    pid_t pid = 0;
    ASSERT_EQ(GetProcessPID(&psn, &pid), noErr);
    EXPECT_EQ(pid, peer.Pid());
    ProcessSerialNumber back = {};
    ASSERT_EQ(GetProcessForPID(pid, &back), noErr);
    EXPECT_TRUE(Same(back, psn));
}

TEST(Processes, NameAndPlaceAreThoseOfTheProgramFile) {
    const Peer peer;
    const ProcessSerialNumber psn = peer.Psn();
    CFStringRef name = nullptr;
    ASSERT_EQ(CopyProcessName(&psn, &name), noErr);
    EXPECT_EQ(CFStringCompare(name, CFSTR("process_peer"), 0), kCFCompareEqualTo);
    CFRelease(name);
    FSRef ref;
    EXPECT_EQ(GetProcessBundleLocation(&psn, &ref), noErr);
}

TEST(Processes, LastProcessBroughtForwardIsInFront) {
    const ProcessSerialNumber own = Own();
    Peer peer;  // a program that the user starts comes to the front
    ProcessSerialNumber front = {};
    ASSERT_EQ(GetFrontProcess(&front), noErr);
    EXPECT_TRUE(Same(front, peer.Psn()));
    ASSERT_EQ(SetFrontProcess(&kMe), noErr);
    ASSERT_EQ(GetFrontProcess(&front), noErr);
    EXPECT_TRUE(Same(front, own));
    const ProcessSerialNumber psn = peer.Psn();
    ASSERT_EQ(SetFrontProcessWithOptions(&psn, kSetFrontProcessFrontWindowOnly), noErr);
    ASSERT_EQ(GetFrontProcess(&front), noErr);
    EXPECT_TRUE(Same(front, psn));
    EXPECT_EQ(SetFrontProcessWithOptions(&psn, 6), paramErr);
}

TEST(Processes, FrontGoesBackToTheOneBeforeWhenItsProcessDies) {
    Own();
    Peer first, second, third;
    ProcessSerialNumber psn = first.Psn(), front = {};
    ASSERT_EQ(SetFrontProcess(&psn), noErr);
    first.Kill();
    ASSERT_EQ(GetFrontProcess(&front), noErr);
    EXPECT_TRUE(Same(front, third.Psn()));
    third.Quit();
    ASSERT_EQ(GetFrontProcess(&front), noErr);
    EXPECT_TRUE(Same(front, second.Psn()));
}

TEST(Processes, KilledProcessHasNoChanceToAnswer) {
    Peer peer;
    const ProcessSerialNumber psn = peer.Psn();
    ASSERT_EQ(KillProcess(&psn), noErr);
    siginfo_t info = {};
    ASSERT_EQ(waitid(P_PID, id_t(peer.Pid()), &info, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(info.si_status, SIGKILL);
    EXPECT_EQ(KillProcess(&psn), procNotFound);
}

TEST(Processes, ExitToShellLeavesTheTableInOrder) {
    Own();
    Peer peer;
    peer.Quit('x');
    EXPECT_FALSE(carbon::FindProcess(peer.Psn()));
}

}  // namespace
