// The lookup of an application on one volume: database, desktop file, catalog.
#include "vantor/files/DesktopDatabase.h"

#include <gtest/gtest.h>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/Thrown.h"

namespace {

constexpr OSType kOurs = 'VtTs';

std::string NameWithLength(const std::string& inName) {
    return static_cast<char>(inName.size()) + inName;
}

// An entry of a desktop file, with the byte that makes its length even.
std::string Entry(OSType inCreator, SInt32 inParID, const std::string& inName) {
    std::string entry =
        BigEndianText(inCreator) + BigEndianText(UInt32(inParID)) + NameWithLength(inName);
    if (entry.size() % 2 != 0) entry += '\x55';
    return entry;
}

class Desktop : public testing::Test {
  protected:
    static FSSpec MakeDesktopFile(const MountedVolume& inVolume, const std::string& inList) {
        const FSSpec file = inVolume.MakeFile("Desktop", 'ERIK', 'FNDR');
        AddResourceTo(file, 'APPL', 0, inList);
        return file;
    }
    // The database answers with these files, by index.
    static void AnswerWith(const std::vector<FSSpec>& inFiles) {
        gFileFaults.openDatabaseInforming = [](DTPBPtr ioBlock) {
            ioBlock->ioTagInfo = 1;
            return OSErr{noErr};
        };
        gFileFaults.getApplication = [inFiles](DTPBPtr ioBlock) {
            const auto index = static_cast<std::size_t>(ioBlock->ioIndex);
            if (index >= inFiles.size()) return OSErr{fnfErr};
            std::memcpy(ioBlock->ioNamePtr, inFiles[index].name, sizeof inFiles[index].name);
            ioBlock->ioAPPLParID = inFiles[index].parID;
            return OSErr{noErr};
        };
    }
    OSErr Find(const MountedVolume& inVolume, Boolean inSearchCatalog) {
        mFound = {};
        return FSpDTXGetAPPL(nullptr, inVolume.Number(), kOurs, inSearchCatalog, &mFound);
    }
    void ExpectFound(const FSSpec& inFile) const {
        EXPECT_EQ(mFound.vRefNum, inFile.vRefNum);
        EXPECT_EQ(+mFound.parID, +inFile.parID);
        EXPECT_EQ(TextOf(mFound.name), TextOf(inFile.name));
    }

