// Adding, changing, writing and removing resources, and what the file holds afterwards.
#include "platform/resource_manager/ForkFixture.h"

namespace {

class Changing : public ForkFixture {
  protected:
    void SetUp() override {
        ForkFixture::SetUp();
        mSpec = NewFile();
        mFile = Open(mSpec);
    }
    // The same file as another program would see it.
    void Reopen() {
        CloseResFile(mFile);
        EXPECT_EQ(ResError(), noErr);
        mFile = Open(mSpec);
    }

    FSSpec mSpec{};
    ResFileRefNum mFile = 0;
};

TEST_F(Changing, AnAddedHandleIsTheResource) {
    const Handle handle = Add('TEXT', 128, "text", "Name");
    EXPECT_EQ(GetResAttrs(handle), resChanged);
    EXPECT_NE(HGetState(handle) & kHandleIsResourceMask, 0);
    EXPECT_EQ(Get1Resource('TEXT', 128), handle);
    EXPECT_EQ(HomeResFile(handle), mFile);
    EXPECT_EQ(GetResFileAttrs(mFile), mapChanged);
    EXPECT_EQ(ForkOf().size(), 286u);  // nothing is written yet
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 128), "text");
    EXPECT_EQ(NameOfResource(Get1Resource('TEXT', 128)), "Name");
}

TEST_F(Changing, AddingRefusesWhatIsNoPlainHandle) {
    AddResource(nullptr, 'TEXT', 1, PString(""));
    EXPECT_EQ(ResError(), addResFailed);
    const Handle handle = Add('TEXT', 128, "text");
    AddResource(handle, 'TEXT', 129, PString(""));
    EXPECT_EQ(ResError(), addResFailed);
    EXPECT_EQ(Count1Resources('TEXT'), 1);
    const Handle freed = NewHandle(1);
    DisposeHandle(freed);
    AddResource(freed, 'TEXT', 1, nullptr);
    EXPECT_EQ(ResError(), addResFailed);
}

TEST_F(Changing, NothingCanBeAddedToTheSystemFile) {
    UseResFile(kSystemResFile);
    const Handle handle = NewHandle(1);
    AddResource(handle, 'TEXT', 1, nullptr);
    EXPECT_EQ(ResError(), addResFailed);
    DisposeHandle(handle);
}

TEST_F(Changing, ADuplicateIDIsNotLookedAt) {
    Add('TEXT', 128, "first");
    Add('TEXT', 128, "second");
    EXPECT_EQ(Count1Resources('TEXT'), 2);
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 128), "first");
    EXPECT_EQ(TextIn(Get1IndResource('TEXT', 2)), "second");
}

TEST_F(Changing, AFullMapTakesNoMore) {
    for (int i = 0; i < 5458; ++i) Add('Many', ResID(i), "");
    const Handle handle = NewHandle(0);
    AddResource(handle, 'Many', 5458, nullptr);
    EXPECT_EQ(ResError(), addResFailed);
    EXPECT_EQ(Count1Resources('Many'), 5458);
    DisposeHandle(handle);
    UpdateResFile(mFile);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Changing, TooMuchDataStaysInMemoryAndTheOldForkInTheFile) {
    Add('TEXT', 128, "old");
    UpdateResFile(mFile);
    const auto before = ForkOf();
    Add('Big ', 1, std::string(9000000, 'x'));
    const Handle second = Add('Big ', 2, std::string(9000000, 'y'));
    UpdateResFile(mFile);
    EXPECT_EQ(ResError(), addRefFailed);
    EXPECT_EQ(ForkOf(), before);
    EXPECT_EQ(GetResAttrs(second), resChanged);
    RemoveResource(second);
    DisposeHandle(second);
    UpdateResFile(mFile);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_GT(ForkOf().size(), 9000000u);
}

