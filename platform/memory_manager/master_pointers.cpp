// Owns the stretch of addresses that holds the master pointers.
#include "memory_manager/master_pointers.h"

#include <Platform/Platform.h>
#include <sys/mman.h>

#include <mutex>

#include "posix/across_forks.h"
#include "posix/address_sanitizer.h"

#ifdef PLATFORM_CHECKS_ADDRESSES
#include <sanitizer/lsan_interface.h>
#endif

namespace carbon {
namespace {

constexpr size_t kReserved = size_t(1) << 30;       // addresses, not memory: 64 million handles
constexpr size_t kLeastReserved = size_t(1) << 20;  // where the address space is limited
constexpr size_t kStep = 64 * 1024;                 // made usable at a time
constexpr UInt32 kStepCount = kStep / sizeof(MasterPointer);
constexpr UInt32 kRestingPlaces = 1024;  // disposed of, kept from use as the newest are
constexpr UInt32 kNone = 0xFFFFFFFF;

// All zero or constant at load and nothing to destroy, so handles work before and after main.
struct Pool {
    std::mutex mutex;
    std::atomic<MasterPointer*> base = nullptr;
    std::atomic<UInt32> used = 0;  // places ever given out; all later ones are untouched
    UInt32 usable = 0;
    UInt32 reserved = 0;
    UInt32 firstFree = kNone, lastFree = kNone, freeCount = 0;
};
constinit Pool gPool;
const HeldAcrossForks sHeld(gPool.mutex);

bool Reserve() {
    for (size_t size = kReserved; size >= kLeastReserved; size /= 2) {
        void* area =
            mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (area == MAP_FAILED) continue;
#ifdef PLATFORM_CHECKS_ADDRESSES
        __lsan_register_root_region(area, size);
#endif
        gPool.reserved = UInt32(size / sizeof(MasterPointer));
        gPool.base.store(static_cast<MasterPointer*>(area), std::memory_order_release);
        return true;
    }
    return false;
}

bool MakeUsable() {
    if (!gPool.base && !Reserve()) return false;
    if (gPool.usable == gPool.reserved) return false;
    if (mprotect(gPool.base + gPool.usable, kStep, PROT_READ | PROT_WRITE) != 0) return false;
    gPool.usable += kStepCount;
    return true;
}

MasterPointer* TakeUntouched() {
    const UInt32 index = gPool.used;
    if (index == gPool.usable && !MakeUsable()) return nullptr;
    gPool.used.store(index + 1, std::memory_order_release);
    return gPool.base + index;
}

// The one that was disposed of longest ago.
MasterPointer* TakeOldest() {
    if (!gPool.freeCount) return nullptr;
    MasterPointer* master = gPool.base + gPool.firstFree;
    gPool.firstFree = master->next;
    if (--gPool.freeCount == 0) gPool.lastFree = kNone;
    return master;
}

MasterPointer* Take() {
    MasterPointer* master = gPool.freeCount > kRestingPlaces ? TakeOldest() : TakeUntouched();
    return master ? master : TakeOldest();
}

void AppendFree(UInt32 inIndex) {
    MasterPointer* const base = gPool.base;
    base[inIndex].next = kNone;
    (gPool.lastFree == kNone ? gPool.firstFree : base[gPool.lastFree].next) = inIndex;
    gPool.lastFree = inIndex;
    ++gPool.freeCount;
}

}  // namespace

MasterPointer* NewMasterPointer() {
    const std::lock_guard lock(gPool.mutex);
    MasterPointer* master = Take();
    if (!master) return nullptr;
    master->flags = 0;
    master->live.store(true, std::memory_order_relaxed);
    return master;
}

void FreeMasterPointer(MasterPointer* inMaster) {
    const std::lock_guard lock(gPool.mutex);
    inMaster->live.store(false, std::memory_order_relaxed);
    inMaster->block = nullptr;
    ++inMaster->generation;
    AppendFree(UInt32(inMaster - gPool.base));
}

MasterPointer* FindMasterPointer(Handle inHandle) {
    const auto base = reinterpret_cast<uintptr_t>(gPool.base.load(std::memory_order_acquire));
    const auto offset = reinterpret_cast<uintptr_t>(inHandle) - base;
    if (!base || offset % sizeof(MasterPointer)) return nullptr;
    if (offset / sizeof(MasterPointer) >= gPool.used.load(std::memory_order_acquire))
        return nullptr;
    auto* master = reinterpret_cast<MasterPointer*>(inHandle);
    return master->live.load(std::memory_order_relaxed) ? master : nullptr;
}

}  // namespace carbon

UInt32 PlatformCountHandles(void) {
    const std::lock_guard lock(carbon::gPool.mutex);
    return carbon::gPool.used - carbon::gPool.freeCount;
}
