// Owns PBCatSearch: its time, its position, and the way through the index.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <map>
#include <optional>

#include "catalog_search/search_criteria.h"
#include "catalog_search/search_index.h"
#include "catalog_search/search_limit.h"
#include "catalog_search/search_position.h"
#include "file_manager/before_fork.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volumes/capabilities.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

constexpr size_t kMostFoldersKept = 250000;  // in memory, between two calls
constexpr SInt32 kLastRow = 0x7FFFFFFF;
constexpr UInt32 kEntriesPerLook = 1024;               // at the clock
constexpr auto kTurn = std::chrono::milliseconds(10);  // at the catalog while others wait

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

// One call, which may let others to the catalog on its way.
class CatalogSearch {
  public:
    CatalogSearch(const SearchCriteria& inCriteria, CSParam& ioBlock, Moment inDeadline)
        : mCriteria(inCriteria), mBlock(ioBlock), mDeadline(inDeadline) {
        mBlock.ioActMatchCount = 0;
    }

    // The result; nothing when others wait and it is to go on later.
    std::optional<OSErr> Run(Objects& ioObjects, const Volume& inVolume, SearchIndex& ioIndex);

  private:
    std::optional<OSErr> Prepare(SearchIndex& ioIndex);
    std::optional<OSErr> Refresh(SearchIndex& ioIndex);
    std::optional<OSErr> Walk(SearchIndex& ioIndex);
    void SearchFolderAt(SearchIndex& ioIndex, const SearchFolder& inFolder);
    void SearchRoot();
    void Try(const Folder& inFolder, const std::string& inName);
    void AddIfMatching(const Object& inObject);
    bool IsFull() const { return mBlock.ioActMatchCount >= mBlock.ioReqMatchCount; }
    bool IsTimeOver() const { return mLimit.IsDeadlineOver(); }
    void Keep() { SetPosition(mVolume->number, mPosition, &mBlock.ioCatPosition); }

    const SearchCriteria& mCriteria;
    CSParam& mBlock;
    const Moment mDeadline;
    const Moment mBegin = Clock::now();
    Objects* mObjects = nullptr;  // these two are of one turn
    const Volume* mVolume = nullptr;
    SearchLimit mLimit;
    SearchPosition mPosition;
    bool mIsPrepared = false;
    bool mIsStopped = false;  // in the middle of a folder
};

std::optional<OSErr> CatalogSearch::Run(Objects& ioObjects, const Volume& inVolume,
                                        SearchIndex& ioIndex) {
    mObjects = &ioObjects;
    mVolume = &inVolume;
    mLimit = {mDeadline, Clock::now() + kTurn};
    if (!mIsPrepared || ioIndex.AllFolders().empty()) {
        const auto result = Prepare(ioIndex);
        if (!result || *result == tmwdoErr) return result ? std::optional<OSErr>(noErr) : result;
        if (*result != noErr) return result;
        mIsPrepared = true;
    }
    const auto result = Walk(ioIndex);
    if (result) Keep();
    return result;
}

// Nothing when others wait, tmwdoErr when the time is over.
std::optional<OSErr> CatalogSearch::Refresh(SearchIndex& ioIndex) {
    const bool isContinued = mBlock.ioCatPosition.initialize != 0;
    const auto done =
        ioIndex.Refresh(*mVolume, OtherRoots(*mObjects, *mVolume), mLimit, mBegin, isContinued);
    if (done == Refreshed::kFailed) return ioErr;
    if (done == Refreshed::kDone) return noErr;
    if (!IsTimeOver()) return std::nullopt;
    Keep();
    return tmwdoErr;
}

// Brings the index up to date and finds where to go on.
std::optional<OSErr> CatalogSearch::Prepare(SearchIndex& ioIndex) {
    const SInt32 mark = mBlock.ioCatPosition.initialize;
    if (mark != 0 && mark != MarkOfVolume(mVolume->number)) return catChangedErr;
    if (mark != 0 && !mIsPrepared) mPosition = PositionIn(mBlock.ioCatPosition);
    const bool goesOn = mPosition.generation != 0;
    if (!goesOn || !ioIndex.IsFresh()) {
        const auto result = Refresh(ioIndex);
        if (result != OSErr(noErr)) return result;
    }
    const bool hasChanged = goesOn && mPosition.generation != ioIndex.Generation();
    mPosition.generation = ioIndex.Generation();
    if (!hasChanged) return noErr;
    Keep();  // whoever goes on all the same may miss matches or meet them twice
    mBlock.ioActMatchCount = 0;
    return catChangedErr;
}

