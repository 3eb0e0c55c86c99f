// Owns the changes of the catalog: on disk, in companions, in the table of numbers.
#include "file_manager/catalog/object_changes.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/listings/folder_listing.h"
#include "file_manager/metadata/metadata.h"
#include "file_manager/metadata/object_guard.h"
#include "posix/UniqueFd.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr mode_t kFileMode = 0666;  // less what the user's mask takes away
constexpr mode_t kFolderMode = 0777;

OSErr Result(int inResult) {
    return inResult == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

// Companions are no objects, so none is made by that name.
OSErr CheckName(const std::string& inDiskName) {
    return inDiskName.empty() || IsCompanionName(inDiskName) ? OSErr(bdNamErr) : OSErr(noErr);
}

OSErr CheckPlace(const Located& inPlace) {
    if (inPlace.object.path.empty()) return dirNFErr;
    if (const OSErr error = CheckName(inPlace.object.diskName)) return error;
    return CheckWritable(inPlace.volume);
}

OSErr SetType(const std::string& inPath, OSType inCreator, OSType inType, ScriptCode inScript) {
    if (inCreator == 0 && inType == 0 && inScript <= 0) return noErr;
    return ChangeMetadata(inPath, [&](Metadata* ioMetadata) {
        FInfo info{};
        info.fdType = inType;
        info.fdCreator = inCreator;
        FXInfo extended{};
        // Roman, the system's and the current script need no mark.
        if (inScript > 0) extended.fdScript = SInt8(inScript | 0x80);
        std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
        std::memcpy(ioMetadata->extFinderInfo, &extended, sizeof extended);
    });
}

// A folder may hold what nobody sees: companions whose files are gone. In a folder that stays they
// stay, too: somebody may be about to put the file beside one of them.
OSErr RemoveFolder(const std::string& inPath) {
    std::vector<std::string> names;
    if (rmdir(inPath.c_str()) == 0) return noErr;
    if (errno != ENOTEMPTY && errno != EEXIST) return OSErrFromErrno(errno);
    if (const OSErr error = ReadFolder(inPath, &names)) return error;
    if (!names.empty()) return fBsyErr;
    if (const OSErr error = RemoveOrphanedMetadata(inPath)) return error;
    return Result(rmdir(inPath.c_str()));
}

// The object's record, if it has one.
std::optional<IdRecord> RecordOf(Objects& ioObjects, const Located& inLocated) {
    const Object& object = inLocated.object;
    IdTable& table = ioObjects.AllFolders().TableOf(inLocated.volume);
    if (object.status.IsFolder()) {
        const auto identity = Folders::KeptIdentity(inLocated.volume, object.status.identity);
        return table.FindFolder(identity, object.diskName);
    }
    return table.HasFiles() ? table.FindEntry(object.spec.parID, object.diskName) : std::nullopt;
}

bool IsWithin(const std::string& inPath, const std::string& inFolder) {
    return inPath == inFolder || inPath.starts_with(inFolder + '/');
}

OSErr CheckMove(const Located& inLocated, const Folder& inDestination) {
    const Object& object = inLocated.object;
    if (inDestination.volume != object.spec.vRefNum) return diffVolErr;
    if (IsRoot(object) || IsWithin(inDestination.path, object.path)) return badMovErr;
    return CheckChangeable(inLocated);
}

// Free, or the object's own by another spelling.
OSErr FindNewName(Objects& ioObjects, const Object& inObject, const Folder& inDestination,
                  std::string_view inName, std::string* outDiskName) {
    Entry entry;
    const OSErr error = FindEntry(ioObjects.AllFolders(), inDestination, inName, &entry);
    if (error != noErr && error != fnfErr) return error;
    const bool isItself = error == noErr &&
                          entry.status.identity.IsSameAs(inObject.status.identity) &&
                          PathInFolder(inDestination.path, entry.diskName) == inObject.path;
    if (error == noErr && !isItself) return dupFNErr;
    const bool isByNumber = isItself && inName == TextOfPascal(inObject.spec.name);
    *outDiskName = isByNumber ? entry.diskName : DiskNameOf(inName);
    return CheckName(*outDiskName);
}

}  // namespace

OSErr CreateFile(const Located& inPlace, OSType inCreator, OSType inType, ScriptCode inScript) {
    if (const OSErr error = CheckPlace(inPlace)) return error;
    const auto& path = inPlace.object.path;
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    const UniqueFd file(open(path.c_str(), flags, kFileMode));
    if (!file) return OSErrFromErrno(errno);
    OSErr error = RemoveMetadata(path);
    if (error == noErr) error = SetType(path, inCreator, inType, inScript);
    if (error != noErr) unlink(path.c_str());
    return error;
}

OSErr CreateFolder(Objects& ioObjects, const Located& inPlace, SInt32* outId) {
    if (const OSErr error = CheckPlace(inPlace)) return error;
    const auto& path = inPlace.object.path;
    if (mkdir(path.c_str(), kFolderMode) != 0) return OSErrFromErrno(errno);
    Folder folder;
    OSErr error = RemoveMetadata(path);
    if (error == noErr) error = ioObjects.AllFolders().FindByPath(path, &folder);
    if (error != noErr) rmdir(path.c_str());
    *outId = folder.id;
    return error;
}

OSErr DeleteObject(Objects& ioObjects, const Located& inLocated) {
    const Object& object = inLocated.object;
    if (IsRoot(object)) return fBsyErr;
    if (const OSErr error = CheckWritable(inLocated.volume)) return error;
    const bool hasCompanion = HasCompanion(object);
    if (object.status.isImmutable || (hasCompanion && IsLocked(object))) return fLckdErr;
    const bool hasForks = S_ISREG(object.status.mode);
    ObjectGuard guard;  // or somebody opens it between the look and the end
    if (const OSErr error = hasForks ? guard.Take(object.path) : OSErr(noErr)) return error;
    if (hasForks && IsOpenSomewhere(object.path)) return fBsyErr;
    const OSErr error =
        object.status.IsFolder() ? RemoveFolder(object.path) : Result(unlink(object.path.c_str()));
    if (error != noErr) return error;
    if (!object.status.IsFolder())
        ForgetFile(ioObjects, inLocated.volume, object.spec.parID, object.diskName);
    return hasCompanion ? RemoveMetadata(object) : OSErr(noErr);
}

void ForgetFile(Objects& ioObjects, const Volume& inVolume, SInt32 inParent,
                const std::string& inDiskName) {
    IdTable& table = ioObjects.AllFolders().TableOf(inVolume);
    if (!table.HasFiles()) return;
    const auto known = table.FindEntry(inParent, inDiskName);
    if (known) table.Remove(known->id);
}

OSErr MoveObject(Objects& ioObjects, const Located& inLocated, const Folder& inDestination,
                 std::string_view inName) {
    if (const OSErr error = CheckMove(inLocated, inDestination)) return error;
    const Object& object = inLocated.object;
    std::string diskName;
    OSErr error = FindNewName(ioObjects, object, inDestination, inName, &diskName);
    const auto path = PathInFolder(inDestination.path, diskName);
    if (error != noErr || path == object.path) return error;
    auto record = RecordOf(ioObjects, inLocated);
    error = MoveWithMetadata(object.path, path);
    if (error != noErr || !record) return error;
    record->parent = inDestination.id;
    record->name = diskName;
    ioObjects.AllFolders().TableOf(inLocated.volume).Correct(*record);
    return noErr;
}

}  // namespace carbon
