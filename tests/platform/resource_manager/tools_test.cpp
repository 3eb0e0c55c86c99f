// Resource files between this manager and programs that others wrote: fonts through ufond and
// fondu, whole forks through BinHex.
#include <fstream>
#include <iterator>

#include "platform/resource_manager/ForkFixture.h"
#include "support/Command.h"

namespace {

class Tools : public ForkFixture {
  protected:
    void Run(const std::vector<std::string>& inWords, const std::string& inFolder) const {
        CommandOptions options;
        options.folder = inFolder;
        const auto result = RunCommand(inWords, options);
        EXPECT_EQ(result.exitCode, 0) << inWords[0] << ": " << result.errors;
        mOutput = result.output;
    }
    static std::string Contents(const std::filesystem::path& inPath) {
        std::ifstream file(inPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // The only file with that ending in a folder.
    static std::filesystem::path FileEnding(const std::filesystem::path& inFolder,
                                            const std::string& inEnding) {
        for (const auto& entry : std::filesystem::directory_iterator(inFolder)) {
            if (entry.path().string().ends_with(inEnding)) return entry.path();
        }
        ADD_FAILURE() << "nothing ends in " << inEnding << " in " << inFolder;
        return {};
    }
    // Moves every resource of one open file into another.
    static void CopyAll(ResFileRefNum inFrom, ResFileRefNum inTo) {
        UseResFile(inFrom);
        const SInt16 types = Count1Types();
        EXPECT_GT(types, 0);
        for (SInt16 i = 1; i <= types; ++i) {
            UseResFile(inFrom);
            ResType type = 0;
            Get1IndType(&type, i);
            const SInt16 count = Count1Resources(type);
            for (SInt16 j = 1; j <= count; ++j) CopyOne(inFrom, inTo, type, j);
        }
    }
    static void CopyOne(ResFileRefNum inFrom, ResFileRefNum inTo, ResType inType, SInt16 inIndex) {
        UseResFile(inFrom);
        const Handle handle = Get1IndResource(inType, inIndex);
        ASSERT_NE(handle, nullptr);
        ResID id = 0;
        Str255 name;
        GetResInfo(handle, &id, nullptr, name);
        DetachResource(handle);
        UseResFile(inTo);
        AddResource(handle, inType, id, name);
        EXPECT_EQ(ResError(), noErr);
    }

    mutable std::string mOutput;
};

constexpr const char* kFont =
    "STARTFONT 2.1\nFONT -Test-Tiny-Medium-R-Normal--8-80-75-75-P-50-MacRoman-0\nSIZE 8 75 75\n"
    "FONTBOUNDINGBOX 6 8 0 -2\nSTARTPROPERTIES 7\nFONT_NAME \"Tiny\"\nFAMILY_NAME \"Tiny\"\n"
    "WEIGHT_NAME \"Medium\"\nSLANT \"R\"\nPIXEL_SIZE 8\nFONT_ASCENT 6\nFONT_DESCENT 2\n"
    "ENDPROPERTIES\nCHARS 2\nSTARTCHAR space\nENCODING 32\nSWIDTH 500 0\nDWIDTH 4 0\nBBX 1 1 0 0\n"
    "BITMAP\n00\nENDCHAR\nSTARTCHAR A\nENCODING 65\nSWIDTH 500 0\nDWIDTH 6 0\nBBX 5 6 0 0\nBITMAP\n"
    "20\n50\n88\nF8\n88\n88\nENDCHAR\nENDFONT\n";

TEST_F(Tools, FontsOfUfondAreReadAndFondusReadsOurs) {
    if (!HasTool("ufond") || !HasTool("fondu")) GTEST_SKIP() << "fondu is not installed";
    const std::string theirs = MakeFolder("theirs"), ours = MakeFolder("ours");
    Write("tiny.bdf", kFont);
    Run({"ufond", "-dfont", Path("tiny.bdf")}, theirs);
    const auto font = FileEnding(theirs, ".dfont");
    Run({"fondu", "-force", font.string()}, theirs);
    const auto expected = Contents(FileEnding(theirs, ".bdf"));
    EXPECT_NE(expected.find("STARTCHAR"), std::string::npos);

    const auto from = OpenDataFork(font, fsRdPerm);
    EXPECT_GT(Count1Resources('FOND'), 0);
    EXPECT_GT(Count1Resources('NFNT'), 0);
    const auto to = OpenNewDataFork("copy.dfont");
    CopyAll(from, to);
    CloseResFile(to);
    EXPECT_EQ(ResError(), noErr);
    Run({"fondu", "-force", Path("copy.dfont")}, ours);
    EXPECT_EQ(Contents(FileEnding(ours, ".bdf")), expected);
}

TEST_F(Tools, AForkComesBackFromBinHexByteForByte) {
    if (!HasTool("binhex") || !HasTool("hexbin")) GTEST_SKIP() << "macutils is not installed";
    const auto number = OpenNew();
    Add('TEXT', 128, "some text", "A name");
    Add('STR#', 200, std::string("\0\1\3one", 6));
    Add('Long', -1, std::string(5000, '\x90'));  // which BinHex has to escape
    CloseResFile(number);
    const auto fork = ForkOf();
    Write("plain", std::string(fork.begin(), fork.end()));
    Run({"binhex", "-r", "plain"}, mFolder);
    Write("plain.hqx", mOutput);
    const std::string back = MakeFolder("back");
    Run({"hexbin", "-f", Path("plain.hqx")}, back);
    const auto bytes = Contents(FileEnding(back, ".rsrc"));
    EXPECT_EQ(bytes, std::string(fork.begin(), fork.end()));
    Open(FileWithFork("again", std::vector<UInt8>(bytes.begin(), bytes.end())), fsRdPerm);
    EXPECT_EQ(TextOfResource('TEXT', 128), "some text");
    EXPECT_EQ(NameOfResource(Get1Resource('TEXT', 128)), "A name");
    EXPECT_EQ(TextOfResource('Long', -1), std::string(5000, '\x90'));
}

TEST_F(Tools, AResourceForkInsideMacBinaryIsTheOneWeWrote) {
    if (!HasTool("tobin") || !HasTool("fondu") || !HasTool("ufond"))
        GTEST_SKIP() << "fondu is not installed";
    const std::string theirs = MakeFolder("theirs"), ours = MakeFolder("ours");
    Write("tiny.bdf", kFont);
    Run({"ufond", "-dfont", Path("tiny.bdf")}, theirs);
    const auto from = OpenDataFork(FileEnding(theirs, ".dfont"), fsRdPerm);
    const auto to = OpenNew("suitcase");
    CopyAll(from, to);
    CloseResFile(to);
    const auto fork = ForkOf("suitcase");
    Write("suitcase.rsrc", std::string(fork.begin(), fork.end()));
    Run({"tobin", "-res", "suitcase.rsrc", "-type", "FFIL", "-creator", "DMOV"}, mFolder);
    Run({"fondu", "-force", FileEnding(mFolder, ".bin").string()}, ours);
    EXPECT_NE(Contents(FileEnding(ours, ".bdf")).find("STARTCHAR"), std::string::npos);
}

}  // namespace
