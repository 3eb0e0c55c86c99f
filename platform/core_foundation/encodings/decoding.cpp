// Bytes as text.
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/character_sets.h"
#include "core_foundation/strings/string_object.h"
#include "text_utilities/mac_roman.h"

namespace carbon {

namespace {

constexpr std::string_view kMarkUTF8 = "\xEF\xBB\xBF";
constexpr UChar32 kByteOrderMark = 0xFEFF;

using Text = std::optional<std::u16string>;

Text DecodeRoman(std::string_view inBytes) {
    std::u16string text(inBytes.size(), u'\0');
    DecodeMacRoman(inBytes, text.data());
    return text;
}

Text DecodeLatin1(std::string_view inBytes) {
    std::u16string text(inBytes.size(), u'\0');
    for (size_t i = 0; i < inBytes.size(); ++i) text[i] = static_cast<UInt8>(inBytes[i]);
    return text;
}

Text DecodeASCII(std::string_view inBytes) {
    for (const char byte : inBytes) {
        if (static_cast<UInt8>(byte) >= 0x80) return std::nullopt;
    }
    return std::u16string(inBytes.begin(), inBytes.end());
}

Text DecodeUTF8(std::string_view inBytes) {
    if (inBytes.starts_with(kMarkUTF8)) inBytes.remove_prefix(kMarkUTF8.size());
    if (inBytes.size() > kLongestString) return std::nullopt;
    std::u16string text(inBytes.size(), u'\0');
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    const auto size = static_cast<int32_t>(inBytes.size());
    u_strFromUTF8(text.data(), size, &length, inBytes.data(), size, &error);
    if (U_FAILURE(error)) return std::nullopt;
    text.resize(static_cast<size_t>(length));
    return text;
}

UInt32 Unit(std::string_view inBytes, size_t inSize, bool inBigEndian) {
    UInt32 value = 0;
    for (size_t i = 0; i < inSize; ++i) {
        const auto byte = static_cast<UInt8>(inBytes[inBigEndian ? i : inSize - 1 - i]);
        value = value << 8 | byte;
    }
    return value;
}

// Takes a byte-order mark away and says which order the rest has.
bool IsBigEndian(std::string_view* ioBytes, size_t inSize, const EncodingTraits& inTraits,
                 bool inIsExternal) {
    if (!inIsExternal || !inTraits.mayHaveMark) return inTraits.bigEndian;
    if (ioBytes->size() < inSize) return true;
    const bool isBig = Unit(*ioBytes, inSize, true) == UInt32{kByteOrderMark};
    const bool isLittle = Unit(*ioBytes, inSize, false) == UInt32{kByteOrderMark};
    if (isBig || isLittle) ioBytes->remove_prefix(inSize);
    return !isLittle;
}

Text DecodeUTF16(std::string_view inBytes, const EncodingTraits& inTraits, bool inIsExternal) {
    const bool bigEndian = IsBigEndian(&inBytes, 2, inTraits, inIsExternal);
    std::u16string text(inBytes.size() / 2, u'\0');
    for (size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char16_t>(Unit(inBytes.substr(2 * i, 2), 2, bigEndian));
    }
    return text;
}

Text DecodeUTF32(std::string_view inBytes, const EncodingTraits& inTraits, bool inIsExternal) {
    const bool bigEndian = IsBigEndian(&inBytes, 4, inTraits, inIsExternal);
    if (inBytes.size() % 4 != 0) return std::nullopt;
    std::u16string text;
    text.reserve(inBytes.size() / 4);
    for (size_t i = 0; i < inBytes.size(); i += 4) {
        const UInt32 value = Unit(inBytes.substr(i, 4), 4, bigEndian);
        if (value > 0x10FFFF || U_IS_SURROGATE(value)) return std::nullopt;
        if (value > 0xFFFF) text.push_back(U16_LEAD(value));
        text.push_back(static_cast<char16_t>(value > 0xFFFF ? U16_TRAIL(value) : value));
    }
    return text;
}

Text DecodeWithConverter(std::string_view inBytes, const char* inName) {
    const ConverterPtr converter = OpenConverter(inName);
    if (!converter || inBytes.size() > kLongestString / 2) return std::nullopt;
    std::u16string text(inBytes.size() * 2, u'\0');
    UErrorCode error = U_ZERO_ERROR;
    const int32_t length =
        ucnv_toUChars(converter.get(), text.data(), static_cast<int32_t>(text.size()),
                      inBytes.data(), static_cast<int32_t>(inBytes.size()), &error);
    if (U_FAILURE(error)) return std::nullopt;
    text.resize(static_cast<size_t>(length));
    return text;
}

}  // namespace

Text Decode(std::string_view inBytes, CFStringEncoding inEncoding, bool inIsExternal) {
    const EncodingTraits traits = TraitsOf(inEncoding);
    switch (traits.form) {
        case EncodingForm::kMacRoman:
            return DecodeRoman(inBytes);
        case EncodingForm::kASCII:
            return DecodeASCII(inBytes);
        case EncodingForm::kLatin1:
            return DecodeLatin1(inBytes);
        case EncodingForm::kUTF8:
            return DecodeUTF8(inBytes);
        case EncodingForm::kUTF16:
            return DecodeUTF16(inBytes, traits, inIsExternal);
        case EncodingForm::kUTF32:
            return DecodeUTF32(inBytes, traits, inIsExternal);
        case EncodingForm::kConverter:
            return DecodeWithConverter(inBytes, traits.converter);
        case EncodingForm::kNone:
            break;
    }
    return std::nullopt;
}

}  // namespace carbon
