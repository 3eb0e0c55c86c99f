// Dates as text and back; time zones; calendar dates.
#include <cmath>
#include <ctime>
#include <limits>
#include <random>

#include "CFSupport.h"

namespace {

// 14:20 in Los Angeles, in daylight saving time.
CFAbsoluteTime Moment() {
    return CFGregorianDateGetAbsoluteTime({2004, 10, 20, 21, 20, 0}, nullptr);
}

Ref<CFTimeZoneRef> Zone(const char* inName) {
    return Ref<CFTimeZoneRef>(CFTimeZoneCreateWithName(nullptr, Str(inName), true));
}

Ref<CFLocaleRef> Locale(const char* inIdentifier) {
    return Ref<CFLocaleRef>(CFLocaleCreate(nullptr, Str(inIdentifier)));
}

Ref<CFDateFormatterRef> Formatter(const char* inLocale, CFDateFormatterStyle inDate,
                                  CFDateFormatterStyle inTime,
                                  const char* inZone = "America/Los_Angeles") {
    Ref<CFDateFormatterRef> formatter(
        CFDateFormatterCreate(nullptr, Locale(inLocale), inDate, inTime));
    CFDateFormatterSetProperty(formatter, kCFDateFormatterTimeZone, Zone(inZone));
    return formatter;
}

std::string Formatted(CFDateFormatterRef inFormatter, CFAbsoluteTime inTime) {
    return TextOf(CFDateFormatterCreateStringWithAbsoluteTime(nullptr, inFormatter, inTime));
}

std::string English(CFDateFormatterStyle inDate, CFDateFormatterStyle inTime) {
    return Formatted(Formatter("en_US", inDate, inTime), Moment());
}

TEST(CFDateFormatter, WritesTheUnitedStatesStyles) {
    EXPECT_EQ(English(kCFDateFormatterShortStyle, kCFDateFormatterNoStyle), "10/20/04");
    EXPECT_EQ(English(kCFDateFormatterMediumStyle, kCFDateFormatterNoStyle), "Oct 20, 2004");
    EXPECT_EQ(English(kCFDateFormatterLongStyle, kCFDateFormatterNoStyle), "October 20, 2004");
    EXPECT_EQ(English(kCFDateFormatterFullStyle, kCFDateFormatterNoStyle),
              "Wednesday, October 20, 2004");
    EXPECT_EQ(English(kCFDateFormatterNoStyle, kCFDateFormatterShortStyle), "2:20 PM");
    EXPECT_EQ(English(kCFDateFormatterNoStyle, kCFDateFormatterMediumStyle), "2:20:00 PM");
    EXPECT_EQ(English(kCFDateFormatterNoStyle, kCFDateFormatterLongStyle), "2:20:00 PM PDT");
    EXPECT_EQ(English(kCFDateFormatterNoStyle, kCFDateFormatterFullStyle), "2:20:00 PM PDT");
    EXPECT_EQ(English(kCFDateFormatterShortStyle, kCFDateFormatterShortStyle), "10/20/04 2:20 PM");
}

TEST(CFDateFormatter, WritesNothingWithoutAnyStyle) {
    EXPECT_EQ(English(kCFDateFormatterNoStyle, kCFDateFormatterNoStyle), "");
    EXPECT_EQ(Text(CFDateFormatterGetFormat(
                  Formatter("de_DE", kCFDateFormatterNoStyle, kCFDateFormatterNoStyle))),
              "");
}

TEST(CFDateFormatter, WritesOtherLocalesWithoutSpacesThatNoEncodingHas) {
    EXPECT_EQ(
        Formatted(Formatter("de_DE", kCFDateFormatterLongStyle, kCFDateFormatterNoStyle), Moment()),
        "20. Oktober 2004");
    for (const char* locale : {"en_AU", "en_CA", "es_MX", "fr_FR"}) {
        const std::string text = Formatted(
            Formatter(locale, kCFDateFormatterShortStyle, kCFDateFormatterShortStyle), Moment());
        EXPECT_EQ(text.find("\u202F"), std::string::npos) << text;
    }
}

TEST(CFDateFormatter, RefusesStylesThatDoNotExist) {
    EXPECT_EQ(CFDateFormatterCreate(nullptr, nullptr, -1, 0), nullptr);
    EXPECT_EQ(CFDateFormatterCreate(nullptr, nullptr, 0, 5), nullptr);
}

TEST(CFDateFormatter, RemembersWhatItWasMadeOf) {
    const auto formatter =
        Formatter("fr_FR", kCFDateFormatterShortStyle, kCFDateFormatterFullStyle);
    EXPECT_EQ(CFDateFormatterGetDateStyle(formatter), kCFDateFormatterShortStyle);
    EXPECT_EQ(CFDateFormatterGetTimeStyle(formatter), kCFDateFormatterFullStyle);
    EXPECT_EQ(Text(CFLocaleGetIdentifier(CFDateFormatterGetLocale(formatter))), "fr_FR");
    EXPECT_EQ(CFGetTypeID(formatter), CFDateFormatterGetTypeID());
    const Ref<CFDateFormatterRef> plain(CFDateFormatterCreate(nullptr, nullptr, 1, 1));
    EXPECT_EQ(CFDateFormatterGetLocale(plain), CFLocaleGetSystem());
}

Ref<CFDateFormatterRef> WithPattern(const char* inPattern) {
    auto formatter = Formatter("en_US", kCFDateFormatterShortStyle, kCFDateFormatterNoStyle, "GMT");
    CFDateFormatterSetFormat(formatter, Str(inPattern));
    return formatter;
}

TEST(CFDateFormatter, TakesAPatternOfTheHosts) {
    const auto formatter = WithPattern("yyyy-MM-dd HH:mm:ss.SSS");
    EXPECT_EQ(Text(CFDateFormatterGetFormat(formatter)), "yyyy-MM-dd HH:mm:ss.SSS");
    EXPECT_EQ(Formatted(formatter, Moment() + 0.2504), "2004-10-20 21:20:00.250");
    EXPECT_EQ(Formatted(formatter, Moment() - 0.0004), "2004-10-20 21:20:00.000");
    EXPECT_EQ(Formatted(formatter, 0), "2001-01-01 00:00:00.000");
    EXPECT_EQ(TextOf(static_cast<CFStringRef>(
                  CFDateFormatterCopyProperty(formatter, kCFDateFormatterDefaultFormat))),
              "M/d/yy");
}

TEST(CFDateFormatter, HasNoTextForTimesThatAreNone) {
    const auto formatter = WithPattern("yyyy");
    EXPECT_EQ(Formatted(formatter, std::nan("")), "(null)");
    EXPECT_EQ(Formatted(formatter, std::numeric_limits<double>::infinity()), "(null)");
    EXPECT_EQ(Formatted(formatter, -1e300), "(null)");
    EXPECT_EQ(CFDateFormatterCreateStringWithDate(nullptr, formatter, nullptr), nullptr);
}

TEST(CFDateFormatter, SurvivesAnyPattern) {
    std::mt19937 random(11);
    const std::string letters = "GyYuUrQqMLlwWdDFgEecabBhHKkjJCmsSAzZOvVXx'-,.% \xC3\xA9";
    for (int i = 0; i < 400; ++i) {
        std::string pattern;
        for (size_t count = random() % 40; count > 0; --count) {
            pattern.push_back(letters[random() % (letters.size() - 2)]);
        }
        const auto formatter = WithPattern(pattern.c_str());
        const Ref<CFStringRef> text(
            CFDateFormatterCreateStringWithAbsoluteTime(nullptr, formatter, Moment()));
        CFDateFormatterGetAbsoluteTimeFromString(formatter, text, nullptr, nullptr);
        EXPECT_NE(text, nullptr) << pattern;
    }
}

TEST(CFDateFormatter, ReadsWhatItWrote) {
    const auto formatter = WithPattern("yyyy-MM-dd HH:mm:ss");
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        const CFAbsoluteTime time = double(random()) - 2e9;
        const Ref<CFStringRef> text(
            CFDateFormatterCreateStringWithAbsoluteTime(nullptr, formatter, std::floor(time)));
        CFAbsoluteTime read = 0;
        ASSERT_TRUE(CFDateFormatterGetAbsoluteTimeFromString(formatter, text, nullptr, &read));
        EXPECT_EQ(read, std::floor(time)) << Text(text);
    }
}

