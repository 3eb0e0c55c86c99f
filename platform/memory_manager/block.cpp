// Owns the layout of a block and how it grows.
#include "memory_manager/block.h"

#include <Carbon/MacMemory.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "posix/address_sanitizer.h"

#ifdef PLATFORM_CHECKS_ADDRESSES
#include <sanitizer/asan_interface.h>
#endif

namespace carbon {
namespace {

// As long as malloc's alignment, so that the caller's bytes keep it.
struct BlockHeader {
    Size size;
    Size capacity;
    UInt64 guard;  // last, where a write before the block hits first
};
static_assert(sizeof(BlockHeader) == 16 && sizeof(BlockHeader) % alignof(std::max_align_t) == 0);

constexpr UInt64 kGuard = 0x4D656D426C6F636B;  // "MemBlock"
constexpr Size kWorthShrinking = 1024;

BlockHeader* HeaderOf(Ptr inBlock) {
    return reinterpret_cast<BlockHeader*>(inBlock - sizeof(BlockHeader));
}

Ptr BytesOf(BlockHeader* inHeader) {
    return reinterpret_cast<Ptr>(inHeader + 1);
}

size_t Footprint(Size inCapacity) {
    return sizeof(BlockHeader) + size_t(inCapacity);
}

// Bytes between size and capacity are nobody's: address checking reports whoever touches them.
void SetSize(BlockHeader* inHeader, Size inSize) {
    inHeader->size = inSize;
#ifdef PLATFORM_CHECKS_ADDRESSES
    const Ptr bytes = BytesOf(inHeader);
    __asan_unpoison_memory_region(bytes, size_t(inSize));
    __asan_poison_memory_region(bytes + inSize, size_t(inHeader->capacity - inSize));
#endif
}

BlockHeader* Reallocate(BlockHeader* inHeader, Size inCapacity) {
    auto* moved = static_cast<BlockHeader*>(std::realloc(inHeader, Footprint(inCapacity)));
    if (moved) moved->capacity = inCapacity;
    return moved;
}

// Half as much again, so that growing by small steps copies each byte a bounded number of times.
Size GrownCapacity(Size inCapacity, Size inSize) {
    return Size(std::clamp<SInt64>(SInt64(inCapacity) + inCapacity / 2, inSize, maxSize));
}

}  // namespace

Ptr NewBlock(Size inSize, bool inClear) {
    if (inSize < 0 || inSize > maxSize) return nullptr;
    void* memory = inClear ? std::calloc(1, Footprint(inSize)) : std::malloc(Footprint(inSize));
    if (!memory) return nullptr;
    auto* header = static_cast<BlockHeader*>(memory);
    *header = {inSize, inSize, kGuard};
    return BytesOf(header);
}

void FreeBlock(Ptr inBlock) {
    HeaderOf(inBlock)->guard = 0;
    std::free(HeaderOf(inBlock));
}

Size BlockSize(Ptr inBlock) {
    return HeaderOf(inBlock)->size;
}

bool IsIntact(Ptr inBlock) {
    return HeaderOf(inBlock)->guard == kGuard;
}

bool ResizeInPlace(Ptr inBlock, Size inSize) {
    BlockHeader* header = HeaderOf(inBlock);
    if (inSize < 0 || inSize > header->capacity) return false;
    SetSize(header, inSize);
    return true;
}

Ptr ResizeBlock(Ptr inBlock, Size inSize) {
    BlockHeader* header = HeaderOf(inBlock);
    if (inSize < 0 || inSize > maxSize) return nullptr;
    const bool wasteful = header->capacity > kWorthShrinking && inSize < header->capacity / 4;
    if (!wasteful && ResizeInPlace(inBlock, inSize)) return inBlock;
    const Size capacity = wasteful ? inSize : GrownCapacity(header->capacity, inSize);
    BlockHeader* moved = Reallocate(header, capacity);
    if (!moved && capacity > inSize) moved = Reallocate(header, inSize);
    if (!moved) return ResizeInPlace(inBlock, inSize) ? inBlock : nullptr;
    SetSize(moved, inSize);
    return BytesOf(moved);
}

}  // namespace carbon
