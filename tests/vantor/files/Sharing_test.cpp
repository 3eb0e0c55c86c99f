// Owners, rights, users, groups, server copies: what this machine answers and what it refuses.
#include "vantor/files/Sharing.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/MountedVolume.h"
#include "support/PascalString.h"

namespace {

class Sharing : public ::testing::Test {
  protected:
    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder");
    const FSSpec mFile = mDisk.MakeFile("File", "text"), mFolderSpec = mDisk.Spec("Folder");
};

TEST_F(Sharing, RightsOfAFolderAreReadAndSet) {
    const auto path = mDisk.Root() / "Folder";
    chmod(path.c_str(), 0755);
    SInt32 owner = -1, group = -1, rights = 0;
    ASSERT_EQ(HGetDirAccess(mDisk.Number(), mFolder, nullptr, &owner, &group, &rights), noErr);
    EXPECT_EQ(owner, SInt32(geteuid()));
    EXPECT_EQ(rights & 0x00070707, 0x00030307);
    EXPECT_TRUE(rights & kioACAccessOwnerMask);
    ASSERT_EQ(FSpSetDirAccess(&mFolderSpec, owner, group, kownerPrivileges), noErr);
    ASSERT_EQ(FSpGetDirAccess(&mFolderSpec, &owner, &group, &rights), noErr);
    EXPECT_EQ(rights & 0x00070707, 0x00000007);
    EXPECT_EQ(HSetDirAccess(mDisk.Number(), mFolder, nullptr, owner, group, 0x00030307), noErr);
    EXPECT_EQ(HGetDirAccess(mDisk.Number(), 2, PString("None"), &owner, &group, &rights), fnfErr);
}

TEST_F(Sharing, RightsAreRefusedByAVolumeWithoutThem) {
    const MountedVolume plain(kPlatformMountNoAccessControl, "Plain");
    SInt32 owner = -1, group = -1, rights = -1;
    EXPECT_EQ(HGetDirAccess(plain.Number(), 2, nullptr, &owner, &group, &rights), paramErr);
    EXPECT_EQ(owner, -1);
    EXPECT_EQ(HSetDirAccess(plain.Number(), 2, nullptr, 0, 0, 7), paramErr);
}

TEST_F(Sharing, UsersAndGroupsHaveNamesAndNumbers) {
    Str255 name = {};
    ASSERT_EQ(HMapID(nullptr, mDisk.Number(), 0, kOwnerID2Name, name), noErr);
    EXPECT_EQ(TextOf(name), "root");
    SInt32 id = -1;
    ASSERT_EQ(HMapName(nullptr, mDisk.Number(), PString("daemon"), kOwnerName2ID, &id), noErr);
    EXPECT_EQ(id, 1);
    ASSERT_EQ(HMapName(nullptr, mDisk.Number(), PString("root"), kGroupName2ID, &id), noErr);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(HMapName(nullptr, mDisk.Number(), PString("nobody knows"), kOwnerName2ID, &id),
              fnfErr);
    EXPECT_EQ(id, 0);
}

TEST_F(Sharing, UsersFollowEachOtherByNumber) {
    UGEntry entries[3] = {};
    SInt32 count = 0, id = 0;
    ASSERT_EQ(GetUGEntries(kReturnNextUser, entries, 2, &count, &id), noErr);
    EXPECT_EQ(count, 2);
    EXPECT_LT(entries[0].objID, entries[1].objID);
    EXPECT_EQ(id, entries[1].objID);
    Str31 name = {};
    SInt32 first = 0;
    ASSERT_EQ(GetUGEntry(kReturnNextUser, name, &first), noErr);
    EXPECT_EQ(first, entries[0].objID);
    EXPECT_EQ(TextOf(name), TextOf(entries[0].name));
    id = 0x7FFFFFFE;
    EXPECT_EQ(GetUGEntries(kReturnNextUser, entries, 3, &count, &id), fnfErr);
    EXPECT_EQ(count, 0);
}

TEST_F(Sharing, CopiesOnOneVolumeAreMadeByIt) {
    const FSSpec copy = mDisk.Spec(":Folder:Copy");
    ASSERT_EQ(HCopyFile(mDisk.Number(), 2, PString("File"), mDisk.Number(), mFolder, nullptr,
                        PString("Copy")),
              noErr);
    EXPECT_EQ(mDisk.Read("Folder/Copy"), "text");
    EXPECT_EQ(FSpCopyFile(&mFile, &mFolderSpec, nullptr), noErr);
    EXPECT_EQ(mDisk.Read("Folder/File"), "text");
    EXPECT_EQ(FSpCopyFile(&mFile, &mFolderSpec, copy.name), dupFNErr);
}

TEST_F(Sharing, CopiesAreRefusedByAVolumeThatMakesNone) {
    const MountedVolume plain(kPlatformMountNoCopyFile, "Plain");
    plain.MakeFile("File");
    const SInt32 folder = plain.MakeFolder("Folder");
    EXPECT_EQ(
        HCopyFile(plain.Number(), 2, PString("File"), plain.Number(), folder, nullptr, nullptr),
        paramErr);
    EXPECT_FALSE(plain.Has("Folder/File"));
}

TEST_F(Sharing, ForeignRightsAreOwnerGroupAndMode) {
    const auto path = mDisk.Root() / "File";
    chmod(path.c_str(), 0640);
    SInt32 size = 0, owner = -1, group = -1, mode = -1, access = -1;
    ASSERT_EQ(FSpGetForeignPrivs(&mFile, nullptr, &size, &owner, &group, &mode, &access), noErr);
    EXPECT_EQ(owner, SInt32(geteuid()));
    EXPECT_EQ(mode, 0640);
    EXPECT_EQ(size, 0);
    ASSERT_EQ(FSpSetForeignPrivs(&mFile, nullptr, &size, owner, group, 0600, access), noErr);
    EXPECT_EQ(GetForeignPrivs(mDisk.Number(), 2, PString("File"), nullptr, &size, &owner, &group,
                              &mode, &access),
              noErr);
    EXPECT_EQ(mode, 0600);
    EXPECT_EQ(SetForeignPrivs(mDisk.Number(), 2, PString("None"), nullptr, &size, 0, 0, 0600, 0),
              fnfErr);
}

TEST_F(Sharing, SharePointsAndLogInsAreNotHere) {
    EXPECT_EQ(FSpShare(&mFolderSpec), paramErr);
    EXPECT_EQ(FSpUnshare(&mFolderSpec), paramErr);
    EXPECT_EQ(Share(mDisk.Number(), mFolder, nullptr), paramErr);
    EXPECT_EQ(Unshare(mDisk.Number(), mFolder, nullptr), paramErr);
    SInt16 method = 9;
    Str31 user;
    EXPECT_EQ(HGetLogInInfo(mDisk.Number(), &method, user), paramErr);
    EXPECT_EQ(method, 9);
}

}  // namespace
