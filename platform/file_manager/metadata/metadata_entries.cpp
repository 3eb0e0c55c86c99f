// Owns what the entries beside the resource fork mean.
#include "file_manager/metadata/metadata_entries.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "apple_event_manager/big_endian.h"
#include "file_manager/catalog/finder_info.h"

namespace carbon {

namespace {

constexpr SInt64 kDatesEpoch = 946684800;  // 2000-01-01 in Unix time
constexpr SInt32 kUnknownDate = std::numeric_limits<SInt32>::min();
constexpr size_t kDatesSize = 16;  // creation, modification, backup, access
constexpr size_t kCreation = 0;
constexpr size_t kBackup = 8;
constexpr size_t kFileInfoSize = 4;
constexpr UInt32 kLockedBit = 1;

std::vector<UInt8> BytesOf(const AppleDoubleDocument& inDocument, UInt32 inId, size_t inLeast) {
    const auto* item = inDocument.Find(inId);
    auto bytes = item ? item->bytes : std::vector<UInt8>();
    if (bytes.size() < inLeast) bytes.resize(inLeast);
    return bytes;
}

std::vector<UInt8> UnknownDates() {
    std::vector<UInt8> bytes(kDatesSize);
    for (size_t at = 0; at < kDatesSize; at += 4) WriteBigEndian(bytes.data() + at, kUnknownDate);
    return bytes;
}

std::optional<SInt64> DateAt(const std::vector<UInt8>& inDates, size_t inOffset) {
    if (inDates.size() < inOffset + 4) return std::nullopt;
    const auto date = ReadBigEndian<SInt32>(inDates.data() + inOffset);
    return date == kUnknownDate ? std::nullopt : std::optional(SInt64(date) + kDatesEpoch);
}

// Linux: the file's dates reach from 1931 to 2068; those before or after become the first or last.
void PutDate(const std::optional<SInt64>& inDate, size_t inOffset, std::vector<UInt8>* ioDates) {
    SInt32 date = kUnknownDate;
    if (inDate) {
        const SInt64 last = std::numeric_limits<SInt32>::max();
        date = SInt32(std::clamp(*inDate - kDatesEpoch, SInt64(kUnknownDate) + 1, last));
    }
    WriteBigEndian(ioDates->data() + inOffset, date);
}

bool IsAllZero(const UInt8* inBytes, size_t inCount) {
    return std::all_of(inBytes, inBytes + inCount, [](UInt8 byte) { return byte == 0; });
}

void PutFinderInfo(Metadata inMetadata, bool inIsFolder, AppleDoubleDocument* ioDocument) {
    ExchangeByteOrder(inIsFolder, &inMetadata);
    auto bytes = BytesOf(*ioDocument, kFinderInfoEntry, kFinderInfoSize);
    std::memcpy(bytes.data(), inMetadata.finderInfo, 16);
    std::memcpy(bytes.data() + 16, inMetadata.extFinderInfo, 16);
    ioDocument->Set(kFinderInfoEntry, std::move(bytes));
}

void PutDates(const AppleDoubleFacts& inFacts, AppleDoubleDocument* ioDocument) {
    const auto* item = ioDocument->Find(kFileDatesEntry);
    const bool isWhole = item && item->bytes.size() >= kDatesSize;
    auto dates = isWhole ? item->bytes : UnknownDates();
    PutDate(inFacts.created, kCreation, &dates);
    PutDate(inFacts.backedUp, kBackup, &dates);
    ioDocument->Set(kFileDatesEntry, std::move(dates));
}

void PutLock(bool inIsLocked, AppleDoubleDocument* ioDocument) {
    auto bytes = BytesOf(*ioDocument, kMacFileInfoEntry, kFileInfoSize);
    const UInt32 flags = ReadBigEndian<UInt32>(bytes.data()) & ~kLockedBit;
    WriteBigEndian(bytes.data(), inIsLocked ? flags | kLockedBit : flags);
    ioDocument->Set(kMacFileInfoEntry, std::move(bytes));
}

void PutComment(const std::string& inComment, AppleDoubleDocument* ioDocument) {
    if (inComment.empty()) return ioDocument->Remove(kCommentEntry);
    ioDocument->Set(kCommentEntry, {inComment.begin(), inComment.end()});
}

bool HasSameFinderInfo(const Metadata& inOne, const Metadata& inOther) {
    return std::memcmp(inOne.finderInfo, inOther.finderInfo, 16) == 0 &&
           std::memcmp(inOne.extFinderInfo, inOther.extFinderInfo, 16) == 0;
}

}  // namespace

// As long as the record is a whole one.
void TakeFinderInfo(std::span<const UInt8> inBytes, bool inIsFolder, Metadata* ioMetadata) {
    if (inBytes.size() < kFinderInfoSize || IsAllZero(inBytes.data(), kFinderInfoSize)) return;
    std::memcpy(ioMetadata->finderInfo, inBytes.data(), 16);
    std::memcpy(ioMetadata->extFinderInfo, inBytes.data() + 16, 16);
    ExchangeByteOrder(inIsFolder, ioMetadata);
}

void TakeEntries(const AppleDoubleDocument& inDocument, bool inIsFolder, Metadata* ioMetadata) {
    if (const auto* info = inDocument.Find(kFinderInfoEntry))
        TakeFinderInfo(info->bytes, inIsFolder, ioMetadata);
    const auto dates = BytesOf(inDocument, kFileDatesEntry, 0);
    ioMetadata->facts.created = DateAt(dates, kCreation);
    ioMetadata->facts.backedUp = DateAt(dates, kBackup);
    const auto flags = BytesOf(inDocument, kMacFileInfoEntry, kFileInfoSize);
    ioMetadata->facts.isLocked = ReadBigEndian<UInt32>(flags.data()) & kLockedBit;
    const auto comment = BytesOf(inDocument, kCommentEntry, 0);
    ioMetadata->facts.comment.assign(comment.begin(), comment.end());
    ioMetadata->facts.resourceLength = inDocument.ForkEntry().length;
}

void PutEntries(const Metadata& inBefore, const Metadata& inAfter, bool inIsFolder,
                AppleDoubleDocument* ioDocument) {
    const auto& before = inBefore.facts;
    const auto& after = inAfter.facts;
    const bool isFirst = !ioDocument->Find(kFinderInfoEntry);
    if (isFirst || !HasSameFinderInfo(inBefore, inAfter))
        PutFinderInfo(inAfter, inIsFolder, ioDocument);
    if (before.created != after.created || before.backedUp != after.backedUp)
        PutDates(after, ioDocument);
    if (before.isLocked != after.isLocked) PutLock(after.isLocked, ioDocument);
    if (before.comment != after.comment) PutComment(after.comment, ioDocument);
}

void PutFixedEntries(AppleDoubleDocument* ioDocument) {
    if (!ioDocument->Find(kFinderInfoEntry))
        ioDocument->Set(kFinderInfoEntry, std::vector<UInt8>(kFinderInfoSize));
    if (!ioDocument->Find(kFileDatesEntry)) ioDocument->Set(kFileDatesEntry, UnknownDates());
    if (!ioDocument->Find(kMacFileInfoEntry))
        ioDocument->Set(kMacFileInfoEntry, std::vector<UInt8>(kFileInfoSize));
}

}  // namespace carbon
