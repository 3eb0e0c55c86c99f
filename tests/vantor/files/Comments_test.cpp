// Comments in the desktop database and in the desktop file.
#include "vantor/files/Comments.h"

#include <gtest/gtest.h>

#include "support/CatalogInfo.h"
#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

// The comment, or the error before what was left in the buffer.
std::string CommentOf(const FSSpec& inSpec) {
    Str255 comment = {1, '?'};
    const OSErr err = FSpDTGetComment(&inSpec, comment);
    return err == noErr ? TextOf(comment) : std::to_string(err) + TextOf(comment);
}

class Comments : public ::testing::Test {
  protected:
    const MountedVolume mDisk;
    const SInt32 mFolder = mDisk.MakeFolder("Folder");
    const FSSpec mFile = mDisk.MakeFile("Folder/File"), mOther = mDisk.MakeFile("Other");
    const FSSpec mFolderSpec = mDisk.Spec("Folder");
};

TEST_F(Comments, AreKeptForFilesAndFolders) {
    ASSERT_EQ(FSpDTSetComment(&mFile, PString("of the file")), noErr);
    ASSERT_EQ(DTSetComment(mDisk.Number(), fsRtDirID, PString("Folder"), PString("of the folder")),
              noErr);
    EXPECT_EQ(CommentOf(mFile), "of the file");
    EXPECT_EQ(CommentOf(mFolderSpec), "of the folder");
    Str255 comment = {};
    EXPECT_EQ(DTGetComment(0, 0, PString("Disk:Folder:File"), comment), noErr);
    EXPECT_EQ(TextOf(comment), "of the file");
}

TEST_F(Comments, OfMoreThan200CharactersAreCut) {
    const std::string text = std::string(199, 'a') + "b" + std::string(50, 'c');
    ASSERT_EQ(FSpDTSetComment(&mFile, PString(text)), noErr);
    EXPECT_EQ(CommentOf(mFile), text.substr(0, 200));
}

TEST_F(Comments, ThatAreNotThereAreAnErrorAndEmpty) {
    ASSERT_EQ(FSpDTSetComment(&mOther, PString("something")), noErr);
    EXPECT_EQ(CommentOf(mFile), "-5012");
}

TEST_F(Comments, InANewDatabaseAreEmptyWithoutAnError) {
    const StFileFaults faults;
    gFileFaults.openDatabaseInforming = [](DTPBPtr ioBlock) {
        const OSErr err = REAL_CALL(PBDTOpenInform)(ioBlock);
        ioBlock->ioTagInfo = 0;
        return err;
    };
    EXPECT_EQ(CommentOf(mFile), "");
}

TEST_F(Comments, NeedABuffer) {
    EXPECT_EQ(FSpDTGetComment(&mFile, nullptr), paramErr);
}

TEST_F(Comments, AreCopiedUnlessEmpty) {
    ASSERT_EQ(FSpDTSetComment(&mFile, PString("text")), noErr);
    ASSERT_EQ(FSpDTCopyComment(&mFile, &mOther), noErr);
    EXPECT_EQ(CommentOf(mOther), "text");
    ASSERT_EQ(DTCopyComment(mDisk.Number(), fsRtDirID, PString("Other"), mDisk.Number(), mFolder,
                            nullptr),
              noErr);
    EXPECT_EQ(CommentOf(mFolderSpec), "text") << "of the directory itself";
    const FSSpec none = mDisk.MakeFile("None");
    EXPECT_EQ(FSpDTCopyComment(&none, &mOther), afpItemNotFound);
    ASSERT_EQ(FSpDTSetComment(&mFile, PString("")), noErr);
    FSpDTCopyComment(&mFile, &mOther);
    EXPECT_EQ(CommentOf(mOther), "text");
}

// A volume that keeps its comments in a desktop file.
class DesktopFileComments : public ::testing::Test {
  protected:
    void MakeDesktopFile() { mDesktop = mDisk.MakeFile("Desktop", 'ERIK', 'FNDR'); }
    void AddComment(SInt16 inID, const std::string& inText) {
        AddResourceTo(mDesktop, 'FCMT', inID, char(inText.size()) + inText);
    }
    static void Number(const FSSpec& inSpec, SInt16 inID) {
        ChangeInfo(inSpec, [&](HFileInfo& ioInfo) {
            ioInfo.ioFlXFndrInfo.fdComment = inID;  // where a folder's is too
        });
    }

    const MountedVolume mDisk{kPlatformMountNoDesktopManager};
    const FSSpec mFile = mDisk.MakeFile("Folder/File");
    const FSSpec mFolder = mDisk.Spec("Folder");
    FSSpec mDesktop = {};
};

TEST_F(DesktopFileComments, AreFoundByTheirNumber) {
    MakeDesktopFile();
    AddComment(128, "of the file");
    AddComment(129, "of the folder");
    Number(mFile, 128);
    Number(mFolder, 129);
    EXPECT_EQ(CommentOf(mFile), "of the file");
    EXPECT_EQ(CommentOf(mFolder), "of the folder");
}

TEST_F(DesktopFileComments, CannotBeSet) {
    MakeDesktopFile();
    EXPECT_EQ(FSpDTSetComment(&mFile, PString("text")), paramErr);
}

TEST_F(DesktopFileComments, OfANumberOfZeroAreNotThere) {
    MakeDesktopFile();
    AddComment(0, "of nobody");
    EXPECT_EQ(CommentOf(mFile), "-5012");
}

TEST_F(DesktopFileComments, AreNotThereWithoutTheFileTheResourceOrItsText) {
    Number(mFile, 128);
    EXPECT_EQ(CommentOf(mFile), "-5012");
    MakeDesktopFile();
    EXPECT_EQ(CommentOf(mFile), "-5012");
    AddResourceTo(mDesktop, 'FCMT', 128, "");
    EXPECT_EQ(CommentOf(mFile), "-5012");
    EXPECT_EQ(CommentOf(mDisk.Spec("None")), "-5012");
}

TEST_F(DesktopFileComments, EndWithTheResourceThatHoldsThem) {
    MakeDesktopFile();
    AddResourceTo(mDesktop, 'FCMT', 128,
                  "\x64"
                  "abc");
    Number(mFile, 128);
    EXPECT_EQ(CommentOf(mFile), "abc");
}

TEST_F(DesktopFileComments, LeaveTheCurrentResourceFileAndLoadingAsTheyWere) {
    MakeDesktopFile();
    AddComment(128, "text");
    Number(mFile, 128);
    const FSSpec own = mDisk.MakeFile("Own", 'ttxt', 'rsrc');
    AddResourceTo(own, 'FCMT', 128, "\003own");
    const SInt16 current = FSpOpenResFile(&own, fsRdPerm);
    ASSERT_NE(current, -1);
    EXPECT_EQ(CommentOf(mFile), "text");
    EXPECT_EQ(CurResFile(), current);
    EXPECT_TRUE(LMGetResLoad());
    CloseResFile(current);
}

}  // namespace
