// Time zones: how far clocks are ahead of GMT, and when.
//
// A time zone has the name it is known by everywhere, such as "Europe/Berlin"; one made from a
// fixed distance is called "GMT+01:00".
#ifndef COREFOUNDATION_CFTIMEZONE_H
#define COREFOUNDATION_CFTIMEZONE_H

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>

PLATFORM_DECLARATIONS_BEGIN

CFTypeID CFTimeZoneGetTypeID(void);

// The computer's time zone, looked up once; ResetSystem makes the next call look again. TZ in the
// environment comes before the computer's setting.
CFTimeZoneRef CFTimeZoneCopySystem(void);
void CFTimeZoneResetSystem(void);

// The time zone of the process, used where none is named: the system's until SetDefault names
// another one (NULL: the system's again).
CFTimeZoneRef CFTimeZoneCopyDefault(void);
void CFTimeZoneSetDefault(CFTimeZoneRef tz);

// The names of all time zones.
CFArrayRef CFTimeZoneCopyKnownNames(void);

// A fixed distance in seconds, east of Greenwich above 0; NULL for more than a day.
CFTimeZoneRef CFTimeZoneCreateWithTimeIntervalFromGMT(CFAllocatorRef allocator, CFTimeInterval ti);

// NULL for a name nobody knows. With tryAbbrev true an abbreviation ("PST", "CET") will do.
CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef allocator, CFStringRef name,
                                       Boolean tryAbbrev);

CFStringRef CFTimeZoneGetName(CFTimeZoneRef tz);  // lent

// Seconds ahead of GMT at a moment, daylight saving time included.
CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef tz, CFAbsoluteTime at);

// What the time is called at a moment: "PDT", "GMT+1".
CFStringRef CFTimeZoneCopyAbbreviation(CFTimeZoneRef tz, CFAbsoluteTime at);

Boolean CFTimeZoneIsDaylightSavingTime(CFTimeZoneRef tz, CFAbsoluteTime at);

PLATFORM_DECLARATIONS_END

#endif
