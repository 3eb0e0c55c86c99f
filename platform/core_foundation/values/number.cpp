// Numbers.
#include <CoreFoundation/CFNumber.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "core_foundation/object.h"

struct __CFNumber : carbon::Object {
    constexpr __CFNumber(CFNumberType inType, SInt64 inInteger, SInt32 inCount)
        : Object(carbon::kNumberKind, inCount), mType(inType), mInteger(inInteger) {}
    constexpr __CFNumber(CFNumberType inType, double inReal, SInt32 inCount)
        : Object(carbon::kNumberKind, inCount), mType(inType), mReal(inReal) {}

    bool IsReal() const { return mType >= kCFNumberFloat32Type; }
    double AsReal() const { return IsReal() ? mReal : static_cast<double>(mInteger); }

    bool Equals(const Object& inOther) const final;
    CFHashCode Hash() const final;
    std::u16string Describe() const final;

    const CFNumberType mType;  // one of the first six
    const SInt64 mInteger = 0;
    const double mReal = 0;

  protected:
    ~__CFNumber() = default;
};

namespace carbon {

namespace {

class Number final : public __CFNumber {
  public:
    template <typename T>
    constexpr Number(CFNumberType inType, T inValue, SInt32 inCount = 1)
        : __CFNumber(inType, inValue, inCount) {}

