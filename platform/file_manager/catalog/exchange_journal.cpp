// Owns the notes of exchanges on disk: their folder, their locks.
#include "file_manager/catalog/exchange_journal.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <thread>

#include "file_manager/listings/folder_listing.h"
#include "file_manager/numbers/shared_counter.h"
#include "file_manager/numbers/state_folder.h"
#include "posix/deadline.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr auto kPatience = std::chrono::seconds(5);
constexpr auto kPause = std::chrono::milliseconds(1);
constexpr auto kTillNextLook = std::chrono::seconds(10);
constexpr size_t kLongest = 64 * 1024;

// Of this user's exchanges: one step when one begins, one when it ends.
SharedCounter& Steps() {
    static const auto sFolder = VolumesFolder();
    static auto& sSteps =
        *new SharedCounter(sFolder.empty() ? sFolder : sFolder + "/exchanges.count");
    return sSteps;
}

// The steps when this process last found nothing left, and when it looks again after it did;
// guarded by the catalog.
std::optional<UInt64> sSeen;
Moment sNextLook{};

std::string NotesFolder() {
    const auto volumes = VolumesFolder();
    return volumes.empty() ? "" : volumes + "/exchanges";
}

bool Lock(int inFile) {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    const Moment deadline = Clock::now() + kPatience;
    while (fcntl(inFile, F_OFD_SETLK, &lock) != 0) {
        if (Clock::now() > deadline) return false;
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

bool IsRemoved(int inFile) {
    struct stat facts;
    return fstat(inFile, &facts) != 0 || facts.st_nlink == 0;
}

bool IsNoPlace(int inErrno) {
    return inErrno == ENOENT || inErrno == ENOTDIR || inErrno == EACCES || inErrno == EROFS;
}

// Somebody may take it for one left over before it is locked, and remove it.
OSErr MakeNote(std::string* outPath, UniqueFd* outFile) {
    const auto folder = NotesFolder();
    if (folder.empty()) return noErr;
    mkdir(folder.c_str(), 0700);
    do {
        *outPath = folder + "/XXXXXX";
        *outFile = UniqueFd(mkostemp(outPath->data(), O_CLOEXEC));
        if (!*outFile) return IsNoPlace(errno) ? OSErr(noErr) : OSErrFromErrno(errno);
        if (!Lock(outFile->Get())) return fBsyErr;
    } while (IsRemoved(outFile->Get()));
    return noErr;
}

// False for one whose process is still at it.
bool FinishNote(const std::string& inPath,
                const std::function<void(const ExchangedFiles&)>& inFinish) {
    const UniqueFd file(open(inPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    if (!file) return errno == ENOENT;
    if (!Lock(file.Get())) return false;
    if (IsRemoved(file.Get())) return true;
    std::string bytes(kLongest, '\0');
    const auto length = pread(file.Get(), bytes.data(), bytes.size(), 0);
    ExchangedFiles files;
    if (length > 0 && ReadNote(std::string_view(bytes).substr(0, size_t(length)), &files))
        inFinish(files);
    return unlink(inPath.c_str()) == 0;
}

}  // namespace

OSErr ExchangeJournal::Begin(const ExchangedFiles& inFiles) {
    const auto bytes = BytesOfNote(inFiles);
    if (bytes.size() > kLongest) return paramErr;
    OSErr error = MakeNote(&mPath, &mFile);
    if (error != noErr || !mFile) return error;
    const auto written = write(mFile.Get(), bytes.data(), bytes.size());
    if (written == ssize_t(bytes.size())) {
        Steps().Increment();
        return noErr;
    }
    error = written < 0 ? OSErrFromErrno(errno) : OSErr(dskFulErr);
    End();
    return error;
}

void ExchangeJournal::End() {
    if (!mFile) return;
    unlink(mPath.c_str());
    mFile.Reset();
    Steps().Increment();
}

bool MayExchangesBeLeft() {
    return sSeen != Steps().Value() && (sNextLook == Moment{} || Clock::now() >= sNextLook);
}

void FinishLeftExchanges(const std::function<void(const ExchangedFiles&)>& inFinish) {
    const UInt64 steps = Steps().Value();
    const auto folder = NotesFolder();
    std::vector<std::string> names;
    bool isDone = true;
    if (!folder.empty() && ReadFolder(folder, &names) == noErr) {
        for (const auto& name : names)
            isDone = FinishNote(PathInFolder(folder, name), inFinish) && isDone;
    }
    if (isDone) sSeen = steps;
    // A process that was stopped in its midst must not stop all others.
    sNextLook = isDone ? Moment{} : Clock::now() + kTillNextLook;
}

}  // namespace carbon
