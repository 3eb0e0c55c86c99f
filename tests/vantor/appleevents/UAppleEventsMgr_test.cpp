// Events by class: the self target, the modes of sending, and asking the user.
#include "vantor/appleevents/UAppleEventsMgr.h"

#include <gtest/gtest.h>

#include "support/OwnEvents.h"
#include "support/RealCall.h"
#include "support/Thrown.h"
#include "vantor/appleevents/MoreAE.h"

namespace {

// What the manager is made to say, and how events were sent.
SInt32 sVersion = 0;
OSErr sVersionError = noErr;
OSErr sSendError = noErr;
std::vector<AESendMode> sModes;
std::vector<SInt32> sTimeOuts;

}  // namespace

OSErr AEManagerInfo(AEKeyword inKey, SInt32* outValue) {
    const OSErr error = REAL_CALL(AEManagerInfo)(inKey, outValue);
    if (sVersion == 0) return error;
    *outValue = sVersion;
    return sVersionError;
}

OSErr AESend(const AppleEvent* inEvent, AppleEvent* outReply, AESendMode inMode,
             AESendPriority inPriority, SInt32 inTimeOut, AEIdleUPP inIdle, AEFilterUPP inFilter) {
    sModes.push_back(inMode);
    sTimeOuts.push_back(inTimeOut);
    const OSErr error =
        REAL_CALL(AESend)(inEvent, outReply, inMode, inPriority, inTimeOut, inIdle, inFilter);
    return sSendError != noErr ? sSendError : error;
}

