// The forks that calls on references name.
#pragma once

#include "resource_manager/carrier.h"

namespace carbon {

// The data fork for an empty name; errFSBadForkName for one that is none.
OSErr ForkByName(UniCharCount inLength, const UniChar* inName, ForkKind* outKind);

}  // namespace carbon
