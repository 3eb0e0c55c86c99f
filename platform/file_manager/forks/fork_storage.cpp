// Owns data forks, which are the files themselves.
#include "file_manager/forks/fork_storage.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <cerrno>
#include <optional>

#include "posix/os_err.h"

namespace carbon {

namespace {

OSErr Result(int inResult) {
    return inResult == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

// The bytes that are free on a memory file system; nothing for any other one.
std::optional<SInt64> RoomInMemory(int inFile) {
    struct statfs facts;
    if (fstatfs(inFile, &facts) != 0 || facts.f_type != TMPFS_MAGIC) return std::nullopt;
    if (facts.f_blocks == 0) return std::nullopt;  // it has no bounds to tell
    return SInt64(facts.f_bavail) * SInt64(facts.f_bsize);
}

class DataStorage : public ForkStorage {
  public:
    explicit DataStorage(int inFile) : mFile(inFile) {}

    OSErr Read(SInt64 inOffset, void* outBytes, size_t inCount, size_t* outDone) override {
        return TakeCount(pread(mFile, outBytes, inCount, inOffset), outDone);
    }
    OSErr Write(SInt64 inOffset, const void* inBytes, size_t inCount, size_t* outDone) override {
        return TakeCount(pwrite(mFile, inBytes, inCount, inOffset), outDone);
    }
    OSErr GetLength(SInt64* outLength) override {
        struct stat facts;
        if (fstat(mFile, &facts) != 0) return OSErrFromErrno(errno);
        *outLength = facts.st_size;
        return noErr;
    }
    OSErr SetLength(SInt64 inLength) override {
        SInt64 length = 0;
        if (const OSErr error = GetLength(&length)) return error;
        if (inLength > length) return GrowFile(mFile, length, inLength);
        return Result(ftruncate(mFile, inLength));
    }
    OSErr Reserve(SInt64 inCount) override {
        SInt64 length = 0;
        if (const OSErr error = GetLength(&length)) return error;
        const int result = fallocate(mFile, FALLOC_FL_KEEP_SIZE, length, inCount);
        return result != 0 && errno == EOPNOTSUPP ? OSErr(noErr) : Result(result);
    }
    OSErr GetSpace(SInt64* outBytes) override {
        struct stat facts;
        if (fstat(mFile, &facts) != 0) return OSErrFromErrno(errno);
        *outBytes = SInt64(facts.st_blocks) * 512;
        return noErr;
    }
    OSErr Flush() override { return Result(fsync(mFile)); }
    OSErr ForgetCached(SInt64 inOffset, SInt64 inCount) override {
        if (fdatasync(mFile) != 0) return OSErrFromErrno(errno);
        return OSErrFromErrno(posix_fadvise(mFile, inOffset, inCount, POSIX_FADV_DONTNEED));
    }
    OSErr Close() override { return noErr; }

  private:
    int mFile;
};

}  // namespace

std::unique_ptr<ForkStorage> NewDataStorage(int inFile) {
    return std::make_unique<DataStorage>(inFile);
}

OSErr TakeCount(ssize_t inCount, size_t* outDone) {
    *outDone = inCount < 0 ? 0 : size_t(inCount);
    if (inCount >= 0 || errno == EINTR) return noErr;
    return errno == EFBIG ? OSErr(dskFulErr) : OSErrFromErrno(errno);
}

std::string PathOfOpenFile(int inFile) {
    const auto link = "/proc/self/fd/" + std::to_string(inFile);
    std::string path(4096, '\0');
    const auto length = readlink(link.c_str(), path.data(), path.size());
    struct stat facts;
    if (length <= 0 || fstat(inFile, &facts) != 0 || facts.st_nlink == 0) return "";
    return path.substr(0, size_t(length));
}

// Linux: a file system without a way to take room up front only notes the length. In memory, taking
// it would cost as much as writing: there it is enough that there is room.
OSErr GrowFile(int inFile, SInt64 inFrom, SInt64 inTo) {
    if (const auto room = RoomInMemory(inFile)) {
        return inTo - inFrom > *room ? OSErr(dskFulErr) : Result(ftruncate(inFile, inTo));
    }
    if (fallocate(inFile, 0, inFrom, inTo - inFrom) == 0) return noErr;
    if (errno == EOPNOTSUPP) return Result(ftruncate(inFile, inTo));
    const OSErr error = OSErrFromErrno(errno);
    const OSErr undone = Result(ftruncate(inFile, inFrom));
    return undone == noErr ? error : undone;
}

}  // namespace carbon
