// Alerts: their texts and who answers them.
#include <Carbon/Dialogs.h>
#include <Platform/Platform.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "posix/UniqueFd.h"
#include "system_services/alert_terminal.h"

namespace {

using testing::HasSubstr;

std::string Pascal(const std::string& inText) {
    return char(inText.size()) + inText;
}

ConstStr255Param Bytes(const std::string& inPascal) {
    return reinterpret_cast<ConstStr255Param>(inPascal.data());
}

void SetParams(const std::string& in0, const std::string& in1, const std::string& in2,
               const std::string& in3) {
    ParamText(Bytes(Pascal(in0)), Bytes(Pascal(in1)), Bytes(Pascal(in2)), Bytes(Pascal(in3)));
}

struct Shown {
    SInt16 alertID, kind;
    std::string text;
    std::vector<std::string> params;
};

// Answers every alert with one item while it lives, and remembers them.
class AlertAnswer {
  public:
    explicit AlertAnswer(SInt16 inItem) : mItem(inItem) { PlatformSetAlertHook(&Answer, this); }
    ~AlertAnswer() { PlatformSetAlertHook(nullptr, nullptr); }

    std::vector<Shown> shown;

  private:
    static SInt16 Answer(const PlatformAlert* inAlert, void* inContext) {
        auto* self = static_cast<AlertAnswer*>(inContext);
        Shown shown{inAlert->alertID, inAlert->kind, inAlert->text, {}};
        for (const ConstStringPtr param : inAlert->params)
            shown.params.emplace_back(reinterpret_cast<const char*>(param) + 1, param[0]);
        self->shown.push_back(shown);
        return self->mItem;
    }

