// Strings from bytes and back to bytes.
#include <cstring>

#include "CFSupport.h"

namespace {

std::string_view Bytes(const char* inBytes, size_t inCount) {
    return {inBytes, inCount};
}

CFStringRef FromBytes(std::string_view inBytes, CFStringEncoding inEncoding, bool inIsExternal) {
    return CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(inBytes.data()),
                                   static_cast<CFIndex>(inBytes.size()), inEncoding, inIsExternal);
}

std::string Encoded(CFStringRef inString, CFStringEncoding inEncoding, UInt8 inLossByte = 0,
                    bool inIsExternal = false) {
    UInt8 buffer[256];
    CFIndex used = 0;
    CFStringGetBytes(inString, CFRangeMake(0, CFStringGetLength(inString)), inEncoding, inLossByte,
                     inIsExternal, buffer, sizeof buffer, &used);
    return std::string(reinterpret_cast<char*>(buffer), static_cast<size_t>(used));
}

TEST(CFStringCreate, TakesMarksOffExternalBytesOnly) {
    EXPECT_EQ(TextOf(FromBytes("\xEF\xBB\xBF"
                               "a",
                               kCFStringEncodingUTF8, true)),
              "a");
    EXPECT_EQ(TextOf(FromBytes("\xEF\xBB\xBF"
                               "a",
                               kCFStringEncodingUTF8, false)),
              "a");
    EXPECT_EQ(TextOf(FromBytes(Bytes("\xFE\xFF\0a", 4), kCFStringEncodingUTF16, true)), "a");
    EXPECT_EQ(TextOf(FromBytes(Bytes("\xFF\xFE"
                                     "a\0",
                                     4),
                               kCFStringEncodingUTF16, true)),
              "a");
    EXPECT_EQ(TextOf(FromBytes(Bytes("\xFE\xFF\0a", 4), kCFStringEncodingUTF16BE, true)),
              "\xEF\xBB\xBF"
              "a");
    EXPECT_EQ(TextOf(FromBytes(Bytes("\0\0\xFE\xFF\0\0\0a", 8), kCFStringEncodingUTF32, true)),
              "a");
}

TEST(CFStringCreate, ReadsExternalUTF16WithoutMarkAsBigEndian) {
    EXPECT_EQ(TextOf(FromBytes(Bytes("\0a", 2), kCFStringEncodingUTF16, true)), "a");
    const UniChar unit = 'a';
    std::string host(2, '\0');
    std::memcpy(host.data(), &unit, 2);
    EXPECT_EQ(TextOf(FromBytes(host, kCFStringEncodingUTF16, false)), "a");
}

TEST(CFStringCreate, IgnoresAnOddLastByteOfUTF16) {
    EXPECT_EQ(TextOf(FromBytes(Bytes("\0a\0", 3), kCFStringEncodingUTF16BE, false)), "a");
}

TEST(CFStringCreate, RefusesBytesThatAreNotValid) {
    for (const char* bytes :
         {"\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\x80", "\xA9"}) {
        EXPECT_FALSE(CFStringCreateWithCString(nullptr, bytes, kCFStringEncodingUTF8)) << bytes;
    }
    EXPECT_FALSE(CFStringCreateWithCString(nullptr, "\x80", kCFStringEncodingASCII));
    EXPECT_FALSE(FromBytes(Bytes("\0\x11\0\0", 4), kCFStringEncodingUTF32BE, false));
    EXPECT_FALSE(FromBytes("a", kCFStringEncodingInvalidId, false));
    EXPECT_FALSE(CFStringCreateWithBytes(nullptr, nullptr, -1, kCFStringEncodingUTF8, false));
}

TEST(CFStringCreate, KnowsEveryMacRomanByte) {
    std::string bytes(256, '\0');
    for (size_t i = 0; i < 256; ++i) bytes[i] = static_cast<char>(i);
    const Ref<CFStringRef> string(FromBytes(bytes, kCFStringEncodingMacRoman, false));
    ASSERT_EQ(CFStringGetLength(string), 256);
    EXPECT_EQ(CFStringGetCharacterAtIndex(string, 0xDB), 0x20AC);
    EXPECT_EQ(CFStringGetCharacterAtIndex(string, 0xF0), 0xF8FF);
    EXPECT_EQ(Encoded(string, kCFStringEncodingMacRoman), bytes);
}

