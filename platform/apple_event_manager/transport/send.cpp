// Owns AESend: the modes, the events one sends to oneself, and the choice of the way.
#include <Carbon/AEInteraction.h>
#include <Carbon/AEMach.h>
#include <Carbon/AppleEvents.h>
#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>

#include "apple_event_manager/data/access.h"
#include "apple_event_manager/handling/dispatch.h"
#include "apple_event_manager/internal.h"
#include "apple_event_manager/text/debug_prints.h"
#include "apple_event_manager/transport/received.h"
#include "apple_event_manager/transport/send_operation.h"
#include "apple_event_manager/transport/target.h"
#include "apple_event_manager/watching/watched_send.h"

namespace carbon {

namespace {

constexpr SInt32 kDefaultTimeOut = 3600;  // ticks
constexpr AESendMode kReplyModeMask = 3;
constexpr AESendMode kInteractionMask = kAEAlwaysInteract | kAECanSwitchLayer;

// A target on this machine may interact unless its client says otherwise.
SInt32 InteractionOf(AESendMode inMode) {
    const SInt32 bits = inMode & kInteractionMask;
    return bits & kAEAlwaysInteract ? bits : bits | kAECanInteract;
}

OSErr CheckSend(const AppleEvent& inEvent, const AppleEvent* inReply,
                const SendOptions& inOptions) {
    if (!IsAppleEvent(inEvent)) return errAENotAEDesc;
    if (inOptions.replyMode == 0) return errAEUnknownSendMode;
    if (inOptions.replyMode == kAEWaitReply && !inReply) return paramErr;
    return inOptions.timeOut < kNoTimeOut ? OSErr{paramErr} : OSErr{noErr};
}

OSErr MakeDispatch(const AppleEvent& inEvent, const Target& inTarget, const SendOptions& inOptions,
                   Dispatch* outDispatch) {
    const bool isDirect = inTarget.psn.lowLongOfPSN == kCurrentProcess;
    const bool isReplyWanted = inOptions.replyMode != kAENoReply;
    const Reception reception{inTarget.psn,
                              static_cast<AEEventSource>(isDirect ? kAEDirectCall : kAESameProcess),
                              isReplyWanted, inOptions.interaction, inOptions.timeOut};
    OSErr err = AEDuplicateDesc(&inEvent, &outDispatch->event);
    if (!err) err = MarkReceived(&outDispatch->event, reception);
    if (!err && isReplyWanted) err = MakeReply(outDispatch->event, &outDispatch->reply);
    return err;
}

// The handler runs inside the call; neither queue nor idle procedure have a part in it.
OSErr SendToSelf(const AppleEvent& inEvent, AppleEvent* outReply, const Target& inTarget,
                 const SendOptions& inOptions) {
    Dispatch dispatch;
    OSErr err = MakeDispatch(inEvent, inTarget, inOptions, &dispatch);
    if (!err) RunDispatch(&dispatch);
    // The handler goes on later, but nobody can wait for it here.
    if (dispatch.isSuspended) return errAETimeout;
    AEDisposeDesc(&dispatch.event);
    if (!err && inOptions.replyMode == kAEWaitReply) return *outReply = dispatch.reply, noErr;
    if (!err && inOptions.replyMode == kAEQueueReply) NoteQueuedReply(dispatch.reply);
    if (!err && inOptions.replyMode == kAEQueueReply)
        return TheEventQueue().PostAppleEvent(dispatch.reply, {}) ? OSErr{noErr}
                                                                  : OSErr{memFullErr};
    AEDisposeDesc(&dispatch.reply);
    return err;
}

OSErr SendQuietly(const AppleEvent* inEvent, AppleEvent* outReply, AESendMode inMode,
                  SendOptions inOptions) {
    if (outReply) AEInitializeDesc(outReply);
    if (!inEvent) return paramErr;
    inOptions.replyMode = inMode & kReplyModeMask;
    inOptions.interaction = InteractionOf(inMode);
    inOptions.mayReconnect = !(inMode & kAEDontReconnect);
    inOptions.dispatchesAll = inMode & kAEProcessNonReplyEvents;
    if (const OSErr err = CheckSend(*inEvent, outReply, inOptions)) return err;
    if (inOptions.timeOut == kAEDefaultTimeout) inOptions.timeOut = kDefaultTimeOut;
    if (inMode & kAEDontExecute) return noErr;  // Only to be recorded, and nobody records.
    Target target;
    if (const OSErr err = FindTarget(*inEvent, &target)) return err;
    WatchedSend watched(*inEvent, target.psn, inOptions.replyMode);
    if (target.isSelf)
        return watched.Ended(SendToSelf(*inEvent, outReply, target, inOptions), outReply);
    return watched.Ended(SendOperation(*inEvent, target.psn, inOptions).Run(outReply), outReply);
}

OSErr SendEvent(const AppleEvent* inEvent, AppleEvent* outReply, AESendMode inMode,
                const SendOptions& inOptions) {
    if (!inEvent || !PrintsSends()) return SendQuietly(inEvent, outReply, inMode, inOptions);
    DebugPrint("Sending an event", *inEvent);
    const OSErr result = SendQuietly(inEvent, outReply, inMode, inOptions);
    DebugPrintOutcome(result, outReply);
    return result;
}

}  // namespace

}  // namespace carbon

using namespace carbon;

OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode, AESendPriority,
             SInt32 timeOutInTicks, AEIdleUPP idleProc, AEFilterUPP filterProc) {
    return Guarded([&] {
        return SendEvent(event, reply, sendMode,
                         {.timeOut = timeOutInTicks, .idle = idleProc, .filter = filterProc});
    });
}

OSStatus AESendMessage(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode,
                       SInt32 timeOutInTicks) {
    return Guarded([&] { return SendEvent(event, reply, sendMode, {.timeOut = timeOutInTicks}); });
}

AEIdleUPP NewAEIdleUPP(AEIdleProcPtr userRoutine) {
    return userRoutine;
}

void DisposeAEIdleUPP(AEIdleUPP) {}

Boolean InvokeAEIdleUPP(EventRecord* theEvent, SInt32* sleepTime, RgnHandle* mouseRgn,
                        AEIdleUPP userUPP) {
    return userUPP(theEvent, sleepTime, mouseRgn);
}

AEFilterUPP NewAEFilterUPP(AEFilterProcPtr userRoutine) {
    return userRoutine;
}

void DisposeAEFilterUPP(AEFilterUPP) {}

Boolean InvokeAEFilterUPP(EventRecord* theEvent, SInt32 returnID, SInt32 transactionID,
                          const AEAddressDesc* sender, AEFilterUPP userUPP) {
    return userUPP(theEvent, returnID, transactionID, sender);
}
