// Folders with a purpose: where they are, what is made and what is not.
#include <Platform/Platform.h>
#include <unistd.h>

#include "platform/file_manager/FileFixture.h"

namespace {

class FolderManager : public FileFixture {
  protected:
    void SetUp() override {
        FileFixture::SetUp();
        setenv("HOME", MakeFolder("home").c_str(), 1);
        setenv("XDG_CACHE_HOME", Path("home/cache").c_str(), 1);
        ASSERT_EQ(PlatformMountFolder(MakeFolder("disk").c_str(), "Disk", &mVolume), noErr);
    }
    void TearDown() override { EXPECT_EQ(PlatformUnmountFolder(mVolume), noErr); }

    static std::string Find(FSVolumeRefNum inWhere, OSType inType, bool inMake = false) {
        FSVolumeRefNum volume = 99;
        SInt32 folder = 99;
        const OSErr error = FindFolder(inWhere, inType, inMake, &volume, &folder);
        if (error != noErr) {
            EXPECT_EQ(volume, 0);
            EXPECT_EQ(folder, 0);
            return "error " + std::to_string(error);
        }
        FSSpec spec;
        EXPECT_EQ(FSMakeFSSpec(volume, folder, nullptr, &spec), noErr);
        return PathOf(spec);
    }
    static std::string Missing() { return "error " + std::to_string(fnfErr); }

    FSVolumeRefNum mVolume = 0;
};

TEST_F(FolderManager, TemporaryItemsAreOnTheVolumeAskedFor) {
    const auto place = Path("disk/.TemporaryItems/folders.") + std::to_string(getuid());
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType), Missing());
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType, kCreateFolder), place + "/TemporaryItems");
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType), place + "/TemporaryItems");
}

TEST_F(FolderManager, TemporaryItemsAreInNoFolderOfAnothersMaking) {
    MakeFolder("disk/trap");
    MakeFolder("disk/.TemporaryItems");
    const auto own = "folders." + std::to_string(getuid());
    std::filesystem::create_directory_symlink("../trap", Path("disk/.TemporaryItems/") + own);
    const auto refused = "error " + std::to_string(permErr);
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType, kCreateFolder), refused);
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType), refused);
}

TEST_F(FolderManager, NothingIsMadeOnALockedVolume) {
    HParamBlockRec volume{};
    volume.volumeParam.ioVRefNum = mVolume;
    volume.volumeParam.ioVAtrb = SInt16(kioVAtrbSoftwareLockedMask);
    ASSERT_EQ(PBSetVInfoSync(&volume), noErr);
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType, kCreateFolder),
              "error " + std::to_string(vLckdErr));
    EXPECT_FALSE(std::filesystem::exists(Path("disk/.TemporaryItems")));
}

TEST_F(FolderManager, EachVolumeHasATrashOfItsOwn) {
    EXPECT_EQ(Find(mVolume, kTrashFolderType, kCreateFolder),
              Path("disk/.Trash-") + std::to_string(getuid()) + "/files");
    EXPECT_EQ(Find(kUserDomain, kTrashFolderType, kCreateFolder),
              (Home().Root() / "data/Trash/files").string());
}

TEST_F(FolderManager, TheRootIsTheVolumesOwn) {
    EXPECT_EQ(Find(mVolume, kVolumeRootFolderType), Path("disk"));
    EXPECT_EQ(Find(kOnSystemDisk, kVolumeRootFolderType), "/");
}

TEST_F(FolderManager, TheUsersFoldersFollowTheUsersSettings) {
    EXPECT_EQ(Find(kUserDomain, kDesktopFolderType), Missing());
    MakeFolder("home/Desktop");
    EXPECT_EQ(Find(kUserDomain, kDesktopFolderType), Path("home/Desktop"));
    std::ofstream(Home().Root() / "config/user-dirs.dirs")
        << "# comment\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_DOCUMENTS_DIR=\""
        << Path("papers") << "\"\n";
    EXPECT_EQ(Find(kOnAppropriateDisk, kDesktopFolderType, kCreateFolder),
              Path("home/Schreibtisch"));
    EXPECT_EQ(Find(kUserDomain, kDocumentsFolderType, kCreateFolder), Path("papers"));
    std::filesystem::remove(Home().Root() / "config/user-dirs.dirs");
}

TEST_F(FolderManager, TheDomainsHaveFoldersOfTheirOwn) {
    EXPECT_EQ(Find(kUserDomain, kPreferencesFolderType), (Home().Root() / "config").string());
    EXPECT_EQ(Find(kUserDomain, kApplicationsFolderType, kCreateFolder),
              (Home().Root() / "data/vantor/Applications").string());
    EXPECT_EQ(Find(kLocalDomain, kApplicationsFolderType, kCreateFolder),
              (Home().Root() / "share/vantor/Applications").string());
    EXPECT_EQ(Find(kNetworkDomain, kApplicationsFolderType, kCreateFolder), Missing());
    EXPECT_EQ(Find(kClassicDomain, kPreferencesFolderType, kCreateFolder), Missing());
}

TEST_F(FolderManager, AUsersFolderIsNotOnAnotherVolume) {
    EXPECT_EQ(Find(mVolume, kPreferencesFolderType, kCreateFolder), Missing());
}

TEST_F(FolderManager, TheSystemFolderIsNeverMade) {
    EXPECT_EQ(Find(kOnSystemDisk, kSystemFolderType, kCreateFolder), Missing());
    EXPECT_EQ(Find(kSystemDomain, kSystemFolderType, kCreateFolder), Missing());
}

TEST_F(FolderManager, AnUnknownVolumeIsNoVolume) {
    EXPECT_EQ(Find(-31000, kTemporaryFolderType, kCreateFolder), "error " + std::to_string(nsvErr));
}

TEST_F(FolderManager, WhatIsInTheWayIsNoFolder) {
    Write("disk/.TemporaryItems");
    EXPECT_EQ(Find(mVolume, kTemporaryFolderType, kCreateFolder).substr(0, 5), "error");
}

TEST_F(FolderManager, GivesReferencesToo) {
    FSRef ref;
    ASSERT_EQ(FSFindFolder(mVolume, kTemporaryFolderType, kCreateFolder, &ref), noErr);
    EXPECT_EQ(PathOf(ref), Find(mVolume, kTemporaryFolderType));
    EXPECT_EQ(FSFindFolder(mVolume, kTemporaryFolderType, kCreateFolder, nullptr), paramErr);
}

}  // namespace
