// URLs as text with its parts, and the escaping of paths.
#pragma once

#include <CoreFoundation/CFURL.h>

#include <optional>
#include <string>
#include <string_view>

#include "core_foundation/object.h"

namespace carbon {

// The parts of "scheme://authority/path?query#fragment", as they stand in the text.
struct UrlParts {
    std::string_view scheme;  // without ':'
    bool hasAuthority = false;
    std::string_view authority;  // without "//"
    std::string_view path;
    std::string_view rest;  // from '?' or '#' on
    bool isOpaque = false;  // a scheme whose rest is no path ("mailto:someone")
};

UrlParts ParseUrl(std::string_view inText);
std::string Assemble(const UrlParts& inParts);

// The absolute form of a URL text that may be relative to another.
std::string Resolve(std::string_view inBase, std::string_view inText);

// Bytes of a path escaped for a URL. A relative path must not look as if it had a scheme.
std::string EscapePath(std::string_view inPath);

// The bytes that escapes stand for.
std::string Unescape(std::string_view inText);

// A URL object for a text already known to be valid. Throws std::bad_alloc.
CFURLRef NewUrl(std::string inText, CFURLRef inBase);

// The text of the URL itself and of its absolute form.
const std::string& TextOf(CFURLRef inUrl);
std::string AbsoluteTextOf(CFURLRef inUrl);

// Its path decoded, not resolved, without a slash at the end; nothing when it has none.
std::optional<std::string> OwnPath(CFURLRef inUrl);

}  // namespace carbon
