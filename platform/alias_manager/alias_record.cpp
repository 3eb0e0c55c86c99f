// Owns the layout of alias records. They come from files and events, so every number is checked.
#include "alias_manager/alias_record.h"

#include <algorithm>

#include "apple_event_manager/big_endian.h"

namespace carbon {

namespace {

constexpr UInt16 kVersion = 2;
constexpr UInt16 kSignature = 0x482B;  // 'H+': names longer than of old, numbers never used again
constexpr size_t kFixedPart = 150;
constexpr size_t kLongestVolumeName = 27, kLongestName = 63;

enum Offset : size_t {
    kUserTypeAt = 0,
    kSizeAt = 4,
    kVersionAt = 6,
    kKindAt = 8,
    kVolumeNameAt = 10,
    kVolumeCreatedAt = 38,
    kSignatureAt = 42,
    kParentAt = 46,
    kNameAt = 50,
    kNumberAt = 114,
    kCreatedAt = 118,
    kTypeAt = 122,
    kCreatorAt = 126,
    kLevelsUpAt = 130,
    kLevelsDownAt = 132
};

// What the pieces behind the fixed part hold: tag 2, length 2, bytes, one more to an even length.
enum Tag : UInt16 {
    kParentName = 0,
    kPath = 2,
    kZone = 3,
    kServer = 4,
    kDiskPath = 18,
    kOwn = 0x566C,  // volume 2, device 8, inode 8, birth 8
    kEnd = 0xFFFF
};
constexpr size_t kTagHead = 4;
constexpr size_t kOwnSize = 26;

void PutText(const std::string& inText, size_t inRoom, UInt8* outBytes) {
    const size_t length = std::min(inText.size(), inRoom);
    outBytes[0] = UInt8(length);
    std::copy_n(inText.begin(), length, outBytes + 1);
}

std::optional<std::string> TextAt(std::span<const UInt8> inBytes, size_t inOffset, size_t inRoom) {
    const size_t length = inBytes[inOffset];
    if (length > inRoom) return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(inBytes.data()) + inOffset + 1;
    return std::string(text, length);
}

void Append(UInt16 inTag, std::string_view inBytes, std::vector<UInt8>* ioRecord) {
    const size_t length = (inBytes.size() + 1) / 2 * 2;
    const size_t at = ioRecord->size();
    if (at + kTagHead + length + kTagHead > kLargestAlias) return;
    if (inBytes.empty() && inTag != kEnd) return;
    ioRecord->resize(at + kTagHead + length);
    WriteBigEndian(ioRecord->data() + at, inTag);
    WriteBigEndian(ioRecord->data() + at + 2, UInt16(inBytes.size()));
    std::copy(inBytes.begin(), inBytes.end(), ioRecord->data() + at + kTagHead);
}

std::string OwnPiece(const AliasContents& inContents) {
    UInt8 bytes[kOwnSize];
    WriteBigEndian(bytes, inContents.volume);
    WriteBigEndian(bytes + 2, inContents.identity.device);
    WriteBigEndian(bytes + 10, inContents.identity.inode);
    WriteBigEndian(bytes + 18, inContents.identity.birth);
    return inContents.volume == 0 ? "" : std::string(bytes, bytes + kOwnSize);
}

void TakeOwnPiece(const std::string& inPiece, AliasContents* outContents) {
    if (inPiece.size() != kOwnSize) return;
    const auto* bytes = reinterpret_cast<const UInt8*>(inPiece.data());
    outContents->volume = ReadBigEndian<SInt16>(bytes);
    outContents->identity = {ReadBigEndian<UInt64>(bytes + 2), ReadBigEndian<UInt64>(bytes + 10),
                             ReadBigEndian<SInt64>(bytes + 18)};
}

// The text that a piece of that tag is; null for pieces that are none.
std::string* TextFor(UInt16 inTag, AliasContents* ioContents) {
    switch (inTag) {
        case kParentName:
            return &ioContents->parentName;
        case kPath:
            return &ioContents->path;
        case kZone:
            return &ioContents->zone;
        case kServer:
            return &ioContents->server;
        case kDiskPath:
            return &ioContents->diskPath;
        default:
            return nullptr;
    }
}

void TakePiece(UInt16 inTag, std::string inPiece, AliasContents* outContents) {
    if (inTag == kOwn) return TakeOwnPiece(inPiece, outContents);
    if (std::string* text = TextFor(inTag, outContents)) *text = std::move(inPiece);
}

bool TakePieces(std::span<const UInt8> inBytes, AliasContents* outContents) {
    while (inBytes.size() >= kTagHead) {
        const auto tag = ReadBigEndian<UInt16>(inBytes.data());
        const size_t length = ReadBigEndian<UInt16>(inBytes.data() + 2);
        const size_t whole = kTagHead + (length + 1) / 2 * 2;
        if (tag == kEnd) return true;
        if (whole > inBytes.size()) return false;
        const auto* piece = reinterpret_cast<const char*>(inBytes.data()) + kTagHead;
        TakePiece(tag, {piece, length}, outContents);
        inBytes = inBytes.subspan(whole);
    }
    return false;
}

void PutFixedPart(const AliasContents& inContents, UInt8* outBytes) {
    WriteBigEndian(outBytes + kUserTypeAt, inContents.userType);
    WriteBigEndian(outBytes + kVersionAt, kVersion);
    WriteBigEndian(outBytes + kKindAt, UInt16(inContents.isFolder));
    PutText(inContents.volumeName, kLongestVolumeName, outBytes + kVolumeNameAt);
    WriteBigEndian(outBytes + kVolumeCreatedAt, inContents.volumeCreated);
    WriteBigEndian(outBytes + kSignatureAt, kSignature);
    WriteBigEndian(outBytes + kParentAt, inContents.parent);
    PutText(inContents.name, kLongestName, outBytes + kNameAt);
    WriteBigEndian(outBytes + kNumberAt, inContents.number);
    WriteBigEndian(outBytes + kCreatedAt, inContents.created);
    WriteBigEndian(outBytes + kTypeAt, inContents.type);
    WriteBigEndian(outBytes + kCreatorAt, inContents.creator);
    WriteBigEndian(outBytes + kLevelsUpAt, inContents.levelsUp);
    WriteBigEndian(outBytes + kLevelsDownAt, inContents.levelsDown);
}

void TakeFixedPart(const UInt8* inBytes, AliasContents* outContents) {
    outContents->userType = ReadBigEndian<UInt32>(inBytes + kUserTypeAt);
    outContents->isFolder = ReadBigEndian<UInt16>(inBytes + kKindAt) != 0;
    outContents->volumeCreated = ReadBigEndian<UInt32>(inBytes + kVolumeCreatedAt);
    outContents->parent = ReadBigEndian<SInt32>(inBytes + kParentAt);
    outContents->number = ReadBigEndian<UInt32>(inBytes + kNumberAt);
    outContents->created = ReadBigEndian<UInt32>(inBytes + kCreatedAt);
    outContents->type = ReadBigEndian<UInt32>(inBytes + kTypeAt);
    outContents->creator = ReadBigEndian<UInt32>(inBytes + kCreatorAt);
    outContents->levelsUp = ReadBigEndian<SInt16>(inBytes + kLevelsUpAt);
    outContents->levelsDown = ReadBigEndian<SInt16>(inBytes + kLevelsDownAt);
}

}  // namespace

std::vector<UInt8> BytesOfAlias(const AliasContents& inContents) {
    std::vector<UInt8> record(kFixedPart);
    PutFixedPart(inContents, record.data());
    Append(kParentName, inContents.parentName, &record);
    Append(kOwn, OwnPiece(inContents), &record);
    Append(kZone, inContents.zone, &record);
    Append(kServer, inContents.server, &record);
    Append(kPath, inContents.path, &record);
    Append(kDiskPath, inContents.diskPath, &record);
    Append(kEnd, "", &record);
    WriteBigEndian(record.data() + kSizeAt, UInt16(record.size()));
    return record;
}

std::optional<AliasContents> AliasFromBytes(std::span<const UInt8> inBytes) {
    if (inBytes.size() < kFixedPart) return std::nullopt;
    const size_t size = ReadBigEndian<UInt16>(inBytes.data() + kSizeAt);
    const auto version = ReadBigEndian<UInt16>(inBytes.data() + kVersionAt);
    if (size < kFixedPart || size > inBytes.size() || version != kVersion) return std::nullopt;
    const auto volumeName = TextAt(inBytes, kVolumeNameAt, kLongestVolumeName);
    const auto name = TextAt(inBytes, kNameAt, kLongestName);
    if (!volumeName || !name) return std::nullopt;
    AliasContents contents;
    contents.volumeName = *volumeName;
    contents.name = *name;
    TakeFixedPart(inBytes.data(), &contents);
    if (!TakePieces(inBytes.subspan(kFixedPart, size - kFixedPart), &contents)) {
        return std::nullopt;
    }
    return contents;
}

}  // namespace carbon
