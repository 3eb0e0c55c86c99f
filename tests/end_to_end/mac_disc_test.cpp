// Files with type, creator and resources onto an image and back, through readers that others wrote.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/xattr.h>

#include <fstream>

#include "support/Command.h"
#include "support/MountedVolume.h"
#include "support/TemporaryHome.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

const TemporaryHome sHome;

CommandOptions Patience() {
    CommandOptions options;
    options.deadline = std::chrono::seconds(240);
    return options;
}

std::string Resource(const FSSpec& inFile, ResType inType, SInt16 inID) {
    const SInt16 file = FSpOpenResFile(&inFile, fsRdPerm);
    if (file == -1) return "error " + std::to_string(ResError());
    const Handle handle = Get1Resource(inType, inID);
    std::string data = "none";
    if (handle != nullptr) data.assign(*handle, static_cast<std::size_t>(GetHandleSize(handle)));
    CloseResFile(file);
    return data;
}

class MacDisc : public testing::TestWithParam<std::string> {
  protected:
    MacDisc() : mSource(0, "Source"), mResult(0, "Result") {}
    ~MacDisc() override { fs::remove(mImage); }

    void Burn() {
        fs::remove(mImage);
        const auto result =
            RunCommand({ProgramFolder() + "/vantor", "burn", mSource.Root() / "files", "--to",
                        mImage, "--kind", "hybrid"},
                       Patience());
        ASSERT_EQ(result.exitCode, 0) << result.output << result.errors;
        mOutput = result.output + result.errors;
    }
    // Puts what the disc holds on the second volume.
    void Extract() {
        const auto words =
            GetParam() == "bsdtar"
                ? std::vector<std::string>{"bsdtar", "-xpf", mImage, "-C", mResult.Root()}
                : std::vector<std::string>{
                      "xorriso",  "-no_rc", "-osirrox",     "on", "-indev",       "stdio:" + mImage,
                      "-extract", "/",      mResult.Root(), "--", "-rollback_end"};
        const auto result = RunCommand(words, Patience());
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        RunCommand({"chmod", "-R", "u+rwX", mResult.Root()});
    }
    static FInfo InfoOf(const FSSpec& inFile) {
        FInfo info = {};
        EXPECT_EQ(FSpGetFInfo(&inFile, &info), noErr);
        return info;
    }

    MountedVolume mSource, mResult;
    const std::string mImage = sHome.Root() / "disc.iso";
    std::string mOutput;
};

INSTANTIATE_TEST_SUITE_P(, MacDisc, testing::Values("bsdtar", "xorriso"),
                         [](const auto& inInfo) { return inInfo.param; });

TEST_P(MacDisc, FilesComeBackWhole) {
    const std::string large(100000, 'r');
    const FSSpec file =
        mSource.MakeFile("files/Caf\xC3\xA9 letter", 'ttxt', 'TEXT', "the data fork");
    FInfo info = InfoOf(file);
    info.fdFlags = kIsStationery | kHasCustomIcon;
    info.fdLocation = {12, 34};
    ASSERT_EQ(FSpSetFInfo(&file, &info), noErr);
    AddResourceTo(file, 'STR ', 128, "\x05hello");
    AddResourceTo(file, 'snd ', 1, large);
    mSource.MakeFile("files/sub/plain", "no more than this");
    ASSERT_NO_FATAL_FAILURE(Burn());
    ASSERT_NO_FATAL_FAILURE(Extract());

    const FSSpec back = mResult.Spec(":files:Caf\x8E letter");
    const FInfo found = InfoOf(back);
    EXPECT_EQ(+found.fdType, OSType{'TEXT'});
    EXPECT_EQ(+found.fdCreator, OSType{'ttxt'});
    EXPECT_EQ(+found.fdFlags, kIsStationery | kHasCustomIcon);
    EXPECT_EQ(+found.fdLocation.h, 34);
    EXPECT_EQ(Resource(back, 'STR ', 128), "\x05hello");
    EXPECT_EQ(Resource(back, 'snd ', 1), large);
    EXPECT_EQ(mResult.Read("files/Caf\xC3\xA9 letter"), "the data fork");
    EXPECT_EQ(mResult.Read("files/sub/plain"), "no more than this");
    EXPECT_FALSE(mResult.Has("files/sub/._plain"));
}

TEST_P(MacDisc, WhatLiesInExtendedAttributesComesBackToo) {
    const FSSpec file = mSource.MakeFile("files/pict", "data");
    std::string path = mSource.Root() / "files/pict";
    const std::string finderInfo = "PICTogle" + std::string(24, '\0');
    if (setxattr(path.c_str(), "user.com.apple.FinderInfo", finderInfo.data(), finderInfo.size(),
                 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    // A resource fork as others keep it: one made by the Resource Manager, moved there.
    const FSSpec other = mSource.MakeFile("other");
    AddResourceTo(other, 'STR ', 7, "\x02hi");
    SInt16 fork = 0;
    SInt32 length = 0;
    ASSERT_EQ(FSpOpenRF(&other, fsRdPerm, &fork), noErr);
    ASSERT_EQ(GetEOF(fork, &length), noErr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    ASSERT_EQ(FSRead(fork, &length, bytes.data()), noErr);
    ASSERT_EQ(FSClose(fork), noErr);
    ASSERT_EQ(setxattr(path.c_str(), "user.com.apple.ResourceFork", bytes.data(), bytes.size(), 0),
              0);
    ASSERT_EQ(+InfoOf(file).fdType, OSType{'PICT'}) << "as the File Manager sees it";
    ASSERT_NO_FATAL_FAILURE(Burn());
    EXPECT_FALSE(mSource.Has("files/._pict")) << "the source is left as it was";
    ASSERT_NO_FATAL_FAILURE(Extract());

    EXPECT_TRUE(mResult.Has("files/._pict"));
    const FSSpec back = mResult.Spec(":files:pict");
    EXPECT_EQ(+InfoOf(back).fdType, OSType{'PICT'});
    EXPECT_EQ(+InfoOf(back).fdCreator, OSType{'ogle'});
    EXPECT_EQ(Resource(back, 'STR ', 7), "\x02hi");
}

TEST_P(MacDisc, ResourceForksOnAHybridAreToldOf) {
    const FSSpec file = mSource.MakeFile("files/letter", 'ttxt', 'TEXT', "data");
    AddResourceTo(file, 'STR ', 128, "\x05hello");
    mSource.MakeFile("files/plain", 'ttxt', 'TEXT', "data");
    ASSERT_NO_FATAL_FAILURE(Burn());
    EXPECT_THAT(mOutput, HasSubstr("letter: its resource fork lies beside it, in \"._letter\""));
    EXPECT_THAT(mOutput, testing::Not(HasSubstr("plain: its")));
}

}  // namespace
