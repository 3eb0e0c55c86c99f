// An array as an object.
#pragma once

#include <CoreFoundation/CFArray.h>

#include <utility>
#include <vector>

#include "core_foundation/object.h"

struct __CFArray : carbon::Object {
    __CFArray(const CFArrayCallBacks* inCallBacks, bool inMutable)
        : Object(carbon::kArrayKind),
          mCallBacks(inCallBacks ? *inCallBacks : CFArrayCallBacks{}),
          mMutable(inMutable) {}

    bool Equals(const Object& inOther) const final;
    CFHashCode Hash() const final { return static_cast<CFHashCode>(mValues.size()); }
    std::u16string Describe() const final;

    bool AreSame(const void* inOne, const void* inOther) const {
        return inOne == inOther || (mCallBacks.equal && mCallBacks.equal(inOne, inOther));
    }
    void Insert(size_t inIndex, const void* inValue) {
        mValues.insert(mValues.begin() + static_cast<ptrdiff_t>(inIndex), nullptr);
        mValues[inIndex] = Keep(inValue);
    }
    const void* Keep(const void* inValue) const {
        return mCallBacks.retain ? mCallBacks.retain(nullptr, inValue) : inValue;
    }
    void Drop(const void* inValue) const {
        if (mCallBacks.release) mCallBacks.release(nullptr, inValue);
    }
    void Clear() {
        std::vector<const void*> values;
        values.swap(mValues);
        for (const void* value : values) Drop(value);
    }

    const CFArrayCallBacks mCallBacks;
    const bool mMutable;
    std::vector<const void*> mValues;

  protected:
    ~__CFArray() { Clear(); }
};

namespace carbon {

// The values; none for an object that is no array.
const std::vector<const void*>& ValuesOf(CFArrayRef inArray);

// Null when the array cannot change or the index is not from 0 to inLast.
__CFArray* MutableArray(CFMutableArrayRef inArray, CFIndex inIndex, CFIndex inLast);

}  // namespace carbon
