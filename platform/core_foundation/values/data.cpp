// Bytes as an object.
#include <CoreFoundation/CFData.h>

#include <algorithm>
#include <vector>

#include "core_foundation/object.h"
#include "core_foundation/strings/string_object.h"

struct __CFData : carbon::Object {
    // A limit over 0 is the most bytes the object takes.
    __CFData(std::vector<UInt8> inBytes, bool inMutable, CFIndex inLimit)
        : Object(carbon::kDataKind),
          mBytes(std::move(inBytes)),
          mMutable(inMutable),
          mLimit(inLimit) {}

    bool Equals(const Object& inOther) const final {
        return mBytes == static_cast<const __CFData&>(inOther).mBytes;
    }
    CFHashCode Hash() const final { return carbon::HashOfBytes(mBytes.data(), mBytes.size()); }
    std::u16string Describe() const final;

    bool HasRoomFor(size_t inSize) const {
        return inSize <= static_cast<size_t>(mLimit > 0 ? mLimit : INT32_MAX);
    }

    std::vector<UInt8> mBytes;
    const bool mMutable;
    const CFIndex mLimit;

  protected:
    ~__CFData() = default;
};

namespace carbon {

namespace {

class Data final : public __CFData {
  public:
    using __CFData::__CFData;

  private:
    void Destroy() const override { delete this; }
};

const std::vector<UInt8>& BytesOf(CFDataRef inData) {
    static const auto* none = new std::vector<UInt8>;
    const auto* data = OfKind<__CFData>(inData, kDataKind);
    return data ? data->mBytes : *none;
}

__CFData* MutableData(CFMutableDataRef inData) {
    const auto* data = OfKind<__CFData>(inData, kDataKind);
    return data && data->mMutable ? inData : nullptr;
}

__CFData* NewData(const UInt8* inBytes, CFIndex inLength, bool inMutable, CFIndex inLimit) {
    if (inLength < 0) return nullptr;
    return OrNull([&] {
        return new Data(std::vector<UInt8>(inBytes, inBytes + inLength), inMutable, inLimit);
    });
}

CFIndex Length(CFDataRef inData) {
    return static_cast<CFIndex>(BytesOf(inData).size());
}

void Replace(CFMutableDataRef ioData, const CFRange& inRange, const UInt8* inBytes,
             CFIndex inLength) {
    __CFData* data = MutableData(ioData);
    if (!data || inLength < 0) return;
    const CFRange range = Clip(inRange, data->mBytes.size());
    const auto size = data->mBytes.size() - static_cast<size_t>(range.length);
    if (!data->HasRoomFor(size + static_cast<size_t>(inLength))) return;
    const std::vector<UInt8> bytes(inBytes, inBytes + inLength);  // they may lie in the data itself
    const auto start = data->mBytes.erase(data->mBytes.begin() + range.location,
                                          data->mBytes.begin() + range.location + range.length);
    data->mBytes.insert(start, bytes.begin(), bytes.end());
}

}  // namespace

}  // namespace carbon

std::u16string __CFData::Describe() const {
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    std::u16string text = u"<";
    for (const UInt8 byte : mBytes) {
        text.push_back(kDigits[byte >> 4]);
        text.push_back(kDigits[byte & 15]);
    }
    return text + u">";
}

using carbon::BytesOf;

CFTypeID CFDataGetTypeID() {
    return carbon::kDataKind;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    return carbon::NewData(bytes, length, false, 0);
}

CFDataRef CFDataCreateCopy(CFAllocatorRef alloc, CFDataRef theData) {
    if (!carbon::OfKind<__CFData>(theData, carbon::kDataKind)) return nullptr;
    if (!theData->mMutable) return static_cast<CFDataRef>(CFRetain(theData));
    return CFDataCreate(alloc, BytesOf(theData).data(), carbon::Length(theData));
}

CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex capacity) {
    return carbon::NewData(nullptr, 0, true, capacity);
}

CFMutableDataRef CFDataCreateMutableCopy(CFAllocatorRef, CFIndex capacity, CFDataRef theData) {
    const CFIndex length = carbon::Length(theData);
    if (capacity > 0 && length > capacity) return nullptr;
    return carbon::NewData(BytesOf(theData).data(), length, true, capacity);
}

CFIndex CFDataGetLength(CFDataRef theData) {
    return carbon::Length(theData);
}

const UInt8* CFDataGetBytePtr(CFDataRef theData) {
    return BytesOf(theData).data();
}

UInt8* CFDataGetMutableBytePtr(CFMutableDataRef theData) {
    __CFData* data = carbon::MutableData(theData);
    return data ? data->mBytes.data() : nullptr;
}

void CFDataGetBytes(CFDataRef theData, CFRange range, UInt8* buffer) {
    const auto& bytes = BytesOf(theData);
    const CFRange part = carbon::Clip(range, bytes.size());
    std::copy_n(bytes.begin() + part.location, part.length, buffer);
}

void CFDataSetLength(CFMutableDataRef theData, CFIndex length) {
    __CFData* data = carbon::MutableData(theData);
    if (data && length >= 0 && data->HasRoomFor(static_cast<size_t>(length))) {
        data->mBytes.resize(static_cast<size_t>(length));
    }
}

void CFDataIncreaseLength(CFMutableDataRef theData, CFIndex extraLength) {
    const SInt64 length = SInt64{carbon::Length(theData)} + extraLength;
    if (extraLength > 0 && length <= INT32_MAX) {
        CFDataSetLength(theData, static_cast<CFIndex>(length));
    }
}

void CFDataAppendBytes(CFMutableDataRef theData, const UInt8* bytes, CFIndex length) {
    carbon::Replace(theData, CFRangeMake(carbon::Length(theData), 0), bytes, length);
}

void CFDataReplaceBytes(CFMutableDataRef theData, CFRange range, const UInt8* newBytes,
                        CFIndex newLength) {
    carbon::Replace(theData, range, newBytes, newLength);
}

void CFDataDeleteBytes(CFMutableDataRef theData, CFRange range) {
    carbon::Replace(theData, range, nullptr, 0);
}
