// Locales: identifiers, what they say, what they call things.
#include <unicode/dcfmtsym.h>
#include <unicode/uloc.h>

#include "CFSupport.h"

namespace {

Ref<CFLocaleRef> Locale(const char* inIdentifier) {
    return Ref<CFLocaleRef>(CFLocaleCreate(nullptr, Str(inIdentifier)));
}

std::string Value(const char* inIdentifier, CFStringRef inKey) {
    const auto locale = Locale(inIdentifier);
    return Text(static_cast<CFStringRef>(CFLocaleGetValue(locale, inKey)));
}

std::string Canonical(const char* inName) {
    return TextOf(CFLocaleCreateCanonicalLocaleIdentifierFromString(nullptr, Str(inName)));
}

TEST(CFLocale, BringsIdentifiersIntoTheirUsualForm) {
    EXPECT_EQ(Canonical("en-us"), "en_US");
    EXPECT_EQ(Canonical("EN_us"), "en_US");
    EXPECT_EQ(Canonical("zh-hant-tw"), "zh_Hant_TW");
    EXPECT_EQ(Canonical("French"), "fr");
    EXPECT_EQ(Canonical("de_DE.UTF-8"), "de_DE");
    EXPECT_EQ(TextOf(CFLocaleCreateCanonicalLanguageIdentifierFromString(nullptr, Str("pt_br"))),
              "pt-BR");
    EXPECT_EQ(Text(CFLocaleGetIdentifier(Locale("fr-ca"))), "fr_CA");
}

TEST(CFLocale, SurvivesIdentifiersOfNonsense) {
    for (const char* name : {"", "_", "@", "a_b_c_d_e@=;=", "\xC3\xA9", "x-y-z@calendar"}) {
        const auto locale = Locale(name);
        ASSERT_NE(locale, nullptr) << name;
        EXPECT_NE(CFLocaleGetIdentifier(locale), nullptr) << name;
        CFLocaleGetValue(locale, kCFLocaleCurrencySymbol);
    }
    const std::string endless(100000, 'a');
    EXPECT_NE(Locale(endless.c_str()), nullptr);
}

TEST(CFLocale, SystemIsTheRootAndCurrentIsAlwaysTheSameObject) {
    EXPECT_EQ(Text(CFLocaleGetIdentifier(CFLocaleGetSystem())), "");
    const Ref<CFLocaleRef> one(CFLocaleCopyCurrent()), other(CFLocaleCopyCurrent());
    EXPECT_EQ(one, other);
    EXPECT_NE(Text(CFLocaleGetIdentifier(one)), "");
    EXPECT_EQ(CFGetTypeID(one), CFLocaleGetTypeID());
}

TEST(CFLocale, TakesTheCLocaleForTheUnitedStates) {
    const Ref<CFLocaleRef> current(CFLocaleCopyCurrent());
    const std::string expected =
        std::string(uloc_getDefault()) == "en_US_POSIX" ? "en_US" : uloc_getDefault();
    EXPECT_EQ(Text(CFLocaleGetIdentifier(current)), expected);
}

TEST(CFLocale, IsEqualToAnotherOfTheSameIdentifier) {
    EXPECT_TRUE(CFEqual(Locale("de_DE"), Locale("de-de")));
    EXPECT_EQ(CFHash(Locale("de_DE")), CFHash(Locale("de-de")));
    EXPECT_FALSE(CFEqual(Locale("de_DE"), Locale("de_AT")));
    const auto locale = Locale("de_DE");
    EXPECT_EQ(Ref<CFLocaleRef>(CFLocaleCreateCopy(nullptr, locale)), locale);
}

TEST(CFLocale, SaysWhatItsPartsAre) {
    EXPECT_EQ(Value("zh_Hant_TW", kCFLocaleLanguageCode), "zh");
    EXPECT_EQ(Value("zh_Hant_TW", kCFLocaleScriptCode), "Hant");
    EXPECT_EQ(Value("zh_Hant_TW", kCFLocaleCountryCode), "TW");
    EXPECT_EQ(Value("zh_Hant_TW", kCFLocaleVariantCode), "(null)");
    EXPECT_EQ(Value("en", kCFLocaleCountryCode), "(null)");
    EXPECT_EQ(Value("de_DE", kCFLocaleIdentifier), "de_DE");
    EXPECT_EQ(Value("de_DE@collation=phonebook", kCFLocaleCollationIdentifier), "phonebook");
    EXPECT_EQ(Value("th_TH", kCFLocaleCalendarIdentifier), "buddhist");
    EXPECT_EQ(Value("en_US", kCFLocaleCalendarIdentifier), Text(kCFGregorianCalendar));
    EXPECT_EQ(Value("en_US", CFSTR("no such key")), "(null)");
}

TEST(CFLocale, SaysHowNumbersAndMoneyAreWritten) {
    EXPECT_EQ(Value("de_DE", kCFLocaleDecimalSeparator), ",");
    EXPECT_EQ(Value("de_DE", kCFLocaleGroupingSeparator), ".");
    EXPECT_EQ(Value("en_US", kCFLocaleCurrencySymbol), "$");
    EXPECT_EQ(Value("de_DE", kCFLocaleCurrencyCode), "EUR");
    EXPECT_EQ(Value("en_US", kCFLocaleMeasurementSystem), "U.S.");
    EXPECT_EQ(Value("de_DE", kCFLocaleMeasurementSystem), "Metric");
    EXPECT_EQ(CFLocaleGetValue(Locale("en_US"), kCFLocaleUsesMetricSystem), kCFBooleanFalse);
    EXPECT_EQ(CFLocaleGetValue(Locale("fr_FR"), kCFLocaleUsesMetricSystem), kCFBooleanTrue);
}

TEST(CFLocale, LendsTheSameValueEachTime) {
    const auto locale = Locale("de_DE");
    EXPECT_EQ(CFLocaleGetValue(locale, kCFLocaleCurrencyCode),
              CFLocaleGetValue(locale, kCFLocaleCurrencyCode));
}

std::string Name(const char* inLocale, CFStringRef inKey, const char* inValue) {
    return TextOf(CFLocaleCopyDisplayNameForPropertyValue(Locale(inLocale), inKey, Str(inValue)));
}

TEST(CFLocale, CallsThingsByTheirNames) {
    EXPECT_EQ(Name("en_US", kCFLocaleLanguageCode, "fr"), "French");
    EXPECT_EQ(Name("de_DE", kCFLocaleLanguageCode, "fr"), "Französisch");
    EXPECT_EQ(Name("en_US", kCFLocaleCountryCode, "JP"), "Japan");
    EXPECT_EQ(Name("en_US", kCFLocaleCurrencyCode, "JPY"), "Japanese Yen");
    EXPECT_EQ(Name("en_US", kCFLocaleIdentifier, "fr_CA"), "French (Canada)");
    EXPECT_EQ(Name("en_US", kCFLocaleScriptCode, "Cyrl"), "Cyrillic");
    EXPECT_EQ(Name("en_US", kCFLocaleCountryCode, "QQ"), "(null)");
    EXPECT_EQ(Name("en_US", kCFLocaleDecimalSeparator, "."), "(null)");
}

TEST(CFLocale, TakesEveryAvailableIdentifierApartAndTogetherAgain) {
    const Ref<CFArrayRef> all(CFLocaleCopyAvailableLocaleIdentifiers());
    ASSERT_GT(CFArrayGetCount(all), 100);
    for (CFIndex i = 0; i < CFArrayGetCount(all); ++i) {
        const auto name = static_cast<CFStringRef>(CFArrayGetValueAtIndex(all, i));
        const Ref<CFDictionaryRef> parts(
            CFLocaleCreateComponentsFromLocaleIdentifier(nullptr, name));
        EXPECT_EQ(TextOf(CFLocaleCreateLocaleIdentifierFromComponents(nullptr, parts)), Text(name));
    }
}

TEST(CFLocale, KeepsWhatStandsBehindTheAt) {
    const Ref<CFDictionaryRef> parts(CFLocaleCreateComponentsFromLocaleIdentifier(
        nullptr, CFSTR("ja_JP@calendar=japanese;collation=unihan")));
    EXPECT_EQ(
        Text(static_cast<CFStringRef>(CFDictionaryGetValue(parts, kCFLocaleCalendarIdentifier))),
        "japanese");
    EXPECT_EQ(TextOf(CFLocaleCreateLocaleIdentifierFromComponents(nullptr, parts)),
              "ja_JP@calendar=japanese;collation=unihan");
}

bool Lists(CFArrayRef inOwned, const char* inCode) {
    const Ref<CFArrayRef> codes(inOwned);
    const CFRange all = CFRangeMake(0, CFArrayGetCount(codes));
    return CFArrayContainsValue(codes, all, Str(inCode));
}

TEST(CFLocale, ListsLanguagesCountriesAndCurrencies) {
    EXPECT_TRUE(Lists(CFLocaleCopyISOLanguageCodes(), "de"));
    EXPECT_TRUE(Lists(CFLocaleCopyISOCountryCodes(), "DE"));
    EXPECT_TRUE(Lists(CFLocaleCopyISOCurrencyCodes(), "EUR"));
    EXPECT_FALSE(Lists(CFLocaleCopyISOCountryCodes(), "de"));
}

TEST(CFLocale, GivesLettersTheirCaseInItsLanguage) {
    const Ref<CFMutableStringRef> text = MutableStr("TITLE");
    CFStringLowercase(text, Locale("tr_TR"));
    EXPECT_EQ(Text(text), "tıtle");
    CFStringUppercase(text, nullptr);
    EXPECT_EQ(Text(text), "TITLE");
    const Ref<CFMutableStringRef> word = MutableStr("istanbul");
    CFStringCapitalize(word, Locale("tr"));
    EXPECT_EQ(Text(word), "İstanbul");
}

}  // namespace
