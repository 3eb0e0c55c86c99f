// Owns the rules of pathnames with colons.
#include "file_manager/catalog/pathname.h"

#include <Carbon/MacErrors.h>

#include <optional>
#include <vector>

#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

std::optional<DefaultDirectory> sCurrent;  // guarded by the Catalog

bool IsFullPath(std::string_view inPathname) {
    return !inPathname.starts_with(':') && inPathname.find(':') != std::string_view::npos;
}

// The names between the colons behind the beginning; an empty one goes up.
std::vector<std::string_view> PartsOf(std::string_view inPathname) {
    std::vector<std::string_view> parts;
    while (!inPathname.empty()) {
        const auto colon = inPathname.find(':');
        parts.push_back(inPathname.substr(0, colon));
        if (colon == std::string_view::npos) break;
        inPathname.remove_prefix(colon + 1);  // one colon at the end adds nothing
    }
    return parts;
}

OSErr Enter(Objects& ioObjects, std::string_view inName, Folder* ioFolder) {
    Folders& folders = ioObjects.AllFolders();
    if (inName.empty()) {
        Object itself;
        if (const OSErr error = ioObjects.FindFolder(*ioFolder, &itself)) return error;
        if (itself.spec.parID == fsRtParID) return dirNFErr;
        return folders.FindById(itself.spec.vRefNum, itself.spec.parID, ioFolder);
    }
    Entry entry;
    const OSErr error = FindEntry(folders, *ioFolder, inName, &entry);
    if (error != noErr) return error == fnfErr ? OSErr(dirNFErr) : error;
    if (!entry.status.IsFolder()) return dirNFErr;
    return folders.FindByPath(PathInFolder(ioFolder->path, entry.diskName), ioFolder);
}

OSErr FindLast(Objects& ioObjects, const Folder& inFolder, std::string_view inName,
               Object* outObject) {
    if (inName.size() > kLongestSpecName) return bdNamErr;
    if (inFolder.id != fsRtParID) return ioObjects.FindByName(inFolder, inName, outObject);
    FSSpec spec{};
    spec.vRefNum = inFolder.volume;
    spec.parID = inFolder.id;
    SetPascal(inName, kLongestSpecName, spec.name);
    return ioObjects.FindBySpec(spec, outObject);
}

OSErr Follow(Objects& ioObjects, Folder inFolder, std::string_view inPath, Object* outObject) {
    auto parts = PartsOf(inPath);
    const auto last = parts.empty() ? std::string_view() : parts.back();
    if (!last.empty()) parts.pop_back();
    for (const auto part : parts) {
        if (const OSErr error = Enter(ioObjects, part, &inFolder)) return error;
    }
    return last.empty() ? ioObjects.FindFolder(inFolder, outObject)
                        : FindLast(ioObjects, inFolder, last, outObject);
}

OSErr FindFrom(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
               std::string_view inPath, Object* outObject) {
    Folder folder;
    const OSErr error = ioObjects.AllFolders().FindById(inVolume, inDirectory, &folder);
    return error ? error : Follow(ioObjects, folder, inPath, outObject);
}

// The root's own spec, given back in its parts.
OSErr FindRootByName(Objects& ioObjects, FSVolumeRefNum inVolume, std::string_view inName,
                     Object* outObject) {
    Folder pretended;
    pretended.volume = inVolume;
    pretended.id = fsRtParID;
    return FindLast(ioObjects, pretended, inName, outObject);
}

}  // namespace

DefaultDirectory CurrentDirectory(Objects& ioObjects) {
    if (!sCurrent) {
        VolumeRegistry& registry = ioObjects.AllFolders().Registry();
        registry.RefreshFolders();
        sCurrent = DefaultDirectory{registry.Volumes().front().number, fsRtDirID};
    }
    return *sCurrent;
}

void SetCurrentDirectory(const DefaultDirectory& inDirectory) {
    sCurrent = inDirectory;
}

const Volume* VolumeInPathname(Objects& ioObjects, std::string_view inPathname) {
    if (!IsFullPath(inPathname)) return nullptr;
    VolumeRegistry& registry = ioObjects.AllFolders().Registry();
    registry.Refresh();
    return registry.FindByName(inPathname.substr(0, inPathname.find(':')));
}

OSErr FindByPathname(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                     ConstStr255Param inName, Object* outObject) {
    auto path = inName ? TextOfPascal(inName) : std::string_view();
    if (IsFullPath(path)) {
        const Volume* volume = VolumeInPathname(ioObjects, path);
        if (!volume) return nsvErr;
        path.remove_prefix(path.find(':') + 1);
        return FindFrom(ioObjects, volume->number, fsRtDirID, path, outObject);
    }
    const DefaultDirectory current = CurrentDirectory(ioObjects);
    if (inVolume == 0 && inDirectory == 0) inDirectory = current.id;
    if (inVolume == 0) inVolume = current.volume;
    if (inDirectory == 0) inDirectory = fsRtDirID;
    if (inDirectory == fsRtParID) return FindRootByName(ioObjects, inVolume, path, outObject);
    if (path.starts_with(':')) path.remove_prefix(1);
    return FindFrom(ioObjects, inVolume, inDirectory, path, outObject);
}

}  // namespace carbon
