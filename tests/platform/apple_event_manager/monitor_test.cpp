// Monitors: what they are told of sends between real processes, and that nobody waits for them.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "platform/apple_event_manager/Monitor.h"
#include "support/EventPeer.h"
#include "support/TemporaryHome.h"

namespace {

TemporaryHome gHome;

constexpr SInt32 kHalfAMinute = 1800;  // ticks

class Monitor : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(mServer.Psn().lowLongOfPSN, 0u); }

    UInt32 Server() { return mServer.Psn().lowLongOfPSN; }
    static UInt32 Self() {
        ProcessSerialNumber self;
        GetCurrentProcess(&self);
        return self.lowLongOfPSN;
    }
    OSErr Send(const ProcessSerialNumber& inTarget, AEEventID inID, SInt32 inValue = 0,
               AESendMode inMode = kAEWaitReply, SInt32 inTimeOut = kHalfAMinute) {
        OwnedDesc event;
        OSErr err = MakeEvent(inTarget, inID, &event);
        if (!err) err = PutLong(&event, keyDirectObject, inValue);
        AEDisposeDesc(&mReply);
        return err ? err
                   : AESend(&event, &mReply, inMode, kAENormalPriority, inTimeOut, nullptr,
                            nullptr);
    }
    OSErr Ask(AEEventID inID, SInt32 inValue = 0, AESendMode inMode = kAEWaitReply,
              SInt32 inTimeOut = kHalfAMinute) {
        return Send(mServer.Psn(), inID, inValue, inMode, inTimeOut);
    }
    // To the server, or to this program itself, which takes less time and does nothing with it.
    OSErr SendText(const std::string& inText) {
        return SendTextTo(mServer.Psn(), inText, kAEWaitReply);
    }
    OSErr SendTextToSelf(const std::string& inText) {
        return SendTextTo({0, kCurrentProcess}, inText, kAENoReply);
    }
    OSErr SendTextTo(const ProcessSerialNumber& inTarget, const std::string& inText,
                     AESendMode inMode) {
        OwnedDesc event;
        MakeEvent(inTarget, 'size', &event);
        PutText(&event, keyDirectObject, inText);
        AEDisposeDesc(&mReply);
        return AESend(&event, &mReply, inMode, kAENormalPriority, kHalfAMinute, nullptr, nullptr);
    }

    EventPeer mServer = StartServer();
    OwnedDesc mReply;
};

TEST_F(Monitor, SeesRequestsAndAnswersOfTwoOtherPrograms) {
    TestMonitor monitor;
    ASSERT_EQ(monitor.Result(), noErr);
    EventPeer client("event_client", {std::to_string(Server()), "3"});
    EXPECT_EQ(client.Wait(), 0);
    const auto seen = monitor.Take(6);
    ASSERT_EQ(seen.size(), 6u);
    for (size_t i = 0; i < seen.size(); ++i) {
        const bool isRequest = i % 2 == 0;
        EXPECT_EQ(seen[i].kind, UInt32{isRequest ? kPlatformEventSent : kPlatformEventAnswered});
        EXPECT_EQ(seen[i].id, isRequest ? AEEventID{'echo'} : AEEventID{kAEAnswer});
        EXPECT_EQ(seen[i].value, static_cast<SInt32>(i / 2));
        EXPECT_EQ(seen[i].exchange, seen[i - i % 2].exchange);
        EXPECT_EQ(seen[i].target, Server());
        EXPECT_EQ(seen[i].senderName, "event_client");
        EXPECT_EQ(seen[i].targetName, "event_server");
        EXPECT_EQ(seen[i].elapsed > 0, !isRequest);
    }
    EXPECT_NE(seen[0].exchange, seen[2].exchange);
    EXPECT_EQ(seen[0].replyMode, kAEWaitReply);
}

TEST_F(Monitor, SeesWhatHappensInTheOrderOfTime) {
    EventPeer other = StartServer();
    const UInt32 last = other.Psn().lowLongOfPSN;
    TestMonitor monitor;
    OwnedDesc event;
    MakeEvent(mServer.Psn(), 'rely', &event);
    PutLong(&event, 'peer', static_cast<SInt32>(last));
    PutLong(&event, keyDirectObject, 5);
    ASSERT_EQ(
        AESend(&event, &mReply, kAEWaitReply, kAENormalPriority, kHalfAMinute, nullptr, nullptr),
        noErr);
    const auto seen = monitor.Take(4);
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_EQ(seen[0].target, Server());
    EXPECT_EQ(seen[1].sender, Server());
    EXPECT_EQ(seen[1].target, last);
    EXPECT_EQ(seen[2].sender, Server());
    EXPECT_EQ(seen[3].sender, Self());
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end(),
                               [](const Seen& a, const Seen& b) { return a.time < b.time; }));
}

