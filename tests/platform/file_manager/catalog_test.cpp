// The catalog by name, by index and by number, and its records.
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <ctime>

#include "VolumeFixture.h"

namespace {

using CatalogTest = VolumeFixture;
using Names = std::vector<std::string>;

TEST_F(CatalogTest, TellsOfAFileWhatIsOnDisk) {
    Write("Disk/File", "12345");
    const auto info = Info(2, "File").hFileInfo;
    EXPECT_EQ(+info.ioFlAttrib, 0);
    EXPECT_EQ(+info.ioFlLgLen, 5);
    EXPECT_GT(+info.ioFlPyLen, 0);
    EXPECT_EQ(+info.ioFlRLgLen, 0);
    EXPECT_EQ(+info.ioFlParID, 2);
    UInt32 now = 0;
    GetDateTime(&now);
    EXPECT_NEAR(double(info.ioFlMdDat), double(now), 5);
    EXPECT_NEAR(double(info.ioFlCrDat), double(now), 5);
    EXPECT_EQ(+info.ioFlBkDat, 0u);
}

TEST_F(CatalogTest, TellsOfAFolderItsNumberParentAndEntries) {
    MakeFolder("Disk/Top/Inner");
    Write("Disk/Top/One");
    Write("Disk/Top/._One");
    const auto top = Info(2, "Top").dirInfo;
    EXPECT_EQ(+top.ioFlAttrib, kioFlAttribDirMask);
    EXPECT_EQ(+top.ioDrNmFls, 2);
    EXPECT_EQ(+top.ioDrParID, 2);
    EXPECT_EQ(+top.ioACUser, 0);
    EXPECT_EQ(+Info(top.ioDrDirID, "Inner").dirInfo.ioDrParID, +top.ioDrDirID);
    EXPECT_EQ(+Info(2, ":Top:Inner").dirInfo.ioDrDirID,
              +Info(top.ioDrDirID, "Inner").dirInfo.ioDrDirID);
}

TEST_F(CatalogTest, HoldsTheSharedFieldsAtTheSamePlaces) {
    CInfoPBRec info{};
    info.dirInfo.ioDrNmFls = 7;
    info.dirInfo.ioDrDirID = 16;
    info.dirInfo.ioDrParID = 2;
    info.dirInfo.ioDrMdDat = 99;
    EXPECT_EQ(+info.hFileInfo.ioFlStBlk, 7);
    EXPECT_EQ(+info.hFileInfo.ioDirID, 16);
    EXPECT_EQ(+info.hFileInfo.ioFlParID, 2);
    EXPECT_EQ(+info.hFileInfo.ioFlMdDat, 99u);
}

TEST_F(CatalogTest, TakesAnEmptyNameForTheDirectoryItself) {
    MakeFolder("Disk/Top");
    const SInt32 top = FolderID("Top");
    EXPECT_EQ(+Info(top, "").dirInfo.ioDrDirID, top);
    EXPECT_EQ(Entry(top, -1), "Top");
    EXPECT_EQ(Entry(2, -1), "Disk");
    EXPECT_EQ(+Info(2, "").dirInfo.ioDrParID, fsRtParID);
}

TEST_F(CatalogTest, DoesNotWriteTheNameThatCameIn) {
    Write("Disk/File");
    Str255 name =
        "\x04"
        "fILE";
    CInfoPBRec info{};
    info.hFileInfo.ioNamePtr = name;
    info.hFileInfo.ioVRefNum = mVolume;
    info.hFileInfo.ioDirID = 2;
    EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
    EXPECT_EQ(TextOf(name), "fILE");
    EXPECT_EQ(+info.hFileInfo.ioResult, noErr);
}

TEST_F(CatalogTest, AnswersBadNamesAndPlacesWithTheirCodes) {
    CInfoPBRec info;
    Write("Disk/File");
    EXPECT_EQ(GetInfo(2, "Missing", &info), fnfErr);
    EXPECT_EQ(+info.hFileInfo.ioResult, fnfErr);
    EXPECT_EQ(GetInfo(2, ":Missing:File", &info), dirNFErr);
    EXPECT_EQ(GetInfo(2, ":File:File", &info), dirNFErr);
    EXPECT_EQ(GetInfo(2, std::string(64, 'x'), &info), bdNamErr);
    EXPECT_EQ(GetInfo(999, "File", &info), dirNFErr);
    EXPECT_EQ(GetInfoOn(-32768, 2, "File", &info), nsvErr);
    EXPECT_EQ(GetInfoOn(0, 0, "No such disk:File", &info), nsvErr);
    EXPECT_EQ(GetInfoOn(0, 0, "Disk:File", &info), noErr);
    EXPECT_EQ(PBGetCatInfoSync(nullptr), paramErr);
    EXPECT_EQ(Entry(999, 1), "error -120");
    EXPECT_EQ(Entry(999, -1), "error -120");
}

TEST_F(CatalogTest, CountsEntriesInTheOrderOfNamesWithoutRegardToCase) {
    for (const char* name : {"beta", "Alpha", "_x", "GAMMA", "alpha2", "Zeta"})
        Write("Disk/" + std::string(name));
    MakeFolder("Disk/delta");
    Write("Disk/._beta");
    EXPECT_EQ(Entries(2), (Names{"_x", "Alpha", "alpha2", "beta", "delta", "GAMMA", "Zeta"}));
    EXPECT_EQ(Entry(2, 8), "error -43");
}

TEST_F(CatalogTest, KeepsTheOrderOfLongNamesThatBeginAlike) {
    Names names;
    for (int i = 0; i < 40; ++i)
        names.push_back("A name that begins alike " + std::to_string(100 + i));
    for (auto name = names.rbegin(); name != names.rend(); ++name) Write("Disk/" + *name);
    EXPECT_EQ(Entries(2), names);
}

TEST_F(CatalogTest, MovesTheNextEntryUpWhenOneGoes) {
    for (const char* name : {"a", "b", "c"}) Write("Disk/" + std::string(name));
    EXPECT_EQ(Entry(2, 2), "b");
    std::filesystem::remove(Path("Disk/b"));
    EXPECT_EQ(Entry(2, 2), "c");
    Write("Disk/aa");
    EXPECT_EQ(Entry(2, 2), "aa");
    std::filesystem::rename(Path("Disk/c"), Path("Disk/0"));
    EXPECT_EQ(Entries(2), (Names{"0", "a", "aa"}));
}

TEST_F(CatalogTest, SeesAtOnceWhatAnotherProcessChanges) {
    for (int i = 0; i < 50; ++i) {
        const auto name = "n" + std::to_string(i);
        EXPECT_EQ(Entries(2).size(), size_t(i));
        ASSERT_EQ(std::system(("touch " + Path("Disk/" + name)).c_str()), 0);
    }
    ASSERT_EQ(std::system(("rm " + Path("Disk") + "/n*").c_str()), 0);
    EXPECT_EQ(Entries(2), Names{});
}

TEST_F(CatalogTest, WalksTwoFoldersAtOnce) {
    MakeFolder("Disk/One");
    MakeFolder("Disk/Two");
    for (int i = 10; i < 40; ++i) {
        Write("Disk/One/a" + std::to_string(i));
        Write("Disk/Two/b" + std::to_string(i));
    }
    const SInt32 one = FolderID("One"), two = FolderID("Two");
    for (SInt16 i = 1; i <= 30; ++i) {
        EXPECT_EQ(Entry(one, i), "a" + std::to_string(9 + i));
        EXPECT_EQ(Entry(two, i), "b" + std::to_string(9 + i));
    }
}

TEST_F(CatalogTest, EndsAWalkWhoseFolderVanishes) {
    MakeFolder("Disk/Gone");
    for (const char* name : {"a", "b", "c"}) Write("Disk/Gone/" + std::string(name));
    const SInt32 gone = FolderID("Gone");
    EXPECT_EQ(Entry(gone, 1), "a");
    std::filesystem::remove_all(Path("Disk/Gone"));
    EXPECT_EQ(Entry(gone, 2), "error -120");
}

TEST_F(CatalogTest, FollowsAFolderThatMovesUnderAWalk) {
    MakeFolder("Disk/Here");
    for (const char* name : {"a", "b"}) Write("Disk/Here/" + std::string(name));
    const SInt32 folder = FolderID("Here");
    EXPECT_EQ(Entry(folder, 1), "a");
    std::filesystem::rename(Path("Disk/Here"), Path("Disk/There"));
    MakeFolder("Disk/Here");
    EXPECT_EQ(Entry(folder, 2), "b");
    EXPECT_EQ(Entry(folder, -1), "There");
}

TEST_F(CatalogTest, NeverTellsOfAnotherFolderThatTookTheWalkedOnesPlace) {
    MakeFolder("Disk/Above/Here");
    MakeFolder("Disk/Other/Here");
    for (const char* name : {"a", "b", "c"}) {
        Write("Disk/Above/Here/" + std::string(name), "1");
        Write("Disk/Other/Here/" + std::string(name), "22");
    }
    const SInt32 here = NumberOf(Path("Disk/Above/Here"));
    const auto length = [&](SInt16 inIndex) {
        CInfoPBRec info{};
        info.hFileInfo.ioVRefNum = mVolume;
        info.hFileInfo.ioDirID = here;
        info.hFileInfo.ioFDirIndex = inIndex;
        EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
        return +info.hFileInfo.ioFlLgLen;
    };
    EXPECT_EQ(length(1), 1);
    std::filesystem::rename(Path("Disk/Above"), Path("Disk/Gone"));
    std::filesystem::rename(Path("Disk/Other"), Path("Disk/Above"));
    EXPECT_EQ(length(2), 1);
    EXPECT_EQ(length(3), 1);
    EXPECT_EQ(Entry(here, 4), "error -43");
}

TEST_F(CatalogTest, CountsFilesOnlyForPBHGetFInfo) {
    for (const char* name : {"a", "c", "e"}) Write("Disk/" + std::string(name));
    for (const char* name : {"b", "d"}) MakeFolder("Disk/" + std::string(name));
    const auto file = [&](SInt16 inIndex) {
        Str255 name = "";
        HParamBlockRec block{};
        block.fileParam.ioNamePtr = name;
        block.fileParam.ioVRefNum = mVolume;
        block.fileParam.ioDirID = 2;
        block.fileParam.ioFDirIndex = inIndex;
        const OSErr error = PBHGetFInfoSync(&block);
        return error == noErr ? TextOf(name) : "error " + std::to_string(error);
    };
    EXPECT_EQ(file(1) + file(2) + file(3) + file(4), "aceerror -43");
    Write("Disk/bb");
    EXPECT_EQ(file(2), "bb");
    HParamBlockRec block{};
    PString folder("b");
    block.fileParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(folder));
    block.fileParam.ioVRefNum = mVolume;
    block.fileParam.ioDirID = 2;
    EXPECT_EQ(PBHGetFInfoSync(&block), fnfErr);
}

