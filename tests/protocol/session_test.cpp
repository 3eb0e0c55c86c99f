// A session's undoing, both ways, and sessions opened twice.
#include <gmock/gmock.h>

#include "support/Expected.h"
#include "support/RecorderTest.h"
#include "vantor/controller/CVantor.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

const std::string kGetServerMode = Sent("core/getd", Direct(PropertyOfApplication("srvM")));
const std::string kServerModeOn =
    Sent("core/setd", Direct(PropertyOfApplication("srvM")) + " data=bool 01");
const std::string kServerModeOff =
    Sent("core/setd", Direct(PropertyOfApplication("srvM")) + " data=bool 00");
const std::string kEndSession = Sent("Fv8k/EndB");
const std::string kQuit = Sent("aevt/quit", "savo=enum 'no  '");

class Session : public RecorderTest {};

TEST_F(Session, IsNotNeededByAnyCallWhichLaunchesAndLeavesServerModeAlone) {
    const std::function<SInt32()> calls[] = {
        [] { return VantorGetServerMode(nullptr); },
        [] { return VantorGetSimulationMode(nullptr); },
        [] { return VantorSetSimulationMode(true); },
        [] { return VantorGetStatusCode(nullptr); },
        [] { return VantorGetStatusText(nullptr); },
        [] { return VantorMakeNewDisc('Data'); },
        [] { return VantorAddFiles(nullptr, 0); },
        [] { return VantorWriteDisc(); },
        [] { return VantorWriteDiscWithOptions(0, -1, -1, false, false); },
        [] { return VantorBringMirelToFront(); },
        [] { return VantorGetDiscSize(nullptr); },
        [] { return VantorGetMediaInfo(nullptr); },
        [] { return VantorRequestBlankDisc(nullptr); },
        [] { return VantorEjectDisc(); },
    };
    for (const auto& call : calls) {
        const auto place = &call - calls;
        KillRecorder();
        mBundle->Forget();
        EXPECT_EQ(call(), noErr) << place;
        EXPECT_TRUE(VantorIsMirelRunning()) << place;
        EXPECT_EQ(VantorGetStatusCode(nullptr), noErr) << "all before it has arrived";
        EXPECT_THAT(Events(), Not(Contains(kServerModeOn))) << place;
        EXPECT_FALSE(VantorIsSessionInitiated()) << place;
    }
}

TEST_F(Session, KeepsTheServerModeOfARecorderItLaunched) {
    EXPECT_EQ(VantorInitiateSession(), noErr);
    EXPECT_TRUE(VantorIsSessionInitiated());
    EXPECT_TRUE(VantorIsMirelRunning());
    EXPECT_EQ(CVantor::sCurrentVantor->mLaunchedMirel, 1);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(Session, OfALaunchedRecorderEndsByTellingAndQuittingIt) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_FALSE(VantorIsSessionInitiated());
    EXPECT_THAT(Events(), ElementsAre(kEndSession, kQuit));
    EXPECT_FALSE(IsListed()) << "whoever looks now must not meet one that is about to go";
}

TEST_F(Session, KeepsPuttingServerModeOffInARecorderThatStaysAfterQuitting) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    Script("aevt/quit empty\n");  // says yes and stays
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_THAT(Events(), ElementsAre(kEndSession, kQuit, kServerModeOff));
}

TEST_F(Session, KeepsQuittingARecorderThatDoesNotUnderstandTheEnd) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    Script("Fv8k/EndB error -1708\n");
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_THAT(Events(), IsSupersetOf({kEndSession, kQuit}));
    EXPECT_TRUE(Eventually([&] { return !IsListed(); }));
}

TEST_F(Session, KeepsEndingWellWhenQuittingIsRefused) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    Script("aevt/quit error -128\n");
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_FALSE(VantorIsSessionInitiated());
}

TEST_F(Session, SwitchesServerModeOnInARunningRecorderAndOffAgain) {
    StartRecorder();
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_THAT(Events(), ElementsAre(kGetServerMode, kServerModeOn));
    EXPECT_EQ(CVantor::sCurrentVantor->mLaunchedMirel, 0);
    EXPECT_EQ(CVantor::sCurrentVantor->mServerModeWasOn, 0);
    mBundle->Forget();
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_THAT(Events(), ElementsAre(kServerModeOff));
    EXPECT_TRUE(VantorIsMirelRunning());
}

