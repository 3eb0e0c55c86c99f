// What core_foundation offers to the other managers: paths as URLs, UTF-8 as strings, and what a
// bundle says about itself.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace carbon {

// A file URL for an absolute or relative path; NULL for an empty path or one that is not UTF-8.
// The caller owns it.
CFURLRef UrlFromPath(const std::string& inPath, bool inIsDirectory);

// The absolute path of a file URL, without a slash at the end; nothing for other URLs.
std::optional<std::string> PathFromUrl(CFURLRef inUrl);

// Lone surrogates become U+FFFD.
std::string Utf8(CFStringRef inString);

// Owned by the caller; NULL when the bytes are not UTF-8.
CFStringRef StringFromUtf8(std::string_view inText);

// What Info.plist and PkgInfo of a folder say.
struct BundleFacts {
    bool isPackage = false;      // has type and creator of its own or the look of a bundle
    OSType type = 0;             // 'APPL'; 0 when it is no package
    OSType creator = 0;          // '????' when nothing names one
    UInt32 versionNumber = 0;    // as CFBundleGetVersionNumber
    std::string versionString;   // CFBundleShortVersionString, else CFBundleVersion; UTF-8
    std::string name;            // CFBundleName, else the folder's name without extension; UTF-8
    std::string identifier;      // CFBundleIdentifier; UTF-8
    std::string executablePath;  // absolute; empty when there is no such file
};

// The facts of the folder at this path; null when there is no folder. Asking again about an
// unchanged bundle costs one system call when it has Contents/PkgInfo and Contents/Info.plist.
std::shared_ptr<const BundleFacts> FactsOfBundle(const std::string& inPath);

}  // namespace carbon
