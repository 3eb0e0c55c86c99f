// Owns the reading and making of companion files (AppleDouble: a magic number, a version, and a
// table of entries; big-endian).
#include "burn/FinderInfo.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <optional>
#include <vector>

namespace recorder {
namespace {

constexpr UInt32 kAppleDoubleMagic = 0x00051607, kAppleDoubleVersion = 0x00020000;
constexpr UInt32 kResourceForkEntry = 2, kFinderInfoEntry = 9;
constexpr size_t kHeaderSize = 26, kFillerSize = 16, kEntrySize = 12, kFinderInfoSize = 32;

UInt32 BigEndian(const std::vector<UInt8>& inBytes, size_t inAt, size_t inSize = 4) {
    UInt32 value = 0;
    for (size_t i = 0; i < inSize; ++i) value = value << 8 | inBytes[inAt + i];
    return value;
}

void Append(std::vector<UInt8>& ioBytes, UInt32 inValue, int inSize = 4) {
    for (int shift = 8 * (inSize - 1); shift >= 0; shift -= 8)
        ioBytes.push_back(UInt8(inValue >> shift));
}

void AppendEntry(std::vector<UInt8>& ioBytes, UInt32 inID, size_t inOffset, size_t inLength) {
    Append(ioBytes, inID);
    Append(ioBytes, UInt32(inOffset));
    Append(ioBytes, UInt32(inLength));
}

// Empty when there is none, or while it is being replaced.
std::vector<UInt8> Attribute(const std::string& inPath, const char* inName) {
    const ssize_t length = lgetxattr(inPath.c_str(), inName, nullptr, 0);
    if (length <= 0) return {};
    std::vector<UInt8> bytes(static_cast<size_t>(length));
    const ssize_t got = lgetxattr(inPath.c_str(), inName, bytes.data(), bytes.size());
    return got == length ? bytes : std::vector<UInt8>();
}

// Nothing when there is no such file.
std::optional<std::vector<UInt8>> FirstBytes(int inFolderFd, const std::string& inName) {
    const int fd =
        openat(inFolderFd, inName.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    if (fd < 0) return std::nullopt;
    std::vector<UInt8> bytes(4096);
    const ssize_t size = read(fd, bytes.data(), bytes.size());
    close(fd);
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

MacFacts ReadMacFacts(int inFolderFd, const std::string& inName, const std::string& inPath) {
    const auto companion = FirstBytes(inFolderFd, CompanionPath(inName));
    return FactsOf(companion ? *companion : CompanionFromAttributes(inPath));
}

MacFacts FactsOf(const std::vector<UInt8>& inCompanion) {
    MacFacts facts;
    if (inCompanion.size() < kHeaderSize || BigEndian(inCompanion, 0) != kAppleDoubleMagic)
        return facts;
    const size_t entries = BigEndian(inCompanion, 24, 2);
    for (size_t i = 0; i < entries; ++i) {
        const size_t at = kHeaderSize + i * kEntrySize;
        if (at + kEntrySize > inCompanion.size()) break;
        const UInt32 id = BigEndian(inCompanion, at);
        const size_t offset = BigEndian(inCompanion, at + 4);
        if (id == kResourceForkEntry) facts.hasFork = BigEndian(inCompanion, at + 8) != 0;
        if (id != kFinderInfoEntry || offset + 8 > inCompanion.size()) continue;
        facts.type = BigEndian(inCompanion, offset);
        facts.creator = BigEndian(inCompanion, offset + 4);
    }
    return facts;
}

std::vector<UInt8> CompanionFromAttributes(const std::string& inPath) {
    if (llistxattr(inPath.c_str(), nullptr, 0) <= 0) return {};  // as most files, at one question
    std::vector<UInt8> info = Attribute(inPath, "user.com.apple.FinderInfo");
    const std::vector<UInt8> fork = Attribute(inPath, "user.com.apple.ResourceFork");
    if (info.size() != kFinderInfoSize) info.clear();
    if (info.empty() && fork.empty()) return {};
    info.resize(kFinderInfoSize);
    std::vector<UInt8> bytes;
    Append(bytes, kAppleDoubleMagic);
    Append(bytes, kAppleDoubleVersion);
    bytes.resize(bytes.size() + kFillerSize);
    Append(bytes, 2, 2);  // entries
    const size_t start = kHeaderSize + 2 * kEntrySize;
    AppendEntry(bytes, kFinderInfoEntry, start, info.size());
    AppendEntry(bytes, kResourceForkEntry, start + info.size(), fork.size());
    bytes.insert(bytes.end(), info.begin(), info.end());
    bytes.insert(bytes.end(), fork.begin(), fork.end());
    return bytes;
}

}  // namespace recorder
