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
    kFileDatesEntry = 8,
    kFinderInfoEntry = 9,
    kMacFileInfoEntry = 10
};

struct AppleDoubleEntry {
    UInt32 id;
    UInt32 offset;  // from the file's start
    UInt32 length;
};

// The list of entries, which begins a file of `inFileSize` bytes. Nothing unless each entry lies
// within the file, behind the list and apart from the others.
std::optional<std::vector<AppleDoubleEntry>> ParseAppleDouble(std::span<const UInt8> inStart,
                                                              UInt64 inFileSize);

// Dates in seconds of Unix time; nothing where the file says it does not know.
struct AppleDoubleFacts {
    std::optional<std::vector<UInt8>> finderInfo;  // 32 bytes, big-endian
    std::optional<SInt64> created;
    std::optional<SInt64> backedUp;
    UInt32 resourceLength = 0;
    bool isLocked = false;
};

// Where the companion of an object lies; the root of a volume has its own inside.
std::string CompanionPath(const std::string& inPath, bool inIsVolumeRoot);

// Nothing when there is no such file or it is not sound: then it tells nothing about the object.
std::optional<AppleDoubleFacts> ReadAppleDouble(const std::string& inCompanionPath);

}  // namespace carbon
