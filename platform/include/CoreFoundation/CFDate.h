// Moments as objects: seconds from 2001-01-01 00:00:00 GMT, without leap seconds.
#ifndef COREFOUNDATION_CFDATE_H
#define COREFOUNDATION_CFDATE_H

#include <CoreFoundation/CFBase.h>

typedef double CFTimeInterval;  // seconds
typedef CFTimeInterval CFAbsoluteTime;
typedef const struct __CFDate* CFDateRef;

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

PLATFORM_DECLARATIONS_END

#endif
