// `vantor find` on volumes of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/MountedVolume.h"
#include "support/Vantor.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Json = nlohmann::json;

CommandResult Find(std::vector<std::string> inWords) {
    inWords.insert(inWords.begin(), "find");
    return Vantor(inWords);
}

// The paths in an answer in JSON, in alphabetical order, below the volume's root.
std::vector<std::string> Paths(const CommandResult& inResult, const MountedVolume& inVolume) {
    EXPECT_EQ(inResult.exitCode, 0) << inResult.errors << inResult.output;
    std::vector<std::string> paths;
    for (const Json& file : Json::parse(inResult.output)) {
        const std::filesystem::path path = file.at("path").get<std::string>();
        paths.push_back(path.lexically_relative(inVolume.Root()));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

class FindCommand : public testing::TestWithParam<OptionBits> {
  protected:
    FindCommand() : mVolume(GetParam(), "Files") {
        mVolume.MakeFile("Report", 'VtTs', 'TEXT');
        mVolume.MakeFile("Letters/report 2", 'VtTs', 'APPL');
        mVolume.MakeFile("Letters/Note", 'ttxt', 'TEXT');
        mVolume.MakeFile("Caf\xC3\xA9", 'abc ', 'TEXT');
    }
    MountedVolume mVolume;
};

INSTANTIATE_TEST_SUITE_P(, FindCommand,
                         testing::Values(OptionBits{0}, OptionBits{kPlatformMountNoCatalogSearch}),
                         [](const auto& inInfo) {
                             return inInfo.param == 0 ? "ByVolume" : "Walking";
                         });

TEST_P(FindCommand, FindsByCreatorByTypeAndByBoth) {
    EXPECT_THAT(Paths(Find({"--creator", "VtTs", "--json", "Files"}), mVolume),
                ElementsAre("Letters/report 2", "Report"));
    EXPECT_THAT(Paths(Find({"--type", "TEXT", "--json", "Files"}), mVolume),
                ElementsAre("Caf\xC3\xA9", "Letters/Note", "Report"));
    EXPECT_THAT(Paths(Find({"--creator", "VtTs", "--type", "TEXT", "--json", "Files"}), mVolume),
                ElementsAre("Report"));
    EXPECT_THAT(Paths(Find({"--creator", "abc", "--json", "Files"}), mVolume),
                ElementsAre("Caf\xC3\xA9"))
        << "spaces fill a short code";
}

TEST_P(FindCommand, FindsByNameAmongThoseOfACreator) {
    EXPECT_THAT(Paths(Find({"--name", "REPORT", "--json", "Files"}), mVolume),
                ElementsAre("Letters/report 2", "Report"));
    EXPECT_THAT(Paths(Find({"--name", "report", "--type", "APPL", "--json", "Files"}), mVolume),
                ElementsAre("Letters/report 2"));
    EXPECT_THAT(Paths(Find({"--name", "CAF\xC3\x89", "--json", "Files"}), mVolume),
                ElementsAre("Caf\xC3\xA9"));
}

TEST_P(FindCommand, TakesAPathForTheVolumeItLiesOn) {
    const std::string path = mVolume.Root() / "Letters";
    EXPECT_THAT(Paths(Find({"--creator", "ttxt", "--json", path}), mVolume),
                ElementsAre("Letters/Note"));
}

TEST_P(FindCommand, PrintsCreatorTypeAndPath) {
    const auto result = Find({"--creator", "ttxt", "Files"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "ttxt  TEXT  " + (mVolume.Root() / "Letters/Note").string() + "\n");
}

TEST_P(FindCommand, FindingNothingIsNoFailure) {
    const auto result = Find({"--creator", "none", "Files"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(Find({"--creator", "none", "--json", "Files"}).output, "[]\n");
}

TEST(FindCommandLine, RefusesWhatMakesNoSense) {
    EXPECT_EQ(Find({"/"}).exitCode, 2) << "nothing to look for";
    EXPECT_EQ(Find({"--creator", "fives", "/"}).exitCode, 2);
    EXPECT_EQ(Find({"--creator", "abcd"}).exitCode, 2) << "no volume";
}

TEST(FindCommandLine, SaysThatThereIsNoSuchVolume) {
    const auto result = Find({"--creator", "abcd", "Nowhere"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("There is no volume or folder Nowhere [-35]"));
    const auto json = Find({"--creator", "abcd", "--json", "Nowhere"});
    EXPECT_EQ(Json::parse(json.output).at("code"), -35);
}

TEST_P(FindCommand, FindsMoreThanComeAtATime) {
    for (int i = 0; i < 600; ++i) mVolume.MakeFile("Many/File " + std::to_string(i));
    EXPECT_EQ(Paths(Find({"--name", "File ", "--json", "Files"}), mVolume).size(), 600u);
}

}  // namespace
