// Random numbers, which the platform keeps with its drawing calls.
#ifndef CARBON_QUICKDRAWAPI_H
#define CARBON_QUICKDRAWAPI_H

#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// The next number of a sequence that the seed determines: -32767 to 32767, each as likely as the
// others. A program begins with the seed 1, so that it sees the same sequence each time unless it
// sets another (the date, for instance).
SInt16 Random(void);

SInt32 GetQDGlobalsRandomSeed(void);
void SetQDGlobalsRandomSeed(SInt32 randomSeed);

PLATFORM_DECLARATIONS_END

#endif
