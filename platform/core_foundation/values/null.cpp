// The object that stands for no value.
#include "core_foundation/object.h"

struct __CFNull : carbon::Object {
    constexpr __CFNull() : Object(carbon::kNullKind, carbon::kImmortal) {}
    std::u16string Describe() const final { return u"<null>"; }

  protected:
    ~__CFNull() = default;
};

namespace carbon {

namespace {

class Null final : public __CFNull {
    void Destroy() const override {}
};

constinit const Null sNull;

}  // namespace

}  // namespace carbon

constinit const CFNullRef kCFNull = &carbon::sNull;

CFTypeID CFNullGetTypeID() {
    return carbon::kNullKind;
}
