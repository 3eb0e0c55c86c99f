// Names and codes of an application, and which of them a word means.
#include "cli/Vocabulary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/Failure.h"

namespace {

using cli::Suite;
using cli::Vocabulary;
using cli::WordPlace;
using ::testing::HasSubstr;
using ::testing::Not;

// Two classes that call different properties alike, and a code that is another one's name.
Suite EditorSuite() {
    Suite suite;
    cli::EventTerm event;
    event.name = "save copy";
    event.eventClass = 'Edit';
    event.code = 'scpy';
    event.parameters = {{"as", 'fltp', {}}, {"in", 'kfil', {}}};
    cli::ClassTerm page, line;
    page.name = "page";
    page.code = 'Page';
    page.properties = {{"size", 'psiz', {}}, {"name", 'pnam', {}}, {"code", 'pcod', {}}};
    line.name = "line";
    line.code = 'name';
    line.properties = {{"size", 'lsiz', {}}, {"name", 'pnam', {}}};
    suite.events = {event};
    suite.classes = {page, line};
    const cli::Term bold{"bold", "", 'bold'}, plain{"plain", "", 'plan'};
    suite.enumerations = {{'styl', {bold, plain}, "style"}};
    suite.comparisons = {{"equals", "", '=   '}};
    return suite;
}

Vocabulary Words() {
    return {"Editor", {EditorSuite()}};
}

std::string Refusal(const std::function<void()>& inCall) {
    try {
        inCall();
    } catch (const cli::Failure& failure) {
        EXPECT_EQ(failure.Exit(), cli::kBadUsage);
        return failure.what();
    }
    return "not refused";
}

std::string Refusal(WordPlace inPlace, const std::string& inWord) {
    return Refusal([&] { Words().CodeFor(inPlace, inWord); });
}

TEST(Vocabulary, NameIsTakenInAnyCase) {
    EXPECT_EQ(Words().CodeFor(WordPlace::kClass, "PAGE"), OSType('Page'));
    EXPECT_EQ(Words().CodeFor(WordPlace::kValue, "Plain"), OSType('plan'));
}

TEST(Vocabulary, CodeOfTheDictionaryWinsOverANameAndANameOverAnyOtherCode) {
    EXPECT_EQ(Words().CodeFor(WordPlace::kClass, "name"), OSType('name'));
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "name"), OSType('pnam'));
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "what"), OSType('what'));
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "ID"), OSType('ID  '));
}

TEST(Vocabulary, QuotesForceACodeAndBracketsAName) {
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "'name'"), OSType('name'));
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "'$00000001$'"), OSType{1});
    EXPECT_THAT(Refusal(WordPlace::kClass, "<name>"), HasSubstr("no class called 'name'"));
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "<name>"), OSType('pnam'));
}

TEST(Vocabulary, NameOfSeveralCodesIsThatOfTheOwnerOrRefused) {
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "size", 'Page'), OSType('psiz'));
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "size", 'name'), OSType('lsiz'));
    EXPECT_EQ(Refusal(WordPlace::kProperty, "size"),
              "'size' may mean 'lsiz' of line or 'psiz' of page; write the code");
    EXPECT_EQ(Words().CodeFor(WordPlace::kProperty, "code", 'name'), OSType('pcod'));
}

TEST(Vocabulary, UnknownNameIsRefusedWithThoseNearIt) {
    EXPECT_EQ(Refusal(WordPlace::kClass, "pagee"),
              "Editor has no class called 'pagee'; it has 'page'");
    EXPECT_THAT(Refusal(WordPlace::kClass, "elephant"), HasSubstr("vantor dictionary lists"));
    EXPECT_THAT(Refusal(WordPlace::kClass, "pla\x1Bin"), HasSubstr("'pla?in'"));
    EXPECT_THAT(Refusal([] { Vocabulary().CodeFor(WordPlace::kClass, "elephant"); }),
                HasSubstr("has no dictionary"));
}

TEST(Vocabulary, EventsAndParametersHaveNamesBothWays) {
    const Vocabulary words = Words();
    const cli::EventTerm* const event = words.FindEvent("Save Copy");
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(words.FindEvent('Edit', 'scpy'), event);
    EXPECT_EQ(words.FindEvent("scpy"), nullptr);
    EXPECT_EQ(words.CodeForParameter(*event, "as"), AEKeyword('fltp'));
    EXPECT_EQ(words.CodeForParameter(*event, "fltp"), AEKeyword('fltp'));
    EXPECT_EQ(words.CodeForParameter(*event, "xy"), AEKeyword('xy  '));
    EXPECT_EQ(cli::NameOfParameter(event, 'kfil'), "in");
    EXPECT_THAT(Refusal([&] { words.CodeForParameter(*event, "into it"); }),
                HasSubstr("no parameter of this event called 'into it'"));
    EXPECT_THAT(Refusal([&] { words.RefuseEvent("save cpy"); }), HasSubstr("it has 'save copy'"));
}

TEST(Vocabulary, PlaceSaysWhichNameACodeHas) {
    EXPECT_EQ(Words().NameOf(WordPlace::kClass, 'name'), "line");
    EXPECT_EQ(Words().NameOf(WordPlace::kProperty, 'name'), "");
    EXPECT_EQ(Words().NameOf(WordPlace::kType, 'psiz'), "size");
    EXPECT_EQ(Words().NameOf(WordPlace::kValue, '=   '), "equals");
}

TEST(Vocabulary, NamesThatCouldFoolATerminalAreNotShown) {
    Suite suite = EditorSuite();
    suite.classes[0].name = "\x1B[31mpage";
    suite.classes[1].name = "li>ne";
    const Vocabulary words("Editor", {suite});
    EXPECT_EQ(words.NameOf(WordPlace::kClass, 'Page'), "");
    EXPECT_EQ(words.NameOf(WordPlace::kClass, 'name'), "");
}

TEST(Vocabulary, NamesThatCannotBeReadBackAreNotShown) {
    for (const char* name : {"3D page", "{page}", "a \"page\"", ""}) {
        Suite suite = EditorSuite();
        suite.classes[0].name = name;
        EXPECT_EQ(Vocabulary("Editor", {suite}).NameOf(WordPlace::kClass, 'Page'), "") << name;
    }
}

}  // namespace
