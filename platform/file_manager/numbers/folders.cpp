// Owns the way from a folder's number to its path and back, also after the folder has moved.
#include "file_manager/numbers/folders.h"

#include <Carbon/MacErrors.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "file_manager/listings/folder_listing.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr size_t kMostRemembered = 8192;
constexpr int kDeepest = 1024;  // a chain of records longer than any path is a damaged one
constexpr int kMostSearched = 64;
constexpr int kMostTries = 3;

OSErr RealPath(const std::string& inPath, std::string* outPath) {
    char path[PATH_MAX];
    if (!realpath(inPath.c_str(), path)) {
        return errno == ENOENT ? OSErr(dirNFErr) : OSErrFromErrno(errno);
    }
    *outPath = path;
    return noErr;
}

OSErr AsFolderError(OSErr inError) {
    return inError == fnfErr ? OSErr(dirNFErr) : inError;
}

}  // namespace

ObjectIdentity Folders::KeptIdentity(const Volume& inVolume, ObjectIdentity inIdentity) {
    if (inIdentity.device == inVolume.device) inIdentity.device = 0;
    return inIdentity;
}

IdTable& Folders::TableOf(const Volume& inVolume) {
    auto& table = mTables[inVolume.root + '\0' + inVolume.tablePath];
    const auto announce = [this] { mRegistry.AnnounceChange(); };
    if (!table) table = std::make_unique<IdTable>(inVolume.tablePath, announce);
    return *table;
}

void Folders::CloseTables() {
    mRegistry.Close();
    for (auto& [path, table] : mTables) table->Close();
}

void Folders::NoticeFolders() {
    mRegistry.RefreshFolders();
    NoticeEdition();
}

void Folders::NoticeMounts() {
    mRegistry.Refresh();
    NoticeEdition();
}

// What lies on which volume may be different now.
void Folders::NoticeEdition() {
    if (mEdition == mRegistry.Edition()) return;
    mEdition = mRegistry.Edition();
    ForgetAll();
}

void Folders::ForgetAll() {
    mById.clear();
    mByPath.clear();
}

const Volume* Folders::FindVolume(FSVolumeRefNum inNumber) {
    NoticeMounts();
    return mRegistry.Find(inNumber);
}

void Folders::Remember(const Folder& inFolder) {
    if (mById.size() >= kMostRemembered) ForgetAll();
    const Key key{inFolder.volume, inFolder.id};
    Forget(key);
    mById[key] = inFolder;
    mByPath[inFolder.path] = key;
}

void Folders::Forget(const Key& inKey) {
    const auto found = mById.find(inKey);
    if (found == mById.end()) return;
    mByPath.erase(found->second.path);
    mById.erase(found);
}

OSErr Folders::FindById(FSVolumeRefNum inVolume, SInt32 inId, Folder* outFolder) {
    NoticeFolders();
    const auto known = mById.find({inVolume, inId});
    if (known != mById.end()) {
        ObjectStatus status;
        const OSErr error = StatusOfObject(known->second.path, &status);
        if (error == noErr && status.identity.IsSameAs(known->second.identity)) {
            *outFolder = known->second;
            return noErr;
        }
        Forget({inVolume, inId});
    }
    const Volume* volume = FindVolume(inVolume);
    if (!volume) return nsvErr;
    if (inId == fsRtDirID) return FindByPath(volume->root, outFolder);
    const auto record = TableOf(*volume).FindById(inId);
    if (!record || !record->isFolder || mDepth > kDeepest) return dirNFErr;
    ++mDepth;
    const OSErr error = FollowRecord(Volume(*volume), *record, outFolder);
    --mDepth;
    return error;
}

OSErr Folders::FollowRecord(const Volume& inVolume, const IdRecord& inRecord, Folder* outFolder) {
    Folder parent;
    const bool hasParent = FindById(inVolume.number, inRecord.parent, &parent) == noErr;
    if (hasParent) {
        const auto path = PathInFolder(parent.path, inRecord.name);
        ObjectStatus status;
        if (StatusOfObject(path, &status) == noErr && status.IsFolder() &&
            KeptIdentity(inVolume, status.identity).IsSameAs(inRecord.identity)) {
            *outFolder = {inVolume.number, inRecord.id, path, status.identity};
            Remember(*outFolder);
            return noErr;
        }
    }
    return SearchMoved(inVolume, inRecord, hasParent ? &parent : nullptr, outFolder);
}

// In its old parent first (it was renamed), then where this user has been lately (it was moved).
OSErr Folders::SearchMoved(const Volume& inVolume, IdRecord inRecord, const Folder* inParent,
                           Folder* outFolder) {
    std::vector<Folder> places;
    if (inParent) places.push_back(*inParent);
    for (auto& folder : LikelyFolders(inVolume)) places.push_back(std::move(folder));
    for (const auto& place : places) {
        ObjectStatus status;
        const auto name = NameOfInode(place.path, inRecord.identity.inode, [&](const auto& inPath) {
            return StatusOfObject(inPath, &status) == noErr && status.IsFolder() &&
                   KeptIdentity(inVolume, status.identity).IsSameAs(inRecord.identity);
        });
        if (!name) continue;
        inRecord.parent = place.id;
        inRecord.name = *name;
        TableOf(inVolume).Correct(inRecord);
        *outFolder = {inVolume.number, inRecord.id, PathInFolder(place.path, *name),
                      status.identity};
        Remember(*outFolder);
        return noErr;
    }
    return dirNFErr;
}

