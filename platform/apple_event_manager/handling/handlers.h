// Which handler an event is offered to.
#pragma once

#include <Carbon/AEDataModel.h>

namespace carbon {

// Offers an event to the handlers in their order. inIgnored holds kAEIgnore... flags.
// errAEEventNotHandled when nobody takes it.
OSErr OfferToHandlers(const AppleEvent& inEvent, AppleEvent* ioReply, UInt32 inIgnored);

struct EventCodes {
    AEEventClass eventClass;
    AEEventID id;
};

EventCodes CodesOf(const AppleEvent& inEvent);

}  // namespace carbon
