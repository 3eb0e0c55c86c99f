// Owns the elements of a number format and its record.
#include "text_utilities/number_format.h"

#include <algorithm>
#include <utility>

namespace carbon {
namespace {

constexpr UInt8 kNoFormat = 0xFF;  // the version of a record that holds none
constexpr UInt8 kFirstPlain = 0x20;

bool IsToken(UInt8 inByte) {
    return inByte >= tokLeadPlacer && inByte <= tokEMinus && inByte != tokLeader &&
           inByte != tokReserved && inByte != tokEscape;
}

// The bytes of a record, which may come from anywhere.
class RecordReader {
  public:
    explicit RecordReader(const NumFormatString& inRecord)
        : mNext(reinterpret_cast<const UInt8*>(inRecord.data)),
          mEnd(mNext + inRecord.fLength - 1) {}

    bool IsAtEnd() const { return mNext == mEnd; }

    bool Read(FormatElement* outElement) {
        const UInt8 byte = *mNext++;
        if (byte == tokEscape) {
            if (IsAtEnd()) return false;
            *outElement = {kLiteral, *mNext++};
            return true;
        }
        *outElement = byte < kFirstPlain ? FormatElement{byte, 0} : FormatElement{kLiteral, byte};
        return byte >= kFirstPlain || IsToken(byte);
    }

  private:
    const UInt8* mNext;
    const UInt8* mEnd;
};

}  // namespace

bool NumberFormat::Add(FormatElement inElement) {
    if (mCount == mElements.size()) return false;
    mElements[mCount++] = inElement;
    return true;
}

size_t NumberFormat::CountParts() const {
    const auto elements = Elements();
    return 1 + size_t(std::count_if(elements.begin(), elements.end(),
                                    [](FormatElement e) { return e.token == tokSeparator; }));
}

FormatPart NumberFormat::Part(size_t inIndex) const {
    size_t first = 0;
    for (size_t i = 0; i < mCount; ++i) {
        if (mElements[i].token != tokSeparator) continue;
        if (inIndex-- == 0) return Elements().subspan(first, i - first);
        first = i + 1;
    }
    return Elements().subspan(first);
}

FormatStatus NumberFormat::Check() const {
    size_t parts = 1;
    bool hasPoint = false, hasExponent = false, hasPercent = false;
    for (const FormatElement element : Elements()) {
        if (element.token == tokSeparator) {
            if (++parts > kMostParts) return fExtraSeparator;
            hasPoint = hasExponent = hasPercent = false;
        }
        if (element.token == tokDecPoint) {
            if (hasPoint || hasExponent) return fExtraDecimal;
            hasPoint = true;
        }
        if (element.IsExponent() && std::exchange(hasExponent, true)) return fExtraExp;
        if (element.token == tokPercent && std::exchange(hasPercent, true)) return fExtraPercent;
    }
    return fFormatOK;
}

bool NumberFormat::Load(const NumFormatString& inRecord) {
    mCount = 0;
    if (inRecord.fVersion != fVNumber || inRecord.fLength == 0) return false;
    RecordReader reader(inRecord);
    while (!reader.IsAtEnd()) {
        FormatElement element;
        if (!reader.Read(&element) || !Add(element)) return false;
    }
    return Check() == fFormatOK;
}

bool NumberFormat::Store(NumFormatString* outRecord) const {
    *outRecord = {};
    size_t used = 0;
    for (const FormatElement element : Elements()) {
        const bool isEscaped = element.token == kLiteral && element.character < kFirstPlain;
        if (used + (isEscaped ? 2 : 1) > sizeof outRecord->data) {
            StoreNothing(outRecord);
            return false;
        }
        if (isEscaped) outRecord->data[used++] = tokEscape;
        outRecord->data[used++] = char(element.token ? element.token : element.character);
    }
    outRecord->fLength = UInt8(used + 1);  // the version counts as well
    return true;
}

void StoreNothing(NumFormatString* outRecord) {
    *outRecord = {};
    outRecord->fVersion = kNoFormat;
}

}  // namespace carbon