TEST_F(CatalogTest, TellsEntriesThatNoNameFitsByTheirNumber) {
    const std::string name(200, 'L');
    Write("Disk/" + name, "long");
    const auto shown = Entry(2, 1);
    EXPECT_NE(shown.find('#'), std::string::npos);
    EXPECT_EQ(+Info(2, shown).hFileInfo.ioFlLgLen, 4);
}

TEST_F(CatalogTest, CostsTheSameForEachOfManyEntries) {
    for (int i = 0; i < 20000; ++i) std::ofstream(Path("Disk/file" + std::to_string(100000 + i)));
    // Were the folder read for each entry, this would not end in the time a test has.
    SInt16 index = 1;
    while (Entry(2, index) != "error -43") ++index;
    EXPECT_EQ(index, 20001);
}

TEST_F(CatalogTest, CostsTheSameForEachEntryThatIsDeleted) {
    for (int i = 0; i < 2000; ++i) std::ofstream(Path("Disk/file" + std::to_string(100000 + i)));
    for (int i = 0; i < 2000; ++i) {
        const auto name = Entry(2, 1);
        ASSERT_EQ(HDelete(mVolume, 2, PString(name)), noErr);
    }
    EXPECT_EQ(Entry(2, 1), "error -43");
}

TEST_F(CatalogTest, TellsWhatTheUserMayNotDoInAFolder) {
    MakeFolder("Disk/Sealed");
    const bool isRoot = geteuid() == 0;  // who may do everything, but owns not everything
    const uid_t owner = isRoot ? 12345 : geteuid();
    ASSERT_EQ(chown(Path("Disk/Sealed").c_str(), owner, gid_t(-1)), 0);
    std::filesystem::permissions(Path("Disk/Sealed"), std::filesystem::perms(0500));
    const int expected = isRoot ? kioACUserNotOwnerMask : kioACUserNoMakeChangesMask;
    EXPECT_EQ(UInt8(Info(2, "Sealed").dirInfo.ioACUser), expected);
    std::filesystem::permissions(Path("Disk/Sealed"), std::filesystem::perms(0700));
}

