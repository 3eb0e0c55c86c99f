// Making, deleting, renaming and moving files and folders.
#include <sys/wait.h>
#include <unistd.h>

#include "VolumeFixture.h"

namespace {

class ChangesTest : public VolumeFixture {
  protected:
    OSErr Create(const std::string& inName) {
        return HCreate(mVolume, 2, PString(inName), 'ttxt', 'TEXT');
    }
    OSErr MakeDirectory(const std::string& inName, SInt32* outId) {
        return DirCreate(mVolume, 2, PString(inName), outId);
    }
    OSErr Delete(const std::string& inName) { return HDelete(mVolume, 2, PString(inName)); }
    OSErr Rename(const std::string& inName, const std::string& inNewName) {
        return HRename(mVolume, 2, PString(inName), PString(inNewName));
    }
    OSErr Move(const std::string& inName, SInt32 inFolder) {
        return CatMove(mVolume, 2, PString(inName), inFolder, nullptr);
    }
    UInt32 TypeOf(const std::string& inPath) {
        FInfo info{};
        const FSSpec spec = SpecOf(inPath);
        EXPECT_EQ(FSpGetFInfo(&spec, &info), noErr);
        return info.fdType;
    }
};

TEST_F(ChangesTest, CreateAnEmptyFileWithTypeAndCreator) {
    EXPECT_EQ(Create("New"), noErr);
    const auto info = Info(2, "New").hFileInfo;
    EXPECT_EQ(+info.ioFlFndrInfo.fdType, UInt32('TEXT'));
    EXPECT_EQ(+info.ioFlFndrInfo.fdCreator, UInt32('ttxt'));
    EXPECT_EQ(+info.ioFlLgLen + info.ioFlRLgLen, 0);
    HParamBlockRec block{};
    PString name("Plain");
    block.fileParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.fileParam.ioVRefNum = mVolume;
    block.fileParam.ioDirID = 2;
    EXPECT_EQ(PBHCreateSync(&block), noErr);
    EXPECT_EQ(+block.fileParam.ioResult, noErr);
    EXPECT_FALSE(Exists("Disk/._Plain"));
    const FSSpec spec = [&] {
        FSSpec made;
        EXPECT_EQ(MakeSpec(mVolume, 2, "By spec", &made), fnfErr);
        return made;
    }();
    EXPECT_EQ(FSpCreate(&spec, 'ttxt', 'TEXT', smJapanese), noErr);
    EXPECT_EQ(SInt8(0x81), Info(2, "By spec").hFileInfo.ioFlXFndrInfo.fdScript);
}

TEST_F(ChangesTest, RefuseToCreateWhatIsThereOrCannotBe) {
    Write("Disk/File");
    MakeFolder("Disk/Folder");
    EXPECT_EQ(Create("File"), dupFNErr);
    EXPECT_EQ(Create("fILE"), dupFNErr);
    EXPECT_EQ(Create("Folder"), dupFNErr);
    EXPECT_EQ(Create(""), bdNamErr);
    EXPECT_EQ(Create(std::string(64, 'x')), bdNamErr);
    EXPECT_EQ(Create("._File"), bdNamErr);
    EXPECT_EQ(Create(":Missing:File"), dirNFErr);
    EXPECT_EQ(HCreate(-32768, 2, PString("File"), 0, 0), nsvErr);
    EXPECT_EQ(HCreate(mVolume, 999, PString("File"), 0, 0), dirNFErr);
    EXPECT_EQ(HCreate(mVolume, 2, nullptr, 0, 0), bdNamErr);
    SInt32 id = 0;
    EXPECT_EQ(MakeDirectory("fOLDER", &id), dupFNErr);
    EXPECT_EQ(MakeDirectory("File", &id), dupFNErr);
    EXPECT_EQ(id, 0);
}

TEST_F(ChangesTest, NeverTouchAVolumeThatIsLocked) {
    MakeFolder("Hard/Folder");
    Write("Hard/File");
    const auto hard = Mount("Hard", "Hard", kPlatformMountHardwareLocked);
    SInt32 id;
    const PString file("File"), other("Other");
    EXPECT_EQ(HCreate(hard, 2, other, 0, 0), wPrErr);
    EXPECT_EQ(DirCreate(hard, 2, other, &id), wPrErr);
    EXPECT_EQ(HDelete(hard, 2, file), wPrErr);
    EXPECT_EQ(HRename(hard, 2, file, other), wPrErr);
    const SInt32 folder = NumberOf(Path("Hard/Folder"));
    EXPECT_EQ(CatMove(hard, 2, file, folder, nullptr), wPrErr);
    MakeFolder("Soft");
    const auto soft = Mount("Soft", "Soft", kPlatformMountSoftwareLocked);
    EXPECT_EQ(HCreate(soft, 2, other, 0, 0), vLckdErr);
    EXPECT_TRUE(Exists("Hard/File"));
}

TEST_F(ChangesTest, GiveANewFolderItsNumberForEveryProcess) {
    SInt32 id = 0;
    EXPECT_EQ(MakeDirectory("Folder", &id), noErr);
    EXPECT_EQ(id, FolderID("Folder"));
    Write("Disk/Folder/File");
    EXPECT_EQ(Ask("spec " + Path("Disk/Folder/File"))
                  .find("0 " + std::to_string(mVolume) + ' ' + std::to_string(id)),
              0u);
    HParamBlockRec block{};
    PString name("Other");
    block.fileParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.fileParam.ioVRefNum = mVolume;
    block.fileParam.ioDirID = id;
    EXPECT_EQ(PBDirCreateSync(&block), noErr);
    EXPECT_EQ(+block.fileParam.ioDirID, NumberOf(Path("Disk/Folder/Other")));
}

TEST_F(ChangesTest, NeverGiveAFolderTheNumberOfAnEarlierOne) {
    SInt32 first = 0, second = 0;
    ASSERT_EQ(MakeDirectory("Folder", &first), noErr);
    ASSERT_EQ(Delete("Folder"), noErr);
    ASSERT_EQ(MakeDirectory("Folder", &second), noErr);
    EXPECT_NE(first, second);
    EXPECT_EQ(Entry(first, -1), "error -120");
}

TEST_F(ChangesTest, DeleteAFileWithAllThatBelongsToIt) {
    ASSERT_EQ(Create("File"), noErr);
    EXPECT_TRUE(Exists("Disk/._File"));
    EXPECT_EQ(Delete("File"), noErr);
    EXPECT_FALSE(Exists("Disk/File"));
    EXPECT_FALSE(Exists("Disk/._File"));
    EXPECT_EQ(Delete("File"), fnfErr);
}

TEST_F(ChangesTest, DeleteAFolderOnlyWhenItIsEmpty) {
    MakeFolder("Disk/Folder");
    Write("Disk/Folder/File");
    const SInt32 folder = FolderID("Folder");
    EXPECT_EQ(Delete("Folder"), fBsyErr);
    std::filesystem::remove(Path("Disk/Folder/File"));
    EXPECT_EQ(HDelete(mVolume, folder, nullptr), noErr);
    EXPECT_FALSE(Exists("Disk/Folder"));
    EXPECT_EQ(HDelete(mVolume, 2, nullptr), fBsyErr);
}

TEST_F(ChangesTest, DeleteAFolderInWhichOnlyCompanionsAreLeft) {
    MakeFolder("Disk/Folder");
    ASSERT_EQ(HCreate(mVolume, FolderID("Folder"), PString("File"), 'ttxt', 'TEXT'), noErr);
    std::filesystem::remove(Path("Disk/Folder/File"));
    EXPECT_TRUE(Exists("Disk/Folder/._File"));
    EXPECT_EQ(Delete("Folder"), noErr);
    EXPECT_FALSE(Exists("Disk/Folder"));
}

TEST_F(ChangesTest, LeaveCompanionsInAFolderThatStays) {
    MakeFolder("Disk/Folder");
    ASSERT_EQ(HCreate(mVolume, FolderID("Folder"), PString("File"), 'ttxt', 'TEXT'), noErr);
    std::filesystem::remove(Path("Disk/Folder/File"));
    Write("Disk/Folder/Other");
    EXPECT_EQ(Delete("Folder"), fBsyErr);
    EXPECT_TRUE(Exists("Disk/Folder/._File"));
}

// The resource fork of a file went when its companion was deleted by name.
TEST_F(ChangesTest, NeverReachACompanionByItsName) {
    ASSERT_EQ(Create("File"), noErr);
    MakeFolder("Disk/Folder");
    Write("Disk/._Stray", "no AppleDouble file, and nobody's");
    const auto before = std::filesystem::file_size(Path("Disk/._File"));
    for (const auto* name : {"._File", "._fILE", "._Stray"}) {
        FSSpec spec;
        SInt16 number = 0;
        CInfoPBRec info;
        EXPECT_EQ(MakeSpec(mVolume, 2, name, &spec), fnfErr) << name;
        EXPECT_EQ(Delete(name), fnfErr) << name;
        EXPECT_EQ(Rename(name, "Other"), fnfErr) << name;
        EXPECT_EQ(Move(name, FolderID("Folder")), fnfErr) << name;
        EXPECT_EQ(HOpenDF(mVolume, 2, PString(name), fsRdWrPerm, &number), fnfErr) << name;
        EXPECT_EQ(HSetFLock(mVolume, 2, PString(name)), fnfErr) << name;
        EXPECT_EQ(GetInfo(2, name, &info), fnfErr) << name;
        EXPECT_EQ(Create(name), bdNamErr) << name;
        EXPECT_EQ(Rename("File", name), bdNamErr) << name;
    }
    FSRef ref;
    EXPECT_EQ(RefOf(Path("Disk/._File"), &ref), fnfErr);
    EXPECT_EQ(std::filesystem::file_size(Path("Disk/._File")), before);
    EXPECT_TRUE(Exists("Disk/._Stray"));
    EXPECT_EQ(Entries(2), (std::vector<std::string>{"File", "Folder"}));
}

// A folder is nobody's companion: hidden, it would be in the way of deleting the one around it.
TEST_F(ChangesTest, TreatAFolderThatIsNamedLikeACompanionAsAFolder) {
    MakeFolder("Disk/Folder/._Inner");
    Write("Disk/Folder/._Inner/File");
    const SInt32 folder = FolderID("Folder");
    EXPECT_EQ(Entries(folder), (std::vector<std::string>{"._Inner"}));
    EXPECT_EQ(Delete("Folder"), fBsyErr);
    EXPECT_EQ(HDelete(mVolume, folder, PString(":._Inner:File")), noErr);
    EXPECT_EQ(HDelete(mVolume, folder, PString("._Inner")), noErr);
    EXPECT_EQ(Entries(folder), (std::vector<std::string>{}));
    EXPECT_EQ(Delete("Folder"), noErr);
}

TEST_F(ChangesTest, RefuseToDeleteRenameOrMoveWhatIsLocked) {
    ASSERT_EQ(Create("File"), noErr);
    MakeFolder("Disk/Folder");
    ASSERT_EQ(HSetFLock(mVolume, 2, PString("File")), noErr);
    EXPECT_EQ(Delete("File"), fLckdErr);
    EXPECT_EQ(Rename("File", "Other"), fLckdErr);
    EXPECT_EQ(Move("File", FolderID("Folder")), fLckdErr);
    ASSERT_EQ(HRstFLock(mVolume, 2, PString("File")), noErr);
    EXPECT_EQ(Delete("File"), noErr);
}

TEST_F(ChangesTest, RenameAFileWithAllThatBelongsToIt) {
    ASSERT_EQ(Create("Old"), noErr);
    EXPECT_EQ(Rename("Old", "N\x8ew/One"), noErr);
    EXPECT_TRUE(Exists("Disk/Néw:One"));
    EXPECT_FALSE(Exists("Disk/Old"));
    EXPECT_FALSE(Exists("Disk/._Old"));
    EXPECT_EQ(TypeOf(Path("Disk/Néw:One")), UInt32('TEXT'));
}

TEST_F(ChangesTest, RenameToAnotherCaseButNotToAnotherObject) {
    Write("Disk/File");
    Write("Disk/Other");
    EXPECT_EQ(Rename("File", "OTHER"), dupFNErr);
    EXPECT_EQ(Rename("File", "Other"), dupFNErr);
    EXPECT_EQ(Rename("File", "fILE"), noErr);
    EXPECT_TRUE(Exists("Disk/fILE"));
    EXPECT_FALSE(Exists("Disk/File"));
    EXPECT_EQ(Rename("fILE", "fILE"), noErr);
    EXPECT_EQ(Rename("fILE", ""), bdNamErr);
    EXPECT_EQ(Rename("fILE", "a:b"), bdNamErr);
    EXPECT_EQ(Rename("fILE", std::string(64, 'x')), bdNamErr);
    EXPECT_EQ(Rename("Missing", "x"), fnfErr);
    EXPECT_EQ(HRename(mVolume, 2, PString("fILE"), nullptr), paramErr);
}

TEST_F(ChangesTest, RenameByParameterBlockAndBySpec) {
    Write("Disk/File");
    HParamBlockRec block{};
    PString name("File"), newName("Second");
    block.ioParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.ioParam.ioVRefNum = mVolume;
    block.fileParam.ioDirID = 2;
    block.ioParam.ioMisc = reinterpret_cast<Ptr>(const_cast<StringPtr>(ConstStringPtr(newName)));
    EXPECT_EQ(PBHRenameSync(&block), noErr);
    const FSSpec spec = SpecOf(Path("Disk/Second"));
    EXPECT_EQ(FSpRename(&spec, PString("Third")), noErr);
    EXPECT_EQ(NameOf(spec), "Second");
    EXPECT_TRUE(Exists("Disk/Third"));
}

TEST_F(ChangesTest, KeepAFoldersNumberWhenItIsRenamedOrMoved) {
    MakeFolder("Disk/Top");
    MakeFolder("Disk/Folder/Deep");
    Write("Disk/Folder/Deep/File");
    const FSSpec file = SpecOf(Path("Disk/Folder/Deep/File"));
    const SInt32 folder = FolderID("Folder"), top = FolderID("Top");
    EXPECT_EQ(Rename("Folder", "Renamed"), noErr);
    EXPECT_EQ(FolderID("Renamed"), folder);
    EXPECT_EQ(Ask("path " + Described(file)), "0 " + Path("Disk/Renamed/Deep/File"));
    EXPECT_EQ(Move("Renamed", top), noErr);
    EXPECT_EQ(Ask("path " + Described(file)), "0 " + Path("Disk/Top/Renamed/Deep/File"));
    EXPECT_EQ(PathOf(file), Path("Disk/Top/Renamed/Deep/File"));
    EXPECT_EQ(Entry(folder, -1), "Renamed");
}

TEST_F(ChangesTest, SeeAtOnceWhatAnotherProcessRenamedOrMoved) {
    MakeFolder("Disk/Top");
    MakeFolder("Disk/Folder");
    Write("Disk/Folder/File");
    const FSSpec file = SpecOf(Path("Disk/Folder/File"));
    EXPECT_EQ(Ask("rename " + Described(SpecOf(Path("Disk/Folder"))) + " Renamed"), "0");
    EXPECT_EQ(PathOf(file), Path("Disk/Renamed/File"));
    EXPECT_EQ(Ask("move " + Described(SpecOf(Path("Disk/Renamed"))) + ' ' +
                  std::to_string(FolderID("Top"))),
              "0");
    EXPECT_EQ(PathOf(file), Path("Disk/Top/Renamed/File"));
    EXPECT_EQ(Ask("delete " + Described(file)), "0");
    EXPECT_EQ(PathOf(file), "error -43");
    EXPECT_EQ(Ask("create " + Described(file)), "0");
    EXPECT_EQ(PathOf(file), Path("Disk/Top/Renamed/File"));
    EXPECT_EQ(Ask("lock " + Described(file)), "0");
    EXPECT_EQ(FSpDelete(&file), fLckdErr);
}

TEST_F(ChangesTest, MoveOnlyToAFolderThatCanTakeIt) {
    MakeFolder("Disk/Top/Inner");
    MakeFolder("Disk/Other");
    Write("Disk/File");
    Write("Disk/Other/fILE");
    const SInt32 top = FolderID("Top"), other = FolderID("Other");
    const SInt32 inner = Info(top, "Inner").dirInfo.ioDrDirID;
    EXPECT_EQ(Move("Top", inner), badMovErr);
    EXPECT_EQ(Move("Top", top), badMovErr);
    EXPECT_EQ(Move("File", other), dupFNErr);
    EXPECT_EQ(Move("File", 999), dirNFErr);
    EXPECT_EQ(Move("Missing", top), fnfErr);
    EXPECT_EQ(CatMove(mVolume, 2, PString("Top"), 2, PString("File")), badMovErr);
    EXPECT_EQ(CatMove(mVolume, 2, nullptr, top, nullptr), badMovErr);
    EXPECT_EQ(Move("File", 2), noErr);
    EXPECT_EQ(CatMove(mVolume, 2, PString("File"), 2, PString(":Top:Inner:")), noErr);
    EXPECT_TRUE(Exists("Disk/Top/Inner/File"));
    EXPECT_FALSE(Exists("Disk/File"));
}

TEST_F(ChangesTest, MoveWithinOneVolumeOnly) {
    Write("Disk/File");
    MakeFolder("Second");
    const auto second = Mount("Second", "Second", 0);
    const FSSpec file = SpecOf(Path("Disk/File"));
    FSSpec folder;
    ASSERT_EQ(FSMakeFSSpec(second, 2, nullptr, &folder), noErr);
    EXPECT_EQ(FSpCatMove(&file, &folder), diffVolErr);
    EXPECT_EQ(CatMove(mVolume, 2, PString("File"), 0, PString("Second:")), diffVolErr);
    EXPECT_TRUE(Exists("Disk/File"));
}

TEST_F(ChangesTest, MoveBySpecAndByParameterBlock) {
    ASSERT_EQ(Create("File"), noErr);
    MakeFolder("Disk/Folder");
    const FSSpec file = SpecOf(Path("Disk/File")), folder = SpecOf(Path("Disk/Folder"));
    EXPECT_EQ(FSpCatMove(&file, &folder), noErr);
    EXPECT_EQ(TypeOf(Path("Disk/Folder/File")), UInt32('TEXT'));
    CMovePBRec block{};
    PString name("File");
    block.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.ioVRefNum = mVolume;
    block.ioDirID = FolderID("Folder");
    block.ioNewDirID = 2;
    EXPECT_EQ(PBCatMoveSync(&block), noErr);
    EXPECT_TRUE(Exists("Disk/._File"));
}

TEST_F(ChangesTest, MoveAndRenameInOneStepWhereTheVolumeCan) {
    ASSERT_EQ(Create("File"), noErr);
    MakeFolder("Disk/Folder");
    Write("Disk/Folder/File");
    const auto moveAndRename = [&](FSVolumeRefNum inVolume, const char* inName) {
        HParamBlockRec block{};
        PString name("File"), newName(inName), folder(":Folder");
        block.copyParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        block.copyParam.ioVRefNum = inVolume;
        block.copyParam.ioDirID = 2;
        block.copyParam.ioNewDirID = 2;
        block.copyParam.ioNewName = const_cast<StringPtr>(ConstStringPtr(folder));
        block.copyParam.ioCopyName = const_cast<StringPtr>(ConstStringPtr(newName));
        return PBHMoveRenameSync(&block);
    };
    EXPECT_EQ(moveAndRename(mVolume, "File"), dupFNErr);
    EXPECT_EQ(moveAndRename(mVolume, "Moved"), noErr);
    EXPECT_EQ(TypeOf(Path("Disk/Folder/Moved")), UInt32('TEXT'));
    MakeFolder("Plain/Folder");
    Write("Plain/File");
    const auto plain = Mount("Plain", "Plain", kPlatformMountNoMoveRename);
    EXPECT_EQ(moveAndRename(plain, "Moved"), paramErr);
}

TEST_F(ChangesTest, RenameMountedFoldersAndNoOtherVolume) {
    MakeFolder("Second");
    Mount("Second", "Second", 0);
    EXPECT_EQ(HRename(0, 0, PString("Disk:"), PString("Second")), dupFNErr);
    EXPECT_EQ(HRename(0, 0, PString("Disk:"), PString("New name")), noErr);
    EXPECT_EQ(Entry(2, -1), "New name");
    EXPECT_EQ(Ask("spec " + Path("Disk")), "0 " + Described(SpecOf(Path("Disk"))));
    EXPECT_EQ(NameOf(SpecOf(Path("Disk"))), "New name");
    EXPECT_EQ(HRename(-100, 2, nullptr, PString("Other")), fBsyErr);
    EXPECT_EQ(HRename(mVolume, 2, nullptr, PString(std::string(28, 'x'))), bdNamErr);
}

TEST_F(ChangesTest, RefuseWhatTheUserMayNotDo) {
    const FSSpec file = [&] {
        FSSpec made;
        EXPECT_EQ(MakeSpec(mVolume, 2, "File", &made), fnfErr);
        return made;
    }();
    std::filesystem::permissions(Path("Disk"), std::filesystem::perms(0555));
    if (geteuid() == 0) {  // nothing stops root, so the child is somebody else
        const pid_t child = fork();
        if (child == 0) {
            // Everything on the way must be open to them.
            for (auto path = mFolder; path != "/tmp"; path = path.parent_path())
                std::filesystem::permissions(path, std::filesystem::perms(0755));
            _exit(setuid(12345) == 0 && FSpCreate(&file, 0, 0, 0) == afpAccessDenied ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    } else {
        EXPECT_EQ(FSpCreate(&file, 0, 0, 0), afpAccessDenied);
    }
    std::filesystem::permissions(Path("Disk"), std::filesystem::perms(0755));
}

}  // namespace
