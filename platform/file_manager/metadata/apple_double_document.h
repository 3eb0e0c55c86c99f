// An AppleDouble file taken apart into its entries, so that one can be changed and the others kept.
#pragma once

#include "file_manager/metadata/apple_double.h"

namespace carbon {

// All entries but the resource fork, in the file's order. The fork stays in its file: it may be
// large.
class AppleDoubleDocument {
  public:
    struct Item {
        UInt32 id;
        UInt32 offset;  // in the file read; 0 for one that is new
        std::vector<UInt8> bytes;
    };

    // Nothing unless the file is sound, and what lies beside the fork of a size that can be meant.
    static std::optional<AppleDoubleDocument> Read(int inFile);

    const Item* Find(UInt32 inId) const;
    // Adds the entry or gives it other bytes.
    void Set(UInt32 inId, std::vector<UInt8> inBytes);
    void Remove(UInt32 inId);

    // Where the fork lies in the file read; no length when it has none.
    const AppleDoubleEntry& ForkEntry() const { return mFork; }

    // The whole file up to a resource fork of that length, which is to follow at once: the list
    // begins with the Finder information and ends with the fork, which can grow there.
    std::vector<UInt8> BytesBeforeFork(UInt32 inForkLength) const;

  private:
    std::vector<Item> mItems;
    AppleDoubleEntry mFork{kResourceForkEntry, 0, 0};
};

// Up to `inLength` bytes; fewer where the file ends or cannot be read.
std::vector<UInt8> BytesAt(int inFile, UInt64 inOffset, size_t inLength);

}  // namespace carbon
