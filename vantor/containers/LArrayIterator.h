// Walks an array while it changes.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

class LArray;

// Stands before the first item, on an item, after the last, or where an item was that has been
// removed. Insertions and removals in the array move it along with its item. It may outlive the
// array: every call then answers false or null.
class VANTOR_EXPORT LArrayIterator {
  public:
    enum : SInt32 {
        kIterPosBeforeStart = 0,
        kIterFromEnd = -1,  // for ResetTo: after the last item
        kIterPosAfterEnd = -2,
        kIterPosCurrentRemoved = -4,
        kIterPosArrayDied = -6
    };

    // Starts on the item `inPosition`, or before the first for 0. A negative position and one past
    // the last item stand for the end.
    explicit LArrayIterator(LArray& inArray, SInt32 inPosition = kIterPosBeforeStart);
    virtual ~LArrayIterator();
    LArrayIterator(const LArrayIterator&) = delete;
    LArrayIterator& operator=(const LArrayIterator&) = delete;

    void ResetTo(SInt32 inPosition);  // as the constructor

    // Copy an item out, after a step or without one; false where there is none. The second forms
    // copy at most `ioItemSize` bytes and say how many.
    Boolean Current(void* outItem);
    Boolean Current(void* outItem, UInt32& ioItemSize);
    Boolean Next(void* outItem);
    Boolean Next(void* outItem, UInt32& ioItemSize);
    Boolean Previous(void* outItem);
    Boolean Previous(void* outItem, UInt32& ioItemSize);

    // The same in place, null where there is none; see LArray::GetItemPtr.
    void* PtrToCurrent();
    void* PtrToNext();
    void* PtrToPrevious();

    SInt32 GetCurrentIndex() const { return mCurrentIndex; }

  protected:
    void CalcNext();
    void StepForward();
    void StepBack();

    void ItemsInserted(UInt32 inCount, SInt32 inAtIndex);
    void ItemsRemoved(UInt32 inCount, SInt32 inAtIndex);
    void ArrayDied();
    bool IsArrayDead() const { return mCurrentIndex == kIterPosArrayDied; }

    LArrayIterator* mNextIterator;
    LArray& mArray;
    SInt32 mCurrentIndex;
    SInt32 mNextIndex;

    friend class LArray;
};
