// Deleting folders with all there is in them.
#include "vantor/files/DirectoryDeletion.h"

#include <gtest/gtest.h>

#include "support/MountedVolume.h"
#include "support/PascalString.h"

namespace {

class Deletion : public testing::Test {
  protected:
    void MakeTree() {
        mVolume.MakeFile("Tree/a", 'VtTs', 'TEXT', "a");
        mVolume.MakeFile("Tree/Sub/b");
        mVolume.MakeFile("Tree/Sub/Deep/c");
        mVolume.MakeFolder("Tree/Empty");
        mVolume.MakeFile("Beside");
    }
    bool IsEmpty(const std::string& inFolder) const {
        return std::filesystem::is_empty(mVolume.Root() / inFolder);
    }
    MountedVolume mVolume;
};

TEST_F(Deletion, OfContentsKeepsTheFolder) {
    MakeTree();
    EXPECT_EQ(DeleteDirectoryContents(mVolume.Number(), fsRtDirID, PString("Tree")), noErr);
    EXPECT_TRUE(mVolume.Has("Tree"));
    EXPECT_TRUE(IsEmpty("Tree")) << "companions are gone too";
    EXPECT_TRUE(mVolume.Has("Beside"));
}

TEST_F(Deletion, TakesTheFolderToo) {
    MakeTree();
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), fsRtDirID, PString(":Tree:")), noErr);
    EXPECT_FALSE(mVolume.Has("Tree"));
    EXPECT_TRUE(mVolume.Has("Beside"));
}

TEST_F(Deletion, WithoutANameIsOfTheDirectoryItself) {
    MakeTree();
    EXPECT_EQ(DeleteDirectoryContents(mVolume.Number(), mVolume.DirID(":Tree:Sub"), nullptr),
              noErr);
    EXPECT_TRUE(IsEmpty("Tree/Sub"));
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), mVolume.DirID(":Tree"), PString("")), noErr);
    EXPECT_FALSE(mVolume.Has("Tree"));
}

TEST_F(Deletion, OfAnEmptyFoldersContentsIsNoError) {
    mVolume.MakeFolder("Empty");
    EXPECT_EQ(DeleteDirectoryContents(mVolume.Number(), fsRtDirID, PString("Empty")), noErr);
    EXPECT_TRUE(mVolume.Has("Empty"));
}

TEST_F(Deletion, UnlocksWhatIsLocked) {
    MakeTree();
    const FSSpec locked = mVolume.Spec(":Tree:Sub:Deep:c");
    ASSERT_EQ(FSpSetFLock(&locked), noErr);
    ASSERT_EQ(FSpDelete(&locked), fLckdErr);
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), fsRtDirID, PString("Tree")), noErr);
    EXPECT_FALSE(mVolume.Has("Tree"));
}

TEST_F(Deletion, OfAFileIsRefused) {
    mVolume.MakeFile("File", "stays");
    EXPECT_EQ(DeleteDirectoryContents(mVolume.Number(), fsRtDirID, PString("File")), dirNFErr);
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), fsRtDirID, PString("File")), dirNFErr);
    EXPECT_EQ(mVolume.Read("File"), "stays");
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), fsRtDirID, PString("Missing")), fnfErr);
}

TEST_F(Deletion, StopsAtTheFirstError) {
    mVolume.MakeFile("Tree/a");
    const FSSpec open = mVolume.MakeFile("Tree/b");
    mVolume.MakeFile("Tree/c");
    SInt16 refNum = 0;
    ASSERT_EQ(FSpOpenDF(&open, fsRdPerm, &refNum), noErr);
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), fsRtDirID, PString("Tree")), fBsyErr);
    EXPECT_FALSE(mVolume.Has("Tree/a"));
    EXPECT_TRUE(mVolume.Has("Tree/c"));
    EXPECT_EQ(FSClose(refNum), noErr);
}

TEST_F(Deletion, OnALockedVolumeIsRefused) {
    const MountedVolume locked(kPlatformMountSoftwareLocked, "Locked");
    std::filesystem::create_directories(locked.Root() / "Tree/Sub");
    EXPECT_EQ(DeleteDirectory(locked.Number(), fsRtDirID, PString("Tree")), vLckdErr);
    EXPECT_TRUE(locked.Has("Tree/Sub"));
}

TEST_F(Deletion, DoesNotFollowSymbolicLinks) {
    mVolume.MakeFile("Kept/file", "stays");
    mVolume.MakeFolder("Tree");
    std::filesystem::create_symlink(mVolume.Root() / "Kept", mVolume.Root() / "Tree/Link");
    EXPECT_EQ(DeleteDirectory(mVolume.Number(), fsRtDirID, PString("Tree")), noErr);
    EXPECT_FALSE(mVolume.Has("Tree"));
    EXPECT_EQ(mVolume.Read("Kept/file"), "stays");
}

}  // namespace
