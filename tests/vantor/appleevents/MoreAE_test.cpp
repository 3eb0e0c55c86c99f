// Targets, sending to the own process, and replies, with result codes.
#include "vantor/appleevents/MoreAE.h"

#include <gtest/gtest.h>

#include "support/DebuggerTexts.h"
#include "support/Descriptors.h"
#include "support/OwnEvents.h"
#include "support/PascalString.h"

namespace {

using Bytes = std::vector<UInt8>;
using Lines = std::vector<std::string>;

AEIdleUPP Idle() {
    static const AEIdleUPP idle = NewAEIdleUPP(MoreAESimpleIdleFunction);
    return idle;
}

std::string AddressOf(const AEDesc& inEvent) {
    StAEDescriptor address;
    EXPECT_EQ(AEGetAttributeDesc(&inEvent, keyAddressAttr, typeWildCard, address), noErr);
    return TextOfDesc(address);
}

TEST(MoreAETarget, IsTheProcessesNumber) {
    ProcessSerialNumber psn = {1, 0x0203};
    StAEDescriptor target;
    EXPECT_EQ(MoreAECreateProcessTarget(&psn, target), noErr);
    EXPECT_EQ(TextOfDesc(target), "psn  0000000100000203");
}

TEST(MoreAETarget, KeepsTheHalvesOfANullNumberSwapped) {
    StAEDescriptor target, event;
    EXPECT_EQ(MoreAECreateProcessTarget(nullptr, target), noErr);
    EXPECT_EQ(BytesOf(target), (Bytes{0, 0, 0, 2, 0, 0, 0, 0}));
    ASSERT_EQ(
        AECreateAppleEvent('test', 'noth', target, kAutoGenerateReturnID, kAnyTransactionID, event),
        noErr);
    EXPECT_EQ(MoreAESendEventNoReturnValue(Idle(), event), procNotFound);
}

TEST(MoreAETarget, EventsAreAddressedAsTold) {
    const ProcessSerialNumber psn = {0, 77};
    StAEDescriptor toProcess, toSelf, toCreator;
    EXPECT_EQ(MoreAECreateAppleEventProcessTarget(&psn, 'clas', 'id  ', toProcess), noErr);
    EXPECT_EQ(AddressOf(toProcess), "psn  000000000000004D");
    EXPECT_EQ(MoreAECreateAppleEventSelfTarget('clas', 'id  ', toSelf), noErr);
    EXPECT_EQ(AddressOf(toSelf), "psn  0000000000000002");
    EXPECT_EQ(MoreAECreateAppleEventCreatorTarget('clas', 'id  ', 'Fv8k', toCreator), noErr);
    EXPECT_EQ(AddressOf(toCreator), "sign 4676386B");
}

TEST(MoreAETarget, ASignatureThatDoesNotRunIsNoProcess) {
    AppleEvent event = {typeNull, nullptr};
    EXPECT_EQ(MoreAECreateAppleEventSignatureTarget('none', 'APPL', 'clas', 'id  ', &event),
              procNotFound);
    EXPECT_EQ(+event.dataHandle, nullptr);
}

TEST(MoreAETarget, AnEventForANullNumberIsForTheProgramItself) {
    StAEDescriptor event;
    EXPECT_EQ(MoreAECreateAppleEventProcessTarget(nullptr, 'clas', 'id  ', event), noErr);
    EXPECT_EQ(AddressOf(event), "psn  0000000000000002");
}

TEST(MoreAETarget, ANullEventIsShown) {
    const DebuggerTexts shown;
    EXPECT_EQ(MoreAECreateAppleEventCreatorTarget('clas', 'id  ', 'Fv8k', nullptr), paramErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{"MoreAssertQ failure: pAppleEvent != nil"});
}

class MoreAESend : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(MoreAECreateAppleEventSelfTarget('test', 'ask ', mEvent), noErr);
    }
    OwnEvents mOwn;
    StAEDescriptor mEvent;
};

TEST_F(MoreAESend, KeepsTheHandlersErrorFromCallersThatDoNotWait) {
    mOwn.mResult = -1234;
    EXPECT_EQ(MoreAESendEventNoReturnValue(nullptr, mEvent), noErr);
    EXPECT_EQ(mOwn.mReceived, Lines{"test/ask  tran=0 reply=0"});
    EXPECT_EQ(MoreAESendEventNoReturnValue(Idle(), mEvent), -1234);
}

TEST_F(MoreAESend, RefusesToReadAnAnswerItWouldNotWaitFor) {
    SInt32 value = 5;
    EXPECT_EQ(MoreAESendEventReturnData(nullptr, mEvent, typeSInt32, nullptr, &value, 4, nullptr),
              paramErr);
    EXPECT_TRUE(mOwn.mReceived.empty());
    EXPECT_EQ(value, 5);
}

