// Dictionaries of applications as the command line shows them, and files that only claim to be one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "support/TemporaryHome.h"
#include "support/Vantor.h"

namespace {

using ::testing::HasSubstr;
using Json = nlohmann::json;

TemporaryHome gHome;

CommandResult Dictionary(const std::vector<std::string>& inWords) {
    std::vector<std::string> command = {"dictionary"};
    command.insert(command.end(), inWords.begin(), inWords.end());
    return Vantor(command);
}

// A resource file with an 'aete' of these lines.
std::string WithTerms(const std::string& inLines) {
    const std::string text = gHome.Root() / "text", file = gHome.Root() / "file.rsrc";
    std::ofstream(text) << "resource 'aete' 0\n" << inLines;
    const auto result = RunCommand({ProgramFolder() + "/compile_resources", text, file});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    return file;
}

// What lies under a name in one of a suite's lists.
Json Named(const Json& inList, const std::string& inName) {
    for (const auto& item : inList)
        if (item["name"] == inName) return item;
    ADD_FAILURE() << inName;
    return {};
}

TEST(Dictionary, OfTheRecorderIsFoundByNameSignatureAndPath) {
    const auto byName = Dictionary({"Calverin"});
    EXPECT_EQ(byName.exitCode, 0) << byName.errors;
    EXPECT_THAT(byName.output, HasSubstr("Calverin Suite  suite 'Fv8k'"));
    EXPECT_THAT(byName.output, HasSubstr("write  event 'Fv8k' 'wrIt'"));
    EXPECT_EQ(Dictionary({"Fv8k"}).output, byName.output);
    EXPECT_EQ(Dictionary({ProgramFolder() + "/Calverin.app"}).output, byName.output);
}

TEST(Dictionary, TellsEverythingInJson) {
    const auto result = Dictionary({"Fv8k", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const Json suites = Json::parse(result.output);
    const Json suite = Named(suites, "Calverin Suite");
    const Json write = Named(suite["events"], "write");
    EXPECT_EQ(write["class"], "Fv8k");
    EXPECT_EQ(write["reply"]["type"], "null");
    EXPECT_EQ(Named(write["parameters"], "verifying")["code"], "Veri");
    const Json path = Named(Named(suite["classes"], "disc")["properties"], "output path");
    EXPECT_EQ(path["flags"], Json({"writable"}));
    EXPECT_EQ(path["type"], "TEXT");
    const Json core = Named(suites, "Standard Suite");
    EXPECT_EQ(Named(core["comparisons"], "equals")["code"], "=   ");
    EXPECT_EQ(Named(core["classes"], "application")["elements"][1]["forms"].size(), 5u);
    EXPECT_EQ(suite["enumerations"][0]["values"].size(), 8u);
}

TEST(Dictionary, TextIsShownInUtf8) {
    const auto result = Dictionary(
        {WithTerms("byte 1 0\nshort 0 0\nlist\nsuite \"Gr\u00fc\u00dfe\" \"\" 'SUIT' 1 1\n"
                   "short 0 0 0 0\nend\n")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("Gr\u00fc\u00dfe  suite 'SUIT'"));
}

TEST(Dictionary, ThatEndsTooEarlyIsDamaged) {
    for (const char* lines :
         {"byte 1\n", "byte 1 0\nshort 0 0 1\n", "byte 1 0\nshort 0 0 1\nbyte 200\n",
          "byte 1 0\nshort 0 0 1\nbyte 0 0\ncode 'SUIT'\nshort 1 1 65535\n"}) {
        const auto result = Dictionary({WithTerms(lines)});
        EXPECT_EQ(result.exitCode, 1) << lines;
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr("damaged [-1702]")) << lines;
    }
}

TEST(Dictionary, IsMissedWithASentence) {
    EXPECT_THAT(Dictionary({"No such program"}).errors, HasSubstr("No application has the"));
    EXPECT_THAT(Dictionary({ProgramFolder()}).errors, HasSubstr("it has no dictionary [-192]"));
    EXPECT_THAT(Dictionary({ProgramFolder() + "/nothing"}).errors, HasSubstr("[-43]"));
    EXPECT_EQ(Dictionary({}).exitCode, 2);
}

}  // namespace
