// Owns MemError.
#include "memory_manager/mem_error.h"

#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>

#include <utility>

namespace carbon {
constinit thread_local OSErr gMemError = noErr;
}  // namespace carbon

OSErr MemError(void) {
    return std::exchange(carbon::gMemError, OSErr(noErr));  // Kept: reading it resets it.
}

OSErr LMGetMemErr(void) {
    return carbon::gMemError;
}

void LMSetMemErr(SInt16 value) {
    carbon::SetMemError(value);
}