TEST_F(MoreAESend, ReadsTheAnswersDirectObject) {
    mOwn.mAnswer.Assign(PString("12"));
    DescType type = 0;
    SInt32 value = 0;
    Size size = 0;
    EXPECT_EQ(MoreAESendEventReturnData(Idle(), mEvent, typeSInt32, &type, &value, 4, &size),
              noErr);
    EXPECT_EQ(type, typeSInt32);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(EndianS32_BtoN(value), 12);
}

TEST_F(MoreAESend, AnAnswerWithoutADirectObjectIsDescriptorNotFound) {
    SInt16 value = 9;
    EXPECT_EQ(MoreAESendEventReturnSInt16(Idle(), mEvent, &value), errAEDescNotFound);
    EXPECT_EQ(value, 9);
}

TEST_F(MoreAESend, ReadsShortsAndStrings) {
    mOwn.mAnswer.Assign(SInt32{-3});
    SInt16 value = 0;
    EXPECT_EQ(MoreAESendEventReturnSInt16(Idle(), mEvent, &value), noErr);
    EXPECT_EQ(value, -3);
    mOwn.mAnswer.Assign(PString("words"));
    Str255 text;
    EXPECT_EQ(MoreAESendEventReturnPString(Idle(), mEvent, text), noErr);
    EXPECT_EQ(TextOf(text), "words");
}

TEST(MoreAEHandlerError, IsTheErrorNumberOrNone) {
    StAEDescriptor none, reply;
    EXPECT_EQ(MoreAEGetHandlerError(none), noErr);
    ASSERT_EQ(AECreateList(nullptr, 0, true, reply), noErr);
    EXPECT_EQ(MoreAEGetHandlerError(reply), noErr);
    for (const SInt32 number : {-1728, 5, -32768}) {
        ASSERT_EQ(AEPutParamDesc(reply, keyErrorNumber, StAEDescriptor(number)), noErr);
        EXPECT_EQ(MoreAEGetHandlerError(reply), number);
    }
}

TEST(MoreAEHandlerError, KeepsCallingAnUnreadableErrorNumberNone) {
    StAEDescriptor reply;
    ASSERT_EQ(AECreateList(nullptr, 0, true, reply), noErr);
    ASSERT_EQ(AEPutParamDesc(reply, keyErrorNumber, StAEDescriptor(PString("bad"))), noErr);
    EXPECT_EQ(MoreAEGetHandlerError(reply), noErr);
}

std::string PropertyEvent(const std::string& inEvent, const std::string& inProperty) {
    return inEvent +
           " tran=0 reply=1 ----=obj  {want=type 'prop'; from=null; form=enum 'prop'; seld=type '" +
           inProperty + "'}";
}

TEST(MoreAESelf, SendsThePropertyAndReadsTheAnswer) {
    OwnEvents own;
    own.mAnswer.Assign(SInt16{41});
    SInt16 value = 0;
    EXPECT_EQ(MoreAETellSelfToGetSInt16Property('pcnt', &value), noErr);
    EXPECT_EQ(value, 41);
    EXPECT_EQ(MoreAESendToSelfReturnSInt16('test', 'ask ', &value), noErr);
    EXPECT_EQ(MoreAESendToSelfNoReturnValue('test', 'tell'), noErr);
    EXPECT_EQ(own.mReceived,
              (Lines{PropertyEvent("core/getd", "pcnt"), PropertyEvent("test/ask ", "sele"),
                     PropertyEvent("test/tell", "sele")}));
}

TEST(MoreAESelf, SetsPropertiesWithTheWholeString) {
    OwnEvents own;
    EXPECT_EQ(MoreAETellSelfToSetSInt16Property('pcnt', 258), noErr);
    EXPECT_EQ(MoreAETellSelfToSetStr255Property('pnam', PString("ab")), noErr);
    EXPECT_EQ(own.mReceived, (Lines{PropertyEvent("core/setd", "pcnt") + " data=shor 0102",
                                    PropertyEvent("core/setd", "pnam") + " data=pstr 026162"}));
}

TEST(MoreAESelf, ReadsAStringAndReportsTheHandler) {
    OwnEvents own;
    own.mAnswer.Assign(PString("me"));
    Str255 text;
    EXPECT_EQ(MoreAETellSelfToGetStr255Property('pnam', text), noErr);
    EXPECT_EQ(TextOf(text), "me");
    own.mResult = errAENoSuchObject;
    EXPECT_EQ(MoreAETellSelfToGetStr255Property('none', text), errAENoSuchObject);
    EXPECT_EQ(MoreAESendToSelfNoReturnValue('test', 'tell'), errAENoSuchObject);
}

TEST(MoreAESimpleIdleFunction, SleepsHalfASecondAndGoesOn) {
    SInt32 sleep = 0;
    RgnHandle region = reinterpret_cast<RgnHandle>(&sleep);
    EXPECT_FALSE(MoreAESimpleIdleFunction(nullptr, &sleep, &region));
    EXPECT_EQ(sleep, 30);
    EXPECT_EQ(region, nullptr);
}

}  // namespace
