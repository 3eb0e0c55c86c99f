// Numbers and codes: as text, from text, and the formats between.
#include <cstring>

#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"
#include "vantor/strings/LString.h"

namespace {

const unsigned char kEmptyString[] = {0};

// What stands for quotes where the thousands symbol is a quote.
constexpr SInt16 kLeftGuillemet = 199, kRightGuillemet = 200;

extended80 Packed(long double inNumber) {
    // Linux: the 80-bit form is made from a double; a long double has another size on each machine.
    const double number = static_cast<double>(inNumber);
    extended80 packed;
    dtox80(&number, &packed);
    return packed;
}

void Report(FormatStatus inStatus, SInt8* outResult) {
    if (outResult != nullptr) *outResult = SInt8(inStatus);
}

}  // namespace

LString& LString::Assign(double inNumber, char inStyle, SInt16 inDigits) {
    Num2Dec2Str(this, inNumber, inStyle, inDigits);
    return *this;
}

LString& LString::Assign(long double inNumber, char inStyle, SInt16 inDigits) {
    return Assign(static_cast<double>(inNumber), inStyle, inDigits);
}

LString& LString::Assign(long double inNumber, ConstStr255Param inFormat, SInt8* outResult) {
    NumFormatString format;
    NumberParts parts;
    FetchFloatFormat(inFormat, format, parts);
    return Assign(inNumber, format, parts, outResult);
}

LString& LString::Assign(long double inNumber, const NumFormatString& inFormat,
                         const NumberParts& inParts, SInt8* outResult) {
    const extended80 packed = Packed(inNumber);
    Report(ExtendedToString(&packed, &inFormat, &inParts, mStringPtr), outResult);
    return *this;
}

LString::operator SInt32() const {
    SInt32 number;
    StringToNum(mStringPtr, &number);
    return number;
}

LString::operator double() const {
    return static_cast<double>(static_cast<long double>(*this));
}

LString::operator long double() const {
    return StringToLongDouble(mStringPtr, kEmptyString, nullptr);
}

LString::operator UInt32() const {
    UInt32 code = 0;
    for (SInt32 i = 1; i <= Length() && i <= 4; ++i) code = code << 8 | mStringPtr[i];
    return code;
}

void LString::FourCharCodeToPStr(UInt32 inCode, StringPtr outString) {
    outString[0] = 4;
    for (int i = 1; i <= 4; ++i) outString[i] = UInt8(inCode >> (32 - 8 * i));
}

// Kept: the length byte is not asked, so a shorter string gives what lies behind it as well.
void LString::PStrToFourCharCode(ConstStr255Param inString, UInt32& outCode) {
    outCode = 0;
    for (int i = 1; i <= 4; ++i) outCode = outCode << 8 | inString[i];
}

void LString::Num2Dec2Str(LString* outString, double inNumber, char inStyle, SInt16 inDigits) {
    const decform form = {inStyle, 0, inDigits};
    decimal digits;
    char text[DECSTROUTLEN + 1];
    num2dec(&form, inNumber, &digits);
    dec2str(&form, &digits, text);
    outString->Assign(text);
}

long double LString::StringToLongDouble(ConstStr255Param inText, ConstStr255Param inFormat,
                                        SInt8* outResult) {
    NumFormatString format;
    NumberParts parts;
    FetchFloatFormat(inFormat, format, parts);
    return StringToLongDouble(inText, format, parts, outResult);
}

long double LString::StringToLongDouble(ConstStr255Param inText, const NumFormatString& inFormat,
                                        const NumberParts& inParts, SInt8* outResult) {
    extended80 packed;
    Report(StringToExtended(inText, &inFormat, &inParts, &packed), outResult);
    return x80tod(&packed);
}

SInt8 LString::FetchFloatFormat(ConstStr255Param inFormat, NumFormatString& outFormat,
                                NumberParts& outParts) {
    GetSystemNumberParts(outParts);
    return SInt8(StringToFormatRec(inFormat, &outParts, &outFormat));
}

SInt8 LString::FetchFloatFormat(ConstStr255Param inFormat, const NumberParts& inParts,
                                NumFormatString& outFormat, NumberParts& outParts) {
    NumFormatString foreign;
    Str255 canonical;
    TripleInt positions;
    StringToFormatRec(inFormat, &inParts, &foreign);
    GetSystemNumberParts(outParts);
    FormatRecToString(&foreign, &outParts, canonical, positions);
    FormatStatus status = StringToFormatRec(canonical, &outParts, &outFormat);
    if (SInt8(status) == fBadPartsTable) {
        outParts.data[tokLeftQuote - 1].b = kLeftGuillemet;
        outParts.data[tokRightQuote - 1].b = kRightGuillemet;
        // Kept: whatever the second attempt says is the answer. The text is still that with the
        // first quotes, so where a format has quoted texts they count for thousands symbols.
        status = StringToFormatRec(canonical, &outParts, &outFormat);
    }
    return SInt8(status);
}

void LString::GetSystemNumberParts(NumberParts& outParts) {
    Handle table = nullptr;
    SInt32 offset = 0, length = 0;
    GetIntlResourceTable(smSystemScript, iuNumberPartsTable, &table, &offset, &length);
    if (table == nullptr) LException::Throw('nilP');
    std::memcpy(&outParts, *table + offset, sizeof outParts);
}
