// The memory of one form: short ones lie in the buffer itself, long ones grow without touching the
// bytes they do not need, and parts of long ones can be lent instead of copied.
#pragma once

#include <Carbon/MacTypes.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <utility>

namespace carbon {

class Buffer {
  public:
    Buffer() = default;
    // The bytes are the caller's to write.
    explicit Buffer(size_t inSize) { Splice(0, 0, inSize); }
    explicit Buffer(std::span<const UInt8> inBytes) : Buffer(inBytes.size()) {
        if (!inBytes.empty()) std::memcpy(mBytes, inBytes.data(), inBytes.size());
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    Buffer(Buffer&& ioOther) noexcept { Take(ioOther); }
    Buffer& operator=(Buffer&& ioOther) noexcept {
        if (this == &ioOther) return *this;
        Free();
        Take(ioOther);
        return *this;
    }
    ~Buffer() { Free(); }

    const UInt8* Data() const { return mBytes; }
    UInt32 Size() const { return UInt32(mSize); }
    operator std::span<const UInt8>() const { return {mBytes, mSize}; }

    // Bytes that nobody else sees.
    UInt8* Writable() {
        if (mShared) Own(mSize);
        return mBytes;
    }

    void Reserve(size_t inCapacity) {
        if (mShared || inCapacity > mCapacity) Own(inCapacity > mSize ? inCapacity : mSize);
    }
    // Makes room for `inNewSize` bytes where `inOldSize` were; at the end this is amortised
    // constant. The new bytes are the caller's to write.
    void Splice(size_t inAt, size_t inOldSize, size_t inNewSize) {
        const size_t oldEnd = inAt + inOldSize, behind = mSize - oldEnd;
        const size_t size = mSize + inNewSize - inOldSize;
        if (mShared || size > mCapacity) Own(size > 2 * mCapacity ? size : 2 * mCapacity);
        if (behind > 0) std::memmove(mBytes + inAt + inNewSize, mBytes + oldEnd, behind);
        mSize = size;
    }

    // The same bytes again: lent while they are many and neither side changes them.
    Buffer Part(size_t inAt, size_t inSize) {
        if (inSize < kWorthSharing) return Buffer(std::span<const UInt8>(mBytes + inAt, inSize));
        if (!mShared) mShared = new Shared{{1}, mBytes};
        mShared->owners.fetch_add(1, std::memory_order_relaxed);
        Buffer part;
        part.mShared = mShared;
        part.mBytes = mBytes + inAt;
        part.mSize = part.mCapacity = inSize;
        return part;
    }

  private:
    struct Shared {
        std::atomic<UInt32> owners;
        UInt8* bytes;  // from malloc
    };
    static constexpr size_t kInside = 96;  // a file spec's form has 88
    static constexpr size_t kWorthSharing = 4096;

    bool IsInside() const { return mBytes == mInside; }

    // Moves to memory of this buffer's own. Large blocks are moved by the kernel's page tables
    // here, which no vector can do.
    void Own(size_t inCapacity) {
        const bool canGrow = !mShared && !IsInside();
        void* bytes = std::realloc(canGrow ? mBytes : nullptr, inCapacity);
        if (!bytes) throw std::bad_alloc();
        if (!canGrow) {
            std::memcpy(bytes, mBytes, mShared ? mSize : std::min(mSize, kInside));
            Free();
        }
        mShared = nullptr;
        mBytes = static_cast<UInt8*>(bytes);
        mCapacity = inCapacity;
    }
    void Free() {
        if (mShared) {
            if (mShared->owners.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
            std::free(mShared->bytes);
            delete mShared;
        } else if (!IsInside()) {
            std::free(mBytes);
        }
    }
    void Take(Buffer& ioOther) noexcept {
        mShared = std::exchange(ioOther.mShared, nullptr);
        mSize = std::exchange(ioOther.mSize, 0);
        mCapacity = std::exchange(ioOther.mCapacity, kInside);
        mBytes = std::exchange(ioOther.mBytes, ioOther.mInside);
        if (mBytes != ioOther.mInside) return;
        mBytes = mInside;
        std::memcpy(mInside, ioOther.mInside, std::min(mSize, kInside));
    }

    UInt8* mBytes = mInside;
    size_t mSize = 0;
    size_t mCapacity = kInside;
    Shared* mShared = nullptr;
    UInt8 mInside[kInside];
};

}  // namespace carbon
