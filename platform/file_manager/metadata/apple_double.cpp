// Owns the list at the beginning of AppleDouble files, version 2. They come from anywhere, so every
// number is checked.
#include "file_manager/metadata/apple_double.h"

#include <algorithm>

#include "apple_event_manager/big_endian.h"
#include "file_manager/catalog/object_status.h"

namespace carbon {

namespace {

bool AreApart(std::vector<AppleDoubleEntry> inEntries) {
    std::erase_if(inEntries, [](const auto& inEntry) { return inEntry.length == 0; });
    const auto byOffset = [](const auto& a, const auto& b) { return a.offset < b.offset; };
    std::sort(inEntries.begin(), inEntries.end(), byOffset);
    const auto overlap = [](const auto& a, const auto& b) {
        return UInt64(a.offset) + a.length > b.offset;
    };
    return std::adjacent_find(inEntries.begin(), inEntries.end(), overlap) == inEntries.end();
}

bool AreDifferentKinds(std::vector<AppleDoubleEntry> inEntries) {
    std::sort(inEntries.begin(), inEntries.end(),
              [](const auto& a, const auto& b) { return a.id < b.id; });
    const auto isSame = [](const auto& a, const auto& b) { return a.id == b.id; };
    return std::adjacent_find(inEntries.begin(), inEntries.end(), isSame) == inEntries.end();
}

}  // namespace

bool IsAppleDouble(std::span<const UInt8> inStart) {
    if (inStart.size() < kAppleDoubleListOffset) return false;
    const auto version = ReadBigEndian<UInt32>(inStart.data() + 4);
    return ReadBigEndian<UInt32>(inStart.data()) == kAppleDoubleMagic &&
           (version == kAppleDoubleVersion || version == kFirstAppleDoubleVersion);
}

size_t AppleDoubleListEnd(std::span<const UInt8> inStart) {
    const size_t count = ReadBigEndian<UInt16>(inStart.data() + kAppleDoubleCountOffset);
    return kAppleDoubleListOffset + count * kAppleDoubleEntrySize;
}

std::optional<std::vector<AppleDoubleEntry>> ParseAppleDouble(std::span<const UInt8> inStart,
                                                              UInt64 inFileSize) {
    if (!IsAppleDouble(inStart)) return std::nullopt;
    const size_t listEnd = AppleDoubleListEnd(inStart);
    if (listEnd > inStart.size()) return std::nullopt;
    std::vector<AppleDoubleEntry> entries;
    for (size_t at = kAppleDoubleListOffset; at < listEnd; at += kAppleDoubleEntrySize) {
        const UInt8* bytes = inStart.data() + at;
        entries.push_back({ReadBigEndian<UInt32>(bytes), ReadBigEndian<UInt32>(bytes + 4),
                           ReadBigEndian<UInt32>(bytes + 8)});
        const auto& entry = entries.back();
        if (UInt64(entry.offset) + entry.length > inFileSize) return std::nullopt;
        if (entry.length > 0 && entry.offset < listEnd) return std::nullopt;
    }
    if (!AreApart(entries) || !AreDifferentKinds(entries)) return std::nullopt;
    return entries;
}

std::string CompanionPath(const std::string& inPath, bool inIsVolumeRoot) {
    if (inIsVolumeRoot) return PathInFolder(inPath, "._.");
    return PathInFolder(ParentOfPath(inPath), "._" + LeafOfPath(inPath));
}

}  // namespace carbon