TEST_F(Monitor, TellsTheErrorOfAHandler) {
    TestMonitor monitor;
    EXPECT_EQ(Ask('fail'), noErr);
    const auto seen = monitor.Take(2);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[1].error, errAEEventFailed);
}

TEST_F(Monitor, TellsHowASendEndedThatGotNoAnswer) {
    TestMonitor monitor;
    EXPECT_EQ(Ask('slow', 500, kAEWaitReply, 6), errAETimeout);
    EXPECT_EQ(Ask('add1', 0, kAENoReply), noErr);
    EXPECT_EQ(Ask('die '), connectionInvalid);
    const auto seen = monitor.Take(6);
    ASSERT_EQ(seen.size(), 6u);
    const OSErr expected[] = {errAETimeout, noErr, connectionInvalid};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(seen[2 * i].kind, UInt32{kPlatformEventSent});
        EXPECT_EQ(seen[2 * i + 1].kind, UInt32{kPlatformEventEnded});
        EXPECT_EQ(seen[2 * i + 1].error, expected[i]);
        EXPECT_EQ(seen[2 * i + 1].exchange, seen[2 * i].exchange);
    }
}

TEST_F(Monitor, SeesAnswersThatComeThroughTheEventQueue) {
    TestMonitor monitor;
    for (SInt32 i = 0; i < 3; ++i) EXPECT_EQ(Ask('echo', i, kAEQueueReply), noErr);
    for (int i = 0; i < 3; ++i) {
        EventRecord record;
        ASSERT_TRUE(WaitNextEvent(highLevelEventMask, &record, kHalfAMinute, nullptr));
        AEProcessAppleEvent(&record);
    }
    const auto seen = monitor.Take(6);
    ASSERT_EQ(seen.size(), 6u);
    std::set<UInt64> answered;
    for (const Seen& each : seen) {
        if (each.kind != kPlatformEventAnswered) continue;
        answered.insert(each.exchange);
        EXPECT_EQ(each.target, Server());
    }
    EXPECT_EQ(answered.size(), 3u);
}

TEST_F(Monitor, SeesWhatAProgramSendsToItself) {
    TestMonitor monitor;
    const auto handler = [](const AppleEvent*, AppleEvent* reply, SInt32) {
        return PutLong(reply, keyDirectObject, 42);
    };
    AEInstallEventHandler(kTestClass, 'self', handler, 0, false);
    EXPECT_EQ(Send({0, kCurrentProcess}, 'self'), noErr);
    EXPECT_EQ(Send({0, kCurrentProcess}, 'self', 0, kAEQueueReply), noErr);
    AERemoveEventHandler(kTestClass, 'self', nullptr, false);
    EventRecord answer;
    EXPECT_TRUE(WaitNextEvent(highLevelEventMask, &answer, kHalfAMinute, nullptr));
    const auto seen = monitor.Take(4);
    ASSERT_EQ(seen.size(), 4u);
    for (const Seen& each : seen) {
        EXPECT_EQ(each.sender, Self());
        EXPECT_EQ(each.target, Self());
    }
    EXPECT_EQ(seen[1].value, 42);
    EXPECT_EQ(seen[3].value, 42);
    EXPECT_EQ(seen[3].exchange, seen[2].exchange);
}

TEST_F(Monitor, EventsThatFitNoPacketComeWhole) {
    TestMonitor monitor;
    const std::string text(5'000'000, 'x');
    ASSERT_EQ(SendText(text), noErr);
    const auto seen = monitor.Take(2);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].textSize, 5'000'000);
    EXPECT_EQ(seen[1].value, 5'000'000);
}

