// What a sending program tells a monitor: a header of 128 bytes, then the event or its answer.
//
// One packet holds it all; an event that is too large for that comes as a sealed file in memory
// beside the header. All numbers are big-endian.
#pragma once

#include <Carbon/MacTypes.h>

#include <array>
#include <optional>
#include <span>

namespace carbon {

enum class WatchKind : UInt32 {
    kSent = 'sent',      // with the event
    kAnswered = 'rply',  // with the answer
    kEnded = 'done'      // the send is over and no answer belongs to it, or none came
};

struct WatchHeader {
    WatchKind kind;
    SInt32 error = 0;     // of kEnded
    UInt64 exchange = 0;  // the same for an event and what follows; the sender's count
    UInt32 sender = 0;    // low words of serial numbers
    UInt32 target = 0;
    SInt64 time = 0;     // nanoseconds since the start of 1970, UTC
    SInt64 elapsed = 0;  // nanoseconds since the event was sent
    SInt32 replyMode = 0;
    UInt32 size = 0;  // bytes of the event or the answer
    bool isAttached = false;
    Str31 senderName = {};  // MacRoman
    Str31 targetName = {};
};

constexpr size_t kWatchHeaderSize = 128;
constexpr size_t kLargestInline = 32 << 10;

std::array<UInt8, kWatchHeaderSize> EncodeWatchHeader(const WatchHeader& inHeader);

// Reads the header of a packet that came with a file or without one. Nothing for what keeps no
// rule, the packet's length included.
std::optional<WatchHeader> DecodeWatchPacket(std::span<const UInt8> inPacket, bool inHasFile);

}  // namespace carbon
