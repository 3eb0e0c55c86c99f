// Sending between real processes: what comes back, and what a wait ends with when nothing does.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "support/EventPeer.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TemporaryHome gHome;

constexpr SInt32 kTenSeconds = 600;  // ticks

int gIdles, gIdlesUntilStop;
SInt32 gSleep;
UInt16 gFirstKind;

Boolean Idle(EventRecord* inEvent, SInt32* outSleep, RgnHandle*) {
    if (gIdles++ == 0) gFirstKind = inEvent->what;
    *outSleep = gSleep;
    return gIdles == gIdlesUntilStop;
}

class Send : public testing::Test {
  protected:
    void SetUp() override {
        gIdles = 0, gIdlesUntilStop = -1, gSleep = 30;
        ASSERT_NE(mServer.Psn().lowLongOfPSN, 0u);
    }

    void Make(AEEventID inID, AEEventClass inClass = kTestClass) {
        AEDisposeDesc(&mEvent);
        AEDisposeDesc(&mReply);
        ASSERT_EQ(MakeEvent(mServer.Psn(), inID, &mEvent, inClass), noErr);
    }
    OSErr Go(AESendMode inMode = kAEWaitReply, SInt32 inTimeOut = kTenSeconds,
             AEIdleUPP inIdle = nullptr, AEFilterUPP inFilter = nullptr) {
        return AESend(&mEvent, &mReply, inMode, kAENormalPriority, inTimeOut, inIdle, inFilter);
    }
    OSErr Ask(AEEventID inID, SInt32 inValue = 0, SInt32 inTimeOut = kTenSeconds,
              AEIdleUPP inIdle = nullptr) {
        Make(inID);
        PutLong(&mEvent, keyDirectObject, inValue);
        return Go(kAEWaitReply, inTimeOut, inIdle);
    }
    bool IsListed() {
        pid_t pid;
        const ProcessSerialNumber psn = mServer.Psn();
        return GetProcessPID(&psn, &pid) == noErr;
    }
    SInt32 Answer() const { return LongIn(mReply, keyDirectObject); }
    SInt32 Error() const { return LongIn(mReply, keyErrorNumber, noErr); }

    EventPeer mServer = StartServer();
    OwnedDesc mEvent, mReply;
};

TEST_F(Send, ReplyComesBack) {
    EXPECT_EQ(Ask('echo', 0x12345678), noErr);
    EXPECT_EQ(Answer(), 0x12345678);
    EXPECT_EQ(Error(), noErr);
}

TEST_F(Send, AnswerToQuitComesWhenTheProgramIsOffTheList) {
    for (int i = 0; i < 5; ++i) {
        mServer = StartServer();
        ASSERT_TRUE(IsListed());
        Make(kAEQuitApplication, kCoreEventClass);
        ASSERT_EQ(Go(), noErr);
        EXPECT_FALSE(IsListed());
        EXPECT_EQ(Error(), noErr);
        EXPECT_EQ(mServer.Wait(), 0);
    }
}

TEST_F(Send, AnswerToQuitComesAlsoFromAProgramThatGoesOn) {
    mServer = StartServer({"--stays"});
    Make(kAEQuitApplication, kCoreEventClass);
    EXPECT_EQ(Go(), noErr);
    EXPECT_EQ(Error(), noErr);
    EXPECT_EQ(Ask('echo', 5), noErr);
}

TEST_F(Send, AnswerToQuitDoesNotWaitForAProgramThatAsksOthersBeforeItGoes) {
    EventPeer other = StartServer();
    mServer = StartServer({"--asks", std::to_string(other.Psn().lowLongOfPSN)});
    Make(kAEQuitApplication, kCoreEventClass);
    EXPECT_EQ(Go(), noErr);
    EXPECT_EQ(Error(), noErr);
    EXPECT_TRUE(IsListed());
    EXPECT_EQ(mServer.Wait(), 0);
}

TEST_F(Send, EventStaysTheCallersAndCanBeSentAgain) {
    Ask('echo', 5);
    AEDisposeDesc(&mReply);
    EXPECT_EQ(Go(), noErr);
    EXPECT_EQ(Answer(), 5);
}

