// The two truth values.
#include <CoreFoundation/CFNumber.h>

#include "core_foundation/object.h"

struct __CFBoolean : carbon::Object {
    constexpr explicit __CFBoolean(bool inValue)
        : Object(carbon::kBooleanKind, carbon::kImmortal), mValue(inValue) {}
    std::u16string Describe() const final { return mValue ? u"true" : u"false"; }

    const bool mValue;

  protected:
    ~__CFBoolean() = default;
};

namespace carbon {

namespace {

class TruthValue final : public __CFBoolean {
  public:
    using __CFBoolean::__CFBoolean;

  private:
    void Destroy() const override {}
};

constinit const TruthValue sTrue(true);
constinit const TruthValue sFalse(false);

}  // namespace

}  // namespace carbon

constinit const CFBooleanRef kCFBooleanTrue = &carbon::sTrue;
constinit const CFBooleanRef kCFBooleanFalse = &carbon::sFalse;

CFTypeID CFBooleanGetTypeID() {
    return carbon::kBooleanKind;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return boolean == kCFBooleanTrue;
}
