// The developer alert: what it shows, what each button does, and what silences it.
#include "vantor/foundation/UDebugging.h"

#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/PascalString.h"
#include "support/Thrown.h"

namespace {

enum : SInt16 { kContinue = 1, kQuit = 4, kDebugger = 5, kSilence = 6 };

// Answers every alert with one button and remembers what was shown.
class UDebuggingTest : public testing::Test {
  protected:
    struct Shown {
        SInt16 alert;
        SInt16 kind;
        std::vector<std::string> texts;
    };

    void SetUp() override {
        PlatformSetAlertHook(
            [](const PlatformAlert* alert, void* self) {
                return static_cast<UDebuggingTest*>(self)->Show(*alert);
            },
            this);
        PlatformSetDebuggerHook(
            [](ConstStr255Param text, void* self) {
                static_cast<UDebuggingTest*>(self)->mDebugged.push_back(TextOf(text));
            },
            this);
        PlatformSetExitHook([](void* self) { ++static_cast<UDebuggingTest*>(self)->mExits; }, this);
    }

    void TearDown() override {
        UDebugging::gDebugThrow = debugAction_Nothing;
        UDebugging::gDebugSignal = debugAction_Nothing;
        PlatformSetAlertHook(nullptr, nullptr);
        PlatformSetDebuggerHook(nullptr, nullptr);
        PlatformSetExitHook(nullptr, nullptr);
    }

    SInt16 Show(const PlatformAlert& inAlert) {
        Shown shown{inAlert.alertID, inAlert.kind, {}};
        for (ConstStringPtr text : inAlert.params) shown.texts.push_back(TextOf(text));
        mShown.push_back(shown);
        return mButton;
    }

