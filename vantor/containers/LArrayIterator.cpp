// Owns the position of an iterator and what changes of the array do to it.
#include "vantor/containers/LArrayIterator.h"

#include "vantor/containers/LArray.h"

namespace {

// Negative positions, kIterFromEnd among them, lie beyond the end.
bool IsBeyond(SInt32 inPosition, SInt32 inCount) {
    return static_cast<UInt32>(inPosition) > static_cast<UInt32>(inCount);
}

}  // namespace

LArrayIterator::LArrayIterator(LArray& inArray, SInt32 inPosition)
    : mNextIterator(nullptr), mArray(inArray), mCurrentIndex(0), mNextIndex(0) {
    mArray.AttachIterator(this);
    ResetTo(inPosition);
}

LArrayIterator::~LArrayIterator() {
    if (!IsArrayDead()) mArray.DetachIterator(this);
}

void LArrayIterator::ResetTo(SInt32 inPosition) {
    if (IsArrayDead()) return;
    if (IsBeyond(inPosition, mArray.GetCount()))
        mCurrentIndex = kIterPosAfterEnd;
    else
        mCurrentIndex = inPosition;  // 0: before the first item
    CalcNext();
}

Boolean LArrayIterator::Current(void* outItem) {
    return !IsArrayDead() && mArray.FetchItemAt(mCurrentIndex, outItem);
}

Boolean LArrayIterator::Current(void* outItem, UInt32& ioItemSize) {
    return !IsArrayDead() && mArray.FetchItemAt(mCurrentIndex, outItem, ioItemSize);
}

Boolean LArrayIterator::Next(void* outItem) {
    StepForward();
    return Current(outItem);
}

Boolean LArrayIterator::Next(void* outItem, UInt32& ioItemSize) {
    StepForward();
    return Current(outItem, ioItemSize);
}

Boolean LArrayIterator::Previous(void* outItem) {
    StepBack();
    return Current(outItem);
}

Boolean LArrayIterator::Previous(void* outItem, UInt32& ioItemSize) {
    StepBack();
    return Current(outItem, ioItemSize);
}

void* LArrayIterator::PtrToCurrent() {
    if (IsArrayDead() || mCurrentIndex <= 0) return nullptr;
    SInt32 index = mCurrentIndex;
    return mArray.ValidIndex(index) ? mArray.GetItemPtr(index) : nullptr;
}

void* LArrayIterator::PtrToNext() {
    StepForward();
    return PtrToCurrent();
}

void* LArrayIterator::PtrToPrevious() {
    StepBack();
    return PtrToCurrent();
}

void LArrayIterator::CalcNext() {
    if (IsArrayDead()) return;
    mNextIndex = mCurrentIndex == kIterPosAfterEnd ? mCurrentIndex : mCurrentIndex + 1;
    if (IsBeyond(mNextIndex, mArray.GetCount())) mNextIndex = kIterPosAfterEnd;
}

void LArrayIterator::StepForward() {
    if (IsArrayDead()) return;
    mCurrentIndex = mNextIndex;
    CalcNext();
}

void LArrayIterator::StepBack() {
    if (IsArrayDead()) return;
    if (mCurrentIndex == kIterPosCurrentRemoved)
        mCurrentIndex = mNextIndex == kIterPosAfterEnd ? mArray.GetCount() : mNextIndex - 1;
    else if (mCurrentIndex == kIterPosAfterEnd)
        mCurrentIndex = mArray.GetCount();
    else if (mCurrentIndex > 0)
        --mCurrentIndex;
    CalcNext();
}

void LArrayIterator::ItemsInserted(UInt32 inCount, SInt32 inAtIndex) {
    const auto count = static_cast<SInt32>(inCount);
    if (mCurrentIndex == kIterPosCurrentRemoved) {
        if (inAtIndex <= mNextIndex) mNextIndex += count;
        return;
    }
    if (inAtIndex <= mCurrentIndex) mCurrentIndex += count;
    CalcNext();
}

// An iterator whose item is gone remembers which item followed it. Kept: removals before the first
// or behind the item it stands on leave the remembered next index as it is.
void LArrayIterator::ItemsRemoved(UInt32 inCount, SInt32 inAtIndex) {
    if (inAtIndex > mCurrentIndex) return;
    const auto count = static_cast<SInt32>(inCount);
    if (inAtIndex + count > mCurrentIndex) {
        mCurrentIndex = kIterPosCurrentRemoved;
        mNextIndex = inAtIndex > mArray.GetCount() ? SInt32{kIterPosAfterEnd} : inAtIndex;
        return;
    }
    mCurrentIndex -= count;
    CalcNext();
}

void LArrayIterator::ArrayDied() {
    mCurrentIndex = mNextIndex = kIterPosArrayDied;
}
