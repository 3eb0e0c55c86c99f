// Owns the course of one send: connecting, handing over, waiting with the idle procedure.
#include "apple_event_manager/transport/send_operation.h"

#include <Carbon/MacErrors.h>
#include <Carbon/OSUtils.h>

#include <algorithm>

#include "apple_event_manager/handling/dispatch.h"
#include "apple_event_manager/internal.h"
#include "apple_event_manager/limits.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

constexpr Clock::duration kRetryAfter = std::chrono::milliseconds(3);
constexpr SInt32 kStartUpTicks = 60 * kStartUpSeconds;

// Negative when the two clocks differ by a tick.
SInt32 TicksSince(UInt32 inTicks) {
    return static_cast<SInt32>(TickCount() - inTicks);
}

}  // namespace

SendOperation::SendOperation(const AppleEvent& inEvent, const ProcessSerialNumber& inTarget,
                             const SendOptions& inOptions)
    : mEvent(inEvent),
      mTarget(inTarget),
      mOptions(inOptions),
      mExchange(TheExchange()),
      mWaitsForAll(inOptions.dispatchesAll || inOptions.filter) {
    if (mOptions.timeOut != kNoTimeOut) mDeadline = AfterTicks(mOptions.timeOut);
    if (mOptions.idle) mNextIdle = Moment::min();
}

SendOperation::~SendOperation() {
    Connection* connection = mRequest || mMessage ? mExchange.Find(mConnection) : nullptr;
    if (connection && mMessage) connection->Withdraw(mMessage);
    if (connection && mRequest) connection->Forget(mRequest);
    if (connection && connection->TakesNoMore()) mExchange.Settle(connection);
    AEDisposeDesc(&mWaiter.reply);
}

OSErr SendOperation::Run(AppleEvent* outReply) {
    if (EventBytes(mEvent).size() > size_t{kMaximumMessageSize}) return memFullErr;
    for (int attempt = 0;; ++attempt) {
        bool isBroken = false;
        if (const OSErr err = HandOver(&isBroken)) return err;
        if (!isBroken) break;
        // The peer closed the connection while it was idle, or ended.
        if (attempt > 0 || !mOptions.mayReconnect) return connectionInvalid;
    }
    if (mOptions.replyMode == kAEQueueReply) mRequest = 0;  // The answer stays awaited.
    return mOptions.replyMode == kAEWaitReply ? AwaitReply(outReply) : OSErr{noErr};
}

// A process that was just launched gets time to open its socket.
OSErr SendOperation::OpenSoon() {
    const auto entry = FindProcess(mTarget);
    if (!entry) return procNotFound;
    switch (mExchange.Connect(entry->psn, entry->SocketPath())) {
        case Exchange::ConnectResult::kConnected:
            return noErr;
        case Exchange::ConnectResult::kNoRoom:
            return memFullErr;
        case Exchange::ConnectResult::kRefused:
            return connectionInvalid;
        case Exchange::ConnectResult::kBusy:
            break;
        case Exchange::ConnectResult::kNobodyListens:
            if (!FindProcess(mTarget)) return procNotFound;
            if (entry->socketReady || TicksSince(entry->launchTicks) > kStartUpTicks)
                return connectionInvalid;
    }
    return WaitABit(Clock::now() + kRetryAfter);
}

OSErr SendOperation::Open(Connection** outConnection) {
    for (;;) {
        *outConnection = mExchange.Connected(mTarget);
        if (*outConnection) return noErr;
        if (const OSErr err = OpenSoon()) return err;
    }
}

OSErr SendOperation::HandOver(bool* outIsBroken) {
    Connection* connection;
    if (const OSErr err = Open(&connection)) return err;
    if (connection->AwaitedCount() >= size_t{kMaximumPendingReplies}) return memFullErr;
    const bool waits = mOptions.replyMode == kAEWaitReply;
    mConnection = connection->ID();
    mRequest = 0;
    if (mOptions.replyMode != kAENoReply) mRequest = connection->Await(waits ? &mWaiter : nullptr);
    const auto bytes = EventBytes(mEvent);
    const FrameHeader header{FrameKind::kEvent,
                             static_cast<UInt32>(bytes.size()),
                             CurrentProcess().psn.lowLongOfPSN,
                             mRequest,
                             mOptions.interaction,
                             mOptions.timeOut};
    const auto result = connection->Send(header, bytes);
    if (result == Connection::SendResult::kSent) return noErr;
    if (result == Connection::SendResult::kBroken) {
        *outIsBroken = true;
        if (mRequest) connection->Forget(mRequest);
        mRequest = 0;
    }
    if (!*outIsBroken) mMessage = connection->LastMessage();
    mExchange.Settle(connection);
    return *outIsBroken ? OSErr{noErr} : AwaitHandOver();
}

