// Tools that others wrote read the forks and Finder information written here, and what they write
// is read here.

#include "ForkFixture.h"
#include "file_manager/metadata/metadata.h"
#include "support/Command.h"

namespace {

class MacToolsTest : public ForkFixture {
  protected:
    void SetUp() override {
        ForkFixture::SetUp();
        for (const char* tool : {"genisoimage", "hmount", "binhex", "bsdtar"}) {
            if (!HasTool(tool)) GTEST_SKIP() << tool << " is not installed";
        }
        MakeFolder("source");
        Write("source/File", "the data fork");
        for (size_t i = 0; i < mFork.size(); ++i) mFork[i] = UInt8(i * i >> 3);
        ASSERT_EQ(carbon::ReplaceResourceFork(Path("source/File"), mFork), noErr);
        ASSERT_EQ(carbon::ChangeMetadata(Path("source/File"), Mark), noErr);
    }

    static void Mark(carbon::Metadata* ioMetadata) {
        FInfo info{};
        info.fdType = 'Fork';
        info.fdCreator = 'Ours';
        std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
    }

    std::string Run(const std::vector<std::string>& inWords, const std::string& inFolder = "") {
        CommandOptions options;
        options.folder = Path(inFolder);
        options.environment = {"HOME=" + mFolder.string()};  // where hfsutils keep their state
        const auto result = RunCommand(inWords, options);
        EXPECT_EQ(result.exitCode, 0) << inWords[0] << ": " << result.errors;
        return result.output;
    }

    // The file as MacBinary: from our companion onto a classic HFS disc, and from that.
    std::string MacBinary() {
        Run({"genisoimage", "-quiet", "-hfs", "--osx-double", "-V", "Vol", "-o", "disc", "source"});
        Run({"hmount", "disc"});
        const auto listing = Run({"hls", "-l"});
        EXPECT_NE(listing.find("f  Fork/Ours     10000        13"), std::string::npos) << listing;
        Run({"hcopy", "-m", ":File", "File.bin"});
        Run({"humount"});
        return Contents(Path("File.bin"));
    }

    // What a tool wrote in its own folder for companions, put where ours are.
    void ExpectWhole(const std::string& inFolder) {
        std::filesystem::rename(Path(inFolder + "/.AppleDouble/File"), Path(inFolder + "/._File"));
        const auto path = Path(inFolder + "/File");
        std::vector<UInt8> fork;
        EXPECT_EQ(carbon::ReadResourceFork(path, &fork), noErr);
        EXPECT_EQ(fork, mFork);
        const FSSpec spec = SpecOf(path);
        FInfo info{};
        EXPECT_EQ(FSpGetFInfo(&spec, &info), noErr);
        EXPECT_EQ(+info.fdType, OSType('Fork'));
        EXPECT_EQ(+info.fdCreator, OSType('Ours'));
        EXPECT_EQ(Contents(path), "the data fork");
        const SInt16 number = OpenResources(inFolder + "/File", fsRdWrPerm);
        ASSERT_GT(number, 0);
        EXPECT_EQ(Length(number), 10000);
        EXPECT_EQ(Put(number, "now written here"), noErr);
        EXPECT_EQ(All(number).substr(0, 16), "now written here");
    }

    std::vector<UInt8> mFork = std::vector<UInt8>(10000);
};

TEST_F(MacToolsTest, FindBothForksAndTheTypeOnADiscMadeOfThem) {
    const auto archive = MacBinary();
    ASSERT_GE(archive.size(), 256u + 10000u);
    EXPECT_EQ(archive.substr(1, 5),
              "\x04"
              "File");
    EXPECT_EQ(archive.substr(65, 8), "ForkOurs");
    EXPECT_EQ(archive.substr(128, 13), "the data fork");
    EXPECT_EQ(archive.substr(256, 10000), std::string(mFork.begin(), mFork.end()));
}

TEST_F(MacToolsTest, BringAFileBackWholeThroughMacBinary) {
    MacBinary();
    MakeFolder("back/.AppleDouble");
    Run({"macunpack", "-a", "../File.bin"}, "back");
    ExpectWhole("back");
}

TEST_F(MacToolsTest, BringAFileBackWholeThroughBinHex) {
    MacBinary();
    Write("File.hqx", Run({"binhex", "File.bin"}));
    MakeFolder("back/.AppleDouble");
    Run({"hexbin", "-a", "../File.hqx"}, "back");
    ExpectWhole("back");
}

// libarchive takes a companion for the metadata of the file behind it, and lists it no longer.
TEST_F(MacToolsTest, KnowACompanionInAnArchive) {
    Run({"bsdtar", "-cf", "a.tar", "-C", "source", "._File", "File"});
    EXPECT_EQ(Run({"bsdtar", "--options", "mac-ext", "-tf", "a.tar"}), "File\n");
    MakeFolder("out");
    Run({"bsdtar", "-xf", "a.tar", "-C", "out"});
    EXPECT_EQ(Contents(Path("out/._File")), Contents(Path("source/._File")));
    std::vector<UInt8> fork;
    EXPECT_EQ(carbon::ReadResourceFork(Path("out/File"), &fork), noErr);
    EXPECT_EQ(fork, mFork);
}

}  // namespace
