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

    // --- Receiving ---

    // Installs `inHandler` for every event that the program's 'aedt' resources name. Each holds
    // entries of 12 bytes: event class, event ID, the reference constant the handler gets;
    // big-endian, what does not fill an entry is ignored.
    static void InstallAEHandlers(AEEventHandlerProcPtr inHandler);

    // Throws errAEParamMissed when the event has a required parameter that nobody has read.
    static void CheckForMissedParams(const AppleEvent& inEvent);

    // The index, from 1, that the key data of a position means among `inItemCount` elements: an
    // ordinal ('abso': first, middle, last, any; 'all ' is -1, which is not an index), or a number,
    // from the end when it is negative. 0 and numbers beyond the count are answered as they are;
    // errAENoSuchObject is thrown for what lies before the first element.
    static SInt32 GetAbsolutePositionIndex(const AEDesc& inKeyData, SInt32 inItemCount);

    // Whether the comparison of the two holds. The operators are '>   ', '>=  ', '<   ', '<=  ',
    // '=   ', 'bgwt', 'ends' and 'cont'; another one throws errAEEventNotHandled. Sides of other
    // types than the comparison needs are coerced; errAETypeError when that cannot be.
    static bool CompareDescriptors(const AEDesc& inLeft, DescType inComparisonOperator,
                                   const AEDesc& inRight);

    // What it hands on to, by the types of the sides. An operator that a kind does not know is
    // false.
    static bool CompareAsNumbers(const AEDesc& inLeft, DescType inComparisonOperator,
                                 const AEDesc& inRight);
    static bool CompareAsFloats(const AEDesc& inLeft, DescType inComparisonOperator,
                                const AEDesc& inRight);
    static bool CompareAsDates(const AEDesc& inLeft, DescType inComparisonOperator,
                               const AEDesc& inRight);
    static bool CompareAsIntegers(const AEDesc& inLeft, DescType inComparisonOperator,
                                  const AEDesc& inRight);
    // Texts of up to 255 characters; longer ones are cut. A left side that is shorter than the
    // right one is false for every operator.
    static bool CompareAsStrings(const AEDesc& inLeft, DescType inComparisonOperator,
                                 const AEDesc& inRight);

    // Sleeps 6 ticks at a time and never stops the wait.
    static Boolean AEIdleProc(EventRecord* inEvent, SInt32* outSleepTime, RgnHandle* outMouseRgn);
};
