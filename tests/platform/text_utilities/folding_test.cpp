// Every row of the tables of case, marks and order, seen through the public calls.
#include <Carbon/MacErrors.h>
#include <Carbon/Resources.h>
#include <Carbon/StringCompare.h>
#include <Carbon/TextUtils.h>
#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

namespace {

struct Row {
    UInt8 code, capital, unmarked, unmarkedCapital, primary, secondary, textCapital;
};

constexpr Row kRows[] = {
    {0x60, 0x61, 0x60, 0x61, 0x60, 0x00, 0x60}, {0x80, 0x80, 0x41, 0x41, 0x41, 0x02, 0x80},
    {0x81, 0x81, 0x41, 0x41, 0x41, 0x04, 0x81}, {0x82, 0x82, 0x43, 0x43, 0x43, 0x01, 0x82},
    {0x83, 0x83, 0x45, 0x45, 0x45, 0x01, 0x83}, {0x84, 0x84, 0x4E, 0x4E, 0x4E, 0x01, 0x84},
    {0x85, 0x85, 0x4F, 0x4F, 0x4F, 0x01, 0x85}, {0x86, 0x86, 0x55, 0x55, 0x55, 0x01, 0x86},
    {0x87, 0x87, 0x61, 0x41, 0x41, 0x81, 0xE7}, {0x88, 0xCB, 0x61, 0x41, 0x41, 0x82, 0xCB},
    {0x89, 0x89, 0x61, 0x41, 0x41, 0x83, 0xE5}, {0x8A, 0x80, 0x61, 0x41, 0x41, 0x84, 0x80},
    {0x8B, 0xCC, 0x61, 0x41, 0x41, 0x85, 0xCC}, {0x8C, 0x81, 0x61, 0x41, 0x41, 0x86, 0x81},
    {0x8D, 0x82, 0x63, 0x43, 0x43, 0x81, 0x82}, {0x8E, 0x83, 0x65, 0x45, 0x45, 0x81, 0x83},
    {0x8F, 0x8F, 0x65, 0x45, 0x45, 0x82, 0xE9}, {0x90, 0x90, 0x65, 0x45, 0x45, 0x83, 0xE6},
    {0x91, 0x91, 0x65, 0x45, 0x45, 0x84, 0xE8}, {0x92, 0x92, 0x69, 0x49, 0x49, 0x81, 0xEA},
    {0x93, 0x93, 0x69, 0x49, 0x49, 0x82, 0xED}, {0x94, 0x94, 0x69, 0x49, 0x49, 0x83, 0xEB},
    {0x95, 0x95, 0x69, 0x49, 0x49, 0x84, 0xEC}, {0x96, 0x84, 0x6E, 0x4E, 0x4E, 0x81, 0x84},
    {0x97, 0x97, 0x6F, 0x4F, 0x4F, 0x81, 0xEE}, {0x98, 0x98, 0x6F, 0x4F, 0x4F, 0x82, 0xF1},
    {0x99, 0x99, 0x6F, 0x4F, 0x4F, 0x83, 0xEF}, {0x9A, 0x85, 0x6F, 0x4F, 0x4F, 0x84, 0x85},
    {0x9B, 0xCD, 0x6F, 0x4F, 0x4F, 0x85, 0xCD}, {0x9C, 0x9C, 0x75, 0x55, 0x55, 0x81, 0xF2},
    {0x9D, 0x9D, 0x75, 0x55, 0x55, 0x82, 0xF4}, {0x9E, 0x9E, 0x75, 0x55, 0x55, 0x83, 0xF3},
    {0x9F, 0x86, 0x75, 0x55, 0x55, 0x84, 0x86}, {0xAE, 0xAE, 0xAE, 0xAE, 0xAE, 0x00, 0xAE},
    {0xAF, 0xAF, 0x4F, 0x4F, 0x4F, 0x03, 0xAF}, {0xBB, 0xBB, 0x61, 0x41, 0xBB, 0x00, 0xBB},
    {0xBC, 0xBC, 0x6F, 0x4F, 0xBC, 0x00, 0xBC}, {0xBE, 0xAE, 0xBE, 0xAE, 0xAE, 0x01, 0xAE},
    {0xBF, 0xAF, 0x6F, 0x4F, 0x4F, 0x86, 0xAF}, {0xC7, 0xC7, 0xC7, 0xC7, 0x22, 0x01, 0xC7},
    {0xC8, 0xC8, 0xC8, 0xC8, 0x22, 0x02, 0xC8}, {0xCA, 0xCA, 0x20, 0x20, 0x20, 0x01, 0xCA},
    {0xCB, 0xCB, 0x41, 0x41, 0x41, 0x01, 0xCB}, {0xCC, 0xCC, 0x41, 0x41, 0x41, 0x03, 0xCC},
    {0xCD, 0xCD, 0x4F, 0x4F, 0x4F, 0x02, 0xCD}, {0xCE, 0xCE, 0xCE, 0xCE, 0xAE, 0x02, 0xCE},
    {0xCF, 0xCE, 0xCF, 0xCE, 0xAE, 0x03, 0xCE}, {0xD2, 0xD2, 0xD2, 0xD2, 0x22, 0x03, 0xD2},
    {0xD3, 0xD3, 0xD3, 0xD3, 0x22, 0x04, 0xD3}, {0xD4, 0xD4, 0xD4, 0xD4, 0x27, 0x01, 0xD4},
    {0xD5, 0xD5, 0xD5, 0xD5, 0x27, 0x02, 0xD5}, {0xD8, 0xD8, 0x79, 0x59, 0x59, 0x00, 0xD9},
    {0xD9, 0xD9, 0xD9, 0xD9, 0xD9, 0x00, 0xD9},
};
static_assert(std::size(kRows) == 53);

// The row of a character; what no row names folds as ASCII does, or not at all.
Row RowOf(UInt8 inCode) {
    for (const Row& row : kRows)
        if (row.code == inCode) return row;
    const bool isSmall = inCode >= 'a' && inCode <= 'z';
    const UInt8 capital = UInt8(isSmall ? inCode - 32 : inCode);
    return {inCode, capital, inCode, capital, capital, UInt8(isSmall ? 0x80 : 0), capital};
}

std::basic_string<UInt8> Pascal(UInt8 inCode) {
    return {1, inCode};
}

UInt8 UpperOf(UInt8 inCode, bool inMarksCount) {
    Str255 string = {1, inCode};
    UpperString(string, inMarksCount);
    EXPECT_EQ(string[0], 1);
    return string[1];
}

UInt8 ChangedBy(void (*inCall)(Ptr, SInt16, ScriptCode), UInt8 inCode) {
    char text = char(inCode);
    inCall(&text, 1, smRoman);
    return UInt8(text);
}

template <class Check>
void ForEachCode(Check inCheck) {
    for (unsigned code = 0; code < 256; ++code) {
        SCOPED_TRACE(testing::Message() << std::hex << code);
        inCheck(UInt8(code));
    }
}

TEST(UpperString, FoldsEveryCharacterByItsRow) {
    ForEachCode([](UInt8 code) {
        EXPECT_EQ(UpperOf(code, true), RowOf(code).capital);
        EXPECT_EQ(UpperOf(code, false), RowOf(code).unmarkedCapital);
    });
}

TEST(UpperString, KeepsTheGraveAccentFoldingToASmallA) {
    EXPECT_EQ(UpperOf('`', true), 'a');
    EXPECT_EQ(UpperOf('`', false), 'a');
}

TEST(UppercaseText, ChangesEveryCharacterByItsRow) {
    ForEachCode(
        [](UInt8 code) { EXPECT_EQ(ChangedBy(UppercaseText, code), RowOf(code).textCapital); });
}

TEST(LowercaseText, UndoesUppercaseText) {
    std::set<UInt8> capitals;
    ForEachCode([&](UInt8 code) {
        const UInt8 capital = RowOf(code).textCapital;
        if (capital == code) return;
        capitals.insert(capital);
        EXPECT_EQ(ChangedBy(LowercaseText, capital), code);
    });
    ForEachCode([&](UInt8 code) {
        const bool isCapital = capitals.count(code) != 0;
        EXPECT_EQ(ChangedBy(LowercaseText, code) == code, !isCapital);
    });
    EXPECT_EQ(capitals.size(), 26u + 29u);
}

TEST(StripDiacritics, ChangesEveryCharacterByItsRow) {
    ForEachCode(
        [](UInt8 code) { EXPECT_EQ(ChangedBy(StripDiacritics, code), RowOf(code).unmarked); });
}

TEST(UppercaseStripDiacritics, TakesMarksAndCaseButNotTheGraveAccent) {
    ForEachCode([](UInt8 code) {
        const UInt8 expected = code == '`' ? code : RowOf(code).unmarkedCapital;
        EXPECT_EQ(ChangedBy(UppercaseStripDiacritics, code), expected);
    });
}

using TextCall = void (*)(Ptr, SInt16, ScriptCode);
constexpr TextCall kTextCalls[] = {UppercaseText, LowercaseText, StripDiacritics,
                                   UppercaseStripDiacritics};

TEST(UppercaseTextAndItsNeighbours, ChangeOnlyTheGivenLength) {
    char text[] = "aaa";
    UppercaseText(text, 2, smSystemScript);
    EXPECT_STREQ(text, "AAa");
    for (const TextCall call : kTextCalls) {
        call(text, 0, smRoman);
        call(text, -1, smRoman);
        call(nullptr, 0, smRoman);
    }
    EXPECT_STREQ(text, "AAa");
}

TEST(UppercaseTextAndItsNeighbours, LeaveTextOfAScriptWithoutTablesAlone) {
    for (const TextCall call : kTextCalls) {
        char text[] = "a\x8E\x83";
        call(text, 3, 1);  // Japanese
        EXPECT_STREQ(text, "a\x8E\x83");
        EXPECT_EQ(ResError(), resNotFound);
        call(text, 3, smCurrentScript);
        EXPECT_EQ(ResError(), noErr);
    }
}

TEST(EqualString, FoldsEveryPairOfCharactersByTheirRows) {
    // The hard space equals the space whatever counts.
    const auto spaced = [](UInt8 c) { return c == 0xCA ? UInt8(' ') : c; };
    ForEachCode([&](UInt8 a) {
        ForEachCode([&](UInt8 b) {
            const Row x = RowOf(a), y = RowOf(b);
            const auto one = Pascal(a), two = Pascal(b);
            EXPECT_EQ(EqualString(one.data(), two.data(), true, true), spaced(a) == spaced(b));
            EXPECT_EQ(EqualString(one.data(), two.data(), false, true),
                      spaced(x.capital) == spaced(y.capital));
            EXPECT_EQ(EqualString(one.data(), two.data(), true, false),
                      spaced(x.unmarked) == spaced(y.unmarked));
            EXPECT_EQ(EqualString(one.data(), two.data(), false, false),
                      spaced(x.unmarkedCapital) == spaced(y.unmarkedCapital));
        });
    });
}

TEST(CompareText, OrdersEveryPairOfCharactersByTheirRows) {
    ForEachCode([](UInt8 a) {
        ForEachCode([&](UInt8 b) {
            const Row x = RowOf(a), y = RowOf(b);
            const int first = x.primary * 256 + x.secondary, second = y.primary * 256 + y.secondary;
            EXPECT_EQ(CompareText(&a, &b, 1, 1, nullptr), (first > second) - (first < second));
            EXPECT_EQ(IdenticalText(&a, &b, 1, 1, nullptr), x.primary != y.primary);
        });
    });
}

}  // namespace
