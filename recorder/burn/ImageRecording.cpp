// Owns the writing of image files. libburn could write them too; doing it here gives the true errno
// of every write, ends at once when cancelled, and leaves holes where a source is empty.
#include "burn/ImageRecording.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#include "burn/ImageDrive.h"
#include "burn/PageBuffer.h"

namespace recorder {
namespace {

constexpr UInt64 kPushWindow = 16 * 1024 * 1024;
constexpr size_t kWriteSize = 1024 * 1024;

bool IsAllZero(const UInt8* inData, size_t inSize) {
    return inData[0] == 0 && std::memcmp(inData, inData + 1, inSize - 1) == 0;
}

void CheckSpace(UInt64 inBytes, UInt64 inSpace) {
    if (inBytes > inSpace)
        throw BurnFailure(dskFulErr, "The disc holds " + std::to_string(inSpace / 1'000'000) +
                                         " MB, " + std::to_string(inBytes / 1'000'000) +
                                         " MB are needed.");
}

void CheckCapacity(UInt64 inBytes, UInt64 inCapacity) {
    if (inCapacity != 0) CheckSpace(inBytes, inCapacity);
}

}  // namespace

ImageRecording::ImageRecording(const Places& inPlaces, bool inReplace, UInt64 inCapacity)
    : mPlaces(inPlaces), mCapacity(inCapacity), mFile(inPlaces.goal, inReplace) {
    const std::string same = "/proc/self/fd/" + std::to_string(mFile.Fd());
    mDirect.Reset(open(same.c_str(), O_RDWR | O_CLOEXEC | O_DIRECT));
}

void ImageRecording::Reserve(UInt64 inBytes) {
    CheckCapacity(inBytes, mCapacity);
    mFile.Reserve(inBytes);
}

// Some file systems open a file for direct transfers and then refuse them, or want more than whole
// pages. It goes the usual way from there on.
bool ImageRecording::FallsBack(int& ioFd, int inErrno) {
    if (inErrno != EINVAL || !mDirect || ioFd != mDirect.Get()) return false;
    mDirect.Reset();
    ioFd = mFile.Fd();
    return true;
}

void ImageRecording::WriteTo(int inFd, const UInt8* inData, size_t inSize, UInt64 inOffset) {
    for (size_t written = 0; written < inSize;) {
        const ssize_t count =
            pwrite(inFd, inData + written, inSize - written, off_t(inOffset + written));
        if (count < 0 && (errno == EINTR || FallsBack(inFd, errno))) continue;
        if (count < 0) throw FailureFromErrno(errno, mFile.Goal());
        written += size_t(count);
    }
}

// Past the page cache where the file system can: these pages would be in the way of others' and
// cost as much time as the rest.
void ImageRecording::WritePiece(const UInt8* inData, size_t inSize, UInt64 inOffset) {
    if (IsAllZero(inData, inSize))
        return;  // the file is as long as the disc already and reads as zeros
    const size_t direct = mDirect ? inSize - inSize % PageBuffer::kPage : 0;
    WriteTo(mDirect.Get(), inData, direct, inOffset);
    if (direct < inSize) WriteTo(mFile.Fd(), inData + direct, inSize - direct, inOffset + direct);
}

// Starts the disk on the window just filled and waits for the one before: what a cancel has to wait
// for stays small.
void ImageRecording::PushToDisk(UInt64 inOffset) {
    if (inOffset % kPushWindow != 0) return;
    PushWindow(inOffset - kPushWindow, SYNC_FILE_RANGE_WRITE);
    if (inOffset > kPushWindow)
        PushWindow(inOffset - 2 * kPushWindow, SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                                                   SYNC_FILE_RANGE_WAIT_AFTER);
}

// The kernel tells of a write that failed once only: whoever waits here must hear it, for the fsync
// at the end does not. A system without the call leaves it all to that fsync.
void ImageRecording::PushWindow(UInt64 inOffset, unsigned inHow) {
    if (sync_file_range(mFile.Fd(), off_t(inOffset), off_t(kPushWindow), inHow) == 0) return;
    if (errno != ENOSYS && errno != EINVAL) throw FailureFromErrno(errno, mFile.Goal());
}

void ImageRecording::Write(ImageStream& inStream, const JobContext& inContext) {
    const PageBuffer piece(kWriteSize);
    const UInt64 size = inStream.Size();
    for (UInt64 offset = 0; offset < size;) {
        const size_t count = size_t(std::min<UInt64>(kWriteSize, size - offset));
        for (size_t have = 0; have < count; have += kChunk) {
            inContext.CheckStop();
            inStream.Read(piece.Data() + have, std::min(kChunk, count - have));
        }
        WritePiece(piece.Data(), count, offset);
        offset += count;
        if (!mDirect) PushToDisk(offset);
    }
    inContext.CheckStop();
    inContext.progress.Doing("forcing the data to the disk");
    mFile.Sync();
}

void ImageRecording::PrepareReadBack() {
    posix_fadvise(mFile.Fd(), 0, 0, POSIX_FADV_DONTNEED);
    posix_fadvise(mFile.Fd(), 0, 0, POSIX_FADV_SEQUENTIAL);
}

// Past the page cache too, so that the disk is checked and not our memory of it.
void ImageRecording::ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) {
    const bool aligned = (inOffset | reinterpret_cast<uintptr_t>(outData)) % PageBuffer::kPage == 0;
    const size_t direct = mDirect && aligned ? inSize - inSize % PageBuffer::kPage : 0;
    ReadFrom(mDirect.Get(), inOffset, outData, direct);
    ReadFrom(mFile.Fd(), inOffset + direct, outData + direct, inSize - direct);
}

