// One folder on disk, read for the index.
#pragma once

#include <string>
#include <vector>

#include "catalog_search/search_filter.h"
#include "file_manager/catalog/object_status.h"

namespace carbon {

// A folder with the times that it had before its entries were read.
struct FolderContents {
    std::string entries;  // see search_entries.h; in the order of the catalog
    std::vector<std::string> folders;
    SearchFilter filter;
    UInt64 device = 0;
    UInt64 inode = 0;
    SInt64 modified = 0;  // nanoseconds
    SInt64 changed = 0;
    bool isSettled = false;  // the times are old enough for any later change to show in them
};

// A folder that cannot be looked into reads as an empty one. False when it is gone.
bool ReadFolderContents(const std::string& inPath, FolderContents* outContents);

// FNV-1a.
UInt64 HashOfEntries(const std::string& inEntries);

}  // namespace carbon
