// One file or folder as the three worlds name it: a file spec, a reference, a path.
#pragma once

#include <Carbon/Files.h>

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "file_manager/listings/folder_cache.h"
#include "file_manager/listings/folder_walk.h"
#include "file_manager/numbers/folders.h"

namespace carbon {

struct Entry;

struct Object {
    FSSpec spec{};  // the name as SpecNameOfEntry gives it
    std::string path;
    std::string diskName;
    ObjectStatus status;
};

// Finds objects by any of their names. An object that has not changed since it was last asked for
// costs one look at it.
class Objects {
  public:
    // fnfErr sets everything but the status: only the last part is missing.
    OSErr FindBySpec(const FSSpec& inSpec, Object* outObject);
    OSErr FindByRef(const FSRef& inRef, Object* outObject);
    OSErr FindByPath(const std::string& inPath, Object* outObject);
    // The entry with that name on disk; fnfErr as above.
    OSErr FindInFolder(const Folder& inFolder, const std::string& inDiskName, Object* outObject);
    // The folder itself, as an entry of its parent.
    OSErr FindFolder(const Folder& inFolder, Object* outObject);
    // By a name as in a file spec.
    OSErr FindByName(const Folder& inFolder, std::string_view inName, Object* outObject);
    // An entry just looked at.
    OSErr TakeEntry(const Folder& inFolder, const Entry& inEntry, Object* outObject);
    // The root of a volume.
    OSErr FindRoot(const Volume& inVolume, Object* outObject);

    // A file has taken the place of another, by name and for good: references of this process to
    // the old one mean the new one from now on.
    void NoteSuccessor(const ObjectIdentity& inOld, const ObjectIdentity& inNew);

    FSRef RefTo(const Object& inObject) const;
    // The reference to the folder that an object lies in; one that names nothing for a root.
    FSRef RefToParent(const Object& inObject);

    Folders& AllFolders() { return mFolders; }
    FolderCache& Listings() { return mListings; }
    FolderWalk& Walk() { return mWalk; }

  private:
    OSErr FindEntryBySpec(const FSSpec& inSpec, Object* outObject);
    OSErr FindPresentByRef(const FSRef& inRef, Object* outObject);
    OSErr FindEntryByRef(const FSRef& inRef, Object* outObject);
    FSRef RefToSuccessor(const FSRef& inRef) const;
    OSErr FindMoved(const FSRef& inRef, Object* outObject);
    bool Recall(const std::string& inKey, Object* outObject);
    void Remember(const std::string& inKey, const Object& inObject);

    Folders mFolders;
    FolderCache mListings{mFolders.Registry()};
    FolderWalk mWalk;
    std::unordered_map<std::string, Object> mKnown;
    UInt64 mEdition = 0;  // of the registry, when mKnown began
    std::vector<std::pair<ObjectIdentity, ObjectIdentity>> mSuccessors;  // old ones and new ones
};

// The one catalog of this process, for as long as this lives. Nothing in here takes it twice.
class Catalog {
  public:
    Catalog();
    ~Catalog();
    Catalog(const Catalog&) = delete;
    Catalog& operator=(const Catalog&) = delete;

    // Whether somebody waits for the catalog. Whoever has long to do asks now and then, and lets
    // others in: what was known of objects, volumes and tables may be different then.
    static bool IsAwaited();
    void LetOthersIn();

    Objects& operator*() const;
    Objects* operator->() const { return &**this; }
};

}  // namespace carbon