TEST_F(CatalogTest, StopsLengthsWhereTheyCannotBeTold) {
    Write("Disk/Large");
    std::filesystem::resize_file(Path("Disk/Large"), 3000000000u);
    EXPECT_EQ(+Info(2, "Large").hFileInfo.ioFlLgLen, 0x7FFFFFFF);
}

TEST_F(CatalogTest, HasNoShortNames) {
    XCInfoPBRec block{};
    EXPECT_EQ(PBGetXCatInfoSync(&block), paramErr);
    EXPECT_EQ(+block.ioResult, paramErr);
}

TEST_F(CatalogTest, MakesSpecsByParameterBlock) {
    Write("Disk/File");
    FSSpec spec;
    HParamBlockRec block{};
    PString name("fILE");
    block.fileParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.fileParam.ioVRefNum = mVolume;
    block.ioParam.ioMisc = reinterpret_cast<Ptr>(&spec);
    EXPECT_EQ(PBMakeFSSpecSync(&block), noErr);
    EXPECT_EQ(PathOf(spec), Path("Disk/File"));
}

// --- setting ---

class FinderInfoTest : public VolumeFixture {
  protected:
    void SetUp() override {
        VolumeFixture::SetUp();
        Write("Disk/File", "data");
        MakeFolder("Disk/Folder");
    }
    OSErr Set(CInfoPBRec* ioInfo, SInt32 inDirectory, const std::string& inName) {
        PString name(inName);
        ioInfo->hFileInfo.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        ioInfo->hFileInfo.ioVRefNum = mVolume;
        ioInfo->hFileInfo.ioDirID = inDirectory;
        const OSErr error = PBSetCatInfoSync(ioInfo);
        ioInfo->hFileInfo.ioNamePtr = nullptr;
        return error;
    }
    static constexpr FInfo kInfo = {'TEXT', 'ttxt', kHasBeenInited, {1, 2}, 0};
};