TEST_F(Changing, ChangedDataAreWrittenByTheUpdate) {
    Add('TEXT', 128, "old");
    Add('TEXT', 129, "other");
    Reopen();
    Change(Get1Resource('TEXT', 128), "something longer than before");
    EXPECT_EQ(GetResAttrs(Get1Resource('TEXT', 128)), resChanged);
    UpdateResFile(mFile);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResAttrs(Get1Resource('TEXT', 128)), 0);
    EXPECT_EQ(GetResFileAttrs(mFile), 0);
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 128), "something longer than before");
    EXPECT_EQ(TextOfResource('TEXT', 129), "other");
}

TEST_F(Changing, AnUnchangedFileIsNotWritten) {
    Add('TEXT', 128, "text");
    Reopen();
    const auto before = ForkOf();
    const auto time = std::filesystem::last_write_time(Path("._file"));
    TextOfResource('TEXT', 128);
    UpdateResFile(mFile);
    Reopen();
    EXPECT_EQ(ForkOf(), before);
    EXPECT_EQ(std::filesystem::last_write_time(Path("._file")), time);
}

TEST_F(Changing, WhatWasChangedWithoutSayingSoIsNotWritten) {
    Add('TEXT', 128, "old");
    Reopen();
    PtrToXHand("new", Get1Resource('TEXT', 128), 3);
    UpdateResFile(mFile);
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 128), "old");
}

TEST_F(Changing, WriteResourceTakesTheDataAndClearsTheMark) {
    const Handle handle = Add('TEXT', 128, "first");
    WriteResource(handle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResAttrs(handle), 0);
    PtrToXHand("later", handle, 5);  // without ChangedResource
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 128), "first");
}

TEST_F(Changing, WriteResourceOfAPurgedHandleWritesNoData) {
    const Handle handle = Add('TEXT', 128, "text");
    EmptyHandle(handle);
    WriteResource(handle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResourceSizeOnDisk(handle), 0);
}

TEST_F(Changing, WriteResourceDoesNothingToAnUnchangedOrProtectedOne) {
    const Handle handle = Add('TEXT', 128, "text");
    WriteResource(handle);
    PtrToXHand("other", handle, 5);
    WriteResource(handle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResourceSizeOnDisk(handle), 4);
    SetResAttrs(handle, resProtected | resChanged);
    WriteResource(handle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResourceSizeOnDisk(handle), 4);
    WriteResource(nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Changing, AProtectedResourceIsLeftAlone) {
    const Handle handle = Add('TEXT', 128, "text", "Name");
    WriteResource(handle);
    SetResAttrs(handle, resProtected);
    ChangedResource(handle);
    EXPECT_EQ(ResError(), resAttrErr);
    SetResInfo(handle, 200, PString("Other"));
    EXPECT_EQ(ResError(), resAttrErr);
    RemoveResource(handle);
    EXPECT_EQ(ResError(), rmvResFailed);
    EXPECT_EQ(GetResAttrs(handle), resProtected);
    EXPECT_EQ(Get1Resource('TEXT', 128), handle);
}

TEST_F(Changing, TheWholeSequenceOnAProtectedResourceWorks) {
    const Handle added = Add('TEXT', 128, "old", "Old");
    WriteResource(added);
    SetResAttrs(added, resProtected);
    Reopen();
    const Handle handle = Get1Resource('TEXT', 128);
    EXPECT_EQ(GetResAttrs(handle), resProtected);
    SetResAttrs(handle, 0);
    Change(handle, "new data");
    SetResInfo(handle, 300, PString("New"));
    EXPECT_EQ(ResError(), noErr);
    WriteResource(handle);
    SetResAttrs(handle, resProtected | resPurgeable);
    UpdateResFile(CurResFile());
    EXPECT_EQ(ResError(), noErr);
    Reopen();
    EXPECT_EQ(Get1Resource('TEXT', 128), nullptr);
    EXPECT_EQ(TextOfResource('TEXT', 300), "new data");
    EXPECT_EQ(NameOfResource(Get1Resource('TEXT', 300)), "New");
    EXPECT_EQ(GetResAttrs(Get1Resource('TEXT', 300)), resProtected | resPurgeable);
}

TEST_F(Changing, AttributesAloneAreWrittenToo) {
    WriteResource(Add('TEXT', 128, "text"));
    Reopen();
    SetResAttrs(Get1Resource('TEXT', 128), resPreload);
    Reopen();
    EXPECT_EQ(GetResAttrs(Get1Resource('TEXT', 128)), resPreload);
}

TEST_F(Changing, AnEmptyNameKeepsTheOldOne) {
    const Handle handle = Add('TEXT', 128, "text", "Name");
    SetResInfo(handle, 129, PString(""));
    EXPECT_EQ(NameOfResource(handle), "Name");
    SetResInfo(handle, 130, nullptr);
    EXPECT_EQ(NameOfResource(handle), "Name");
    EXPECT_EQ(Get1Resource('TEXT', 130), handle);
    SetResInfo(nullptr, 1, nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Changing, RemovingMakesAPlainHandleAndTheFileShrinks) {
    Add('TEXT', 128, std::string(1000, 'x'));
    Add('TEXT', 129, "stays");
    Reopen();
    const auto before = ForkOf().size();
    const Handle handle = Get1Resource('TEXT', 128);
    RemoveResource(handle);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResAttrs(handle), 0);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(GetHandleSize(handle), 1000);
    DisposeHandle(handle);
    EXPECT_EQ(Get1Resource('TEXT', 128), nullptr);
    EXPECT_EQ(ForkOf().size(), before);
    UpdateResFile(mFile);
    EXPECT_EQ(ForkOf().size(), before - 1000 - 4 - 12);
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 129), "stays");
}

