// Bundles as they were last read, checked against their files' identity and times or watched.
#include <sys/stat.h>
#include <time.h>

#include <filesystem>
#include <optional>
#include <unordered_map>

#include "core_foundation/bundles/bundle_contents.h"
#include "posix/across_forks.h"
#include "posix/folder_watch.h"

namespace carbon {

namespace {

constexpr size_t kMostBundles = 4096;

// A file changed this shortly before it was read may change again without its times telling.
constexpr SInt64 kSettlingTime = 100'000'000;  // nanoseconds

// A watch follows folders, not paths: it does not see that one further up was renamed. So the files
// themselves are looked at from time to time, even when all is quiet.
constexpr SInt64 kTrust = 1'000'000'000;  // nanoseconds

// A bundle that is being changed is looked at rather than watched anew at each step.
constexpr SInt64 kRest = 100'000'000;  // nanoseconds

SInt64 Nanoseconds(const timespec& inTime) {
    return SInt64{inTime.tv_sec} * 1'000'000'000 + inTime.tv_nsec;
}

// What changes when a file does; all zero for a missing one.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    SInt64 modified = 0, changed = 0;

    bool operator==(const FileIdentity&) const = default;
};

FileIdentity IdentityOf(const std::string& inPath) {
    struct stat info;
    if (stat(inPath.c_str(), &info) != 0) return {};
    return {info.st_dev, info.st_ino, info.st_size, Nanoseconds(info.st_mtim),
            Nanoseconds(info.st_ctim)};
}

struct Look {
    std::string path;
    FileIdentity identity;
};

struct Entry {
    std::shared_ptr<const BundleContents> contents;
    std::vector<Look> looks;
    bool isSettled = false;
    std::vector<std::string> watchedFolders;  // none: what happens in them does not tell everything

    bool IsCurrent() const {
        if (!isSettled) return false;
        for (const Look& look : looks) {
            if (IdentityOf(look.path) != look.identity) return false;
        }
        return true;
    }
};

// Both files where they are looked for first: only a change of one of them can make a difference.
bool IsComplete(const BundleContents& inContents) {
    return inContents.layout.infoFile == inContents.path + "/Contents/Info.plist" &&
           inContents.layout.packageFile == inContents.path + "/Contents/PkgInfo" &&
           !inContents.facts.executablePath.empty();
}

std::vector<std::string> PathsToLookAt(const BundleContents& inContents) {
    std::vector<std::string> paths;
    if (!IsComplete(inContents)) paths = FoldersOfBundle(inContents.path);
    for (const auto* file : {&inContents.layout.packageFile, &inContents.layout.infoFile}) {
        if (!file->empty()) paths.push_back(*file);
    }
    return paths;
}

mode_t KindOf(const std::string& inPath) {
    struct stat info;
    return lstat(inPath.c_str(), &info) == 0 ? info.st_mode & S_IFMT : 0;
}

// The folders in which whatever changes the bundle happens. A link to it changes in its own folder.
std::vector<std::string> FoldersToWatch(const BundleContents& inContents) {
    const std::string& path = inContents.path;
    const std::string contents = path + "/Contents";
    const bool isPlain = IsComplete(inContents) && KindOf(contents) == S_IFDIR &&
                         KindOf(inContents.layout.infoFile) == S_IFREG &&
                         KindOf(inContents.layout.packageFile) == S_IFREG;
    if (!isPlain) return {};
    if (KindOf(path) == S_IFDIR) return {path, contents};
    const std::filesystem::path link = path;
    std::error_code error;
    const auto target = link.parent_path() / std::filesystem::read_symlink(link, error);
    if (error || KindOf(target) != S_IFDIR) return {};
    return {link.parent_path(), path, contents};
}

// The times are compared with the moment before reading: a file that changes later is not settled.
Entry ReadEntry(const std::string& inPath) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    Entry entry;
    entry.contents = ReadBundle(inPath);
    if (!entry.contents) return entry;
    entry.isSettled = true;
    entry.watchedFolders = FoldersToWatch(*entry.contents);
    for (std::string& path : PathsToLookAt(*entry.contents)) {
        const FileIdentity identity = IdentityOf(path);
        entry.isSettled &= identity.changed + kSettlingTime < Nanoseconds(now);
        entry.looks.push_back({std::move(path), identity});
    }
    return entry;
}

