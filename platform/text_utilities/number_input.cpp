// Owns reading a number: in a format, or as it stands.
#include <Carbon/fp.h>

#include <algorithm>
#include <cmath>

#include "text_utilities/decimals.h"
#include "text_utilities/number_format.h"
#include "text_utilities/number_text.h"

namespace carbon {
namespace {

// Whether a text follows a part, and the number in it.
class PartMatcher {
  public:
    PartMatcher(TextBytes inText, const NumberSymbols& inSymbols, bool inIsAlone)
        : mText(inText, inSymbols), mIsAlone(inIsAlone) {}

    bool Matches(FormatPart inPart, bool inNeedsLiterals) {
        mNeedsLiterals = inNeedsLiterals;
        Survey(inPart);
        if (mIsAlone && !mHasSign) TakeSign(tokMinusSign);
        const bool follows = std::all_of(inPart.begin(), inPart.end(),
                                         [&](FormatElement e) { return MatchElement(e); });
        return follows && mText.IsAtEnd() && (mHasPlaces == mNumber.HasDigits());
    }

    const NumberText& Number() const { return mNumber; }

  private:
    void Survey(FormatPart inPart) {
        for (const FormatElement element : inPart) {
            mHasSign |= element.IsSign();
            mHasPlaces |= element.IsPlace();
            mHasLeader |= element.token == tokLeadPlacer;
        }
    }

    bool MatchElement(FormatElement inElement) {
        if (inElement.token == kLiteral) return MatchLiteral(inElement.character);
        if (inElement.IsPlace()) return TakeDigits();
        if (inElement.token == tokThousands) return true;  // taken with the digits
        if (inElement.IsSign()) return MatchSign(inElement.token);
        if (inElement.IsExponent()) return MatchExponent(inElement.token);
        if (inElement.token == tokDecPoint) mNumber.BeginFraction();
        if (inElement.token == tokPercent) mNumber.SetPercent();
        return mText.Take(inElement.token);
    }

    bool MatchLiteral(UInt8 inCharacter) {
        return mText.Take(TextBytes(&inCharacter, 1)) || !mNeedsLiterals;
    }

    bool TakeDigits() {
        for (;;) {
            const int digit = mText.TakeDigit();
            if (digit >= 0)
                mNumber.AddDigit(digit);
            else if (!mText.Take(tokThousands) && !(mHasLeader && mText.Take(tokLeader)))
                return true;
        }
    }

    bool TakeSign(UInt8 inToken) {
        if (!mText.Take(inToken)) return false;
        if (inToken == tokMinusSign) mNumber.SetNegative();
        return true;
    }

    bool MatchSign(UInt8 inToken) {
        if (!mIsAlone) return mText.Take(inToken);
        if (TakeSign(tokMinusSign) || inToken == tokMinusSign) return true;
        return mText.Take(tokPlusSign);
    }

    bool MatchExponent(UInt8 inToken) {
        if (mText.Take(tokEMinus)) {
            mNumber.BeginExponent(true);
            return true;
        }
        mNumber.BeginExponent(false);
        return inToken == tokEPlus ? mText.Take(tokEPlus) : mText.TakePlusInMinusFormat();
    }

    TextReader mText;
    const bool mIsAlone;
    bool mNeedsLiterals = true;
    bool mHasSign = false;
    bool mHasPlaces = false;
    bool mHasLeader = false;
    NumberText mNumber;
};

class InputReader {
  public:
    InputReader(ConstStr255Param inText, const NumberSymbols& inSymbols,
                const NumFormatString& inRecord, const NumberParts* inParts)
        : mString(inText), mSymbols(inSymbols), mRecord(inRecord), mParts(inParts) {}

    FormatStatus Read(const NumberFormat& inFormat, double* outValue) {
        if (inFormat.IsEmpty()) return ReadFreely(outValue);
        if (FollowsFormat(inFormat, true, outValue))
            return IsWrittenSo(*outValue) ? fFormatOK : fBestGuess;
        if (FollowsFormat(inFormat, false, outValue)) return fMissingLiteral;
        const FormatStatus status = ReadFreely(outValue);
        return status == fFormatOK ? FormatStatus(fOutOfSynch) : status;
    }

  private:
    TextBytes Text() const { return {mString + 1, mString[0]}; }

    FormatStatus ReadFreely(double* outValue) {
        FreeReader reader(Text(), mSymbols);
        const FormatStatus status = reader.Read();
        *outValue = reader.Number().Value();
        return status;
    }

    bool FollowsFormat(const NumberFormat& inFormat, bool inNeedsLiterals, double* outValue) {
        const size_t parts = inFormat.CountParts();
        for (size_t i = 0; i < parts; ++i) {
            PartMatcher matcher(Text(), mSymbols, parts == 1);
            if (!matcher.Matches(inFormat.Part(i), inNeedsLiterals)) continue;
            if (!IsFor(i, matcher.Number(), inNeedsLiterals)) continue;
            const double value = matcher.Number().HasDigits() ? matcher.Number().Value() : 0.0;
            *outValue = i == fNegative ? -value : value;
            return true;
        }
        return false;
    }

    // A text without digits can only be that of the third part, and then has to be all there; the
    // third part can only mean zero.
    static bool IsFor(size_t inPart, const NumberText& inNumber, bool inNeedsLiterals) {
        if (!inNumber.HasDigits()) return inPart == fZero && inNeedsLiterals;
        return inPart != fZero || inNumber.Value() == 0;
    }

    bool IsWrittenSo(double inValue) const {
        extended80 packed;
        dtox80(&inValue, &packed);
        Str255 text;
        return ExtendedToString(&packed, &mRecord, mParts, text) == fFormatOK &&
               std::equal(text, text + text[0] + 1, mString);
    }

    ConstStr255Param mString;
    const NumberSymbols& mSymbols;
    const NumFormatString& mRecord;
    const NumberParts* mParts;
};

FormatStatus ReadNumber(ConstStr255Param inText, const NumFormatString& inRecord,
                        const NumberParts* inParts, double* outValue) {
    const NumberSymbols symbols(inParts);
    NumberFormat format;
    if (!format.Load(inRecord)) return fFormStrIsNAN;
    if (!symbols.IsSound()) return fBadPartsTable;
    return InputReader(inText, symbols, inRecord, inParts).Read(format, outValue);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

FormatStatus StringToExtended(ConstStr255Param inString, const NumFormatString* myCanonical,
                              const NumberParts* partsTable, extended80* x) {
    double value = NaNWithCode(kBadText);
    const FormatStatus status = ReadNumber(inString, *myCanonical, partsTable, &value);
    dtox80(&value, x);
    return status;
}
