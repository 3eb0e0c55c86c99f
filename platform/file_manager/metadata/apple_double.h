// AppleDouble files: the companion ("._name") that holds what a Linux file has no place for.
#pragma once

#include <Carbon/MacTypes.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace carbon {

enum AppleDoubleEntryID : UInt32 {
    kResourceForkEntry = 2,
    kCommentEntry = 4,
    kFileDatesEntry = 8,
    kFinderInfoEntry = 9,
    kMacFileInfoEntry = 10
};

inline constexpr UInt32 kAppleDoubleMagic = 0x00051607;
inline constexpr UInt32 kAppleDoubleVersion = 0x00020000;
inline constexpr UInt32 kFirstAppleDoubleVersion = 0x00010000;  // read, never written
inline constexpr size_t kAppleDoubleCountOffset = 24;
inline constexpr size_t kAppleDoubleListOffset = 26;
inline constexpr size_t kAppleDoubleEntrySize = 12;
inline constexpr size_t kFinderInfoSize = 32;

// Whether a file begins as one does, and where its list ends then.
bool IsAppleDouble(std::span<const UInt8> inStart);
size_t AppleDoubleListEnd(std::span<const UInt8> inStart);

struct AppleDoubleEntry {
    UInt32 id;
    UInt32 offset;  // from the file's start
    UInt32 length;
};

// The list of entries, which begins a file of `inFileSize` bytes. Nothing unless each entry lies
// within the file, behind the list and apart from the others, and no kind is there twice.
std::optional<std::vector<AppleDoubleEntry>> ParseAppleDouble(std::span<const UInt8> inStart,
                                                              UInt64 inFileSize);

// Dates in seconds of Unix time; nothing where the file says it does not know.
struct AppleDoubleFacts {
    std::optional<SInt64> created;
    std::optional<SInt64> backedUp;
    std::string comment;  // MacRoman
    UInt32 resourceLength = 0;
    bool isLocked = false;

    bool operator==(const AppleDoubleFacts&) const = default;
};

// Where the companion of an object lies; the root of a volume has its own inside.
std::string CompanionPath(const std::string& inPath, bool inIsVolumeRoot);

}  // namespace carbon
