// Owns the memory of an array: room for items, and items into and out of their places.
#include <algorithm>
#include <cstring>

#include "vantor/containers/LArray.h"
#include "vantor/foundation/LException.h"

namespace {

constexpr SInt64 kMostBytes = 0x7FFFFFFF;  // of a handle

UInt32 CheckedBytes(SInt64 inBytes) {
    if (inBytes > kMostBytes) LException::Throw(memFullErr);
    return static_cast<UInt32>(inBytes);
}

// The sizes of numbers and of process serial numbers are not worth a call of the system.
void CopyItem(const void* inFrom, void* outTo, size_t inSize) {
    UInt64 word;
    if (inSize == sizeof(UInt32)) {
        std::memcpy(outTo, inFrom, sizeof(UInt32));
    } else if (inSize == sizeof word) {
        std::memcpy(&word, inFrom, sizeof word);
        std::memcpy(outTo, &word, sizeof word);
    } else {
        BlockMoveData(inFrom, outTo, static_cast<Size>(inSize));
    }
}

}  // namespace

Handle LArray::GetItemsHandle() {
    AdjustAllocation(0, 0);
    return mItemsHandle;
}

void* LArray::GetItemPtr(SInt32 inAtIndex) const {
    return *mItemsHandle + size_t{mItemSize} * static_cast<size_t>(inAtIndex - 1);
}

void LArray::PeekItem(SInt32 inAtIndex, void* outItem) const {
    CopyItem(GetItemPtr(inAtIndex), outItem, mItemSize);
}

// Kept: writes the size given, so a larger item runs into the places after it; never past the end
// of the handle.
void LArray::PokeItem(SInt32 inAtIndex, const void* inItem, UInt32 inItemSize) {
    const size_t start = size_t{mItemSize} * static_cast<size_t>(inAtIndex - 1);
    const size_t room = mDataAllocated - start;
    CopyItem(inItem, *mItemsHandle + start, std::min<size_t>(inItemSize, room));
}

void LArray::StoreNewItems(UInt32 inCount, SInt32 inAtIndex, const void* inItem,
                           UInt32 inItemSize) {
    if (inItem == nullptr) return;
    for (UInt32 i = 0; i < inCount; ++i)
        PokeItem(inAtIndex + static_cast<SInt32>(i), inItem, inItemSize);
}

void LArray::AdjustAllocation(UInt32 inExtraItems, UInt32) {
    const SInt64 items = SInt64{mItemCount} + inExtraItems;
    InternalAdjustAllocation(static_cast<UInt32>(items), CheckedBytes(items * mItemSize));
    // What a handle taken over held beyond its last whole item may be gone now.
    mDataStored = std::min(mDataStored, mDataAllocated);
}

void LArray::InternalAdjustAllocation(UInt32, UInt32 inBytes) {
    if (inBytes == mDataAllocated) return;
    if (mItemsHandle == nullptr)
        mItemsHandle = NewHandle(static_cast<Size>(inBytes));
    else
        SetHandleSize(mItemsHandle, static_cast<Size>(inBytes));
    ThrowIfError(MemError());
    mDataAllocated = inBytes;
}

// Grows to at least twice the room, so that repeated appends cost constant time each; shrinks by
// just what was removed.
void LArray::AdjustStorage(SInt32 inDeltaItems, SInt32) {
    const SInt64 newCount = SInt64{mItemCount} + inDeltaItems;
    const UInt32 newStored = CheckedBytes(newCount * mItemSize);
    if (newStored > mDataAllocated) {
        Grow(inDeltaItems, newStored);
    } else if (inDeltaItems < 0) {
        InternalAdjustAllocation(0, newStored + (mDataAllocated - mDataStored));
    }
    mItemCount = static_cast<UInt32>(newCount);
    mDataStored = newStored;
}

void LArray::Grow(SInt32 inDeltaItems, UInt32 inNewStored) {
    try {
        const SInt64 wanted = SInt64{inDeltaItems} * mItemSize;
        InternalAdjustAllocation(
            0, CheckedBytes(mDataAllocated + std::max<SInt64>(wanted, mDataAllocated)));
    } catch (...) {
        InternalAdjustAllocation(0, inNewStored);
    }
}

void LArray::ShiftItems(SInt32 inFromIndex, SInt32 inToIndex, SInt32 inDeltaItems, SInt32) {
    BlockMoveData(GetItemPtr(inFromIndex), GetItemPtr(inFromIndex + inDeltaItems),
                  static_cast<Size>(GrabItemRangeSize(inFromIndex, inToIndex)));
}

void LArray::InternalSwapItems(SInt32 inIndexA, SInt32 inIndexB, void* ioBuffer) {
    PeekItem(inIndexA, ioBuffer);
    InternalCopyItem(inIndexB, inIndexA);
    PokeItem(inIndexB, ioBuffer, mItemSize);
}

void LArray::InternalMoveItem(SInt32 inFromIndex, SInt32 inToIndex, void* ioBuffer) {
    const auto size = static_cast<SInt32>(mItemSize);
    PeekItem(inFromIndex, ioBuffer);
    if (inFromIndex < inToIndex)
        ShiftItems(inFromIndex + 1, inToIndex, -1, -size);
    else
        ShiftItems(inToIndex, inFromIndex - 1, 1, size);
    PokeItem(inToIndex, ioBuffer, mItemSize);
}

void LArray::InternalCopyItem(SInt32 inSourceIndex, SInt32 inDestIndex) {
    BlockMoveData(GetItemPtr(inSourceIndex), GetItemPtr(inDestIndex), static_cast<Size>(mItemSize));
}