TEST_F(Send, HandlerSeesSenderSourceModeAndTimeOut) {
    ProcessSerialNumber self;
    GetCurrentProcess(&self);
    Make('attr');
    EXPECT_EQ(Go(kAEWaitReply | kAENeverInteract, 321), noErr);
    EXPECT_EQ(LongIn(mReply, 'from'), static_cast<SInt32>(self.lowLongOfPSN));
    EXPECT_EQ(LongIn(mReply, 'type'), static_cast<SInt32>(typeProcessSerialNumber));
    EXPECT_EQ(LongIn(mReply, 'size'), 8);
    EXPECT_EQ(LongIn(mReply, keyEventSourceAttr), kAELocalProcess);
    EXPECT_EQ(LongIn(mReply, keyInteractLevelAttr), kAENeverInteract);
    EXPECT_EQ(LongIn(mReply, keyTimeoutAttr), 321);
    EXPECT_EQ(LongIn(mReply, keyReturnIDAttr), LongAttribute(mEvent, keyReturnIDAttr));
}

TEST_F(Send, ReplyHasReturnIDOfTheRequest) {
    Ask('echo', 1);
    EXPECT_EQ(LongAttribute(mReply, keyReturnIDAttr), LongAttribute(mEvent, keyReturnIDAttr));
}

TEST_F(Send, DefaultTimeOutIsToldAsAMinute) {
    Make('attr');
    Go(kAEWaitReply, kAEDefaultTimeout);
    EXPECT_EQ(LongIn(mReply, keyTimeoutAttr), 3600);
}

TEST_F(Send, WithoutInteractionBitsTheServerMayInteract) {
    Ask('user');
    EXPECT_EQ(Answer(), noErr);
}

TEST_F(Send, HandlerErrorTravelsInTheReply) {
    EXPECT_EQ(Ask('fail'), noErr);
    EXPECT_EQ(Error(), errAEEventFailed);
    EXPECT_EQ(Ask('errn'), noErr);
    EXPECT_EQ(Error(), errAENoSuchObject);
    EXPECT_EQ(Ask('both'), noErr);
    EXPECT_EQ(Error(), errAENoSuchObject);
}

TEST_F(Send, NoHandlerIsAnErrorInTheReplyNotOfTheSend) {
    EXPECT_EQ(Ask('none'), noErr);
    EXPECT_EQ(Error(), errAEEventNotHandled);
    SInt32 items = 0;
    AECountItems(&mReply, &items);
    EXPECT_EQ(items, 1);
}

TEST_F(Send, WithoutAReplyTheSendEndsBeforeTheHandler) {
    for (int i = 0; i < 3; ++i) {
        Make('add1');
        EXPECT_EQ(Go(kAENoReply), noErr);
        EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
    }
    Ask('cnt?');
    EXPECT_EQ(Answer(), 3);
}

TEST_F(Send, HandlerErrorWithoutAReplyIsNobodysError) {
    Make('fail');
    EXPECT_EQ(Go(kAENoReply), noErr);
}

TEST_F(Send, MessageWithoutIdleProcedureIsTheSame) {
    Make('echo');
    PutLong(&mEvent, keyDirectObject, 9);
    EXPECT_EQ(AESendMessage(&mEvent, &mReply, kAEWaitReply, kTenSeconds), noErr);
    EXPECT_EQ(Answer(), 9);
}

TEST_F(Send, DontExecuteReachesNobody) {
    Make('add1');
    EXPECT_EQ(Go(kAENoReply | kAEDontExecute), noErr);
    Ask('cnt?');
    EXPECT_EQ(Answer(), 0);
}

TEST_F(Send, TimeOutEndsTheWait) {
    const auto start = Clock::now();
    EXPECT_EQ(Ask('hold', 0, 6), errAETimeout);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
    EXPECT_GE(Clock::now() - start, milliseconds(100));
}

TEST_F(Send, LateReplyIsThrownAway) {
    EXPECT_EQ(Ask('slow', 200, 1), errAETimeout);
    EXPECT_EQ(Ask('echo', 77), noErr);  // Waits behind the slow one, whose answer comes first.
    EXPECT_EQ(Answer(), 77);
    EventRecord record;
    EXPECT_FALSE(GetNextEvent(everyEvent, &record));
}

TEST_F(Send, ZeroTimeOutStillHandsTheEventOver) {
    Make('slow');  // so that no answer can come before the time-out
    PutLong(&mEvent, keyDirectObject, 300);
    EXPECT_EQ(Go(kAENoReply), noErr);
    Make('add1');
    EXPECT_EQ(Go(kAEWaitReply, 0), errAETimeout);
    Ask('cnt?');
    EXPECT_EQ(Answer(), 1);
}

