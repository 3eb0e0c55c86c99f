// Identifiers of locales: their usual form, their parts, and all that there are.
#include <unicode/strenum.h>
#include <unicode/ucurr.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "core_foundation/dates_and_locales/icu_text.h"
#include "core_foundation/dates_and_locales/locale.h"

namespace carbon {

namespace {

// Languages that were once called by their English names.
constexpr const char* kOldNames[][2] = {
    {"English", "en"}, {"French", "fr"},  {"German", "de"},  {"Japanese", "ja"},
    {"Spanish", "es"}, {"Italian", "it"}, {"Dutch", "nl"},   {"Portuguese", "pt"},
    {"Swedish", "sv"}, {"Danish", "da"},  {"Finnish", "fi"}, {"Norwegian", "no"},
    {"Russian", "ru"}, {"Polish", "pl"},  {"Czech", "cs"},   {"Hungarian", "hu"},
    {"Greek", "el"},   {"Turkish", "tr"}, {"Arabic", "ar"},  {"Hebrew", "he"},
    {"Korean", "ko"},
};

CFArrayRef NewStrings(const std::vector<std::string>& inTexts) {
    const Owned<CFMutableArrayRef> strings(
        CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    if (!strings) return nullptr;
    for (const std::string& text : inTexts) {
        const Owned<CFStringRef> string(NewAsciiString(text));
        CFArrayAppendValue(strings.Get(), string.Get());
    }
    return CFArrayCreateCopy(nullptr, strings.Get());
}

std::vector<std::string> Listed(const char* const* inCodes) {
    std::vector<std::string> codes;
    for (; *inCodes; ++inCodes) codes.emplace_back(*inCodes);
    return codes;
}

std::vector<std::string> LocaleNames() {
    std::vector<std::string> names;
    for (int32_t i = 0; i < uloc_countAvailable(); ++i) names.emplace_back(uloc_getAvailable(i));
    return names;
}

std::vector<std::string> CurrencyCodes() {
    std::vector<std::string> codes;
    UErrorCode error = U_ZERO_ERROR;
    UEnumeration* all = ucurr_openISOCurrencies(UCURR_ALL, &error);
    while (const char* code = uenum_next(all, nullptr, &error)) codes.emplace_back(code);
    uenum_close(all);
    return codes;
}

void Set(const Owned<CFMutableDictionaryRef>& ioParts, CFStringRef inKey, std::string_view inText) {
    if (inText.empty()) return;
    const Owned<CFStringRef> text(NewAsciiString(inText));
    CFDictionarySetValue(ioParts.Get(), inKey, text.Get());
}

void SetKeywords(const Owned<CFMutableDictionaryRef>& ioParts, const icu::Locale& inLocale) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> keywords(inLocale.createKeywords(error));
    if (U_FAILURE(error) || !keywords) return;
    while (const char* keyword = keywords->next(nullptr, error)) {
        const Owned<CFStringRef> key(NewAsciiString(keyword));
        Set(ioParts, key.Get(), inLocale.getKeywordValue<std::string>(keyword, error));
    }
}

CFDictionaryRef NewParts(const std::string& inName) {
    const icu::Locale locale(inName.c_str());
    const Owned<CFMutableDictionaryRef> parts(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    if (!parts) return nullptr;
    Set(parts, kCFLocaleLanguageCode, locale.getLanguage());
    Set(parts, kCFLocaleScriptCode, locale.getScript());
    Set(parts, kCFLocaleCountryCode, locale.getCountry());
    Set(parts, kCFLocaleVariantCode, locale.getVariant());
    SetKeywords(parts, locale);
    return CFDictionaryCreateCopy(nullptr, parts.Get());
}

std::string Part(CFDictionaryRef inParts, CFStringRef inKey) {
    const CFTypeRef value = CFDictionaryGetValue(inParts, inKey);
    const bool isText = value && CFGetTypeID(value) == kStringKind;
    return isText ? AsciiText(static_cast<CFStringRef>(value)) : std::string();
}

bool IsNamedPart(CFStringRef inKey) {
    const CFStringRef known[] = {kCFLocaleLanguageCode, kCFLocaleScriptCode, kCFLocaleCountryCode,
                                 kCFLocaleVariantCode, kCFLocaleIdentifier};
    return std::any_of(std::begin(known), std::end(known),
                       [&](CFStringRef key) { return CFEqual(key, inKey); });
}

// "@calendar=japanese;collation=phonebook", in the order of the keywords' names.
std::string Keywords(CFDictionaryRef inParts) {
    const auto count = static_cast<size_t>(CFDictionaryGetCount(inParts));
    std::vector<const void*> keys(count);
    CFDictionaryGetKeysAndValues(inParts, keys.data(), nullptr);
    std::vector<std::string> pairs;
    for (const void* key : keys) {
        const auto name = static_cast<CFStringRef>(key);
        if (CFGetTypeID(key) != kStringKind || IsNamedPart(name)) continue;
        pairs.push_back(AsciiText(name) + "=" + Part(inParts, name));
    }
    std::sort(pairs.begin(), pairs.end());
    std::string text;
    for (const std::string& pair : pairs) text += (text.empty() ? "@" : ";") + pair;
    return text;
}

std::string Joined(CFDictionaryRef inParts) {
    std::string name = Part(inParts, kCFLocaleLanguageCode);
    const std::string script = Part(inParts, kCFLocaleScriptCode);
    const std::string country = Part(inParts, kCFLocaleCountryCode);
    const std::string variant = Part(inParts, kCFLocaleVariantCode);
    if (!script.empty()) name += "_" + script;
    if (!country.empty()) name += "_" + country;
    if (!variant.empty()) name += (country.empty() ? "__" : "_") + variant;
    return name + Keywords(inParts);
}

}  // namespace

std::string CanonicalLocaleName(const std::string& inName) {
    for (const auto& [name, code] : kOldNames) {
        if (inName == name) return code;
    }
    char canonical[ULOC_FULLNAME_CAPACITY];
    UErrorCode error = U_ZERO_ERROR;
    const int32_t length = uloc_canonicalize(inName.c_str(), canonical, sizeof canonical, &error);
    return U_SUCCESS(error) && error != U_STRING_NOT_TERMINATED_WARNING
               ? std::string(canonical, static_cast<size_t>(length))
               : inName;
}

}  // namespace carbon

using carbon::AsciiText;
using carbon::OrNull;

CFArrayRef CFLocaleCopyAvailableLocaleIdentifiers() {
    return OrNull([] { return carbon::NewStrings(carbon::LocaleNames()); });
}

CFArrayRef CFLocaleCopyISOLanguageCodes() {
    return OrNull([] { return carbon::NewStrings(carbon::Listed(uloc_getISOLanguages())); });
}

CFArrayRef CFLocaleCopyISOCountryCodes() {
    return OrNull([] { return carbon::NewStrings(carbon::Listed(uloc_getISOCountries())); });
}

CFArrayRef CFLocaleCopyISOCurrencyCodes() {
    return OrNull([] { return carbon::NewStrings(carbon::CurrencyCodes()); });
}

CFStringRef CFLocaleCreateCanonicalLanguageIdentifierFromString(CFAllocatorRef,
                                                                CFStringRef localeIdentifier) {
    return OrNull([&] {
        std::string name = carbon::CanonicalLocaleName(AsciiText(localeIdentifier));
        std::replace(name.begin(), name.end(), '_', '-');
        return carbon::NewAsciiString(name);
    });
}

CFStringRef CFLocaleCreateCanonicalLocaleIdentifierFromString(CFAllocatorRef,
                                                              CFStringRef localeIdentifier) {
    return OrNull([&] {
        return carbon::NewAsciiString(carbon::CanonicalLocaleName(AsciiText(localeIdentifier)));
    });
}

CFDictionaryRef CFLocaleCreateComponentsFromLocaleIdentifier(CFAllocatorRef, CFStringRef localeID) {
    return OrNull([&] { return carbon::NewParts(AsciiText(localeID)); });
}

CFStringRef CFLocaleCreateLocaleIdentifierFromComponents(CFAllocatorRef,
                                                         CFDictionaryRef dictionary) {
    return OrNull([&] { return carbon::NewAsciiString(carbon::Joined(dictionary)); });
}
