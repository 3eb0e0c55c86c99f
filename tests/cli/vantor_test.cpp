// The command line as people and scripts meet it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/TemporaryHome.h"
#include "support/Vantor.h"

namespace {

namespace fs = std::filesystem;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Json = nlohmann::json;

TemporaryHome gHome;

TEST(CommandLine, HelpShowsExamplesAndExitStatuses) {
    const auto result = Vantor({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("vantor burn ~/photos --to photos.iso"));
    EXPECT_THAT(result.output, HasSubstr("130 interrupted"));
}

TEST(CommandLine, EveryCommandHelpsWithExamplesAndItsExitStatuses) {
    const std::string help = Vantor({"--help"}).output;
    std::istringstream lines(help.substr(help.find("Subcommands:\n") + 13));
    int count = 0;
    std::string word, rest;
    while (std::getline(lines, rest) && !rest.empty()) {
        std::istringstream(rest) >> word;
        const auto result = Vantor({word, "--help"});
        EXPECT_EQ(result.exitCode, 0) << word;
        EXPECT_THAT(result.output, HasSubstr("Examples:\n  vantor " + word));
        EXPECT_THAT(result.output, HasSubstr("Exit status:\n    0 done\n")) << word;
        EXPECT_THAT(result.output, HasSubstr("    2 bad usage")) << word;
        ++count;
    }
    EXPECT_EQ(count, 20);
}

TEST(CommandLine, MisusedIsAnsweredInOneLine) {
    for (const auto& words : std::vector<std::vector<std::string>>{
             {}, {"brun"}, {"burn"}, {"send", "x"}, {"find", "--frob", "/"}, {"--frob"}}) {
        const auto result = Vantor(words);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors, ::testing::MatchesRegex("vantor[^\n]*: [^\n]+ tells more\n"));
        EXPECT_EQ(result.output, "");
    }
    EXPECT_THAT(Vantor({"brun"}).errors, HasSubstr("no command 'brun', but 'burn'"));
}

TEST(CommandLine, NonsenseIsRefusedWithTwo) {
    for (const auto& words :
         std::vector<std::vector<std::string>>{{},
                                               {"brun"},
                                               {"burn"},
                                               {"mode", "server", "maybe"},
                                               {"burn", "x", "--kind", "vinyl"}}) {
        const auto result = Vantor(words);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors, ::testing::Not(IsEmpty()));
    }
}

