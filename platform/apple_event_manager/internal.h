// What lies behind AEDesc.dataHandle, and what the rest of the platform may do with it.
#pragma once

#include <Carbon/AEDataModel.h>

#include <optional>
#include <span>

#include "apple_event_manager/data/buffer.h"

namespace carbon {

// One descriptor inside another, or the content of a whole one, without a copy.
struct ItemView {
    DescType type;
    std::span<const UInt8> data;
};

bool IsNullDesc(const AEDesc& inDesc);

// The flattened form of any descriptor, events included. It lies in the descriptor itself and is
// valid until that is changed or disposed.
std::span<const UInt8> EventBytes(const AEDesc& inDesc);

// The descriptor that has this flattened form. Adopts the buffer after checking every bound, size
// and depth in it; errAECorruptData, or memFullErr, and the null descriptor otherwise.
OSStatus DescFromBytes(Buffer&& inBytes, AEDesc* outDesc);

// Sets any attribute as it is, the read-only ones included. errAENotAEDesc for what is no event.
OSErr SetEventAttribute(AppleEvent* ioEvent, AEKeyword inKey, DescType inType, const void* inData,
                        Size inSize);
OSErr SetEventAttribute(AppleEvent* ioEvent, AEKeyword inKey, const AEDesc& inValue);

// A stored attribute (not the computed 'miss') or a parameter; both valid until the event changes,
// both without marking anything as read.
std::optional<ItemView> EventAttribute(const AppleEvent& inEvent, AEKeyword inKey);
std::optional<ItemView> EventParameter(const AppleEvent& inEvent, AEKeyword inKey);

// Big-endian attributes as numbers; nothing when absent, of another size or no event.
std::optional<UInt32> EventAttribute32(const AppleEvent& inEvent, AEKeyword inKey);
std::optional<SInt16> EventAttribute16(const AppleEvent& inEvent, AEKeyword inKey);

// An empty answer to the request: 'aevt'/'ansr' with the request's return ID and transaction,
// addressed to the request's 'addr'.
OSErr MakeReply(const AppleEvent& inRequest, AppleEvent* outReply);

}  // namespace carbon
