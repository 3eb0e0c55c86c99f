// One send as those see it who watch the user's events.
#pragma once

#include <Carbon/AEInteraction.h>
#include <Carbon/MacErrors.h>

#include "apple_event_manager/watching/watch_page.h"

namespace carbon {

// Tells the monitors that an event is sent, and with Ended what came of it. While nobody watches
// that costs one look at memory. What goes wrong here never reaches the send.
class WatchedSend {
  public:
    WatchedSend(const AppleEvent& inEvent, const ProcessSerialNumber& inTarget,
                AESendMode inReplyMode) {
        if (IsSomebodyWatching()) Begin(inEvent, inTarget, inReplyMode);
    }
    ~WatchedSend() { Ended(memFullErr, nullptr); }  // an exception is on its way
    WatchedSend(const WatchedSend&) = delete;
    WatchedSend& operator=(const WatchedSend&) = delete;

    // To be called with the result of the send, which is handed through.
    OSErr Ended(OSErr inResult, const AppleEvent* inReply) {
        if (mIsWatched) End(inResult, inReply);
        return inResult;
    }

  private:
    void Begin(const AppleEvent& inEvent, const ProcessSerialNumber& inTarget,
               AESendMode inReplyMode);
    void End(OSErr inResult, const AppleEvent* inReply);

    bool mIsWatched = false;
    UInt64 mExchange = 0;
    ProcessSerialNumber mTarget{};
    AESendMode mReplyMode = 0;
    SInt64 mStart = 0;
};

// To be called with an answer that goes to the event queue.
void NoteQueuedReply(const AppleEvent& inReply);

}  // namespace carbon
