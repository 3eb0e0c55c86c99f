// The resource guards on real resource files.
#include "vantor/foundation/StResource.h"

#include <type_traits>

#include "platform/resource_manager/ResourceFixture.h"
#include "support/RealCall.h"
#include "support/Thrown.h"

namespace {

int gSetResInfoCalls = 0;
int gAddResourceCalls = 0;

}  // namespace

// In front of the platform's own, to count.
void SetResInfo(Handle theResource, ResID theID, ConstStr255Param name) {
    ++gSetResInfoCalls;
    REAL_CALL(SetResInfo)(theResource, theID, name);
}

void AddResource(Handle theData, ResType theType, ResID theID, ConstStr255Param name) {
    ++gAddResourceCalls;
    REAL_CALL(AddResource)(theData, theType, theID, name);
}

namespace {

static_assert(!std::is_polymorphic_v<StResource> && !std::is_polymorphic_v<StNewResource>);
static_assert(sizeof(StResource) == sizeof(Handle));
static_assert(sizeof(StDeleteResource) == sizeof(StResource));

// The fields in their order, as a derived class of another library sees them.
struct NewResourceFields : StNewResource {
    static_assert(std::is_same_v<decltype(mType), ResType>);
    static_assert(std::is_same_v<decltype(mID), SInt16>);
    static_assert(std::is_same_v<decltype(mAttributes), SInt16>);
    static_assert(std::is_same_v<decltype(mName), Str255>);
    using StNewResource::StNewResource;
    std::vector<const void*> Places() const {
        return {&mResourceH,         &mWriteOnDestroy, &mType,          &mID, &mAttributes, &mName,
                &mAttributesChanged, &mNameChanged,    &mResourceExists};
    }
};

class GuardTest : public ResourceFixture {
  protected:
    void SetUp() override {
        ResourceFixture::SetUp();
        mOlder = OpenNew("older");
        WriteResource(Add('TEXT', 200, "in the older file"));
        mSpec = NewFile();
        mFile = Open(mSpec);
        WriteResource(Add('TEXT', 128, "text", "Name"));
        WriteResource(Add('TEXT', 129, "other"));
        gSetResInfoCalls = gAddResourceCalls = 0;
    }
    // What a program that opens the file afresh finds.
    std::string Stored(ResType inType, ResID inID) {
        Reopen();
        return TextOfResource(inType, inID);
    }
    void Reopen() {
        CloseResFile(mFile);
        EXPECT_EQ(ResError(), noErr);
        mFile = Open(mSpec);
    }
    static void Protect(ResID inID) { SetResAttrs(Get1Resource('TEXT', inID), resProtected); }

