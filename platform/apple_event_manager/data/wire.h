// Reading flattened bytes: items without trust (CheckForm) and with it (everything else).
#pragma once

#include <optional>
#include <span>

#include <Carbon/AEDataModel.h>
#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/data/wire_format.h"
#include "apple_event_manager/limits.h"

namespace carbon {

using Bytes = std::span<const UInt8>;
using wire::Kind;

// An item, wherever its content lies.
struct Item {
    DescType type = typeNull;
    Kind kind = Kind::Leaf;
    Bytes content;
    int depthAtMost = kMaximumNesting;  // a bound that saves walking through a large container

    bool IsKeyed() const { return kind == Kind::Record || kind == Kind::Event; }
    bool IsContainer() const { return kind != Kind::Leaf; }
    UInt32 FormSize() const { return wire::kItemHeader + wire::Padded(UInt32(content.size())); }
};

// The item whose header begins at `inAt`.
inline Item ReadItem(Bytes inBytes, UInt32 inAt) {
    const UInt8* header = inBytes.data() + inAt;
    return {ReadBigEndian<UInt32>(header + wire::kTypeAt), Kind(header[wire::kKindAt]),
            Bytes(header + wire::kItemHeader, ReadBigEndian<UInt32>(header + wire::kSizeAt))};
}

// The items of a container, or the parameters of an event, from the first byte of its content.
struct Section {
    UInt32 count;
    UInt32 begin;  // offsets into the content
    UInt32 end;
    UInt32 keySize;
};
Section ItemsOf(Kind inKind, Bytes inContent);
Section AttributesOf(Bytes inEventContent);

// Whether the bytes are exactly one whole form, every bound, count and depth in it right. The depth
// is given to whoever wants it.
bool CheckForm(Bytes inBytes, int* outDepth = nullptr);

// Lists and records within one another: 0 for a leaf, 1 for a container of leaves.
int DepthOf(const Item& inItem);

}  // namespace carbon
