// Locales as objects.
#include "core_foundation/dates_and_locales/locale.h"

#include <string_view>

#include "core_foundation/dates_and_locales/icu_text.h"

__CFLocale::__CFLocale(const std::string& inIdentifier)
    : Object(carbon::kLocaleKind),
      mLocale(inIdentifier.c_str()),
      mIdentifier(carbon::NewAsciiString(inIdentifier)) {}

bool __CFLocale::Equals(const Object& inOther) const {
    const auto& other = static_cast<const __CFLocale&>(inOther);
    return carbon::View(mIdentifier.Get()) == carbon::View(other.mIdentifier.Get());
}

CFHashCode __CFLocale::Hash() const {
    return CFHash(mIdentifier.Get());
}

std::u16string __CFLocale::Describe() const {
    return u"<CFLocale " + std::u16string(carbon::View(mIdentifier.Get())) + u">";
}

CFTypeRef __CFLocale::Value(CFStringRef inKey) const {
    if (CFEqual(inKey, kCFLocaleIdentifier)) return mIdentifier.Get();
    const std::lock_guard guard(mLock);
    const auto [found, isNew] = mValues.try_emplace(std::u16string(carbon::View(inKey)));
    if (isNew) found->second = carbon::Owned<CFTypeRef>(carbon::NewLocaleValue(mLocale, inKey));
    return found->second.Get();
}

namespace carbon {

namespace {

class Locale final : public __CFLocale {
  public:
    using __CFLocale::__CFLocale;

  private:
    void Destroy() const override { delete this; }
};

CFLocaleRef NewLocale(const std::string& inIdentifier) {
    return OrNull([&] { return new Locale(inIdentifier); });
}

// Made once, with a reference of its own that is never given back.
CFLocaleRef SystemLocale() {
    static const CFLocaleRef locale = NewLocale("");
    return locale;
}

CFLocaleRef CurrentLocale() {
    static const CFLocaleRef locale = NewLocale(CurrentIcuLocale().getName());
    return locale;
}

}  // namespace

const icu::Locale& IcuLocale(CFLocaleRef inLocale) {
    const auto* locale = inLocale ? OfKind<__CFLocale>(inLocale, kLocaleKind) : nullptr;
    return locale ? locale->mLocale : icu::Locale::getRoot();
}

// Linux: ICU calls the C locale en_US_POSIX and orders it by code points, which no user expects.
const icu::Locale& CurrentIcuLocale() {
    static const auto* current = [] {
        const icu::Locale& found = icu::Locale::getDefault();
        const bool isPlain = std::string_view(found.getVariant()) == "POSIX";
        return new icu::Locale(isPlain || !*found.getLanguage() ? icu::Locale::getUS() : found);
    }();
    return *current;
}

}  // namespace carbon

CFTypeID CFLocaleGetTypeID() {
    return carbon::kLocaleKind;
}

CFLocaleRef CFLocaleGetSystem() {
    return carbon::SystemLocale();
}

CFLocaleRef CFLocaleCopyCurrent() {
    const CFLocaleRef current = carbon::CurrentLocale();
    return current ? static_cast<CFLocaleRef>(CFRetain(current)) : nullptr;
}

CFLocaleRef CFLocaleCreate(CFAllocatorRef, CFStringRef localeIdentifier) {
    if (!localeIdentifier) return nullptr;
    return carbon::OrNull([&] {
        return carbon::NewLocale(carbon::CanonicalLocaleName(carbon::AsciiText(localeIdentifier)));
    });
}

CFLocaleRef CFLocaleCreateCopy(CFAllocatorRef, CFLocaleRef locale) {
    return carbon::OfKind<__CFLocale>(locale, carbon::kLocaleKind)
               ? static_cast<CFLocaleRef>(CFRetain(locale))
               : nullptr;
}

CFStringRef CFLocaleGetIdentifier(CFLocaleRef locale) {
    const auto* known = carbon::OfKind<__CFLocale>(locale, carbon::kLocaleKind);
    return known ? known->mIdentifier.Get() : nullptr;
}

CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFStringRef key) {
    const auto* known = carbon::OfKind<__CFLocale>(locale, carbon::kLocaleKind);
    return carbon::OrNull([&]() -> CFTypeRef { return known ? known->Value(key) : nullptr; });
}
