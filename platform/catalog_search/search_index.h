// The folders of one volume as the index knows them, and keeping them true.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <set>

#include "catalog_search/folder_reader.h"
#include "catalog_search/search_limit.h"
#include "catalog_search/search_store.h"
#include "file_manager/volumes/volume_registry.h"
#include "posix/UniqueFd.h"

namespace carbon {

enum class Refreshed {
    kDone,
    kTimeOver,  // what was done so far is kept, and it is never nothing
    kFailed     // the file cannot be written, or is damaged
};

class SearchIndex {
  public:
    // Null when there is no place for its file.
    static std::unique_ptr<SearchIndex> Open(const Volume& inVolume);

    // Compares every folder with the disk and reads again what has changed. `inOthers` are the
    // roots of other volumes, which belong to those. `inBegin` is when the caller began: it may go
    // on where its own last refresh stopped, and where an earlier one did only if `inMayResume`.
    Refreshed Refresh(const Volume& inVolume, const std::set<std::string>& inOthers,
                      const SearchLimit& inLimit, Moment inBegin, bool inMayResume);
    // Whether so little time has passed since the last comparison that another one would take
    // longer than all the rest.
    bool IsFresh() const;

    UInt32 Generation() const { return mGeneration; }
    const std::vector<SearchFolder>& AllFolders() const { return mFolders; }
    const std::string& EntriesOf(const SearchFolder& inFolder) {
        return mStore->Entries(inFolder.row);
    }
    std::string PathOf(const SearchFolder& inFolder) const;
    SearchStore& Store() { return *mStore; }

  private:
    using Places = std::vector<UInt32>;  // of folders in the list

    explicit SearchIndex(std::unique_ptr<SearchStore> inStore) : mStore(std::move(inStore)) {}

    bool LoadIfStale();
    bool CompareAll(const SearchLimit& inLimit, Moment inBegin);
    bool FindChanged(const SearchLimit& inLimit);
    void Compare(UInt32 inPlace);
    bool IsOthers(const SearchFolder& inFolder) const;
    bool IsChanged(SearchFolder& ioFolder);
    int LookAt(const SearchFolder& inFolder, struct stat* outFacts);
    bool HasSibling(const SearchFolder& inFolder) const;
    bool ReadSome(const SearchLimit& inLimit);
    bool ReadOne(UInt32 inPlace);
    bool Store(UInt32 inPlace, const FolderContents& inContents);
    bool UpdateChildren(UInt32 inPlace, const std::vector<std::string>& inNames);
    Places ChildrenOf(UInt32 inPlace);
    bool RemoveTree(UInt32 inPlace);
    bool CommitGeneration();

    std::unique_ptr<SearchStore> mStore;
    std::string mRoot;
    UInt64 mDevice = 0;
    std::set<std::string> mOthers;      // roots of other volumes
    std::set<std::string> mOtherNames;  // and their last parts, to tell most folders quickly
    UInt32 mParentPlace = 0;            // the folder that is open to look at those in it
    UniqueFd mParent;
    std::vector<SearchFolder> mFolders;
    UInt32 mNext = 0;  // the folder that is compared next; a comparison may be cut short
    Places mPending;   // folders to be read
    // Parent and child, of the folders that were there when this comparison began.
    std::optional<std::vector<std::pair<UInt32, UInt32>>> mChildren;
    SInt64 mVersion = -1;  // of the file, when it was loaded
    UInt32 mGeneration = 0;
    bool mHasChanged = false;   // since the generation was counted
    Moment mBegun{};            // of the comparison that goes on, or was the last
    Moment mCompared{};         // and its end
    Clock::duration mEffort{};  // of the last comparison, if one call made it
};

}  // namespace carbon
