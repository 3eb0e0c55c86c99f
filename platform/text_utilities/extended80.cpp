// Owns the 80-bit form of numbers. Built from bits, since a C long double is another thing on every
// machine.
#include <Carbon/fp.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace carbon {
namespace {

constexpr int kBias = 16383;
constexpr int kSpecial = 0x7FFF;  // the exponent of infinity and NaN
constexpr int kSmallest = -1074;  // the exponent of the least double's only bit
constexpr UInt64 kIntegerBit = UInt64(1) << 63;
constexpr UInt64 kQuietBit = UInt64(1) << 51;
constexpr UInt64 kFractionBits = (UInt64(1) << 52) - 1;

extended80 Pack(bool inNegative, int inExponent, UInt64 inMantissa) {
    extended80 packed;
    packed.exp = SInt16(UInt16(inExponent | (inNegative ? 0x8000 : 0)));
    for (int i = 0; i < 4; ++i) packed.man[i] = UInt16(inMantissa >> (48 - 16 * i));
    return packed;
}

UInt64 MantissaOf(const extended80& inPacked) {
    UInt64 mantissa = 0;
    for (const UInt16 word : inPacked.man) mantissa = mantissa << 16 | word;
    return mantissa;
}

extended80 PackSpecial(double inValue) {
    const UInt64 fraction = std::bit_cast<UInt64>(inValue) & kFractionBits;
    return Pack(std::signbit(inValue), kSpecial, kIntegerBit | fraction << 11);
}

extended80 PackFinite(double inValue) {
    if (inValue == 0) return Pack(std::signbit(inValue), 0, 0);
    int exponent;
    const double fraction = std::frexp(std::fabs(inValue), &exponent);  // 0.5 to 1
    return Pack(std::signbit(inValue), exponent - 1 + kBias, UInt64(std::ldexp(fraction, 64)));
}

// To the nearest, to even from the middle.
UInt64 ShiftRight(UInt64 inNumber, int inBits) {
    if (inBits > 64) return 0;
    const UInt64 whole = inBits == 64 ? 0 : inNumber >> inBits;
    const UInt64 half = UInt64(1) << (inBits - 1);
    const UInt64 rest = inNumber & (half | (half - 1));
    return whole + (rest > half || (rest == half && (whole & 1)) ? 1 : 0);
}

double UnpackSpecial(UInt64 inMantissa) {
    const UInt64 fraction = inMantissa << 1 >> 12;
    if (inMantissa << 1 == 0) return std::numeric_limits<double>::infinity();
    return std::bit_cast<double>(UInt64(kSpecial & 0x7FF) << 52 | kQuietBit | fraction);
}

// The lowest bit of the mantissa counts 2 to the power `inExponent`.
double UnpackFinite(UInt64 inMantissa, int inExponent) {
    if (inMantissa == 0) return 0;
    const int zeros = std::countl_zero(inMantissa);
    const int exponent = inExponent - zeros;
    // A double keeps 53 bits, and fewer where it is nearly 0: round once, to what is left.
    const int bits = std::max(11, kSmallest - exponent);
    return std::ldexp(double(ShiftRight(inMantissa << zeros, bits)), exponent + bits);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

void dtox80(const double* x, extended80* x80) {
    *x80 = std::isfinite(*x) ? PackFinite(*x) : PackSpecial(*x);
}

double x80tod(const extended80* x80) {
    const int exponent = UInt16(x80->exp) & kSpecial;
    const UInt64 mantissa = MantissaOf(*x80);
    const double value = exponent == kSpecial ? UnpackSpecial(mantissa)
                                              : UnpackFinite(mantissa, exponent - kBias - 63);
    return x80->exp < 0 ? -value : value;
}
