// Volume, directory and pathname, as most calls name their object.
#pragma once

#include "file_manager/catalog/objects.h"

namespace carbon {

// The default directory of this process.
struct DefaultDirectory {
    FSVolumeRefNum volume;
    SInt32 id;
};
DefaultDirectory CurrentDirectory(Objects& ioObjects);
void SetCurrentDirectory(const DefaultDirectory& inDirectory);

// `inName` may be null. fnfErr sets everything but the status: only the last part is missing.
OSErr FindByPathname(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                     ConstStr255Param inName, Object* outObject);

// The volume of a path such as "Disk:" or "Disk:Folder"; null when it names none.
const Volume* VolumeInPathname(Objects& ioObjects, std::string_view inPathname);

}  // namespace carbon
