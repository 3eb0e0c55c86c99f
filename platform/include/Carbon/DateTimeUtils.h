// The date and the time of day.
#ifndef CARBON_DATETIMEUTILS_H
#define CARBON_DATETIMEUTILS_H

#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// The time now in seconds since 1904-01-01 00:00:00, both in local time: what the dates of files
// count too. Wraps around in 2040.
void GetDateTime(UInt32* secs);

PLATFORM_DECLARATIONS_END

#endif