TEST_F(FinderInfoTest, IsSetAndTold) {
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("File"), &kInfo), noErr);
    FInfo info{};
    EXPECT_EQ(HGetFInfo(mVolume, 2, PString("fILE"), &info), noErr);
    EXPECT_EQ(std::memcmp(&info, &kInfo, sizeof info), 0);
    const FSSpec spec = SpecOf(Path("Disk/File"));
    info.fdType = 'PICT';
    EXPECT_EQ(FSpSetFInfo(&spec, &info), noErr);
    EXPECT_EQ(+Info(2, "File").hFileInfo.ioFlFndrInfo.fdType, UInt32('PICT'));
    EXPECT_EQ(HGetFInfo(mVolume, 2, PString("Folder"), &info), fnfErr);
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("Folder"), &info), fnfErr);
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("File"), nullptr), paramErr);
    EXPECT_EQ(FSpSetFInfo(nullptr, &info), paramErr);
}

TEST_F(FinderInfoTest, IsRefusedForALockedFileAndALockedVolume) {
    EXPECT_EQ(HSetFLock(mVolume, 2, PString("File")), noErr);
    EXPECT_EQ(+Info(2, "File").hFileInfo.ioFlAttrib, kioFlAttribLockedMask);
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("File"), &kInfo), fLckdErr);
    EXPECT_EQ(HRstFLock(mVolume, 2, PString("File")), noErr);
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("File"), &kInfo), noErr);
    MakeFolder("Hard");
    MakeFolder("Soft");
    Write("Hard/File");
    Write("Soft/File");
    const auto hard = Mount("Hard", "Hard", kPlatformMountHardwareLocked);
    const auto soft = Mount("Soft", "Soft", kPlatformMountSoftwareLocked);
    EXPECT_EQ(HSetFInfo(hard, 2, PString("File"), &kInfo), wPrErr);
    EXPECT_EQ(HSetFInfo(soft, 2, PString("File"), &kInfo), vLckdErr);
    EXPECT_EQ(HSetFLock(hard, 2, PString("File")), wPrErr);
}

