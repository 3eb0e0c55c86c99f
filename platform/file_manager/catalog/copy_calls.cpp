// Owns the copying of a file within its volume, with all that belongs to it.
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <vector>

#include "file_manager/catalog/located.h"
#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/forks/fork_locks.h"
#include "file_manager/metadata/companion_file.h"
#include "file_manager/parameter_block.h"
#include "posix/UniqueFd.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr size_t kAtOnce = 0x40000000;  // bytes; the kernel stops below 2 GiB
constexpr size_t kBuffer = 256 * 1024;
constexpr mode_t kPermissions = 0777;
constexpr std::array<const char*, 2> kAttributes = {"user.com.apple.FinderInfo",
                                                    "user.com.apple.ResourceFork"};

// A file that nobody sees until it is given its name, and that is gone if it gets none.
class UnseenFile {
  public:
    UnseenFile() = default;
    ~UnseenFile() {
        if (!mHiddenPath.empty()) unlink(mHiddenPath.c_str());
    }
    UnseenFile(const UnseenFile&) = delete;
    UnseenFile& operator=(const UnseenFile&) = delete;

    OSErr Make(const std::string& inFolder);
    // dupFNErr when there is such a name.
    OSErr GiveName(const std::string& inPath);
    int Get() const { return mFile.Get(); }

  private:
    OSErr Link(const std::string& inPath) const;

    UniqueFd mFile;
    std::string mHiddenPath;  // empty: it has no name at all
};