    SInt16 mButton = kContinue;
    std::vector<Shown> mShown;
    std::vector<std::string> mDebugged;
    int mExits = 0;
};

using Texts = std::vector<std::string>;

TEST_F(UDebuggingTest, DebugThrowIsSilentByDefault) {
    EXPECT_EQ(UDebugging::gDebugThrow, 0);
    EXPECT_EQ(CodeThrownBy([] { UDebugging::DebugThrow(-43, "a.cpp", PString("x"), 1); }), -43);
    EXPECT_TRUE(mShown.empty());
    EXPECT_TRUE(mDebugged.empty());
}

TEST_F(UDebuggingTest, DebugThrowShowsTheCodeThenThrowsIt) {
    UDebugging::gDebugThrow = debugAction_Alert;
    EXPECT_EQ(CodeThrownBy([] { UDebugging::DebugThrow(-43, "a.cpp", "opening", 12); }), -43);
    ASSERT_EQ(mShown.size(), 1u);
    EXPECT_EQ(mShown[0].alert, 251);
    EXPECT_EQ(mShown[0].kind, kPlatformStopAlert);
    EXPECT_EQ(mShown[0].texts, (Texts{"-43", "a.cpp", "opening", "12"}));
}

TEST_F(UDebuggingTest, DebugThrowStopsInTheDebuggerWithTheCode) {
    UDebugging::gDebugThrow = debugAction_Debugger;
    EXPECT_EQ(CodeThrownBy([] { UDebugging::DebugThrow(-43, "a.cpp", PString("x"), 1); }), -43);
    EXPECT_EQ(mDebugged, Texts{"-43"});
    EXPECT_TRUE(mShown.empty());
}

TEST_F(UDebuggingTest, SilencingThrowAlertsLeavesSignalAlerts) {
    UDebugging::gDebugThrow = debugAction_Alert;
    UDebugging::gDebugSignal = debugAction_Alert;
    mButton = kSilence;
    EXPECT_EQ(CodeThrownBy([] { UDebugging::DebugThrow(-1, "a", "b", 1); }), -1);
    EXPECT_EQ(CodeThrownBy([] { UDebugging::DebugThrow(-2, "a", "b", 2); }), -2);
    EXPECT_EQ(mShown.size(), 1u) << "the second throw is silent";
    EXPECT_EQ(UDebugging::gDebugThrow, debugAction_Nothing);
    EXPECT_EQ(UDebugging::gDebugSignal, debugAction_Alert);
    UDebugging::AlertSignalAt("odd", "a.cpp", "detail", 3);
    EXPECT_EQ(mShown.size(), 2u) << "signal alerts go on";
}

TEST_F(UDebuggingTest, SilencingSignalAlertsLeavesThrowAlerts) {
    UDebugging::gDebugThrow = debugAction_Alert;
    UDebugging::gDebugSignal = debugAction_Alert;
    mButton = kSilence;
    UDebugging::AlertSignalAt("odd", "a.cpp", "detail", 3);
    EXPECT_EQ(UDebugging::gDebugThrow, debugAction_Alert);
    EXPECT_EQ(UDebugging::gDebugSignal, debugAction_Nothing);
}

TEST_F(UDebuggingTest, TheDebuggerButtonEntersTheDebugger) {
    mButton = kDebugger;
    UDebugging::AlertThrowAt(PString("m"), "a.cpp", "d", 3);
    EXPECT_EQ(mDebugged, Texts{""});
    EXPECT_EQ(mExits, 0);
}

TEST_F(UDebuggingTest, TheQuitButtonLeavesTheProgram) {
    mButton = kQuit;
    UDebugging::AlertThrowAt(PString("m"), "a.cpp", PString("d"), 3);
    EXPECT_EQ(mExits, 1);
    EXPECT_TRUE(mDebugged.empty());
}

TEST_F(UDebuggingTest, AnyOtherButtonGoesOn) {
    UDebugging::gDebugThrow = debugAction_Alert;
    for (const SInt16 button : std::initializer_list<SInt16>{-1, 0, 1, 2, 3, 7}) {
        mButton = button;
        UDebugging::AlertThrowAt(PString("m"), "a.cpp", "d", 3);
    }
    EXPECT_EQ(mShown.size(), 6u);
    EXPECT_EQ(mExits, 0);
    EXPECT_TRUE(mDebugged.empty());
    EXPECT_EQ(UDebugging::gDebugThrow, debugAction_Alert);
}

TEST_F(UDebuggingTest, EveryMixOfStringsShowsTheSameSignalAlert) {
    UDebugging::AlertSignalAt(PString("m"), "f", PString("d"), 4);
    UDebugging::AlertSignalAt(PString("m"), "f", "d", 4);
    UDebugging::AlertSignalAt("m", "f", PString("d"), 4);
    UDebugging::AlertSignalAt("m", "f", "d", 4);
    ASSERT_EQ(mShown.size(), 4u);
    for (const Shown& shown : mShown) {
        EXPECT_EQ(shown.alert, 252);
        EXPECT_EQ(shown.kind, kPlatformStopAlert);
        EXPECT_EQ(shown.texts, (Texts{"m", "f", "d", "4"}));
    }
}

TEST_F(UDebuggingTest, AStatusIsShownInDecimalWithAnIntroduction) {
    UDebugging::AlertSignalOSStatusAt(-10814, "f", PString("d"), 4);
    UDebugging::AlertSignalOSStatusAt(7, "f", "d", 4);
    ASSERT_EQ(mShown.size(), 2u);
    EXPECT_EQ(mShown[0].texts[0], "Status Code = -10814");
    EXPECT_EQ(mShown[1].texts[0], "Status Code = 7");
}

TEST_F(UDebuggingTest, ANumberStopsInTheDebuggerInDecimal) {
    UDebugging::DebugNumber(-32768);
    EXPECT_EQ(mDebugged, Texts{"-32768"});
}

TEST(LoadPStrFromCStr, CutsAt255AndReturnsItsArgument) {
    Str255 text;
    EXPECT_EQ(UDebugging::LoadPStrFromCStr(text, std::string(300, 'x').c_str()), text);
    EXPECT_EQ(TextOf(text), std::string(255, 'x'));
    UDebugging::LoadPStrFromCStr(text, "");
    EXPECT_EQ(text[0], 0);
}

}  // namespace
