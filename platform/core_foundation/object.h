// What every object has: a kind, a count that any thread may change, and a meaning to compare.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <new>
#include <string>

namespace carbon {

enum Kind : CFTypeID {
    kNoKind,
    kAllocatorKind,
    kStringKind,
    kDataKind,
    kNumberKind,
    kBooleanKind,
    kDateKind,
    kArrayKind,
    kDictionaryKind,
    kUrlKind,
    kBundleKind,
    kNullKind,
    kLocaleKind,
    kTimeZoneKind,
    kDateFormatterKind,
    kKindCount
};

// The count of constants: it never changes.
constexpr SInt32 kImmortal = 0x7FFFFFFF;

// Single inheritance only: a CFTypeRef is the address of the Object in it. Objects end in Destroy,
// so that constants have no destructor to run at exit.
class Object {
  public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    Kind GetKind() const { return mKind; }
    SInt32 Count() const { return mCount.load(std::memory_order_relaxed); }
    void Retain() const;
    void Release() const;

    // For tables of living objects: false when the last reference is already gone.
    bool RetainIfAlive() const;

    // inOther is of the same kind.
    virtual bool Equals(const Object& inOther) const { return this == &inOther; }
    virtual CFHashCode Hash() const;
    virtual std::u16string Describe() const = 0;

  protected:
    constexpr explicit Object(Kind inKind, SInt32 inCount = 1) : mCount(inCount), mKind(inKind) {}
    ~Object() = default;

  private:
    virtual void Destroy() const = 0;

    mutable std::atomic<SInt32> mCount;
    Kind mKind;
};

const Object& AsObject(CFTypeRef inObject);

// The object as what it is taken for; null when it is of another kind. A null object stops the
// program, as a wild pointer would.
template <typename T>
const T* OfKind(CFTypeRef inObject, Kind inKind) {
    return AsObject(inObject).GetKind() == inKind ? static_cast<const T*>(inObject) : nullptr;
}

bool AreEqual(CFTypeRef inOne, CFTypeRef inOther);
std::u16string DescriptionOf(CFTypeRef inObject);

// A value of a container, by the container's callback or, without one, by its address.
std::u16string DescribedBy(CFStringRef (*inCopyDescription)(const void*), const void* inValue);

// A hash of bytes with the width the interface has.
CFHashCode HashOfBytes(const void* inBytes, size_t inSize);

// What inMake makes, or null when there is no memory for it.
template <typename F>
auto OrNull(F inMake) -> decltype(inMake()) {
    try {
        return inMake();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

// One reference, given back at the end.
template <typename Ref>
class Owned {
  public:
    Owned() = default;
    explicit Owned(Ref inOwned) : mRef(inOwned) {}
    Owned(Owned&& inOther) noexcept : mRef(inOther.Detach()) {}
    Owned& operator=(Owned&& inOther) noexcept {
        if (this != &inOther) Reset(inOther.Detach());
        return *this;
    }
    ~Owned() { Reset(nullptr); }

    static Owned Share(Ref inLent) {
        if (inLent) AsObject(inLent).Retain();
        return Owned(inLent);
    }
    Ref Get() const { return mRef; }
    explicit operator bool() const { return mRef != nullptr; }
    Ref Detach() {
        Ref ref = mRef;
        mRef = nullptr;
        return ref;
    }

  private:
    void Reset(Ref inRef) {
        if (mRef) AsObject(mRef).Release();
        mRef = inRef;
    }

    Ref mRef = nullptr;
};

}  // namespace carbon
