// Between our texts and ICU's.
#pragma once

#include <CoreFoundation/CFString.h>
#include <unicode/unistr.h>

#include <string>
#include <string_view>

#include "core_foundation/strings/string_object.h"

namespace carbon {

// Lends the text: it must stay while the result is used.
inline icu::UnicodeString LentText(std::u16string_view inText) {
    return icu::UnicodeString(false, inText.data(), static_cast<int32_t>(inText.size()));
}

inline std::u16string_view View(const icu::UnicodeString& inText) {
    return {inText.getBuffer(), static_cast<size_t>(inText.length())};
}

// The ASCII part of a string, as identifiers are written.
inline std::string AsciiText(CFStringRef inString) {
    std::string text;
    for (const char16_t unit : View(inString)) {
        if (unit > 0 && unit < 0x80) text.push_back(static_cast<char>(unit));
    }
    return text;
}

inline CFStringRef NewString(const icu::UnicodeString& inText) {
    return NewString(View(inText));
}

inline CFStringRef NewAsciiString(std::string_view inText) {
    return NewString(std::u16string(inText.begin(), inText.end()));
}

}  // namespace carbon
