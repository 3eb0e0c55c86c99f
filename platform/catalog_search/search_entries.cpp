// Owns the form of a folder's entries in the index.
#include "catalog_search/search_entries.h"

namespace carbon {

namespace {

constexpr size_t kInfoSize = 16;

// An entry: flags 1, length of the name 1, the name, and what the flags tell of.
enum Flags : UInt8 { kIsFolder = 1, kIsLocked = 2, kHasInfo = 4, kHasExtInfo = 8 };

}  // namespace

void AppendEntry(const SearchEntry& inEntry, std::string* ioBytes) {
    *ioBytes +=
        char((inEntry.isFolder ? kIsFolder : 0) | (inEntry.isLocked ? kIsLocked : 0) |
             (inEntry.finderInfo ? kHasInfo : 0) | (inEntry.extFinderInfo ? kHasExtInfo : 0));
    *ioBytes += char(inEntry.name.size());
    *ioBytes += inEntry.name;
    for (const UInt8* info : {inEntry.finderInfo, inEntry.extFinderInfo}) {
        if (info) ioBytes->append(reinterpret_cast<const char*>(info), kInfoSize);
    }
}

const UInt8* SearchEntries::Take(size_t inLength) {
    if (mRest.size() < inLength) return nullptr;
    const auto* bytes = reinterpret_cast<const UInt8*>(mRest.data());
    mRest.remove_prefix(inLength);
    return bytes;
}

bool SearchEntries::Next(SearchEntry* outEntry) {
    const UInt8* head = Take(2);
    const UInt8* name = head ? Take(head[1]) : nullptr;
    if (!name) return false;
    const UInt8* info = head[0] & kHasInfo ? Take(kInfoSize) : nullptr;
    const UInt8* extInfo = head[0] & kHasExtInfo ? Take(kInfoSize) : nullptr;
    *outEntry = {{reinterpret_cast<const char*>(name), head[1]},
                 (head[0] & kIsFolder) != 0,
                 (head[0] & kIsLocked) != 0,
                 info,
                 extInfo};
    return (info || !(head[0] & kHasInfo)) && (extInfo || !(head[0] & kHasExtInfo));
}

}  // namespace carbon
