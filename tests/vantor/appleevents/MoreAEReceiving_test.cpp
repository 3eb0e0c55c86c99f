// Results and errors in replies, senders, and the small questions that handlers ask.
#include <gtest/gtest.h>

#include "support/DebuggerTexts.h"
#include "support/Descriptors.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/TestEvents.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace {

OSErr sGestaltError = noErr;
int sGestaltCalls = 0;
SInt32 sGestaltResponse = 0;  // instead of the true one; 0: the true one
OSType sSenderCreator = 0, sSenderType = 0;
DescType sAddressType = 0;  // instead of a serial number; 0: the true address
Size sAddressSize = 0;

}  // namespace

OSErr Gestalt(OSType inSelector, SInt32* outResponse) {
    if (inSelector != OSType(gestaltAppleEventsAttr))
        return REAL_CALL(Gestalt)(inSelector, outResponse);
    ++sGestaltCalls;
    if (sGestaltError != noErr) return sGestaltError;
    if (sGestaltResponse != 0) return *outResponse = sGestaltResponse, noErr;
    return REAL_CALL(Gestalt)(inSelector, outResponse);
}

OSErr GetProcessInformation(const ProcessSerialNumber* inPSN, ProcessInfoRec* ioInfo) {
    const OSErr error = REAL_CALL(GetProcessInformation)(inPSN, ioInfo);
    if (sSenderCreator != 0) ioInfo->processSignature = sSenderCreator;
    if (sSenderType != 0) ioInfo->processType = sSenderType;
    return error;
}

OSErr AEGetAttributePtr(const AppleEvent* inEvent, AEKeyword inKey, DescType inDesired,
                        DescType* outType, void* outData, Size inMost, Size* outSize) {
    const OSErr error =
        REAL_CALL(AEGetAttributePtr)(inEvent, inKey, inDesired, outType, outData, inMost, outSize);
    if (inKey == AEKeyword(keyAddressAttr) && sAddressType != 0) {
        *outType = sAddressType;
        *outSize = sAddressSize;
    }
    return error;
}

namespace {

StAEDescriptor Own() {
    StAEDescriptor event;
    EXPECT_EQ(MoreAECreateAppleEventSelfTarget('test', 'tell', event), noErr);
    return event;
}

std::vector<UInt8> ParameterOf(const AppleEvent* inEvent, AEKeyword inKey, DescType inType) {
    StAEDescriptor found;
    EXPECT_EQ(AEGetParamDesc(inEvent, inKey, typeWildCard, found), noErr);
    EXPECT_EQ(DescType(found.mDesc.descriptorType), inType);
    return BytesOf(found);
}

std::size_t ParameterCount(const AppleEvent* inEvent) {
    SInt32 count = -1;
    EXPECT_EQ(AECountItems(inEvent, &count), noErr);
    return static_cast<std::size_t>(count);
}

// Runs first: the answer is asked for until there is one, and then never again.
TEST(HasAppleEvents, KeepsSayingYesAsLongAsThereIsNoAnswer) {
    sGestaltError = gestaltUndefSelectorErr;
    EXPECT_EQ(MoreAEHasAppleEvents(), 0xFF);
    EXPECT_EQ(MoreAEHasAppleEvents(), 0xFF);
    EXPECT_EQ(sGestaltCalls, 2);
    sGestaltError = noErr;
    sGestaltResponse = ~1;
    EXPECT_EXIT(_exit(MoreAEHasAppleEvents()), testing::ExitedWithCode(0), "");
    sGestaltResponse = 0;
    EXPECT_EQ(MoreAEHasAppleEvents(), 1);
    EXPECT_EQ(MoreAEHasAppleEvents(), 1);
    EXPECT_EQ(sGestaltCalls, 3);
}

TEST(GotRequiredParams, TellsOfParametersThatNobodyRead) {
    StAEDescriptor event = Own();
    EXPECT_EQ(MoreAEGotRequiredParams(event), noErr);
    ASSERT_EQ(AEPutParamDesc(event, keyDirectObject, StAEDescriptor(SInt32{1})), noErr);
    EXPECT_EQ(MoreAEGotRequiredParams(event), errAEParamMissed);
    EXPECT_EQ(MoreAEGotRequiredParams(StAEDescriptor(SInt32{1})), errAENotAEDesc);
}

TEST(ReplyError, IsAShortNumberZeroToo) {
    StAEDescriptor reply = Own();
    EXPECT_EQ(MoreAEMoreAESetReplyErrorNumber(-50, reply), noErr);
    EXPECT_EQ(ParameterOf(reply, keyErrorNumber, typeSInt16), (std::vector<UInt8>{0xFF, 0xCE}));
    EXPECT_EQ(MoreAEMoreAESetReplyErrorNumber(0, reply), noErr);
    EXPECT_EQ(ParameterOf(reply, keyErrorNumber, typeSInt16), (std::vector<UInt8>{0, 0}));
}

TEST(ReplyError, IsLeftOutWhenNobodyWantsAReply) {
    const DebuggerTexts shown;
    StAEDescriptor none;
    EXPECT_EQ(MoreAEMoreAESetReplyErrorNumber(-50, none), noErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{});
}

TEST(ReplyError, IsRefusedByWhatIsNoReply) {
    const DebuggerTexts shown;
    StAEDescriptor number(SInt32{1});
    EXPECT_EQ(MoreAEMoreAESetReplyErrorNumber(-50, number), paramErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{"MoreAssert failure: pAEReply->descriptorType == "
                                                 "typeAppleEvent"});
}

TEST(ReplyResult, IsTheDirectObjectWhenAllWentWell) {
    StAEDescriptor reply = Own();
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(SInt32{7}), reply, noErr), noErr);
    EXPECT_EQ(ParameterOf(reply, keyDirectObject, typeSInt32), (std::vector<UInt8>{0, 0, 0, 7}));
}

