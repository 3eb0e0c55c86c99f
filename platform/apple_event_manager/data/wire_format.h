// The numbers of the flattened form, which docs/wire-format.md describes. All are big-endian.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon::wire {

constexpr UInt32 kMagic = 0x41456401;  // "AEd" and the version, 1; first word of every form

enum class Kind : UInt8 { Leaf = 0, List = 1, Record = 2, Event = 3 };

// An item: type, kind, three zero bytes, size of the content, content, zeros up to the alignment.
constexpr UInt32 kTypeAt = 0;
constexpr UInt32 kKindAt = 4;
constexpr UInt32 kSizeAt = 8;
constexpr UInt32 kItemHeader = 12;
constexpr UInt32 kAlignment = 4;

constexpr UInt32 kKeySize = 4;  // before each item of a record, a parameter or an attribute

// Content of lists and records: the number of items, then the items.
constexpr UInt32 kListHeader = 4;

// Content of events: number and bytes of the parameters, number of attributes, then both.
constexpr UInt32 kParameterBytesAt = 4;
constexpr UInt32 kAttributeCountAt = 8;
constexpr UInt32 kEventHeader = 12;

constexpr UInt32 kFirstItem = 4;                       // offset of the item in a whole form
constexpr UInt32 kContent = kFirstItem + kItemHeader;  // offset of its content
constexpr UInt32 kMaximumSize = 0x3FFFFFF0;            // bytes of one form in memory

constexpr UInt32 Padded(UInt32 inSize) {
    return (inSize + kAlignment - 1) & ~(kAlignment - 1);
}

}  // namespace carbon::wire
