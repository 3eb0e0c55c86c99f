// Making and freeing handles, and telling live ones.
#include "platform/memory_manager/handle_support.h"

#include <Platform/Platform.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <thread>
#include <vector>

namespace {

TEST(NewHandle, OfNoBytesHasAMasterPointer) {
    const Handle handle = NewHandle(0);
    ASSERT_NE(handle, nullptr);
    EXPECT_NE(*handle, nullptr);
    EXPECT_EQ(GetHandleSize(handle), 0);
    EXPECT_EQ(MemError(), noErr);
    DisposeHandle(handle);
}

TEST(NewHandle, RefusesSizesOutOfRange) {
    for (const Size size : {-1, INT32_MIN, Size(maxSize) + 1, INT32_MAX}) {
        LMSetMemErr(noErr);
        EXPECT_EQ(NewHandle(size), nullptr) << size;
        EXPECT_EQ(MemError(), memFullErr) << size;
        EXPECT_EQ(NewHandleClear(size), nullptr) << size;
        EXPECT_EQ(MemError(), memFullErr) << size;
    }
}

TEST(NewHandle, RefusalKeepsNoMasterPointer) {
    const UInt32 before = PlatformCountHandles();
    EXPECT_EQ(NewHandle(-1), nullptr);
    EXPECT_EQ(PlatformCountHandles(), before);
}

TEST(NewHandle, AlignsBlocksForAnyType) {
    for (const Size size : {0, 1, 7, 100, 70000}) {
        const Handle handle = NewHandle(size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(*handle) % alignof(std::max_align_t), 0U) << size;
        DisposeHandle(handle);
    }
}

TEST(NewHandleClear, IsZeroThroughout) {
    const Handle handle = NewHandleClear(5000);
    EXPECT_EQ(TextOf(handle), std::string(5000, '\0'));
    DisposeHandle(handle);
}

TEST(TempNewHandle, ReportsItsResultTwice) {
    OSErr err = 1;
    const Handle handle = TempNewHandle(10, &err);
    EXPECT_EQ(err, noErr);
    EXPECT_EQ(GetHandleSize(handle), 10);
    DisposeHandle(handle);
    EXPECT_EQ(TempNewHandle(-1, &err), nullptr);
    EXPECT_EQ(err, memFullErr);
    EXPECT_EQ(MemError(), memFullErr);
    EXPECT_EQ(TempNewHandle(-1, nullptr), nullptr);
}

TEST(NewHandle, StartsUnlockedUnpurgeableAndNotAResource) {
    const Handle used = NewHandle(1);
    HSetState(used, SInt8(0xE0));
    DisposeHandle(used);
    const Handle handle = NewHandle(1);
    EXPECT_EQ(HGetState(handle), 0);
    DisposeHandle(handle);
}

TEST(DisposeHandle, OfNullIsNoError) {
    LMSetMemErr(memPurErr);
    DisposeHandle(nullptr);
    EXPECT_EQ(MemError(), noErr);
}

TEST(DisposeHandle, TwiceIsNoticed) {
    const Handle handle = NewHandle(1);
    DisposeHandle(handle);
    EXPECT_EQ(MemError(), noErr);
    const UInt32 before = PlatformCountHandles();
    DisposeHandle(handle);
    EXPECT_EQ(MemError(), memWZErr);
    EXPECT_EQ(PlatformCountHandles(), before);
}

TEST(DisposeHandle, LeavesTheAddressUnusedForAThousandHandles) {
    const Handle stale = Disposed();
    for (int i = 0; i < 1000; ++i) {
        const Handle other = NewHandle(1);
        ASSERT_NE(other, stale);
        DisposeHandle(other);
    }
    EXPECT_FALSE(IsHandleValid(stale));
}

TEST(DisposeHandle, GivesTheAddressBackInTheEnd) {
    const Handle first = Disposed();
    bool again = false;
    for (int i = 0; i < 500000 && !again; ++i) again = Disposed() == first;
    EXPECT_TRUE(again);
}

TEST(DisposeHandle, RefusesABlockWhoseHeadWasOverwritten) {
    const Handle handle = NewHandle(8);
    const char kept = (*handle)[-1];
    (*handle)[-1] = char(kept + 1);
    DisposeHandle(handle);
    EXPECT_EQ(MemError(), memBCErr);
    EXPECT_EQ(GetHandleSize(handle), 0);
    EXPECT_EQ(MemError(), memBCErr);
    (*handle)[-1] = kept;
    DisposeHandle(handle);
    EXPECT_EQ(MemError(), noErr);
}

TEST(IsHandleValid, TellsLiveHandlesFromEverythingElse) {
    const Handle handle = NewHandle(3);
    Ptr somewhere = nullptr;
    EXPECT_TRUE(IsHandleValid(handle));
    EXPECT_FALSE(IsHandleValid(nullptr));
    EXPECT_FALSE(IsHandleValid(&somewhere));
    EXPECT_FALSE(IsHandleValid(reinterpret_cast<Handle>(reinterpret_cast<char*>(handle) + 4)));
    EXPECT_FALSE(IsHandleValid(reinterpret_cast<Handle>(*handle)));
    EXPECT_FALSE(IsHandleValid(reinterpret_cast<Handle>(intptr_t(-16))));
    DisposeHandle(handle);
    EXPECT_FALSE(IsHandleValid(handle));
}

TEST(Handles, AreMadeAndFreedOnManyThreadsAtOnce) {
    const UInt32 before = PlatformCountHandles();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t] {
            std::vector<Handle> mine;
            for (int i = 0; i < 3000; ++i) {
                mine.push_back(NewHandle(4));
                std::memcpy(*mine.back(), &t, 4);
                if (i % 3) continue;
                DisposeHandle(mine.front());
                mine.erase(mine.begin());
            }
            for (const Handle handle : mine) {
                int owner = -1;
                std::memcpy(&owner, *handle, 4);
                EXPECT_EQ(owner, t);
                DisposeHandle(handle);
            }
            EXPECT_EQ(MemError(), noErr);
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(PlatformCountHandles(), before);
}

// The child waited for ever for what a thread of its parent had held.
TEST(Handles, AreMadeInAChildOfAProcessWithThreads) {
    std::atomic<bool> isOver = false;
    std::thread maker([&] {
        while (!isOver) DisposeHandle(NewEmptyHandle());
    });
    for (int i = 0; i < 300; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(20);
            DisposeHandle(NewEmptyHandle());
            _exit(MemError() == noErr ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << i;
        if (status != 0) break;
    }
    isOver = true;
    maker.join();
}

TEST(Handles, OverAHundredThousandStayApart) {
    std::vector<Handle> handles;
    for (int i = 0; i < 200000; ++i) {
        handles.push_back(NewHandle(sizeof i));
        ASSERT_NE(handles.back(), nullptr);
        std::memcpy(*handles.back(), &i, sizeof i);
    }
    for (int i = 0; i < 200000; ++i) {
        ASSERT_EQ(std::memcmp(*handles[size_t(i)], &i, sizeof i), 0);
        DisposeHandle(handles[size_t(i)]);
    }
}

}  // namespace
