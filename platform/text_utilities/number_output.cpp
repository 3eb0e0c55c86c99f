// Owns writing a number in a format.
#include <Carbon/fp.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "text_utilities/number_digits.h"
#include "text_utilities/number_format.h"

namespace carbon {
namespace {

constexpr size_t kLongestText = 255;

TextBytes BytesOf(std::string_view inText) {
    return {reinterpret_cast<const UInt8*>(inText.data()), inText.size()};
}

// The text, and what there is to say about it.
class Output {
  public:
    Output(const NumberSymbols& inSymbols, Str255 outText) : mSymbols(inSymbols), mText(outText) {
        mText[0] = 0;
    }

    void Add(TextBytes inText) {
        const size_t fitting = std::min(inText.size(), kLongestText - mText[0]);
        if (fitting < inText.size()) Note(fFormatOverflow);
        std::copy_n(inText.begin(), fitting, mText + mText[0] + 1);
        mText[0] = UInt8(mText[0] + fitting);
    }

    void AddByte(UInt8 inByte) { Add({&inByte, 1}); }
    void AddSymbol(UInt8 inToken) { AddNeeded(mSymbols.Of(inToken)); }

    void AddNeeded(const SymbolText& inSymbol) {
        if (inSymbol.IsEmpty()) Note(fBadPartsTable);
        Add(inSymbol);
    }

    void Note(FormatStatus inStatus) {
        if (mStatus != fBadPartsTable) mStatus = inStatus;
    }

    const NumberSymbols& Symbols() const { return mSymbols; }

    FormatStatus Finish() {
        if (mStatus == fBadPartsTable) mText[0] = 0;
        return mStatus;
    }

  private:
    const NumberSymbols& mSymbols;
    unsigned char* mText;
    FormatStatus mStatus = fFormatOK;
};

// How many places there are in each section of a part.
struct Places {
    int whole = 0;
    int behind = 0;
    int exponent = 0;
    int lastZeroBehind = 0;  // the lowest place behind the point that shows a zero; 0 without one
    bool hasExponent = false;
    bool hasPercent = false;
    bool hasSign = false;

    explicit Places(FormatPart inPart) {
        bool isBehind = false;
        for (const FormatElement element : inPart) {
            isBehind |= element.token == tokDecPoint;
            hasExponent |= element.IsExponent();
            hasPercent |= element.token == tokPercent;
            hasSign |= element.IsSign();
            if (!element.IsPlace()) continue;
            ++(hasExponent ? exponent : isBehind ? behind : whole);
            if (isBehind && !hasExponent && element.token == tokZeroLead) lastZeroBehind = -behind;
        }
    }
};

// Digits in front of the point, or of an exponent, written place by place from the left.
class WholeWriter {
  public:
    WholeWriter(const NumberDigits& inDigits, int inPlaces, Output* out)
        : mDigits(inDigits), mPlace(inPlaces), mOut(out) {}

    void WritePlace(UInt8 inToken) {
        WriteExtra();
        --mPlace;
        mStarted |= mPlace <= mDigits.Top() || inToken == tokZeroLead;
        if (mStarted) return mOut->AddByte(mDigits.At(mPlace));
        if (inToken == tokLeadPlacer) WriteLeader();
    }

    // The digits that have no place, in front of the others.
    void WriteExtra() {
        const int top = std::exchange(mWroteExtra, true) ? mPlace - 1 : mDigits.Top();
        if (top >= mPlace) mOut->Note(fFormatOverflow);
        for (int place = top; place >= mPlace; --place) {
            mOut->AddByte(mDigits.At(place));
            mStarted = true;
        }
    }

    void WriteThousands() {
        if (mStarted)
            mOut->AddSymbol(tokThousands);
        else if (mHasLeader)
            WriteLeader();
    }

  private:
    void WriteLeader() {
        mOut->AddSymbol(tokLeader);
        mHasLeader = true;
    }

    const NumberDigits& mDigits;
    int mPlace;
    Output* mOut;
    bool mStarted = false;
    bool mHasLeader = false;
    bool mWroteExtra = false;
};

class FractionWriter {
  public:
    FractionWriter(const NumberDigits& inDigits, int inLastZero, Output* out)
        : mDigits(inDigits), mLowest(std::min(inDigits.Bottom(), inLastZero)), mOut(out) {}

    void WritePlace(UInt8 inToken) {
        --mPlace;
        if (mPlace >= mLowest)
            mOut->AddByte(mDigits.At(mPlace));
        else if (inToken == tokLeadPlacer)
            mOut->AddSymbol(tokLeader);
    }

    void WriteThousands() {
        if (mPlace > mLowest) mOut->AddSymbol(tokThousands);
    }

  private:
    const NumberDigits& mDigits;
    int mPlace = 0;
    int mLowest;
    Output* mOut;
};

// A value that a part is written for.
struct Value {
    double magnitude;
    bool isNegative;
    bool isAlone;  // the only part of its format, which shows signs itself
};

decimal ToDecimal(double inMagnitude, char inStyle, int inDigits) {
    const decform form = {inStyle, 0, SInt16(inDigits)};
    decimal rounded;
    num2dec(&form, inMagnitude, &rounded);
    return rounded;
}

decimal ToDecimal(int inNumber) {
    decimal number = {};
    char* const text = reinterpret_cast<char*>(number.sig.text);
    number.sig.length = UInt8(std::to_chars(text, text + SIGDIGLEN, inNumber).ptr - text);
    return number;
}

class PartWriter {
  public:
    PartWriter(const Value& inValue, const Places& inPlaces, Output* out)
        : mValue(inValue),
          mPlaces(inPlaces),
          mDigits(RoundedDigits()),
          mExponent(ScaleToPlaces()),
          mExponentDigits(ToDecimal(std::abs(mExponent))),
          mWhole(mDigits, inPlaces.whole, out),
          mFraction(mDigits, inPlaces.lastZeroBehind, out),
          mExponentWriter(mExponentDigits, inPlaces.exponent, out),
          mOut(out) {}