TEST(CFDateFormatter, TellsHowMuchItRead) {
    const auto formatter = WithPattern("yyyy-MM-dd");
    CFRange range = CFRangeMake(5, 20);
    CFAbsoluteTime time = -1;
    ASSERT_TRUE(CFDateFormatterGetAbsoluteTimeFromString(
        formatter, CFSTR("Day: 2001-01-02, a Tuesday"), &range, &time));
    EXPECT_EQ(time, 86400);
    EXPECT_EQ(range, CFRangeMake(5, 10));
}

TEST(CFDateFormatter, LeavesAllAloneWhenTheTextIsNoDate) {
    const auto formatter = WithPattern("yyyy-MM-dd");
    for (const char* text : {"", "x", "2001", "2001-13-01", "2001-02-30", "2001-1x-01"}) {
        CFRange range = CFRangeMake(0, 50);
        CFAbsoluteTime time = -1;
        EXPECT_FALSE(CFDateFormatterGetAbsoluteTimeFromString(formatter, Str(text), &range, &time))
            << text;
        EXPECT_EQ(time, -1);
        EXPECT_EQ(range, CFRangeMake(0, 50));
        EXPECT_EQ(CFDateFormatterCreateDateFromString(nullptr, formatter, Str(text), nullptr),
                  nullptr);
    }
}