TEST_F(Monitor, TwoSeeAllAndAFifthIsRefused) {
    TestMonitor first, second;
    EXPECT_EQ(Ask('echo', 7), noErr);
    for (TestMonitor* monitor : {&first, &second}) {
        const auto seen = monitor->Take(2);
        ASSERT_EQ(seen.size(), 2u);
        EXPECT_EQ(seen[1].value, 7);
    }
    TestMonitor third, fourth;
    EXPECT_EQ(fourth.Result(), noErr);
    {
        TestMonitor fifth;
        EXPECT_EQ(fifth.Result(), memFullErr);
    }
    EXPECT_EQ(Ask('echo', 8), noErr);
    EXPECT_EQ(fourth.Take(2).size(), 2u);
}

// Like one that is stopped: nothing is read from its sockets.
TEST_F(Monitor, ThatDoesNotReadKeepsNobodyWaitingAndLearnsWhatItMissed) {
    TestMonitor monitor;
    const std::string text(8000, 'x');
    constexpr size_t kEvents = 500;
    for (size_t i = 0; i < kEvents; ++i) ASSERT_EQ(SendText(text), noErr);
    const size_t seen = monitor.TakeWaiting().size();
    const UInt32 missed = monitor.Missed();
    EXPECT_GT(seen, 0u);
    EXPECT_GT(missed, 0u);
    EXPECT_EQ(seen + missed, 2 * kEvents);
    EXPECT_EQ(monitor.Missed(), 0u);
    EXPECT_EQ(Ask('echo', 1), noErr);
    EXPECT_EQ(monitor.Take(2).size(), 2u);
}

TEST_F(Monitor, ThatDoesNotReadHoldsALimitedAmountOfLargeEvents) {
    TestMonitor monitor;
    const std::string text(10'000'000, 'x');
    for (int i = 0; i < 10; ++i) ASSERT_EQ(SendTextToSelf(text), noErr);
    const auto seen = monitor.TakeWaiting();
    size_t large = 0;
    for (const Seen& each : seen) large += each.textSize == 10'000'000;
    EXPECT_EQ(large, 6u);  // 64 MiB
    EXPECT_EQ(monitor.Missed(), 4u);
    ASSERT_EQ(SendTextToSelf(text), noErr);
    EXPECT_EQ(monitor.Take(2).size(), 2u);
}

TEST_F(Monitor, StoppedProcessKeepsNobodyWaiting) {
    EventPeer watcher("event_monitor");
    ASSERT_NE(watcher.Psn().lowLongOfPSN, 0u);
    kill(watcher.Pid(), SIGSTOP);
    const std::string text(8000, 'x');
    for (int i = 0; i < 500; ++i) ASSERT_EQ(SendText(text), noErr);
    EXPECT_EQ(Ask('echo', 3), noErr);
    kill(watcher.Pid(), SIGCONT);
}

TEST_F(Monitor, ForkedChildTellsUnderItsOwnNumber) {
    TestMonitor monitor;
    EXPECT_EQ(Ask('echo', 1), noErr);
    const pid_t child = fork();
    if (child == 0) _exit(Ask('echo', 2) == noErr ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Ask('echo', 3), noErr);
    const auto seen = monitor.Take(6);
    ASSERT_EQ(seen.size(), 6u);
    EXPECT_EQ(seen[0].sender, Self());
    EXPECT_NE(seen[2].sender, Self());
    EXPECT_EQ(seen[3].value, 2);
    EXPECT_EQ(seen[4].sender, Self());
}

TEST_F(Monitor, NothingIsSeenAfterItIsClosedAndBeforeItIsOpen) {
    EXPECT_EQ(Ask('echo', 1), noErr);
    {
        TestMonitor monitor;
        EXPECT_EQ(Ask('echo', 2), noErr);
        EXPECT_EQ(monitor.Take(2).size(), 2u);
    }
    EXPECT_EQ(Ask('echo', 3), noErr);
    TestMonitor monitor;
    EXPECT_EQ(monitor.TakeWaiting().size(), 0u);
    EXPECT_EQ(monitor.Missed(), 0u);
}

TEST_F(Monitor, NullPointersAreRefused) {
    PlatformWatchedEvent event;
    TestMonitor monitor;
    EXPECT_EQ(PlatformMonitorOpen(nullptr), paramErr);
    EXPECT_EQ(PlatformMonitorNext(nullptr, 0, &event), paramErr);
    EXPECT_EQ(PlatformMonitorMissed(nullptr), 0u);
    PlatformMonitorClose(nullptr);
}

}  // namespace
