// The names of what locales and date formatters are asked for.
#include <CoreFoundation/CFDateFormatter.h>
#include <CoreFoundation/CFLocale.h>

#include "core_foundation/strings/string_object.h"

using carbon::Constant;

constinit const CFStringRef kCFLocaleIdentifier = Constant<u"locale:id">();
constinit const CFStringRef kCFLocaleLanguageCode = Constant<u"locale:language code">();
constinit const CFStringRef kCFLocaleCountryCode = Constant<u"locale:country code">();
constinit const CFStringRef kCFLocaleScriptCode = Constant<u"locale:script code">();
constinit const CFStringRef kCFLocaleVariantCode = Constant<u"locale:variant code">();
constinit const CFStringRef kCFLocaleCalendarIdentifier = Constant<u"calendar">();
constinit const CFStringRef kCFLocaleCollationIdentifier = Constant<u"collation">();
constinit const CFStringRef kCFLocaleUsesMetricSystem = Constant<u"locale:uses metric">();
constinit const CFStringRef kCFLocaleMeasurementSystem = Constant<u"locale:measurement system">();
constinit const CFStringRef kCFLocaleDecimalSeparator = Constant<u"locale:decimal separator">();
constinit const CFStringRef kCFLocaleGroupingSeparator = Constant<u"locale:grouping separator">();
constinit const CFStringRef kCFLocaleCurrencySymbol = Constant<u"locale:currency symbol">();
constinit const CFStringRef kCFLocaleCurrencyCode = Constant<u"currency">();
constinit const CFStringRef kCFGregorianCalendar = Constant<u"gregorian">();

constinit const CFStringRef kCFDateFormatterIsLenient = Constant<u"kCFDateFormatterIsLenient">();
constinit const CFStringRef kCFDateFormatterTimeZone = Constant<u"kCFDateFormatterTimeZone">();
constinit const CFStringRef kCFDateFormatterCalendarName =
    Constant<u"kCFDateFormatterCalendarName">();
constinit const CFStringRef kCFDateFormatterDefaultFormat =
    Constant<u"kCFDateFormatterDefaultFormat">();
constinit const CFStringRef kCFDateFormatterTwoDigitStartDate =
    Constant<u"kCFDateFormatterTwoDigitStartDate">();
constinit const CFStringRef kCFDateFormatterDefaultDate =
    Constant<u"kCFDateFormatterDefaultDate">();
constinit const CFStringRef kCFDateFormatterEraSymbols = Constant<u"kCFDateFormatterEraSymbols">();
constinit const CFStringRef kCFDateFormatterMonthSymbols =
    Constant<u"kCFDateFormatterMonthSymbols">();
constinit const CFStringRef kCFDateFormatterShortMonthSymbols =
    Constant<u"kCFDateFormatterShortMonthSymbols">();
constinit const CFStringRef kCFDateFormatterWeekdaySymbols =
    Constant<u"kCFDateFormatterWeekdaySymbols">();
constinit const CFStringRef kCFDateFormatterShortWeekdaySymbols =
    Constant<u"kCFDateFormatterShortWeekdaySymbols">();
constinit const CFStringRef kCFDateFormatterAMSymbol = Constant<u"kCFDateFormatterAMSymbol">();
constinit const CFStringRef kCFDateFormatterPMSymbol = Constant<u"kCFDateFormatterPMSymbol">();
