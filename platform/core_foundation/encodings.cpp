// Whole texts as bytes and back.
#include "core_foundation/encodings.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <array>
#include <cstring>

#include "core_foundation/character_sets.h"
#include "core_foundation/string_object.h"
#include "text_utilities/mac_roman.h"

namespace carbon {

namespace {

constexpr std::string_view kMarkUTF8 = "\xEF\xBB\xBF";
constexpr UChar32 kByteOrderMark = 0xFEFF;

using Text = std::optional<std::u16string>;

Text DecodeBytewise(std::string_view inBytes, char16_t (*inDecode)(UInt8)) {
    std::u16string text(inBytes.size(), u'\0');
    for (size_t i = 0; i < inBytes.size(); ++i) text[i] = inDecode(static_cast<UInt8>(inBytes[i]));
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

UChar32 CharacterAt(std::u16string_view inText, size_t inIndex) {
    UChar32 character;
    U16_GET(inText.data(), 0, inIndex, inText.size(), character);
    return character;
}

// Where the character at inStart ends, together with the marks that belong to it.
size_t EndOfCluster(std::u16string_view inText, size_t inStart) {
    size_t end = inStart;
    U16_FWD_1(inText.data(), end, inText.size());
    while (end < inText.size() && inText[end] >= 0x300 &&
           u_getCombiningClass(CharacterAt(inText, end)) != 0) {
        U16_FWD_1(inText.data(), end, inText.size());
    }
    return end;
}

std::u16string Composed(std::u16string_view inCluster) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* form = icu::Normalizer2::getNFCInstance(error);
    if (U_FAILURE(error)) return std::u16string(inCluster);
    const icu::UnicodeString text = form->normalize(
        icu::UnicodeString(inCluster.data(), static_cast<int32_t>(inCluster.size())), error);
    return std::u16string(text.getBuffer(), static_cast<size_t>(text.length()));
}

// Writes bytes while there is room; without a buffer it only counts.
class Output {
  public:
    Output(UInt8* outBytes, size_t inRoom) : mBytes(outBytes), mRoom(inRoom) {}

    bool Put(std::string_view inBytes) {
        if (mBytes) {
            if (inBytes.size() > mRoom - mUsed) return false;
            std::memcpy(mBytes + mUsed, inBytes.data(), inBytes.size());
        }
        mUsed += inBytes.size();
        return true;
    }
    size_t Used() const { return mUsed; }

