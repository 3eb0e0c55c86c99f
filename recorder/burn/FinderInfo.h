// Type and creator of a file, as its companion `._name` keeps them.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace recorder {

// The companion of a path, in the same folder.
std::string CompanionPath(const std::string& inPath);

// Leaves both at 0 when the file has no companion or it says nothing about them. `inName` is
// relative to the folder `inFolderFd`, or absolute.
void ReadFinderInfo(int inFolderFd, const std::string& inName, OSType* outType, OSType* outCreator);

}  // namespace recorder
