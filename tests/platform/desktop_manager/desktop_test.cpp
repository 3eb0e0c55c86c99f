// Desktop databases: applications, comments, icons, and the database as a whole.
#include <Platform/Platform.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/file_manager/FileFixture.h"
#include "platform/launch_services/Bundle.h"

namespace {

constexpr OSType kCreator = 'Mine';

class DesktopManager : public FileFixture {
  protected:
    void SetUp() override {
        FileFixture::SetUp();
        MakeFolder("disk/folder");
        ASSERT_EQ(PlatformMountFolder(Path("disk").c_str(), "Disk", &mVolume), noErr);
        mFolder1 = NumberOf(Path("disk/folder"));
        ASSERT_EQ(Open(), noErr);
    }
    void TearDown() override {
        if (mNumber != 0) Close();
        PlatformUnmountFolder(mVolume);
    }

    OSErr Open() {
        DTPBRec block{};
        block.ioVRefNum = mVolume;
        const OSErr error = PBDTOpenInform(&block);
        EXPECT_EQ(block.ioResult, error);
        mNumber = block.ioDTRefNum;
        mTag = block.ioTagInfo;
        return error;
    }
    OSErr Close() { return Call(PBDTCloseDown); }
    OSErr Call(OSErr (*inCall)(DTPBPtr)) {
        DTPBRec block{};
        block.ioDTRefNum = mNumber;
        return inCall(&block);
    }
    // The call on an object, or on an entry of that name.
    OSErr Call(OSErr (*inCall)(DTPBPtr), const std::string& inName, DTPBRec* ioBlock) {
        Str255 name;
        name[0] = UInt8(inName.size());
        std::memcpy(name + 1, inName.data(), inName.size());
        ioBlock->ioDTRefNum = mNumber;
        ioBlock->ioNamePtr = name;
        ioBlock->ioDirID = mFolder1;
        ioBlock->ioFileCreator = kCreator;
        return inCall(ioBlock);
    }
    OSErr Add(const std::string& inName) {
        DTPBRec block{};
        return Call(PBDTAddAPPLSync, inName, &block);
    }
    std::string Application(SInt16 inIndex, OSType inCreator = kCreator) {
        Str255 name = "";
        DTPBRec block{};
        block.ioDTRefNum = mNumber;
        block.ioIndex = inIndex;
        block.ioFileCreator = inCreator;
        block.ioNamePtr = name;
        const OSErr error = PBDTGetAPPLSync(&block);
        if (error != noErr) return "error " + std::to_string(error);
        FSSpec spec;
        const OSErr found = FSMakeFSSpec(mVolume, block.ioAPPLParID, name, &spec);
        EXPECT_TRUE(found == noErr || found == fnfErr) << found;
        mDate = UInt32(block.ioTagInfo);
        return {reinterpret_cast<char*>(name) + 1, name[0]};
    }
    static std::string NotFound() { return "error " + std::to_string(afpItemNotFound); }

    OSErr SetComment(const std::string& inName, const std::string& inText) {
        std::string text = inText;
        DTPBRec block{};
        block.ioDTBuffer = text.data();
        block.ioDTReqCount = SInt32(text.size());
        return Call(PBDTSetCommentSync, inName, &block);
    }
    std::string Comment(const std::string& inName, SInt32 inRoom = 255) {
        std::string text(size_t(inRoom), '\0');
        DTPBRec block{};
        block.ioDTBuffer = text.data();
        block.ioDTReqCount = inRoom;
        const OSErr error = Call(PBDTGetCommentSync, inName, &block);
        if (error != noErr) return "error " + std::to_string(error);
        return text.substr(0, size_t(block.ioDTActCount));
    }
    OSErr AddIcon(OSType inType, UInt8 inKind, const std::string& inBits) {
        std::string bits = inBits;
        DTPBRec block{};
        block.ioDTRefNum = mNumber;
        block.ioFileCreator = kCreator;
        block.ioFileType = inType;
        block.ioIconType = inKind;
        block.ioDTBuffer = bits.data();
        block.ioDTReqCount = SInt32(bits.size());
        return PBDTAddIconSync(&block);
    }
    static std::filesystem::path Volumes() { return Home().Root() / "state/vantor/volumes"; }
    // The file of the volume's database: the one that was written last.
    static std::filesystem::path DatabaseFile() {
        std::filesystem::path newest;
        for (const auto& each : std::filesystem::directory_iterator(Volumes())) {
            if (!each.path().string().ends_with(".desktop.db")) continue;
            if (newest.empty() || last_write_time(each) > last_write_time(newest)) newest = each;
        }
        return newest;
    }

