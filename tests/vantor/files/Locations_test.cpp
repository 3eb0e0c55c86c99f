// Names, parents and paths.
#include "vantor/files/Locations.h"

#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

std::string FilenameOf(const std::string& inPath) {
    Str255 name = {1, '?'};
    const OSErr err = GetFilenameFromPathname(PString(inPath), name);
    return err == noErr ? TextOf(name) : std::to_string(err) + "," + TextOf(name);
}

TEST(Filename, IsTheLastNameOfAPath) {
    EXPECT_EQ(FilenameOf("Disk:Folder:File"), "File");
    EXPECT_EQ(FilenameOf("Disk:Folder:"), "Folder");
    EXPECT_EQ(FilenameOf("File"), "File");
    EXPECT_EQ(FilenameOf(":File"), "File");
    EXPECT_EQ(FilenameOf(":Folder:"), "Folder");
    EXPECT_EQ(FilenameOf("::File"), "File");
    EXPECT_EQ(FilenameOf("D:" + std::string(253, 'x')), std::string(253, 'x'));
}

TEST(Filename, IsMissingInVolumesAndPathsThatClimb) {
    for (const char* const path : {"", "Disk:", "Disk:Folder::", ":", "::", ":::"}) {
        EXPECT_EQ(FilenameOf(path), "-1302,") << path;
    }
    Str255 name = {1, '?'};
    EXPECT_EQ(GetFilenameFromPathname(nullptr, name), notAFileErr);
    EXPECT_EQ(name[0], 0);
}

class Locations : public ::testing::Test {
  protected:
    struct Found {
        OSErr err;
        FSVolumeRefNum volume;
        SInt32 parent;
        std::string name;
        int isFolder;
        bool operator==(const Found&) const = default;
        friend void PrintTo(const Found& inFound, std::ostream* outText) {
            *outText << inFound.err << " volume " << inFound.volume << " parent " << inFound.parent
                     << " '" << inFound.name << "' folder " << inFound.isFolder;
        }
    };

    Found Locate(const std::string& inPath, SInt32 inDirID) const {
        FSVolumeRefNum volume = 99;
        SInt32 parent = 99;
        Str255 name = {1, '?'};
        Boolean isFolder = false;
        const OSErr err = GetObjectLocation(mDisk.Number(), inDirID, PString(inPath), &volume,
                                            &parent, name, &isFolder);
        return {err, volume, parent, TextOf(name), isFolder};
    }
    SInt32 ParentOf(const std::string& inName, SInt32 inDirID) const {
        SInt32 parent = -1;
        EXPECT_EQ(GetParentID(mDisk.Number(), inDirID, PString(inName), &parent), noErr) << inName;
        return parent;
    }
    FSVolumeRefNum Volume() const { return mDisk.Number(); }

    const MountedVolume mDisk;
    const SInt32 mOuter = mDisk.MakeFolder("Outer");
    const SInt32 mInner = mDisk.MakeFolder("Outer/Inner");
    const FSSpec mFile = mDisk.MakeFile("Outer/Inner/File");
};

TEST_F(Locations, NameOfAFolderIsFoundByItsID) {
    Str255 name;
    ASSERT_EQ(GetDirName(Volume(), mInner, name), noErr);
    EXPECT_EQ(TextOf(name), "Inner");
    ASSERT_EQ(GetDirName(Volume(), fsRtDirID, name), noErr);
    EXPECT_EQ(TextOf(name), "Disk");
    EXPECT_EQ(GetDirName(Volume(), mInner, nullptr), paramErr);
    EXPECT_EQ(GetDirName(Volume(), 0x3FFFFFF, name), dirNFErr);
}

TEST_F(Locations, ParentsAreFoundByName) {
    EXPECT_EQ(ParentOf("File", mInner), mInner);
    EXPECT_EQ(ParentOf("Inner", mOuter), mOuter);
    EXPECT_EQ(ParentOf(":Outer:Inner:File", fsRtDirID), mInner);
    EXPECT_EQ(ParentOf("Disk:", mInner), fsRtParID);
    EXPECT_EQ(ParentOf("", mInner), mOuter);
    SInt32 parent = -1;
    EXPECT_EQ(GetParentID(Volume(), mInner, nullptr, &parent), noErr);
    EXPECT_EQ(parent, mOuter);
    EXPECT_EQ(GetParentID(Volume(), mInner, PString("None"), &parent), fnfErr);
    EXPECT_EQ(parent, mOuter);
}

TEST_F(Locations, ParentsOfAPathThatClimbsAreTheTrueOnes) {
    EXPECT_EQ(ParentOf("::", mInner), fsRtDirID);
    EXPECT_EQ(ParentOf(":::", mInner), fsRtParID);
    EXPECT_EQ(ParentOf(":Outer:Inner::", fsRtDirID), fsRtDirID);
    EXPECT_EQ(ParentOf("Disk:Outer:Inner::", fsRtDirID), fsRtDirID);
}

TEST_F(Locations, ParentsOfAPathThatClimbsAreAskedForOnceMoreByID) {
    const StFileFaults faults;
    gFileFaults.getCatalogInfo = [](CInfoPBPtr ioBlock) {
        const OSErr err = REAL_CALL(PBGetCatInfoSync)(ioBlock);
        if (ioBlock->dirInfo.ioFDirIndex == 0) ioBlock->dirInfo.ioDrParID = 99;
        return err;
    };
    EXPECT_EQ(ParentOf("::", mInner), fsRtDirID);
    EXPECT_EQ(ParentOf(":Outer:Inner::", fsRtDirID), fsRtDirID);
    EXPECT_EQ(ParentOf("Inner", mOuter), 99) << "the first answer will do";
    EXPECT_EQ(ParentOf(":", mInner), 99) << "the first answer will do";
}

