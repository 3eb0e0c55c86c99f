// The memory of one form: grows without touching the bytes it does not need, may begin as a
// received vector.
#pragma once

#include <Carbon/MacTypes.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace carbon {

class Buffer {
  public:
    Buffer() = default;
    // The bytes are the caller's to write.
    explicit Buffer(size_t inSize) { Resize(inSize); }
    // Without a copy, until it has to grow.
    explicit Buffer(std::vector<UInt8>&& inBytes)
        : mAdopted(std::move(inBytes)),
          mBytes(mAdopted.data()),
          mSize(mAdopted.size()),
          mCapacity(mAdopted.size()) {}
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    Buffer(Buffer&& inOther) noexcept { Swap(inOther); }
    Buffer& operator=(Buffer&& inOther) noexcept {
        Swap(inOther);
        return *this;
    }
    ~Buffer() {
        if (IsOurs()) std::free(mBytes);
    }

    UInt8* Data() { return mBytes; }
    const UInt8* Data() const { return mBytes; }
    UInt32 Size() const { return UInt32(mSize); }
    operator std::span<const UInt8>() const { return {mBytes, mSize}; }

    void Reserve(size_t inCapacity) {
        if (inCapacity > mCapacity) Move(inCapacity);
    }
    // Makes room for `inNewSize` bytes where `inOldSize` were; at the end this is amortised
    // constant. The new bytes are the caller's to write.
    void Splice(size_t inAt, size_t inOldSize, size_t inNewSize) {
        const size_t oldEnd = inAt + inOldSize, behind = mSize - oldEnd;
        if (inNewSize > inOldSize) Resize(mSize + inNewSize - inOldSize);
        if (behind > 0) std::memmove(mBytes + inAt + inNewSize, mBytes + oldEnd, behind);
        if (inNewSize < inOldSize) mSize -= inOldSize - inNewSize;
    }

  private:
    bool IsOurs() const { return mAdopted.empty(); }

    void Resize(size_t inSize) {
        if (inSize > mCapacity) Move(inSize > 2 * mCapacity ? inSize : 2 * mCapacity);
        mSize = inSize;
    }
    // Large blocks are moved by the kernel's page tables here, which no vector can do.
    void Move(size_t inCapacity) {
        const bool adopted = !IsOurs();
        void* bytes = std::realloc(adopted ? nullptr : mBytes, inCapacity);
        if (!bytes) throw std::bad_alloc();
        if (adopted) {
            std::copy_n(mAdopted.data(), mSize, static_cast<UInt8*>(bytes));
            mAdopted = {};
        }
        mBytes = static_cast<UInt8*>(bytes);
        mCapacity = inCapacity;
    }
    void Swap(Buffer& ioOther) noexcept {
        std::swap(mAdopted, ioOther.mAdopted);
        std::swap(mBytes, ioOther.mBytes);
        std::swap(mSize, ioOther.mSize);
        std::swap(mCapacity, ioOther.mCapacity);
    }

    std::vector<UInt8> mAdopted;  // empty when the bytes are from malloc
    UInt8* mBytes = nullptr;
    size_t mSize = 0;
    size_t mCapacity = 0;
};

}  // namespace carbon
