// Unicode strings as values.
#include "vantor/strings/TCFString.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/PascalString.h"

namespace {

constexpr CFStringEncoding kUTF8 = kCFStringEncodingUTF8;

TCFString Str(const std::string& inText) {
    return TCFString(inText.c_str(), kUTF8);
}

std::string Text(const TCFString& inString) {
    std::string text(size_t(inString.Length()) * 3 + 1, '\0');
    EXPECT_TRUE(inString.UTF8(SInt32(text.size()) - 1, text.data()));
    return text.c_str();
}

CFIndex References(const TCFString& inString) {
    return CFGetRetainCount(inString.StringRef());
}

bool IsRange(const CFRange& inRange, CFIndex inLocation, CFIndex inLength) {
    return inRange.location == inLocation && inRange.length == inLength;
}

// --- Owning

TEST(TCFString, IsOnePointerAndNeverNull) {
    static_assert(sizeof(TCFString) == sizeof(CFStringRef));
    EXPECT_EQ(TCFString().StringRef(), TCFString::EmptyCFString());
    EXPECT_TRUE(TCFString(CFStringRef{nullptr}).IsEmpty());
    EXPECT_TRUE(TCFString("\xFF", kUTF8).IsEmpty());
    EXPECT_TRUE(TCFString("a", kCFStringEncodingInvalidId).IsEmpty());
    EXPECT_TRUE(TCFString(PString("\xFF"), kUTF8).IsEmpty());
    EXPECT_TRUE(TCFString::WithBytes(nullptr, -1, kUTF8, false).IsEmpty());
    EXPECT_TRUE(TCFString::Empty.IsEmpty());
}

TEST(TCFString, SharesItsStringWithItsCopies) {
    const TCFString one = Str("text");
    EXPECT_EQ(References(one), 1);
    {
        const TCFString other(one);
        EXPECT_EQ(References(one), 2);
        TCFString third;
        third = other;
        EXPECT_EQ(third.StringRef(), one.StringRef());
        EXPECT_EQ(References(one), 3);
        const TCFString& same = third;
        third = same;
        third = one;
        EXPECT_EQ(References(one), 3);
    }
    EXPECT_EQ(References(one), 1);
}

TEST(TCFString, LeavesTheCallerItsReference) {
    CFStringRef string = CFStringCreateWithCString(nullptr, "text", kUTF8);
    {
        const TCFString holder(string);
        EXPECT_EQ(CFGetRetainCount(string), 2);
        CFRelease(holder.Retain());
        EXPECT_EQ(CFGetRetainCount(string), 2);
    }
    EXPECT_EQ(CFGetRetainCount(string), 1);
    CFRelease(string);
}

TEST(TCFString, TakesOverWhatItAdopts) {
    CFStringRef string = CFStringCreateWithCString(nullptr, "text", kUTF8);
    TCFString holder;
    holder.Adopt(string);
    EXPECT_EQ(References(holder), 1);
    holder.Adopt(string);
    EXPECT_EQ(References(holder), 1);
    CFRetain(string);
    holder.Adopt(nullptr);
    EXPECT_TRUE(holder.IsEmpty());
    EXPECT_EQ(CFGetRetainCount(string), 1);
    CFRelease(string);
}

TEST(TCFString, IsMadeFromBytesAndFormats) {
    const UInt8 bytes[] = {0xFE, 0xFF, 0x00, 0xE9};
    EXPECT_EQ(Text(TCFString::WithBytes(bytes, 4, kCFStringEncodingUTF16, true)), "é");
    EXPECT_EQ(Text(TCFString(PString("caf\x8E"), kCFStringEncodingMacRoman)), "café");
    EXPECT_EQ(Text(TCFString::CFPrintf(CFSTR("%d of %@"), 2, Str("日本").StringRef())),
              "2 of 日本");
    EXPECT_EQ(Text(Str("é") + Str("%@")), "é%@");
    EXPECT_EQ(Text(TCFString::Empty + TCFString::Empty), "");
}

TEST(TCFString, IsMadeFromAMomentInTheUsersLocale) {
    CFLocaleRef locale = CFLocaleCopyCurrent();
    CFDateFormatterRef formatter = CFDateFormatterCreate(nullptr, locale, 3, 1);
    TCFString expected;
    expected.Adopt(CFDateFormatterCreateStringWithAbsoluteTime(nullptr, formatter, 120000000));
    CFRelease(formatter);
    CFRelease(locale);
    EXPECT_FALSE(TCFString(120000000, kCFDateFormatterLongStyle, kCFDateFormatterShortStyle) !=
                 expected);
    EXPECT_FALSE(expected.IsEmpty());
    EXPECT_TRUE(TCFString(0, kCFDateFormatterNoStyle, kCFDateFormatterNoStyle).IsEmpty());
    EXPECT_TRUE(TCFString(0, 9, 9).IsEmpty());
    EXPECT_TRUE(TCFString(std::nan(""), 1, 1).IsEmpty());
}

TEST(TCFString, HasWhatItSaysWhenNothingCanBeDisplayed) {
    EXPECT_EQ(TextOf(TCFString::kCannotDisplayString), "<CANNOT DISPLAY>");
    EXPECT_STREQ(TCFString::kCannotDisplayCString, "<CANNOT DISPLAY>");
    EXPECT_EQ(Text(TCFString::kCannotDisplayCFString), "<CANNOT DISPLAY>");
    EXPECT_EQ(TCFString::DefaultEncoding(), GetApplicationTextEncoding());
}

// --- Exporting

std::string CString(const TCFString& inString, SInt32 inMaxLength) {
    std::string buffer(size_t(inMaxLength) + 1, '#');
    EXPECT_EQ(inString.CString(inMaxLength, buffer.data()), buffer.data());
    return buffer.c_str();
}

std::string Pascal(const TCFString& inString, SInt32 inMaxLength) {
    std::string buffer(size_t(inMaxLength) + 2, '#');
    auto* string = reinterpret_cast<StringPtr>(buffer.data());
    EXPECT_EQ(inString.PString(string, inMaxLength), string);
    EXPECT_EQ(buffer.back(), '#');
    return TextOf(string);
}

const char kJapanese[] = "\xE6\x97\xA5\xE6\x9C\xAC";

TEST(TCFString, CutsACStringThatDoesNotFit) {
    EXPECT_EQ(CString(Str("abcdefgh"), 4), "abcd");
    EXPECT_EQ(CString(Str("abcd"), 4), "abcd");
    EXPECT_EQ(CString(Str("café"), 10), "caf\x8E");
    EXPECT_EQ(CString(TCFString(), 0), "");
    EXPECT_EQ(CString(Str("abc"), 0), "");
    EXPECT_EQ(CString(Str(std::string(1023, 'x')), 300), std::string(300, 'x'));
}

TEST(TCFString, SaysWhatACStringCannotHold) {
    EXPECT_EQ(CString(Str(kJapanese), 100), "<CANNOT DISPLAY>");
    EXPECT_EQ(CString(Str(kJapanese), 7), "<CANNOT");
    // More than the scratch buffer holds.
    EXPECT_EQ(CString(Str(std::string(1024, 'x')), 300), "<CANNOT DISPLAY>");
    EXPECT_EQ(CString(Str(std::string(5000, 'x')), 5000), std::string(5000, 'x'));
}

TEST(TCFString, MakesAPascalStringInTheSameSteps) {
    EXPECT_EQ(Pascal(Str("café"), 255), "caf\x8E");
    EXPECT_EQ(Pascal(Str("abcdefgh"), 4), "abcd");
    EXPECT_EQ(Pascal(Str("abc"), 0), "");
    EXPECT_EQ(Pascal(TCFString(), 255), "");
    EXPECT_EQ(Pascal(Str(kJapanese), 255), "<CANNOT DISPLAY>");
    EXPECT_EQ(Pascal(Str(kJapanese), 3), "<CA");
    EXPECT_EQ(Pascal(Str(std::string(300, 'x')), 255), std::string(255, 'x'));
    EXPECT_EQ(Pascal(Str(std::string(300, 'x')), 40), std::string(40, 'x'));
}

TEST(TCFString, MakesOneAttemptInAnEncodingThatIsNamed) {
    char text[8] = "before";
    EXPECT_TRUE(Str("é").CStringWithEncoding(7, text, kUTF8));
    EXPECT_STREQ(text, "é");
    EXPECT_FALSE(Str("é").CStringWithEncoding(7, text, kCFStringEncodingASCII));
    EXPECT_STREQ(text, "");
    EXPECT_FALSE(Str("abcdefgh").CStringWithEncoding(7, text, kUTF8));
    EXPECT_STREQ(text, "");
    EXPECT_TRUE(TCFString().CStringWithEncoding(0, text, kCFStringEncodingInvalidId));
    unsigned char string[8] = {3, 'x', 'y', 'z'};
    EXPECT_FALSE(Str(kJapanese).PStringWithEncoding(string, 7, kCFStringEncodingMacRoman));
    EXPECT_EQ(TextOf(string), "");
    EXPECT_TRUE(Str("é").PStringWithEncoding(string, 7, kCFStringEncodingMacRoman));
    EXPECT_EQ(TextOf(string), "\x8E");
    EXPECT_TRUE(TCFString().PStringWithEncoding(string, 7, kCFStringEncodingInvalidId));
}

TEST(TCFString, CountsBytesOfUTF8UpToTheFirstZero) {
    EXPECT_EQ(TCFString().UTF8Length(), 0);
    EXPECT_EQ(Str("é").UTF8Length(), 2);
    EXPECT_EQ(Str(kJapanese).UTF8Length(), 6);
    EXPECT_EQ(Str("\xF0\x9F\x98\x80").UTF8Length(), 4);
    const UInt8 zero[] = {'a', 'b', 0, 'c'};
    EXPECT_EQ(TCFString::WithBytes(zero, 4, kUTF8, false).UTF8Length(), 2);
    char text[3] = "xx";
    EXPECT_FALSE(Str("abc").UTF8(2, text));
    EXPECT_STREQ(text, "");
}

TEST(TCFString, GivesItsUnitsAndANameOf255) {
    UniChar units[4] = {9, 9, 9, 9};
    Str("abc").Unicode(2, units);
    EXPECT_EQ(units[1], 'b');
    EXPECT_EQ(units[2], 9);
    HFSUniStr255 name;
    Str(std::string(300, 'x')).HFSUniStr(name);
    EXPECT_EQ(name.length, 255);
    EXPECT_EQ(name.unicode[254], 'x');
    TCFString().HFSUniStr(name);
    EXPECT_EQ(name.length, 0);
}

// --- Searching and editing

TEST(TCFString, KeepsGrowingARangeThatBeginsBeforeTheText) {
    const TCFString ten = Str("0123456789");
    EXPECT_TRUE(IsRange(ten.CheckRange({-2, 3}), 0, 5));
    EXPECT_TRUE(IsRange(ten.CheckRange({12, 4}), 9, 0));
    EXPECT_TRUE(IsRange(ten.CheckRange({10, 1}), 9, 0));
    EXPECT_TRUE(IsRange(ten.CheckRange({3, -1}), 3, 0));
    EXPECT_TRUE(IsRange(ten.CheckRange({3, 100}), 3, 7));
    EXPECT_TRUE(IsRange(ten.CheckRange({-2, -9}), 0, 0));
    EXPECT_TRUE(IsRange(ten.CheckRange({INT32_MIN, INT32_MAX}), 0, 10));
    EXPECT_TRUE(IsRange(ten.CheckRange({1, INT32_MAX}), 1, 9));
    EXPECT_TRUE(IsRange(TCFString().CheckRange({0, 0}), -1, 0));
}

TEST(TCFString, FindsInTheWholeAndInParts) {
    const TCFString text = Str("abcabc");
    EXPECT_TRUE(IsRange(text.Find(Str("bc"), 0), 1, 2));
    EXPECT_TRUE(IsRange(text.Find(Str("bc"), kCFCompareBackwards), 4, 2));
    EXPECT_TRUE(IsRange(text.Find(Str("x"), 0), kCFNotFound, 0));
    EXPECT_TRUE(IsRange(text.FindInRange({2, 100}, Str("bc"), 0), 4, 2));
    EXPECT_TRUE(IsRange(text.FindInRange({2, 2}, Str("bc"), 0), -1, -1));
    EXPECT_TRUE(IsRange(TCFString().FindInRange({0, 5}, Str("a"), 0), -1, -1));
}

TEST(TCFString, ReplacesWithoutChangingItself) {
    const TCFString text = Str("abcabc");
    EXPECT_EQ(Text(text.Replace({1, 2}, Str("-"))), "a-abc");
    EXPECT_EQ(Text(text.Replace({4, 100}, Str("-"))), "abca-");
    EXPECT_EQ(Text(text.Replace({100, 5}, Str("-"))), "abcab-c");
    EXPECT_EQ(Text(text.Replace({-1, 3}, Str("-"))), "abcabc");
    EXPECT_EQ(Text(text.Replace({1, -3}, Str("-"))), "abcabc");
    EXPECT_EQ(Text(TCFString().Replace({0, 0}, Str("-"))), "-");
    EXPECT_EQ(Text(text.ReplaceSubstring(Str("B"), Str("x"), kCFCompareCaseInsensitive)), "axcabc");
    EXPECT_EQ(text.ReplaceSubstring(Str("q"), Str("x"), 0).StringRef(), text.StringRef());
    EXPECT_EQ(Text(text.FindAndReplace(Str("bc"), Str("x"), {0, 6}, 0)), "axax");
    EXPECT_EQ(Text(text.FindAndReplace(Str("bc"), Str("x"), {2, 99}, 0)), "abcax");
    EXPECT_EQ(text.FindAndReplace(Str("bc"), Str("x"), {-2, 99}, 0).StringRef(), text.StringRef());
    EXPECT_EQ(text.FindAndReplace(Str("q"), Str("x"), {0, 6}, 0).StringRef(), text.StringRef());
    EXPECT_EQ(Text(text), "abcabc");
}

TEST(TCFString, HasNoSubstringOutsideItself) {
    EXPECT_EQ(Text(Str("abc").Substring(1, 2)), "bc");
    EXPECT_EQ(Text(Str("abc").Substring(1, 3)), "");
    EXPECT_EQ(Text(Str("abc").Substring(-1, 2)), "");
    EXPECT_EQ(Text(Str("abc").Substring(3, 0)), "");
}

TEST(TCFString, ChangesCaseAndForm) {
    EXPECT_EQ(Text(Str("straße").Uppercase()), "STRASSE");
    EXPECT_EQ(Text(Str("ÉA").Lowercase()), "éa");
    EXPECT_EQ(Text(Str("file2name").Capitalize()), "File2Name");
    EXPECT_EQ(Str("é").Normalize(kCFStringNormalizationFormD).Length(), 2);
    EXPECT_EQ(References(Str("a").Uppercase()), 1);
}

TEST(TCFString, KnowsItsBeginningAndItsEnd) {
    EXPECT_TRUE(Str("Report.txt").HasPrefix(Str("Rep"), false));
    EXPECT_FALSE(Str("Report.txt").HasPrefix(Str("rep"), false));
    EXPECT_TRUE(Str("Report.txt").HasPrefix(Str("rep"), true));
    EXPECT_FALSE(Str("Rep").HasPrefix(Str("Report"), false));
    EXPECT_TRUE(Str("Rep").HasPrefix(TCFString(), false));
    EXPECT_TRUE(Str("Report.txt").HasSuffix(Str(".TXT")));
    EXPECT_FALSE(Str("Report.txt").HasSuffix(Str(".tx")));
    EXPECT_FALSE(Str("Report.txt").HasSuffix(TCFString()));
}

TEST(TCFString, IsUnequalOnlyWhenTheTextIs) {
    EXPECT_FALSE(Str("abc") != Str("abc"));
    EXPECT_TRUE(Str("abc") != Str("abd"));
    EXPECT_EQ(Str("a").CompareTo(Str("B"), kCFCompareCaseInsensitive), kCFCompareLessThan);
    EXPECT_EQ(Str("a").CompareTo(Str("B"), 0), kCFCompareGreaterThan);
}

// --- Numbers

TEST(TCFString, ReadsWholeNumbers) {
    Boolean ok = false;
    EXPECT_EQ(Str(" -42").ToLong(10, &ok), -42);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Str("42x").ToLong(10, &ok), 42);
    EXPECT_FALSE(ok);
    EXPECT_EQ(Str("0x1F").ToLong(0, nullptr), 31);
    EXPECT_EQ(Str("99999999999").ToLong(10, &ok), INT32_MAX);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Str("-99999999999").ToLong(10, &ok), INT32_MIN);
    EXPECT_EQ(Str("99999999999").ToLongLong(10, &ok), 99999999999);
    EXPECT_EQ(TCFString().ToLong(10, &ok), 0);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Str("12").ToLong(99, &ok), 0);
    EXPECT_FALSE(ok);
}

