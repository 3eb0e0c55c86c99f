// What a walking search looks for: a search block's criteria, checked once, then tested on one item
// of the catalog after another. For the other files of this folder.
#pragma once

#include <Carbon/Carbon.h>

class CatalogMatch {
  public:
    explicit CatalogMatch(const CSParam& inBlock) : mBlock(inBlock) {}

    // Whether the criteria go together: noErr or paramErr. To be called first.
    OSErr Check();
    // `inName` is the item's, and is not looked at unless the search is for a name.
    bool Matches(const CInfoPBRec& inItem, ConstStr255Param inName) const;

  private:
    OSErr CheckRecords() const;
    OSErr CheckName();
    OSErr CheckAttributes();
    OSErr CheckKinds() const;
    bool PassesAll(const CInfoPBRec& inItem, ConstStr255Param inName) const;
    bool TakesPart(const CInfoPBRec& inItem) const;
    bool Seeks(SInt32 inBits) const { return (mBlock.ioSearchBits & inBits) != 0; }
    bool SeeksOnly(SInt32 inBits) const { return mBlock.ioSearchBits == inBits; }

    const CSParam& mBlock;
    bool mFiles = true;    // take part
    bool mFolders = true;  // take part
    Str63 mCapitals = {};  // the name sought
};
