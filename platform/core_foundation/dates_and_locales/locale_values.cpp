// What locales say: their parts, their numbers and money, and what they call things.
#include <CoreFoundation/CFNumber.h>
#include <unicode/calendar.h>
#include <unicode/dcfmtsym.h>
#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/ulocdata.h>

#include <memory>

#include "core_foundation/dates_and_locales/icu_text.h"
#include "core_foundation/dates_and_locales/locale.h"

namespace carbon {

namespace {

CFStringRef NewOrNone(std::string_view inText) {
    return inText.empty() ? nullptr : NewAsciiString(inText);
}

CFTypeRef NewKeyword(const icu::Locale& inLocale, const char* inKeyword) {
    UErrorCode error = U_ZERO_ERROR;
    const auto value = inLocale.getKeywordValue<std::string>(inKeyword, error);
    return U_SUCCESS(error) ? NewOrNone(value) : nullptr;
}

CFTypeRef NewCalendarName(const icu::Locale& inLocale) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(inLocale, error));
    return U_SUCCESS(error) ? NewAsciiString(calendar->getType()) : nullptr;
}

CFTypeRef NewSymbol(const icu::Locale& inLocale,
                    icu::DecimalFormatSymbols::ENumberFormatSymbol which) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(inLocale, error);
    return U_SUCCESS(error) ? NewString(symbols.getSymbol(which)) : nullptr;
}

CFTypeRef NewCurrencyCode(const icu::Locale& inLocale) {
    char16_t code[4] = {};
    UErrorCode error = U_ZERO_ERROR;
    const int32_t length = ucurr_forLocale(inLocale.getName(), code, 4, &error);
    return U_SUCCESS(error) && length > 0 ? NewString(std::u16string_view(code, 3)) : nullptr;
}

UMeasurementSystem Measures(const icu::Locale& inLocale) {
    UErrorCode error = U_ZERO_ERROR;
    const auto system = ulocdata_getMeasurementSystem(inLocale.getName(), &error);
    return U_SUCCESS(error) ? system : UMS_SI;
}

CFTypeRef NewMeasures(const icu::Locale& inLocale) {
    const UMeasurementSystem system = Measures(inLocale);
    return NewAsciiString(system == UMS_US ? "U.S." : system == UMS_UK ? "U.K." : "Metric");
}

using MakeValue = CFTypeRef (*)(const icu::Locale&);

struct KeyedValue {
    const CFStringRef* key;
    MakeValue make;
};

constexpr KeyedValue kValues[] = {
    {&kCFLocaleLanguageCode,
     [](const icu::Locale& inLocale) -> CFTypeRef { return NewOrNone(inLocale.getLanguage()); }},
    {&kCFLocaleCountryCode,
     [](const icu::Locale& inLocale) -> CFTypeRef { return NewOrNone(inLocale.getCountry()); }},
    {&kCFLocaleScriptCode,
     [](const icu::Locale& inLocale) -> CFTypeRef { return NewOrNone(inLocale.getScript()); }},
    {&kCFLocaleVariantCode,
     [](const icu::Locale& inLocale) -> CFTypeRef { return NewOrNone(inLocale.getVariant()); }},
    {&kCFLocaleCalendarIdentifier, NewCalendarName},
    {&kCFLocaleCollationIdentifier,
     [](const icu::Locale& inLocale) { return NewKeyword(inLocale, "collation"); }},
    {&kCFLocaleUsesMetricSystem,
     [](const icu::Locale& inLocale) -> CFTypeRef {
         return Measures(inLocale) == UMS_US ? kCFBooleanFalse : kCFBooleanTrue;
     }},
    {&kCFLocaleMeasurementSystem, NewMeasures},
    {&kCFLocaleDecimalSeparator,
     [](const icu::Locale& inLocale) {
         return NewSymbol(inLocale, icu::DecimalFormatSymbols::kDecimalSeparatorSymbol);
     }},
    {&kCFLocaleGroupingSeparator,
     [](const icu::Locale& inLocale) {
         return NewSymbol(inLocale, icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
     }},
    {&kCFLocaleCurrencySymbol,
     [](const icu::Locale& inLocale) {
         return NewSymbol(inLocale, icu::DecimalFormatSymbols::kCurrencySymbol);
     }},
    {&kCFLocaleCurrencyCode, NewCurrencyCode},
};

// How ICU is asked for the name of one part of an identifier.
using NameCall = int32_t (*)(const char*, const char*, char16_t*, int32_t, UErrorCode*);

struct KeyedName {
    const CFStringRef* key;
    const char* before;  // what makes an identifier of the value
    NameCall call;
};

int32_t CalendarName(const char* inIdentifier, const char* inDisplay, char16_t* outName,
                     int32_t inRoom, UErrorCode* ioError) {
    return uloc_getDisplayKeywordValue(inIdentifier, "calendar", inDisplay, outName, inRoom,
                                       ioError);
}

constexpr KeyedName kNames[] = {
    {&kCFLocaleIdentifier, "", uloc_getDisplayName},
    {&kCFLocaleLanguageCode, "", uloc_getDisplayLanguage},
    {&kCFLocaleCountryCode, "und_", uloc_getDisplayCountry},
    {&kCFLocaleScriptCode, "und_", uloc_getDisplayScript},
    {&kCFLocaleVariantCode, "und__", uloc_getDisplayVariant},
    {&kCFLocaleCalendarIdentifier, "und@calendar=", CalendarName},
};

CFStringRef NewCurrencyName(const icu::Locale& inDisplay, CFStringRef inCode) {
    const std::u16string code(View(inCode));
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    const char16_t* name =
        ucurr_getName(code.c_str(), inDisplay.getName(), UCURR_LONG_NAME, nullptr, &length, &error);
    if (U_FAILURE(error) || error == U_USING_DEFAULT_WARNING) return nullptr;
    return NewString(std::u16string_view(name, static_cast<size_t>(length)));
}

CFStringRef NewName(const KeyedName& inName, const icu::Locale& inDisplay, CFStringRef inValue) {
    constexpr int32_t kRoom = 256;
    char16_t name[kRoom];
    UErrorCode error = U_ZERO_ERROR;
    const std::string identifier = inName.before + AsciiText(inValue);
    const int32_t length =
        inName.call(identifier.c_str(), inDisplay.getName(), name, kRoom, &error);
    const bool isNamed = U_SUCCESS(error) && error != U_USING_DEFAULT_WARNING && length > 0;
    return isNamed ? NewString(std::u16string_view(name, static_cast<size_t>(length))) : nullptr;
}

CFStringRef NewDisplayName(const icu::Locale& inDisplay, CFStringRef inKey, CFStringRef inValue) {
    if (CFEqual(inKey, kCFLocaleCurrencyCode)) return NewCurrencyName(inDisplay, inValue);
    for (const KeyedName& name : kNames) {
        if (CFEqual(inKey, *name.key)) return NewName(name, inDisplay, inValue);
    }
    return nullptr;
}

}  // namespace

CFTypeRef NewLocaleValue(const icu::Locale& inLocale, CFStringRef inKey) {
    for (const KeyedValue& value : kValues) {
        if (CFEqual(inKey, *value.key)) return value.make(inLocale);
    }
    return nullptr;
}

}  // namespace carbon

CFStringRef CFLocaleCopyDisplayNameForPropertyValue(CFLocaleRef displayLocale, CFStringRef key,
                                                    CFStringRef value) {
    return carbon::OrNull(
        [&] { return carbon::NewDisplayName(carbon::IcuLocale(displayLocale), key, value); });
}
