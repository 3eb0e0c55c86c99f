// Events that a process sends to itself: dispatched inside AESend.
#include <gtest/gtest.h>

#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

TemporaryHome gHome;

AppleEvent gSeen, gSeenReply;  // descriptors that belong to the manager
SInt32 gSource, gInteraction, gTimeOut;
int gCalls = 0;
int gIdles = 0;

OSErr See(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    ++gCalls;
    gSeen = *inEvent;
    gSeenReply = *ioReply;
    gSource = LongAttribute(*inEvent, keyEventSourceAttr);
    gInteraction = LongAttribute(*inEvent, keyInteractLevelAttr);
    gTimeOut = LongAttribute(*inEvent, keyTimeoutAttr);
    return noErr;
}

OSErr Answer(const AppleEvent*, AppleEvent* ioReply, SInt32 inResult) {
    const OSErr err = PutLong(ioReply, keyDirectObject, 42);
    return inResult ? static_cast<OSErr>(inResult) : err;
}

OSErr PutErrorAndReturn(const AppleEvent*, AppleEvent* ioReply, SInt32 inResult) {
    PutLong(ioReply, keyErrorNumber, errAENoSuchObject);
    return static_cast<OSErr>(inResult);
}

OSErr Suspend(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    gSeen = *inEvent;
    gSeenReply = *ioReply;
    return AESuspendTheCurrentEvent(inEvent);
}

OSErr DisposeReply(const AppleEvent*, AppleEvent* ioReply, SInt32) {
    return AEDisposeDesc(ioReply);
}

OSErr CompareCurrent(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    AppleEvent current;
    AEGetTheCurrentEvent(&current);
    return PutLong(ioReply, keyDirectObject, current.dataHandle == inEvent->dataHandle);
}

Boolean CountIdles(EventRecord*, SInt32* outSleep, RgnHandle*) {
    ++gIdles;
    *outSleep = 1;
    return false;
}

class SelfSend : public testing::Test {
  protected:
    void SetUp() override { gCalls = gIdles = 0; }
    void TearDown() override { AERemoveEventHandler(kTestClass, 'self', nullptr, false); }

    void Handle(AEEventHandlerUPP inHandler, SInt32 inRefcon = 0) {
        ASSERT_EQ(AEInstallEventHandler(kTestClass, 'self', inHandler, inRefcon, false), noErr);
    }
    OSErr Send(AESendMode inMode, SInt32 inTimeOut = kAEDefaultTimeout,
               const ProcessSerialNumber& inTarget = {0, kCurrentProcess}) {
        AEDisposeDesc(&mEvent);
        AEDisposeDesc(&mReply);
        MakeEvent(inTarget, 'self', &mEvent);
        return AESend(&mEvent, &mReply, inMode, kAENormalPriority, inTimeOut, CountIdles, nullptr);
    }

    OwnedDesc mEvent, mReply;
};

TEST_F(SelfSend, HandlerRunsInsideTheCallWithoutIdling) {
    Handle(Answer);
    EXPECT_EQ(Send(kAEWaitReply), noErr);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), 42);
    EXPECT_EQ(gIdles, 0);
}

TEST_F(SelfSend, OwnNumberIsDispatchedDirectlyToo) {
    ProcessSerialNumber self;
    ASSERT_EQ(GetCurrentProcess(&self), noErr);
    Handle(See);
    EXPECT_EQ(Send(kAEWaitReply, kAEDefaultTimeout, self), noErr);
    EXPECT_EQ(gCalls, 1);
    EXPECT_EQ(gSource, kAESameProcess);
}

TEST_F(SelfSend, HandlerSeesADirectCallWithModeAndTimeOut) {
    Handle(See);
    Send(kAEWaitReply | kAEAlwaysInteract, 77);
    EXPECT_EQ(gSource, kAEDirectCall);
    EXPECT_EQ(gInteraction, kAEAlwaysInteract);
    EXPECT_EQ(gTimeOut, 77);
}

