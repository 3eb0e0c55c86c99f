// The large promise in one burn: 20,000 small files, a file over 4 GiB and every awkward name,
// compared byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Command.h"
#include "support/TemporaryHome.h"
#include "support/Tree.h"

namespace {

namespace fs = std::filesystem;

TemporaryHome gHome;

TEST(LargeBurn, TwentyThousandFilesAndFiveGibibytesComeBackByteForByte) {
    const fs::path source = gHome.Root() / "everything";
    const std::string image = gHome.Root() / "disc.iso";
    if (fs::space(gHome.Root()).available < 14LL << 30) GTEST_SKIP() << "needs 14 GiB of space";
    WriteAwkwardNames(source);
    WriteManyFiles(source / "many", 20000, 2048);
    WriteSparseFile(source / "five gibibytes", 5LL << 30);

    CommandOptions options;
    options.deadline = std::chrono::seconds(400);
    const auto burned =
        RunCommand({ProgramFolder() + "/vantor", "burn", source, "--to", image}, options);
    ASSERT_EQ(burned.exitCode, 0) << burned.output << burned.errors;

    const fs::path extracted = gHome.Root() / "extracted";
    fs::create_directories(extracted);
    const auto unpacked =
        RunCommand({"bsdtar", "-xpf", image, "-C", extracted, "--options", "!joliet"}, options);
    EXPECT_EQ(unpacked.exitCode, 0) << unpacked.errors;
    EXPECT_THAT(DifferencesOf(source, extracted / "everything"), ::testing::IsEmpty());
}

}  // namespace
