// Resource files made of text: every word, and every mistake with its line.
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "platform/resource_manager/ResourceFixture.h"
#include "support/Command.h"

namespace {

using ::testing::HasSubstr;

class CompileResources : public ResourceFixture {
  protected:
    CommandResult Compile(const std::string& inText) const {
        return RunCommand(
            {ProgramFolder() + "/compile_resources", Write("text", inText), Path("file.rsrc")});
    }
    void ExpectMistake(const std::string& inText, const std::string& inWhat) const {
        const auto result = Compile(inText);
        EXPECT_EQ(result.exitCode, 1) << inText;
        EXPECT_THAT(result.errors, HasSubstr("text:" + inWhat)) << inText;
        EXPECT_FALSE(std::filesystem::exists(Path("file.rsrc"))) << inText;
    }
};

TEST_F(CompileResources, EveryWordHasItsBytes) {
    const auto result = Compile(
        "# a remark\n"
        "resource 'Test' -3 \"N\u00e4me\" purgeable preload  # and another\n"
        "  byte 1 -1 0xFF\n"
        "  short 258 -2\n"
        "  long 0x01020304\n"
        "  code 'ab c'\n"
        "  pstring \"\\\"\"\n"
        "  align\n"
        "  text \"x\\n\\\\\"\n"
        "resource 'None' 0\n");
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    OpenDataFork(Path("file.rsrc"));
    EXPECT_EQ(TextOfResource('Test', -3),
              std::string("\1\xFF\xFF\1\2\xFF\xFE\1\2\3\4ab c\1\"\0x\r\\", 21));
    EXPECT_EQ(NameOfResource(Get1Resource('Test', -3)), "N\x8Ame");
    EXPECT_EQ(GetResAttrs(Get1Resource('Test', -3)), resPurgeable | resPreload);
    EXPECT_EQ(TextOfResource('None', 0), "");
}

TEST_F(CompileResources, ListsCountTheirItemsAndNest) {
    const auto result = Compile(
        "resource 'STR#' 128\nlist\nitem\npstring \"one\"\nitem\npstring \"two\"\nend\n"
        "resource 'Nest' 1\nlist\nitem\nlist\nitem\nbyte 7\nend\nitem\nlist\nend\nend\nbyte 9\n");
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    OpenDataFork(Path("file.rsrc"));
    Str255 string;
    GetIndString(string, 128, 2);
    EXPECT_EQ(TextOf(string), "two");
    EXPECT_EQ(TextOfResource('Nest', 1), std::string("\0\2\0\1\7\0\0\11", 8));
}

TEST_F(CompileResources, TermsAreNamesCodesAndFlagsAtEvenPlaces) {
    const auto result = Compile(
        "resource 'Term' 1\nlist\n"
        "suite \"a\" \"\" 'SUIT' 1 2\n"
        "parameter \"to\" 'data' 'long' \"It.\" optional writable\n"
        "element 'cEle' 'indx' 'name'\nend\n");
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    OpenDataFork(Path("file.rsrc"));
    EXPECT_EQ(TextOfResource('Term', 1), std::string("\0\3\1a\0\0SUIT\0\1\0\2"
                                                     "\2to\0datalong\3It.\x90\0cEle\0\2indxname",
                                                     46));
}

TEST_F(CompileResources, TermsMustHaveTheirValues) {
    ExpectMistake("resource 'Test' 1\nlist\nclass \"x\" 'clas'\nend\n",
                  "3: too few values for class");
    ExpectMistake("resource 'Test' 1\nlist\nevent \"x\" \"\" 'clas' 'even' 1\nend\n",
                  "3: too many values for event");
    ExpectMistake("resource 'Test' 1\nreply 'null' \"\" needed\n", "2: no such flag: needed");
    ExpectMistake("resource 'Test' 1\nclass \"x\" 'clas' \"\"\n", "2: an item stands in a list");
}

TEST_F(CompileResources, MakesTheFileAnewAndTheSameEachTime) {
    const auto bytes = [&] {
        EXPECT_EQ(Compile("resource 'Test' 1\ntext \"x\"\n").exitCode, 0);
        std::ifstream file(Path("file.rsrc"), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const auto first = bytes();
    EXPECT_EQ(bytes(), first);
    EXPECT_GT(first.size(), 286u);
}

TEST_F(CompileResources, MistakesAreToldWithTheirLineAndMakeNoFile) {
    ExpectMistake("byte 1\n", "1: data without a resource");
    ExpectMistake("\nresource 'Test'\n", "2: a resource has a type and an ID");
    ExpectMistake("resource 'Tes' 1\n", "1: no code: Tes");
    ExpectMistake("resource 'Test' 40000000\n", "1: too large");
    ExpectMistake("resource 'Test' 1 nonsense\n", "1: no such attribute: nonsense");
    ExpectMistake("resource 'Test' 1\nbyte 256\n", "2: too large: 256");
    ExpectMistake("resource 'Test' 1\nbyte x\n", "2: no number: x");
    ExpectMistake("resource 'Test' 1\nbyte\n", "2: too many or too few values for byte");
    ExpectMistake("resource 'Test' 1\nnonsense 1\n", "2: no such word: nonsense");
    ExpectMistake("resource 'Test' 1\ntext \"x\n", "2: a quote is missing");
    ExpectMistake("resource 'Test' 1\ntext \"\u4e2d\"\n", "2: not in MacRoman");
    ExpectMistake("resource 'Test' 1\nlist\n", "2: a list is not ended");
    ExpectMistake("resource 'Test' 1\nend\n", "2: there is no list to end");
    ExpectMistake("resource 'Test' 1\nitem\n", "2: an item stands in a list");
    ExpectMistake("resource 'Test' 1\npstring \"" + std::string(256, 'x') + "\"\n",
                  "2: a Pascal string has 255 characters at most");
}

TEST_F(CompileResources, TheRecorderHasItsVersion) {
    OpenDataFork(ProgramFolder() + "/Calverin.app/Contents/Resources/Calverin.rsrc");
    EXPECT_EQ(TextOfResource('vers', 1).substr(0, 4), std::string("\7\x50\x80\0", 4));
}

}  // namespace