TEST(CommandLine, StatusDoesNotStartTheRecorder) {
    const auto result = Vantor({"status"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "The recorder is not running.\n");
    EXPECT_THAT(Json::parse(Vantor({"processes", "--json"}).output).dump(),
                ::testing::Not(HasSubstr("Fv8k")));
}

TEST(CommandLine, ErrorIsOneSentenceWithItsCode) {
    const auto result = Vantor({"burn", "/not/there", "--to", "/tmp/x.iso"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, ::testing::StartsWith("vantor: "));
    EXPECT_THAT(result.errors, EndsWith("[-43]\n"));
    EXPECT_THAT(result.output, IsEmpty());
}

TEST(CommandLine, ErrorInJsonIsAnObject) {
    const auto result = Vantor({"burn", "/not/there", "--to", "/tmp/x.iso", "--json"});
    EXPECT_EQ(result.exitCode, 4);
    const Json json = Json::parse(result.output);
    EXPECT_EQ(json["event"], "error");
    EXPECT_EQ(json["code"], -43);
}

TEST(CommandLine, DrivesListsAnImageDriveWhichIsChosen) {
    const auto result = Vantor({"drives", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const Json drives = Json::parse(result.output);
    ASSERT_GE(drives.size(), 1u);
    EXPECT_EQ(std::count_if(drives.begin(), drives.end(),
                            [](const Json& drive) { return drive["chosen"].get<bool>(); }),
              1);
    EXPECT_THAT(Vantor({"drives"}).output, ContainsRegex("^[*] "));
}

TEST(CommandLine, BlankGivesABlankMediumAndEjectTakesIt) {
    const auto blank = Vantor({"blank", "--json"});
    ASSERT_EQ(blank.exitCode, 0) << blank.errors;
    EXPECT_EQ(Json::parse(blank.output)["blank"], true);
    EXPECT_EQ(Json::parse(Vantor({"media", "--json"}).output)["blank"], true);
    EXPECT_EQ(Vantor({"eject"}).exitCode, 0);
}

TEST(CommandLine, ModeStaysWithTheRunningRecorder) {
    const auto on = Vantor({"mode", "simulation", "on"});
    ASSERT_EQ(on.exitCode, 0) << on.errors;
    EXPECT_EQ(on.output, "Simulation mode is on.\n");
    EXPECT_EQ(Vantor({"mode", "simulation"}).output, "Simulation mode is on.\n");
    const auto processes = Vantor({"processes", "--json"});
    pid_t recorder = 0;
    for (const auto& process : Json::parse(processes.output))
        if (process["signature"] == "Fv8k") recorder = process["pid"];
    ASSERT_GT(recorder, 0) << processes.output;
    EXPECT_EQ(Json::parse(Vantor({"status", "--json"}).output)["running"], true);
    kill(recorder, SIGKILL);
}

TEST(CommandLine, FolderOfSomeoneElseIsRefusedWithoutHanging) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
    const fs::path runtime = gHome.Root() / "run" / "vantor";
    fs::create_directories(runtime);
    ASSERT_EQ(chown(runtime.c_str(), 65534, 65534), 0);
    const auto result = Vantor({"media"});
    EXPECT_EQ(chown(runtime.c_str(), 0, 0), 0);
    EXPECT_NE(result.exitCode, 0);
    EXPECT_THAT(result.errors, ContainsRegex("\\[-[0-9]+\\]"));
}

// A recorder that is none, or not one that can be driven: each gives its sentence, its code and
// exit status 3.
class UnusableRecorder : public ::testing::Test {
  protected:
    // A copy of vantor where no recorder stands beside it.
    UnusableRecorder() {
        fs::create_directories(mRoot / "bin");
        fs::create_directory_symlink(fs::path(ProgramFolder()).parent_path() / "lib",
                                     mRoot / "lib");
        fs::copy_file(VantorProgram(), mRoot / "bin/vantor", fs::copy_options::overwrite_existing);
    }

    ~UnusableRecorder() override {
        fs::remove_all(mRoot);
        fs::remove_all(gHome.Root() / "data/vantor/Applications");
    }

    void WriteBundle(const std::string& inVersion, const std::string& inName,
                     const std::string& inSignature) {
        const fs::path contents = gHome.Root() / "data/vantor/Applications/Test.app/Contents";
        fs::create_directories(contents / "Linux");
        std::ofstream(contents / "PkgInfo") << "APPL" << inSignature;
        std::ofstream(contents / "Info.plist")
            << "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
            << "<key>CFBundleExecutable</key><string>run</string>"
            << "<key>CFBundleName</key><string>" << inName << "</string>"
            << "<key>CFBundleSignature</key><string>" << inSignature << "</string>"
            << "<key>CFBundleVersion</key><string>" << inVersion << "</string></dict></plist>";
        fs::copy_file("/bin/true", contents / "Linux/run", fs::copy_options::overwrite_existing);
    }

    void ExpectRefusal(int inCode, const std::string& inWords) {
        const auto result = RunCommand({mRoot / "bin/vantor", "media"});
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, HasSubstr(inWords));
        EXPECT_THAT(result.errors, HasSubstr("[" + std::to_string(inCode) + "]"));
    }

    const fs::path mRoot = gHome.Root() / "alone";
};

TEST_F(UnusableRecorder, NoneInstalled) {
    ExpectRefusal(-10814, "no recorder is installed");
}

TEST_F(UnusableRecorder, OtherCreatorCountsAsNone) {
    WriteBundle("7.5", "Calverin", "Xxxx");
    ExpectRefusal(-10814, "no recorder is installed");
}

TEST_F(UnusableRecorder, TooOld) {
    WriteBundle("6.9.9", "Calverin", "Fv8k");
    ExpectRefusal(-11002, "too old");
}

TEST_F(UnusableRecorder, OtherName) {
    WriteBundle("7.5", "Something else", "Fv8k");
    ExpectRefusal(-11002, "not the one");
}

}  // namespace
