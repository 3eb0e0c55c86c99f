// Text from one encoding into another.
#include <Carbon/AERegistry.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <string>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/coercions/coercion.h"
#include "text_utilities/mac_roman.h"

namespace carbon {
namespace {

using Units = std::u16string;

constexpr size_t kCodesSize = 4;  // script and language before the text of an 'itxt'
constexpr char16_t kByteOrderMark = 0xFEFF, kSwappedMark = 0xFFFE;

constexpr DescType kTextTypes[] = {
    typeChar,     typeStyledText, typeUnicodeText, typeUTF8Text, typeUTF16ExternalRepresentation,
    typeIntlText, typeCString,    typePString};

// The MacRoman characters of a type that holds such; nothing when its frame is wrong.
std::optional<Bytes> MacRomanPart(DescType inType, Bytes inData) {
    switch (inType) {
        case typePString:
            if (inData.empty() || inData[0] >= inData.size()) return std::nullopt;
            return inData.subspan(1, inData[0]);
        case typeCString:
            return inData.first(
                size_t(std::find(inData.begin(), inData.end(), UInt8(0)) - inData.begin()));
        case typeIntlText:
            if (inData.size() < kCodesSize) return std::nullopt;
            return inData.subspan(kCodesSize);
        default:
            return inData;
    }
}

std::optional<Units> UnitsFromMacRoman(Bytes inData) {
    Units units(inData.size(), 0);
    std::transform(inData.begin(), inData.end(), units.begin(), UnicodeFromMacRoman);
    return units;
}

std::optional<Units> UnitsFromUtf8(Bytes inData) {
    Units units(inData.size(), 0);  // never more units than bytes
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), int32_t(units.size()), &length,
                  reinterpret_cast<const char*>(inData.data()), int32_t(inData.size()), &error);
    if (U_FAILURE(error)) return std::nullopt;
    units.resize(size_t(length));
    return units;
}

std::optional<Units> UnitsFromUtf16(Bytes inData, bool inMayBeMarked) {
    if (inData.size() % 2 != 0) return std::nullopt;
    Units units(inData.size() / 2, 0);
    for (size_t i = 0; i < units.size(); ++i)
        units[i] = ReadBigEndian<UInt16>(inData.data() + 2 * i);
    if (!inMayBeMarked || units.empty()) return units;
    if (units[0] == kSwappedMark)
        for (char16_t& unit : units) unit = char16_t(unit << 8 | unit >> 8);
    if (units[0] == kByteOrderMark) units.erase(0, 1);
    return units;
}

std::optional<Units> Decode(const Item& inItem) {
    if (inItem.type == typeUTF8Text) return UnitsFromUtf8(inItem.content);
    if (inItem.type == typeUnicodeText) return UnitsFromUtf16(inItem.content, false);
    if (inItem.type == typeUTF16ExternalRepresentation) return UnitsFromUtf16(inItem.content, true);
    const auto part = MacRomanPart(inItem.type, inItem.content);
    return part ? UnitsFromMacRoman(*part) : std::nullopt;
}

// Letters and accents as one character each, as far as there are such. Text that ICU refuses stays.
Units Composed(const Units& inUnits) {
    if (std::all_of(inUnits.begin(), inUnits.end(), [](char16_t unit) { return unit < 0x80; }))
        return inUnits;
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFCInstance(&error);
    Units composed(inUnits.size() + 1, 0);
    for (;;) {
        error = U_ZERO_ERROR;
        const int32_t length = unorm2_normalize(normalizer, inUnits.data(), int32_t(inUnits.size()),
                                                composed.data(), int32_t(composed.size()), &error);
        if (error != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(error)) return inUnits;
        composed.resize(size_t(length));
        if (U_SUCCESS(error)) return composed;
    }
}

void AppendMacRoman(const Units& inUnits, std::vector<UInt8>& ioBytes) {
    for (const char16_t unit : Composed(inUnits))
        if (!U16_IS_TRAIL(unit)) ioBytes.push_back(MacRomanFromUnicode(unit).value_or('?'));
}

bool AppendUtf8(const Units& inUnits, std::vector<UInt8>& ioBytes) {
    ioBytes.resize(inUnits.size() * 3);
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(reinterpret_cast<char*>(ioBytes.data()), int32_t(ioBytes.size()), &length,
                inUnits.data(), int32_t(inUnits.size()), &error);
    ioBytes.resize(size_t(length));
    return U_SUCCESS(error);
}

void AppendUtf16(const Units& inUnits, std::vector<UInt8>& ioBytes) {
    ioBytes.resize(inUnits.size() * 2);
    for (size_t i = 0; i < inUnits.size(); ++i)
        WriteBigEndian(ioBytes.data() + 2 * i, UInt16(inUnits[i]));
}

// False when the text does not fit into the type.
bool Encode(const Units& inUnits, DescType inType, std::vector<UInt8>& outBytes) {
    constexpr size_t kLongestPString = 255;
    if (inType == typeUTF8Text) return AppendUtf8(inUnits, outBytes);
    if (inType == typeUnicodeText || inType == typeUTF16ExternalRepresentation) {
        AppendUtf16(inUnits, outBytes);
        return true;
    }
    if (inType == typeIntlText) outBytes.resize(kCodesSize);  // Roman script, English
    if (inType == typePString) outBytes.push_back(0);
    AppendMacRoman(inUnits, outBytes);
    if (inType == typeCString) outBytes.push_back(0);
    if (inType == typePString) outBytes[0] = UInt8(outBytes.size() - 1);
    return inType != typePString || outBytes.size() - 1 <= kLongestPString;
}

}  // namespace

bool IsTextType(DescType inType) {
    return std::ranges::find(kTextTypes, inType) != std::end(kTextTypes);
}

OSErr CoerceText(const Item& inItem, DescType inType, AEDesc* outDesc) {
    if (!IsTextType(inItem.type) || !IsTextType(inType)) return errAECoercionFail;
    const auto units = Decode(inItem);
    std::vector<UInt8> bytes;
    if (!units || !Encode(*units, inType, bytes)) return errAECoercionFail;
    *outDesc = {inType, HandleOf(Storage::OfLeaf(inType, bytes))};
    return noErr;
}

}  // namespace carbon
