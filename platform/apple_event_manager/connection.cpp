// Owns the sending and receiving on one connection.
#include "apple_event_manager/connection.h"

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

Connection::PacketResult Connection::SendPacket(std::span<const UInt8> inHeader,
                                                std::span<const UInt8> inPayload) {
    iovec pieces[2] = {{const_cast<UInt8*>(inHeader.data()), inHeader.size()},
                       {const_cast<UInt8*>(inPayload.data()), inPayload.size()}};
    msghdr packet{};
    packet.msg_iov = pieces;
    packet.msg_iovlen = 2;
    for (;;) {
        if (sendmsg(mSocket.Get(), &packet, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0)
            return PacketResult::kSent;
        if (errno == EAGAIN || errno == ENOBUFS || errno == ENOMEM) return PacketResult::kFull;
        if (errno != EINTR) return PacketResult::kBroken;
    }
}

Connection::PacketResult Connection::SendRest(std::span<const UInt8> inPayload, size_t* ioSent) {
    while (*ioSent < inPayload.size()) {
        const size_t size = std::min(inPayload.size() - *ioSent, kMaximumPacketSize);
        const PacketResult result = SendPacket({}, inPayload.subspan(*ioSent, size));
        if (result != PacketResult::kSent) return result;
        *ioSent += size;
    }
    return PacketResult::kSent;
}

Connection::SendResult Connection::Send(const FrameHeader& inHeader,
                                        std::span<const UInt8> inPayload) {
    if (mTakesNoMore) return SendResult::kBroken;
    const auto header = EncodeHeader(inHeader);
    PacketResult result = PacketResult::kFull;
    size_t sent = 0;
    if (mUnsent.empty()) result = SendNow(header, inPayload, &sent);
    if (result == PacketResult::kBroken) {
        mTakesNoMore = true;
        return SendResult::kBroken;
    }
    ++mLastMessage;
    if (result == PacketResult::kSent) return SendResult::kSent;
    std::vector<UInt8> bytes(header.begin(), header.end());
    bytes.insert(bytes.end(), inPayload.begin(), inPayload.end());
    mUnsentBytes += bytes.size();
    mUnsent.push_back({mLastMessage, std::move(bytes), sent > 0 ? sent + kFrameHeaderSize : 0});
    return SendResult::kQueued;
}

Connection::PacketResult Connection::SendNow(std::span<const UInt8> inHeader,
                                             std::span<const UInt8> inPayload, size_t* outSent) {
    const size_t first = std::min(inPayload.size(), kMaximumPacketSize - kFrameHeaderSize);
    const PacketResult result = SendPacket(inHeader, inPayload.first(first));
    if (result != PacketResult::kSent) return result;
    *outSent = first;
    return SendRest(inPayload, outSent);
}

void Connection::Flush() {
    while (!mUnsent.empty()) {
        Unsent& message = mUnsent.front();
        const PacketResult result = SendRest(message.bytes, &message.sent);
        if (result == PacketResult::kFull) return;
        if (result == PacketResult::kBroken) {
            LoseUnsent();
            return;
        }
        mUnsentBytes -= message.bytes.size();
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

void Connection::Withdraw(UInt64 inMessage) {
    const auto found = std::find_if(mUnsent.begin(), mUnsent.end(), [&](const Unsent& message) {
        return message.message == inMessage && message.sent == 0;
    });
    if (found == mUnsent.end()) return;
    mUnsentBytes -= found->bytes.size();
    mUnsent.erase(found);
}

Connection::ReceiveResult Connection::Receive(bool inMayWait, Frame* outFrame) {
    const int flags = MSG_TRUNC | (inMayWait ? 0 : MSG_DONTWAIT);
    ssize_t size = recv(mSocket.Get(), gPacket, sizeof gPacket, flags);
    // A peer that ended without reading everything; its last words come after the error.
    if (size < 0 && errno == ECONNRESET) size = recv(mSocket.Get(), gPacket, sizeof gPacket, flags);
    if (size < 0)
        return errno == EAGAIN || errno == EINTR ? ReceiveResult::kNothing : ReceiveResult::kClosed;
    if (size == 0 || static_cast<size_t>(size) > sizeof gPacket) return ReceiveResult::kClosed;
    switch (mAssembler.Take({gPacket, static_cast<size_t>(size)})) {
        case FrameAssembler::Progress::kBroken:
            return ReceiveResult::kClosed;
        case FrameAssembler::Progress::kMore:
            return ReceiveResult::kPart;
        case FrameAssembler::Progress::kComplete:
            *outFrame = mAssembler.TakeFrame();
    }
    return ReceiveResult::kFrame;
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
