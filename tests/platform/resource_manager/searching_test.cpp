// Finding resources: the chain, the current file, the load flag, what a failure leaves.
#include <Carbon/LowMem.h>

#include <set>

#include "file_manager/metadata/metadata.h"
#include "platform/resource_manager/ResourceFixture.h"
#include "resource_manager/fork.h"

namespace {

// Two files; the older one is reached from the newer one, not the other way round.
class Searching : public ResourceFixture {
  protected:
    void SetUp() override {
        ResourceFixture::SetUp();
        mOlder = OpenNew("older");
        Add('TEXT', 128, "older 128", "Common");
        Add('TEXT', 129, "older 129", "Only \x8a lder");
        Add('OldT', 1, "old type");
        mNewer = OpenNew("newer");
        Add('TEXT', 128, "newer 128", "Common");
        Add('TEXT', 130, "newer 130");
        Add('NewT', 1, "new type");
    }

    ResFileRefNum mOlder = 0, mNewer = 0;
};

TEST_F(Searching, StartsAtTheCurrentFileAndGoesOnToOlderOnes) {
    EXPECT_EQ(TextIn(GetResource('TEXT', 128)), "newer 128");
    EXPECT_EQ(TextIn(GetResource('TEXT', 129)), "older 129");
    UseResFile(mOlder);
    EXPECT_EQ(TextIn(GetResource('TEXT', 128)), "older 128");
    EXPECT_EQ(GetResource('TEXT', 130), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Searching, TheCallsWithAOneLookAtTheCurrentFileAlone) {
    EXPECT_EQ(Get1Resource('TEXT', 129), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(Get1Resource('OldT', 1), nullptr);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(Get1NamedResource('TEXT', PString("Only \x8a lder")), nullptr);
    EXPECT_EQ(Count1Resources('TEXT'), 2);
    EXPECT_EQ(CountResources('TEXT'), 4);
}

TEST_F(Searching, KeepsATypeThatIsNowhereNoError) {
    GetResAttrs(nullptr);
    EXPECT_EQ(GetResource('None', 1), nullptr);
    EXPECT_EQ(ResError(), noErr);
    GetResAttrs(nullptr);
    EXPECT_EQ(Get1NamedResource('None', PString("name")), nullptr);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Searching, AMissingIDOfAKnownTypeIsAnError) {
    EXPECT_EQ(GetResource('TEXT', 999), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(GetNamedResource('TEXT', PString("nobody")), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(GetNamedResource('TEXT', nullptr), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Searching, ComparesNamesWithoutCaseButWithMarks) {
    EXPECT_EQ(TextIn(GetNamedResource('TEXT', PString("cOMMON"))), "newer 128");
    EXPECT_EQ(TextIn(GetNamedResource('TEXT', PString("ONLY \x80 LDER"))), "older 129");
    EXPECT_EQ(GetNamedResource('TEXT', PString("only a lder")), nullptr);
}

TEST_F(Searching, AskingAgainGivesTheSameHandle) {
    const Handle handle = GetResource('TEXT', 128);
    EXPECT_EQ(GetNamedResource('TEXT', PString("Common")), handle);
    EXPECT_EQ(GetIndResource('TEXT', 1), handle);
    EXPECT_EQ(HomeResFile(handle), mNewer);
    EXPECT_EQ(HomeResFile(GetResource('TEXT', 129)), mOlder);
}

TEST_F(Searching, IndexesGoThroughTheCurrentFileFirst) {
    const char* const kOrder[] = {"newer 128", "newer 130", "older 128", "older 129"};
    for (SInt16 i = 1; i <= 4; ++i) EXPECT_EQ(TextIn(GetIndResource('TEXT', i)), kOrder[i - 1]);
    for (const SInt16 wrong : {SInt16(0), SInt16(-1), SInt16(5), SInt16(-32768)}) {
        EXPECT_EQ(GetIndResource('TEXT', wrong), nullptr);
        EXPECT_EQ(ResError(), resNotFound);
    }
    EXPECT_EQ(Get1IndResource('TEXT', 3), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
    EXPECT_EQ(GetIndResource('None', 1), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(Searching, CountsEachTypeOnce) {
    EXPECT_EQ(CountTypes(), 3);
    EXPECT_EQ(Count1Types(), 2);
    std::set<ResType> types;
    ResType type = 0;
    for (SInt16 i = 1; i <= 3; ++i) {
        GetIndType(&type, i);
        types.insert(type);
    }
    EXPECT_EQ(types, (std::set<ResType>{'TEXT', 'NewT', 'OldT'}));
    GetIndType(&type, 4);
    EXPECT_EQ(type, 0u);
    type = 1;
    Get1IndType(&type, 0);
    EXPECT_EQ(type, 0u);
    Get1IndType(&type, 2);
    EXPECT_EQ(type, ResType{'NewT'});
    EXPECT_EQ(CountResources('None'), 0);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Searching, UniqueIDsAreFree) {
    for (int i = 0; i < 20; ++i) {
        const ResID id = UniqueID('TEXT');
        EXPECT_GE(id, 0);
        EXPECT_EQ(GetResource('TEXT', id), nullptr);
        Add('TEXT', id, "one more");
    }
    UseResFile(mOlder);
    EXPECT_EQ(Get1Resource('TEXT', Unique1ID('TEXT')), nullptr);
}

// The map of one file has room for some five thousand. The time this took grew with the square of
// their number: seconds for each call.
TEST_F(Searching, UniqueIDsOfANearlyFullTypeAreFoundInOneWalk) {
    constexpr int kFiles = 6, kEach = 5450;  // more than there are IDs from 128 on
    for (int i = 0; i < kFiles; ++i) {
        carbon::StoredFork fork;
        fork.types.push_back({'Full', {}});
        for (int j = 0; j < kEach; ++j)
            fork.types[0].resources.push_back(
                {SInt16(128 + (i * kEach + j) % (32768 - 128)), 0, "", {}});
        std::vector<UInt8> bytes;
        ASSERT_EQ(carbon::BuildFork(fork, &bytes), noErr);
        const auto name = "full" + std::to_string(i);
        const FSSpec spec = SpecOf(Write(name));
        ASSERT_EQ(carbon::ReplaceResourceFork(Path(name), bytes), noErr);
        Open(spec);
    }
    Add('Full', 127, "below those of applications");
    for (int i = 0; i < 300; ++i) EXPECT_EQ(UniqueID('Full'), 0);
}

TEST_F(Searching, UseResFileLeavesThingsAloneForAnUnknownNumber) {
    for (const SInt16 wrong : {SInt16(-1), SInt16(31000)}) {
        UseResFile(wrong);
        EXPECT_EQ(ResError(), resFNotFound);
        EXPECT_EQ(CurResFile(), mNewer);
    }
    UseResFile(kSystemResFile);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(CurResFile(), kSystemResFile);
    EXPECT_EQ(GetResource('TEXT', 128), nullptr);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Searching, WithoutTheLoadFlagHandlesAreEmptyUntilLoaded) {
    const FSSpec spec = SpecOf(Path("older"));
    UseResFile(mOlder);
    CloseResFile(mOlder);
    Open(spec, fsRdPerm);
    SetResLoad(false);
    EXPECT_FALSE(LMGetResLoad());
    const Handle handle = Get1Resource('TEXT', 129);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(*handle, nullptr);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(GetResourceSizeOnDisk(handle), 9);
    LoadResource(handle);
    EXPECT_EQ(TextIn(handle), "older 129");
    EXPECT_EQ(Get1Resource('TEXT', 129), handle);  // loaded, so the flag has no say
    EXPECT_EQ(TextIn(handle), "older 129");
    SetResLoad(true);
    EXPECT_TRUE(LMGetResLoad());
}

TEST_F(Searching, APurgedResourceIsReadAgainIntoItsHandle) {
    const Handle added = GetResource('TEXT', 128);
    WriteResource(added);
    EmptyHandle(added);
    EXPECT_EQ(GetResource('TEXT', 128), added);
    EXPECT_EQ(TextIn(added), "newer 128");
    EmptyHandle(added);
    SetResLoad(false);
    EXPECT_EQ(TextIn(GetResource('TEXT', 128)), "empty handle");
    LoadResource(added);
    EXPECT_EQ(TextIn(added), "newer 128");
}

TEST_F(Searching, AHandleThatWasDisposedOfIsNotGivenOutAgain) {
    const Handle handle = GetResource('TEXT', 129);
    WriteResource(handle);
    DisposeHandle(handle);  // wrong, and done by programs
    const Handle again = GetResource('TEXT', 129);
    EXPECT_NE(again, handle);
    EXPECT_EQ(TextIn(again), "older 129");
}

TEST_F(Searching, LoadedHandlesCarryTheStateOfTheirAttributes) {
    const Handle handle = Add('Stat', 1, "x");
    WriteResource(handle);
    SetResAttrs(handle, resLocked | resPurgeable);
    ReleaseResource(handle);
    const Handle again = GetResource('Stat', 1);
    EXPECT_EQ(UInt8(HGetState(again)),
              kHandleIsResourceMask | kHandleLockedMask | kHandlePurgeableMask);
    HUnlock(again);
}

TEST_F(Searching, CompressedResourcesCannotBeReadAsHandles) {
    const Handle handle = Add('Comp', 1, std::string("\xA8\x9F\x65\x72", 4) + "rest");
    Add('Comp', 2, "plain after all");
    const Handle plain = Get1Resource('Comp', 2);
    WriteResource(handle);
    SetResAttrs(handle, 1);
    WriteResource(plain);
    SetResAttrs(plain, 1);
    ReleaseResource(handle);
    EXPECT_EQ(GetResource('Comp', 1), nullptr);
    EXPECT_EQ(ResError(), CantDecompress);
    ReleaseResource(plain);
    EXPECT_EQ(TextIn(GetResource('Comp', 2)), "plain after all");
}

TEST_F(Searching, AFileOutOfTheChainIsNotSearched) {
    EXPECT_EQ(DetachResourceFile(mOlder), noErr);
    EXPECT_EQ(GetResource('OldT', 1), nullptr);
    EXPECT_EQ(DetachResourceFile(mOlder), resFNotFound);
    UseResFile(mOlder);
    EXPECT_EQ(ResError(), resFNotFound);
    EXPECT_EQ(InsertResourceFile(mOlder, 3), paramErr);
    EXPECT_EQ(InsertResourceFile(mOlder, kRsrcChainAboveAllMaps), noErr);
    EXPECT_EQ(InsertResourceFile(mOlder, kRsrcChainAboveAllMaps), resFNotFound);
    EXPECT_EQ(CurResFile(), mNewer);  // which the other one is above now
    EXPECT_EQ(GetResource('OldT', 1), nullptr);
    UseResFile(mOlder);
    EXPECT_EQ(TextIn(GetResource('NewT', 1)), "new type");
}

TEST_F(Searching, InsertsBelowAndAboveTheApplication) {
    ASSERT_EQ(DetachResourceFile(mNewer), noErr);
    EXPECT_EQ(CurResFile(), mOlder);
    for (const RsrcChainLocation where : {RsrcChainLocation(kRsrcChainBelowApplicationMap),
                                          RsrcChainLocation(kRsrcChainAboveApplicationMap),
                                          RsrcChainLocation(kRsrcChainBelowSystemMap)}) {
        EXPECT_EQ(InsertResourceFile(mNewer, where), noErr);
        EXPECT_EQ(TextIn(GetResource('NewT', 1)), "new type") << where;
        EXPECT_EQ(DetachResourceFile(mNewer), noErr);
    }
    EXPECT_EQ(InsertResourceFile(mNewer, kRsrcChainBelowSystemMap), noErr);
    UseResFile(kSystemResFile);
    EXPECT_EQ(TextIn(GetResource('NewT', 1)), "new type");
    CloseResFile(mNewer);
}

}  // namespace