TEST_F(Session, LeavesServerModeWhereItWasOn) {
    StartRecorder();
    ASSERT_EQ(VantorSetServerMode(true), noErr);
    mBundle->Forget();
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_EQ(CVantor::sCurrentVantor->mServerModeWasOn, 1);
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_THAT(Events(), ElementsAre(kGetServerMode));
}

TEST_F(Session, EndingNoneSucceedsAndSendsNothing) {
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_FALSE(VantorIsSessionInitiated());
    EXPECT_FALSE(IsListed());
}

TEST_F(Session, OpenedTwiceTakesALaunchedRecorderOver) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    ASSERT_EQ(VantorInitiateSession(), noErr);
    // The first one's end puts server mode off; the second finds it so.
    EXPECT_THAT(Events(), ElementsAre(kServerModeOff, kGetServerMode, kServerModeOn));
    EXPECT_EQ(CVantor::sCurrentVantor->mLaunchedMirel, 0) << "found running";
    mBundle->Forget();
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_THAT(Events(), ElementsAre(kServerModeOff)) << "neither told nor quit";
    EXPECT_TRUE(VantorIsMirelRunning());
}

TEST_F(Session, OpenedTwiceOnARunningRecorderLeavesServerModeOn) {
    StartRecorder();
    ASSERT_EQ(VantorInitiateSession(), noErr);
    ASSERT_EQ(VantorInitiateSession(), noErr);
    EXPECT_THAT(Events(), ElementsAre(kGetServerMode, kServerModeOn, kServerModeOff, kGetServerMode,
                                      kServerModeOn));
    Boolean on = false;
    EXPECT_EQ(VantorGetServerMode(&on), noErr);
    EXPECT_TRUE(on);
}

TEST_F(Session, SendsNothingToALaunchedRecorderThatTheUserHasQuit) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    KillRecorder();
    CVantor::sCurrentVantor->TerminateSelf();
    EXPECT_EQ(CVantor::sCurrentVantor->mLaunchedMirel, 0) << "the flag is cleared all the same";
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_FALSE(IsListed()) << "ending launches nothing";
}

TEST_F(Session, KeepsItselfOpenWhenOpeningFails) {
    StartRecorder();
    Script("core/getd/srvM error -1728\n");
    EXPECT_EQ(VantorInitiateSession(), errAENoSuchObject);
    EXPECT_TRUE(VantorIsSessionInitiated());
}

TEST_F(Session, KeepsItselfOpenWhenUndoingFails) {
    StartRecorder();
    ASSERT_EQ(VantorInitiateSession(), noErr);
    Script("core/setd/srvM error -10006\n");
    EXPECT_EQ(VantorTerminateSession(), errAEWriteDenied);
    EXPECT_TRUE(VantorIsSessionInitiated());
    Script("");
    EXPECT_EQ(VantorTerminateSession(), noErr);
    EXPECT_FALSE(VantorIsSessionInitiated());
}

TEST_F(Session, KeepsGoingAwayWhenItCannotBeUndone) {
    StartRecorder();
    ASSERT_EQ(VantorInitiateSession(), noErr);
    mBundle->Forget();
    Script("core/setd/srvM error -10006\ncore/getd/srvM value bool 01\n");
    EXPECT_EQ(VantorInitiateSession(), noErr) << "the first one's failure is nobody's";
    EXPECT_THAT(Events(), ElementsAre(kServerModeOff, kGetServerMode));
}

TEST_F(Session, IsNotNeededForAQueryWhichNeverTurnsServerModeOn) {
    SInt32 code = 7;
    EXPECT_EQ(VantorGetStatusCode(&code), noErr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(VantorIsMirelRunning()) << "launched by the query";
    EXPECT_FALSE(VantorIsSessionInitiated());
    EXPECT_THAT(Events(), Not(Contains(kServerModeOn)));
}

TEST_F(Session, KeepsLaunchingWithoutTheParametersItPrepares) {
    ASSERT_EQ(VantorInitiateSession(), noErr);
    ASSERT_EQ(VantorGetStatusCode(nullptr), noErr);
    const auto events = mBundle->AllEvents();
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0], "aevt/oapp tran=0 reply=0");
}

}  // namespace
