// Features of the system, as it is and as tests make it.
#include "vantor/foundation/UEnvironment.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>

#include "platform/code_fragment_manager/Fragment.h"
#include "support/PascalString.h"

namespace {

static_assert(offsetof(SEnvironInfo, features) == 0 && offsetof(SEnvironInfo, systemVersion) == 4);
static_assert(offsetof(SEnvironInfo, appearanceVersion) == 8 && sizeof(SEnvironInfo) == 12);

// Puts every selector that a test changes, and the features, back.
class UEnvironmentTest : public testing::Test {
  protected:
    ~UEnvironmentTest() override {
        for (const auto& [selector, value] : mBefore) SetGestaltValue(selector, value);
        UEnvironment::sEnvironInfo = {};
    }

    void Remember(OSType inSelector) {
        SInt32 value = 0;
        ASSERT_EQ(Gestalt(inSelector, &value), noErr);
        mBefore.emplace(inSelector, value);
    }

    void Set(OSType inSelector, SInt32 inValue) {
        Remember(inSelector);
        SetGestaltValue(inSelector, inValue);
    }

    void Delete(OSType inSelector) {
        Remember(inSelector);
        DeleteGestaltValue(inSelector);
    }

    bool HasAfterInit(UInt32 inMask) {
        UEnvironment::InitEnvironment();
        return UEnvironment::HasFeature(inMask);
    }

  private:
    std::map<OSType, SInt32> mBefore;
};

TEST_F(UEnvironmentTest, HasNoFeatureBeforeItIsInitialised) {
    for (UInt32 bit = 1; bit != 0; bit <<= 1) EXPECT_FALSE(UEnvironment::HasFeature(bit));
    EXPECT_TRUE(UEnvironment::HasFeature(0));
    EXPECT_FALSE(UEnvironment::IsAppearanceRunning());
}

TEST_F(UEnvironmentTest, AsksTheSystem) {
    UEnvironment::InitEnvironment();
    EXPECT_EQ(UEnvironment::sEnvironInfo.systemVersion, 0x1049);
    EXPECT_EQ(UEnvironment::sEnvironInfo.appearanceVersion, 0x0110);
    EXPECT_EQ(UEnvironment::sEnvironInfo.features, kFeatureAppearance | kFeatureAppearance101 |
                                                       kFeatureAppearance110 | kFeatureWindowMgr |
                                                       kFeatureAquaMenuLayout);
    EXPECT_TRUE(UEnvironment::IsAppearanceRunning());
}

TEST_F(UEnvironmentTest, NeedsAllFeaturesOfAMask) {
    UEnvironment::SetFeature(0x3, 1);
    EXPECT_TRUE(UEnvironment::HasFeature(0x3));
    EXPECT_FALSE(UEnvironment::HasFeature(0x7));
    UEnvironment::SetFeature(0x2, 0);
    EXPECT_FALSE(UEnvironment::HasFeature(0x3));
    EXPECT_TRUE(UEnvironment::HasFeature(0x1));
}

TEST_F(UEnvironmentTest, LeavesOtherBitsAloneWhenAskedAgain) {
    UEnvironment::SetFeature(0x80000001, 0xFF);
    Set(gestaltMenuMgrAttr, 0);
    EXPECT_FALSE(HasAfterInit(kFeatureAquaMenuLayout));
    Set(gestaltMenuMgrAttr, 2);
    EXPECT_TRUE(HasAfterInit(kFeatureAquaMenuLayout | 0x80000001));
}

TEST_F(UEnvironmentTest, TakesExactlyOneAsNotYetTheNextVersion) {
    Set(gestaltAppearanceVersion, 0x0100);
    EXPECT_FALSE(HasAfterInit(kFeatureAppearance101));
    Set(gestaltAppearanceVersion, 0x0101);
    EXPECT_TRUE(HasAfterInit(kFeatureAppearance101));
    EXPECT_FALSE(UEnvironment::HasFeature(kFeatureAppearance110));
    Set(gestaltAppearanceVersion, 0x0110);
    EXPECT_TRUE(HasAfterInit(kFeatureAppearance101 | kFeatureAppearance110));
    Set(gestaltAppearanceVersion, -1);  // signed
    EXPECT_FALSE(HasAfterInit(kFeatureAppearance101));
}

TEST_F(UEnvironmentTest, KeepsTheVersionBitsWithoutAnAnswer) {
    UEnvironment::InitEnvironment();
    Delete(gestaltAppearanceVersion);
    EXPECT_TRUE(HasAfterInit(kFeatureAppearance101 | kFeatureAppearance110));
    EXPECT_EQ(UEnvironment::sEnvironInfo.appearanceVersion, 0);
    Set(gestaltAppearanceAttr, 0);
    EXPECT_TRUE(HasAfterInit(kFeatureAppearance110));
    EXPECT_FALSE(UEnvironment::HasFeature(kFeatureAppearance));
}

TEST_F(UEnvironmentTest, IsNotRunningAppearanceInCompatibilityMode) {
    Set(gestaltAppearanceAttr, 3);
    EXPECT_TRUE(HasAfterInit(kFeatureAppearance | kFeatureAppearanceCompat));
    EXPECT_FALSE(UEnvironment::IsAppearanceRunning());
}

TEST_F(UEnvironmentTest, FindsAttributesByTheirBits) {
    Set(gestaltMenuMgrAttr, SInt32(0x80000000));
    EXPECT_TRUE(UEnvironment::HasGestaltAttribute(gestaltMenuMgrAttr, 31));
    EXPECT_FALSE(UEnvironment::HasGestaltAttribute(gestaltMenuMgrAttr, 0));
    EXPECT_FALSE(UEnvironment::HasGestaltAttribute(gestaltMenuMgrAttr, 32));
    EXPECT_FALSE(UEnvironment::HasGestaltAttribute('none', 0));
}

TEST_F(UEnvironmentTest, FindsSymbolsOfLoadedLibrariesOnly) {
    const PString library("test_fragment"), symbol("FragmentAnswer");
    EXPECT_EQ(UEnvironment::GetSharedLibSymbol(library, symbol), nullptr);
    const LoadedFragment fragment;
    EXPECT_EQ(UEnvironment::GetSharedLibSymbol(library, symbol),
              fragment.Address("FragmentAnswer"));
    EXPECT_EQ(UEnvironment::GetSharedLibSymbol(library, PString("nothing")), nullptr);
}

}  // namespace
