// The library's general container.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

class LArrayIterator;
class LComparator;

// An ordered sequence of equal-sized items in one relocatable handle.
//
// Indexes start at 1; 0 is "no item", kIndexLast the last. Sizes are bytes; a size of 0 means the
// item size. A bad index, or a change of a locked array, is answered with 0 or false; only memory
// failures throw, as LException. Iterators (see LArrayIterator.h) follow insertions and removals
// and may outlive the array.
//
// Order: a sorted array knows that it is sorted and searches by halving; one that keeps sorted puts
// every new item where it belongs and ignores the index given. Appending, overwriting, swapping and
// moving make an array unsorted again.
//
// The size-taking overloads and the protected hooks are there for derived classes whose items
// differ in size.
class VANTOR_EXPORT LArray {
  public:
    static constexpr SInt32 kIndexLast = 0x7FFFFFFF;

    LArray();  // of 4-byte items

    // `inComparator` becomes the array's own; null means signed numbers for 4-byte items, plain
    // bytes for others.
    explicit LArray(UInt32 inItemSize, LComparator* inComparator = nullptr,
                    bool inKeepSorted = false);

    // With room for `inInitialCount` items.
    LArray(UInt32 inInitialCount, UInt32 inItemSize, LComparator* inComparator, bool inKeepSorted);

    // Takes over a handle of items, which it unlocks; bytes beyond the last whole item stay unused.
    LArray(UInt32 inItemSize, Handle inItemsHandle, LComparator* inComparator, bool inIsSorted,
           bool inKeepSorted);

    // Copies have the items and the ordering, but neither the lock nor the iterators.
    LArray(const LArray& inOther);
    LArray& operator=(const LArray& inOther);  // nothing when this array is locked
    virtual ~LArray();

    virtual UInt32 GetItemSize(SInt32 inAtIndex = 1) const;
    virtual UInt32 GrabItemSize(SInt32 inAtIndex) const;

    // Copies an item out; false for a bad index. The second copies no more than `ioItemSize` bytes
    // and says how many.
    virtual Boolean FetchItemAt(SInt32 inAtIndex, void* outItem) const;
    virtual Boolean FetchItemAt(SInt32 inAtIndex, void* outItem, UInt32& ioItemSize) const;
    virtual SInt32 FetchIndexOf(const void* inItem, UInt32 inItemSize = 0) const;

    virtual SInt32 AddItem(const void* inItem, UInt32 inItemSize = 0);

    // Inserts `inCount` copies of one item, the first of them at the index returned. An index past
    // the end appends, one below 1 goes to the front. A null item leaves the new places as memory
    // was.
    virtual SInt32 InsertItemsAt(UInt32 inCount, SInt32 inAtIndex, const void* inItem,
                                 UInt32 inItemSize = 0);
    virtual void RemoveItemsAt(UInt32 inCount, SInt32 inAtIndex);
    virtual Boolean RemoveLastItem(void* outItem);
    virtual Boolean RemoveLastItem(void* outItem, UInt32& ioItemSize);

    // Overwrites up to `inCount` items with one; a sorted array takes them out and puts the new
    // ones where they belong.
    virtual SInt32 AssignItemsAt(UInt32 inCount, SInt32 inAtIndex, const void* inItem,
                                 UInt32 inItemSize = 0);

    // Neither does anything in an array that keeps sorted.
    virtual void SwapItems(SInt32 inIndexA, SInt32 inIndexB);
    virtual void MoveItem(SInt32 inFromIndex, SInt32 inToIndex);

    virtual void Remove(const void* inItem, UInt32 inItemSize = 0);  // the first equal one

    // Stays right only while the handle is locked and nothing is inserted or removed.
    virtual void* GetItemPtr(SInt32 inAtIndex) const;

    // Makes room for so many more items, or gives room back; never cuts items off.
    virtual void AdjustAllocation(UInt32 inExtraItems, UInt32 inItemSize = 0);

    virtual void Sort();
    virtual SInt32 FetchIndexOfKey(const void* inKey) const;