std::optional<OSErr> CatalogSearch::Walk(SearchIndex& ioIndex) {
    const auto& folders = ioIndex.AllFolders();
    if (mPosition.row == 0 && !IsFull()) SearchRoot();
    auto folder = std::lower_bound(
        folders.begin(), folders.end(), mPosition.row,
        [](const SearchFolder& inFolder, SInt32 inRow) { return inFolder.row < inRow; });
    for (bool isFirst = true; folder != folders.end(); ++folder, isFirst = false) {
        if (folder->row != mPosition.row) mPosition.entry = 0;
        mPosition.row = SInt32(folder->row);
        if (IsFull() || (!isFirst && IsTimeOver())) return noErr;
        if (!isFirst && mLimit.IsOver()) return std::nullopt;
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
    if (mObjects->AllFolders().FindByPath(mVolume->root, &folder) != noErr) return;
    if (mObjects->FindFolder(folder, &root) == noErr) AddIfMatching(root);
}

// An entry that is gone meanwhile is no match.
void CatalogSearch::Try(const Folder& inFolder, const std::string& inName) {
    Object object;
    if (mObjects->FindInFolder(inFolder, inName, &object) == noErr) AddIfMatching(object);
}

void CatalogSearch::AddIfMatching(const Object& inObject) {
    LiveObject object(*mObjects, inObject);
    if (inObject.spec.vRefNum != mVolume->number || !mCriteria.Matches(object)) return;
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
        if (folder.id == 0 && mObjects->AllFolders().FindByPath(path, &folder) != noErr) return;
        Try(folder, std::string(entry.name));
        mIsStopped = IsFull() || IsTimeOver();
    }
}

// Damage sets the index aside; the search begins again with a new one.
std::optional<OSErr> TakeTurn(Objects& ioObjects, const Volume& inVolume, CatalogSearch& ioSearch,
                              bool* outIsDamaged) {
    SearchIndex* index = IndexOf(inVolume);
    *outIsDamaged = false;
    if (!index) return ioErr;
    const auto result = ioSearch.Run(ioObjects, inVolume, *index);
    *outIsDamaged = index->Store().File().IsDamaged();
    const bool isLarge = index->AllFolders().size() > kMostFoldersKept;
    const bool isOver = result && (isLarge || *result == ioErr);
    if (*outIsDamaged || isOver) CloseIndex(inVolume, *outIsDamaged);
    return result;
}

// The volume, as long as it is there and has an index.
OSErr FindVolume(Objects& ioObjects, const CSParam& inBlock, std::optional<Volume>* outVolume) {
    const Volume* found = VolumeByName(ioObjects, inBlock.ioNamePtr, inBlock.ioVRefNum);
    if (!found) return nsvErr;
    *outVolume = *found;
    const bool hasIndex = !found->tablePath.empty();
    return !hasIndex || Lacks(*found, kPlatformMountNoCatalogSearch) ? OSErr(paramErr)
                                                                     : OSErr(noErr);
}

OSErr SearchWith(const SearchCriteria& inCriteria, CSParam& ioBlock, Moment inDeadline,
                 bool* outIsDamaged) {
    CatalogSearch search(inCriteria, ioBlock, inDeadline);
    Catalog catalog;
    for (;; catalog.LetOthersIn()) {
        std::optional<Volume> volume;
        if (const OSErr error = FindVolume(*catalog, ioBlock, &volume)) return error;
        const auto result = TakeTurn(*catalog, *volume, search, outIsDamaged);
        if (*outIsDamaged) return ioErr;
        if (result) return *result;
    }
}

OSErr Search(CSParam& ioBlock) {
    constexpr int kMostTries = 2;
    const Moment deadline = DeadlineOf(ioBlock.ioSearchTime);
    SearchCriteria criteria;
    ioBlock.ioActMatchCount = 0;
    if (const OSErr error = criteria.Take(ioBlock)) return error;
    const CatPositionRec position = ioBlock.ioCatPosition;
    bool isDamaged = true;
    OSErr result = noErr;
    for (int i = 0; isDamaged && i < kMostTries; ++i) {
        ioBlock.ioCatPosition = position;
        result = SearchWith(criteria, ioBlock, deadline, &isDamaged);
    }
    return result;
}

}  // namespace

}  // namespace carbon

OSErr PBCatSearchSync(CSParamPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(paramBlock, carbon::Search);
}