TEST(CFDateFormatter, ForgivesOnlyWhenLenient) {
    const auto formatter = WithPattern("yyyy-MM-dd");
    EXPECT_EQ(CFDateFormatterCopyProperty(formatter, kCFDateFormatterIsLenient), kCFBooleanFalse);
    CFDateFormatterSetProperty(formatter, kCFDateFormatterIsLenient, kCFBooleanTrue);
    CFAbsoluteTime time = 0;
    ASSERT_TRUE(
        CFDateFormatterGetAbsoluteTimeFromString(formatter, CFSTR("2001-01-32"), nullptr, &time));
    EXPECT_EQ(time, 31 * 86400.0);
}

TEST(CFDateFormatter, TakesYearsOfTwoDigitsFrom1950On) {
    const auto formatter = WithPattern("d/M/yy");
    const auto yearOf = [&](const char* inText) {
        CFAbsoluteTime time = 0;
        EXPECT_TRUE(
            CFDateFormatterGetAbsoluteTimeFromString(formatter, Str(inText), nullptr, &time));
        return CFAbsoluteTimeGetGregorianDate(time, nullptr).year;
    };
    EXPECT_EQ(yearOf("1/2/50"), 1950);
    EXPECT_EQ(yearOf("1/2/49"), 2049);
    EXPECT_EQ(yearOf("1/2/04"), 2004);
    const Ref<CFDateRef> start(
        CFDateCreate(nullptr, CFGregorianDateGetAbsoluteTime({1900, 1, 1, 0, 0, 0}, nullptr)));
    CFDateFormatterSetProperty(formatter, kCFDateFormatterTwoDigitStartDate, start);
    EXPECT_EQ(yearOf("1/2/04"), 1904);
    const Ref<CFTypeRef> copy(
        CFDateFormatterCopyProperty(formatter, kCFDateFormatterTwoDigitStartDate));
    EXPECT_TRUE(CFEqual(copy, start));
}

TEST(CFDateFormatter, TakesWhatATextLeavesOutFromTheDefaultDate) {
    const auto formatter = WithPattern("HH:mm");
    EXPECT_EQ(CFDateFormatterCopyProperty(formatter, kCFDateFormatterDefaultDate), nullptr);
    const Ref<CFDateRef> day(
        CFDateCreate(nullptr, CFGregorianDateGetAbsoluteTime({2004, 2, 29, 0, 0, 0}, nullptr)));
    CFDateFormatterSetProperty(formatter, kCFDateFormatterDefaultDate, day);
    CFAbsoluteTime time = 0;
    ASSERT_TRUE(
        CFDateFormatterGetAbsoluteTimeFromString(formatter, CFSTR("13:45"), nullptr, &time));
    EXPECT_EQ(time, CFGregorianDateGetAbsoluteTime({2004, 2, 29, 13, 45, 0}, nullptr));
}

