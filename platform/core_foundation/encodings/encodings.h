// Text as bytes in an encoding, and back.
#pragma once

#include <CoreFoundation/CFString.h>

#include <optional>
#include <string>
#include <string_view>

namespace carbon {

bool IsEncodingAvailable(CFStringEncoding inEncoding);

// The most bytes one UTF-16 unit takes; 0 for an encoding that is not available.
int MostBytesPerUnit(CFStringEncoding inEncoding);

// Nothing when the bytes are not valid or the encoding is not available. External bytes may start
// with a byte-order mark and are big-endian without one.
std::optional<std::u16string> Decode(std::string_view inBytes, CFStringEncoding inEncoding,
                                     bool inIsExternal);

struct EncodeResult {
    size_t units = 0;  // how much of the text was converted
    size_t bytes = 0;  // what it took
};

// Converts from the start of inText until something cannot be said or does not fit inRoom bytes.
// outBytes may be null: only counts. inLossByte other than 0 replaces what cannot be said.
EncodeResult Encode(std::u16string_view inText, CFStringEncoding inEncoding, UInt8 inLossByte,
                    bool inIsExternal, UInt8* outBytes, size_t inRoom);

// All of the text, or nothing.
std::optional<std::string> EncodeAll(std::u16string_view inText, CFStringEncoding inEncoding,
                                     UInt8 inLossByte, bool inIsExternal);

}  // namespace carbon