  private:
    void Destroy() const override { delete this; }
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constinit const Number sInfinity(kCFNumberFloat64Type, kInfinity, kImmortal);
constinit const Number sMinusInfinity(kCFNumberFloat64Type, -kInfinity, kImmortal);
constinit const Number sNaN(kCFNumberFloat64Type, std::numeric_limits<double>::quiet_NaN(),
                            kImmortal);

// The type of fixed width behind a type; 0 for an unknown one.
CFNumberType Canonical(CFNumberType inType) {
    constexpr CFNumberType kLong = sizeof(long) == 8 ? kCFNumberSInt64Type : kCFNumberSInt32Type;
    constexpr CFNumberType kTypes[kCFNumberMaxType + 1] = {0,
                                                           kCFNumberSInt8Type,
                                                           kCFNumberSInt16Type,
                                                           kCFNumberSInt32Type,
                                                           kCFNumberSInt64Type,
                                                           kCFNumberFloat32Type,
                                                           kCFNumberFloat64Type,
                                                           kCFNumberSInt8Type,
                                                           kCFNumberSInt16Type,
                                                           kCFNumberSInt32Type,
                                                           kLong,
                                                           kCFNumberSInt64Type,
                                                           kCFNumberFloat32Type,
                                                           kCFNumberFloat64Type,
                                                           kCFNumberSInt32Type};
    return inType >= 1 && inType <= kCFNumberMaxType ? kTypes[inType] : 0;
}

// Calls inDo with a value of the C++ type behind a canonical number type.
template <typename F>
auto WithType(CFNumberType inType, F inDo) {
    switch (inType) {
        case kCFNumberSInt8Type:
            return inDo(SInt8{});
        case kCFNumberSInt16Type:
            return inDo(SInt16{});
        case kCFNumberSInt32Type:
            return inDo(SInt32{});
        case kCFNumberFloat32Type:
            return inDo(Float32{});
        case kCFNumberFloat64Type:
            return inDo(Float64{});
        default:
            return inDo(SInt64{});
    }
}

constexpr double kTwoTo63 = 9223372036854775808.0;

SInt64 ToInteger(double inReal) {
    if (std::isnan(inReal)) return 0;
    if (inReal >= kTwoTo63) return INT64_MAX;
    return inReal < -kTwoTo63 ? INT64_MIN : static_cast<SInt64>(inReal);
}

template <typename T>
T Limited(SInt64 inInteger) {
    using Limits = std::numeric_limits<T>;
    if (inInteger < Limits::min()) return Limits::min();
    return inInteger > Limits::max() ? Limits::max() : static_cast<T>(inInteger);
}

template <typename T>
T ValueAs(const __CFNumber& inNumber) {
    if constexpr (std::is_floating_point_v<T>) {
        return inNumber.IsReal() ? static_cast<T>(inNumber.mReal)
                                 : static_cast<T>(inNumber.mInteger);
    } else {
        return Limited<T>(inNumber.IsReal() ? ToInteger(inNumber.mReal) : inNumber.mInteger);
    }
}

CFComparisonResult CompareReals(double inOne, double inOther) {
    if (std::isnan(inOne) || std::isnan(inOther)) return std::isnan(inOther) - std::isnan(inOne);
    return (inOne > inOther) - (inOne < inOther);
}

// An integer against a real, exactly: 2^63 and what lies around it do not fit both.
CFComparisonResult CompareMixed(SInt64 inInteger, double inReal) {
    if (std::isnan(inReal)) return kCFCompareGreaterThan;
    if (inReal >= kTwoTo63) return kCFCompareLessThan;
    if (inReal < -kTwoTo63) return kCFCompareGreaterThan;
    const SInt64 whole = ToInteger(inReal);
    if (inInteger != whole) return inInteger < whole ? kCFCompareLessThan : kCFCompareGreaterThan;
    return CompareReals(static_cast<double>(whole), inReal);
}

CFComparisonResult CompareNumbers(const __CFNumber& inOne, const __CFNumber& inOther) {
    if (inOne.IsReal() && inOther.IsReal()) return CompareReals(inOne.mReal, inOther.mReal);
    if (inOne.IsReal()) return -CompareMixed(inOther.mInteger, inOne.mReal);
    if (inOther.IsReal()) return CompareMixed(inOne.mInteger, inOther.mReal);
    return (inOne.mInteger > inOther.mInteger) - (inOne.mInteger < inOther.mInteger);
}

template <typename T>
std::u16string Digits(T inValue) {
    char text[64];
    char* end = std::to_chars(text, text + sizeof text, inValue).ptr;
    return std::u16string(&text[0], end);
}

CFNumberRef MakeNumber(CFNumberType inType, const void* inValue) {
    return WithType(inType, [&](auto value) -> CFNumberRef {
        std::memcpy(&value, inValue, sizeof value);
        if constexpr (std::is_floating_point_v<decltype(value)>) {
            return new (std::nothrow) Number(inType, double{value});
        } else {
            return new (std::nothrow) Number(inType, SInt64{value});
        }
    });
}

// A number that something else than a number was taken for reads as 0.
const __CFNumber& Checked(CFNumberRef inNumber) {
    static constinit const Number zero(kCFNumberSInt32Type, SInt64{0}, kImmortal);
    const auto* number = OfKind<__CFNumber>(inNumber, kNumberKind);
    return number ? *number : zero;
}

}  // namespace

}  // namespace carbon

bool __CFNumber::Equals(const Object& inOther) const {
    return carbon::CompareNumbers(*this, static_cast<const __CFNumber&>(inOther)) ==
           kCFCompareEqualTo;
}

// Equal numbers of different types have equal doubles.
CFHashCode __CFNumber::Hash() const {
    const double real = AsReal() == 0 ? 0 : AsReal();
    return carbon::HashOfBytes(&real, sizeof real);
}

std::u16string __CFNumber::Describe() const {
    if (!IsReal()) return carbon::Digits(mInteger);
    return mType == kCFNumberFloat32Type ? carbon::Digits(static_cast<float>(mReal))
                                         : carbon::Digits(mReal);
}

constinit const CFNumberRef kCFNumberPositiveInfinity = &carbon::sInfinity;
constinit const CFNumberRef kCFNumberNegativeInfinity = &carbon::sMinusInfinity;
constinit const CFNumberRef kCFNumberNaN = &carbon::sNaN;

CFTypeID CFNumberGetTypeID() {
    return carbon::kNumberKind;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType theType, const void* valuePtr) {
    const CFNumberType type = carbon::Canonical(theType);
    return type ? carbon::MakeNumber(type, valuePtr) : nullptr;
}

CFNumberType CFNumberGetType(CFNumberRef number) {
    return carbon::Checked(number).mType;
}

CFIndex CFNumberGetByteSize(CFNumberRef number) {
    return carbon::WithType(CFNumberGetType(number),
                            [](auto value) { return static_cast<CFIndex>(sizeof value); });
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
    return carbon::Checked(number).IsReal();
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr) {
    const CFNumberType type = carbon::Canonical(theType);
    if (!type) return false;
    const __CFNumber& kept = carbon::Checked(number);
    return carbon::WithType(type, [&](auto value) -> Boolean {
        value = carbon::ValueAs<decltype(value)>(kept);
        std::memcpy(valuePtr, &value, sizeof value);
        carbon::Owned<CFNumberRef> written(carbon::MakeNumber(type, &value));
        return written && carbon::CompareNumbers(kept, *written.Get()) == kCFCompareEqualTo;
    });
}

CFComparisonResult CFNumberCompare(CFNumberRef number, CFNumberRef otherNumber, void*) {
    return carbon::CompareNumbers(carbon::Checked(number), carbon::Checked(otherNumber));
}
