// Calendar dates of moments, and the moments of calendar dates.
#include <unicode/basictz.h>

#include <algorithm>
#include <chrono>
#include <cmath>

#include "core_foundation/dates_and_locales/time_zone.h"

namespace carbon {

namespace {

constexpr double kDay = 24 * 60 * 60;
constexpr int kFirstYear = -32767, kLastYear = 32767;  // of std::chrono's calendar

std::chrono::sys_days Epoch() {
    using namespace std::chrono;
    return sys_days{year{2001} / January / 1};
}

bool HasDay(const CFGregorianDate& inDate, CFOptionFlags inUnits) {
    using namespace std::chrono;
    if (inDate.day < 1 || inDate.day > 31) return false;
    if (!(inUnits & kCFGregorianUnitsMonths)) return true;
    const bool hasYear = inUnits & kCFGregorianUnitsYears;
    // A year without a number may be a leap year; every 400 years all is as before.
    const int number = hasYear ? inDate.year % 400 + 400 : 2000;
    const auto months = static_cast<unsigned>(std::clamp<int>(inDate.month, 0, 13));
    const year_month_day date{year{number}, month{months}, day{static_cast<unsigned>(inDate.day)}};
    return date.ok();
}

// Seconds from 2001 on, in whatever zone the date is meant.
double LocalTime(const CFGregorianDate& inDate) {
    using namespace std::chrono;
    const year_month start = year{std::clamp<int>(inDate.year, kFirstYear, kLastYear)} / January;
    const auto days = sys_days{(start + months{inDate.month - 1}) / 1} - Epoch();
    return (static_cast<double>(days.count()) + inDate.day - 1) * kDay + inDate.hour * 3600.0 +
           inDate.minute * 60.0 + inDate.second;
}

double OffsetOfLocal(double inLocal, CFTimeZoneRef inZone) {
    UDate time = 0;
    int32_t raw = 0, saving = 0;
    UErrorCode error = U_ZERO_ERROR;
    const auto* zone = dynamic_cast<const icu::BasicTimeZone*>(&IcuTimeZone(inZone));
    if (!zone || !ToIcuTime(inLocal, &time)) return 0;
    // ICU counts both from 1970 on, the moment and what clocks show.
    zone->getOffsetFromLocal(time, UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, saving, error);
    return (raw + saving) / 1000.0;
}

double LocalAt(CFAbsoluteTime inTime, CFTimeZoneRef inZone) {
    return inTime + (inZone ? CFTimeZoneGetSecondsFromGMT(inZone, inTime) : 0);
}

CFGregorianDate DateOf(double inLocal) {
    using namespace std::chrono;
    static const double first =
        static_cast<double>((sys_days{year{kFirstYear} / January / 1} - Epoch()).count());
    static const double last =
        static_cast<double>((sys_days{year{kLastYear} / December / 31} - Epoch()).count());
    const double local = std::isfinite(inLocal) ? inLocal : 0;
    const double dayNumber = std::clamp(std::floor(local / kDay), first, last);
    const double seconds = std::clamp(local - dayNumber * kDay, 0.0, std::nextafter(kDay, 0.0));
    const year_month_day date{Epoch() + days{static_cast<int>(dayNumber)}};
    const auto minutes = static_cast<int>(seconds / 60);
    return {static_cast<int>(date.year()),
            static_cast<SInt8>(static_cast<unsigned>(date.month())),
            static_cast<SInt8>(static_cast<unsigned>(date.day())),
            static_cast<SInt8>(minutes / 60),
            static_cast<SInt8>(minutes % 60),
            seconds - minutes * 60.0};
}

}  // namespace

}  // namespace carbon

Boolean CFGregorianDateIsValid(CFGregorianDate gdate, CFOptionFlags unitFlags) {
    const auto isAsked = [&](CFOptionFlags inUnit) { return (unitFlags & inUnit) != 0; };
    if (isAsked(kCFGregorianUnitsMonths) && (gdate.month < 1 || gdate.month > 12)) return false;
    if (isAsked(kCFGregorianUnitsDays) && !carbon::HasDay(gdate, unitFlags)) return false;
    if (isAsked(kCFGregorianUnitsHours) && (gdate.hour < 0 || gdate.hour > 23)) return false;
    if (isAsked(kCFGregorianUnitsMinutes) && (gdate.minute < 0 || gdate.minute > 59)) return false;
    return !isAsked(kCFGregorianUnitsSeconds) || (gdate.second >= 0 && gdate.second < 60);
}

CFAbsoluteTime CFGregorianDateGetAbsoluteTime(CFGregorianDate gdate, CFTimeZoneRef tz) {
    const double local = carbon::LocalTime(gdate);
    return tz ? local - carbon::OffsetOfLocal(local, tz) : local;
}

CFGregorianDate CFAbsoluteTimeGetGregorianDate(CFAbsoluteTime at, CFTimeZoneRef tz) {
    return carbon::DateOf(carbon::LocalAt(at, tz));
}

SInt32 CFAbsoluteTimeGetDayOfWeek(CFAbsoluteTime at, CFTimeZoneRef tz) {
    const double day = std::floor(carbon::LocalAt(at, tz) / carbon::kDay);
    // 2001-01-01 was a Monday.
    const double weekday = std::fmod(day, 7);
    return static_cast<SInt32>(weekday < 0 ? weekday + 7 : weekday) + 1;
}
