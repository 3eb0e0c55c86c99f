// The stack of the walking search, in a handle that grows as the folders go deeper.
#include "vantor/files/SearchStack.h"

#include <cstring>

Handle SearchStack::sLevels = nullptr;

namespace {

constexpr SInt32 kLevelSize = sizeof(SearchStack::Level);
constexpr SInt32 kStep = 20 * kLevelSize;  // bytes that the stack starts with and grows by
static_assert(kLevelSize == 12);

}  // namespace

OSErr SearchStack::Make() {
    if (sLevels == nullptr) sLevels = NewHandle(kStep);
    return sLevels != nullptr ? OSErr{noErr} : OSErr{memFullErr};
}

bool SearchStack::Holds(SInt16 inDepth) {
    return inDepth > 0 && inDepth * kLevelSize <= GetHandleSize(sLevels);
}

OSErr SearchStack::Push(const Level& inLevel, SInt16& ioDepth) {
    const SInt32 at = ioDepth * kLevelSize;
    if (at + kLevelSize >= GetHandleSize(sLevels)) {
        SetHandleSize(sLevels, GetHandleSize(sLevels) + kStep);
        const OSErr err = MemError();
        if (err != noErr) return err;
    }
    std::memcpy(*sLevels + at, &inLevel, kLevelSize);
    ++ioDepth;
    return noErr;
}

SearchStack::Level SearchStack::Pop(SInt16& ioDepth) {
    Level level;
    --ioDepth;
    std::memcpy(&level, *sLevels + ioDepth * kLevelSize, kLevelSize);
    return level;
}
