// Strings in many scripts beside ICU, and very long ones.
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <functional>
#include <random>

#include "CFSupport.h"

namespace {

// First and last characters of blocks whose case, marks and forms differ.
constexpr char32_t kBlocks[][2] = {
    {0x20, 0x7E},     {0xA0, 0x17F},    {0x1C4, 0x24F},     {0x300, 0x36F},     {0x370, 0x3FF},
    {0x400, 0x52F},   {0x531, 0x587},   {0x5D0, 0x5EA},     {0x600, 0x6FF},     {0x900, 0x97F},
    {0xE00, 0xE5B},   {0x10A0, 0x10FF}, {0x1100, 0x11FF},   {0x1E00, 0x1FFF},   {0x2100, 0x218F},
    {0x2C00, 0x2CFF}, {0x3040, 0x30FF}, {0x4E00, 0x4EFF},   {0xA640, 0xA69F},   {0xAC00, 0xAD00},
    {0xFB00, 0xFB1D}, {0xFF00, 0xFFEF}, {0x10400, 0x1044F}, {0x1D15E, 0x1D1C0}, {0x1F600, 0x1F64F}};

class Texts {
  public:
    std::u16string Next() {
        std::u16string text;
        for (size_t count = mRandom() % 20; count > 0; --count) Append(&text, Character());
        return text;
    }

  private:
    static void Append(std::u16string* ioText, UChar32 inCharacter) {
        if (inCharacter > 0xFFFF) ioText->push_back(U16_LEAD(inCharacter));
        ioText->push_back(
            static_cast<char16_t>(inCharacter > 0xFFFF ? U16_TRAIL(inCharacter) : inCharacter));
    }

    // Now and then another block, so that most neighbours are of one script.
    UChar32 Character() {
        if (mRandom() % 4 == 0) mBlock = mRandom() % std::size(kBlocks);
        const auto [first, last] = kBlocks[mBlock];
        return static_cast<UChar32>(first + mRandom() % (last - first + 1));
    }

