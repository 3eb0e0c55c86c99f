// Owns the ways between specs, references and paths, and the memory of those gone before.
#include "file_manager/catalog/objects.h"

#include <Carbon/MacErrors.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <thread>

#include "file_manager/before_fork.h"
#include "file_manager/catalog/exchanged_files.h"
#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/reference.h"
#include "file_manager/listings/folder_listing.h"
#include "posix/across_forks.h"

namespace carbon {

namespace {

constexpr size_t kMostRemembered = 16384;
constexpr size_t kMostSuccessors = 256;

FSSpec SpecOf(FSVolumeRefNum inVolume, SInt32 inParent, std::string_view inName) {
    FSSpec spec{};
    spec.vRefNum = inVolume;
    spec.parID = inParent;
    SetPascal(inName, kLongestSpecName, spec.name);
    return spec;
}

std::string KeyOf(const FSSpec& inSpec) {
    const auto* bytes = reinterpret_cast<const char*>(&inSpec);
    return std::string(bytes, offsetof(FSSpec, name) + 1 + inSpec.name[0]);
}

std::string KeyOf(const FSRef& inRef) {
    return std::string(reinterpret_cast<const char*>(&inRef), sizeof inRef);
}

// A spelling that is not the entry's own finds it only until there is an entry that has it.
bool IsOwnSpelling(const FSSpec& inSpec, const Object& inObject) {
    return TextOfPascal(inSpec.name) == TextOfPascal(inObject.spec.name) &&
           (IdInName(TextOfPascal(inSpec.name)) ||
            DiskNameOf(TextOfPascal(inSpec.name)) == inObject.diskName);
}

// What a path's end says about its last part.
struct PathEnd {
    std::string folder;
    std::string name;  // empty: the folder itself is meant
};

PathEnd SplitPath(const std::string& inPath) {
    std::error_code error;
    const auto path = std::filesystem::path(inPath).is_absolute()
                          ? inPath
                          : std::filesystem::current_path(error).string() + '/' + inPath;
    const auto name = LeafOfPath(path);
    if (name.empty() || name == "." || name == "..") return {path, ""};
    return {ParentOfPath(path), name};
}

}  // namespace

bool Objects::Recall(const std::string& inKey, Object* outObject) {
    mFolders.Registry().RefreshFolders();
    if (mEdition != mFolders.Registry().Edition()) mKnown.clear();
    mEdition = mFolders.Registry().Edition();
    const auto known = mKnown.find(inKey);
    if (known == mKnown.end()) return false;
    ObjectStatus status;
    if (StatusOfObject(known->second.path, &status) == noErr &&
        status.identity.IsSameAs(known->second.status.identity)) {
        *outObject = known->second;
        outObject->status = status;
        return true;
    }
    mKnown.erase(known);
    return false;
}

void Objects::Remember(const std::string& inKey, const Object& inObject) {
    if (mKnown.size() >= kMostRemembered) mKnown.clear();
    mKnown[inKey] = inObject;
}

OSErr Objects::FindBySpec(const FSSpec& inSpec, Object* outObject) {
    if (inSpec.name[0] > kLongestSpecName) return bdNamErr;
    const auto key = KeyOf(inSpec);
    if (Recall(key, outObject)) return noErr;
    const OSErr error = FindEntryBySpec(inSpec, outObject);
    if (error == noErr && IsOwnSpelling(inSpec, *outObject)) Remember(key, *outObject);
    return error;
}

OSErr Objects::FindEntryBySpec(const FSSpec& inSpec, Object* outObject) {
    const auto name = TextOfPascal(inSpec.name);
    if (inSpec.parID == fsRtParID) {
        const Volume* volume = mFolders.FindVolume(inSpec.vRefNum);
        if (!volume) return nsvErr;
        return Folded(volume->name) == Folded(name) ? FindRoot(*volume, outObject) : OSErr(fnfErr);
    }
    Folder folder;
    if (const OSErr error = mFolders.FindById(inSpec.vRefNum, inSpec.parID, &folder)) return error;
    return name.empty() ? FindFolder(folder, outObject) : FindByName(folder, name, outObject);
}

OSErr Objects::FindByName(const Folder& inFolder, std::string_view inName, Object* outObject) {
    Entry entry;
    const OSErr error = FindEntry(mFolders, inFolder, inName, &entry);
    if (error == noErr) return TakeEntry(inFolder, entry, outObject);
    if (error != fnfErr) return error;
    *outObject = {SpecOf(inFolder.volume, inFolder.id, inName),
                  PathInFolder(inFolder.path, entry.diskName),
                  entry.diskName,
                  {}};
    return fnfErr;
}

OSErr Objects::TakeEntry(const Folder& inFolder, const Entry& inEntry, Object* outObject) {
    outObject->path = PathInFolder(inFolder.path, inEntry.diskName);
    const Volume* volume =
        inEntry.status.IsFolder() ? mFolders.Registry().FindByRoot(outObject->path) : nullptr;
    if (volume) return FindRoot(*volume, outObject);
    outObject->spec =
        SpecOf(inFolder.volume, inFolder.id, SpecNameOfEntry(mFolders, inFolder, inEntry));
    outObject->diskName = inEntry.diskName;
    outObject->status = inEntry.status;
    return noErr;
}

OSErr Objects::FindRoot(const Volume& inVolume, Object* outObject) {
    outObject->spec = SpecOf(inVolume.number, fsRtParID, inVolume.name);
    outObject->path = inVolume.root;
    outObject->diskName = DiskNameOf(inVolume.name);
    const OSErr error = StatusOfObject(inVolume.root, &outObject->status);
    return error == fnfErr ? OSErr(nsvErr) : error;
}

OSErr Objects::FindFolder(const Folder& inFolder, Object* outObject) {
    if (inFolder.id == fsRtDirID) {
        const Volume* volume = mFolders.FindVolume(inFolder.volume);
        return volume ? FindRoot(*volume, outObject) : OSErr(nsvErr);
    }
    return FindByPath(inFolder.path, outObject);
}

OSErr Objects::FindInFolder(const Folder& inFolder, const std::string& inDiskName,
                            Object* outObject) {
    Entry entry{inDiskName, {}};
    const auto path = PathInFolder(inFolder.path, inDiskName);
    const OSErr error = StatusOfEntry(inFolder.path, inDiskName, &entry.status);
    if (error == noErr) return TakeEntry(inFolder, entry, outObject);
    if (error != fnfErr) return error;
    const auto name = SpecNameOf(inDiskName);
    if (!name) return bdNamErr;
    *outObject = {SpecOf(inFolder.volume, inFolder.id, *name), path, inDiskName, {}};
    return fnfErr;
}

OSErr Objects::FindByPath(const std::string& inPath, Object* outObject) {
    if (inPath.empty()) return bdNamErr;
    const PathEnd end = SplitPath(inPath);
    Folder folder;
    if (const OSErr error = mFolders.FindByPath(end.folder, &folder)) return error;
    return end.name.empty() ? FindFolder(folder, outObject)
                            : FindInFolder(folder, end.name, outObject);
}

OSErr Objects::FindByRef(const FSRef& inRef, Object* outObject) {
    if (mSuccessors.empty()) return FindPresentByRef(inRef, outObject);
    return FindPresentByRef(RefToSuccessor(inRef), outObject);
}

FSRef Objects::RefToSuccessor(const FSRef& inRef) const {
    auto reference = ReferenceFromRef(inRef);
    if (!reference) return inRef;
    for (const auto& [old, now] : mSuccessors) {
        if (!reference->identity.IsSameAs(old)) continue;
        reference->identity = now;
        return RefFromReference(*reference);
    }
    return inRef;
}

// Without the moment of birth the old one might be mistaken for another that gets its inode later.
void Objects::NoteSuccessor(const ObjectIdentity& inOld, const ObjectIdentity& inNew) {
    if (inOld.birth == 0 || inNew.birth == 0) return;
    for (auto& [old, now] : mSuccessors) {
        if (now.IsSameAs(inOld)) now = inNew;
    }
    if (mSuccessors.size() >= kMostSuccessors) mSuccessors.erase(mSuccessors.begin());
    mSuccessors.emplace_back(inOld, inNew);
}

OSErr Objects::FindPresentByRef(const FSRef& inRef, Object* outObject) {
    const auto key = KeyOf(inRef);
    if (Recall(key, outObject)) return noErr;
    OSErr error = FindEntryByRef(inRef, outObject);
    if (error == fnfErr || error == dirNFErr) error = FindMoved(inRef, outObject);
    if (error == noErr) Remember(key, *outObject);
    return error;
}

// Where the reference says, under any name.
OSErr Objects::FindEntryByRef(const FSRef& inRef, Object* outObject) {
    const auto reference = ReferenceFromRef(inRef);
    if (!reference) return errFSBadFSRef;
    const auto isIt = [&] { return outObject->status.identity.IsSameAs(reference->identity); };
    if (reference->parent == fsRtParID) {
        const Volume* volume = mFolders.FindVolume(reference->volume);
        if (!volume) return nsvErr;
        const OSErr error = FindRoot(*volume, outObject);
        return error == noErr && !isIt() ? OSErr(fnfErr) : error;
    }
    Folder folder;
    const OSErr error = mFolders.FindById(reference->volume, reference->parent, &folder);
    if (error) return error;
    const auto& name = reference->name;
    if (!name.empty() && FindInFolder(folder, name, outObject) == noErr && isIt()) return noErr;
    const auto search = [&](bool inByHash) {
        return NameOfInode(folder.path, reference->identity.inode, [&](const auto& inPath) {
            if (inByHash && HashOfName(LeafOfPath(inPath)) != reference->nameHash) return false;
            return StatusOfObject(inPath, &outObject->status) == noErr && isIt();
        });
    };
    auto now = reference->nameHash != 0 ? search(true) : std::nullopt;
    if (!now) now = search(false);
    return now ? FindInFolder(folder, *now, outObject) : OSErr(fnfErr);
}

OSErr Objects::FindMoved(const FSRef& inRef, Object* outObject) {
    const auto reference = ReferenceFromRef(inRef);
    const Volume* found = mFolders.FindVolume(reference->volume);
    if (!found) return nsvErr;
    const Volume volume = *found;
    const auto& identity = reference->identity;
    Folder folder;
    if (reference->isFolder &&
        mFolders.FindByIdentity(volume.number, identity, reference->name, &folder) == noErr) {
        return FindFolder(folder, outObject);
    }
    for (const auto& place : mFolders.LikelyFolders(volume)) {
        const auto name = NameOfInode(place.path, identity.inode, [&](const auto& inPath) {
            return StatusOfObject(inPath, &outObject->status) == noErr &&
                   outObject->status.identity.IsSameAs(identity);
        });
        if (name) return FindInFolder(place, *name, outObject);
    }
    return fnfErr;
}

FSRef Objects::RefTo(const Object& inObject) const {
    Reference reference;
    reference.volume = inObject.spec.vRefNum;
    reference.parent = inObject.spec.parID;
    reference.isFolder = inObject.status.IsFolder();
    reference.identity = inObject.status.identity;
    reference.name = inObject.diskName;
    return RefFromReference(reference);
}

FSRef Objects::RefToParent(const Object& inObject) {
    Folder folder;
    Object parent;
    const bool isFound =
        inObject.spec.parID != fsRtParID &&
        mFolders.FindById(inObject.spec.vRefNum, inObject.spec.parID, &folder) == noErr &&
        FindFolder(folder, &parent) == noErr;
    return isFound ? RefTo(parent) : FSRef{};
}

namespace {

constexpr auto kPause = std::chrono::microseconds(50);
constexpr int kMostPauses = 200;

std::mutex sMutex;
std::atomic<int> sWaiting{0};   // threads at the lock
std::atomic<UInt32> sTurns{0};  // how often it was taken; changes under it

// The lock, with a count of those who wait for it.
struct Turns {
    void lock() {
        if (try_lock()) return;
        ++sWaiting;
        sMutex.lock();
        --sWaiting;
        CountTurn();
    }
    bool try_lock() {
        const bool isTaken = sMutex.try_lock();
        if (isTaken) CountTurn();
        return isTaken;
    }
    void unlock() { sMutex.unlock(); }

