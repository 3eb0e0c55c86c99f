// Values by key.
#include <CoreFoundation/CFDictionary.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "core_foundation/object.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

struct KeyHash {
    CFDictionaryHashCallBack hash;
    size_t operator()(const void* inKey) const {
        return hash ? hash(inKey) : std::hash<const void*>()(inKey);
    }
};

struct KeyEqual {
    CFDictionaryEqualCallBack equal;
    bool operator()(const void* inOne, const void* inOther) const {
        return inOne == inOther || (equal && equal(inOne, inOther));
    }
};

using Pairs = std::unordered_map<const void*, const void*, KeyHash, KeyEqual>;

}  // namespace

}  // namespace carbon

struct __CFDictionary : carbon::Object {
    __CFDictionary(const CFDictionaryKeyCallBacks& inKeys,
                   const CFDictionaryValueCallBacks& inValues, bool inMutable)
        : Object(carbon::kDictionaryKind),
          mKeys(inKeys),
          mValues(inValues),
          mMutable(inMutable),
          mPairs(8, carbon::KeyHash{inKeys.hash}, carbon::KeyEqual{inKeys.equal}) {}

    bool Equals(const Object& inOther) const final;
    CFHashCode Hash() const final { return static_cast<CFHashCode>(mPairs.size()); }
    std::u16string Describe() const final;

    void Add(const void* inKey, const void* inValue) {
        if (mPairs.contains(inKey)) return;
        const void* key = mKeys.retain ? mKeys.retain(nullptr, inKey) : inKey;
        mPairs.emplace(key, KeepValue(inValue));
    }
    void Change(const void* inKey, const void* inValue) {
        const auto found = mPairs.find(inKey);
        if (found == mPairs.end()) return;
        DropValue(std::exchange(found->second, KeepValue(inValue)));
    }
    void Remove(const void* inKey) {
        const auto found = mPairs.find(inKey);
        if (found == mPairs.end()) return;
        const auto pair = *found;
        mPairs.erase(found);
        Drop(pair.first, pair.second);
    }
    void Clear() {
        carbon::Pairs pairs(8, mPairs.hash_function(), mPairs.key_eq());
        pairs.swap(mPairs);
        for (const auto& [key, value] : pairs) Drop(key, value);
    }

    const CFDictionaryKeyCallBacks mKeys;
    const CFDictionaryValueCallBacks mValues;
    const bool mMutable;
    carbon::Pairs mPairs;

  protected:
    ~__CFDictionary() { Clear(); }

  private:
    const void* KeepValue(const void* inValue) const {
        return mValues.retain ? mValues.retain(nullptr, inValue) : inValue;
    }
    void DropValue(const void* inValue) const {
        if (mValues.release) mValues.release(nullptr, inValue);
    }
    void Drop(const void* inKey, const void* inValue) const {
        if (mKeys.release) mKeys.release(nullptr, inKey);
        DropValue(inValue);
    }
};

namespace carbon {

namespace {

class Dictionary final : public __CFDictionary {
  public:
    using __CFDictionary::__CFDictionary;

  private:
    void Destroy() const override { delete this; }
};

const Pairs& PairsOf(CFDictionaryRef inDictionary) {
    static const auto* none = new Pairs;
    const auto* dictionary = OfKind<__CFDictionary>(inDictionary, kDictionaryKind);
    return dictionary ? dictionary->mPairs : *none;
}

__CFDictionary* MutablePairs(CFMutableDictionaryRef inDictionary) {
    const auto* dictionary = OfKind<__CFDictionary>(inDictionary, kDictionaryKind);
    return dictionary && dictionary->mMutable ? inDictionary : nullptr;
}

__CFDictionary* NewDictionary(const CFDictionaryKeyCallBacks* inKeys,
                              const CFDictionaryValueCallBacks* inValues, bool inMutable) {
    return OrNull([&] {
        return new Dictionary(inKeys ? *inKeys : CFDictionaryKeyCallBacks{},
                              inValues ? *inValues : CFDictionaryValueCallBacks{}, inMutable);
    });
}

__CFDictionary* NewCopy(CFDictionaryRef inDictionary, bool inMutable) {
    const auto* dictionary = OfKind<__CFDictionary>(inDictionary, kDictionaryKind);
    if (!dictionary) return nullptr;
    auto* copy = NewDictionary(&dictionary->mKeys, &dictionary->mValues, inMutable);
    if (!copy) return nullptr;
    for (const auto& [key, value] : dictionary->mPairs) copy->Add(key, value);
    return copy;
}

const void* RetainObject(CFAllocatorRef, const void* inValue) {
    return CFRetain(inValue);
}
void ReleaseObject(CFAllocatorRef, const void* inValue) {
    CFRelease(inValue);
}

}  // namespace

}  // namespace carbon