  private:
    UInt8* mBytes;
    size_t mRoom;
    size_t mUsed = 0;
};

// The bytes of all characters of a text; nothing when one of them cannot be said.
std::optional<std::string> EncodeCharacters(std::u16string_view inText,
                                            const CharacterEncoder& inEncoder, UInt8 inLossByte) {
    std::string bytes;
    for (size_t at = 0; at < inText.size();) {
        UChar32 character;
        U16_NEXT(inText.data(), at, inText.size(), character);
        char piece[CharacterEncoder::kMostBytes];
        size_t size = inEncoder.Encode(character, piece);
        if (size == 0 && inLossByte == 0) return std::nullopt;
        if (size == 0) piece[size++] = static_cast<char>(inLossByte);
        bytes.append(piece, size);
    }
    return bytes;
}

std::optional<std::string> EncodeCluster(std::u16string_view inCluster,
                                         const CharacterEncoder& inEncoder, UInt8 inLossByte) {
    const bool isPlain = inCluster.size() == 1 || !inEncoder.IsNarrow();
    return isPlain ? EncodeCharacters(inCluster, inEncoder, inLossByte)
                   : EncodeCharacters(Composed(inCluster), inEncoder, inLossByte);
}

// ASCII is itself in every encoding that has a loop of its own, unless a mark follows.
bool IsPlainAscii(std::u16string_view inText, size_t inIndex) {
    return inText[inIndex] < 0x80 && (inIndex + 1 == inText.size() || inText[inIndex + 1] < 0x300);
}

bool KeepsAscii(EncodingForm inForm) {
    return inForm == EncodingForm::kMacRoman || inForm == EncodingForm::kASCII ||
           inForm == EncodingForm::kLatin1 || inForm == EncodingForm::kUTF8;
}

std::string Mark(const EncodingTraits& inTraits, const CharacterEncoder& inEncoder) {
    if (inTraits.form != EncodingForm::kUTF8 && !inTraits.mayHaveMark) return {};
    char bytes[CharacterEncoder::kMostBytes];
    return std::string(bytes, inEncoder.Encode(kByteOrderMark, bytes));
}

// One step of Encode: the units it took, 0 at the end of what can be said.
size_t EncodeNext(std::u16string_view inText, size_t inStart, const CharacterEncoder& inEncoder,
                  UInt8 inLossByte, Output* ioOutput) {
    size_t end = inStart;
    if (inEncoder.IsNarrow()) {
        end = EndOfCluster(inText, inStart);
    } else {
        U16_FWD_1(inText.data(), end, inText.size());
    }
    const auto cluster = inText.substr(inStart, end - inStart);
    const auto bytes = EncodeCluster(cluster, inEncoder, inLossByte);
    return bytes && ioOutput->Put(*bytes) ? end - inStart : 0;
}

}  // namespace

bool IsEncodingAvailable(CFStringEncoding inEncoding) {
    const EncodingTraits traits = TraitsOf(inEncoding);
    if (traits.form == EncodingForm::kConverter) return OpenConverter(traits.converter) != nullptr;
    return traits.form != EncodingForm::kNone;
}

int MostBytesPerUnit(CFStringEncoding inEncoding) {
    const EncodingTraits traits = TraitsOf(inEncoding);
    switch (traits.form) {
        case EncodingForm::kNone:
            return 0;
        case EncodingForm::kUTF8:
            return 3;
        case EncodingForm::kUTF16:
            return 2;
        case EncodingForm::kUTF32:
            return 4;
        case EncodingForm::kConverter: {
            const ConverterPtr converter = OpenConverter(traits.converter);
            return converter ? ucnv_getMaxCharSize(converter.get()) : 0;
        }
        default:
            return 1;
    }
}

Text Decode(std::string_view inBytes, CFStringEncoding inEncoding, bool inIsExternal) {
    const EncodingTraits traits = TraitsOf(inEncoding);
    switch (traits.form) {
        case EncodingForm::kMacRoman:
            return DecodeBytewise(inBytes, UnicodeFromMacRoman);
        case EncodingForm::kASCII:
            return DecodeASCII(inBytes);
        case EncodingForm::kLatin1:
            return DecodeBytewise(inBytes, [](UInt8 byte) { return char16_t{byte}; });
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

EncodeResult Encode(std::u16string_view inText, CFStringEncoding inEncoding, UInt8 inLossByte,
                    bool inIsExternal, UInt8* outBytes, size_t inRoom) {
    const EncodingTraits traits = TraitsOf(inEncoding);
    const CharacterEncoder encoder(traits);
    Output output(outBytes, inRoom);
    if (traits.form == EncodingForm::kNone || !encoder.IsUsable()) return {};
    if (inIsExternal && !output.Put(Mark(traits, encoder))) return {};
    const bool keepsAscii = KeepsAscii(traits.form);
    size_t at = 0;
    while (at < inText.size()) {
        if (keepsAscii && IsPlainAscii(inText, at)) {
            const char byte = static_cast<char>(inText[at]);
            if (!output.Put({&byte, 1})) break;
            ++at;
            continue;
        }
        const size_t taken = EncodeNext(inText, at, encoder, inLossByte, &output);
        if (taken == 0) break;
        at += taken;
    }
    return {at, output.Used()};
}

std::optional<std::string> EncodeAll(std::u16string_view inText, CFStringEncoding inEncoding,
                                     UInt8 inLossByte, bool inIsExternal) {
    if (!IsEncodingAvailable(inEncoding)) return std::nullopt;
    const EncodeResult size = Encode(inText, inEncoding, inLossByte, inIsExternal, nullptr, 0);
    if (size.units != inText.size()) return std::nullopt;
    std::string bytes(size.bytes, '\0');
    Encode(inText, inEncoding, inLossByte, inIsExternal, reinterpret_cast<UInt8*>(bytes.data()),
           bytes.size());
    return bytes;
}

std::string Utf8Of(std::u16string_view inText) {
    std::string text;
    icu::UnicodeString(false, inText.data(), static_cast<int32_t>(inText.size()))
        .toUTF8String(text);
    return text;
}

}  // namespace carbon
