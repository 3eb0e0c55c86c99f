// Comparing names and texts.
#include <Carbon/StringCompare.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string Pascal(const std::string& inText) {
    return char(inText.size()) + inText;
}

ConstStr255Param Bytes(const std::string& inPascal) {
    return reinterpret_cast<ConstStr255Param>(inPascal.data());
}

bool Equal(const std::string& inA, const std::string& inB, bool inCase, bool inMarks) {
    return EqualString(Bytes(Pascal(inA)), Bytes(Pascal(inB)), inCase, inMarks);
}

int Rel(const std::string& inA, const std::string& inB, bool inCase = true, bool inMarks = true) {
    return RelString(Bytes(Pascal(inA)), Bytes(Pascal(inB)), inCase, inMarks);
}

int Compare(const std::string& inA, const std::string& inB) {
    const int order = CompareString(Bytes(Pascal(inA)), Bytes(Pascal(inB)), nullptr);
    EXPECT_EQ(CompareText(inA.data(), inB.data(), SInt16(inA.size()), SInt16(inB.size()), nullptr),
              order);
    return order;
}

int Identical(const std::string& inA, const std::string& inB) {
    const int differ = IdenticalString(Bytes(Pascal(inA)), Bytes(Pascal(inB)), nullptr);
    EXPECT_EQ(
        IdenticalText(inA.data(), inB.data(), SInt16(inA.size()), SInt16(inB.size()), nullptr),
        differ);
    return differ;
}

TEST(EqualString, NeedsEqualLengths) {
    EXPECT_TRUE(Equal("", "", true, true));
    EXPECT_FALSE(Equal("ab", "abc", false, false));
    EXPECT_FALSE(Equal("abc", "ab", false, false));
    EXPECT_TRUE(Equal(std::string(255, 'x'), std::string(255, 'X'), false, true));
}

TEST(EqualString, KeepsCaseOfLettersWhoseCapitalsLieAboveD8) {
    EXPECT_TRUE(Equal("\x83", "\x8E", false, true));   // E and e acute
    EXPECT_FALSE(Equal("\xE7", "\x87", false, true));  // A and a acute
}

// One group a line: characters as themselves, 80 and above in octal-free hexadecimal escapes.
const std::vector<std::string> kNamesInOrder = {
    "!\"",
    "\xD2\xD3\xC7\xC8",
    "#$%&'",
    "\xD4\xD5",
    "()*+,-./0123456789:;<=>?@",
    "A",
    "\xCB\x80\xCC\x81\xAE",
    "a",
    "\x87\x88\x89\x8A\x8B\x8C\xBB\xBE",
    "Bb",
    "C",
    "\x82",
    "c",
    "\x8D",
    "Dd",
    "E",
    "\x83",
    "e",
    "\x8E\x8F\x90\x91",
    "FfGgHh",
    "Ii",
    "\x92\x93\x94\x95",
    "JjKkLlMm",
    "N",
    "\x84",
    "n",
    "\x96",
    "O",
    "\x85\xCD\xAF\xCE",
    "o",
    "\x97\x98\x99\x9A\x9B\xBF\xBC\xCF",
    "PpQqRrSs",
    "\xA7",
    "Tt",
    "U",
    "\x86",
    "u",
    "\x9C\x9D\x9E\x9F",
    "VvWwXxYy",
    "\xD8",
    "Zz",
    "[\\]^_`{|}~\x7F",
    "\xA0\xA1\xA2\xA3\xA4\xA5\xA6",
    "\xA8\xA9\xAA\xAB\xAC\xAD",
    "\xB0\xB1\xB2\xB3\xB4\xB5\xB6\xB7\xB8\xB9\xBA",
    "\xBD",
    "\xC0\xC1\xC2\xC3\xC4\xC5\xC6",
    "\xC9",
    "\xD0\xD1\xD6\xD7\xD9",
    "\xDA\xDB\xDC\xDD\xDE\xDF",
    "\xE0\xE1\xE2\xE3\xE4\xE5\xE6\xE7\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF",
    "\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8\xF9\xFA\xFB\xFC\xFD\xFE\xFF"};

std::string AllInOrder() {
    std::string all;
    for (char c = 0; c <= ' '; ++c) all += c;
    for (const std::string& group : kNamesInOrder) all += group;
    return all;
}

