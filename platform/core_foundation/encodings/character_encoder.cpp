// One character in an encoding.
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "core_foundation/strings/character_sets.h"
#include "text_utilities/mac_roman.h"

namespace carbon {

namespace {

size_t EncodeUTF8(UChar32 inCharacter, char* outBytes) {
    if (U_IS_SURROGATE(inCharacter)) return 0;
    size_t count = 0;
    auto* bytes = reinterpret_cast<UInt8*>(outBytes);
    U8_APPEND_UNSAFE(bytes, count, inCharacter);
    return count;
}

size_t EncodeWide(UInt32 inValue, size_t inSize, bool inBigEndian, char* outBytes) {
    for (size_t i = 0; i < inSize; ++i) {
        const size_t shift = 8 * (inBigEndian ? inSize - 1 - i : i);
        outBytes[i] = static_cast<char>(inValue >> shift);
    }
    return inSize;
}

size_t EncodeUTF16(UChar32 inCharacter, bool inBigEndian, char* outBytes) {
    if (U_IS_BMP(inCharacter)) {
        return EncodeWide(static_cast<UInt32>(inCharacter), 2, inBigEndian, outBytes);
    }
    EncodeWide(U16_LEAD(inCharacter), 2, inBigEndian, outBytes);
    return 2 + EncodeWide(U16_TRAIL(inCharacter), 2, inBigEndian, outBytes + 2);
}

size_t EncodeByte(UChar32 inCharacter, UChar32 inLimit, char* outBytes) {
    if (inCharacter >= inLimit) return 0;
    *outBytes = static_cast<char>(inCharacter);
    return 1;
}

size_t EncodeMacRoman(UChar32 inCharacter, char* outBytes) {
    if (!U_IS_BMP(inCharacter)) return 0;
    const auto byte = MacRomanFromUnicode(static_cast<char16_t>(inCharacter));
    if (!byte) return 0;
    *outBytes = static_cast<char>(*byte);
    return 1;
}

}  // namespace

CharacterEncoder::CharacterEncoder(const EncodingTraits& inTraits) : mTraits(inTraits) {
    if (mTraits.converter) mConverter = OpenConverter(mTraits.converter);
}

size_t CharacterEncoder::Encode(UChar32 inCharacter, char* outBytes) const {
    switch (mTraits.form) {
        case EncodingForm::kMacRoman:
            return EncodeMacRoman(inCharacter, outBytes);
        case EncodingForm::kASCII:
            return EncodeByte(inCharacter, 0x80, outBytes);
        case EncodingForm::kLatin1:
            return EncodeByte(inCharacter, 0x100, outBytes);
        case EncodingForm::kUTF8:
            return EncodeUTF8(inCharacter, outBytes);
        case EncodingForm::kUTF16:
            return EncodeUTF16(inCharacter, mTraits.bigEndian, outBytes);
        case EncodingForm::kUTF32:
            if (U_IS_SURROGATE(inCharacter)) return 0;
            return EncodeWide(static_cast<UInt32>(inCharacter), 4, mTraits.bigEndian, outBytes);
        case EncodingForm::kConverter:
            return Convert(inCharacter, outBytes);
        case EncodingForm::kNone:
            break;
    }
    return 0;
}

// ICU lets characters such as the soft hyphen vanish without an error; no bytes means no success.
size_t CharacterEncoder::Convert(UChar32 inCharacter, char* outBytes) const {
    char16_t units[2];
    int32_t count = 0;
    U16_APPEND_UNSAFE(units, count, inCharacter);
    UErrorCode error = U_ZERO_ERROR;
    const int32_t size =
        ucnv_fromUChars(mConverter.get(), outBytes, kMostBytes, units, count, &error);
    return U_FAILURE(error) ? 0 : static_cast<size_t>(size);
}

}  // namespace carbon