Ref<CFArrayRef> Words(CFDateFormatterRef inFormatter, CFStringRef inKey) {
    return Ref<CFArrayRef>(
        static_cast<CFArrayRef>(CFDateFormatterCopyProperty(inFormatter, inKey)));
}

std::string Word(CFArrayRef inWords, CFIndex inIndex) {
    return Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(inWords, inIndex)));
}

TEST(CFDateFormatter, HasTheWordsOfItsLocaleUntilOthersAreSet) {
    const auto formatter = WithPattern("EEEE MMMM a");
    EXPECT_EQ(CFArrayGetCount(Words(formatter, kCFDateFormatterWeekdaySymbols)), 7);
    EXPECT_EQ(Word(Words(formatter, kCFDateFormatterWeekdaySymbols), 0), "Sunday");
    EXPECT_EQ(CFArrayGetCount(Words(formatter, kCFDateFormatterMonthSymbols)), 12);
    const CFTypeRef days[] = {CFSTR("So"), CFSTR("Mo"), CFSTR("Di"), CFSTR("Mi"),
                              CFSTR("Do"), CFSTR("Fr"), CFSTR("Sa")};
    const Ref<CFArrayRef> words(
        CFArrayCreate(nullptr, const_cast<const void**>(days), 7, &kCFTypeArrayCallBacks));
    CFDateFormatterSetProperty(formatter, kCFDateFormatterWeekdaySymbols, words);
    CFDateFormatterSetProperty(formatter, kCFDateFormatterPMSymbol, CFSTR("nachm."));
    EXPECT_EQ(Formatted(formatter, Moment()), "Mi October nachm.");
    CFDateFormatterSetProperty(formatter, kCFDateFormatterWeekdaySymbols, nullptr);
    CFDateFormatterSetProperty(formatter, kCFDateFormatterPMSymbol, nullptr);
    EXPECT_EQ(Formatted(formatter, Moment()), "Wednesday October PM");
}

TEST(CFDateFormatter, IgnoresPropertiesOfAnotherType) {
    const auto formatter = WithPattern("EEEE HH a");
    const Ref<CFArrayRef> few(CFArrayCreate(nullptr, nullptr, 0, &kCFTypeArrayCallBacks));
    for (CFStringRef key :
         {kCFDateFormatterWeekdaySymbols, kCFDateFormatterTimeZone, kCFDateFormatterIsLenient,
          kCFDateFormatterPMSymbol, kCFDateFormatterDefaultDate, kCFDateFormatterDefaultFormat}) {
        CFDateFormatterSetProperty(formatter, key, few);
        CFDateFormatterSetProperty(formatter, key, kCFNull);
    }
    EXPECT_EQ(Formatted(formatter, Moment()), "Wednesday 21 PM");
    EXPECT_EQ(CFDateFormatterCopyProperty(formatter, CFSTR("no such key")), nullptr);
}

// --- Time zones

TEST(CFTimeZone, KnowsWhenClocksChange) {
    const auto zone = Zone("America/Los_Angeles");
    EXPECT_EQ(CFTimeZoneGetSecondsFromGMT(zone, Moment()), -7 * 3600);
    EXPECT_TRUE(CFTimeZoneIsDaylightSavingTime(zone, Moment()));
    EXPECT_EQ(TextOf(CFTimeZoneCopyAbbreviation(zone, Moment())), "PDT");
    const CFAbsoluteTime winter = Moment() + 60 * 86400.0;
    EXPECT_EQ(CFTimeZoneGetSecondsFromGMT(zone, winter), -8 * 3600);
    EXPECT_FALSE(CFTimeZoneIsDaylightSavingTime(zone, winter));
    EXPECT_EQ(Text(CFTimeZoneGetName(zone)), "America/Los_Angeles");
}

