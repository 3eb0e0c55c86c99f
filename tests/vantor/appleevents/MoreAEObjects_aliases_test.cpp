// Specifiers and parameters that name a file by an alias made for it.
#include <gtest/gtest.h>

#include "support/Descriptors.h"
#include "support/MountedVolume.h"
#include "support/RealCall.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace {

// What NewAlias is made to do.
enum { kAsUsual, kFails, kGivesNothing, kAppends } sNewAlias = kAsUsual;

}  // namespace

OSErr NewAlias(const FSSpec* inFromFile, const FSSpec* inTarget, AliasHandle* outAlias) {
    if (sNewAlias == kFails) return nsvErr;
    if (sNewAlias == kGivesNothing) return *outAlias = nullptr, noErr;
    const OSErr err = REAL_CALL(NewAlias)(inFromFile, inTarget, outAlias);
    if (sNewAlias == kAppends && err == noErr)
        return PtrAndHand("more", reinterpret_cast<Handle>(*outAlias), 4);
    return err;
}

namespace {

class MoreAEOAliases : public testing::Test {
  protected:
    MoreAEOAliases() : mFile(mVolume.MakeFile("Folder/File")), mHandles(PlatformCountHandles()) {}
    ~MoreAEOAliases() override { sNewAlias = kAsUsual; }

    // The file that a descriptor's alias leads to, and the record's size in its head.
    FSSpec Resolve(const AEDesc& inDesc) {
        const std::vector<UInt8> bytes = BytesOf(&inDesc);
        Handle alias = nullptr;
        FSSpec spec = {};
        Boolean wasChanged;
        EXPECT_EQ(PtrToHand(bytes.data(), &alias, static_cast<Size>(bytes.size())), noErr);
        mSize = GetAliasSize(reinterpret_cast<AliasHandle>(alias));
        EXPECT_EQ(ResolveAlias(nullptr, reinterpret_cast<AliasHandle>(alias), &spec, &wasChanged),
                  noErr);
        DisposeHandle(alias);
        return spec;
    }
    void ExpectLeadsToFile(const AEDesc& inDesc) {
        const FSSpec spec = Resolve(inDesc);
        EXPECT_EQ(spec.vRefNum, mFile.vRefNum);
        EXPECT_EQ(+spec.parID, +mFile.parID);
        EXPECT_TRUE(EqualString(spec.name, mFile.name, true, true));
    }

    MountedVolume mVolume;
    FSSpec mFile;
    UInt32 mHandles;
    Size mSize = 0;
    StAEDescriptor mResult;
};

TEST_F(MoreAEOAliases, AFileBecomesAnAliasDescriptor) {
    ASSERT_EQ(MoreAEOCreateAliasDescFromFSSpec(&mFile, mResult), noErr);
    EXPECT_EQ(+mResult.mDesc.descriptorType, typeAlias);
    ExpectLeadsToFile(mResult.mDesc);
}

TEST_F(MoreAEOAliases, AFileBecomesAnElementKeyedByItsAlias) {
    StAEDescriptor application;
    ASSERT_EQ(MoreAEOCreateAliasObjectFromFSSpec(&mFile, application, mResult), noErr);
    const StAEDescriptor key(mResult.mDesc, keyAEKeyData, typeAlias);
    ExpectLeadsToFile(key.mDesc);
    const StAEDescriptor desired(mResult.mDesc, keyAEDesiredClass, typeType);
    EXPECT_EQ(BytesOf(desired), (std::vector<UInt8>{'a', 'l', 'i', 's'}));
}

TEST_F(MoreAEOAliases, AFileBecomesAParameter) {
    ASSERT_EQ(AECreateList(nullptr, 0, true, mResult), noErr);
    ASSERT_EQ(MoreAEOAddAliasParameterFromFSSpec(&mFile, 'file', mResult), noErr);
    const StAEDescriptor parameter(mResult.mDesc, 'file', typeAlias);
    ExpectLeadsToFile(parameter.mDesc);
}

TEST_F(MoreAEOAliases, KeepsTheRecordsOwnSizeInParametersAndTheHandlesInDescriptors) {
    sNewAlias = kAppends;
    ASSERT_EQ(MoreAEOCreateAliasDescFromFSSpec(&mFile, mResult), noErr);
    ExpectLeadsToFile(mResult.mDesc);
    EXPECT_EQ(AEGetDescDataSize(mResult), mSize + 4);
    mResult.Dispose();
    ASSERT_EQ(AECreateList(nullptr, 0, true, mResult), noErr);
    ASSERT_EQ(MoreAEOAddAliasParameterFromFSSpec(&mFile, 'file', mResult), noErr);
    const StAEDescriptor parameter(mResult.mDesc, 'file', typeAlias);
    EXPECT_EQ(AEGetDescDataSize(parameter), mSize);
}

TEST_F(MoreAEOAliases, ErrorsOfMakingTheAliasAreReturned) {
    sNewAlias = kFails;
    EXPECT_EQ(MoreAEOCreateAliasDescFromFSSpec(&mFile, mResult), nsvErr);
    EXPECT_EQ(MoreAEOCreateAliasObjectFromFSSpec(&mFile, mResult, mResult), nsvErr);
    EXPECT_EQ(MoreAEOAddAliasParameterFromFSSpec(&mFile, 'file', mResult), nsvErr);
}

TEST_F(MoreAEOAliases, NoAliasWithoutAnErrorIsAParameterError) {
    sNewAlias = kGivesNothing;
    EXPECT_EQ(MoreAEOCreateAliasDescFromFSSpec(&mFile, mResult), paramErr);
    EXPECT_EQ(MoreAEOCreateAliasObjectFromFSSpec(&mFile, mResult, mResult), paramErr);
    EXPECT_EQ(MoreAEOAddAliasParameterFromFSSpec(&mFile, 'file', mResult), paramErr);
}

TEST_F(MoreAEOAliases, AliasesMadeOnTheWayAreDisposed) {
    {
        StAEDescriptor desc, parameters;
        ASSERT_EQ(MoreAEOCreateAliasDescFromFSSpec(&mFile, desc), noErr);
        ASSERT_EQ(AECreateList(nullptr, 0, true, parameters), noErr);
        ASSERT_EQ(MoreAEOAddAliasParameterFromFSSpec(&mFile, 'file', parameters), noErr);
    }
    EXPECT_EQ(PlatformCountHandles(), mHandles);
}

}  // namespace
