// The entries of one folder on disk.
#pragma once

#include <Carbon/MacTypes.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carbon {

// All names in a folder but "." and "..", companions ("._name") left out, in no order.
OSErr ReadFolder(const std::string& inPath, std::vector<std::string>* outNames);

// Calls `inVisit` with the name and type (DT_REG and its like) of each entry but "." and "..",
// companions too.
OSErr VisitFolder(const std::string& inPath,
                  const std::function<void(std::string_view inName, UInt8 inType)>& inVisit);

// How many entries a caller is shown.
OSErr CountEntries(const std::string& inPath, UInt32* outCount);

// The name of the entry with this inode number that `inIsIt`, given its path, confirms.
std::optional<std::string> NameOfInode(const std::string& inFolder, UInt64 inInode,
                                       const std::function<bool(const std::string&)>& inIsIt);

}  // namespace carbon
