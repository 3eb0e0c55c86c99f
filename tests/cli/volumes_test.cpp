// The volumes as the command line shows them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/MountedVolume.h"
#include "support/Vantor.h"

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using Json = nlohmann::json;

CommandResult Volumes(const char* inOption = nullptr) {
    std::vector<std::string> words = {"volumes"};
    if (inOption != nullptr) words.push_back(inOption);
    return Vantor(words);
}

// The entry of one volume.
Json VolumeNamed(const std::string& inName) {
    const CommandResult result = Volumes("--json");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    for (const Json& volume : Json::parse(result.output)) {
        if (volume["name"] == inName) return volume;
    }
    ADD_FAILURE() << "no volume " << inName << " in " << result.output;
    return {};
}

TEST(CommandVolumes, BeginWithTheOneOfTheSystem) {
    const Json all = Json::parse(Volumes("--json").output);
    ASSERT_GE(all.size(), 1u);
    EXPECT_EQ(all[0]["size"], std::filesystem::space("/").capacity);
    EXPECT_LT(all[0]["number"], 0);
}

TEST(CommandVolumes, ShowNumberSizeAndAbilities) {
    const MountedVolume disk(0, "Disk \u00e4");
    const Json volume = VolumeNamed("Disk \u00e4");
    EXPECT_EQ(volume["number"], disk.Number());
    EXPECT_EQ(volume["size"], std::filesystem::space(disk.Root()).capacity);
    EXPECT_LE(volume["free"], volume["size"]);
    EXPECT_EQ(volume["lock"], "none");
    EXPECT_THAT(volume["capabilities"], Contains("desktop-database"));
    EXPECT_THAT(volume["capabilities"], Contains("catalog-search"));
    EXPECT_THAT(volume["capabilities"], Not(Contains("server")));
}

TEST(CommandVolumes, ShowWhatAVolumeLacks) {
    const MountedVolume poor(
        kPlatformMountNoDesktopManager | kPlatformMountRemote | kPlatformMountSoftwareLocked,
        "Poor");
    const Json volume = VolumeNamed("Poor");
    EXPECT_EQ(volume["lock"], "software");
    EXPECT_THAT(volume["capabilities"], Contains("server"));
    EXPECT_THAT(volume["capabilities"], Not(Contains("desktop-database")));
}

TEST(CommandVolumes, ShowALockOfTheMediumFirst) {
    const MountedVolume locked(kPlatformMountHardwareLocked | kPlatformMountSoftwareLocked, "Both");
    EXPECT_EQ(VolumeNamed("Both")["lock"], "hardware");
}

TEST(CommandVolumes, OfWhichNothingIsKnownHaveNoAbilities) {
    const MountedVolume silent(kPlatformMountNoVolumeParameters, "Silent");
    EXPECT_TRUE(VolumeNamed("Silent")["capabilities"].empty());
}

TEST(CommandVolumes, AreATableForPeople) {
    const MountedVolume disk(kPlatformMountEjectable, "Readable");
    const CommandResult result = Volumes();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, ::testing::StartsWith("NUMBER"));
    EXPECT_THAT(result.output, HasSubstr("none      Readable\n"));
    EXPECT_THAT(result.output, HasSubstr("ejectable"));
}

TEST(CommandVolumes, TakeNoOtherWords) {
    EXPECT_EQ(Volumes("Disk").exitCode, 2);
}

}  // namespace
