// `vantor resources`: lists, one resource as text and as bytes, and what is refused.
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "platform/resource_manager/ResourceFixture.h"
#include "support/Vantor.h"

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Json = nlohmann::json;

class ResourcesCommand : public ResourceFixture {
  protected:
    void SetUp() override {
        ResourceFixture::SetUp();
        const auto file = OpenNew();
        const Handle text =
            Add('TEXT', 128, std::string("text\0\x8a and more here", 20), "N\x8ame");
        WriteResource(text);
        SetResAttrs(text, resPurgeable | resProtected);
        Add('STR ', -5, "\3abc");
        CloseResFile(file);
    }
    static CommandResult Resources(std::vector<std::string> inWords) {
        inWords.insert(inWords.begin(), "resources");
        return Vantor(inWords);
    }
    std::string File() const { return Path("file"); }
};

TEST_F(ResourcesCommand, ListsWhatAFileHas) {
    const auto result = Resources({File()});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("TYPE"));
    EXPECT_THAT(result.output,
                HasSubstr("TEXT     128          20  purgeable, protected  N\u00e4me"));
    EXPECT_THAT(result.output, HasSubstr("STR       -5           4  -"));
}

TEST_F(ResourcesCommand, ListsAsJson) {
    const auto result = Resources({File(), "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const Json list = Json::parse(result.output);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]["type"], "TEXT");
    EXPECT_EQ(list[0]["id"], 128);
    EXPECT_EQ(list[0]["size"], 20);
    EXPECT_EQ(list[0]["name"], "N\u00e4me");
    EXPECT_EQ(list[0]["attributes"], Json({"purgeable", "protected"}));
    EXPECT_EQ(Json::parse(Resources({File(), "--type", "STR", "--json"}).output).size(), 1u);
}

TEST_F(ResourcesCommand, ShowsOneInHexadecimal) {
    const auto result = Resources({File(), "--type", "TEXT", "--id", "128"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output,
              "00000000  74 65 78 74 00 8a 20 61  6e 64 20 6d 6f 72 65 20  |text.. and more |\n"
              "00000010  68 65 72 65                                       |here|\n");
    const Json json =
        Json::parse(Resources({File(), "--type", "STR ", "--id", "-5", "--json"}).output);
    EXPECT_EQ(json["data"], "03616263");
}

TEST_F(ResourcesCommand, WritesTheBytesToAPipeOrAFile) {
    const std::string expected("text\0\x8a and more here", 20);
    EXPECT_EQ(Resources({File(), "--type", "TEXT", "--id", "128", "--raw"}).output, expected);
    const auto result =
        Resources({File(), "--type", "TEXT", "--id", "128", "--to", Path("target")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, IsEmpty());
    std::ifstream target(Path("target"), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(target), {}), expected);
    EXPECT_EQ(Resources({File(), "--type", "TEXT", "--id", "128", "--to", "/not/there"}).exitCode,
              1);
}

TEST_F(ResourcesCommand, ReadsAResourceFileInADataFork) {
    NewDataForkFile(Path("data"));
    const auto result = Resources({Path("data"), "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "[]\n");
}

TEST_F(ResourcesCommand, SaysInOneSentenceWhatIsWrong) {
    const auto missing = Resources({Path("missing")});
    EXPECT_EQ(missing.exitCode, 4);
    EXPECT_THAT(missing.errors, EndsWith("a file does not exist [-43]\n"));
    const auto without = Resources({Write("without")});
    EXPECT_EQ(without.exitCode, 1);
    EXPECT_THAT(without.errors, EndsWith("it has no resources [-39]\n"));
    const auto resource = Resources({File(), "--type", "TEXT", "--id", "1", "--json"});
    EXPECT_EQ(resource.exitCode, 1);
    EXPECT_EQ(Json::parse(resource.output)["code"], -192);
}

TEST_F(ResourcesCommand, NonsenseIsRefusedWithTwo) {
    for (const auto& words :
         std::vector<std::vector<std::string>>{{},
                                               {File(), "--id", "1"},
                                               {File(), "--type", "TOOLONG"},
                                               {File(), "--type", "TEXT", "--id", "99999"},
                                               {File(), "--raw"}}) {
        EXPECT_EQ(Resources(words).exitCode, 2);
    }
}

}  // namespace
