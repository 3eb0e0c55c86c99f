// Chooses the form in which a value without items is printed.
#include "apple_event_manager/text/print_leaf.h"

#include <Carbon/AERegistry.h>
#include <Carbon/AppleEvents.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "apple_event_manager/coercions/coercion.h"

namespace carbon {
namespace {

std::string_view TextOf(Bytes inData) {
    return {reinterpret_cast<const char*>(inData.data()), inData.size()};
}

bool IsPrintable(std::string_view inText, char inQuote) {
    return std::ranges::all_of(inText,
                               [&](char c) { return c >= ' ' && c <= '~' && c != inQuote; });
}

void PrintHex(Bytes inData, std::string& ioText) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    ioText += '$';
    for (const UInt8 byte : inData) (ioText += kDigits[byte >> 4]) += kDigits[byte & 0xF];
    ioText += '$';
}

// The bytes as text that makes the same bytes again; nothing when there is no such text.
std::optional<std::string> TextFor(const Item& inItem) {
    TemporaryDesc text, again;
    const auto convert = IsNumberType(inItem.type) ? CoerceNumber : CoerceText;
    if (convert(inItem, typeUTF8Text, text.Get()) != noErr) return {};
    const std::string_view characters = TextOf(ItemOf(*text).content);
    if (!IsPrintable(characters, '"')) return {};
    if (convert({typeChar, Kind::Leaf, ItemOf(*text).content}, inItem.type, again.Get()) != noErr)
        return {};
    if (!std::ranges::equal(ItemOf(*again).content, inItem.content)) return {};
    return std::string(characters);
}

std::optional<SInt64> WholeNumberIn(const Item& inItem) {
    const UInt8* data = inItem.content.data();
    switch (UInt64{inItem.type} << 8 | inItem.content.size()) {
        case UInt64{typeSInt16} << 8 | sizeof(SInt16):
            return ReadBigEndian<SInt16>(data);
        case UInt64{typeSInt32} << 8 | sizeof(SInt32):
            return ReadBigEndian<SInt32>(data);
        case UInt64{typeUInt32} << 8 | sizeof(UInt32):
            return ReadBigEndian<UInt32>(data);
        case UInt64{typeSInt64} << 8 | sizeof(SInt64):
            return ReadBigEndian<SInt64>(data);
        default:
            return {};
    }
}

bool IsCode(const Item& inItem) {
    constexpr DescType kTypes[] = {typeEnumerated, typeType, typeKeyword, typeProperty,
                                   typeApplSignature};
    return inItem.content.size() == sizeof(OSType) &&
           std::ranges::find(kTypes, inItem.type) != std::end(kTypes);
}

bool MayBeText(DescType inType) {
    return inType == typeUnicodeText || inType == typeUTF8Text ||
           inType == typeIEEE32BitFloatingPoint || inType == typeIEEE64BitFloatingPoint;
}

// What stands between the parentheses after the type.
void PrintData(const Item& inItem, std::string& ioText) {
    if (inItem.content.empty()) return;
    if (const auto number = WholeNumberIn(inItem)) {
        ioText += std::to_string(*number);
        return;
    }
    if (IsCode(inItem)) return PrintCode(ReadBigEndian<UInt32>(inItem.content.data()), ioText);
    if (MayBeText(inItem.type))
        if (const auto text = TextFor(inItem)) {
            ioText += '"' + *text + '"';
            return;
        }
    PrintHex(inItem.content, ioText);
}

// Types whose values need no name.
bool SpeaksForItself(const Item& inItem) {
    return (inItem.type == typeSInt32 && WholeNumberIn(inItem)) ||
           (inItem.type == typeEnumerated && IsCode(inItem));
}

}  // namespace

void PrintCode(OSType inCode, std::string& ioText) {
    UInt8 bytes[sizeof inCode];
    WriteBigEndian(bytes, UInt32{inCode});
    ioText += '\'';
    if (IsPrintable(TextOf(bytes), '\''))
        ioText += TextOf(bytes);
    else
        PrintHex(bytes, ioText);
    ioText += '\'';
}

void PrintLeaf(const Item& inItem, std::string& ioText) {
    if (inItem.type == typeChar && IsPrintable(TextOf(inItem.content), '"')) {
        ((ioText += '"') += TextOf(inItem.content)) += '"';
    } else if (SpeaksForItself(inItem)) {
        PrintData(inItem, ioText);
    } else {
        PrintCode(inItem.type, ioText);
        ioText += '(';
        PrintData(inItem, ioText);
        ioText += ')';
    }
}

}  // namespace carbon