TEST(CFStringCreate, KeepsZerosAndLoneSurrogates) {
    const auto string = Units({u"a\0\xD800", 3});
    EXPECT_EQ(CFStringGetLength(string), 3);
    EXPECT_EQ(CFStringGetCharacterAtIndex(string, 2), 0xD800);
    EXPECT_EQ(CFStringGetCharacterAtIndex(string, 3), 0);
    EXPECT_EQ(CFStringGetCharacterAtIndex(string, -1), 0);
}

TEST(CFStringCreate, GivesTheSharedEmptyStringForNoText) {
    const Ref<CFStringRef> one(CFStringCreateWithCString(nullptr, "", kCFStringEncodingUTF8));
    const Ref<CFStringRef> other(CFStringCreateWithCharacters(nullptr, nullptr, 0));
    EXPECT_EQ(static_cast<CFStringRef>(one), static_cast<CFStringRef>(other));
    EXPECT_EQ(CFGetRetainCount(one), 0x7FFFFFFF);
}

TEST(CFStringCreate, FreesBytesItTookOver) {
    for (const CFAllocatorRef owner : {kCFAllocatorDefault, kCFAllocatorMalloc}) {
        auto* bytes = static_cast<char*>(CFAllocatorAllocate(owner, 4, 0));
        std::strcpy(bytes, "abc");
        EXPECT_EQ(
            TextOf(CFStringCreateWithCStringNoCopy(nullptr, bytes, kCFStringEncodingUTF8, owner)),
            "abc");
    }
    const char kept[] = "abc";
    EXPECT_EQ(TextOf(CFStringCreateWithCStringNoCopy(nullptr, kept, kCFStringEncodingUTF8,
                                                     kCFAllocatorNull)),
              "abc");
}

TEST(CFStringSubstring, OfTheWholeIsTheStringItself) {
    const auto string = Str("abc");
    const Ref<CFStringRef> whole(CFStringCreateWithSubstring(nullptr, string, CFRangeMake(0, 3)));
    EXPECT_EQ(static_cast<CFStringRef>(whole), static_cast<CFStringRef>(string));
    EXPECT_EQ(TextOf(CFStringCreateWithSubstring(nullptr, string, CFRangeMake(1, 1))), "b");
    EXPECT_EQ(TextOf(CFStringCreateWithSubstring(nullptr, string, CFRangeMake(3, 0))), "");
}

TEST(CFStringSubstring, OfARangeOutsideIsNull) {
    const auto string = Str("abc");
    for (const CFRange range : {CFRange{-1, 0}, CFRange{0, -1}, CFRange{0, 4}, CFRange{4, 0},
                                CFRange{2, 2}, CFRange{1, INT32_MAX}}) {
        EXPECT_FALSE(CFStringCreateWithSubstring(nullptr, string, range)) << range;
    }
}

TEST(CFStringCopy, RetainsAnImmutableStringAndCopiesAMutableOne) {
    const auto string = Str("abc");
    const Ref<CFStringRef> copy(CFStringCreateCopy(nullptr, string));
    EXPECT_EQ(static_cast<CFStringRef>(copy), static_cast<CFStringRef>(string));
    const auto changing = MutableStr("abc");
    const Ref<CFStringRef> frozen(CFStringCreateCopy(nullptr, changing));
    CFStringAppend(changing, CFSTR("d"));
    EXPECT_EQ(Text(frozen), "abc");
    EXPECT_EQ(Text(changing), "abcd");
}

TEST(CFSTR, GivesOneImmortalObjectForEqualLiterals) {
    const CFStringRef one = CFSTR("literal"), other = CFSTR("literal");
    EXPECT_EQ(one, other);
    EXPECT_EQ(CFGetRetainCount(one), 0x7FFFFFFF);
    CFRelease(one);
    CFRelease(one);
    EXPECT_EQ(Text(one), "literal");
    EXPECT_EQ(CFStringGetCharacterAtIndex(CFSTR("\x8E"), 0), 0xE9);
}