TEST(TCFString, KeepsDroppingTheFractionOfADouble) {
    Boolean ok = false;
    EXPECT_EQ(Str("2.75").ToDouble(&ok), 2.0);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Str("2.75x").ToDouble(&ok), 2.0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(Str("-2.75").ToDouble(nullptr), -2.0);
    EXPECT_EQ(Str("1e300").ToDouble(&ok), 9223372036854775808.0);
    EXPECT_EQ(Str("-1e300").ToDouble(&ok), -9223372036854775808.0);
    EXPECT_EQ(Str("nan").ToDouble(&ok), 0);
    EXPECT_FALSE(std::signbit(Str("-0.5").ToDouble(&ok)));
}

TEST(TCFString, ReadsNumbersFromTheFirst255Characters) {
    Boolean ok = false;
    EXPECT_EQ(Str(std::string(254, '0') + "123").ToLong(10, &ok), 1);
    EXPECT_TRUE(ok);
}

// --- Names

TEST(TCFString, HasASuffixOfTwelveCharactersAtMost) {
    EXPECT_EQ(Text(Str("a.txt").Suffix()), ".txt");
    EXPECT_EQ(Text(Str("report.backup-abcde").Suffix()), "");
    EXPECT_EQ(Text(Str("report.backup-abcd").Suffix()), ".backup-abcd");
    EXPECT_EQ(Text(Str("name.").Suffix()), ".");
    EXPECT_EQ(Text(Str("a.b.c").Suffix()), ".c");
    EXPECT_EQ(Text(Str("name").Suffix()), "");
    EXPECT_EQ(Text(TCFString().Suffix()), "");
}

