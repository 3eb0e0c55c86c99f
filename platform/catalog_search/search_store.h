// The index of one volume on disk.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "catalog_search/search_filter.h"
#include "file_manager/numbers/database.h"

namespace carbon {

// One folder. A parent's row is smaller than its children's.
struct SearchFolder {
    SInt64 row = 0;
    UInt32 parent = 0;  // its place in the list of folders; the root's is its own
    std::string name;   // as on disk
    UInt64 inode = 0;   // 0: not read yet
    SInt64 modified = 0;
    SInt64 changed = 0;
    bool isSettled = false;
    UInt64 hash = 0;  // of its entries
    SearchFilter filter;

    bool isGone = false;    // no longer in the file
    bool isHidden = false;  // not to be searched: gone from the disk, or another volume's
};

// Every call may meet damage; whoever makes them looks at IsDamaged then. False after a failure.
class SearchStore {
  public:
    static std::unique_ptr<SearchStore> Open(const std::string& inPath);

    Database& File() { return *mDatabase; }

    // Another number after a write by another process.
    SInt64 DataVersion();
    // Another number after each change of the catalog; never 0.
    UInt32 Generation();
    bool SetGeneration(UInt32 inGeneration);

    // All folders in the order of their rows.
    bool Load(std::vector<SearchFolder>* outFolders);
    // Gives the folder its row.
    bool Add(SInt64 inParentRow, SearchFolder* ioFolder);
    bool Update(const SearchFolder& inFolder);
    bool Remove(SInt64 inRow);

    bool SetEntries(SInt64 inRow, const std::string& inEntries);
    // Good until the next call. Nothing of the file stays locked.
    const std::string& Entries(SInt64 inRow);

  private:
    explicit SearchStore(std::unique_ptr<Database> inDatabase);

    std::unique_ptr<Database> mDatabase;
    Statement mVersion, mEntries, mAdd, mUpdate, mSetEntries;
    std::string mLastEntries;
};

}  // namespace carbon
