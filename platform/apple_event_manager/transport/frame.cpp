// Owns the bytes of a frame's header and the rules that frames keep.
#include "apple_event_manager/transport/frame.h"

#include <algorithm>
#include <new>
#include <utility>

#include "apple_event_manager/limits.h"

namespace carbon {

namespace {

constexpr UInt32 kMagic = 'AEf1';
constexpr size_t kRoomForAttributes = 128;  // that its receiver adds to an event

void Put32(UInt8* outBytes, UInt32 inValue) {
    for (int i = 0; i < 4; ++i) outBytes[i] = static_cast<UInt8>(inValue >> (24 - 8 * i));
}

UInt32 Get32(const UInt8* inBytes) {
    UInt32 value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | inBytes[i];
    return value;
}

bool IsAllowed(const FrameHeader& inHeader) {
    if (inHeader.sender == 0) return false;
    switch (inHeader.kind) {
        case FrameKind::kEvent:
            return inHeader.size > 0 && inHeader.size <= kMaximumMessageSize;
        case FrameKind::kReply:
            return inHeader.size > 0 && inHeader.size <= kMaximumMessageSize &&
                   inHeader.request != 0;
        case FrameKind::kResetTimer:
            return inHeader.size == 0 && inHeader.request != 0;
        case FrameKind::kWakeUp:
        case FrameKind::kSuspend:
        case FrameKind::kResume:
            return inHeader.size == 0;
        case FrameKind::kApplicationDied:
            return inHeader.size == kObituarySize;
    }
    return false;
}

// Untouched pages of a false promise cost nothing, but there may be no room for the promise itself.
bool MakeRoom(size_t inSize, Buffer* outBytes) {
    try {
        outBytes->Reserve(inSize + kRoomForAttributes);
        outBytes->Splice(0, 0, inSize);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

std::array<UInt8, kFrameHeaderSize> EncodeHeader(const FrameHeader& inHeader) {
    std::array<UInt8, kFrameHeaderSize> bytes;
    Put32(&bytes[0], kMagic);
    Put32(&bytes[4], static_cast<UInt32>(inHeader.kind));
    Put32(&bytes[8], inHeader.size);
    Put32(&bytes[12], inHeader.sender);
    Put32(&bytes[16], inHeader.request);
    Put32(&bytes[20], static_cast<UInt32>(inHeader.interaction));
    Put32(&bytes[24], static_cast<UInt32>(inHeader.timeOut));
    return bytes;
}

std::optional<FrameHeader> DecodeHeader(std::span<const UInt8> inBytes) {
    if (inBytes.size() < kFrameHeaderSize || Get32(&inBytes[0]) != kMagic) return {};
    const FrameHeader header{static_cast<FrameKind>(Get32(&inBytes[4])),
                             Get32(&inBytes[8]),
                             Get32(&inBytes[12]),
                             Get32(&inBytes[16]),
                             static_cast<SInt32>(Get32(&inBytes[20])),
                             static_cast<SInt32>(Get32(&inBytes[24]))};
    if (!IsAllowed(header)) return {};
    return header;
}

FrameAssembler::Progress FrameAssembler::Begin(std::span<const UInt8> inPacket) {
    const auto header = DecodeHeader(inPacket);
    if (!header) return Progress::kBroken;
    mFrame.header = *header;
    mFrame.payload = {};
    mReceived = 0;
    mInside = true;
    if (!MakeRoom(header->size, &mFrame.payload)) return Progress::kBroken;
    if (header->size == 0 && inPacket.size() == kFrameHeaderSize) return Progress::kComplete;
    return inPacket.size() == kFrameHeaderSize ? Progress::kMore
                                               : Take(inPacket.subspan(kFrameHeaderSize));
}

FrameAssembler::Progress FrameAssembler::Take(std::span<const UInt8> inPacket) {
    if (!mInside) return Begin(inPacket);
    const std::span<UInt8> room = Room();
    if (inPacket.size() <= room.size()) std::copy(inPacket.begin(), inPacket.end(), room.begin());
    return Count(inPacket.size());
}

std::span<UInt8> FrameAssembler::Room() {
    return {mFrame.payload.Writable() + mReceived, mFrame.header.size - mReceived};
}

FrameAssembler::Progress FrameAssembler::Count(size_t inPacketSize) {
    if (inPacketSize == 0 || inPacketSize > mFrame.header.size - mReceived)
        return Progress::kBroken;
    mReceived += inPacketSize;
    return mReceived == mFrame.header.size ? Progress::kComplete : Progress::kMore;
}

Frame FrameAssembler::TakeFrame() {
    mInside = false;
    return std::exchange(mFrame, Frame{});
}

}  // namespace carbon
