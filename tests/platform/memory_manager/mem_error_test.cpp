// MemError, and how much memory there is.
#include "platform/memory_manager/handle_support.h"

#include <thread>

namespace {

TEST(MemError, KeepsResettingItselfWhenRead) {
    EXPECT_EQ(GetHandleSize(nullptr), 0);
    EXPECT_EQ(LMGetMemErr(), nilHandleErr);
    EXPECT_EQ(MemError(), nilHandleErr);
    EXPECT_EQ(MemError(), noErr);
}

TEST(MemError, IsClearedByTheNextSuccess) {
    GetHandleSize(nullptr);
    DisposeHandle(NewHandle(1));
    EXPECT_EQ(MemError(), noErr);
}

TEST(MemError, BelongsToOneThread) {
    GetHandleSize(nullptr);
    OSErr seen = 1;
    std::thread([&] { seen = MemError(); }).join();
    EXPECT_EQ(seen, noErr);
    EXPECT_EQ(MemError(), nilHandleErr);
}

TEST(MemError, CanBeSet) {
    LMSetMemErr(memPurErr);
    EXPECT_EQ(MemError(), memPurErr);
}

TEST(FreeMem, AndItsNeighboursPromiseSomeMegabytes) {
    Size grow = 1;
    EXPECT_GE(FreeMem(), 4 << 20);
    EXPECT_GE(MaxBlock(), 4 << 20);
    EXPECT_GE(TempFreeMem(), 4 << 20);
    EXPECT_GE(MaxMem(nullptr), 4 << 20);
    EXPECT_GE(MaxMem(&grow), 4 << 20);
    EXPECT_EQ(grow, 0);
    grow = 1;
    EXPECT_GE(TempMaxMem(&grow), 4 << 20);
    EXPECT_EQ(grow, 0);
    EXPECT_EQ(MemError(), noErr);
}

}  // namespace
