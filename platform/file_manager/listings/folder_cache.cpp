// Owns the listings in memory: when they are read, how notices keep them true, when they go.
#include "file_manager/listings/folder_cache.h"

#include <Carbon/MacErrors.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>

#include "posix/fork_count.h"

namespace carbon {

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kFewestListings = 128;
constexpr size_t kMostListings = 4096;
constexpr size_t kShareOfWatches = 8;  // of what the user may watch, for all programs together
constexpr size_t kLargestFootprint = 64 * 1024 * 1024;
constexpr size_t kSlack = 64 * 1024;  // what a listing may grow by besides its own size
constexpr size_t kBuffer = 16 * 1024;
constexpr size_t kLongestNotice = sizeof(inotify_event) + 256;
// Reading anew is cheaper than taking in so many notices.
constexpr UInt32 kMostNotices = 256;
// Without notices a listing counts for as long as reading it took, times this.
constexpr int kTrustFactor = 20;

size_t MostListings() {
    static const size_t sMost = [] {
        size_t watches = 0;
        std::ifstream("/proc/sys/fs/inotify/max_user_watches") >> watches;
        return std::clamp(watches / kShareOfWatches, kFewestListings, kMostListings);
    }();
    return sMost;
}

constexpr UInt32 kWatched = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF |
                            IN_ONLYDIR | IN_DONT_FOLLOW;

bool AreSame(const timespec& inOne, const timespec& inOther) {
    return inOne.tv_sec == inOther.tv_sec && inOne.tv_nsec == inOther.tv_nsec;
}

}  // namespace

struct FolderCache::Listing {
    SortedFolder folder;
    ObjectStatus status;  // when it was read
    int watch = -1;       // none
    int key = -1;         // of this in the map of watches, also when its watch has ended
    UInt32 notices = 0;   // taken in at one time
    UInt64 turn = 0;      // which was that
    bool isStale = true;
    Clock::time_point readAt;
    Clock::duration cost{};
    std::list<const std::string*>::iterator used;
    size_t footprint = 0;

    // Whether it is still cheaper to take in a notice than to read anew.
    bool TakesOneMore(UInt64 inTurn) {
        if (turn != inTurn) notices = 0;
        turn = inTurn;
        return ++notices <= kMostNotices;
    }
    bool IsTrueTo(const ObjectStatus& inNow) const {
        return AreSame(status.modified, inNow.modified) && AreSame(status.changed, inNow.changed) &&
               Clock::now() - readAt < cost * kTrustFactor;
    }
};

FolderCache::FolderCache(const VolumeRegistry& inRegistry) : mRegistry(inRegistry) {}
FolderCache::~FolderCache() = default;

