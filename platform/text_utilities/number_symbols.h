// The symbols of a parts table as the bytes they are in a text.
#pragma once

#include <Carbon/IntlResources.h>

#include <array>
#include <span>

namespace carbon {

using TextBytes = std::span<const UInt8>;

// One symbol, or a notation of several characters. Empty when the table has none.
struct SymbolText {
    std::array<UInt8, 20> bytes = {};
    size_t length = 0;

    void Add(WideChar inCharacter);
    bool IsEmpty() const { return length == 0; }
    operator TextBytes() const { return {bytes.data(), length}; }
};

class NumberSymbols {
  public:
    // The table stays the caller's and must outlive the object; null is a table of nothing.
    explicit NumberSymbols(const NumberParts* inParts) : mParts(inParts) {}

    // Whether the symbols can be told apart, as far as a format needs to.
    bool IsSound() const;

    // Of the tokens 1 to 31, and of tokEPlus and tokEMinus the notations of an exponent.
    SymbolText Of(int inToken) const;
    SymbolText Unquoted(int inToken) const;
    SymbolText PlusInMinusFormat() const;

    // Whether a character may stand in a format without quotes and stands for itself there.
    bool StandsForItself(UInt8 inCharacter) const;
    // The value of a digit in the table's other form; -1 for any other character.
    int AlternateDigit(UInt8 inCharacter) const;

  private:
    const NumberParts* mParts;
};

// The table that every script uses.
const NumberParts& SystemNumberParts();

}  // namespace carbon
