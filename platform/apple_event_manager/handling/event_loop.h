// What the event loop does beside waiting: it keeps the event last taken, and quits when told.
#pragma once

#include <Carbon/AEDataModel.h>
#include <Carbon/Events.h>

#include <optional>

#include "apple_event_manager/handling/event_queue.h"
#include "apple_event_manager/handling/handlers.h"

namespace carbon {

// The Apple event behind a record that the program took from the queue, once.
std::optional<QueuedEvent> TakeDelivered(const EventRecord& inRecord);

// 'aevt'/'quit' while RunApplicationEventLoop runs; errAEEventNotHandled for everything else.
OSErr OfferToBuiltInHandler(const EventCodes& inCodes);

}  // namespace carbon