    void Write(FormatPart inPart) {
        if (mValue.isAlone && mValue.isNegative && !mPlaces.hasSign) mOut->AddSymbol(tokMinusSign);
        for (const FormatElement element : inPart) WriteElement(element);
    }

  private:
    enum class Section { kWhole, kBehind, kExponent };

    NumberDigits RoundedDigits() const {
        const int percent = mPlaces.hasPercent ? 2 : 0;
        const int digits =
            mPlaces.hasExponent ? mPlaces.whole + mPlaces.behind : mPlaces.behind + percent;
        NumberDigits rounded(
            ToDecimal(mValue.magnitude, mPlaces.hasExponent ? FLOATDECIMAL : FIXEDDECIMAL, digits));
        if (!rounded.IsZero()) rounded.MovePoint(percent);
        return rounded;
    }

    // Moves the point so that the digits fill their places; the exponent that makes up for it.
    int ScaleToPlaces() {
        if (!mPlaces.hasExponent || mDigits.IsZero()) return 0;
        const int exponent = mDigits.Top() - (mPlaces.whole - 1);
        mDigits.MovePoint(-exponent);
        return exponent;
    }

    void WriteElement(FormatElement inElement) {
        if (inElement.token == kLiteral) return mOut->AddByte(inElement.character);
        if (inElement.IsPlace()) return WritePlace(inElement.token);
        if (inElement.IsSign()) return WriteSign(inElement.token);
        if (inElement.IsExponent()) return WriteExponent(inElement.token);
        if (inElement.token == tokThousands) return WriteThousands();
        if (inElement.token == tokDecPoint) BeginFraction();
        mOut->AddSymbol(inElement.token);
    }

    void WritePlace(UInt8 inToken) {
        if (mSection == Section::kWhole) return mWhole.WritePlace(inToken);
        if (mSection == Section::kBehind) return mFraction.WritePlace(inToken);
        mExponentWriter.WritePlace(inToken);
    }

    void WriteThousands() {
        if (mSection == Section::kWhole) mWhole.WriteThousands();
        if (mSection == Section::kBehind) mFraction.WriteThousands();
    }

    void BeginFraction() {
        if (mPlaces.whole == 0) mWhole.WriteExtra();
        mSection = Section::kBehind;
    }

    void WriteSign(UInt8 inToken) {
        if (!mValue.isAlone || (inToken == tokPlusSign && !mValue.isNegative))
            mOut->AddSymbol(inToken);
        else if (mValue.isNegative)
            mOut->AddSymbol(tokMinusSign);
    }

    void WriteExponent(UInt8 inToken) {
        mSection = Section::kExponent;
        if (mExponent < 0)
            mOut->AddSymbol(tokEMinus);
        else if (inToken == tokEPlus)
            mOut->AddSymbol(tokEPlus);
        else
            mOut->AddNeeded(mOut->Symbols().PlusInMinusFormat());
        if (mPlaces.exponent == 0) mExponentWriter.WriteExtra();
    }

    const Value mValue;
    const Places mPlaces;
    NumberDigits mDigits;
    const int mExponent;
    const NumberDigits mExponentDigits;
    WholeWriter mWhole;
    FractionWriter mFraction;
    WholeWriter mExponentWriter;
    Output* mOut;
    Section mSection = Section::kWhole;
};

// Without a format: the shortest text that means this number.
void WriteFreely(double inValue, Output* out) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, inValue).ptr;
    for (const char* next = text; next != end; ++next) {
        const bool isExponent = *next == 'e';
        if (isExponent) ++next;
        if (*next == '-')
            out->AddSymbol(isExponent ? tokEMinus : tokMinusSign);
        else if (*next == '+')
            out->AddSymbol(tokEPlus);
        else if (*next == '.')
            out->AddSymbol(tokDecPoint);
        else
            out->AddByte(UInt8(*next));
    }
}

// The part for a value: the last that there is, of positive, negative, zero, in this order.
size_t PartFor(double inValue, size_t inParts) {
    if (inValue < 0 && inParts > 1) return fNegative;
    return inValue == 0 && inParts > 2 ? fZero : fPositive;
}

void WriteInFormat(double inValue, const NumberFormat& inFormat, Output* out) {
    const size_t parts = inFormat.CountParts();
    const FormatPart part = inFormat.Part(PartFor(inValue, parts));
    const Value value = {std::fabs(inValue), inValue < 0, parts == 1};
    PartWriter(value, Places(part), out).Write(part);
}

FormatStatus WriteUnusual(double inValue, Output* out) {
    if (std::isinf(inValue) && inValue < 0) out->AddSymbol(tokMinusSign);
    out->Add(BytesOf(std::isinf(inValue) ? "INF" : "NAN"));
    out->Finish();
    return fFormStrIsNAN;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

FormatStatus ExtendedToString(const extended80* x, const NumFormatString* myCanonical,
                              const NumberParts* partsTable, Str255 outString) {
    const NumberSymbols symbols(partsTable);
    Output output(symbols, outString);
    NumberFormat format;
    if (!format.Load(*myCanonical)) return fFormStrIsNAN;
    if (!symbols.IsSound()) return fBadPartsTable;
    const double value = x80tod(x);
    if (!std::isfinite(value)) return WriteUnusual(value, &output);
    if (format.IsEmpty())
        WriteFreely(value, &output);
    else
        WriteInFormat(value, format, &output);
    return output.Finish();
}
