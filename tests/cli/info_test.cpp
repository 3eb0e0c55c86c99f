// `vantor info`: what is told about files and folders.
#include <Carbon/Carbon.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "support/TemporaryHome.h"
#include "support/Vantor.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Json = nlohmann::json;

TemporaryHome gHome;

CommandResult Info(std::vector<std::string> inWords) {
    inWords.insert(inWords.begin(), "info");
    return Vantor(inWords);
}

class InfoCommand : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove(gHome.Root() / "._Some file");
        std::ofstream(mPath) << "the data fork";
        FSRef ref;
        ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(mPath.c_str()), &ref, nullptr),
                  noErr);
        ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &mSpec, nullptr), noErr);
    }

    // A companion as a Mac writes it: type, creator, flags, and a fork of five bytes; locked.
    void WriteCompanion() {
        const std::string head("\0\5\x16\7\0\2\0\0", 8);
        const std::string list(
            "\0\3"
            "\0\0\0\x09\0\0\0\x42\0\0\0\x20"
            "\0\0\0\x0A\0\0\0\x3E\0\0\0\4"
            "\0\0\0\2\0\0\0\x62\0\0\0\5",
            38);
        std::string info = "TEXTttxt" + std::string("\x60\0", 2);
        info.resize(32);
        std::ofstream(gHome.Root() / "._Some file", std::ios::binary)
            << head << std::string(16, '\0') << list.substr(0, 38) << std::string("\0\0\0\1", 4)
            << info.substr(0, 32) << "12345";
    }

    std::string mPath = gHome.Root() / "Some file";
    FSSpec mSpec{};
};

TEST_F(InfoCommand, TellsBothForksTypeFlagsAndComment) {
    WriteCompanion();
    const auto result = Info({mPath, "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const Json json = Json::parse(result.output);
    EXPECT_EQ(json["name"], "Some file");
    EXPECT_EQ(json["kind"], "file");
    EXPECT_EQ(json["type"], "TEXT");
    EXPECT_EQ(json["creator"], "ttxt");
    EXPECT_EQ(json["data_length"], 13);
    EXPECT_EQ(json["resource_length"], 5);
    EXPECT_EQ(json["locked"], true);
    EXPECT_THAT(json["flags"], ElementsAre("bundle", "invisible"));
    EXPECT_EQ(json["parent"], SInt32(mSpec.parID));
    EXPECT_EQ(json["volume"], mSpec.vRefNum);
    EXPECT_EQ(json["backed_up"], nullptr);
    EXPECT_EQ(json["comment"], "");
}

TEST_F(InfoCommand, TellsThatAFileHasNoTypeRatherThanAnUnprintableOne) {
    const Json json = Json::parse(Info({mPath, "--json"}).output);
    EXPECT_EQ(json["type"], nullptr);
    EXPECT_EQ(json["creator"], nullptr);
    EXPECT_THAT(Info({mPath}).output, HasSubstr("Type       -\n"));
}

TEST_F(InfoCommand, TellsTheCommentOfTheDesktopDatabase) {
    DTPBRec block{};
    block.ioVRefNum = mSpec.vRefNum;
    ASSERT_EQ(PBDTGetPath(&block), noErr);
    block.ioNamePtr = mSpec.name;
    block.ioDirID = mSpec.parID;
    std::string comment = "A caf\x8E";
    block.ioDTBuffer = comment.data();
    block.ioDTReqCount = SInt32(comment.size());
    ASSERT_EQ(PBDTSetCommentSync(&block), noErr);
    const Json json = Json::parse(Info({mPath, "--json"}).output);
    EXPECT_EQ(json["comment"], "A caf\u00E9");
    EXPECT_THAT(Info({mPath}).output, HasSubstr("Comment    A caf\u00E9"));
}

TEST_F(InfoCommand, TellsAFoldersItems) {
    const auto folder = gHome.Root() / "Folder";
    std::filesystem::create_directories(folder / "inner");
    const auto text = Info({folder});
    EXPECT_EQ(text.exitCode, 0) << text.errors;
    EXPECT_THAT(text.output, HasSubstr("Folder\n  Folder     1 item\n"));
    const Json json = Json::parse(Info({folder, "--json"}).output);
    EXPECT_EQ(json["items"], 1);
    EXPECT_FALSE(json.contains("type"));
}

TEST_F(InfoCommand, TellsDatesInLocalTimeWithTheirOffset) {
    const timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, mPath.c_str(), times, 0), 0);
    CommandOptions options;
    options.environment = {"TZ=Europe/Berlin"};
    const auto result = Vantor({"info", mPath, "--json"}, options);
    EXPECT_EQ(Json::parse(result.output)["modified"], "2001-09-09 03:46:40 +0200");
}

TEST_F(InfoCommand, NamesAFileThatIsMissing) {
    const auto result = Info({"/not/there"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("/not/there"));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(Info({}).exitCode, 2);
}

}  // namespace
