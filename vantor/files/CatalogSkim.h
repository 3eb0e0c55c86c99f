// Passing over the items of one folder that a walking search cannot be looking for, without reading
// all that there is to know of each. For IndexedSearch.
#pragma once

#include <Carbon/Carbon.h>

#include <vector>

#include "vantor/files/CatalogMatch.h"

class CatalogSkim {
  public:
    // Of a folder that is read from its first item on. Where it cannot be skimmed nothing is passed
    // over. The criteria must outlive this.
    CatalogSkim(const CatalogMatch& inMatch, FSVolumeRefNum inVRefNum, SInt32 inDirID);
    ~CatalogSkim() { Stop(); }
    CatalogSkim(const CatalogSkim&) = delete;
    CatalogSkim& operator=(const CatalogSkim&) = delete;

    // The index of the next item, from this one on, that must be read: a folder that is not empty,
    // one that may match, one that nothing is known of, or the end. To be asked with rising
    // indexes.
    SInt16 Next(SInt16 inIndex);
    // What was found there. Another name tells that the folder has changed: then there is no more
    // skimming.
    void Found(SInt16 inIndex, ConstStringPtr inName);

  private:
    bool IsKnown(SInt16 inIndex) const;
    bool ReadOn();
    void Stop();

    const CatalogMatch& mMatch;
    FSIterator mIterator = nullptr;
    SInt32 mFirst = 1;           // the index of the first of these
    std::vector<FSSpec> mItems;  // read at one time
    std::vector<bool> mMustBeRead;
    bool mIsAtEnd = false;
};