TEST(TCFString, RemovesASuffixUnlessASpaceFollowsIt) {
    EXPECT_EQ(Text(Str("a.txt").RemoveSuffix()), "a");
    EXPECT_EQ(Text(Str("my file.old final").RemoveSuffix()), "my file.old final");
    EXPECT_EQ(Text(Str("my file.old").RemoveSuffix()), "my file");
    EXPECT_EQ(Text(Str("name.").RemoveSuffix()), "name");
    EXPECT_EQ(Text(Str("report.backup-abcd").RemoveSuffix()), "report");
    EXPECT_EQ(Text(Str("report.backup-abcde").RemoveSuffix()), "report.backup-abcde");
    EXPECT_EQ(Text(Str("name").RemoveSuffix()), "name");
}

TEST(TCFString, ShortensNamesInFrontOfTheirSuffix) {
    EXPECT_EQ(Text(Str("longfilename.txt").HFSName(10)), "longfi.txt");
    EXPECT_EQ(Text(Str("a:b").HFSName(31)), "a_b");
    EXPECT_EQ(Text(Str("a:b:c").HFSName(0)), "a_b_c");
    EXPECT_EQ(Text(Str("longfilename.txt").HFSName(0)), "longfilename.txt");
    EXPECT_EQ(Text(Str("longfilename.txt").HFSName(-5)), "longfilename.txt");
    EXPECT_EQ(Text(Str("abc.text").HFSName(5)), "abc.t");
    EXPECT_EQ(Text(Str("abc.text").HFSName(6)), "a.text");
    EXPECT_EQ(Text(Str("longfilename").HFSName(4)), "long");
    EXPECT_EQ(Text(TCFString().HFSName(31)), "");
}

