// Text as bytes.
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstring>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/character_sets.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

constexpr UChar32 kByteOrderMark = 0xFEFF;

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
    // As many of these units, all ASCII, as there is room for.
    size_t PutAscii(std::u16string_view inUnits) {
        const size_t count = mBytes ? std::min(inUnits.size(), mRoom - mUsed) : inUnits.size();
        for (size_t i = 0; mBytes && i < count; ++i) {
            mBytes[mUsed + i] = static_cast<UInt8>(inUnits[i]);
        }
        mUsed += count;
        return count;
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

// How many units from inIndex on are ASCII, which is itself in every encoding that has a loop of
// its own; without the last one when a mark may follow it.
size_t PlainAscii(std::u16string_view inText, size_t inIndex) {
    size_t end = inIndex;
    while (end < inText.size() && inText[end] < 0x80) ++end;
    const bool mayBeMarked = end > inIndex && end < inText.size() && inText[end] >= 0x300;
    return end - inIndex - (mayBeMarked ? 1 : 0);
}

// A character of one unit with nothing that belongs to it.
bool IsAlone(std::u16string_view inText, size_t inIndex, bool inIsNarrow) {
    const bool isMarked = inIndex + 1 < inText.size() && inText[inIndex + 1] >= 0x300;
    return !U16_IS_SURROGATE(inText[inIndex]) && !(inIsNarrow && isMarked);
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
    char piece[CharacterEncoder::kMostBytes];
    if (IsAlone(inText, inStart, inEncoder.IsNarrow())) {
        const size_t size = inEncoder.Encode(inText[inStart], piece);
        if (size > 0) return ioOutput->Put({piece, size}) ? 1 : 0;
    }
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

// All of a text in UTF-8, unless it does not fit or has something that cannot be said.
std::optional<EncodeResult> EncodeWholeUTF8(std::u16string_view inText, UInt8* outBytes,
                                            size_t inRoom) {
    UErrorCode error = U_ZERO_ERROR;
    int32_t size = 0;
    const auto room = static_cast<int32_t>(std::min(inRoom, kLongestString));
    u_strToUTF8(reinterpret_cast<char*>(outBytes), room, &size, inText.data(),
                static_cast<int32_t>(inText.size()), &error);
    if (U_FAILURE(error)) return std::nullopt;
    return EncodeResult{inText.size(), static_cast<size_t>(size)};
}

}  // namespace

EncodeResult Encode(std::u16string_view inText, CFStringEncoding inEncoding, UInt8 inLossByte,
                    bool inIsExternal, UInt8* outBytes, size_t inRoom) {
    const EncodingTraits traits = TraitsOf(inEncoding);
    const CharacterEncoder encoder(traits);
    Output output(outBytes, inRoom);
    if (traits.form == EncodingForm::kNone || !encoder.IsUsable()) return {};
    if (traits.form == EncodingForm::kUTF8 && outBytes && !inIsExternal) {
        if (const auto whole = EncodeWholeUTF8(inText, outBytes, inRoom)) return *whole;
    }
    if (inIsExternal && !output.Put(Mark(traits, encoder))) return {};
    const bool keepsAscii = KeepsAscii(traits.form);
    size_t at = 0;
    while (at < inText.size()) {
        if (const size_t plain = keepsAscii ? PlainAscii(inText, at) : 0) {
            const size_t taken = output.PutAscii(inText.substr(at, plain));
            at += taken;
            if (taken < plain) break;
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
