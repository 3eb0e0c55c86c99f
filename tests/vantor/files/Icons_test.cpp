// Icons from the desktop database and from the desktop file.
#include "vantor/files/Icons.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "vantor/files/DesktopDatabase.h"

namespace {

bool sNoHandle = false, sNoCopy = false, sNoResourceFile = false;

}  // namespace

Handle NewHandle(Size inSize) {
    return sNoHandle ? nullptr : REAL_CALL(NewHandle)(inSize);
}

OSErr HandToHand(Handle* ioHandle) {
    return sNoCopy ? OSErr{memFullErr} : REAL_CALL(HandToHand)(ioHandle);
}

ResFileRefNum HOpenResFile(FSVolumeRefNum inVolume, SInt32 inDirID, ConstStr255Param inName,
                           SInt8 inPermission) {
    return sNoResourceFile ? ResFileRefNum{-1}
                           : REAL_CALL(HOpenResFile)(inVolume, inDirID, inName, inPermission);
}

OSErr ResError(void) {
    return sNoResourceFile ? OSErr{memFullErr} : REAL_CALL(ResError)();
}

namespace {

class Icons : public ::testing::Test {
  protected:
    explicit Icons(OptionBits inOptions = 0) : mDisk(inOptions) {}
    ~Icons() override {
        sNoHandle = sNoCopy = sNoResourceFile = false;
        Forget();
    }

    OSErr Get(SInt16 inIconType, OSType inCreator = 'ttxt', OSType inFileType = 'TEXT') {
        Forget();
        mIcon = reinterpret_cast<Handle>(this);  // to be seen overwritten
        return DTGetIcon(PString("Disk:"), 0, inIconType, inCreator, inFileType, &mIcon);
    }
    std::string Bits() const { return {*mIcon, std::size_t(GetHandleSize(mIcon))}; }

    const MountedVolume mDisk;
    Handle mIcon = nullptr;

