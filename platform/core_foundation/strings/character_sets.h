// Which encodings there are, and one character in one of them.
#pragma once

#include <CoreFoundation/CFString.h>
#include <unicode/ucnv.h>

#include <memory>
#include <vector>

namespace carbon {

enum class EncodingForm { kNone, kMacRoman, kASCII, kLatin1, kUTF8, kUTF16, kUTF32, kConverter };

struct EncodingTraits {
    EncodingForm form = EncodingForm::kNone;
    bool bigEndian = false;           // UTF-16 and UTF-32
    bool mayHaveMark = false;         // its byte order is open, so external bytes may carry a mark
    const char* converter = nullptr;  // ICU's name
};

EncodingTraits TraitsOf(CFStringEncoding inEncoding);

// All that TraitsOf knows and this computer's ICU has.
std::vector<CFStringEncoding> AvailableEncodings();

struct CloseConverter {
    void operator()(UConverter* inConverter) const { ucnv_close(inConverter); }
};
using ConverterPtr = std::unique_ptr<UConverter, CloseConverter>;

// A converter that stops at what it cannot convert; null when ICU lacks it.
ConverterPtr OpenConverter(const char* inName);

// Says characters one at a time.
class CharacterEncoder {
  public:
    explicit CharacterEncoder(const EncodingTraits& inTraits);
    bool IsUsable() const { return mTraits.form != EncodingForm::kConverter || mConverter; }

    // Letters with separate marks have to be composed before they fit.
    bool IsNarrow() const {
        return mTraits.form != EncodingForm::kUTF8 && mTraits.form != EncodingForm::kUTF16 &&
               mTraits.form != EncodingForm::kUTF32;
    }

    // The bytes written to outBytes, which has room for kMostBytes; 0 when it cannot be said. A
    // lone surrogate is a character of its own.
    static constexpr size_t kMostBytes = 8;
    size_t Encode(UChar32 inCharacter, char* outBytes) const;

  private:
    size_t Convert(UChar32 inCharacter, char* outBytes) const;

    EncodingTraits mTraits;
    ConverterPtr mConverter;
};

}  // namespace carbon
