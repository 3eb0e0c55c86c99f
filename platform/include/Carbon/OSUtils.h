// Operating system utilities: queue elements and the tick counter.
#ifndef CARBON_OSUTILS_H
#define CARBON_OSUTILS_H

#include <Carbon/MacTypes.h>

// What a queue element is part of.
enum { nmType = 8 };  // a notification, see Notification.h

#pragma pack(push, 2)

// The head that every queued record begins with.
struct QElem {
    struct QElem* qLink;  // the next one, or null
    SInt16 qType;
    SInt16 qData[1];
};
typedef struct QElem QElem;
typedef QElem* QElemPtr;

#pragma pack(pop)

PLATFORM_DECLARATIONS_BEGIN

// Time since the machine was started in ticks, 1/60 s. Wraps around after about 828 days. The same
// in every process.
UInt32 TickCount(void);

PLATFORM_DECLARATIONS_END

#endif