std::vector<Folder> Folders::LikelyFolders(const Volume& inVolume) {
    std::vector<Folder> folders;
    if (mIsSearching) return folders;  // one search does not start others
    for (const auto& [key, folder] : mById) {
        if (key.volume == inVolume.number) folders.push_back(folder);
        if (folders.size() == kMostSearched) break;
    }
    mIsSearching = true;
    for (const SInt32 id : TableOf(inVolume).RecentFolders(kMostSearched)) {
        Folder folder;
        if (!mById.count({inVolume.number, id}) &&
            FindById(inVolume.number, id, &folder) == noErr) {
            folders.push_back(std::move(folder));
        }
    }
    mIsSearching = false;
    return folders;
}

// What is remembered of a path where this is now; what is no longer true is forgotten.
const Folder* Folders::Known(const std::string& inPath, const ObjectIdentity& inIdentity) {
    const auto known = mByPath.find(inPath);
    if (known == mByPath.end()) return nullptr;
    const Folder& folder = mById.at(known->second);
    if (folder.identity.IsSameAs(inIdentity)) return &folder;
    Forget(Key(known->second));
    return nullptr;
}

OSErr Folders::FindByPath(const std::string& inPath, Folder* outFolder) {
    NoticeFolders();
    if (mByPath.count(inPath)) {
        ObjectStatus status;
        StatusOfObject(inPath, &status);  // what is gone has no identity
        if (const Folder* known = Known(inPath, status.identity)) {
            *outFolder = *known;
            return noErr;
        }
    }
    NoticeMounts();
    std::string path;
    if (const OSErr error = RealPath(inPath, &path)) return error;
    return path == inPath ? FindRealPath(path, outFolder, kMostTries) : FindByPath(path, outFolder);
}

OSErr Folders::FindRealPath(const std::string& inPath, Folder* outFolder, int inTries) {
    ObjectStatus status;
    if (const OSErr error = StatusOfObject(inPath, &status)) return AsFolderError(error);
    return TakeSeen(inPath, status, outFolder, inTries);
}

OSErr Folders::FindSeen(const std::string& inPath, const ObjectStatus& inStatus,
                        Folder* outFolder) {
    NoticeFolders();
    if (const Folder* known = Known(inPath, inStatus.identity)) {
        *outFolder = *known;
        return noErr;
    }
    NoticeMounts();
    return TakeSeen(inPath, inStatus, outFolder, kMostTries);
}

OSErr Folders::TakeSeen(const std::string& inPath, const ObjectStatus& inStatus, Folder* outFolder,
                        int inTries) {
    if (!inStatus.IsFolder()) return dirNFErr;
    const Volume volume = mRegistry.Containing(inPath);
    SInt32 id = fsRtDirID;
    if (inPath != volume.root) {
        Folder parent;
        const auto parentPath = ParentOfPath(inPath);
        if (const OSErr error = FindByPath(parentPath, &parent)) return error;
        if (parent.path != parentPath)  // a link has taken the place of a folder on the way
            return FindByPath(PathInFolder(parent.path, LeafOfPath(inPath)), outFolder);
        id = IdOf(volume, inPath, inStatus.identity, parent.id);
    }
    *outFolder = {volume.number, id, inPath, inStatus.identity};
    // Was the table replaced on the way, then the parent's number belongs to the old one.
    const UInt64 edition = mEdition;
    NoticeFolders();
    if (mEdition != edition && inTries > 1) return FindRealPath(inPath, outFolder, inTries - 1);
    Remember(*outFolder);
    return noErr;
}

SInt32 Folders::IdOf(const Volume& inVolume, const std::string& inPath,
                     const ObjectIdentity& inIdentity, SInt32 inParent) {
    IdTable& table = TableOf(inVolume);
    IdRecord record{0, inParent, LeafOfPath(inPath), true, KeptIdentity(inVolume, inIdentity)};
    const auto known = table.FindFolder(record.identity, record.name);
    if (!known) return table.Allocate(record);
    record.id = known->id;
    const bool isThere = known->parent == record.parent && known->name == record.name;
    if (!isThere && !IsStillAt(inVolume, *known)) table.Correct(record);
    return record.id;
}

// A folder can be seen at two places at once (a bind mount): then the recorded one is as good.
bool Folders::IsStillAt(const Volume& inVolume, const IdRecord& inRecord) {
    const auto parent = mById.find({inVolume.number, inRecord.parent});
    if (parent == mById.end()) return false;
    ObjectStatus status;
    const auto path = PathInFolder(parent->second.path, inRecord.name);
    return StatusOfObject(path, &status) == noErr &&
           KeptIdentity(inVolume, status.identity).IsSameAs(inRecord.identity);
}

OSErr Folders::FindByIdentity(FSVolumeRefNum inVolume, const ObjectIdentity& inIdentity,
                              const std::string& inName, Folder* outFolder) {
    const Volume* volume = FindVolume(inVolume);
    if (!volume) return nsvErr;
    const auto known = TableOf(*volume).FindFolder(KeptIdentity(*volume, inIdentity), inName);
    return known ? FindById(inVolume, known->id, outFolder) : OSErr(dirNFErr);
}

}  // namespace carbon
