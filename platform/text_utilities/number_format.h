// A number format as elements, and the record that holds it between calls.
//
// In the record a token is its number, a character of a text is itself; one whose code could be a
// token's comes behind tokEscape.
#pragma once

#include <Carbon/NumberFormatting.h>

#include <array>
#include <span>

#include "text_utilities/number_symbols.h"

namespace carbon {

constexpr UInt8 kLiteral = 0;

struct FormatElement {
    UInt8 token = kLiteral;  // one of tokLeadPlacer ... tokEMinus
    UInt8 character = 0;     // of a literal

    bool IsPlace() const {
        return token == tokLeadPlacer || token == tokNonLeader || token == tokZeroLead;
    }
    bool IsExponent() const { return token == tokEPlus || token == tokEMinus; }
    bool IsSign() const { return token == tokPlusSign || token == tokMinusSign; }
};

using FormatPart = std::span<const FormatElement>;

class NumberFormat {
  public:
    static constexpr size_t kMostParts = 3;

    bool IsEmpty() const { return mCount == 0; }
    FormatPart Elements() const { return {mElements.data(), mCount}; }

    // False when the format is full.
    bool Add(FormatElement inElement);

    size_t CountParts() const;
    FormatPart Part(size_t inIndex) const;

    // The first thing that makes no sense: fExtraSeparator, fExtraDecimal, fExtraExp,
    // fExtraPercent.
    FormatStatus Check() const;

    // Back from its record; false when the record holds no format.
    bool Load(const NumFormatString& inRecord);
    // False, and a record that holds no format, when it is too long.
    bool Store(NumFormatString* outRecord) const;

  private:
    std::array<FormatElement, 255> mElements;
    size_t mCount = 0;
};

// Makes the record one that holds no format.
void StoreNothing(NumFormatString* outRecord);

}  // namespace carbon
