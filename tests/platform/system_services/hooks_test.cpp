// Debugger texts, the end of the program and the tick counter.
#include <Carbon/MacTypes.h>
#include <Carbon/OSUtils.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "system_services/hooks.h"

namespace {

const UInt8 kText[] = "\4caf\x8E";

// Collects what goes to the text sink while it lives.
class SinkText {
  public:
    SinkText() { PlatformSetTextSink(&Take, this); }
    ~SinkText() { PlatformSetTextSink(nullptr, nullptr); }

    std::string text;

  private:
    static void Take(const char* inText, void* inContext) {
        static_cast<SinkText*>(inContext)->text += inText;
    }
};

TEST(DebugStr, WritesALineAndGoesOn) {
    SinkText sink;
    DebugStr(kText);
    EXPECT_EQ(sink.text, "DebugStr: caf\u00E9\n");
    Debugger();
    EXPECT_EQ(sink.text, "DebugStr: caf\u00E9\nDebugger\n");
}

TEST(DebugStr, GoesToStandardErrorWithoutASink) {
    testing::internal::CaptureStderr();
    DebugStr(kText);
    DebugStr(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "DebugStr: caf\u00E9\nDebugStr\n");
}

TEST(DebugStr, HandsItsStringToTheHookInstead) {
    std::vector<std::string> seen;
    SinkText sink;
    PlatformSetDebuggerHook(
        [](ConstStr255Param text, void* context) {
            static_cast<std::vector<std::string>*>(context)->emplace_back(
                reinterpret_cast<const char*>(text) + 1, text[0]);
        },
        &seen);
    DebugStr(kText);
    Debugger();
    DebugStr(nullptr);
    PlatformSetDebuggerHook(nullptr, nullptr);
    EXPECT_EQ(seen, (std::vector<std::string>{"caf\x8E", "", ""}));
    EXPECT_EQ(sink.text, "");
}

TEST(LeaveProgram, CallsTheExitHookAndReturnsAfterIt) {
    int calls = 0;
    PlatformSetExitHook([](void* context) { ++*static_cast<int*>(context); }, &calls);
    carbon::LeaveProgram();
    PlatformSetExitHook(nullptr, nullptr);
    EXPECT_EQ(calls, 1);
}

TEST(LeaveProgramDeathTest, EndsWithSuccessWithoutAHook) {
    EXPECT_EXIT(carbon::LeaveProgram(), testing::ExitedWithCode(0), "");
}

TEST(TickCount, RunsAtSixtyASecond) {
    const auto now = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch());
    };
    const double before = now().count() * 60;
    const double ticks = TickCount();
    const double after = now().count() * 60;
    EXPECT_GE(ticks, before - 1);
    EXPECT_LE(ticks, after);
}

}  // namespace