TEST_F(Changing, TheLastResourceOfATypeTakesTheTypeWithIt) {
    const Handle handle = Add('TEXT', 128, "text");
    RemoveResource(handle);
    DisposeHandle(handle);
    EXPECT_EQ(Count1Types(), 0);
    UpdateResFile(mFile);
    EXPECT_EQ(ForkOf().size(), 286u);
}

TEST_F(Changing, RemovesFromTheCurrentFileOnly) {
    const Handle handle = Add('TEXT', 128, "text");
    OpenNew("newer");
    RemoveResource(handle);
    EXPECT_EQ(ResError(), rmvResFailed);
    const Handle plain = NewHandle(1);
    RemoveResource(plain);
    EXPECT_EQ(ResError(), rmvResFailed);
    DisposeHandle(plain);
    RemoveResource(nullptr);
    EXPECT_EQ(ResError(), rmvResFailed);
}

TEST_F(Changing, AFileMadeReadOnlyInMemoryIsNotWritten) {
    SetResFileAttrs(mFile, mapReadOnly);
    EXPECT_EQ(ResError(), noErr);
    Add('TEXT', 128, "text");
    UpdateResFile(mFile);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(ForkOf().size(), 286u);
    SetResFileAttrs(mFile, mapChanged);
    UpdateResFile(mFile);
    EXPECT_GT(ForkOf().size(), 286u);
}

TEST_F(Changing, WrittenDataReachAFileThatWasNotedAsUnchanged) {
    const Handle handle = Add('TEXT', 128, "text");
    UpdateResFile(mFile);
    Change(handle, "changed");
    SetResFileAttrs(mFile, 0);
    WriteResource(handle);
    Reopen();
    EXPECT_EQ(TextOfResource('TEXT', 128), "changed");
}

TEST_F(Changing, KeepsSettingAttributesOfAnUnknownFileNoError) {
    EXPECT_EQ(GetResFileAttrs(31000), 0);
    EXPECT_EQ(ResError(), resFNotFound);
    SetResFileAttrs(31000, mapChanged);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Changing, HandlesGivenOutBeforeAnUpdateStayTheSame) {
    const Handle handle = Add('TEXT', 128, "text");
    const Handle other = Add('TEXT', 129, "other");
    UpdateResFile(mFile);
    EXPECT_EQ(Get1Resource('TEXT', 128), handle);
    Change(other, "changed");
    UpdateResFile(mFile);
    ReleaseResource(handle);
    ReleaseResource(other);
    EXPECT_EQ(TextOfResource('TEXT', 128), "text");
    EXPECT_EQ(TextOfResource('TEXT', 129), "changed");
}

}  // namespace
