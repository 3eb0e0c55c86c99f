// Owns the iterators over folders, and what they tell about many entries at once.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <memory>
#include <unordered_map>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/metadata/attribute_metadata.h"

struct OpaqueFSIterator {
    FSVolumeRefNum volume;
    SInt32 directory;
    timespec modified;  // the folder, when this began
    UInt32 next = 1;    // the number of the entry to go on with
};

namespace carbon {

namespace {

constexpr FSCatalogInfoBitmap kFinderInfo = kFSCatInfoFinderInfo | kFSCatInfoFinderXInfo;
// What can be told about a file that nobody looked at.
constexpr FSCatalogInfoBitmap kWithoutLook =
    kFinderInfo | kFSCatInfoVolume | kFSCatInfoParentDirID | kFSCatInfoValence;

// Guarded by the Catalog.
std::unordered_map<FSIterator, std::unique_ptr<OpaqueFSIterator>>& Iterators() {
    static auto& sIterators =
        *new std::unordered_map<FSIterator, std::unique_ptr<OpaqueFSIterator>>;
    return sIterators;
}

// What is asked about each entry, and where the answers go.
struct Request {
    ItemCount most;
    FSCatalogInfoBitmap which;
    FSCatalogInfo* infos;
    FSRef* refs;
    FSSpec* specs;
    HFSUniStr255* names;

    OSErr Check() const {
        if (most == 0) return errFSBadItemCount;
        if (which & ~kKnownInfo) return errFSBadInfoBitmap;
        return infos || which == kFSCatInfoNone ? OSErr(noErr) : OSErr(paramErr);
    }
    bool NeedsNoLook() const { return !refs && !(which & ~kWithoutLook); }
};

// One reading of entries that follow each other in a folder.
class Portion {
  public:
    Portion(Objects& ioObjects, const Folder& inFolder, const Request& inRequest)
        : mObjects(ioObjects), mFolder(inFolder), mRequest(inRequest) {}

    OSErr Read(UInt32* ioNext, ItemCount* outCount);

  private:
    bool NeedsNoLook(const ListedEntry& inEntry) const;
    OSErr Tell(const ListedEntry& inEntry, ItemCount inAt);
    void TellFile(const std::string& inDiskName, ItemCount inAt);
    OSErr TellObject(const Object& inObject, ItemCount inAt);
    UInt32 CountIn(const Object& inObject);