    static void CountTurn() {
        sTurns.store(sTurns.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    }
};
Turns sLock;

std::atomic<Objects*> sObjects = nullptr;  // once somebody has asked for them

Objects& SharedObjects() {
    static Objects& sMade = *(sObjects = new Objects);  // outlives every static that may still ask
    return sMade;
}

// SQLite's locks belong to a process: a handle that a child inherits would believe in locks which
// the child does not hold. So no handle is open while a process forks, and both go on with new
// ones.
void BeforeFork() {
    if (sObjects) sObjects.load()->AllFolders().CloseTables();
    CloseForFork();
}

void InForkedChild() {
    if (sObjects) sObjects.load()->AllFolders().Registry().ForgetWatch();
    sWaiting = 0;  // those threads are the parent's
}

const HeldAcrossForks sHeld(sLock, {BeforeFork, InForkedChild});

}  // namespace

Catalog::Catalog() {
    sLock.lock();
    FinishExchanges(SharedObjects());
}

Catalog::~Catalog() {
    sLock.unlock();
}

bool Catalog::IsAwaited() {
    return sWaiting > 0;
}

// A mutex that is given up and taken at once is mostly got by who gave it up.
void Catalog::LetOthersIn() {
    const UInt32 turn = sTurns;
    sLock.unlock();
    for (int i = 0; i < kMostPauses && IsAwaited() && turn == sTurns; ++i)
        std::this_thread::sleep_for(kPause);
    sLock.lock();
}

Objects& Catalog::operator*() const {
    return SharedObjects();
}

}  // namespace carbon
