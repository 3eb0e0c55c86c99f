// The controller where no recorder is needed: versions, memory, the system test, its shape.
#include "vantor/controller/CVantor.h"

#include <gtest/gtest.h>

#include <array>

#include "support/RealCall.h"
#include "vantor/api/Vantor.h"

namespace {

// What Gestalt is made to say about the system.
OSErr sGestaltError = noErr;
SInt32 sSystem = 0x1049;
int sAsked = 0;

}  // namespace

OSErr Gestalt(OSType inSelector, SInt32* outResponse) {
    if (inSelector != gestaltSystemVersion) return REAL_CALL(Gestalt)(inSelector, outResponse);
    ++sAsked;
    if (sGestaltError == noErr) *outResponse = sSystem;
    return sGestaltError;
}

namespace {

int Order(NumVersion inFirst, NumVersion inSecond) {
    return CVantor::CompareVersions(&inFirst, &inSecond);
}

TEST(CompareVersions, GoesFieldByField) {
    EXPECT_EQ(Order({7, 0, 0x80, 0}, {7, 0, 0x80, 0}), 0);
    EXPECT_EQ(Order({8, 0, 0x20, 0}, {7, 0x99, 0x80, 9}), 1);
    EXPECT_EQ(Order({7, 0x01, 0x20, 0}, {7, 0x00, 0x80, 9}), 1);
    EXPECT_EQ(Order({7, 0, 0x60, 0}, {7, 0, 0x80, 0}), -1);
    EXPECT_EQ(Order({7, 0, 0x60, 3}, {7, 0, 0x60, 4}), -1);
}

TEST(CompareVersions, TakesBytesUnsigned) {
    EXPECT_EQ(Order({0x80, 0, 0, 0}, {0x7F, 0, 0, 0}), 1);
    EXPECT_EQ(Order({7, 0x80, 0, 0}, {7, 0x7F, 0, 0}), 1);
    EXPECT_EQ(Order({7, 0, 0x60, 0x80}, {7, 0, 0x60, 0x7F}), 1);
}

TEST(CompareVersions, RanksAFinalReleaseWithoutANumberAboveNumberedOnes) {
    EXPECT_EQ(Order({1, 0, 0x80, 0}, {1, 0, 0x80, 5}), 1);
    EXPECT_EQ(Order({1, 0, 0x80, 255}, {1, 0, 0x80, 0}), -1);
    EXPECT_EQ(Order({1, 0, 0x60, 0}, {1, 0, 0x60, 5}), -1) << "only final releases";
}

TEST(CompareVersions, HasAMinimumBelowEveryStageOfSeven) {
    for (const UInt8 stage : std::array<UInt8, 4>{0x20, 0x40, 0x60, 0x80}) {
        EXPECT_EQ(Order({7, 0, stage, 0}, CVantor::kMinimumMirelVersion), 1);
    }
    EXPECT_EQ(Order({6, 0x99, 0x80, 0}, CVantor::kMinimumMirelVersion), -1);
}

TEST(ClearMem, ClearsExactlyTheBytesGiven) {
    char bytes[4] = {1, 2, 3, 4};
    CVantor::ClearMem(bytes, 2);
    EXPECT_EQ(std::string(bytes, 4), std::string("\0\0\3\4", 4));
    CVantor::ClearMem(bytes, 0);
    CVantor::ClearMem(bytes, -3);
    EXPECT_EQ(std::string(bytes, 4), std::string("\0\0\3\4", 4));
}

TEST(RunningOnX, IsToldByTheSystemVersionAndAskedOnce) {
    const std::tuple<OSErr, SInt32, bool> cases[] = {{noErr, 0x1049, true},
                                                     {noErr, 0x1000, true},
                                                     {noErr, 0x0FFF, false},
                                                     {noErr, 0x0922, false},
                                                     {gestaltUndefSelectorErr, 0x1049, false}};
    for (const auto& [error, system, onX] : cases) {
        sGestaltError = error;
        sSystem = system;
        sAsked = 0;
        CVantor::sRunningOnX = -1;
        EXPECT_EQ(CVantor::RunningOnX(), onX) << system;
        EXPECT_EQ(CVantor::RunningOnX(), onX) << system;
        EXPECT_EQ(sAsked, 1) << "also when asking failed";
    }
}

TEST(CVantor, StartsWithoutASessionOrAPath) {
    EXPECT_EQ(CVantor::sCurrentVantor, nullptr);
    EXPECT_FALSE(CVantor::IsSessionInitiated());
    EXPECT_EQ(CVantor::sMirelPath, nullptr);
    EXPECT_EQ(VantorGetMirelPath(), nullptr);
}

// Counts what the session calls through the table of virtual functions.
class CountingVantor : public CVantor {
  public:
    ~CountingVantor() override { mServerModeWasOn = 1; }  // so that nothing is left to undo
    void TerminateSelf() override { ++sTerminated; }
    static inline int sTerminated = 0;
};

TEST(CVantor, IsTerminatedThroughItsVirtualFunctionsOnce) {
    CVantor::sCurrentVantor = new CountingVantor;
    CVantor::TerminateSession();
    EXPECT_EQ(CountingVantor::sTerminated, 1) << "the destructor does not come back to it";
    EXPECT_EQ(CVantor::sCurrentVantor, nullptr);
}

TEST(CVantor, HoldsItsFieldsInOrderAllZero) {
    CountingVantor vantor;
    EXPECT_EQ(vantor.mLaunchedMirel, 0);
    EXPECT_EQ(vantor.mServerModeWasOn, 0);
    EXPECT_EQ(vantor.mHaveBlankDisc, 0);
    const auto offset = [&](const void* field) {
        return static_cast<const char*>(field) -
               reinterpret_cast<const char*>(static_cast<const CVantor*>(&vantor));
    };
    EXPECT_EQ(offset(&vantor.mLaunchedMirel), static_cast<long>(sizeof(void*)));
    EXPECT_EQ(offset(&vantor.mServerModeWasOn), static_cast<long>(sizeof(void*)) + 4);
    EXPECT_EQ(offset(&vantor.mHaveBlankDisc), static_cast<long>(sizeof(void*)) + 8);
}

}  // namespace
