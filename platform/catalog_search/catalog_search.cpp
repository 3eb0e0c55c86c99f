// Owns PBCatSearch: its time, its position, and the way through the index.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <map>

#include "catalog_search/search_criteria.h"
#include "catalog_search/search_index.h"
#include "catalog_search/search_position.h"
#include "file_manager/before_fork.h"
#include "file_manager/capabilities.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volume_selection.h"

namespace carbon {

namespace {

constexpr size_t kMostFoldersKept = 250000;  // in memory, between two calls
constexpr SInt32 kLastRow = 0x7FFFFFFF;
constexpr UInt32 kEntriesPerLook = 1024;  // at the clock

using Indexes = std::map<std::string, std::unique_ptr<SearchIndex>>;

// Used with the catalog held.
Indexes& OpenIndexes() {
    static auto& sIndexes = *new Indexes;
    static const bool sIsRegistered = [] {
        CloseBeforeFork([] { sIndexes.clear(); });
        return true;
    }();
    static_cast<void>(sIsRegistered);
    return sIndexes;
}

SearchIndex* IndexOf(const Volume& inVolume) {
    auto& index = OpenIndexes()[inVolume.tablePath];
    if (index && index->Store().File().IsReplaced()) index.reset();
    if (!index) index = SearchIndex::Open(inVolume);
    return index.get();
}

void CloseIndex(const Volume& inVolume, bool inIsDamaged) {
    const auto found = OpenIndexes().find(inVolume.tablePath);
    if (found == OpenIndexes().end()) return;
    if (inIsDamaged && found->second) found->second->Store().File().SetAside();
    OpenIndexes().erase(found);
}

Moment DeadlineOf(SInt32 inTime) {
    if (inTime == 0) return kNever;
    const auto time = inTime > 0 ? Clock::duration(std::chrono::milliseconds(inTime))
                                 : Clock::duration(std::chrono::microseconds(-SInt64(inTime)));
    return Clock::now() + time;
}

std::set<std::string> OtherRoots(Objects& ioObjects, const Volume& inVolume) {
    std::set<std::string> roots;
    for (const auto& volume : ioObjects.AllFolders().Registry().Volumes()) {
        if (volume.number != inVolume.number) roots.insert(volume.root);
    }
    return roots;
}

// One call.
class CatalogSearch {
  public:
    CatalogSearch(Objects& ioObjects, const Volume& inVolume, const SearchCriteria& inCriteria,
                  CSParam& ioBlock, Moment inDeadline)
        : mObjects(ioObjects),
          mVolume(inVolume),
          mCriteria(inCriteria),
          mBlock(ioBlock),
          mDeadline(inDeadline) {}

    OSErr Run(SearchIndex& ioIndex);

  private:
    OSErr Prepare(SearchIndex& ioIndex);
    OSErr Walk(SearchIndex& ioIndex);
    void SearchFolderAt(SearchIndex& ioIndex, const SearchFolder& inFolder);
    void SearchRoot();
    void Try(const Folder& inFolder, const std::string& inName);
    void AddIfMatching(const Object& inObject);
    bool IsFull() const { return mBlock.ioActMatchCount >= mBlock.ioReqMatchCount; }
    bool IsTimeOver() const { return mDeadline != kNever && Clock::now() >= mDeadline; }
    void Keep() { SetPosition(mVolume.number, mPosition, &mBlock.ioCatPosition); }

