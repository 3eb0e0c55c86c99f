// Case, normal forms and formats.
#include <climits>
#include <clocale>

#include "CFSupport.h"

namespace {

std::string Cased(void (*inChange)(CFMutableStringRef, CFLocaleRef), const char* inText) {
    const auto string = MutableStr(inText);
    inChange(string, nullptr);
    return Text(string);
}

TEST(CFStringCase, MapsFullyAndForNoLanguageInParticular) {
    EXPECT_EQ(Cased(CFStringUppercase,
                    "stra\xC3\x9F"
                    "e \xEF\xAC\x81 i"),
              "STRASSE FI I");
    EXPECT_EQ(Cased(CFStringLowercase, "\xCE\x91\xCE\xA3 \xCE\xA3"), "\xCE\xB1\xCF\x82 \xCF\x83");
}

TEST(CFStringCapitalize, KeepsItsOwnRuleOfWords) {
    EXPECT_EQ(Cased(CFStringCapitalize, "file2name"), "File2Name");
    EXPECT_EQ(Cased(CFStringCapitalize, "a_b"), "A_B");
    EXPECT_EQ(Cased(CFStringCapitalize, "u.s.a."), "U.S.A.");
    EXPECT_EQ(Cased(CFStringCapitalize, "don't stop"), "Don't Stop");
    EXPECT_EQ(Cased(CFStringCapitalize, "UPPER case"), "Upper Case");
    EXPECT_EQ(Cased(CFStringCapitalize, "\xC7\x86x"), "\xC7\x85x");
    EXPECT_EQ(Cased(CFStringCapitalize, "\xC3\x9F"), "Ss");
}

TEST(CFStringNormalize, GivesTheFourForms) {
    const auto form = [](CFStringNormalizationForm inForm) {
        const auto string = MutableStr("\xC3\xA9\xEF\xAC\x81");
        CFStringNormalize(string, inForm);
        return Text(string);
    };
    EXPECT_EQ(form(kCFStringNormalizationFormD), "e\xCC\x81\xEF\xAC\x81");
    EXPECT_EQ(form(kCFStringNormalizationFormKD),
              "e\xCC\x81"
              "fi");
    EXPECT_EQ(form(kCFStringNormalizationFormC), "\xC3\xA9\xEF\xAC\x81");
    EXPECT_EQ(form(kCFStringNormalizationFormKC),
              "\xC3\xA9"
              "fi");
    EXPECT_EQ(form(99), "\xC3\xA9\xEF\xAC\x81");
}

template <typename... T>
std::string Formatted(const char* inFormat, T... inValues) {
    return TextOf(CFStringCreateWithFormat(nullptr, nullptr, Str(inFormat), inValues...));
}

TEST(CFStringFormat, PutsObjectsInByTheirText) {
    const SInt32 number = 42;
    const Ref<CFNumberRef> object(CFNumberCreate(nullptr, kCFNumberSInt32Type, &number));
    EXPECT_EQ(Formatted("%@%@", CFSTR("a"), CFSTR("b")), "ab");
    EXPECT_EQ(Formatted("%@ %@", static_cast<CFNumberRef>(object), kCFBooleanTrue), "42 true");
    EXPECT_EQ(Formatted("%@ %s %S %P", nullptr, nullptr, nullptr, nullptr),
              "(null) (null) (null) (null)");
    EXPECT_EQ(Formatted("%9.1@", CFSTR("ab")), "ab");
}

TEST(CFStringFormat, ReadsBytesInTheSystemEncoding) {
    EXPECT_EQ(Formatted("%s", "\x8E"), "\xC3\xA9");
    EXPECT_EQ(Formatted("%.2s|%5s|%-5s|", "abc", "ab", "ab"), "ab|   ab|ab   |");
    EXPECT_EQ(Formatted("%P", "\3abcd"), "abc");
    EXPECT_EQ(Formatted("%c%C", 0x8E, 0x20AC), "\xC3\xA9\xE2\x82\xAC");
    const UniChar units[] = {'x', 0x3A9, 0};
    EXPECT_EQ(Formatted("%S", units), "x\xCE\xA9");
}

TEST(CFStringFormat, WritesIntegersOfEverySize) {
    EXPECT_EQ(Formatted("%d %i %u %x %X %o", -1, 7, 0xFFFFFFFFu, 255, 255, 8),
              "-1 7 4294967295 ff FF 10");
    EXPECT_EQ(Formatted("%D %U %O", -1, 5u, 8), "-1 5 10");
    EXPECT_EQ(Formatted("%ld %lld %qd %llx", LONG_MIN, 1LL << 40, -(1LL << 40), -1LL),
              "-9223372036854775808 1099511627776 -1099511627776 ffffffffffffffff");
    EXPECT_EQ(Formatted("%hd %hhd %hu %hhx", 0x12345, 0x1FF, 0x12345, 0x1FF), "9029 -1 9029 ff");
    EXPECT_EQ(Formatted("%5d|%-5d|%05d|%+d|% d|%.3d", 42, 42, 42, 42, 42, 7),
              "   42|42   |00042|+42| 42|007");
    EXPECT_EQ(Formatted("%#x", 255), "ff");
    EXPECT_EQ(Formatted("%*d|%-*d|%.*f", 4, 1, 4, 1, 2, 1.239), "   1|1   |1.24");
    EXPECT_EQ(Formatted("%*d", -4, 1), "1   ");
}

TEST(CFStringFormat, WritesRealsWithAPointWhateverTheLocale) {
    const char* german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_EQ(Formatted("%.2f %e %g %G", 1.5, 1.5, 1e20, 1e-7), "1.50 1.500000e+00 1e+20 1E-07");
    EXPECT_EQ(Formatted("%f", 1e300).size(), 308u);
    if (german) std::setlocale(LC_NUMERIC, "C");
}

TEST(CFStringFormat, TakesArgumentsByTheirPositions) {
    EXPECT_EQ(Formatted("%2$@ %1$@ %2$@", CFSTR("a"), CFSTR("b")), "b a b");
    EXPECT_EQ(Formatted("%2$s %1$lld", 1LL << 40, "x"), "x 1099511627776");
}

TEST(CFStringFormat, PrintsUnknownLettersAsThemselvesAndNeverCounts) {
    int counted = 7;
    EXPECT_EQ(Formatted("100%% %y", 0), "100% y");
    EXPECT_EQ(Formatted("ab%n", &counted), "abn");
    EXPECT_EQ(counted, 7);
    EXPECT_EQ(Formatted("%"), "%");
    EXPECT_EQ(Formatted("%5"), "%");
}

TEST(CFStringFormat, LimitsTheWidthOfAField) {
    EXPECT_EQ(Formatted("%100000d", 1).size(), 255u);
    EXPECT_EQ(Formatted("%.100000d", 1).size(), 255u);
}

TEST(CFStringFormat, AppendsToMutableStrings) {
    const auto string = MutableStr("a");
    CFStringAppendFormat(string, nullptr, CFSTR("%d%@"), 1,
                         static_cast<CFMutableStringRef>(string));
    EXPECT_EQ(Text(string), "a1a");
}

}  // namespace
