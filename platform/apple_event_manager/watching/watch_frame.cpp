// Owns the bytes of what a monitor is told, and the rules they keep.
#include "apple_event_manager/watching/watch_frame.h"

#include <cstring>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/limits.h"

namespace carbon {

namespace {

constexpr UInt32 kMagic = 'AEw1';

// Offsets in the header; the bytes between the last field and the names are zero.
constexpr size_t kKindAt = 4, kErrorAt = 8, kSizeAt = 12, kExchangeAt = 16, kSenderAt = 24,
                 kTargetAt = 28, kTimeAt = 32, kElapsedAt = 40, kReplyModeAt = 48, kAttachedAt = 52,
                 kZeroAt = 56, kSenderNameAt = 64, kTargetNameAt = 96;

void Put32(UInt8* outBytes, UInt32 inValue) {
    for (int i = 0; i < 4; ++i) outBytes[i] = static_cast<UInt8>(inValue >> (24 - 8 * i));
}

void Put64(UInt8* outBytes, UInt64 inValue) {
    Put32(outBytes, static_cast<UInt32>(inValue >> 32));
    Put32(outBytes + 4, static_cast<UInt32>(inValue));
}

UInt64 Get64(const UInt8* inBytes) {
    return UInt64{ReadBigEndian<UInt32>(inBytes)} << 32 | ReadBigEndian<UInt32>(inBytes + 4);
}

bool IsKindAllowed(const WatchHeader& inHeader) {
    switch (inHeader.kind) {
        case WatchKind::kSent:
        case WatchKind::kAnswered:
            return inHeader.size > 0 && inHeader.size <= UInt32{kMaximumMessageSize};
        case WatchKind::kEnded:
            return inHeader.size == 0 && !inHeader.isAttached;
    }
    return false;
}

bool IsAllowed(const WatchHeader& inHeader) {
    return IsKindAllowed(inHeader) && inHeader.sender != 0 && inHeader.exchange != 0 &&
           inHeader.senderName[0] < sizeof(Str31) && inHeader.targetName[0] < sizeof(Str31);
}

bool IsLengthRight(const WatchHeader& inHeader, size_t inPacketSize) {
    if (inHeader.isAttached) return inPacketSize == kWatchHeaderSize;
    return inHeader.size <= kLargestInline && inPacketSize == kWatchHeaderSize + inHeader.size;
}

}  // namespace

std::array<UInt8, kWatchHeaderSize> EncodeWatchHeader(const WatchHeader& inHeader) {
    std::array<UInt8, kWatchHeaderSize> bytes{};
    Put32(&bytes[0], kMagic);
    Put32(&bytes[kKindAt], static_cast<UInt32>(inHeader.kind));
    Put32(&bytes[kErrorAt], static_cast<UInt32>(inHeader.error));
    Put32(&bytes[kSizeAt], inHeader.size);
    Put64(&bytes[kExchangeAt], inHeader.exchange);
    Put32(&bytes[kSenderAt], inHeader.sender);
    Put32(&bytes[kTargetAt], inHeader.target);
    Put64(&bytes[kTimeAt], static_cast<UInt64>(inHeader.time));
    Put64(&bytes[kElapsedAt], static_cast<UInt64>(inHeader.elapsed));
    Put32(&bytes[kReplyModeAt], static_cast<UInt32>(inHeader.replyMode));
    Put32(&bytes[kAttachedAt], inHeader.isAttached);
    std::memcpy(&bytes[kSenderNameAt], inHeader.senderName, sizeof inHeader.senderName);
    std::memcpy(&bytes[kTargetNameAt], inHeader.targetName, sizeof inHeader.targetName);
    return bytes;
}

std::optional<WatchHeader> DecodeWatchPacket(std::span<const UInt8> inPacket, bool inHasFile) {
    if (inPacket.size() < kWatchHeaderSize) return {};
    const UInt8* bytes = inPacket.data();
    if (ReadBigEndian<UInt32>(bytes) != kMagic || Get64(bytes + kZeroAt) != 0) return {};
    if (ReadBigEndian<UInt32>(bytes + kAttachedAt) != UInt32{inHasFile}) return {};
    WatchHeader header{static_cast<WatchKind>(ReadBigEndian<UInt32>(bytes + kKindAt))};
    header.error = static_cast<SInt32>(ReadBigEndian<UInt32>(bytes + kErrorAt));
    header.size = ReadBigEndian<UInt32>(bytes + kSizeAt);
    header.exchange = Get64(bytes + kExchangeAt);
    header.sender = ReadBigEndian<UInt32>(bytes + kSenderAt);
    header.target = ReadBigEndian<UInt32>(bytes + kTargetAt);
    header.time = static_cast<SInt64>(Get64(bytes + kTimeAt));
    header.elapsed = static_cast<SInt64>(Get64(bytes + kElapsedAt));
    header.replyMode = static_cast<SInt32>(ReadBigEndian<UInt32>(bytes + kReplyModeAt));
    header.isAttached = inHasFile;
    std::memcpy(header.senderName, bytes + kSenderNameAt, sizeof header.senderName);
    std::memcpy(header.targetName, bytes + kTargetNameAt, sizeof header.targetName);
    if (!IsAllowed(header) || !IsLengthRight(header, inPacket.size())) return {};
    return header;
}

}  // namespace carbon
