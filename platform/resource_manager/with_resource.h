// Calls on one resource.
#pragma once

#include <Carbon/MacErrors.h>

#include "resource_manager/internal.h"

namespace carbon {

// Runs the body with the resource that a handle stands for; `inOtherwise` is the code for a handle
// that is none.
template <typename Body>
OSErr WithResource(Handle inHandle, Body inBody, OSErr inOtherwise = resNotFound) {
    return Call([&] {
        const ChainAccess chain;
        Resource* resource = FindResource(inHandle);
        return resource ? OSErr(inBody(*resource)) : inOtherwise;
    });
}

}  // namespace carbon
