// Sending without an event loop of one's own.
#ifndef CARBON_AEMACH_H
#define CARBON_AEMACH_H

#include <Carbon/AEDataModel.h>

PLATFORM_DECLARATIONS_BEGIN

// AESend without an idle and a filter procedure, with the same results. A waiting send blocks the
// calling thread.
//   timeOutInTicks  1/60 s; kAEDefaultTimeout, kNoTimeOut
//   reply           receives the null descriptor unless an answer came; the caller disposes it; may
//                   be null when no reply is awaited
OSStatus AESendMessage(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode,
                       SInt32 timeOutInTicks);

PLATFORM_DECLARATIONS_END

#endif