    // Where an item belongs; kIndexLast when the array is not sorted.
    virtual SInt32 FetchInsertIndexOf(const void* inItem, UInt32 inItemSize = 0) const;
    virtual SInt32 FetchInsertIndexOfKey(const void* inKey) const;

  protected:
    virtual void PeekItem(SInt32 inAtIndex, void* outItem) const;
    virtual void PokeItem(SInt32 inAtIndex, const void* inItem, UInt32 inItemSize);
    virtual void InternalAdjustAllocation(UInt32 inItemCount, UInt32 inBytes);
    virtual void AdjustStorage(SInt32 inDeltaItems, SInt32 inDeltaBytes);
    virtual void ShiftItems(SInt32 inFromIndex, SInt32 inToIndex, SInt32 inDeltaItems,
                            SInt32 inDeltaBytes);
    virtual void StoreNewItems(UInt32 inCount, SInt32 inAtIndex, const void* inItem,
                               UInt32 inItemSize);
    virtual void InternalSwapItems(SInt32 inIndexA, SInt32 inIndexB, void* ioBuffer);
    virtual void InternalMoveItem(SInt32 inFromIndex, SInt32 inToIndex, void* ioBuffer);
    virtual void InternalCopyItem(SInt32 inSourceIndex, SInt32 inDestIndex);
    virtual UInt32 GrabItemRangeSize(SInt32 inFromIndex, SInt32 inToIndex) const;

  public:
    // Replaces kIndexLast by the count, then tells whether the index names an item.
    Boolean ValidIndex(SInt32& ioIndex) const;
    SInt32 GetCount() const { return static_cast<SInt32>(mItemCount); }

    // Trimmed to the items; still the array's.
    Handle GetItemsHandle();

    // Counted. A locked array's items stay where they are; it refuses to grow, to shrink and to be
    // assigned to.
    void Lock() const;
    void Unlock() const;
    Boolean IsLocked() const { return mLockCount != 0; }

    void SetKeepSorted(bool inKeepSorted);                       // true sorts at once
    void SetComparator(LComparator* inComparator, bool inOwns);  // null is ignored

  protected:
    void InitArray(UInt32 inItemSize, LComparator* inComparator, bool inIsSorted,
                   bool inKeepSorted);
    void CopyArray(const LArray& inSource, bool inDestroyOld);
    void DestroyArray();
    // Whether this is a plain LArray or TArray, whose items can be reached without asking the hooks
    // that a derived class may have overridden.
    bool HasPlainItems() const;
    void SortWithHooks(void* ioScratch);
    void Grow(SInt32 inDeltaItems, UInt32 inNewStored);

    void AttachIterator(LArrayIterator* inIterator);
    void DetachIterator(LArrayIterator* inIterator);
    void ItemsInserted(UInt32 inCount, SInt32 inAtIndex);
    void ItemsRemoved(UInt32 inCount, SInt32 inAtIndex);

    SInt32 LinearSearch(const void* inItem, UInt32 inItemSize) const;
    SInt32 LinearSearchByKey(const void* inKey) const;
    SInt32 BinarySearch(const void* inItem, UInt32 inItemSize) const;
    SInt32 BinarySearchPlain(const void* inItem, UInt32 inItemSize) const;
    SInt32 BinarySearchByKey(const void* inKey) const;

    UInt32 mItemSize;
    UInt32 mItemCount;
    UInt32 mDataStored;
    UInt32 mDataAllocated;
    Handle mItemsHandle;
    mutable SInt32 mLockCount;
    LArrayIterator* mFirstIterator;
    LComparator* mComparator;
    UInt32 mOwnsComparator;
    UInt32 mIsSorted;
    UInt32 mKeepSorted;

    friend class LArrayIterator;
};

// Locks an array for a scope.
class VANTOR_EXPORT StArrayLocker {
  public:
    explicit StArrayLocker(const LArray& inArray);
    ~StArrayLocker();
    StArrayLocker(const StArrayLocker&) = delete;
    StArrayLocker& operator=(const StArrayLocker&) = delete;

  private:
    const LArray& mArray;
};
