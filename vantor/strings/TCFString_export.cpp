// Texts as bytes, as units and as numbers.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "vantor/foundation/LException.h"
#include "vantor/foundation/StPointer.h"
#include "vantor/strings/PStr.h"
#include "vantor/strings/TCFString.h"

namespace {

constexpr SInt32 kMostInt = 0x7FFFFFFF;
constexpr SInt32 kScratchSize = 1024;

CFIndex BufferSize(SInt32 inMaxLength) {
    return std::clamp(inMaxLength, 0, kMostInt - 1) + 1;
}

bool GetCString(CFStringRef inString, CFStringEncoding inEncoding, char* outText, CFIndex inSize) {
    return CFStringGetCString(inString, outText, inSize, inEncoding);
}

bool GetDefaultOrSystemCString(CFStringRef inString, char* outText, CFIndex inSize) {
    return GetCString(inString, TCFString::DefaultEncoding(), outText, inSize) ||
           GetCString(inString, CFStringGetSystemEncoding(), outText, inSize);
}

// Room for the digits that strtol and its like read.
struct NumberText {
    explicit NumberText(const TCFString& inString) { inString.CString(255, text); }

    void Report(const char* inEnd, Boolean* outOk) const {
        if (outOk != nullptr) *outOk = *inEnd == '\0';
    }

    char text[256];
};

}  // namespace

char* TCFString::CString(SInt32 inMaxLength, char* outText) const {
    *outText = '\0';
    if (IsEmpty()) return outText;
    if (GetDefaultOrSystemCString(mString, outText, BufferSize(inMaxLength))) return outText;
    char scratch[kScratchSize];
    *outText = '\0';
    const bool fits = GetDefaultOrSystemCString(mString, scratch, kScratchSize);
    CStrNCopy(fits ? scratch : kCannotDisplayCString, outText, inMaxLength);
    return outText;
}

bool TCFString::CStringWithEncoding(SInt32 inMaxLength, char* outText,
                                    CFStringEncoding inEncoding) const {
    *outText = '\0';
    return IsEmpty() || GetCString(mString, inEncoding, outText, BufferSize(inMaxLength));
}

StringPtr TCFString::PString(StringPtr outText, SInt32 inMaxLength) const {
    const SInt32 most = std::clamp(inMaxLength, 0, 255);
    ByteCount length = 0;
    outText[0] = 0;
    if (IsEmpty()) return outText;
    if (GetTextAndEncodingFromCFString(mString, outText + 1, static_cast<ByteCount>(most), &length,
                                       nullptr) == noErr) {
        outText[0] = static_cast<UInt8>(length);
        return outText;
    }
    const CFStringEncoding system = CFStringGetSystemEncoding();
    if (CFStringGetPascalString(mString, outText, most + 1, system)) return outText;
    Str255 scratch;
    if (most < 255 && CFStringGetPascalString(mString, scratch, sizeof scratch, system)) {
        PStrNCopy(scratch, outText, most);
        return outText;
    }
    char text[256];
    c2pstrcpy(outText, CString(most, text));
    return outText;
}

bool TCFString::PStringWithEncoding(StringPtr outText, SInt32 inMaxLength,
                                    CFStringEncoding inEncoding) const {
    outText[0] = 0;
    return IsEmpty() ||
           CFStringGetPascalString(mString, outText, BufferSize(inMaxLength), inEncoding);
}

bool TCFString::UTF8(SInt32 inMaxLength, char* outText) const {
    return GetCString(mString, kCFStringEncodingUTF8, outText, BufferSize(inMaxLength));
}

SInt32 TCFString::UTF8Length() const {
    constexpr SInt32 kBytesPerUnit = 6;
    if (IsEmpty()) return 0;
    if (Length() > kMostInt / kBytesPerUnit) LException::Throw(memFullErr);
    const StClearPointerBlock scratch(Length() * kBytesPerUnit);
    GetCString(mString, kCFStringEncodingUTF8, scratch.Get(), Length() * kBytesPerUnit);
    return static_cast<SInt32>(std::strlen(scratch.Get()));
}

void TCFString::Unicode(SInt32 inCount, UniChar* outUnits) const {
    CFStringGetCharacters(mString, CFRangeMake(0, inCount), outUnits);
}

void TCFString::HFSUniStr(HFSUniStr255& outName) const {
    outName.length = static_cast<UInt16>(std::min<CFIndex>(Length(), 255));
    Unicode(outName.length, outName.unicode);
}

SInt32 TCFString::ToLong(SInt32 inBase, Boolean* outOk) const {
    const SInt64 number = ToLongLong(inBase, outOk);
    return static_cast<SInt32>(std::clamp<SInt64>(number, -kMostInt - SInt64{1}, kMostInt));
}

SInt64 TCFString::ToLongLong(SInt32 inBase, Boolean* outOk) const {
    const NumberText number(*this);
    const bool isBase = inBase == 0 || (inBase >= 2 && inBase <= 36);
    char* end = nullptr;
    const SInt64 value = isBase ? std::strtoll(number.text, &end, inBase) : 0;
    number.Report(isBase ? end : number.text, outOk);
    return value;
}

// Kept: the fraction is dropped. What 64 bits cannot hold is the largest that they can.
double TCFString::ToDouble(Boolean* outOk) const {
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    const NumberText number(*this);
    char* end = nullptr;
    const double value = std::strtod(number.text, &end);
    number.Report(end, outOk);
    return std::isnan(value) ? 0 : std::trunc(std::clamp(value, -kLimit, kLimit)) + 0.0;
}
