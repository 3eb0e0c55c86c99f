// Decimal digits, shared by the numbers of fp.h and the number formats.
#pragma once

#include <Carbon/fp.h>

#include <string_view>

namespace carbon {

// The code of the NaN that a text without a number gives.
constexpr UInt16 kBadText = 17;

std::string_view DigitsOf(const decimal& inDecimal);

double NaNWithCode(UInt16 inCode);

// The double nearest to the digits (at most 256) times 10 to a power.
double ValueOfDigits(std::string_view inDigits, SInt32 inExponent);

}  // namespace carbon
