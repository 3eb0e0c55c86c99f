// File IDs, exchange, copies, rights, users and groups.
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>

#include "VolumeFixture.h"

namespace {

std::string Read(const std::string& inPath) {
    std::ifstream file(inPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class FileIDsTest : public VolumeFixture {
  protected:
    OSErr Create(SInt32 inDirectory, const std::string& inName, SInt32* outId) {
        HParamBlockRec block{};
        PString name(inName);
        block.fidParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        block.fidParam.ioVRefNum = mVolume;
        block.fidParam.ioSrcDirID = inDirectory;
        const OSErr error = PBCreateFileIDRefSync(&block);
        *outId = block.fidParam.ioFileID;
        return error;
    }
    // "parent name", or the error in words.
    std::string Resolve(SInt32 inId) {
        HParamBlockRec block{};
        Str255 name =
            "\x05"
            "Disk:";
        block.fidParam.ioNamePtr = name;
        block.fidParam.ioFileID = inId;
        const OSErr error = PBResolveFileIDRefSync(&block);
        if (error != noErr) return "error " + std::to_string(error);
        return std::to_string(block.fidParam.ioSrcDirID) + ' ' + TextOf(name);
    }
    OSErr Delete(SInt32 inId) {
        HParamBlockRec block{};
        block.fidParam.ioVRefNum = mVolume;
        block.fidParam.ioFileID = inId;
        return PBDeleteFileIDRefSync(&block);
    }
};

TEST_F(FileIDsTest, FollowAFileThroughRenamesAndMoves) {
    Write("Disk/File");
    MakeFolder("Disk/Folder");
    SInt32 id = 0, again = 0;
    EXPECT_EQ(Create(2, "File", &id), noErr);
    EXPECT_EQ(Create(2, "fILE", &again), fidExists);
    EXPECT_EQ(again, id);
    EXPECT_EQ(Resolve(id), "2 File");
    EXPECT_EQ(HRename(mVolume, 2, PString("File"), PString("Renamed")), noErr);
    EXPECT_EQ(Resolve(id), "2 Renamed");
    const SInt32 folder = FolderID("Folder");
    EXPECT_EQ(CatMove(mVolume, 2, PString("Renamed"), folder, nullptr), noErr);
    EXPECT_EQ(Resolve(id), std::to_string(folder) + " Renamed");
    std::filesystem::rename(Path("Disk/Folder/Renamed"), Path("Disk/Folder/By another way"));
    EXPECT_EQ(Resolve(id), std::to_string(folder) + " By another way");
    std::filesystem::rename(Path("Disk/Folder/By another way"), Path("Disk/Back"));
    EXPECT_EQ(Resolve(id), "2 Back");
    EXPECT_EQ(Delete(id), noErr);
    EXPECT_EQ(Resolve(id), "error -1300");
    EXPECT_EQ(Delete(id), fidNotFound);
}

TEST_F(FileIDsTest, NeverMeanTheFileThatTookTheNameOfADeletedOne) {
    Write("Disk/File");
    SInt32 id = 0, next = 0;
    ASSERT_EQ(Create(2, "File", &id), noErr);
    ASSERT_EQ(HDelete(mVolume, 2, PString("File")), noErr);
    Write("Disk/File");
    EXPECT_EQ(Resolve(id), "error -1300");
    EXPECT_EQ(Create(2, "File", &next), noErr);
    EXPECT_GT(next, id);
}

TEST_F(FileIDsTest, StayWithAFileThatWasSavedByReplacingIt) {
    Write("Disk/File");
    SInt32 id = 0;
    ASSERT_EQ(Create(2, "File", &id), noErr);
    Write("Disk/New", "new contents");
    std::filesystem::rename(Path("Disk/New"), Path("Disk/File"));
    EXPECT_EQ(Resolve(id), "2 File");
}

TEST_F(FileIDsTest, MeanTheSameInAnotherProcess) {
    Write("Disk/File");
    SInt32 id = 0;
    ASSERT_EQ(Create(2, "File", &id), noErr);
    EXPECT_EQ(Ask("rename " + Described(SpecOf(Path("Disk/File"))) + " Renamed"), "0");
    EXPECT_EQ(Resolve(id), "2 Renamed");
    EXPECT_EQ(Ask("delete " + Described(SpecOf(Path("Disk/Renamed")))), "0");
    EXPECT_EQ(Resolve(id), "error -1300");
}

TEST_F(FileIDsTest, AreOfFilesAndOnlyWhereTheVolumeHasThem) {
    MakeFolder("Disk/Folder");
    SInt32 id = 0;
    EXPECT_EQ(Create(2, "Folder", &id), notAFileErr);
    EXPECT_EQ(Create(2, "Missing", &id), fnfErr);
    EXPECT_EQ(Resolve(FolderID("Folder")), "error -1302");
    EXPECT_EQ(Resolve(2), "error -1302");
    EXPECT_EQ(Resolve(12345678), "error -1300");
    EXPECT_EQ(Delete(FolderID("Folder")), notAFileErr);
    MakeFolder("Plain");
    Write("Plain/File");
    mVolume = Mount("Plain", "Plain", kPlatformMountNoFileIDs);
    EXPECT_EQ(Create(2, "File", &id), paramErr);
    EXPECT_EQ(Delete(16), paramErr);
}

class ExchangeTest : public VolumeFixture {
  protected:
    OSErr Exchange(const std::string& inOne, const std::string& inOther) {
        HParamBlockRec block{};
        PString one(inOne), other(inOther);
        block.fidParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(one));
        block.fidParam.ioDestNamePtr = const_cast<StringPtr>(ConstStringPtr(other));
        block.fidParam.ioVRefNum = mVolume;
        block.fidParam.ioSrcDirID = block.fidParam.ioDestDirID = 2;
        return PBExchangeFilesSync(&block);
    }
    void WriteResources(const std::string& inName, const std::string& inBytes) {
        SInt16 number = 0;
        auto count = SInt32(inBytes.size());
        ASSERT_EQ(HOpenRF(mVolume, 2, PString(inName), fsRdWrPerm, &number), noErr);
        EXPECT_EQ(FSWrite(number, &count, inBytes.data()), noErr);
        EXPECT_EQ(FSClose(number), noErr);
    }
    std::string Resources(const std::string& inName) {
        SInt16 number = 0;
        char bytes[64];
        SInt32 count = sizeof bytes;
        EXPECT_EQ(HOpenRF(mVolume, 2, PString(inName), fsRdPerm, &number), noErr);
        EXPECT_EQ(FSRead(number, &count, bytes), eofErr);
        EXPECT_EQ(FSClose(number), noErr);
        return std::string(bytes, size_t(count));
    }
};

TEST_F(ExchangeTest, SwapsBothForksAndLeavesNamesNumbersAndDatesOfBirth) {
    Write("Disk/One", "data one");
    ASSERT_EQ(HCreate(mVolume, 2, PString("Two"), 'ttxt', 'TEXT'), noErr);
    Write("Disk/Two", "data two");
    WriteResources("One", "resources of one");
    SInt16 number = 0;
    ASSERT_EQ(HOpenDF(mVolume, 2, PString("One"), fsRdPerm, &number), noErr);
    auto before = Info(2, "One").hFileInfo;
    auto info = Info(2, "Two");
    info.hFileInfo.ioFlCrDat = 3000000000u;
    PString two("Two");
    info.hFileInfo.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(two));
    info.hFileInfo.ioVRefNum = mVolume;
    info.hFileInfo.ioDirID = 2;
    ASSERT_EQ(PBSetCatInfoSync(&info), noErr);
    EXPECT_EQ(Exchange("One", "Two"), noErr);
    EXPECT_EQ(Read(Path("Disk/One")), "data two");
    EXPECT_EQ(Read(Path("Disk/Two")), "data one");
    EXPECT_EQ(Resources("One"), "");
    EXPECT_EQ(Resources("Two"), "resources of one");
    EXPECT_EQ(+Info(2, "One").hFileInfo.ioFlCrDat, +before.ioFlCrDat);
    EXPECT_EQ(+Info(2, "Two").hFileInfo.ioFlCrDat, 3000000000u);
    EXPECT_EQ(+Info(2, "Two").hFileInfo.ioFlFndrInfo.fdType, UInt32('TEXT'));
    EXPECT_EQ(+Info(2, "One").hFileInfo.ioFlFndrInfo.fdType, 0u);
    char bytes[8];
    SInt32 count = 8;
    EXPECT_EQ(FSRead(number, &count, bytes), noErr);
    EXPECT_EQ(std::string(bytes, 8), "data one");
    EXPECT_EQ(FSClose(number), noErr);
}

TEST_F(ExchangeTest, LeavesFinderInformationWithTheNames) {
    ASSERT_EQ(HCreate(mVolume, 2, PString("One"), 'ONE ', 'TEXT'), noErr);
    ASSERT_EQ(HCreate(mVolume, 2, PString("Two"), 'TWO ', 'PICT'), noErr);
    WriteResources("One", "resources of one");
    WriteResources("Two", "resources of two");
    SInt16 number = 0;
    ASSERT_EQ(HOpenRF(mVolume, 2, PString("One"), fsRdWrPerm, &number), noErr);
    EXPECT_EQ(Exchange("One", "Two"), noErr);
    SInt32 count = 3;
    EXPECT_EQ(FSWrite(number, &count, "RES"), noErr);
    EXPECT_EQ(FSClose(number), noErr);
    EXPECT_EQ(Resources("One"), "resources of two");
    EXPECT_EQ(Resources("Two"), "RESources of one");
    EXPECT_EQ(+Info(2, "One").hFileInfo.ioFlFndrInfo.fdCreator, UInt32('ONE '));
    EXPECT_EQ(+Info(2, "Two").hFileInfo.ioFlFndrInfo.fdCreator, UInt32('TWO '));
}

TEST_F(ExchangeTest, LosesNoForkWhenItIsKilled) {
    Write("Disk/One", "data one");
    Write("Disk/Two", "data two");
    WriteResources("One", "resources of one");
    WriteResources("Two", "resources of two");
    for (int i = 0; i < 25; ++i) {
        const pid_t child = fork();
        while (child == 0) Exchange("One", "Two");
        usleep(useconds_t(3000 + 487 * i));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        ASSERT_EQ((std::set{Read(Path("Disk/One")), Read(Path("Disk/Two"))}),
                  (std::set<std::string>{"data one", "data two"}));
        ASSERT_EQ((std::set{Resources("One"), Resources("Two")}),
                  (std::set<std::string>{"resources of one", "resources of two"}));
    }
}

TEST_F(ExchangeTest, RefusesWhatCannotBeExchanged) {
    Write("Disk/One");
    Write("Disk/Two");
    MakeFolder("Disk/Folder");
    EXPECT_EQ(Exchange("One", "One"), sameFileErr);
    EXPECT_EQ(Exchange("One", "Folder"), notAFileErr);
    EXPECT_EQ(Exchange("Missing", "One"), fnfErr);
    ASSERT_EQ(HSetFLock(mVolume, 2, PString("Two")), noErr);
    EXPECT_EQ(Exchange("One", "Two"), fLckdErr);
    MakeFolder("Second");
    Write("Second/File");
    Mount("Second", "Second", 0);
    const FSSpec one = SpecOf(Path("Disk/One")), far = SpecOf(Path("Second/File"));
    EXPECT_EQ(FSpExchangeFiles(&one, &far), diffVolErr);
    EXPECT_EQ(FSpExchangeFiles(&one, nullptr), paramErr);
    MakeFolder("Plain");
    Write("Plain/One");
    Write("Plain/Two");
    mVolume = Mount("Plain", "Plain", kPlatformMountNoExchange);
    EXPECT_EQ(Exchange("One", "Two"), paramErr);
}

class CopyTest : public VolumeFixture {
  protected:
    OSErr Copy(const std::string& inName, const std::string& inFolder, const char* inNewName,
               FSVolumeRefNum inDestination = 0) {
        HParamBlockRec block{};
        PString name(inName), folder(inFolder), newName(inNewName ? inNewName : "");
        block.copyParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        block.copyParam.ioVRefNum = mVolume;
        block.copyParam.ioDirID = 2;
        block.copyParam.ioDstVRefNum = inDestination != 0 ? inDestination : mVolume;
        block.copyParam.ioNewDirID = 2;
        block.copyParam.ioNewName = const_cast<StringPtr>(ConstStringPtr(folder));
        block.copyParam.ioCopyName =
            inNewName ? const_cast<StringPtr>(ConstStringPtr(newName)) : nullptr;
        return PBHCopyFileSync(&block);
    }
};

TEST_F(CopyTest, TakesEverythingAlong) {
    ASSERT_EQ(HCreate(mVolume, 2, PString("File"), 'ttxt', 'TEXT'), noErr);
    Write("Disk/File", std::string(100000, 'd'));
    MakeFolder("Disk/Folder");
    EXPECT_EQ(Copy("File", "Folder", nullptr), noErr);
    EXPECT_EQ(Copy("File", "", "Copy"), noErr);
    EXPECT_EQ(Read(Path("Disk/Folder/File")), Read(Path("Disk/File")));
    EXPECT_EQ(+Info(2, "Copy").hFileInfo.ioFlFndrInfo.fdType, UInt32('TEXT'));
    EXPECT_EQ(+Info(2, "Copy").hFileInfo.ioFlMdDat, +Info(2, "File").hFileInfo.ioFlMdDat);
}

TEST_F(CopyTest, RefusesWhatItCannotCopyWhole) {
    Write("Disk/File");
    MakeFolder("Disk/Folder");
    MakeFolder("Second");
    const auto second = Mount("Second", "Second", 0);
    EXPECT_EQ(Copy("File", "", nullptr), dupFNErr);
    EXPECT_EQ(Copy("File", "", "fOLDER"), dupFNErr);
    EXPECT_EQ(Copy("Folder", "", "Other"), paramErr);
    EXPECT_EQ(Copy("Missing", "", "Other"), fnfErr);
    EXPECT_EQ(Copy("File", "Missing", "Other"), dirNFErr);
    EXPECT_EQ(Copy("File", "", "Other", second), diffVolErr);
    SInt16 number = 0;
    ASSERT_EQ(HOpenDF(mVolume, 2, PString("File"), fsRdWrPerm, &number), noErr);
    EXPECT_EQ(Copy("File", "", "Other"), afpDenyConflict);
    EXPECT_EQ(FSClose(number), noErr);
    MakeFolder("Plain");
    Write("Plain/File");
    mVolume = Mount("Plain", "Plain", kPlatformMountNoCopyFile);
    EXPECT_EQ(Copy("File", "", "Other"), paramErr);
    EXPECT_FALSE(Exists("Plain/Other"));
}

class RightsTest : public VolumeFixture {
  protected:
    OSErr Get(const std::string& inName, AccessParam* outRecord) {
        HParamBlockRec block{};
        PString name(inName);
        block.accessParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        block.accessParam.ioVRefNum = mVolume;
        block.accessParam.ioDirID = 2;
        const OSErr error = PBHGetDirAccessSync(&block);
        *outRecord = block.accessParam;
        return error;
    }
    OSErr Set(const std::string& inName, SInt32 inAccess) {
        HParamBlockRec block{};
        PString name(inName);
        block.accessParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        block.accessParam.ioVRefNum = mVolume;
        block.accessParam.ioDirID = 2;
        block.accessParam.ioACOwnerID = SInt32(geteuid());
        block.accessParam.ioACGroupID = SInt32(getegid());
        block.accessParam.ioACAccess = inAccess;
        return PBHSetDirAccessSync(&block);
    }
    mode_t ModeOf(const std::string& inName) {
        struct stat facts;
        EXPECT_EQ(stat(Path(inName).c_str(), &facts), 0);
        return facts.st_mode & 07777;
    }
};

TEST_F(RightsTest, OfAFolderAreItsModeOwnerAndGroup) {
    MakeFolder("Disk/Folder");
    ASSERT_EQ(chmod(Path("Disk/Folder").c_str(), 0751), 0);
    AccessParam record;
    EXPECT_EQ(Get("Folder", &record), noErr);
    EXPECT_EQ(+record.ioACOwnerID, SInt32(geteuid()));
    EXPECT_EQ(record.ioACAccess & 0x00FFFFFF, SInt32(kownerPrivileges) | kioACAccessGroupReadMask |
                                                  kioACAccessGroupSearchMask |
                                                  kioACAccessEveryoneSearchMask);
    EXPECT_EQ(UInt32(record.ioACAccess) >> 24, 0x87u);
}

TEST_F(RightsTest, AreSetByTheOwner) {
    MakeFolder("Disk/Folder");
    MakeFolder("Disk/Other");
    EXPECT_EQ(Set("Folder", kfullPrivileges), noErr);
    EXPECT_EQ(ModeOf("Disk/Folder"), mode_t(0707));
    EXPECT_EQ(Set("Folder", SInt32(kownerPrivileges) | kioACAccessGroupWriteMask), noErr);
    EXPECT_EQ(ModeOf("Disk/Folder"), mode_t(0720));
    AccessParam record;
    ASSERT_EQ(Get("Folder", &record), noErr);
    EXPECT_EQ(Set("Other", record.ioACAccess), noErr);
    EXPECT_EQ(ModeOf("Disk/Other"), mode_t(0720));
    EXPECT_EQ(Set("Folder", SInt32(kownerPrivileges) | kioACAccessUserReadMask), paramErr);
    EXPECT_EQ(Set("Folder", SInt32(kownerPrivileges) | kioACAccessBlankAccessMask), paramErr);
    EXPECT_EQ(ModeOf("Disk/Folder"), mode_t(0720));
}

TEST_F(RightsTest, AreRefusedForFilesAndWhereTheVolumeHasNone) {
    Write("Disk/File");
    AccessParam record;
    EXPECT_EQ(Get("File", &record), fnfErr);
    EXPECT_EQ(Get("Missing", &record), fnfErr);
    MakeFolder("Plain/Folder");
    mVolume = Mount("Plain", "Plain", kPlatformMountNoAccessControl);
    EXPECT_EQ(Get("Folder", &record), paramErr);
    EXPECT_EQ(Set("Folder", 7), paramErr);
}

TEST_F(RightsTest, OfTheSystemAreToldForFilesToo) {
    Write("Disk/File");
    ASSERT_EQ(chmod(Path("Disk/File").c_str(), 0640), 0);
    HParamBlockRec block{};
    PString name("File");
    block.foreignPrivParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
    block.foreignPrivParam.ioVRefNum = mVolume;
    block.foreignPrivParam.ioForeignPrivDirID = 2;
    EXPECT_EQ(PBGetForeignPrivsSync(&block), noErr);
    EXPECT_EQ(+block.foreignPrivParam.ioForeignPrivInfo1, SInt32(geteuid()));
    EXPECT_EQ(+block.foreignPrivParam.ioForeignPrivInfo3, 0640);
    EXPECT_EQ(block.foreignPrivParam.ioForeignPrivInfo4 & 6, 6);
    block.foreignPrivParam.ioForeignPrivInfo3 = 0600;
    EXPECT_EQ(PBSetForeignPrivsSync(&block), noErr);
    EXPECT_EQ(ModeOf("Disk/File"), mode_t(0600));
    block.foreignPrivParam.ioForeignPrivInfo3 = 0100644;
    EXPECT_EQ(PBSetForeignPrivsSync(&block), paramErr);
}

TEST_F(RightsTest, KnowNoServersLogInAndNoSharing) {
    HParamBlockRec block{};
    block.fileParam.ioVRefNum = mVolume;
    EXPECT_EQ(PBHGetLogInInfoSync(&block), paramErr);
    EXPECT_EQ(PBShareSync(&block), paramErr);
    EXPECT_EQ(PBUnshareSync(&block), paramErr);
    EXPECT_EQ(+block.fileParam.ioResult, paramErr);
    EXPECT_EQ(PBShareSync(nullptr), paramErr);
}

class UsersTest : public VolumeFixture {
  protected:
    HParamBlockRec Block(SInt16 inType, SInt32 inId, StringPtr ioName) {
        HParamBlockRec block{};
        block.objParam.ioVRefNum = mVolume;
        block.objParam.ioObjType = inType;
        block.objParam.ioObjID = inId;
        block.objParam.ioObjNamePtr = ioName;
        return block;
    }
};

TEST_F(UsersTest, AreMappedBetweenNumbersAndNames) {
    Str255 name = "";
    auto block = Block(kOwnerID2Name, 0, name);
    EXPECT_EQ(PBHMapIDSync(&block), noErr);
    EXPECT_EQ(TextOf(name), "root");
    block = Block(kOwnerName2ID, -1, name);
    EXPECT_EQ(PBHMapNameSync(&block), noErr);
    EXPECT_EQ(+block.objParam.ioObjID, 0);
    block = Block(kGroupID2Name, 0, name);
    EXPECT_EQ(PBHMapIDSync(&block), noErr);
    EXPECT_EQ(TextOf(name), getgrgid(0)->gr_name);
    block = Block(kOwnerID2Name, 0x7EEEEEEE, name);
    EXPECT_EQ(PBHMapIDSync(&block), fnfErr);
    block = Block(9, 0, name);
    EXPECT_EQ(PBHMapIDSync(&block), paramErr);
    EXPECT_EQ(PBHMapNameSync(&block), paramErr);
}

TEST_F(UsersTest, AreListedInTheOrderOfTheirNumbers) {
    Str255 name = "";
    SInt32 last = 0;
    int count = 0;
    for (auto block = Block(kReturnNextUser, 0, name); PBGetUGEntrySync(&block) == noErr;
         block = Block(kReturnNextUser, last, name)) {
        EXPECT_EQ(+block.objParam.ioObjType, kReturnNextUser);
        EXPECT_GT(UInt32(block.objParam.ioObjID), UInt32(last));
        last = block.objParam.ioObjID;
        const passwd* entry = getpwuid(uid_t(last));
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(TextOf(name), entry->pw_name);
        ++count;
    }
    EXPECT_GT(count, 3);
    auto block = Block(0, 0, name);
    EXPECT_EQ(PBGetUGEntrySync(&block), paramErr);
    mVolume = Mount("Plain", "Plain", kPlatformMountNoUserGroupList);
    block = Block(kReturnNextUG, 0, name);
    EXPECT_EQ(PBGetUGEntrySync(&block), paramErr);
}

}  // namespace
