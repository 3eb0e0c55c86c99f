// Owns the sending and receiving on one connection.
#include "apple_event_manager/transport/connection.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>

#include "apple_event_manager/limits.h"

namespace carbon {

namespace {

// Filled and emptied within one call; the application's code never runs in between.
UInt8 gPacket[kMaximumPacketSize];

void LimitReceives(int inSocket) {
    const auto microseconds =
        std::chrono::duration_cast<std::chrono::microseconds>(kPatience).count();
    const timeval patience{0, static_cast<suseconds_t>(microseconds)};
    setsockopt(inSocket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

}  // namespace

Connection::Connection(ConnectionID inID, UniqueFd inSocket, const ProcessSerialNumber& inPeer,
                       Direction inDirection)
    : mID(inID), mSocket(std::move(inSocket)), mPeer(inPeer), mDirection(inDirection) {
    LimitReceives(mSocket.Get());
}

Connection::~Connection() {
    BreakWaiters();
}

// The usual event is copied behind its header: that costs less than to have the kernel gather it.
ssize_t Connection::TrySend(std::span<const UInt8> inHeader, std::span<const UInt8> inPayload) {
    constexpr int kFlags = MSG_NOSIGNAL | MSG_DONTWAIT;
    if (inHeader.empty()) return send(mSocket.Get(), inPayload.data(), inPayload.size(), kFlags);
    UInt8 small[1024];
    if (inPayload.size() <= sizeof small - inHeader.size()) {
        const auto end = std::copy(inHeader.begin(), inHeader.end(), small);
        std::copy(inPayload.begin(), inPayload.end(), end);
        return send(mSocket.Get(), small, inHeader.size() + inPayload.size(), kFlags);
    }
    iovec pieces[2] = {{const_cast<UInt8*>(inHeader.data()), inHeader.size()},
                       {const_cast<UInt8*>(inPayload.data()), inPayload.size()}};
    msghdr packet{};
    packet.msg_iov = pieces;
    packet.msg_iovlen = 2;
    return sendmsg(mSocket.Get(), &packet, kFlags);
}

Connection::PacketResult Connection::SendPacket(std::span<const UInt8> inHeader,
                                                std::span<const UInt8> inPayload) {
    for (;;) {
        if (TrySend(inHeader, inPayload) >= 0) return PacketResult::kSent;
        if (errno == EAGAIN || errno == ENOBUFS || errno == ENOMEM) return PacketResult::kFull;
        if (errno != EINTR) return PacketResult::kBroken;
    }
}

Connection::PacketResult Connection::SendRest(std::span<const UInt8> inHeader,
                                              std::span<const UInt8> inPayload, size_t* ioSent) {
    do {
        const auto header = *ioSent == 0 ? inHeader : std::span<const UInt8>{};
        const size_t size =
            std::min(inPayload.size() - *ioSent, kMaximumPacketSize - header.size());
        const PacketResult result = SendPacket(header, inPayload.subspan(*ioSent, size));
        if (result != PacketResult::kSent) return result;
        *ioSent += size;
    } while (*ioSent < inPayload.size());
    return PacketResult::kSent;
}

Connection::SendResult Connection::Send(const FrameHeader& inHeader,
                                        std::span<const UInt8> inPayload) {
    if (mTakesNoMore) return SendResult::kBroken;
    const auto header = EncodeHeader(inHeader);
    PacketResult result = PacketResult::kFull;
    size_t sent = 0;
    if (mUnsent.empty()) result = SendRest(header, inPayload, &sent);
    if (result == PacketResult::kBroken) {
        mTakesNoMore = true;
        return SendResult::kBroken;
    }
    ++mLastMessage;
    if (result == PacketResult::kSent) return SendResult::kSent;
    try {
        mUnsent.push_back({mLastMessage, header, inPayload, {}, sent});
    } catch (const std::bad_alloc&) {
        mTakesNoMore = true;  // the peer may have a part of it
        throw;
    }
    mUnsentBytes += inPayload.size();
    return SendResult::kQueued;
}

void Connection::Flush() {
    while (!mUnsent.empty()) {
        Unsent& message = mUnsent.front();
        const PacketResult result = SendRest(message.header, message.payload, &message.sent);
        if (result == PacketResult::kFull) return;
        if (result == PacketResult::kBroken) return LoseUnsent();
        mUnsentBytes -= message.payload.size();
        mUnsent.pop_front();
    }
}

// What the peer sent before it went is still to be read, so the connection stays.
void Connection::LoseUnsent() {
    mTakesNoMore = true;
    mFirstLost = mUnsent.front().message;
    mUnsent.clear();
    mUnsentBytes = 0;
}

bool Connection::IsHandedOver(UInt64 inMessage) const {
    return mUnsent.empty() || mUnsent.front().message > inMessage;
}

Connection::Unsent* Connection::FindUnsent(UInt64 inMessage) {
    const auto found = std::find_if(mUnsent.begin(), mUnsent.end(), [&](const Unsent& message) {
        return message.message == inMessage;
    });
    return found == mUnsent.end() ? nullptr : &*found;
}

void Connection::Keep(UInt64 inMessage) {
    Unsent* message = FindUnsent(inMessage);
    if (!message) return;
    message->copy.assign(message->payload.begin(), message->payload.end());
    message->payload = message->copy;
}

void Connection::Withdraw(UInt64 inMessage) {
    const Unsent* message = FindUnsent(inMessage);
    if (!message) return;
    if (message->sent > 0) return Keep(inMessage);
    mUnsentBytes -= message->payload.size();
    std::erase_if(mUnsent, [&](const Unsent& unsent) { return unsent.message == inMessage; });
}

Connection::ReceiveResult Connection::Receive(bool inMayWait, Frame* outFrame) {
    const bool isInside = mAssembler.IsInside();
    const std::span<UInt8> room = isInside ? mAssembler.Room() : std::span<UInt8>(gPacket);
    const int flags = MSG_TRUNC | (inMayWait ? 0 : MSG_DONTWAIT);
    ssize_t size = recv(mSocket.Get(), room.data(), room.size(), flags);
    // A peer that ended without reading everything; its last words come after the error.
    if (size < 0 && errno == ECONNRESET)
        size = recv(mSocket.Get(), room.data(), room.size(), flags);
    if (size < 0)
        return errno == EAGAIN || errno == EINTR ? ReceiveResult::kNothing : ReceiveResult::kClosed;
    const size_t length = static_cast<size_t>(size);
    if (length == 0 || length > room.size()) return ReceiveResult::kClosed;
    switch (isInside ? mAssembler.Count(length) : mAssembler.Take(room.first(length))) {
        case FrameAssembler::Progress::kBroken:
            return ReceiveResult::kClosed;
        case FrameAssembler::Progress::kMore:
            mLastPart = Clock::now();
            return ReceiveResult::kPart;
        case FrameAssembler::Progress::kComplete:
            *outFrame = mAssembler.TakeFrame();
    }
    return ReceiveResult::kFrame;
}

bool Connection::IsReceiving() const {
    constexpr std::chrono::seconds kLongest(kStartUpSeconds);
    return mAssembler.IsInside() && Clock::now() - mLastPart < kLongest;
}

UInt32 Connection::Await(Waiter* inWaiter) {
    if (++mLastRequest == 0) mLastRequest = 1;
    mAwaited.push_back({mLastRequest, inWaiter});
    return mLastRequest;
}

std::optional<Connection::Awaited> Connection::Answered(UInt32 inRequest) {
    const auto found = std::find_if(mAwaited.begin(), mAwaited.end(), [&](const Awaited& awaited) {
        return awaited.request == inRequest;
    });
    if (found == mAwaited.end()) return {};
    const Awaited awaited = *found;
    mAwaited.erase(found);
    return awaited;
}

void Connection::Forget(UInt32 inRequest) {
    Answered(inRequest);
}

Waiter* Connection::WaiterFor(UInt32 inRequest) {
    for (const Awaited& awaited : mAwaited)
        if (awaited.request == inRequest) return awaited.waiter;
    return nullptr;
}

void Connection::BreakWaiters() {
    for (const Awaited& awaited : mAwaited)
        if (awaited.waiter) awaited.waiter->state = Waiter::State::kBroken;
    mAwaited.clear();
}

void Connection::Hold(size_t inBytes) {
    ++mHeld;
    mHeldBytes += inBytes;
}

void Connection::Release(size_t inBytes) {
    --mHeld;
    mHeldBytes -= inBytes;
}

bool Connection::HoldsTooMuch() const {
    return mHeld >= kMaximumPendingReplies || mHeldBytes > kMaximumMessageSize;
}

}  // namespace carbon