OSErr SendOperation::AwaitHandOver() {
    for (;;) {
        const Connection* connection = mExchange.Find(mConnection);
        if (!connection || connection->WasLost(mMessage)) return connectionInvalid;
        if (connection->IsHandedOver(mMessage)) break;
        if (const OSErr err = WaitABit(kNever)) return err;
    }
    mMessage = 0;
    return noErr;
}

OSErr SendOperation::AwaitReply(AppleEvent* outReply) {
    while (mWaiter.state == Waiter::State::kWaiting)
        if (const OSErr err = WaitABit(kNever)) return err;
    mRequest = 0;
    if (mWaiter.state == Waiter::State::kBroken) return connectionInvalid;
    *outReply = std::exchange(mWaiter.reply, {typeNull, nullptr});
    return noErr;
}

OSErr SendOperation::WaitABit(Moment inUntil) {
    DispatchArrived();
    AnswerQuits();
    mNow = Clock::now();
    if (mOptions.idle && CallIdle()) return errAEWaitCanceled;
    if (std::exchange(mWaiter.timerWasReset, false) && mDeadline != kNever)
        mDeadline = mNow + FromTicks(mOptions.timeOut);
    if (mWaiter.state != Waiter::State::kWaiting) return noErr;  // It came meanwhile.
    Pump(std::min({inUntil, mDeadline, mNextIdle}));
    const bool isInTime = mDeadline == kNever || mWaiter.state != Waiter::State::kWaiting ||
                          mWaiter.timerWasReset || Clock::now() < mDeadline;
    return isInTime ? OSErr{noErr} : OSErr{errAETimeout};
}

// The reply nearly always comes soon, on one known connection: the first wait is for that alone and
// costs one call to the kernel. After kPatience everything is waited for.
void SendOperation::Pump(Moment inUntil) {
    Connection* connection = mWaitsForAll || !mRequest ? nullptr : mExchange.Find(mConnection);
    const bool isShort = inUntil != kNever && inUntil - mNow < kPatience;
    if (!connection || connection->HasUnsent() || isShort) return mExchange.Pump(inUntil);
    mWaitsForAll = true;
    mExchange.PumpOne(connection);
}

// True when the procedure wants the wait to end.
bool SendOperation::CallIdle() {
    const QueuedEvent* notice = TheEventQueue().First(osMask);
    const bool isDue = mNow >= mNextIdle || mExchange.TakeWakeUp();
    if (!notice && !isDue) return false;
    EventRecord record = notice ? notice->record : NullEvent();
    if (notice) TheEventQueue().Take(notice->number);
    SInt32 sleep = 0;
    RgnHandle region = nullptr;
    const bool isCancelled = mOptions.idle(&record, &sleep, &region);
    mNow = Clock::now();
    mNextIdle = mNow + FromTicks(std::max(sleep, SInt32{0}));
    return isCancelled;
}

void SendOperation::DispatchArrived() {
    if (!mOptions.dispatchesAll && !mOptions.filter) return;
    EventQueue& queue = TheEventQueue();
    while (const QueuedEvent* event = queue.FirstAfter(mLastAsked, highLevelEventMask)) {
        mLastAsked = event->number;
        if (!mOptions.dispatchesAll && !IsWelcome(*event)) continue;
        if (const auto taken = queue.Take(mLastAsked)) DispatchQueued(*taken);
    }
}

bool SendOperation::IsWelcome(const QueuedEvent& inEvent) {
    EventRecord record = inEvent.record;
    AEAddressDesc sender;
    AEGetAttributeDesc(&inEvent.event, keyAddressAttr, typeWildCard, &sender);
    const SInt32 returnID = EventAttribute16(inEvent.event, keyReturnIDAttr).value_or(0);
    const UInt32 transaction = EventAttribute32(inEvent.event, keyTransactionIDAttr).value_or(0);
    const bool isWelcome =
        mOptions.filter(&record, returnID, static_cast<SInt32>(transaction), &sender);
    AEDisposeDesc(&sender);
    return isWelcome;
}

}  // namespace carbon
