// Allocators: the process's heap, one that does nothing, and those that hosts make.
#include <cstdlib>

#include "core_foundation/object.h"

struct __CFAllocator : carbon::Object {
    constexpr __CFAllocator(const CFAllocatorContext& inContext, SInt32 inCount)
        : Object(carbon::kAllocatorKind, inCount), context(inContext) {}

    const CFAllocatorContext context;

  protected:
    ~__CFAllocator() = default;
};

namespace carbon {

namespace {

class Allocator final : public __CFAllocator {
  public:
    constexpr explicit Allocator(const CFAllocatorContext& inContext, SInt32 inCount = 1)
        : __CFAllocator(inContext, inCount) {}
    std::u16string Describe() const override { return u"<CFAllocator>"; }

  private:
    void Destroy() const override {
        const CFAllocatorContext kept = context;
        delete this;
        if (kept.release) kept.release(kept.info);
    }
};

void* HeapAllocate(CFIndex inSize, CFOptionFlags, void*) {
    return std::malloc(static_cast<size_t>(inSize));
}

void* HeapReallocate(void* inBlock, CFIndex inSize, CFOptionFlags, void*) {
    return std::realloc(inBlock, static_cast<size_t>(inSize));
}

void HeapDeallocate(void* inBlock, void*) {
    std::free(inBlock);
}

constinit const Allocator sHeap({0, nullptr, nullptr, nullptr, nullptr, HeapAllocate,
                                 HeapReallocate, HeapDeallocate, nullptr},
                                kImmortal);
constinit const Allocator sMalloc({0, nullptr, nullptr, nullptr, nullptr, HeapAllocate,
                                   HeapReallocate, HeapDeallocate, nullptr},
                                  kImmortal);
constinit const Allocator sNull({}, kImmortal);

const CFAllocatorContext& ContextOf(CFAllocatorRef inAllocator) {
    return inAllocator ? inAllocator->context : sHeap.context;
}

CFAllocatorRef NewAllocator(const CFAllocatorContext& inContext) {
    auto* made = new (std::nothrow) Allocator(inContext);
    if (made && inContext.retain) inContext.retain(inContext.info);
    return made;
}

}  // namespace

}  // namespace carbon

constinit const CFAllocatorRef kCFAllocatorDefault = nullptr;
constinit const CFAllocatorRef kCFAllocatorSystemDefault = &carbon::sHeap;
constinit const CFAllocatorRef kCFAllocatorMalloc = &carbon::sMalloc;
constinit const CFAllocatorRef kCFAllocatorNull = &carbon::sNull;

CFTypeID CFAllocatorGetTypeID() {
    return carbon::kAllocatorKind;
}

CFAllocatorRef CFAllocatorGetDefault() {
    return kCFAllocatorSystemDefault;
}

CFAllocatorRef CFAllocatorCreate(CFAllocatorRef, CFAllocatorContext* context) {
    return context ? carbon::NewAllocator(*context) : nullptr;
}

void* CFAllocatorAllocate(CFAllocatorRef allocator, CFIndex size, CFOptionFlags hint) {
    const CFAllocatorContext& context = carbon::ContextOf(allocator);
    if (size < 1 || !context.allocate) return nullptr;
    return context.allocate(size, hint, context.info);
}

void* CFAllocatorReallocate(CFAllocatorRef allocator, void* ptr, CFIndex newsize,
                            CFOptionFlags hint) {
    if (!ptr) return CFAllocatorAllocate(allocator, newsize, hint);
    const CFAllocatorContext& context = carbon::ContextOf(allocator);
    if (newsize < 1) {
        CFAllocatorDeallocate(allocator, ptr);
        return nullptr;
    }
    return context.reallocate ? context.reallocate(ptr, newsize, hint, context.info) : nullptr;
}

void CFAllocatorDeallocate(CFAllocatorRef allocator, void* ptr) {
    const CFAllocatorContext& context = carbon::ContextOf(allocator);
    if (ptr && context.deallocate) context.deallocate(ptr, context.info);
}
