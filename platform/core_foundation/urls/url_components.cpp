// The names in a URL's path: reading, adding and taking away.
#include <algorithm>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/internal.h"
#include "core_foundation/strings/string_object.h"
#include "core_foundation/urls/url_object.h"

namespace carbon {

namespace {

// The escaped path cut into what stands before the last name, that name, and slashes behind it.
struct PathEnd {
    std::string_view before, name, slashes;
};

PathEnd EndOfPath(std::string_view inPath) {
    const size_t last = inPath.find_last_not_of('/');
    if (last == inPath.npos) return {inPath, {}, {}};
    const size_t slash = inPath.rfind('/', last);
    const size_t start = slash == inPath.npos ? 0 : slash + 1;
    return {inPath.substr(0, start), inPath.substr(start, last + 1 - start),
            inPath.substr(last + 1)};
}

// Where the extension's period is in a name; npos without one. A first or last period starts none.
size_t PeriodOf(std::string_view inName) {
    const size_t period = inName.rfind('.');
    return period == 0 || period == inName.size() - 1 ? inName.npos : period;
}

std::optional<std::string> EscapedName(CFStringRef inName) {
    const auto name = EncodeAll(View(inName), kCFStringEncodingUTF8, 0, false);
    if (!name) return std::nullopt;
    // With a slash in front a colon needs no escape.
    return EscapePath("/" + *name).substr(1);
}

CFURLRef WithPath(CFURLRef inUrl, const std::string& inPath) {
    UrlParts parts = ParseUrl(TextOf(inUrl));
    parts.path = inPath;
    return NewUrl(Assemble(parts), CFURLGetBaseURL(inUrl));
}

bool IsFolderPath(std::string_view inPath) {
    const std::string_view name = EndOfPath(inPath).name;
    return inPath.ends_with('/') || name == "." || name == "..";
}

bool HasPath(const UrlParts& inParts) {
    return !inParts.isOpaque && !inParts.path.empty();
}

CFURLRef Appending(CFURLRef inUrl, CFStringRef inName, bool inIsFolder) {
    const UrlParts parts = ParseUrl(TextOf(inUrl));
    auto name = EscapedName(inName);
    if (parts.isOpaque || !name) return nullptr;
    while (inIsFolder && name->ends_with('/')) name->pop_back();
    std::string path(parts.path);
    if (!path.ends_with('/') && !path.empty()) path += '/';
    return WithPath(inUrl, path + *name + (inIsFolder ? "/" : ""));
}

CFURLRef DeletingLast(CFURLRef inUrl) {
    const UrlParts parts = ParseUrl(TextOf(inUrl));
    if (!HasPath(parts)) return nullptr;
    const PathEnd end = EndOfPath(parts.path);
    return WithPath(inUrl, end.before.empty() ? "./" : std::string(end.before));
}

CFURLRef AppendingExtension(CFURLRef inUrl, CFStringRef inExtension) {
    const UrlParts parts = ParseUrl(TextOf(inUrl));
    const auto extension = EscapedName(inExtension);
    const PathEnd end = EndOfPath(parts.path);
    if (!HasPath(parts) || end.name.empty() || !extension || extension->empty()) return nullptr;
    return WithPath(inUrl, std::string(end.before)
                               .append(end.name)
                               .append(".")
                               .append(*extension)
                               .append(end.slashes));
}

CFURLRef DeletingExtension(CFURLRef inUrl) {
    const UrlParts parts = ParseUrl(TextOf(inUrl));
    if (!HasPath(parts)) return nullptr;
    const PathEnd end = EndOfPath(parts.path);
    const auto name = end.name.substr(0, PeriodOf(end.name));
    return WithPath(inUrl, std::string(end.before).append(name).append(end.slashes));
}

}  // namespace

}  // namespace carbon

using carbon::OrNull;

Boolean CFURLHasDirectoryPath(CFURLRef anURL) {
    const carbon::UrlParts parts = carbon::ParseUrl(carbon::TextOf(anURL));
    return !parts.isOpaque && carbon::IsFolderPath(parts.path);
}

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
    const carbon::UrlParts parts = carbon::ParseUrl(carbon::TextOf(url));
    if (!carbon::HasPath(parts)) return nullptr;
    const auto name = carbon::EndOfPath(parts.path).name;
    return carbon::StringFromUtf8(name.empty() ? "/" : carbon::Unescape(name));
}

CFStringRef CFURLCopyPathExtension(CFURLRef url) {
    const carbon::UrlParts parts = carbon::ParseUrl(carbon::TextOf(url));
    if (!carbon::HasPath(parts)) return nullptr;
    const std::string name = carbon::Unescape(carbon::EndOfPath(parts.path).name);
    const size_t period = carbon::PeriodOf(name);
    return period == name.npos ? nullptr : carbon::StringFromUtf8(name.substr(period + 1));
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url,
                                               CFStringRef pathComponent, Boolean isDirectory) {
    return OrNull([&] { return carbon::Appending(url, pathComponent, isDirectory); });
}

CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef, CFURLRef url) {
    return OrNull([&] { return carbon::DeletingLast(url); });
}

CFURLRef CFURLCreateCopyAppendingPathExtension(CFAllocatorRef, CFURLRef url,
                                               CFStringRef extension) {
    return OrNull([&] { return carbon::AppendingExtension(url, extension); });
}

CFURLRef CFURLCreateCopyDeletingPathExtension(CFAllocatorRef, CFURLRef url) {
    return OrNull([&] { return carbon::DeletingExtension(url); });
}
