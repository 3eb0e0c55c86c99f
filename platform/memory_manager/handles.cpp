// Owns handles: making, sizing and freeing them, and their flags.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>

#include "memory_manager/block.h"
#include "memory_manager/internal.h"
#include "memory_manager/master_pointers.h"
#include "memory_manager/mem_error.h"

namespace carbon {
namespace {

OSErr CheckLive(Handle inHandle) {
    if (!inHandle) return nilHandleErr;
    return ErrorUnless(FindMasterPointer(inHandle), memWZErr);
}

OSErr CheckBlock(Handle inHandle) {
    if (const OSErr err = CheckLive(inHandle)) return err;
    if (!*inHandle) return nilHandleErr;
    return ErrorUnless(IsIntact(*inHandle), memBCErr);
}

MasterPointer& MasterOf(Handle inHandle) {
    return *reinterpret_cast<MasterPointer*>(inHandle);
}

bool IsLocked(Handle inHandle) {
    return MasterOf(inHandle).flags & kHandleLockedMask;
}

Handle NewHandleWithBlock(Size inSize, bool inClear) {
    MasterPointer* master = NewMasterPointer();
    const Ptr block = master ? NewBlock(inSize, inClear) : nullptr;
    SetMemError(ErrorUnless(block, memFullErr));
    if (block) return master->block = block, HandleOf(master);
    if (master) FreeMasterPointer(master);
    return nullptr;
}

OSErr Resize(Handle inHandle, Size inSize) {
    if (const OSErr err = CheckBlock(inHandle)) return err;
    if (IsLocked(inHandle)) return ErrorUnless(ResizeInPlace(*inHandle, inSize), memFullErr);
    const Ptr moved = ResizeBlock(*inHandle, inSize);
    if (!moved) return memFullErr;
    *inHandle = moved;
    return noErr;
}

// The handle is live; what is done about its block is in the caller's hands.
OSErr CheckReplaceable(Handle inHandle) {
    if (const OSErr err = CheckLive(inHandle)) return err;
    if (!*inHandle) return noErr;
    if (IsLocked(inHandle)) return memPurErr;
    return ErrorUnless(IsIntact(*inHandle), memBCErr);
}

void ReplaceBlock(Handle inHandle, Ptr inBlock) {
    if (*inHandle) FreeBlock(*inHandle);
    *inHandle = inBlock;
}

OSErr Reallocate(Handle inHandle, Size inSize) {
    if (const OSErr err = CheckReplaceable(inHandle)) return err;
    const Ptr block = NewBlock(inSize, false);
    if (!block) return memFullErr;
    ReplaceBlock(inHandle, block);
    MasterOf(inHandle).flags &= kHandleIsResourceMask;
    return noErr;
}

OSErr Empty(Handle inHandle) {
    const OSErr err = CheckReplaceable(inHandle);
    if (err == noErr) ReplaceBlock(inHandle, nullptr);
    return err;
}

OSErr Dispose(Handle inHandle) {
    if (!inHandle) return noErr;
    if (const OSErr err = CheckLive(inHandle)) return err;
    if (*inHandle && !IsIntact(*inHandle)) return memBCErr;
    ReplaceBlock(inHandle, nullptr);
    FreeMasterPointer(&MasterOf(inHandle));
    return noErr;
}

void SetFlag(Handle inHandle, UInt8 inMask, bool inOn) {
    const OSErr err = inHandle ? CheckBlock(inHandle) : OSErr(noErr);
    SetMemError(err);
    if (!inHandle || err != noErr) return;
    UInt8& flags = MasterOf(inHandle).flags;
    flags = UInt8(inOn ? flags | inMask : flags & ~inMask);
}

}  // namespace

std::optional<UInt16> HandleGeneration(Handle inHandle) {
    const MasterPointer* master = FindMasterPointer(inHandle);
    return master ? std::optional(master->generation) : std::nullopt;
}

void MarkAsResource(Handle inHandle, bool inIsResource) {
    UInt8& flags = MasterOf(inHandle).flags;
    flags = UInt8(inIsResource ? flags | kHandleIsResourceMask : flags & ~kHandleIsResourceMask);
}

}  // namespace carbon

using namespace carbon;

Handle NewHandle(Size byteCount) {
    return NewHandleWithBlock(byteCount, false);
}

Handle NewHandleClear(Size byteCount) {
    return NewHandleWithBlock(byteCount, true);
}

Handle TempNewHandle(Size logicalSize, OSErr* resultCode) {
    const Handle handle = NewHandleWithBlock(logicalSize, false);
    if (resultCode) *resultCode = gMemError;
    return handle;
}

Handle NewEmptyHandle(void) {
    MasterPointer* master = NewMasterPointer();
    SetMemError(ErrorUnless(master, memFullErr));
    return master ? HandleOf(master) : nullptr;
}

void DisposeHandle(Handle h) {
    SetMemError(Dispose(h));
}

Size GetHandleSize(Handle h) {
    return SetMemError(CheckBlock(h)) == noErr ? BlockSize(*h) : 0;
}

void SetHandleSize(Handle h, Size newSize) {
    SetMemError(Resize(h, newSize));
}

void ReallocateHandle(Handle h, Size byteCount) {
    SetMemError(Reallocate(h, byteCount));
}

void EmptyHandle(Handle h) {
    SetMemError(Empty(h));
}

void HLock(Handle h) {
    SetFlag(h, kHandleLockedMask, true);
}

void HLockHi(Handle h) {
    SetFlag(h, kHandleLockedMask, true);
}

void MoveHHi(Handle h) {
    SetFlag(h, 0, true);
}  // Linux: there is no heap to move up in.

void HUnlock(Handle h) {
    SetFlag(h, kHandleLockedMask, false);
}

void HPurge(Handle h) {
    SetFlag(h, kHandlePurgeableMask, true);
}

void HNoPurge(Handle h) {
    SetFlag(h, kHandlePurgeableMask, false);
}

void HSetRBit(Handle h) {
    SetFlag(h, kHandleIsResourceMask, true);
}

void HClrRBit(Handle h) {
    SetFlag(h, kHandleIsResourceMask, false);
}

SInt8 HGetState(Handle h) {
    // Kept: on an error the byte is the low byte of the code, which reads as some state.
    const OSErr err = SetMemError(CheckBlock(h));
    return SInt8(err == noErr ? MasterOf(h).flags : UInt8(err));
}

void HSetState(Handle h, SInt8 flags) {
    constexpr UInt8 kMask = kHandleLockedMask | kHandlePurgeableMask | kHandleIsResourceMask;
    if (SetMemError(CheckBlock(h)) == noErr) MasterOf(h).flags = UInt8(flags) & kMask;
}

Boolean IsHandleValid(Handle h) {
    return FindMasterPointer(h) != nullptr;
}
