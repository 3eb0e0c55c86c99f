// Owns what a frame from another process does here, and the answers that go back.
#include <Carbon/AppleEvents.h>
#include <Carbon/Endian.h>
#include <Carbon/MacErrors.h>

#include <cstring>
#include <utility>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/limits.h"
#include "apple_event_manager/transport/exchange.h"
#include "apple_event_manager/transport/received.h"
#include "apple_event_manager/watching/watched_send.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

ProcessSerialNumber NumberIn(std::span<const UInt8> inBytes) {
    ProcessSerialNumber psn;
    std::memcpy(&psn, inBytes.data(), sizeof psn);
    return {EndianU32_BtoN(psn.highLongOfPSN), EndianU32_BtoN(psn.lowLongOfPSN)};
}

// 'aevt'/'obit' as the system sends it.
OSErr MakeObituary(const Notice& inNotice, AppleEvent* outEvent) {
    OSErr err = AECreateAppleEvent(kCoreEventClass, kAEApplicationDied, nullptr,
                                   kAutoGenerateReturnID, kAnyTransactionID, outEvent);
    const SInt32 status = EndianS32_NtoB(inNotice.status);
    const ProcessSerialNumber about = BigEndian(inNotice.about);
    if (!err) err = AEPutParamPtr(outEvent, keyErrorNumber, typeSInt32, &status, sizeof status);
    if (!err)
        err = AEPutParamPtr(outEvent, keyProcessSerialNumber, typeProcessSerialNumber, &about,
                            sizeof about);
    if (!err) err = MarkReceived(outEvent, {kSystemProcess, kAELocalProcess, false, 0, 0});
    if (err) AEDisposeDesc(outEvent);
    return err;
}

UInt32 OwnNumber() {
    return CurrentProcess().psn.lowLongOfPSN;
}

}  // namespace

// False when the peer broke the rules.
bool Exchange::Handle(Connection* inConnection, Frame&& inFrame) {
    inConnection->lastUse = ++mUses;
    if (!inConnection->IsFrom(inFrame.header.sender)) return false;
    switch (inFrame.header.kind) {
        case FrameKind::kEvent:
            return !inConnection->IsOutgoing() && HandleEvent(inConnection, std::move(inFrame));
        case FrameKind::kReply:
            return inConnection->IsOutgoing() && HandleReply(inConnection, std::move(inFrame));
        case FrameKind::kResetTimer:
            if (!inConnection->IsOutgoing()) return false;
            if (Waiter* waiter = inConnection->WaiterFor(inFrame.header.request))
                waiter->timerWasReset = true;
            return true;
        case FrameKind::kWakeUp:
        case FrameKind::kSuspend:
        case FrameKind::kResume:
            HandleNotice({static_cast<ControlKind>(inFrame.header.kind), {0, 0}, 0});
            return !inConnection->IsOutgoing();
        case FrameKind::kApplicationDied: {
            const std::span<const UInt8> bytes = inFrame.payload;
            SInt32 status;
            std::memcpy(&status, &bytes[8], sizeof status);
            HandleNotice({ControlKind::kApplicationDied, NumberIn(bytes), EndianS32_BtoN(status)});
            return !inConnection->IsOutgoing();
        }
    }
    return false;
}

bool Exchange::HandleEvent(Connection* inConnection, Frame&& inFrame) {
    AppleEvent event;
    if (DescFromBytes(std::move(inFrame.payload), &event) != noErr) return false;
    const FrameHeader& header = inFrame.header;
    const Reception reception{{0, header.sender},
                              kAELocalProcess,
                              header.request != 0,
                              header.interaction,
                              header.timeOut};
    if (!IsAppleEvent(event) || MarkReceived(&event, reception) != noErr) {
        AEDisposeDesc(&event);
        return false;
    }
    if (!TheEventQueue().PostAppleEvent(event, {inConnection->ID(), header.request, header.size}))
        return false;
    inConnection->Hold(header.size);
    mTalker = inConnection->ID();
    if (inConnection->HoldsTooMuch()) Settle(inConnection);
    return true;
}

// A reply that nobody waits for any more is thrown away.
bool Exchange::HandleReply(Connection* inConnection, Frame&& inFrame) {
    AppleEvent reply;
    if (DescFromBytes(std::move(inFrame.payload), &reply) != noErr) return false;
    const auto awaited = inConnection->Answered(inFrame.header.request);
    const bool isEvent = IsAppleEvent(reply) && SetSender(&reply, inConnection->Peer()) == noErr;
    if (!isEvent || !awaited) {
        if (awaited && awaited->waiter) awaited->waiter->state = Waiter::State::kBroken;
        AEDisposeDesc(&reply);
    } else if (awaited->waiter) {
        awaited->waiter->reply = reply;
        awaited->waiter->state = Waiter::State::kAnswered;
    } else {
        NoteQueuedReply(reply);
        return TheEventQueue().PostAppleEvent(reply, {});
    }
    return isEvent;
}

// A notice for which there is no memory is lost, as one that came too late would be.
void Exchange::HandleNotice(const Notice& inNotice) {
    EventQueue& queue = TheEventQueue();
    AppleEvent obituary;
    switch (inNotice.kind) {
        case ControlKind::kWakeUp:
            mWakeUp = true;
            return;
        case ControlKind::kSuspend:
            queue.PostOSEvent(suspendResumeMessage << 24);
            return;
        case ControlKind::kResume:
            queue.PostOSEvent(suspendResumeMessage << 24 | resumeFlag);
            return;
        case ControlKind::kApplicationDied:
            // Anybody of this user may send them, and a program need not take any.
            if (queue.Count({kCoreEventClass, kAEApplicationDied}) >= kMaximumObituaries) return;
            if (MakeObituary(inNotice, &obituary) == noErr) queue.PostAppleEvent(obituary, {});
    }
}

OSErr Exchange::Reply(const Origin& inOrigin, std::span<const UInt8> inReply) {
    Connection* connection = Find(inOrigin.connection);
    if (!connection || inOrigin.request == 0) return noErr;  // The client is gone.
    if (inReply.size() > size_t{kMaximumMessageSize}) return memFullErr;
    const FrameHeader header{FrameKind::kReply, static_cast<UInt32>(inReply.size()), OwnNumber(),
                             inOrigin.request};
    if (connection->Send(header, inReply) == Connection::SendResult::kSent) return noErr;
    connection->Keep(connection->LastMessage());
    Settle(connection);
    return noErr;
}

OSErr Exchange::ResetTimer(const Origin& inOrigin) {
    Connection* connection = Find(inOrigin.connection);
    if (!connection || inOrigin.request == 0) return errAEReplyNotValid;
    const FrameHeader header{FrameKind::kResetTimer, 0, OwnNumber(), inOrigin.request};
    if (connection->Send(header, {}) != Connection::SendResult::kSent) Settle(connection);
    return noErr;
}

void Exchange::Release(const Origin& inOrigin) {
    Connection* connection = Find(inOrigin.connection);
    if (!connection) return;
    const bool wasFull = connection->HoldsTooMuch();
    connection->Release(inOrigin.bytes);
    if (wasFull || connection->isRetired) Settle(connection);
}

}  // namespace carbon