// Linux: some file systems have no files without names. What a killed process leaves there under a
// hidden one goes with its folder.
OSErr UnseenFile::Make(const std::string& inFolder) {
    mFile.Reset(open(inFolder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (mFile) return noErr;
    if (errno != EOPNOTSUPP && errno != EISDIR) return OSErrFromErrno(errno);
    auto path = PathInFolder(inFolder, std::string(kUnfinishedPrefix) + "copy-XXXXXX");
    mFile.Reset(mkostemp(path.data(), O_CLOEXEC));
    if (!mFile) return OSErrFromErrno(errno);
    mHiddenPath = path;
    return noErr;
}

OSErr UnseenFile::Link(const std::string& inPath) const {
    const auto nameless = "/proc/self/fd/" + std::to_string(mFile.Get());
    const int result =
        linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, inPath.c_str(), AT_SYMLINK_FOLLOW);
    return result == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

OSErr UnseenFile::GiveName(const std::string& inPath) {
    if (mHiddenPath.empty()) return Link(inPath);
    const char* hidden = mHiddenPath.c_str();
    if (renameat2(AT_FDCWD, hidden, AT_FDCWD, inPath.c_str(), RENAME_NOREPLACE) == 0) {
        mHiddenPath.clear();
        return noErr;
    }
    const bool isUnknown = errno == EINVAL || errno == ENOSYS;
    if (isUnknown && link(hidden, inPath.c_str()) == 0) return noErr;  // and the hidden one goes
    return OSErrFromErrno(errno);
}

// Where the file systems cannot do it among themselves.
OSErr CopyThroughMemory(int inFrom, int inTo) {
    std::vector<char> buffer(kBuffer);
    for (;;) {
        const auto count = read(inFrom, buffer.data(), buffer.size());
        if (count == 0) return noErr;
        if (count < 0) return OSErrFromErrno(errno);
        for (ssize_t done = 0; done < count;) {
            const auto written = write(inTo, buffer.data() + done, size_t(count - done));
            if (written < 0) return OSErrFromErrno(errno);
            done += written;
        }
    }
}

OSErr CopyBytes(int inFrom, int inTo) {
    for (;;) {
        const auto count = copy_file_range(inFrom, nullptr, inTo, nullptr, kAtOnce, 0);
        if (count == 0) return CopyThroughMemory(inFrom, inTo);  // what some systems leave over
        if (count > 0) continue;
        const bool isRefused = errno == EXDEV || errno == EINVAL || errno == ENOSYS ||
                               errno == EOPNOTSUPP || errno == ETXTBSY;
        return isRefused ? CopyThroughMemory(inFrom, inTo) : OSErrFromErrno(errno);
    }
}

void CopyAttributes(int inFrom, int inTo) {
    for (const char* name : kAttributes) {
        const auto size = fgetxattr(inFrom, name, nullptr, 0);
        if (size <= 0) continue;
        std::vector<char> value(static_cast<size_t>(size));
        const auto length = fgetxattr(inFrom, name, value.data(), value.size());
        if (length > 0) fsetxattr(inTo, name, value.data(), size_t(length), 0);
    }
}

// Contents, dates and mode; the new file belongs to whoever copies.
OSErr CopyFileTo(int inFrom, int inTo) {
    struct stat facts;
    if (fstat(inFrom, &facts) != 0) return OSErrFromErrno(errno);
    if (const OSErr error = CopyBytes(inFrom, inTo)) return error;
    CopyAttributes(inFrom, inTo);
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    const bool isDone =
        fchmod(inTo, facts.st_mode & kPermissions) == 0 && futimens(inTo, times) == 0;
    return isDone ? OSErr(noErr) : OSErrFromErrno(errno);
}

OSErr CopyUnseen(const std::string& inFrom, const std::string& inFolder, UnseenFile* outFile) {
    const UniqueFd from(open(inFrom.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!from) return OSErrFromErrno(errno);
    const OSErr error = outFile->Make(inFolder);
    return error == noErr ? CopyFileTo(from.Get(), outFile->Get()) : error;
}

bool Exists(const std::string& inPath) {
    struct stat facts;
    return lstat(inPath.c_str(), &facts) == 0;
}

// The companion gets its name first: it is seen by nobody until the file has its own.
OSErr CopyWithCompanion(const std::string& inFrom, const std::string& inTo) {
    const auto folder = ParentOfPath(inTo);
    const auto companion = CompanionPath(inFrom, false);
    UnseenFile file, beside;
    OSErr error = CopyUnseen(inFrom, folder, &file);
    const bool hasCompanion = error == noErr && Exists(companion);
    if (hasCompanion) error = CopyUnseen(companion, folder, &beside);
    if (error == noErr) error = RemoveMetadata(inTo);
    if (error == noErr && hasCompanion) error = beside.GiveName(CompanionPath(inTo, false));
    if (error != noErr) return error;
    error = file.GiveName(inTo);
    if (error != noErr && hasCompanion) RemoveMetadata(inTo);
    return error;
}

// Half of what somebody writes is no copy.
OSErr CheckSource(const Located& inSource) {
    const Object& object = inSource.object;
    if (!S_ISREG(object.status.mode)) return paramErr;
    if (Lacks(inSource.volume, kPlatformMountNoCopyFile)) return paramErr;
    const UniqueFd file(open(object.path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file) return OSErrFromErrno(errno);
    const int uses =
        ForkUsesOfOthers(file.Get(), Fork::kData) | ForkUsesOfOthers(file.Get(), Fork::kResource);
    return uses & (kWrites | kDeniesReading) ? OSErr(afpDenyConflict) : OSErr(noErr);
}

OSErr CopyTo(Objects& ioObjects, const Located& inSource, const Folder& inFolder,
             ConstStr255Param inName) {
    const Volume* volume = ioObjects.AllFolders().Registry().Find(inFolder.volume);
    if (!volume || volume->number != inSource.volume.number) return diffVolErr;
    if (const OSErr error = CheckWritable(*volume)) return error;
    Entry entry;
    const bool isNamed = inName && inName[0] > 0;
    const auto name = TextOfPascal(isNamed ? inName : inSource.object.spec.name);
    const OSErr error = FindEntry(ioObjects.AllFolders(), inFolder, name, &entry);
    if (error == noErr) return dupFNErr;
    if (error != fnfErr) return error;
    if (IsCompanionName(entry.diskName)) return bdNamErr;
    return CopyWithCompanion(inSource.object.path, PathInFolder(inFolder.path, entry.diskName));
}

OSErr Copy(const CopyParam& inRecord) {
    const Catalog catalog;
    Located source;
    Folder folder;
    OSErr error =
        Locate(*catalog, inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr, &source);
    if (error == noErr) error = CheckSource(source);
    if (error == noErr) {
        error = LocateFolder(*catalog, inRecord.ioDstVRefNum, inRecord.ioNewDirID,
                             inRecord.ioNewName, &folder);
    }
    return error == noErr ? CopyTo(*catalog, source, folder, inRecord.ioCopyName) : error;
}

}  // namespace

}  // namespace carbon

OSErr PBHCopyFileSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->copyParam,
                           [](CopyParam& inRecord) { return carbon::Copy(inRecord); });
}
