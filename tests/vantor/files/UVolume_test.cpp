// Walking the volumes and asking their desktop databases for applications.
#include "vantor/files/UVolume.h"

#include <gtest/gtest.h>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/Thrown.h"

namespace {

constexpr OSType kOurs = 'VtTs';

class Volumes : public testing::Test {
  protected:
    // The index of a volume; 0 when it is not listed.
    static SInt16 IndexOf(const MountedVolume& inVolume) {
        for (SInt16 index = UVolume::GetNumVolumes(); index > 0; --index) {
            if (UVolume::GetIndVolume(index) == inVolume.Number()) return index;
        }
        return 0;
    }
    // No volume of the machine has an application of ours, but the first ones may be slow to ask.
    static void HideAllBut(const std::vector<FSVolumeRefNum>& inVolumes) {
        gFileFaults.getVolumeInfo = [inVolumes](HParmBlkPtr ioBlock) {
            const std::size_t index = static_cast<std::size_t>(ioBlock->volumeParam.ioVolIndex);
            if (ioBlock->volumeParam.ioVolIndex <= 0) return REAL_CALL(PBHGetVInfoSync)(ioBlock);
            if (index > inVolumes.size()) return OSErr{nsvErr};
            ioBlock->volumeParam.ioVRefNum = inVolumes[index - 1];
            ioBlock->volumeParam.ioVolIndex = 0;
            return REAL_CALL(PBHGetVInfoSync)(ioBlock);
        };
    }

