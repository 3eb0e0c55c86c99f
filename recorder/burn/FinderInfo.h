// What a file has that Linux has no place for: type and creator, a resource fork. They are kept in
// its companion `._name` (AppleDouble), or by some programs in extended attributes.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>
#include <vector>

namespace recorder {

struct MacFacts {
    OSType type = 0, creator = 0;  // 0 where nobody said
    bool hasFork = false;          // a resource fork with something in it
};

// The companion of a path, in the same folder.
std::string CompanionPath(const std::string& inPath);

// What the companion says, without one what the attributes say. `inName` is relative to the folder
// `inFolderFd`, or absolute; `inPath` is the same file's path.
MacFacts ReadMacFacts(int inFolderFd, const std::string& inName, const std::string& inPath);

// What a companion's bytes, or the first of them, say.
MacFacts FactsOf(const std::vector<UInt8>& inCompanion);

// The companion that a file or folder without one would have: what its extended attributes hold.
// Empty when they hold nothing.
std::vector<UInt8> CompanionFromAttributes(const std::string& inPath);

}  // namespace recorder
