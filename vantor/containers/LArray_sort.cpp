// Owns sorting: a Shell sort with the gaps 1, 4, 13, 40, ... that takes a short way for plain
// items.
#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>
#include <typeinfo>

#include "vantor/containers/LArray.h"
#include "vantor/containers/LComparator.h"
#include "vantor/foundation/StHandle.h"
#include "vantor/foundation/StPointer.h"

namespace {

SInt32 FirstGap(SInt32 inCount) {
    SInt32 gap = 1;
    while (gap < inCount / 9) gap = 3 * gap + 1;
    return gap;
}

// An item of a size that the compiler knows.
template <size_t inSize>
struct Bytes {
    char bytes[inSize];
};

template <typename Item>
Item Load(const char* inPlace) {
    Item item;
    std::memcpy(&item, inPlace, sizeof item);
    return item;
}

// `inIsBefore` is asked about the item on its way and one of those it may pass.
template <typename Item, typename IsBefore>
void ShellSort(char* ioItems, size_t inCount, IsBefore inIsBefore) {
    char* const items = ioItems - sizeof(Item);  // items are numbered from 1
    for (auto gap = static_cast<size_t>(FirstGap(static_cast<SInt32>(inCount))); gap > 0;
         gap /= 3) {
        const size_t step = gap * sizeof(Item);
        for (size_t i = gap + 1; i <= inCount; ++i) {
            char* place = items + i * sizeof(Item);
            const Item item = Load<Item>(place);
            for (size_t j = i; j > gap && inIsBefore(item, place - step); j -= gap) {
                std::memcpy(place, place - step, sizeof(Item));
                place -= step;
            }
            std::memcpy(place, &item, sizeof(Item));
        }
    }
}

// The order of bytes, as a number to compare.
UInt64 ByteOrder(const Bytes<8>& inItem) {
    UInt64 number;
    std::memcpy(&number, &inItem, sizeof number);
    return std::endian::native == std::endian::little ? __builtin_bswap64(number) : number;
}

void SortNumbers(char* ioItems, size_t inCount) {
    ShellSort<SInt32>(ioItems, inCount, [](SInt32 inItem, const char* inOther) {
        // The wrapping difference of LLongComparator.
        const auto other = static_cast<UInt32>(Load<SInt32>(inOther));
        return static_cast<SInt32>(static_cast<UInt32>(inItem) - other) < 0;
    });
}

void SortBytes(char* ioItems, size_t inCount) {
    ShellSort<Bytes<8>>(ioItems, inCount, [](const Bytes<8>& inItem, const char* inOther) {
        return ByteOrder(inItem) < ByteOrder(Load<Bytes<8>>(inOther));
    });
}

template <size_t inSize>
void SortBy(const LComparator& inComparator, char* ioItems, size_t inCount) {
    ShellSort<Bytes<inSize>>(ioItems, inCount,
                             [&](const Bytes<inSize>& inItem, const char* inOther) {
                                 return inComparator.Compare(&inItem, inOther, inSize, inSize) < 0;
                             });
}

// False for sizes that are not worth a sort of their own.
bool SortPlain(const LComparator& inComparator, UInt32 inSize, char* ioItems, size_t inCount) {
    const std::type_info& kind = typeid(inComparator);
    if (inSize == 4 && kind == typeid(LLongComparator)) {
        SortNumbers(ioItems, inCount);
    } else if (inSize == 8 && kind == typeid(LComparator)) {
        SortBytes(ioItems, inCount);
    } else if (inSize == 4) {
        SortBy<4>(inComparator, ioItems, inCount);
    } else if (inSize == 8) {
        SortBy<8>(inComparator, ioItems, inCount);
    } else if (inSize == 16) {
        SortBy<16>(inComparator, ioItems, inCount);
    } else {
        return false;
    }
    return true;
}

}  // namespace

// The typed arrays have one name each, "6TArrayI...".
bool LArray::HasPlainItems() const {
    const std::type_info& kind = typeid(*this);
    return kind == typeid(LArray) || std::string_view(kind.name()).starts_with("6TArrayI");
}

void LArray::Sort() {
    if (!mIsSorted && mItemCount > 1) {
        const StPointerBlock scratch(static_cast<SInt32>(mItemSize));
        const StHandleLocker lock(mItemsHandle);
        if (!HasPlainItems() || !SortPlain(*mComparator, mItemSize, *mItemsHandle, mItemCount))
            SortWithHooks(scratch.Get());
    }
    mIsSorted = true;
}

void LArray::SortWithHooks(void* ioScratch) {
    const SInt32 count = GetCount();
    for (SInt32 gap = FirstGap(count); gap > 0; gap /= 3) {
        for (SInt32 i = gap + 1; i <= count; ++i) {
            PeekItem(i, ioScratch);
            SInt32 j = i - gap;
            for (;
                 j > 0 && mComparator->Compare(ioScratch, GetItemPtr(j), mItemSize, mItemSize) < 0;
                 j -= gap)
                PokeItem(j + gap, GetItemPtr(j), mItemSize);
            PokeItem(j + gap, ioScratch, mItemSize);
        }
    }
}
