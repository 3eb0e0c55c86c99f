// Owns reading a folder with the Finder information of all that is in it.
#include "catalog_search/folder_reader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <tuple>
#include <unordered_set>

#include "catalog_search/search_entries.h"
#include "file_manager/catalog/names.h"
#include "file_manager/listings/folder_listing.h"
#include "file_manager/metadata/attribute_metadata.h"

namespace carbon {

namespace {

constexpr SInt64 kNanoseconds = 1000000000;
// Two changes within one tick of the kernel's clock leave the same time.
constexpr SInt64 kTick = 100000000;

struct CloseFolder {
    void operator()(DIR* inFolder) const { closedir(inFolder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

struct Name {
    std::string key;  // for the order of the catalog
    std::string name;
    bool isFolder;
};

struct Listing {
    std::vector<Name> names;
    std::unordered_set<std::string> companions;  // the names of those that have one
};

SInt64 Nanoseconds(const timespec& inTime) {
    return inTime.tv_sec * kNanoseconds + inTime.tv_nsec;
}

void TakeTimes(const struct stat& inFacts, FolderContents* outContents) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    outContents->device = inFacts.st_dev;
    outContents->inode = inFacts.st_ino;
    outContents->modified = Nanoseconds(inFacts.st_mtim);
    outContents->changed = Nanoseconds(inFacts.st_ctim);
    const SInt64 latest = std::max(outContents->modified, outContents->changed);
    outContents->isSettled = latest < Nanoseconds(now) - kTick;
}

std::string KeyOf(const std::string& inName) {
    const auto isAscii = [](char inByte) { return UInt8(inByte) < 0x80; };
    if (!std::all_of(inName.begin(), inName.end(), isAscii)) return FoldedDiskName(inName);
    std::string key = inName;
    for (char& byte : key) byte = byte >= 'A' && byte <= 'Z' ? char(byte + ('a' - 'A')) : byte;
    return key;
}

bool IsFolder(DIR* inFolder, const dirent& inEntry) {
    if (inEntry.d_type != DT_UNKNOWN) return inEntry.d_type == DT_DIR;
    struct stat facts;
    return fstatat(dirfd(inFolder), inEntry.d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(facts.st_mode);
}

Listing ReadListing(DIR* inFolder) {
    Listing listing;
    while (const dirent* entry = readdir(inFolder)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        const bool isFolder = IsFolder(inFolder, *entry);
        if (IsHiddenEntry(name, isFolder)) {
            listing.companions.insert(name.substr(2));
        } else {
            listing.names.push_back({KeyOf(name), name, isFolder});
        }
    }
    std::sort(listing.names.begin(), listing.names.end(),
              [](const auto& inOne, const auto& inOther) {
                  return std::tie(inOne.key, inOne.name) < std::tie(inOther.key, inOther.name);
              });
    return listing;
}

const UInt8* UnlessZero(const UInt8 (&inInfo)[16]) {
    const bool isZero = std::all_of(inInfo, inInfo + 16, [](UInt8 inByte) { return inByte == 0; });
    return isZero ? nullptr : inInfo;
}

void AddWords(const UInt8 (&inInfo)[16], SearchFilter* ioFilter) {
    UInt32 words[2];
    std::memcpy(words, inInfo, sizeof words);
    ioFilter->AddFirst(words[0]);
    ioFilter->AddSecond(words[1]);
}

void AddEntry(const std::string& inFolder, const Name& inName, bool inHasCompanion,
              FolderContents* ioContents) {
    const auto path = PathInFolder(inFolder, inName.name);
    Metadata metadata;
    if (!inHasCompanion || ReadMetadata(path, &metadata) != noErr) {
        metadata = MetadataInAttributes(path, inName.isFolder);
    }
    AddWords(metadata.finderInfo, &ioContents->filter);
    AppendEntry({inName.name, inName.isFolder, metadata.facts.isLocked,
                 UnlessZero(metadata.finderInfo), UnlessZero(metadata.extFinderInfo)},
                &ioContents->entries);
    if (inName.isFolder) ioContents->folders.push_back(inName.name);
}

}  // namespace

bool ReadFolderContents(const std::string& inPath, FolderContents* outContents) {
    struct stat facts;
    const OpenFolder folder(opendir(inPath.c_str()));
    const int result = folder ? fstat(dirfd(folder.get()), &facts) : lstat(inPath.c_str(), &facts);
    if (result != 0 || !S_ISDIR(facts.st_mode)) return false;
    TakeTimes(facts, outContents);
    if (!folder) return true;
    const Listing listing = ReadListing(folder.get());
    for (const auto& name : listing.names) {
        AddEntry(inPath, name, listing.companions.count(name.name) != 0, outContents);
    }
    return true;
}

UInt64 HashOfEntries(const std::string& inEntries) {
    UInt64 hash = 0xcbf29ce484222325;
    for (const char byte : inEntries) hash = (hash ^ UInt8(byte)) * 0x100000001b3;
    return hash;
}

}  // namespace carbon
