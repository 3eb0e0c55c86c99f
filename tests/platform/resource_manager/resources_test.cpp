// What is told of one resource, and giving it back.
#include <Carbon/LowMem.h>

#include <thread>

#include "platform/resource_manager/ResourceFixture.h"

namespace {

class Resources : public ResourceFixture {
  protected:
    void SetUp() override {
        ResourceFixture::SetUp();
        mFile = OpenNew();
        mHandle = Add('TEXT', 128, "text", "Name");
        WriteResource(mHandle);
    }
    void ExpectNotAResource(Handle inHandle) {
        LMSetResErr(noErr);
        EXPECT_EQ(GetResAttrs(inHandle), 0);
        EXPECT_EQ(ResError(), resNotFound);
    }

    ResFileRefNum mFile = 0;
    Handle mHandle = nullptr;
};

TEST_F(Resources, NullPlainAndFreedHandlesAreNone) {
    const Handle plain = NewHandle(4);
    HSetRBit(plain);  // the bit alone makes no resource
    ExpectNotAResource(plain);
    ExpectNotAResource(nullptr);
    EXPECT_EQ(HomeResFile(plain), -1);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(GetResourceSizeOnDisk(plain), -1);
    EXPECT_EQ(ResError(), resNotFound);
    DisposeHandle(plain);
    ExpectNotAResource(plain);
}

TEST_F(Resources, AttributesOfAResourceClearTheError) {
    LMSetResErr(-1);
    EXPECT_EQ(GetResAttrs(mHandle), 0);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_NE(HGetState(mHandle) & kHandleIsResourceMask, 0);
}

TEST_F(Resources, TheErrorIsNotClearedByReadingNorByTheLoadFlag) {
    GetResAttrs(nullptr);
    EXPECT_EQ(ResError(), resNotFound);
    LMGetResLoad();
    CurResFile();
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(LMGetResErr(), resNotFound);
}

TEST_F(Resources, TheErrorBelongsToOneThread) {
    GetResAttrs(nullptr);
    OSErr seen = 1;
    std::thread([&] { seen = ResError(); }).join();
    EXPECT_EQ(seen, noErr);
}

TEST_F(Resources, GetResInfoTakesNullForWhatIsNotWanted) {
    ResID id = 0;
    ResType type = 0;
    Str255 name;
    GetResInfo(mHandle, &id, &type, name);
    EXPECT_EQ(id, 128);
    EXPECT_EQ(type, ResType{'TEXT'});
    EXPECT_EQ(TextOf(name), "Name");
    GetResInfo(mHandle, nullptr, nullptr, nullptr);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(NameOfResource(Add('TEXT', 129, "x")), "");
    GetResInfo(nullptr, &id, &type, name);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Resources, ReleasingFreesTheMemoryAndAskingReadsItAgain) {
    ReleaseResource(mHandle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_FALSE(IsHandleValid(mHandle));
    ReleaseResource(mHandle);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(TextOfResource('TEXT', 128), "text");
}

TEST_F(Resources, ReleasingLeavesAPlainHandleAlone) {
    const Handle plain = NewHandle(4);
    ReleaseResource(plain);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_TRUE(IsHandleValid(plain));
    DisposeHandle(plain);
}

TEST_F(Resources, KeepsAChangedResourceFromBeingReleased) {
    ChangedResource(mHandle);
    ReleaseResource(mHandle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_TRUE(IsHandleValid(mHandle));
    EXPECT_EQ(GetResAttrs(mHandle), resChanged);
}

TEST_F(Resources, DetachingMakesAPlainHandleAndTheResourceComesBackAsANewOne) {
    DetachResource(mHandle);
    EXPECT_EQ(ResError(), noErr);
    ExpectNotAResource(mHandle);
    EXPECT_EQ(HGetState(mHandle) & kHandleIsResourceMask, 0);
    const Handle again = Get1Resource('TEXT', 128);
    EXPECT_NE(again, mHandle);
    EXPECT_EQ(TextIn(again), "text");
    DisposeHandle(mHandle);
    DetachResource(mHandle);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Resources, AChangedResourceCannotBeDetached) {
    ChangedResource(mHandle);
    DetachResource(mHandle);
    EXPECT_EQ(ResError(), resAttrErr);
    EXPECT_EQ(HomeResFile(mHandle), mFile);
}

TEST_F(Resources, LoadingAPlainHandleIsNoError) {
    const Handle plain = NewEmptyHandle();
    LMSetResErr(-1);
    LoadResource(plain);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(*plain, nullptr);
    DisposeHandle(plain);
}

TEST_F(Resources, ANewHandleIsNotTakenForTheResourceThatStoodThere) {
    DisposeHandle(mHandle);  // wrong, and done by programs
    Handle again = nullptr;
    for (int i = 0; i < 500000 && again != mHandle; ++i) {
        again = NewHandle(1);
        if (again != mHandle) DisposeHandle(again);
    }
    ASSERT_EQ(again, mHandle) << "its place was not used again";
    ExpectNotAResource(again);
    DisposeHandle(again);
}

TEST_F(Resources, PartsAreReadAndWrittenWithoutTheHandle) {
    ReleaseResource(mHandle);
    SetResLoad(false);
    const Handle handle = Get1Resource('TEXT', 128);
    char bytes[8] = "";
    ReadPartialResource(handle, 1, bytes, 2);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_STREQ(bytes, "ex");
    ReadPartialResource(handle, 3, bytes, 2);
    EXPECT_EQ(ResError(), inputOutOfBounds);
    ReadPartialResource(handle, -1, bytes, 1);
    EXPECT_EQ(ResError(), inputOutOfBounds);
    WritePartialResource(handle, 0, "T", 1);
    EXPECT_EQ(ResError(), noErr);
    WritePartialResource(handle, 4, "ual", 3);
    EXPECT_EQ(ResError(), writingPastEnd);
    EXPECT_EQ(GetResourceSizeOnDisk(handle), 7);
    EXPECT_EQ(GetMaxResourceSize(handle), 7);
    LoadResource(handle);
    EXPECT_EQ(TextIn(handle), "Textual");
    ReadPartialResource(handle, 0, bytes, 4);
    EXPECT_EQ(ResError(), resourceInMemory);
    WritePartialResource(handle, 6, "s", 1);
    EXPECT_EQ(ResError(), resourceInMemory);
    EXPECT_EQ(TextIn(handle), "Textual");
    SetResourceSize(handle, 2);
    EXPECT_EQ(ResError(), resourceInMemory);
    EXPECT_EQ(GetResourceSizeOnDisk(handle), 2);
    SetResourceSize(handle, -1);
    EXPECT_EQ(ResError(), paramErr);
    ReadPartialResource(nullptr, 0, bytes, 1);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Resources, PartsOfAProtectedResourceAreNotWritten) {
    SetResAttrs(mHandle, resProtected);
    WritePartialResource(mHandle, 0, "T", 1);
    EXPECT_EQ(ResError(), resAttrErr);
    SetResourceSize(mHandle, 1);
    EXPECT_EQ(ResError(), resAttrErr);
    EXPECT_EQ(GetResourceSizeOnDisk(mHandle), 4);
}

}  // namespace
