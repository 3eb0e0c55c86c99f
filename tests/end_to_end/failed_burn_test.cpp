// Burns that go wrong half-way: the sentence, the code and the exit status of each, and that
// nothing is left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/mount.h>

#include <fstream>
#include <functional>
#include <future>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "support/Tree.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using Json = nlohmann::json;

TemporaryHome gHome;

CommandResult Vantor(std::vector<std::string> inWords) {
    inWords.insert(inWords.begin(), ProgramFolder() + "/vantor");
    CommandOptions options;
    options.deadline = std::chrono::seconds(240);
    return RunCommand(inWords, options);
}

pid_t RecorderPid() {
    for (const auto& process : Json::parse(Vantor({"processes", "--json"}).output))
        if (process["signature"] == "Fv8k") return process["pid"];
    return 0;
}

class FailedBurn : public ::testing::Test {
  protected:
    FailedBurn()
        : mRoot(gHome.Root() / ::testing::UnitTest::GetInstance()->current_test_info()->name()) {
        fs::create_directories(mSource);
    }
    ~FailedBurn() override {
        if (const pid_t left = RecorderPid()) kill(left, SIGKILL);
        fs::remove_all(mRoot);
    }

    // Large enough to be still at it when something happens.
    void PutMuch(long long inEach = 1LL << 30) {
        for (int i = 0; i < 8; ++i) WriteSparseFile(mSource / std::to_string(i), inEach);
    }
    // Does it once the disc is being written.
    CommandResult BurnAnd(const std::function<void()>& inHappens) {
        auto burn = std::async(std::launch::async, [this] {
            return Vantor({"burn", mSource.string(), "--to", mImage});
        });
        const bool isWriting = Eventually([this] {
            std::error_code none;
            return fs::file_size(mPart, none) > 0 && !none;
        });
        EXPECT_TRUE(isWriting);
        if (isWriting) inHappens();
        return burn.get();
    }
    void ExpectNothingLeft() const {
        EXPECT_EQ(std::distance(fs::directory_iterator(mRoot), {}), 1) << "only the source is left";
    }

    const fs::path mRoot;
    const fs::path mSource = mRoot / "source";
    const std::string mImage = mRoot / "disc.iso";
    const std::string mPart = mRoot / ".disc.iso.part";
};

TEST_F(FailedBurn, KilledRecorderIsToldAndLeavesNothingAfterTheNextStart) {
    PutMuch();
    const auto result = BurnAnd([] { kill(RecorderPid(), SIGKILL); });
    EXPECT_EQ(result.exitCode, 1) << result.errors;
    EXPECT_THAT(result.errors, ::testing::ContainsRegex("^vantor: [^\n]*[a-z] \\[-60[09]\\]\n$"));
    EXPECT_FALSE(fs::exists(mImage));
    EXPECT_EQ(Vantor({"drives"}).exitCode, 0);
    ExpectNothingLeft();
}

TEST_F(FailedBurn, VanishedSourceIsNamedAndLeavesNothing) {
    PutMuch(128 << 20);
    const auto result = BurnAnd([this] { fs::remove(mSource / "4"); });
    EXPECT_EQ(result.exitCode, 4) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("source/4"));
    EXPECT_THAT(result.errors, HasSubstr("[-43]"));
    ExpectNothingLeft();
}

TEST_F(FailedBurn, ChangedSourceIsNamedAndLeavesNothing) {
    PutMuch(128 << 20);
    const auto result = BurnAnd([this] { std::ofstream(mSource / "4", std::ios::app) << "more"; });
    EXPECT_EQ(result.exitCode, 1) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("source/4: changed"));
    EXPECT_THAT(result.errors, HasSubstr("[-36]"));
    ExpectNothingLeft();
}

TEST_F(FailedBurn, FullDiskIsToldAndLeavesNothing) {
    const fs::path small = mRoot / "small";
    fs::create_directory(small);
    if (mount("tmpfs", small.c_str(), "tmpfs", 0, "size=4m") != 0)
        GTEST_SKIP() << "only the administrator may mount a small disk";
    WriteFile(mSource / "file", 6'000'000);
    const auto result = Vantor({"burn", mSource.string(), "--to", (small / "disc.iso").string()});
    EXPECT_EQ(result.exitCode, 1) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("[-34]"));
    EXPECT_TRUE(fs::is_empty(small));
    EXPECT_EQ(umount(small.c_str()), 0);
}

// Somebody writes into the image while it is read back.
TEST_F(FailedBurn, DamageEndsWithFiveAndLeavesNothing) {
    for (int i = 0; i < 2; ++i) WriteSparseFile(mSource / std::to_string(i), 1LL << 30);
    const std::string script =
        "\"$0\" burn source --to disc.iso 2>errors | while read -r line; do case $line in "
        "*erifying*)"
        " if [ ! -e done ]; then touch done; head -c 70000 /dev/urandom |"
        " dd of=.disc.iso.part bs=1M seek=2000 conv=notrunc 2>/dev/null; fi;; esac; done;"
        " status=${PIPESTATUS[0]}; cat errors >&2; rm -f errors done; exit $status";
    CommandOptions options;
    options.folder = mRoot;
    options.deadline = std::chrono::seconds(240);
    const auto result =
        RunCommand({"bash", "-o", "pipefail", "-c", script, ProgramFolder() + "/vantor"}, options);
    EXPECT_EQ(result.exitCode, 5) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("[-68]"));
    EXPECT_THAT(result.errors, HasSubstr("source/1"));
    ExpectNothingLeft();
}

TEST_F(FailedBurn, SecondHostIsRefusedWhileTheFirstWrites) {
    PutMuch();
    WriteFile(mRoot / "other", 10);
    CommandResult second;
    const auto first = BurnAnd([&] {
        second = Vantor({"burn", (mRoot / "other").string(), "--to", mImage + "2"});
        kill(RecorderPid(), SIGTERM);
    });
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_THAT(second.errors, HasSubstr("[-47]"));
    EXPECT_FALSE(fs::exists(mImage + "2"));
    EXPECT_NE(first.exitCode, 0);
    fs::remove(mRoot / "other");
    ExpectNothingLeft();
}

TEST_F(FailedBurn, SimulationModeIsAfterwardsWhatItWas) {
    WriteFile(mSource / "file", 10);
    ASSERT_EQ(Vantor({"mode", "simulation", "on"}).exitCode, 0);
    ASSERT_EQ(Vantor({"burn", mSource.string(), "--to", mImage}).exitCode, 0);
    EXPECT_TRUE(fs::exists(mImage));
    EXPECT_EQ(Vantor({"mode", "simulation"}).output, "Simulation mode is on.\n");
    ASSERT_EQ(Vantor({"mode", "simulation", "off"}).exitCode, 0);
    const auto simulated =
        Vantor({"burn", mSource.string(), "--to", mImage + "2", "--simulate", "--json"});
    EXPECT_THAT(simulated.output, HasSubstr("\"simulated\":true"));
    EXPECT_EQ(Vantor({"mode", "simulation"}).output, "Simulation mode is off.\n");
    EXPECT_FALSE(fs::exists(mImage + "2"));
}

}  // namespace
