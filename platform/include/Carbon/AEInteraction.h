// Sending Apple events, answering those that came, and asking for the user.
#ifndef CARBON_AEINTERACTION_H
#define CARBON_AEINTERACTION_H

#include <Carbon/AEDataModel.h>
#include <Carbon/Events.h>
#include <Carbon/Notification.h>

// Whose events may make this process interact with the user.
typedef SInt8 AEInteractAllowed;
enum { kAEInteractWithSelf = 0, kAEInteractWithLocal = 1, kAEInteractWithAll = 2 };

// The dispatcher of AEResumeTheCurrentEvent when it is no handler.
#define kAENoDispatch 0
#define kAEUseStandardDispatch 0xFFFFFFFF

// With kAEUseStandardDispatch, flags in its refcon: what to leave out.
enum {
    kAEDoNotIgnoreHandler = 0x00000000,
    kAEIgnoreAppPhacHandler = 0x00000001,
    kAEIgnoreAppEventHandler = 0x00000002,
    kAEIgnoreSysPhacHandler = 0x00000004,
    kAEIgnoreSysEventHandler = 0x00000008,
    kAEIngoreBuiltInEventHandler = 0x00000010,
    kAEDontDisposeOnResume = (SInt32)0x80000000
};

// Runs on the waiting thread, first with a null event. It sets *sleepTime to the ticks after which
// it wants the next null event at the latest (0: at once) and may leave mouseRgn alone. Besides
// null events it sees osEvt ones. True ends the wait.
typedef Boolean (*AEIdleProcPtr)(EventRecord* theEvent, SInt32* sleepTime, RgnHandle* mouseRgn);
typedef AEIdleProcPtr AEIdleUPP;

// Asked about each Apple event that arrives during a wait: true dispatches it now, false leaves it
// queued. The sender stays the manager's.
typedef Boolean (*AEFilterProcPtr)(EventRecord* theEvent, SInt32 returnID, SInt32 transactionID,
                                   const AEAddressDesc* sender);
typedef AEFilterProcPtr AEFilterUPP;

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers need no wrapping here: New... returns its argument, Dispose... does nothing.
AEIdleUPP NewAEIdleUPP(AEIdleProcPtr userRoutine);
void DisposeAEIdleUPP(AEIdleUPP userUPP);
Boolean InvokeAEIdleUPP(EventRecord* theEvent, SInt32* sleepTime, RgnHandle* mouseRgn,
                        AEIdleUPP userUPP);
AEFilterUPP NewAEFilterUPP(AEFilterProcPtr userRoutine);
void DisposeAEFilterUPP(AEFilterUPP userUPP);
Boolean InvokeAEFilterUPP(EventRecord* theEvent, SInt32 returnID, SInt32 transactionID,
                          const AEAddressDesc* sender, AEFilterUPP userUPP);

// Sends `event` to the process it is addressed to: a serial number, a creator, a Unix process ID or
// a bundle identifier; another type is coerced to one of them. {0, kCurrentProcess} and the own
// number call the handler inside this call.
//   sendMode        kAENoReply returns once the event is handed over; kAEWaitReply waits for the
//                   answer; with kAEQueueReply it comes later as 'aevt'/'ansr' through the event
//                   loop. kAEDontExecute sends nothing and answers noErr.
//   sendPriority    not used
//   timeOutInTicks  1/60 s, also for handing over; kAEDefaultTimeout (a minute), kNoTimeOut
//   idleProc        runs on this thread during the wait; returning true ends it; may be null
//   filterProc      lets Apple events through during the wait; may be null
//   reply           the null descriptor unless an answer came; the caller disposes it; may be null
//                   when no reply is awaited
// A handler's error travels inside `reply` as keyErrorNumber, not here. Errors: paramErr,
// errAEUnknownSendMode, errAEUnknownAddressType, procNotFound, errAETimeout (also at once when a
// handler suspends an event of one's own), errAEWaitCanceled by the idle procedure,
// connectionInvalid when the target dies or refuses, memFullErr for an event over 32 MiB or too
// many answers outstanding.
OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode,
             AESendPriority sendPriority, SInt32 timeOutInTicks, AEIdleUPP idleProc,
             AEFilterUPP filterProc);

// Dispatches the Apple event behind a record just taken from the event queue and sends its reply.
// Returns the handler's code, errAEEventNotHandled without one, errAENotAppleEvent for a record of
// another kind, noOutstandingHLE when no such event waits.
OSErr AEProcessAppleEvent(const EventRecord* theEventRecord);

// Restarts the time-out of the client that waits for this reply. errAEReplyNotValid when it is not
// the reply of a current or suspended event, or none is wanted.
OSErr AEResetTimer(const AppleEvent* reply);

// Inside a handler: the event and its reply are kept, undisposed, until AEResumeTheCurrentEvent;
// the client goes on waiting. Another event than the current one is left alone, with noErr.
OSErr AESuspendTheCurrentEvent(const AppleEvent* theAppleEvent);

// Goes on with a suspended event, outside the handler that suspended it: kAENoDispatch sends the
// reply, kAEUseStandardDispatch looks for a handler again (handlerRefcon holds kAEIgnore... flags),
// anything else is a handler, called with handlerRefcon. Event and reply are then disposed.
// paramErr when the event is not suspended.
OSErr AEResumeTheCurrentEvent(const AppleEvent* theAppleEvent, const AppleEvent* reply,
                              AEEventHandlerUPP dispatcher, SInt32 handlerRefcon);

// The event being handled, the null descriptor when none is. It stays the manager's.
OSErr AEGetTheCurrentEvent(AppleEvent* theAppleEvent);

// Makes a suspended event the current one for the calls that ask.
OSErr AESetTheCurrentEvent(const AppleEvent* theAppleEvent);

// kAEInteractWithLocal until set. paramErr for another level or a null pointer.
OSErr AEGetInteractionAllowed(AEInteractAllowed* level);
OSErr AESetInteractionAllowed(AEInteractAllowed level);

// Asks whether a handler may turn to the user, and brings the process to the front.
// errAENoUserInteraction when the client or the level forbids it, or this process never comes to
// the front. Outside a handler it only brings the process to the front. There is no screen to wait
// at: timeOutInTicks, nmReqPtr and idleProc are not used.
OSErr AEInteractWithUser(SInt32 timeOutInTicks, NMRecPtr nmReqPtr, AEIdleUPP idleProc);

PLATFORM_DECLARATIONS_END

#endif
