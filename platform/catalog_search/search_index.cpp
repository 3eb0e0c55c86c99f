// Owns keeping the index of a volume true.
#include "catalog_search/search_index.h"

#include <fcntl.h>

#include <algorithm>
#include <unordered_map>

namespace carbon {

namespace {

constexpr size_t kFoldersPerWrite = 1024;
constexpr size_t kFoldersPerLook = 256;  // at the clock
constexpr SInt64 kNanoseconds = 1000000000;

SInt64 Nanoseconds(const timespec& inTime) {
    return inTime.tv_sec * kNanoseconds + inTime.tv_nsec;
}

std::string IndexPath(const Volume& inVolume) {
    const auto& table = inVolume.tablePath;
    return table.empty() ? "" : table.substr(0, table.rfind('.')) + ".search.db";
}

}  // namespace

std::unique_ptr<SearchIndex> SearchIndex::Open(const Volume& inVolume) {
    auto store = SearchStore::Open(IndexPath(inVolume));
    if (!store) return nullptr;
    return std::unique_ptr<SearchIndex>(new SearchIndex(std::move(store)));
}

std::string SearchIndex::PathOf(const SearchFolder& inFolder) const {
    const SearchFolder* chain[1024];
    size_t depth = 0;
    for (const auto* each = &inFolder; each != &mFolders[0] && depth < std::size(chain);
         each = &mFolders[each->parent]) {
        chain[depth++] = each;
    }
    std::string path = mRoot;
    while (depth > 0) {
        if (path.back() != '/') path += '/';
        path += chain[--depth]->name;
    }
    return path;
}

bool SearchIndex::LoadIfStale() {
    const SInt64 version = mStore->DataVersion();
    if (version == mVersion && !mFolders.empty()) return true;
    mVersion = version;
    mGeneration = mStore->Generation();
    mNext = 0;
    mPending.clear();
    return mStore->Load(&mFolders);
}

bool SearchIndex::IsFresh() const {
    return !mFolders.empty() && Clock::now() - mCompared < mEffort;
}

bool SearchIndex::IsOthers(const SearchFolder& inFolder) const {
    return mOtherNames.count(inFolder.name) != 0 && mOthers.count(PathOf(inFolder)) != 0;
}

bool SearchIndex::HasSibling(const SearchFolder& inFolder) const {
    const auto next = size_t(&inFolder - mFolders.data()) + 1;
    return next < mFolders.size() && mFolders[next].parent == inFolder.parent;
}

// Most folders stand behind one another with their siblings: from the open parent the kernel has
// one name to follow, not a path.
int SearchIndex::LookAt(const SearchFolder& inFolder, struct stat* outFacts) {
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    const bool isOpen = mParent && mParentPlace == inFolder.parent;
    const bool isRoot = &inFolder == mFolders.data();
    if (!isOpen && !isRoot && HasSibling(inFolder)) {
        const auto path = PathOf(mFolders[inFolder.parent]);
        mParent = UniqueFd(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        mParentPlace = inFolder.parent;
    }
    if (!isRoot && mParent && mParentPlace == inFolder.parent) {
        return fstatat(mParent.Get(), inFolder.name.c_str(), outFacts, flags);
    }
    return fstatat(AT_FDCWD, PathOf(inFolder).c_str(), outFacts, flags);
}

// Another file system that is mounted on a folder is not this volume.
bool SearchIndex::IsChanged(SearchFolder& ioFolder) {
    struct stat facts;
    const bool isThere = LookAt(ioFolder, &facts) == 0 && S_ISDIR(facts.st_mode);
    ioFolder.isHidden = !isThere || facts.st_dev != mDevice;
    if (ioFolder.isHidden) return false;
    return !ioFolder.isSettled || ioFolder.inode != facts.st_ino ||
           ioFolder.modified != Nanoseconds(facts.st_mtim) ||
           ioFolder.changed != Nanoseconds(facts.st_ctim);
}

void SearchIndex::Compare(UInt32 inPlace) {
    SearchFolder& folder = mFolders[inPlace];
    folder.isHidden = folder.isGone || (inPlace > 0 && mFolders[folder.parent].isHidden);
    if (folder.isHidden) return;
    if (inPlace > 0 && IsOthers(folder)) {
        folder.isHidden = true;
    } else if (IsChanged(folder)) {
        mPending.push_back(inPlace);
    }
}

// False when the time is over.
bool SearchIndex::FindChanged(const SearchLimit& inLimit) {
    if (mNext == 0) mPending.clear();
    mParent = UniqueFd();
    for (UInt32 done = 1; mNext < mFolders.size(); ++done) {
        Compare(mNext++);
        if (done % kFoldersPerLook == 0 && inLimit.IsOver()) break;
    }
    mParent = UniqueFd();
    return mNext == mFolders.size();
}

Refreshed SearchIndex::Refresh(const Volume& inVolume, const std::set<std::string>& inOthers,
                               const SearchLimit& inLimit, Moment inBegin, bool inMayResume) {
    mRoot = inVolume.root;
    mDevice = inVolume.device;
    mOthers = inOthers;
    mOtherNames.clear();
    for (const auto& root : mOthers) mOtherNames.insert(LeafOfPath(root));
    // What was compared before the caller began may have changed before that, too.
    if (mBegun < inBegin && !inMayResume) mNext = 0;
    SInt64 version;
    do {
        if (!LoadIfStale()) return Refreshed::kFailed;
        version = mVersion;
        const bool isCompared = mNext == 0 && !mPending.empty() && mBegun >= inBegin;
        if (!isCompared && !CompareAll(inLimit, inBegin)) return Refreshed::kTimeOver;
        while (!mPending.empty() && version == mVersion) {
            if (!ReadSome(inLimit)) return Refreshed::kFailed;
            if (!mPending.empty() && inLimit.IsOver()) return Refreshed::kTimeOver;
        }
    } while (version != mVersion);  // another process wrote: its work is not done twice
    return Refreshed::kDone;
}

// False when the time is over.
bool SearchIndex::CompareAll(const SearchLimit& inLimit, Moment inBegin) {
    if (mNext == 0) mBegun = Clock::now();
    if (!FindChanged(inLimit)) return false;
    mNext = 0;
    mChildren.reset();
    mCompared = Clock::now();
    mEffort = mBegun >= inBegin ? mCompared - mBegun : Clock::duration::zero();
    return true;
}

// Reads folders from the end of the list, and writes them at one stroke.
bool SearchIndex::ReadSome(const SearchLimit& inLimit) {
    Transaction transaction(mStore->File());
    if (!transaction.IsOpen()) return false;
    if (mStore->DataVersion() != mVersion) {
        mVersion = -1;
        return true;
    }
    bool isSound = true;
    for (size_t i = 1; isSound && i <= kFoldersPerWrite && !mPending.empty(); ++i) {
        const UInt32 place = mPending.back();
        mPending.pop_back();
        SearchFolder& folder = mFolders[place];
        const bool isRoot = place == 0;
        folder.isHidden =
            !isRoot && (folder.isGone || mFolders[folder.parent].isHidden || IsOthers(folder));
        if (!folder.isHidden) isSound = ReadOne(place);
        if (i % kFoldersPerLook == 0 && inLimit.IsOver()) break;
    }
    isSound = isSound && CommitGeneration() && transaction.Commit();
    if (!isSound) mFolders.clear();  // memory and file differ now
    return isSound;
}

bool SearchIndex::CommitGeneration() {
    if (!mHasChanged) return true;
    mHasChanged = false;
    ++mGeneration;
    return mStore->SetGeneration(mGeneration);
}

bool SearchIndex::ReadOne(UInt32 inPlace) {
    FolderContents contents;
    const bool isThere = ReadFolderContents(PathOf(mFolders[inPlace]), &contents);
    if (isThere && contents.device == mDevice) return Store(inPlace, contents);
    mFolders[inPlace].isHidden = true;
    return true;
}

bool SearchIndex::Store(UInt32 inPlace, const FolderContents& inContents) {
    SearchFolder& folder = mFolders[inPlace];
    const UInt64 hash = HashOfEntries(inContents.entries);
    const bool isSame = folder.inode != 0 && folder.hash == hash;
    folder.inode = inContents.inode;
    folder.modified = inContents.modified;
    folder.changed = inContents.changed;
    folder.isSettled = inContents.isSettled;
    folder.hash = hash;
    folder.filter = inContents.filter;
    if (!mStore->Update(folder)) return false;
    if (isSame) return true;
    mHasChanged = true;
    return mStore->SetEntries(folder.row, inContents.entries) &&
           UpdateChildren(inPlace, inContents.folders);
}

SearchIndex::Places SearchIndex::ChildrenOf(UInt32 inPlace) {
    if (!mChildren) {
        mChildren.emplace();
        for (UInt32 i = 1; i < mFolders.size(); ++i) mChildren->emplace_back(mFolders[i].parent, i);
        std::sort(mChildren->begin(), mChildren->end());
    }
    Places children;
    auto each = std::lower_bound(mChildren->begin(), mChildren->end(), std::pair(inPlace, 0u));
    for (; each != mChildren->end() && each->first == inPlace; ++each) {
        if (!mFolders[each->second].isGone) children.push_back(each->second);
    }
    return children;
}

// Folders by name that are new are read next; those that are gone go with all below them.
bool SearchIndex::UpdateChildren(UInt32 inPlace, const std::vector<std::string>& inNames) {
    std::unordered_map<std::string, UInt32> known;
    for (const UInt32 child : ChildrenOf(inPlace)) known[mFolders[child].name] = child;
    for (const auto& name : inNames) {
        if (known.erase(name) != 0) continue;
        SearchFolder folder;
        folder.name = name;
        folder.parent = inPlace;
        if (!mStore->Add(mFolders[inPlace].row, &folder)) return false;
        mPending.push_back(UInt32(mFolders.size()));
        mFolders.push_back(std::move(folder));
    }
    return std::all_of(known.begin(), known.end(),
                       [&](const auto& inEach) { return RemoveTree(inEach.second); });
}

bool SearchIndex::RemoveTree(UInt32 inPlace) {
    SearchFolder& folder = mFolders[inPlace];
    folder.isGone = folder.isHidden = true;
    const auto children = ChildrenOf(inPlace);
    return mStore->Remove(folder.row) &&
           std::all_of(children.begin(), children.end(),
                       [&](UInt32 inChild) { return RemoveTree(inChild); });
}

}  // namespace carbon
