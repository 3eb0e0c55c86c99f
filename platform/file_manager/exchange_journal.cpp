// Owns the notes of exchanges: their folder, their bytes, their locks.
#include "file_manager/exchange_journal.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <thread>
#include <type_traits>

#include "file_manager/folder_listing.h"
#include "file_manager/shared_counter.h"
#include "file_manager/state_folder.h"
#include "posix/deadline.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr auto kPatience = std::chrono::seconds(5);
constexpr auto kPause = std::chrono::milliseconds(1);
constexpr auto kTillNextLook = std::chrono::seconds(10);
constexpr std::string_view kEnd = "whole";  // what is cut short does not have it
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

class Writer {
  public:
    void Put(const void* inBytes, size_t inCount) {
        const auto* bytes = static_cast<const char*>(inBytes);
        mBytes.append(bytes, inCount);
    }
    template <typename Number>
    void Put(const Number& inNumber) {
        static_assert(std::is_arithmetic_v<Number>);
        Put(&inNumber, sizeof inNumber);
    }
    void Put(const std::string& inText) {
        Put(UInt32(inText.size()));
        Put(inText.data(), inText.size());
    }
    void Put(const std::optional<SInt64>& inDate) {
        Put(inDate.has_value());
        Put(inDate.value_or(0));
    }
    const std::string& Bytes() const { return mBytes; }

  private:
    std::string mBytes;
};

class Reader {
  public:
    explicit Reader(std::string_view inBytes) : mBytes(inBytes) {}

    void Take(void* outBytes, size_t inCount) {
        mIsWhole = mIsWhole && inCount <= mBytes.size();
        if (!mIsWhole) return;
        std::memcpy(outBytes, mBytes.data(), inCount);
        mBytes.remove_prefix(inCount);
    }
    template <typename Number>
    void Take(Number* outNumber) {
        static_assert(std::is_arithmetic_v<Number>);
        Take(outNumber, sizeof *outNumber);
    }
    void Take(std::string* outText) {
        UInt32 length = 0;
        Take(&length);
        mIsWhole = mIsWhole && length <= mBytes.size();
        if (!mIsWhole) return;
        outText->assign(mBytes.substr(0, length));
        mBytes.remove_prefix(length);
    }
    void Take(std::optional<SInt64>* outDate) {
        UInt8 isKnown = 0;
        SInt64 date = 0;
        Take(&isKnown);
        Take(&date);
        if (isKnown) *outDate = date;
    }
    bool IsAtEnd() const { return mIsWhole && mBytes == kEnd; }

  private:
    std::string_view mBytes;
    bool mIsWhole = true;
};

void PutFile(const ExchangedFile& inFile, Writer* ioWriter) {
    const Metadata& metadata = inFile.metadata;
    ioWriter->Put(inFile.path);
    ioWriter->Put(inFile.device);
    ioWriter->Put(inFile.inode);
    ioWriter->Put(inFile.companion);
    ioWriter->Put(inFile.created);
    ioWriter->Put(metadata.finderInfo, sizeof metadata.finderInfo);
    ioWriter->Put(metadata.extFinderInfo, sizeof metadata.extFinderInfo);
    ioWriter->Put(metadata.facts.created);
    ioWriter->Put(metadata.facts.backedUp);
    ioWriter->Put(metadata.facts.comment);
    ioWriter->Put(UInt8(metadata.facts.isLocked));
}

void TakeFile(Reader* ioReader, ExchangedFile* outFile) {
    Metadata& metadata = outFile->metadata;
    UInt8 isLocked = 0;
    ioReader->Take(&outFile->path);
    ioReader->Take(&outFile->device);
    ioReader->Take(&outFile->inode);
    ioReader->Take(&outFile->companion);
    ioReader->Take(&outFile->created);
    ioReader->Take(metadata.finderInfo, sizeof metadata.finderInfo);
    ioReader->Take(metadata.extFinderInfo, sizeof metadata.extFinderInfo);
    ioReader->Take(&metadata.facts.created);
    ioReader->Take(&metadata.facts.backedUp);
    ioReader->Take(&metadata.facts.comment);
    ioReader->Take(&isLocked);
    metadata.facts.isLocked = isLocked != 0;
}

std::string BytesOf(const ExchangedFiles& inFiles) {
    Writer writer;
    PutFile(inFiles.one, &writer);
    PutFile(inFiles.other, &writer);
    return writer.Bytes() + std::string(kEnd);
}

bool TakeFiles(std::string_view inBytes, ExchangedFiles* outFiles) {
    Reader reader(inBytes);
    TakeFile(&reader, &outFiles->one);
    TakeFile(&reader, &outFiles->other);
    return reader.IsAtEnd();
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
    if (length > 0 && TakeFiles(std::string_view(bytes).substr(0, size_t(length)), &files))
        inFinish(files);
    return unlink(inPath.c_str()) == 0;
}

}  // namespace

OSErr ExchangeJournal::Begin(const ExchangedFiles& inFiles) {
    const auto bytes = BytesOf(inFiles);
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
