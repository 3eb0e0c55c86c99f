// Whether a fork may be opened, beside all who have it open already.
#pragma once

#include "file_manager/catalog/objects.h"
#include "file_manager/forks/open_fork.h"

namespace carbon {

struct ForkRequest {
    Fork fork = Fork::kData;
    bool hasDenyModes = false;
    UInt8 modes = 0;  // deny modes, else a permission
};

// Opens a fork of a file in hand and gives it a number. Where that is refused with opWrErr, and a
// path of this process is the reason, the number is that path's. `inIsVolumeLocked` tells that
// nothing on the volume may be changed.
OSErr OpenForkOf(const Object& inObject, const ForkRequest& inRequest, bool inIsVolumeLocked,
                 SInt16* outNumber);

}  // namespace carbon