TEST_F(SelfSend, ReplyIsNullWhenNoneIsWanted) {
    Handle(See);
    EXPECT_EQ(Send(kAENoReply), noErr);
    EXPECT_EQ(TypeOf(gSeenReply), DescType{typeNull});
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
}

TEST_F(SelfSend, HandlerCannotAddToAReplyThatIsNotWanted) {
    Handle(Answer);
    EXPECT_EQ(Send(kAENoReply), noErr);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
}

TEST_F(SelfSend, HandlerErrorIsNotTheSendersWithoutAReply) {
    Handle(Answer, errAEEventFailed);
    EXPECT_EQ(Send(kAENoReply), noErr);
}

TEST_F(SelfSend, ErrorJoinsTheReplyBesideItsData) {
    Handle(Answer, errAEEventFailed);
    EXPECT_EQ(Send(kAEWaitReply), noErr);
    EXPECT_EQ(LongIn(mReply, keyErrorNumber), errAEEventFailed);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), 42);
}

TEST_F(SelfSend, ErrorNumberOfTheHandlerIsKept) {
    for (const SInt32 result : {SInt32{noErr}, SInt32{errAEEventFailed}}) {
        Handle(PutErrorAndReturn, result);
        EXPECT_EQ(Send(kAEWaitReply), noErr);
        EXPECT_EQ(LongIn(mReply, keyErrorNumber), errAENoSuchObject);
    }
}

TEST_F(SelfSend, ReplyCarriesClassIDReturnIDAndTransactionOfTheAnswer) {
    Handle(Answer);
    Send(kAEWaitReply);
    EXPECT_EQ(LongAttribute(mReply, keyReturnIDAttr), LongAttribute(mEvent, keyReturnIDAttr));
    EXPECT_EQ(LongAttribute(mReply, keyTransactionIDAttr), kAnyTransactionID);
    OSType code;
    AEGetAttributePtr(&mReply, keyEventIDAttr, typeType, nullptr, &code, sizeof code, nullptr);
    EXPECT_EQ(EndianU32_BtoN(code), OSType{kAEAnswer});
}

TEST_F(SelfSend, ReplyDisposedByItsHandlerIsMadeAgain) {
    Handle(DisposeReply);
    EXPECT_EQ(Send(kAEWaitReply), noErr);
    EXPECT_EQ(TypeOf(mReply), DescType{typeAppleEvent});
}

TEST_F(SelfSend, SuspendingTimesOutAtOnceWhateverTheTimeOut) {
    Handle(Suspend);
    EXPECT_EQ(Send(kAEWaitReply, kNoTimeOut), errAETimeout);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
    EXPECT_EQ(AEResumeTheCurrentEvent(&gSeen, &gSeenReply, kAENoDispatch, 0), noErr);
    EXPECT_EQ(AEResumeTheCurrentEvent(&gSeen, &gSeenReply, kAENoDispatch, 0), paramErr);
}

TEST_F(SelfSend, SuspendedEventCanBeDispatchedAnew) {
    Handle(Suspend);
    EXPECT_EQ(Send(kAENoReply, kNoTimeOut), errAETimeout);
    Handle(See);
    EXPECT_EQ(
        AEResumeTheCurrentEvent(&gSeen, &gSeenReply, AEEventHandlerUPP(kAEUseStandardDispatch),
                                kAEDoNotIgnoreHandler),
        noErr);
    EXPECT_EQ(gCalls, 1);
}

TEST_F(SelfSend, SuspendedEventCanBeGivenToAHandler) {
    Handle(Suspend);
    Send(kAEWaitReply);
    AEResumeTheCurrentEvent(&gSeen, &gSeenReply, See, 0);
    EXPECT_EQ(gCalls, 1);
}

TEST_F(SelfSend, EventCanBeSuspendedAgainWhenDispatchedAnew) {
    Handle(Suspend);
    Send(kAEWaitReply);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(AEResumeTheCurrentEvent(&gSeen, &gSeenReply,
                                          AEEventHandlerUPP(kAEUseStandardDispatch), 0),
                  noErr);
    EXPECT_EQ(AEResumeTheCurrentEvent(&gSeen, &gSeenReply, kAENoDispatch, 0), noErr);
}

