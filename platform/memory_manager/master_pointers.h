// The places that handles point to. All lie in one stretch of addresses that is never given back.
#pragma once

#include <Carbon/MacTypes.h>

#include <atomic>

namespace carbon {

struct MasterPointer {
    Ptr block;               // what the owner of the handle sees; null for an empty handle
    UInt32 next;             // among the free ones
    UInt16 generation;       // counts how often the place was given up
    std::atomic<bool> live;  // read without a lock for handles of any origin
    UInt8 flags;             // kHandleLockedMask and its neighbours
};
static_assert(sizeof(MasterPointer) == 16);

// An empty live one; null when none can be had.
MasterPointer* NewMasterPointer();
void FreeMasterPointer(MasterPointer* inMaster);

// The master pointer of a live handle, null for anything else. Reads nothing that is not ours.
MasterPointer* FindMasterPointer(Handle inHandle);

inline Handle HandleOf(MasterPointer* inMaster) {
    return &inMaster->block;
}

}  // namespace carbon
