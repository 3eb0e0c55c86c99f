// The bytes of an alias record and what they say.
#pragma once

#include <Carbon/Aliases.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "file_manager/catalog/object_status.h"

namespace carbon {

inline constexpr size_t kAliasHead = 6;  // user type 4, size 2
inline constexpr size_t kLargestAlias = 0xFFFF;

// Names and paths with colons are MacRoman, dates UTC seconds since 1904, 0 where unknown.
struct AliasContents {
    OSType userType = 0;
    bool isFolder = false;
    std::string volumeName;
    UInt32 volumeCreated = 0;
    SInt32 parent = 0;  // a directory ID; 0 when only the path is known
    std::string name;
    UInt32 number = 0;  // a directory ID, or the number of a file; 0 in a minimal alias
    UInt32 created = 0;
    OSType type = 0;
    OSType creator = 0;
    // The way from `fromFile`: folders up to the one that holds both, then parts of the path down.
    // -1 when there is none.
    SInt16 levelsUp = -1;
    SInt16 levelsDown = -1;

    std::string parentName;
    std::string path;      // "Disk:Folder:File"
    std::string diskPath;  // below the volume's root, as on disk
    std::string zone, server;

    FSVolumeRefNum volume = 0;  // 0 in a record of another system
    ObjectIdentity identity;    // the device is 0 for the volume's own

    bool IsMinimal() const { return number == 0; }
};

// Pieces that make the record too large are left out.
std::vector<UInt8> BytesOfAlias(const AliasContents& inContents);

// Nothing when the bytes are not a whole, sound record; more may follow it.
std::optional<AliasContents> AliasFromBytes(std::span<const UInt8> inBytes);

}  // namespace carbon
