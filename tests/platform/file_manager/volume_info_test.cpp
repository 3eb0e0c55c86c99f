// What is told about volumes, what they can do, and choosing among them.
#include <sys/statvfs.h>

#include "VolumeFixture.h"

namespace {

class VolumeInfoTest : public VolumeFixture {
  protected:
    static OSErr Get(HParamBlockRec* ioBlock, SInt16 inIndex, FSVolumeRefNum inVolume,
                     StringPtr ioName) {
        *ioBlock = {};
        ioBlock->volumeParam.ioVolIndex = inIndex;
        ioBlock->volumeParam.ioVRefNum = inVolume;
        ioBlock->volumeParam.ioNamePtr = ioName;
        return PBHGetVInfoSync(ioBlock);
    }
    static GetVolParmsInfoBuffer ParametersOf(FSVolumeRefNum inVolume, SInt32 inSize = 44) {
        GetVolParmsInfoBuffer buffer{};
        HParamBlockRec block{};
        block.ioParam.ioVRefNum = inVolume;
        block.ioParam.ioBuffer = reinterpret_cast<Ptr>(&buffer);
        block.ioParam.ioReqCount = inSize;
        EXPECT_EQ(PBHGetVolParmsSync(&block), noErr);
        return buffer;
    }
    static bool Can(FSVolumeRefNum inVolume, int inBit) {
        return (UInt32(ParametersOf(inVolume).vMAttrib) >> inBit & 1) != 0;
    }
};

TEST_F(VolumeInfoTest, CountsVolumesFromTheStartupVolumeOn) {
    HParamBlockRec block;
    Str255 name = "";
    EXPECT_EQ(Get(&block, 1, 0, name), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, -100);
    EXPECT_GT(+name[0], 0);
    SInt16 last = 1;
    while (Get(&block, SInt16(last + 1), 0, name) == noErr) ++last;
    EXPECT_EQ(+block.volumeParam.ioResult, nsvErr);
    EXPECT_EQ(Get(&block, last, 0, name), noErr);
    EXPECT_EQ(TextOf(name), "Disk");
    EXPECT_EQ(+block.volumeParam.ioVRefNum, mVolume);
}

TEST_F(VolumeInfoTest, ClosesTheGapThatAnUnmountedVolumeLeaves) {
    const auto second = Mount("Second", "Second", 0);
    HParamBlockRec block;
    Str255 name = "";
    SInt16 index = 1;
    while (Get(&block, index, 0, name) == noErr && TextOf(name) != "Disk") ++index;
    EXPECT_EQ(UnmountVol(nullptr, mVolume), noErr);
    EXPECT_EQ(Get(&block, index, 0, name), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, second);
}

TEST_F(VolumeInfoTest, ChoosesByNumberForIndexZero) {
    HParamBlockRec block;
    Str255 name =
        "\x06"
        "Linux:";
    EXPECT_EQ(Get(&block, 0, mVolume, name), noErr);
    EXPECT_EQ(TextOf(name), "Disk");
    EXPECT_EQ(Get(&block, 0, 0, name), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, -100);
    EXPECT_TRUE(block.volumeParam.ioVAtrb & kioVAtrbDefaultVolumeMask);
    EXPECT_EQ(Get(&block, 0, -32768, nullptr), nsvErr);
    const SInt16 drive = [&] {
        EXPECT_EQ(Get(&block, 0, mVolume, nullptr), noErr);
        return block.volumeParam.ioVDrvInfo;
    }();
    EXPECT_GT(drive, 0);
    EXPECT_EQ(Get(&block, 0, drive, nullptr), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, mVolume);
}

TEST_F(VolumeInfoTest, KeepsTheNumberWhenANameIsNoVolumesPath) {
    HParamBlockRec block;
    Str255 name =
        "\x05"
        "Disk:";
    EXPECT_EQ(Get(&block, -1, -100, name), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, mVolume);
    Str255 longer =
        "\x0B"
        "dISK:a:file";
    EXPECT_EQ(Get(&block, -1, -32768, longer), noErr);
    EXPECT_EQ(TextOf(longer), "Disk");
    Str255 leaf =
        "\x04"
        "Disk";
    EXPECT_EQ(Get(&block, -1, -100, leaf), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, -100);
    EXPECT_NE(TextOf(leaf), "Disk");
    Str255 unknown =
        "\x08"
        "Nowhere:";
    EXPECT_EQ(Get(&block, -1, -100, unknown), noErr);
    Str255 again =
        "\x08"
        "Nowhere:";
    EXPECT_EQ(Get(&block, -1, -32768, again), nsvErr);
    EXPECT_EQ(TextOf(again), "Nowhere:");
}

TEST_F(VolumeInfoTest, ClipsSizesAtTwoGigabytesWhereTheOtherCallDoesNot) {
    HParamBlockRec block;
    ASSERT_EQ(Get(&block, 0, mVolume, nullptr), noErr);
    const auto& told = block.volumeParam;
    struct statvfs facts;
    ASSERT_EQ(statvfs(Path("Disk").c_str(), &facts), 0);
    const UInt64 total = UInt64(facts.f_blocks) * facts.f_frsize;
    EXPECT_LE(UInt64(told.ioVNmAlBlks) * told.ioVAlBlkSiz, UInt64(0x80000000));
    EXPECT_LE(+told.ioVAlBlkSiz, 0xFE00u);
    EXPECT_LE(+told.ioVFrBlk, +told.ioVNmAlBlks);
    XVolumeParam extended{};
    extended.ioVRefNum = mVolume;
    EXPECT_EQ(PBXGetVolInfoSync(&extended), noErr);
    EXPECT_EQ(UInt64(extended.ioVTotalBytes), total);
    EXPECT_GT(UInt64(extended.ioVFreeBytes), 0u);
    extended.ioXVersion = 1;
    EXPECT_EQ(PBXGetVolInfoSync(&extended), paramErr);
    EXPECT_EQ(PBXGetVolInfoSync(nullptr), paramErr);
}

TEST_F(VolumeInfoTest, TellsKindDatesAndTheNextNumber) {
    Write("Disk/One");
    Write("Disk/Two");
    MakeFolder("Disk/Folder");
    HParamBlockRec block;
    ASSERT_EQ(Get(&block, 0, mVolume, nullptr), noErr);
    const HVolumeParam before = block.volumeParam;
    EXPECT_EQ(+before.ioVSigWord, 0x4244);
    EXPECT_EQ(+before.ioVFSID, 0);
    EXPECT_LT(+before.ioVDRefNum, 0);
    EXPECT_EQ(+before.ioVNmFls, 2);
    EXPECT_EQ(+before.ioVFndrInfo[0], 0);
    UInt32 now = 0;
    GetDateTime(&now);
    EXPECT_NEAR(double(before.ioVCrDate), double(now), 60);
    const SInt32 folder = FolderID("Folder");
    EXPECT_GE(UInt32(folder), +before.ioVNxtCNID);
    ASSERT_EQ(Get(&block, 0, mVolume, nullptr), noErr);
    EXPECT_GT(+block.volumeParam.ioVNxtCNID, UInt32(folder));
}

TEST_F(VolumeInfoTest, TellsLocksAndReleasesTheOneOfSoftware) {
    HParamBlockRec block;
    const auto both =
        Mount("Both", "Both", kPlatformMountHardwareLocked | kPlatformMountSoftwareLocked);
    ASSERT_EQ(Get(&block, 0, both, nullptr), noErr);
    EXPECT_EQ(UInt16(block.volumeParam.ioVAtrb),
              kioVAtrbHardwareLockedMask | kioVAtrbSoftwareLockedMask);
    const auto soft = Mount("Soft", "Soft", kPlatformMountSoftwareLocked);
    ASSERT_EQ(Get(&block, 0, soft, nullptr), noErr);
    EXPECT_EQ(UInt16(block.volumeParam.ioVAtrb), kioVAtrbSoftwareLockedMask);
    block.volumeParam.ioVAtrb = 0;
    block.volumeParam.ioVBkUp = 12345;
    EXPECT_EQ(PBSetVInfoSync(&block), noErr);
    ASSERT_EQ(Get(&block, 0, soft, nullptr), noErr);
    EXPECT_EQ(+block.volumeParam.ioVAtrb, 0);
    EXPECT_EQ(+block.volumeParam.ioVBkUp, 12345u);
    EXPECT_EQ(HCreate(soft, 2, PString("File"), 0, 0), noErr);
    ASSERT_EQ(Get(&block, 0, -100, nullptr), noErr);
    EXPECT_EQ(PBSetVInfoSync(&block), wPrErr);
}

TEST_F(VolumeInfoTest, GivesAsMuchOfTheParametersAsIsAskedFor) {
    GetVolParmsInfoBuffer buffer{};
    std::memset(&buffer, 0x55, sizeof buffer);
    HParamBlockRec block{};
    block.ioParam.ioVRefNum = mVolume;
    block.ioParam.ioBuffer = reinterpret_cast<Ptr>(&buffer);
    block.ioParam.ioReqCount = 32;
    EXPECT_EQ(PBHGetVolParmsSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 32);
    EXPECT_GE(+buffer.vMVersion, 3);
    EXPECT_EQ(+buffer.vMMaxNameLength, 0x55555555u);
    block.ioParam.ioReqCount = 1000;
    EXPECT_EQ(PBHGetVolParmsSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, SInt32(sizeof buffer));
    EXPECT_EQ(+buffer.vMMaxNameLength, 255u);
    block.ioParam.ioReqCount = 4;
    EXPECT_EQ(PBHGetVolParmsSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 4);
    block.ioParam.ioVRefNum = -32768;
    EXPECT_EQ(PBHGetVolParmsSync(&block), nsvErr);
    EXPECT_EQ(PBHGetVolParmsSync(nullptr), paramErr);
}

TEST_F(VolumeInfoTest, LosesTheCapabilitiesThatItsMountTakesAway) {
    const struct {
        OptionBits option;
        int bit;
    } kCases[] = {{kPlatformMountNoCatalogSearch, bHasCatSearch},
                  {kPlatformMountNoDesktopManager, bHasDesktopMgr},
                  {kPlatformMountNoOpenDeny, bHasOpenDeny},
                  {kPlatformMountNoMoveRename, bHasMoveRename},
                  {kPlatformMountNoCopyFile, bHasCopyFile},
                  {kPlatformMountNoFileIDs, bHasFileIDs},
                  {kPlatformMountNoAccessControl, bAccessCntl},
                  {kPlatformMountNoUserGroupList, bHasUserGroupList},
                  {kPlatformMountNoFolderLock, bHasFolderLock}};
    for (const auto& item : kCases) {
        const auto name = "Without" + std::to_string(item.bit);
        const auto without = Mount(name, name.c_str(), item.option);
        EXPECT_TRUE(Can(mVolume, item.bit)) << item.bit;
        EXPECT_FALSE(Can(without, item.bit)) << item.bit;
    }
}

TEST_F(VolumeInfoTest, SaysThatItExchangesFilesWhereItDoes) {
    const auto without = Mount("Without", "Without", kPlatformMountNoExchange);
    constexpr UInt32 kBit = 1 << bSupportsFSExchangeObjects;
    EXPECT_TRUE(UInt32(ParametersOf(mVolume).vMExtendedAttributes) & kBit);
    EXPECT_FALSE(UInt32(ParametersOf(without).vMExtendedAttributes) & kBit);
}

TEST_F(VolumeInfoTest, IsAServersOrEjectableWhenMountedSo) {
    const auto remote = Mount("Remote", "Remote", kPlatformMountRemote);
    const auto ejectable = Mount("Floppy", "Floppy", kPlatformMountEjectable);
    HParamBlockRec block;
    ASSERT_EQ(Get(&block, 0, remote, nullptr), noErr);
    EXPECT_NE(+block.volumeParam.ioVFSID, 0);
    EXPECT_NE(+ParametersOf(remote).vMServerAdr, 0);
    EXPECT_TRUE(Can(remote, bHasExtFSVol));
    EXPECT_EQ(+ParametersOf(mVolume).vMServerAdr, 0);
    EXPECT_FALSE(Can(mVolume, bHasExtFSVol));
    EXPECT_TRUE(ParametersOf(ejectable).vMExtendedAttributes & (1 << bIsEjectable));
    EXPECT_FALSE(ParametersOf(mVolume).vMExtendedAttributes & (1 << bIsEjectable));
}

TEST_F(VolumeInfoTest, AnswersParametersOfOldVersionsOrNone) {
    const auto old = Mount("Old", "Old", kPlatformMountParametersVersion1);
    HParamBlockRec block{};
    GetVolParmsInfoBuffer buffer{};
    block.ioParam.ioVRefNum = old;
    block.ioParam.ioBuffer = reinterpret_cast<Ptr>(&buffer);
    block.ioParam.ioReqCount = 32;
    EXPECT_EQ(PBHGetVolParmsSync(&block), noErr);
    EXPECT_EQ(+buffer.vMVersion, 1);
    EXPECT_EQ(+buffer.vMExtendedAttributes, 0);
    block.ioParam.ioVRefNum = Mount("None", "None", kPlatformMountNoVolumeParameters);
    EXPECT_EQ(PBHGetVolParmsSync(&block), paramErr);
}

TEST_F(VolumeInfoTest, KeepsOptionsForEveryProcessUntilUnmounted) {
    const auto locked = Mount("Locked", "Locked", kPlatformMountSoftwareLocked);
    EXPECT_EQ(Ask("create " + std::to_string(locked) + " 2 41"), "-46");
    EXPECT_EQ(PlatformUnmountFolder(locked), noErr);
    EXPECT_EQ(Mount("Locked", "Locked", 0), locked);
    EXPECT_EQ(Ask("create " + std::to_string(locked) + " 2 41"), "0");
    FSVolumeRefNum number = 0;
    EXPECT_EQ(PlatformMountFolderWithOptions(Path("Locked").c_str(), "x", 0x80000000u, &number),
              paramErr);
}

TEST_F(VolumeInfoTest, UnmountsMountedFoldersOnly) {
    EXPECT_EQ(UnmountVol(nullptr, -100), fBsyErr);
    EXPECT_EQ(UnmountVol(nullptr, -32768), nsvErr);
    EXPECT_EQ(UnmountVol(PString("Disk:"), 0), noErr);
    EXPECT_EQ(UnmountVol(nullptr, mVolume), nsvErr);
    ParamBlockRec block{};
    block.volumeParam.ioVRefNum = Mount("Second", "Second", 0);
    EXPECT_EQ(PBUnmountVol(&block), noErr);
    EXPECT_EQ(PBUnmountVol(&block), nsvErr);
    EXPECT_EQ(+block.volumeParam.ioResult, nsvErr);
}

TEST_F(VolumeInfoTest, StaysMountedWhileThisProgramHasAForkOnItOpen) {
    Write("Disk/File");
    SInt16 number = 0;
    ASSERT_EQ(HOpenDF(mVolume, 2, PString("File"), fsRdPerm, &number), noErr);
    HParamBlockRec block;
    ASSERT_EQ(Get(&block, 0, mVolume, nullptr), noErr);
    EXPECT_TRUE(block.volumeParam.ioVAtrb & kioVAtrbFilesOpenMask);
    EXPECT_EQ(UnmountVol(nullptr, mVolume), fBsyErr);
    EXPECT_EQ(FSClose(number), noErr);
    ASSERT_EQ(Get(&block, 0, mVolume, nullptr), noErr);
    EXPECT_FALSE(block.volumeParam.ioVAtrb & kioVAtrbFilesOpenMask);
    EXPECT_EQ(UnmountVol(nullptr, mVolume), noErr);
}

TEST_F(VolumeInfoTest, SetsTheDefaultByParameterBlock) {
    MakeFolder("Disk/Folder");
    WDPBRec block{};
    block.ioVRefNum = mVolume;
    block.ioWDDirID = FolderID("Folder");
    EXPECT_EQ(PBHSetVolSync(&block), noErr);
    Str255 name = "";
    WDPBRec told{};
    told.ioNamePtr = name;
    EXPECT_EQ(PBHGetVolSync(&told), noErr);
    EXPECT_EQ(TextOf(name), "Disk");
    EXPECT_EQ(+told.ioWDVRefNum, mVolume);
    EXPECT_EQ(+told.ioWDDirID, +block.ioWDDirID);
    block.ioWDDirID = 999;
    EXPECT_EQ(PBHSetVolSync(&block), dirNFErr);
    EXPECT_EQ(HSetVol(nullptr, -100, 0), noErr);
}

TEST_F(VolumeInfoTest, MountsAFolderThatStandsForAServerAgainByItsRecord) {
    const auto remote = Mount("Share", "Share", kPlatformMountRemote);
    SInt16 size = 0;
    ParamBlockRec block{};
    block.ioParam.ioVRefNum = remote;
    block.ioParam.ioBuffer = reinterpret_cast<Ptr>(&size);
    ASSERT_EQ(PBGetVolMountInfoSize(&block), noErr);
    std::vector<char> record(static_cast<size_t>(size) + 1, 0x55);
    block.ioParam.ioBuffer = record.data();
    ASSERT_EQ(PBGetVolMountInfo(&block), noErr);
    EXPECT_EQ(record.back(), 0x55);
    EXPECT_EQ(PBVolumeMount(&block), afpAlreadyMounted);
    ASSERT_EQ(UnmountVol(nullptr, remote), noErr);
    block.ioParam.ioVRefNum = 0;
    EXPECT_EQ(PBVolumeMount(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioVRefNum, remote);
    block.ioParam.ioVRefNum = mVolume;
    EXPECT_EQ(PBGetVolMountInfo(&block), paramErr);
    EXPECT_EQ(PBGetVolMountInfoSize(&block), paramErr);
}

TEST_F(VolumeInfoTest, MountsNoOtherServer) {
    AFPVolMountInfo record{};
    record.length = sizeof record;
    record.media = AppleShareMediaType;
    record.serverNameOffset = 24;
    record.volNameOffset = 32;
    record.AFPData[0] = 4;
    std::memcpy(record.AFPData + 1, "Far!", 4);
    ParamBlockRec block{};
    block.ioParam.ioBuffer = reinterpret_cast<Ptr>(&record);
    EXPECT_EQ(PBVolumeMount(&block), afpNoServer);
    record.serverNameOffset = 167;
    record.AFPData[143] = 100;
    EXPECT_EQ(PBVolumeMount(&block), afpNoServer);
    record.media = 'nfsm';
    EXPECT_EQ(PBVolumeMount(&block), paramErr);
    record.media = AppleShareMediaType;
    record.length = 6;
    EXPECT_EQ(PBVolumeMount(&block), paramErr);
    block.ioParam.ioBuffer = nullptr;
    EXPECT_EQ(PBVolumeMount(&block), paramErr);
}

}  // namespace
