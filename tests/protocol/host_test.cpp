// Hosts in C, and failures of the platform on the way to the recording application.
#include <gtest/gtest.h>

#include "support/Expected.h"
#include "support/RealCall.h"
#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/api/host.h"
#include "vantor/controller/CVantor.h"

namespace {

// Calls that are made to fail, and how often Launch Services was asked.
OSErr sLaunchError = noErr;
OSErr sMakeRefError = noErr;
OSErr sCatalogError = noErr;
bool sNoPointers = false;
bool sNoURL = false;  // Launch Services finds an application and says nothing of its URL
AEKeyword sKeyThatFails = 0;
int sAskedLaunchServices = 0;
LaunchParamBlockRec sBlock = {};
std::vector<Boolean> sPrepared;  // the 'srVR' parameter of each event made a launch parameter

}  // namespace

OSErr LaunchApplication(LaunchPBPtr ioBlock) {
    sBlock = *ioBlock;
    return sLaunchError != noErr ? sLaunchError : REAL_CALL(LaunchApplication)(ioBlock);
}

OSErr FSpMakeFSRef(const FSSpec* inSpec, FSRef* outRef) {
    return sMakeRefError != noErr ? sMakeRefError : REAL_CALL(FSpMakeFSRef)(inSpec, outRef);
}

OSErr FSGetCatalogInfo(const FSRef* inRef, FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo,
                       HFSUniStr255* outName, FSSpec* outSpec, FSRef* outParent) {
    if (sCatalogError != noErr) return sCatalogError;
    return REAL_CALL(FSGetCatalogInfo)(inRef, inWhich, outInfo, outName, outSpec, outParent);
}

OSErr AEPutParamPtr(AppleEvent* ioEvent, AEKeyword inKey, DescType inType, const void* inData,
                    Size inSize) {
    if (inKey == sKeyThatFails) return memFullErr;
    return REAL_CALL(AEPutParamPtr)(ioEvent, inKey, inType, inData, inSize);
}

OSErr AECoerceDesc(const AEDesc* inDesc, DescType inType, AEDesc* outDesc) {
    Boolean server = 7;
    if (inType == typeAppParameters) {
        EXPECT_EQ(
            AEGetParamPtr(inDesc, 'srVR', typeBoolean, nullptr, &server, sizeof server, nullptr),
            noErr);
        sPrepared.push_back(server);
    }
    return REAL_CALL(AECoerceDesc)(inDesc, inType, outDesc);
}

Ptr NewPtr(Size inSize) {
    return sNoPointers ? nullptr : REAL_CALL(NewPtr)(inSize);
}

OSStatus LSGetApplicationForInfo(OSType inType, OSType inCreator, CFStringRef inExtension,
                                 LSRolesMask inRoles, FSRef* outRef, CFURLRef* outURL) {
    ++sAskedLaunchServices;
    EXPECT_EQ(inType, OSType{'\?\?\?\?'});
    EXPECT_EQ(inCreator, OSType{'Fv8k'});
    EXPECT_EQ(inExtension, nullptr);
    EXPECT_EQ(inRoles, 4u);
    if (sNoURL && outURL != nullptr) {
        *outURL = nullptr;
        return noErr;
    }
    return REAL_CALL(LSGetApplicationForInfo)(inType, inCreator, inExtension, inRoles, outRef,
                                              outURL);
}

namespace {

class Host : public RecorderTest {
  protected:
    void TearDown() override {
        sLaunchError = sMakeRefError = sCatalogError = noErr;
        sNoPointers = sNoURL = false;
        sKeyThatFails = 0;
        RecorderTest::TearDown();
    }
};

TEST_F(Host, InCCanCallEverything) {
    EXPECT_EQ(CallEverythingFromC(), 0);
}

TEST_F(Host, InCSetsTheIdleFunctionThroughItsTypeEncodedName) {
    SetIdleFunctionFromC(HostsIdleFunction());
    EXPECT_EQ(CVantor::GetAEIdleProc(), HostsIdleFunction());
    SetIdleFunctionFromC(nullptr);
    EXPECT_NE(CVantor::GetAEIdleProc(), HostsIdleFunction());
}

TEST_F(Host, LaunchesWithAnExtendedBlockAndWithoutParameters) {
    EXPECT_EQ(VantorInitiateSession(), noErr);
    EXPECT_EQ(+sBlock.launchBlockID, 0x4C43);
    EXPECT_EQ(+sBlock.launchEPBLength, 32u);
    EXPECT_EQ(+sBlock.launchFileFlags, 0x0800);
    EXPECT_EQ(+sBlock.launchControlFlags, 0x4800);
    EXPECT_EQ(+sBlock.launchAppParameters, nullptr);
}

TEST_F(Host, IsToldWhyALaunchFailed) {
    sLaunchError = appMemFullErr;
    EXPECT_EQ(VantorInitiateSession(), appMemFullErr);
    EXPECT_EQ(VantorGetStatusCode(nullptr), appMemFullErr);
    EXPECT_TRUE(VantorIsSessionInitiated());
}

TEST_F(Host, IsToldThatThereIsNoMemoryForTheLaunchParameters) {
    sNoPointers = true;
    EXPECT_EQ(VantorInitiateSession(), memFullErr);
    EXPECT_FALSE(IsListed()) << "nothing was launched";
    sNoPointers = false;
}

TEST_F(Host, PreparesLaunchParametersThatSayServerOnlyWhenAsked) {
    sPrepared.clear();
    sNoPointers = true;
    EXPECT_EQ(CodeThrownBy([] { CVantor::LaunchMirel(false); }), std::nullopt);
    sNoPointers = false;
    EXPECT_TRUE(sPrepared.empty());
    KillRecorder();
    EXPECT_EQ(CodeThrownBy([] { CVantor::LaunchMirel(true); }), std::nullopt);
    EXPECT_EQ(sPrepared, std::vector<Boolean>{1});
}

TEST_F(Host, IsToldWhyTheBundleHasNoSpec) {
    sCatalogError = ioErr;
    EXPECT_EQ(VantorGetStatusCode(nullptr), ioErr);
    EXPECT_FALSE(VantorIsMirelFound());
}

TEST_F(Host, IsToldThatAParameterCannotBePut) {
    sKeyThatFails = 'Asyn';
    EXPECT_EQ(VantorWriteDiscWithOptions(1, 1, 1, false, false), memFullErr);
}

TEST_F(Host, KeepsWritingWhenTheWriteModeCannotBePut) {
    StartRecorder();
    sKeyThatFails = 'wrAs';
    EXPECT_EQ(VantorWriteDiscWithOptions(1, -1, -1, false, false), noErr);
    EXPECT_EQ(Events(), std::vector<std::string>{
                            Sent("Fv8k/wrIt", Direct(kDiscOne) + " Quit=bool 00 Asyn=bool 01")});
}

TEST_F(Host, IsToldThatAnApplicationWithoutAURLIsInvalid) {
    sNoURL = true;
    EXPECT_EQ(VantorGetStatusCode(nullptr), kMirelInvalid);
}

TEST_F(Host, KeepsAskingLaunchServicesOnceMoreForAnInvalidBundle) {
    BundleFacts old;
    old.version = "6.9.9";
    mBundle->Describe(old);
    sAskedLaunchServices = 0;
    EXPECT_FALSE(VantorIsMirelFound());
    EXPECT_EQ(sAskedLaunchServices, 3);
}

TEST_F(Host, KeepsCallingAnyFailureOfTheExaminationInvalid) {
    sMakeRefError = ioErr;
    EXPECT_EQ(VantorGetStatusCode(nullptr), kMirelInvalid);
}

}  // namespace
