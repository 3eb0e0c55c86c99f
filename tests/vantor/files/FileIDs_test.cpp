// File IDs and exchanged contents.
#include "vantor/files/FileIDs.h"

#include <gtest/gtest.h>

#include "support/MountedVolume.h"
#include "support/PascalString.h"

namespace {

class FileIDs : public ::testing::Test {
  protected:
    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder");
    const FSSpec mFile = mDisk.MakeFile("Folder/File", "file");
};

TEST_F(FileIDs, FindAFileAgainAfterARename) {
    SInt32 id = 0, parent = 0;
    ASSERT_EQ(FSpCreateFileIDRef(&mFile, &id), noErr);
    ASSERT_EQ(FSpRename(&mFile, PString("Renamed")), noErr);
    Str63 name = {};
    ASSERT_EQ(ResolveFileIDRef(nullptr, mDisk.Number(), id, &parent, name), noErr);
    EXPECT_EQ(parent, mFolder);
    EXPECT_EQ(TextOf(name), "Renamed");
    FSSpec spec = {};
    ASSERT_EQ(FSpResolveFileIDRef(PString("Disk:"), 0, id, &spec), noErr);
    EXPECT_EQ(+spec.vRefNum, mDisk.Number());
    EXPECT_EQ(+spec.parID, mFolder);
    EXPECT_EQ(TextOf(spec.name), "Renamed");
}

TEST_F(FileIDs, AreToldAgainWithTheNewsThatTheyExist) {
    SInt32 first = 0, second = 0;
    ASSERT_EQ(FSpCreateFileIDRef(&mFile, &first), noErr);
    EXPECT_EQ(CreateFileIDRef(mDisk.Number(), mFolder, PString("File"), &second), fidExists);
    EXPECT_EQ(second, first);
}

TEST_F(FileIDs, LeaveTheCallersVolumeNameAlone) {
    SInt32 id = 0, parent = 0;
    ASSERT_EQ(FSpCreateFileIDRef(&mFile, &id), noErr);
    Str255 volume = {5, 'D', 'i', 's', 'k', ':'};
    ASSERT_EQ(ResolveFileIDRef(volume, 0, id, &parent, nullptr), noErr);
    EXPECT_EQ(TextOf(volume), "Disk:");
    EXPECT_EQ(parent, mFolder);
}

TEST_F(FileIDs, AreForgottenWhenDeleted) {
    SInt32 id = 0, parent = 77;
    ASSERT_EQ(FSpCreateFileIDRef(&mFile, &id), noErr);
    ASSERT_EQ(DeleteFileIDRef(nullptr, mDisk.Number(), id), noErr);
    EXPECT_EQ(ResolveFileIDRef(nullptr, mDisk.Number(), id, &parent, nullptr), fidNotFound);
    EXPECT_EQ(DeleteFileIDRef(nullptr, mDisk.Number(), id), fidNotFound);
    EXPECT_EQ(parent, 77);
}

TEST_F(FileIDs, AreForFilesThatExist) {
    SInt32 id = 77;
    const FSSpec folder = mDisk.Spec("Folder"), none = mDisk.Spec("None");
    EXPECT_EQ(FSpCreateFileIDRef(&folder, &id), notAFileErr);
    EXPECT_EQ(FSpCreateFileIDRef(&none, &id), fnfErr);
    EXPECT_EQ(id, 77);
    FSSpec spec;
    EXPECT_EQ(FSpResolveFileIDRef(nullptr, -32768, 20, &spec), nsvErr);
}

TEST_F(FileIDs, AreRefusedByAVolumeWithoutThem) {
    const MountedVolume plain(kPlatformMountNoFileIDs, "Plain");
    const FSSpec file = plain.MakeFile("File");
    SInt32 id = 77;
    EXPECT_EQ(FSpCreateFileIDRef(&file, &id), paramErr);
    EXPECT_EQ(id, 77);
}

TEST_F(FileIDs, StayWithTheirNamesWhenContentsAreExchanged) {
    const FSSpec other = mDisk.MakeFile("Other", "other");
    SInt32 id = 0, parent = 0;
    ASSERT_EQ(FSpCreateFileIDRef(&mFile, &id), noErr);
    ASSERT_EQ(ExchangeFiles(mDisk.Number(), mFolder, PString("File"), fsRtDirID, other.name),
              noErr);
    EXPECT_EQ(mDisk.Read("Folder/File"), "other");
    EXPECT_EQ(mDisk.Read("Other"), "file");
    Str63 name = {};
    ASSERT_EQ(ResolveFileIDRef(nullptr, mDisk.Number(), id, &parent, name), noErr);
    EXPECT_EQ(TextOf(name), "File");
    EXPECT_EQ(ExchangeFiles(mDisk.Number(), mFolder, PString("File"), mFolder, PString("File")),
              sameFileErr);
}

}  // namespace
