// The order of names, and texts in the encoding of the application.
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <memory>
#include <random>
#include <string>

#include "core_foundation/internal.h"
#include "text_utilities/unicode_order.h"

namespace {

constexpr UCCollateOptions kWithCase = 0x38006, kWithoutCase = 0x3800E;

struct Found {
    int status = 0;
    Boolean equivalent = false;
    SInt32 order = 99;
};

Found Compare(UCCollateOptions inOptions, std::u16string_view inOne, std::u16string_view inOther) {
    Found found;
    found.status = UCCompareTextDefault(
        inOptions, reinterpret_cast<const UniChar*>(inOne.data()), UniCharCount(inOne.size()),
        reinterpret_cast<const UniChar*>(inOther.data()), UniCharCount(inOther.size()),
        &found.equivalent, &found.order);
    return found;
}

// "less", "equal" or "greater": what a file browser would say.
std::string Relation(UCCollateOptions inOptions, std::u16string_view inOne,
                     std::u16string_view inOther) {
    const Found found = Compare(inOptions, inOne, inOther);
    return found.equivalent ? "equal" : found.order < 0 ? "less" : "greater";
}

struct Case {
    std::u16string one, other;
    std::string withCase, withoutCase;
};

TEST(UCCompareTextDefault, OrdersNamesAsAFileBrowserDoes) {
    const Case cases[] = {
        {u"File 2", u"File 10", "less", "less"},
        {u"file", u"FILE", "less", "equal"},
        {u"e", u"\xE9", "less", "less"},
        {u"\xE9", u"e\u0301", "equal", "equal"},
        {u"f", u"\uFF46", "equal", "equal"},
        {u"F", u"\uFF46", "greater", "equal"},
        {u"01", u"1", "equal", "equal"},
        {u"1234567", u"999999", "greater", "greater"},
        {u"\uFB01", u"fi", "equal", "equal"},
        {u"\u2122", u"tm", "equal", "equal"},
        {u"a\u0001", u"a", "equal", "equal"},
        {u"a\u00ADb", u"ab", "equal", "equal"},
        {u"a b", u"ab", "less", "less"},
        {u"a_b", u"a-b", "less", "less"},
        {u" ", u"1", "less", "less"},
        {u"1", u"a", "less", "less"},
        {u"~", u"a", "less", "less"},
        {u"\xDF", u"ss", "greater", "greater"},
        {u"\xF8", u"o", "greater", "greater"},
        {u"\xC6", u"AE", "greater", "greater"},
        {u"\u3042", u"\u30A2", "equal", "equal"},
        {u"\u0661", u"1", "equal", "equal"},
    };
    for (const Case& pair : cases) {
        EXPECT_EQ(Relation(kWithCase, pair.one, pair.other), pair.withCase);
        EXPECT_EQ(Relation(kWithoutCase, pair.one, pair.other), pair.withoutCase);
    }
}

TEST(UCCompareTextDefault, TellsDifferencesThatCountFromThoseThatDoNot) {
    EXPECT_EQ(Compare(kWithoutCase, u"a", u"b").order, -2);
    EXPECT_EQ(Compare(kWithoutCase, u"b", u"a").order, 2);
    EXPECT_EQ(Compare(kWithoutCase, u"name", u"NAME").order, -1);
    EXPECT_EQ(Compare(kWithoutCase, u"NAME", u"name").order, 1);
    EXPECT_EQ(Compare(kWithCase, u"name", u"NAME").order, -2);
    EXPECT_EQ(Compare(kWithoutCase, u"name", u"name").order, 0);
    EXPECT_EQ(Compare(kWithoutCase, u"01", u"1").order, -1);
    EXPECT_NE(Compare(kWithoutCase, u"\xE9", u"e\u0301").order, 0);
    EXPECT_EQ(Compare(kWithoutCase, u"", u"").order, 0);
    EXPECT_EQ(Compare(kWithoutCase, u"", u"a").order, -2);
}

TEST(UCCompareTextDefault, TakesOtherOptions) {
    constexpr UCCollateOptions kNoMarks = kWithoutCase | kUCCollateDiacritInsensitiveMask;
    EXPECT_EQ(Relation(kNoMarks, u"r\xE9sum\xE9", u"RESUME"), "equal");
    EXPECT_EQ(Relation(kUCCollateStandardOptions, u"a10", u"a2"), "less");
    constexpr UCCollateOptions kNoPunctuation =
        kUCCollateStandardOptions | kUCCollateCaseInsensitiveMask;
    EXPECT_EQ(Relation(kNoPunctuation, u"a-b", u"ab"), "equal");
    EXPECT_NE(Relation(kWithoutCase, u"a-b", u"ab"), "equal");
    // A number's digits need the override.
    EXPECT_EQ(Relation(kUCCollateStandardOptions | kUCCollateDigitsAsNumberMask, u"a10", u"a2"),
              "less");
}

TEST(UCCompareTextDefault, NeedsSomethingToAnswerAndTexts) {
    const UniChar text[] = {'a'};
    SInt32 order = 7;
    Boolean equivalent = false;
    EXPECT_EQ(UCCompareTextDefault(0, text, 1, text, 1, nullptr, nullptr), paramErr);
    EXPECT_EQ(UCCompareTextDefault(0, nullptr, 1, text, 1, nullptr, &order), paramErr);
    EXPECT_EQ(UCCompareTextDefault(0, text, 0x80000000, text, 1, nullptr, &order), paramErr);
    EXPECT_EQ(order, 7);
    EXPECT_EQ(UCCompareTextDefault(0, nullptr, 0, text, 1, nullptr, &order), noErr);
    EXPECT_EQ(order, -2);
    EXPECT_EQ(UCCompareTextDefault(0, text, 1, text, 1, &equivalent, nullptr), noErr);
    EXPECT_TRUE(equivalent);
}

// What ICU says, asked the slow way.
carbon::UnicodeOrder Collated(UCCollateOptions inOptions, std::u16string_view inOne,
                              std::u16string_view inOther) {
    const auto collate = [&](bool inIdentical) {
        return int(ucol_strcoll(carbon::CollatorFor(inOptions, inIdentical), inOne.data(),
                                int32_t(inOne.size()), inOther.data(), int32_t(inOther.size())));
    };
    if (const int order = collate(false)) return {false, 2 * order};
    const int rest = collate(true), units = inOne.compare(inOther);
    return {true, rest ? rest : (units > 0) - (units < 0)};
}

// Names of few different characters, so that many begin alike.
std::u16string RandomName(std::mt19937& ioRandom, std::u16string_view inCharacters) {
    std::u16string name;
    for (size_t count = ioRandom() % 9; count > 0; --count) {
        name.push_back(inCharacters[ioRandom() % inCharacters.size()]);
    }
    return name;
}

void AgreeWithCollator(std::u16string_view inCharacters, unsigned inSeed) {
    std::mt19937 random(inSeed);
    for (int i = 0; i < 20000; ++i) {
        const std::u16string one = RandomName(random, inCharacters);
        const std::u16string other = RandomName(random, inCharacters);
        for (const UCCollateOptions options : {kWithCase, kWithoutCase}) {
            const Found found = Compare(options, one, other);
            const auto expected = Collated(options, one, other);
            ASSERT_EQ(found.order, expected.order)
                << std::hex << options << " " << testing::PrintToString(one) << " "
                << testing::PrintToString(other);
            ASSERT_EQ(bool(found.equivalent), expected.equivalent);
        }
    }
}

TEST(UCCompareTextDefault, AgreesWithICUOnAnyAscii) {
    std::u16string all;
    for (char16_t unit = 0x20; unit < 0x7F; ++unit) all.push_back(unit);
    AgreeWithCollator(all, 1);
    AgreeWithCollator(u"aAbB", 2);
    AgreeWithCollator(u"aA019.", 3);
    AgreeWithCollator(u"0012a -_", 4);
}

TEST(UCCompareTextDefault, AgreesWithICUBeyondAscii) {
    AgreeWithCollator(u"aAe\u0301\u030A\xE9\xC5\xE5", 5);
    AgreeWithCollator(u"o1\xB7l\xF8\x0661\x0001\xAD", 6);
    AgreeWithCollator(u"a1\u3042\u30A2\xD83D\xDE00\uFF11", 7);
}

TEST(UCCompareTextDefault, CountsNumbersOfAnyLengthAsICUDoes) {
    std::mt19937 random(9);
    for (int i = 0; i < 300; ++i) {
        std::u16string one(random() % 3, u'0'), other(random() % 3, u'0');
        const size_t length = 240 + random() % 40;
        for (size_t k = 0; k < length; ++k) {
            one.push_back(char16_t(u'0' + random() % 2));
            other.push_back(k < length - 2 ? one.back() : u'1');
        }
        EXPECT_EQ(Compare(kWithCase, one, other).order, Collated(kWithCase, one, other).order);
    }
}

TEST(UCCompareTextDefault, SurvivesAnyUnits) {
    std::mt19937 random(10);
    for (int i = 0; i < 20000; ++i) {
        std::u16string one, other;
        for (size_t k = random() % 12; k > 0; --k) one.push_back(char16_t(random()));
        for (size_t k = random() % 12; k > 0; --k) other.push_back(char16_t(random()));
        const Found there = Compare(kWithoutCase, one, other);
        const Found back = Compare(kWithoutCase, other, one);
        EXPECT_EQ(there.order, -back.order);
    }
}

// --- The application's encoding

TEST(GetApplicationTextEncoding, IsMacRoman) {
    EXPECT_EQ(GetApplicationTextEncoding(), TextEncoding{kTextEncodingMacRoman});
    EXPECT_EQ(GetApplicationScript(), smRoman);
}

struct Exported {
    OSStatus status;
    std::string bytes;
    TextEncoding encoding = 99;
};

Exported Export(std::string_view inText, ByteCount inRoom) {
    CFStringRef string = carbon::StringFromUtf8(inText);
    const auto buffer = std::make_unique<UInt8[]>(inRoom + 1);
    buffer[inRoom] = '#';
    ByteCount length = 77;
    Exported exported{};
    exported.status =
        GetTextAndEncodingFromCFString(string, buffer.get(), inRoom, &length, &exported.encoding);
    CFRelease(string);
    EXPECT_EQ(buffer[inRoom], '#');
    exported.bytes.assign(reinterpret_cast<char*>(buffer.get()), length);
    return exported;
}

TEST(GetTextAndEncodingFromCFString, WritesWholeCharactersAsFarAsTheyFit) {
    EXPECT_EQ(Export("café", 10).status, noErr);
    EXPECT_EQ(Export("café", 10).bytes, "caf\x8E");
    EXPECT_EQ(Export("café", 10).encoding, TextEncoding{kTextEncodingMacRoman});
    EXPECT_EQ(Export("cafe\u0301", 4).bytes, "caf\x8E");
    EXPECT_EQ(Export("café", 3).status, kTECOutputBufferFullStatus);
    EXPECT_EQ(Export("café", 3).bytes, "caf");
    EXPECT_EQ(Export("", 0).status, noErr);
    EXPECT_EQ(Export("x", 0).status, kTECOutputBufferFullStatus);
}

TEST(GetTextAndEncodingFromCFString, WritesNothingOfATextThatMacRomanCannotSay) {
    EXPECT_EQ(Export("abc\u65E5", 10).status, kTECUnmappableElementErr);
    EXPECT_EQ(Export("abc\u65E5", 10).bytes, "");
    EXPECT_EQ(Export("\u0301", 10).status, kTECUnmappableElementErr);
}

TEST(GetTextAndEncodingFromCFString, NeedsAStringAndPlacesToWriteTo) {
    UInt8 buffer[4];
    ByteCount length = 0;
    EXPECT_EQ(GetTextAndEncodingFromCFString(nullptr, buffer, 4, &length, nullptr), paramErr);
    EXPECT_EQ(GetTextAndEncodingFromCFString(CFSTR("a"), nullptr, 4, &length, nullptr), paramErr);
    EXPECT_EQ(GetTextAndEncodingFromCFString(CFSTR("a"), buffer, 4, nullptr, nullptr), paramErr);
    EXPECT_EQ(GetTextAndEncodingFromCFString(CFSTR("a"), buffer, 4, &length, nullptr), noErr);
}

}  // namespace
