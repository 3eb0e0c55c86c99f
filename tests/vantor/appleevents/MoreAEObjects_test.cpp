// Object specifiers, key by key.
#include "vantor/appleevents/MoreAEObjects.h"

#include <gtest/gtest.h>

#include "support/DebuggerTexts.h"
#include "support/PascalString.h"
#include "support/ScriptedRecorder/EventText.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace {

class MoreAEO : public testing::Test {
  protected:
    StAEDescriptor mApplication, mResult;
};

TEST_F(MoreAEO, APropertyIsNamedByItsCode) {
    EXPECT_EQ(MoreAEOCreatePropertyObject('srvM', mApplication, mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'prop'; from=null; form=enum 'prop'; seld=type 'srvM'}");
}

TEST_F(MoreAEO, KeepsAProcessBeingAPropertyKeyedByItsNumber) {
    const ProcessSerialNumber psn = {1, 0x0203};
    EXPECT_EQ(MoreAEOCreateProcessObject(&psn, mApplication, mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'prop'; from=null; form=enum 'prop'; seld=psn  0000000100000203}");
}

TEST_F(MoreAEO, ASelectionIsAnOrdinalOfObjects) {
    EXPECT_EQ(MoreAEOCreateSelectionObject(kAEAll, mApplication, mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'cobj'; from=null; form=enum 'indx'; seld=abso 'all '}");
}

TEST_F(MoreAEO, ElementsAreFoundByIdPositionAndName) {
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormUniqueID('Disc', mApplication, 258, false, mResult),
              noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'Disc'; from=null; form=enum 'ID  '; seld=long 00000102}");
    mResult.Dispose();
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormAbsPos('Disc', mApplication, -1, false, mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'Disc'; from=null; form=enum 'indx'; seld=long FFFFFFFF}");
    mResult.Dispose();
    EXPECT_EQ(
        MoreAEOCreateObjSpecifierFormName('Disc', mApplication, PString("ab"), false, mResult),
        noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'Disc'; from=null; form=enum 'name'; seld=TEXT 6162}");
}

TEST_F(MoreAEO, KeepsDisposingAKeyThatIsConsumedAlready) {
    StAEDescriptor disc;
    ASSERT_EQ(MoreAEOCreateObjSpecifierFormAbsPos('Disc', mApplication, 1, false, disc), noErr);
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormAbsPos('file', disc, 2, true, mResult), noErr);
    EXPECT_EQ(disc.mDesc.descriptorType, typeNull);
    EXPECT_EQ(+disc.mDesc.dataHandle, nullptr);
}

TEST_F(MoreAEO, ANullContainerIsShownAndRefused) {
    const DebuggerTexts shown;
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormAbsPos('Disc', nullptr, 1, false, mResult), paramErr);
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormUniqueID('Disc', nullptr, 1, false, mResult), paramErr);
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormName('Disc', nullptr, PString("a"), false, mResult),
              paramErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List(3, "MoreAssertQ failure: pContainer != nil"));
}

TEST_F(MoreAEO, ANullResultAndANullNameAreShown) {
    const DebuggerTexts shown;
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormAbsPos('Disc', mApplication, 1, false, nullptr),
              paramErr);
    EXPECT_EQ(MoreAEOCreateObjSpecifierFormName('Disc', mApplication, nullptr, false, mResult),
              paramErr);
    EXPECT_EQ(shown.Texts(), (DebuggerTexts::List{"MoreAssertQ failure: pObjSpecifier != nil",
                                                  "MoreAssertQ failure: pKeyData != nil"}));
}

TEST_F(MoreAEO, KeepsTwoByteLongsHorizontalFirstInAPosition) {
    EXPECT_EQ(MoreAEOCreatePositionList(Point{10, 20}, mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult), "list [long 0014, long 000A]");
}

class MoreAEOAlias : public MoreAEO {
  protected:
    void SetUp() override {
        mHandle = NewHandle(8);
        std::memcpy(*mHandle, "\0\0\0\0\0\6xy", 8);  // says 6 of itself, and has 8 bytes
    }
    void TearDown() override { DisposeHandle(mHandle); }
    AliasHandle Alias() const { return reinterpret_cast<AliasHandle>(mHandle); }
    Handle mHandle;
};

TEST_F(MoreAEOAlias, DescriptorHasTheHandlesFullSize) {
    EXPECT_EQ(MoreAEOCreateAliasDesc(Alias(), mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult), "alis 0000000000067879");
    EXPECT_TRUE(IsHandleValid(mHandle)) << "still the caller's";
}

TEST_F(MoreAEOAlias, HandleKeepsItsState) {
    HPurge(mHandle);
    const SInt8 before = HGetState(mHandle);
    EXPECT_EQ(MoreAEOCreateAliasDesc(Alias(), mResult), noErr);
    EXPECT_EQ(HGetState(mHandle), before);
}

TEST_F(MoreAEOAlias, KeepsBeingTheKeyOfAPosition) {
    EXPECT_EQ(MoreAEOCreateAliasObject(Alias(), mApplication, mResult), noErr);
    EXPECT_EQ(TextOfDesc(mResult),
              "obj  {want=type 'alis'; from=null; form=enum 'indx'; seld=alis 0000000000067879}");
}

}  // namespace
