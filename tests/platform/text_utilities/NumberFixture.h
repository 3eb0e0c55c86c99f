// Formats, numbers and texts for tests, through the public calls.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "support/PascalString.h"

inline NumberParts SystemParts() {
    Handle table = nullptr;
    SInt32 offset = 0, length = 0;
    GetIntlResourceTable(smSystemScript, smNumberPartsTable, &table, &offset, &length);
    NumberParts parts;
    std::memcpy(&parts, *table + offset, size_t(length));
    return parts;
}

inline void SetSymbol(NumberParts* ioParts, int inToken, char inSymbol) {
    ioParts->data[inToken - 1].b = SInt16(UInt8(inSymbol));
}

struct ParsedFormat {
    FormatStatus status;
    NumFormatString record;
};

inline ParsedFormat Parse(const std::string& inFormat, const NumberParts& inParts = SystemParts()) {
    ParsedFormat parsed;
    parsed.status = StringToFormatRec(PString(inFormat), &inParts, &parsed.record);
    return parsed;
}

struct Text {
    FormatStatus status;
    std::string text;
    bool operator==(const Text&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Text& inText) {
    return out << '"' << inText.text << "\", result " << inText.status;
}

inline Text Format(double inValue, const NumFormatString& inRecord,
                   const NumberParts& inParts = SystemParts()) {
    extended80 packed;
    dtox80(&inValue, &packed);
    Str255 text;
    const FormatStatus status = ExtendedToString(&packed, &inRecord, &inParts, text);
    return {status, TextOf(text)};
}

inline Text Format(double inValue, const std::string& inFormat) {
    return Format(inValue, Parse(inFormat).record);
}

inline Text Canonical(const std::string& inFormat, const NumberParts& inParts = SystemParts()) {
    const ParsedFormat parsed = Parse(inFormat);
    Str255 text;
    const FormatStatus status = FormatRecToString(&parsed.record, &inParts, text, nullptr);
    return {status, TextOf(text)};
}

struct Number {
    FormatStatus status;
    double value;
    bool operator==(const Number&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Number& inNumber) {
    return out << inNumber.value << ", result " << inNumber.status;
}

inline Number Read(const std::string& inText, const NumFormatString& inRecord,
                   const NumberParts& inParts = SystemParts()) {
    extended80 packed;
    const FormatStatus status = StringToExtended(PString(inText), &inRecord, &inParts, &packed);
    return {status, x80tod(&packed)};
}

inline Number Read(const std::string& inText, const std::string& inFormat) {
    return Read(inText, Parse(inFormat).record);
}
