#include "burn/ImageDrive.h"

#include <unistd.h>

#include "recorder/EngineTest.h"

using namespace recorder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class ImageDrives : public EngineTest {
  protected:
    void Settings(const std::string& inText) {
        fs::create_directories(mDrive);
        std::ofstream(mDrive / "settings") << inText;
    }
    void Blank(const std::string& inName, off_t inSize) {
        const fs::path path = mDrive / "tray" / inName;
        std::ofstream(path).close();
        ASSERT_EQ(truncate(path.c_str(), inSize), 0);
    }
    const fs::path mDrive = mHome.Root() / "data/vantor/drives/image";
};

TEST_F(ImageDrives, AreMadeWhenThereIsNone) {
    SystemDrives drives;
    EXPECT_THAT(drives.Identifiers(), ::testing::Contains(mDrive.string()));
    EXPECT_EQ(drives.Open(mDrive)->Probe().mediaInfo, 0);
    EXPECT_TRUE(fs::is_directory(mDrive / "tray"));
    EXPECT_THROW(drives.Open("/nowhere"), BurnFailure);
}

// With the zero the system sees the folder around, and would take its files for discs.
TEST_F(ImageDrives, AreNotFoundByWhatIsNoPath) {
    SystemDrives drives;
    fs::create_directories(mDrive / "tray");
    const std::string folder = mDrive.string();
    for (const std::string& identifier :
         {folder + std::string(1, '\0'), std::string("/dev/\0", 6), '/' + std::string(5000, 'x'),
          "/dev/" + std::string(5000, 'x'), std::string("image"), std::string()}) {
        try {
            drives.Open(identifier);
            ADD_FAILURE() << identifier;
        } catch (const BurnFailure& failure) {
            EXPECT_EQ(failure.Code(), nsDrvErr) << identifier;
        }
    }
}

TEST_F(ImageDrives, AutomaticOnesMakeABlankWhenAskedAndTakeItBackWhenEjected) {
    ImageDrive drive(mDrive);
    EXPECT_TRUE(drive.HasBlankDisc());
    EXPECT_EQ(drive.Probe().mediaInfo, kMediumImage | kMediumBlank);
    drive.Eject();
    EXPECT_EQ(drive.Probe().mediaInfo, 0);
    EXPECT_THAT(NamesIn(mDrive / "finished"), IsEmpty());
}

TEST_F(ImageDrives, ManualOnesWaitForABlankOfAKnownSize) {
    Settings("blanks manual\n");
    ImageDrive drive(mDrive);
    EXPECT_FALSE(drive.HasBlankDisc());
    Blank("odd.iso", 12345);
    EXPECT_FALSE(drive.HasBlankDisc());
    Blank("a cd.iso", 359'844ll * 2048);
    EXPECT_TRUE(drive.HasBlankDisc());
    EXPECT_LE(drive.Probe().space, 359'844ull * 2048);
}

TEST_F(ImageDrives, AFileWithAnyContentIsNotBlank) {
    ImageDrive drive(mDrive);
    Blank("cd.iso", 359'844ll * 2048);
    const fs::path disc = mDrive / "tray/cd.iso";
    EXPECT_TRUE(IsBlankDisc(disc));
    std::fstream(disc, std::ios::in | std::ios::out | std::ios::binary) << "x";
    EXPECT_FALSE(IsBlankDisc(disc));
    EXPECT_EQ(drive.Probe().mediaInfo, kMediumImage);
}

TEST_F(ImageDrives, AFileWithASecondNameIsNotBlank) {
    ImageDrive drive(mDrive);
    Blank("disc.iso", 0);
    EXPECT_TRUE(IsBlankDisc(mDrive / "tray/disc.iso"));
    fs::create_hard_link(mDrive / "tray/disc.iso", mRoot / "other");
    EXPECT_FALSE(IsBlankDisc(mDrive / "tray/disc.iso"));
}

TEST_F(ImageDrives, AutomaticOnesNeverTakeSomebodysFileForTheBlank) {
    ImageDrive drive(mDrive);
    std::ofstream(mDrive / "tray/2024.iso") << "content";
    std::ofstream(mDrive / "tray/2025.iso") << "content";
    EXPECT_TRUE(drive.HasBlankDisc());
    EXPECT_TRUE(drive.HasBlankDisc());
    EXPECT_THAT(NamesIn(mDrive / "tray"), ElementsAre("Blank disc.iso"));
    drive.Begin({"Name", mImage, false, false, true})->Finish();
    EXPECT_THAT(NamesIn(mDrive / "tray"), IsEmpty());
    EXPECT_THAT(NamesIn(mDrive / "finished"), ElementsAre("2024.iso", "2025.iso"));
}

TEST_F(ImageDrives, TheBlankItselfMayBecomeTheImage) {
    Settings("blanks manual\n");
    ImageDrive drive(mDrive);
    Blank("disc.iso", 0);
    drive.Begin({"Name", mDrive / "tray/disc.iso", true, false, true})->Finish();
    EXPECT_THAT(NamesIn(mDrive / "tray"), ElementsAre("disc.iso"));
}

TEST_F(ImageDrives, WhatWasPutInTheBlanksPlaceMeanwhileStays) {
    Settings("blanks manual\n");
    ImageDrive drive(mDrive);
    Blank("blank.iso", 0);
    const auto recording = drive.Begin({"Name", mImage, false, false, true});
    std::ofstream(mDrive / "tray/blank.iso") << "content";
    recording->Finish();
    EXPECT_THAT(NamesIn(mDrive / "tray"), ElementsAre("blank.iso"));
}

TEST_F(ImageDrives, SimulationNoticesWhatKeepsADiscFromBeingMade) {
    ImageDrive drive(mDrive);
    const auto codeFor = [&](const fs::path& goal) {
        try {
            drive.Begin({"Name", goal, false, true, true})->Reserve(1);
            return SInt32(noErr);
        } catch (const BurnFailure& failure) {
            return failure.Code();
        }
    };
    EXPECT_EQ(codeFor(mImage), noErr);
    EXPECT_EQ(codeFor(mRoot / "no folder/disc.iso"), fnfErr);
    std::ofstream(mImage) << "precious";
    EXPECT_EQ(codeFor(mImage), dupFNErr);
}

TEST_F(ImageDrives, SimulationKnowsTheSizeOfTheBlankInTheTray) {
    Settings("blanks manual\n");
    ImageDrive drive(mDrive);
    Blank("a cd.iso", 359'844ll * 2048);
    const auto recording = drive.Begin({"Name", mImage, false, true, true});
    EXPECT_NO_THROW(recording->Reserve(1));
    EXPECT_THROW(recording->Reserve(359'844ull * 2048 + 1), BurnFailure);
}

TEST_F(ImageDrives, WrittenDiscsAreEjectedUnderAFreeName) {
    ImageDrive drive(mDrive);
    for (int i = 0; i < 2; ++i) {
        std::ofstream(mDrive / "tray/disc.iso") << "content";
        drive.Eject();
    }
    EXPECT_THAT(NamesIn(mDrive / "finished"), ElementsAre("disc 2.iso", "disc.iso"));
}

}  // namespace
