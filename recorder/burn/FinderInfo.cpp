// Owns the reading of companion files (AppleDouble: a magic number, a version, and a table of
// entries; big-endian).
#include "burn/FinderInfo.h"

#include <fcntl.h>
#include <unistd.h>

#include <vector>

namespace recorder {
namespace {

constexpr UInt32 kAppleDoubleMagic = 0x00051607, kFinderInfoEntry = 9;
constexpr size_t kHeaderSize = 26, kEntrySize = 12;

UInt32 BigEndian(const std::vector<UInt8>& inBytes, size_t inAt, size_t inSize = 4) {
    UInt32 value = 0;
    for (size_t i = 0; i < inSize; ++i) value = value << 8 | inBytes[inAt + i];
    return value;
}

std::vector<UInt8> FirstBytes(int inFolderFd, const std::string& inName) {
    std::vector<UInt8> bytes(4096);
    const int fd =
        openat(inFolderFd, inName.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    const ssize_t size = fd < 0 ? -1 : read(fd, bytes.data(), bytes.size());
    if (fd >= 0) close(fd);
    bytes.resize(size < 0 ? 0 : size_t(size));
    return bytes;
}

}  // namespace

std::string CompanionPath(const std::string& inPath) {
    const size_t end = inPath.find_last_not_of('/');
    const size_t slash = inPath.rfind('/', end);
    const size_t start = slash == std::string::npos ? 0 : slash + 1;
    return inPath.substr(0, start) + "._" + inPath.substr(start, end + 1 - start);
}

void ReadFinderInfo(int inFolderFd, const std::string& inName, OSType* outType,
                    OSType* outCreator) {
    const auto bytes = FirstBytes(inFolderFd, CompanionPath(inName));
    if (bytes.size() < kHeaderSize || BigEndian(bytes, 0) != kAppleDoubleMagic) return;
    const size_t entries = BigEndian(bytes, 24, 2);
    for (size_t i = 0; i < entries; ++i) {
        const size_t at = kHeaderSize + i * kEntrySize;
        if (at + kEntrySize > bytes.size()) return;
        const size_t offset = BigEndian(bytes, at + 4);
        if (BigEndian(bytes, at) != kFinderInfoEntry || offset + 8 > bytes.size()) continue;
        *outType = BigEndian(bytes, offset);
        *outCreator = BigEndian(bytes, offset + 4);
    }
}

}  // namespace recorder
