// Reads and writes codes.
#include "Codes.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "Failure.h"
#include "Output.h"

namespace cli {
namespace {

bool HasEnds(const std::string& inText, char inEnd) {
    return inText.size() > 2 && inText.front() == inEnd && inText.back() == inEnd;
}

std::optional<OSType> CodeInHex(const std::string& inText) {
    constexpr size_t kWrittenSize = 2 * sizeof(OSType) + 2;
    if (inText.size() != kWrittenSize || !HasEnds(inText, '$')) return {};
    OSType code = 0;
    const char* const end = &inText.back();
    const auto parsed = std::from_chars(inText.data() + 1, end, code, 16);
    return parsed.ptr == end ? std::optional(code) : std::nullopt;
}

std::optional<OSType> Read(const std::string& inText) {
    const std::string bare = HasEnds(inText, '\'') ? inText.substr(1, inText.size() - 2) : inText;
    if (const auto code = CodeInHex(bare)) return code;
    const auto text = InMacRoman(bare);
    if (!text || text->empty() || text->size() > sizeof(OSType)) return {};
    OSType code = 0;
    for (size_t i = 0; i < sizeof code; ++i)
        code = code << 8 | static_cast<UInt8>(i < text->size() ? (*text)[i] : ' ');
    return code;
}

}  // namespace

std::optional<std::string> InMacRoman(const std::string& inUtf8) {
    if (inUtf8.find('\0') != inUtf8.npos) return {};
    const CFStringRef string =
        CFStringCreateWithCString(nullptr, inUtf8.c_str(), kCFStringEncodingUTF8);
    if (string == nullptr) return {};
    std::string text(inUtf8.size() + 1, '\0');
    const bool fits = CFStringGetCString(string, text.data(), static_cast<CFIndex>(text.size()),
                                         kCFStringEncodingMacRoman);
    CFRelease(string);
    text.resize(text.find('\0'));
    return fits ? std::optional(text) : std::nullopt;
}

std::string MacRoman(const std::string& inUtf8) {
    const auto text = InMacRoman(inUtf8);
    if (!text) throw Failure(inUtf8 + ": this cannot be written in MacRoman", paramErr, kBadUsage);
    return *text;
}

OSType CodeNamed(const std::string& inText) {
    if (const auto code = Read(inText)) return *code;
    MacRoman(inText);
    throw Failure("'" + inText + "' is no code: codes have one to four characters", paramErr,
                  kBadUsage);
}

bool IsCode(const std::string& inText) {
    return Read(inText).has_value();
}

std::string CodeText(OSType inCode) {
    UInt8 text[5] = {4};
    for (int i = 0; i < 4; ++i) text[i + 1] = static_cast<UInt8>(inCode >> (24 - 8 * i));
    if (std::all_of(text + 1, text + 5, [](UInt8 byte) { return byte >= ' ' && byte != 0x7F; }))
        return MacRomanText(text);
    char hex[11];
    std::snprintf(hex, sizeof hex, "$%08X$", inCode);
    return hex;
}

std::string QuotedCode(OSType inCode) {
    const std::string text = CodeText(inCode);
    if (text.find('\'') == text.npos) return '\'' + text + '\'';
    char hex[13];
    std::snprintf(hex, sizeof hex, "'$%08X$'", inCode);
    return hex;
}

std::string Shown(const std::string& inUtf8) {
    std::string text;
    for (size_t i = 0; i < inUtf8.size(); ++i) {
        const auto byte = static_cast<UInt8>(inUtf8[i]);
        const bool isC1 =
            byte == 0xC2 && i + 1 < inUtf8.size() && static_cast<UInt8>(inUtf8[i + 1]) < 0xA0;
        if (isC1) ++i;
        text += isC1 || byte < ' ' || byte == 0x7F ? '?' : inUtf8[i];
    }
    return text;
}

}  // namespace cli
