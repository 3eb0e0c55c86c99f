// Owns unfinished image files: their names, their locks, and the notes by which the next start
// finds what a crash left behind.
#include "burn/WorkFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "burn/BurnFailure.h"
#include "burn/SourceTree.h"
#include "burn/disc_names.h"

namespace recorder {
namespace {

namespace fs = std::filesystem;

constexpr size_t kLongestName = 255;
const std::string kSuffix = ".part";

std::string PartPath(const std::string& inGoal) {
    return FolderOf(inGoal) + "/." + CutName(LeafName(inGoal), kLongestName - 1 - kSuffix.size()) +
           kSuffix;
}

// One symbolic link for each unfinished file, pointing to it.
fs::path NotesFolder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    const fs::path base = state != nullptr && *state == '/'
                              ? fs::path(state)
                              : fs::path(home ? home : "/tmp") / ".local/state";
    return base / "vantor/recorder/unfinished";
}

std::string LeaveNote(const std::string& inPart) {
    static unsigned sCount = 0;
    const fs::path folder = NotesFolder();
    fs::create_directories(folder);
    const fs::path note = folder / (std::to_string(getpid()) + "-" + std::to_string(++sCount));
    fs::remove(note);
    fs::create_symlink(inPart, note);
    return note;
}

// Whether the file at this path is the one that is open, and no other that took its name meanwhile.
bool IsSameFile(int inFd, const std::string& inPath) {
    struct stat open = {}, named = {};
    return fstat(inFd, &open) == 0 && lstat(inPath.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

enum class Leftover { Gone, Removed, InUse };

Leftover RemoveIfAbandoned(const std::string& inPart) {
    const carbon::UniqueFd fd(open(inPart.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!fd) return errno == ENOENT ? Leftover::Gone : Leftover::InUse;
    if (flock(fd.Get(), LOCK_EX | LOCK_NB) != 0) return Leftover::InUse;
    if (!IsSameFile(fd.Get(), inPart)) return Leftover::Gone;
    return unlink(inPart.c_str()) == 0 ? Leftover::Removed : Leftover::InUse;
}

bool Exists(const std::string& inPath) {
    struct stat facts = {};
    return lstat(inPath.c_str(), &facts) == 0;
}

BurnFailure AlreadyThere(const std::string& inPath) {
    return {dupFNErr, inPath + ": a file of this name exists already."};
}

BurnFailure CannotWrite(int inErrno, const std::string& inPath) {
    const BurnFailure failure = FailureFromErrno(inErrno, inPath);
    return inErrno == EACCES || inErrno == EPERM ? BurnFailure(permErr, failure.what()) : failure;
}

}  // namespace

std::string FolderOf(const std::string& inPath) {
    const std::string folder = fs::path(inPath).parent_path();
    return folder.empty() ? "/" : folder;
}

UInt64 FreeSpace(const std::string& inFolder) {
    struct statvfs space = {};
    if (statvfs(inFolder.c_str(), &space) != 0) return 0;
    return UInt64(space.f_bavail) * space.f_frsize;
}

WorkFile::WorkFile(const std::string& inGoal, bool inReplace)
    : mGoal(inGoal), mPart(PartPath(inGoal)), mReplace(inReplace) {
    if (mGoal.empty() || mGoal[0] != '/' || mGoal.back() == '/')
        throw BurnFailure(paramErr, "\"" + mGoal + "\" is not the absolute path of a file.");
    if (fs::is_directory(fs::symlink_status(mGoal)))
        throw BurnFailure(dupFNErr, mGoal + ": is a folder.");
    if (!mReplace && Exists(mGoal)) throw AlreadyThere(mGoal);
    mNote = LeaveNote(mPart);
    try {
        Create();
    } catch (...) {
        unlink(mNote.c_str());
        throw;
    }
}

WorkFile::~WorkFile() {
    if (!mDelivered) unlink(mPart.c_str());
    unlink(mNote.c_str());
}

void WorkFile::Create() {
    // Again when somebody's clean-up took the new file for a leftover in the moment before it was
    // locked.
    do {
        if (RemoveIfAbandoned(mPart) == Leftover::InUse && Exists(mPart))
            throw BurnFailure(fBsyErr, mGoal + ": is being written already.");
        mFd.Reset(open(mPart.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        if (!mFd && errno == EEXIST) continue;
        if (!mFd) throw CannotWrite(errno, mGoal);
    } while (!mFd || flock(mFd.Get(), LOCK_EX | LOCK_NB) != 0 || !IsSameFile(mFd.Get(), mPart));
}

void WorkFile::Reserve(UInt64 inBytes) {
    const UInt64 space = FreeSpace(FolderOf(mPart));
    if (inBytes > space)
        throw BurnFailure(dskFulErr, mGoal + ": the disc needs " +
                                         std::to_string(inBytes / 1'000'000) + " MB, only " +
                                         std::to_string(space / 1'000'000) + " MB are free.");
    if (fallocate(mFd.Get(), 0, 0, off_t(inBytes)) == 0) return;
    if (errno != EOPNOTSUPP && errno != ENOSYS) throw FailureFromErrno(errno, mGoal);
    if (ftruncate(mFd.Get(), off_t(inBytes)) != 0) throw FailureFromErrno(errno, mGoal);
}

void WorkFile::Sync() {
    if (fsync(mFd.Get()) != 0) throw FailureFromErrno(errno, mGoal);
}

void WorkFile::Rename() {
    if (mReplace) {
        if (rename(mPart.c_str(), mGoal.c_str()) != 0) throw CannotWrite(errno, mGoal);
        return;
    }
    if (renameat2(AT_FDCWD, mPart.c_str(), AT_FDCWD, mGoal.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno == EEXIST) throw AlreadyThere(mGoal);
    if (errno != EINVAL && errno != ENOSYS) throw CannotWrite(errno, mGoal);
    if (link(mPart.c_str(), mGoal.c_str()) != 0)
        throw errno == EEXIST ? AlreadyThere(mGoal) : CannotWrite(errno, mGoal);
    unlink(mPart.c_str());
}

void WorkFile::Deliver() {
    if (fchmod(mFd.Get(), 0444) != 0) throw FailureFromErrno(errno, mGoal);
    Sync();
    Rename();
    mDelivered = true;
    const carbon::UniqueFd folder(
        open(FolderOf(mGoal).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder || fsync(folder.Get()) != 0) throw FailureFromErrno(errno, FolderOf(mGoal));
}

void WorkFile::RemoveLeftovers() {
    std::error_code none;
    for (const auto& note : fs::directory_iterator(NotesFolder(), none)) {
        const std::string part = fs::read_symlink(note.path(), none);
        if (part.empty() || !part.ends_with(kSuffix)) continue;
        if (RemoveIfAbandoned(part) != Leftover::InUse) fs::remove(note.path(), none);
    }
}

}  // namespace recorder
