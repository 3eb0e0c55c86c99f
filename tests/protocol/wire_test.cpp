// Every row of the conversation: exactly which event a call sends, and how its answer is read.
#include <gmock/gmock.h>

#include <algorithm>

#include "support/Expected.h"
#include "support/RealCall.h"
#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/controller/CVantor.h"

namespace {

bool sDropReplies = false;  // sends succeed and no reply comes back

// How the last event was sent.
AESendMode sMode = 0;
AESendPriority sPriority = 77;
SInt32 sTimeOut = 0;

}  // namespace

OSErr AESend(const AppleEvent* inEvent, AppleEvent* outReply, AESendMode inMode,
             AESendPriority inPriority, SInt32 inTimeOut, AEIdleUPP inIdle, AEFilterUPP inFilter) {
    sMode = inMode;
    sPriority = inPriority;
    sTimeOut = inTimeOut;
    if (!sDropReplies) {
        return REAL_CALL(AESend)(inEvent, outReply, inMode, inPriority, inTimeOut, inIdle,
                                 inFilter);
    }
    *outReply = {typeNull, nullptr};
    return noErr;
}

namespace {

using testing::ElementsAre;

class Wire : public RecorderTest {
  protected:
    void SetUp() override {
        RecorderTest::SetUp();
        StartRecorder();
    }
};

TEST_F(Wire, ServerModeIsReadFromTheApplication) {
    Script("core/getd/srvM value bool 01\n");
    Boolean on = 7;
    EXPECT_EQ(VantorGetServerMode(&on), noErr);
    EXPECT_EQ(on, 1);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/getd", Direct(PropertyOfApplication("srvM")))));
}

TEST_F(Wire, ServerModeIsWrittenToTheApplication) {
    EXPECT_EQ(VantorSetServerMode(true), noErr);
    EXPECT_EQ(VantorSetServerMode(false), noErr);
    const std::string object = Direct(PropertyOfApplication("srvM"));
    EXPECT_THAT(Events(), ElementsAre(Sent("core/setd", object + " data=bool 01"),
                                      Sent("core/setd", object + " data=bool 00")));
}

TEST_F(Wire, KeepsTheCallersByteInServerMode) {
    EXPECT_EQ(VantorSetServerMode(0xFE), noErr);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/setd", Direct(PropertyOfApplication("srvM")) +
                                                            " data=bool FE")));
}

TEST_F(Wire, SimulationModeIsReadFromTheApplication) {
    Script("core/getd/simM value bool 01\n");
    Boolean on = 7;
    EXPECT_EQ(VantorGetSimulationMode(&on), noErr);
    EXPECT_EQ(on, 1);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/getd", Direct(PropertyOfApplication("simM")))));
}

TEST_F(Wire, SimulationModeIsWrittenToTheApplication) {
    EXPECT_EQ(VantorSetSimulationMode(true), noErr);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/setd", Direct(PropertyOfApplication("simM")) +
                                                            " data=bool 01")));
}

TEST_F(Wire, StatusCodeIsReadFromTheFirstDisc) {
    Script("core/getd/sCod value long FFFFFF80\n");
    SInt32 code = 0;
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, -128);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/getd", Direct(PropertyOfDiscOne("sCod")))));
}

TEST_F(Wire, StatusTextIsReadFromTheFirstDisc) {
    Script("core/getd/sTxt value pstr 0448616C66\n");
    Str255 text;
    EXPECT_EQ(VantorGetStatusText(text), noErr);
    EXPECT_EQ(TextOf(text), "Half");
    EXPECT_THAT(Events(), ElementsAre(Sent("core/getd", Direct(PropertyOfDiscOne("sTxt")))));
}

TEST_F(Wire, StatusTextAnsweredAsPlainTextIsAPascalStringToo) {
    Script("core/getd/sTxt value TEXT 48616C66\n");
    Str255 text;
    EXPECT_EQ(VantorGetStatusText(text), noErr);
    EXPECT_EQ(TextOf(text), "Half");
}