    Objects& mObjects;
    const Volume& mVolume;
    const SearchCriteria& mCriteria;
    CSParam& mBlock;
    const Moment mDeadline;
    SearchPosition mPosition;
    bool mIsStopped = false;  // in the middle of a folder
};

OSErr CatalogSearch::Run(SearchIndex& ioIndex) {
    mBlock.ioActMatchCount = 0;
    const OSErr error = Prepare(ioIndex);
    if (error == tmwdoErr) return noErr;  // the time was over before the index was ready
    if (error != noErr) return error;
    const OSErr result = Walk(ioIndex);
    Keep();
    return result;
}

// Brings the index up to date and finds where to go on.
OSErr CatalogSearch::Prepare(SearchIndex& ioIndex) {
    const SInt32 mark = mBlock.ioCatPosition.initialize;
    if (mark != 0 && mark != MarkOfVolume(mVolume.number)) return catChangedErr;
    if (mark != 0) mPosition = PositionIn(mBlock.ioCatPosition);
    const bool goesOn = mPosition.generation != 0;
    if (!goesOn || !ioIndex.IsFresh()) {
        const auto done = ioIndex.Refresh(mVolume, OtherRoots(mObjects, mVolume), mDeadline);
        if (done == Refreshed::kFailed) return ioErr;
        if (done == Refreshed::kTimeOver) {
            Keep();
            return tmwdoErr;
        }
    }
    const bool hasChanged = goesOn && mPosition.generation != ioIndex.Generation();
    mPosition.generation = ioIndex.Generation();
    if (!hasChanged) return noErr;
    Keep();  // whoever goes on all the same may miss matches or meet them twice
    return catChangedErr;
}

OSErr CatalogSearch::Walk(SearchIndex& ioIndex) {
    const auto& folders = ioIndex.AllFolders();
    if (mPosition.row == 0 && !IsFull()) SearchRoot();
    auto folder = std::lower_bound(
        folders.begin(), folders.end(), mPosition.row,
        [](const SearchFolder& inFolder, SInt32 inRow) { return inFolder.row < inRow; });
    for (bool isFirst = true; folder != folders.end(); ++folder, isFirst = false) {
        if (folder->row != mPosition.row) mPosition.entry = 0;
        mPosition.row = SInt32(folder->row);
        if (IsFull() || (!isFirst && IsTimeOver())) return noErr;
        if (folder->isHidden || !mCriteria.MayBeIn(folder->filter)) continue;
        SearchFolderAt(ioIndex, *folder);
        if (mIsStopped) return noErr;
    }
    mPosition.row = kLastRow;
    return eofErr;
}

void CatalogSearch::SearchRoot() {
    Folder folder;
    Object root;
    mPosition.row = 1;
    if (mObjects.AllFolders().FindByPath(mVolume.root, &folder) != noErr) return;
    if (mObjects.FindFolder(folder, &root) == noErr) AddIfMatching(root);
}

// An entry that is gone meanwhile is no match.
void CatalogSearch::Try(const Folder& inFolder, const std::string& inName) {
    Object object;
    if (mObjects.FindInFolder(inFolder, inName, &object) == noErr) AddIfMatching(object);
}

void CatalogSearch::AddIfMatching(const Object& inObject) {
    LiveObject object(mObjects, inObject);
    if (inObject.spec.vRefNum != mVolume.number || !mCriteria.Matches(object)) return;
    mBlock.ioMatchPtr[mBlock.ioActMatchCount++] = inObject.spec;
}

void CatalogSearch::SearchFolderAt(SearchIndex& ioIndex, const SearchFolder& inFolder) {
    SearchEntries entries(ioIndex.EntriesOf(inFolder));
    SearchEntry entry;
    Folder folder;
    UInt32 done = 0;
    while (entries.Next(&entry)) {
        if (done++ < mPosition.entry) continue;
        if (done % kEntriesPerLook == 0 && IsTimeOver()) mIsStopped = true;
        if (mIsStopped) return;
        mPosition.entry = done;
        if (mCriteria.Ask(entry) == Answer::kNo) continue;
        const auto path = folder.id == 0 ? ioIndex.PathOf(inFolder) : std::string();
        if (folder.id == 0 && mObjects.AllFolders().FindByPath(path, &folder) != noErr) return;
        Try(folder, std::string(entry.name));
        mIsStopped = IsFull() || IsTimeOver();
    }
}

OSErr SearchVolume(Objects& ioObjects, const Volume& inVolume, const SearchCriteria& inCriteria,
                   CSParam& ioBlock, Moment inDeadline) {
    constexpr int kMostTries = 2;
    const CatPositionRec position = ioBlock.ioCatPosition;
    for (int i = 0; i < kMostTries; ++i) {
        SearchIndex* index = IndexOf(inVolume);
        if (!index) return ioErr;
        CatalogSearch search(ioObjects, inVolume, inCriteria, ioBlock, inDeadline);
        const OSErr result = search.Run(*index);
        const bool isDamaged = index->Store().File().IsDamaged();
        const bool isLarge = index->AllFolders().size() > kMostFoldersKept;
        if (isDamaged || isLarge || result == ioErr) CloseIndex(inVolume, isDamaged);
        if (!isDamaged) return result;
        ioBlock.ioCatPosition = position;
    }
    return ioErr;
}

OSErr Search(CSParam& ioBlock) {
    const Moment deadline = DeadlineOf(ioBlock.ioSearchTime);
    SearchCriteria criteria;
    ioBlock.ioActMatchCount = 0;
    if (const OSErr error = criteria.Take(ioBlock)) return error;
    const Catalog catalog;
    const Volume* found = VolumeByName(*catalog, ioBlock.ioNamePtr, ioBlock.ioVRefNum);
    if (!found) return nsvErr;
    const Volume volume = *found;
    const bool hasIndex = !volume.tablePath.empty();
    if (!hasIndex || Lacks(volume, kPlatformMountNoCatalogSearch)) return paramErr;
    return SearchVolume(*catalog, volume, criteria, ioBlock, deadline);
}

}  // namespace

}  // namespace carbon

OSErr PBCatSearchSync(CSParamPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(paramBlock, carbon::Search);
}