TEST_F(FinderInfoTest, TravelsInTheRecordWithDates) {
    auto info = Info(2, "File");
    info.hFileInfo.ioFlFndrInfo = kInfo;
    info.hFileInfo.ioFlXFndrInfo.fdComment = 77;
    info.hFileInfo.ioFlCrDat = 3000000000u;
    info.hFileInfo.ioFlMdDat = 3100000000u;
    info.hFileInfo.ioFlBkDat = 3200000000u;
    EXPECT_EQ(Set(&info, 2, "File"), noErr);
    const auto told = Info(2, "File").hFileInfo;
    EXPECT_EQ(+told.ioFlFndrInfo.fdCreator, UInt32('ttxt'));
    EXPECT_EQ(+told.ioFlXFndrInfo.fdComment, 77);
    EXPECT_EQ(+told.ioFlCrDat, 3000000000u);
    EXPECT_EQ(+told.ioFlMdDat, 3100000000u);
    EXPECT_EQ(+told.ioFlBkDat, 3200000000u);
    struct stat facts;
    ASSERT_EQ(stat(Path("Disk/File").c_str(), &facts), 0);
    struct tm local;
    const time_t time = facts.st_mtime;
    localtime_r(&time, &local);
    EXPECT_EQ(facts.st_mtime + 2082844800 + local.tm_gmtoff, 3100000000);
}

TEST_F(FinderInfoTest, LeavesNoCompanionForADateThatLinuxKeeps) {
    auto info = Info(2, "File");
    info.hFileInfo.ioFlMdDat += 1;
    EXPECT_EQ(Set(&info, 2, "File"), noErr);
    EXPECT_EQ(+Info(2, "File").hFileInfo.ioFlMdDat, +info.hFileInfo.ioFlMdDat);
    EXPECT_FALSE(Exists("Disk/._File"));
}

TEST_F(FinderInfoTest, KeepsAFolderRecordByItsOwnNumber) {
    auto info = Info(2, "Folder");
    const SInt32 folder = info.dirInfo.ioDrDirID;
    info.dirInfo.ioDrUsrWds.frFlags = kIsInvisible;
    info.dirInfo.ioDrFndrInfo.frScroll = {3, 4};
    EXPECT_EQ(Set(&info, folder, ""), noErr);
    const auto told = Info(2, "Folder").dirInfo;
    EXPECT_EQ(+told.ioDrUsrWds.frFlags, kIsInvisible);
    EXPECT_EQ(+told.ioDrFndrInfo.frScroll.h, 4);
    auto root = Info(2, "");
    root.dirInfo.ioDrUsrWds.frFlags = kHasCustomIcon;
    EXPECT_EQ(Set(&root, fsRtParID, "Disk"), noErr);
    EXPECT_EQ(+Info(2, "").dirInfo.ioDrUsrWds.frFlags, kHasCustomIcon);
    EXPECT_EQ(Entries(2), (std::vector<std::string>{"File", "Folder"}));
}

TEST_F(FinderInfoTest, IsSeenInAWalkAsSoonAsItIsWritten) {
    CInfoPBRec info{};
    info.hFileInfo.ioVRefNum = mVolume;
    const auto typeByIndex = [&] {
        info.hFileInfo.ioDirID = 2;
        info.hFileInfo.ioFDirIndex = 1;
        EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
        return info.hFileInfo.ioFlFndrInfo.fdType;
    };
    EXPECT_EQ(typeByIndex(), 0u);
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("File"), &kInfo), noErr);
    EXPECT_EQ(typeByIndex(), UInt32('TEXT'));
    EXPECT_EQ(std::remove(Path("Disk/._File").c_str()), 0);
    EXPECT_EQ(typeByIndex(), 0u);
    UInt8 attribute[32] = {'P', 'I', 'C', 'T'};
    const auto path = Path("Disk/File");
    const bool isSet = setxattr(path.c_str(), "user.com.apple.FinderInfo", attribute, 32, 0) == 0;
    EXPECT_EQ(typeByIndex(), isSet ? UInt32('PICT') : 0u);
}