bool __CFDictionary::Equals(const Object& inOther) const {
    const auto& other = static_cast<const __CFDictionary&>(inOther).mPairs;
    if (mPairs.size() != other.size()) return false;
    for (const auto& [key, value] : mPairs) {
        const auto found = other.find(key);
        if (found == other.end()) return false;
        if (!carbon::KeyEqual{mValues.equal}(value, found->second)) return false;
    }
    return true;
}

std::u16string __CFDictionary::Describe() const {
    std::u16string text = u"{";
    for (const auto& [key, value] : mPairs) {
        if (text.size() > 1) text += u", ";
        text += carbon::DescribedBy(mKeys.copyDescription, key) + u" = " +
                carbon::DescribedBy(mValues.copyDescription, value);
    }
    return text + u"}";
}

constinit const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {
    0, carbon::RetainObject, carbon::ReleaseObject, CFCopyDescription, CFEqual, CFHash};
constinit const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {
    0, carbon::RetainObject, carbon::ReleaseObject, CFCopyDescription, CFEqual};

using carbon::PairsOf;

CFTypeID CFDictionaryGetTypeID() {
    return carbon::kDictionaryKind;
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values,
                                   CFIndex numValues, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    if (numValues < 0) return nullptr;
    auto* made = carbon::NewDictionary(keyCallBacks, valueCallBacks, false);
    for (CFIndex i = 0; made && i < numValues; ++i) made->Add(keys[i], values[i]);
    return made;
}

CFDictionaryRef CFDictionaryCreateCopy(CFAllocatorRef, CFDictionaryRef theDict) {
    return carbon::NewCopy(theDict, false);
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
    return carbon::NewDictionary(keyCallBacks, valueCallBacks, true);
}

CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef, CFIndex,
                                                     CFDictionaryRef theDict) {
    return carbon::NewCopy(theDict, true);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef theDict) {
    return static_cast<CFIndex>(PairsOf(theDict).size());
}

Boolean CFDictionaryContainsKey(CFDictionaryRef theDict, const void* key) {
    return PairsOf(theDict).contains(key);
}

Boolean CFDictionaryContainsValue(CFDictionaryRef theDict, const void* value) {
    return CFDictionaryGetCountOfValue(theDict, value) > 0;
}

CFIndex CFDictionaryGetCountOfKey(CFDictionaryRef theDict, const void* key) {
    return CFDictionaryContainsKey(theDict, key) ? 1 : 0;
}

CFIndex CFDictionaryGetCountOfValue(CFDictionaryRef theDict, const void* value) {
    const auto& pairs = PairsOf(theDict);
    return static_cast<CFIndex>(std::count_if(pairs.begin(), pairs.end(), [&](const auto& pair) {
        return carbon::KeyEqual{theDict->mValues.equal}(pair.second, value);
    }));
}

const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key) {
    const void* value = nullptr;
    CFDictionaryGetValueIfPresent(theDict, key, &value);
    return value;
}

Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef theDict, const void* key,
                                      const void** value) {
    const auto& pairs = PairsOf(theDict);
    const auto found = pairs.find(key);
    if (found == pairs.end()) return false;
    if (value) *value = found->second;
    return true;
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef theDict, const void** keys, const void** values) {
    for (const auto& [key, value] : PairsOf(theDict)) {
        if (keys) *keys++ = key;
        if (values) *values++ = value;
    }
}

void CFDictionaryApplyFunction(CFDictionaryRef theDict, CFDictionaryApplierFunction applier,
                               void* context) {
    for (const auto& [key, value] : PairsOf(theDict)) applier(key, value, context);
}

void CFDictionaryAddValue(CFMutableDictionaryRef theDict, const void* key, const void* value) {
    if (__CFDictionary* dictionary = carbon::MutablePairs(theDict)) dictionary->Add(key, value);
}

void CFDictionarySetValue(CFMutableDictionaryRef theDict, const void* key, const void* value) {
    if (CFDictionaryContainsKey(theDict, key)) {
        CFDictionaryReplaceValue(theDict, key, value);
    } else {
        CFDictionaryAddValue(theDict, key, value);
    }
}

void CFDictionaryReplaceValue(CFMutableDictionaryRef theDict, const void* key, const void* value) {
    if (__CFDictionary* dictionary = carbon::MutablePairs(theDict)) dictionary->Change(key, value);
}

void CFDictionaryRemoveValue(CFMutableDictionaryRef theDict, const void* key) {
    if (__CFDictionary* dictionary = carbon::MutablePairs(theDict)) dictionary->Remove(key);
}

void CFDictionaryRemoveAllValues(CFMutableDictionaryRef theDict) {
    if (__CFDictionary* dictionary = carbon::MutablePairs(theDict)) dictionary->Clear();
}
