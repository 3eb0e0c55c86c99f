// Events to the own process, sending by class, and asking the user.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Failures are thrown as LException with the platform's code. Initialize() comes before
// MakeAppleEvent and SendAppleEvent; opening a session calls it.
class VANTOR_EXPORT UAppleEventsMgr {
  public:
    static AEAddressDesc sSelfTargetAddr;  // 'psn ' {0, kCurrentProcess}
    static AEDescList sAnyType;            // one 'type' item: '****'
    static Boolean sDontExecuteWorks;      // the manager can record an event without executing it

    static void Initialize();

    // The caller disposes the address.
    static void MakeSelfTargetAddr(AEDesc& outAddress);

    // An event to the own process, for the caller to dispose.
    static void MakeAppleEvent(AEEventClass inClass, AEEventID inID, AppleEvent& outEvent);

    // Sends without waiting and disposes the event, whatever happens. `inExecute` false only
    // records it.
    static void SendAppleEvent(AppleEvent& inEvent, Boolean inExecute);

    // Sends and waits the default time for the answer; both events are the caller's.
    static void SendAppleEventWithReply(const AppleEvent& inEvent, AppleEvent& outReply,
                                        Boolean inExecute);

    // Comes to the front for the user's attention. `inTimeOut` is in ticks (1/60 s); `inNMRec` may
    // be null. The code is returned, and thrown too when `inThrowFail` is true.
    static OSErr InteractWithUser(Boolean inThrowFail, SInt32 inTimeOut, NMRec* inNMRec);

    // Sleeps 6 ticks at a time and never stops the wait.
    static Boolean AEIdleProc(EventRecord* inEvent, SInt32* outSleepTime, RgnHandle* outMouseRgn);
};
