// What travels on a connection: a header of 28 bytes and its payload, cut into packets.
//
// docs/wire-format.md has the prose. Nothing here touches a socket, so that every byte from outside
// goes through code that can be tested by itself.
#pragma once

#include <Carbon/MacTypes.h>

#include <array>
#include <optional>
#include <span>

#include "apple_event_manager/data/buffer.h"

namespace carbon {

enum class FrameKind : UInt32 {
    kEvent = 'evnt',
    kReply = 'rply',
    kResetTimer = 'rset',
    kWakeUp = 'wake',
    kSuspend = 'susp',
    kResume = 'resu',
    kApplicationDied = 'obit'
};

struct FrameHeader {
    FrameKind kind;
    UInt32 size = 0;         // bytes of the whole payload
    UInt32 sender = 0;       // low word of the serial number it comes from
    UInt32 request = 0;      // names the reply that is wanted or given; 0 in an event: none
    SInt32 interaction = 0;  // of an event: the interaction bits of its send mode
    SInt32 timeOut = 0;      // of an event: ticks that its sender waits
};

struct Frame {
    FrameHeader header;
    Buffer payload;
};

constexpr size_t kFrameHeaderSize = 28;
constexpr size_t kMaximumPacketSize = 64 << 10;  // bytes, a first packet's header included
constexpr size_t kObituarySize = 12;             // serial number and status

std::array<UInt8, kFrameHeaderSize> EncodeHeader(const FrameHeader& inHeader);

// Nothing for what is no header or promises more than the limits allow.
std::optional<FrameHeader> DecodeHeader(std::span<const UInt8> inBytes);

// Puts the packets of one connection together.
class FrameAssembler {
  public:
    enum class Progress { kMore, kComplete, kBroken };

    // kComplete leaves a frame to be taken before the next packet is given. After kBroken the
    // connection is of no use.
    Progress Take(std::span<const UInt8> inPacket);
    Frame TakeFrame();
    bool IsInside() const { return mInside; }  // more packets of a frame are to come

    // Inside a frame: where the rest of it belongs. A packet may be put there and counted instead
    // of being given; one that is longer breaks.
    std::span<UInt8> Room();
    Progress Count(size_t inPacketSize);

  private:
    Progress Begin(std::span<const UInt8> inPacket);

    bool mInside = false;
    Frame mFrame;
    size_t mReceived = 0;  // bytes of the payload
};

}  // namespace carbon
