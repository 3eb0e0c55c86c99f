// Asking about volumes, on folders mounted as such.
#include "vantor/files/VolumeInfo.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "vantor/files/MountRecords.h"
#include "vantor/files/VolumeParameters.h"

namespace {

struct Sizes {
    UInt64 free, total;
};
std::optional<Sizes> sSizes;  // what a volume is said to have

}  // namespace

OSErr PBXGetVolInfoSync(XVolumeParamPtr ioBlock) {
    const OSErr err = REAL_CALL(PBXGetVolInfoSync)(ioBlock);
    if (sSizes) {
        ioBlock->ioVFreeBytes = sSizes->free;
        ioBlock->ioVTotalBytes = sSizes->total;
    }
    return err;
}

namespace {

constexpr FSVolumeRefNum kNoVolume = -32768;

struct Parms {
    explicit Parms(FSVolumeRefNum inVolume, SInt32 inSize = 32) : size(inSize) {
        err = HGetVolParms(nullptr, inVolume, &buffer, &size);
    }
    GetVolParmsInfoBuffer buffer = {};
    SInt32 size;
    OSErr err;
};

TEST(HGetVolParms, TellsHowManyBytesCame) {
    const MountedVolume disk;
    const Parms all(disk.Number());
    EXPECT_EQ(all.err, noErr);
    EXPECT_EQ(all.size, 32);
    EXPECT_GE(GetVolParmsInfoVersion(&all.buffer), 3);
    const Parms few(disk.Number(), 6);
    EXPECT_EQ(few.size, 6);
    EXPECT_EQ(GetVolParmsInfoAttrib(&few.buffer), GetVolParmsInfoAttrib(&all.buffer));
    EXPECT_EQ(+few.buffer.vMForeignPrivID, 0);
}

TEST(HGetVolParms, LeavesTheSizeAfterAnError) {
    const MountedVolume silent(kPlatformMountNoVolumeParameters);
    const Parms refused(silent.Number());
    EXPECT_EQ(refused.err, paramErr);
    EXPECT_EQ(refused.size, 32);
    EXPECT_EQ(Parms(kNoVolume).err, nsvErr);
}

TEST(HGetVolParms, FollowsAVolumesName) {
    const MountedVolume one(kPlatformMountEjectable, "One"), two(0, "Two");
    GetVolParmsInfoBuffer parms = {};
    SInt32 size = 32;
    ASSERT_EQ(HGetVolParms(PString("One:"), two.Number(), &parms, &size), noErr);
    EXPECT_TRUE(volIsEjectable(&parms));
}

TEST(HGetVolParms, ShowsWhatAVolumeWasMountedWithout) {
    const MountedVolume whole(0, "Whole");
    const MountedVolume poor(kPlatformMountNoDesktopManager | kPlatformMountNoOpenDeny |
                                 kPlatformMountNoCatalogSearch | kPlatformMountRemote,
                             "Poor");
    const Parms good(whole.Number()), bad(poor.Number());
    EXPECT_TRUE(hasDesktopMgr(&good.buffer));
    EXPECT_FALSE(hasDesktopMgr(&bad.buffer));
    EXPECT_FALSE(hasOpenDeny(&bad.buffer));
    EXPECT_FALSE(hasCatSearch(&bad.buffer));
    EXPECT_FALSE(isNetworkVolume(&good.buffer));
    EXPECT_TRUE(isNetworkVolume(&bad.buffer));
    EXPECT_FALSE(hasExtFSVol(&good.buffer));
    EXPECT_TRUE(hasExtFSVol(&bad.buffer));
}

TEST(HGetVolParms, OfAnOldVolumeHasNoExtendedAttributes) {
    const MountedVolume old(kPlatformMountParametersVersion1 | kPlatformMountEjectable);
    const Parms parms(old.Number());
    EXPECT_EQ(parms.size, 18);  // a handle has eight bytes here
    EXPECT_EQ(GetVolParmsInfoVersion(&parms.buffer), 1);
    EXPECT_FALSE(volIsEjectable(&parms.buffer));
}

TEST(GetVolumeInfoNoName, RefusesANullRecord) {
    EXPECT_EQ(GetVolumeInfoNoName(nullptr, 0, nullptr), paramErr);
    EXPECT_EQ(XGetVolumeInfoNoName(nullptr, 0, nullptr), paramErr);
}

TEST(GetVolumeInfoNoName, TakesTheNumberWithoutAPathAndThePathBeforeTheNumber) {
    const MountedVolume one(0, "One"), two(0, "Two");
    HParamBlockRec block = {};
    ASSERT_EQ(GetVolumeInfoNoName(nullptr, two.Number(), &block), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, two.Number());
    ASSERT_EQ(GetVolumeInfoNoName(PString("One:Folder:File"), two.Number(), &block), noErr);
    EXPECT_EQ(+block.volumeParam.ioVRefNum, one.Number());
    EXPECT_EQ(+block.volumeParam.ioNamePtr, nullptr);
}

TEST(GetVolumeInfoNoName, LeavesTheCallersPathAsItIs) {
    const MountedVolume one(0, "One");
    Str255 path = {9, 'O', 'n', 'e', ':', 'A', ':', 'B', ':', 'C'};
    HParamBlockRec block = {};
    XVolumeParam wide = {};
    ASSERT_EQ(GetVolumeInfoNoName(path, 0, &block), noErr);
    ASSERT_EQ(XGetVolumeInfoNoName(path, 0, &wide), noErr);
    EXPECT_EQ(TextOf(path), "One:A:B:C");
}

TEST(GetVolumeInfoNoName, WithWideCountsWorksWhateverTheVersionFieldHeld) {
    const MountedVolume disk;
    XVolumeParam block = {};
    block.ioXVersion = 77;
    ASSERT_EQ(XGetVolumeInfoNoName(nullptr, disk.Number(), &block), noErr);
    EXPECT_EQ(+block.ioXVersion, 0u);
    EXPECT_EQ(+block.ioVRefNum, disk.Number());
    EXPECT_EQ(+block.ioNamePtr, nullptr);
    EXPECT_GT(+block.ioVTotalBytes, 0u);
}

TEST(DetermineVRefNum, GivesTheVolumesOwnNumber) {
    const MountedVolume one(0, "One"), two(0, "Two");
    FSVolumeRefNum found = 1;
    EXPECT_EQ(DetermineVRefNum(PString("One:"), two.Number(), &found), noErr);
    EXPECT_EQ(found, one.Number());
    EXPECT_EQ(DetermineVRefNum(PString("File"), two.Number(), &found), noErr);
    EXPECT_EQ(found, two.Number());
    EXPECT_EQ(DetermineVRefNum(PString("Nowhere:"), kNoVolume, &found), nsvErr);
    EXPECT_EQ(found, two.Number());
}

TEST(GetCatInfoNoName, TellsAboutANameOrTheDirectoryItself) {
    const MountedVolume disk;
    const SInt32 folder = disk.MakeFolder("Folder");
    disk.MakeFile("Folder/File", "12345");
    CInfoPBRec info = {};
    ASSERT_EQ(GetCatInfoNoName(disk.Number(), folder, PString("File"), &info), noErr);
    EXPECT_EQ(+info.hFileInfo.ioFlLgLen, 5);
    EXPECT_EQ(+info.hFileInfo.ioNamePtr, nullptr);
    const PString empty("");
    for (const ConstStringPtr none : {ConstStringPtr(nullptr), ConstStringPtr(empty)}) {
        info = {};
        ASSERT_EQ(GetCatInfoNoName(disk.Number(), folder, none, &info), noErr);
        EXPECT_EQ(+info.dirInfo.ioDrDirID, folder);
        EXPECT_EQ(+info.dirInfo.ioNamePtr, nullptr);
    }
    EXPECT_EQ(GetCatInfoNoName(disk.Number(), folder, PString("None"), &info), fnfErr);
    EXPECT_EQ(GetCatInfoNoName(disk.Number(), folder, nullptr, nullptr), paramErr);
}

struct VolumeSizes : ::testing::Test {
    ~VolumeSizes() override { sSizes.reset(); }
    OSErr Ask() { return HGetVInfo(disk.Number(), name, &number, &free, &total); }