TEST(CFTimeZone, TakesAbbreviationsOnlyWhenAsked) {
    EXPECT_EQ(CFTimeZoneCreateWithName(nullptr, CFSTR("PST"), false), nullptr);
    EXPECT_NE(Zone("PST"), nullptr);
    EXPECT_EQ(CFTimeZoneCreateWithName(nullptr, CFSTR("Nowhere/Town"), true), nullptr);
    EXPECT_EQ(CFTimeZoneCreateWithName(nullptr, CFSTR(""), true), nullptr);
    EXPECT_NE(Ref<CFTimeZoneRef>(CFTimeZoneCreateWithName(nullptr, CFSTR("GMT"), false)), nullptr);
}

TEST(CFTimeZone, NamesFixedDistances) {
    const auto fixed = [](double inSeconds) {
        return Ref<CFTimeZoneRef>(CFTimeZoneCreateWithTimeIntervalFromGMT(nullptr, inSeconds));
    };
    EXPECT_EQ(Text(CFTimeZoneGetName(fixed(5400))), "GMT+01:30");
    EXPECT_EQ(Text(CFTimeZoneGetName(fixed(-3600))), "GMT-01:00");
    EXPECT_EQ(Text(CFTimeZoneGetName(fixed(0))), "GMT");
    EXPECT_EQ(CFTimeZoneGetSecondsFromGMT(fixed(5400), 0), 5400);
    EXPECT_EQ(CFTimeZoneCreateWithTimeIntervalFromGMT(nullptr, 1e9), nullptr);
    EXPECT_EQ(CFTimeZoneCreateWithTimeIntervalFromGMT(nullptr, std::nan("")), nullptr);
}

TEST(CFTimeZone, ListsNamesThatCanAllBeHad) {
    const Ref<CFArrayRef> names(CFTimeZoneCopyKnownNames());
    ASSERT_GT(CFArrayGetCount(names), 300);
    for (CFIndex i = 0; i < CFArrayGetCount(names); i += 7) {
        const auto name = static_cast<CFStringRef>(CFArrayGetValueAtIndex(names, i));
        EXPECT_NE(Ref<CFTimeZoneRef>(CFTimeZoneCreateWithName(nullptr, name, true)), nullptr)
            << Text(name);
    }
}

// Puts TZ back at the end.
class Environment {
  public:
    explicit Environment(const char* inZone) {
        const char* before = getenv("TZ");
        mHad = before != nullptr;
        if (mHad) mBefore = before;
        Set(inZone);
    }
    ~Environment() {
        if (mHad) setenv("TZ", mBefore.c_str(), 1);
        if (!mHad) unsetenv("TZ");
        tzset();
        CFTimeZoneSetDefault(nullptr);
        CFTimeZoneResetSystem();
    }
    static void Set(const char* inZone) {
        setenv("TZ", inZone, 1);
        tzset();
        CFTimeZoneResetSystem();
    }

  private:
    bool mHad = false;
    std::string mBefore;
};

std::string DefaultZone() {
    const Ref<CFTimeZoneRef> zone(CFTimeZoneCopyDefault());
    return Text(CFTimeZoneGetName(zone));
}

TEST(CFTimeZone, IsTheEnvironmentsUntilAnotherIsTheDefault) {
    const Environment tokyo("Asia/Tokyo");
    EXPECT_EQ(DefaultZone(), "Asia/Tokyo");
    setenv("TZ", "Europe/Berlin", 1);
    EXPECT_EQ(DefaultZone(), "Asia/Tokyo");
    CFTimeZoneResetSystem();
    EXPECT_EQ(DefaultZone(), "Europe/Berlin");
    CFTimeZoneSetDefault(Zone("America/New_York"));
    EXPECT_EQ(DefaultZone(), "America/New_York");
    EXPECT_EQ(Text(CFTimeZoneGetName(Ref<CFTimeZoneRef>(CFTimeZoneCopySystem()))), "Europe/Berlin");
    CFTimeZoneSetDefault(nullptr);
    EXPECT_EQ(DefaultZone(), "Europe/Berlin");
}

