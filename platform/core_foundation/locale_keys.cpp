// The names of what locales and date formatters are asked for.
#include <CoreFoundation/CFDateFormatter.h>
#include <CoreFoundation/CFLocale.h>

#include "core_foundation/string_object.h"

namespace carbon {

namespace {

constinit const ConstantString sIdentifier(u"locale:id");
constinit const ConstantString sLanguage(u"locale:language code");
constinit const ConstantString sCountry(u"locale:country code");
constinit const ConstantString sScript(u"locale:script code");
constinit const ConstantString sVariant(u"locale:variant code");
constinit const ConstantString sCalendar(u"calendar");
constinit const ConstantString sCollation(u"collation");
constinit const ConstantString sUsesMetric(u"locale:uses metric");
constinit const ConstantString sMeasures(u"locale:measurement system");
constinit const ConstantString sDecimal(u"locale:decimal separator");
constinit const ConstantString sGrouping(u"locale:grouping separator");
constinit const ConstantString sCurrencySymbol(u"locale:currency symbol");
constinit const ConstantString sCurrencyCode(u"currency");
constinit const ConstantString sGregorian(u"gregorian");

constinit const ConstantString sIsLenient(u"kCFDateFormatterIsLenient");
constinit const ConstantString sTimeZone(u"kCFDateFormatterTimeZone");
constinit const ConstantString sCalendarName(u"kCFDateFormatterCalendarName");
constinit const ConstantString sDefaultFormat(u"kCFDateFormatterDefaultFormat");
constinit const ConstantString sTwoDigitStart(u"kCFDateFormatterTwoDigitStartDate");
constinit const ConstantString sDefaultDate(u"kCFDateFormatterDefaultDate");
constinit const ConstantString sEras(u"kCFDateFormatterEraSymbols");
constinit const ConstantString sMonths(u"kCFDateFormatterMonthSymbols");
constinit const ConstantString sShortMonths(u"kCFDateFormatterShortMonthSymbols");
constinit const ConstantString sWeekdays(u"kCFDateFormatterWeekdaySymbols");
constinit const ConstantString sShortWeekdays(u"kCFDateFormatterShortWeekdaySymbols");
constinit const ConstantString sMorning(u"kCFDateFormatterAMSymbol");
constinit const ConstantString sAfternoon(u"kCFDateFormatterPMSymbol");

}  // namespace

}  // namespace carbon

constinit const CFStringRef kCFLocaleIdentifier = &carbon::sIdentifier;
constinit const CFStringRef kCFLocaleLanguageCode = &carbon::sLanguage;
constinit const CFStringRef kCFLocaleCountryCode = &carbon::sCountry;
constinit const CFStringRef kCFLocaleScriptCode = &carbon::sScript;
constinit const CFStringRef kCFLocaleVariantCode = &carbon::sVariant;
constinit const CFStringRef kCFLocaleCalendarIdentifier = &carbon::sCalendar;
constinit const CFStringRef kCFLocaleCollationIdentifier = &carbon::sCollation;
constinit const CFStringRef kCFLocaleUsesMetricSystem = &carbon::sUsesMetric;
constinit const CFStringRef kCFLocaleMeasurementSystem = &carbon::sMeasures;
constinit const CFStringRef kCFLocaleDecimalSeparator = &carbon::sDecimal;
constinit const CFStringRef kCFLocaleGroupingSeparator = &carbon::sGrouping;
constinit const CFStringRef kCFLocaleCurrencySymbol = &carbon::sCurrencySymbol;
constinit const CFStringRef kCFLocaleCurrencyCode = &carbon::sCurrencyCode;
constinit const CFStringRef kCFGregorianCalendar = &carbon::sGregorian;

constinit const CFStringRef kCFDateFormatterIsLenient = &carbon::sIsLenient;
constinit const CFStringRef kCFDateFormatterTimeZone = &carbon::sTimeZone;
constinit const CFStringRef kCFDateFormatterCalendarName = &carbon::sCalendarName;
constinit const CFStringRef kCFDateFormatterDefaultFormat = &carbon::sDefaultFormat;
constinit const CFStringRef kCFDateFormatterTwoDigitStartDate = &carbon::sTwoDigitStart;
constinit const CFStringRef kCFDateFormatterDefaultDate = &carbon::sDefaultDate;
constinit const CFStringRef kCFDateFormatterEraSymbols = &carbon::sEras;
constinit const CFStringRef kCFDateFormatterMonthSymbols = &carbon::sMonths;
constinit const CFStringRef kCFDateFormatterShortMonthSymbols = &carbon::sShortMonths;
constinit const CFStringRef kCFDateFormatterWeekdaySymbols = &carbon::sWeekdays;
constinit const CFStringRef kCFDateFormatterShortWeekdaySymbols = &carbon::sShortWeekdays;
constinit const CFStringRef kCFDateFormatterAMSymbol = &carbon::sMorning;
constinit const CFStringRef kCFDateFormatterPMSymbol = &carbon::sAfternoon;
