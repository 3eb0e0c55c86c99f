// Owns the queue of events of this process.
#include "apple_event_manager/handling/event_queue.h"

#include <Carbon/OSUtils.h>

#include <algorithm>
#include <bit>
#include <new>

namespace carbon {

namespace {

bool IsInMask(const EventRecord& inRecord, EventMask inMask) {
    const EventMask bit = inRecord.what == kHighLevelEvent ? highLevelEventMask : osMask;
    return (inMask & bit) != 0;
}

EventRecord RecordOf(const AppleEvent& inEvent) {
    EventRecord record = NullEvent();
    record.what = kHighLevelEvent;
    const EventCodes codes = CodesOf(inEvent);
    record.message = codes.eventClass;
    record.where = std::bit_cast<Point>(codes.id);
    return record;
}

}  // namespace

EventRecord NullEvent() {
    EventRecord record{};
    record.when = TickCount();
    return record;
}

EventQueue& TheEventQueue() {
    static EventQueue queue;
    return queue;
}

bool EventQueue::Post(const QueuedEvent& inEvent) {
    try {
        mEvents.push_back(inEvent);
        mEvents.back().number = ++mLastNumber;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool EventQueue::PostAppleEvent(const AppleEvent& inEvent, const Origin& inOrigin) {
    if (Post({0, RecordOf(inEvent), inEvent, inOrigin})) return true;
    AppleEvent event = inEvent;
    AEDisposeDesc(&event);
    return false;
}

bool EventQueue::PostOSEvent(UInt32 inMessage) {
    EventRecord record = NullEvent();
    record.what = osEvt;
    record.message = inMessage;
    std::erase_if(mEvents,
                  [](const QueuedEvent& event) { return EventKind{event.record.what} == osEvt; });
    return Post({0, record, {typeNull, nullptr}, {}});
}

size_t EventQueue::Count(const EventCodes& inCodes) const {
    const auto isOne = [&](const QueuedEvent& event) {
        const EventRecord& record = event.record;
        return record.what == kHighLevelEvent && record.message == inCodes.eventClass &&
               std::bit_cast<UInt32>(Point{record.where}) == inCodes.id;
    };
    return static_cast<size_t>(std::count_if(mEvents.begin(), mEvents.end(), isOne));
}

const QueuedEvent* EventQueue::FirstAfter(UInt64 inNumber, EventMask inMask) const {
    for (const QueuedEvent& event : mEvents)
        if (event.number > inNumber && IsInMask(event.record, inMask)) return &event;
    return nullptr;
}

const QueuedEvent* EventQueue::First(EventMask inMask) const {
    return FirstAfter(0, inMask);
}

std::optional<QueuedEvent> EventQueue::Take(UInt64 inNumber) {
    const auto found = std::find_if(mEvents.begin(), mEvents.end(), [&](const QueuedEvent& event) {
        return event.number == inNumber;
    });
    if (found == mEvents.end()) return {};
    QueuedEvent event = *found;
    mEvents.erase(found);
    return event;
}

void EventQueue::Clear() {
    for (QueuedEvent& event : mEvents) AEDisposeDesc(&event.event);
    mEvents.clear();
}

}  // namespace carbon
