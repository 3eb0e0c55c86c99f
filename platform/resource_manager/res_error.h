// The result of each thread's last Resource Manager call.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

extern constinit thread_local OSErr gResError;

inline void SetResError(OSErr inError) {
    gResError = inError;
}

}  // namespace carbon