TEST(TCFString, OrdersNamesAsAFileBrowserDoes) {
    EXPECT_EQ(Str("File 2").FinderCompareTo(Str("File 10"), true), -1);
    EXPECT_EQ(Str("File 10").FinderCompareTo(Str("File 2"), true), 1);
    EXPECT_EQ(Str("file").FinderCompareTo(Str("FILE"), true), 0);
    EXPECT_EQ(Str("file").FinderCompareTo(Str("FILE"), false), 0);
    EXPECT_EQ(Str("e").FinderCompareTo(Str("é"), false), -1);
    const std::string alike(255, 'x');
    EXPECT_EQ(Str(alike + "a").FinderCompareTo(Str(alike + "b"), true), 0);
}

SInt32 Order(const char16_t* inOne, const char16_t* inOther, bool inCase, bool inEquivalence) {
    const auto length = [](const char16_t* inText) {
        return inText ? UniCharCount(std::u16string_view(inText).size()) : 0;
    };
    return FinderCompare(length(inOne), reinterpret_cast<const UniChar*>(inOne), length(inOther),
                         reinterpret_cast<const UniChar*>(inOther), inCase, inEquivalence);
}

TEST(FinderCompare, PutsNoTextFirst) {
    EXPECT_EQ(Order(nullptr, u"a", false, true), -1);
    EXPECT_EQ(Order(u"a", nullptr, false, true), 1);
    EXPECT_EQ(Order(nullptr, nullptr, false, true), 0);
    EXPECT_EQ(Order(u"", u"", true, true), 0);
}

