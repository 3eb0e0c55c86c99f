// File specs, references, aliases and URLs into one another. A file that cannot be found fails the
// coercion.
#include <algorithm>
#include <string>
#include <string_view>

#include "alias_manager/alias_bytes.h"
#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/coercions/coercion.h"
#include "file_manager/catalog/catalog.h"

namespace carbon {
namespace {

constexpr size_t kSpecSize = 70;
constexpr size_t kFolderAt = 2, kNameAt = 6;
constexpr size_t kLongestName = 63;
constexpr std::string_view kScheme = "file://";
constexpr std::string_view kLocalHost = "localhost";

std::optional<FSSpec> ReadSpec(Bytes inData) {
    if (inData.size() != kSpecSize || inData[kNameAt] > kLongestName) return std::nullopt;
    FSSpec spec = {};
    spec.vRefNum = ReadBigEndian<SInt16>(inData.data());
    spec.parID = ReadBigEndian<SInt32>(inData.data() + kFolderAt);
    std::copy_n(inData.data() + kNameAt, sizeof spec.name, spec.name);
    return spec;
}

std::string UrlOfPath(const std::string& inPath) {
    constexpr std::string_view kPlain = "/-._~!$&'()*+,=:@";
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string url(kScheme);
    url += kLocalHost;
    for (const char character : inPath) {
        const auto byte = UInt8(character);
        const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= '0' && byte <= '9') || kPlain.find(character) != kPlain.npos;
        if (isPlain)
            url += character;
        else
            url += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return url;
}

std::optional<UInt8> HexDigit(char inDigit) {
    if (inDigit >= '0' && inDigit <= '9') return UInt8(inDigit - '0');
    const char letter = char(inDigit | 0x20);
    if (letter >= 'a' && letter <= 'f') return UInt8(letter - 'a' + 10);
    return std::nullopt;
}

std::optional<std::string> Unescaped(std::string_view inText) {
    std::string text;
    for (size_t i = 0; i < inText.size(); ++i) {
        char character = inText[i];
        if (character == '%') {
            if (inText.size() - i < 3) return std::nullopt;
            const auto high = HexDigit(inText[i + 1]), low = HexDigit(inText[i + 2]);
            if (!high || !low) return std::nullopt;
            character = char(*high << 4 | *low);
            i += 2;
        }
        if (character == 0) return std::nullopt;
        text += character;
    }
    return text;
}

std::optional<std::string> PathOfUrl(std::string_view inUrl) {
    if (!inUrl.starts_with(kScheme)) return std::nullopt;
    inUrl.remove_prefix(kScheme.size());
    if (inUrl.starts_with(kLocalHost)) inUrl.remove_prefix(kLocalHost.size());
    if (!inUrl.starts_with('/')) return std::nullopt;
    return Unescaped(inUrl);
}

std::optional<std::string> PathOf(const Item& inItem) {
    std::string path;
    if (inItem.type == typeFSS) {
        const auto spec = ReadSpec(inItem.content);
        if (!spec || PathFromSpec(*spec, &path) != noErr) return std::nullopt;
        return path;
    }
    if (inItem.type == typeFSRef && inItem.content.size() == sizeof(FSRef)) {
        FSRef ref;
        std::copy_n(inItem.content.data(), sizeof ref, ref.hidden);
        if (PathFromRef(ref, &path) != noErr) return std::nullopt;
        return path;
    }
    if (inItem.type == typeAlias) {
        if (PathFromAlias(inItem.content, &path) != noErr) return std::nullopt;
        return path;
    }
    if (inItem.type != typeFileURL) return std::nullopt;
    return PathOfUrl({reinterpret_cast<const char*>(inItem.content.data()), inItem.content.size()});
}

OSErr MakeLeaf(DescType inType, Bytes inData, AEDesc* outDesc) {
    *outDesc = {inType, HandleOf(Storage::OfLeaf(inType, inData))};
    return noErr;
}

OSErr MakeSpec(const std::string& inPath, AEDesc* outDesc) {
    FSSpec spec = {};
    if (SpecFromPath(inPath, &spec) != noErr) return errAECoercionFail;
    UInt8 bytes[kSpecSize] = {};
    WriteBigEndian(bytes, SInt16(spec.vRefNum));
    WriteBigEndian(bytes + kFolderAt, SInt32(spec.parID));
    std::copy_n(spec.name, size_t(spec.name[0]) + 1, bytes + kNameAt);
    return MakeLeaf(typeFSS, bytes, outDesc);
}

OSErr MakeRef(const std::string& inPath, AEDesc* outDesc) {
    FSRef ref;
    if (RefFromPath(inPath, &ref) != noErr) return errAECoercionFail;
    return MakeLeaf(typeFSRef, ref.hidden, outDesc);
}

OSErr MakeUrl(const std::string& inPath, AEDesc* outDesc) {
    const std::string url = UrlOfPath(inPath);
    return MakeLeaf(typeFileURL, {reinterpret_cast<const UInt8*>(url.data()), url.size()}, outDesc);
}

OSErr MakeAlias(const std::string& inPath, AEDesc* outDesc) {
    std::vector<UInt8> record;
    if (AliasFromPath(inPath, &record) != noErr) return errAECoercionFail;
    return MakeLeaf(typeAlias, record, outDesc);
}

bool IsFileType(DescType inType) {
    return inType == typeFSS || inType == typeFSRef || inType == typeAlias || inType == typeFileURL;
}

}  // namespace

OSErr CoerceFile(const Item& inItem, DescType inType, AEDesc* outDesc) {
    if (!IsFileType(inType)) return errAECoercionFail;
    const auto path = PathOf(inItem);
    if (!path) return errAECoercionFail;
    if (inType == typeFSS) return MakeSpec(*path, outDesc);
    if (inType == typeAlias) return MakeAlias(*path, outDesc);
    return inType == typeFSRef ? MakeRef(*path, outDesc) : MakeUrl(*path, outDesc);
}

}  // namespace carbon