    const MountedVolume disk;
    Str255 name = {};
    FSVolumeRefNum number = 0;
    UInt32 free = 1, total = 1;
};

TEST_F(VolumeSizes, AreThoseOfTheFileSystem) {
    UInt64 freeBytes = 0, totalBytes = 0;
    ASSERT_EQ(XGetVInfo(disk.Number(), name, &number, &freeBytes, &totalBytes), noErr);
    const auto space = std::filesystem::space(disk.Root());
    EXPECT_EQ(TextOf(name), "Disk");
    EXPECT_EQ(number, disk.Number());
    EXPECT_EQ(totalBytes, space.capacity);
    EXPECT_LE(freeBytes, totalBytes);
}

TEST_F(VolumeSizes, OfFourGigabytesAndMoreReadAsNearlySoMuch) {
    sSizes = {{0xFFFFFFFF, 0x100000000}};
    ASSERT_EQ(Ask(), noErr);
    EXPECT_EQ(free, 0xFFFFFFFFu);
    EXPECT_EQ(total, 0xFFFFFE00u);
    sSizes = {{0x900000000, 0x12345}};
    ASSERT_EQ(Ask(), noErr);
    EXPECT_EQ(free, 4294966784u);
    EXPECT_EQ(total, 0x12345u);
}

TEST_F(VolumeSizes, AreNotWrittenForAVolumeThatIsNotThere) {
    EXPECT_EQ(HGetVInfo(kNoVolume, nullptr, &number, &free, &total), nsvErr);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(free, 1u);
    EXPECT_EQ(total, 1u);
}

TEST(CheckVolLock, TellsTheHardwareLockBeforeTheSoftwareLock) {
    const MountedVolume open(0, "Open"), hard(kPlatformMountHardwareLocked, "Hard"),
        soft(kPlatformMountSoftwareLocked, "Soft"),
        both(kPlatformMountHardwareLocked | kPlatformMountSoftwareLocked, "Both");
    EXPECT_EQ(CheckVolLock(nullptr, open.Number()), noErr);
    EXPECT_EQ(CheckVolLock(nullptr, hard.Number()), wPrErr);
    EXPECT_EQ(CheckVolLock(nullptr, soft.Number()), vLckdErr);
    EXPECT_EQ(CheckVolLock(nullptr, both.Number()), wPrErr);
    EXPECT_EQ(CheckVolLock(PString("Soft:"), open.Number()), vLckdErr);
    EXPECT_EQ(CheckVolLock(nullptr, kNoVolume), nsvErr);
}

TEST(GetVolFileSystemID, IsZeroForLocalVolumesOnly) {
    const MountedVolume local(0, "Local"), remote(kPlatformMountRemote, "Remote");
    SInt16 id = -1;
    EXPECT_EQ(GetVolFileSystemID(nullptr, local.Number(), &id), noErr);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(GetVolFileSystemID(nullptr, remote.Number(), &id), noErr);
    EXPECT_NE(id, 0);
    EXPECT_EQ(GetVolFileSystemID(nullptr, kNoVolume, &id), nsvErr);
}

TEST(UnmountAndEject, TakesTheNamedVolumeAway) {
    const MountedVolume one(0, "One"), two(0, "Two");
    FSVolumeRefNum found;
    EXPECT_EQ(UnmountAndEject(PString("One:Any"), two.Number()), noErr);
    EXPECT_EQ(DetermineVRefNum(nullptr, one.Number(), &found), nsvErr);
    EXPECT_EQ(DetermineVRefNum(nullptr, two.Number(), &found), noErr);
    EXPECT_EQ(UnmountAndEject(nullptr, kNoVolume), nsvErr);
}

int CountVolumes() {
    FSSpec volumes[256];
    SInt16 count = 0, index = 1;
    EXPECT_EQ(OnLine(volumes, 256, &count, &index), nsvErr);
    EXPECT_EQ(index, count + 1);
    return count;
}

TEST(OnLine, RefusesAnIndexBelowOne) {
    FSSpec volume;
    SInt16 count = 9, index = 0;
    EXPECT_EQ(OnLine(&volume, 1, &count, &index), paramErr);
    index = -1;
    EXPECT_EQ(OnLine(&volume, 1, &count, &index), paramErr);
    EXPECT_EQ(count, 9);
}

TEST(OnLine, WithoutRoomSaysThatAllIsWell) {
    SInt16 count = 9, index = 1;
    EXPECT_EQ(OnLine(nullptr, 0, &count, &index), noErr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(index, 1);
}

TEST(OnLine, GoesOnWhereItStoppedAndEndsWithNoSuchVolume) {
    const int before = CountVolumes();
    const MountedVolume one(0, "One"), two(0, "Two"), three(0, "Three");
    SInt16 count = 0, index = SInt16(before + 1);
    FSSpec volumes[2];
    ASSERT_EQ(OnLine(volumes, 2, &count, &index), noErr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(TextOf(volumes[0].name), "One");
    EXPECT_EQ(TextOf(volumes[1].name), "Two");
    EXPECT_EQ(+volumes[0].vRefNum, one.Number());
    EXPECT_EQ(+volumes[0].parID, fsRtParID);
    ASSERT_EQ(OnLine(volumes, 2, &count, &index), nsvErr);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(TextOf(volumes[0].name), "Three");
}

TEST(DefaultDirectory, IsSetAndRestored) {
    const MountedVolume disk;
    const SInt32 folder = disk.MakeFolder("Folder");
    FSVolumeRefNum oldVolume = 1, volume = 1;
    SInt32 oldID = 0, id = 0;
    ASSERT_EQ(SetDefault(disk.Number(), folder, &oldVolume, &oldID), noErr);
    ASSERT_EQ(HGetVol(nullptr, &volume, &id), noErr);
    EXPECT_EQ(volume, disk.Number());
    EXPECT_EQ(id, folder);
    ASSERT_EQ(RestoreDefault(oldVolume, oldID), noErr);
    ASSERT_EQ(HGetVol(nullptr, &volume, &id), noErr);
    EXPECT_EQ(volume, oldVolume);
    EXPECT_EQ(id, oldID);
}

TEST(DefaultDirectory, StaysWhenTheNewOneIsNotThere) {
    FSVolumeRefNum oldVolume = 1, volume = 1;
    SInt32 oldID = 0, id = 0;
    EXPECT_EQ(SetDefault(kNoVolume, 2, &oldVolume, &oldID), nsvErr);
    ASSERT_EQ(HGetVol(nullptr, &volume, &id), noErr);
    EXPECT_EQ(volume, oldVolume);
    EXPECT_EQ(id, oldID);
}

TEST(VolumeMount, BringsAServersVolumeBackByItsRecord) {
    const MountedVolume server(kPlatformMountRemote, "Server");
    SInt16 size = 0;
    ASSERT_EQ(GetVolMountInfoSize(nullptr, server.Number(), &size), noErr);
    std::vector<char> record(static_cast<std::size_t>(size));
    ASSERT_EQ(GetVolMountInfo(nullptr, server.Number(), record.data()), noErr);
    FSVolumeRefNum found = 1;
    EXPECT_EQ(VolumeMount(record.data(), &found), afpAlreadyMounted);
    EXPECT_EQ(found, 1);
    ASSERT_EQ(UnmountAndEject(nullptr, server.Number()), noErr);
    ASSERT_EQ(VolumeMount(record.data(), &found), noErr);
    EXPECT_EQ(found, server.Number());
}

TEST(VolumeMount, HasNoRecordOfALocalVolume) {
    const MountedVolume local;
    SInt16 size = -1;
    EXPECT_EQ(GetVolMountInfoSize(nullptr, local.Number(), &size), paramErr);
    char record[256];
    EXPECT_EQ(GetVolMountInfo(nullptr, local.Number(), record), paramErr);
}

}  // namespace