// --- Calendar dates

TEST(CFGregorianDate, AgreesWithTheCLibraryOverManyYears) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 5000; ++i) {
        const auto seconds = static_cast<time_t>(random() % 200000000000) - 100000000000;
        std::tm parts{};
        ASSERT_TRUE(gmtime_r(&seconds, &parts));
        const CFAbsoluteTime time = double(seconds) - kCFAbsoluteTimeIntervalSince1970;
        const CFGregorianDate date = CFAbsoluteTimeGetGregorianDate(time, nullptr);
        EXPECT_EQ(date.year, parts.tm_year + 1900);
        EXPECT_EQ(date.month, parts.tm_mon + 1);
        EXPECT_EQ(date.day, parts.tm_mday);
        EXPECT_EQ(date.hour * 3600 + date.minute * 60 + int(date.second),
                  parts.tm_hour * 3600 + parts.tm_min * 60 + parts.tm_sec);
        EXPECT_EQ(CFAbsoluteTimeGetDayOfWeek(time, nullptr), parts.tm_wday ? parts.tm_wday : 7);
        EXPECT_EQ(CFGregorianDateGetAbsoluteTime(date, nullptr), time);
    }
}

TEST(CFGregorianDate, TakesTheFirstOfTwoMomentsAndCountsOnOverAGap) {
    const auto zone = Zone("America/Los_Angeles");
    const auto hourOf = [&](CFGregorianDate inDate) {
        const CFAbsoluteTime time = CFGregorianDateGetAbsoluteTime(inDate, zone);
        return CFAbsoluteTimeGetGregorianDate(time, nullptr).hour;
    };
    EXPECT_EQ(hourOf({2004, 10, 31, 1, 30, 0}), 8);  // still PDT
    EXPECT_EQ(hourOf({2004, 4, 4, 2, 30, 0}), 10);   // as if still PST
    EXPECT_EQ(hourOf({2004, 10, 20, 14, 20, 0}), 21);
}

TEST(CFGregorianDate, HoldsDaysAgainstMonthAndYear) {
    EXPECT_TRUE(CFGregorianDateIsValid({2004, 2, 29, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2003, 2, 29, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_TRUE(CFGregorianDateIsValid({2003, 2, 29, 0, 0, 0}, kCFGregorianUnitsDays));
    EXPECT_TRUE(CFGregorianDateIsValid({2003, 2, 29, 0, 0, 0},
                                       kCFGregorianUnitsMonths | kCFGregorianUnitsDays));
    EXPECT_FALSE(CFGregorianDateIsValid({1900, 2, 29, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2004, 4, 31, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2004, 13, 1, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2004, 1, 0, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2004, 1, 1, 24, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2004, 1, 1, 0, 60, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({2004, 1, 1, 0, 0, 60}, kCFGregorianAllUnits));
    EXPECT_TRUE(CFGregorianDateIsValid({2004, 13, 99, 99, 99, 99}, 0));
}

TEST(CFGregorianDate, SurvivesTimesAndDatesOfNonsense) {
    const double times[] = {1e300, -1e300, std::nan(""), std::numeric_limits<double>::infinity()};
    for (const double time : times) {
        const CFGregorianDate date = CFAbsoluteTimeGetGregorianDate(time, nullptr);
        EXPECT_TRUE(CFGregorianDateIsValid(date, kCFGregorianAllUnits)) << time;
    }
    const CFGregorianDate far = {INT32_MAX, 127, 127, 127, 127, 1e300};
    EXPECT_GT(CFGregorianDateGetAbsoluteTime(far, Zone("Europe/Berlin")), 0);
    EXPECT_FALSE(CFGregorianDateIsValid({2004, -5, 1, 0, 0, 0}, kCFGregorianAllUnits));
    EXPECT_FALSE(CFGregorianDateIsValid({INT32_MIN, -5, 1, 0, 0, 0}, kCFGregorianUnitsDays |
                                                                         kCFGregorianUnitsMonths |
                                                                         kCFGregorianUnitsYears));
}

}  // namespace