TEST_F(Locations, OfFilesAreTheFolderAndTheNameOfThePath) {
    const Found file = {noErr, Volume(), mInner, "File", 0};
    EXPECT_EQ(Locate("File", mInner), file);
    EXPECT_EQ(Locate(":Outer:Inner:File", fsRtDirID), file);
    EXPECT_EQ(Locate("Disk:Outer:Inner:File", mInner), file);
    EXPECT_EQ(Locate("file", mInner).name, "file") << "as the caller spells it";
}

TEST_F(Locations, OfFoldersAreTheirOwnNameAndParent) {
    const Found inner = {noErr, Volume(), mOuter, "Inner", 1};
    EXPECT_EQ(Locate("Inner", mOuter), inner);
    EXPECT_EQ(Locate(":Outer:inner:", fsRtDirID), inner) << "as the disk spells it";
    EXPECT_EQ(Locate("", mInner), inner);
    const Found root = {noErr, Volume(), fsRtParID, "Disk", 1};
    EXPECT_EQ(Locate("Disk:", mInner), root);
    EXPECT_EQ(Locate(":::", mInner), root);
}

TEST_F(Locations, OfWhatIsMissingAreWhereItCouldBe) {
    EXPECT_EQ(Locate("New", mInner), (Found{fnfErr, Volume(), mInner, "New", 0}));
    EXPECT_EQ(Locate(":Inner:New", mOuter), (Found{fnfErr, Volume(), mInner, "New", 0}));
    EXPECT_EQ(Locate(":New:", mOuter), (Found{fnfErr, Volume(), mOuter, "New", 0}));
    EXPECT_EQ(Locate("Disk:New", mOuter), (Found{fnfErr, Volume(), fsRtDirID, "New", 0}));
}

TEST_F(Locations, AreNowhereWithoutTheFolder) {
    EXPECT_EQ(Locate(":None:New", mOuter).err, dirNFErr);
    EXPECT_EQ(Locate("New", 0x3FFFFFF).err, dirNFErr);
    EXPECT_EQ(Locate(":File:New", mInner).err, dirNFErr);
}

TEST_F(Locations, AreClearedWithoutAVolume) {
    FSVolumeRefNum volume = 9;
    SInt32 parent = 9;
    Str255 name = {1, '?'};
    Boolean isFolder = 2;
    EXPECT_EQ(GetObjectLocation(-32768, 2, PString("File"), &volume, &parent, name, &isFolder),
              nsvErr);
    EXPECT_EQ(volume, 0);
    EXPECT_EQ(parent, 0);
    EXPECT_EQ(name[0], 0);
}

TEST_F(Locations, OfOpenForksAreTheirFiles) {
    SInt16 fork = 0;
    ASSERT_EQ(FSpOpenDF(&mFile, fsRdPerm, &fork), noErr);
    FSSpec found = {};
    EXPECT_EQ(FSpGetFileLocation(fork, &found), noErr);
    EXPECT_EQ(+found.vRefNum, Volume());
    EXPECT_EQ(+found.parID, mInner);
    EXPECT_EQ(TextOf(found.name), "File");
    ASSERT_EQ(FSClose(fork), noErr);
    FSVolumeRefNum volume = 9;
    SInt32 parent = 9;
    EXPECT_NE(GetFileLocation(fork, &volume, &parent, found.name), noErr);
    EXPECT_EQ(volume, 9);
    EXPECT_EQ(parent, 9);
}

class Truncation : public ::testing::Test {
  protected:
    ~Truncation() override { PlatformSetCurrentScript(smRoman); }

    static std::string Cut(const std::string& inText, SInt16 inMaximum) {
        Str255 cut = {1, '?'};
        TruncPString(cut, PString(inText), inMaximum);
        return TextOf(cut);
    }
};

TEST_F(Truncation, CutsWhatIsLonger) {
    EXPECT_EQ(Cut("abcdef", 3), "abc");
    EXPECT_EQ(Cut("abc", 3), "abc");
    EXPECT_EQ(Cut("abc", 255), "abc");
    EXPECT_EQ(Cut("abc", 0), "");
    EXPECT_EQ(Cut("abc", -1), "");
    EXPECT_EQ(Cut("", 5), "");
}

TEST_F(Truncation, NeverSplitsACharacterOfTwoBytes) {
    PlatformSetCurrentScript(smJapanese);
    const std::string text = "a\x82\xA0\x82\xA2z";
    EXPECT_EQ(Cut(text, 5), "a\x82\xA0\x82\xA2");
    EXPECT_EQ(Cut(text, 4), "a\x82\xA0");
    EXPECT_EQ(Cut(text, 3), "a\x82\xA0");
    EXPECT_EQ(Cut(text, 2), "a");
    EXPECT_EQ(Cut("\x82\xA0", 1), "");
}

TEST_F(Truncation, InPlaceOnlyChangesTheLength) {
    Str255 text = {5, 'a', 'b', 'c', 'd', 'e'};
    TruncPString(text, text, 2);
    EXPECT_EQ(text[0], 2);
    EXPECT_EQ(text[3], 'c');
    TruncPString(nullptr, text, 1);
    TruncPString(text, nullptr, 1);
    EXPECT_EQ(text[0], 2);
}

}  // namespace
