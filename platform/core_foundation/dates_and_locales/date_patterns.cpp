// How locales write dates and times.
#include <string_view>

#include "core_foundation/dates_and_locales/date_formatter.h"

namespace carbon {

namespace {

// By style, from none to full. English in the United States is written as it was when these styles
// were made; ICU's own patterns have since gained commas and narrow spaces.
constexpr const char16_t* kDates[] = {u"", u"M/d/yy", u"MMM d, yyyy", u"MMMM d, yyyy",
                                      u"EEEE, MMMM d, yyyy"};
constexpr const char16_t* kTimes[] = {u"", u"h:mm a", u"h:mm:ss a", u"h:mm:ss a z", u"h:mm:ss a z"};

bool IsStyle(CFDateFormatterStyle inStyle) {
    return inStyle >= kCFDateFormatterNoStyle && inStyle <= kCFDateFormatterFullStyle;
}

bool IsUnitedStatesEnglish(const icu::Locale& inLocale) {
    const std::string_view language = inLocale.getLanguage(), country = inLocale.getCountry();
    return language == "en" && (country.empty() || country == "US");
}

icu::UnicodeString EnglishPattern(CFDateFormatterStyle inDate, CFDateFormatterStyle inTime) {
    icu::UnicodeString pattern(kDates[inDate]);
    if (inDate != kCFDateFormatterNoStyle && inTime != kCFDateFormatterNoStyle) pattern += u' ';
    return pattern += kTimes[inTime];
}

icu::DateFormat::EStyle IcuStyle(CFDateFormatterStyle inStyle) {
    constexpr icu::DateFormat::EStyle kStyles[] = {icu::DateFormat::kNone, icu::DateFormat::kShort,
                                                   icu::DateFormat::kMedium, icu::DateFormat::kLong,
                                                   icu::DateFormat::kFull};
    return kStyles[inStyle];
}

icu::UnicodeString LocalPattern(const icu::Locale& inLocale, CFDateFormatterStyle inDate,
                                CFDateFormatterStyle inTime) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(IcuStyle(inDate), IcuStyle(inTime), inLocale));
    icu::UnicodeString pattern;
    if (const auto* simple = dynamic_cast<icu::SimpleDateFormat*>(format.get())) {
        simple->toPattern(pattern);
    }
    // No encoding of bytes has the narrow space.
    return pattern.findAndReplace(u"\x202F", u" ");
}

}  // namespace

std::optional<icu::UnicodeString> DatePattern(const icu::Locale& inLocale,
                                              CFDateFormatterStyle inDateStyle,
                                              CFDateFormatterStyle inTimeStyle) {
    if (!IsStyle(inDateStyle) || !IsStyle(inTimeStyle)) return std::nullopt;
    const bool isNothing = inDateStyle == kCFDateFormatterNoStyle && inTimeStyle == inDateStyle;
    if (isNothing || IsUnitedStatesEnglish(inLocale)) {
        return EnglishPattern(inDateStyle, inTimeStyle);
    }
    return LocalPattern(inLocale, inDateStyle, inTimeStyle);
}

}  // namespace carbon
