// Finder information of an object, and its way into the machine's byte order and back.
#pragma once

#include "file_manager/catalog/objects.h"
#include "file_manager/metadata/metadata.h"

namespace carbon {

// The metadata of an object in hand; a damaged companion tells nothing.
Metadata MetadataOf(const Object& inObject);

// Between the machine's order and the file's: a file's records (FInfo, FXInfo) or a folder's.
void ExchangeByteOrder(bool inIsFolder, Metadata* ioMetadata);

}  // namespace carbon
