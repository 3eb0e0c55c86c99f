// Owns reading folders, and hides in them what belongs to other files.
#include "file_manager/listings/folder_listing.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "file_manager/catalog/names.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

struct CloseFolder {
    void operator()(DIR* inFolder) const { closedir(inFolder); }
};

// Calls `inVisit` for each entry until that returns false.
template <typename Visit>
OSErr ForEachEntry(const std::string& inPath, Visit inVisit) {
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(inPath.c_str()));
    if (!folder) return OSErrFromErrno(errno);
    errno = 0;
    while (const dirent* entry = readdir(folder.get())) {
        const char* name = entry->d_name;
        const bool isItself = std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
        if (!isItself && !inVisit(*entry)) return noErr;
        errno = 0;
    }
    return OSErrFromErrno(errno);
}

bool IsShown(const std::string& inFolder, const dirent& inEntry) {
    if (!IsCompanionName(inEntry.d_name)) return true;
    return IsFolderEntry(inFolder, inEntry.d_name, inEntry.d_type);
}

}  // namespace

bool IsFolderEntry(const std::string& inFolder, std::string_view inName, UInt8 inType) {
    if (inType != DT_UNKNOWN) return inType == DT_DIR;
    ObjectStatus status;
    const auto path = PathInFolder(inFolder, std::string(inName));
    return StatusOfObject(path, &status) == noErr && status.IsFolder();
}

bool IsHiddenEntry(std::string_view inDiskName, bool inIsFolder) {
    return !inIsFolder && IsCompanionName(inDiskName);
}

OSErr StatusOfEntry(const std::string& inFolder, const std::string& inDiskName,
                    ObjectStatus* outStatus) {
    const OSErr error = StatusOfObject(PathInFolder(inFolder, inDiskName), outStatus);
    if (error != noErr || !IsHiddenEntry(inDiskName, outStatus->IsFolder())) return error;
    *outStatus = {};
    return fnfErr;
}

OSErr ReadFolder(const std::string& inPath, std::vector<std::string>* outNames) {
    outNames->clear();
    return ForEachEntry(inPath, [&](const dirent& inEntry) {
        if (IsShown(inPath, inEntry)) outNames->emplace_back(inEntry.d_name);
        return true;
    });
}

OSErr VisitFolder(const std::string& inPath,
                  const std::function<void(std::string_view, UInt8)>& inVisit) {
    return ForEachEntry(inPath, [&](const dirent& inEntry) {
        inVisit(inEntry.d_name, inEntry.d_type);
        return true;
    });
}

OSErr CountEntries(const std::string& inPath, UInt32* outCount) {
    *outCount = 0;
    return ForEachEntry(inPath, [&](const dirent& inEntry) {
        if (IsShown(inPath, inEntry)) ++*outCount;
        return true;
    });
}

// A mount point's entry has the number of the folder below it, so a folder that others are mounted
// on is not found by its number; those are volumes' roots and do not move.
std::optional<std::string> NameOfInode(const std::string& inFolder, UInt64 inInode,
                                       const std::function<bool(const std::string&)>& inIsIt) {
    std::optional<std::string> name;
    ForEachEntry(inFolder, [&](const dirent& inEntry) {
        if (inEntry.d_ino == inInode && IsShown(inFolder, inEntry) &&
            inIsIt(PathInFolder(inFolder, inEntry.d_name))) {
            name = inEntry.d_name;
        }
        return !name;
    });
    return name;
}

}  // namespace carbon
