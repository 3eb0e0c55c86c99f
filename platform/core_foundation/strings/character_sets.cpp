// The table of encodings.
#include "core_foundation/strings/character_sets.h"

#include <bit>

#include "core_foundation/encodings/encodings.h"

namespace carbon {

namespace {

constexpr bool kHostIsBigEndian = std::endian::native == std::endian::big;

struct ConverterEntry {
    CFStringEncoding encoding;
    const char* name;
};

// Linux: the Japanese, Chinese and Korean Mac encodings have no true equivalent here.
constexpr ConverterEntry kConverters[] = {
    {0x0006, "macos-6_2-10.4"},     // Mac Greek
    {0x0007, "macos-7_3-10.2"},     // Mac Cyrillic
    {0x001D, "macos-29-10.2"},      // Mac Central European
    {0x0023, "macos-35-10.2"},      // Mac Turkish
    {0x0202, "ISO-8859-2"},         // Latin 2
    {0x0203, "ISO-8859-3"},         // Latin 3
    {0x0204, "ISO-8859-4"},         // Latin 4
    {0x0205, "ISO-8859-5"},         // Cyrillic
    {0x0206, "ISO-8859-6"},         // Arabic
    {0x0207, "ISO-8859-7"},         // Greek
    {0x0208, "ISO-8859-8"},         // Hebrew
    {0x0209, "ISO-8859-9"},         // Latin 5
    {0x020A, "ISO-8859-10"},        // Latin 6
    {0x020D, "ISO-8859-13"},        // Latin 7
    {0x020E, "ISO-8859-14"},        // Latin 8
    {0x020F, "ISO-8859-15"},        // Latin 9
    {0x0400, "ibm-437"},            // DOS Latin US
    {0x0410, "ibm-850"},            // DOS Latin 1
    {0x0412, "ibm-852"},            // DOS Latin 2
    {0x041B, "ibm-866"},            // DOS Russian
    {0x0420, "ibm-943_P15A-2003"},  // DOS Japanese
    {0x0421, "windows-936"},        // DOS Simplified Chinese
    {0x0422, "windows-949"},        // DOS Korean
    {0x0423, "windows-950"},        // DOS Traditional Chinese
    {0x0500, "windows-1252"},       // Windows Latin 1
    {0x0501, "windows-1250"},       // Windows Latin 2
    {0x0502, "windows-1251"},       // Windows Cyrillic
    {0x0503, "windows-1253"},       // Windows Greek
    {0x0504, "windows-1254"},       // Windows Latin 5
    {0x0505, "windows-1255"},       // Windows Hebrew
    {0x0506, "windows-1256"},       // Windows Arabic
    {0x0507, "windows-1257"},       // Windows Baltic Rim
    {0x0508, "windows-1258"},       // Windows Vietnamese
    {0x0632, "gb18030"},            // GB 18030
    {0x0920, "EUC-JP"},
    {0x0930, "GB2312"},  // EUC CN
    {0x0931, "EUC-TW"},
    {0x0940, "EUC-KR"},
    {0x0A01, "Shift_JIS"},
    {0x0A02, "KOI8-R"},
    {0x0A03, "Big5"},
    {0x0A08, "KOI8-U"},
};

}  // namespace

EncodingTraits TraitsOf(CFStringEncoding inEncoding) {
    switch (inEncoding) {
        case kCFStringEncodingMacRoman:
            return {EncodingForm::kMacRoman};
        case kCFStringEncodingASCII:
            return {EncodingForm::kASCII};
        case kCFStringEncodingISOLatin1:
            return {EncodingForm::kLatin1};
        case kCFStringEncodingUTF8:
            return {EncodingForm::kUTF8};
        case kCFStringEncodingUTF16:
            return {EncodingForm::kUTF16, kHostIsBigEndian, true};
        case kCFStringEncodingUTF16BE:
            return {EncodingForm::kUTF16, true};
        case kCFStringEncodingUTF16LE:
            return {EncodingForm::kUTF16, false};
        case kCFStringEncodingUTF32:
            return {EncodingForm::kUTF32, kHostIsBigEndian, true};
        case kCFStringEncodingUTF32BE:
            return {EncodingForm::kUTF32, true};
        case kCFStringEncodingUTF32LE:
            return {EncodingForm::kUTF32, false};
    }
    for (const ConverterEntry& entry : kConverters) {
        if (entry.encoding == inEncoding) {
            return {EncodingForm::kConverter, false, false, entry.name};
        }
    }
    return {};
}

ConverterPtr OpenConverter(const char* inName) {
    UErrorCode error = U_ZERO_ERROR;
    ConverterPtr converter(ucnv_open(inName, &error));
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &error);
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    if (U_FAILURE(error)) converter.reset();
    return converter;
}

std::vector<CFStringEncoding> AvailableEncodings() {
    std::vector<CFStringEncoding> encodings = {
        kCFStringEncodingMacRoman, kCFStringEncodingASCII, kCFStringEncodingISOLatin1,
        kCFStringEncodingUTF8,     kCFStringEncodingUTF16, kCFStringEncodingUTF16BE,
        kCFStringEncodingUTF16LE,  kCFStringEncodingUTF32, kCFStringEncodingUTF32BE,
        kCFStringEncodingUTF32LE};
    for (const ConverterEntry& entry : kConverters) {
        if (OpenConverter(entry.name)) encodings.push_back(entry.encoding);
    }
    return encodings;
}

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

}  // namespace carbon
