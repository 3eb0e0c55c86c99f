// What a catalog search is for.
#pragma once

#include <Carbon/Files.h>

#include <array>
#include <string>

#include "catalog_search/live_object.h"
#include "catalog_search/search_entries.h"
#include "catalog_search/search_filter.h"

namespace carbon {

enum class Answer { kNo, kMaybe, kYes };

class SearchCriteria {
  public:
    // paramErr for records that are missing or make no sense together.
    OSErr Take(const CSParam& inBlock);

    // Whether a folder with this filter may hold a match.
    bool MayBeIn(const SearchFilter& inFilter) const;
    // What the index alone tells of an entry.
    Answer Ask(const SearchEntry& inEntry) const;
    // The whole truth.
    bool Matches(LiveObject& ioObject) const;

  private:
    using Info = std::array<UInt8, 16>;
    struct MaskedInfo {
        Info value{}, mask{};
        bool Holds(const UInt8* inInfo) const;
    };
    struct Range {
        UInt32 least = 0, most = 0;
        bool Holds(UInt32 inValue) const { return least <= inValue && inValue <= most; }
    };

    OSErr CheckRecords(const CSParam& inBlock) const;
    OSErr CheckKinds() const;
    void TakeValues(const CSParam& inBlock);
    bool Has(SInt32 inBits) const { return (mBits & inBits) != 0; }
    bool TakesKind(bool inIsFolder) const { return inIsFolder ? mTakesFolders : mTakesFiles; }
    Answer AskName(std::string_view inDiskName) const;
    bool MatchesName(std::string_view inFolded) const;
    bool MatchesAll(LiveObject& ioObject) const;
    bool MatchesInfo(LiveObject& ioObject) const;
    bool MatchesRanges(LiveObject& ioObject) const;

    SInt32 mBits = 0;
    bool mIsNegated = false;
    bool mTakesFiles = true, mTakesFolders = true;
    std::string mName;  // folded
    UInt8 mAttributes = 0, mAttributesMask = 0;
    MaskedInfo mInfo, mExtInfo;
    Range mParent, mItems;
    std::array<Range, 4> mLengths;  // data, its space, resources, their space
    std::array<Range, 3> mDates;    // created, modified, backed up
};

}  // namespace carbon
