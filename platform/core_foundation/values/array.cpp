// Sequences.
#include "core_foundation/values/array_object.h"

#include <algorithm>

#include "core_foundation/internal.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

class Array final : public __CFArray {
  public:
    using __CFArray::__CFArray;

  private:
    void Destroy() const override { delete this; }
};

using Values = std::vector<const void*>;

CFIndex Count(CFArrayRef inArray) {
    return static_cast<CFIndex>(ValuesOf(inArray).size());
}

__CFArray* NewArray(const Values& inValues, const CFArrayCallBacks* inCallBacks, bool inMutable) {
    return OrNull([&] {
        auto* array = new Array(inCallBacks, inMutable);
        Owned<CFArrayRef> guard(array);
        array->mValues.reserve(inValues.size());
        for (const void* value : inValues) array->mValues.push_back(array->Keep(value));
        guard.Detach();
        return array;
    });
}

CFIndex FirstIndex(CFArrayRef inArray, const CFRange& inRange, const void* inValue) {
    const Values& values = ValuesOf(inArray);
    const CFRange range = Clip(inRange, values.size());
    const auto start = values.begin() + range.location;
    const auto found = std::find_if(start, start + range.length, [&](const void* value) {
        return inArray->AreSame(value, inValue);
    });
    return found == start + range.length ? kCFNotFound
                                         : static_cast<CFIndex>(found - values.begin());
}

const void* RetainObject(CFAllocatorRef, const void* inValue) {
    return CFRetain(inValue);
}
void ReleaseObject(CFAllocatorRef, const void* inValue) {
    CFRelease(inValue);
}

}  // namespace

const Values& ValuesOf(CFArrayRef inArray) {
    static const auto* none = new Values;
    const auto* array = OfKind<__CFArray>(inArray, kArrayKind);
    return array ? array->mValues : *none;
}

__CFArray* MutableArray(CFMutableArrayRef inArray, CFIndex inIndex, CFIndex inLast) {
    const auto* array = OfKind<__CFArray>(inArray, kArrayKind);
    return array && array->mMutable && inIndex >= 0 && inIndex <= inLast ? inArray : nullptr;
}

}  // namespace carbon

bool __CFArray::Equals(const Object& inOther) const {
    const auto& other = static_cast<const __CFArray&>(inOther).mValues;
    return std::equal(mValues.begin(), mValues.end(), other.begin(), other.end(),
                      [this](const void* a, const void* b) { return AreSame(a, b); });
}

std::u16string __CFArray::Describe() const {
    std::u16string text = u"(";
    for (const void* value : mValues) {
        if (text.size() > 1) text += u", ";
        text += carbon::DescribedBy(mCallBacks.copyDescription, value);
    }
    return text + u")";
}

constinit const CFArrayCallBacks kCFTypeArrayCallBacks = {
    0, carbon::RetainObject, carbon::ReleaseObject, CFCopyDescription, CFEqual};

using carbon::ValuesOf;

CFTypeID CFArrayGetTypeID() {
    return carbon::kArrayKind;
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex numValues,
                         const CFArrayCallBacks* callBacks) {
    if (numValues < 0) return nullptr;
    return carbon::OrNull([&] {
        return carbon::NewArray(carbon::Values(values, values + numValues), callBacks, false);
    });
}

CFArrayRef CFArrayCreateCopy(CFAllocatorRef, CFArrayRef theArray) {
    if (!carbon::OfKind<__CFArray>(theArray, carbon::kArrayKind)) return nullptr;
    if (!theArray->mMutable) return static_cast<CFArrayRef>(CFRetain(theArray));
    return carbon::NewArray(theArray->mValues, &theArray->mCallBacks, false);
}

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef, CFIndex, const CFArrayCallBacks* callBacks) {
    return carbon::NewArray({}, callBacks, true);
}

CFMutableArrayRef CFArrayCreateMutableCopy(CFAllocatorRef, CFIndex, CFArrayRef theArray) {
    if (!carbon::OfKind<__CFArray>(theArray, carbon::kArrayKind)) return nullptr;
    return carbon::NewArray(theArray->mValues, &theArray->mCallBacks, true);
}

CFIndex CFArrayGetCount(CFArrayRef theArray) {
    return carbon::Count(theArray);
}

const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx) {
    const auto& values = ValuesOf(theArray);
    const bool exists = idx >= 0 && static_cast<size_t>(idx) < values.size();
    return exists ? values[static_cast<size_t>(idx)] : nullptr;
}

void CFArrayGetValues(CFArrayRef theArray, CFRange range, const void** values) {
    const CFRange part = carbon::Clip(range, ValuesOf(theArray).size());
    std::copy_n(ValuesOf(theArray).begin() + part.location, part.length, values);
}

Boolean CFArrayContainsValue(CFArrayRef theArray, CFRange range, const void* value) {
    return carbon::FirstIndex(theArray, range, value) != kCFNotFound;
}

CFIndex CFArrayGetFirstIndexOfValue(CFArrayRef theArray, CFRange range, const void* value) {
    return carbon::FirstIndex(theArray, range, value);
}

void CFArrayApplyFunction(CFArrayRef theArray, CFRange range, CFArrayApplierFunction applier,
                          void* context) {
    const CFRange part = carbon::Clip(range, ValuesOf(theArray).size());
    for (CFIndex i = 0; i < part.length; ++i) {
        applier(CFArrayGetValueAtIndex(theArray, part.location + i), context);
    }
}

void CFArrayAppendValue(CFMutableArrayRef theArray, const void* value) {
    CFArrayInsertValueAtIndex(theArray, carbon::Count(theArray), value);
}

void CFArrayInsertValueAtIndex(CFMutableArrayRef theArray, CFIndex idx, const void* value) {
    if (__CFArray* array = carbon::MutableArray(theArray, idx, carbon::Count(theArray))) {
        array->Insert(static_cast<size_t>(idx), value);
    }
}

void CFArraySetValueAtIndex(CFMutableArrayRef theArray, CFIndex idx, const void* value) {
    const CFIndex count = carbon::Count(theArray);
    if (idx == count) return CFArrayAppendValue(theArray, value);
    __CFArray* array = carbon::MutableArray(theArray, idx, count - 1);
    if (!array) return;
    const void* before =
        std::exchange(array->mValues[static_cast<size_t>(idx)], array->Keep(value));
    array->Drop(before);
}

void CFArrayRemoveValueAtIndex(CFMutableArrayRef theArray, CFIndex idx) {
    __CFArray* array = carbon::MutableArray(theArray, idx, carbon::Count(theArray) - 1);
    if (!array) return;
    const void* before = array->mValues[static_cast<size_t>(idx)];
    array->mValues.erase(array->mValues.begin() + idx);
    array->Drop(before);
}

void CFArrayRemoveAllValues(CFMutableArrayRef theArray) {
    if (__CFArray* array = carbon::MutableArray(theArray, 0, 0)) array->Clear();
}
