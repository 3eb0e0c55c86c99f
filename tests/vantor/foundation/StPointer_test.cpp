// The pointer guards on real pointers: ownership, copies, and failures of memory.
#include "vantor/foundation/StPointer.h"

#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <cstring>

#include "support/Faults.h"
#include "support/Thrown.h"

namespace {

TEST(StPointerBlock, DisposesWhatItOwnsAndNothingElse) {
    const Ptr owned = NewPtr(1), lent = NewPtr(1);
    {
        StPointerBlock owner(owned);
        StPointerBlock borrower(lent, false);
    }
    EXPECT_FALSE(IsPointerValid(owned));
    EXPECT_TRUE(IsPointerValid(lent));
    DisposePtr(lent);
}

TEST(StPointerBlock, ClearsWhenToldTo) {
    StPointerBlock block(64, true, true);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(block.Get()[i], 0);
}

TEST(StPointerBlock, CopiesAreDuplicates) {
    StPointerBlock original(4);
    std::memcpy(original.Get(), "data", 4);
    StPointerBlock copy(original), assigned(1);
    assigned = original;
    for (const Ptr pointer : {copy.Get(), assigned.Get()}) {
        EXPECT_NE(pointer, original.Get());
        EXPECT_EQ(GetPtrSize(pointer), 4);
        EXPECT_EQ(std::memcmp(pointer, "data", 4), 0);
    }
}

TEST(StPointerBlock, CopiesOfNullAreNull) {
    const StPointerBlock none(nullptr, true);
    const StPointerBlock copy(none);
    EXPECT_EQ(copy.Get(), nullptr);
    EXPECT_EQ(StPointerBlock::CopyPointerBlock(nullptr), nullptr);
}

TEST(StPointerBlock, CopyingADeadPointerThrowsTheManagersCode) {
    const Ptr dead = NewPtr(4);
    DisposePtr(dead);
    EXPECT_EQ(CodeThrownBy([=] { StPointerBlock::CopyPointerBlock(dead); }), memWZErr);
}

TEST(StPointerBlock, AdoptingItsOwnPointerKeepsIt) {
    const Ptr pointer = NewPtr(4);
    StPointerBlock block(pointer, false);
    block.Adopt(pointer);
    EXPECT_TRUE(IsPointerValid(pointer));
    block.Dispose();
    EXPECT_FALSE(IsPointerValid(pointer));
    EXPECT_EQ(block.Get(), nullptr);
}

TEST(StPointerBlock, AssigningToItselfKeepsThePointer) {
    StPointerBlock block(4);
    const Ptr pointer = block;
    const StPointerBlock& same = block;
    block = same;
    EXPECT_EQ(block.Get(), pointer);
}

TEST(StPointerBlock, ThrowsMemFullErrWhereNoErrorIsReported) {
    EXPECT_EQ(CodeThrownBy([] { StPointerBlock block(-1); }), memFullErr);
    gFaults.memErrorIsLost = true;
    EXPECT_EQ(CodeThrownBy([] { StPointerBlock block(-1); }), memFullErr);
    EXPECT_EQ(CodeThrownBy([] { StClearPointerBlock block(-1); }), memFullErr);
    gFaults = {};
}

TEST(StClearPointerBlock, HoldsNullAndThrowsNothingWhenToldNotTo) {
    StClearPointerBlock block(-1, false);
    EXPECT_EQ(block.Get(), nullptr);
}

TEST(StClearPointerBlock, HoldsZeros) {
    StClearPointerBlock block(64);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(block.Get()[i], 0);
}

TEST(StPointerBlock, LeavesNothingBehind) {
    const UInt32 before = PlatformCountPointers();
    {
        StPointerBlock block(4), copy(block);
        StClearPointerBlock clear(4);
        copy = clear;
    }
    EXPECT_EQ(PlatformCountPointers(), before);
}

}  // namespace
