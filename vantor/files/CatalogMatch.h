// What a walking search looks for: a search block's criteria, checked once, then tested on one item
// of the catalog after another. For the other files of this folder.
#pragma once

#include <Carbon/Carbon.h>

class CatalogMatch {
  public:
    explicit CatalogMatch(const CSParam& inBlock) : mBlock(inBlock) {}

    // Whether the criteria go together: noErr or paramErr. To be called first.
    OSErr Check();
    // Whether an item, of this name, is one that is sought.
    bool Matches(const CInfoPBRec& inItem, ConstStringPtr inName) const;

    // Whether the fields SkimmedInfo of an item are enough to see that it is none.
    bool CanSkim() const;
    FSCatalogInfoBitmap SkimmedInfo() const;
    // False for an item that is not sought, whether it is a file or a folder.
    bool MayMatch(const FSCatalogInfo& inInfo, ConstStringPtr inName) const;

  private:
    bool HasRecords() const;
    bool TakeName();
    bool TakeAttributes();
    bool SuitsKinds() const;
    bool PassesAll(const CInfoPBRec& inItem, ConstStringPtr inName) const;
    bool PassesName(ConstStringPtr inName) const;
    bool PassesNumbers(const CInfoPBRec& inItem) const;
    bool PassesFinderInfo(const CInfoPBRec& inItem) const;
    bool PassesRanges(const CInfoPBRec& inItem) const;
    bool TakesPart(const CInfoPBRec& inItem) const;
    bool Seeks(SInt32 inBits) const { return (mBlock.ioSearchBits & inBits) != 0; }

    const CSParam& mBlock;
    bool mFiles = true;     // take part
    bool mFolders = true;   // take part
    Str255 mCapitals = {};  // the name sought
};