TEST_F(Send, ResettingTheTimerLengthensTheWait) {
    EXPECT_EQ(Ask('rset', 15, 60), noErr);  // Answers after 1.5 s, and resets every 0.1 s.
    EXPECT_EQ(Answer(), 15);
}

TEST_F(Send, IdleProcedureIsFirstCalledWithANullEvent) {
    EXPECT_EQ(Ask('echo', 1, kTenSeconds, Idle), noErr);
    EXPECT_EQ(gIdles, 1);
    EXPECT_EQ(gFirstKind, nullEvent);
}

TEST_F(Send, IdleProcedureIsCalledAfterTheSleepItAskedFor) {
    gSleep = 6;
    EXPECT_EQ(Ask('slow', 1000, kTenSeconds, Idle), noErr);
    EXPECT_GE(gIdles, 2);
    EXPECT_LE(gIdles, 12);
}

TEST_F(Send, ReplyEndsALongSleepAtOnce) {
    gSleep = kTenSeconds;
    EXPECT_EQ(Ask('slow', 100, kNoTimeOut, Idle), noErr);
    EXPECT_EQ(gIdles, 1);
}

TEST_F(Send, IdleProcedureMayPoll) {
    gSleep = 0;
    EXPECT_EQ(Ask('slow', 50, kTenSeconds, Idle), noErr);
    EXPECT_GT(gIdles, 2);
}

TEST_F(Send, IdleProcedureEndsTheWait) {
    gSleep = 1, gIdlesUntilStop = 3;
    EXPECT_EQ(Ask('slow', 1000, kNoTimeOut, Idle), errAEWaitCanceled);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
    EXPECT_EQ(gIdles, 3);
}

TEST_F(Send, IdleProcedureMayStopBeforeTheFirstWait) {
    gIdlesUntilStop = 1;
    EXPECT_EQ(Ask('echo', 1, kNoTimeOut, Idle), errAEWaitCanceled);
}

pid_t gVictim;
Clock::time_point gKilledAt;

Boolean KillVictim(EventRecord*, SInt32* outSleep, RgnHandle*) {
    *outSleep = kTenSeconds;
    if (gIdles++ == 0) {
        gKilledAt = Clock::now();
        kill(gVictim, SIGKILL);
    }
    return false;
}

// The one promise with a time in it: whoever waits for a peer that is killed is answered within
// 100 ms.
TEST_F(Send, KilledPeerEndsTheWaitWithin100Milliseconds) {
    gVictim = mServer.Pid();
    EXPECT_EQ(Ask('slow', 10'000, kNoTimeOut, KillVictim), connectionInvalid);
    EXPECT_LT(Clock::now() - gKilledAt, milliseconds(100));
}

TEST_F(Send, PeerThatDiesInItsHandlerEndsTheWait) {
    EXPECT_EQ(Ask('die ', 0, kNoTimeOut), connectionInvalid);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
}

TEST_F(Send, PeerThatExitsInItsHandlerEndsTheWait) {
    EXPECT_EQ(Ask('exit', 0, kNoTimeOut), connectionInvalid);
}

TEST_F(Send, DeadPeerIsNotFoundAfterwards) {
    Ask('echo', 1);
    EXPECT_EQ(Ask('die ', 0, kNoTimeOut), connectionInvalid);
    mServer.Wait();
    EXPECT_EQ(Ask('echo', 1, kNoTimeOut), procNotFound);
}

TEST_F(Send, PeerThatDiedUnderACachedConnectionIsNotFound) {
    Ask('echo', 1);
    kill(mServer.Pid(), SIGKILL);
    mServer.Wait();
    EXPECT_EQ(Ask('echo', 1, kNoTimeOut), procNotFound);
}

TEST_F(Send, QueuedReplyComesThroughTheEventLoop) {
    Make('echo');
    PutLong(&mEvent, keyDirectObject, 31);
    EXPECT_EQ(Go(kAEQueueReply), noErr);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
    static SInt32 sAnswer;
    sAnswer = 0;
    AEInstallEventHandler(
        kCoreEventClass, kAEAnswer,
        [](const AppleEvent* event, AppleEvent*, SInt32) -> OSErr {
            sAnswer = LongIn(*event, keyDirectObject);
            return noErr;
        },
        0, false);
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(highLevelEventMask, &record, kTenSeconds, nullptr));
    EXPECT_EQ(AEProcessAppleEvent(&record), noErr);
    EXPECT_EQ(sAnswer, 31);
    AERemoveEventHandler(kCoreEventClass, kAEAnswer, nullptr, false);
}

TEST_F(Send, SuspendedEventIsAnsweredWhenItIsResumed) {
    Make('hold');
    EXPECT_EQ(Go(kAEQueueReply), noErr);
    EXPECT_EQ(Ask('free'), noErr);
    EXPECT_EQ(Answer(), noErr);
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(highLevelEventMask, &record, kTenSeconds, nullptr));
    EXPECT_EQ(AEProcessAppleEvent(&record), errAEEventNotHandled);  // No handler for answers here.
}

