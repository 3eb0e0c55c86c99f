// Scripts, the bytes of their characters, and their tables.
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/text_utilities/NumberFixture.h"

namespace {

class CurrentScript {
  public:
    explicit CurrentScript(ScriptCode inScript) { PlatformSetCurrentScript(inScript); }
    ~CurrentScript() { PlatformSetCurrentScript(smRoman); }
};

SInt16 TypeAt(std::string inText, SInt16 inOffset, ScriptCode inScript = smCurrentScript) {
    return CharacterByteType(inText.data(), inOffset, inScript);
}

TEST(CharacterByteType, TakesEveryRomanByteForACharacter) {
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(TypeAt(std::string(2, char(byte)), 1), smSingleByte);
}

TEST(CharacterByteType, WalksFromTheBeginningOfTheText) {
    const std::string text = "a\x83\x83\x83\x41z";  // a, two characters of two bytes, z
    const SInt16 expected[] = {smSingleByte, smFirstByte, smLastByte,
                               smFirstByte,  smLastByte,  smSingleByte};
    for (SInt16 i = 0; i < 6; ++i) EXPECT_EQ(TypeAt(text, i, smJapanese), expected[i]) << i;
    EXPECT_EQ(TypeAt(text, -1, smJapanese), smSingleByte);
    EXPECT_EQ(TypeAt(text, 2), smSingleByte) << "the current script is Roman";
}

TEST(CharacterByteType, FollowsTheCurrentScript) {
    const CurrentScript japanese(smJapanese);
    EXPECT_EQ(TypeAt("\x83\x41", 1), smLastByte);
    EXPECT_EQ(TypeAt("\x83\x41", 1, smSystemScript), smSingleByte);
}

TEST(FillParseTable, MarksTheFirstBytesOfEachScript) {
    struct {
        ScriptCode script;
        std::ptrdiff_t firstBytes;
    } const expected[] = {{smRoman, 0},        {smJapanese, 31 + 29}, {smKorean, 12 + 25 + 52},
                          {smTradChinese, 92}, {smSimpChinese, 92},   {smGreek, 0},
                          {smCurrentScript, 0}};
    for (const auto& [script, firstBytes] : expected) {
        CharByteTable table;
        std::fill(std::begin(table), std::end(table), 'x');
        EXPECT_TRUE(FillParseTable(table, script));
        EXPECT_EQ(std::count(std::begin(table), std::end(table), 1), firstBytes) << script;
        EXPECT_EQ(std::count(std::begin(table), std::end(table), 0), 256 - firstBytes) << script;
    }
}

TEST(FillParseTable, RefusesWhatIsNoScript) {
    CharByteTable table;
    std::fill(std::begin(table), std::end(table), 'x');
    EXPECT_FALSE(FillParseTable(table, 99));
    EXPECT_EQ(std::count(std::begin(table), std::end(table), 0), 256);
    EXPECT_FALSE(FillParseTable(table, smAllScripts));
}

TEST(GetIntlResourceTable, HandsOutTheNumberPartsInHostOrder) {
    const NumberParts parts = SystemParts();
    EXPECT_EQ(parts.version, curNumberPartsVersion);
    EXPECT_EQ(parts.data[tokDecPoint - 1].b, '.');
    EXPECT_EQ(parts.data[tokDecPoint - 1].a.lo, '.');
    EXPECT_EQ(parts.data[tokLeader - 1].b, 0xCA);
    EXPECT_EQ(parts.data[tokReserved - 1].b, 0);
    EXPECT_EQ(parts.data[tokMaxSymbols - 1].b, 0);
    EXPECT_EQ(parts.pePlus.data[1].b, '+');
}

TEST(GetIntlResourceTable, GivesNoHandleForWhatIsNotThere) {
    Handle table = reinterpret_cast<Handle>(1);
    SInt32 offset = 1, length = 1;
    GetIntlResourceTable(smRoman, smWordWrapTable, &table, &offset, &length);
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(offset, 0);
    EXPECT_EQ(length, 0);
    GetIntlResourceTable(smJapanese, smNumberPartsTable, &table, &offset, &length);
    EXPECT_EQ(table, nullptr);
    const CurrentScript japanese(smJapanese);
    GetIntlResourceTable(smJapanese, smNumberPartsTable, &table, &offset, &length);
    EXPECT_NE(table, nullptr);
    EXPECT_EQ(length, 172);
}

TEST(GetScriptManagerVariable, KeepsTheSystemRomanWhateverIsCurrent) {
    const CurrentScript korean(smKorean);
    EXPECT_EQ(GetScriptManagerVariable(smSysScript), smRoman);
    EXPECT_EQ(GetScriptManagerVariable(smKeyScript), smKorean);
    EXPECT_EQ(GetScriptManagerVariable(9999), 0);
}

TEST(GetScriptVariable, KnowsTheScriptsThatAreEnabled) {
    EXPECT_EQ(GetScriptVariable(smRoman, smScriptEnabled), 1);
    EXPECT_EQ(GetScriptVariable(smKorean, smScriptEnabled), 0);
    const CurrentScript korean(smKorean);
    EXPECT_EQ(GetScriptVariable(smKorean, smScriptEnabled), 1);
    EXPECT_EQ(GetScriptVariable(smCurrentScript, smScriptLang), langKorean);
    EXPECT_EQ(GetScriptVariable(smSystemScript, smScriptLang), langEnglish);
}

TEST(UppercaseText, HasNoTablesForAnotherCurrentScript) {
    const CurrentScript japanese(smJapanese);
    char text[] = "abc";
    UppercaseText(text, 3, smCurrentScript);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(ResError(), resNotFound);
    UppercaseText(text, 3, smSystemScript);
    EXPECT_STREQ(text, "ABC");
    EXPECT_EQ(ResError(), noErr);
}

}  // namespace
