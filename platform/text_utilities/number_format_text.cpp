// Owns reading a number format from its text and writing it back.
#include <algorithm>

#include "text_utilities/number_format.h"

namespace carbon {
namespace {

constexpr size_t kLongestText = 255;

// What a format says with symbols; exponents first, since their first characters may be symbols
// too.
constexpr UInt8 kTokens[] = {tokEPlus,     tokEMinus,    tokLeadPlacer, tokNonLeader,
                             tokZeroLead,  tokPercent,   tokPlusSign,   tokMinusSign,
                             tokThousands, tokSeparator, tokDecPoint};

class FormatReader {
  public:
    FormatReader(TextBytes inText, const NumberSymbols& inSymbols)
        : mText(inText), mSymbols(inSymbols) {}

    FormatStatus Read(NumberFormat* outFormat) {
        mFormat = outFormat;
        while (!mText.empty() && !IsFatal()) ReadOne();
        const FormatStatus check = outFormat->Check();
        return IsFatal() || check == fFormatOK ? mStatus : check;
    }

  private:
    bool IsFatal() const { return mStatus != fFormatOK && mStatus != fSpuriousChars; }

    bool Take(TextBytes inSymbol) {
        if (inSymbol.empty() || inSymbol.size() > mText.size()) return false;
        if (!std::equal(inSymbol.begin(), inSymbol.end(), mText.begin())) return false;
        mText = mText.subspan(inSymbol.size());
        return true;
    }

    UInt8 TakeByte() {
        const UInt8 byte = mText.front();
        mText = mText.subspan(1);
        return byte;
    }

    void Add(FormatElement inElement) {
        if (!mFormat->Add(inElement)) mStatus = fFormStrIsNAN;
    }

    void ReadOne() {
        if (Take(mSymbols.Of(tokEscape))) return ReadEscaped();
        if (Take(mSymbols.Of(tokLeftQuote))) return ReadQuoted();
        for (const UInt8 token : kTokens)
            if (Take(mSymbols.Of(token))) return Add({token, 0});
        ReadUnquoted();
    }

    void ReadEscaped() {
        if (mText.empty())
            mStatus = fMissingLiteral;
        else
            Add({kLiteral, TakeByte()});
    }

    void ReadQuoted() {
        while (!Take(mSymbols.Of(tokRightQuote))) {
            if (IsFatal()) return;
            if (mText.empty()) {
                mStatus = fMissingDelimiter;
            } else if (Take(mSymbols.Of(tokEscape))) {
                ReadEscaped();
            } else {
                Add({kLiteral, TakeByte()});
            }
        }
    }

    void ReadUnquoted() {
        const UInt8 character = TakeByte();
        if (mSymbols.StandsForItself(character))
            Add({kLiteral, character});
        else
            mStatus = fSpuriousChars;
    }

    TextBytes mText;
    const NumberSymbols& mSymbols;
    NumberFormat* mFormat = nullptr;
    FormatStatus mStatus = fFormatOK;
};

class FormatWriter {
  public:
    explicit FormatWriter(const NumberSymbols& inSymbols) : mSymbols(inSymbols) {}

    // The parts one behind the other, with what can be written without quotes written so.
    FormatStatus Write(const NumberFormat& inFormat, Str255 outText, FVector* outPositions) {
        outText[0] = 0;
        mText = outText;
        const size_t parts = inFormat.CountParts();
        for (size_t i = 0; i < parts; ++i) {
            if (i > 0) AddSymbol(tokSeparator);
            const SInt16 start = SInt16(outText[0]);
            WritePart(inFormat.Part(i));
            outPositions[i] = {start, SInt16(outText[0] - start)};
        }
        return mStatus;
    }

  private:
    void Add(TextBytes inText) {
        if (mText[0] + inText.size() > kLongestText) mStatus = fFormatOverflow;
        if (mStatus != fFormatOK) return;
        std::copy(inText.begin(), inText.end(), mText + mText[0] + 1);
        mText[0] = UInt8(mText[0] + inText.size());
    }

