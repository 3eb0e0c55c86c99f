// Owns the life of an array and the changes to its items. Its memory is in LArray_storage.cpp, its
// order in LArray_order.cpp and LArray_sort.cpp.
#include "vantor/containers/LArray.h"

#include <algorithm>

#include "vantor/containers/LArrayIterator.h"
#include "vantor/containers/LComparator.h"
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StHandle.h"
#include "vantor/foundation/StPointer.h"

LArray::LArray() {
    InitArray(sizeof(SInt32), nullptr, true, false);
}

LArray::LArray(UInt32 inItemSize, LComparator* inComparator, bool inKeepSorted) {
    InitArray(inItemSize, inComparator, true, inKeepSorted);
}

LArray::LArray(UInt32 inInitialCount, UInt32 inItemSize, LComparator* inComparator,
               bool inKeepSorted) {
    InitArray(inItemSize, inComparator, true, inKeepSorted);
    LArray::AdjustAllocation(inInitialCount, inItemSize);
}

LArray::LArray(UInt32 inItemSize, Handle inItemsHandle, LComparator* inComparator, bool inIsSorted,
               bool inKeepSorted) {
    InitArray(inItemSize, inComparator, inIsSorted, inKeepSorted);
    HUnlock(inItemsHandle);
    mItemsHandle = inItemsHandle;
    mDataStored = mDataAllocated = static_cast<UInt32>(GetHandleSize(inItemsHandle));
    mItemCount = inItemSize == 0 ? 0 : mDataStored / inItemSize;
}

LArray::LArray(const LArray& inOther) {
    CopyArray(inOther, false);
}

LArray& LArray::operator=(const LArray& inOther) {
    if (!IsLocked() && this != &inOther) CopyArray(inOther, true);
    return *this;
}

LArray::~LArray() {
    DestroyArray();
}

void LArray::InitArray(UInt32 inItemSize, LComparator* inComparator, bool inIsSorted,
                       bool inKeepSorted) {
    mItemSize = inItemSize;
    mItemCount = mDataStored = mDataAllocated = 0;
    mItemsHandle = nullptr;
    mLockCount = 0;
    mFirstIterator = nullptr;
    mComparator = inComparator;
    mOwnsComparator = true;
    mIsSorted = inIsSorted;
    mKeepSorted = inKeepSorted;
    if (inComparator != nullptr) return;
    mOwnsComparator = false;
    if (inItemSize == sizeof(SInt32))
        mComparator = LLongComparator::GetComparator();
    else
        mComparator = LComparator::GetComparator();
}

// Everything that can fail comes before the old contents go.
void LArray::CopyArray(const LArray& inSource, bool inDestroyOld) {
    StHandleBlock items(Handle(nullptr));
    if (inSource.mDataStored > 0) {
        items.Adopt(NewHandle(static_cast<Size>(inSource.mDataStored)));
        ThrowIfError(MemError());
        BlockMoveData(*inSource.mItemsHandle, *items.Get(),
                      static_cast<Size>(inSource.mDataStored));
    }
    LComparator* comparator =
        inSource.mOwnsComparator ? inSource.mComparator->Clone() : inSource.mComparator;

    if (inDestroyOld) DestroyArray();
    InitArray(inSource.mItemSize, comparator, inSource.mIsSorted, inSource.mKeepSorted);
    mOwnsComparator = inSource.mOwnsComparator;
    mItemCount = inSource.mItemCount;
    mDataStored = mDataAllocated = inSource.mDataStored;
    mItemsHandle = items.Release();
}

void LArray::DestroyArray() {
    if (mOwnsComparator) delete mComparator;
    mComparator = nullptr;
    if (mItemsHandle != nullptr) DisposeHandle(mItemsHandle);
    mItemsHandle = nullptr;
    for (LArrayIterator* iterator = mFirstIterator; iterator != nullptr;
         iterator = iterator->mNextIterator)
        iterator->ArrayDied();
    mFirstIterator = nullptr;
}

UInt32 LArray::GetItemSize(SInt32) const {
    return mItemSize;
}

UInt32 LArray::GrabItemSize(SInt32) const {
    return mItemSize;
}

