// Owns the writing of numbers for people.
#include "Output.h"

#include <array>
#include <cstdio>

namespace cli {

std::string Bytes(SInt64 inBytes) {
    static constexpr std::array kUnits = {"bytes", "KB", "MB", "GB", "TB"};
    if (inBytes < 1000) return std::to_string(inBytes) + " bytes";
    auto value = static_cast<double>(inBytes);
    size_t unit = 0;
    while (value >= 999.5 && unit + 1 < kUnits.size()) {
        value /= 1000;
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, value < 9.95 ? "%.1f %s" : "%.0f %s", value, kUnits[unit]);
    return text;
}

std::string Clock(SInt64 inSeconds) {
    char text[32];
    const int seconds = static_cast<int>(inSeconds % 60);
    const int minutes = static_cast<int>(inSeconds / 60 % 60);
    const auto hours = static_cast<long long>(inSeconds / 3600);
    if (hours > 0)
        std::snprintf(text, sizeof text, "%lld:%02d:%02d", hours, minutes, seconds);
    else
        std::snprintf(text, sizeof text, "%d:%02d", minutes, seconds);
    return text;
}

std::string Grouped(SInt64 inNumber) {
    std::string digits = std::to_string(inNumber);
    const size_t first = inNumber < 0 ? 1 : 0;
    for (size_t at = digits.size(); at > first + 3;) digits.insert(at -= 3, 1, ',');
    return digits;
}

std::string MacRomanText(ConstStringPtr inText) {
    CFStringRef string =
        CFStringCreateWithPascalString(kCFAllocatorDefault, inText, kCFStringEncodingMacRoman);
    char utf8[4 * 256] = "";
    CFStringGetCString(string, utf8, sizeof utf8, kCFStringEncodingUTF8);
    CFRelease(string);
    return utf8;
}

std::string Code(OSType inCode) {
    std::string text(4, '.');
    for (int i = 0; i < 4; ++i) {
        const auto c = static_cast<char>(inCode >> (24 - 8 * i));
        if (c >= ' ' && c <= '~') text[static_cast<size_t>(i)] = c;
    }
    return text;
}

}  // namespace cli
