// How strings are stored: UTF-16 units behind a pointer, immutable ones in one block with their
// object.
#pragma once

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "core_foundation/object.h"

struct __CFString : carbon::Object {
    std::u16string_view View() const { return {mUnits, static_cast<size_t>(mLength)}; }
    bool IsMutable() const { return mMutable; }

    bool Equals(const Object& inOther) const override {
        return View() == static_cast<const __CFString&>(inOther).View();
    }
    CFHashCode Hash() const override;
    std::u16string Describe() const override { return std::u16string(View()); }

  protected:
    constexpr __CFString(std::u16string_view inUnits, bool inMutable, SInt32 inCount)
        : Object(carbon::kStringKind, inCount),
          mUnits(inUnits.data()),
          mLength(static_cast<CFIndex>(inUnits.size())),
          mMutable(inMutable) {}
    ~__CFString() = default;

    const char16_t* mUnits;
    CFIndex mLength;
    const bool mMutable;
};

namespace carbon {

constexpr size_t kLongestString = 0x7FFFFFFF;

// Text that outlives the process's use of it: constants.
class ConstantString final : public __CFString {
  public:
    constexpr explicit ConstantString(std::u16string_view inText)
        : __CFString(inText, false, kImmortal) {}

  private:
    void Destroy() const override {}
};

// A text as the argument of a template.
template <size_t kSize>
struct FixedText {
    consteval FixedText(const char16_t (&inUnits)[kSize]) { std::copy_n(inUnits, kSize, units); }
    char16_t units[kSize];
};

template <FixedText kText>
inline constinit const ConstantString sConstant{kText.units};

// The constant with this text: Constant<u"currency">().
template <FixedText kText>
consteval CFStringRef Constant() {
    return &sConstant<kText>;
}

class MutableString final : public __CFString {
  public:
    // A limit over 0 is the most units the string takes.
    explicit MutableString(CFIndex inLimit) : __CFString({}, true, 1), mLimit(inLimit) {}

    // Puts inText where inCount units from inStart on are. What does not fit the limit is cut off
    // the end; beyond what a length can say nothing changes.
    void Replace(size_t inStart, size_t inCount, std::u16string_view inText);
    void Assign(std::u16string inText);

  private:
    void Destroy() const override { delete this; }
    void Show();

    std::u16string mText;
    CFIndex mLimit;
};

// The text; empty for an object that is no string. The view ends when the object changes or goes.
std::u16string_view View(CFStringRef inString);

// Null when the object is no mutable string.
MutableString* Mutable(CFMutableStringRef inString);

// All throw std::bad_alloc, also for texts longer than a length can say.
CFStringRef NewString(std::u16string_view inText);

// A string whose units are still to be written, all of them; there is at least one.
struct UnwrittenString {
    CFStringRef string;
    char16_t* units;
};
UnwrittenString NewUnwritten(size_t inLength);

MutableString* NewMutable(CFIndex inLimit, std::u16string_view inText);

// Whether the range has no negative part and lies inside inLength units.
bool IsInside(const CFRange& inRange, size_t inLength);

// The range cut to what there is of inLength units.
CFRange Clip(const CFRange& inRange, size_t inLength);

std::string Utf8Of(std::u16string_view inText);

}  // namespace carbon
