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

TEST_F(ImageDrives, WrittenDiscsAreEjectedUnderAFreeName) {
    ImageDrive drive(mDrive);
    for (int i = 0; i < 2; ++i) {
        std::ofstream(mDrive / "tray/disc.iso") << "content";
        drive.Eject();
    }
    EXPECT_THAT(NamesIn(mDrive / "finished"), ElementsAre("disc 2.iso", "disc.iso"));
}

}  // namespace
