// The Process Manager: which programs run, which one is in front, starting further ones.
//
// A process is any program of the same user that has made a first call which needs to be known to
// others (a call of this header, sending or receiving an event). It is listed until it ends,
// however it ends. Serial numbers grow in the order of launching and are never used again.
//
// Wherever a serial number is read, {0, kCurrentProcess} means the caller. A null pointer gives
// paramErr. Every call that returns a code may also give
//   permErr     the user's runtime folder is a link, or belongs to or is open to someone else
//   memFullErr  the table of processes is full
#ifndef CARBON_PROCESSES_H
#define CARBON_PROCESSES_H

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>
#include <CoreFoundation/CFBase.h>
#include <sys/types.h>

// The low words of the serial numbers with a fixed meaning; their high word is 0.
enum { kNoProcess = 0, kSystemProcess = 1, kCurrentProcess = 2 };

typedef UInt16 LaunchFlags;

// launchControlFlags of a launch.
enum {
    launchContinue = 0x4000,     // the caller goes on; without it the caller is ended by the launch
    launchNoFileFlags = 0x0800,  // launchFileFlags means nothing
    launchUseMinimum = 0x0400,   // no effect: there are no memory partitions
    launchDontSwitch = 0x0200,   // the new process does not come to the front
    launchAllow24Bit = 0x0100,   // no effect
    launchInhibitDaemon = 0x0080  // refuse a program that only works in the background
};

// launchBlockID and launchEPBLength of a launch block of this shape.
enum { extendedBlock = 0x4C43, extendedBlockLen = 32 };

// processMode.
enum {
    modeReserved = 0x01000000,
    modeControlPanel = 0x00080000,
    modeLaunchDontSwitch = 0x00040000,
    modeDeskAccessory = 0x00020000,
    modeMultiLaunch = 0x00010000,
    modeNeedSuspendResume = 0x00004000,
    modeCanBackground = 0x00001000,
    modeDoesActivateOnFGSwitch = 0x00000800,
    modeOnlyBackground = 0x00000400,  // never in front
    modeGetFrontClicks = 0x00000200,
    modeGetAppDiedMsg = 0x00000100,
    mode32BitCompatible = 0x00000080,
    modeHighLevelEventAware = 0x00000040,
    modeLocalAndRemoteHLEvents = 0x00000020,
    modeStationeryAware = 0x00000010,
    modeUseTextEditServices = 0x00000008,
    modeDisplayManagerAware = 0x00000004
};

// SetFrontProcessWithOptions.
enum { kSetFrontProcessFrontWindowOnly = 1 };

#pragma pack(push, 2)

// The head of what a launch may hand to the new program; messageLength bytes follow it. theMsgEvent
// holds 23, the event's class (message) and its ID (where); the bytes are the flattened event.
struct AppParameters {
    struct {
        UInt16 what;
        UInt32 message;
        UInt32 when;
        Point where;
        UInt16 modifiers;
    } theMsgEvent;
    UInt32 eventRefCon;
    UInt32 messageLength;  // bytes
};
typedef struct AppParameters AppParameters;
typedef AppParameters* AppParametersPtr;

#pragma pack(pop)

// What LaunchApplication is told, and its answer. launchEPBLength is 32 on every machine.
struct LaunchParamBlockRec {
    UInt32 reserved1;
    UInt16 reserved2;
    UInt16 launchBlockID;    // extendedBlock
    UInt32 launchEPBLength;  // extendedBlockLen
    UInt16 launchFileFlags;
    LaunchFlags launchControlFlags;
    FSSpecPtr launchAppSpec;               // a bundle's folder, or a program file
    ProcessSerialNumber launchProcessSN;   // answer
    UInt32 launchPreferredSize;            // answer, always 0
    UInt32 launchMinimumSize;              // answer, always 0
    UInt32 launchAvailableSize;            // answer, always 0
    AppParametersPtr launchAppParameters;  // null: the new program gets an 'oapp' event
};
typedef struct LaunchParamBlockRec LaunchParamBlockRec;
typedef LaunchParamBlockRec* LaunchPBPtr;

