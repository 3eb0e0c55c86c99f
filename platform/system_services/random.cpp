// Owns the seed of Random.
#include <Carbon/QuickdrawAPI.h>

#include <atomic>

namespace carbon {
namespace {

constexpr UInt32 kMultiplier = 16807, kModulus = 0x7FFFFFFF;

std::atomic<SInt32> gSeed{1};

// The next of a sequence that visits 1 to 2^31 - 2, each once, from whatever number it is given.
SInt32 SeedAfter(SInt32 inSeed) {
    UInt64 seed = UInt32(inSeed) % kModulus;
    if (seed == 0) seed = 1;
    return SInt32(seed * kMultiplier % kModulus);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

SInt16 Random() {
    SInt32 seed = gSeed.load();
    while (!gSeed.compare_exchange_weak(seed, SeedAfter(seed))) {
    }
    const auto number = SInt16(SeedAfter(seed));
    return number == -32768 ? SInt16(0) : number;
}

SInt32 GetQDGlobalsRandomSeed() {
    return gSeed.load();
}

void SetQDGlobalsRandomSeed(SInt32 randomSeed) {
    gSeed.store(randomSeed);
}
