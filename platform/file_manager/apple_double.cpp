// Owns reading AppleDouble files, version 2. They come from anywhere, so every number is checked.
#include "file_manager/apple_double.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include "file_manager/object_status.h"
#include "posix/UniqueFd.h"

namespace carbon {

namespace {

constexpr UInt32 kMagic = 0x00051607;
constexpr UInt32 kVersion = 0x00020000;
constexpr size_t kCountOffset = 24;
constexpr size_t kListOffset = 26;
constexpr size_t kEntrySize = 12;
constexpr size_t kLongestList = kListOffset + 0xFFFF * kEntrySize;
constexpr size_t kFinderInfoSize = 32;
constexpr SInt64 kDatesEpoch = 946684800;  // 2000-01-01 in Unix time
constexpr UInt32 kUnknownDate = 0x80000000;

UInt32 Number16(const UInt8* inBytes) {
    return UInt32(inBytes[0]) << 8 | inBytes[1];
}

UInt32 Number32(const UInt8* inBytes) {
    return Number16(inBytes) << 16 | Number16(inBytes + 2);
}

bool AreApart(std::vector<AppleDoubleEntry> inEntries) {
    std::erase_if(inEntries, [](const auto& inEntry) { return inEntry.length == 0; });
    const auto byOffset = [](const auto& a, const auto& b) { return a.offset < b.offset; };
    std::sort(inEntries.begin(), inEntries.end(), byOffset);
    const auto overlap = [](const auto& a, const auto& b) {
        return UInt64(a.offset) + a.length > b.offset;
    };
    return std::adjacent_find(inEntries.begin(), inEntries.end(), overlap) == inEntries.end();
}

// Up to `inLength` bytes; fewer where the file ends.
std::vector<UInt8> BytesAt(int inFile, UInt64 inOffset, size_t inLength) {
    std::vector<UInt8> bytes(inLength);
    size_t got = 0;
    while (got < inLength) {
        const auto count = pread(inFile, bytes.data() + got, inLength - got, off_t(inOffset + got));
        if (count <= 0) break;
        got += size_t(count);
    }
    bytes.resize(got);
    return bytes;
}

std::optional<SInt64> DateAt(const std::vector<UInt8>& inBytes, size_t inOffset) {
    if (inBytes.size() < inOffset + 4) return std::nullopt;
    const UInt32 date = Number32(inBytes.data() + inOffset);
    return date == kUnknownDate ? std::nullopt : std::optional(SInt64(SInt32(date)) + kDatesEpoch);
}

bool IsAllZero(const std::vector<UInt8>& inBytes) {
    return std::all_of(inBytes.begin(), inBytes.end(), [](UInt8 byte) { return byte == 0; });
}

void TakeEntry(int inFile, const AppleDoubleEntry& inEntry, AppleDoubleFacts* ioFacts) {
    const auto bytes = [&] {
        return BytesAt(inFile, inEntry.offset, std::min<size_t>(inEntry.length, kFinderInfoSize));
    };
    if (inEntry.id == kResourceForkEntry) {
        ioFacts->resourceLength = inEntry.length;
    } else if (inEntry.id == kFinderInfoEntry) {
        auto info = bytes();
        if (info.size() == kFinderInfoSize && !IsAllZero(info))
            ioFacts->finderInfo = std::move(info);
    } else if (inEntry.id == kFileDatesEntry) {
        const auto dates = bytes();  // creation, modification, backup, access
        ioFacts->created = DateAt(dates, 0);
        ioFacts->backedUp = DateAt(dates, 8);
    } else if (inEntry.id == kMacFileInfoEntry) {
        const auto flags = bytes();
        ioFacts->isLocked = flags.size() >= 4 && (Number32(flags.data()) & 1);
    }
}

}  // namespace

std::optional<std::vector<AppleDoubleEntry>> ParseAppleDouble(std::span<const UInt8> inStart,
                                                              UInt64 inFileSize) {
    if (inStart.size() < kListOffset || Number32(inStart.data()) != kMagic ||
        Number32(inStart.data() + 4) != kVersion) {
        return std::nullopt;
    }
    const size_t count = Number16(inStart.data() + kCountOffset);
    const size_t listEnd = kListOffset + count * kEntrySize;
    if (listEnd > inStart.size()) return std::nullopt;
    std::vector<AppleDoubleEntry> entries;
    for (size_t i = 0; i < count; ++i) {
        const UInt8* bytes = inStart.data() + kListOffset + i * kEntrySize;
        entries.push_back({Number32(bytes), Number32(bytes + 4), Number32(bytes + 8)});
        const auto& entry = entries.back();
        if (UInt64(entry.offset) + entry.length > inFileSize) return std::nullopt;
        if (entry.length > 0 && entry.offset < listEnd) return std::nullopt;
    }
    return AreApart(entries) ? std::optional(std::move(entries)) : std::nullopt;
}

std::string CompanionPath(const std::string& inPath, bool inIsVolumeRoot) {
    if (inIsVolumeRoot) return PathInFolder(inPath, "._.");
    return PathInFolder(ParentOfPath(inPath), "._" + LeafOfPath(inPath));
}

std::optional<AppleDoubleFacts> ReadAppleDouble(const std::string& inCompanionPath) {
    const int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const UniqueFd file(open(inCompanionPath.c_str(), flags));
    struct stat facts;
    if (!file || fstat(file.Get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    auto start = BytesAt(file.Get(), 0, kListOffset);
    if (start.size() < kListOffset) return std::nullopt;
    const size_t listEnd = kListOffset + Number16(start.data() + kCountOffset) * kEntrySize;
    start = BytesAt(file.Get(), 0, std::min(listEnd, kLongestList));
    const auto entries = ParseAppleDouble(start, UInt64(facts.st_size));
    if (!entries) return std::nullopt;
    AppleDoubleFacts result;
    for (const auto& entry : *entries) TakeEntry(file.Get(), entry, &result);
    return result;
}

}  // namespace carbon
