// Reading numbers from texts: symbol by symbol, and the digits that are found.
#pragma once

#include <Carbon/NumberFormatting.h>

#include <array>

#include "text_utilities/number_symbols.h"

namespace carbon {

// A text that is taken from the front.
class TextReader {
  public:
    TextReader(TextBytes inText, const NumberSymbols& inSymbols)
        : mText(inText), mSymbols(inSymbols) {}

    bool IsAtEnd() const { return mText.empty(); }
    void Skip() { mText = mText.subspan(1); }
    size_t CountLeft() const { return mText.size(); }

    bool Take(TextBytes inSymbol);
    bool Take(UInt8 inToken) { return Take(TextBytes(mSymbols.Of(inToken))); }
    bool TakePlusInMinusFormat() { return Take(TextBytes(mSymbols.PlusInMinusFormat())); }
    // The digit in front; -1 when there is none.
    int TakeDigit();
    bool TakeSpaces();

    // A notation in capitals or small letters with a digit behind it.
    bool TakeExponent(TextBytes inNotation);

  private:
    int DigitAt(size_t inIndex) const;

    TextBytes mText;
    const NumberSymbols& mSymbols;
};

class NumberText {
  public:
    void AddDigit(int inDigit);
    void BeginFraction() { mSection = Section::kBehind; }
    void BeginExponent(bool inIsNegative);
    void SetPercent() { mIsPercent = true; }
    void SetNegative() { mIsNegative = true; }

    bool HasDigits() const { return mCount > 0; }
    bool IsBehindPoint() const { return mSection == Section::kBehind; }
    // NaN without digits.
    double Value() const;

  private:
    enum class Section { kWhole, kBehind, kExponent };

    std::array<char, 256> mDigits;
    size_t mCount = 0;
    int mScale = 0;  // the digits are this power of ten too large
    int mExponent = 0;
    Section mSection = Section::kWhole;
    bool mIsExponentNegative = false;
    bool mIsPercent = false;
    bool mIsNegative = false;
};

// Finds the number in a text of any form.
class FreeReader {
  public:
    FreeReader(TextBytes inText, const NumberSymbols& inSymbols)
        : mText(inText, inSymbols), mSymbols(inSymbols) {}

    FormatStatus Read();
    const NumberText& Number() const { return mNumber; }

  private:
    bool ReadOne();
    bool TakeSign();
    bool TakePoint();
    bool TakePercent();
    bool TakeExponent();
    bool BeginExponent(bool inIsNegative);
    bool Stop(FormatStatus inStatus);

    TextReader mText;
    const NumberSymbols& mSymbols;
    NumberText mNumber;
    FormatStatus mStatus = fFormatOK;
    bool mHasSign = false;
    bool mHasPoint = false;
    bool mHasPercent = false;
    bool mHasExponent = false;
};

}  // namespace carbon
