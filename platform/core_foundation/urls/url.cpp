// URL objects: making them and reading their parts.
#include <CoreFoundation/CFURL.h>

#include <unistd.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <memory>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/internal.h"
#include "core_foundation/strings/string_object.h"
#include "core_foundation/urls/url_hfs.h"
#include "core_foundation/urls/url_object.h"

namespace carbon {

// What a URL says about files, found out when somebody asks.
struct FilePaths {
    std::optional<std::string> own;   // decoded, not resolved
    std::optional<std::string> file;  // of a file on this machine, resolved
    Owned<CFStringRef> ownText;
};

}  // namespace carbon

struct __CFURL : carbon::Object {
    __CFURL(std::string inText, CFURLRef inBase)
        : Object(carbon::kUrlKind),
          mText(std::move(inText)),
          mString(carbon::StringFromUtf8(mText)),
          mBase(carbon::Owned<CFURLRef>::Share(inBase)) {}

    bool Equals(const Object& inOther) const final {
        const auto& other = static_cast<const __CFURL&>(inOther);
        return mText == other.mText &&
               (mBase && other.mBase ? carbon::AreEqual(mBase.Get(), other.mBase.Get())
                                     : !mBase && !other.mBase);
    }
    CFHashCode Hash() const final { return carbon::HashOfBytes(mText.data(), mText.size()); }
    std::u16string Describe() const final {
        const std::string text = carbon::AbsoluteTextOf(this);
        return std::u16string(text.begin(), text.end());
    }

    const std::string mText;  // ASCII
    const carbon::Owned<CFStringRef> mString;
    const carbon::Owned<CFURLRef> mBase;
    mutable std::atomic<const carbon::FilePaths*> mPaths = nullptr;

  protected:
    ~__CFURL() { delete mPaths.load(); }
};

namespace carbon {

namespace {

constexpr std::string_view kFilePrefix = "file://localhost";

class Url final : public __CFURL {
  public:
    using __CFURL::__CFURL;

  private:
    void Destroy() const override { delete this; }
};

const __CFURL* Checked(CFURLRef inUrl) {
    return OfKind<__CFURL>(inUrl, kUrlKind);
}

void RemoveEndSlashes(std::string* ioPath) {
    while (ioPath->size() > 1 && ioPath->ends_with('/')) ioPath->pop_back();
}

// The working directory, ending in a slash; nothing when it is gone.
std::string WorkingFolder() {
    const std::unique_ptr<char, decltype(&std::free)> path(getcwd(nullptr, 0), &std::free);
    std::string folder = path ? path.get() : "";
    if (!folder.empty() && !folder.ends_with('/')) folder += '/';
    return folder;
}

CFURLRef NewFileUrl(std::string inPath, bool inIsFolder, CFURLRef inBase) {
    if (inPath.empty() || inPath.find('\0') != inPath.npos) return nullptr;
    RemoveEndSlashes(&inPath);
    if (inIsFolder && !inPath.ends_with('/')) inPath += '/';
    if (inPath.starts_with('/'))
        return NewUrl(std::string(kFilePrefix) + EscapePath(inPath), nullptr);
    if (inBase) return NewUrl(EscapePath(inPath), inBase);
    const std::string folder = WorkingFolder();
    if (folder.empty()) return nullptr;
    const Owned<CFURLRef> base(NewUrl(std::string(kFilePrefix) + EscapePath(folder), nullptr));
    return NewUrl(EscapePath(inPath), base.Get());
}

CFStringRef NewAscii(std::string_view inText) {
    return StringFromUtf8(inText);
}

// The path of a file URL's text; nothing for other schemes and hosts.
std::optional<std::string> PathOfFile(std::string_view inText) {
    const UrlParts parts = ParseUrl(inText);
    const bool isHere = parts.authority.empty() || parts.authority == "localhost";
    if (parts.scheme != "file" || parts.isOpaque || !isHere || !parts.path.starts_with('/')) {
        return std::nullopt;
    }
    std::string path = Unescape(parts.path);
    if (path.find('\0') != path.npos) return std::nullopt;
    RemoveEndSlashes(&path);
    return path;
}

std::optional<std::string> DecodedPath(std::string_view inText) {
    const UrlParts parts = ParseUrl(inText);
    if (parts.isOpaque || parts.path.empty()) return std::nullopt;
    std::string path = Unescape(parts.path);
    RemoveEndSlashes(&path);
    return path;
}

// A URL never changes, so that its paths are found once; of two threads that do, one keeps its own.
const FilePaths& PathsOf(const __CFURL& inUrl) {
    if (const auto* known = inUrl.mPaths.load(std::memory_order_acquire)) return *known;
    auto made = std::make_unique<FilePaths>();
    made->own = DecodedPath(inUrl.mText);
    made->file = PathOfFile(inUrl.mBase ? AbsoluteTextOf(&inUrl) : inUrl.mText);
    if (made->own) made->ownText = Owned<CFStringRef>(StringFromUtf8(*made->own));
    const FilePaths* other = nullptr;
    if (!inUrl.mPaths.compare_exchange_strong(other, made.get())) return *other;
    return *made.release();
}

bool IsValidUrl(std::string_view inText) {
    constexpr std::string_view kLegal =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789;/?:@&=+$,-_.!~*'()[]#";
    for (size_t at = 0; at < inText.size(); ++at) {
        if (inText[at] == '%') {
            const bool isWhole = inText.size() - at > 2 && isxdigit(UInt8(inText[at + 1])) &&
                                 isxdigit(UInt8(inText[at + 2]));
            if (!isWhole) return false;
        } else if (kLegal.find(inText[at]) == kLegal.npos) {
            return false;
        }
    }
    return true;
}

std::optional<std::string> PosixPath(CFStringRef inPath, CFURLPathStyle inStyle) {
    if (inStyle == kCFURLHFSPathStyle) return PosixFromHfs(View(inPath));
    if (inStyle != kCFURLPOSIXPathStyle) return std::nullopt;
    return EncodeAll(View(inPath), kCFStringEncodingUTF8, 0, false);
}

}  // namespace

CFURLRef NewUrl(std::string inText, CFURLRef inBase) {
    return new Url(std::move(inText), inBase);
}

const std::string& TextOf(CFURLRef inUrl) {
    static const auto* none = new std::string;
    const auto* url = Checked(inUrl);
    return url ? url->mText : *none;
}

std::string AbsoluteTextOf(CFURLRef inUrl) {
    const auto* url = Checked(inUrl);
    if (!url || !url->mBase) return TextOf(inUrl);
    return Resolve(AbsoluteTextOf(url->mBase.Get()), url->mText);
}

std::optional<std::string> OwnPath(CFURLRef inUrl) {
    const auto* url = Checked(inUrl);
    return url ? PathsOf(*url).own : std::nullopt;
}

CFURLRef UrlFromPath(const std::string& inPath, bool inIsDirectory) {
    return OrNull([&] { return NewFileUrl(inPath, inIsDirectory, nullptr); });
}

std::optional<std::string> PathFromUrl(CFURLRef inUrl) {
    const auto* url = Checked(inUrl);
    return url ? PathsOf(*url).file : std::nullopt;
}

}  // namespace carbon

