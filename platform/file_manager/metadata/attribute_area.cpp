// Owns the attribute area's layout.
#include "file_manager/metadata/attribute_area.h"

#include "apple_event_manager/big_endian.h"

namespace carbon {

namespace {

constexpr size_t kAreaOffset = 34;  // behind 32 bytes of Finder information and two of padding
constexpr size_t kTotalSize = kAreaOffset + 8;
constexpr size_t kDataStart = kAreaOffset + 12;
constexpr size_t kCount = kAreaOffset + 34;
constexpr size_t kFirstAttribute = kAreaOffset + 36;
constexpr size_t kNameLength = 10;  // in an attribute's record
constexpr size_t kName = 11;

// Where the numbers stand that count from the start of the file; nothing unless each one points
// into the entry.
std::vector<size_t> PlacesOfOffsets(UInt32 inOldOffset, const std::vector<UInt8>& inEntry) {
    if (inEntry.size() < kFirstAttribute) return {};
    if (ReadBigEndian<UInt32>(inEntry.data() + kAreaOffset) != UInt32('ATTR')) return {};
    std::vector<size_t> places = {kTotalSize, kDataStart};
    const size_t count = ReadBigEndian<UInt16>(inEntry.data() + kCount);
    size_t at = kFirstAttribute;
    for (size_t i = 0; i < count; ++i) {
        if (at + kName > inEntry.size()) return {};
        places.push_back(at);
        at += (kName + inEntry[at + kNameLength] + 3) / 4 * 4;
    }
    for (const size_t place : places) {
        const UInt64 offset = ReadBigEndian<UInt32>(inEntry.data() + place);
        if (offset < inOldOffset || offset > UInt64(inOldOffset) + inEntry.size()) return {};
    }
    return places;
}

}  // namespace

void MoveAttributeArea(UInt32 inOldOffset, UInt32 inNewOffset, std::vector<UInt8>* ioEntry) {
    for (const size_t place : PlacesOfOffsets(inOldOffset, *ioEntry)) {
        UInt8* bytes = ioEntry->data() + place;
        WriteBigEndian(bytes, ReadBigEndian<UInt32>(bytes) - inOldOffset + inNewOffset);
    }
}

}  // namespace carbon