TEST_F(Wire, DiscSizeIsReadFromTheFirstDisc) {
    Script("core/getd/DRsi value long 000ABCDE\n");
    SInt32 size = 0;
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 0x000ABCDE);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/getd", Direct(PropertyOfDiscOne("DRsi")))));
}

TEST_F(Wire, MediaInfoIsReadFromTheApplication) {
    Script("core/getd/mInf value long 0000017F\n");
    SInt32 info = 0;
    EXPECT_EQ(VantorGetMediaInfo(&info), noErr);
    EXPECT_EQ(info, 0x17F);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/getd", Direct(PropertyOfApplication("mInf")))));
}

TEST_F(Wire, ANewDiscHasItsClassAndNoPlace) {
    EXPECT_EQ(VantorMakeNewDisc('Hybr'), noErr);
    EXPECT_THAT(Events(), ElementsAre(Sent("core/crel", "kocl=type 'Hybr'")));
}

TEST_F(Wire, FilesTravelAsSpecsInTheirOrder) {
    FSSpec files[2] = {{-1, 16, "\001a"}, {0x0102, 0x03040506, "\002bc"}};
    EXPECT_EQ(VantorAddFiles(files, 2), noErr);
    const std::string first = "fss  FFFF000000100161" + std::string(124, '0');
    const std::string second = "fss  010203040506026263" + std::string(122, '0');
    EXPECT_THAT(Events(), ElementsAre(Sent("Fv8k/addD", Direct(kDiscOne) + " kfil=list [" + first +
                                                            ", " + second + "]")));
}

TEST_F(Wire, NoFilesTravelAsAnEmptyList) {
    EXPECT_EQ(VantorAddFiles(nullptr, 0), noErr);
    EXPECT_EQ(VantorAddFiles(nullptr, -5), noErr);
    const std::string event = Sent("Fv8k/addD", Direct(kDiscOne) + " kfil=list []");
    EXPECT_THAT(Events(), ElementsAre(event, event));
}

TEST_F(Wire, EjectIsABareEvent) {
    EXPECT_EQ(VantorEjectDisc(), noErr);
    EXPECT_THAT(Events(), ElementsAre(Sent("Fv8k/Ejct")));
}

TEST_F(Wire, AnErrorNumberInTheAnswerEndsTheQueryWithIt) {
    Script("core/getd/sCod value long 00000005 errn long FFFFF940\n");
    SInt32 code = 77;
    EXPECT_EQ(VantorGetStatusCode(&code), errAENoSuchObject);
    EXPECT_EQ(code, 77) << "nothing is read";
}

TEST_F(Wire, AHandlersErrorIsTheCallsResult) {
    Script("core/getd/sCod error -1728\nFv8k/Ejct error -35\ncore/setd/srvM error -10006\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), errAENoSuchObject);
    EXPECT_EQ(VantorEjectDisc(), nsvErr);
    EXPECT_EQ(VantorSetServerMode(true), errAEWriteDenied);
}

TEST_F(Wire, AnAnswerWithoutAResultIsDescriptorNotFound) {
    Script("core/getd/sCod empty\n");
    EXPECT_EQ(VantorGetStatusCode(nullptr), errAEDescNotFound);
}

TEST_F(Wire, AnEventThatNobodyHandlesIsReported) {
    Script("Fv8k/Ejct error -1708\n");
    EXPECT_EQ(VantorEjectDisc(), errAEEventNotHandled);
}

TEST_F(Wire, AnAnswerOfAnotherTypeIsCoerced) {
    Script("core/getd/sCod value TEXT 3432\n");
    SInt32 code = 0;
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, 42);
}

TEST_F(Wire, AShortPropertyIsReadWithItsSign) {
    Script("core/getd/srvM value shor FFFE\n");
    EXPECT_EQ(CVantor::GetMirelPropertySInt16('srvM', nullptr), -2);
}