    SInt16 mItem;
};

TEST(StopAlert, ReturnsTheItemThatAnswersIt) {
    for (const SInt16 item : std::initializer_list<SInt16>{1, 4, 5, 6}) {
        AlertAnswer answer(item);
        EXPECT_EQ(StopAlert(251, nullptr), item);
        EXPECT_EQ(StopAlert(252, nullptr), item);
        ASSERT_EQ(answer.shown.size(), 2u);
        EXPECT_EQ(answer.shown[0].alertID, 251);
        EXPECT_EQ(answer.shown[1].alertID, 252);
        EXPECT_NE(answer.shown[0].text, answer.shown[1].text);
    }
}

TEST(StopAlert, ShowsNothingForAnUnknownNumber) {
    AlertAnswer answer(1);
    for (const SInt16 id : std::initializer_list<SInt16>{0, 250, 253, -1})
        EXPECT_EQ(StopAlert(id, nullptr), -1) << id;
    EXPECT_TRUE(answer.shown.empty());
}

TEST(Alert, SaysItsKind) {
    AlertAnswer answer(1);
    Alert(251, nullptr);
    StopAlert(251, nullptr);
    NoteAlert(251, nullptr);
    CautionAlert(251, nullptr);
    std::vector<SInt16> kinds;
    for (const Shown& shown : answer.shown) kinds.push_back(shown.kind);
    EXPECT_EQ(kinds, (std::vector<SInt16>{kPlatformPlainAlert, kPlatformStopAlert,
                                          kPlatformNoteAlert, kPlatformCautionAlert}));
}

TEST(ParamText, FillsInAllFourTexts) {
    AlertAnswer answer(1);
    SetParams("message\x8E", "file", "detail", "42");
    StopAlert(251, nullptr);
    const Shown& shown = answer.shown.at(0);
    EXPECT_EQ(shown.params, (std::vector<std::string>{"message\x8E", "file", "detail", "42"}));
    for (const char* part : {"message\u00E9", "file", "detail", "42"})
        EXPECT_THAT(shown.text, HasSubstr(part));
    EXPECT_EQ(shown.text.find('^'), std::string::npos);
}

TEST(ParamText, LeavesATextForNull) {
    AlertAnswer answer(1);
    SetParams("zero", "one", "two", "three");
    ParamText(nullptr, Bytes(Pascal("new")), nullptr, nullptr);
    StopAlert(252, nullptr);
    EXPECT_EQ(answer.shown.at(0).params, (std::vector<std::string>{"zero", "new", "two", "three"}));
}

TEST(ParamText, IsNotFilledInItself) {
    AlertAnswer answer(1);
    SetParams("^1^2", "(one)", "", std::string(255, 'x'));
    StopAlert(251, nullptr);
    EXPECT_THAT(answer.shown.at(0).text, HasSubstr("^1^2"));
    EXPECT_THAT(answer.shown.at(0).text, HasSubstr(std::string(255, 'x')));
}

TEST(StopAlert, WithoutATerminalWritesItsTextAndContinues) {
    const int input = dup(STDIN_FILENO);
    const carbon::UniqueFd null(open("/dev/null", O_RDONLY | O_CLOEXEC));
    dup2(null.Get(), STDIN_FILENO);
    std::string text;
    PlatformSetTextSink([](const char* t, void* c) { *static_cast<std::string*>(c) += t; }, &text);
    SetParams("seen", "", "", "");
    EXPECT_EQ(StopAlert(251, nullptr), 1);
    PlatformSetTextSink(nullptr, nullptr);
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_THAT(text, HasSubstr("seen"));
    EXPECT_EQ(text.back(), '\n');
}

// Types `inTyped` and then leaves.
SInt16 AnswerTo(const std::string& inTyped, std::string* outPrinted = nullptr) {
    int in[2], out[2];
    EXPECT_EQ(pipe2(in, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
    const carbon::UniqueFd typed(in[0]), printed(out[0]);
    EXPECT_EQ(write(in[1], inTyped.data(), inTyped.size()), ssize_t(inTyped.size()));
    close(in[1]);
    const SInt16 item = carbon::AskOnTerminal(typed.Get(), out[1], "the text");
    close(out[1]);
    char buffer[4096];
    const ssize_t got = read(printed.Get(), buffer, sizeof buffer);
    if (outPrinted) outPrinted->assign(buffer, size_t(got));
    return item;
}

TEST(AskOnTerminal, TakesNumbersAndFirstLetters) {
    EXPECT_EQ(AnswerTo("1\n"), 1);
    EXPECT_EQ(AnswerTo("4\n"), 4);
    EXPECT_EQ(AnswerTo("5\n"), 5);
    EXPECT_EQ(AnswerTo("6\n"), 6);
    EXPECT_EQ(AnswerTo("c\n"), 1);
    EXPECT_EQ(AnswerTo("  Quit\n"), 4);
    EXPECT_EQ(AnswerTo("debugger\r\n"), 5);
    EXPECT_EQ(AnswerTo("S\n"), 6);
}

TEST(AskOnTerminal, ContinuesOnAnEmptyLineAndAtTheEnd) {
    EXPECT_EQ(AnswerTo("\n6\n"), 1);
    EXPECT_EQ(AnswerTo(""), 1);
    EXPECT_EQ(AnswerTo("x\n"), 1);
}

TEST(AskOnTerminal, AsksAgainUntilItUnderstands) {
    std::string printed;
    EXPECT_EQ(AnswerTo("2\nwhat?\n5\n6\n", &printed), 5);
    EXPECT_THAT(printed, HasSubstr("the text\n"));
    size_t prompts = 0;
    for (size_t at = 0; (at = printed.find("[4] quit", at)) != std::string::npos; ++at) ++prompts;
    EXPECT_EQ(prompts, 3u);
}

TEST(AskOnTerminal, LeavesTheNextLineToTheProgram) {
    int in[2];
    ASSERT_EQ(pipe2(in, O_CLOEXEC), 0);
    const carbon::UniqueFd typed(in[0]), keyboard(in[1]);
    ASSERT_EQ(write(keyboard.Get(), "4\nrest", 6), 6);
    const carbon::UniqueFd null(open("/dev/null", O_WRONLY | O_CLOEXEC));
    EXPECT_EQ(carbon::AskOnTerminal(typed.Get(), null.Get(), ""), 4);
    char rest[8];
    EXPECT_EQ(read(typed.Get(), rest, sizeof rest), 4);
}

TEST(ModalFilterUPP, IsTheProcedureItself) {
    const auto filter = [](DialogRef, EventRecord*, DialogItemIndex* item) {
        *item = 3;
        return Boolean(true);
    };
    const ModalFilterUPP upp = NewModalFilterUPP(filter);
    DialogItemIndex item = 0;
    EXPECT_TRUE(InvokeModalFilterUPP(nullptr, nullptr, &item, upp));
    EXPECT_EQ(item, 3);
    DisposeModalFilterUPP(upp);
}

}  // namespace