TEST_F(FinderInfoTest, FollowsWhatAnotherProgramKeepsInAttributesThroughAWalk) {
    const auto path = Path("Disk/File");
    const auto set = [&](const char* inName, const std::string& inBytes) {
        return setxattr(path.c_str(), inName, inBytes.data(), inBytes.size(), 0) == 0;
    };
    const char* const infoName = "user.com.apple.FinderInfo";
    const char* const forkName = "user.com.apple.ResourceFork";
    const auto told = [&] {
        CInfoPBRec info{};
        info.hFileInfo.ioVRefNum = mVolume;
        info.hFileInfo.ioDirID = 2;
        info.hFileInfo.ioFDirIndex = 1;
        EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
        return std::pair(UInt32(info.hFileInfo.ioFlFndrInfo.fdType), +info.hFileInfo.ioFlRLgLen);
    };
    if (!set(infoName, "PICT" + std::string(28, '\0'))) GTEST_SKIP() << "no attributes here";
    EXPECT_EQ(told(), std::pair(UInt32('PICT'), 0));
    EXPECT_TRUE(set(infoName, "snd " + std::string(28, '\0')));
    EXPECT_EQ(told(), std::pair(UInt32('snd '), 0));
    EXPECT_TRUE(set(forkName, "fork!"));
    EXPECT_EQ(told(), std::pair(UInt32('snd '), 5));
    for (int i = 0; i < 40; ++i)
        EXPECT_TRUE(set(("user.long." + std::string(20, char('A' + i))).c_str(), ""));
    EXPECT_EQ(told(), std::pair(UInt32('snd '), 5));
    EXPECT_TRUE(set(infoName, "snd "));  // of no size that means anything
    EXPECT_EQ(told(), std::pair(UInt32(0), 5));
    EXPECT_EQ(removexattr(path.c_str(), forkName), 0);
    EXPECT_EQ(told(), std::pair(UInt32(0), 0));
}

TEST_F(FinderInfoTest, SetsDatesOfAFileByParameterBlock) {
    HParamBlockRec block{};
    PString name("File");
    block.fileParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.fileParam.ioVRefNum = mVolume;
    block.fileParam.ioDirID = 2;
    ASSERT_EQ(PBHGetFInfoSync(&block), noErr);
    block.fileParam.ioDirID = 2;
    block.fileParam.ioFlFndrInfo = kInfo;
    block.fileParam.ioFlMdDat = 3100000001u;
    EXPECT_EQ(PBHSetFInfoSync(&block), noErr);
    EXPECT_EQ(+Info(2, "File").hFileInfo.ioFlMdDat, 3100000001u);
    EXPECT_EQ(+Info(2, "File").hFileInfo.ioFlFndrInfo.fdType, UInt32('TEXT'));
}

TEST_F(FinderInfoTest, LocksFoldersWhereTheVolumeCan) {
    EXPECT_EQ(HSetFLock(mVolume, 2, PString("Folder")), noErr);
    EXPECT_EQ(+Info(2, "Folder").dirInfo.ioFlAttrib, kioFlAttribDirMask | kioFlAttribLockedMask);
    EXPECT_EQ(HDelete(mVolume, 2, PString("Folder")), fLckdErr);
    EXPECT_EQ(HRename(mVolume, 2, PString("Folder"), PString("Other")), fLckdErr);
    const FSSpec spec = SpecOf(Path("Disk/Folder"));
    EXPECT_EQ(FSpRstFLock(&spec), noErr);
    EXPECT_EQ(HDelete(mVolume, 2, PString("Folder")), noErr);
    MakeFolder("Plain/Folder");
    const auto plain = Mount("Plain", "Plain", kPlatformMountNoFolderLock);
    EXPECT_EQ(HSetFLock(plain, 2, PString("Folder")), afpObjectTypeErr);
}

}  // namespace
