// What WaitNextEvent and its kin take from the queue, and what ends their wait.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "apple_event_manager/limits.h"
#include "apple_event_manager/transport/exchange.h"
#include "apple_event_manager/transport/transport.h"
#include "process_manager/process_table.h"
#include "support/LocalSocket.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

using carbon::ControlKind;
using carbon::SendControl;

TemporaryHome gHome;

constexpr ProcessSerialNumber kSelf = {0, kCurrentProcess};
constexpr UInt32 kLong = 60 * 60;  // ticks

int gHandled;

OSErr CountHandled(const AppleEvent*, AppleEvent*, SInt32 inResult) {
    ++gHandled;
    return static_cast<OSErr>(inResult);
}

class EventLoop : public testing::Test {
  protected:
    void SetUp() override {
        gHandled = 0;
        EventRecord record;
        while (GetNextEvent(everyEvent, &record)) AEProcessAppleEvent(&record);
        gHandled = 0;
    }
    // Puts an event into this process's own queue, as the answer to one sent to itself.
    static void QueueAnswer() {
        OwnedDesc event, reply;
        MakeEvent(kSelf, 'none', &event);
        ASSERT_EQ(AESend(&event, &reply, kAEQueueReply, 0, kNoTimeOut, nullptr, nullptr), noErr);
    }
    static UInt32 IDOf(const EventRecord& inRecord) {
        UInt32 id;
        std::memcpy(&id, &inRecord.where, sizeof id);
        return id;
    }
};

TEST_F(EventLoop, NothingIsANullEventAfterTheSleep) {
    EventRecord record;
    record.what = 99;
    const UInt32 start = TickCount();
    EXPECT_FALSE(WaitNextEvent(everyEvent, &record, 6, nullptr));
    EXPECT_EQ(EventKind{record.what}, nullEvent);
    EXPECT_GE(TickCount() - start, 5u);
    EXPECT_FALSE(GetNextEvent(everyEvent, &record));
}

TEST_F(EventLoop, HighLevelEventTellsClassAndID) {
    QueueAnswer();
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(everyEvent, &record, kLong, nullptr));
    EXPECT_EQ(EventKind{record.what}, kHighLevelEvent);
    EXPECT_EQ(UInt32{record.message}, UInt32{kCoreEventClass});
    EXPECT_EQ(IDOf(record), UInt32{kAEAnswer});
    AEProcessAppleEvent(&record);
}

TEST_F(EventLoop, EventAvailLeavesTheEvent) {
    QueueAnswer();
    EventRecord record;
    EXPECT_TRUE(EventAvail(everyEvent, &record));
    EXPECT_EQ(AEProcessAppleEvent(&record), noOutstandingHLE);
    EXPECT_TRUE(GetNextEvent(everyEvent, &record));
    EXPECT_EQ(AEProcessAppleEvent(&record), errAEEventNotHandled);
    EXPECT_FALSE(EventAvail(everyEvent, &record));
}

TEST_F(EventLoop, MaskLeavesOtherKindsQueued) {
    QueueAnswer();
    SendControl(kSelf, ControlKind::kResume);
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(osMask, &record, kLong, nullptr));
    EXPECT_EQ(EventKind{record.what}, osEvt);
    EXPECT_FALSE(GetNextEvent(osMask | keyDownMask, &record));
    EXPECT_TRUE(GetNextEvent(highLevelEventMask, &record));
    AEProcessAppleEvent(&record);
}

TEST_F(EventLoop, SuspendAndResumeAreOSEvents) {
    EventRecord record;
    SendControl(kSelf, ControlKind::kSuspend);
    ASSERT_TRUE(WaitNextEvent(everyEvent, &record, kLong, nullptr));
    EXPECT_EQ(UInt32{record.message}, 0x01000000u);
    SendControl(kSelf, ControlKind::kResume);
    ASSERT_TRUE(WaitNextEvent(everyEvent, &record, kLong, nullptr));
    EXPECT_EQ(UInt32{record.message}, 0x01000001u);
}

TEST_F(EventLoop, ProcessingWantsAHighLevelEvent) {
    EventRecord record{};
    EXPECT_EQ(AEProcessAppleEvent(&record), errAENotAppleEvent);
    record.what = kHighLevelEvent;
    EXPECT_EQ(AEProcessAppleEvent(&record), noOutstandingHLE);
}