UInt32 LArray::GrabItemRangeSize(SInt32 inFromIndex, SInt32 inToIndex) const {
    return static_cast<UInt32>(inToIndex - inFromIndex + 1) * mItemSize;
}

namespace {

inline bool NamesAnItem(SInt32& ioIndex, UInt32 inCount) {
    if (ioIndex == LArray::kIndexLast) ioIndex = static_cast<SInt32>(inCount);
    return ioIndex >= 1 && static_cast<UInt32>(ioIndex) <= inCount;
}

}  // namespace

Boolean LArray::ValidIndex(SInt32& ioIndex) const {
    return NamesAnItem(ioIndex, mItemCount);
}

Boolean LArray::FetchItemAt(SInt32 inAtIndex, void* outItem) const {
    if (!NamesAnItem(inAtIndex, mItemCount)) return false;
    PeekItem(inAtIndex, outItem);
    return true;
}

Boolean LArray::FetchItemAt(SInt32 inAtIndex, void* outItem, UInt32& ioItemSize) const {
    if (!ValidIndex(inAtIndex)) {
        ioItemSize = 0;
        return false;
    }
    const UInt32 itemSize = GetItemSize(inAtIndex);
    if (itemSize == ioItemSize) {
        PeekItem(inAtIndex, outItem);
    } else {
        ioItemSize = std::min(itemSize, ioItemSize);
        BlockMoveData(GetItemPtr(inAtIndex), outItem, static_cast<Size>(ioItemSize));
    }
    return true;
}

SInt32 LArray::AddItem(const void* inItem, UInt32 inItemSize) {
    if (mKeepSorted) return InsertItemsAt(1, 0, inItem, inItemSize);
    if (IsLocked()) return 0;
    const UInt32 size = inItemSize == 0 ? mItemSize : inItemSize;
    AdjustStorage(1, static_cast<SInt32>(size));
    const SInt32 index = GetCount();
    if (inItem != nullptr) PokeItem(index, inItem, size);
    if (mFirstIterator != nullptr) ItemsInserted(1, index);
    mIsSorted = false;
    return index;
}

SInt32 LArray::InsertItemsAt(UInt32 inCount, SInt32 inAtIndex, const void* inItem,
                             UInt32 inItemSize) {
    if (inCount == 0 || IsLocked() || (mKeepSorted && inItem == nullptr)) return 0;
    if (inCount > UInt32{kIndexLast} - mItemCount) LException::Throw(memFullErr);
    SInt32 index = inAtIndex;
    if (mKeepSorted) {
        Sort();
        index = FetchInsertIndexOf(inItem, inItemSize);
    }
    const SInt32 oldCount = GetCount();
    index = std::clamp(index, SInt32{1}, oldCount + 1);
    const auto count = static_cast<SInt32>(inCount);
    const UInt32 size = inItemSize == 0 ? mItemSize : inItemSize;
    const auto bytes = static_cast<SInt32>(inCount * size);
    AdjustStorage(count, bytes);
    if (index <= oldCount) ShiftItems(index, oldCount, count, bytes);
    mIsSorted = mKeepSorted;
    StoreNewItems(inCount, index, inItem, size);
    ItemsInserted(inCount, index);
    return index;
}

void LArray::RemoveItemsAt(UInt32 inCount, SInt32 inAtIndex) {
    if (IsLocked() || !ValidIndex(inAtIndex)) return;
    const UInt32 most = mItemCount - static_cast<UInt32>(inAtIndex) + 1;
    const auto count = static_cast<SInt32>(std::min(inCount, most));
    const auto bytes = static_cast<SInt32>(GrabItemRangeSize(inAtIndex, inAtIndex + count - 1));
    if (inAtIndex + count <= GetCount()) ShiftItems(inAtIndex + count, GetCount(), -count, -bytes);
    AdjustStorage(-count, -bytes);
    ItemsRemoved(static_cast<UInt32>(count), inAtIndex);
}

Boolean LArray::RemoveLastItem(void* outItem) {
    if (mItemCount == 0 || IsLocked()) return false;
    FetchItemAt(kIndexLast, outItem);
    RemoveItemsAt(1, kIndexLast);
    return true;
}

