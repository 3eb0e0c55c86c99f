// A filter that tells which types and creators a folder cannot hold.
#pragma once

#include <Carbon/MacTypes.h>

#include <array>

namespace carbon {

// The first two words of Finder information: a file's type and creator. Both go into one set of 256
// bits, so a folder may seem to hold what it does not, never the other way round.
class SearchFilter {
  public:
    void AddFirst(UInt32 inWord) { Set(Place(inWord, 0x9E3779B1)); }
    void AddSecond(UInt32 inWord) { Set(Place(inWord, 0x85EBCA77)); }
    bool MayHoldFirst(UInt32 inWord) const { return Has(Place(inWord, 0x9E3779B1)); }
    bool MayHoldSecond(UInt32 inWord) const { return Has(Place(inWord, 0x85EBCA77)); }

    std::array<UInt64, 4> bits{};

  private:
    // The highest bits of a product are the best mixed ones.
    static UInt32 Place(UInt32 inWord, UInt32 inFactor) { return (inWord ^ 0x5A) * inFactor >> 24; }
    void Set(UInt32 inPlace) { bits[inPlace / 64] |= UInt64(1) << inPlace % 64; }
    bool Has(UInt32 inPlace) const { return bits[inPlace / 64] >> inPlace % 64 & 1; }
};

}  // namespace carbon
