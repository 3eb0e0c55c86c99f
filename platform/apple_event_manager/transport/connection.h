// One connection to another process: packets out, frames in, and who waits for which reply.
//
// A connection carries events one way, from the process that opened it, and replies the other way.
// No call here waits longer than kPatience, none calls code of the application.
#pragma once

#include <Carbon/AEDataModel.h>

#include <deque>
#include <optional>
#include <vector>

#include "apple_event_manager/transport/frame.h"
#include "posix/UniqueFd.h"
#include "posix/deadline.h"

namespace carbon {

using ConnectionID = UInt64;  // never used again; 0 is none

// How long a receive that may wait does.
constexpr Clock::duration kPatience = std::chrono::milliseconds(10);

// A reply that a running AESend waits for.
struct Waiter {
    enum class State { kWaiting, kAnswered, kBroken };

    State state = State::kWaiting;
    bool timerWasReset = false;
    AppleEvent reply{typeNull, nullptr};  // once answered; whoever takes it disposes it
};

class Connection {
  public:
    enum class Direction { kOutgoing, kIncoming };

    Connection(ConnectionID inID, UniqueFd inSocket, const ProcessSerialNumber& inPeer,
               Direction inDirection);
    ~Connection();

    ConnectionID ID() const { return mID; }
    int Socket() const { return mSocket.Get(); }
    const ProcessSerialNumber& Peer() const { return mPeer; }
    // Whether a frame that says it comes from this number does; {0, 0} is a peer not known.
    bool IsFrom(UInt32 inSender) const {
        return mPeer.lowLongOfPSN == 0 || mPeer.lowLongOfPSN == inSender;
    }
    bool IsOutgoing() const { return mDirection == Direction::kOutgoing; }

    // Messages are numbered from 1 in the order they were given. A message is handed over once the
    // kernel has all of it.
    //   kSent    handed over
    //   kQueued  the peer does not read fast enough; Flush goes on, from inPayload, which stays
    //            where it is until the message is handed over, lost, withdrawn or kept
    //   kBroken  the peer takes no more and has not got this message
    enum class SendResult { kSent, kQueued, kBroken };
    SendResult Send(const FrameHeader& inHeader, std::span<const UInt8> inPayload);
    void Flush();
    bool HasUnsent() const { return !mUnsent.empty(); }
    size_t UnsentBytes() const { return mUnsentBytes; }
    UInt64 LastMessage() const { return mLastMessage; }
    bool IsHandedOver(UInt64 inMessage) const;
    bool WasLost(UInt64 inMessage) const { return inMessage >= mFirstLost; }
    void Withdraw(UInt64 inMessage);  // a message of which a part is on its way is kept instead
    void Keep(UInt64 inMessage);      // makes a copy, so that inPayload may go
    bool TakesNoMore() const { return mTakesNoMore; }

    enum class ReceiveResult { kNothing, kPart, kFrame, kClosed };
    ReceiveResult Receive(bool inMayWait, Frame* outFrame);
    // Whether the peer is in the middle of a message, and has not been silent there for long.
    bool IsReceiving() const;

    // Replies, of an outgoing connection. A null waiter stands for the event queue.
    struct Awaited {
        UInt32 request;
        Waiter* waiter;
    };
    UInt32 Await(Waiter* inWaiter);
    void Forget(UInt32 inRequest);
    std::optional<Awaited> Answered(UInt32 inRequest);
    Waiter* WaiterFor(UInt32 inRequest);
    size_t AwaitedCount() const { return mAwaited.size(); }
    void BreakWaiters();

    // What came in and is not dealt with yet, of an incoming connection.
    void Hold(size_t inBytes);
    void Release(size_t inBytes);
    bool HoldsTooMuch() const;
    bool HoldsNothing() const { return mHeld == 0; }

    UInt64 lastUse = 0;      // the exchange's count of uses
    UInt32 watchedFor = 0;   // what the exchange asked epoll for; 0: nothing
    bool isRetired = false;  // closed to new events, goes when it is idle

  private:
    struct Unsent {
        UInt64 message;
        std::array<UInt8, kFrameHeaderSize> header;
        std::span<const UInt8> payload;  // of the caller, or in `copy`
        std::vector<UInt8> copy;
        size_t sent;  // of the payload; the header goes with its first bytes
    };
    enum class PacketResult { kSent, kFull, kBroken };
    ssize_t TrySend(std::span<const UInt8> inHeader, std::span<const UInt8> inPayload);
    PacketResult SendPacket(std::span<const UInt8> inHeader, std::span<const UInt8> inPayload);
    void LoseUnsent();
    PacketResult SendRest(std::span<const UInt8> inHeader, std::span<const UInt8> inPayload,
                          size_t* ioSent);
    Unsent* FindUnsent(UInt64 inMessage);

    ConnectionID mID;
    UniqueFd mSocket;
    ProcessSerialNumber mPeer;
    Direction mDirection;
    FrameAssembler mAssembler;
    Moment mLastPart{};  // when a packet came that left its message unfinished
    std::deque<Unsent> mUnsent;
    size_t mUnsentBytes = 0;
    UInt64 mLastMessage = 0;
    UInt64 mFirstLost = ~UInt64{0};
    bool mTakesNoMore = false;
    std::vector<Awaited> mAwaited;
    UInt32 mLastRequest = 0;
    size_t mHeld = 0;
    size_t mHeldBytes = 0;
};

}  // namespace carbon
