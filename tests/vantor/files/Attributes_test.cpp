// Carrying attributes and rights from one object to another.
#include "vantor/files/Attributes.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>

#include "support/CatalogInfo.h"
#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "vantor/files/FinderFlags.h"
#include "vantor/files/Sharing.h"

namespace {

std::optional<OSErr> sLockError;

}  // namespace

OSErr PBHSetFLockSync(HParmBlkPtr ioBlock) {
    return sLockError ? *sLockError : REAL_CALL(PBHSetFLockSync)(ioBlock);
}

namespace {

constexpr UInt32 kLongAgo = 3000000000;

class Attributes : public ::testing::Test {
  protected:
    Attributes() {
        ChangeCreatorType(mSource.vRefNum, mSource.parID, mSource.name, 'ttxt', 'TEXT');
        FSpChangeFDFlags(&mSource, true, kHasBeenInited | kIsStationery);
        SetDate(mSource, kLongAgo);
    }
    ~Attributes() override { sLockError.reset(); }

    static bool IsLocked(const FSSpec& inSpec) {
        return InfoOf(inSpec).hFileInfo.ioFlAttrib & kioFlAttribLockedMask;
    }

    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder"), mOther = mDisk.MakeFolder("Other");
    const FSSpec mSource = mDisk.MakeFile("Folder/Source"), mCopy = mDisk.MakeFile("Other/Copy");
    const FSSpec mFolderSpec = mDisk.Spec("Folder"), mOtherSpec = mDisk.Spec("Other");
};

TEST_F(Attributes, OfAFileAreItsDatesAndFinderInformation) {
    ASSERT_EQ(FSpCopyFileMgrAttributes(&mSource, &mCopy, true), noErr);
    const CInfoPBRec copy = InfoOf(mCopy), source = InfoOf(mSource);
    EXPECT_EQ(+copy.hFileInfo.ioFlFndrInfo.fdType, OSType{'TEXT'});
    EXPECT_EQ(+copy.hFileInfo.ioFlFndrInfo.fdCreator, OSType{'ttxt'});
    EXPECT_EQ(+copy.hFileInfo.ioFlMdDat, kLongAgo);
    EXPECT_EQ(+copy.hFileInfo.ioFlCrDat, +source.hFileInfo.ioFlCrDat);
    EXPECT_FALSE(IsLocked(mCopy));
}

TEST_F(Attributes, OfACopyAreNotYetSeenByTheFinder) {
    ASSERT_EQ(FSpCopyFileMgrAttributes(&mSource, &mCopy, false), noErr);
    EXPECT_EQ(FlagsOf(mCopy), kIsStationery);
    EXPECT_EQ(FlagsOf(mSource), kHasBeenInited | kIsStationery);
}

TEST_F(Attributes, IncludeTheLockWhenAskedFor) {
    ASSERT_EQ(FSpSetFLock(&mSource), noErr);
    ASSERT_EQ(FSpCopyFileMgrAttributes(&mSource, &mCopy, false), noErr);
    EXPECT_FALSE(IsLocked(mCopy));
    ASSERT_EQ(FSpCopyFileMgrAttributes(&mSource, &mCopy, true), noErr);
    EXPECT_TRUE(IsLocked(mCopy));
    FSpRstFLock(&mSource);
    FSpRstFLock(&mCopy);
}

TEST_F(Attributes, TellWhenAFileCannotBeLocked) {
    ASSERT_EQ(FSpSetFLock(&mSource), noErr);
    sLockError = ioErr;
    EXPECT_EQ(FSpCopyFileMgrAttributes(&mSource, &mCopy, true), ioErr);
    FSpRstFLock(&mSource);
}

TEST_F(Attributes, OfAFolderAreCarriedByItsID) {
    ASSERT_EQ(SetHasCustomIcon(mDisk.Number(), mFolder, nullptr), noErr);
    SetDate(mFolderSpec, kLongAgo);
    ASSERT_EQ(CopyFileMgrAttributes(mDisk.Number(), mFolder, nullptr, mDisk.Number(), mOther,
                                    PString(""), false),
              noErr);
    EXPECT_EQ(FlagsOf(mOtherSpec), kHasCustomIcon);
    EXPECT_EQ(DateOf(mOtherSpec), kLongAgo);
}

TEST_F(Attributes, SaySoNotWhenAFolderCannotBeLocked) {
    const StFileFaults faults;
    gFileFaults.getCatalogInfo = [](CInfoPBPtr ioInfo) {
        const OSErr err = REAL_CALL(PBGetCatInfoSync)(ioInfo);
        ioInfo->dirInfo.ioFlAttrib |= kioFlAttribLockedMask;
        return err;
    };
    sLockError = afpObjectTypeErr;
    EXPECT_EQ(FSpCopyFileMgrAttributes(&mFolderSpec, &mOtherSpec, true), noErr);
}

TEST_F(Attributes, OfWhatIsMissingAreAnError) {
    EXPECT_EQ(CopyFileMgrAttributes(mDisk.Number(), mFolder, PString("None"), mDisk.Number(),
                                    mOther, PString("Copy"), true),
              fnfErr);
    EXPECT_EQ(CopyFileMgrAttributes(mDisk.Number(), mFolder, PString("Source"), mDisk.Number(),
                                    mOther, PString("None"), true),
              fnfErr);
}

mode_t ModeOf(const std::filesystem::path& inPath) {
    struct stat status = {};
    EXPECT_EQ(stat(inPath.c_str(), &status), 0);
    return status.st_mode & 0777;
}

TEST_F(Attributes, RightsAreCopiedBetweenFoldersOfOneServer) {
    chmod((mDisk.Root() / "Folder").c_str(), 0750);
    chmod((mDisk.Root() / "Other").c_str(), 0777);
    ASSERT_EQ(FSpCopyDirectoryAccess(&mFolderSpec, &mOtherSpec), noErr);
    EXPECT_EQ(ModeOf(mDisk.Root() / "Other"), 0750u);
}

TEST_F(Attributes, RightsAreNothingOnAVolumeWithoutThem) {
    const MountedVolume plain(kPlatformMountNoAccessControl, "Plain");
    plain.MakeFolder("Target");
    const mode_t before = ModeOf(plain.Root() / "Target");
    chmod((mDisk.Root() / "Folder").c_str(), 0700);
    const FSSpec target = plain.Spec("Target");
    EXPECT_EQ(FSpCopyDirectoryAccess(&mFolderSpec, &target), noErr);
    EXPECT_EQ(ModeOf(plain.Root() / "Target"), before);
}

TEST_F(Attributes, RightsFromElsewhereAreRefused) {
    const MountedVolume plain(kPlatformMountNoAccessControl, "Plain"),
        server(kPlatformMountRemote, "Server");
    plain.MakeFolder("Source");
    server.MakeFolder("Source");
    const FSSpec unguarded = plain.Spec("Source"), remote = server.Spec("Source");
    EXPECT_EQ(FSpCopyDirectoryAccess(&unguarded, &mOtherSpec), paramErr);
    EXPECT_EQ(FSpCopyDirectoryAccess(&remote, &mOtherSpec), paramErr);
}

TEST_F(Attributes, RightsFailWithTheVolumes) {
    const MountedVolume silent(kPlatformMountNoVolumeParameters, "Silent");
    const FSSpec root = silent.Spec("");
    EXPECT_EQ(FSpCopyDirectoryAccess(&mFolderSpec, &root), paramErr);
    EXPECT_EQ(CopyDirectoryAccess(-32768, 2, nullptr, mDisk.Number(), mOther, nullptr), nsvErr);
}

}  // namespace
