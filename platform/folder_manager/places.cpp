// Owns the table of folders with a purpose.
#include "folder_manager/places.h"

#include <unistd.h>

#include "file_manager/catalog/object_status.h"
#include "posix/base_folders.h"

namespace carbon {

namespace {

std::string Below(const std::string& inFolder, const char* inPath) {
    return inFolder.empty() ? std::string() : PathInFolder(inFolder, inPath);
}

std::string UsersData() {
    const auto folders = DataFolders();
    return folders.empty() ? std::string() : folders.front();
}

std::string MachinesData() {
    const auto folders = DataFolders();
    return folders.size() < 2 ? std::string() : folders[1];
}

bool IsOnFileSystemOf(const Volume& inVolume, const std::string& inPath) {
    ObjectStatus status;
    return StatusOfObject(inPath, &status) == noErr && status.identity.device == inVolume.device;
}

std::vector<std::string> TemporaryPlaces(const Volume& inVolume) {
    const auto user = std::to_string(getuid());
    std::vector<std::string> places = {
        Below(inVolume.root, (".TemporaryItems/folders." + user + "/TemporaryItems").c_str())};
    for (const auto& folder : {CacheFolder(), std::string("/var/tmp"), std::string("/tmp")}) {
        if (!IsOnFileSystemOf(inVolume, folder)) continue;
        places.push_back(Below(folder, ("vantor-" + user + "/TemporaryItems").c_str()));
    }
    return places;
}

}  // namespace

std::string PlaceOfUser(OSType inType) {
    switch (inType) {
        case kDesktopFolderType:
            return UserFolder("DESKTOP", "Desktop");
        case kDocumentsFolderType:
            return UserFolder("DOCUMENTS", "Documents");
        case kTrashFolderType:
            return Below(UsersData(), "Trash/files");
        case kPreferencesFolderType:
            return ConfigFolder();
        case kApplicationsFolderType:
            return Below(UsersData(), "vantor/Applications");
        case kApplicationSupportFolderType:
            return UsersData();
        case kFontsFolderType:
            return Below(UsersData(), "fonts");
        case kCurrentUserFolderType:
            return HomeFolder();
        case kCachedDataFolderType:
            return CacheFolder();
        default:
            return {};
    }
}

std::string PlaceOfMachine(OSType inType) {
    switch (inType) {
        case kApplicationsFolderType:
            return Below(MachinesData(), "vantor/Applications");
        case kApplicationSupportFolderType:
            return MachinesData();
        case kFontsFolderType:
            return Below(MachinesData(), "fonts");
        case kTemporaryFolderType:
            return "/tmp";
        default:
            return {};
    }
}

std::vector<std::string> PlacesOnVolume(const Volume& inVolume, OSType inType) {
    if (inType == kVolumeRootFolderType) return {inVolume.root};
    if (inType == kTemporaryFolderType) return TemporaryPlaces(inVolume);
    if (inType != kTrashFolderType) return {};
    return {Below(inVolume.root, (".Trash-" + std::to_string(getuid()) + "/files").c_str())};
}

}  // namespace carbon