    Objects& mObjects;
    const Folder& mFolder;
    const Request& mRequest;
    bool mAreThere = false;
};

OSErr Portion::Read(UInt32* ioNext, ItemCount* outCount) {
    std::vector<ListedEntry> entries;
    OSErr error =
        mObjects.Listings().GetEntries(mFolder, *ioNext, mRequest.most, &entries, &mAreThere);
    if (error != noErr) return error;
    if (mRequest.which & kFinderInfo)
        mObjects.Walk().Start(mFolder, mObjects.AllFolders().Registry().Edition());
    ItemCount count = 0;
    for (const auto& entry : entries) {
        error = Tell(entry, count);
        if (error == fnfErr) mObjects.Listings().Forget(mFolder);
        if (error != noErr && error != fnfErr) return error;
        if (error == noErr) ++count;
    }
    *ioNext += UInt32(entries.size());
    *outCount = count;
    return entries.size() < mRequest.most ? OSErr(errFSNoMoreItems) : OSErr(noErr);
}

bool Portion::NeedsNoLook(const ListedEntry& inEntry) const {
    const bool isPlain = !inEntry.isFolder && IsItsOwnSpecName(inEntry.diskName);
    if (!mAreThere || !isPlain || !mRequest.NeedsNoLook()) return false;
    return !(mRequest.which & kFinderInfo) ||
           (!inEntry.hasCompanion && mObjects.Walk().File() >= 0);
}

OSErr Portion::Tell(const ListedEntry& inEntry, ItemCount inAt) {
    if (NeedsNoLook(inEntry)) {
        TellFile(inEntry.diskName, inAt);
        return noErr;
    }
    Object object;
    const OSErr error = mObjects.FindInFolder(mFolder, inEntry.diskName, &object);
    return error == noErr ? TellObject(object, inAt) : error;
}

void Portion::TellFile(const std::string& inDiskName, ItemCount inAt) {
    if (mRequest.names) SetUnicodeName(inDiskName, &mRequest.names[inAt]);
    if (mRequest.specs) {
        FSSpec& spec = mRequest.specs[inAt];
        spec.vRefNum = mFolder.volume;
        spec.parID = mFolder.id;
        SetPascal(inDiskName, kLongestSpecName, spec.name);
    }
    if (mRequest.which == kFSCatInfoNone) return;
    FSCatalogInfo& info = mRequest.infos[inAt];
    info.volume = mFolder.volume;
    info.parentDirID = UInt32(mFolder.id);
    info.valence = 0;
    if (!(mRequest.which & kFinderInfo)) return;
    Metadata metadata;
    ReadFinderInfoAt(mObjects.Walk().File(), inDiskName, &metadata);
    PutFinderInfo(metadata, mRequest.which, &info);
}

OSErr Portion::TellObject(const Object& inObject, ItemCount inAt) {
    if (mRequest.names) SetUnicodeName(inObject.diskName, &mRequest.names[inAt]);
    if (mRequest.specs) mRequest.specs[inAt] = inObject.spec;
    if (mRequest.refs) mRequest.refs[inAt] = mObjects.RefTo(inObject);
    if (mRequest.which == kFSCatInfoNone) return noErr;
    FSCatalogInfo& info = mRequest.infos[inAt];
    if (mRequest.which & kFSCatInfoValence) info.valence = CountIn(inObject);
    return GetCatalogInfo(mObjects, inObject, mRequest.which & ~UInt32(kFSCatInfoValence), &info);
}

// A folder that may not be read has nothing to count.
UInt32 Portion::CountIn(const Object& inObject) {
    Folder folder;
    UInt32 count = 0;
    const bool isFolder =
        inObject.status.IsFolder() &&
        mObjects.AllFolders().FindSeen(inObject.path, inObject.status, &folder) == noErr;
    return isFolder && mObjects.Listings().Count(folder, &count) == noErr ? count : 0;
}

OSErr Open(const FSRef& inContainer, FSIteratorFlags inFlags, FSIterator* outIterator) {
    if (inFlags & ~FSIteratorFlags(kFSIterateSubtree | kFSIterateDelete))
        return errFSBadIteratorFlags;
    if (inFlags != kFSIterateFlat) return errFSIteratorNotSupported;
    const Catalog catalog;
    Object object;
    if (const OSErr error = catalog->FindByRef(inContainer, &object)) return error;
    if (!object.status.IsFolder()) return errFSNotAFolder;
    Folder folder;
    const OSErr error = catalog->AllFolders().FindSeen(object.path, object.status, &folder);
    if (error != noErr) return error;
    auto iterator = std::make_unique<OpaqueFSIterator>(
        OpaqueFSIterator{folder.volume, folder.id, object.status.modified});
    *outIterator = iterator.get();
    Iterators()[*outIterator] = std::move(iterator);
    return noErr;
}

OSErr Close(FSIterator inIterator) {
    const Catalog catalog;
    return Iterators().erase(inIterator) > 0 ? OSErr(noErr) : OSErr(errFSIteratorNotFound);
}

bool IsChanged(const Folder& inFolder, const OpaqueFSIterator& inIterator) {
    ObjectStatus status;
    const auto& then = inIterator.modified;
    return StatusOfObject(inFolder.path, &status) != noErr ||
           status.modified.tv_sec != then.tv_sec || status.modified.tv_nsec != then.tv_nsec;
}

OSErr GetBulk(FSIterator inIterator, const Request& inRequest, ItemCount* outCount,
              Boolean* outIsChanged) {
    const Catalog catalog;
    const auto found = Iterators().find(inIterator);
    if (found == Iterators().end()) return errFSIteratorNotFound;
    if (const OSErr error = inRequest.Check()) return error;
    OpaqueFSIterator& iterator = *found->second;
    Folder folder;
    const OSErr error =
        catalog->AllFolders().FindById(iterator.volume, iterator.directory, &folder);
    if (error != noErr) return error;
    if (outIsChanged) *outIsChanged = IsChanged(folder, iterator);
    return Portion(*catalog, folder, inRequest).Read(&iterator.next, outCount);
}

}  // namespace

}  // namespace carbon

OSErr FSOpenIterator(const FSRef* container, FSIteratorFlags iteratorFlags, FSIterator* iterator) {
    if (!container || !iterator) return paramErr;
    return carbon::Open(*container, iteratorFlags, iterator);
}

OSErr FSCloseIterator(FSIterator iterator) {
    return carbon::Close(iterator);
}

OSErr FSGetCatalogInfoBulk(FSIterator iterator, ItemCount maximumObjects, ItemCount* actualObjects,
                           Boolean* containerChanged, FSCatalogInfoBitmap whichInfo,
                           FSCatalogInfo* catalogInfos, FSRef* refs, FSSpecPtr specs,
                           HFSUniStr255* names) {
    if (!actualObjects) return paramErr;
    *actualObjects = 0;
    const carbon::Request request{maximumObjects, whichInfo, catalogInfos, refs, specs, names};
    return carbon::GetBulk(iterator, request, actualObjects, containerChanged);
}
