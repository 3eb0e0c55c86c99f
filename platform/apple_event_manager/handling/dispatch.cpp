// Owns events while they are handled, suspended and answered.
#include "apple_event_manager/handling/dispatch.h"

#include <Carbon/AEInteraction.h>
#include <Carbon/AppleEvents.h>
#include <Carbon/Endian.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <bit>
#include <thread>
#include <utility>
#include <vector>

#include "apple_event_manager/handling/event_loop.h"
#include "apple_event_manager/handling/handlers.h"
#include "apple_event_manager/internal.h"
#include "apple_event_manager/text/debug_prints.h"
#include "apple_event_manager/transport/exchange.h"

namespace carbon {

namespace {

constexpr AppleEvent kNoEvent = {typeNull, nullptr};

AppleEvent gCurrent = kNoEvent;
std::vector<Dispatch*> gRunning;  // the innermost last
std::vector<Dispatch> gSuspended;

// Answers to quit events that were taken well.
std::vector<Dispatch> gFarewells;
std::thread::id gFarewellThread;

bool IsSame(const AppleEvent& inFirst, const AppleEvent& inSecond) {
    return inFirst.dataHandle == inSecond.dataHandle;
}

// Makes one dispatch the current one for as long as a handler runs, however it ends.
class Running {
  public:
    explicit Running(Dispatch* inDispatch) : mOuter(std::exchange(gCurrent, inDispatch->event)) {
        gRunning.push_back(inDispatch);
    }
    ~Running() {
        gRunning.pop_back();
        gCurrent = mOuter;
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    AppleEvent mOuter;
};

void PutError(AppleEvent* ioReply, OSErr inError) {
    if (EventParameter(*ioReply, keyErrorNumber)) return;
    const SInt32 number = EndianS32_NtoB(inError);
    AEPutParamPtr(ioReply, keyErrorNumber, typeSInt32, &number, sizeof number);
}

// A handler's error, and a reply that its handler disposed.
void CompleteReply(Dispatch* ioDispatch, OSErr inResult, bool inIsWanted) {
    if (!inIsWanted) return;
    if (IsNullDesc(ioDispatch->reply)) MakeReply(ioDispatch->event, &ioDispatch->reply);
    if (inResult != noErr) PutError(&ioDispatch->reply, inResult);
}

bool IsReplyWanted(const Dispatch& inDispatch) {
    return inDispatch.origin.request != 0;
}

void SendReply(Dispatch* ioDispatch) {
    if (!IsReplyWanted(*ioDispatch)) return;
    if (PrintsReceives()) DebugPrint("Replying", ioDispatch->reply);
    Exchange& exchange = TheExchange();
    OSErr err = exchange.Reply(ioDispatch->origin, EventBytes(ioDispatch->reply));
    if (err == noErr) return;
    // Too large to be sent: the client gets that as the answer.
    AEDisposeDesc(&ioDispatch->reply);
    CompleteReply(ioDispatch, err, true);
    exchange.Reply(ioDispatch->origin, EventBytes(ioDispatch->reply));
}

void Dispose(Dispatch* ioDispatch) {
    AEDisposeDesc(&ioDispatch->event);
    AEDisposeDesc(&ioDispatch->reply);
}

void Finish(Dispatch* ioDispatch, bool inDispose = true) {
    SendReply(ioDispatch);
    TheExchange().Release(ioDispatch->origin);
    if (inDispose) Dispose(ioDispatch);
}

OSErr PrepareDispatch(const QueuedEvent& inQueued, Dispatch* outDispatch) {
    outDispatch->event = inQueued.event;
    outDispatch->origin = inQueued.origin;
    if (!IsReplyWanted(*outDispatch)) return noErr;
    return MakeReply(inQueued.event, &outDispatch->reply);
}

std::vector<Dispatch>::iterator FindSuspended(const AppleEvent& inEvent) {
    return std::find_if(gSuspended.begin(), gSuspended.end(),
                        [&](const Dispatch& dispatch) { return IsSame(dispatch.event, inEvent); });
}

// The dispatch, running or suspended, whose reply this is.
const Dispatch* FindByReply(const AppleEvent& inReply) {
    for (const Dispatch* dispatch : gRunning)
        if (IsSame(dispatch->reply, inReply)) return dispatch;
    for (const Dispatch& dispatch : gSuspended)
        if (IsSame(dispatch.reply, inReply)) return &dispatch;
    return nullptr;
}

// Calls `inOffer` with the dispatch as the current one.
template <class Offer>
OSErr Run(Dispatch* ioDispatch, bool inIsReplyWanted, const Offer& inOffer) {
    OSErr result;
    {
        const Running running(ioDispatch);
        result = inOffer();
    }
    if (ioDispatch->isSuspended)
        gSuspended.push_back(*ioDispatch);
    else
        CompleteReply(ioDispatch, result, inIsReplyWanted);
    return result;
}

// The constant has 32 bits; a program may have made a pointer of it with or without its sign.
bool IsStandardDispatch(AEEventHandlerUPP inDispatcher) {
    const auto value = reinterpret_cast<uintptr_t>(inDispatcher);
    return value == kAEUseStandardDispatch || value == UINTPTR_MAX;
}

OSErr Redispatch(Dispatch* ioDispatch, AEEventHandlerUPP inDispatcher, SInt32 inRefcon) {
    if (IsStandardDispatch(inDispatcher))
        return OfferToHandlers(ioDispatch->event, &ioDispatch->reply,
                               static_cast<UInt32>(inRefcon));
    if (inDispatcher) return inDispatcher(&ioDispatch->event, &ioDispatch->reply, inRefcon);
    return noErr;
}

bool IsQuit(const EventRecord& inRecord) {
    return inRecord.message == kCoreEventClass &&
           std::bit_cast<UInt32>(Point{inRecord.where}) == kAEQuitApplication;
}

}  // namespace

const AppleEvent& TheCurrentEvent() {
    return gCurrent;
}

OSErr RunDispatch(Dispatch* ioDispatch) {
    if (PrintsReceives()) DebugPrint("Received an event", ioDispatch->event);
    return Run(ioDispatch, !IsNullDesc(ioDispatch->reply), [&] {
        return OfferToHandlers(ioDispatch->event, &ioDispatch->reply, kAEDoNotIgnoreHandler);
    });
}

OSErr DispatchQueued(const QueuedEvent& inQueued) {
    Dispatch dispatch;
    OSErr result = PrepareDispatch(inQueued, &dispatch);
    if (result == noErr) result = RunDispatch(&dispatch);
    if (dispatch.isSuspended) return result;
    if (result == noErr && IsReplyWanted(dispatch) && IsQuit(inQueued.record)) {
        gFarewells.push_back(dispatch);
        gFarewellThread = std::this_thread::get_id();
    } else {
        Finish(&dispatch);
    }
    return result;
}

void AnswerQuits() {
    if (gFarewells.empty() || gFarewellThread != std::this_thread::get_id()) return;
    for (Dispatch& dispatch : std::exchange(gFarewells, {})) Finish(&dispatch);
}

void Refuse(const QueuedEvent& inQueued, OSErr inError) {
    Dispatch dispatch;
    PrepareDispatch(inQueued, &dispatch);
    CompleteReply(&dispatch, inError, IsReplyWanted(dispatch));
    Finish(&dispatch);
}

}  // namespace carbon

using namespace carbon;

OSErr AEProcessAppleEvent(const EventRecord* theEventRecord) {
    if (!theEventRecord) return paramErr;
    if (theEventRecord->what != kHighLevelEvent) return errAENotAppleEvent;
    const auto queued = TakeDelivered(*theEventRecord);
    return queued ? DispatchQueued(*queued) : OSErr{noOutstandingHLE};
}

OSErr AEResetTimer(const AppleEvent* reply) {
    if (!reply || IsNullDesc(*reply)) return errAEReplyNotValid;
    const Dispatch* dispatch = FindByReply(*reply);
    if (!dispatch) return errAEReplyNotValid;
    if (dispatch->origin.request == 0)
        return noErr;  // Our own thread waits for it, in the handler.
    return TheExchange().ResetTimer(dispatch->origin);
}

OSErr AESuspendTheCurrentEvent(const AppleEvent* theAppleEvent) {
    if (!theAppleEvent) return paramErr;
    for (Dispatch* dispatch : gRunning)
        if (IsSame(dispatch->event, *theAppleEvent) && IsSame(gCurrent, *theAppleEvent))
            dispatch->isSuspended = true;
    return noErr;
}

OSErr AEResumeTheCurrentEvent(const AppleEvent* theAppleEvent, const AppleEvent* reply,
                              AEEventHandlerUPP dispatcher, SInt32 handlerRefcon) {
    if (!theAppleEvent) return paramErr;
    const auto found = FindSuspended(*theAppleEvent);
    if (found == gSuspended.end()) return paramErr;
    Dispatch dispatch = *found;
    gSuspended.erase(found);
    dispatch.isSuspended = false;
    const bool isReplyWanted = !IsNullDesc(dispatch.reply);
    if (reply) dispatch.reply = *reply;
    Run(&dispatch, isReplyWanted, [&] { return Redispatch(&dispatch, dispatcher, handlerRefcon); });
    const bool isKept = IsStandardDispatch(dispatcher) && handlerRefcon & kAEDontDisposeOnResume;
    if (!dispatch.isSuspended) Finish(&dispatch, !isKept);
    return noErr;
}

OSErr AEGetTheCurrentEvent(AppleEvent* theAppleEvent) {
    if (!theAppleEvent) return paramErr;
    *theAppleEvent = gCurrent;
    return noErr;
}

OSErr AESetTheCurrentEvent(const AppleEvent* theAppleEvent) {
    if (!theAppleEvent) return paramErr;
    gCurrent = *theAppleEvent;
    return noErr;
}