// A child that shared its parent's queue would take the parent's notices away.
void FolderCache::Start() {
    if (mIsStarted && mForks == ForkCount()) return;
    DropAll();
    mIsStarted = true;
    mForks = ForkCount();
    mNotices.Reset(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
}

void FolderCache::Drop(const std::string& inPath) {
    const auto found = mByPath.find(inPath);
    if (found == mByPath.end()) return;
    const Listing& listing = *found->second;
    const auto [first, last] = mByWatch.equal_range(listing.key);
    const auto item =
        std::find_if(first, last, [&](const auto& inItem) { return inItem.second == &listing; });
    if (item != last) mByWatch.erase(item);
    const int watch = listing.watch;
    if (watch >= 0 && !mByWatch.count(watch)) inotify_rm_watch(mNotices.Get(), watch);
    mFootprint -= listing.footprint;
    mUsed.erase(listing.used);
    mByPath.erase(found);
}

void FolderCache::DropAll() {
    mByWatch.clear();
    mByPath.clear();
    mUsed.clear();
    mFootprint = 0;
    mNotices.Reset();
}

void FolderCache::Forget(const Folder& inFolder) {
    Drop(inFolder.path);
}

void FolderCache::TakeNotice(int inWatch, UInt32 inWhat, const char* inName) {
    const auto [first, last] = mByWatch.equal_range(inWatch);
    for (auto item = first; item != last; ++item) {
        Listing& listing = *item->second;
        if (inWhat & (IN_IGNORED | IN_DELETE_SELF | IN_UNMOUNT)) {
            listing.watch = -1;
            listing.isStale = true;
        } else if (!listing.TakesOneMore(mTurn)) {
            listing.isStale = true;
        } else if (inWhat & (IN_CREATE | IN_MOVED_TO)) {
            listing.folder.Add(inName, inWhat & IN_ISDIR);
        } else {
            listing.folder.Remove(inName, inWhat & IN_ISDIR);
        }
        // The names of what is gone keep their room until then.
        if (listing.folder.Footprint() > 2 * listing.footprint + kSlack) listing.isStale = true;
    }
    if (inWhat & IN_IGNORED) mByWatch.erase(inWatch);
}

void FolderCache::TakeNotices() {
    alignas(inotify_event) std::array<char, kBuffer> buffer;
    for (++mTurn;;) {
        const auto length = read(mNotices.Get(), buffer.data(), buffer.size());
        if (length <= 0) return;
        for (ssize_t at = 0; at < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            if (event->mask & IN_Q_OVERFLOW) {
                mIsStarted = false;
                return Start();
            }
            TakeNotice(event->wd, event->mask, event->len ? event->name : "");
            at += ssize_t(sizeof *event + event->len);
        }
        if (size_t(length) + kLongestNotice <= kBuffer) return;  // there were no more
    }
}

void FolderCache::MakeRoom() {
    while (mByPath.size() > 1 &&
           (mByPath.size() > MostListings() || mFootprint > kLargestFootprint)) {
        Drop(std::string(*mUsed.back()));
    }
}

// The watch comes first, so that what changes during the reading is told afterwards.
OSErr FolderCache::Read(const Folder& inFolder, Listing** outListing) {
    Drop(inFolder.path);
    auto listing = std::make_unique<Listing>();
    if (mNotices)
        listing->watch = inotify_add_watch(mNotices.Get(), inFolder.path.c_str(), kWatched);
    const auto start = Clock::now();
    OSErr error = StatusOfObject(inFolder.path, &listing->status);
    if (error == noErr && !listing->status.identity.IsSameAs(inFolder.identity)) error = dirNFErr;
    if (error == noErr) error = listing->folder.Read(inFolder.path);
    if (error != noErr) {
        if (listing->watch >= 0 && !mByWatch.count(listing->watch))
            inotify_rm_watch(mNotices.Get(), listing->watch);
        return error == fnfErr ? OSErr(dirNFErr) : error;
    }
    listing->readAt = Clock::now();
    listing->cost = listing->readAt - start;
    listing->isStale = false;
    listing->footprint = listing->folder.Footprint();
    mFootprint += listing->footprint;
    *outListing = listing.get();
    listing->key = listing->watch;
    if (listing->watch >= 0) mByWatch.emplace(listing->watch, listing.get());
    const auto place = mByPath.emplace(inFolder.path, std::move(listing)).first;
    place->second->used = mUsed.insert(mUsed.begin(), &place->first);
    return noErr;
}

// Other machines change it without a notice here.
bool FolderCache::IsFar(const Folder& inFolder) const {
    const Volume* volume = mRegistry.Find(inFolder.volume);
    return volume && volume->isOnNetwork;
}

// A listing that notices keep true.
bool FolderCache::IsTold(const Folder& inFolder) const {
    return mByPath.at(inFolder.path)->watch >= 0 && !IsFar(inFolder);
}

OSErr FolderCache::Find(const Folder& inFolder, SortedFolder** outFolder) {
    Start();
    TakeNotices();
    const auto found = mByPath.find(inFolder.path);
    Listing* listing = found == mByPath.end() ? nullptr : found->second.get();
    bool isTrue =
        listing && !listing->isStale && listing->status.identity.IsSameAs(inFolder.identity);
    if (isTrue && (listing->watch < 0 || IsFar(inFolder))) {
        ObjectStatus now;
        isTrue = StatusOfObject(inFolder.path, &now) == noErr && listing->IsTrueTo(now);
    }
    if (!isTrue) {
        if (const OSErr error = Read(inFolder, &listing)) return error;
    }
    mUsed.splice(mUsed.begin(), mUsed, listing->used);
    *outFolder = &listing->folder;
    if (!isTrue) MakeRoom();
    return noErr;
}

bool FolderCache::MayHaveCompanions(const Folder& inFolder) {
    SortedFolder* folder = nullptr;
    if (Find(inFolder, &folder) != noErr) return true;
    return !IsTold(inFolder) || folder->HasCompanions();
}

OSErr FolderCache::GetEntries(const Folder& inFolder, UInt32 inIndex, UInt32 inMost,
                              std::vector<ListedEntry>* outEntries, bool* outAreThere) {
    SortedFolder* folder = nullptr;
    if (const OSErr error = Find(inFolder, &folder)) return error;
    const UInt32 first = std::min(inIndex - 1, folder->Count());
    outEntries->resize(std::min(inMost, folder->Count() - first));
    for (UInt32 i = 0; i < outEntries->size(); ++i) folder->Get(first + i, &(*outEntries)[i]);
    *outAreThere = IsTold(inFolder);
    return noErr;
}

OSErr FolderCache::GetEntry(const Folder& inFolder, UInt32 inIndex, ListedEntry* outEntry) {
    SortedFolder* folder = nullptr;
    if (const OSErr error = Find(inFolder, &folder)) return error;
    return inIndex > 0 && folder->Get(inIndex - 1, outEntry) ? OSErr(noErr) : OSErr(fnfErr);
}

OSErr FolderCache::GetFile(const Folder& inFolder, UInt32 inIndex, ListedEntry* outEntry) {
    SortedFolder* folder = nullptr;
    if (const OSErr error = Find(inFolder, &folder)) return error;
    return inIndex > 0 && folder->GetFile(inIndex - 1, outEntry) ? OSErr(noErr) : OSErr(fnfErr);
}

OSErr FolderCache::Count(const Folder& inFolder, UInt32* outCount) {
    SortedFolder* folder = nullptr;
    if (const OSErr error = Find(inFolder, &folder)) return error;
    *outCount = folder->Count();
    return noErr;
}

OSErr FolderCache::CountFiles(const Folder& inFolder, UInt32* outCount) {
    SortedFolder* folder = nullptr;
    if (const OSErr error = Find(inFolder, &folder)) return error;
    *outCount = folder->CountFiles();
    return noErr;
}

}  // namespace carbon