    FSSpec mSpec{};
    ResFileRefNum mOlder = 0, mFile = 0;
};

using StResourceTest = GuardTest;
using StNewResourceTest = GuardTest;
using StDeleteResourceTest = GuardTest;

TEST_F(StResourceTest, HoldsNullWhenNothingIsFound) {
    const StResource byID('TEXT', ResIDT{999}, false, true);
    EXPECT_EQ(byID.Get(), nullptr);
    const StResource byName('TEXT', PString("nobody"), false, false);
    EXPECT_EQ(byName.Get(), nullptr);
}

TEST_F(StResourceTest, ThrowsTheManagersCodeOrNotFound) {
    EXPECT_EQ(CodeThrownBy([] { StResource('TEXT', ResIDT{999}, true, true); }), resNotFound);
    // The manager reports no error for a type that is nowhere.
    EXPECT_EQ(CodeThrownBy([] { StResource('None', ResIDT{1}, true, false); }), resNotFound);
    EXPECT_EQ(CodeThrownBy([] { StResource('TEXT', PString("nobody"), true, true); }), resNotFound);
    StResource guard(nullptr);
    EXPECT_EQ(CodeThrownBy([&] { guard.GetIndResource('TEXT', 9, true, true); }), resNotFound);
    EXPECT_EQ(guard.Get(), nullptr);
}

TEST_F(StResourceTest, LooksIntoTheCurrentFileOrDownTheChain) {
    EXPECT_EQ(StResource('TEXT', ResIDT{200}, false, true).Get(), nullptr);
    EXPECT_EQ(TextIn(StResource('TEXT', ResIDT{200}, true, false)), "in the older file");
    EXPECT_EQ(TextIn(StResource('TEXT', PString("name"), true, true)), "text");
    StResource guard(nullptr);
    EXPECT_EQ(TextIn(guard.GetIndResource('TEXT', 2, true, true)), "other");
    EXPECT_EQ(TextIn(guard.GetIndResource('TEXT', 3, true, false)), "in the older file");
}

TEST_F(StResourceTest, ReleasesAtTheEndOfTheScope) {
    Handle handle = nullptr;
    {
        const StResource guard('TEXT', ResIDT{128}, true, true);
        handle = guard;
        EXPECT_TRUE(IsHandleValid(handle));
    }
    EXPECT_FALSE(IsHandleValid(handle));
    EXPECT_EQ(TextOfResource('TEXT', 128), "text");
}

TEST_F(StResourceTest, AFetchLetsTheOldHoldingGoEvenWhenItFails) {
    StResource guard('TEXT', ResIDT{128}, true, true);
    const Handle first = guard;
    guard.GetResource('TEXT', ResIDT{129}, true, true);
    EXPECT_FALSE(IsHandleValid(first));
    const Handle second = guard;
    EXPECT_EQ(guard.GetResource('TEXT', ResIDT{999}, false, true), nullptr);
    EXPECT_FALSE(IsHandleValid(second));
    EXPECT_EQ(guard.Get(), nullptr);
}

TEST_F(StResourceTest, AdoptingTheSameHandleDoesNotDisposeOfIt) {
    StResource guard('TEXT', ResIDT{128}, true, true);
    const Handle handle = guard;
    guard.Adopt(handle);
    EXPECT_TRUE(IsHandleValid(handle));
    const Handle plain = NewHandle(4);
    guard.Adopt(plain);
    EXPECT_FALSE(IsHandleValid(handle));
    EXPECT_EQ(guard.Get(), plain);
    guard.Adopt(nullptr);
    EXPECT_FALSE(IsHandleValid(plain));
}

TEST_F(StResourceTest, ADetachedHandleIsDisposedOf) {
    Handle handle = nullptr;
    {
        StResource guard('TEXT', ResIDT{128}, true, true);
        guard.Detach();
        handle = guard;
        GetResAttrs(handle);
        EXPECT_EQ(ResError(), resNotFound);
        EXPECT_TRUE(IsHandleValid(handle));
    }
    EXPECT_FALSE(IsHandleValid(handle));
    StResource(nullptr).Detach();
}

TEST_F(StNewResourceTest, FieldsStandInTheirOrder) {
    const NewResourceFields fields('TEXT', 128, 0, true);
    const auto places = fields.Places();
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
}

TEST_F(StNewResourceTest, MakesAResourceOfTheSizeAndWritesItAtTheEnd) {
    {
        StNewResource guard('NewR', 1, 4, true);
        EXPECT_FALSE(guard.ResourceExists());
        EXPECT_EQ(GetHandleSize(guard), 4);
        std::memcpy(*guard.Get(), "made", 4);
        guard.SetResName(PString("A name"));
        guard.SetResAttrs(resPurgeable);
    }
    EXPECT_EQ(Stored('NewR', 1), "made");
    const Handle handle = Get1Resource('NewR', 1);
    EXPECT_EQ(NameOfResource(handle), "A name");
    EXPECT_EQ(GetResAttrs(handle), resPurgeable);
}

TEST_F(StNewResourceTest, AResourceWrittenOnceIsChangedTheNextTime) {
    {
        StNewResource guard('NewR', 1, 4, true);
        std::memcpy(*guard.Get(), "made", 4);
        guard.Write(true);
        EXPECT_TRUE(guard.ResourceExists());
        std::memcpy(*guard.Get(), "next", 4);
        guard.Write(true);
    }
    EXPECT_EQ(gAddResourceCalls, 1);
    EXPECT_EQ(Stored('NewR', 1), "next");
}

TEST_F(StNewResourceTest, LeavesALargerResourceAndGrowsASmallerOne) {
    {
        StNewResource larger('TEXT', 129, 2, true);
        EXPECT_TRUE(larger.ResourceExists());
        EXPECT_EQ(GetHandleSize(larger), 5);
        StNewResource smaller('TEXT', 128, 6, true);
        EXPECT_EQ(GetHandleSize(smaller), 6);
        std::memcpy(*smaller.Get() + 4, "ed", 2);
    }
    EXPECT_EQ(Stored('TEXT', 128), "texted");
    EXPECT_EQ(TextOfResource('TEXT', 129), "other");
    EXPECT_EQ(gAddResourceCalls, 0);
}

TEST_F(StNewResourceTest, WritesNothingWhenToldSo) {
    {
        StNewResource guard('NewR', 1, 4, true);
        guard.DontWrite();
    }
    EXPECT_EQ(Get1Resource('NewR', 1), nullptr);
    {
        StNewResource guard('TEXT', 128, 4, true);
        std::memcpy(*guard.Get(), "lost", 4);
        guard.DontWrite();
    }
    EXPECT_EQ(Stored('TEXT', 128), "text");
}

TEST_F(StNewResourceTest, KeepsAProtectedResourceWithAttributesZeroAfterwards) {
    Protect(128);
    {
        StNewResource guard('TEXT', 128, 4, true);
        std::memcpy(*guard.Get(), "past", 4);
    }
    EXPECT_EQ(Stored('TEXT', 128), "past");
    EXPECT_EQ(GetResAttrs(Get1Resource('TEXT', 128)), 0);
}

TEST_F(StNewResourceTest, AProtectedResourceGetsTheAttributesThatWereSet) {
    Protect(128);
    {
        StNewResource guard('TEXT', 128, 4, true);
        guard.SetResAttrs(resProtected | resPreload);
    }
    Reopen();
    EXPECT_EQ(GetResAttrs(Get1Resource('TEXT', 128)), resProtected | resPreload);
}

TEST_F(StNewResourceTest, GivesANameOnlyWhenItIsAnother) {
    StNewResource same('TEXT', 128, 4, true);
    same.SetResName(PString("Name"));
    same.Write(false);
    EXPECT_EQ(gSetResInfoCalls, 0);
    StNewResource other('TEXT', 128, 4, true);
    other.SetResName(PString("NAME"));
    other.Write(true);
    EXPECT_EQ(gSetResInfoCalls, 1);
    EXPECT_EQ(NameOfResource(other), "NAME");
}

TEST_F(StNewResourceTest, AWriteWithoutTheFileLeavesTheMapForLater) {
    {
        StNewResource guard('NewR', 1, 4, true);
        guard.Write(false);
        EXPECT_EQ(GetResAttrs(guard), 0);
    }
    const auto second = Open(mSpec, fsRdPerm);
    EXPECT_EQ(Get1Resource('NewR', 1), nullptr);
    CloseResFile(second);
}

TEST_F(StNewResourceTest, ThrowsTheFirstErrorAndTriesNoSecondTime) {
    UseResFile(kSystemResFile);
    {
        StNewResource guard('NewR', 1, 4, true);
        EXPECT_EQ(CodeThrownBy([&] { guard.Write(true); }), addResFailed);
    }
    EXPECT_EQ(gAddResourceCalls, 1);
}

TEST_F(StNewResourceTest, TheDestructorKeepsItsErrorsToItself) {
    UseResFile(kSystemResFile);
    { StNewResource guard('NewR', 1, 4, true); }
    EXPECT_EQ(gAddResourceCalls, 1);
}

TEST_F(StNewResourceTest, ThrowsForAHandleThatCannotBeHad) {
    EXPECT_EQ(CodeThrownBy([] { StNewResource('NewR', 1, -1, true); }), SInt32{'nilP'});
    EXPECT_EQ(CodeThrownBy([] { StNewResource('TEXT', 128, 0x7FFFFFFF, true); }), memFullErr);
    StNewResource guard('NewR', 1, 4, true);
    guard.Adopt(nullptr);
    EXPECT_EQ(CodeThrownBy([&] { guard.Write(true); }), SInt32{'nilP'});
}

TEST_F(StDeleteResourceTest, RemovesAtTheEndOfTheScope) {
    Handle handle = nullptr;
    {
        const StDeleteResource guard('TEXT', 128, true, true);
        handle = guard;
        EXPECT_EQ(TextIn(handle), "text");
    }
    EXPECT_FALSE(IsHandleValid(handle));
    EXPECT_EQ(Stored('TEXT', 128), "null");
    EXPECT_EQ(TextOfResource('TEXT', 129), "other");
}

TEST_F(StDeleteResourceTest, DoesNothingWithoutAResource) {
    { const StDeleteResource guard('TEXT', 999, false, true); }
    EXPECT_EQ(CodeThrownBy([] { StDeleteResource('TEXT', 999, true, true); }), resNotFound);
    EXPECT_EQ(Count1Resources('TEXT'), 2);
}

}  // namespace