TEST_F(Send, SuspendedEventKeepsItsClientWaiting) {
    EventPeer other("event_client", {std::to_string(mServer.Psn().lowLongOfPSN), "1"});
    EXPECT_EQ(Ask('hold', 0, 20), errAETimeout);
    EXPECT_EQ(other.Wait(), 0);
    EXPECT_EQ(Ask('free'), noErr);
    EXPECT_EQ(Answer(), noErr);
}

TEST_F(Send, HandlerMaySendItself) {
    EventPeer second = StartServer();
    Make('rely');
    PutLong(&mEvent, 'peer', static_cast<SInt32>(second.Psn().lowLongOfPSN));
    PutLong(&mEvent, keyDirectObject, 4711);
    EXPECT_EQ(Go(), noErr);
    EXPECT_EQ(Answer(), 4711);
}

// A server that asks its client back, while that waits.
class AskedBack : public Send {
  protected:
    void SetUp() override {
        Send::SetUp();
        AEInstallEventHandler(
            kTestClass, 'echo',
            [](const AppleEvent* event, AppleEvent* reply, SInt32) -> OSErr {
                return PutLong(reply, keyDirectObject, 2 * LongIn(*event, keyDirectObject));
            },
            0, false);
        ProcessSerialNumber self;
        GetCurrentProcess(&self);
        Make('rely');
        PutLong(&mEvent, 'peer', static_cast<SInt32>(self.lowLongOfPSN));
        PutLong(&mEvent, keyDirectObject, 21);
    }
    void TearDown() override { AERemoveEventHandler(kTestClass, 'echo', nullptr, false); }
};

TEST_F(AskedBack, IsDispatchedWhenAllEventsAreProcessed) {
    EXPECT_EQ(Go(kAEWaitReply | kAEProcessNonReplyEvents), noErr);
    EXPECT_EQ(Answer(), 42);
}

SInt32 gFilteredReturnID;
ProcessSerialNumber gFilteredSender;

Boolean Accept(EventRecord* inEvent, SInt32 inReturnID, SInt32, const AEAddressDesc* inSender) {
    UInt32 bytes[2] = {};
    AEGetDescData(inSender, bytes, sizeof bytes);
    gFilteredReturnID = inReturnID;
    gFilteredSender = {EndianU32_BtoN(bytes[0]), EndianU32_BtoN(bytes[1])};
    return inEvent->what == kHighLevelEvent;
}

TEST_F(AskedBack, IsDispatchedWhenTheFilterAccepts) {
    EXPECT_EQ(Go(kAEWaitReply, kTenSeconds, nullptr, Accept), noErr);
    EXPECT_EQ(Answer(), 42);
    EXPECT_EQ(UInt32{gFilteredSender.lowLongOfPSN}, UInt32{mServer.Psn().lowLongOfPSN});
}

TEST_F(AskedBack, WaitsForTheEventLoopOtherwise) {
    EXPECT_EQ(Go(kAEWaitReply, 30), errAETimeout);
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(highLevelEventMask, &record, kTenSeconds, nullptr));
    EXPECT_EQ(AEProcessAppleEvent(&record), noErr);
}

TEST_F(Send, TwoClientsAreServedAtOnce) {
    const std::string number = std::to_string(mServer.Psn().lowLongOfPSN);
    EventPeer first("event_client", {number, "500"}), second("event_client", {number, "500"});
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
}

