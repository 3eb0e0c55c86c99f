// The result of each thread's last Memory Manager call.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

extern constinit thread_local OSErr gMemError;

inline OSErr SetMemError(OSErr inError) {
    return gMemError = inError;
}

inline OSErr ErrorUnless(bool inOk, OSErr inError) {
    return inOk ? OSErr(noErr) : inError;
}

}  // namespace carbon
