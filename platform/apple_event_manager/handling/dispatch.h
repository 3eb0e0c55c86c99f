// An event on its way through a handler, and its answer.
#pragma once

#include <Carbon/AEDataModel.h>

#include "apple_event_manager/handling/event_queue.h"

namespace carbon {

struct Dispatch {
    AppleEvent event{typeNull, nullptr};
    AppleEvent reply{typeNull, nullptr};  // null when none is wanted
    Origin origin{};
    bool isSuspended = false;
};

// Offers the event to the handlers, with *ioDispatch as the current one. A handler's error, also
// that there is none, stands in the reply afterwards. When a handler suspended the event, event and
// reply are kept here and ioDispatch has them no more.
OSErr RunDispatch(Dispatch* ioDispatch);

// Dispatches an event taken from the queue, sends its reply and disposes both. The reply to a quit
// event that was taken well is kept for AnswerQuits.
OSErr DispatchQueued(const QueuedEvent& inQueued);

// Answers an event with an error and without a handler.
void Refuse(const QueuedEvent& inQueued, OSErr inError);

// The event being handled; the null descriptor when none is.
const AppleEvent& TheCurrentEvent();

}  // namespace carbon