void ImageRecording::ReadFrom(int inFd, UInt64 inOffset, UInt8* outData, size_t inSize) {
    for (size_t done = 0; done < inSize;) {
        const ssize_t count = pread(inFd, outData + done, inSize - done, off_t(inOffset + done));
        if (count < 0 && (errno == EINTR || FallsBack(inFd, errno))) continue;
        if (count < 0) throw FailureFromErrno(errno, mFile.Goal());
        if (count == 0)
            throw BurnFailure(dataVerErr, mFile.Goal() + ": is shorter than what was written.");
        done += size_t(count);
    }
}

// The blank disc has become the finished one: unless the image went under that very name, or
// somebody put another file there meanwhile.
void ImageRecording::UseUpBlank(const struct stat& inImage) const {
    struct stat blank = {};
    if (lstat(mPlaces.blank.c_str(), &blank) != 0) return;
    const bool isImage = blank.st_dev == inImage.st_dev && blank.st_ino == inImage.st_ino;
    if (!isImage && IsBlankDisc(mPlaces.blank)) unlink(mPlaces.blank.c_str());
}

std::string ImageRecording::Finish() {
    struct stat image = {};
    if (fstat(mFile.Fd(), &image) != 0) throw FailureFromErrno(errno, mFile.Goal());
    mFile.Deliver();
    UseUpBlank(image);
    return mFile.Goal();
}

SimulatedRecording::SimulatedRecording(const std::string& inFolder, UInt64 inCapacity)
    : mFolder(inFolder), mCapacity(inCapacity) {
    WorkFile::CheckFolder(mFolder);
}

void SimulatedRecording::Reserve(UInt64 inBytes) {
    CheckCapacity(inBytes, mCapacity);
    CheckSpace(inBytes, FreeSpace(mFolder));
}

void SimulatedRecording::Write(ImageStream& inStream, const JobContext& inContext) {
    std::vector<UInt8> chunk(kChunk);
    for (UInt64 left = inStream.Size(); left > 0;) {
        inContext.CheckStop();
        const size_t count = size_t(std::min<UInt64>(kChunk, left));
        inStream.Read(chunk.data(), count);
        left -= count;
    }
}

void SimulatedRecording::PrepareReadBack() {}

void SimulatedRecording::ReadBack(UInt64, UInt8*, size_t) {
    throw BurnFailure(paramErr, "A simulated disc cannot be read back.");
}

std::string SimulatedRecording::Finish() {
    return {};
}

}  // namespace recorder