TEST_F(EventLoop, EventIsProcessedOnce) {
    QueueAnswer();
    AEInstallEventHandler(kCoreEventClass, kAEAnswer, CountHandled, errAEEventFailed, false);
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(everyEvent, &record, kLong, nullptr));
    EXPECT_EQ(AEProcessAppleEvent(&record), errAEEventFailed);
    EXPECT_EQ(AEProcessAppleEvent(&record), noOutstandingHLE);
    EXPECT_EQ(gHandled, 1);
    AERemoveEventHandler(kCoreEventClass, kAEAnswer, nullptr, false);
}

TEST_F(EventLoop, WakeUpFromAnotherThreadEndsTheSleep) {
    std::thread waker([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_EQ(WakeUpProcess(&kSelf), noErr);
    });
    EventRecord record;
    EXPECT_FALSE(WaitNextEvent(everyEvent, &record, 0xFFFFFFFF, nullptr));  // For ever.
    waker.join();
}

TEST_F(EventLoop, WakeUpBeforeTheWaitIsNotLost) {
    WakeUpProcess(&kSelf);
    EventRecord record;
    EXPECT_FALSE(WaitNextEvent(everyEvent, &record, 0xFFFFFFFF, nullptr));
}

TEST_F(EventLoop, WakeUpOfAnotherProcessEndsItsSleep) {
    ProcessSerialNumber self;
    GetCurrentProcess(&self);
    const pid_t child = fork();
    if (child == 0) _exit(WakeUpProcess(&self) == noErr ? 0 : 1);
    EventRecord record;
    EXPECT_FALSE(WaitNextEvent(everyEvent, &record, 0xFFFFFFFF, nullptr));
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(EventLoop, ManyThreadsMayWake) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([] {
            for (int j = 0; j < 200; ++j) WakeUpProcess(&kSelf);
        });
    EventRecord record;
    for (std::thread& thread : threads) {
        GetNextEvent(everyEvent, &record);
        thread.join();
    }
    EXPECT_FALSE(WaitNextEvent(everyEvent, &record, 1, nullptr));
}

TEST_F(EventLoop, DeathOfAnApplicationIsAnEvent) {
    static SInt32 sStatus;
    static UInt32 sNumber;
    AEInstallEventHandler(
        kCoreEventClass, kAEApplicationDied,
        [](const AppleEvent* event, AppleEvent*, SInt32) -> OSErr {
            sStatus = LongIn(*event, keyErrorNumber);
            UInt32 number[2];
            const OSErr err = AEGetParamPtr(event, keyProcessSerialNumber, typeProcessSerialNumber,
                                            nullptr, number, sizeof number, nullptr);
            sNumber = EndianU32_BtoN(number[1]);
            return err;
        },
        0, false);
    SendControl(kSelf, ControlKind::kApplicationDied, {0, 4711}, -9);
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(everyEvent, &record, kLong, nullptr));
    EXPECT_EQ(AEProcessAppleEvent(&record), noErr);
    EXPECT_EQ(sStatus, -9);
    EXPECT_EQ(sNumber, 4711u);
    AERemoveEventHandler(kCoreEventClass, kAEApplicationDied, nullptr, false);
}

// Of switches that nobody has looked at, the last one tells all.
TEST_F(EventLoop, UnseenSwitchesAreOneEvent) {
    for (int i = 0; i < 100; ++i) {
        SendControl(kSelf, ControlKind::kResume);
        SendControl(kSelf, ControlKind::kSuspend);
    }
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(everyEvent, &record, kLong, nullptr));
    EXPECT_EQ(UInt32{record.message}, 0x01000000u);
    EXPECT_FALSE(GetNextEvent(everyEvent, &record));
}

TEST_F(EventLoop, ObituariesThatNobodyTakesAreLimited) {
    for (UInt32 i = 0; i < carbon::kMaximumObituaries + 10; ++i)
        SendControl(kSelf, ControlKind::kApplicationDied, {0, 4711 + i}, 0);
    int taken = 0;
    for (EventRecord record; GetNextEvent(everyEvent, &record); ++taken)
        AEProcessAppleEvent(&record);
    EXPECT_EQ(taken, carbon::kMaximumObituaries);
}

// No descriptor can be made while one of these lives.
class NoMoreDescriptors {
  public:
    NoMoreDescriptors() {
        getrlimit(RLIMIT_NOFILE, &mBefore);
        const rlimit none{3, mBefore.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &mBefore); }
    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

  private:
    rlimit mBefore{};
};

int TurnsWithin(carbon::Clock::duration inTime) {
    const carbon::Moment until = carbon::Clock::now() + inTime;
    int turns = 0;
    for (; carbon::Clock::now() < until; ++turns) carbon::TheExchange().Pump(until);
    return turns;
}