// What GetProcessInformation answers. The caller sets processInfoLength to 60 on every machine, and
// each of processName and processAppSpec to null or to storage of its own.
struct ProcessInfoRec {
    UInt32 processInfoLength;             // at least 60
    StringPtr processName;                // 32 bytes or more; MacRoman, at most 31 characters
    ProcessSerialNumber processNumber;    // the real number, never {0, kCurrentProcess}
    UInt32 processType;                   // 'APPL', 'appe' for a background program
    OSType processSignature;              // creator, '????' when unknown
    UInt32 processMode;                   // the mode flags
    Ptr processLocation;                  // null
    UInt32 processSize;                   // 0
    UInt32 processFreeMem;                // 0
    ProcessSerialNumber processLauncher;  // who launched it; {0, 0} when no process did
    UInt32 processLaunchDate;             // ticks (1/60 s) since the system started
    UInt32 processActiveTime;             // ticks of processor time used
    FSSpecPtr processAppSpec;             // the program file (within the bundle, if it has one)
};
typedef struct ProcessInfoRec ProcessInfoRec;
typedef ProcessInfoRec* ProcessInfoRecPtr;

PLATFORM_DECLARATIONS_BEGIN

// Starts the application that launchAppSpec names, or brings the one that already runs from there
// to the front (launchDontSwitch: neither comes to the front). launchProcessSN is valid when the
// call returns, although the program has hardly begun; the first event to it waits for it to be
// ready. Without launchContinue the caller is ended through ExitToShell, also after a failure.
//   paramErr    a block of another shape, no spec, or parameters that hold no event
//   fnfErr      no such file; other File Manager codes for a file spec that leads nowhere
//   appIsDaemon the program works in the background only and launchInhibitDaemon is set
//   kLSNotAnApplicationErr, kLSNoExecutableErr, kLSNoLaunchPermissionErr,
//   kLSExecutableIncorrectFormat, kLSLaunchInProgressErr   see LSInfo.h
OSErr LaunchApplication(LaunchPBPtr LaunchParams);

// The caller's real serial number.
OSErr GetCurrentProcess(ProcessSerialNumber* PSN);

// The process in front. procNotFound when none is.
OSErr GetFrontProcess(ProcessSerialNumber* PSN);

// Advances *PSN to the process launched next; {0, kNoProcess} advances to the first. After the last
// one *PSN is {0, kNoProcess} and the result procNotFound. paramErr for a number never given out;
// one whose process has ended meanwhile still has a successor.
OSErr GetNextProcess(ProcessSerialNumber* PSN);

// Describes a process. procNotFound when it has ended; nothing is written then. paramErr when
// processInfoLength is below 60.
OSErr GetProcessInformation(const ProcessSerialNumber* PSN, ProcessInfoRec* info);

// Brings a process to the front. The two programs concerned learn of it by their event loops.
// procNotFound; appIsDaemon for one that only works in the background.
OSErr SetFrontProcess(const ProcessSerialNumber* PSN);

// The same; inOptions is 0 or kSetFrontProcessFrontWindowOnly, which makes no difference here.
OSStatus SetFrontProcessWithOptions(const ProcessSerialNumber* inProcess, OptionBits inOptions);

// Ends a process's wait for events early. procNotFound.
OSErr WakeUpProcess(const ProcessSerialNumber* PSN);

// Sets *result to whether both numbers mean one process. {0, kCurrentProcess} counts as the
// caller's real number; nothing else is checked, so two equal numbers are the same whatever they
// name.
OSErr SameProcess(const ProcessSerialNumber* PSN1, const ProcessSerialNumber* PSN2,
                  Boolean* result);

// Ends the caller in an orderly way. Returns only if the program has set an exit hook that does.
void ExitToShell(void);

// Ends a process at once; it cannot save or clean up. procNotFound.
OSErr KillProcess(const ProcessSerialNumber* inProcess);

// The file system reference of the process's bundle, or of its program file when it has none.
// procNotFound; File Manager codes when it is no longer there.
OSStatus GetProcessBundleLocation(const ProcessSerialNumber* psn, FSRef* location);

// The process's full name; the caller releases it. procNotFound.
OSStatus CopyProcessName(const ProcessSerialNumber* psn, CFStringRef* name);

// From serial number to Linux process number and back. procNotFound.
OSStatus GetProcessPID(const ProcessSerialNumber* psn, pid_t* pid);
OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* psn);

PLATFORM_DECLARATIONS_END

#endif
