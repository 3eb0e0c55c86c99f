// Aliases as bytes: what other managers need of the Alias Manager.
#pragma once

#include <Carbon/Aliases.h>

#include <span>
#include <string>
#include <vector>

namespace carbon {

// The path of the object that a record means; ResolveAlias's errors.
OSErr PathFromAlias(std::span<const UInt8> inBytes, std::string* outPath);

// The record of the object at a path; NewAlias's errors.
OSErr AliasFromPath(const std::string& inPath, std::vector<UInt8>* outBytes);

}  // namespace carbon