Boolean LArray::RemoveLastItem(void* outItem, UInt32& ioItemSize) {
    if (mItemCount == 0 || IsLocked()) return false;
    FetchItemAt(kIndexLast, outItem, ioItemSize);
    RemoveItemsAt(1, kIndexLast);
    return true;
}

void LArray::Remove(const void* inItem, UInt32 inItemSize) {
    const SInt32 index = FetchIndexOf(inItem, inItemSize);
    if (index != 0) RemoveItemsAt(1, index);
}

SInt32 LArray::AssignItemsAt(UInt32 inCount, SInt32 inAtIndex, const void* inItem,
                             UInt32 inItemSize) {
    if (inCount == 0 || !ValidIndex(inAtIndex)) return 0;
    if (mKeepSorted) {
        RemoveItemsAt(inCount, inAtIndex);
        return InsertItemsAt(inCount, inAtIndex, inItem, inItemSize);
    }
    const UInt32 most = mItemCount - static_cast<UInt32>(inAtIndex) + 1;
    StoreNewItems(std::min(inCount, most), inAtIndex, inItem,
                  inItemSize == 0 ? mItemSize : inItemSize);
    mIsSorted = false;
    return inAtIndex;
}

void LArray::SwapItems(SInt32 inIndexA, SInt32 inIndexB) {
    if (mKeepSorted || !ValidIndex(inIndexA) || !ValidIndex(inIndexB)) return;
    StPointerBlock buffer(static_cast<SInt32>(mItemSize));
    InternalSwapItems(inIndexA, inIndexB, buffer.Get());
    mIsSorted = false;
}

void LArray::MoveItem(SInt32 inFromIndex, SInt32 inToIndex) {
    if (mKeepSorted || !ValidIndex(inFromIndex) || !ValidIndex(inToIndex) ||
        inFromIndex == inToIndex)
        return;
    StPointerBlock buffer(static_cast<SInt32>(mItemSize));
    InternalMoveItem(inFromIndex, inToIndex, buffer.Get());
    mIsSorted = false;
}

void LArray::Lock() const {
    if (mLockCount++ == 0 && mItemsHandle != nullptr) HLock(mItemsHandle);
}

void LArray::Unlock() const {
    if (--mLockCount == 0 && mItemsHandle != nullptr) HUnlock(mItemsHandle);
}

void LArray::SetKeepSorted(bool inKeepSorted) {
    mKeepSorted = inKeepSorted;
    if (inKeepSorted) Sort();
}

void LArray::SetComparator(LComparator* inComparator, bool inOwns) {
    if (inComparator == nullptr) return;
    if (mOwnsComparator && mComparator != inComparator) delete mComparator;
    mComparator = inComparator;
    mOwnsComparator = inOwns;
    if (mItemCount > 1) mIsSorted = false;
    if (mKeepSorted) Sort();
}

void LArray::AttachIterator(LArrayIterator* inIterator) {
    inIterator->mNextIterator = mFirstIterator;
    mFirstIterator = inIterator;
}

void LArray::DetachIterator(LArrayIterator* inIterator) {
    LArrayIterator** link = &mFirstIterator;
    while (*link != nullptr && *link != inIterator) link = &(*link)->mNextIterator;
    if (*link != nullptr) *link = inIterator->mNextIterator;
}

void LArray::ItemsInserted(UInt32 inCount, SInt32 inAtIndex) {
    for (LArrayIterator* iterator = mFirstIterator; iterator != nullptr;
         iterator = iterator->mNextIterator)
        iterator->ItemsInserted(inCount, inAtIndex);
}

void LArray::ItemsRemoved(UInt32 inCount, SInt32 inAtIndex) {
    for (LArrayIterator* iterator = mFirstIterator; iterator != nullptr;
         iterator = iterator->mNextIterator)
        iterator->ItemsRemoved(inCount, inAtIndex);
}

StArrayLocker::StArrayLocker(const LArray& inArray) : mArray(inArray) {
    mArray.Lock();
}

StArrayLocker::~StArrayLocker() {
    mArray.Unlock();
}
