// What an alias remembers about an object.
#pragma once

#include "alias_manager/alias_record.h"
#include "file_manager/catalog/objects.h"

namespace carbon {

// `inFrom` may be null. diffVolErr when it is on another volume.
OSErr DescribeForAlias(Objects& ioObjects, const Object* inFrom, const Object& inTarget,
                       AliasContents* outContents);

// Only what a minimal alias keeps. The object need not exist; its file spec must be good.
OSErr DescribeMinimally(Objects& ioObjects, const FSSpec& inTarget, AliasContents* outContents);

// When a volume was made, in seconds since 1904; 0 where its file system does not tell.
UInt32 CreationOfVolume(const Volume& inVolume);

// The parts of a path between its slashes.
std::vector<std::string> PartsOfDiskPath(const std::string& inPath);

}  // namespace carbon
