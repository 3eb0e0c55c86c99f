// A folder through the command line, the library, events and the recorder onto an image, read back
// by programs others wrote.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "support/Tree.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Json = nlohmann::json;

TemporaryHome gHome;

CommandResult Vantor(std::vector<std::string> inWords, CommandOptions inOptions = {}) {
    inWords.insert(inWords.begin(), ProgramFolder() + "/vantor");
    if (inOptions.deadline == std::chrono::seconds(60))
        inOptions.deadline = std::chrono::seconds(240);
    return RunCommand(inWords, inOptions);
}

bool RecorderIsGone() {
    return Vantor({"status"}).output.find("not running") != std::string::npos;
}

class Burn : public ::testing::Test {
  protected:
    Burn() : mRoot(gHome.Root() / ::testing::UnitTest::GetInstance()->current_test_info()->name()) {
        fs::create_directories(mSource);
    }
    ~Burn() override {
        RunCommand({"chmod", "-R", "u+w", mRoot});
        fs::remove_all(mRoot);
    }

    // What bsdtar makes of the image.
    fs::path Extracted() {
        const fs::path out = mRoot / "extracted";
        fs::create_directories(out);
        CommandOptions options;
        options.deadline = std::chrono::seconds(240);
        const auto result = RunCommand({"bsdtar", "-xpf", mImage, "-C", out}, options);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return out;
    }

    const fs::path mRoot;
    const fs::path mSource = mRoot / "source";
    const std::string mImage = mRoot / "disc.iso";
};

TEST_F(Burn, ImageHoldsTheFolderByteForByteAsOtherReadersSeeIt) {
    WriteAwkwardNames(mSource);
    WriteManyFiles(mSource / "many", 2000, 4096);
    const auto result = Vantor({"burn", mSource, "--to", mImage});
    ASSERT_EQ(result.exitCode, 0) << result.output << result.errors;
    EXPECT_THAT(result.output, HasSubstr("Written and verified: " + mImage));
    EXPECT_THAT(DifferencesOf(mSource, Extracted() / "source"), IsEmpty());

    const auto checked = RunCommand({"xorriso", "-for_backup", "-abort_on", "SORRY", "-indev",
                                     "stdio:" + mImage, "-check_media", "event=FAILURE", "--"});
    EXPECT_EQ(checked.exitCode, 0) << checked.errors;
    const auto listed = RunCommand({"isoinfo", "-R", "-f", "-i", mImage});
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_THAT(listed.output, HasSubstr("/source/deep/level 0/level 1/"));
    EXPECT_THAT(listed.output, HasSubstr("/source/日本語.txt"));
}

TEST_F(Burn, HybridShowsTheSameFilesThroughHFSPlus) {
    WriteFile(mSource / "a file.txt", 5000);
    ASSERT_EQ(
        Vantor({"burn", mSource, "--to", mImage, "--kind", "hybrid", "--name", "Both"}).exitCode,
        0);
    const auto listed = RunCommand({"7z", "l", "-tAPM", mImage});
    EXPECT_THAT(listed.output, HasSubstr("hfs")) << listed.output;
    EXPECT_THAT(DifferencesOf(mSource, Extracted() / "source"), IsEmpty());
}

