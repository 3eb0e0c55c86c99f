// Sums of a disc's bytes, taken on their way to the drive and compared when they are read back.
#pragma once

#include <Carbon/MacTypes.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace recorder {

// Every byte of the disc counts, file systems and padding included. A sum is 64 bits of a block of
// kBlock bytes; it guards against accidents, for which it is as good as MD5 and many times faster.
// The MD5 sums on the disc itself are for later.
class BlockSums {
  public:
    static constexpr size_t kBlock = 64 * 1024;

    // The next bytes of the disc: whole blocks, except for the last ones.
    void Add(const UInt8* inData, size_t inSize);
    // The offset of the first block that differs; `inOffset` is a multiple of kBlock.
    std::optional<UInt64> FirstDifference(UInt64 inOffset, const UInt8* inData,
                                          size_t inSize) const;

  private:
    std::vector<UInt64> mSums;
};

}  // namespace recorder
