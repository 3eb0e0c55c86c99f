// What the 80 bytes of a reference hold.
#pragma once

#include <Carbon/Files.h>

#include <optional>
#include <string>
#include <string_view>

#include "file_manager/catalog/object_status.h"

namespace carbon {

// Who the object is, and where it was when the reference was made. The name is there to find the
// object with one look. Of a longer one only a hash is kept: the object is found by its inode, and
// the hash tells hard links in one folder apart.
struct Reference {
    FSVolumeRefNum volume = 0;
    SInt32 parent = 0;
    bool isFolder = false;
    ObjectIdentity identity;
    std::string name;  // as on disk; empty when it is too long
    UInt64 nameHash = 0;
};

FSRef RefFromReference(const Reference& inReference);

UInt64 HashOfName(std::string_view inDiskName);

// Nothing when the bytes are no reference.
std::optional<Reference> ReferenceFromRef(const FSRef& inRef);

}  // namespace carbon
