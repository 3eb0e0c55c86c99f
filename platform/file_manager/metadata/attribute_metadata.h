// Metadata of objects that have no companion: what extended attributes tell.
#pragma once

#include <string>

#include "file_manager/metadata/metadata.h"

namespace carbon {

// For an object that is known to have no companion; most have no attributes either, which costs one
// call to the kernel.
Metadata MetadataInAttributes(const std::string& inPath, bool inIsFolder);

// The same for a file in an open folder, which no path need lead to. False when that could not be
// told: the file has gone, or has more attributes than are looked through here.
bool ReadAttributesAt(int inFolder, const std::string& inName, Metadata* outMetadata);

// The Finder information alone. False also where there is none.
bool ReadFinderInfoAt(int inFolder, const std::string& inName, Metadata* outMetadata);

}  // namespace carbon