TEST(FinderCompare, TellsCaseApartWhenAsked) {
    EXPECT_EQ(Order(u"a", u"A", true, true), -2);
    EXPECT_EQ(Order(u"a", u"A", false, true), 0);
    EXPECT_EQ(Order(u"a", u"A", false, false), -1);
    EXPECT_EQ(Order(u"a", u"b", false, true), -2);
}

// --- Messages

std::string Plugged(const char* inText, const char* inZero, const char* inOne,
                    const char* inTwo = "", const char* inThree = "") {
    return Text(Str(inText).PlugParams(Str(inZero), Str(inOne), Str(inTwo), Str(inThree)));
}

TEST(TCFString, PutsTextsInTheirPlaces) {
    EXPECT_EQ(Plugged("^1 of ^0", "3", "7"), "7 of 3");
    EXPECT_EQ(Plugged("^0^1^2^3", "a", "b", "c", "d"), "abcd");
    EXPECT_EQ(Plugged("nothing", "a", "b"), "nothing");
}

TEST(TCFString, KeepsLaterMarksAndThoseOfEmptyTexts) {
    EXPECT_EQ(Plugged("^0 ^0", "a", ""), "a ^0");
    EXPECT_EQ(Plugged("^0 ^1", "", "b"), "^0 b");
    EXPECT_EQ(Plugged("^0", "<^1>", "b"), "<b>");
    EXPECT_EQ(Plugged("^1", "a", "<^0>"), "<^0>");
}

}  // namespace
