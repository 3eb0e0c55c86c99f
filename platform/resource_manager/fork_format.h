// Where the numbers of a resource fork stand. Offsets and sizes are bytes, numbers big-endian.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

// The header: where the data and the map lie in the fork.
inline constexpr size_t kDataOffsetAt = 0;
inline constexpr size_t kMapOffsetAt = 4;
inline constexpr size_t kDataLengthAt = 8;
inline constexpr size_t kMapLengthAt = 12;
inline constexpr size_t kForkHeaderSize = 16;

// The map: a copy of the header, room that is only used in memory, then two offsets from its start.
inline constexpr size_t kTypeListOffsetAt = 24;
inline constexpr size_t kNameListOffsetAt = 26;
inline constexpr size_t kMapHeaderSize = 28;

// A type in the list, which begins with the number of types less one: the type, the number of its
// resources less one, the offset of its references from the start of the list.
inline constexpr size_t kTypeCountSize = 2;
inline constexpr size_t kTypeSize = 8;

// A reference: ID, offset of the name in the list of names, attributes with the offset of the data
// in their area, four bytes that are only used in memory.
inline constexpr size_t kReferenceSize = 12;
inline constexpr UInt16 kNoName = 0xFFFF;

// Before the data of each resource.
inline constexpr size_t kLengthSize = 4;

}  // namespace carbon
