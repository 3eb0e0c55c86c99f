// Owns the waiting for events and the loop that runs a program by them.
#include "apple_event_manager/handling/event_loop.h"

#include <Carbon/AppleEvents.h>
#include <Carbon/CarbonEvents.h>
#include <Carbon/MacErrors.h>

#include <bit>
#include <cstring>
#include <limits>

#include "apple_event_manager/handling/dispatch.h"
#include "apple_event_manager/internal.h"
#include "apple_event_manager/transport/exchange.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

std::optional<QueuedEvent> gDelivered;
int gLoops = 0;          // RunApplicationEventLoop calls under way
bool gIsToQuit = false;  // the innermost of them

// One Apple event at a time is between the queue and its handler; what the program left alone gets
// an answer when it takes the next one, so that no client waits for ever. Takes over what the event
// holds.
void Deliver(const QueuedEvent& inEvent) {
    if (gDelivered) Refuse(*gDelivered, errAEEventNotHandled);
    gDelivered = inEvent;
}

const QueuedEvent* WaitFor(EventMask inMask, Moment inUntil) {
    Exchange& exchange = TheExchange();
    EventQueue& queue = TheEventQueue();
    CurrentProcess();  // From the first wait on, others can send to this process.
    for (bool isOver = false;; isOver = inUntil != kNever && Clock::now() >= inUntil) {
        if (const QueuedEvent* event = queue.First(inMask)) return event;
        if (isOver || exchange.TakeWakeUp()) return nullptr;
        exchange.PumpForEvent(inUntil);
    }
}

Boolean Next(EventMask inMask, EventRecord* outRecord, Moment inUntil, bool inTake) {
    AnswerQuits();
    const QueuedEvent* event = WaitFor(inMask, inUntil);
    *outRecord = event ? event->record : NullEvent();
    if (!event) return false;
    if (inTake) {
        auto taken = TheEventQueue().Take(event->number);
        if (taken->record.what == kHighLevelEvent) Deliver(*taken);
    }
    return true;
}

}  // namespace

std::optional<QueuedEvent> TakeDelivered(const EventRecord& inRecord) {
    if (!gDelivered || gDelivered->record.message != inRecord.message ||
        std::memcmp(&gDelivered->record.where, &inRecord.where, sizeof inRecord.where) != 0)
        return {};
    return std::exchange(gDelivered, {});
}

OSErr OfferToBuiltInHandler(const EventCodes& inCodes) {
    const bool isQuit = inCodes.eventClass == kCoreEventClass && inCodes.id == kAEQuitApplication;
    if (!isQuit || gLoops == 0) return errAEEventNotHandled;
    QuitApplicationEventLoop();
    return noErr;
}

}  // namespace carbon

using namespace carbon;

Boolean WaitNextEvent(EventMask eventMask, EventRecord* theEvent, UInt32 sleep, RgnHandle) {
    const Moment until = sleep == std::numeric_limits<UInt32>::max() ? kNever : AfterTicks(sleep);
    return Next(eventMask, theEvent, until, true);
}

Boolean GetNextEvent(EventMask eventMask, EventRecord* theEvent) {
    return Next(eventMask, theEvent, Clock::now(), true);
}

Boolean EventAvail(EventMask eventMask, EventRecord* theEvent) {
    return Next(eventMask, theEvent, Clock::now(), false);
}

void RunApplicationEventLoop(void) {
    ++gLoops;
    gIsToQuit = false;
    while (!gIsToQuit) {
        EventRecord record;
        if (Next(everyEvent, &record, kNever, true) && record.what == kHighLevelEvent)
            AEProcessAppleEvent(&record);
    }
    --gLoops;
    gIsToQuit = false;  // The loop around this one goes on.
}

void QuitApplicationEventLoop(void) {
    if (gLoops > 0) gIsToQuit = true;
}
