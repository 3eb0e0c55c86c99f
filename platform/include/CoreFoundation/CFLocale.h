// Locales: the habits of a language in a country.
//
// An identifier is a language, with a script, a country and a variant as needed: "en_US",
// "zh_Hant_TW". Where the data for a locale is missing that of its language, at last that of the
// root locale, stands in.
#ifndef COREFOUNDATION_CFLOCALE_H
#define COREFOUNDATION_CFLOCALE_H

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDictionary.h>

typedef const struct __CFLocale* CFLocaleRef;

PLATFORM_DECLARATIONS_BEGIN

CFTypeID CFLocaleGetTypeID(void);

// The root locale, which belongs to no language. Lent.
CFLocaleRef CFLocaleGetSystem(void);

// The user's locale, as LC_ALL, LC_MESSAGES or LANG named it when the process asked first; a
// process without one of them (or with "C") is taken to be in en_US.
CFLocaleRef CFLocaleCopyCurrent(void);

// All locales with data of their own, all languages, countries and currencies that have a code.
CFArrayRef CFLocaleCopyAvailableLocaleIdentifiers(void);
CFArrayRef CFLocaleCopyISOLanguageCodes(void);
CFArrayRef CFLocaleCopyISOCountryCodes(void);
CFArrayRef CFLocaleCopyISOCurrencyCodes(void);

// An identifier in its usual form: "en-us" and "EN_US" become "en_US" (a locale) or "en-US" (a
// language), "English" becomes "en". Unknown words are kept.
CFStringRef CFLocaleCreateCanonicalLanguageIdentifierFromString(CFAllocatorRef allocator,
                                                                CFStringRef localeIdentifier);
CFStringRef CFLocaleCreateCanonicalLocaleIdentifierFromString(CFAllocatorRef allocator,
                                                              CFStringRef localeIdentifier);

// An identifier in its parts and back. The keys are the first of those below, and whatever stands
// behind an '@' ("calendar").
CFDictionaryRef CFLocaleCreateComponentsFromLocaleIdentifier(CFAllocatorRef allocator,
                                                             CFStringRef localeID);
CFStringRef CFLocaleCreateLocaleIdentifierFromComponents(CFAllocatorRef allocator,
                                                         CFDictionaryRef dictionary);

// A locale by its identifier, which is brought into its usual form.
CFLocaleRef CFLocaleCreate(CFAllocatorRef allocator, CFStringRef localeIdentifier);
CFLocaleRef CFLocaleCreateCopy(CFAllocatorRef allocator, CFLocaleRef locale);

CFStringRef CFLocaleGetIdentifier(CFLocaleRef locale);  // lent

// What a locale says about one of the keys below, lent; NULL where it says nothing.
CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFStringRef key);

// What `displayLocale` calls a language, country, script, variant, currency, calendar or locale;
// NULL where it has no word for it.
CFStringRef CFLocaleCopyDisplayNameForPropertyValue(CFLocaleRef displayLocale, CFStringRef key,
                                                    CFStringRef value);

// Keys; the values are strings unless something else is said.
extern const CFStringRef kCFLocaleIdentifier;
extern const CFStringRef kCFLocaleLanguageCode;
extern const CFStringRef kCFLocaleCountryCode;
extern const CFStringRef kCFLocaleScriptCode;
extern const CFStringRef kCFLocaleVariantCode;
extern const CFStringRef kCFLocaleCalendarIdentifier;
extern const CFStringRef kCFLocaleCollationIdentifier;
extern const CFStringRef kCFLocaleUsesMetricSystem;   // a CFBoolean
extern const CFStringRef kCFLocaleMeasurementSystem;  // "Metric", "U.S." or "U.K."
extern const CFStringRef kCFLocaleDecimalSeparator;
extern const CFStringRef kCFLocaleGroupingSeparator;
extern const CFStringRef kCFLocaleCurrencySymbol;
extern const CFStringRef kCFLocaleCurrencyCode;

extern const CFStringRef kCFGregorianCalendar;  // "gregorian", a calendar's identifier

PLATFORM_DECLARATIONS_END

#endif
