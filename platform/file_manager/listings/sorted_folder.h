// The entries of one folder in the order in which they are counted.
#pragma once

#include <Carbon/MacTypes.h>

#include <array>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace carbon {

// What a listing tells of an entry.
struct ListedEntry {
    std::string diskName;
    bool isFolder = false;
    bool hasCompanion = false;
};

// By name without regard to case, then by bytes. Names that come and go are taken in one by one, so
// that going through a folder while deleting in it costs the same for each entry.
class SortedFolder {
  public:
    // Reads a folder anew. fnfErr, dirNFErr, afpAccessDenied.
    OSErr Read(const std::string& inPath);

    // A name that has come or gone since; that it is there, or gone, already is no accident.
    void Add(std::string_view inDiskName, bool inIsFolder);
    void Remove(std::string_view inDiskName, bool inIsFolder);

    UInt32 Count() const { return UInt32(mEntries.size()); }
    UInt32 CountFiles() const { return mFileCount; }
    // Whether there has been any since it was read, be it of these entries or of others.
    bool HasCompanions() const { return mHasCompanions; }
    // From 0. False past the end.
    bool Get(UInt32 inIndex, ListedEntry* outEntry);
    bool GetFile(UInt32 inIndex, ListedEntry* outEntry);

    size_t Footprint() const { return mNames.size() + mEntries.size() * sizeof(Entry); }

  private:
    using Key = std::array<UInt64, 2>;  // the beginning of the folded name
    struct Entry {
        Key key;
        UInt32 offset;  // in mNames
        UInt16 length;
        bool isFolder;
        bool hasCompanion;
    };

    std::string_view NameOf(const Entry& inEntry) const {
        return std::string_view(mNames).substr(inEntry.offset, inEntry.length);
    }
    Entry MakeEntry(std::string_view inDiskName, bool inIsFolder);
    bool IsBefore(const Entry& inOne, const Entry& inOther) const;
    std::deque<Entry>::iterator Find(std::string_view inDiskName);
    void MarkCompanion(std::string_view inOwner, bool inHasOne);
    void Sort();
    void Tell(const Entry& inEntry, ListedEntry* outEntry) const;

    std::string mNames;  // one after the other; names that went leave theirs
    std::deque<Entry> mEntries;
    std::vector<UInt32> mFiles;  // positions of those that are no folders, when asked for
    UInt32 mFileCount = 0;
    bool mIsSorted = false;
    bool mHasCompanions = false;
};

}  // namespace carbon
