// Driving the recording application: all a host needs, from C or C++.
//
//     VantorInitiateSession();               finds or launches it and switches server mode on
//     VantorMakeNewDisc('Data');             a new disc document, its class a four-character code
//     VantorAddFiles(files, count);
//     VantorWriteDisc();                     returns at once; the writing goes on over there
//     while (VantorIsMirelBusy()) ...        with VantorGetStatusCode and VantorGetStatusText
//     VantorTerminateSession();              undoes what the session changed
//
// Order. A session first and last is how it is meant; nothing enforces it. Without one every call
// works and launches the recording application when it is not running, but server mode stays as it
// is and nothing is undone afterwards.
//
// Results. A call that returns SInt32 returns 0 for success, else a code: a system code (negative,
// see MacErrors.h), the error number the recording application answered with, or
//     -11000  an exception of another kind was caught inside
//     -11001  the search of volumes before Mac OS X found no recording application; no call answers
//             it on this system, where Launch Services is asked instead (-10814)
//     -11002  one was found or is running, but it is no version this library can drive (type
//     'APPL',
//             creator 'Fv8k', version 7.0 or later, "Calverin" in its name)
//     -10814  no application with that creator is known to Launch Services
// A call that returns Boolean returns 0 for any failure. No exception leaves a call.
//
// Out pointers may be null: the call is made all the same and only the storing is left out. They
// are written after success only. Nothing passed in is kept, except the idle function.
//
// Main thread only. Every call waits for the recording application's answer, without a time limit
// of its own; while it waits the idle function runs, which may end the wait but must not call back
// into this interface.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Does nothing. For hosts that call an initialiser when they load a bundle.
VANTOR_EXPORT void VantorBundleInit(void);

// Opens a session: launches the recording application, or, when it runs, remembers its server mode
// and switches that on. A session that is open already is replaced without quitting anything. When
// this fails the session is open nevertheless; end it as usual.
VANTOR_EXPORT SInt32 VantorInitiateSession(void);

// Ends the session: a recording application that the session launched is told that the session is
// over and asked to quit without saving; server mode that the session switched on is switched off.
// Success without a session, and nothing is sent.
VANTOR_EXPORT SInt32 VantorTerminateSession(void);

VANTOR_EXPORT Boolean VantorIsSessionInitiated(void);

// Whether the recording application runs in a version this library can drive. Its serial number is
// written whenever a process with its creator runs, also when the answer is 0.
VANTOR_EXPORT Boolean VantorGetMirelProcessSerialNumber(ProcessSerialNumber* outPSN);

// The POSIX path of the bundle examined last, null before that. Not retained: it goes away when the
// next examination stores another. Retain it to keep it.
VANTOR_EXPORT CFStringRef VantorGetMirelPath(void);

// Whether the recording application runs, and whether one is installed, in a version that will do.
VANTOR_EXPORT Boolean VantorIsMirelRunning(void);
VANTOR_EXPORT Boolean VantorIsMirelFound(void);

// Server mode: the recording application works for other programs and shows nothing of its own.
VANTOR_EXPORT SInt32 VantorGetServerMode(Boolean* outOn);
VANTOR_EXPORT SInt32 VantorSetServerMode(Boolean inOn);

// Simulation mode: writing goes through all its steps with the laser off.
VANTOR_EXPORT SInt32 VantorGetSimulationMode(Boolean* outOn);
VANTOR_EXPORT SInt32 VantorSetSimulationMode(Boolean inOn);

// What the recording application is doing with its first disc: 1 to 101 while busy.
VANTOR_EXPORT SInt32 VantorGetStatusCode(SInt32* outCode);

// The same in words, a Pascal string in MacRoman; `outText` holds 256 bytes.
VANTOR_EXPORT SInt32 VantorGetStatusText(Str255 outText);

// Makes a new disc document of a class that the recording application knows.
VANTOR_EXPORT SInt32 VantorMakeNewDisc(OSType inDiscType);

// Adds `inCount` files or folders, in this order, to the first disc.
VANTOR_EXPORT SInt32 VantorAddFiles(FSSpec* inFiles, SInt32 inCount);

// Whether the recording application runs and its status code lies in 1 to 101.
VANTOR_EXPORT Boolean VantorIsMirelBusy(void);

// Brings the recording application to the front and starts writing the first disc, with
// verification and ejection. Returns as soon as writing has begun.
VANTOR_EXPORT SInt32 VantorWriteDisc(void);

// The same with choices.
//   inWriteMode     1 asks for the recording application's whole-session way; others leave it alone
//   inEject         0 no, -1 as the recording application is set, anything else yes
//   inVerify        the same
//   inQuit          accepted; the recording application is never asked to quit after writing
//   inBringToFront  not 0: bring it to the front first
VANTOR_EXPORT SInt32 VantorWriteDiscWithOptions(SInt16 inWriteMode, SInt16 inEject, SInt16 inVerify,
                                                Boolean inQuit, Boolean inBringToFront);

VANTOR_EXPORT SInt32 VantorBringMirelToFront(void);

// The size of the first disc's contents and what medium is in the drive, in the recording
// application's own units and encoding (see its dictionary).
VANTOR_EXPORT SInt32 VantorGetDiscSize(SInt32* outSize);
VANTOR_EXPORT SInt32 VantorGetMediaInfo(SInt32* outInfo);

// Stores the type of the reference to the first disc, 'obj ', and asks the recording application
// nothing. Each call leaves one small descriptor allocated.
VANTOR_EXPORT SInt32 VantorMediaSettingInfo(SInt32* outType);

// Has the recording application ask the user for a blank disc and waits for the outcome, written to
// `outInfo`: the media information (as above), 0 when the recording application cannot ask, -128
// when the user cancelled, or the code with which asking failed. A negative outcome is the result
// as well. After a disc was supplied, writing within this session does not ask again.
VANTOR_EXPORT SInt32 VantorRequestBlankDisc(SInt32* outInfo);

VANTOR_EXPORT SInt32 VantorEjectDisc(void);

VANTOR_END_C

// Sets the function that runs while a call waits: it writes how many ticks (1/60 s) to sleep and a
// mouse region (nil), and returns true to end the wait, which the call answers with -1711. The
// function stays in use until the next call of this; null puts the library's own back, which
// sleeps half a second at a time and never ends a wait.
#ifdef __cplusplus
VANTOR_EXPORT void VantorSetAEIdleProc(AEIdleUPP inIdleProc);
#else
// The symbol carries the type of its argument; this name makes it callable from C.
VANTOR_EXPORT void VantorSetAEIdleProc(AEIdleUPP inIdleProc) __asm__(
    "_Z19VantorSetAEIdleProcPFhP11EventRecordPiPP15OpaqueRgnHandleE");
#endif