    void AddSymbol(UInt8 inToken) {
        const SymbolText symbol = mSymbols.Of(inToken);
        if (symbol.IsEmpty() && mStatus == fFormatOK) mStatus = fBadPartsTable;
        Add(symbol);
    }

    void WritePart(FormatPart inPart) {
        while (!inPart.empty()) {
            const auto end = std::find_if(inPart.begin(), inPart.end(),
                                          [](FormatElement e) { return e.token != kLiteral; });
            const auto literals = size_t(end - inPart.begin());
            if (literals > 0) {
                WriteLiterals(inPart.first(literals));
                inPart = inPart.subspan(literals);
            } else {
                AddSymbol(inPart.front().token);
                inPart = inPart.subspan(1);
            }
        }
    }

    void WriteLiterals(FormatPart inLiterals) {
        const bool isPlain = std::all_of(inLiterals.begin(), inLiterals.end(), [&](auto e) {
            return mSymbols.StandsForItself(e.character);
        });
        if (!isPlain) AddSymbol(tokLeftQuote);
        for (const FormatElement element : inLiterals) {
            if (!isPlain && NeedsEscape(element.character)) AddSymbol(tokEscape);
            Add({&element.character, 1});
        }
        if (!isPlain) AddSymbol(tokRightQuote);
    }

    bool NeedsEscape(UInt8 inCharacter) const {
        const auto begins = [&](UInt8 inToken) {
            const SymbolText symbol = mSymbols.Of(inToken);
            return !symbol.IsEmpty() && symbol.bytes[0] == inCharacter;
        };
        return begins(tokRightQuote) || begins(tokEscape);
    }

    const NumberSymbols& mSymbols;
    unsigned char* mText = nullptr;
    FormatStatus mStatus = fFormatOK;
};

FormatStatus ReadFormat(ConstStr255Param inText, const NumberParts* inParts,
                        NumberFormat* outFormat) {
    const NumberSymbols symbols(inParts);
    if (!symbols.IsSound()) return fBadPartsTable;
    if (!inText || inText[0] == 0) return fEmptyFormatString;
    const FormatStatus status = FormatReader({inText + 1, inText[0]}, symbols).Read(outFormat);
    return status == fFormatOK && outFormat->IsEmpty() ? FormatStatus(fEmptyFormatString) : status;
}

bool IsUsable(FormatStatus inStatus) {
    return inStatus == fFormatOK || inStatus == fSpuriousChars || inStatus == fEmptyFormatString;
}

FormatStatus WriteFormat(const NumFormatString& inRecord, const NumberParts* inParts,
                         Str255 outText, FVector* outPositions) {
    const NumberSymbols symbols(inParts);
    NumberFormat format;
    if (!format.Load(inRecord)) return fFormStrIsNAN;
    // Symbols that are the same are no matter here: whoever reads the text may tell them apart.
    if (!inParts) return fBadPartsTable;
    if (format.IsEmpty()) return fEmptyFormatString;
    return FormatWriter(symbols).Write(format, outText, outPositions);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

FormatStatus StringToFormatRec(ConstStr255Param inString, const NumberParts* partsTable,
                               NumFormatString* outString) {
    NumberFormat format;
    const FormatStatus status = ReadFormat(inString, partsTable, &format);
    if (!IsUsable(status)) {
        StoreNothing(outString);
        return status;
    }
    return format.Store(outString) ? status : FormatStatus(fFormStrIsNAN);
}

FormatStatus FormatRecToString(const NumFormatString* myCanonical, const NumberParts* partsTable,
                               Str255 outString, TripleInt positions) {
    TripleInt found = {};
    Str255 text = {};
    const FormatStatus status = WriteFormat(*myCanonical, partsTable, text, found);
    if (status != fFormatOK) {
        text[0] = 0;
        std::fill(std::begin(found), std::end(found), FVector{});
    }
    std::copy_n(text, text[0] + 1, outString);
    if (positions) std::copy(std::begin(found), std::end(found), positions);
    return status;
}
