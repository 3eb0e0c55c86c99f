// Finder information of an object, wherever it is kept.
#pragma once

#include <Carbon/Finder.h>

#include "file_manager/apple_double.h"
#include "file_manager/objects.h"

namespace carbon {

// What is kept outside the file itself. Without a companion the Finder information comes from the
// attribute that some programs write; zeros when nobody recorded any.
struct Metadata {
    UInt8 finderInfo[16] = {};     // an FInfo or DInfo in the machine's byte order
    UInt8 extFinderInfo[16] = {};  // an FXInfo or DXInfo
    AppleDoubleFacts facts;
};

Metadata MetadataOf(const Object& inObject);

}  // namespace carbon
