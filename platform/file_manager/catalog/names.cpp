// Owns the two spellings of names: UTF-8 with ':' on disk, MacRoman with '/' in a file spec.
#include "file_manager/catalog/names.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "text_utilities/mac_roman.h"

namespace carbon {

namespace {

constexpr size_t kLongestExtension = 5;

bool IsPlainAscii(std::string_view inText) {
    return std::all_of(inText.begin(), inText.end(), [](char c) { return UInt8(c) < 0x80; });
}

std::array<char, 256> MakeFoldTable() {
    std::array<char, 256> table;
    for (int i = 0; i < 256; ++i) {
        const auto small = char16_t(u_tolower(UnicodeFromMacRoman(UInt8(i))));
        table[size_t(i)] = char(MacRomanFromUnicode(small).value_or(UInt8(i)));
    }
    return table;
}

icu::UnicodeString Composed(std::string_view inUtf8) {
    // Malformed bytes become U+FFFD, which MacRoman lacks like any other such character.
    const auto text = icu::UnicodeString::fromUTF8({inUtf8.data(), SInt32(inUtf8.size())});
    UErrorCode status = U_ZERO_ERROR;
    const auto* composer = icu::Normalizer2::getNFCInstance(status);
    const auto composed = U_SUCCESS(status) ? composer->normalize(text, status) : text;
    return U_SUCCESS(status) ? composed : text;
}

std::string NearestMacRoman(std::string_view inDiskName) {
    const auto text = Composed(inDiskName);
    std::string name;
    for (SInt32 i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 character = text.char32At(i);
        const auto byte =
            character < 0x10000 ? MacRomanFromUnicode(char16_t(character)) : std::nullopt;
        name += char(byte.value_or('?'));
    }
    return WithSeparatorsExchanged(std::move(name));
}

std::string ExtensionOf(const std::string& inName) {
    const auto dot = inName.rfind('.');
    if (dot == std::string::npos || dot == 0) return "";
    const auto length = inName.size() - dot;
    return length > 1 && length <= kLongestExtension ? inName.substr(dot) : "";
}

bool IsHexadecimal(char inCharacter) {
    return (inCharacter >= '0' && inCharacter <= '9') || (inCharacter >= 'A' && inCharacter <= 'F');
}

}  // namespace

std::optional<std::string> SpecNameOf(std::string_view inDiskName) {
    if (inDiskName.empty()) return std::nullopt;
    if (IsPlainAscii(inDiskName)) {
        if (inDiskName.size() > kLongestSpecName) return std::nullopt;
        return WithSeparatorsExchanged(std::string(inDiskName));
    }
    auto name = MacRomanFromUtf8(inDiskName);
    if (!name || name->size() > kLongestSpecName) return std::nullopt;
    return WithSeparatorsExchanged(std::move(*name));
}

std::string DiskNameOf(std::string_view inSpecName) {
    if (IsPlainAscii(inSpecName)) return WithSeparatorsExchanged(std::string(inSpecName));
    return WithSeparatorsExchanged(Utf8FromMacRoman(inSpecName));
}

std::string ShortenedName(std::string_view inDiskName, SInt32 inId, size_t inRoom) {
    const std::string name = NearestMacRoman(inDiskName);
    const std::string extension = ExtensionOf(name);
    char digits[8];
    const auto* end = std::to_chars(digits, digits + sizeof digits, UInt32(inId), 16).ptr;
    std::string number(static_cast<const char*>(digits), end);
    for (char& digit : number) digit = char(std::toupper(digit));
    const size_t taken = 1 + number.size() + extension.size();
    const std::string start = name.substr(0, name.size() - extension.size());
    return start.substr(0, inRoom - taken) + '#' + number + extension;
}

std::optional<SInt32> IdInName(std::string_view inSpecName) {
    const auto mark = inSpecName.rfind('#');
    if (mark == std::string_view::npos) return std::nullopt;
    const auto digits = inSpecName.substr(mark + 1);
    const auto end = std::find_if_not(digits.begin(), digits.end(), IsHexadecimal);
    const auto rest = size_t(digits.end() - end);
    if (end == digits.begin() || rest > kLongestExtension || (rest > 0 && *end != '.')) {
        return std::nullopt;
    }
    SInt32 id = 0;
    const auto result =
        std::from_chars(digits.data(), digits.data() + (digits.size() - rest), id, 16);
    return result.ec == std::errc() ? std::optional(id) : std::nullopt;
}

std::string Folded(std::string_view inSpecName) {
    static const std::array<char, 256> sTable = MakeFoldTable();
    std::string name(inSpecName);
    for (char& character : name) character = sTable[UInt8(character)];
    return name;
}

std::string FoldedDiskName(std::string_view inDiskName) {
    std::string name;
    Composed(inDiskName).foldCase().toUTF8String(name);
    return name;
}

std::string WithSeparatorsExchanged(std::string inName) {
    for (char& character : inName) {
        if (character == ':') {
            character = '/';
        } else if (character == '/') {
            character = ':';
        }
    }
    return inName;
}

bool IsCompanionName(std::string_view inDiskName) {
    return inDiskName.size() > 2 && inDiskName.starts_with("._");
}

void SetPascal(std::string_view inText, size_t inRoom, unsigned char* outString) {
    const size_t length = std::min(inText.size(), inRoom);
    outString[0] = UInt8(length);
    std::memcpy(outString + 1, inText.data(), length);
}

std::string_view TextOfPascal(const unsigned char* inString) {
    return {reinterpret_cast<const char*>(inString) + 1, inString[0]};
}

}  // namespace carbon
