// The entries of one folder on disk.
#pragma once

#include <Carbon/MacTypes.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "file_manager/catalog/object_status.h"

namespace carbon {

// Companions belong to other objects: whatever is called "._name" and is no folder is none itself,
// also without its object. Nobody is shown it, and no name leads to it.
bool IsHiddenEntry(std::string_view inDiskName, bool inIsFolder);

// `inType` is DT_DIR and its like; where the file system does not tell it, the entry is asked.
bool IsFolderEntry(const std::string& inFolder, std::string_view inName, UInt8 inType);

// What an entry is, as far as it is one: fnfErr for hidden ones.
OSErr StatusOfEntry(const std::string& inFolder, const std::string& inDiskName,
                    ObjectStatus* outStatus);

// All names in a folder but "." and "..", hidden ones left out, in no order.
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
