// Reading strings: units, and text in an encoding.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/string_format.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

std::u16string_view Part(CFStringRef inString, const CFRange& inRange) {
    const auto text = View(inString);
    const CFRange range = Clip(inRange, text.size());
    return text.substr(static_cast<size_t>(range.location), static_cast<size_t>(range.length));
}

// Encodes all of a text into a buffer; the bytes, or -1.
SInt64 Export(CFStringRef inString, CFStringEncoding inEncoding, UInt8* outBytes, size_t inRoom) {
    const auto text = View(inString);
    if (!IsEncodingAvailable(inEncoding)) return -1;
    const EncodeResult result = Encode(text, inEncoding, 0, false, outBytes, inRoom);
    return result.units == text.size() ? static_cast<SInt64>(result.bytes) : -1;
}

// The ASCII text from the first character that is not white space on, as far as a number can be.
std::string NumberText(CFStringRef inString) {
    std::string text;
    for (const char16_t unit : View(inString)) {
        const bool isSpace = unit == u' ' || (unit >= 0x09 && unit <= 0x0D);
        if (isSpace && text.empty()) continue;
        if (unit >= 0x80 || !std::strchr("+-.0123456789eE", unit)) break;
        text.push_back(static_cast<char>(unit));
    }
    if (text.starts_with('+') && !text.starts_with("+-")) text.erase(0, 1);
    return text;
}

template <typename Number>
std::errc Parse(const std::string& inText, Number* outNumber) {
    return std::from_chars(inText.data(), inText.data() + inText.size(), *outNumber).ec;
}

}  // namespace

}  // namespace carbon

using carbon::View;

CFIndex CFStringGetLength(CFStringRef theString) {
    return static_cast<CFIndex>(View(theString).size());
}

UniChar CFStringGetCharacterAtIndex(CFStringRef theString, CFIndex idx) {
    const auto text = View(theString);
    return idx >= 0 && static_cast<size_t>(idx) < text.size() ? text[static_cast<size_t>(idx)] : 0;
}

void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer) {
    const auto part = carbon::Part(theString, range);
    if (!part.empty()) std::memcpy(buffer, part.data(), part.size() * sizeof(UniChar));
}

Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding) {
    if (bufferSize < 1) return false;
    const SInt64 used = carbon::Export(theString, encoding, reinterpret_cast<UInt8*>(buffer),
                                       static_cast<size_t>(bufferSize) - 1);
    buffer[std::max<SInt64>(used, 0)] = '\0';
    return used >= 0;
}

Boolean CFStringGetPascalString(CFStringRef theString, StringPtr buffer, CFIndex bufferSize,
                                CFStringEncoding encoding) {
    if (bufferSize < 1) return false;
    const auto room = std::min<size_t>(static_cast<size_t>(bufferSize) - 1, 255);
    const bool isShort = CFStringGetLength(theString) <= 255;
    const SInt64 used = isShort ? carbon::Export(theString, encoding, buffer + 1, room) : -1;
    buffer[0] = static_cast<UInt8>(std::max<SInt64>(used, 0));
    return used >= 0;
}

CFIndex CFStringGetBytes(CFStringRef theString, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                         CFIndex maxBufLen, CFIndex* usedBufLen) {
    const auto room = static_cast<size_t>(std::max(maxBufLen, 0));
    const carbon::EncodeResult result = carbon::Encode(
        carbon::Part(theString, range), encoding, lossByte, isExternalRepresentation, buffer, room);
    if (usedBufLen) {
        *usedBufLen = static_cast<CFIndex>(std::min(result.bytes, carbon::kLongestString));
    }
    return static_cast<CFIndex>(result.units);
}

const char* CFStringGetCStringPtr(CFStringRef, CFStringEncoding) {
    return nullptr;
}

ConstStringPtr CFStringGetPascalStringPtr(CFStringRef, CFStringEncoding) {
    return nullptr;
}

const UniChar* CFStringGetCharactersPtr(CFStringRef theString) {
    return reinterpret_cast<const UniChar*>(View(theString).data());
}

SInt32 CFStringGetIntValue(CFStringRef str) {
    const std::string text = carbon::NumberText(str);
    SInt32 number = 0;
    if (carbon::Parse(text, &number) != std::errc::result_out_of_range) return number;
    return text.starts_with('-') ? INT32_MIN : INT32_MAX;
}

double CFStringGetDoubleValue(CFStringRef str) {
    const std::string text = carbon::NumberText(str);
    double number = 0;
    if (carbon::Parse(text, &number) != std::errc::result_out_of_range) return number;
    return strtod_l(text.c_str(), nullptr, carbon::NeutralLocale());
}

CFStringEncoding CFStringGetSystemEncoding() {
    return kCFStringEncodingMacRoman;
}

Boolean CFStringIsEncodingAvailable(CFStringEncoding encoding) {
    return carbon::IsEncodingAvailable(encoding);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
    const SInt64 size = SInt64{length} * carbon::MostBytesPerUnit(encoding);
    return size > INT32_MAX || (size == 0 && length != 0) ? kCFNotFound
                                                          : static_cast<CFIndex>(size);
}