TEST_F(Send, ManyClientsAreServedAtOnce) {
    const std::string number = std::to_string(mServer.Psn().lowLongOfPSN);
    std::vector<EventPeer> clients;
    for (int i = 0; i < 128; ++i)
        clients.emplace_back("event_client", std::vector<std::string>{number, "5"});
    for (EventPeer& client : clients) EXPECT_EQ(client.Wait(100), 0);
}

TEST_F(Send, LargeMessagesPassBothWays) {
    Make('size');
    const std::string text(20'000'000, 'x');
    PutText(&mEvent, keyDirectObject, text);
    EXPECT_EQ(Go(), noErr);
    EXPECT_EQ(Answer(), 20'000'000);
    EXPECT_EQ(Ask('bulk', 20'000'000), noErr);
    EXPECT_EQ(TextIn(mReply, keyDirectObject), std::string(20'000'000, 'b'));
}

TEST_F(Send, MessageOverTheLimitIsRefusedByItsSender) {
    Make('size');
    const std::string text(33 << 20, 'x');
    ASSERT_EQ(PutText(&mEvent, keyDirectObject, text), noErr);
    EXPECT_EQ(Go(), memFullErr);
}

TEST_F(Send, ReplyOverTheLimitBecomesAnError) {
    EXPECT_EQ(Ask('bulk', 33 << 20), noErr);
    EXPECT_EQ(Error(), memFullErr);
}

TEST_F(Send, RepliesOutstandingAreLimited) {
    kill(mServer.Pid(), SIGSTOP);
    OSErr err = noErr;
    int sent = 0;
    for (; sent < 200 && err == noErr; ++sent) {
        Make('echo');
        err = Go(kAEQueueReply);
    }
    EXPECT_EQ(err, memFullErr);
    EXPECT_EQ(sent, 129);
    kill(mServer.Pid(), SIGCONT);
}

TEST_F(Send, QuitEndsTheEventLoopOfTheTarget) {
    AEDisposeDesc(&mEvent);
    MakeEvent(mServer.Psn(), kAEQuitApplication, &mEvent, kCoreEventClass);
    EXPECT_EQ(Go(), noErr);
    EXPECT_EQ(Error(), noErr);
    EXPECT_EQ(mServer.Wait(), 0);
}

TEST_F(Send, ChildOfAForkIsAProcessOfItsOwn) {
    Ask('echo', 1);
    const pid_t child = fork();
    if (child == 0) {
        ProcessSerialNumber self;
        GetCurrentProcess(&self);
        Make('attr');
        const bool isOwn =
            Go() == noErr && LongIn(mReply, 'from') == static_cast<SInt32>(self.lowLongOfPSN);
        _exit(isOwn ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Ask('echo', 2), noErr);  // The parent's connection is as it was.
    EXPECT_EQ(Answer(), 2);
}

// A peer that never reads: the buffers of the kernel fill up.
class Deaf : public testing::Test {
  protected:
    void SetUp() override { gIdles = 0, gIdlesUntilStop = -1, gSleep = 3; }
    OSErr Fill(SInt32 inTimeOut, AEIdleUPP inIdle) {
        OwnedDesc event, reply;
        MakeEvent(mServer.Psn(), 'size', &event);
        PutText(&event, keyDirectObject, std::string(4 << 20, 'x'));
        return AESend(&event, &reply, kAENoReply, 0, inTimeOut, inIdle, nullptr);
    }

    EventPeer mServer = StartServer({"--deaf"});
};

TEST_F(Deaf, HandingOverTimesOut) {
    EXPECT_EQ(Fill(30, nullptr), errAETimeout);
}

TEST_F(Deaf, HandingOverRunsTheIdleProcedure) {
    gIdlesUntilStop = 4;
    EXPECT_EQ(Fill(kNoTimeOut, Idle), errAEWaitCanceled);
    EXPECT_EQ(gIdles, 4);
}

TEST_F(Deaf, DeathEndsHandingOver) {
    gVictim = mServer.Pid();
    EXPECT_EQ(Fill(kNoTimeOut, KillVictim), connectionInvalid);
}

TEST_F(Deaf, SmallEventIsHandedOverAllTheSame) {
    OwnedDesc event;
    MakeEvent(mServer.Psn(), 'add1', &event);
    EXPECT_EQ(AESend(&event, nullptr, kAENoReply, 0, kTenSeconds, nullptr, nullptr), noErr);
}

}  // namespace
