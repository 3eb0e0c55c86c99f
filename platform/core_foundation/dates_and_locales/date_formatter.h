// Date formatters: a pattern of ICU's with the styles it was made from.
#pragma once

#include <CoreFoundation/CFDateFormatter.h>
#include <unicode/smpdtfmt.h>

#include <memory>
#include <optional>

#include "core_foundation/dates_and_locales/locale.h"
#include "core_foundation/dates_and_locales/time_zone.h"
#include "core_foundation/object.h"

struct __CFDateFormatter : carbon::Object {
    __CFDateFormatter(CFLocaleRef inLocale, CFDateFormatterStyle inDateStyle,
                      CFDateFormatterStyle inTimeStyle,
                      std::unique_ptr<icu::SimpleDateFormat> inFormat);

    std::u16string Describe() const final;
    void SetPattern(const icu::UnicodeString& inPattern);

    const carbon::Owned<CFLocaleRef> mLocale;
    const CFDateFormatterStyle mDateStyle, mTimeStyle;
    const std::unique_ptr<icu::SimpleDateFormat> mFormat;
    carbon::Owned<CFStringRef> mPattern, mFirstPattern;
    std::optional<CFAbsoluteTime> mDefaultDate;  // what texts leave out

  protected:
    ~__CFDateFormatter() = default;
};

namespace carbon {

// How a locale writes dates and times in these styles; empty for neither. Nothing for styles out of
// range.
std::optional<icu::UnicodeString> DatePattern(const icu::Locale& inLocale,
                                              CFDateFormatterStyle inDateStyle,
                                              CFDateFormatterStyle inTimeStyle);

// What the text says from its start on, and how much of it that took; nothing when it is no date.
std::optional<CFAbsoluteTime> ParseDate(const __CFDateFormatter& inFormatter,
                                        std::u16string_view inText, size_t* outTaken);

}  // namespace carbon
