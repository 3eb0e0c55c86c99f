// Finding, fronting, launching and quitting processes, with exceptions for failures.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Everything GetProcessInformation fills, with room for the name and the file.
struct VANTOR_EXPORT SProcessInfo : public ProcessInfoRec {
    SProcessInfo();
    SProcessInfo(const SProcessInfo&) = delete;
    SProcessInfo& operator=(const SProcessInfo&) = delete;

    operator ProcessInfoRec*() { return this; }

    Str255 mName;
    FSSpec mAppSpec;
};

// Failures are thrown as LException with the platform's code, -600 (procNotFound) for a process
// that is not there. A serial number may be stale by the time it is used.
class VANTOR_EXPORT UProcess {
  public:
    // The first process in launch order; names are compared with or without case and accents.
    static ProcessSerialNumber GetPSN(OSType inCreator, OSType inType);
    static ProcessSerialNumber GetPSN(ConstStringPtr inName, OSType inType, bool inCaseSensitive,
                                      bool inDiacSensitive);
    static bool IsRunning(OSType inCreator, OSType inType);
    static bool IsRunning(ConstStringPtr inName, OSType inType, bool inCaseSensitive,
                          bool inDiacSensitive);

    static void GetInfo(const ProcessSerialNumber& inPSN, SProcessInfo& outInfo);
    static ProcessSerialNumber GetFront();
    static void SetFront(const ProcessSerialNumber& inPSN);
    static void MakeMeFront();

    // The own process: its real number, and {0, kCurrentProcess} without asking.
    static ProcessSerialNumber GetMyPSN();
    static ProcessSerialNumber GetCurrentPSN();

    // Steps to the next process, {0, kNoProcess} being before the first. True at the end.
    static bool GetNextPSN(ProcessSerialNumber& ioPSN);
    // Steps to the process before. True, and nothing changed, when there is none.
    static bool GetPreviousPSN(ProcessSerialNumber& ioPSN);
    // Whether two numbers mean one process; false when that cannot be told.
    static bool IsSame(const ProcessSerialNumber& inFirst, const ProcessSerialNumber& inSecond);

    static void Wake(const ProcessSerialNumber& inPSN);

    // Ask to quit; nothing waits for it to happen.
    static void Kill(const ProcessSerialNumber& inPSN);
    static void KillMe();
    static void KillAllButMe(bool inKillFinder);

    // `inLaunchFlags` are launchContinue, launchDontSwitch and the like; without launchContinue the
    // caller ends. Returns before the new process handles events.
    static ProcessSerialNumber LaunchApp(const FSSpec& inSpec, UInt16 inLaunchFlags);
    // The same for the file that an alias leads to.
    static ProcessSerialNumber LaunchApp(AliasHandle inAlias, UInt16 inLaunchFlags);

    // Sees to it that an application runs: brings forward the one that does, else launches the one
    // that the volumes name for the creator. False when there is none.
    //   inLaunchFlags  launchDontSwitch leaves the front as it is; without launchContinue the
    //                  caller ends, as asked by itself when the application ran already
    //   outAppSpec     may be null; what the volumes name, whichever of several copies it is
    //   outPSN         may be null; after a launch the process found by creator and type 'APPL'
    static Boolean Launch(OSType inCreator, OSType inType, UInt16 inLaunchFlags, FSSpec* outAppSpec,
                          ProcessSerialNumber* outPSN);
};

VANTOR_EXPORT bool operator==(const ProcessSerialNumber& inFirst,
                              const ProcessSerialNumber& inSecond);
VANTOR_EXPORT bool operator!=(const ProcessSerialNumber& inFirst,
                              const ProcessSerialNumber& inSecond);
