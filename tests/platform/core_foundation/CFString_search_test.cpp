// Comparing, finding and replacing.
#include <unicode/unistr.h>

#include <random>

#include "CFSupport.h"

namespace {

enum : CFOptionFlags {
    kInsensitive = kCFCompareCaseInsensitive,
    kBackwards = kCFCompareBackwards,
    kAnchored = kCFCompareAnchored,
    kNonliteral = kCFCompareNonliteral
};

CFComparisonResult Compare(std::u16string_view inOne, std::u16string_view inOther,
                           CFOptionFlags inFlags = 0) {
    return CFStringCompare(Units(inOne), Units(inOther), inFlags);
}

CFRange Find(std::u16string_view inText, std::u16string_view inNeedle, CFOptionFlags inFlags = 0) {
    return CFStringFind(Units(inText), Units(inNeedle), inFlags);
}

constexpr CFRange kNowhere = {kCFNotFound, 0};

TEST(CFStringCompare, OrdersByCodePointsAndPutsAPrefixFirst) {
    EXPECT_EQ(Compare(u"a", u"b"), kCFCompareLessThan);
    EXPECT_EQ(Compare(u"b", u"ab"), kCFCompareGreaterThan);
    EXPECT_EQ(Compare(u"ab", u"abc"), kCFCompareLessThan);
    EXPECT_EQ(Compare(u"", u""), kCFCompareEqualTo);
    EXPECT_EQ(Compare(u"\xFFFD", u"\xD83D\xDE00"), kCFCompareLessThan);
    EXPECT_EQ(Compare(u"a", u"A"), kCFCompareGreaterThan);
}

TEST(CFStringCompare, DoesNotNormalizeUnlessAsked) {
    EXPECT_NE(Compare(u"\xE9", u"e\x301"), kCFCompareEqualTo);
    EXPECT_EQ(Compare(u"\xE9", u"e\x301", kNonliteral), kCFCompareEqualTo);
    EXPECT_EQ(Compare(u"\xC9", u"e\x301", kNonliteral | kInsensitive), kCFCompareEqualTo);
}

TEST(CFStringCompare, FoldsEachCharacterByItself) {
    EXPECT_EQ(Compare(u"STRASSE", u"strasse", kInsensitive), kCFCompareEqualTo);
    EXPECT_EQ(Compare(u"\x3C3\x3C2\x3A3", u"\x3A3\x3A3\x3C2", kInsensitive), kCFCompareEqualTo);
    EXPECT_NE(Compare(u"\xDF", u"ss", kInsensitive), kCFCompareEqualTo);
    EXPECT_EQ(Compare(u"_", u"A", kInsensitive), kCFCompareLessThan);
}

TEST(CFStringCompare, CountsDigitsByValueWhenAsked) {
    EXPECT_EQ(Compare(u"a2", u"a10"), kCFCompareGreaterThan);
    EXPECT_EQ(Compare(u"a2", u"a10", kCFCompareNumerically), kCFCompareLessThan);
    EXPECT_EQ(Compare(u"a01b", u"a1b", kCFCompareNumerically), kCFCompareEqualTo);
    EXPECT_EQ(Compare(u"a01b", u"a1c", kCFCompareNumerically), kCFCompareLessThan);
    EXPECT_EQ(Compare(u"1a", u"a", kCFCompareNumerically), kCFCompareLessThan);
}

TEST(CFStringCompare, LooksAtARangeOfTheFirstStringOnly) {
    EXPECT_EQ(CFStringCompareWithOptions(CFSTR("xabcx"), CFSTR("abc"), CFRangeMake(1, 3), 0),
              kCFCompareEqualTo);
    EXPECT_EQ(CFStringCompareWithOptions(CFSTR("xabcx"), CFSTR("abc"), CFRangeMake(1, 99), 0),
              kCFCompareGreaterThan);
}

TEST(CFStringFind, FindsTheFirstOrLastMatch) {
    EXPECT_EQ(Find(u"abcabc", u"bc"), (CFRange{1, 2}));
    EXPECT_EQ(Find(u"abcabc", u"bc", kBackwards), (CFRange{4, 2}));
    EXPECT_EQ(Find(u"abc", u"x"), kNowhere);
    EXPECT_EQ(Find(u"ab", u"abc"), kNowhere);
    EXPECT_EQ(Find(u"aabaabaaab", u"aabaaa"), (CFRange{3, 6}));
}

TEST(CFStringFind, NeverFindsAnEmptyText) {
    EXPECT_EQ(Find(u"abc", u""), kNowhere);
    EXPECT_EQ(Find(u"", u""), kNowhere);
    EXPECT_EQ(Find(u"abc", u"", kInsensitive | kBackwards | kAnchored), kNowhere);
    EXPECT_EQ(Find(u"", u"a"), kNowhere);
}

TEST(CFStringFind, IsHeldToOneEndWhenAnchored) {
    EXPECT_EQ(Find(u"abab", u"ab", kAnchored), (CFRange{0, 2}));
    EXPECT_EQ(Find(u"abab", u"ab", kAnchored | kBackwards), (CFRange{2, 2}));
    EXPECT_EQ(Find(u"xab", u"ab", kAnchored), kNowhere);
    EXPECT_EQ(Find(u"abx", u"ab", kAnchored | kBackwards), kNowhere);
    EXPECT_EQ(Find(u"Read.TXT", u".txt", kInsensitive | kBackwards | kAnchored), (CFRange{4, 4}));
}

TEST(CFStringFind, FoldsCaseFully) {
    EXPECT_EQ(Find(u"die stra\xDF"
                   u"e",
                   u"STRASSE", kInsensitive),
              (CFRange{4, 6}));
    EXPECT_EQ(Find(u"strasse",
                   u"stra\xDF"
                   u"e",
                   kInsensitive),
              (CFRange{0, 7}));
    EXPECT_EQ(Find(u"stra\xDF"
                   u"e",
                   u"s", kInsensitive | kBackwards),
              (CFRange{0, 1}));
    EXPECT_EQ(Find(u"\xD801\xDC00", u"\xD801\xDC28", kInsensitive), (CFRange{0, 2}));
    EXPECT_EQ(Find(u"x\xFB01x", u"FI", kInsensitive), (CFRange{1, 1}));
}

TEST(CFStringFind, MatchesCanonicalEquivalentsOnlyWhenNonliteral) {
    EXPECT_EQ(Find(u"xe\x301x", u"\xE9"), kNowhere);
    EXPECT_EQ(Find(u"xe\x301x", u"\xE9", kNonliteral), (CFRange{1, 2}));
    EXPECT_EQ(Find(u"x\xE9x", u"e\x301", kNonliteral), (CFRange{1, 1}));
    EXPECT_EQ(Find(u"xe\x301x", u"e"), (CFRange{1, 1}));
    EXPECT_EQ(Find(u"xe\x301x", u"e", kNonliteral), kNowhere);
    EXPECT_EQ(Find(u"x\xE9x", u"e", kNonliteral), kNowhere);
    EXPECT_EQ(Find(u"x\xC9x", u"e\x301", kNonliteral | kInsensitive), (CFRange{1, 1}));
    EXPECT_EQ(Find(u"a\x323\x307", u"a\x307\x323", kNonliteral | kBackwards), (CFRange{0, 3}));
}

TEST(CFStringFind, IgnoresNumericAndLocalizedFlags) {
    EXPECT_EQ(Find(u"a01", u"1", kCFCompareNumerically | kCFCompareLocalized), (CFRange{2, 1}));
    EXPECT_EQ(Find(u"a01", u"a1", kCFCompareNumerically), kNowhere);
}

TEST(CFStringFind, LeavesTheResultAloneWhenNothingIsFound) {
    CFRange range = {7, 8};
    EXPECT_FALSE(CFStringFindWithOptions(CFSTR("abc"), CFSTR("x"), CFRangeMake(0, 3), 0, &range));
    for (const CFRange bad : {CFRange{-1, 2}, CFRange{0, 4}, CFRange{0, 0}, CFRange{2, -1}}) {
        EXPECT_FALSE(CFStringFindWithOptions(CFSTR("abc"), CFSTR("a"), bad, 0, &range)) << bad;
    }
    EXPECT_EQ(range, (CFRange{7, 8}));
    EXPECT_TRUE(CFStringFindWithOptions(CFSTR("abc"), CFSTR("b"), CFRangeMake(0, 3), 0, nullptr));
    EXPECT_FALSE(CFStringFindWithOptions(CFSTR("abc"), CFSTR("c"), CFRangeMake(0, 2), 0, nullptr));
}

TEST(CFStringHasPrefix, IsLiteralAndFalseForAnEmptyText) {
    EXPECT_TRUE(CFStringHasPrefix(CFSTR("abc"), CFSTR("ab")));
    EXPECT_FALSE(CFStringHasPrefix(CFSTR("abc"), CFSTR("AB")));
    EXPECT_FALSE(CFStringHasPrefix(CFSTR("abc"), CFSTR("")));
    EXPECT_TRUE(CFStringHasSuffix(CFSTR("abc"), CFSTR("bc")));
    EXPECT_FALSE(CFStringHasSuffix(CFSTR("abc"), CFSTR("")));
}

// Texts of few different letters, so that there are many near misses.
std::u16string RandomText(std::mt19937* ioRandom, size_t inMost) {
    std::u16string text(std::uniform_int_distribution<size_t>(0, inMost)(*ioRandom), u' ');
    for (char16_t& unit : text)
        unit = u"abAB\x301"[std::uniform_int_distribution<int>(0, 4)(*ioRandom)];
    return text;
}

TEST(CFStringFind, AgreesWithAPlainSearchOnGeneratedTexts) {
    std::mt19937 random(1);
    for (int i = 0; i < 3000; ++i) {
        const std::u16string text = RandomText(&random, 40), needle = RandomText(&random, 4);
        if (needle.empty()) continue;
        const auto expected = [&](size_t inPlace) {
            return inPlace == text.npos ? kNowhere
                                        : CFRange{CFIndex(inPlace), CFIndex(needle.size())};
        };
        EXPECT_EQ(Find(text, needle), expected(text.find(needle)));
        EXPECT_EQ(Find(text, needle, kBackwards), expected(text.rfind(needle)));
    }
}

TEST(CFStringFind, AgreesWithFoldedTextsOnGeneratedTexts) {
    std::mt19937 random(2);
    const auto folded = [](const std::u16string& inText) {
        return icu::UnicodeString(inText.data(), int32_t(inText.size())).foldCase();
    };
    for (int i = 0; i < 3000; ++i) {
        const std::u16string text = RandomText(&random, 40), needle = RandomText(&random, 4);
        if (needle.empty()) continue;
        const int32_t place = folded(text).indexOf(folded(needle));
        EXPECT_EQ(Find(text, needle, kInsensitive).location, place);
    }
}

std::string Replaced(const char* inText, const char* inNeedle, const char* inWith,
                     CFOptionFlags inFlags = 0) {
    const auto string = MutableStr(inText);
    CFStringFindAndReplace(string, Str(inNeedle), Str(inWith),
                           CFRangeMake(0, CFStringGetLength(string)), inFlags);
    return Text(string);
}

TEST(CFStringFindAndReplace, ReplacesWithoutOverlapAndWithoutRescanning) {
    EXPECT_EQ(Replaced("AAAAA", "AA", "B"), "BBA");
    EXPECT_EQ(Replaced("AAAAA", "AA", "B", kBackwards), "ABB");
    EXPECT_EQ(Replaced("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(Replaced("aXbxc", "x", "", kInsensitive), "abc");
    EXPECT_EQ(Replaced("abc", "", "x"), "abc");
    EXPECT_EQ(Replaced("aaba", "a", "x", kAnchored), "xxba");
    EXPECT_EQ(Replaced("aabaa", "a", "x", kAnchored | kBackwards), "aabxx");
}

TEST(CFStringFindAndReplace, StaysInsideItsRangeAndCounts) {
    const auto string = MutableStr("aaaa");
    EXPECT_EQ(CFStringFindAndReplace(string, CFSTR("a"), CFSTR("b"), CFRangeMake(1, 2), 0), 2);
    EXPECT_EQ(Text(string), "abba");
    EXPECT_EQ(CFStringFindAndReplace(string, CFSTR("a"), CFSTR("b"), CFRangeMake(1, 9), 0), 0);
    EXPECT_EQ(Text(string), "abba");
}

TEST(CFStringFindAndReplace, IsDoneInOnePassOverALargeText) {
    std::string text;
    for (int i = 0; i < 1 << 19; ++i) text += "ab";
    const auto string = MutableStr(text);
    EXPECT_EQ(CFStringFindAndReplace(string, CFSTR("a"), CFSTR("xyz"), CFRangeMake(0, 1 << 20), 0),
              1 << 19);
    EXPECT_EQ(CFStringGetLength(string), 4 << 19);
    EXPECT_EQ(CFStringFind(string, Str(std::string(5000, 'z') + "q"), kInsensitive), kNowhere);
}

TEST(CFStringReplace, ClampsWhatLiesOutside) {
    const auto replaced = [](CFRange inRange) {
        const auto string = MutableStr("abc");
        CFStringReplace(string, inRange, CFSTR("X"));
        return Text(string);
    };
    EXPECT_EQ(replaced({1, 1}), "aXc");
    EXPECT_EQ(replaced({-1, 0}), "Xabc");
    EXPECT_EQ(replaced({9, 0}), "abcX");
    EXPECT_EQ(replaced({1, -5}), "aXbc");
    EXPECT_EQ(replaced({2, 9}), "abX");
    EXPECT_EQ(replaced({1, INT32_MAX}), "aX");
}

TEST(CFStringReplace, MayTakeTheStringItself) {
    const auto string = MutableStr("abc");
    CFStringReplace(string, CFRangeMake(1, 1), string);
    EXPECT_EQ(Text(string), "aabcc");
    CFStringAppend(string, string);
    EXPECT_EQ(Text(string), "aabccaabcc");
    CFStringReplaceAll(string, string);
    EXPECT_EQ(Text(string), "aabccaabcc");
}

TEST(CFStringEditing, AppendsAMillionPiecesInLinearTime) {
    const Ref<CFMutableStringRef> string(CFStringCreateMutable(nullptr, 0));
    const UniChar unit = 'x';
    for (int i = 0; i < 1'000'000; ++i) CFStringAppendCharacters(string, &unit, 1);
    EXPECT_EQ(CFStringGetLength(string), 1'000'000);
}

TEST(CFStringEditing, KeepsToTheLimitOfTheString) {
    const Ref<CFMutableStringRef> string(CFStringCreateMutable(nullptr, 4));
    CFStringAppendCString(string, "abcdef", kCFStringEncodingUTF8);
    EXPECT_EQ(Text(string), "abcd");
    CFStringInsert(string, 1, CFSTR("X"));
    EXPECT_EQ(Text(string), "aXbc");
}

TEST(CFStringEditing, LeavesImmutableStringsAlone) {
    const auto string = Str("abc");
    auto* forced = const_cast<CFMutableStringRef>(static_cast<CFStringRef>(string));
    CFStringAppend(forced, CFSTR("x"));
    CFStringTrim(forced, CFSTR("a"));
    EXPECT_EQ(CFStringFindAndReplace(forced, CFSTR("a"), CFSTR("x"), CFRangeMake(0, 3), 0), 0);
    EXPECT_EQ(Text(string), "abc");
}

TEST(CFStringEditing, PadsTrimsAndDeletes) {
    const auto string = MutableStr("ab");
    CFStringPad(string, CFSTR("123"), 7, 1);
    EXPECT_EQ(Text(string), "ab23123");
    CFStringPad(string, nullptr, 2, 0);
    EXPECT_EQ(Text(string), "ab");
    CFStringReplaceAll(string, CFSTR("--- x -----"));
    CFStringTrim(string, CFSTR("--"));
    EXPECT_EQ(Text(string), "- x -");
    CFStringReplaceAll(string, Units(u"\x3000\t x y \n\x2028"));
    CFStringTrimWhitespace(string);
    EXPECT_EQ(Text(string), "x y");
    CFStringDelete(string, CFRangeMake(1, 1));
    EXPECT_EQ(Text(string), "xy");
}

TEST(CFStringPieces, KeepEmptyPiecesAndComeTogetherAgain) {
    const Ref<CFArrayRef> pieces(
        CFStringCreateArrayBySeparatingStrings(nullptr, CFSTR(",a,,b"), CFSTR(",")));
    ASSERT_EQ(CFArrayGetCount(pieces), 4);
    EXPECT_EQ(TextOf(CFStringCreateByCombiningStrings(nullptr, pieces, CFSTR("--"))), "--a----b");
    const Ref<CFArrayRef> whole(
        CFStringCreateArrayBySeparatingStrings(nullptr, CFSTR("ab"), CFSTR("x")));
    ASSERT_EQ(CFArrayGetCount(whole), 1);
    EXPECT_EQ(Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(whole, 0))), "ab");
    const Ref<CFArrayRef> empty(
        CFStringCreateArrayBySeparatingStrings(nullptr, CFSTR(""), CFSTR("x")));
    EXPECT_EQ(CFArrayGetCount(empty), 1);
}

TEST(CFStringComposedCharacters, HoldMarksAndSurrogatesTogether) {
    const auto string = Units(u"ae\x301\xD83D\xDE00z");
    EXPECT_EQ(CFStringGetRangeOfComposedCharactersAtIndex(string, 0), (CFRange{0, 1}));
    EXPECT_EQ(CFStringGetRangeOfComposedCharactersAtIndex(string, 2), (CFRange{1, 2}));
    EXPECT_EQ(CFStringGetRangeOfComposedCharactersAtIndex(string, 3), (CFRange{3, 2}));
    EXPECT_EQ(CFStringGetRangeOfComposedCharactersAtIndex(string, 4), (CFRange{3, 2}));
    EXPECT_EQ(CFStringGetRangeOfComposedCharactersAtIndex(string, 6), kNowhere);
}

}  // namespace