    FSVolumeRefNum mVolume = 0;
    SInt32 mFolder1 = 0;
    SInt16 mNumber = 0;
    SInt32 mTag = 0;
    UInt32 mDate = 0;
};

TEST_F(DesktopManager, TellsOnceThatADatabaseWasJustMade) {
    EXPECT_EQ(mTag & 1, 0);
    const SInt16 number = mNumber;
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(mTag & 1, 1);
    EXPECT_EQ(mNumber, number);
    DTPBRec block{};
    Str255 name = "\5Disk:";
    block.ioNamePtr = name;
    ASSERT_EQ(PBDTGetPath(&block), noErr);
    EXPECT_EQ(block.ioDTRefNum, number);
}

TEST_F(DesktopManager, GivesNoNumberForAVolumeThatIsNotThere) {
    DTPBRec block{};
    block.ioVRefNum = -31000;
    block.ioDTRefNum = 5;
    EXPECT_EQ(PBDTGetPath(&block), nsvErr);
    EXPECT_EQ(block.ioDTRefNum, 0);
    EXPECT_EQ(PBDTGetPath(nullptr), paramErr);
}

TEST_F(DesktopManager, GivesNoNumberForAVolumeWithoutADatabase) {
    FSVolumeRefNum volume = 0;
    ASSERT_EQ(PlatformMountFolderWithOptions(MakeFolder("without").c_str(), nullptr,
                                             kPlatformMountNoDesktopManager, &volume),
              noErr);
    DTPBRec block{};
    block.ioVRefNum = volume;
    block.ioDTRefNum = 5;
    EXPECT_EQ(PBDTGetPath(&block), extFSErr);
    EXPECT_EQ(block.ioDTRefNum, 0);
    EXPECT_EQ(PBDTOpenInform(&block), extFSErr);
    PlatformUnmountFolder(volume);
}

TEST_F(DesktopManager, KnowsNoNumberButThatOfAnOpenDatabase) {
    const SInt16 number = mNumber;
    ASSERT_EQ(Close(), noErr);
    EXPECT_EQ(Add("any"), rfNumErr);
    mNumber = 1;
    EXPECT_EQ(Add("any"), rfNumErr);
    EXPECT_EQ(Close(), rfNumErr);
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(Application(0), NotFound()) << number;
}

TEST_F(DesktopManager, GivesTheNumberOfAClosedDatabaseAgain) {
    const SInt16 number = mNumber;
    ASSERT_EQ(Close(), noErr);
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(mNumber, number);
}

TEST_F(DesktopManager, FindsTheNewestApplicationAtZeroAndEachFromOne) {
    Write("disk/folder/old");
    ASSERT_EQ(Add("old"), noErr);
    EXPECT_EQ(Application(0), "old");
    const UInt32 date = mDate;
    // Dates have seconds, and equal ones leave the order of adding.
    Write("disk/folder/new");
    ASSERT_EQ(Add("new"), noErr);
    EXPECT_EQ(Application(0), "new");
    EXPECT_GE(mDate, date);
    EXPECT_EQ(Application(1), "old");
    EXPECT_EQ(Application(2), "new");
    EXPECT_EQ(Application(3), NotFound());
    EXPECT_EQ(Application(0, 'Else'), NotFound());
    EXPECT_EQ(Application(-1), "error -50");
}

TEST_F(DesktopManager, TellsTheCreationDateInLocalTime) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    ASSERT_EQ(Application(0), "app");
    const time_t now = time(nullptr);
    tm local;
    localtime_r(&now, &local);
    EXPECT_NEAR(double(mDate), double(now) + 2082844800.0 + double(local.tm_gmtoff), 3600.0);
}

TEST_F(DesktopManager, ReplacesAnApplicationAddedAgain) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    ASSERT_EQ(Add("APP"), noErr);
    EXPECT_EQ(Application(1), "app");
    EXPECT_EQ(Application(2), NotFound());
}

TEST_F(DesktopManager, AddsOnlyFilesThatAreThere) {
    EXPECT_EQ(Add("missing"), fnfErr);
    MakeFolder("disk/folder/inner");
    EXPECT_EQ(Add("inner"), fnfErr);
    EXPECT_EQ(Application(0), NotFound());
}

TEST_F(DesktopManager, KeepsApplicationsWhoseFileIsGone) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    std::filesystem::remove(Path("disk/folder/app"));
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(Application(0), "app");
    DTPBRec block{};
    ASSERT_EQ(Call(PBDTRemoveAPPLSync, "App", &block), noErr);
    EXPECT_EQ(Application(0), NotFound());
    EXPECT_EQ(Call(PBDTRemoveAPPLSync, "app", &block), afpItemNotFound);
}

