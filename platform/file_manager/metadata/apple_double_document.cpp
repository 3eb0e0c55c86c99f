// Owns taking AppleDouble files apart and putting them together.
#include "file_manager/metadata/apple_double_document.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "apple_event_manager/big_endian.h"
#include "file_manager/metadata/attribute_area.h"

namespace carbon {

namespace {

constexpr size_t kUsualStart = 4096;
constexpr int kMostReadings = 8;
constexpr UInt64 kMostBesideFork = 4 * 1024 * 1024;

// The beginning of the file, with its list whole.
std::vector<UInt8> StartOf(int inFile) {
    auto start = BytesAt(inFile, 0, kUsualStart);
    if (!IsAppleDouble(start)) return {};
    const size_t listEnd = AppleDoubleListEnd(start);
    return listEnd <= start.size() ? start : BytesAt(inFile, 0, listEnd);
}

// Read until two readings agree: another process may be writing the few bytes that change in place.
// The size is looked at between them, so that it is that of the same moment as the length in it.
std::vector<UInt8> SettledStartOf(int inFile, struct stat* outFacts) {
    auto start = StartOf(inFile);
    for (int tries = 0; tries < kMostReadings; ++tries) {
        if (fstat(inFile, outFacts) != 0) return {};
        auto again = StartOf(inFile);
        if (again == start) break;
        start = std::move(again);
    }
    return start;
}

std::vector<UInt8> BytesOf(int inFile, const std::vector<UInt8>& inStart,
                           const AppleDoubleEntry& inEntry) {
    const UInt64 end = UInt64(inEntry.offset) + inEntry.length;
    if (end > inStart.size()) return BytesAt(inFile, inEntry.offset, inEntry.length);
    const auto at = inStart.begin() + SInt64(inEntry.offset);
    return {at, at + SInt64(inEntry.length)};
}

UInt64 LengthBesideFork(const std::vector<AppleDoubleEntry>& inEntries) {
    UInt64 sum = 0;
    for (const auto& entry : inEntries) {
        if (entry.id != kResourceForkEntry) sum += entry.length;
    }
    return sum;
}

int PlaceOf(const AppleDoubleDocument::Item& inItem) {
    if (inItem.id == kFileDatesEntry) return 0;
    if (inItem.id == kMacFileInfoEntry) return 1;
    return inItem.id == kFinderInfoEntry ? 2 : 3;
}

void PutEntry(const AppleDoubleEntry& inEntry, UInt8* outBytes) {
    WriteBigEndian(outBytes, inEntry.id);
    WriteBigEndian(outBytes + 4, inEntry.offset);
    WriteBigEndian(outBytes + 8, inEntry.length);
}

}  // namespace

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

std::optional<AppleDoubleDocument> AppleDoubleDocument::Read(int inFile) {
    struct stat facts;
    if (fstat(inFile, &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    const auto start = SettledStartOf(inFile, &facts);
    const auto entries = ParseAppleDouble(start, UInt64(facts.st_size));
    if (!entries || LengthBesideFork(*entries) > kMostBesideFork) return std::nullopt;
    AppleDoubleDocument document;
    for (const auto& entry : *entries) {
        if (entry.id == kResourceForkEntry) {
            document.mFork = entry;
            continue;
        }
        document.mItems.push_back({entry.id, entry.offset, BytesOf(inFile, start, entry)});
        if (document.mItems.back().bytes.size() != entry.length) return std::nullopt;
    }
    return document;
}

const AppleDoubleDocument::Item* AppleDoubleDocument::Find(UInt32 inId) const {
    const auto hasIt = [&](const Item& inItem) { return inItem.id == inId; };
    const auto found = std::find_if(mItems.begin(), mItems.end(), hasIt);
    return found == mItems.end() ? nullptr : &*found;
}

void AppleDoubleDocument::Set(UInt32 inId, std::vector<UInt8> inBytes) {
    for (auto& item : mItems) {
        if (item.id != inId) continue;
        item.bytes = std::move(inBytes);
        return;
    }
    mItems.push_back({inId, 0, std::move(inBytes)});
}

void AppleDoubleDocument::Remove(UInt32 inId) {
    std::erase_if(mItems, [&](const Item& inItem) { return inItem.id == inId; });
}

// What changes while a fork is open stands close together: dates and lock, then Finder information.
std::vector<UInt8> AppleDoubleDocument::BytesBeforeFork(UInt32 inForkLength) const {
    auto items = mItems;
    const auto byPlace = [](const Item& a, const Item& b) { return PlaceOf(a) < PlaceOf(b); };
    std::stable_sort(items.begin(), items.end(), byPlace);
    const size_t count = items.size() + 1;
    std::vector<UInt8> bytes(kAppleDoubleListOffset + count * kAppleDoubleEntrySize);
    WriteBigEndian(bytes.data(), kAppleDoubleMagic);
    WriteBigEndian(bytes.data() + 4, kAppleDoubleVersion);
    WriteBigEndian(bytes.data() + kAppleDoubleCountOffset, UInt16(count));
    for (auto& item : items) {
        const auto offset = UInt32(bytes.size());
        if (item.id == kFinderInfoEntry) MoveAttributeArea(item.offset, offset, &item.bytes);
        bytes.insert(bytes.end(), item.bytes.begin(), item.bytes.end());
        item.offset = offset;
    }
    const auto isInfo = [](const Item& inItem) { return inItem.id == kFinderInfoEntry; };
    std::stable_partition(items.begin(), items.end(), isInfo);
    UInt8* list = bytes.data() + kAppleDoubleListOffset;
    for (const auto& item : items) {
        PutEntry({item.id, item.offset, UInt32(item.bytes.size())}, list);
        list += kAppleDoubleEntrySize;
    }
    PutEntry({kResourceForkEntry, UInt32(bytes.size()), inForkLength}, list);
    return bytes;
}

}  // namespace carbon
