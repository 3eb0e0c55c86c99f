// Moments as objects: seconds from 2001-01-01 00:00:00 GMT, without leap seconds. Calendar dates
// are Gregorian, also for times before that calendar began; a NULL time zone means GMT.
#ifndef COREFOUNDATION_CFDATE_H
#define COREFOUNDATION_CFDATE_H

#include <CoreFoundation/CFBase.h>

typedef double CFTimeInterval;  // seconds
typedef CFTimeInterval CFAbsoluteTime;
typedef const struct __CFDate* CFDateRef;
typedef const struct __CFTimeZone* CFTimeZoneRef;

// A date as a calendar and a clock show it. Years are numbered through: 0 comes before 1.
struct CFGregorianDate {
    SInt32 year;
    SInt8 month;   // 1 to 12
    SInt8 day;     // 1 to 31
    SInt8 hour;    // 0 to 23
    SInt8 minute;  // 0 to 59
    double second;
};
typedef struct CFGregorianDate CFGregorianDate;

// Parts of a date; the values add up.
typedef CFOptionFlags CFGregorianUnitFlags;
enum {
    kCFGregorianUnitsYears = 1,
    kCFGregorianUnitsMonths = 2,
    kCFGregorianUnitsDays = 4,
    kCFGregorianUnitsHours = 8,
    kCFGregorianUnitsMinutes = 16,
    kCFGregorianUnitsSeconds = 32,
    kCFGregorianAllUnits = 0x00FFFFFF
};

PLATFORM_DECLARATIONS_BEGIN

extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;  // 978307200
extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1904;  // 3061152000

// Now.
CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

CFTypeID CFDateGetTypeID(void);
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime at);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef theDate);

// theDate minus otherDate.
CFTimeInterval CFDateGetTimeIntervalSinceDate(CFDateRef theDate, CFDateRef otherDate);

// Earlier is less. `context` is unused.
CFComparisonResult CFDateCompare(CFDateRef theDate, CFDateRef otherDate, void* context);

// Whether those parts of a date are in their ranges; the day is held against its month and year,
// where these are asked about too.
Boolean CFGregorianDateIsValid(CFGregorianDate gdate, CFOptionFlags unitFlags);

// The moment at which clocks of a time zone show a date, and what they show at a moment. A date
// that a change of the clocks skips counts on from the time before the change; of one that comes
// twice the first is meant. Years beyond what a moment can be written in are cut to it.
CFAbsoluteTime CFGregorianDateGetAbsoluteTime(CFGregorianDate gdate, CFTimeZoneRef tz);
CFGregorianDate CFAbsoluteTimeGetGregorianDate(CFAbsoluteTime at, CFTimeZoneRef tz);

// 1 is Monday, 7 Sunday.
SInt32 CFAbsoluteTimeGetDayOfWeek(CFAbsoluteTime at, CFTimeZoneRef tz);

PLATFORM_DECLARATIONS_END

#endif
