// Owns searching.
#include "vantor/containers/LArray.h"
#include "vantor/containers/LComparator.h"
#include "vantor/foundation/StHandle.h"

SInt32 LArray::FetchIndexOf(const void* inItem, UInt32 inItemSize) const {
    if (mItemCount == 0) return 0;
    const UInt32 size = inItemSize == 0 ? mItemSize : inItemSize;
    return mIsSorted ? BinarySearch(inItem, size) : LinearSearch(inItem, size);
}

SInt32 LArray::FetchIndexOfKey(const void* inKey) const {
    if (mItemCount == 0) return 0;
    return mIsSorted ? BinarySearchByKey(inKey) : LinearSearchByKey(inKey);
}

namespace {

// The end of a search by halving: the last item looked at and how it compared with what is sought.
struct Halving {
    SInt32 middle = 0;
    SInt32 compared = -1;
};

template <typename CompareAt>
Halving SearchByHalving(SInt32 inCount, CompareAt inCompareAt) {
    Halving result;
    SInt32 low = 1, high = inCount;
    while (low <= high) {
        result.middle = low + (high - low) / 2;
        result.compared = inCompareAt(result.middle);
        if (result.compared == 0) break;
        if (result.compared > 0)
            high = result.middle - 1;
        else
            low = result.middle + 1;
    }
    return result;
}

SInt32 InsertPlace(const Halving& inResult) {
    return inResult.compared >= 0 ? inResult.middle : inResult.middle + 1;
}

}  // namespace

SInt32 LArray::BinarySearch(const void* inItem, UInt32 inItemSize) const {
    StArrayLocker lock(*this);
    if (mItemCount > 0 && HasPlainItems()) return BinarySearchPlain(inItem, inItemSize);
    const Halving result = SearchByHalving(GetCount(), [&](SInt32 inIndex) {
        return mComparator->Compare(GetItemPtr(inIndex), inItem, GetItemSize(inIndex), inItemSize);
    });
    return result.compared == 0 ? result.middle : 0;
}

SInt32 LArray::BinarySearchPlain(const void* inItem, UInt32 inItemSize) const {
    const char* const items = *mItemsHandle;
    const Halving result = SearchByHalving(GetCount(), [&](SInt32 inIndex) {
        const char* const item = items + size_t{mItemSize} * static_cast<size_t>(inIndex - 1);
        return mComparator->Compare(item, inItem, mItemSize, inItemSize);
    });
    return result.compared == 0 ? result.middle : 0;
}

SInt32 LArray::BinarySearchByKey(const void* inKey) const {
    StArrayLocker lock(*this);
    const Halving result = SearchByHalving(GetCount(), [&](SInt32 inIndex) {
        return mComparator->CompareToKey(GetItemPtr(inIndex), GetItemSize(inIndex), inKey);
    });
    return result.compared == 0 ? result.middle : 0;
}

SInt32 LArray::FetchInsertIndexOf(const void* inItem, UInt32 inItemSize) const {
    if (!mIsSorted || inItem == nullptr) return kIndexLast;
    const UInt32 size = inItemSize == 0 ? mItemSize : inItemSize;
    StArrayLocker lock(*this);
    return InsertPlace(SearchByHalving(GetCount(), [&](SInt32 inIndex) {
        return mComparator->Compare(GetItemPtr(inIndex), inItem, GetItemSize(inIndex), size);
    }));
}

SInt32 LArray::FetchInsertIndexOfKey(const void* inKey) const {
    if (!mIsSorted || inKey == nullptr) return kIndexLast;
    StArrayLocker lock(*this);
    return InsertPlace(SearchByHalving(GetCount(), [&](SInt32 inIndex) {
        return mComparator->CompareToKey(GetItemPtr(inIndex), GetItemSize(inIndex), inKey);
    }));
}

SInt32 LArray::LinearSearch(const void* inItem, UInt32 inItemSize) const {
    StHandleLocker lock(mItemsHandle);
    const char* item = static_cast<const char*>(GetItemPtr(1));
    for (SInt32 i = 1; i <= GetCount(); ++i) {
        const UInt32 size = GetItemSize(i);
        if (mComparator->IsEqualTo(inItem, item, inItemSize, size)) return i;
        item += size;
    }
    return 0;
}

SInt32 LArray::LinearSearchByKey(const void* inKey) const {
    StHandleLocker lock(mItemsHandle);
    const char* item = static_cast<const char*>(GetItemPtr(1));
    for (SInt32 i = 1; i <= GetCount(); ++i) {
        const UInt32 size = GetItemSize(i);
        if (mComparator->IsEqualToKey(item, size, inKey)) return i;
        item += size;
    }
    return 0;
}
