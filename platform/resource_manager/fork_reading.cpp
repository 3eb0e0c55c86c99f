// Owns reading the map of a resource fork. Forks come from anywhere, so every number is checked.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <optional>

#include "apple_event_manager/big_endian.h"
#include "resource_manager/fork.h"
#include "resource_manager/fork_format.h"

namespace carbon {

namespace {

using Bytes = std::span<const UInt8>;

// A part of the bytes; nothing when it is not all there.
std::optional<Bytes> Part(Bytes inBytes, UInt64 inOffset, UInt64 inLength) {
    if (inOffset > inBytes.size() || inLength > inBytes.size() - inOffset) return std::nullopt;
    return inBytes.subspan(size_t(inOffset), size_t(inLength));
}

// The bytes from an offset to the end.
std::optional<Bytes> PartFrom(Bytes inBytes, UInt64 inOffset) {
    if (inOffset > inBytes.size()) return std::nullopt;
    return inBytes.subspan(size_t(inOffset));
}

template <typename T>
T NumberAt(Bytes inBytes, size_t inOffset) {
    return ReadBigEndian<T>(inBytes.data() + inOffset);
}

class MapReader {
  public:
    bool Open(Bytes inFork);
    bool ReadTypes(std::vector<StoredType>* outTypes);

  private:
    bool ReadType(Bytes inEntry, StoredType* outType);
    bool ReadReference(Bytes inReference, StoredResource* outResource);
    bool ReadName(UInt16 inOffset, std::string* outName);
    bool ReadData(UInt32 inOffset, Bytes* outData);

    Bytes mData, mTypes, mNames;
    size_t mReferenceRoom = 0;  // bytes of references that a map of this length can still hold
};

bool MapReader::Open(Bytes inFork) {
    if (inFork.size() < kForkHeaderSize) return false;
    const auto data = Part(inFork, NumberAt<UInt32>(inFork, kDataOffsetAt),
                           NumberAt<UInt32>(inFork, kDataLengthAt));
    const auto map = Part(inFork, NumberAt<UInt32>(inFork, kMapOffsetAt),
                          NumberAt<UInt32>(inFork, kMapLengthAt));
    if (!data || !map || map->size() < kMapHeaderSize + kTypeCountSize) return false;
    const auto types = PartFrom(*map, NumberAt<UInt16>(*map, kTypeListOffsetAt));
    const auto names = PartFrom(*map, NumberAt<UInt16>(*map, kNameListOffsetAt));
    if (!types || !names || types->size() < kTypeCountSize) return false;
    mData = *data;
    mTypes = *types;
    mNames = *names;
    mReferenceRoom = map->size();
    return true;
}

bool MapReader::ReadTypes(std::vector<StoredType>* outTypes) {
    const auto count = UInt16(NumberAt<UInt16>(mTypes, 0) + 1);
    const auto entries = Part(mTypes, kTypeCountSize, count * kTypeSize);
    if (!entries) return false;
    for (size_t i = 0; i < count; ++i) {
        StoredType type;
        if (!ReadType(entries->subspan(i * kTypeSize, kTypeSize), &type)) return false;
        if (!type.resources.empty()) outTypes->push_back(std::move(type));
    }
    return true;
}

bool MapReader::ReadType(Bytes inEntry, StoredType* outType) {
    const size_t length = UInt16(NumberAt<UInt16>(inEntry, 4) + 1) * kReferenceSize;
    const auto references = Part(mTypes, NumberAt<UInt16>(inEntry, 6), length);
    // Types that claim the same references make a small map look endless.
    if (!references || length > mReferenceRoom) return false;
    mReferenceRoom -= length;
    outType->type = NumberAt<UInt32>(inEntry, 0);
    for (size_t at = 0; at < length; at += kReferenceSize) {
        StoredResource resource;
        if (!ReadReference(references->subspan(at, kReferenceSize), &resource)) return false;
        outType->resources.push_back(std::move(resource));
    }
    return true;
}

bool MapReader::ReadReference(Bytes inReference, StoredResource* outResource) {
    outResource->id = NumberAt<SInt16>(inReference, 0);
    const auto place = NumberAt<UInt32>(inReference, 4);
    outResource->attributes = UInt8(place >> 24);
    return ReadName(NumberAt<UInt16>(inReference, 2), &outResource->name) &&
           ReadData(place & 0xFFFFFF, &outResource->data);
}

bool MapReader::ReadName(UInt16 inOffset, std::string* outName) {
    if (inOffset == kNoName) return true;
    if (inOffset >= mNames.size()) return false;
    const auto name = Part(mNames, inOffset + 1u, mNames[inOffset]);
    if (!name) return false;
    outName->assign(name->begin(), name->end());
    return true;
}

bool MapReader::ReadData(UInt32 inOffset, Bytes* outData) {
    if (!Part(mData, inOffset, kLengthSize)) return false;
    const auto data = Part(mData, inOffset + kLengthSize, NumberAt<UInt32>(mData, inOffset));
    if (data) *outData = *data;
    return data.has_value();
}

void ReadReserved(Bytes inFork, StoredFork* outFork) {
    const size_t end = std::min<size_t>({inFork.size(), NumberAt<UInt32>(inFork, kDataOffsetAt),
                                         NumberAt<UInt32>(inFork, kMapOffsetAt), kFirstData});
    if (end > kForkHeaderSize) {
        std::copy(inFork.begin() + kForkHeaderSize, inFork.begin() + SInt64(end),
                  outFork->reserved.begin());
    }
}

}  // namespace

OSErr ParseFork(std::span<const UInt8> inFork, StoredFork* outFork) {
    if (inFork.empty()) return eofErr;
    MapReader reader;
    StoredFork fork;
    if (!reader.Open(inFork) || !reader.ReadTypes(&fork.types)) return mapReadErr;
    ReadReserved(inFork, &fork);
    *outFork = std::move(fork);
    return noErr;
}

}  // namespace carbon
