// Chooses the form in which a descriptor stands in JSON.
#include "DescJson.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "Codes.h"
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

// The bytes in another type, which makes the same bytes again; false when it does not.
bool Coerces(const AEDesc* inDesc, DescType inType, std::string& outBytes) {
    StAEDescriptor other, again;
    if (AECoerceDesc(inDesc, inType, other) != noErr) return false;
    if (AECoerceDesc(other, inDesc->descriptorType, again) != noErr) return false;
    outBytes = BytesOf(other);
    return BytesOf(again) == BytesOf(inDesc);
}

void AddName(const char* inMember, const std::string& inName, Json& ioJson) {
    if (!inName.empty()) ioJson[inMember] = inName;
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
bool AddNatural(const AEDesc* inDesc, const Vocabulary& inWords, Json& ioJson) {
    const DescType type = inDesc->descriptorType;
    const std::string bytes = BytesOf(inDesc);
    if (type == typeBoolean && (bytes == std::string(1, '\0') || bytes == "\1")) {
        ioJson["value"] = bytes == "\1";
        return true;
    }
    if (IsOneOf(type, kCode) && bytes.size() == sizeof(OSType)) {
        const auto code = static_cast<OSType>(BigEndian(bytes));
        ioJson["code"] = CodeText(code);
        const auto place = type == typeEnumerated ? WordPlace::kValue : WordPlace::kType;
        AddName("name", inWords.NameOf(place, code), ioJson);
        return true;
    }
    if (IsOneOf(type, kText)) return AddText(inDesc, ioJson);
    return AddNumber(inDesc, ioJson);
}

// The keys of the records that object specifiers are made of are nobody's properties.
bool HasProperties(const AEDesc* inRecord) {
    constexpr std::array<DescType, 4> kObjectModel = {typeObjectSpecifier, typeCompDescriptor,
                                                      typeLogicalDescriptor, typeRangeDescriptor};
    return !IsOneOf(inRecord->descriptorType, kObjectModel);
}

// The items of a list; with their keys those of a record, or the parameters of an event, which
// `inNameOf` names.
template <typename NameOf>
Json Items(const AEDesc* inDesc, const Vocabulary& inWords, bool inHasKeys, NameOf inNameOf) {
    Json items = Json::array();
    SInt32 count = 0;
    AECountItems(inDesc, &count);
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor item;
        AEKeyword key = 0;
        AEGetNthDesc(inDesc, i, typeWildCard, &key, item);
        Json json;
        if (inHasKeys) {
            json["key"] = CodeText(key);
            AddName("name", inNameOf(key), json);
            json["value"] = JsonOf(item, inWords);
        } else {
            json = JsonOf(item, inWords);
        }
        items.push_back(std::move(json));
    }
    return items;
}

Json Fields(const AEDesc* inRecord, const Vocabulary& inWords) {
    const bool hasProperties = HasProperties(inRecord);
    return Items(inRecord, inWords, true, [&](AEKeyword key) {
        return hasProperties ? inWords.NameOf(WordPlace::kProperty, key) : std::string();
    });
}

OSType CodeAttribute(const AEDesc* inEvent, AEKeyword inKey) {
    OSType code = 0;
    AEGetAttributePtr(inEvent, inKey, typeType, nullptr, &code, sizeof code, nullptr);
    return EndianU32_BtoN(code);
}

bool IsEvent(const AEDesc* inDesc) {
    return AESizeOfAttribute(inDesc, keyEventClassAttr, nullptr, nullptr) == noErr;
}

Json EventJson(const AEDesc* inEvent, const Vocabulary& inWords) {
    const AEEventClass eventClass = CodeAttribute(inEvent, keyEventClassAttr);
    const AEEventID id = CodeAttribute(inEvent, keyEventIDAttr);
    const EventTerm* const term = inWords.FindEvent(eventClass, id);
    Json json = {{"type", CodeText(inEvent->descriptorType)},
                 {"class", CodeText(eventClass)},
                 {"id", CodeText(id)}};
    AddName("name", term != nullptr ? term->name : std::string(), json);
    json["parameters"] =
        Items(inEvent, inWords, true, [&](AEKeyword key) { return NameOfParameter(term, key); });
    Json attributes = Json::array();
    for (const AEKeyword key : kAttributes) {
        StAEDescriptor value;
        if (AEGetAttributeDesc(inEvent, key, typeWildCard, value) == noErr)
            attributes.push_back({{"key", CodeText(key)}, {"value", JsonOf(value, inWords)}});
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

Json JsonOf(const AEDesc* inDesc, const Vocabulary& inWords) {
    if (IsEvent(inDesc)) return EventJson(inDesc, inWords);
    Json json = {{"type", CodeText(inDesc->descriptorType)}};
    SInt32 count = 0;
    if (AECheckIsRecord(inDesc)) {
        AddName("typeName", inWords.NameOf(WordPlace::kClass, inDesc->descriptorType), json);
        json["fields"] = Fields(inDesc, inWords);
    } else if (AECountItems(inDesc, &count) == noErr) {
        json["items"] = Items(inDesc, inWords, false, [](AEKeyword) { return std::string(); });
    } else if (!AddNatural(inDesc, inWords, json)) {
        json["hex"] = Hex(BytesOf(inDesc));
    }
    return json;
}

}  // namespace cli