TEST(ReplyResult, DescribesTheErrorOtherwise) {
    StAEDescriptor reply = Own();
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(PString("no")), reply, -43), -43);
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(SInt32{-43}), reply, -43), -43);
    EXPECT_EQ(ParameterOf(reply, keyErrorString, typeChar), (std::vector<UInt8>{'n', 'o'}));
    EXPECT_EQ(ParameterOf(reply, keyErrorNumber, typeSInt32),
              (std::vector<UInt8>{0xFF, 0xFF, 0xFF, 0xD5}));
}

TEST(ReplyResult, OfAnotherTypeIsNoDescriptionOfAnError) {
    StAEDescriptor reply = Own();
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(Boolean{true}), reply, -43), errAETypeError);
    EXPECT_EQ(ParameterCount(reply), 0u);
}

TEST(ReplyResult, IsDroppedWhenThereIsNoneOrNobodyWantsIt) {
    StAEDescriptor reply = Own(), none;
    EXPECT_EQ(MoreAEAddResultToReply(none, reply, -43), -43);
    EXPECT_EQ(MoreAEAddResultToReply(none, reply, noErr), noErr);
    EXPECT_EQ(ParameterCount(reply), 0u);
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(SInt32{7}), none, -43), -43);
}

TEST(ReplyResult, ThatCannotBePutIsAnErrorOfItsOwn) {
    StAEDescriptor number(SInt32{1});
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(SInt32{7}), number, noErr), errAENotAEDesc);
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(SInt32{7}), number, -43), errAENotAEDesc);
    EXPECT_EQ(MoreAEAddResultToReply(StAEDescriptor(PString("no")), number, -43), errAENotAEDesc);
}

TEST(ClassAndID, AreReadFromTheEvent) {
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
    EXPECT_EQ(MoreAEExtractClassAndID(Own(), &eventClass, &eventID), noErr);
    EXPECT_EQ(eventClass, AEEventClass('test'));
    EXPECT_EQ(eventID, AEEventID('tell'));
    EXPECT_EQ(MoreAEExtractClassAndID(StAEDescriptor(SInt32{1}), &eventClass, &eventID),
              errAENotAEDesc);
}

// Answers one own event by asking who sent it.
struct SenderQuestion {
    static OSErr Handle(const AppleEvent* inEvent, AppleEvent*, SInt32) {
        sError = MoreAEIsSenderFinder(inEvent, &sIsFinder);
        return noErr;
    }
    static void Ask() {
        AEInstallEventHandler('test', 'tell', Handle, 0, false);
        EXPECT_EQ(MoreAESendToSelfNoReturnValue('test', 'tell'), noErr);
        AERemoveEventHandler('test', 'tell', Handle, false);
    }
    static inline OSErr sError = 1;
    static inline Boolean sIsFinder = 2;
};

TEST(SenderIsFinder, GoesByCreatorAndType) {
    SenderQuestion::Ask();
    EXPECT_EQ(SenderQuestion::sError, noErr);
    EXPECT_EQ(SenderQuestion::sIsFinder, false);
    sSenderCreator = 'MACS';
    SenderQuestion::Ask();
    EXPECT_EQ(SenderQuestion::sIsFinder, false) << "of another type";
    sSenderType = 'FNDR';
    SenderQuestion::Ask();
    EXPECT_EQ(SenderQuestion::sIsFinder, true);
    sSenderCreator = 'mine';
    SenderQuestion::Ask();
    EXPECT_EQ(SenderQuestion::sIsFinder, false) << "of another creator";
    sSenderCreator = sSenderType = 0;
}

TEST(SenderIsFinder, AProcessThatIsGoneIsAnError) {
    const UInt32 nobody[] = {0, EndianU32_NtoB(0x7FFF0000)};
    StAEDescriptor event;
    Boolean isFinder = 2;
    ASSERT_EQ(AECreateAppleEvent('test', 'tell',
                                 StAEDescriptor(typeProcessSerialNumber, nobody, sizeof nobody),
                                 kAutoGenerateReturnID, kAnyTransactionID, event),
              noErr);
    EXPECT_EQ(MoreAEIsSenderFinder(event, &isFinder), procNotFound);
    EXPECT_EQ(isFinder, 2);
}

