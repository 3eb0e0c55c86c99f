// Times in UTC.
#ifndef CARBON_UTCUTILS_H
#define CARBON_UTCUTILS_H

#include <Carbon/MacTypes.h>

#pragma pack(push, 2)

// Seconds since 1904-01-01 00:00:00 UTC as 48 bits, and 1/65536 s. All zero is "no such date".
// In the machine's byte order.
struct UTCDateTime {
    UInt16 highSeconds;
    UInt32 lowSeconds;
    UInt16 fraction;
};
typedef struct UTCDateTime UTCDateTime;
typedef UTCDateTime* UTCDateTimePtr;

#pragma pack(pop)

#endif
