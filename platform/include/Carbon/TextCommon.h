// Numbers that name text encodings.
#ifndef CARBON_TEXTCOMMON_H
#define CARBON_TEXTCOMMON_H

#include <Carbon/MacTypes.h>

typedef UInt32 TextEncoding;

// The number of a script is that of its encoding.
enum {
    kTextEncodingMacRoman = 0,
    kTextEncodingMacJapanese = 1,
    kTextEncodingMacChineseTrad = 2,
    kTextEncodingMacKorean = 3,
    kTextEncodingMacChineseSimp = 25,
    kTextEncodingUnicodeDefault = 0x0100
};

// "Whichever fits": as a hint with a name it leaves the choice to the callee.
enum { kTextEncodingUnknown = 0xFFFF };

#endif
