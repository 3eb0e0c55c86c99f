// Owns rounding binary numbers to decimal digits and back.
#include <Carbon/fp.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

#include "text_utilities/decimals.h"

namespace carbon {
namespace {

constexpr int kMostWhole = 309;  // digits in front of the point
constexpr int kMostBehind = 400;

void SetDigits(std::string_view inDigits, decimal* out) {
    out->sig.length = UInt8(inDigits.size());
    std::memcpy(out->sig.text, inDigits.data(), inDigits.size());
}

// The first bits of the fraction as four hexadecimal digits: the quiet bit, then the code.
void SetNaN(double inValue, decimal* out) {
    char text[8];
    const auto bits = unsigned(std::bit_cast<UInt64>(inValue) >> 37 & 0x7FFF);
    std::snprintf(text, sizeof text, "N%04X", bits);
    SetDigits(text, out);
}

// From "d.ddde+xx", as printf writes it.
void SetScientific(const char* inText, decimal* out) {
    const std::string_view text(inText);
    const size_t mark = text.find('e');
    UInt8 count = 0;
    for (const char character : text.substr(0, mark))
        if (character != '.') out->sig.text[count++] = UInt8(character);
    out->sig.length = count;
    out->exp = SInt16(std::atoi(inText + mark + 1) - (count - 1));
}

void RoundToDigits(double inMagnitude, int inDigits, decimal* out) {
    char text[DECSTROUTLEN];
    std::snprintf(text, sizeof text, "%.*e", inDigits - 1, inMagnitude);
    SetScientific(text, out);
}

// At a place behind the point.
void RoundFraction(double inMagnitude, int inDigits, decimal* out) {
    char text[kMostWhole + kMostBehind + 8];
    const int digits = std::min(inDigits, kMostBehind);  // more make more than 36 of any double
    std::snprintf(text, sizeof text, "%.*f", digits, inMagnitude);
    char* const end = std::remove(text, text + std::strlen(text), '.');
    char* const first = std::find_if(text, end - 1, [](char c) { return c != '0'; });
    if (end - first > SIGDIGLEN) return RoundToDigits(inMagnitude, SIGDIGLEN, out);
    SetDigits({first, size_t(end - first)}, out);
    out->exp = SInt16(*first == '0' ? 0 : -digits);
}

// At the place of a power of ten.
void RoundWhole(double inMagnitude, int inPlace, decimal* out) {
    char text[kMostWhole + 8];
    std::snprintf(text, sizeof text, "%.0f", std::trunc(inMagnitude));
    const int kept = int(std::strlen(text)) - inPlace;
    if (kept > 0) return RoundToDigits(inMagnitude, std::min<int>(kept, SIGDIGLEN), out);
    // Nothing of it reaches that place: more than half of one there, or zero.
    const bool isMore = text[0] > '5' || std::strspn(text + 1, "0") + 1 < std::strlen(text) ||
                        inMagnitude != std::trunc(inMagnitude);
    const bool roundsUp = kept == 0 && text[0] >= '5' && isMore;
    SetDigits(roundsUp ? "1" : "0", out);
    out->exp = SInt16(roundsUp ? inPlace : 0);
}

void Round(const decform& inForm, double inMagnitude, decimal* out) {
    if (inForm.style == FLOATDECIMAL)
        RoundToDigits(inMagnitude, std::clamp<int>(inForm.digits, 1, SIGDIGLEN), out);
    else if (inForm.digits >= 0)
        RoundFraction(inMagnitude, inForm.digits, out);
    else
        RoundWhole(inMagnitude, -inForm.digits, out);
}

double NaNOf(std::string_view inHexadecimal) {
    unsigned bits = 0;
    std::from_chars(inHexadecimal.data(), inHexadecimal.data() + inHexadecimal.size(), bits, 16);
    return NaNWithCode(UInt16(bits & 0x7FFF));
}

bool AreDigits(std::string_view inText) {
    return !inText.empty() && inText.find_first_not_of("0123456789") == std::string_view::npos;
}

double Magnitude(const decimal& inDecimal) {
    const std::string_view digits = DigitsOf(inDecimal);
    if (digits == "I") return std::numeric_limits<double>::infinity();
    if (!digits.empty() && digits[0] == 'N') return NaNOf(digits.substr(1));
    return AreDigits(digits) ? ValueOfDigits(digits, inDecimal.exp) : NaNWithCode(kBadText);
}

}  // namespace

std::string_view DigitsOf(const decimal& inDecimal) {
    const auto length = std::min<size_t>(inDecimal.sig.length, SIGDIGLEN);
    return {reinterpret_cast<const char*>(inDecimal.sig.text), length};
}

double NaNWithCode(UInt16 inCode) {
    constexpr UInt64 kQuietNaN = UInt64(0x7FF8) << 48;
    return std::bit_cast<double>(kQuietNaN | UInt64(inCode & 0x7FFF) << 37);
}

double ValueOfDigits(std::string_view inDigits, SInt32 inExponent) {
    char text[300];
    const size_t length = std::min<size_t>(inDigits.size(), 256);
    std::memcpy(text, inDigits.data(), length);
    std::snprintf(text + length, sizeof text - length, "e%d", int(inExponent));
    return std::strtod(text, nullptr);  // neither point nor separators: no locale matters
}

}  // namespace carbon

using namespace carbon;

void num2dec(const decform* f, double x, decimal* d) {
    *d = {};
    d->sgn = std::signbit(x);
    if (std::isnan(x))
        SetNaN(x, d);
    else if (std::isinf(x))
        SetDigits("I", d);
    else if (x == 0)
        SetDigits("0", d);
    else
        Round(*f, std::fabs(x), d);
}

double dec2num(const decimal* d) {
    const double magnitude = Magnitude(*d);
    return d->sgn ? -magnitude : magnitude;
}
