// The paths of the folders with a purpose.
#pragma once

#include <Carbon/Folders.h>

#include <string>
#include <vector>

#include "file_manager/volumes/volume_registry.h"

namespace carbon {

// The user's folder of a type; empty when there is none.
std::string PlaceOfUser(OSType inType);

// The folder of a type for all users of the machine; empty when there is none.
std::string PlaceOfMachine(OSType inType);

// Where a folder that each volume has may be, the best place first; empty for other types.
std::vector<std::string> PlacesOnVolume(const Volume& inVolume, OSType inType);

}  // namespace carbon
