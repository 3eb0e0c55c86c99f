// Where a search goes on: what a CatPositionRec holds between two calls.
#pragma once

#include <Carbon/Files.h>

#include <cstring>

namespace carbon {

struct SearchPosition {
    UInt32 generation = 0;  // of the index; 0 while it is being built
    SInt32 row = 0;         // of a folder; 0: the root itself comes next
    UInt32 entry = 0;       // how many of that folder's entries are done
};
static_assert(sizeof(SearchPosition) == sizeof CatPositionRec().priv);

// Marks the record as one of this volume's.
inline SInt32 MarkOfVolume(FSVolumeRefNum inVolume) {
    return 0x56530000 | UInt16(inVolume);
}

inline SearchPosition PositionIn(const CatPositionRec& inRecord) {
    SearchPosition position;
    std::memcpy(&position, inRecord.priv, sizeof position);
    return position;
}

inline void SetPosition(FSVolumeRefNum inVolume, const SearchPosition& inPosition,
                        CatPositionRec* outRecord) {
    outRecord->initialize = MarkOfVolume(inVolume);
    std::memcpy(outRecord->priv, &inPosition, sizeof inPosition);
}

}  // namespace carbon
