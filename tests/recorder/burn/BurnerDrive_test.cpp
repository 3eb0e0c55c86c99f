// The way to burners, with a file in the place of one: libburn treats both alike.
#include "burn/BurnerDrive.h"

#include "recorder/EngineTest.h"

using namespace recorder;
using ::testing::IsEmpty;

namespace {

class FileBurner : public DriveSource {
  public:
    explicit FileBurner(const std::string& inAddress) : mAddress(inAddress) {}
    std::vector<std::string> Identifiers() override { return {mAddress}; }
    std::unique_ptr<Drive> Open(const std::string&) override {
        return std::make_unique<BurnerDrive>(mAddress);
    }

  private:
    std::string mAddress;
};

class Burners : public EngineTest {
  protected:
    BurnEngine::Snapshot Burn(const BurnRequest& inRequest) {
        mEngine.Start(inRequest);
        return End(mEngine);
    }
    FileBurner mDrives{"stdio:" + mImage.string()};
    BurnEngine mEngine{mDrives};
};

TEST_F(Burners, WriteAndVerifyThroughLibburn) {
    WriteManyFiles(mSource, 100, 50'000);
    const auto end = Burn(Request("any"));
    ASSERT_EQ(end.progress.status, 0) << end.progress.errorText;
    EXPECT_TRUE(end.result.verified);
    EXPECT_EQ(RunCommand({"bsdtar", "-xpf", mImage, "-C", mRoot / "source/.."}).exitCode, 0);
    const auto checked =
        RunCommand({"xorriso", "-for_backup", "-abort_on", "SORRY", "-indev",
                    "stdio:" + mImage.string(), "-check_media", "event=FAILURE", "--"});
    EXPECT_EQ(checked.exitCode, 0) << checked.errors;
}

TEST_F(Burners, SayWhatIsInThem) {
    const auto info = mEngine.Probe("any");
    EXPECT_TRUE(info.isBurner);
    EXPECT_EQ(info.mediaInfo & 0xFF, kMediumImage);
    EXPECT_NE(info.mediaInfo & kMediumBlank, 0);
    EXPECT_GT(info.space, 0u);
}

TEST_F(Burners, StopWhenCancelled) {
    for (int i = 0; i < 4; ++i) WriteSparseFile(mSource / std::to_string(i), 1ll << 30);
    mEngine.Start(Request("any"));
    ASSERT_TRUE(Eventually([&] { return mEngine.Progress().phase == Phase::Writing; }));
    mEngine.Cancel();
    EXPECT_TRUE(mEngine.WaitUntilQuiet(2000));
    EXPECT_EQ(mEngine.Status(), userCanceledErr);
}

TEST_F(Burners, SourceThatVanishedIsTheJobsErrorAndNotLibburns) {
    Put(mSource / "a big one", 60'000'000);
    Put(mSource / "z last", 1000);
    mEngine.Start(Request("any"));
    ASSERT_TRUE(Eventually([&] { return mEngine.Progress().phase == Phase::Writing; }));
    fs::remove(mSource / "z last");
    const auto end = End(mEngine);
    EXPECT_EQ(end.progress.status, fnfErr);
    EXPECT_THAT(end.progress.errorText, ::testing::HasSubstr("z last"));
}

TEST_F(Burners, RefuseAnOutputFile) {
    Put(mSource / "file", 10);
    BurnRequest request = Request("any");
    request.goal.outputPath = mRoot / "elsewhere.iso";
    EXPECT_EQ(Burn(request).progress.status, paramErr);
}

TEST_F(Burners, MissingDriveIsNoDrive) {
    FileBurner drives("stdio:/nowhere/at/all");
    BurnEngine engine(drives);
    engine.Start(Request("any"));
    EXPECT_EQ(End(engine).progress.status, nsDrvErr);
}

}  // namespace
