// A locale as an object, and the one the user lives in.
#pragma once

#include <CoreFoundation/CFLocale.h>
#include <unicode/locid.h>

#include <map>
#include <mutex>
#include <string>

#include "core_foundation/object.h"
#include "core_foundation/strings/string_object.h"

struct __CFLocale : carbon::Object {
    explicit __CFLocale(const std::string& inIdentifier);

    bool Equals(const Object& inOther) const final;
    CFHashCode Hash() const final;
    std::u16string Describe() const final;

    // What the locale says about a key; looked up once.
    CFTypeRef Value(CFStringRef inKey) const;

    const icu::Locale mLocale;
    const carbon::Owned<CFStringRef> mIdentifier;

  protected:
    ~__CFLocale() = default;

  private:
    mutable std::mutex mLock;
    mutable std::map<std::u16string, carbon::Owned<CFTypeRef>> mValues;
};

namespace carbon {

// ICU's form of an object that may be null or no locale: the root locale then.
const icu::Locale& IcuLocale(CFLocaleRef inLocale);

// The user's locale; the C locale counts as en_US.
const icu::Locale& CurrentIcuLocale();

// "en_US" out of "en-us" or "English".
std::string CanonicalLocaleName(const std::string& inName);

// What a locale says about a key, owned; null for nothing.
CFTypeRef NewLocaleValue(const icu::Locale& inLocale, CFStringRef inKey);

}  // namespace carbon