    StFileFaults mFaults;
};

TEST_F(Volumes, AreCountedUpToTheFirstThatDoesNotAnswer) {
    const SInt16 before = UVolume::GetNumVolumes();
    const MountedVolume one(0, "One"), two(0, "Two");
    EXPECT_EQ(UVolume::GetNumVolumes(), before + 2);
    gFileFaults.getVolumeInfo = [](HParmBlkPtr ioBlock) {
        EXPECT_TRUE(ioBlock->volumeParam.ioNamePtr != nullptr);
        return ioBlock->volumeParam.ioVolIndex <= 3 ? OSErr{noErr} : OSErr{ioErr};
    };
    EXPECT_EQ(UVolume::GetNumVolumes(), 3);
}

TEST_F(Volumes, WithNoneNothingElseIsCalled) {
    int calls = 0;
    gFileFaults.getVolumeInfo = [&](HParmBlkPtr) { return ++calls, OSErr{nsvErr}; };
    gFileFaults.getVolumeParameters = [&](HParmBlkPtr) { return ++calls, OSErr{noErr}; };
    gFileFaults.openDatabase = [&](DTPBPtr) { return ++calls, OSErr{noErr}; };
    FSSpec spec;
    EXPECT_EQ(UVolume::GetNumVolumes(), 0);
    EXPECT_FALSE(UVolume::FindApp(kOurs, spec));
    EXPECT_EQ(calls, 2) << "one question each";
}

TEST_F(Volumes, AreSearchableUnlessAServerHasThem) {
    const MountedVolume local(0, "Local"), remote(kPlatformMountRemote, "Remote");
    EXPECT_TRUE(UVolume::IsSearchable(IndexOf(local)));
    EXPECT_FALSE(UVolume::IsSearchable(IndexOf(remote)));
}

TEST_F(Volumes, BeyondTheLastAreNsvErr) {
    const SInt16 beyond = static_cast<SInt16>(UVolume::GetNumVolumes() + 1);
    EXPECT_EQ(CodeThrownBy([&] { UVolume::IsSearchable(beyond); }), nsvErr);
    EXPECT_EQ(CodeThrownBy([&] { UVolume::GetIndVolume(beyond); }), nsvErr);
    EXPECT_EQ(CodeThrownBy([&] { UVolume::VolHasDesktopDB(-32768); }), nsvErr);
}

TEST_F(Volumes, TellWhetherTheyHaveADesktopDatabase) {
    const MountedVolume with(0, "With"), without(kPlatformMountNoDesktopManager, "Without");
    EXPECT_TRUE(UVolume::VolHasDesktopDB(with.Number()));
    EXPECT_FALSE(UVolume::VolHasDesktopDB(without.Number()));
}

TEST_F(Volumes, ParametersAreAskedForInTheirFirstVersionsLength) {
    gFileFaults.getVolumeParameters = [](HParmBlkPtr ioBlock) {
        EXPECT_EQ(+ioBlock->ioParam.ioReqCount, 32);
        EXPECT_TRUE(ioBlock->ioParam.ioNamePtr == nullptr);
        EXPECT_EQ(ioBlock->ioParam.ioVRefNum, -7);
        return OSErr{extFSErr};
    };
    EXPECT_EQ(CodeThrownBy([] { UVolume::VolHasDesktopDB(-7); }), extFSErr);
}

TEST_F(Volumes, NameTheApplicationThatTheirDatabaseKnows) {
    const MountedVolume volume;
    const FSSpec application = volume.MakeFile("Tools/Tester", kOurs, 'APPL');
    RegisterApplication(application, kOurs);
    FSSpec found = {};
    ASSERT_TRUE(UVolume::FindAppOnVolume(kOurs, volume.Number(), found));
    EXPECT_EQ(found.vRefNum, volume.Number());
    EXPECT_EQ(+found.parID, volume.DirID(":Tools"));
    EXPECT_EQ(TextOf(found.name), "Tester");
}

TEST_F(Volumes, KeepsWritingTheSpecInPartWhenNothingIsFound) {
    const MountedVolume volume;
    for (const OSErr code : {OSErr{fnfErr}, OSErr{afpItemNotFound}}) {
        gFileFaults.getApplication = [=](DTPBPtr ioBlock) {
            EXPECT_EQ(ioBlock->ioIndex, 0);
            ioBlock->ioAPPLParID = 4711;
            return code;
        };
        FSSpec found = {};
        EXPECT_FALSE(UVolume::FindAppOnVolume(kOurs, volume.Number(), found));
        EXPECT_EQ(found.vRefNum, volume.Number());
        EXPECT_EQ(+found.parID, 4711);
    }
}

TEST_F(Volumes, ThrowWhatElseTheirDatabaseSays) {
    const MountedVolume volume;
    FSSpec found = {};
    gFileFaults.getApplication = [](DTPBPtr) { return OSErr{desktopDamagedErr}; };
    EXPECT_EQ(CodeThrownBy([&] { UVolume::FindAppOnVolume(kOurs, volume.Number(), found); }),
              desktopDamagedErr);
    gFileFaults.openDatabase = [](DTPBPtr) { return OSErr{extFSErr}; };
    EXPECT_EQ(CodeThrownBy([&] { UVolume::FindAppOnVolume(kOurs, volume.Number(), found); }),
              extFSErr);
}

TEST_F(Volumes, TheFirstWithAnApplicationWins) {
    const MountedVolume empty(0, "Empty"), first(0, "First"), second(0, "Second");
    HideAllBut({empty.Number(), first.Number(), second.Number()});
    FSSpec found = {};
    EXPECT_FALSE(UVolume::FindApp(kOurs, found));
    RegisterApplication(second.MakeFile("New", kOurs, 'APPL'), kOurs);
    RegisterApplication(first.MakeFile("Old", kOurs, 'APPL'), kOurs);
    ASSERT_TRUE(UVolume::FindApp(kOurs, found));
    EXPECT_EQ(found.vRefNum, first.Number());
    EXPECT_EQ(TextOf(found.name), "Old");
}

TEST_F(Volumes, OfServersAndWithoutDatabaseAreNeverAsked) {
    const MountedVolume remote(kPlatformMountRemote, "Remote");
    const MountedVolume plain(kPlatformMountNoDesktopManager, "Plain");
    RegisterApplication(remote.MakeFile("There", kOurs, 'APPL'), kOurs);
    HideAllBut({remote.Number(), plain.Number()});
    gFileFaults.openDatabase = [](DTPBPtr) {
        ADD_FAILURE() << "asked";
        return OSErr{noErr};
    };
    FSSpec found = {};
    EXPECT_FALSE(UVolume::FindApp(kOurs, found));
}

TEST_F(Volumes, OneThatFailsEndsTheSearch) {
    const MountedVolume broken(0, "Broken"), good(0, "Good");
    RegisterApplication(good.MakeFile("There", kOurs, 'APPL'), kOurs);
    HideAllBut({broken.Number(), good.Number()});
    gFileFaults.openDatabase = [&](DTPBPtr ioBlock) {
        if (ioBlock->ioVRefNum == broken.Number()) return OSErr{ioErr};
        return REAL_CALL(PBDTGetPath)(ioBlock);
    };
    FSSpec found = {};
    EXPECT_EQ(CodeThrownBy([&] { UVolume::FindApp(kOurs, found); }), ioErr);
}

TEST_F(Volumes, FourTypesAreApplications) {
    const MountedVolume volume;
    const FSSpec file = volume.MakeFile("File");
    for (const OSType type : {OSType{'APPL'}, OSType{'appe'}, OSType{'APPC'}, OSType{'APPD'}}) {
        Sign(file, kOurs, type);
        EXPECT_TRUE(UVolume::IsApplication(file));
    }
    for (const OSType type : {OSType{'appl'}, OSType{'TEXT'}, OSType{0}}) {
        Sign(file, kOurs, type);
        EXPECT_FALSE(UVolume::IsApplication(file));
    }
    EXPECT_EQ(CodeThrownBy([&] { UVolume::IsApplication(volume.Spec("Gone")); }), fnfErr);
}

}  // namespace
