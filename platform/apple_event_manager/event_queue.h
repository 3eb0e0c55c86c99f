// The events that came and were not taken yet, in the order they came.
#pragma once

#include <Carbon/AEDataModel.h>
#include <Carbon/Events.h>

#include <deque>
#include <optional>

#include "apple_event_manager/connection.h"

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

    void PostAppleEvent(const AppleEvent& inEvent, const Origin& inOrigin);
    void PostOSEvent(UInt32 inMessage);

    const QueuedEvent* First(EventMask inMask) const;
    const QueuedEvent* FirstAfter(UInt64 inNumber, EventMask inMask) const;
    std::optional<QueuedEvent> Take(UInt64 inNumber);
    void Clear();

  private:
    std::deque<QueuedEvent> mEvents;
    UInt64 mLastNumber = 0;
};

// The one of this process.
EventQueue& TheEventQueue();

EventRecord NullEvent();

}  // namespace carbon