TEST(SenderIsFinder, AnAddressOfAnotherTypeOrSizeIsRefused) {
    const DebuggerTexts shown;
    StAEDescriptor event = Own();
    Boolean isFinder = 2;
    sAddressType = typeSInt32;
    sAddressSize = sizeof(ProcessSerialNumber);
    EXPECT_EQ(MoreAEIsSenderFinder(event, &isFinder), paramErr);
    sAddressType = typeProcessSerialNumber;
    sAddressSize = 4;
    EXPECT_EQ(MoreAEIsSenderFinder(event, &isFinder), paramErr);
    sAddressType = 0;
    EXPECT_EQ(isFinder, 2);
    EXPECT_EQ(shown.Texts(),
              (DebuggerTexts::List{"MoreAssert failure: actualType == typeProcessSerialNumber",
                                   "MoreAssert failure: actualSize == sizeof (senderPSN)"}));
}

TEST(SenderIsFinder, ShowsWhichPreconditionFailed) {
    const DebuggerTexts shown;
    Boolean isFinder = false;
    EXPECT_EQ(MoreAEIsSenderFinder(nullptr, &isFinder), paramErr);
    EXPECT_EQ(MoreAEIsSenderFinder(Own(), nullptr), paramErr);
    EXPECT_EQ(MoreAEIsSenderFinder(StAEDescriptor(SInt32{1}), &isFinder), paramErr);
    const AEDesc empty = {typeAppleEvent, nullptr};
    EXPECT_EQ(MoreAEIsSenderFinder(&empty, &isFinder), paramErr);
    EXPECT_EQ(
        shown.Texts(),
        (DebuggerTexts::List{"MoreAssert failure: pAppleEvent && pIsFinder",
                             "MoreAssert failure: pAppleEvent && pIsFinder",
                             "MoreAssert failure: pAppleEvent->descriptorType == typeAppleEvent",
                             "MoreAssert failure: pAppleEvent->dataHandle"}));
}

TEST(SenderIsFinder, AnEventWithoutASerialNumberIsRefused) {
    const DebuggerTexts shown;
    StAEDescriptor event, address(typeApplSignature, "????", 4);
    Boolean isFinder = false;
    ASSERT_EQ(AECreateAppleEvent('test', 'tell', address, kAutoGenerateReturnID, kAnyTransactionID,
                                 event),
              noErr);
    EXPECT_NE(MoreAEIsSenderFinder(event, &isFinder), noErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{"MoreAssert failure: err == noErr"});
}

TEST(AppendListToList, CopiesEveryItemInOrder) {
    StAEDescriptor source, dest;
    ASSERT_EQ(AECreateList(nullptr, 0, false, source), noErr);
    ASSERT_EQ(AECreateList(nullptr, 0, false, dest), noErr);
    for (const SInt32 value : {1, 2, 3})
        ASSERT_EQ(AEPutDesc(source, 0, StAEDescriptor(value)), noErr);
    ASSERT_EQ(AEPutDesc(dest, 0, StAEDescriptor(PString("first"))), noErr);
    EXPECT_EQ(MoreAEAppendListToList(source, dest), noErr);
    SInt32 count = 0;
    EXPECT_EQ(AECountItems(dest, &count), noErr);
    EXPECT_EQ(count, 4);
    StAEDescriptor last;
    EXPECT_EQ(AEGetNthDesc(dest, 4, typeWildCard, nullptr, last), noErr);
    EXPECT_EQ(BytesOf(last), (std::vector<UInt8>{0, 0, 0, 3}));
}

TEST(AppendListToList, ReturnsTheFirstFailure) {
    const DebuggerTexts shown;
    StAEDescriptor list, number(SInt32{1});
    ASSERT_EQ(AECreateList(nullptr, 0, false, list), noErr);
    EXPECT_NE(MoreAEAppendListToList(number, list), noErr);
    ASSERT_EQ(AEPutDesc(list, 0, number), noErr);
    EXPECT_NE(MoreAEAppendListToList(list, number), noErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{});
    EXPECT_NE(MoreAEAppendListToList(nullptr, nullptr), noErr);
    EXPECT_EQ(shown.Texts(), (DebuggerTexts::List{"MoreAssertQ failure: pSourceList != nil",
                                                  "MoreAssertQ failure: pDestList != nil"}));
}

TEST(MissingValue, IsATypeAndNothingElse) {
    StAEDescriptor missing;
    EXPECT_EQ(MoreAECreateMissingValue(missing), noErr);
    EXPECT_EQ(BytesOf(missing), (std::vector<UInt8>{'m', 's', 'n', 'g'}));
    EXPECT_TRUE(MoreAEIsMissingValue(missing));
    EXPECT_FALSE(MoreAEIsMissingValue(StAEDescriptor(OSType('reco'))));
    EXPECT_FALSE(MoreAEIsMissingValue(StAEDescriptor(typeEnumerated, "msng", 4)));
    EXPECT_FALSE(MoreAEIsMissingValue(StAEDescriptor(typeType, "msng!", 5)));
    EXPECT_FALSE(MoreAEIsMissingValue(StAEDescriptor()));
}

}  // namespace
