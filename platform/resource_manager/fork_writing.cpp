// Owns laying out a resource fork: header, data, then the map with its types, references and names.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <unordered_map>

#include "apple_event_manager/big_endian.h"
#include "resource_manager/fork.h"
#include "resource_manager/fork_format.h"

namespace carbon {

namespace {

ForkSizes SizesOf(const StoredFork& inFork) {
    ForkSizes sizes;
    for (const auto& type : inFork.types) {
        sizes.AddType();
        for (const auto& resource : type.resources)
            sizes.AddResource(resource.name.size(), resource.data.size());
    }
    return sizes;
}

class ForkWriter {
  public:
    ForkWriter(const StoredFork& inFork, std::vector<UInt8>* outBytes)
        : mFork(inFork), mSizes(SizesOf(inFork)), mBytes(*outBytes) {}

    OSErr Write();

  private:
    size_t MapOffset() const { return kFirstData + size_t(mSizes.data); }
    size_t TypeList() const { return MapOffset() + kMapHeaderSize; }
    bool CollectNames();
    void WriteHeader(size_t inOffset);
    void WriteMap();
    void WriteType(const StoredType& inType, size_t inEntry);
    void WriteResource(const StoredResource& inResource);

    template <typename T>
    void Put(size_t inOffset, T inNumber) {
        WriteBigEndian<T>(mBytes.data() + inOffset, inNumber);
    }

    const StoredFork& mFork;
    ForkSizes mSizes;
    std::vector<UInt8>& mBytes;
    std::string mNames;  // the list; a name that several resources have is in it once
    std::unordered_map<std::string, UInt16> mNameOffsets;
    size_t mNextData = kFirstData;
    size_t mNextReference = 0;
};

// False when the list gets too long for its offsets.
bool ForkWriter::CollectNames() {
    for (const auto& type : mFork.types) {
        for (const auto& resource : type.resources) {
            if (resource.name.empty() || mNameOffsets.contains(resource.name)) continue;
            if (mNames.size() >= kNoName) return false;
            mNameOffsets[resource.name] = UInt16(mNames.size());
            mNames += char(resource.name.size());
            mNames += resource.name;
        }
    }
    return true;
}

OSErr ForkWriter::Write() {
    const auto namesAt = kMapHeaderSize + mSizes.types;
    if (mSizes.data > kLongestData || namesAt >= kLongestMapPart || !CollectNames())
        return addRefFailed;
    mBytes.assign(MapOffset() + size_t(namesAt) + mNames.size(), 0);
    std::copy(mFork.reserved.begin(), mFork.reserved.end(), mBytes.begin() + kForkHeaderSize);
    WriteHeader(0);
    WriteHeader(MapOffset());
    WriteMap();
    return noErr;
}

void ForkWriter::WriteHeader(size_t inOffset) {
    Put(inOffset + kDataOffsetAt, UInt32(kFirstData));
    Put(inOffset + kMapOffsetAt, UInt32(MapOffset()));
    Put(inOffset + kDataLengthAt, UInt32(mSizes.data));
    Put(inOffset + kMapLengthAt, UInt32(mBytes.size() - MapOffset()));
}

void ForkWriter::WriteMap() {
    const size_t names = kMapHeaderSize + size_t(mSizes.types);
    Put(MapOffset() + kTypeListOffsetAt, UInt16(kMapHeaderSize));
    Put(MapOffset() + kNameListOffsetAt, UInt16(names));
    std::copy(mNames.begin(), mNames.end(), mBytes.begin() + SInt64(MapOffset() + names));
    Put(TypeList(), UInt16(mFork.types.size() - 1));
    size_t entry = TypeList() + kTypeCountSize;
    mNextReference = entry + kTypeSize * mFork.types.size();
    for (const auto& type : mFork.types) {
        WriteType(type, entry);
        entry += kTypeSize;
    }
}

void ForkWriter::WriteType(const StoredType& inType, size_t inEntry) {
    Put(inEntry, inType.type);
    Put(inEntry + 4, UInt16(inType.resources.size() - 1));
    Put(inEntry + 6, UInt16(mNextReference - TypeList()));
    for (const auto& resource : inType.resources) WriteResource(resource);
}

void ForkWriter::WriteResource(const StoredResource& inResource) {
    const auto name = inResource.name.empty() ? kNoName : mNameOffsets.at(inResource.name);
    const auto place = UInt32(mNextData - kFirstData) | UInt32(inResource.attributes) << 24;
    Put(mNextReference, inResource.id);
    Put(mNextReference + 2, name);
    Put(mNextReference + 4, place);
    mNextReference += kReferenceSize;
    Put(mNextData, UInt32(inResource.data.size()));
    mNextData += kLengthSize;
    std::copy(inResource.data.begin(), inResource.data.end(), mBytes.begin() + SInt64(mNextData));
    mNextData += inResource.data.size();
}

}  // namespace

void ForkSizes::AddType() {
    types += kTypeSize;
}

void ForkSizes::AddResource(size_t inNameLength, size_t inDataLength) {
    types += kReferenceSize;
    data += kLengthSize + inDataLength;
    if (inNameLength > 0) names += 1 + inNameLength;
}

UInt64 ForkSizes::Total() const {
    return kFirstData + data + kMapHeaderSize + types + names;
}

bool ForkSizes::FitMap() const {
    return kMapHeaderSize + types < kLongestMapPart && names < kLongestMapPart;
}

OSErr BuildFork(const StoredFork& inFork, std::vector<UInt8>* outBytes) {
    return ForkWriter(inFork, outBytes).Write();
}

}  // namespace carbon