  private:
    void Forget() {
        if (mIcon != nullptr && mIcon != reinterpret_cast<Handle>(this)) DisposeHandle(mIcon);
        mIcon = nullptr;
    }
};

class DatabaseIcons : public Icons {
  protected:
    void Add(UInt8 inIconType, std::string inBits) {
        SInt16 desktop = 0;
        Boolean isNew = false;
        ASSERT_EQ(DTOpen(nullptr, mDisk.Number(), &desktop, &isNew), noErr);
        DTPBRec block = {};
        block.ioDTRefNum = desktop;
        block.ioIconType = inIconType;
        block.ioFileCreator = 'ttxt';
        block.ioFileType = 'TEXT';
        block.ioDTBuffer = inBits.data();
        block.ioDTReqCount = SInt32(inBits.size());
        ASSERT_EQ(PBDTAddIconSync(&block), noErr);
    }
};

TEST_F(DatabaseIcons, HaveTheSizeOfTheirKind) {
    const std::pair<SInt16, std::size_t> kinds[] = {{1, 256}, {2, 512}, {3, 1024},
                                                    {4, 64},  {5, 128}, {6, 256}};
    for (const auto& [kind, size] : kinds) {
        Add(UInt8(kind), std::string(size, char('a' + kind)));
        ASSERT_EQ(Get(kind), noErr) << kind;
        EXPECT_EQ(Bits(), std::string(size, char('a' + kind)));
        EXPECT_EQ(HGetState(mIcon) & 0x80, 0) << "not locked any more";
    }
}

TEST_F(DatabaseIcons, OfOtherKindsAreRefused) {
    Add(1, std::string(256, 'x'));
    for (const SInt16 kind : {SInt16{0}, SInt16{7}, SInt16{-1}, SInt16{239}}) {
        EXPECT_EQ(Get(kind), paramErr) << kind;
        EXPECT_EQ(mIcon, nullptr);
    }
}

TEST_F(DatabaseIcons, ThatAreNotThereLeaveNoHandle) {
    Add(1, std::string(256, 'x'));
    const UInt32 handles = PlatformCountHandles();
    EXPECT_EQ(Get(2), afpItemNotFound);
    EXPECT_EQ(mIcon, nullptr);
    EXPECT_EQ(Get(1, 'none'), afpItemNotFound);
    EXPECT_EQ(PlatformCountHandles(), handles);
}

TEST_F(DatabaseIcons, InANewDatabaseAreNotThereWhateverTheKind) {
    const StFileFaults faults;
    gFileFaults.openDatabaseInforming = [](DTPBPtr ioBlock) {
        const OSErr err = REAL_CALL(PBDTOpenInform)(ioBlock);
        ioBlock->ioTagInfo = 0;
        return err;
    };
    EXPECT_EQ(Get(1), afpItemNotFound);
    EXPECT_EQ(Get(0), afpItemNotFound);
}

TEST_F(DatabaseIcons, NeedMemory) {
    Add(1, std::string(256, 'x'));
    sNoHandle = true;
    const OSErr err = Get(1);
    sNoHandle = false;
    EXPECT_EQ(err, memFullErr);
    EXPECT_EQ(mIcon, nullptr);
}

// Numbers of two bytes, as a resource holds them.
std::string Words(std::initializer_list<int> inWords) {
    std::string bytes;
    for (const int word : inWords) {
        bytes += char(word >> 8);
        bytes += char(word);
    }
    return bytes;
}

// One type of a bundle: local number and resource of each mapping.
std::string Type(const std::string& inType, std::initializer_list<int> inMappings) {
    return inType + Words({int(inMappings.size()) / 2 - 1}) + Words(inMappings);
}

std::string Bundle(const std::string& inCreator, const std::vector<std::string>& inTypes) {
    std::string bundle = inCreator + Words({0, int(inTypes.size()) - 1});
    for (const std::string& type : inTypes) bundle += type;
    return bundle;
}

class DesktopFileIcons : public Icons {
  protected:
    DesktopFileIcons() : Icons(kPlatformMountNoDesktopManager) {
        mDesktop = mDisk.MakeFile("Desktop", 'ERIK', 'FNDR');
    }
    void Add(ResType inType, SInt16 inID, const std::string& inData) {
        AddResourceTo(mDesktop, inType, inID, inData);
    }
    // A bundle of 'ttxt' with two file types: 'APPL' has icon 0, 'TEXT' icon 1, resource 201.
    void AddBundle() {
        Add('BNDL', 128,
            Bundle("ttxt", {Type("FREF", {0, 140, 1, 141}), Type("ICN#", {0, 200, 1, 201})}));
        Add('FREF', 140, "APPL" + Words({0}) + std::string(1, '\0'));
        Add('FREF', 141, "TEXT" + Words({1}) + std::string(1, '\0'));
    }

