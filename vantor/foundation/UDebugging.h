// What a developer sees when something is thrown or a condition fails.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// What to do about a throw (gDebugThrow) or a failed condition (gDebugSignal).
enum : SInt32 {
    debugAction_Nothing = 0,
    debugAction_Alert = 1,     // show the developer alert, which offers debugger, quit and silence
    debugAction_Debugger = 2,  // stop in the debugger with the message
};

// Texts come as Pascal strings (const unsigned char*) or C strings (const char*); neither may be
// null. Main thread only.
class VANTOR_EXPORT UDebugging {
  public:
    static SInt32 gDebugThrow;
    static SInt32 gDebugSignal;

    // Shows the code as gDebugThrow asks, then throws it. Never returns.
    [[noreturn]] static void DebugThrow(SInt32 inCode, const char* inFile, ConstStringPtr inDetail,
                                        SInt32 inLine);
    [[noreturn]] static void DebugThrow(SInt32 inCode, const char* inFile, const char* inDetail,
                                        SInt32 inLine);

    // Show an alert and do what its button asks: 5 debugger, 4 quit, 6 show no more of this kind,
    // any other go on.
    static void AlertThrowAt(ConstStringPtr inMessage, const char* inFile, ConstStringPtr inDetail,
                             SInt32 inLine);
    static void AlertThrowAt(ConstStringPtr inMessage, const char* inFile, const char* inDetail,
                             SInt32 inLine);
    static void AlertSignalAt(ConstStringPtr inMessage, const char* inFile, ConstStringPtr inDetail,
                              SInt32 inLine);
    static void AlertSignalAt(ConstStringPtr inMessage, const char* inFile, const char* inDetail,
                              SInt32 inLine);
    static void AlertSignalAt(const char* inMessage, const char* inFile, ConstStringPtr inDetail,
                              SInt32 inLine);
    static void AlertSignalAt(const char* inMessage, const char* inFile, const char* inDetail,
                              SInt32 inLine);
    static void AlertSignalOSStatusAt(SInt32 inStatus, const char* inFile, ConstStringPtr inDetail,
                                      SInt32 inLine);
    static void AlertSignalOSStatusAt(SInt32 inStatus, const char* inFile, const char* inDetail,
                                      SInt32 inLine);

    // Copies up to 255 characters; `outString` holds 256 bytes. Returns `outString`.
    static unsigned char* LoadPStrFromCStr(unsigned char* outString, const char* inString);

    // Stops in the debugger with the number in decimal.
    static void DebugNumber(SInt32 inNumber);
};
