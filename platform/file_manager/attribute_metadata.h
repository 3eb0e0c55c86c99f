// Metadata of objects that have no companion: what extended attributes tell.
#pragma once

#include <string>

#include "file_manager/metadata.h"

namespace carbon {

// For an object that is known to have no companion; most have no attributes either, which costs one
// call to the kernel.
Metadata MetadataInAttributes(const std::string& inPath, bool inIsFolder);

}  // namespace carbon
