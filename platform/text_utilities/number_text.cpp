// Owns reading the number that a text stands for, whatever its form.
#include "text_utilities/number_text.h"

#include <algorithm>
#include <limits>

#include "text_utilities/decimals.h"

namespace carbon {
namespace {

constexpr UInt8 kHardSpace = 0xCA;
constexpr int kLargestExponent = 100000;  // more than enough for infinity

bool IsSpace(UInt8 inCharacter) {
    return inCharacter == ' ' || inCharacter == kHardSpace;
}

UInt8 Capital(UInt8 inCharacter) {
    return inCharacter >= 'a' && inCharacter <= 'z' ? UInt8(inCharacter - 0x20) : inCharacter;
}

}  // namespace

bool TextReader::Take(TextBytes inSymbol) {
    if (inSymbol.empty() || inSymbol.size() > mText.size()) return false;
    if (!std::equal(inSymbol.begin(), inSymbol.end(), mText.begin())) return false;
    mText = mText.subspan(inSymbol.size());
    return true;
}

int TextReader::DigitAt(size_t inIndex) const {
    if (inIndex >= mText.size()) return -1;
    const UInt8 character = mText[inIndex];
    if (character >= '0' && character <= '9') return character - '0';
    return mSymbols.AlternateDigit(character);
}

int TextReader::TakeDigit() {
    const int digit = DigitAt(0);
    if (digit >= 0) Skip();
    return digit;
}

bool TextReader::TakeSpaces() {
    const auto end = std::find_if_not(mText.begin(), mText.end(), IsSpace);
    const auto count = size_t(end - mText.begin());
    mText = mText.subspan(count);
    return count > 0;
}

bool TextReader::TakeExponent(TextBytes inNotation) {
    if (inNotation.empty() || DigitAt(inNotation.size()) < 0) return false;
    const bool isSame = std::equal(inNotation.begin(), inNotation.end(), mText.begin(),
                                   [](UInt8 a, UInt8 b) { return Capital(a) == Capital(b); });
    if (isSame) mText = mText.subspan(inNotation.size());
    return isSame;
}

void NumberText::AddDigit(int inDigit) {
    if (mSection == Section::kExponent) {
        mExponent = std::min(mExponent * 10 + inDigit, kLargestExponent);
        return;
    }
    mDigits[mCount++] = char('0' + inDigit);
    if (mSection == Section::kBehind) ++mScale;
}

void NumberText::BeginExponent(bool inIsNegative) {
    mSection = Section::kExponent;
    mIsExponentNegative = inIsNegative;
}

double NumberText::Value() const {
    if (!HasDigits()) return NaNWithCode(kBadText);
    const int exponent = mIsExponentNegative ? -mExponent : mExponent;
    const double value =
        ValueOfDigits({mDigits.data(), mCount}, exponent - mScale - (mIsPercent ? 2 : 0));
    return mIsNegative ? -value : value;
}

FormatStatus FreeReader::Read() {
    mText.TakeSpaces();
    while (!mText.IsAtEnd() && ReadOne()) {
    }
    return mNumber.HasDigits() ? mStatus : FormatStatus(fFormStrIsNAN);
}

// False when there is something that ends the number.
bool FreeReader::ReadOne() {
    if (const int digit = mText.TakeDigit(); digit >= 0) {
        mNumber.AddDigit(digit);
        return true;
    }
    if (mText.TakeSpaces()) {
        if (mNumber.HasDigits() && !mText.IsAtEnd()) mStatus = fSpuriousChars;
        return true;
    }
    if (TakeSign()) return true;
    if (mNumber.HasDigits() && !mHasPoint && mText.Take(tokThousands)) return true;
    if (mText.Take(tokDecPoint)) return TakePoint();
    if (mText.Take(tokPercent)) return TakePercent();
    if (mNumber.HasDigits() && TakeExponent()) return mStatus != fExtraExp;
    if (!mText.IsAtEnd()) mText.Skip();
    mStatus = fSpuriousChars;
    return true;
}

bool FreeReader::Stop(FormatStatus inStatus) {
    mStatus = inStatus;
    return false;
}

bool FreeReader::TakeSign() {
    if (mNumber.HasDigits() || mHasSign || mHasPoint) return false;
    const bool isMinus = mText.Take(tokMinusSign);
    mHasSign = isMinus || mText.Take(tokPlusSign);
    if (isMinus) mNumber.SetNegative();
    return mHasSign;
}

bool FreeReader::TakePoint() {
    if (mHasPoint || mHasExponent) return Stop(fExtraDecimal);
    mHasPoint = true;
    mNumber.BeginFraction();
    return true;
}

bool FreeReader::TakePercent() {
    if (mHasPercent) return Stop(fExtraPercent);
    mHasPercent = true;
    mNumber.SetPercent();
    return true;
}

bool FreeReader::TakeExponent() {
    if (mText.TakeExponent(mSymbols.Of(tokEPlus))) return BeginExponent(false);
    if (mText.TakeExponent(mSymbols.Of(tokEMinus))) return BeginExponent(true);
    return mText.TakeExponent(mSymbols.PlusInMinusFormat()) && BeginExponent(false);
}

bool FreeReader::BeginExponent(bool inIsNegative) {
    if (mHasExponent) mStatus = fExtraExp;
    if (!mHasExponent) mNumber.BeginExponent(inIsNegative);
    mHasExponent = true;
    return true;
}

}  // namespace carbon
