// The entries of one folder as one piece of bytes.
#pragma once

#include <Carbon/MacTypes.h>

#include <optional>
#include <string>
#include <string_view>

namespace carbon {

// Finder information as the records have it, in the machine's byte order; null when it is all zero.
struct SearchEntry {
    std::string_view name;  // as on disk, at most 255 bytes
    bool isFolder = false;
    bool isLocked = false;
    const UInt8* finderInfo = nullptr;     // 16 bytes
    const UInt8* extFinderInfo = nullptr;  // 16 bytes
};

void AppendEntry(const SearchEntry& inEntry, std::string* ioBytes);

// Takes the entries of a piece one by one. Bytes that make no entry end them.
class SearchEntries {
  public:
    explicit SearchEntries(std::string_view inBytes) : mRest(inBytes) {}
    bool Next(SearchEntry* outEntry);

  private:
    const UInt8* Take(size_t inLength);

    std::string_view mRest;
};

}  // namespace carbon