TEST_F(DesktopManager, LearnsTheProgramsThatLaunchServicesKnows) {
    const auto folder = Home().Root() / "data";
    FSVolumeRefNum volume = 0;
    ASSERT_EQ(PlatformMountFolder(folder.c_str(), "Data", &volume), noErr);
    BundleText text;
    text.name = "Learned";
    text.creator = "Lrnd";
    text.program = "#!/bin/sh\n";
    MakeBundle(folder / "vantor/Applications", "Learned.app", text);
    DTPBRec block{};
    block.ioVRefNum = volume;
    ASSERT_EQ(PBDTOpenInform(&block), noErr);
    EXPECT_EQ(block.ioTagInfo, 1) << "it holds something";
    const SInt16 number = std::exchange(mNumber, block.ioDTRefNum);
    const FSVolumeRefNum own = std::exchange(mVolume, volume);
    EXPECT_EQ(Application(0, 'Lrnd'), "program");
    std::filesystem::remove_all(folder / "vantor/Applications/Learned.app");
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(Application(0, 'Lrnd'), NotFound());
    Close();
    mNumber = number;
    mVolume = own;
    ASSERT_EQ(PlatformUnmountFolder(volume), noErr);
}

TEST_F(DesktopManager, KeepsCommentsOfFilesAndFolders) {
    Write("disk/folder/file");
    MakeFolder("disk/folder/inner");
    EXPECT_EQ(Comment("file"), NotFound());
    ASSERT_EQ(SetComment("file", "a comment"), noErr);
    ASSERT_EQ(SetComment("inner", "of a folder"), noErr);
    EXPECT_EQ(Comment("file"), "a comment");
    EXPECT_EQ(Comment("file", 4), "a co");
    EXPECT_EQ(Comment("inner"), "of a folder");
    DTPBRec block{};
    ASSERT_EQ(Call(PBDTRemoveCommentSync, "file", &block), noErr);
    EXPECT_EQ(Comment("file"), NotFound());
    EXPECT_EQ(Call(PBDTRemoveCommentSync, "file", &block), afpItemNotFound);
    EXPECT_EQ(SetComment("missing", "x"), fnfErr);
    EXPECT_EQ(Comment("missing"), "error -43");
}

TEST_F(DesktopManager, WritesNoCommentsOnALockedVolume) {
    Write("disk/folder/file");
    ASSERT_EQ(SetComment("file", "a comment"), noErr);
    HParamBlockRec volume{};
    volume.volumeParam.ioVRefNum = mVolume;
    volume.volumeParam.ioVAtrb = SInt16(kioVAtrbSoftwareLockedMask);
    ASSERT_EQ(PBSetVInfoSync(&volume), noErr);
    EXPECT_EQ(SetComment("file", "another"), vLckdErr);
    DTPBRec block{};
    EXPECT_EQ(Call(PBDTRemoveCommentSync, "file", &block), vLckdErr);
    EXPECT_EQ(Comment("file"), "a comment");
}

TEST_F(DesktopManager, KeepsTwoHundredCharactersOfAComment) {
    Write("disk/folder/file");
    ASSERT_EQ(SetComment("file", std::string(250, 'c')), noErr);
    EXPECT_EQ(Comment("file"), std::string(200, 'c'));
}

TEST_F(DesktopManager, KeepsIconsByCreatorTypeAndKind) {
    const std::string large(256, 'L'), small(64, 'S');
    ASSERT_EQ(AddIcon('APPL', kLargeIcon, large), noErr);
    ASSERT_EQ(AddIcon('TEXT', kSmallIcon, small), noErr);
    std::string bits(300, '\0');
    DTPBRec block{};
    block.ioDTRefNum = mNumber;
    block.ioFileCreator = kCreator;
    block.ioFileType = 'APPL';
    block.ioIconType = kLargeIcon;
    block.ioDTBuffer = bits.data();
    block.ioDTReqCount = 300;
    ASSERT_EQ(PBDTGetIconSync(&block), noErr);
    EXPECT_EQ(bits.substr(0, size_t(block.ioDTActCount)), large);
    block.ioIconType = kSmallIcon;
    EXPECT_EQ(PBDTGetIconSync(&block), afpItemNotFound);
    EXPECT_EQ(AddIcon('APPL', kLargeIcon, small), afpIconTypeError);
    EXPECT_EQ(AddIcon('APPL', kLargeIcon, std::string(256, 'N')), noErr);
}

