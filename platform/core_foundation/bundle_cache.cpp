// Bundles as they were last read, checked against their files' identity and times.
#include <sys/stat.h>
#include <time.h>

#include <unordered_map>

#include "core_foundation/bundle_contents.h"

namespace carbon {

namespace {

constexpr size_t kMostBundles = 4096;

// A file changed this shortly before it was read may change again without its times telling.
constexpr SInt64 kSettlingTime = 100'000'000;  // nanoseconds

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

struct Watch {
    std::string path;
    FileIdentity identity;
};

struct Entry {
    std::shared_ptr<const BundleContents> contents;
    std::vector<Watch> watches;
    bool isSettled = false;

    bool IsCurrent() const {
        if (!isSettled) return false;
        for (const Watch& watch : watches) {
            if (IdentityOf(watch.path) != watch.identity) return false;
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

std::vector<std::string> PathsToWatch(const BundleContents& inContents) {
    std::vector<std::string> paths;
    if (!IsComplete(inContents)) paths = FoldersOfBundle(inContents.path);
    for (const auto* file : {&inContents.layout.packageFile, &inContents.layout.infoFile}) {
        if (!file->empty()) paths.push_back(*file);
    }
    return paths;
}

// The times are compared with the moment before reading: a file that changes later is not settled.
Entry ReadEntry(const std::string& inPath) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    Entry entry;
    entry.contents = ReadBundle(inPath);
    if (!entry.contents) return entry;
    entry.isSettled = true;
    for (std::string& path : PathsToWatch(*entry.contents)) {
        const FileIdentity identity = IdentityOf(path);
        entry.isSettled &= identity.changed + kSettlingTime < Nanoseconds(now);
        entry.watches.push_back({std::move(path), identity});
    }
    return entry;
}

struct Cache {
    std::mutex lock;
    std::unordered_map<std::string, std::shared_ptr<const Entry>> entries;
};

Cache& BundleCache() {
    static auto* cache = new Cache;
    return *cache;
}

std::shared_ptr<const Entry> Cached(const std::string& inPath) {
    Cache& cache = BundleCache();
    const std::lock_guard guard(cache.lock);
    const auto found = cache.entries.find(inPath);
    return found == cache.entries.end() ? nullptr : found->second;
}

void Remember(const std::string& inPath, std::shared_ptr<const Entry> inEntry) {
    Cache& cache = BundleCache();
    const std::lock_guard guard(cache.lock);
    if (cache.entries.size() >= kMostBundles) cache.entries.clear();
    cache.entries[inPath] = std::move(inEntry);
}

}  // namespace

std::shared_ptr<const BundleContents> ContentsOfBundle(const std::string& inPath) {
    if (const auto cached = Cached(inPath); cached && cached->IsCurrent()) return cached->contents;
    auto entry = std::make_shared<const Entry>(ReadEntry(inPath));
    auto contents = entry->contents;
    Remember(inPath, std::move(entry));
    return contents;
}

std::shared_ptr<const BundleFacts> FactsOfBundle(const std::string& inPath) {
    const auto contents = ContentsOfBundle(inPath);
    return contents ? std::shared_ptr<const BundleFacts>(contents, &contents->facts) : nullptr;
}

}  // namespace carbon
