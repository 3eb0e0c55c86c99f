// Owns the answers to how much memory there is.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <unistd.h>

#include <algorithm>

#include "memory_manager/mem_error.h"

namespace carbon {
namespace {

constexpr SInt64 kLeast = 4 << 20;

// Linux: there are no zones; all of these calls mean the machine's free pages.
Size Available() {
    SetMemError(noErr);
    const SInt64 pages = sysconf(_SC_AVPHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
    return Size(std::clamp<SInt64>(pages * pageSize, kLeast, maxSize));
}

Size AvailableWithoutGrowing(Size* outGrow) {
    if (outGrow) *outGrow = 0;
    return Available();
}

}  // namespace
}  // namespace carbon

using namespace carbon;

SInt32 FreeMem(void) {
    return Available();
}

SInt32 MaxBlock(void) {
    return Available();
}

Size MaxMem(Size* grow) {
    return AvailableWithoutGrowing(grow);
}

SInt32 TempFreeMem(void) {
    return Available();
}

Size TempMaxMem(Size* grow) {
    return AvailableWithoutGrowing(grow);
}
