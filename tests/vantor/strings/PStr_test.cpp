// Plain functions over Pascal and C strings.
#include "vantor/strings/PStr.h"

#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/PascalString.h"

namespace {

// A string that can be edited; what lies behind its text is '#'.
struct Buffer {
    explicit Buffer(const std::string& inText) {
        std::memset(bytes, '#', sizeof bytes);
        std::memcpy(bytes, static_cast<ConstStringPtr>(PString(inText)), inText.size() + 1);
    }
    operator StringPtr() { return bytes; }
    std::string Text() const { return TextOf(bytes); }
    Str255 bytes;
};

std::string Letters(size_t inCount) {
    return std::string(inCount, 'a');
}

// Japanese for a while, with the table of the current script built anew before and after.
class Japanese {
  public:
    Japanese() { Switch(smJapanese); }
    ~Japanese() { Switch(smRoman); }

  private:
    static void Switch(ScriptCode inScript) {
        PlatformSetCurrentScript(inScript);
        InterruptSafeCharacterByteType("", -1, smGreek);
    }
};

TEST(PMemEqual, IsTrueForNoBytes) {
    EXPECT_TRUE(PMemEqual("a", "b", 0));
    EXPECT_TRUE(PMemEqual("a", "b", -5));
    EXPECT_TRUE(PMemEqual("abc", "abd", 2));
    EXPECT_FALSE(PMemEqual("abc", "abd", 3));
}

TEST(PStrEqual, TellsLengthsAndCaseApart) {
    EXPECT_TRUE(PStrEqual(PString("abc"), PString("abc")));
    EXPECT_FALSE(PStrEqual(PString("abc"), PString("abC")));
    EXPECT_FALSE(PStrEqual(PString("abc"), PString("ab")));
    EXPECT_TRUE(PStrEqual(PString(""), PString("")));
    EXPECT_TRUE(PStrEqual(PString(Letters(255)), PString(Letters(255))));
}

TEST(PStrNEqual, IsFalseWhenEitherStringIsTooShort) {
    EXPECT_TRUE(PStrNEqual(PString("abc"), PString("abd"), 2));
    EXPECT_FALSE(PStrNEqual(PString("abc"), PString("abd"), 3));
    EXPECT_FALSE(PStrNEqual(PString("ab"), PString("ab"), 3));
    EXPECT_TRUE(PStrNEqual(PString("a"), PString("b"), 0));
    EXPECT_TRUE(PStrNEqual(PString(""), PString("b"), -1));
}

TEST(PStrContains, FindsThePartAnywhere) {
    EXPECT_TRUE(PStrContains(PString("abc"), PString("")));
    EXPECT_TRUE(PStrContains(PString(""), PString("")));
    EXPECT_TRUE(PStrContains(PString("abc"), PString("bc")));
    EXPECT_FALSE(PStrContains(PString("abc"), PString("cb")));
    EXPECT_FALSE(PStrContains(PString("ab"), PString("abc")));
    EXPECT_TRUE(PStrContainsChar(PString("abc"), 'c'));
    EXPECT_FALSE(PStrContainsChar(PString(""), '\0'));
    EXPECT_TRUE(PStrEndsWith(PString("abc"), PString("bc")));
    EXPECT_TRUE(PStrEndsWith(PString("abc"), PString("")));
    EXPECT_FALSE(PStrEndsWith(PString("bc"), PString("abc")));
}

TEST(PStrCopy, CopiesShortAndLongStrings) {
    for (const size_t length : {0u, 9u, 10u, 255u}) {
        Buffer copy("");
        PStrCopy(PString(Letters(length)), copy);
        EXPECT_EQ(copy.Text(), Letters(length));
    }
}

TEST(PStrNCopy, CutsAndMayCopyOntoItself) {
    Buffer copy("");
    PStrNCopy(PString("abcdef"), copy, 3);
    EXPECT_EQ(copy.Text(), "abc");
    PStrNCopy(PString("ab"), copy, 3);
    EXPECT_EQ(copy.Text(), "ab");
    PStrNCopy(PString("ab"), copy, 0);
    EXPECT_EQ(copy.Text(), "");
    PStrNCopy(PString("ab"), copy, -1);
    EXPECT_EQ(copy.Text(), "");
    PStrNCopy(PString(Letters(255)), copy, 255);
    EXPECT_EQ(copy.Text(), Letters(255));
    Buffer own("abcdef");
    PStrNCopy(own, own, 4);
    EXPECT_EQ(own.Text(), "abcd");
}

TEST(PStrNCopy, LeavesNoHalfCharacterAtTheEnd) {
    const Japanese japanese;
    Buffer copy("");
    PStrNCopy(PString("a\x83\x41\x83\x42"), copy, 3);
    EXPECT_EQ(copy.Text(), "a\x83\x41");
    PStrNCopy(PString("a\x83\x41\x83\x42"), copy, 2);
    EXPECT_EQ(copy.Text(), "a");
    PStrNCopy(PString("a\x83\x41\x83\x42"), copy, 4);
    EXPECT_EQ(copy.Text(), "a\x83\x41");
}

TEST(CStrNCopy, LeavesTheDestinationUntouchedForNoCharacters) {
    char copy[8] = "untouch";
    CStrNCopy("abc", copy, 0);
    CStrNCopy("abc", copy, -1);
    EXPECT_STREQ(copy, "untouch");
    CStrNCopy("abc", copy, 2);
    EXPECT_STREQ(copy, "ab");
    CStrNCopy("abc", copy, 7);
    EXPECT_STREQ(copy, "abc");
    CStrNCopy(nullptr, copy, 7);
    EXPECT_STREQ(copy, "");
    const Japanese japanese;
    CStrNCopy("a\x83\x41z", copy, 2);
    EXPECT_STREQ(copy, "a");
}

TEST(PStrCat, AppendsWhatFits) {
    Buffer string(Letters(250));
    PStrCat(string, PString("0123456789"));
    EXPECT_EQ(string.Text(), Letters(250) + "01234");
    PAddChar(string, 'x');
    EXPECT_EQ(string.Text(), Letters(250) + "01234");
    Buffer number("n:");
    PAddBlank(number);
    PAddNum(number, -42);
    EXPECT_EQ(number.Text(), "n: -42");
}

TEST(PStrStripLeadingBlanks, KeepsTheLastCharacter) {
    Buffer string("   ");
    PStrStripLeadingBlanks(string, string);
    EXPECT_EQ(string.Text(), " ");
    PStrStripLeadingBlanks(PString("  a b "), string);
    EXPECT_EQ(string.Text(), "a b ");
    PStrStripLeadingBlanks(PString(""), string);
    EXPECT_EQ(string.Text(), "");
}

TEST(PLowerText, TouchesOnlyTheLettersOfAscii) {
    Buffer string("AZ@[\x83");
    PLowerString(string);
    EXPECT_EQ(string.Text(), "az@[\x83");
    char text[] = "ABC";
    PLowerText(text, -1);
    EXPECT_STREQ(text, "ABC");
    PStrUppercase(string);
    EXPECT_EQ(string.Text(), "AZ@[\x83");
    Buffer accented("\x8E");
    PStrUppercase(accented);
    EXPECT_EQ(accented.Text(), "\x83");
}

TEST(CStrLength, KeepsCountingInSixteenBits) {
    EXPECT_EQ(CStrLength(nullptr), 0);
    EXPECT_EQ(CStrLength("abc"), 3);
    EXPECT_EQ(CStrLength(Letters(300).c_str()), 300);
    EXPECT_EQ(CStrLength(Letters(40000).c_str()), 40000 - 65536);
}

TEST(CStrToPStr, TurnsStringsRoundInPlace) {
    char text[300] = "abc";
    EXPECT_EQ(TextOf(CStrToPStr(text)), "abc");
    EXPECT_STREQ(PStrToCStr(reinterpret_cast<StringPtr>(text)), "abc");
    std::strcpy(text, Letters(299).c_str());
    EXPECT_EQ(TextOf(CStrToPStr(text)), Letters(255));
    EXPECT_EQ(CStrToPStr(nullptr), nullptr);
    EXPECT_EQ(PStrToCStr(nullptr), nullptr);
}

TEST(PStrExtractSuffix, LooksAtTheLastSixCharacters) {
    Buffer name("archive.tar.gz"), suffix("old");
    PStrExtractSuffix(name, suffix);
    EXPECT_EQ(name.Text(), "archive.tar");
    EXPECT_EQ(suffix.Text(), ".gz");
    Buffer photo("photo.jpeg2000");
    PStrExtractSuffix(photo, suffix);
    EXPECT_EQ(photo.Text(), "photo.jpeg2000");
    EXPECT_EQ(suffix.Text(), "");
    Buffer five("a.12345"), six("a.123456"), dot(".");
    PStrExtractSuffix(five, suffix);
    EXPECT_EQ(suffix.Text(), ".12345");
    PStrExtractSuffix(six, suffix);
    EXPECT_EQ(suffix.Text(), "");
    PStrExtractSuffix(dot, suffix);
    EXPECT_EQ(dot.Text(), "");
    EXPECT_EQ(suffix.Text(), ".");
}

TEST(PStrRemoveSuffix, KeepsLookingAtTheByteBehindTheText) {
    Buffer name("photo.jpg");
    PStrRemoveSuffix(name);
    EXPECT_EQ(name.Text(), "photo");
    Buffer hidden("photo.jpg");
    hidden.bytes[10] = '.';
    PStrRemoveSuffix(hidden);
    EXPECT_EQ(hidden.Text(), "photo.jpg");
    Buffer full(Letters(251) + ".abc");
    PStrRemoveSuffix(full);
    EXPECT_EQ(full.Text(), Letters(251));
}

TEST(PStrHasSuffix, IgnoresCase) {
    EXPECT_TRUE(PStrHasSuffix(PString("READ.ME"), PString(".me")));
    EXPECT_FALSE(PStrHasSuffix(PString("READ.ME"), PString("me")));
    EXPECT_FALSE(PStrHasSuffix(PString("README"), PString(".me")));
}

std::string Plugged(const std::string& inText, ConstStr255Param inFirst,
                    ConstStr255Param inSecond = nullptr) {
    Buffer string(inText);
    PPlugParams(string, inFirst, inSecond, nullptr, nullptr);
    return string.Text();
}

TEST(PPlugParams, ReplacesEveryPlaceAndNothingElse) {
    EXPECT_EQ(Plugged("^0-^9", PString("AB")), "AB-^9");
    EXPECT_EQ(Plugged("^0-^9", nullptr), "-^9");
    EXPECT_EQ(Plugged("^0^0^1", PString("x"), PString("^0")), "xx^0");
    EXPECT_EQ(Plugged("end^", PString("x")), "end^");
    EXPECT_EQ(Plugged("^^0", PString("x")), "^^0");
    EXPECT_EQ(Plugged("^0^0", PString(Letters(200))), Letters(255));
    EXPECT_EQ(Plugged("^0b", PString(Letters(255))), Letters(255));
}

TEST(PStr2Double, ReadsTheNumberInFront) {
    EXPECT_EQ(PStr2Double(PString("2.5 GB")), 2.5);
    EXPECT_EQ(PStr2Double(PString("-1e3")), -1000);
    EXPECT_EQ(PStr2Double(PString("none")), 0);
    EXPECT_EQ(PStr2Double(PString("")), 0);
}

TEST(InterruptSafeCharacterByteType, WalksFromTheBeginning) {
    const char text[] = "a\x83\x83z";
    const SInt16 expected[] = {0, -1, 1, 0};
    for (SInt32 i = 0; i < 4; ++i) {
        EXPECT_EQ(InterruptSafeCharacterByteType(text, i, smJapanese), expected[i]) << i;
        EXPECT_EQ(InterruptSafeCharacterByteType(text, i, smRoman), 0);
    }
    EXPECT_EQ(InterruptSafeCharacterByteType(text, -1, smJapanese), 0);
}

TEST(InterruptSafeCharacterByteType, KeepsItsTableWhileTheSameScriptIsAskedFor) {
    const Japanese japanese;
    EXPECT_EQ(InterruptSafeCharacterByteType("\x83\x41", 1, smCurrentScript), 1);
    PlatformSetCurrentScript(smRoman);
    EXPECT_EQ(InterruptSafeCharacterByteType("\x83\x41", 1, smCurrentScript), 1);
    InterruptSafeCharacterByteType("", -1, smRoman);
    EXPECT_EQ(InterruptSafeCharacterByteType("\x83\x41", 1, smCurrentScript), 0);
}

}  // namespace
