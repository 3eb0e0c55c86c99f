// The sequence of Random: the same from the same seed, and even.
#include <Carbon/QuickdrawAPI.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<SInt16> Drawn(SInt32 inSeed, int inCount) {
    SetQDGlobalsRandomSeed(inSeed);
    std::vector<SInt16> numbers;
    for (int i = 0; i < inCount; ++i) numbers.push_back(Random());
    return numbers;
}

TEST(Random, RepeatsFromTheSameSeed) {
    EXPECT_EQ(Drawn(1, 100), Drawn(1, 100));
    EXPECT_NE(Drawn(1, 100), Drawn(2, 100));
}

TEST(Random, TheSeedMovesOn) {
    SetQDGlobalsRandomSeed(1);
    Random();
    EXPECT_EQ(GetQDGlobalsRandomSeed(), 16807);
}

TEST(Random, EverySeedGivesASequence) {
    for (const SInt32 seed : {0, -1, 0x7FFFFFFF, SInt32(0x80000000)})
        EXPECT_NE(Drawn(seed, 100), std::vector<SInt16>(100, Drawn(seed, 1)[0]));
}

TEST(Random, BothHalvesAndBothParitiesComeAsOften) {
    int negative = 0, odd = 0;
    for (const SInt16 number : Drawn(7, 20000)) {
        negative += number < 0;
        odd += number & 1;
        ASSERT_NE(number, -32768);
    }
    EXPECT_NEAR(negative, 10000, 500);
    EXPECT_NEAR(odd, 10000, 500);
}

}  // namespace