SInt64 Now() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return Nanoseconds(now);
}

// What was read, and what is known about its being current.
struct Known {
    std::shared_ptr<const Entry> entry;
    UInt64 round = 0;  // the round of the watch in which it was looked at
};

class Cache {
  public:
    // What is known of the bundle at this path, if it is still so.
    std::shared_ptr<const Entry> Find(const std::string& inPath);
    void Remember(const std::string& inPath, std::shared_ptr<const Entry> inEntry);

    std::mutex& Guard() { return mLock; }

  private:
    void BeginRoundIfDue();
    bool Watch(const Entry& inEntry);

    std::mutex mLock;
    std::unordered_map<std::string, Known> mKnown;
    std::optional<FolderWatch> mWatch;
    UInt64 mRound = 1;
    SInt64 mRoundBegan = 0, mWatchBegan = 0;
};

// All is quiet since this round began, or another one begins.
void Cache::BeginRoundIfDue() {
    const SInt64 now = Now();
    const bool hasChanged = mWatch && mWatch->HasChanged();
    if (hasChanged) mWatch.reset();
    if (!hasChanged && now - mRoundBegan < kTrust) return;
    ++mRound;
    mRoundBegan = now;
}

bool Cache::Watch(const Entry& inEntry) {
    if (inEntry.watchedFolders.empty()) return false;
    if (!mWatch) {
        if (Now() - mWatchBegan < kRest) return false;
        mWatch.emplace();
        mWatchBegan = Now();
    }
    for (const std::string& folder : inEntry.watchedFolders) mWatch->Add(folder);
    // Under another name a file may be changed in a folder that nobody watches.
    for (const Look& look : inEntry.looks) mWatch->AddFile(look.path);
    return true;
}

// Watched first and looked at afterwards, so that no change falls between.
std::shared_ptr<const Entry> Cache::Find(const std::string& inPath) {
    const std::lock_guard guard(mLock);
    const auto found = mKnown.find(inPath);
    if (found == mKnown.end()) return nullptr;
    Known& known = found->second;
    if (!known.entry->watchedFolders.empty()) BeginRoundIfDue();
    if (known.round == mRound) return known.entry;
    const bool isWatched = Watch(*known.entry);
    if (!known.entry->IsCurrent()) return nullptr;
    if (isWatched) known.round = mRound;
    return known.entry;
}

void Cache::Remember(const std::string& inPath, std::shared_ptr<const Entry> inEntry) {
    const std::lock_guard guard(mLock);
    if (mKnown.size() >= kMostBundles) mKnown.clear();
    mKnown[inPath] = {std::move(inEntry)};
}

Cache& BundleCache() {
    static auto* cache = new Cache;
    return *cache;
}

const HeldAcrossForks sHeld(BundleCache().Guard());

}  // namespace

std::shared_ptr<const BundleContents> ContentsOfBundle(const std::string& inPath) {
    if (const auto known = BundleCache().Find(inPath)) return known->contents;
    auto entry = std::make_shared<const Entry>(ReadEntry(inPath));
    auto contents = entry->contents;
    BundleCache().Remember(inPath, std::move(entry));
    return contents;
}

std::shared_ptr<const BundleFacts> FactsOfBundle(const std::string& inPath) {
    const auto contents = ContentsOfBundle(inPath);
    return contents ? std::shared_ptr<const BundleFacts>(contents, &contents->facts) : nullptr;
}

}  // namespace carbon