using carbon::OrNull;

CFTypeID CFURLGetTypeID() {
    return carbon::kUrlKind;
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef URLString, CFURLRef baseURL) {
    return OrNull([&]() -> CFURLRef {
        const auto text =
            carbon::EncodeAll(carbon::View(URLString), kCFStringEncodingASCII, 0, false);
        if (!text || !carbon::IsValidUrl(*text) || (text->empty() && !baseURL)) return nullptr;
        const bool isAbsolute = !carbon::ParseUrl(*text).scheme.empty();
        return carbon::NewUrl(*text, isAbsolute ? nullptr : baseURL);
    });
}

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef filePath,
                                       CFURLPathStyle pathStyle, Boolean isDirectory) {
    return CFURLCreateWithFileSystemPathRelativeToBase(allocator, filePath, pathStyle, isDirectory,
                                                       nullptr);
}

CFURLRef CFURLCreateWithFileSystemPathRelativeToBase(CFAllocatorRef, CFStringRef filePath,
                                                     CFURLPathStyle pathStyle, Boolean isDirectory,
                                                     CFURLRef baseURL) {
    return OrNull([&]() -> CFURLRef {
        auto path = carbon::PosixPath(filePath, pathStyle);
        return path ? carbon::NewFileUrl(std::move(*path), isDirectory, baseURL) : nullptr;
    });
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory) {
    if (bufLen < 0) return nullptr;
    const std::string path(reinterpret_cast<const char*>(buffer), static_cast<size_t>(bufLen));
    return carbon::UrlFromPath(path, isDirectory);
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef anURL, CFURLPathStyle pathStyle) {
    return OrNull([&]() -> CFStringRef {
        const auto* url = carbon::Checked(anURL);
        if (!url) return nullptr;
        const carbon::FilePaths& paths = carbon::PathsOf(*url);
        if (pathStyle == kCFURLPOSIXPathStyle)
            return carbon::Owned<CFStringRef>::Share(paths.ownText.Get()).Detach();
        const bool isHfs = pathStyle == kCFURLHFSPathStyle && paths.own && paths.file;
        const auto text = isHfs ? carbon::HfsFromPosix(*paths.file) : std::nullopt;
        return text ? carbon::NewString(*text) : nullptr;
    });
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufLen) {
    const auto path = resolveAgainstBase ? carbon::PathFromUrl(url) : carbon::OwnPath(url);
    if (!path || maxBufLen < 1 || path->size() >= static_cast<size_t>(maxBufLen)) return false;
    std::memcpy(buffer, path->c_str(), path->size() + 1);
    return true;
}

CFStringRef CFURLGetString(CFURLRef anURL) {
    const auto* url = carbon::Checked(anURL);
    return url ? url->mString.Get() : nullptr;
}

CFURLRef CFURLGetBaseURL(CFURLRef anURL) {
    const auto* url = carbon::Checked(anURL);
    return url ? url->mBase.Get() : nullptr;
}

CFURLRef CFURLCopyAbsoluteURL(CFURLRef relativeURL) {
    if (!carbon::Checked(relativeURL)) return nullptr;
    if (!CFURLGetBaseURL(relativeURL)) return static_cast<CFURLRef>(CFRetain(relativeURL));
    return OrNull([&] { return carbon::NewUrl(carbon::AbsoluteTextOf(relativeURL), nullptr); });
}

CFStringRef CFURLCopyScheme(CFURLRef anURL) {
    const std::string text = carbon::AbsoluteTextOf(anURL);
    const auto scheme = carbon::ParseUrl(text).scheme;
    return scheme.empty() ? nullptr : carbon::NewAscii(scheme);
}

CFStringRef CFURLCopyPath(CFURLRef anURL) {
    const carbon::UrlParts parts = carbon::ParseUrl(carbon::TextOf(anURL));
    return parts.isOpaque ? nullptr : carbon::NewAscii(parts.path);
}