TEST_F(Burn, SimulationLeavesNothing) {
    WriteFile(mSource / "a file.txt", 5000);
    const auto result = Vantor({"burn", mSource, "--to", mImage, "--simulate"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("Simulated"));
    EXPECT_FALSE(fs::exists(mImage));
}

TEST_F(Burn, InterruptCancelsAndLeavesNoFile) {
    for (int i = 0; i < 8; ++i) WriteSparseFile(mSource / std::to_string(i), 1LL << 30);
    CommandOptions options;
    options.interruptOnOutput = "Writing";
    const auto result = Vantor({"burn", mSource, "--to", mImage}, options);
    EXPECT_EQ(result.exitCode, 130);
    EXPECT_THAT(result.errors, HasSubstr("Cancelled"));
    EXPECT_THAT(result.errors, HasSubstr("[-128]"));
    EXPECT_EQ(std::distance(fs::directory_iterator(mRoot), {}), 1) << "only the source is left";
}

TEST_F(Burn, SecondInterruptCancelsTooAndLeavesNoFile) {
    for (int i = 0; i < 16; ++i) WriteSparseFile(mSource / std::to_string(i), 1LL << 30);
    const auto result =
        RunCommand({"sh", "-c",
                    "\"$0\" burn \"$1\" --to \"$2/disc.iso\" & "
                    "until [ -e \"$2/.disc.iso.part\" ]; do kill -0 $! || exit 99; done; "
                    "kill -INT $!; kill -TERM $!; wait $!",
                    ProgramFolder() + "/vantor", mSource, mRoot});
    EXPECT_EQ(result.exitCode, 130) << result.errors;
    EXPECT_TRUE(Eventually(RecorderIsGone));
    EXPECT_EQ(std::distance(fs::directory_iterator(mRoot), {}), 1) << "only the source is left";
}

TEST_F(Burn, OnlyARegularFileIsReplaced) {
    WriteFile(mSource / "a file", 10);
    ASSERT_EQ(RunCommand({"mkfifo", mImage}).exitCode, 0);
    const auto result = Vantor({"burn", mSource, "--to", mImage, "--replace"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("[-48]"));
    EXPECT_TRUE(fs::is_fifo(mImage));
}

TEST_F(Burn, SimulationNoticesAnExistingImage) {
    WriteFile(mSource / "a file", 10);
    std::ofstream(mImage) << "precious";
    EXPECT_EQ(Vantor({"burn", mSource, "--to", mImage, "--simulate"}).exitCode, 1);
    EXPECT_EQ(fs::file_size(mImage), 8u);
}

TEST_F(Burn, FolderNamedInAnotherEncodingIsBurned) {
    const fs::path folder = mRoot / "caf\xE9";
    fs::create_directories(folder);
    WriteFile(folder / "a file", 10);
    const auto result = Vantor({"burn", folder, "--to", mImage});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(RunCommand({"isoinfo", "-d", "-i", mImage}).output,
                HasSubstr("Volume id: UNTITLED"));
}

TEST_F(Burn, ExistingImageStaysUnlessReplaced) {
    WriteFile(mSource / "new", 100);
    std::ofstream(mImage) << "precious";
    const auto refused = Vantor({"burn", mSource, "--to", mImage});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.errors, HasSubstr("--replace"));
    EXPECT_EQ(fs::file_size(mImage), 8u);
    EXPECT_EQ(Vantor({"burn", mSource, "--to", mImage, "--replace"}).exitCode, 0);
    EXPECT_GT(fs::file_size(mImage), 2048u * 16);
}

TEST_F(Burn, MissingSourceIsNamedBeforeAnythingIsWritten) {
    const auto result = Vantor({"burn", mSource, mRoot / "not there", "--to", mImage});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("not there"));
    EXPECT_FALSE(fs::exists(mImage));
}

TEST_F(Burn, WhatADiscCannotHoldIsReportedByName) {
    WriteFile(mSource / "a file", 10);
    ASSERT_EQ(RunCommand({"mkfifo", mSource / "a pipe"}).exitCode, 0);
    const auto result = Vantor({"burn", mSource, "--to", mImage});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("a pipe"));
    EXPECT_TRUE(fs::exists(Extracted() / "source/a file"));
}

TEST_F(Burn, JsonEndsWithTheSummary) {
    WriteFile(mSource / "a file", 10);
    const auto result = Vantor({"burn", mSource, "--to", mImage, "--json"});
    ASSERT_EQ(result.exitCode, 0);
    Json last;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) last = Json::parse(line);
    EXPECT_EQ(last["event"], "done");
    EXPECT_EQ(last["image"], mImage);
    EXPECT_EQ(last["verified"], true);
    EXPECT_EQ(last["simulated"], false);
}

TEST_F(Burn, LeavesNoProcessBehind) {
    WriteFile(mSource / "a file", 10);
    ASSERT_EQ(Vantor({"burn", mSource, "--to", mImage}).exitCode, 0);
    EXPECT_TRUE(Eventually(RecorderIsGone, 10));
}

TEST_F(Burn, HostInPlainCBurnsADisc) {
    WriteFile(mSource / "from c", 1234);
    const auto result = RunCommand({ProgramFolder() + "/burn_disc", mSource});
    ASSERT_EQ(result.exitCode, 0) << result.output << result.errors;
    std::vector<fs::path> images;
    for (const auto& entry : fs::recursive_directory_iterator(gHome.Root() / "data"))
        if (entry.path().extension() == ".iso") images.push_back(entry.path());
    ASSERT_EQ(images.size(), 1u);
    const auto listed = RunCommand({"isoinfo", "-R", "-f", "-i", images.front()});
    EXPECT_THAT(listed.output, HasSubstr("/source/from c"));
}

}  // namespace
