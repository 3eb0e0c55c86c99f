// Fixed blocks.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <string>

namespace {

TEST(NewPtr, OfNoBytesIsNotNull) {
    const Ptr pointer = NewPtr(0);
    ASSERT_NE(pointer, nullptr);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(GetPtrSize(pointer), 0);
    EXPECT_EQ(MemError(), noErr);
    DisposePtr(pointer);
}

TEST(NewPtr, RefusesSizesOutOfRange) {
    for (const Size size : {-1, INT32_MAX}) {
        EXPECT_EQ(NewPtr(size), nullptr);
        EXPECT_EQ(MemError(), memFullErr);
        EXPECT_EQ(NewPtrClear(size), nullptr);
        EXPECT_EQ(MemError(), memFullErr);
    }
}

TEST(NewPtrClear, IsZeroThroughout) {
    const Ptr pointer = NewPtrClear(3000);
    EXPECT_EQ(std::string(pointer, 3000), std::string(3000, '\0'));
    DisposePtr(pointer);
}

TEST(DisposePtr, OfNullIsNoError) {
    LMSetMemErr(memPurErr);
    DisposePtr(nullptr);
    EXPECT_EQ(MemError(), noErr);
}

TEST(DisposePtr, TwiceIsNoticed) {
    const UInt32 before = PlatformCountPointers();
    const Ptr pointer = NewPtr(8);
    EXPECT_EQ(PlatformCountPointers(), before + 1);
    DisposePtr(pointer);
    EXPECT_EQ(PlatformCountPointers(), before);
    DisposePtr(pointer);
    EXPECT_EQ(MemError(), memWZErr);
}

TEST(GetPtrSize, FailsForAnythingThatIsNotALiveBlock) {
    char text[64] = {};
    const Ptr pointer = NewPtr(40);
    EXPECT_EQ(GetPtrSize(pointer), 40);
    for (const Ptr bad : {Ptr(nullptr), &text[32], pointer + 8, reinterpret_cast<Ptr>(1)}) {
        LMSetMemErr(noErr);
        EXPECT_EQ(GetPtrSize(bad), 0);
        EXPECT_EQ(MemError(), memWZErr);
    }
    DisposePtr(pointer);
    EXPECT_EQ(GetPtrSize(pointer), 0);
    EXPECT_EQ(MemError(), memWZErr);
    EXPECT_FALSE(IsPointerValid(pointer));
}

TEST(GetPtrSize, NoticesADamagedBlock) {
    const Ptr pointer = NewPtr(8);
    const char kept = pointer[-1];
    pointer[-1] = char(kept + 1);
    EXPECT_EQ(GetPtrSize(pointer), 0);
    EXPECT_EQ(MemError(), memBCErr);
    pointer[-1] = kept;
    DisposePtr(pointer);
    EXPECT_EQ(MemError(), noErr);
}

TEST(SetPtrSize, ChangesABlockOnlyWhereItStands) {
    const Ptr pointer = NewPtr(100);
    SetPtrSize(pointer, 10);
    EXPECT_EQ(GetPtrSize(pointer), 10);
    SetPtrSize(pointer, 100);
    EXPECT_EQ(GetPtrSize(pointer), 100);
    SetPtrSize(pointer, 101);
    EXPECT_EQ(MemError(), memFullErr);
    SetPtrSize(pointer, -1);
    EXPECT_EQ(MemError(), memFullErr);
    EXPECT_EQ(GetPtrSize(pointer), 100);
    DisposePtr(pointer);
    SetPtrSize(pointer, 1);
    EXPECT_EQ(MemError(), memWZErr);
}

}  // namespace
