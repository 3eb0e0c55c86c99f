// The handle guards on real handles: locks, ownership, copies, and failures of memory.
#include "vantor/foundation/StHandle.h"

#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <cstring>

#include "support/Faults.h"
#include "support/Thrown.h"

namespace {

bool IsLocked(Handle inHandle) {
    return HGetState(inHandle) < 0;
}

TEST(StHandleLocker, UnlocksWhatItLocked) {
    StHandleBlock block(8);
    {
        StHandleLocker lock(block);
        EXPECT_TRUE(IsLocked(block));
    }
    EXPECT_FALSE(IsLocked(block));
}

TEST(StHandleLocker, LeavesALockedHandleLocked) {
    StHandleBlock block(8);
    HLock(block);
    { StHandleLocker lock(block); }
    EXPECT_TRUE(IsLocked(block));
}

TEST(StHandleLocker, ReleaseUnlocksAtOnceAndForgets) {
    StHandleBlock block(8);
    StHandleLocker lock(block);
    EXPECT_EQ(lock.Release(), block.Get());
    EXPECT_FALSE(IsLocked(block));
    EXPECT_EQ(lock.Release(), nullptr);
}

TEST(StHandleLocker, AdoptingAnotherRestoresTheFirst) {
    StHandleBlock first(8), second(8);
    StHandleLocker lock(first);
    lock.Adopt(second);
    EXPECT_FALSE(IsLocked(first));
    EXPECT_TRUE(IsLocked(second));
    lock.Adopt(nullptr);
    EXPECT_FALSE(IsLocked(second));
}

TEST(StHandleLocker, ThrowsTheManagersCodeForADeadHandle) {
    const Handle dead = NewHandle(8);
    DisposeHandle(dead);
    EXPECT_EQ(CodeThrownBy([=] { StHandleLocker lock(dead); }), memWZErr);
}

TEST(StHandleState, PutsEveryBitBack) {
    StHandleBlock block(8);
    HPurge(block);
    const SInt8 before = HGetState(block);
    {
        StHandleState state(block);
        HLock(block);
        HNoPurge(block);
    }
    EXPECT_EQ(HGetState(block), before);
}

TEST(StHandleState, ThrowsForAHandleThatIsNone) {
    EXPECT_EQ(CodeThrownBy([] { StHandleState state(nullptr); }), nilHandleErr);
}

TEST(StHandleBlock, OfNoBytesIsEmptyAndNotNull) {
    StHandleBlock block(0);
    ASSERT_NE(block.Get(), nullptr);
    EXPECT_EQ(GetHandleSize(block), 0);
}

TEST(StHandleBlock, DisposesWhatItOwnsAndNothingElse) {
    const Handle owned = NewHandle(1), lent = NewHandle(1);
    {
        StHandleBlock owner(owned);
        StHandleBlock borrower(lent, false);
    }
    EXPECT_FALSE(IsHandleValid(owned));
    EXPECT_TRUE(IsHandleValid(lent));
    DisposeHandle(lent);
}

TEST(StHandleBlock, AdoptingItsOwnHandleKeepsIt) {
    const Handle handle = NewHandle(1);
    StHandleBlock block(handle, false);
    block.Adopt(handle);
    EXPECT_TRUE(IsHandleValid(handle));
    block.Dispose();
    EXPECT_FALSE(IsHandleValid(handle)) << "adopting made it the owner";
    EXPECT_EQ(block.Get(), nullptr);
}

TEST(StHandleBlock, AdoptingAnotherDisposesTheFirst) {
    StHandleBlock block(4);
    const Handle first = block;
    const Handle second = NewHandle(4);
    block.Adopt(second);
    EXPECT_FALSE(IsHandleValid(first));
    EXPECT_EQ(block.Get(), second);
}

TEST(StHandleBlock, ReleaseLeavesTheHandleReadable) {
    Handle handle;
    {
        const StHandleBlock block(4);
        handle = block.Release();
        EXPECT_EQ(block.Get(), handle);
    }
    EXPECT_TRUE(IsHandleValid(handle));
    DisposeHandle(handle);
}

TEST(StHandleBlock, CopiesAreDuplicates) {
    StHandleBlock original(4);
    std::memcpy(*original.Get(), "data", 4);
    StHandleBlock copy(original), assigned(1);
    assigned = original;
    const Handle lent = original.GetCopy();
    for (const Handle handle : {copy.Get(), assigned.Get(), lent}) {
        EXPECT_NE(handle, original.Get());
        EXPECT_EQ(std::memcmp(*handle, "data", 4), 0);
    }
    DisposeHandle(lent);
}

TEST(StHandleBlock, AssigningToItselfKeepsTheHandle) {
    StHandleBlock block(4);
    const Handle handle = block;
    const StHandleBlock& same = block;
    block = same;
    EXPECT_EQ(block.Get(), handle);
}

TEST(StHandleBlock, CopiesOfNullAreNull) {
    const StHandleBlock none(nullptr, true);
    EXPECT_EQ(none.GetCopy(), nullptr);
    StHandleBlock block(4);
    block.CopyAndAdopt(nullptr);
    EXPECT_EQ(block.Get(), nullptr);
}

TEST(StHandleBlock, ThrowsWhenThereIsNoRoomAndIsToldTo) {
    EXPECT_EQ(CodeThrownBy([] { StHandleBlock block(-1); }), memFullErr);
    StHandleBlock quiet(-1, false);
    EXPECT_EQ(quiet.Get(), nullptr);
}

TEST(StHandleBlock, TakesTemporaryMemorySecond) {
    gFaults.newHandleFails = true;
    {
        StHandleBlock block(16, true, true);
        EXPECT_EQ(GetHandleSize(block), 16);
    }
    EXPECT_EQ(CodeThrownBy([] { StHandleBlock block(16, true, false); }), memFullErr);
    gFaults = {};
}

TEST(StHandleBlock, KeepsThrowingTheCodeAsItIsEvenNone) {
    gFaults.newHandleFails = gFaults.memErrorIsLost = true;
    EXPECT_EQ(CodeThrownBy([] { StHandleBlock block(16); }), noErr);
    gFaults = {};
}

TEST(StHandleBlock, ReleasesAResourceAndDisposesTheRest) {
    gFaults.resourceError = noErr;
    gFaults.releasedResource = nullptr;
    const Handle handle = NewHandle(4);
    gFaults.isResource = handle;
    { StHandleBlock block(handle); }
    EXPECT_EQ(gFaults.releasedResource, handle);
    gFaults.releasedResource = nullptr;
    {
        StHandleBlock block(nullptr, true);
        block.Adopt(handle);
    }
    EXPECT_EQ(gFaults.releasedResource, handle);
    EXPECT_TRUE(IsHandleValid(handle)) << "the resource manager's to keep";
    gFaults = {};
    DisposeHandle(handle);
}

TEST(StHandleBlock, KeepsTwoTestsOfAResourceThatDiffer) {
    StHandleBlock block(4);
    EXPECT_FALSE(block.IsAResource());
    const Handle handle = block;
    gFaults.isResource = handle;
    gFaults.resourceError = resFNotFound;  // neither found nor resNotFound
    EXPECT_TRUE(block.IsAResource());
    block.Dispose();
    EXPECT_EQ(gFaults.releasedResource, nullptr);
    EXPECT_FALSE(IsHandleValid(handle));
    gFaults = {};
}

TEST(StClearHandleBlock, HoldsZeros) {
    StClearHandleBlock block(64);
    for (int i = 0; i < 64; ++i) EXPECT_EQ((*block.Get())[i], 0);
}

TEST(StClearHandleBlock, ThrowsMemFullErrWhereNoErrorIsReported) {
    EXPECT_EQ(CodeThrownBy([] { StClearHandleBlock block(-1); }), memFullErr);
    gFaults.memErrorIsLost = true;
    EXPECT_EQ(CodeThrownBy([] { StClearHandleBlock block(-1); }), memFullErr);
    gFaults = {};
    StClearHandleBlock quiet(-1, false);
    EXPECT_EQ(quiet.Get(), nullptr);
}

TEST(StTempHandle, ThrowsTheResultCode) {
    { EXPECT_NE(StTempHandle(16).Get(), nullptr); }
    EXPECT_EQ(CodeThrownBy([] { StTempHandle block(-1); }), memFullErr);
    StTempHandle quiet(-1, false);
    EXPECT_EQ(quiet.Get(), nullptr);
}

TEST(StTempHandle, KeepsThrowingTheCodeAsItIsEvenNone) {
    gFaults.tempHandleFails = true;
    EXPECT_EQ(CodeThrownBy([] { StTempHandle block(16); }), noErr);
    gFaults = {};
}

TEST(StHandleBlock, LeavesNothingBehind) {
    const UInt32 before = PlatformCountHandles();
    {
        StHandleBlock block(4), copy(block);
        StClearHandleBlock clear(4);
        StTempHandle temporary(4);
        copy = clear;
    }
    EXPECT_EQ(PlatformCountHandles(), before);
}

}  // namespace
