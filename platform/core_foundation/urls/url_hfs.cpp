// Paths with ':' between the names, through the File Manager's volumes.
#include "core_foundation/urls/url_hfs.h"

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/string_object.h"
#include "file_manager/catalog/catalog.h"
#include "text_utilities/mac_roman.h"

namespace carbon {

namespace {

constexpr SInt32 kParentOfRoots = 1;

// A ':' in a Linux name is a '/' in a volume's name, and the other way round.
std::string Exchanged(std::string inName, char inFrom, char inTo) {
    std::replace(inName.begin(), inName.end(), inFrom, inTo);
    return inName;
}

std::optional<std::string> RootOfVolume(const std::string& inName) {
    const auto roman = MacRomanFromUtf8(inName + ":");
    if (!roman || roman->size() > 28) return std::nullopt;
    Str31 name;
    name[0] = static_cast<UInt8>(roman->size());
    std::memcpy(name + 1, roman->data(), roman->size());
    FSSpec spec;
    std::string path;
    const bool isFound =
        FSMakeFSSpec(0, 0, name, &spec) == noErr && PathFromSpec(spec, &path) == noErr;
    return isFound ? std::optional(path) : std::nullopt;
}

// Names after the first one; an empty one goes up.
std::string WithNames(std::string inPath, std::string_view inNames) {
    while (!inNames.empty()) {
        const size_t colon = std::min(inNames.find(':'), inNames.size());
        if (!inPath.empty() && !inPath.ends_with('/')) inPath += '/';
        inPath += colon == 0 ? ".." : Exchanged(std::string(inNames.substr(0, colon)), '/', ':');
        inNames.remove_prefix(std::min(colon + 1, inNames.size()));
    }
    return inPath;
}

}  // namespace

std::optional<std::string> PosixFromHfs(std::u16string_view inPath) {
    const auto path = EncodeAll(inPath, kCFStringEncodingUTF8, 0, false);
    if (!path || path->empty()) return std::nullopt;
    const size_t colon = path->find(':');
    if (colon == 0 || colon == path->npos) return WithNames("", path->substr(colon == 0));
    const auto root = RootOfVolume(path->substr(0, colon));
    if (!root) return std::nullopt;
    return WithNames(*root, std::string_view(*path).substr(colon + 1));
}

std::optional<std::u16string> HfsFromPosix(const std::string& inPath) {
    std::string names, path = inPath;
    FSSpec spec;
    while (true) {
        const OSErr error = SpecFromPath(path, &spec);
        if (error != noErr && error != fnfErr) return std::nullopt;
        if (spec.parID == kParentOfRoots) break;
        const size_t slash = path.rfind('/');
        if (slash == path.npos) return std::nullopt;
        names = ":" + Exchanged(path.substr(slash + 1), ':', '/') + names;
        path.resize(std::max<size_t>(slash, 1));
    }
    const std::string_view name(reinterpret_cast<const char*>(spec.name) + 1, spec.name[0]);
    const std::string text = Utf8FromMacRoman(name) + (names.empty() ? ":" : names);
    return Decode(text, kCFStringEncodingUTF8, false);
}

}  // namespace carbon