    FSSpec mDesktop = {};
};

TEST_F(DesktopFileIcons, AreFoundThroughTheBundle) {
    AddBundle();
    const std::pair<SInt16, ResType> kinds[] = {{1, 'ICN#'}, {2, 'icl4'}, {3, 'icl8'},
                                                {4, 'ics#'}, {5, 'ics4'}, {6, 'ics8'}};
    for (const auto& [kind, type] : kinds) Add(type, 201, "icon " + std::to_string(kind));
    for (const auto& [kind, type] : kinds) {
        ASSERT_EQ(Get(kind), noErr) << kind;
        EXPECT_EQ(Bits(), "icon " + std::to_string(kind));
    }
}

TEST_F(DesktopFileIcons, AreCopiesThatOutliveTheFile) {
    AddBundle();
    Add('ICN#', 200, "application");
    ASSERT_EQ(Get(1, 'ttxt', 'APPL'), noErr);
    EXPECT_EQ(GetResAttrs(mIcon), 0);
    EXPECT_EQ(ResError(), resNotFound) << "no resource any more";
    EXPECT_EQ(Bits(), "application");
}

TEST_F(DesktopFileIcons, KeepAnUnknownKindNoErrorAndNoIcon) {
    AddBundle();
    for (const SInt16 kind : {SInt16{0}, SInt16{7}}) {
        EXPECT_EQ(Get(kind), noErr);
        EXPECT_EQ(mIcon, nullptr);
    }
    EXPECT_EQ(Get(0, 'none'), afpItemNotFound) << "but only of a bundle that is there";
}

TEST_F(DesktopFileIcons, AreNotThereWithoutAnyStepOfTheWay) {
    EXPECT_EQ(Get(1), afpItemNotFound) << "no bundle";
    AddBundle();
    EXPECT_EQ(Get(1), afpItemNotFound) << "no icon";
    EXPECT_EQ(Get(1, 'none'), afpItemNotFound) << "no bundle of that creator";
    EXPECT_EQ(Get(1, 'ttxt', 'PICT'), afpItemNotFound) << "no such file type";
    EXPECT_EQ(mIcon, nullptr);
}

TEST_F(DesktopFileIcons, PassOverBundlesWithoutAnything) {
    Add('BNDL', 127, "ttxt" + Words({0, -1, 0, 0, 0}));
    Add('BNDL', 126, "ttxt" + Words({0, 0}) + "FREF" + Words({-1}));
    Add('BNDL', 125, "ttxt");
    AddBundle();
    Add('ICN#', 201, "icon");
    ASSERT_EQ(Get(1), noErr);
    EXPECT_EQ(Bits(), "icon");
}

TEST_F(DesktopFileIcons, PassOverTypesOfNoUseAndOtherTypes) {
    Add('BNDL', 128,
        Bundle("ttxt", {Type("FOOB", {7, 8, 9, 10}), "ICN#" + Words({-1}), Type("ICN#", {5, 205}),
                        Type("FREF", {0, 140})}));
    Add('FREF', 140, "TEXT" + Words({5}));
    Add('ICN#', 205, "icon");
    ASSERT_EQ(Get(1), noErr);
    EXPECT_EQ(Bits(), "icon");
}

TEST_F(DesktopFileIcons, EndWithABundleThatLies) {
    Add('BNDL', 128, "ttxt" + Words({0, 30000}) + "FREF" + Words({0, 0, 140}));
    Add('FREF', 140, "TEXT" + Words({5}));
    EXPECT_EQ(Get(1), afpItemNotFound);
    Add('BNDL', 129, "crea" + Words({0, 30000}) + "FREF" + Words({32767}));
    EXPECT_EQ(Get(1, 'crea'), afpItemNotFound);
    Add('BNDL', 130, "back" + Words({0, 2}) + "ABCD" + Words({0, 1, 2}) + "EFGH" + Words({-30000}));
    EXPECT_EQ(Get(1, 'back'), afpItemNotFound);
}

TEST_F(DesktopFileIcons, AreNotThereWhenTheyCannotBeCopied) {
    AddBundle();
    Add('ICN#', 201, "icon");
    sNoCopy = true;
    EXPECT_EQ(Get(1), afpItemNotFound);
    EXPECT_EQ(mIcon, nullptr);
}

TEST_F(DesktopFileIcons, TellOnlyThatMemoryWasShortForOpening) {
    AddBundle();
    sNoResourceFile = true;
    EXPECT_EQ(Get(1), memFullErr);
    sNoResourceFile = false;
    std::filesystem::remove(mDisk.Root() / "._Desktop");
    EXPECT_EQ(Get(1), afpItemNotFound);
}

TEST_F(DesktopFileIcons, LeaveTheCurrentResourceFileAsItWas) {
    AddBundle();
    Add('ICN#', 201, "icon");
    const SInt16 before = CurResFile();
    ASSERT_EQ(Get(1), noErr);
    EXPECT_EQ(CurResFile(), before);
}

}  // namespace