TEST(CFString, IsEqualByUnitsWhateverItsStorage) {
    EXPECT_TRUE(CFEqual(CFSTR("abc"), MutableStr("abc")));
    EXPECT_EQ(CFHash(CFSTR("abc")), CFHash(MutableStr("abc")));
    EXPECT_FALSE(CFEqual(Str("\xC3\xA9"), Str("e\xCC\x81")));
}

TEST(CFStringGetCString, NeverCutsAndLeavesAnEmptyTextOnFailure) {
    const auto string = Str("abc");
    char buffer[8] = "xxxxxxx";
    EXPECT_FALSE(CFStringGetCString(string, buffer, 3, kCFStringEncodingUTF8));
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(CFStringGetCString(string, buffer, 4, kCFStringEncodingUTF8));
    EXPECT_STREQ(buffer, "abc");
    EXPECT_FALSE(CFStringGetCString(string, buffer, 0, kCFStringEncodingUTF8));
    EXPECT_STREQ(buffer, "abc");
    EXPECT_FALSE(CFStringGetCString(Str("\xE6\x97\xA5"), buffer, 8, kCFStringEncodingMacRoman));
    EXPECT_STREQ(buffer, "");
    EXPECT_FALSE(CFStringGetCString(string, buffer, 8, kCFStringEncodingInvalidId));
}

TEST(CFStringGetPascalString, TakesAtMost255Units) {
    UInt8 buffer[300];
    const auto longest = Str(std::string(255, 'a')), longer = Str(std::string(256, 'a'));
    EXPECT_TRUE(CFStringGetPascalString(longest, buffer, 256, kCFStringEncodingMacRoman));
    EXPECT_EQ(buffer[0], 255);
    EXPECT_FALSE(CFStringGetPascalString(longest, buffer, 255, kCFStringEncodingMacRoman));
    EXPECT_EQ(buffer[0], 0);
    EXPECT_FALSE(CFStringGetPascalString(longer, buffer, 300, kCFStringEncodingMacRoman));
    EXPECT_EQ(buffer[0], 0);
}

TEST(CFStringGetBytes, ComposesBeforeItEncodesInOneByte) {
    EXPECT_EQ(Encoded(Str("e\xCC\x81"), kCFStringEncodingMacRoman), "\x8E");
    EXPECT_EQ(Encoded(Str("e\xCC\x81"), kCFStringEncodingISOLatin1), "\xE9");
    EXPECT_EQ(Encoded(Units(u"\x2126\x03A9"), kCFStringEncodingMacRoman), "\xBD\xBD");
    EXPECT_EQ(Encoded(Units(u"a\x0301"
                            u"b"),
                      kCFStringEncodingMacRoman),
              "\x87"
              "b");
    EXPECT_EQ(Encoded(Units(u"\x0301"), kCFStringEncodingMacRoman), "");
}

TEST(CFStringGetBytes, StopsAtWhatCannotBeSaidOrPutsTheLossByte) {
    const auto string =
        Str("ab\xE6\x97\xA5"
            "c");
    CFIndex used = 0;
    EXPECT_EQ(CFStringGetBytes(string, CFRangeMake(0, 4), kCFStringEncodingMacRoman, 0, false,
                               nullptr, 0, &used),
              2);
    EXPECT_EQ(used, 2);
    EXPECT_EQ(Encoded(string, kCFStringEncodingMacRoman, '?'), "ab?c");
    for (const UniChar hidden : {UniChar(0x00AD), UniChar(0x200B), UniChar(0xFEFF)}) {
        const Ref<CFStringRef> text(CFStringCreateWithCharacters(nullptr, &hidden, 1));
        EXPECT_EQ(Encoded(text, kCFStringEncodingMacRoman, '?'), "?") << hidden;
        EXPECT_EQ(Encoded(text, kCFStringEncodingWindowsLatin1, '?'), hidden == 0xAD ? "\xAD" : "?")
            << hidden;
    }
}

