// Disc operations: which parameters each choice becomes, and how answers are taken.
#include <gmock/gmock.h>

#include "support/Expected.h"
#include "support/RecorderTest.h"
#include "vantor/controller/CVantor.h"
#include "vantor/process/UProcess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kAlways = "Quit=bool 00 Asyn=bool 01";

class Disc : public RecorderTest {
  protected:
    void SetUp() override {
        RecorderTest::SetUp();
        StartRecorder();
    }

    static std::string Write(const std::string& inParameters) {
        return Sent("Fv8k/wrIt", Direct(kDiscOne) + " " + inParameters);
    }

    // What one call of writing sends.
    std::vector<std::string> Writing(SInt16 inMode, SInt16 inEject, SInt16 inVerify,
                                     Boolean inQuit = false, Boolean inFront = false) {
        mBundle->Forget();
        EXPECT_EQ(VantorWriteDiscWithOptions(inMode, inEject, inVerify, inQuit, inFront), noErr);
        return Events();
    }

    static bool RecorderIsInFront() {
        ProcessSerialNumber psn;
        return VantorGetMirelProcessSerialNumber(&psn) &&
               UProcess::IsSame(UProcess::GetFront(), psn);
    }
};

TEST_F(Disc, WritingInOneCallEjectsVerifiesAndComesToTheFront) {
    UProcess::MakeMeFront();
    EXPECT_EQ(VantorWriteDisc(), noErr);
    EXPECT_THAT(Events(),
                ElementsAre(Write("ejWd=bool 01 Veri=bool 01 " + kAlways + " wrAs=enum 'WAse'")));
    EXPECT_TRUE(RecorderIsInFront());
}

TEST_F(Disc, ChoicesLeftAloneAreNotSent) {
    UProcess::MakeMeFront();
    EXPECT_THAT(Writing(0, -1, -1, true, false), ElementsAre(Write(kAlways)));
    EXPECT_FALSE(RecorderIsInFront());
}

TEST_F(Disc, KeepsSendingQuitFalseWhateverWasAsked) {
    EXPECT_THAT(Writing(0, -1, -1, 255), ElementsAre(Write(kAlways)));
}

TEST_F(Disc, EjectAndVerifyAreTrueForAllButZeroAndMinusOne) {
    for (const SInt16 choice : std::initializer_list<SInt16>{1, 2, -2, 255, -32768}) {
        EXPECT_THAT(Writing(0, choice, choice),
                    ElementsAre(Write("ejWd=bool 01 Veri=bool 01 " + kAlways)));
    }
    EXPECT_THAT(Writing(0, 0, 0), ElementsAre(Write("ejWd=bool 00 Veri=bool 00 " + kAlways)));
    EXPECT_THAT(Writing(0, 0, -1), ElementsAre(Write("ejWd=bool 00 " + kAlways)));
    EXPECT_THAT(Writing(0, -1, 1), ElementsAre(Write("Veri=bool 01 " + kAlways)));
}

TEST_F(Disc, OnlyWriteModeOneIsSent) {
    for (const SInt16 mode : std::initializer_list<SInt16>{0, 2, -1, 257}) {
        EXPECT_THAT(Writing(mode, -1, -1), ElementsAre(Write(kAlways)));
    }
    EXPECT_THAT(Writing(1, -1, -1), ElementsAre(Write(kAlways + " wrAs=enum 'WAse'")));
}

TEST_F(Disc, AnyByteBringsTheRecorderToTheFront) {
    for (const Boolean front : std::initializer_list<Boolean>{2, 255}) {
        UProcess::MakeMeFront();
        Writing(0, -1, -1, 2, front);
        EXPECT_TRUE(RecorderIsInFront());
    }
}

TEST_F(Disc, IsBusyFrom1To101Only) {
    const std::pair<const char*, bool> cases[] = {{"00000000", false}, {"00000001", true},
                                                  {"00000065", true},  {"00000066", false},
                                                  {"FFFFFFFF", false}, {"FFFFFF80", false}};
    for (const auto& [code, busy] : cases) {
        Script("core/getd/sCod value long " + std::string(code) + "\n");
        EXPECT_EQ(VantorIsMirelBusy(), busy) << code;
        SInt32 status = 7;
        EXPECT_EQ(VantorGetStatusCode(&status), noErr);
        EXPECT_EQ(static_cast<UInt32>(status), std::stoul(code, nullptr, 16)) << "it arrived";
    }
}

TEST_F(Disc, IsNotBusyWhenTheQueryFails) {
    Script("core/getd/sCod error -1728\n");
    EXPECT_FALSE(VantorIsMirelBusy());
    EXPECT_EQ(VantorGetStatusCode(nullptr), errAENoSuchObject) << "it did fail";
}

TEST_F(Disc, IsNotBusyWhenNothingRunsAndLaunchesNothing) {
    KillRecorder();
    EXPECT_FALSE(VantorIsMirelBusy());
    EXPECT_FALSE(IsListed());
}

TEST_F(Disc, ABlankDiscThatWasSuppliedIsNotAskedForAgain) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    mBundle->Forget();
    Script("core/getd/mInf value long 0000017F\n");
    SInt32 info = 0;
    EXPECT_EQ(VantorRequestBlankDisc(&info), noErr);
    EXPECT_EQ(info, 0x17F);
    EXPECT_THAT(Events(),
                ElementsAre(Sent("Fv8k/RDsc"), Sent("core/getd", Direct(PropertyOfDiscOne("sCod"))),
                            Sent("core/getd", Direct(PropertyOfApplication("mInf")))));
    EXPECT_FALSE(RecorderIsInFront()) << "the host is in front again";
    for (int i = 0; i < 2; ++i) {  // the flag stays
        EXPECT_THAT(Writing(1, 1, 1), ElementsAre(Write("ejWd=bool 01 Veri=bool 01 " + kAlways +
                                                        " askU=bool 00 wrAs=enum 'WAse'")));
    }
}