    FSSpec mFound = {};
    StFileFaults mFaults;
};

TEST_F(Desktop, DatabaseIsOpenedWhereTheVolumeHasOne) {
    const MountedVolume with(0, "With"), without(kPlatformMountNoDesktopManager, "Without");
    SInt16 database = 0;
    Boolean isNew = false;
    EXPECT_EQ(DTOpen(nullptr, with.Number(), &database, &isNew), noErr);
    EXPECT_NE(database, 0);
    EXPECT_EQ(DTOpen(nullptr, without.Number(), &database, &isNew), paramErr);
    EXPECT_EQ(DTOpen(PString("Nowhere:"), -32768, &database, &isNew), nsvErr);
}

TEST_F(Desktop, DatabaseIsNewWhereTheTagSaysSo) {
    const MountedVolume volume;
    for (const SInt32 tag : {0, 1, 2, 3}) {
        gFileFaults.openDatabaseInforming = [=](DTPBPtr ioBlock) {
            ioBlock->ioDTRefNum = 12;
            ioBlock->ioTagInfo = tag;
            return OSErr{noErr};
        };
        SInt16 database = 0;
        Boolean isNew = 2;
        EXPECT_EQ(DTOpen(nullptr, volume.Number(), &database, &isNew), noErr);
        EXPECT_EQ(database, 12);
        EXPECT_EQ(isNew, tag == 0 || tag == 2);
    }
}

TEST_F(Desktop, DatabaseIsOpenedTheOtherWayWhereInformingIsUnknown) {
    const MountedVolume volume;
    gFileFaults.openDatabaseInforming = [](DTPBPtr) { return OSErr{paramErr}; };
    SInt16 database = 0;
    Boolean isNew = true;
    EXPECT_EQ(DTOpen(nullptr, volume.Number(), &database, &isNew), noErr);
    EXPECT_NE(database, 0);
    EXPECT_FALSE(isNew);
}

TEST_F(Desktop, DatabaseNumberIsToldEvenAfterAnError) {
    const MountedVolume volume;
    gFileFaults.openDatabaseInforming = [](DTPBPtr ioBlock) {
        ioBlock->ioDTRefNum = 77;
        return OSErr{desktopDamagedErr};
    };
    SInt16 database = 0;
    Boolean isNew = false;
    EXPECT_EQ(DTOpen(nullptr, volume.Number(), &database, &isNew), desktopDamagedErr);
    EXPECT_EQ(database, 77);
    EXPECT_TRUE(isNew);
}

TEST_F(Desktop, DatabaseNamesTheApplication) {
    const MountedVolume volume;
    const FSSpec application = volume.MakeFile("Tools/Tester", kOurs, 'APPL');
    RegisterApplication(application, kOurs);
    ASSERT_EQ(Find(volume, false), noErr);
    ExpectFound(application);
    SInt16 number = 0;
    SInt32 parent = 0;
    Str255 name = "";
    ASSERT_EQ(DTGetAPPL(PString("Disk:"), -32768, kOurs, &number, &parent, name), noErr);
    EXPECT_EQ(number, volume.Number()) << "a real number, whatever way the volume was named";
    EXPECT_EQ(parent, +application.parID);
    EXPECT_EQ(TextOf(name), "Tester");
    EXPECT_EQ(FSpDTGetAPPL(nullptr, volume.Number(), kOurs, &mFound), noErr);
    ExpectFound(application);
}

TEST_F(Desktop, NewDatabaseIsNotReadAndTheCatalogIsSearched) {
    const MountedVolume volume;
    const FSSpec application = volume.MakeFile("Deep/Deeper/Tester", kOurs, 'APPL');
    gFileFaults.openDatabaseInforming = [](DTPBPtr) { return OSErr{noErr}; };
    gFileFaults.getApplication = [](DTPBPtr) {
        ADD_FAILURE() << "read";
        return OSErr{noErr};
    };
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
    EXPECT_EQ(Find(volume, true), noErr);
    ExpectFound(application);
}

TEST_F(Desktop, StaleEntriesAreSkipped) {
    const MountedVolume volume;
    const FSSpec document = volume.MakeFile("Changed", kOurs, 'TEXT');
    const FSSpec other = volume.MakeFile("Other", 'Else', 'APPL');
    const FSSpec good = volume.MakeFile("Good", kOurs, 'APPL');
    AnswerWith({volume.Spec("Gone"), document, other, good});
    EXPECT_EQ(Find(volume, false), noErr);
    ExpectFound(good);
}

TEST_F(Desktop, KeepsTheEntryTurnedDownInTheOutputs) {
    const MountedVolume volume;
    const FSSpec document = volume.MakeFile("Changed", kOurs, 'TEXT');
    AnswerWith({document});
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
    ExpectFound(document);
}

TEST_F(Desktop, FileGoneFromTheDatabaseOfTheVolumeIsNotFound) {
    const MountedVolume volume;
    const FSSpec application = volume.MakeFile("Tester", kOurs, 'APPL');
    RegisterApplication(application, kOurs);
    ASSERT_EQ(FSpDelete(&application), noErr);
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
    EXPECT_EQ(Find(volume, true), afpItemNotFound);
}

TEST_F(Desktop, ErrorOfOpeningIsReturnedWithoutLookingElsewhere) {
    const MountedVolume volume;
    volume.MakeFile("Tester", kOurs, 'APPL');
    gFileFaults.openDatabaseInforming = [](DTPBPtr) { return OSErr{ioErr}; };
    EXPECT_EQ(Find(volume, true), ioErr);
    gFileFaults.openDatabaseInforming = [](DTPBPtr) { return OSErr{afpItemNotFound}; };
    EXPECT_EQ(Find(volume, true), noErr) << "but this one reads as not found";
}

TEST_F(Desktop, UnknownVolumeIsAnErrorAtOnce) {
    FSSpec found = {};
    EXPECT_EQ(FSpDTGetAPPL(nullptr, -32768, kOurs, &found), nsvErr);
}

TEST_F(Desktop, FileIsReadWhereThereIsNoDatabase) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    const FSSpec application = volume.MakeFile("Tools/Tester", kOurs, 'APPL');
    MakeDesktopFile(volume, Entry('Else', 2, "Nobody") + Entry(kOurs, application.parID, "Tester"));
    ASSERT_EQ(Find(volume, false), noErr);
    ExpectFound(application);
}

TEST_F(Desktop, FileIsReadWhereNeitherWayOpensTheDatabase) {
    const MountedVolume volume;
    const FSSpec application = volume.MakeFile("Tester", kOurs, 'APPL');
    MakeDesktopFile(volume, Entry(kOurs, 2, "Tester"));
    gFileFaults.openDatabaseInforming = [](DTPBPtr) { return OSErr{paramErr}; };
    gFileFaults.openDatabase = [](DTPBPtr) { return OSErr{paramErr}; };
    ASSERT_EQ(Find(volume, false), noErr);
    ExpectFound(application);
}

TEST_F(Desktop, FileHasItsEntriesAtEvenPlaces) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    volume.MakeFile("Tester", kOurs, 'APPL');
    // Names of odd and of even length: with one byte behind it, and without.
    MakeDesktopFile(volume, Entry('Odd ', 2, "abc") + Entry('Even', 2, "ab") +
                                Entry('None', 2, "") + Entry(kOurs, 2, "Tester"));
    EXPECT_EQ(Entry('Odd ', 2, "abc").size(), 12u);
    EXPECT_EQ(Entry('Even', 2, "ab").size(), 12u);
    EXPECT_EQ(Find(volume, false), noErr);
    EXPECT_EQ(TextOf(mFound.name), "Tester");
}

