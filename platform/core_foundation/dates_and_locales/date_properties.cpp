// What a date formatter can be told, and asked: its time zone, what it forgives, its words.
#include <CoreFoundation/CFNumber.h>
#include <unicode/dtfmtsym.h>

#include <vector>

#include "core_foundation/dates_and_locales/date_formatter.h"
#include "core_foundation/dates_and_locales/icu_text.h"

namespace carbon {

namespace {

using Symbols = icu::DateFormatSymbols;

// A list of words: how it is had and set, and where ICU's list begins.
struct WordList {
    const CFStringRef* key;
    const icu::UnicodeString* (Symbols::*get)(int32_t&) const;
    void (Symbols::*set)(const icu::UnicodeString*, int32_t);
    int32_t first;
};

// ICU counts weekdays from 1.
constexpr WordList kWordLists[] = {
    {&kCFDateFormatterEraSymbols, &Symbols::getEras, &Symbols::setEras, 0},
    {&kCFDateFormatterMonthSymbols, &Symbols::getMonths, &Symbols::setMonths, 0},
    {&kCFDateFormatterShortMonthSymbols, &Symbols::getShortMonths, &Symbols::setShortMonths, 0},
    {&kCFDateFormatterWeekdaySymbols, &Symbols::getWeekdays, &Symbols::setWeekdays, 1},
    {&kCFDateFormatterShortWeekdaySymbols, &Symbols::getShortWeekdays, &Symbols::setShortWeekdays,
     1},
};

const WordList* WordListFor(CFStringRef inKey) {
    for (const WordList& list : kWordLists) {
        if (CFEqual(inKey, *list.key)) return &list;
    }
    return nullptr;
}

CFTypeRef NewWords(const icu::UnicodeString* inWords, int32_t inCount, int32_t inFirst) {
    const Owned<CFMutableArrayRef> words(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    if (!words) return nullptr;
    for (int32_t i = inFirst; i < inCount; ++i) {
        const Owned<CFStringRef> word(NewString(inWords[i]));
        CFArrayAppendValue(words.Get(), word.Get());
    }
    return CFArrayCreateCopy(nullptr, words.Get());
}

CFTypeRef NewWordsOf(const __CFDateFormatter& inFormatter, const WordList& inList) {
    int32_t count = 0;
    const icu::UnicodeString* words =
        (inFormatter.mFormat->getDateFormatSymbols()->*inList.get)(count);
    return NewWords(words, count, inList.first);
}

// The words of an array; nothing unless it has as many as there were, all strings.
std::vector<icu::UnicodeString> WordsOf(CFTypeRef inArray, int32_t inCount, int32_t inFirst) {
    if (!inArray || CFGetTypeID(inArray) != kArrayKind) return {};
    const auto array = static_cast<CFArrayRef>(inArray);
    if (CFArrayGetCount(array) != inCount - inFirst) return {};
    std::vector<icu::UnicodeString> words(static_cast<size_t>(inFirst));
    for (int32_t i = 0; i < inCount - inFirst; ++i) {
        const auto word = static_cast<CFStringRef>(CFArrayGetValueAtIndex(array, i));
        if (!word || CFGetTypeID(word) != kStringKind) return {};
        words.emplace_back(LentText(View(word)));
    }
    return words;
}

void SetWords(__CFDateFormatter* ioFormatter, const WordList& inList, CFTypeRef inArray) {
    UErrorCode error = U_ZERO_ERROR;
    int32_t count = 0;
    Symbols symbols(*ioFormatter->mFormat->getDateFormatSymbols());
    const icu::UnicodeString* present = (symbols.*inList.get)(count);
    std::vector<icu::UnicodeString> words = WordsOf(inArray, count, inList.first);
    const Symbols original(IcuLocale(ioFormatter->mLocale.Get()), error);
    if (!inArray && U_SUCCESS(error)) {
        present = (original.*inList.get)(count);
        words.assign(present, present + count);
    }
    if (words.empty()) return;
    (symbols.*inList.set)(words.data(), static_cast<int32_t>(words.size()));
    ioFormatter->mFormat->setDateFormatSymbols(symbols);
}

// Morning is 0, afternoon 1.
int32_t HalfOfDay(CFStringRef inKey) {
    return CFEqual(inKey, kCFDateFormatterAMSymbol)   ? 0
           : CFEqual(inKey, kCFDateFormatterPMSymbol) ? 1
                                                      : -1;
}

CFTypeRef NewHalfOfDay(const __CFDateFormatter& inFormatter, int32_t inHalf) {
    int32_t count = 0;
    const auto* words = inFormatter.mFormat->getDateFormatSymbols()->getAmPmStrings(count);
    return inHalf < count ? NewString(words[inHalf]) : nullptr;
}

void SetHalfOfDay(__CFDateFormatter* ioFormatter, int32_t inHalf, CFTypeRef inWord) {
    int32_t count = 0;
    UErrorCode error = U_ZERO_ERROR;
    Symbols symbols(*ioFormatter->mFormat->getDateFormatSymbols());
    const Symbols original(IcuLocale(ioFormatter->mLocale.Get()), error);
    const bool isWord = inWord && CFGetTypeID(inWord) == kStringKind;
    if (U_FAILURE(error) || (inWord && !isWord)) return;
    const auto* present = symbols.getAmPmStrings(count);
    std::vector<icu::UnicodeString> words(present, present + count);
    words.at(static_cast<size_t>(inHalf)) =
        isWord ? icu::UnicodeString(LentText(View(static_cast<CFStringRef>(inWord))))
               : original.getAmPmStrings(count)[inHalf];
    symbols.setAmPmStrings(words.data(), static_cast<int32_t>(words.size()));
    ioFormatter->mFormat->setDateFormatSymbols(symbols);
}

CFTypeRef NewTwoDigitStart(const __CFDateFormatter& inFormatter) {
    UErrorCode error = U_ZERO_ERROR;
    const UDate start = inFormatter.mFormat->get2DigitYearStart(error);
    return U_SUCCESS(error) ? CFDateCreate(nullptr, FromIcuTime(start)) : nullptr;
}

void SetDate(__CFDateFormatter* ioFormatter, CFStringRef inKey, CFDateRef inDate) {
    const CFAbsoluteTime time = CFDateGetAbsoluteTime(inDate);
    UErrorCode error = U_ZERO_ERROR;
    UDate start = 0;
    if (CFEqual(inKey, kCFDateFormatterDefaultDate)) {
        ioFormatter->mDefaultDate = time;
    } else if (CFEqual(inKey, kCFDateFormatterTwoDigitStartDate) && ToIcuTime(time, &start)) {
        ioFormatter->mFormat->set2DigitYearStart(start, error);
    }
}

// A property that one value of its own type sets.
void SetPlain(__CFDateFormatter* ioFormatter, CFStringRef inKey, CFTypeRef inValue) {
    const CFTypeID kind = CFGetTypeID(inValue);
    if (kind == kDateKind) {
        SetDate(ioFormatter, inKey, static_cast<CFDateRef>(inValue));
    } else if (kind == kBooleanKind && CFEqual(inKey, kCFDateFormatterIsLenient)) {
        ioFormatter->mFormat->setLenient(inValue == kCFBooleanTrue);
    } else if (kind == kTimeZoneKind && CFEqual(inKey, kCFDateFormatterTimeZone)) {
        ioFormatter->mFormat->setTimeZone(IcuTimeZone(static_cast<CFTimeZoneRef>(inValue)));
    }
}

void SetProperty(__CFDateFormatter* ioFormatter, CFStringRef inKey, CFTypeRef inValue) {
    if (const WordList* list = WordListFor(inKey)) {
        SetWords(ioFormatter, *list, inValue);
    } else if (const int32_t half = HalfOfDay(inKey); half >= 0) {
        SetHalfOfDay(ioFormatter, half, inValue);
    } else if (inValue) {
        SetPlain(ioFormatter, inKey, inValue);
    }
}

CFTypeRef NewTimeZone(const __CFDateFormatter& inFormatter) {
    icu::UnicodeString id;
    const Owned<CFStringRef> name(NewString(inFormatter.mFormat->getTimeZone().getID(id)));
    return CFTimeZoneCreateWithName(nullptr, name.Get(), true);
}

CFTypeRef NewProperty(const __CFDateFormatter& inFormatter, CFStringRef inKey) {
    if (const WordList* list = WordListFor(inKey)) return NewWordsOf(inFormatter, *list);
    if (const int32_t half = HalfOfDay(inKey); half >= 0) return NewHalfOfDay(inFormatter, half);
    if (CFEqual(inKey, kCFDateFormatterIsLenient)) {
        return inFormatter.mFormat->isLenient() ? kCFBooleanTrue : kCFBooleanFalse;
    }
    if (CFEqual(inKey, kCFDateFormatterTimeZone)) return NewTimeZone(inFormatter);
    if (CFEqual(inKey, kCFDateFormatterCalendarName)) {
        return NewAsciiString(inFormatter.mFormat->getCalendar()->getType());
    }
    if (CFEqual(inKey, kCFDateFormatterDefaultFormat)) {
        return CFRetain(inFormatter.mFirstPattern.Get());
    }
    if (CFEqual(inKey, kCFDateFormatterTwoDigitStartDate)) return NewTwoDigitStart(inFormatter);
    if (CFEqual(inKey, kCFDateFormatterDefaultDate) && inFormatter.mDefaultDate) {
        return CFDateCreate(nullptr, *inFormatter.mDefaultDate);
    }
    return nullptr;
}

}  // namespace

}  // namespace carbon

void CFDateFormatterSetProperty(CFDateFormatterRef formatter, CFStringRef key, CFTypeRef value) {
    if (carbon::OfKind<__CFDateFormatter>(formatter, carbon::kDateFormatterKind)) {
        carbon::SetProperty(formatter, key, value);
    }
}

CFTypeRef CFDateFormatterCopyProperty(CFDateFormatterRef formatter, CFStringRef key) {
    const auto* known = carbon::OfKind<__CFDateFormatter>(formatter, carbon::kDateFormatterKind);
    return carbon::OrNull(
        [&]() -> CFTypeRef { return known ? carbon::NewProperty(*known, key) : nullptr; });
}
