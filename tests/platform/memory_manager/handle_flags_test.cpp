// The flags of handles.
#include "platform/memory_manager/handle_support.h"

namespace {

using FlagCall = void (*)(Handle);
constexpr FlagCall kFlagCalls[] = {HLock,  HLockHi,  MoveHHi,  HUnlock,
                                   HPurge, HNoPurge, HSetRBit, HClrRBit};

TEST(HLockAndItsNeighbours, TakeNullAndRefuseEmptyAndFreedHandles) {
    const Handle empty = NewEmptyHandle();
    for (const FlagCall call : kFlagCalls) {
        LMSetMemErr(memPurErr);
        call(nullptr);
        EXPECT_EQ(MemError(), noErr);
        call(empty);
        EXPECT_EQ(MemError(), nilHandleErr);
        call(Disposed());
        EXPECT_EQ(MemError(), memWZErr);
    }
    DisposeHandle(empty);
}

TEST(HLockAndItsNeighbours, ChangeOneFlagEachWithoutNesting) {
    const Handle handle = NewHandle(1);
    HLock(handle);
    HLock(handle);
    EXPECT_EQ(HGetState(handle), SInt8(0x80));
    EXPECT_LT(HGetState(handle), 0);
    HPurge(handle);
    HSetRBit(handle);
    EXPECT_EQ(HGetState(handle), SInt8(0xE0));
    MoveHHi(handle);
    EXPECT_EQ(HGetState(handle), SInt8(0xE0));
    HUnlock(handle);
    EXPECT_EQ(HGetState(handle), 0x60);
    HNoPurge(handle);
    HClrRBit(handle);
    EXPECT_EQ(HGetState(handle), 0);
    HLockHi(handle);
    EXPECT_EQ(HGetState(handle), SInt8(0x80));
    EXPECT_EQ(MemError(), noErr);
    DisposeHandle(handle);
}

TEST(HSetState, RestoresAllThreeFlagsAndNoOtherBit) {
    const Handle handle = NewHandle(1);
    HSetState(handle, SInt8(0xFF));
    EXPECT_EQ(HGetState(handle), SInt8(0xE0));
    HSetState(handle, 0x40);
    EXPECT_EQ(HGetState(handle), 0x40);
    DisposeHandle(handle);
}

TEST(HGetState, KeepsTheLowByteOfTheErrorAsItsAnswer) {
    const Handle empty = NewEmptyHandle();
    EXPECT_EQ(HGetState(empty), SInt8(nilHandleErr));
    EXPECT_EQ(MemError(), nilHandleErr);
    HSetState(empty, 0);
    EXPECT_EQ(MemError(), nilHandleErr);
    DisposeHandle(empty);
    EXPECT_EQ(HGetState(Disposed()), SInt8(memWZErr));
    EXPECT_EQ(MemError(), memWZErr);
    HSetState(Disposed(), 0);
    EXPECT_EQ(MemError(), memWZErr);
    HGetState(nullptr);
    EXPECT_EQ(MemError(), nilHandleErr);
}

}  // namespace