TEST_F(Disc, ARequestThatLeavesNoMediaIsForgotten) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    CVantor::sCurrentVantor->mHaveBlankDisc = 1;
    SInt32 info = 7;
    EXPECT_EQ(VantorRequestBlankDisc(&info), noErr);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(CVantor::sCurrentVantor->mHaveBlankDisc, 0);
}

TEST_F(Disc, WithoutASessionABlankDiscIsNotRemembered) {
    Script("core/getd/mInf value long 0000017F\n");
    EXPECT_EQ(VantorRequestBlankDisc(nullptr), noErr);
    EXPECT_THAT(Writing(0, -1, -1), ElementsAre(Write(kAlways)));
}

TEST_F(Disc, ACancelledRequestIsAnsweredAndLeavesTheFlag) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    for (const char* code : {"FFFFFF80", "00000001"}) {
        CVantor::sCurrentVantor->mHaveBlankDisc = 1;
        mBundle->Forget();
        Script("core/getd/sCod value long " + std::string(code) + "\n");
        SInt32 info = 0;
        EXPECT_EQ(VantorRequestBlankDisc(&info), userCanceledErr);
        EXPECT_EQ(info, userCanceledErr);
        EXPECT_EQ(CVantor::sCurrentVantor->mHaveBlankDisc, 1);
        EXPECT_THAT(Events(), ElementsAre(Sent("Fv8k/RDsc"),
                                          Sent("core/getd", Direct(PropertyOfDiscOne("sCod")))));
    }
}

TEST_F(Disc, KeepsAnsweringZeroWhereRequestsAreNotUnderstood) {
    Script("Fv8k/RDsc error -1708\n");
    SInt32 info = 7;
    EXPECT_EQ(VantorRequestBlankDisc(&info), noErr);
    EXPECT_EQ(info, 0);
    EXPECT_THAT(Events(), ElementsAre(Sent("Fv8k/RDsc"))) << "nothing further happens";
}

TEST_F(Disc, KeepsAnsweringTheCodeOfAFailedRequest) {
    Script("Fv8k/RDsc error -1712\n");
    SInt32 info = 0;
    EXPECT_EQ(VantorRequestBlankDisc(&info), errAETimeout);
    EXPECT_EQ(info, errAETimeout);
    Script("Fv8k/RDsc error 5\n");
    EXPECT_EQ(VantorRequestBlankDisc(&info), noErr) << "only negative outcomes fail";
    EXPECT_EQ(info, 5);
}

TEST_F(Disc, AStatusThatCannotBeReadAfterARequestFailsTheCall) {
    Script("core/getd/sCod error -1728\n");
    SInt32 info = 7;
    EXPECT_EQ(VantorRequestBlankDisc(&info), errAENoSuchObject);
    EXPECT_EQ(info, 7) << "untouched";
}

TEST_F(Disc, KeepsMappingTheMediaErrorThatNothingHereRaises) {
    Script("core/getd/sCod errn shor D505\n");  // -11003
    SInt32 info = 7;
    EXPECT_EQ(VantorRequestBlankDisc(&info), -11003);
    EXPECT_EQ(info, -2);
    EXPECT_EQ(VantorRequestBlankDisc(nullptr), -11003);
}

TEST_F(Disc, BringingTheRecorderToTheFrontLaunchesIt) {
    KillRecorder();
    EXPECT_EQ(VantorBringMirelToFront(), noErr);
    EXPECT_TRUE(VantorIsMirelRunning());
    EXPECT_TRUE(RecorderIsInFront());
}

TEST_F(Disc, ARefusalIsReported) {
    Script("Fv8k/wrIt error -49\nFv8k/addD error -43\ncore/crel error -10010\n");
    EXPECT_EQ(VantorWriteDisc(), opWrErr);
    EXPECT_EQ(VantorAddFiles(nullptr, 0), fnfErr);
    EXPECT_EQ(VantorMakeNewDisc('none'), errAECantHandleClass);
}

TEST_F(Disc, KeepsStoringTheTypeOfAReferenceAndAskingNothing) {
    SInt32 type = 0;
    EXPECT_EQ(VantorMediaSettingInfo(&type), noErr);
    EXPECT_EQ(type, 'obj ');
    EXPECT_EQ(VantorMediaSettingInfo(nullptr), noErr);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(Disc, EveryOutPointerMayBeNullAndTheQueryStillRuns) {
    EXPECT_EQ(VantorGetServerMode(nullptr), noErr);
    EXPECT_EQ(VantorGetSimulationMode(nullptr), noErr);
    EXPECT_EQ(VantorGetStatusCode(nullptr), noErr);
    EXPECT_EQ(VantorGetStatusText(nullptr), noErr);
    EXPECT_EQ(VantorGetDiscSize(nullptr), noErr);
    EXPECT_EQ(VantorGetMediaInfo(nullptr), noErr);
    EXPECT_THAT(Events(), testing::SizeIs(6));
    Script("core/getd/sTxt error -1728\n");
    EXPECT_EQ(VantorGetStatusText(nullptr), errAENoSuchObject);
}

}  // namespace
