// Which handles are resources, and what becomes of them.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/Resources.h>
#include <gtest/gtest.h>

#include <thread>

#include "resource_manager/registry.h"

namespace {

Handle NewResource(carbon::LiveResource inResource) {
    const Handle handle = NewHandle(4);
    EXPECT_TRUE(carbon::EnterResource(handle, inResource));
    return handle;
}

TEST(GetResAttrs, FindsNoResourceInPlainNullAndFreedHandles) {
    const Handle plain = NewHandle(4);
    HSetRBit(plain);  // the bit alone makes no resource
    for (const Handle handle : {plain, Handle(nullptr)}) {
        carbon::SetResError(noErr);
        EXPECT_EQ(GetResAttrs(handle), 0);
        EXPECT_EQ(ResError(), resNotFound);
    }
    DisposeHandle(plain);
    carbon::SetResError(noErr);
    EXPECT_EQ(GetResAttrs(plain), 0);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST(GetResAttrs, OfAResourceClearsTheError) {
    const Handle resource = NewResource({7, resPurgeable | resPreload});
    GetResAttrs(nullptr);
    EXPECT_EQ(GetResAttrs(resource), resPurgeable | resPreload);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_NE(HGetState(resource) & kHandleIsResourceMask, 0);
    ReleaseResource(resource);
}

TEST(GetResAttrs, FindsAnEmptyResource) {
    const Handle resource = NewEmptyHandle();
    ASSERT_TRUE(carbon::EnterResource(resource, {7, resLocked}));
    EXPECT_EQ(GetResAttrs(resource), resLocked);
    EXPECT_EQ(ResError(), noErr);
    ReleaseResource(resource);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_FALSE(IsHandleValid(resource));
}

TEST(ResError, IsNotClearedByReading) {
    GetResAttrs(nullptr);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST(ResError, BelongsToOneThread) {
    GetResAttrs(nullptr);
    OSErr seen = 1;
    std::thread([&] { seen = ResError(); }).join();
    EXPECT_EQ(seen, noErr);
}

TEST(HomeResFile, NamesTheFileOfAResourceOnly) {
    const Handle resource = NewResource({7, 0});
    EXPECT_EQ(HomeResFile(resource), 7);
    EXPECT_EQ(ResError(), noErr);
    ReleaseResource(resource);
    EXPECT_EQ(HomeResFile(resource), -1);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST(ReleaseResource, FreesAResource) {
    const Handle resource = NewResource({7, 0});
    ReleaseResource(resource);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_FALSE(IsHandleValid(resource));
    ReleaseResource(resource);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST(ReleaseResource, LeavesAPlainHandleAlone) {
    const Handle plain = NewHandle(4);
    ReleaseResource(plain);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_TRUE(IsHandleValid(plain));
    DisposeHandle(plain);
    ReleaseResource(nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST(ReleaseResource, KeepsAChangedResourceWithoutAnError) {
    const Handle resource = NewResource({7, resChanged});
    ReleaseResource(resource);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_TRUE(IsHandleValid(resource));
    EXPECT_EQ(GetResAttrs(resource), resChanged);
    ASSERT_TRUE(carbon::EnterResource(resource, {7, 0}));
    ReleaseResource(resource);
    EXPECT_FALSE(IsHandleValid(resource));
}

TEST(ForgetResource, MakesAPlainHandle) {
    const Handle resource = NewResource({7, 0});
    carbon::ForgetResource(resource);
    EXPECT_EQ(GetResAttrs(resource), 0);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(HGetState(resource), 0);
    DisposeHandle(resource);
}

TEST(FindResource, DoesNotTakeANewHandleForTheResourceThatStoodThere) {
    const Handle resource = NewResource({7, 0});
    DisposeHandle(resource);  // wrong, and done by programs
    Handle again = nullptr;
    for (int i = 0; i < 500000 && again != resource; ++i) {
        again = NewHandle(1);
        if (again != resource) DisposeHandle(again);
    }
    ASSERT_EQ(again, resource);
    EXPECT_EQ(GetResAttrs(again), 0);
    EXPECT_EQ(ResError(), resNotFound);
    DisposeHandle(again);
    EXPECT_FALSE(carbon::EnterResource(again, {7, 0}));
}

}  // namespace
