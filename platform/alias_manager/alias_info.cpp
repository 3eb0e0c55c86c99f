// Owns the call that tells what a record holds.
#include <Carbon/Aliases.h>
#include <Carbon/MacErrors.h>

#include "alias_manager/handles.h"
#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

// The names between the colons, the last first: the object, its folder, and so on to the volume.
std::string PartOfPath(std::string_view inPath, AliasInfoType inIndex) {
    if (inPath.ends_with(':')) inPath.remove_suffix(1);
    for (; inIndex > 0; --inIndex) {
        const size_t colon = inPath.rfind(':');
        if (colon == std::string_view::npos) return "";
        inPath = inPath.substr(0, colon);
    }
    return std::string(inPath.substr(inPath.rfind(':') + 1));
}

std::optional<std::string> InfoOf(const AliasContents& inContents, AliasInfoType inIndex) {
    if (inIndex < asiZoneName) return std::nullopt;
    if (inIndex == asiZoneName) return inContents.zone;
    if (inIndex == asiServerName) return inContents.server;
    if (inIndex == asiVolumeName) return inContents.volumeName;
    if (inIndex == asiAliasName) return inContents.name;
    if (inIndex == asiParentName && inContents.path.empty()) return inContents.parentName;
    return PartOfPath(inContents.path, inIndex);
}

}  // namespace

}  // namespace carbon

OSErr GetAliasInfo(const AliasHandle alias, AliasInfoType index, Str63 theString) {
    if (!alias || !theString) return paramErr;
    const auto contents = carbon::ContentsOf(alias);
    const auto text = contents ? carbon::InfoOf(*contents, index) : std::nullopt;
    if (!text) return paramErr;
    carbon::SetPascal(*text, carbon::kLongestSpecName, theString);
    return noErr;
}
