// Owns the MacRoman table.
#include "text_utilities/mac_roman.h"

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <utility>

namespace carbon {
namespace {

constexpr std::array<char16_t, 128> kUpperHalf = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1,  // 80
    0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5, 0x00E7, 0x00E9, 0x00E8,  // 88
    0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3,  // 90
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC,  // 98
    0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6, 0x00DF,  // A0
    0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8,  // A8
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211,  // B0
    0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8,  // B8
    0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB,  // C0
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153,  // C8
    0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA,  // D0
    0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02,  // D8
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,  // E0
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4,  // E8
    0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC,  // F0
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,  // F8
};

constexpr auto kAll = [] {
    std::array<char16_t, 256> units{};
    for (unsigned i = 0; i < 256; ++i)
        units[i] = i < 0x80 ? static_cast<char16_t>(i) : kUpperHalf[i - 0x80];
    return units;
}();

using Pair = std::pair<char16_t, UInt8>;

// The upper half and the ohm sign, by code point.
constexpr auto kByUnicode = [] {
    std::array<Pair, 129> pairs{};
    for (unsigned i = 0; i < 128; ++i) pairs[i] = {kUpperHalf[i], UInt8(0x80 + i)};
    pairs[128] = {0x2126, 0xBD};
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}();

// U+0080 to U+00FF answered by index, since most accented letters lie there; 0 where there is none.
constexpr auto kLatin1 = [] {
    std::array<UInt8, 128> bytes{};
    for (const auto& [unit, byte] : kByUnicode)
        if (unit < 0x100) bytes[unit - 0x80U] = byte;
    return bytes;
}();

bool IsAscii(std::string_view inText) {
    return std::all_of(inText.begin(), inText.end(), [](char c) { return UInt8(c) < 0x80; });
}

void AppendUtf8(std::string& ioText, char16_t inUnit) {
    if (inUnit >= 0x800) ioText += char(0xE0 | inUnit >> 12);
    ioText += char(inUnit >= 0x800 ? 0x80 | (inUnit >> 6 & 0x3F) : 0xC0 | inUnit >> 6);
    ioText += char(0x80 | (inUnit & 0x3F));
}

std::optional<std::u16string> Utf16FromUtf8(std::string_view inText) {
    std::u16string units(inText.size(), u'\0');  // UTF-16 never takes more units than UTF-8 bytes
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(units.data(), int32_t(units.size()), &length, inText.data(),
                  int32_t(inText.size()), &status);
    if (U_FAILURE(status)) return std::nullopt;
    units.resize(size_t(length));
    return units;
}

std::optional<std::u16string> Composed(const std::u16string& inText) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* composer = unorm2_getNFCInstance(&status);
    const auto length = int32_t(inText.size());
    if (unorm2_isNormalized(composer, inText.data(), length, &status)) return inText;
    std::u16string composed(inText.size() * 3, u'\0');  // the most that composing can lengthen
    const int32_t needed = unorm2_normalize(composer, inText.data(), length, composed.data(),
                                            int32_t(composed.size()), &status);
    if (U_FAILURE(status)) return std::nullopt;
    composed.resize(size_t(needed));
    return composed;
}

}  // namespace

char16_t UnicodeFromMacRoman(UInt8 inCharacter) {
    return kAll[inCharacter];
}

void DecodeMacRoman(std::string_view inText, char16_t* outUnits) {
    const auto* bytes = reinterpret_cast<const UInt8*>(inText.data());
    const size_t size = inText.size();
    size_t at = 0;
    for (; size - at >= 4; at += 4) {  // four at a time: names are worth it
        outUnits[at] = kAll[bytes[at]];
        outUnits[at + 1] = kAll[bytes[at + 1]];
        outUnits[at + 2] = kAll[bytes[at + 2]];
        outUnits[at + 3] = kAll[bytes[at + 3]];
    }
    for (; at < size; ++at) outUnits[at] = kAll[bytes[at]];
}

std::optional<UInt8> MacRomanFromUnicode(char16_t inUnit) {
    if (inUnit < 0x80) return UInt8(inUnit);
    if (inUnit < 0x100) {
        const UInt8 byte = kLatin1[inUnit - 0x80U];
        return byte ? std::optional(byte) : std::nullopt;
    }
    const auto found = std::lower_bound(kByUnicode.begin(), kByUnicode.end(), Pair{inUnit, 0});
    if (found == kByUnicode.end() || found->first != inUnit) return std::nullopt;
    return found->second;
}

std::string Utf8FromMacRoman(std::string_view inText) {
    if (IsAscii(inText)) return std::string(inText);
    std::string text;
    text.reserve(inText.size() * 2);
    for (const char c : inText) {
        if (UInt8(c) < 0x80)
            text += c;
        else
            AppendUtf8(text, kUpperHalf[UInt8(c) - 0x80U]);
    }
    return text;
}

std::optional<std::string> MacRomanFromUtf8(std::string_view inText) {
    if (IsAscii(inText)) return std::string(inText);
    if (inText.size() > size_t(INT32_MAX) / 3) return std::nullopt;
    auto units = Utf16FromUtf8(inText);
    if (units) units = Composed(*units);
    if (!units) return std::nullopt;
    std::string text;
    text.reserve(units->size());
    for (const char16_t unit : *units) {
        const auto byte = MacRomanFromUnicode(unit);
        if (!byte) return std::nullopt;
        text += char(*byte);
    }
    return text;
}

}  // namespace carbon
