// Storage of strings, immutable and mutable, and the constants made for CFSTR.
#include "core_foundation/strings/string_object.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "posix/across_forks.h"
#include "text_utilities/mac_roman.h"

CFHashCode __CFString::Hash() const {
    return static_cast<CFHashCode>(std::hash<std::u16string_view>()(View()));
}

namespace carbon {

namespace {

class ImmutableString final : public __CFString {
  public:
    // The units are not written yet.
    static ImmutableString* Make(size_t inLength) {
        if (inLength > kLongestString) throw std::bad_alloc();
        void* block = ::operator new(sizeof(ImmutableString) + inLength * sizeof(char16_t));
        return new (block) ImmutableString(inLength);
    }
    char16_t* Units() { return reinterpret_cast<char16_t*>(this + 1); }

  private:
    explicit ImmutableString(size_t inLength)
        : __CFString({reinterpret_cast<char16_t*>(this + 1), inLength}, false, 1) {}

    void Destroy() const override {
        auto* self = const_cast<ImmutableString*>(this);
        self->~ImmutableString();
        ::operator delete(static_cast<void*>(self));
    }
};

constinit const ConstantString sEmpty(u"");

// Constants by their text. They live as long as the process.
struct ConstantTable {
    std::mutex lock;
    std::unordered_map<std::string, CFStringRef> constants;
};

ConstantTable& Constants() {
    static auto* table = new ConstantTable;
    return *table;
}

const HeldAcrossForks sHeld(Constants().lock);

CFStringRef NewConstant(std::string_view inMacRoman) {
    auto* units = new char16_t[inMacRoman.size()];
    std::transform(inMacRoman.begin(), inMacRoman.end(), units, [](char character) {
        return UnicodeFromMacRoman(static_cast<UInt8>(character));
    });
    return new ConstantString({units, inMacRoman.size()});
}

CFStringRef ConstantFor(const char* inText) {
    ConstantTable& table = Constants();
    const std::lock_guard guard(table.lock);
    auto [found, isNew] = table.constants.try_emplace(inText, nullptr);
    if (isNew) found->second = NewConstant(inText);
    return found->second;
}

}  // namespace

void MutableString::Replace(size_t inStart, size_t inCount, std::u16string_view inText) {
    if (mText.size() - inCount + inText.size() > kLongestString) return;
    mText.replace(inStart, inCount, inText);
    Show();
}

void MutableString::Assign(std::u16string inText) {
    if (inText.size() > kLongestString) return;
    mText = std::move(inText);
    Show();
}

void MutableString::Show() {
    if (mLimit > 0) mText.resize(std::min(mText.size(), static_cast<size_t>(mLimit)));
    mUnits = mText.data();
    mLength = static_cast<CFIndex>(mText.size());
}

std::u16string_view View(CFStringRef inString) {
    const auto* string = OfKind<__CFString>(inString, kStringKind);
    return string ? string->View() : std::u16string_view();
}

MutableString* Mutable(CFMutableStringRef inString) {
    const auto* string = OfKind<__CFString>(inString, kStringKind);
    return string && string->IsMutable() ? static_cast<MutableString*>(inString) : nullptr;
}

UnwrittenString NewUnwritten(size_t inLength) {
    ImmutableString* string = ImmutableString::Make(inLength);
    return {string, string->Units()};
}

CFStringRef NewString(std::u16string_view inText) {
    if (inText.empty()) return &sEmpty;
    const UnwrittenString made = NewUnwritten(inText.size());
    std::memcpy(made.units, inText.data(), inText.size() * sizeof(char16_t));
    return made.string;
}

MutableString* NewMutable(CFIndex inLimit, std::u16string_view inText) {
    if (inText.size() > kLongestString) throw std::bad_alloc();
    auto made = std::make_unique<MutableString>(inLimit);
    made->Replace(0, 0, inText);
    return made.release();
}

bool IsInside(const CFRange& inRange, size_t inLength) {
    return inRange.location >= 0 && inRange.length >= 0 &&
           static_cast<size_t>(inRange.location) + static_cast<size_t>(inRange.length) <= inLength;
}

CFRange Clip(const CFRange& inRange, size_t inLength) {
    const SInt64 length = static_cast<SInt64>(inLength);
    const SInt64 start = std::clamp<SInt64>(inRange.location, 0, length);
    const SInt64 end = std::clamp<SInt64>(SInt64{inRange.location} + inRange.length, start, length);
    return {static_cast<CFIndex>(start), static_cast<CFIndex>(end - start)};
}

}  // namespace carbon

CFStringRef __CFStringMakeConstantString(const char* cStr) {
    return carbon::ConstantFor(cStr);
}
