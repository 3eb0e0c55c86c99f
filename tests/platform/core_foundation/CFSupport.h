// Short ways to make and read objects in tests.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "core_foundation/internal.h"

// A reference that the test owns.
template <typename T>
class Ref {
  public:
    explicit Ref(T inRef) : mRef(inRef) {}
    Ref(Ref&& inOther) noexcept : mRef(std::exchange(inOther.mRef, nullptr)) {}
    Ref& operator=(Ref&&) = delete;
    ~Ref() {
        if (mRef) CFRelease(mRef);
    }
    operator T() const { return mRef; }

  private:
    T mRef;
};

inline Ref<CFStringRef> Str(std::string_view inText) {
    return Ref<CFStringRef>(carbon::StringFromUtf8(inText));
}

inline Ref<CFStringRef> Units(std::u16string_view inText) {
    return Ref<CFStringRef>(
        CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar*>(inText.data()),
                                     static_cast<CFIndex>(inText.size())));
}

inline Ref<CFMutableStringRef> MutableStr(std::string_view inText) {
    return Ref<CFMutableStringRef>(CFStringCreateMutableCopy(nullptr, 0, Str(inText)));
}

// "(null)" for none, so that a missing string is told from an empty one.
inline std::string Text(CFStringRef inString) {
    return inString ? carbon::Utf8(inString) : "(null)";
}

// The same for a string that the test owns.
inline std::string TextOf(CFStringRef inOwned) {
    const Ref<CFStringRef> owner(inOwned);
    return Text(owner);
}

inline bool operator==(const CFRange& inOne, const CFRange& inOther) {
    return inOne.location == inOther.location && inOne.length == inOther.length;
}

inline std::ostream& operator<<(std::ostream& inStream, const CFRange& inRange) {
    return inStream << '{' << inRange.location << ", " << inRange.length << '}';
}
