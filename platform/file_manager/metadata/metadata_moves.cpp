// Owns what happens to companions when their objects move or go.
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "file_manager/catalog/names.h"
#include "file_manager/catalog/object_status.h"
#include "file_manager/forks/fork_locks.h"
#include "file_manager/metadata/companion_file.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

enum class Kind {
    kNone,
    kAppleDouble,  // or empty
    kOther
};

Kind KindOf(const std::string& inCompanion) {
    struct stat facts;
    if (lstat(inCompanion.c_str(), &facts) != 0 || S_ISDIR(facts.st_mode)) return Kind::kNone;
    const int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const UniqueFd file(open(inCompanion.c_str(), flags));
    if (!file || !S_ISREG(facts.st_mode)) return Kind::kOther;
    if (IsEmptyFile(file.Get())) return Kind::kAppleDouble;
    return IsAppleDouble(BytesAt(file.Get(), 0, kAppleDoubleListOffset)) ? Kind::kAppleDouble
                                                                         : Kind::kOther;
}

bool Exists(const std::string& inPath) {
    struct stat facts;
    return lstat(inPath.c_str(), &facts) == 0;
}

bool AreOneObject(const std::string& inOne, const std::string& inOther) {
    struct stat one, other;
    return lstat(inOne.c_str(), &one) == 0 && lstat(inOther.c_str(), &other) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Where two names mean one entry (they differ in case, on a disk without case) nothing is lost.
OSErr RenameToNew(const std::string& inFrom, const std::string& inTo) {
    if (AreOneObject(inFrom, inTo))
        return rename(inFrom.c_str(), inTo.c_str()) == 0 ? OSErr(noErr) : CompanionError(errno);
    if (renameat2(AT_FDCWD, inFrom.c_str(), AT_FDCWD, inTo.c_str(), RENAME_NOREPLACE) == 0)
        return noErr;
    if (errno != EINVAL && errno != ENOSYS) return CompanionError(errno);
    if (Exists(inTo)) return dupFNErr;  // Linux: some file systems cannot ask and rename at once.
    return rename(inFrom.c_str(), inTo.c_str()) == 0 ? OSErr(noErr) : CompanionError(errno);
}

// A copy of the companion beside the new name. There can be none of one that somebody writes to.
bool HasMadeTwin(const ObjectGuard& inGuard, const std::string& inFrom, const std::string& inTo) {
    Companion companion;
    const bool isFile = S_ISREG(inGuard.Facts().st_mode);
    if (isFile && UsesOfFork(inFrom, Fork::kResource) & kWritesInPlace) return false;
    return ReadCompanion(inFrom, &companion) == noErr &&
           companion.state == CompanionState::kSound &&
           ReplaceCompanion(inTo, inGuard, companion) == noErr;
}

// Gives the companion its second name, or a twin where the file system has no links.
OSErr DoubleCompanion(const ObjectGuard& inGuard, const std::string& inFrom,
                      const std::string& inTo, bool* outIsDoubled) {
    const auto companion = CompanionPath(inFrom, false), second = CompanionPath(inTo, false);
    *outIsDoubled = link(companion.c_str(), second.c_str()) == 0;
    if (*outIsDoubled) return noErr;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != EMLINK) return CompanionError(errno);
    *outIsDoubled = HasMadeTwin(inGuard, inFrom, inTo);
    return noErr;
}

OSErr RemoveRemains(const std::string& inCompanion) {
    if (KindOf(inCompanion) != Kind::kAppleDouble) return noErr;
    if (unlink(inCompanion.c_str()) == 0 || errno == ENOENT) return noErr;
    return CompanionError(errno);
}

// The companion has both names for a moment, so that the object has it under either.
OSErr MoveBoth(const ObjectGuard& inGuard, const std::string& inFrom, const std::string& inTo,
               const std::string& inCompanion, const std::string& inNewCompanion) {
    bool isDoubled = false;
    OSErr error = DoubleCompanion(inGuard, inFrom, inTo, &isDoubled);
    if (error == noErr) error = RenameToNew(inFrom, inTo);
    if (error != noErr) {
        if (isDoubled) unlink(inNewCompanion.c_str());
        return error;
    }
    const int result = isDoubled ? unlink(inCompanion.c_str())
                                 : rename(inCompanion.c_str(), inNewCompanion.c_str());
    if (result == 0 || errno == ENOENT) return noErr;
    error = CompanionError(errno);
    if (RenameToNew(inTo, inFrom) == noErr && isDoubled) unlink(inNewCompanion.c_str());
    return error;
}

// What has no companion of the usual form, or only gets another spelling of its name.
OSErr MoveOneByOne(const std::string& inFrom, const std::string& inTo,
                   const std::string& inCompanion, const std::string& inNewCompanion) {
    OSErr error = RenameToNew(inFrom, inTo);
    if (error != noErr || KindOf(inCompanion) == Kind::kNone) return error;
    error = RenameToNew(inCompanion, inNewCompanion);
    if (error != noErr) RenameToNew(inTo, inFrom);
    return error;
}

}  // namespace

OSErr MoveWithMetadata(const std::string& inFrom, const std::string& inTo) {
    ObjectGuard guard;
    if (const OSErr error = guard.Take(inFrom)) return error;
    if (AreOneObject(inFrom, inTo) && inFrom == inTo) return noErr;
    const auto companion = CompanionPath(inFrom, false);
    const auto newCompanion = CompanionPath(inTo, false);
    const bool isSameEntry = AreOneObject(inFrom, inTo);
    if (Exists(inTo) && !isSameEntry) return dupFNErr;
    if (!isSameEntry) {
        if (const OSErr error = RemoveRemains(newCompanion)) return error;
    }
    if (KindOf(companion) == Kind::kNone || isSameEntry)
        return MoveOneByOne(inFrom, inTo, companion, newCompanion);
    if (Exists(newCompanion)) return dupFNErr;  // no AppleDouble file: not ours to remove
    return MoveBoth(guard, inFrom, inTo, companion, newCompanion);
}

OSErr RemoveMetadata(const MetadataOwner& inOwner) {
    return RemoveRemains(inOwner.Companion());
}

OSErr RemoveOrphanedMetadata(const std::string& inFolder) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(inFolder, error)) {
        const auto name = entry.path().filename().string();
        if (!IsCompanionName(name) || name == "._.") continue;
        if (Exists(PathInFolder(inFolder, name.substr(2)))) continue;
        const auto path = entry.path().string();
        const bool isUnfinished = name.starts_with(kUnfinishedPrefix);
        if (isUnfinished && unlink(path.c_str()) != 0) return CompanionError(errno);
        if (const OSErr result = RemoveRemains(path)) return result;
    }
    return OSErrFromErrno(error.value());
}

}  // namespace carbon
