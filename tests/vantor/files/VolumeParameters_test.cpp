// Bits and fields of a volume's parameters.
#include "vantor/files/VolumeParameters.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Test = Boolean (*)(const GetVolParmsInfoBuffer*);
using Tests = std::vector<std::pair<Test, int>>;

const Tests kAttributes = {{hasLimitFCBs, 31},
                           {hasLocalWList, 30},
                           {hasNoMiniFndr, 29},
                           {hasNoVNEdit, 28},
                           {hasNoLclSync, 27},
                           {hasTrshOffLine, 26},
                           {hasNoSwitchTo, 25},
                           {hasNoDeskItems, 20},
                           {hasNoBootBlks, 19},
                           {hasAccessCntl, 18},
                           {hasNoSysDir, 17},
                           {hasExtFSVol, 16},
                           {hasOpenDeny, 15},
                           {hasCopyFile, 14},
                           {hasMoveRename, 13},
                           {hasDesktopMgr, 12},
                           {hasShortName, 11},
                           {hasFolderLock, 10},
                           {hasPersonalAccessPrivileges, 9},
                           {hasUserGroupList, 8},
                           {hasCatSearch, 7},
                           {hasFileIDs, 6},
                           {hasBTreeMgr, 5},
                           {hasBlankAccessPrivileges, 4},
                           {supportsAsyncRequests, 3},
                           {supportsTrashVolumeCache, 2}};

const Tests kExtended = {{volIsEjectable, 0},
                         {volSupportsHFSPlusAPIs, 1},
                         {volSupportsFSCatalogSearch, 2},
                         {volSupportsFSExchangeObjects, 3},
                         {volSupports2TBFiles, 4},
                         {volSupportsLongNames, 5},
                         {volSupportsMultiScriptNames, 6},
                         {volSupportsNamedForks, 7},
                         {volSupportsSubtreeIterators, 8},
                         {volL2PCanMapFileBlocks, 9}};

GetVolParmsInfoBuffer WithAttributes(UInt32 inBits) {
    GetVolParmsInfoBuffer parms = {};
    parms.vMVersion = 1;
    parms.vMAttrib = SInt32(inBits);
    return parms;
}

GetVolParmsInfoBuffer WithExtended(UInt32 inBits, SInt16 inVersion = 3) {
    GetVolParmsInfoBuffer parms = {};
    parms.vMVersion = inVersion;
    parms.vMExtendedAttributes = SInt32(inBits);
    return parms;
}

TEST(VolumeAttributes, EachIsOneBitAndNoOther) {
    for (const auto& [test, bit] : kAttributes) {
        const auto only = WithAttributes(1u << bit), others = WithAttributes(~(1u << bit));
        EXPECT_EQ(test(&only), 1) << bit;
        EXPECT_EQ(test(&others), 0) << bit;
    }
}

TEST(VolumeAttributes, ExternalFileSystemIsTheLowestBitOfTheUpperHalf) {
    const auto lowest = WithAttributes(0x00010000), highest = WithAttributes(0x80000000);
    EXPECT_TRUE(hasExtFSVol(&lowest));
    EXPECT_FALSE(hasExtFSVol(&highest));
}

TEST(VolumeAttributes, ExtendedOnesAreOneBitEach) {
    for (const auto& [test, bit] : kExtended) {
        const auto only = WithExtended(1u << bit), others = WithExtended(~(1u << bit));
        EXPECT_EQ(test(&only), 1) << bit;
        EXPECT_EQ(test(&others), 0) << bit;
    }
}

TEST(VolumeAttributes, ExtendedOnesAreAllMissingBeforeVersionThree) {
    const auto old = WithExtended(0xFFFFFFFF, 2);
    EXPECT_EQ(GetVolParmsInfoExtendedAttributes(&old), 0u);
    for (const auto& [test, bit] : kExtended) EXPECT_FALSE(test(&old)) << bit;
}

TEST(VolumeAttributes, ExtendedOnesDoNotLookAtThePlainOnes) {
    auto parms = WithAttributes(0xFFFFFFFF);
    parms.vMVersion = 3;
    for (const auto& [test, bit] : kExtended) EXPECT_FALSE(test(&parms)) << bit;
}

TEST(VolumeParameterFields, AppearWithTheirVersion) {
    Byte block = 0;
    Ptr master = reinterpret_cast<Ptr>(&block);
    GetVolParmsInfoBuffer parms = {};
    parms.vMVersion = 1;
    parms.vMAttrib = SInt32(0x87654321);
    parms.vMLocalHand = &master;
    parms.vMServerAdr = -7;
    parms.vMVolumeGrade = 5;
    parms.vMForeignPrivID = fsUnixPriv;
    EXPECT_EQ(GetVolParmsInfoVersion(&parms), 1);
    EXPECT_EQ(GetVolParmsInfoAttrib(&parms), 0x87654321u);
    EXPECT_EQ(GetVolParmsInfoLocalHand(&parms), &master);
    EXPECT_EQ(GetVolParmsInfoServerAdr(&parms), -7);
    EXPECT_EQ(GetVolParmsInfoVolumeGrade(&parms), 0);
    EXPECT_EQ(GetVolParmsInfoForeignPrivID(&parms), 0);
    parms.vMVersion = 2;
    EXPECT_EQ(GetVolParmsInfoVolumeGrade(&parms), 5);
    EXPECT_EQ(GetVolParmsInfoForeignPrivID(&parms), fsUnixPriv);
}

TEST(VolumeParameterFields, AnyServerAddressMakesANetworkVolume) {
    GetVolParmsInfoBuffer parms = {};
    EXPECT_FALSE(isNetworkVolume(&parms));
    parms.vMServerAdr = SInt32(0x80000000);
    EXPECT_TRUE(isNetworkVolume(&parms));
}

TEST(UserRights, AreReadFromTheDeniedOnes) {
    const auto rights = [](int inByte) { return SInt8(inByte); };
    EXPECT_TRUE(userIsOwner(rights(0x7F)));
    EXPECT_FALSE(userIsOwner(rights(0x80)));
    EXPECT_TRUE(userHasFullAccess(rights(0x80)));
    EXPECT_FALSE(userHasFullAccess(rights(4)));
    EXPECT_TRUE(userHasDropBoxAccess(rights(0x83)));
    EXPECT_FALSE(userHasDropBoxAccess(rights(7)));
    EXPECT_TRUE(userHasBulletinBoard(rights(4)));
    EXPECT_FALSE(userHasBulletinBoard(rights(6)));
    EXPECT_TRUE(userHasNoAccess(rights(0xFF)));
    EXPECT_FALSE(userHasNoAccess(rights(3)));
}

}  // namespace