TEST(RelString, OrdersAllCharactersAsNamesSort) {
    const std::string all = AllInOrder();
    ASSERT_EQ(all.size(), 255u);  // all but the hard space
    for (size_t i = 0; i < all.size(); ++i)
        for (size_t j = 0; j < all.size(); ++j)
            ASSERT_EQ(Rel({all[i]}, {all[j]}), (i > j) - (i < j)) << i << ' ' << j;
}

TEST(RelString, TakesTheHardSpaceForASpaceWhateverCounts) {
    for (const bool caseCounts : {false, true})
        for (const bool marksCount : {false, true}) {
            EXPECT_EQ(Rel(" ", "\xCA", caseCounts, marksCount), 0);
            EXPECT_LT(Rel("\xCA", "!", caseCounts, marksCount), 0);
            EXPECT_GT(Rel("\xCA", "\x1F", caseCounts, marksCount), 0);
        }
}

TEST(RelString, FoldsBeforeItCompares) {
    EXPECT_EQ(Rel("resume", "RESUME", false, true), 0);
    EXPECT_EQ(Rel("r\x8Esum\x8E", "resume", true, false), 0);
    EXPECT_GT(Rel("r\x8Esum\x8E", "resume", false, true), 0);
    EXPECT_LT(Rel("abc", "ABD", false, true), 0);
    EXPECT_GT(Rel("abc", "ABD", true, true), 0);
}

TEST(RelString, KeepsTheGraveAccentWhereTheSmallALies) {
    EXPECT_GT(Rel("`", "\xAE", false, true), 0);
    EXPECT_LT(Rel("`", "B", false, true), 0);
    EXPECT_GT(Rel("`", "z", true, true), 0);
}

TEST(RelString, PutsTheShorterFirst) {
    EXPECT_LT(Rel("ab", "abc"), 0);
    EXPECT_GT(Rel("abc", "ab"), 0);
    EXPECT_LT(Rel("", "\x01"), 0);
    EXPECT_EQ(Rel("", ""), 0);
}

TEST(CompareString, PutsLettersBeforeCaseAndMarks) {
    EXPECT_EQ(Compare("a", "B"), -1);
    EXPECT_EQ(Compare("a", "A"), 1);
    EXPECT_EQ(Compare("A", "a"), -1);
    EXPECT_EQ(Compare("r\x8Esum\x8E", "resume"), 1);
    EXPECT_EQ(Compare("r\x8Esum\x8E", "resumes"), -1);
    EXPECT_EQ(Compare("resume", "r\x8Esum"), 1);
    EXPECT_EQ(Compare(" ", "\xCA"), -1);
    EXPECT_EQ(Compare("same", "same"), 0);
    EXPECT_EQ(Compare("", ""), 0);
    EXPECT_EQ(Compare("", "a"), -1);
    EXPECT_EQ(Compare("aB", "Ab"), 1) << "the first difference in case decides";
}

TEST(IdenticalString, KeepsZeroForTextsThatAreAlike) {
    EXPECT_EQ(Identical("Rose", "ros\x8E"), 0);
    EXPECT_EQ(Identical("r\x8Esum\x8E", "RESUME"), 0);
    EXPECT_EQ(Identical(" ", "\xCA"), 0);
    EXPECT_EQ(Identical("", ""), 0);
    EXPECT_EQ(Identical("Rose", "Roses"), 1);
    EXPECT_EQ(Identical("Rose", "Rise"), 1);
}

TEST(CompareText, CountsALengthBelowZeroAsNone) {
    EXPECT_EQ(CompareText("a", "b", -1, -5, nullptr), 0);
    EXPECT_EQ(CompareText("a", "b", -1, 1, nullptr), -1);
    EXPECT_EQ(IdenticalText("a", "b", -1, 0, nullptr), 0);
    EXPECT_EQ(CompareText(nullptr, nullptr, 0, 0, nullptr), 0);
}

TEST(CompareText, ReachesOverAllOfALongText) {
    std::string one(32767, 'x'), two = one;
    two.back() = 'y';
    EXPECT_EQ(CompareText(one.data(), two.data(), 32767, 32767, nullptr), -1);
}

}  // namespace
