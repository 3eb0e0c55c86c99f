// From a caller's AEDesc to what lies behind it and back, and the guard around every public call.
#pragma once

#include <Carbon/MacErrors.h>

#include <new>

#include "apple_event_manager/data/storage.h"
#include "apple_event_manager/internal.h"

namespace carbon {

constexpr AEDesc kNullDesc = {typeNull, nullptr};

inline Storage* StorageOf(const AEDesc& inDesc) {
    return reinterpret_cast<Storage*>(inDesc.dataHandle);
}
inline AEDataStorage HandleOf(std::unique_ptr<Storage> inStorage) {
    return reinterpret_cast<AEDataStorage>(inStorage.release());
}

// The descriptor as an item; valid until it changes.
Item ItemOf(const AEDesc& inDesc);
// Bytes from a caller as an item; nothing for a negative size or a null pointer with a size.
std::optional<Item> ItemOf(DescType inType, const void* inData, Size inSize);
// A new descriptor with a copy of the item. The fields are written one by one: a descriptor that is
// copied as a whole keeps the processor waiting when its handle is read, which lies across words.
void MakeDesc(const Item& inItem, AEDesc* outDesc);
AEDesc DescOf(const Item& inItem);

// The storage when the descriptor is of a kind that fits, else null.
Storage* ContainerOf(const AEDesc* inDesc);
Storage* KeyedOf(const AEDesc* inDesc);  // a record or an event
Storage* EventOf(const AEDesc* inDesc);

// Runs a call's body; missing memory is a result here, never an exception.
template <typename Body>
OSErr Guarded(Body inBody) {
    try {
        return inBody();
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
}

// The same for calls that fill a descriptor, which a failure leaves null.
template <typename Body>
OSErr Making(AEDesc* outDesc, Body inBody) {
    if (!outDesc) return paramErr;
    *outDesc = kNullDesc;
    const OSErr result = Guarded(inBody);
    if (result != noErr && !IsNullDesc(*outDesc)) AEDisposeDesc(outDesc);
    return result;
}

// A descriptor of our own for the length of a block.
class TemporaryDesc {
  public:
    TemporaryDesc() = default;
    explicit TemporaryDesc(const Item& inItem) { MakeDesc(inItem, &mDesc); }
    ~TemporaryDesc() { AEDisposeDesc(&mDesc); }
    TemporaryDesc(const TemporaryDesc&) = delete;
    TemporaryDesc& operator=(const TemporaryDesc&) = delete;
    AEDesc* Get() { return &mDesc; }
    const AEDesc& operator*() const { return mDesc; }
    AEDesc Release() {
        const AEDesc desc = mDesc;
        mDesc = kNullDesc;
        return desc;
    }

  private:
    AEDesc mDesc = kNullDesc;
};

// Where a caller wants data: a type to coerce to, a buffer, and what was found. All but the type
// may be null.
struct Wanted {
    DescType type;
    DescType* actualType;
    void* buffer;
    Size maximumSize;
    Size* actualSize;

    bool IsValid() const { return maximumSize >= 0 && (buffer || maximumSize == 0); }
};
OSErr Deliver(const Item& inItem, const Wanted& inWanted);
OSErr Deliver(const Item& inItem, DescType inDesiredType, AEDesc* outDesc);
void Measure(const Item& inItem, DescType* outType, Size* outSize);

}  // namespace carbon