TEST(CFStringGetBytes, NeverSplitsACharacterAtTheEndOfTheBuffer) {
    const auto string = Str("a\xF0\x9F\x98\x80");
    UInt8 buffer[8];
    CFIndex used = -1;
    EXPECT_EQ(CFStringGetBytes(string, CFRangeMake(0, 3), kCFStringEncodingUTF8, 0, false, buffer,
                               4, &used),
              1);
    EXPECT_EQ(used, 1);
    EXPECT_EQ(CFStringGetBytes(string, CFRangeMake(0, 3), kCFStringEncodingUTF16BE, 0, false,
                               buffer, 5, &used),
              1);
    EXPECT_EQ(CFStringGetBytes(string, CFRangeMake(0, 3), kCFStringEncodingUTF8, 0, false, buffer,
                               5, nullptr),
              3);
}

TEST(CFStringGetBytes, CannotSayALoneSurrogateInUTF8) {
    EXPECT_EQ(Encoded(Units(u"a\xDC00"), kCFStringEncodingUTF8), "a");
    EXPECT_EQ(Encoded(Units(u"\xDC00"), kCFStringEncodingUTF16BE), Bytes("\xDC\0", 2));
}

TEST(CFStringGetBytes, PutsAMarkInFrontOfExternalTextsWithOpenByteOrder) {
    EXPECT_EQ(Encoded(CFSTR("a"), kCFStringEncodingUTF8, 0, true),
              "\xEF\xBB\xBF"
              "a");
    EXPECT_EQ(Encoded(CFSTR("a"), kCFStringEncodingUTF16BE, 0, true), Bytes("\0a", 2));
    EXPECT_EQ(Encoded(CFSTR("a"), kCFStringEncodingUTF16, 0, true).size(), 4u);
    EXPECT_EQ(Encoded(CFSTR("a"), kCFStringEncodingUTF32, 0, true).size(), 8u);
}

TEST(CFStringExternalRepresentation, IsReadBackInEveryEncoding) {
    const auto string = Str("na\xC3\xAFve");
    for (const CFStringEncoding encoding :
         {0u, 0x0500u, 0x0201u, 0x0100u, 0x10000100u, 0x14000100u, 0x08000100u, 0x0C000100u,
          0x18000100u, 0x1C000100u, 0x0400u}) {
        const Ref<CFDataRef> data(
            CFStringCreateExternalRepresentation(nullptr, string, encoding, 0));
        ASSERT_TRUE(data) << encoding;
        EXPECT_EQ(TextOf(CFStringCreateFromExternalRepresentation(nullptr, data, encoding)),
                  Text(string))
            << encoding;
    }
    EXPECT_FALSE(CFStringCreateExternalRepresentation(nullptr, string, kCFStringEncodingASCII, 0));
}

TEST(CFStringEncoding, KnowsWhatItOffersAndWhatThatTakes) {
    EXPECT_EQ(CFStringGetSystemEncoding(), UInt32(kCFStringEncodingMacRoman));
    EXPECT_TRUE(CFStringIsEncodingAvailable(0x0A01));
    EXPECT_FALSE(CFStringIsEncodingAvailable(1));
    EXPECT_FALSE(CFStringIsEncodingAvailable(kCFStringEncodingInvalidId));
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingMacRoman), 10);
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF8), 30);
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF16), 20);
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF32), 40);
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(INT32_MAX, kCFStringEncodingUTF8), kCFNotFound);
}

TEST(CFStringNumbers, AreReadAfterWhiteSpaceWhateverTheLocale) {
    EXPECT_EQ(CFStringGetIntValue(CFSTR("  -42x")), -42);
    EXPECT_EQ(CFStringGetIntValue(CFSTR("99999999999")), INT32_MAX);
    EXPECT_EQ(CFStringGetIntValue(CFSTR("-99999999999")), INT32_MIN);
    EXPECT_EQ(CFStringGetIntValue(CFSTR("x")), 0);
    EXPECT_EQ(CFStringGetDoubleValue(CFSTR(" +2.75e1 ")), 27.5);
    EXPECT_EQ(CFStringGetDoubleValue(CFSTR("information")), 0);
}

}  // namespace
