// Owns unfinished image files: their names, their locks, and the notes by which the next start
// finds what a crash left behind.
#include "burn/WorkFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

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

// One symbolic link for each unfinished file: "IDENTITY:PATH", or ":PATH" before the file is there.
// A link, because it comes into being with its content.
fs::path NotesFolder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    const fs::path base = state != nullptr && *state == '/'
                              ? fs::path(state)
                              : fs::path(home ? home : "/tmp") / ".local/state";
    return base / "vantor/recorder/unfinished";
}

// What no other file has that takes the same name later: numbers of files are used again, but not
// with the same time of birth. Empty when the file cannot be asked.
std::string IdentityOf(int inFd) {
    struct statx facts = {};
    if (statx(inFd, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &facts) != 0) return {};
    return std::to_string(facts.stx_ino) + "-" + std::to_string(facts.stx_btime.tv_sec) + "-" +
           std::to_string(facts.stx_btime.tv_nsec);
}

std::string LeaveNote(const std::string& inPart) {
    static unsigned sCount = 0;
    const fs::path folder = NotesFolder();
    fs::create_directories(folder);
    const fs::path note = folder / (std::to_string(getpid()) + "-" + std::to_string(++sCount));
    fs::remove(note);
    fs::create_symlink(":" + inPart, note);
    return note;
}

void CompleteNote(const fs::path& inNote, int inFd, const std::string& inPart) {
    const fs::path fresh = inNote.string() + "+";
    fs::remove(fresh);
    fs::create_symlink(IdentityOf(inFd) + ":" + inPart, fresh);
    fs::rename(fresh, inNote);
}

struct Note {
    fs::path place;
    std::string identity, part;

    pid_t Writer() const { return pid_t(std::atol(place.filename().c_str())); }
    // A file that was only just made is not in its note yet, and empty.
    bool Means(int inFd) const {
        struct stat facts = {};
        if (!identity.empty()) return identity == IdentityOf(inFd);
        return fstat(inFd, &facts) == 0 && facts.st_size == 0;
    }
};

std::vector<Note> Notes() {
    std::vector<Note> notes;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(NotesFolder(), none)) {
        const std::string text = fs::read_symlink(entry.path(), none);
        const size_t colon = text.find(":/");
        if (colon == std::string::npos || !text.ends_with(kSuffix)) continue;
        notes.push_back({entry.path(), text.substr(0, colon), text.substr(colon + 1)});
    }
    return notes;
}

// Whether the file at this path is the one that is open, and no other that took its name meanwhile.
bool IsSameFile(int inFd, const std::string& inPath) {
    struct stat open = {}, named = {};
    return fstat(inFd, &open) == 0 && lstat(inPath.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

enum class Leftover { Gone, Removed, InUse, NotOurs };

// Where the file system knows no locks, whoever left the note must be gone.
bool IsInUse(int inFd, const Note* inNote) {
    if (flock(inFd, LOCK_EX | LOCK_NB) == 0) return false;
    if (errno == EWOULDBLOCK) return true;
    return inNote != nullptr && (kill(inNote->Writer(), 0) == 0 || errno == EPERM);
}

// Only a file that a note tells of is removed: one that merely has such a name is somebody's.
Leftover RemoveIfAbandoned(const std::string& inPart, const std::vector<Note>& inNotes) {
    const carbon::UniqueFd fd(open(inPart.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!fd) return errno == ENOENT ? Leftover::Gone : Leftover::NotOurs;
    const auto note = std::find_if(inNotes.begin(), inNotes.end(), [&](const Note& candidate) {
        return candidate.part == inPart && candidate.Means(fd.Get());
    });
    const bool isOurs = note != inNotes.end();
    if (IsInUse(fd.Get(), isOurs ? &*note : nullptr)) return Leftover::InUse;
    if (!IsSameFile(fd.Get(), inPart)) return Leftover::Gone;
    if (!isOurs) return Leftover::NotOurs;
    return unlink(inPart.c_str()) == 0 ? Leftover::Removed : Leftover::InUse;
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
    CheckGoal(mGoal, mReplace);
    mNote = LeaveNote(mPart);
    try {
        Create();
    } catch (...) {
        RemovePart();
        unlink(mNote.c_str());
        throw;
    }
}

WorkFile::~WorkFile() {
    if (!mDelivered) RemovePart();
    unlink(mNote.c_str());
}

// Replacing means a file: a device, a pipe or a link is not what anybody wants to lose to an image.
void WorkFile::CheckGoal(const std::string& inGoal, bool inReplace) {
    if (inGoal.empty() || inGoal[0] != '/' || inGoal.back() == '/')
        throw BurnFailure(paramErr, "\"" + inGoal + "\" is not the absolute path of a file.");
    struct stat facts = {};
    if (lstat(inGoal.c_str(), &facts) != 0) return;
    if (S_ISDIR(facts.st_mode)) throw BurnFailure(dupFNErr, inGoal + ": is a folder.");
    if (!inReplace) throw AlreadyThere(inGoal);
    if (!S_ISREG(facts.st_mode)) throw BurnFailure(dupFNErr, inGoal + ": is not a regular file.");
}

void WorkFile::CheckFolder(const std::string& inFolder) {
    if (faccessat(AT_FDCWD, inFolder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        throw CannotWrite(errno, inFolder);
}

void WorkFile::RemovePart() {
    if (mFd && IsSameFile(mFd.Get(), mPart)) unlink(mPart.c_str());
}

void WorkFile::MakeRoom() {
    auto notes = Notes();
    std::erase_if(notes, [&](const Note& note) { return note.place == mNote; });
    const Leftover leftover = RemoveIfAbandoned(mPart, notes);
    if (leftover == Leftover::InUse)
        throw BurnFailure(fBsyErr, mGoal + ": is being written already.");
    if (leftover == Leftover::NotOurs) throw AlreadyThere(mPart);
}

// Whether the new file is safe from others' clean-up. A file system without locks has none to give.
bool WorkFile::Lock() {
    if (flock(mFd.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    return IsSameFile(mFd.Get(), mPart);
}

void WorkFile::Create() {
    // Again when somebody's clean-up took the new file for a leftover in the moment before it was
    // locked.
    do {
        mFd.Reset(open(mPart.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        if (!mFd && errno != EEXIST) throw CannotWrite(errno, mGoal);
        if (!mFd) MakeRoom();
    } while (!mFd || !Lock());
    CompleteNote(mNote, mFd.Get(), mPart);
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
    // Not every file system knows modes or can force a folder to the disk; the data is safe
    // without.
    static_cast<void>(fchmod(mFd.Get(), 0444));
    Sync();
    const carbon::UniqueFd folder(
        open(FolderOf(mGoal).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    CheckGoal(mGoal, mReplace);  // it may have become something else meanwhile
    Rename();
    mDelivered = true;
    if (folder) static_cast<void>(fsync(folder.Get()));
}

void WorkFile::RemoveLeftovers() {
    std::error_code none;
    for (const auto& note : Notes())
        if (RemoveIfAbandoned(note.part, {note}) != Leftover::InUse) fs::remove(note.place, none);
}

}  // namespace recorder