TEST_F(SelfSend, DontDisposeOnResumeLeavesTheEventToTheProgram) {
    Handle(Suspend);
    Send(kAEWaitReply);
    AppleEvent event = gSeen, reply = gSeenReply;
    Handle(Answer);
    AEResumeTheCurrentEvent(&event, &reply, AEEventHandlerUPP(kAEUseStandardDispatch),
                            kAEDontDisposeOnResume);
    EXPECT_EQ(LongIn(reply, keyDirectObject), 42);
    AEDisposeDesc(&event);
    AEDisposeDesc(&reply);
}

TEST_F(SelfSend, SuspendingAnotherEventThanTheCurrentOneDoesNothing) {
    OwnedDesc other;
    MakeEvent({0, kCurrentProcess}, 'self', &other);
    EXPECT_EQ(AESuspendTheCurrentEvent(&other), noErr);
    EXPECT_EQ(AEResumeTheCurrentEvent(&other, nullptr, kAENoDispatch, 0), paramErr);
}

TEST_F(SelfSend, CurrentEventIsTheOneBeingHandled) {
    AppleEvent current;
    EXPECT_EQ(AEGetTheCurrentEvent(&current), noErr);
    EXPECT_EQ(TypeOf(current), DescType{typeNull});
    Handle(CompareCurrent);
    Send(kAEWaitReply);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), 1);
}

TEST_F(SelfSend, QueuedReplyComesThroughTheEventLoop) {
    Handle(Answer);
    EXPECT_EQ(Send(kAEQueueReply), noErr);
    EXPECT_EQ(TypeOf(mReply), DescType{typeNull});
    EventRecord record;
    ASSERT_TRUE(WaitNextEvent(highLevelEventMask, &record, 0, nullptr));
    EXPECT_EQ(OSType{record.message}, OSType{kCoreEventClass});
    AEInstallEventHandler(kCoreEventClass, kAEAnswer, See, 0, false);
    EXPECT_EQ(AEProcessAppleEvent(&record), noErr);
    EXPECT_EQ(gCalls, 1);
    AERemoveEventHandler(kCoreEventClass, kAEAnswer, See, false);
}

TEST_F(SelfSend, DontExecuteCallsNobody) {
    Handle(See);
    EXPECT_EQ(Send(kAENoReply | kAEDontExecute), noErr);
    EXPECT_EQ(gCalls, 0);
}

TEST_F(SelfSend, DontRecordExecutes) {
    Handle(See);
    EXPECT_EQ(Send(kAEWaitReply | kAEDontRecord), noErr);
    EXPECT_EQ(gCalls, 1);
}

OSErr TryToInteract(const AppleEvent*, AppleEvent* ioReply, SInt32) {
    return PutLong(ioReply, keyDirectObject,
                   AEInteractWithUser(kAEDefaultTimeout, nullptr, nullptr));
}

TEST_F(SelfSend, ClientMayForbidInteraction) {
    Handle(TryToInteract);
    Send(kAEWaitReply | kAENeverInteract);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), errAENoUserInteraction);
    AESetInteractionAllowed(kAEInteractWithSelf);
    Send(kAEWaitReply);
    EXPECT_EQ(LongIn(mReply, keyDirectObject), noErr);
    AESetInteractionAllowed(kAEInteractWithLocal);
}

TEST_F(SelfSend, ResetTimerWantsTheReplyOfAnEventBeingHandled) {
    OwnedDesc event;
    MakeEvent({0, kCurrentProcess}, 'self', &event);
    EXPECT_EQ(AEResetTimer(&event), errAEReplyNotValid);
    EXPECT_EQ(AEResetTimer(&mReply), errAEReplyNotValid);
}

// What is wrong with a send before anything is sent.

TEST_F(SelfSend, ModeWithoutAReplyFieldIsRefused) {
    EXPECT_EQ(Send(0), errAEUnknownSendMode);
    EXPECT_EQ(Send(kAECanInteract), errAEUnknownSendMode);
}

