// Owns the fixed blocks and the set of those that are live.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Platform/Platform.h>

#include <mutex>
#include <new>
#include <unordered_set>

#include "memory_manager/block.h"
#include "memory_manager/mem_error.h"
#include "posix/across_forks.h"

namespace carbon {
namespace {

// Never destroyed: static objects of other libraries may hold blocks to the very end.
struct LivePointers {
    std::mutex mutex;
    std::unordered_set<Ptr> set;
};

LivePointers& Live() {
    static LivePointers& live = *new LivePointers;
    return live;
}

const HeldAcrossForks sHeld(Live().mutex);

bool IsLive(Ptr inPointer) {
    const std::lock_guard lock(Live().mutex);
    return Live().set.count(inPointer) != 0;
}

OSErr Check(Ptr inPointer) {
    if (!IsLive(inPointer)) return memWZErr;
    return ErrorUnless(IsIntact(inPointer), memBCErr);
}

bool Enter(Ptr inPointer) {
    const std::lock_guard lock(Live().mutex);
    try {
        return Live().set.insert(inPointer).second;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

Ptr NewPointer(Size inSize, bool inClear) {
    const Ptr block = NewBlock(inSize, inClear);
    const bool entered = block && Enter(block);
    SetMemError(ErrorUnless(entered, memFullErr));
    if (block && !entered) FreeBlock(block);
    return entered ? block : nullptr;
}

OSErr Dispose(Ptr inPointer) {
    if (!inPointer) return noErr;
    if (const OSErr err = Check(inPointer)) return err;
    const std::lock_guard lock(Live().mutex);
    Live().set.erase(inPointer);
    FreeBlock(inPointer);
    return noErr;
}

OSErr Resize(Ptr inPointer, Size inSize) {
    if (const OSErr err = Check(inPointer)) return err;
    return ErrorUnless(ResizeInPlace(inPointer, inSize), memFullErr);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

Ptr NewPtr(Size byteCount) {
    return NewPointer(byteCount, false);
}

Ptr NewPtrClear(Size byteCount) {
    return NewPointer(byteCount, true);
}

void DisposePtr(Ptr p) {
    SetMemError(Dispose(p));
}

Size GetPtrSize(Ptr p) {
    return SetMemError(Check(p)) == noErr ? BlockSize(p) : 0;
}

void SetPtrSize(Ptr p, Size newSize) {
    SetMemError(Resize(p, newSize));
}

Boolean IsPointerValid(Ptr p) {
    return IsLive(p);
}

UInt32 PlatformCountPointers(void) {
    const std::lock_guard lock(Live().mutex);
    return UInt32(Live().set.size());
}