TEST_F(Desktop, FileIsKnownByItsTypeAndCreatorBoth) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    const FSSpec application = volume.MakeFile("Tester", kOurs, 'APPL');
    const std::string wrong = Entry(kOurs, 2, "Wrong");
    AddResourceTo(volume.MakeFile("A", 'ERIK', 'DTFL'), 'APPL', 0, wrong);
    AddResourceTo(volume.MakeFile("B", 'Else', 'FNDR'), 'APPL', 0, wrong);
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
    MakeDesktopFile(volume, Entry(kOurs, 2, "Tester"));
    ASSERT_EQ(Find(volume, false), noErr);
    ExpectFound(application);
}

TEST_F(Desktop, FileWithACutOffLastEntryIsReadAsFarAsItGoes) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    const std::string whole = Entry('Else', 2, "Nobody") + Entry(kOurs, 2, "Testers");
    MakeDesktopFile(volume, whole.substr(0, whole.size() - 3));
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
}

TEST_F(Desktop, FileWithANameThatNoSpecHoldsIsCut) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    MakeDesktopFile(volume, Entry(kOurs, 2, std::string(200, 'x')));
    EXPECT_EQ(Find(volume, false), noErr);
    EXPECT_EQ(TextOf(mFound.name), std::string(63, 'x'));
}

TEST_F(Desktop, FileThatNamesNothingOrIsMissingIsItemNotFound) {
    const MountedVolume missing(kPlatformMountNoDesktopManager, "Missing");
    EXPECT_EQ(Find(missing, false), afpItemNotFound);
    const MountedVolume empty(kPlatformMountNoDesktopManager, "Empty");
    MakeDesktopFile(empty, "");
    EXPECT_EQ(Find(empty, false), afpItemNotFound);
    const MountedVolume without(kPlatformMountNoDesktopManager, "Without");
    AddResourceTo(without.MakeFile("Desktop", 'ERIK', 'FNDR'), 'vers', 1, "1234");
    EXPECT_EQ(Find(without, false), afpItemNotFound);
    const MountedVolume plain(kPlatformMountNoDesktopManager, "Plain");
    plain.MakeFile("Desktop", 'ERIK', 'FNDR', "no resources");
    EXPECT_EQ(Find(plain, false), afpItemNotFound);
}

TEST_F(Desktop, CatalogIsSearchedWhereThereIsNeitherDatabaseNorFile) {
    const MountedVolume volume(kPlatformMountNoDesktopManager | kPlatformMountNoCatalogSearch);
    const FSSpec application = volume.MakeFile("Deep/Deeper/Tester", kOurs, 'APPL');
    volume.MakeFile("Deep/Document", kOurs, 'TEXT');
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
    EXPECT_EQ(Find(volume, true), noErr);
    ExpectFound(application);
}

TEST_F(Desktop, FileNamingWhatHasChangedIsNotFound) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    volume.MakeFile("Document", kOurs, 'TEXT');
    MakeDesktopFile(volume, Entry(kOurs, 2, "Document"));
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
}

TEST_F(Desktop, KeepsBelievingAFileThatCannotBeLookedAt) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    MakeDesktopFile(volume, Entry(kOurs, 2, "Gone"));
    EXPECT_EQ(Find(volume, false), noErr);
    EXPECT_EQ(TextOf(mFound.name), "Gone");
}

TEST_F(Desktop, FileLeavesTheResourceManagerAsItWas) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    const FSSpec other = volume.MakeFile("Other", 'Else', 'rsrc');
    AddResourceTo(other, 'TEST', 1, "data");
    const FSSpec desktop = MakeDesktopFile(volume, Entry('Else', 2, "Nobody"));
    const SInt16 top = FSpOpenResFile(&other, fsRdPerm);
    ASSERT_NE(top, -1);
    UseResFile(0);
    EXPECT_EQ(Find(volume, false), afpItemNotFound);
    EXPECT_EQ(CurResFile(), 0);
    Boolean inChain = true;
    SInt16 number = 0;
    EXPECT_FALSE(FSpResourceFileAlreadyOpen(&desktop, &inChain, &number));
    EXPECT_TRUE(LMGetResLoad());
    CloseResFile(top);
}

TEST_F(Desktop, KeepsTheEndOfTheCatalogWithAGoodAnswer) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    const FSSpec application = volume.MakeFile("Tester", kOurs, 'APPL');
    gFileFaults.searchCatalog = [&](CSParamPtr ioBlock) {
        EXPECT_EQ(+ioBlock->ioReqMatchCount, 1);
        EXPECT_EQ(+ioBlock->ioCatPosition.initialize, 0);
        ioBlock->ioMatchPtr[0] = application;
        ioBlock->ioActMatchCount = 1;
        return OSErr{eofErr};
    };
    EXPECT_EQ(Find(volume, true), eofErr);
    ExpectFound(application);
}

TEST_F(Desktop, ErrorOfTheSearchIsReturnedAsItIs) {
    const MountedVolume volume(kPlatformMountNoDesktopManager);
    gFileFaults.searchCatalog = [](CSParamPtr) { return OSErr{ioErr}; };
    EXPECT_EQ(Find(volume, true), ioErr);
    gFileFaults.searchCatalog = [](CSParamPtr) { return OSErr{eofErr}; };
    EXPECT_EQ(Find(volume, true), afpItemNotFound);
}

}  // namespace
