// The sizes of handles, and handles without a block.
#include "platform/memory_manager/handle_support.h"

#include <cstring>

namespace {

TEST(GetHandleSize, FailsForEmptyFreedAndForeignHandles) {
    const Handle empty = NewEmptyHandle();
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(*empty, nullptr);
    EXPECT_EQ(GetHandleSize(empty), 0);
    EXPECT_EQ(MemError(), nilHandleErr);
    DisposeHandle(empty);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(GetHandleSize(Disposed()), 0);
    EXPECT_EQ(MemError(), memWZErr);
    Ptr somewhere = nullptr;
    EXPECT_EQ(GetHandleSize(&somewhere), 0);
    EXPECT_EQ(MemError(), memWZErr);
}

TEST(SetHandleSize, KeepsTheBytesThatFit) {
    const Handle handle = FromText("abcdef");
    SetHandleSize(handle, 100000);
    EXPECT_EQ(std::string(*handle, 6), "abcdef");
    SetHandleSize(handle, 3);
    EXPECT_EQ(TextOf(handle), "abc");
    SetHandleSize(handle, 0);
    EXPECT_NE(*handle, nullptr);
    EXPECT_EQ(GetHandleSize(handle), 0);
    SetHandleSize(handle, 2);
    EXPECT_EQ(std::string(*handle, 2), "ab") << "shrinking and growing in place moved the bytes";
    DisposeHandle(handle);
}

TEST(SetHandleSize, GrowingByOneKeepsEveryByte) {
    const Handle handle = NewHandle(0);
    for (int i = 0; i < 70000; ++i) {
        SetHandleSize(handle, i + 1);
        ASSERT_EQ(MemError(), noErr);
        (*handle)[i] = char(i * 7);
    }
    for (int i = 0; i < 70000; ++i) ASSERT_EQ((*handle)[i], char(i * 7)) << i;
    DisposeHandle(handle);
}

TEST(SetHandleSize, MovesTheBlockOnlyNowAndThen) {
    const Handle handle = NewHandle(64);
    int moves = 0;
    for (Size size = 64; size < 1 << 20; size += 64) {
        const Ptr before = *handle;
        SetHandleSize(handle, size);
        moves += *handle != before;
    }
    EXPECT_LT(moves, 40);
    DisposeHandle(handle);
}

TEST(SetHandleSize, FailsForSizesOutOfRangeAndKeepsTheBlock) {
    const Handle handle = FromText("kept");
    for (const Size size : {-1, INT32_MAX}) {
        SetHandleSize(handle, size);
        EXPECT_EQ(MemError(), memFullErr);
        EXPECT_EQ(TextOf(handle), "kept");
    }
    DisposeHandle(handle);
}

TEST(SetHandleSize, FailsForNullEmptyAndFreedHandles) {
    SetHandleSize(nullptr, 1);
    EXPECT_EQ(MemError(), nilHandleErr);
    const Handle empty = NewEmptyHandle();
    SetHandleSize(empty, 1);
    EXPECT_EQ(MemError(), nilHandleErr);
    DisposeHandle(empty);
    SetHandleSize(Disposed(), 1);
    EXPECT_EQ(MemError(), memWZErr);
}

TEST(SetHandleSize, NeverMovesALockedBlock) {
    const Handle handle = FromText("locked");
    HLock(handle);
    const Ptr block = *handle;
    SetHandleSize(handle, 1 << 20);
    EXPECT_EQ(MemError(), memFullErr);
    EXPECT_EQ(TextOf(handle), "locked");
    SetHandleSize(handle, 2);
    EXPECT_EQ(MemError(), noErr);
    SetHandleSize(handle, 6);
    EXPECT_EQ(MemError(), noErr) << "there is room where it stands";
    EXPECT_EQ(*handle, block);
    DisposeHandle(handle);
}

TEST(SetHandleSize, ShrinksALockedBlockWithoutMovingIt) {
    const Handle handle = NewHandle(1 << 20);
    const Ptr block = *handle;
    HLock(handle);
    SetHandleSize(handle, 1);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(*handle, block);
    EXPECT_EQ(GetHandleSize(handle), 1);
    DisposeHandle(handle);
}

TEST(EmptyHandle, FreesTheBlockAndKeepsTheHandle) {
    const Handle handle = FromText("gone");
    EmptyHandle(handle);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(*handle, nullptr);
    EXPECT_TRUE(IsHandleValid(handle));
    EmptyHandle(handle);
    EXPECT_EQ(MemError(), noErr);
    DisposeHandle(handle);
}

TEST(EmptyHandle, RefusesALockedBlock) {
    const Handle handle = FromText("stays");
    HLock(handle);
    EmptyHandle(handle);
    EXPECT_EQ(MemError(), memPurErr);
    EXPECT_EQ(TextOf(handle), "stays");
    DisposeHandle(handle);
    EmptyHandle(handle);
    EXPECT_EQ(MemError(), memWZErr);
    EmptyHandle(nullptr);
    EXPECT_EQ(MemError(), nilHandleErr);
}

TEST(ReallocateHandle, GivesAnEmptyHandleABlock) {
    const Handle handle = NewEmptyHandle();
    ReallocateHandle(handle, 12);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(GetHandleSize(handle), 12);
    std::memset(*handle, 1, 12);
    DisposeHandle(handle);
}

TEST(ReallocateHandle, KeepsTheBlockWhenItFails) {
    const Handle handle = FromText("stays");
    ReallocateHandle(handle, -1);
    EXPECT_EQ(MemError(), memFullErr);
    EXPECT_EQ(TextOf(handle), "stays");
    HLock(handle);
    ReallocateHandle(handle, 1);
    EXPECT_EQ(MemError(), memPurErr);
    EXPECT_EQ(TextOf(handle), "stays");
    DisposeHandle(handle);
    ReallocateHandle(handle, 1);
    EXPECT_EQ(MemError(), memWZErr);
    ReallocateHandle(nullptr, 1);
    EXPECT_EQ(MemError(), nilHandleErr);
}

TEST(ReallocateHandle, MakesTheBlockUnpurgeable) {
    const Handle handle = FromText("purgeable");
    HPurge(handle);
    ReallocateHandle(handle, 3);
    EXPECT_EQ(HGetState(handle), 0);
    DisposeHandle(handle);
}

}  // namespace
