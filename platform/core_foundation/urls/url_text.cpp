// URLs as text: taking apart, putting together, resolving, escaping.
#include <algorithm>
#include <vector>

#include "core_foundation/urls/url_object.h"

namespace carbon {

namespace {

bool IsLetter(char inCharacter) {
    return (inCharacter >= 'A' && inCharacter <= 'Z') || (inCharacter >= 'a' && inCharacter <= 'z');
}

bool IsDigit(char inCharacter) {
    return inCharacter >= '0' && inCharacter <= '9';
}

bool IsSchemeCharacter(char inCharacter) {
    return IsLetter(inCharacter) || IsDigit(inCharacter) || inCharacter == '+' ||
           inCharacter == '-' || inCharacter == '.';
}

bool MayStandInPath(char inCharacter) {
    constexpr std::string_view kPlain = "/-_.!~*'()@&=+$,:";
    return IsLetter(inCharacter) || IsDigit(inCharacter) || kPlain.find(inCharacter) != kPlain.npos;
}

int HexValue(char inCharacter) {
    if (IsDigit(inCharacter)) return inCharacter - '0';
    const char lower = static_cast<char>(inCharacter | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

size_t SchemeLength(std::string_view inText) {
    const size_t colon = inText.find(':');
    if (colon == inText.npos || colon == 0 || !IsLetter(inText[0])) return 0;
    const auto scheme = inText.substr(0, colon);
    return std::all_of(scheme.begin(), scheme.end(), IsSchemeCharacter) ? colon : 0;
}

void AppendEscaped(std::string* ioText, char inByte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto byte = static_cast<UInt8>(inByte);
    ioText->append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
}

// "." and ".." taken out of a path that starts with a slash.
std::string WithoutDots(std::string_view inPath) {
    std::vector<std::string_view> names;
    bool isFolder = true;
    for (size_t at = 1; at <= inPath.size();) {
        const size_t slash = std::min(inPath.find('/', at), inPath.size());
        const auto name = inPath.substr(at, slash - at);
        isFolder = name.empty() || name == "." || name == "..";
        if (name == "..") {
            if (!names.empty()) names.pop_back();
        } else if (!name.empty() && name != ".") {
            names.push_back(name);
        }
        at = slash + 1;
    }
    std::string path;
    for (const auto name : names) path.append("/").append(name);
    return isFolder || path.empty() ? path + "/" : path;
}

}  // namespace

UrlParts ParseUrl(std::string_view inText) {
    UrlParts parts;
    if (const size_t length = SchemeLength(inText)) {
        parts.scheme = inText.substr(0, length);
        inText.remove_prefix(length + 1);
        parts.isOpaque = !inText.starts_with('/');
    }
    const size_t rest = std::min(inText.find_first_of("?#"), inText.size());
    parts.rest = inText.substr(rest);
    inText = inText.substr(0, rest);
    if (inText.starts_with("//")) {
        const size_t slash = std::min(inText.find('/', 2), inText.size());
        parts.hasAuthority = true;
        parts.authority = inText.substr(2, slash - 2);
        inText.remove_prefix(slash);
    }
    parts.path = inText;
    return parts;
}

std::string Assemble(const UrlParts& inParts) {
    std::string text;
    if (!inParts.scheme.empty()) text.append(inParts.scheme).append(":");
    if (inParts.hasAuthority) text.append("//").append(inParts.authority);
    return text.append(inParts.path).append(inParts.rest);
}

std::string Resolve(std::string_view inBase, std::string_view inText) {
    UrlParts parts = ParseUrl(inText);
    if (!parts.scheme.empty()) return std::string(inText);
    const UrlParts base = ParseUrl(inBase);
    parts.scheme = base.scheme;
    if (parts.hasAuthority) return Assemble(parts);
    parts.hasAuthority = base.hasAuthority;
    parts.authority = base.authority;
    std::string path(parts.path);
    if (path.empty()) {
        path = base.path;
        if (parts.rest.empty()) parts.rest = base.rest;
    } else if (path[0] != '/') {
        path = WithoutDots(std::string(base.path.substr(0, base.path.rfind('/') + 1)) + path);
    }
    parts.path = path;
    return Assemble(parts);
}

std::string EscapePath(std::string_view inPath) {
    std::string text;
    for (const char byte : inPath) {
        const bool looksLikeScheme = byte == ':' && !inPath.starts_with('/');
        if (MayStandInPath(byte) && !looksLikeScheme) {
            text.push_back(byte);
        } else {
            AppendEscaped(&text, byte);
        }
    }
    return text;
}

std::string Unescape(std::string_view inText) {
    std::string bytes;
    for (size_t at = 0; at < inText.size(); ++at) {
        const bool isLongEnough = inText[at] == '%' && inText.size() - at > 2;
        const int high = isLongEnough ? HexValue(inText[at + 1]) : -1;
        const int low = isLongEnough ? HexValue(inText[at + 2]) : -1;
        if (high >= 0 && low >= 0) {
            bytes.push_back(static_cast<char>(high * 16 + low));
            at += 2;
        } else {
            bytes.push_back(inText[at]);
        }
    }
    return bytes;
}

}  // namespace carbon
