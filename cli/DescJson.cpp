// Chooses the form in which a descriptor stands in JSON.
#include "DescJson.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "Output.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace cli {
namespace {

template <size_t N>
bool IsOneOf(DescType inType, const std::array<DescType, N>& inTypes) {
    return std::ranges::find(inTypes, inType) != inTypes.end();
}

constexpr std::array<DescType, 4> kWhole = {typeSInt16, typeSInt32, typeUInt32, typeSInt64};
constexpr std::array<DescType, 2> kReal = {typeIEEE32BitFloatingPoint, typeIEEE64BitFloatingPoint};
constexpr std::array<DescType, 5> kText = {typeChar, typeUTF8Text, typeUnicodeText, typePString,
                                           typeCString};
constexpr std::array<DescType, 5> kCode = {typeType, typeEnumerated, typeKeyword, typeProperty,
                                           typeApplSignature};
constexpr std::array<AEKeyword, 9> kAttributes = {
    keyAddressAttr,         keyReturnIDAttr,        keyTransactionIDAttr,
    keyTimeoutAttr,         keyInteractLevelAttr,   keyEventSourceAttr,
    keyOptionalKeywordAttr, keyOriginalAddressAttr, keyReplyRequestedAttr};

std::string Hex(const std::string& inBytes) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : inBytes) {
        text += kDigits[static_cast<UInt8>(byte) >> 4];
        text += kDigits[static_cast<UInt8>(byte) & 0xF];
    }
    return text;
}

UInt64 BigEndian(const std::string& inBytes) {
    UInt64 value = 0;
    for (const char byte : inBytes) value = value << 8 | static_cast<UInt8>(byte);
    return value;
}

// Codes are MacRoman, a character for each byte; those with control characters are "$00000001$".
std::string CodeText(OSType inCode) {
    UInt8 text[5] = {4};
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        text[i + 1] = static_cast<UInt8>(inCode >> (24 - 8 * i));
        bytes += static_cast<char>(text[i + 1]);
    }
    const bool isText = std::all_of(text + 1, text + 5, [](UInt8 byte) { return byte >= ' '; });
    return isText ? MacRomanText(text) : '$' + Hex(bytes) + '$';
}

// The bytes in another type, which makes the same bytes again; false when it does not.
bool Coerces(const AEDesc* inDesc, DescType inType, std::string& outBytes) {
    StAEDescriptor other, again;
    if (AECoerceDesc(inDesc, inType, other) != noErr) return false;
    if (AECoerceDesc(other, inDesc->descriptorType, again) != noErr) return false;
    outBytes = BytesOf(other);
    return BytesOf(again) == BytesOf(inDesc);
}

bool AddText(const AEDesc* inDesc, Json& ioJson) {
    std::string utf16, utf8;
    StAEDescriptor text;
    if (!Coerces(inDesc, typeUnicodeText, utf16)) return false;
    if (AECoerceDesc(inDesc, typeUnicodeText, text) != noErr || !Coerces(text, typeUTF8Text, utf8))
        return false;
    ioJson["text"] = utf8;
    return true;
}

bool AddNumber(const AEDesc* inDesc, Json& ioJson) {
    std::string bytes;
    if (IsOneOf(inDesc->descriptorType, kWhole) && Coerces(inDesc, typeSInt64, bytes)) {
        ioJson["value"] = static_cast<SInt64>(BigEndian(bytes));
        return true;
    }
    if (!IsOneOf(inDesc->descriptorType, kReal) ||
        !Coerces(inDesc, typeIEEE64BitFloatingPoint, bytes))
        return false;
    const auto value = std::bit_cast<double>(BigEndian(bytes));
    if (std::isfinite(value)) ioJson["value"] = value;
    return std::isfinite(value);
}

// True when a form was found that loses nothing.
bool AddNatural(const AEDesc* inDesc, Json& ioJson) {
    const DescType type = inDesc->descriptorType;
    const std::string bytes = BytesOf(inDesc);
    if (type == typeBoolean && (bytes == std::string(1, '\0') || bytes == "\1")) {
        ioJson["value"] = bytes == "\1";
        return true;
    }
    if (IsOneOf(type, kCode) && bytes.size() == sizeof(OSType)) {
        ioJson["code"] = CodeText(static_cast<OSType>(BigEndian(bytes)));
        return true;
    }
    if (IsOneOf(type, kText)) return AddText(inDesc, ioJson);
    return AddNumber(inDesc, ioJson);
}

// The items of a list; with their keys those of a record, or the parameters of an event.
Json Items(const AEDesc* inDesc, bool inHasKeys) {
    Json items = Json::array();
    SInt32 count = 0;
    AECountItems(inDesc, &count);
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor item;
        AEKeyword key = 0;
        AEGetNthDesc(inDesc, i, typeWildCard, &key, item);
        const Json value = JsonOf(item);
        items.push_back(inHasKeys ? Json{{"key", CodeText(key)}, {"value", value}} : value);
    }
    return items;
}

std::string CodeAttribute(const AEDesc* inEvent, AEKeyword inKey) {
    OSType code = 0;
    AEGetAttributePtr(inEvent, inKey, typeType, nullptr, &code, sizeof code, nullptr);
    return CodeText(EndianU32_BtoN(code));
}

bool IsEvent(const AEDesc* inDesc) {
    return AESizeOfAttribute(inDesc, keyEventClassAttr, nullptr, nullptr) == noErr;
}

Json EventJson(const AEDesc* inEvent) {
    Json json = {{"type", CodeText(inEvent->descriptorType)},
                 {"class", CodeAttribute(inEvent, keyEventClassAttr)},
                 {"id", CodeAttribute(inEvent, keyEventIDAttr)},
                 {"parameters", Items(inEvent, true)}};
    Json attributes = Json::array();
    for (const AEKeyword key : kAttributes) {
        StAEDescriptor value;
        if (AEGetAttributeDesc(inEvent, key, typeWildCard, value) == noErr)
            attributes.push_back({{"key", CodeText(key)}, {"value", JsonOf(value)}});
    }
    json["attributes"] = attributes;
    return json;
}

}  // namespace

std::string BytesOf(const AEDesc* inDesc) {
    std::string bytes(static_cast<size_t>(AEGetDescDataSize(inDesc)), '\0');
    AEGetDescData(inDesc, bytes.data(), static_cast<Size>(bytes.size()));
    return bytes;
}

Json JsonOf(const AEDesc* inDesc) {
    if (IsEvent(inDesc)) return EventJson(inDesc);
    Json json = {{"type", CodeText(inDesc->descriptorType)}};
    SInt32 count = 0;
    if (AECheckIsRecord(inDesc))
        json["fields"] = Items(inDesc, true);
    else if (AECountItems(inDesc, &count) == noErr)
        json["items"] = Items(inDesc, false);
    else if (!AddNatural(inDesc, json))
        json["hex"] = Hex(BytesOf(inDesc));
    return json;
}

}  // namespace cli