TEST_F(DesktopManager, ListsIconsUntilThereIsNoneLeft) {
    ASSERT_EQ(AddIcon('APPL', kLargeIcon, std::string(256, 'L')), noErr);
    ASSERT_EQ(AddIcon('TEXT', kSmallIcon, std::string(64, 'S')), noErr);
    DTPBRec block{};
    block.ioDTRefNum = mNumber;
    block.ioFileCreator = kCreator;
    for (SInt16 i = 1; i <= 2; ++i) {
        block.ioIndex = i;
        ASSERT_EQ(PBDTGetIconInfoSync(&block), noErr);
        EXPECT_EQ(block.ioFileType, i == 1 ? UInt32('APPL') : UInt32('TEXT'));
        EXPECT_EQ(block.ioIconType, i == 1 ? kLargeIcon : kSmallIcon);
        EXPECT_EQ(block.ioDTActCount, i == 1 ? 256 : 64);
    }
    block.ioIndex = 3;
    EXPECT_EQ(PBDTGetIconInfoSync(&block), afpItemNotFound);
}

TEST_F(DesktopManager, IsEmptiedByAResetThatLeavesComments) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    ASSERT_EQ(AddIcon('APPL', kLargeIcon, std::string(256, 'L')), noErr);
    ASSERT_EQ(SetComment("app", "stays"), noErr);
    ASSERT_EQ(Call(PBDTResetSync), noErr);
    EXPECT_EQ(Application(0), NotFound());
    EXPECT_EQ(Comment("app"), "stays");
    EXPECT_EQ(Call(PBDTFlushSync), noErr);
}

TEST_F(DesktopManager, IsDeletedOnlyWhenClosed) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    DTPBRec block{};
    block.ioVRefNum = mVolume;
    EXPECT_EQ(PBDTDeleteSync(&block), fBsyErr);
    ASSERT_EQ(Close(), noErr);
    EXPECT_EQ(PBDTDeleteSync(&block), noErr);
    EXPECT_EQ(PBDTDeleteSync(&block), fnfErr);
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(mTag & 1, 0);
    EXPECT_EQ(Application(0), NotFound());
}

TEST_F(DesktopManager, TellsWhereItsFileIs) {
    Str255 name = "";
    DTPBRec block{};
    block.ioDTRefNum = mNumber;
    block.ioNamePtr = name;
    ASSERT_EQ(PBDTGetInfoSync(&block), noErr);
    FSSpec spec;
    ASSERT_EQ(FSMakeFSSpec(block.ioVRefNum, block.ioDirID, name, &spec), noErr);
    EXPECT_TRUE(PathOf(spec).ends_with(".desktop.db"));
    EXPECT_EQ(block.ioDTLgLen, SInt32(std::filesystem::file_size(PathOf(spec))));
    EXPECT_EQ(block.ioIndex, 1);
}

TEST_F(DesktopManager, IsOneForAllProcesses) {
    Write("disk/folder/app");
    const auto ask = [&] { return Ask("application " + std::to_string(mVolume) + " Mine"); };
    EXPECT_EQ(ask(), std::to_string(afpItemNotFound) + " ");
    ASSERT_EQ(Add("app"), noErr);
    EXPECT_EQ(ask(), "0 app");
    DTPBRec block{};
    ASSERT_EQ(Call(PBDTRemoveAPPLSync, "app", &block), noErr);
    EXPECT_EQ(ask(), std::to_string(afpItemNotFound) + " ");
}

TEST_F(DesktopManager, WorksOnInAChild) {
    Write("disk/folder/app");
    const pid_t child = fork();
    if (child == 0) _exit(Add("app") == noErr ? 0 : 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Application(0), "app");
}

TEST_F(DesktopManager, SetsADamagedFileAsideAndBeginsANewOne) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    ASSERT_EQ(SetComment("app", "survives"), noErr);
    ASSERT_EQ(Call(PBDTFlushSync), noErr);
    ASSERT_EQ(Close(), noErr);
    const auto file = DatabaseFile();
    std::ofstream(file, std::ios::binary) << std::string(8192, 'x');
    ASSERT_EQ(Open(), noErr);
    EXPECT_EQ(mTag & 1, 0);
    EXPECT_EQ(Application(0), NotFound());
    EXPECT_EQ(Comment("app"), "survives");
    EXPECT_TRUE(std::filesystem::exists(file.string() + ".damaged-1"));
    EXPECT_EQ(Add("app"), noErr);
    EXPECT_EQ(Application(0), "app");
}

TEST_F(DesktopManager, SurvivesDamageWhileItIsOpen) {
    Write("disk/folder/app");
    ASSERT_EQ(Add("app"), noErr);
    ASSERT_EQ(Call(PBDTFlushSync), noErr);
    const auto file = DatabaseFile();
    {
        std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(0);
        for (int i = 0; i < 4096; ++i) stream.put('x');
    }
    // Whatever the pages in memory still answer, nothing fails for long.
    const OSErr first = Add("app");
    EXPECT_TRUE(first == noErr || first == desktopDamagedErr) << first;
    EXPECT_EQ(Add("app"), noErr);
    EXPECT_EQ(Application(0), "app");
}

}  // namespace