    std::mt19937 mRandom{42};
    size_t mBlock = 0;
};

using IcuCall = std::function<int32_t(const char16_t*, int32_t, char16_t*, int32_t, UErrorCode*)>;

std::u16string ByIcu(const IcuCall& inCall, std::u16string_view inText) {
    std::u16string result(inText.size() * 20 + 1, u'\0');
    UErrorCode error = U_ZERO_ERROR;
    const int32_t length = inCall(inText.data(), int32_t(inText.size()), result.data(),
                                  int32_t(result.size()), &error);
    EXPECT_TRUE(U_SUCCESS(error));
    result.resize(size_t(length));
    return result;
}

std::u16string UnitsOf(CFStringRef inString) {
    std::u16string units(size_t(CFStringGetLength(inString)), u'\0');
    CFStringGetCharacters(inString, CFRangeMake(0, CFStringGetLength(inString)),
                          reinterpret_cast<UniChar*>(units.data()));
    return units;
}

void Agree(const std::function<void(CFMutableStringRef)>& inEdit, const IcuCall& inCall) {
    Texts texts;
    for (int i = 0; i < 4000; ++i) {
        const std::u16string text = texts.Next();
        const Ref<CFMutableStringRef> string(CFStringCreateMutableCopy(nullptr, 0, Units(text)));
        inEdit(string);
        ASSERT_EQ(UnitsOf(string), ByIcu(inCall, text)) << testing::PrintToString(text);
    }
}

TEST(CFStringCase, AgreesWithICUInManyScripts) {
    Agree([](CFMutableStringRef ioText) { CFStringUppercase(ioText, nullptr); },
          [](const char16_t* inText, int32_t inLength, char16_t* outText, int32_t inRoom,
             UErrorCode* ioError) {
              return u_strToUpper(outText, inRoom, inText, inLength, "", ioError);
          });
    Agree([](CFMutableStringRef ioText) { CFStringLowercase(ioText, nullptr); },
          [](const char16_t* inText, int32_t inLength, char16_t* outText, int32_t inRoom,
             UErrorCode* ioError) {
              return u_strToLower(outText, inRoom, inText, inLength, "", ioError);
          });
}

TEST(CFStringNormalize, AgreesWithICUInManyScripts) {
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* forms[] = {unorm2_getNFDInstance(&error), unorm2_getNFKDInstance(&error),
                                   unorm2_getNFCInstance(&error), unorm2_getNFKCInstance(&error)};
    for (CFStringNormalizationForm form = 0; form < 4; ++form) {
        Agree([&](CFMutableStringRef ioText) { CFStringNormalize(ioText, form); },
              [&](const char16_t* inText, int32_t inLength, char16_t* outText, int32_t inRoom,
                  UErrorCode* ioError) {
                  return unorm2_normalize(forms[form], inText, inLength, outText, inRoom, ioError);
              });
    }
}

TEST(CFStringFind, AgreesWithICUOnLiteralTextsInManyScripts) {
    Texts texts;
    std::mt19937 random(8);
    for (int i = 0; i < 4000; ++i) {
        const std::u16string text = texts.Next() + texts.Next();
        const size_t start = text.empty() ? 0 : random() % text.size();
        const std::u16string needle = text.substr(start, 1 + random() % 3);
        const CFRange found = CFStringFind(Units(text), Units(needle), 0);
        const size_t expected = needle.empty() ? text.npos : text.find(needle);
        ASSERT_EQ(found.location, expected == text.npos ? kCFNotFound : CFIndex(expected));
        const CFRange last = CFStringFind(Units(text), Units(needle), kCFCompareBackwards);
        const size_t expectedLast = needle.empty() ? text.npos : text.rfind(needle);
        ASSERT_EQ(last.location, expectedLast == text.npos ? kCFNotFound : CFIndex(expectedLast));
    }
}

TEST(CFStringCompare, AgreesWithICUByCodePointsInManyScripts) {
    Texts texts;
    for (int i = 0; i < 4000; ++i) {
        const std::u16string one = texts.Next(), other = i % 3 ? texts.Next() : one + texts.Next();
        const int order = u_strCompare(one.data(), int32_t(one.size()), other.data(),
                                       int32_t(other.size()), true);
        ASSERT_EQ(CFStringCompare(Units(one), Units(other), 0), (order > 0) - (order < 0));
    }
}

TEST(CFStringEncodings, CarryEveryTextThereAndBackThatTheyCanSay) {
    Texts texts;
    for (int i = 0; i < 500; ++i) {
        const auto text = Units(texts.Next());
        const auto* encoding = CFStringGetListOfAvailableEncodings();
        for (; *encoding != kCFStringEncodingInvalidId; ++encoding) {
            const Ref<CFDataRef> data(
                CFStringCreateExternalRepresentation(nullptr, text, *encoding, 0));
            if (!data) continue;
            const Ref<CFStringRef> back(
                CFStringCreateFromExternalRepresentation(nullptr, data, *encoding));
            ASSERT_NE(back, nullptr) << *encoding;
            // What has one byte for a letter and its mark comes back as one.
            EXPECT_EQ(CFStringCompare(back, text, kCFCompareNonliteral), kCFCompareEqualTo)
                << *encoding << " " << Text(text);
        }
    }
}

// --- Malformed bytes

// UTF-8 as its definition says it, one character at a time; 0 for what is not a character.
size_t LengthOfUTF8(std::string_view inText) {
    const auto byte = [&](size_t inAt) { return inAt < inText.size() ? UInt8(inText[inAt]) : 0u; };
    const auto isTail = [&](size_t inAt, unsigned inFirst = 0x80, unsigned inLast = 0xBF) {
        return byte(inAt) >= inFirst && byte(inAt) <= inLast;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    if (lead < 0xE0) return isTail(1) ? 2 : 0;
    if (lead < 0xF0) {
        const bool isSecond = isTail(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return isSecond && isTail(2) ? 3 : 0;
    }
    const bool isSecond = isTail(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
    return isSecond && isTail(2) && isTail(3) ? 4 : 0;
}

bool IsUTF8(std::string_view inText) {
    while (!inText.empty()) {
        const size_t length = LengthOfUTF8(inText);
        if (length == 0) return false;
        inText.remove_prefix(length);
    }
    return true;
}

TEST(CFStringCreate, TakesPreciselyTheUTF8ThatIsWellFormed) {
    std::mt19937 random(6);
    const std::string bytes =
        "a\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xED\xEE\xEF\xF0\xF3\xF4\xF5\xFF";
    int valid = 0;
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        for (size_t count = random() % 7; count > 0; --count) {
            text.push_back(bytes[random() % bytes.size()]);
        }
        const auto string = Str(text);
        ASSERT_EQ(string != nullptr, IsUTF8(text)) << testing::PrintToString(text);
        if (string) ++valid;
        const bool hasMark = text.starts_with("\xEF\xBB\xBF");
        EXPECT_TRUE(!string || hasMark || Text(string) == text);
    }
    EXPECT_GT(valid, 1000);
}

TEST(CFStringCreate, KeepsUnpairedSurrogatesOfUTF16AndCannotSayThemElsewhere) {
    const UInt8 bytes[] = {0xD8, 0x3D, 0x00, 0x41, 0xDE, 0x00};
    const Ref<CFStringRef> string(
        CFStringCreateWithBytes(nullptr, bytes, 6, kCFStringEncodingUTF16BE, false));
    ASSERT_EQ(CFStringGetLength(string), 3);
    EXPECT_EQ(CFStringGetCharacterAtIndex(string, 0), 0xD83D);
    for (const CFStringEncoding encoding :
         {kCFStringEncodingUTF8, kCFStringEncodingUTF32, kCFStringEncodingMacRoman}) {
        char buffer[16] = "x";
        EXPECT_FALSE(CFStringGetCString(string, buffer, 16, encoding));
        EXPECT_STREQ(buffer, "");
    }
    UInt8 back[6];
    CFIndex used = 0;
    CFStringGetBytes(string, CFRangeMake(0, 3), kCFStringEncodingUTF16BE, 0, false, back, 6, &used);
    EXPECT_EQ(std::string_view(reinterpret_cast<char*>(back), 6),
              std::string_view(reinterpret_cast<const char*>(bytes), 6));
}

TEST(CFStringEncodings, ThatDoNotExistAreRefusedEverywhere) {
    for (const CFStringEncoding encoding : {CFStringEncoding{kCFStringEncodingInvalidId},
                                            CFStringEncoding{1}, CFStringEncoding{0x12345678}}) {
        char buffer[8] = "x";
        EXPECT_FALSE(CFStringIsEncodingAvailable(encoding));
        EXPECT_EQ(CFStringCreateWithCString(nullptr, "a", encoding), nullptr);
        EXPECT_FALSE(CFStringGetCString(CFSTR("a"), buffer, 8, encoding));
        EXPECT_EQ(CFStringCreateExternalRepresentation(nullptr, CFSTR("a"), encoding, '?'),
                  nullptr);
        EXPECT_EQ(CFStringGetMaximumSizeForEncoding(5, encoding), kCFNotFound);
        EXPECT_EQ(CFStringConvertEncodingToIANACharSetName(encoding), nullptr);
        EXPECT_EQ(CFStringGetBytes(CFSTR("a"), CFRangeMake(0, 1), encoding, '?', false, nullptr, 0,
                                   nullptr),
                  0);
    }
}

// --- Long texts

constexpr CFIndex kLong = 16 << 20;

Ref<CFStringRef> LongText() {
    std::u16string text(size_t(kLong), u'a');
    for (size_t i = 0; i < text.size(); i += 1000) text[i] = u'b';
    return Units(text);
}

TEST(CFStringLong, IsFoundComparedAndReplacedInSixteenMillionUnits) {
    const auto text = LongText();
    const Ref<CFMutableStringRef> copy(CFStringCreateMutableCopy(nullptr, 0, text));
    EXPECT_EQ(CFStringCompare(text, copy, kCFCompareCaseInsensitive), kCFCompareEqualTo);
    // A needle that nearly matches everywhere.
    const Ref<CFStringRef> needle = Str(std::string(999, 'a') + "c");
    EXPECT_EQ(CFStringFind(text, needle, 0).location, kCFNotFound);
    EXPECT_EQ(CFStringFind(text, needle, kCFCompareBackwards).location, kCFNotFound);
    const CFIndex marks = (kLong + 999) / 1000;
    EXPECT_EQ(CFStringFindAndReplace(copy, CFSTR("b"), CFSTR("<>"), CFRangeMake(0, kLong), 0),
              marks);
    EXPECT_EQ(CFStringGetLength(copy), kLong + marks);
    CFStringUppercase(copy, nullptr);
    EXPECT_EQ(CFStringGetCharacterAtIndex(copy, kLong + marks - 1), 'A');
}

TEST(CFStringLong, GoesThroughBytesAndBackInSixteenMillionUnits) {
    const auto text = LongText();
    for (const CFStringEncoding encoding :
         {kCFStringEncodingUTF8, kCFStringEncodingMacRoman, kCFStringEncodingUTF16}) {
        const Ref<CFDataRef> data(CFStringCreateExternalRepresentation(nullptr, text, encoding, 0));
        ASSERT_NE(data, nullptr);
        EXPECT_TRUE(CFEqual(text, Ref<CFStringRef>(CFStringCreateFromExternalRepresentation(
                                      nullptr, data, encoding))));
    }
}

// --- Lines, matches, names of encodings, names of files

struct Line {
    CFIndex begin, end, contentsEnd;
};

Line LineAt(std::string_view inText, CFIndex inLocation, CFIndex inLength = 0) {
    Line line{};
    CFStringGetLineBounds(Str(inText), CFRangeMake(inLocation, inLength), &line.begin, &line.end,
                          &line.contentsEnd);
    return line;
}

TEST(CFStringGetLineBounds, KnowsEveryLineEnd) {
    const std::string_view text = "one\ntwo\r\nthree\rfour";
    EXPECT_EQ(LineAt(text, 1).begin, 0);
    EXPECT_EQ(LineAt(text, 1).end, 4);
    EXPECT_EQ(LineAt(text, 1).contentsEnd, 3);
    EXPECT_EQ(LineAt(text, 3).begin, 0);
    EXPECT_EQ(LineAt(text, 4).begin, 4);
    EXPECT_EQ(LineAt(text, 5).end, 9);
    EXPECT_EQ(LineAt(text, 5).contentsEnd, 7);
    EXPECT_EQ(LineAt(text, 8).begin, 4);
    EXPECT_EQ(LineAt(text, 1, 5).end, 9);
    EXPECT_EQ(LineAt(text, 1, 3).end, 4);
    EXPECT_EQ(LineAt(text, 19).begin, 15);
    EXPECT_EQ(LineAt(text, 19).end, 19);
    EXPECT_EQ(LineAt("", 0).end, 0);
    EXPECT_EQ(LineAt("a\xE2\x80\xA8"
                     "b",
                     0)
                  .end,
              2);
    EXPECT_EQ(LineAt("a\n", 2).begin, 2);
    EXPECT_EQ(LineAt("a\n", 2).end, 2);
    EXPECT_EQ(LineAt("abc", -7, 100).end, 3);
    CFStringGetLineBounds(CFSTR("a"), CFRangeMake(0, 0), nullptr, nullptr, nullptr);
}

TEST(CFStringFindResults, AreAllMatchesInARange) {
    const Ref<CFArrayRef> found(CFStringCreateArrayWithFindResults(
        nullptr, CFSTR("abcabcABC"), CFSTR("bc"), CFRangeMake(2, 7), kCFCompareCaseInsensitive));
    ASSERT_EQ(CFArrayGetCount(found), 2);
    EXPECT_EQ(*static_cast<const CFRange*>(CFArrayGetValueAtIndex(found, 0)), CFRangeMake(4, 2));
    EXPECT_EQ(*static_cast<const CFRange*>(CFArrayGetValueAtIndex(found, 1)), CFRangeMake(7, 2));
    EXPECT_EQ(TextOf(CFCopyDescription(found)), "({4, 2}, {7, 2})");
    EXPECT_EQ(
        CFStringCreateArrayWithFindResults(nullptr, CFSTR("abc"), CFSTR("x"), CFRangeMake(0, 3), 0),
        nullptr);
    EXPECT_EQ(
        CFStringCreateArrayWithFindResults(nullptr, CFSTR("abc"), CFSTR("a"), CFRangeMake(0, 4), 0),
        nullptr);
}

TEST(CFStringEncodings, AreKnownByTheirNamesWhateverTheCase) {
    const auto named = [](const char* inName) {
        return CFStringConvertIANACharSetNameToEncoding(Str(inName));
    };
    EXPECT_EQ(named("UTF-8"), CFStringEncoding{kCFStringEncodingUTF8});
    EXPECT_EQ(named("macintosh"), CFStringEncoding{kCFStringEncodingMacRoman});
    EXPECT_EQ(named("latin1"), CFStringEncoding{kCFStringEncodingISOLatin1});
    EXPECT_EQ(named("windows-1252"), CFStringEncoding{kCFStringEncodingWindowsLatin1});
    EXPECT_EQ(named("no such thing"), kCFStringEncodingInvalidId);
    EXPECT_EQ(named(""), kCFStringEncodingInvalidId);
    EXPECT_EQ(CFStringConvertIANACharSetNameToEncoding(nullptr), kCFStringEncodingInvalidId);
    EXPECT_EQ(Text(CFStringConvertEncodingToIANACharSetName(kCFStringEncodingUTF8)), "utf-8");
    EXPECT_NE(CFStringGetNameOfEncoding(kCFStringEncodingUTF16), nullptr);
    const auto* encoding = CFStringGetListOfAvailableEncodings();
    for (; *encoding != kCFStringEncodingInvalidId; ++encoding) {
        EXPECT_TRUE(CFStringIsEncodingAvailable(*encoding));
        CFStringRef name = CFStringConvertEncodingToIANACharSetName(*encoding);
        if (!name) continue;
        EXPECT_EQ(CFStringConvertIANACharSetNameToEncoding(name), *encoding) << Text(name);
    }
}

TEST(CFStringEncodings, SmallestHoldsAllOfTheText) {
    EXPECT_EQ(CFStringGetSmallestEncoding(Str("abc")), CFStringEncoding{kCFStringEncodingASCII});
    EXPECT_EQ(CFStringGetSmallestEncoding(Str("café")),
              CFStringEncoding{kCFStringEncodingMacRoman});
    EXPECT_EQ(CFStringGetSmallestEncoding(Str("日本語")), CFStringEncoding{kCFStringEncodingUTF16});
    EXPECT_EQ(CFStringGetSmallestEncoding(Str("a long text with 日")),
              CFStringEncoding{kCFStringEncodingUTF8});
    EXPECT_TRUE(CFStringIsEncodingAvailable(CFStringGetFastestEncoding(Str("x"))));
}

TEST(CFStringFileSystem, DecomposesAndComesBack) {
    char buffer[16] = "";
    EXPECT_TRUE(CFStringGetFileSystemRepresentation(Str("é"), buffer, 4));
    EXPECT_STREQ(buffer, "e\xCC\x81");
    EXPECT_FALSE(CFStringGetFileSystemRepresentation(Str("é"), buffer, 3));
    EXPECT_FALSE(CFStringGetFileSystemRepresentation(Units(u"\xD800"), buffer, 16));
    EXPECT_FALSE(CFStringGetFileSystemRepresentation(Units({u"a\0b", 3}), buffer, 16));
    EXPECT_EQ(TextOf(CFStringCreateWithFileSystemRepresentation(nullptr, "e\xCC\x81")),
              "e\xCC\x81");
    EXPECT_EQ(CFStringCreateWithFileSystemRepresentation(nullptr, "\xFF"), nullptr);
    Texts texts;
    for (int i = 0; i < 1000; ++i) {
        const auto text = Units(texts.Next());
        std::string room(size_t(CFStringGetMaximumSizeOfFileSystemRepresentation(text)), '\0');
        EXPECT_TRUE(CFStringGetFileSystemRepresentation(text, room.data(), CFIndex(room.size())));
    }
}

TEST(CFStringInlineBuffer, ReadsARangeAndZeroOutsideIt) {
    CFStringInlineBuffer buffer;
    const auto text = Str("0123456789");
    CFStringInitInlineBuffer(text, &buffer, CFRangeMake(2, 3));
    EXPECT_EQ(CFStringGetCharacterFromInlineBuffer(&buffer, 0), '2');
    EXPECT_EQ(CFStringGetCharacterFromInlineBuffer(&buffer, 2), '4');
    EXPECT_EQ(CFStringGetCharacterFromInlineBuffer(&buffer, 3), 0);
    EXPECT_EQ(CFStringGetCharacterFromInlineBuffer(&buffer, -1), 0);
}

}  // namespace
