// The calls that every object understands.
#include "core_foundation/object.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>

#include "core_foundation/internal.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

// A container that holds itself is described this deep.
constexpr int kDeepestDescription = 16;
thread_local int gDescriptionDepth = 0;

constexpr const char16_t* kKindNames[kKindCount] = {
    nullptr,      u"CFAllocator", u"CFString", u"CFData",       u"CFNumber",
    u"CFBoolean", u"CFDate",      u"CFArray",  u"CFDictionary", u"CFURL",
    u"CFBundle",  u"CFNull",      u"CFLocale", u"CFTimeZone",   u"CFDateFormatter"};

CFStringRef Address(const void* inPointer) {
    char text[32];
    std::snprintf(text, sizeof text, "<%p>", inPointer);
    return StringFromUtf8(text);
}

}  // namespace

const Object& AsObject(CFTypeRef inObject) {
    if (!inObject) {
        std::fputs("CoreFoundation: NULL where an object is needed\n", stderr);
        std::abort();
    }
    return *static_cast<const Object*>(inObject);
}

void Object::Retain() const {
    if (Count() != kImmortal) mCount.fetch_add(1, std::memory_order_relaxed);
}

// Only a table of living objects could hand out the last reference once more, and only bundles are
// in one; any other object's single owner is alone with it.
void Object::Release() const {
    const SInt32 count = mCount.load(std::memory_order_acquire);
    if (count == kImmortal) return;
    const bool isAlone = count == 1 && mKind != kBundleKind;
    if (isAlone || mCount.fetch_sub(1, std::memory_order_acq_rel) == 1) Destroy();
}

bool Object::RetainIfAlive() const {
    SInt32 count = Count();
    while (count > 0 && count != kImmortal) {
        if (mCount.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
    }
    return count == kImmortal;
}

CFHashCode Object::Hash() const {
    return static_cast<CFHashCode>(std::hash<const Object*>()(this));
}

CFHashCode HashOfBytes(const void* inBytes, size_t inSize) {
    const std::string_view bytes(static_cast<const char*>(inBytes), inSize);
    return static_cast<CFHashCode>(std::hash<std::string_view>()(bytes));
}

bool AreEqual(CFTypeRef inOne, CFTypeRef inOther) {
    const Object& one = AsObject(inOne);
    const Object& other = AsObject(inOther);
    return &one == &other || (one.GetKind() == other.GetKind() && one.Equals(other));
}

std::u16string DescriptionOf(CFTypeRef inObject) {
    if (!inObject) return u"(null)";
    if (gDescriptionDepth >= kDeepestDescription) return u"...";
    ++gDescriptionDepth;
    std::u16string text = AsObject(inObject).Describe();
    --gDescriptionDepth;
    return text;
}

std::u16string DescribedBy(CFStringRef (*inCopyDescription)(const void*), const void* inValue) {
    if (inCopyDescription == CFCopyDescription) return DescriptionOf(inValue);
    const Owned<CFStringRef> text(inCopyDescription ? inCopyDescription(inValue)
                                                    : Address(inValue));
    return text ? std::u16string(View(text.Get())) : std::u16string();
}

}  // namespace carbon

using carbon::AsObject;

CFTypeRef CFRetain(CFTypeRef cf) {
    AsObject(cf).Retain();
    return cf;
}

void CFRelease(CFTypeRef cf) {
    AsObject(cf).Release();
}

CFIndex CFGetRetainCount(CFTypeRef cf) {
    return AsObject(cf).Count();
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
    return AsObject(cf).GetKind();
}

CFStringRef CFCopyTypeIDDescription(CFTypeID type_id) {
    if (type_id == carbon::kNoKind || type_id >= carbon::kKindCount) return nullptr;
    return carbon::NewString(carbon::kKindNames[type_id]);
}

Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2) {
    return carbon::AreEqual(cf1, cf2);
}

CFHashCode CFHash(CFTypeRef cf) {
    return AsObject(cf).Hash();
}

CFStringRef CFCopyDescription(CFTypeRef cf) {
    return carbon::OrNull([&] { return carbon::NewString(carbon::DescriptionOf(cf)); });
}

void CFShow(CFTypeRef obj) {
    const std::string text = carbon::Utf8Of(carbon::DescriptionOf(obj));
    std::fprintf(stderr, "%s\n", text.c_str());
}
