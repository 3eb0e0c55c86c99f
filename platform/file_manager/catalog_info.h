// What FSGetCatalogInfo tells about an object.
#pragma once

#include "file_manager/objects.h"

namespace carbon {

// Fills the fields asked for; only bits that a caller may ask for are given.
OSErr GetCatalogInfo(Objects& ioObjects, const Object& inObject, FSCatalogInfoBitmap inWhich,
                     FSCatalogInfo* outInfo);

// The number by which an object is known: a folder's directory ID; for a file one made from its
// inode, above all directory IDs.
UInt32 NodeIDOf(Objects& ioObjects, const Object& inObject);

}  // namespace carbon