TEST_F(Wire, ANullTextBufferIsRefusedBeforeAnythingIsSent) {
    EXPECT_EQ(CodeThrownBy([] { CVantor::GetMirelPropertyPString(nullptr, 'sTxt', nullptr); }),
              paramErr);
    EXPECT_TRUE(Events().empty());
}

TEST_F(Wire, ASlowAnswerIsWaitedFor) {
    Script("core/getd/sCod delay 300 value long 00000063\n");
    SInt32 code = 0;
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, 99);
}

TEST_F(Wire, TextLongerThanAPascalStringIsRefused) {
    Script("core/getd/sTxt value TEXT " + std::string(512, '4') + "\n");
    Str255 text = "\003old";
    EXPECT_EQ(VantorGetStatusText(text), errAECoercionFail);
    EXPECT_EQ(TextOf(text), "old");
}

class WireSending : public Wire {
  protected:
    // Each choice is set by the call and by nothing else.
    template <typename Call>
    static void ExpectPatienceOf(Call inCall) {
        sMode = 0;
        sPriority = 77;
        sTimeOut = 0;
        EXPECT_EQ(inCall(), noErr);
        EXPECT_EQ(sMode, kAEWaitReply);
        EXPECT_EQ(sPriority, kAENormalPriority);
        EXPECT_EQ(sTimeOut, kNoTimeOut);
    }
};

TEST_F(WireSending, WaitsWithoutALimitAtNormalPriority) {
    ExpectPatienceOf([] { return VantorEjectDisc(); });
    ExpectPatienceOf([] { return VantorGetStatusCode(nullptr); });
    ExpectPatienceOf([] { return VantorSetServerMode(true); });
}

TEST_F(Wire, ANullReplyIsNoFailureAndWritesNothing) {
    sDropReplies = true;
    StAEDescriptor event;
    ASSERT_EQ(MoreAECreateAppleEventSelfTarget('test', 'ask ', event), noErr);
    DescType type = 'old ';
    Size size = 77;
    SInt32 value = 5;
    SInt16 number = 9;
    EXPECT_EQ(MoreAESendEventReturnData(CVantor::GetAEIdleProc(), event, typeSInt32, &type, &value,
                                        sizeof value, &size),
              noErr);
    EXPECT_EQ(MoreAESendEventReturnSInt16(CVantor::GetAEIdleProc(), event, &number), noErr);
    EXPECT_EQ(type, DescType{'old '});
    EXPECT_EQ(size, 77);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(number, 9);
    EXPECT_EQ(VantorGetStatusCode(nullptr), noErr);
    Str255 text = "\003old";
    EXPECT_EQ(VantorGetStatusText(text), noErr);
    EXPECT_EQ(TextOf(text), "old");
    sDropReplies = false;
}

// Answers a request for 'pstr' with the text as it is, as a host's own coercion may.
OSErr LeaveAsText(const AEDesc* inDesc, DescType, SInt32, AEDesc* outDesc) {
    return AEDuplicateDesc(inDesc, outDesc);
}

class WireWithPlainText : public Wire {
  protected:
    void SetUp() override {
        Wire::SetUp();
        ASSERT_EQ(AEInstallCoercionHandler(typeChar, typePString, LeaveAsText, 0, true, false),
                  noErr);
    }
    void TearDown() override {
        EXPECT_EQ(AERemoveCoercionHandler(typeChar, typePString, LeaveAsText, false), noErr);
        Wire::TearDown();
    }
};

TEST_F(WireWithPlainText, OfAnyLengthBecomesAPascalStringInPlace) {
    for (const std::size_t length :
         std::initializer_list<std::size_t>{0, 1, 4, 254, 255, 256, 300}) {
        std::string hex;
        for (std::size_t i = 0; i < length; ++i) hex += "41";
        Script("core/getd/sTxt value TEXT " + hex + "\n");
        Str255 text;
        std::memset(text, 'x', sizeof text);
        EXPECT_EQ(VantorGetStatusText(text), noErr);
        EXPECT_EQ(TextOf(text), std::string(std::min<std::size_t>(length, 255), 'A')) << length;
    }
}

}  // namespace
