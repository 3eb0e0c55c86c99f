// One event on its way to another process, from the connection to the reply.
#pragma once

#include <Carbon/AEInteraction.h>

#include "apple_event_manager/transport/exchange.h"

namespace carbon {

struct SendOptions {
    SInt32 timeOut = kNoTimeOut;  // ticks, or kNoTimeOut
    AEIdleUPP idle = nullptr;
    AEFilterUPP filter = nullptr;
    AESendMode replyMode = kAENoReply;
    SInt32 interaction = 0;
    bool mayReconnect = true;
    bool dispatchesAll = false;
};

class SendOperation {
  public:
    SendOperation(const AppleEvent& inEvent, const ProcessSerialNumber& inTarget,
                  const SendOptions& inOptions);
    ~SendOperation();
    SendOperation(const SendOperation&) = delete;
    SendOperation& operator=(const SendOperation&) = delete;

    OSErr Run(AppleEvent* outReply);

  private:
    OSErr Open(Connection** outConnection);
    OSErr OpenSoon();
    OSErr HandOver(bool* outIsBroken);
    OSErr AwaitHandOver();
    OSErr AwaitReply(AppleEvent* outReply);

    // Waits until inUntil, the next idle call, the time-out or until something arrived.
    // errAETimeout, errAEWaitCanceled.
    OSErr WaitABit(Moment inUntil);
    bool CallIdle();
    void Pump(Moment inUntil);
    void DispatchArrived();
    bool IsWelcome(const QueuedEvent& inEvent);

    const AppleEvent& mEvent;
    ProcessSerialNumber mTarget;
    SendOptions mOptions;
    Exchange& mExchange;
    Moment mNow{};
    Moment mDeadline = kNever;
    Moment mNextIdle = kNever;
    ConnectionID mConnection = 0;
    UInt32 mRequest = 0;  // while a reply may come
    UInt64 mMessage = 0;  // while it is not handed over
    Waiter mWaiter;
    bool mWaitsForAll = false;
    UInt64 mLastAsked = 0;
};

}  // namespace carbon