TEST_F(EventLoop, KnockWithoutADescriptorWaitsInTheKernel) {
    const carbon::ProcessEntry self = carbon::CurrentProcess();
    const carbon::UniqueFd client = ConnectTo(self.SocketPath());
    ASSERT_TRUE(client);
    const auto header =
        carbon::EncodeHeader({carbon::FrameKind::kWakeUp, 0, self.psn.lowLongOfPSN});
    ASSERT_GT(send(client.Get(), header.data(), header.size(), MSG_NOSIGNAL), 0);
    int turns = 0;
    {
        const NoMoreDescriptors none;
        turns = TurnsWithin(std::chrono::milliseconds(250));
    }
    EXPECT_LT(turns, 50);
    EventRecord record;
    EXPECT_FALSE(WaitNextEvent(everyEvent, &record, 0xFFFFFFFF, nullptr));  // Taken at last.
}

TEST_F(EventLoop, ControlReachesOnlyProcessesThatAre) {
    EXPECT_EQ(SendControl({0, 0x7FFFFFFF}, ControlKind::kWakeUp), procNotFound);
}

void SendQuit() {
    OwnedDesc event;
    MakeEvent(kSelf, kAEQuitApplication, &event, kCoreEventClass);
    AESend(&event, nullptr, kAENoReply, 0, kNoTimeOut, nullptr, nullptr);
}

// Sends itself a quit event as soon as its loop runs.
OSErr QuitOnAnswer(const AppleEvent*, AppleEvent*, SInt32) {
    ++gHandled;
    SendQuit();
    return noErr;
}

class Running : public EventLoop {
  protected:
    void SetUp() override {
        EventLoop::SetUp();
        AEInstallEventHandler(kCoreEventClass, kAEAnswer, QuitOnAnswer, 0, false);
    }
    void TearDown() override {
        AERemoveEventHandler(kCoreEventClass, kAEAnswer, nullptr, false);
        AERemoveEventHandler(kCoreEventClass, kAEQuitApplication, nullptr, false);
    }
};

TEST_F(Running, QuitEndsTheLoop) {
    QueueAnswer();
    RunApplicationEventLoop();
    EXPECT_EQ(gHandled, 1);
}

TEST_F(Running, QuitIsNotHandledWithoutALoop) {
    OwnedDesc event, reply;
    MakeEvent(kSelf, kAEQuitApplication, &event, kCoreEventClass);
    AESend(&event, &reply, kAEWaitReply, 0, kNoTimeOut, nullptr, nullptr);
    EXPECT_EQ(LongIn(reply, keyErrorNumber), errAEEventNotHandled);
}

TEST_F(Running, OwnQuitHandlerMayLetTheDefaultGoOn) {
    AEInstallEventHandler(kCoreEventClass, kAEQuitApplication, CountHandled, errAEEventNotHandled,
                          false);
    QueueAnswer();
    RunApplicationEventLoop();
    EXPECT_EQ(gHandled, 2);
}

OSErr RefuseOnce(const AppleEvent*, AppleEvent*, SInt32) {
    if (++gHandled == 2) {
        OwnedDesc event;
        MakeEvent(kSelf, 'none', &event);
        AESend(&event, nullptr, kAEQueueReply, 0, kNoTimeOut, nullptr, nullptr);
        return userCanceledErr;  // The loop goes on.
    }
    return errAEEventNotHandled;
}

TEST_F(Running, OwnQuitHandlerMayStopTheQuit) {
    AEInstallEventHandler(kCoreEventClass, kAEQuitApplication, RefuseOnce, 0, false);
    QueueAnswer();
    RunApplicationEventLoop();
    EXPECT_EQ(gHandled, 4);  // Answer, refused quit, answer, quit.
}

OSErr RunInnerLoop(const AppleEvent*, AppleEvent*, SInt32) {
    if (++gHandled == 1) {
        OwnedDesc event;
        MakeEvent(kSelf, 'none', &event);
        AESend(&event, nullptr, kAEQueueReply, 0, kNoTimeOut, nullptr, nullptr);
        RunApplicationEventLoop();
        EXPECT_EQ(gHandled, 2);
    }
    QuitApplicationEventLoop();
    return noErr;
}

TEST_F(Running, LoopsNest) {
    AEInstallEventHandler(kCoreEventClass, kAEAnswer, RunInnerLoop, 0, false);
    QueueAnswer();
    RunApplicationEventLoop();
    EXPECT_EQ(gHandled, 2);
}

}  // namespace
