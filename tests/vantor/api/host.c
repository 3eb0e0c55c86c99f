/* A host in C: every call of the header by its C name, for the compiler and the linker to check. */
#include "host.h"

#include "vantor/api/Vantor.h"

static int sCalls = 0;

static Boolean CountCall(EventRecord* event, SInt32* sleep, RgnHandle* region) {
    (void)event;
    *sleep = 1;
    *region = 0;
    ++sCalls;
    return 0;
}

AEIdleUPP HostsIdleFunction(void) {
    return CountCall;
}

void SetIdleFunctionFromC(AEIdleUPP idle) {
    VantorSetAEIdleProc(idle);
}

SInt32 CallEverythingFromC(void) {
    ProcessSerialNumber psn;
    Boolean on;
    SInt32 number;
    Str255 text;
    FSSpec file;
    SInt32 failures = 0;
    VantorBundleInit();
    failures += VantorInitiateSession() != 0;
    VantorIsSessionInitiated();
    VantorGetMirelProcessSerialNumber(&psn);
    VantorGetMirelPath();
    VantorIsMirelRunning();
    VantorIsMirelFound();
    failures += VantorGetServerMode(&on) != 0;
    failures += VantorSetServerMode(1) != 0;
    failures += VantorGetSimulationMode(&on) != 0;
    failures += VantorSetSimulationMode(0) != 0;
    failures += VantorGetStatusCode(&number) != 0;
    failures += VantorGetStatusText(text) != 0;
    failures += VantorMakeNewDisc('Data') != 0;
    failures += VantorAddFiles(&file, 0) != 0;
    VantorIsMirelBusy();
    failures += VantorWriteDisc() != 0;
    failures += VantorWriteDiscWithOptions(1, 0, 0, 0, 0) != 0;
    failures += VantorBringMirelToFront() != 0;
    failures += VantorGetDiscSize(&number) != 0;
    failures += VantorGetMediaInfo(&number) != 0;
    failures += VantorMediaSettingInfo(0) != 0;
    failures += VantorRequestBlankDisc(&number) != 0;
    failures += VantorEjectDisc() != 0;
    failures += VantorTerminateSession() != 0;
    return failures;
}
