// What the 80 bytes of a reference hold.
#pragma once

#include <Carbon/Files.h>

#include <optional>
#include <string>

#include "file_manager/object_status.h"

namespace carbon {

// Who the object is, and where it was when the reference was made. The name is there to find the
// object with one look; a longer one is left out and found by the object's inode.
struct Reference {
    FSVolumeRefNum volume = 0;
    SInt32 parent = 0;
    bool isFolder = false;
    ObjectIdentity identity;
    std::string name;  // as on disk; may be empty
};

FSRef RefFromReference(const Reference& inReference);

// Nothing when the bytes are no reference.
std::optional<Reference> ReferenceFromRef(const FSRef& inRef);

}  // namespace carbon
