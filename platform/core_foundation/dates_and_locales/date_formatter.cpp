// Formatting and parsing dates.
#include "core_foundation/dates_and_locales/date_formatter.h"

#include "core_foundation/dates_and_locales/icu_text.h"

__CFDateFormatter::__CFDateFormatter(CFLocaleRef inLocale, CFDateFormatterStyle inDateStyle,
                                     CFDateFormatterStyle inTimeStyle,
                                     std::unique_ptr<icu::SimpleDateFormat> inFormat)
    : Object(carbon::kDateFormatterKind),
      mLocale(carbon::Owned<CFLocaleRef>::Share(inLocale)),
      mDateStyle(inDateStyle),
      mTimeStyle(inTimeStyle),
      mFormat(std::move(inFormat)) {
    icu::UnicodeString pattern;
    mPattern = carbon::Owned<CFStringRef>(carbon::NewString(mFormat->toPattern(pattern)));
    mFirstPattern = carbon::Owned<CFStringRef>::Share(mPattern.Get());
}

std::u16string __CFDateFormatter::Describe() const {
    return u"<CFDateFormatter " + std::u16string(carbon::View(mPattern.Get())) + u">";
}

void __CFDateFormatter::SetPattern(const icu::UnicodeString& inPattern) {
    mPattern = carbon::Owned<CFStringRef>(carbon::NewString(inPattern));
    mFormat->applyPattern(inPattern);
}

namespace carbon {

namespace {

class DateFormatter final : public __CFDateFormatter {
  public:
    using __CFDateFormatter::__CFDateFormatter;

  private:
    void Destroy() const override { delete this; }
};

constexpr CFAbsoluteTime kYear1950 = -1609459200.0;  // seconds from 2001 back to 1950-01-01 GMT

void SetUp(icu::SimpleDateFormat* ioFormat) {
    const Owned<CFTimeZoneRef> zone(CFTimeZoneCopyDefault());
    UErrorCode error = U_ZERO_ERROR;
    UDate start = 0;
    ioFormat->setTimeZone(IcuTimeZone(zone.Get()));
    ioFormat->setLenient(false);
    if (ToIcuTime(kYear1950, &start)) ioFormat->set2DigitYearStart(start, error);
}

CFDateFormatterRef NewFormatter(CFLocaleRef inLocale, CFDateFormatterStyle inDateStyle,
                                CFDateFormatterStyle inTimeStyle) {
    const CFLocaleRef locale = inLocale ? inLocale : CFLocaleGetSystem();
    const auto pattern = DatePattern(IcuLocale(locale), inDateStyle, inTimeStyle);
    if (!pattern) return nullptr;
    UErrorCode error = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(*pattern, IcuLocale(locale), error);
    if (U_FAILURE(error)) return nullptr;
    SetUp(format.get());
    return new DateFormatter(locale, inDateStyle, inTimeStyle, std::move(format));
}

__CFDateFormatter* Formatter(CFDateFormatterRef inFormatter) {
    return OfKind<__CFDateFormatter>(inFormatter, kDateFormatterKind) ? inFormatter : nullptr;
}

CFStringRef NewText(CFDateFormatterRef inFormatter, CFAbsoluteTime inTime) {
    const __CFDateFormatter* formatter = Formatter(inFormatter);
    UDate time = 0;
    if (!formatter || !ToIcuTime(inTime, &time)) return nullptr;
    icu::UnicodeString text;
    return NewString(formatter->mFormat->format(time, text));
}

// The part of the text that is to be read.
std::u16string_view Wanted(CFStringRef inText, const CFRange* inRange) {
    const auto text = View(inText);
    if (!inRange) return text;
    const CFRange part = Clip(*inRange, text.size());
    return text.substr(static_cast<size_t>(part.location), static_cast<size_t>(part.length));
}

std::optional<CFAbsoluteTime> Read(CFDateFormatterRef inFormatter, CFStringRef inText,
                                   CFRange* ioRange) {
    const __CFDateFormatter* formatter = Formatter(inFormatter);
    if (!formatter || !inText) return std::nullopt;
    size_t taken = 0;
    const auto time = ParseDate(*formatter, Wanted(inText, ioRange), &taken);
    if (time && ioRange) {
        ioRange->location = Clip(*ioRange, View(inText).size()).location;
        ioRange->length = static_cast<CFIndex>(taken);
    }
    return time;
}

}  // namespace

std::optional<CFAbsoluteTime> ParseDate(const __CFDateFormatter& inFormatter,
                                        std::u16string_view inText, size_t* outTaken) {
    UErrorCode error = U_ZERO_ERROR;
    icu::ParsePosition position(0);
    const std::unique_ptr<icu::Calendar> calendar(inFormatter.mFormat->getCalendar()->clone());
    UDate base = 0;
    calendar->clear();
    if (inFormatter.mDefaultDate && ToIcuTime(*inFormatter.mDefaultDate, &base)) {
        calendar->setTime(base, error);
    }
    inFormatter.mFormat->parse(LentText(inText), *calendar, position);
    const UDate time = calendar->getTime(error);
    if (position.getErrorIndex() >= 0 || position.getIndex() == 0 || U_FAILURE(error)) {
        return std::nullopt;
    }
    *outTaken = static_cast<size_t>(position.getIndex());
    return FromIcuTime(time);
}

}  // namespace carbon

using carbon::Formatter;

CFTypeID CFDateFormatterGetTypeID() {
    return carbon::kDateFormatterKind;
}

CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef locale,
                                         CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle) {
    return carbon::OrNull([&] { return carbon::NewFormatter(locale, dateStyle, timeStyle); });
}

CFLocaleRef CFDateFormatterGetLocale(CFDateFormatterRef formatter) {
    return Formatter(formatter) ? formatter->mLocale.Get() : nullptr;
}

CFDateFormatterStyle CFDateFormatterGetDateStyle(CFDateFormatterRef formatter) {
    return Formatter(formatter) ? formatter->mDateStyle : kCFDateFormatterNoStyle;
}

CFDateFormatterStyle CFDateFormatterGetTimeStyle(CFDateFormatterRef formatter) {
    return Formatter(formatter) ? formatter->mTimeStyle : kCFDateFormatterNoStyle;
}

CFStringRef CFDateFormatterGetFormat(CFDateFormatterRef formatter) {
    return Formatter(formatter) ? formatter->mPattern.Get() : nullptr;
}

void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef formatString) {
    if (!Formatter(formatter) || !formatString) return;
    formatter->SetPattern(icu::UnicodeString(carbon::LentText(carbon::View(formatString))));
}

CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef alloc, CFDateFormatterRef formatter,
                                                CFDateRef date) {
    if (!date) return nullptr;
    return CFDateFormatterCreateStringWithAbsoluteTime(alloc, formatter,
                                                       CFDateGetAbsoluteTime(date));
}

CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef,
                                                        CFDateFormatterRef formatter,
                                                        CFAbsoluteTime at) {
    return carbon::OrNull([&] { return carbon::NewText(formatter, at); });
}

CFDateRef CFDateFormatterCreateDateFromString(CFAllocatorRef alloc, CFDateFormatterRef formatter,
                                              CFStringRef string, CFRange* rangep) {
    const auto time = carbon::Read(formatter, string, rangep);
    return time ? CFDateCreate(alloc, *time) : nullptr;
}

Boolean CFDateFormatterGetAbsoluteTimeFromString(CFDateFormatterRef formatter, CFStringRef string,
                                                 CFRange* rangep, CFAbsoluteTime* atp) {
    const auto time = carbon::Read(formatter, string, rangep);
    if (time && atp) *atp = *time;
    return time.has_value();
}