TEST_F(SelfSend, WaitingWithoutAPlaceForTheReplyIsRefused) {
    MakeEvent({0, kCurrentProcess}, 'self', &mEvent);
    EXPECT_EQ(AESend(&mEvent, nullptr, kAEWaitReply, 0, kNoTimeOut, nullptr, nullptr), paramErr);
    Handle(See);
    EXPECT_EQ(AESend(&mEvent, nullptr, kAENoReply, 0, kNoTimeOut, nullptr, nullptr), noErr);
}

TEST_F(SelfSend, OnlyEventsAreSent) {
    OwnedDesc text;
    AECreateDesc(typeChar, "x", 1, &text);
    EXPECT_EQ(AESend(&text, &mReply, kAEWaitReply, 0, kNoTimeOut, nullptr, nullptr),
              errAENotAEDesc);
}

TEST_F(SelfSend, SwappedNumberNamesNoProcess) {
    EXPECT_EQ(Send(kAEWaitReply, kNoTimeOut, {2, 0}), procNotFound);
    EXPECT_EQ(Send(kAEWaitReply, kNoTimeOut, {0, 0}), procNotFound);
    EXPECT_EQ(Send(kAEWaitReply, kNoTimeOut, {0, 0x7FFFFFFF}), procNotFound);
}

class Addresses : public SelfSend {
  protected:
    OSErr SendTo(DescType inType, const void* inData, Size inSize) {
        OwnedDesc address;
        AECreateDesc(inType, inData, inSize, &address);
        AEDisposeDesc(&mEvent);
        AECreateAppleEvent(kTestClass, 'self', &address, kAutoGenerateReturnID, 0, &mEvent);
        return AESend(&mEvent, &mReply, kAENoReply, 0, kNoTimeOut, nullptr, nullptr);
    }
};

TEST_F(Addresses, UnknownTypeIsRefused) {
    EXPECT_EQ(SendTo('what', "????", 4), errAEUnknownAddressType);
    OwnedDesc event;
    AECreateAppleEvent(kTestClass, 'self', nullptr, kAutoGenerateReturnID, 0, &event);
    EXPECT_EQ(AESend(&event, &mReply, kAENoReply, 0, kNoTimeOut, nullptr, nullptr),
              errAEUnknownAddressType);
}

TEST_F(Addresses, UnixProcessIDIsFound) {
    const UInt32 own = EndianU32_NtoB(static_cast<UInt32>(getpid()));
    const UInt32 nobody = EndianU32_NtoB(0x7FFFFFF0);
    Handle(See);
    ProcessSerialNumber self;
    GetCurrentProcess(&self);
    EXPECT_EQ(SendTo(typeKernelProcessID, &own, sizeof own), noErr);
    EXPECT_EQ(gCalls, 1);
    EXPECT_EQ(SendTo(typeKernelProcessID, &nobody, sizeof nobody), procNotFound);
}

TEST_F(Addresses, CreatorOfNobodyIsNotFound) {
    const UInt32 nobody = EndianU32_NtoB('none');
    EXPECT_EQ(SendTo(typeApplSignature, &nobody, sizeof nobody), procNotFound);
}

TEST_F(Addresses, BundleIdentifierOfNobodyIsNotFound) {
    EXPECT_EQ(SendTo(typeApplicationBundleID, "nobody.at.all", 13), procNotFound);
}

OSErr CoerceToSelf(const AEDesc*, DescType, SInt32, AEDesc* outDesc) {
    const UInt32 self[2] = {0, EndianU32_NtoB(kCurrentProcess)};
    return AECreateDesc(typeProcessSerialNumber, self, sizeof self, outDesc);
}

TEST_F(Addresses, UnknownTypeIsOfferedForCoercion) {
    Handle(See);
    AEInstallCoercionHandler('what', typeProcessSerialNumber, CoerceToSelf, 0, true, false);
    EXPECT_EQ(SendTo('what', "????", 4), noErr);
    EXPECT_EQ(gCalls, 1);
    AERemoveCoercionHandler('what', typeProcessSerialNumber, CoerceToSelf, false);
}

}  // namespace
