// What the system that the program runs on offers.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Features that InitEnvironment finds out. All other bits are the caller's own.
enum : UInt32 {
    kFeatureAppearance = 0x1000,
    kFeatureAppearanceCompat = 0x2000,
    kFeatureAppearance101 = 0x8000,
    kFeatureAppearance110 = 0x10000,
    kFeatureWindowMgr = 0x20000,
    kFeatureAquaMenuLayout = 0x40000,
};

struct SEnvironInfo {
    UInt32 features;
    SInt32 systemVersion;      // 0x1049 is 10.4.9
    SInt32 appearanceVersion;  // 0x0110 is 1.1; 0 without an Appearance Manager
};

// Asks once and answers from memory afterwards. Nothing fails: what cannot be asked is not there.
class VANTOR_EXPORT UEnvironment {
  public:
    static SEnvironInfo sEnvironInfo;

    // Call it at the start of the program; before, no feature is there. Again, it asks again and
    // leaves the caller's bits alone.
    static void InitEnvironment();

    // Whether all features of a mask are there.
    static bool HasFeature(UInt32 inMask) { return (sEnvironInfo.features & inMask) == inMask; }
    static void SetFeature(UInt32 inMask, UInt8 inOn);

    // Whether a bit (0 is the lowest) of the answer to a Gestalt selector is set.
    static bool HasGestaltAttribute(UInt32 inSelector, UInt32 inBit);

    static bool IsAppearanceRunning();

    // The address of a symbol in a library that is loaded already; null when either is missing.
    static Ptr GetSharedLibSymbol(ConstStr63Param inLibraryName, ConstStr255Param inSymbolName);
};