namespace {

void InitializeAnew() {
    AEDisposeDesc(&UAppleEventsMgr::sSelfTargetAddr);
    AEDisposeDesc(&UAppleEventsMgr::sAnyType);
    UAppleEventsMgr::Initialize();
}

class AppleEventsMgr : public testing::Test {
  protected:
    void SetUp() override {
        sVersion = 0;
        sVersionError = sSendError = noErr;
        InitializeAnew();
        UAppleEventsMgr::MakeAppleEvent('test', 'tell', mEvent);
        sModes.clear();
        sTimeOuts.clear();
    }
    void TearDown() override {
        AEDisposeDesc(&UAppleEventsMgr::sSelfTargetAddr);
        AEDisposeDesc(&UAppleEventsMgr::sAnyType);
        AEDisposeDesc(&mEvent);
    }
    AppleEvent mEvent;
    OwnEvents mOwn;
};

TEST_F(AppleEventsMgr, StartsWithTheOwnAddressAndAnyType) {
    EXPECT_EQ(TextOfDesc(UAppleEventsMgr::sSelfTargetAddr), "psn  0000000000000002");
    EXPECT_EQ(TextOfDesc(UAppleEventsMgr::sAnyType), "list [type '****']");
}

TEST_F(AppleEventsMgr, AddressesEventsToItself) {
    StAEDescriptor address;
    EXPECT_EQ(AEGetAttributeDesc(&mEvent, keyAddressAttr, typeWildCard, address), noErr);
    EXPECT_EQ(TextOfDesc(address), "psn  0000000000000002");
}

TEST_F(AppleEventsMgr, SendsWithoutWaitingAndDisposesTheEvent) {
    mOwn.mResult = -5;
    UAppleEventsMgr::SendAppleEvent(mEvent, true);
    EXPECT_EQ(sModes, std::vector<AESendMode>{1});
    EXPECT_EQ(sTimeOuts, std::vector<SInt32>{-1});
    EXPECT_EQ(mOwn.mReceived.size(), 1u);
    EXPECT_EQ(+mEvent.dataHandle, nullptr);
}

TEST_F(AppleEventsMgr, OnlyRecordsWhereTheManagerCan) {
    EXPECT_TRUE(UAppleEventsMgr::sDontExecuteWorks);
    UAppleEventsMgr::SendAppleEvent(mEvent, false);
    EXPECT_EQ(sModes, std::vector<AESendMode>{0x2001});
    EXPECT_EQ(+mEvent.dataHandle, nullptr);
    EXPECT_TRUE(mOwn.mReceived.empty()) << "not executed";
}

TEST_F(AppleEventsMgr, SendsNothingWhereTheManagerCannotOnlyRecord) {
    sVersion = 0x01017FFF;
    InitializeAnew();
    EXPECT_FALSE(UAppleEventsMgr::sDontExecuteWorks);
    UAppleEventsMgr::SendAppleEvent(mEvent, false);
    EXPECT_TRUE(sModes.empty());
    EXPECT_EQ(+mEvent.dataHandle, nullptr) << "disposed all the same";
}

TEST_F(AppleEventsMgr, TakesVersionsAboveTheLimitSignedAndWithoutAnError) {
    const std::tuple<SInt32, OSErr, bool> cases[] = {{0x01018000, noErr, true},
                                                     {0x01017FFF, noErr, false},
                                                     {-1, noErr, false},
                                                     {0x01108000, paramErr, false}};
    for (const auto& [version, error, works] : cases) {
        sVersion = version;
        sVersionError = error;
        InitializeAnew();
        EXPECT_EQ(UAppleEventsMgr::sDontExecuteWorks, works) << version;
    }
}

TEST_F(AppleEventsMgr, DisposesTheEventAlsoWhenSendingFails) {
    sSendError = memFullErr;
    EXPECT_EQ(CodeThrownBy([&] { UAppleEventsMgr::SendAppleEvent(mEvent, true); }), memFullErr);
    EXPECT_EQ(+mEvent.dataHandle, nullptr);
}

TEST_F(AppleEventsMgr, WaitsForAReplyAndLeavesTheEvent) {
    mOwn.mAnswer.Assign(SInt32{5});
    StAEDescriptor reply;
    UAppleEventsMgr::SendAppleEventWithReply(mEvent, reply, true);
    EXPECT_EQ(sModes, std::vector<AESendMode>{3});
    EXPECT_EQ(TextOfDesc(StAEDescriptor(reply.mDesc, keyDirectObject, typeWildCard).mDesc),
              "long 00000005");
    EXPECT_NE(+mEvent.dataHandle, nullptr);
}

TEST_F(AppleEventsMgr, KeepsExecutingWhatIsOnlyNotToBeRecorded) {
    StAEDescriptor reply;
    UAppleEventsMgr::SendAppleEventWithReply(mEvent, reply, false);
    EXPECT_EQ(sModes, std::vector<AESendMode>{0x1003});
    EXPECT_EQ(mOwn.mReceived.size(), 1u);
}

TEST_F(AppleEventsMgr, ThrowsWhatSendingWithReplyReturns) {
    sSendError = errAETimeout;
    StAEDescriptor reply;
    EXPECT_EQ(CodeThrownBy([&] { UAppleEventsMgr::SendAppleEventWithReply(mEvent, reply, true); }),
              errAETimeout);
}

// A handler that asks the user, once each way.
OSErr AskTheUser(const AppleEvent*, AppleEvent*, SInt32) {
    const OSErr error = UAppleEventsMgr::InteractWithUser(false, 60, nullptr);
    const auto thrown = CodeThrownBy([] { UAppleEventsMgr::InteractWithUser(true, 60, nullptr); });
    EXPECT_EQ(thrown.value_or(noErr), error);
    return error;
}

TEST_F(AppleEventsMgr, AsksTheUserOnlyWhereTheClientAllows) {
    ASSERT_EQ(AEInstallEventHandler('test', 'tell', AskTheUser, 0, false), noErr);
    const auto ask = [&](AESendMode inInteraction) {
        StAEDescriptor reply;
        EXPECT_EQ(AESend(&mEvent, reply, kAEWaitReply | inInteraction, kAENormalPriority,
                         kAEDefaultTimeout, nullptr, nullptr),
                  noErr);
        return MoreAEGetHandlerError(reply);
    };
    EXPECT_EQ(ask(kAECanInteract), noErr);
    EXPECT_EQ(ask(kAENeverInteract), errAENoUserInteraction);
    AERemoveEventHandler('test', 'tell', AskTheUser, false);
}

TEST(AppleEventsMgrIdle, SleepsSixTicksAndGoesOn) {
    SInt32 sleep = 0;
    RgnHandle region = reinterpret_cast<RgnHandle>(&sleep);
    EXPECT_FALSE(UAppleEventsMgr::AEIdleProc(nullptr, &sleep, &region));
    EXPECT_EQ(sleep, 6);
    EXPECT_EQ(region, nullptr);
}

}  // namespace
