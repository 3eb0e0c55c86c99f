// The listings of the folders that were asked about last, kept true by the kernel's notices.
#pragma once

#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

#include "file_manager/listings/sorted_folder.h"
#include "file_manager/numbers/folders.h"
#include "posix/UniqueFd.h"

namespace carbon {

// A folder is read once and then told about by notices, which the kernel has ready before whoever
// made the change goes on. Where there are none (another machine makes the changes, or too many
// folders are watched) it is read again whenever its times have changed, and after a moment.
class FolderCache {
  public:
    explicit FolderCache(const VolumeRegistry& inRegistry);
    ~FolderCache();

    // The entry of that number, from 1; fnfErr past the last. The folder is one just looked at.
    OSErr GetEntry(const Folder& inFolder, UInt32 inIndex, ListedEntry* outEntry);
    OSErr GetFile(const Folder& inFolder, UInt32 inIndex, ListedEntry* outEntry);
    // As many as there are from that number on, but not more than so many. `outAreThere` is false
    // where no notices would have told that one of them has gone.
    OSErr GetEntries(const Folder& inFolder, UInt32 inIndex, UInt32 inMost,
                     std::vector<ListedEntry>* outEntries, bool* outAreThere);
    OSErr Count(const Folder& inFolder, UInt32* outCount);
    OSErr CountFiles(const Folder& inFolder, UInt32* outCount);
    // Whether companions may be in it: false only where notices would have told of one.
    bool MayHaveCompanions(const Folder& inFolder);
    // What is known of it was wrong.
    void Forget(const Folder& inFolder);

  private:
    struct Listing;

    OSErr Find(const Folder& inFolder, SortedFolder** outFolder);
    OSErr Read(const Folder& inFolder, Listing** outListing);
    void TakeNotices();
    void TakeNotice(int inWatch, UInt32 inWhat, const char* inName);
    void Drop(const std::string& inPath);
    void DropAll();
    void MakeRoom();
    void Start();
    bool IsFar(const Folder& inFolder) const;
    bool IsTold(const Folder& inFolder) const;

    const VolumeRegistry& mRegistry;
    UniqueFd mNotices;
    unsigned mForks = 0;
    bool mIsStarted = false;
    std::unordered_map<std::string, std::unique_ptr<Listing>> mByPath;
    std::unordered_multimap<int, Listing*> mByWatch;
    std::list<const std::string*> mUsed;  // the paths, that used last first
    UInt64 mTurn = 0;                     // counts the times that notices were taken in
    size_t mFootprint = 0;
};

}  // namespace carbon
