// Numbers that name text encodings.
#ifndef CARBON_TEXTCOMMON_H
#define CARBON_TEXTCOMMON_H

#include <Carbon/MacTypes.h>

typedef UInt32 TextEncoding;

// "Whichever fits": as a hint with a name it leaves the choice to the callee.
enum { kTextEncodingUnknown = 0xFFFF };

#endif
