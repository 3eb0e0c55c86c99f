// The events that came and were not taken yet, in the order they came.
#pragma once

#include <Carbon/AEDataModel.h>
#include <Carbon/Events.h>

#include <deque>
#include <optional>

#include "apple_event_manager/handling/handlers.h"
#include "apple_event_manager/transport/connection.h"

namespace carbon {

// Where an event's reply goes, and what the event occupies until it is dealt with.
struct Origin {
    ConnectionID connection = 0;  // 0: this process itself
    UInt32 request = 0;           // 0: no reply wanted
    size_t bytes = 0;
};

struct QueuedEvent {
    UInt64 number = 0;  // counts up
    EventRecord record{};
    AppleEvent event{};  // of a high-level event; whoever takes it disposes it
    Origin origin{};
};

class EventQueue {
  public:
    EventQueue() = default;
    ~EventQueue() { Clear(); }
    EventQueue(const EventQueue&) = delete;
    EventQueue& operator=(const EventQueue&) = delete;

    // Takes the event, whatever comes of it. False when there is no memory: it is disposed then.
    bool PostAppleEvent(const AppleEvent& inEvent, const Origin& inOrigin);
    // Takes the place of an earlier one that nobody has looked at: the last switch tells all.
    bool PostOSEvent(UInt32 inMessage);

    size_t Count(const EventCodes& inCodes) const;

    const QueuedEvent* First(EventMask inMask) const;
    const QueuedEvent* FirstAfter(UInt64 inNumber, EventMask inMask) const;
    std::optional<QueuedEvent> Take(UInt64 inNumber);
    void Clear();

  private:
    bool Post(const QueuedEvent& inEvent);

    std::deque<QueuedEvent> mEvents;
    UInt64 mLastNumber = 0;
};

// The one of this process.
EventQueue& TheEventQueue();

EventRecord NullEvent();

}  // namespace carbon
