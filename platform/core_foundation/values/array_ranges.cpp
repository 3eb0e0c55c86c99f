// Ranges of arrays: counting, searching, sorting and replacing their values.
#include <algorithm>

#include "core_foundation/strings/string_object.h"
#include "core_foundation/values/array_object.h"

namespace carbon {

namespace {

using Values = std::vector<const void*>;

// The values of a range, cut to the array.
std::pair<Values::const_iterator, Values::const_iterator> Part(CFArrayRef inArray,
                                                               const CFRange& inRange) {
    const Values& values = ValuesOf(inArray);
    const CFRange range = Clip(inRange, values.size());
    const auto start = values.begin() + range.location;
    return {start, start + range.length};
}

// Keeps the new values before the old ones go, which may be the same.
void Replace(__CFArray* ioArray, const CFRange& inRange, const Values& inValues) {
    const CFRange range = Clip(inRange, ioArray->mValues.size());
    const auto start = ioArray->mValues.begin() + range.location;
    const Values before(start, start + range.length);
    Values after = inValues;
    for (const void*& value : after) value = ioArray->Keep(value);
    ioArray->mValues.insert(ioArray->mValues.erase(start, start + range.length), after.begin(),
                            after.end());
    for (const void* value : before) ioArray->Drop(value);
}

}  // namespace

}  // namespace carbon

using carbon::MutableArray;
using carbon::ValuesOf;

CFIndex CFArrayGetCountOfValue(CFArrayRef theArray, CFRange range, const void* value) {
    const auto [start, end] = carbon::Part(theArray, range);
    return static_cast<CFIndex>(std::count_if(
        start, end, [&](const void* other) { return theArray->AreSame(other, value); }));
}

CFIndex CFArrayGetLastIndexOfValue(CFArrayRef theArray, CFRange range, const void* value) {
    const auto [start, end] = carbon::Part(theArray, range);
    for (auto place = end; place != start;) {
        if (theArray->AreSame(*--place, value)) {
            return static_cast<CFIndex>(place - ValuesOf(theArray).begin());
        }
    }
    return kCFNotFound;
}

CFIndex CFArrayBSearchValues(CFArrayRef theArray, CFRange range, const void* value,
                             CFComparatorFunction comparator, void* context) {
    const auto [start, end] = carbon::Part(theArray, range);
    const auto isBefore = [&](const void* inOne, const void* inOther) {
        return comparator(inOne, inOther, context) == kCFCompareLessThan;
    };
    return static_cast<CFIndex>(std::lower_bound(start, end, value, isBefore) -
                                ValuesOf(theArray).begin());
}

void CFArrayExchangeValuesAtIndices(CFMutableArrayRef theArray, CFIndex idx1, CFIndex idx2) {
    const CFIndex last = CFArrayGetCount(theArray) - 1;
    __CFArray* array = MutableArray(theArray, idx1, last);
    if (!array || !MutableArray(theArray, idx2, last)) return;
    std::swap(array->mValues[static_cast<size_t>(idx1)], array->mValues[static_cast<size_t>(idx2)]);
}

void CFArrayAppendArray(CFMutableArrayRef theArray, CFArrayRef otherArray, CFRange otherRange) {
    __CFArray* array = MutableArray(theArray, 0, 0);
    if (!array) return;
    const auto [start, end] = carbon::Part(otherArray, otherRange);
    const carbon::Values values(start, end);
    carbon::Replace(array, {CFArrayGetCount(theArray), 0}, values);
}

void CFArrayReplaceValues(CFMutableArrayRef theArray, CFRange range, const void** newValues,
                          CFIndex newCount) {
    __CFArray* array = MutableArray(theArray, 0, 0);
    if (!array || newCount < 0) return;
    carbon::Replace(array, range, carbon::Values(newValues, newValues + newCount));
}

void CFArraySortValues(CFMutableArrayRef theArray, CFRange range, CFComparatorFunction comparator,
                       void* context) {
    __CFArray* array = MutableArray(theArray, 0, 0);
    if (!array) return;
    const CFRange part = carbon::Clip(range, array->mValues.size());
    const auto start = array->mValues.begin() + part.location;
    std::stable_sort(start, start + part.length, [&](const void* inOne, const void* inOther) {
        return comparator(inOne, inOther, context) == kCFCompareLessThan;
    });
}
