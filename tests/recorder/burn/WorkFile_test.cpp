#include "burn/WorkFile.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "burn/BurnFailure.h"
#include "recorder/EngineTest.h"

using namespace recorder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class WorkFiles : public EngineTest {
  protected:
    SInt32 CodeOf(const std::function<void()>& inWork) {
        try {
            inWork();
            return noErr;
        } catch (const BurnFailure& failure) {
            return failure.Code();
        }
    }
    // A process begins to write and dies.
    static void Die(const fs::path& inGoal) {
        const pid_t child = fork();
        if (child == 0) {
            WorkFile file(inGoal, false);
            _exit(write(file.Fd(), "half", 4) == 4 ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
    }
    void Fill(WorkFile& ioFile) { ASSERT_EQ(write(ioFile.Fd(), "data", 4), 4); }
};

TEST_F(WorkFiles, CarryTheFinalNameOnlyWhenDelivered) {
    {
        WorkFile file(mImage, false);
        Fill(file);
        EXPECT_THAT(NamesIn(mRoot), ElementsAre(".disc.iso.part", "source"));
        file.Deliver();
        EXPECT_THAT(NamesIn(mRoot), ElementsAre("disc.iso", "source"));
    }
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("disc.iso", "source"));
    EXPECT_EQ(fs::status(mImage).permissions(), fs::perms(0444));
}

TEST_F(WorkFiles, VanishWhenNotDelivered) {
    { WorkFile file(mImage, false); }
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

TEST_F(WorkFiles, ExistingGoalIsRefusedBeforeAndAtTheEnd) {
    std::ofstream(mImage) << "precious";
    EXPECT_EQ(CodeOf([&] { WorkFile(mImage, false); }), dupFNErr);
    fs::remove(mImage);
    WorkFile file(mImage, false);
    std::ofstream(mImage) << "precious";
    EXPECT_EQ(CodeOf([&] { file.Deliver(); }), dupFNErr);
    EXPECT_EQ(fs::file_size(mImage), 8u);
}

TEST_F(WorkFiles, ReplaceAnExistingGoalOnlyAtTheEnd) {
    std::ofstream(mImage) << "precious";
    WorkFile file(mImage, true);
    Fill(file);
    EXPECT_EQ(fs::file_size(mImage), 8u);
    file.Deliver();
    EXPECT_EQ(fs::file_size(mImage), 4u);
}

TEST_F(WorkFiles, OneGoalIsWrittenByOneAtATime) {
    WorkFile file(mImage, false);
    EXPECT_EQ(CodeOf([&] { WorkFile(mImage, false); }), fBsyErr);
    EXPECT_TRUE(fs::exists(mRoot / ".disc.iso.part"));
}

TEST_F(WorkFiles, LongestNameStillHasRoom) {
    const fs::path goal = mRoot / std::string(255, 'n');
    WorkFile file(goal, false);
    file.Deliver();
    EXPECT_TRUE(fs::exists(goal));
}

TEST_F(WorkFiles, ImpossibleGoalsHaveTheirCodes) {
    EXPECT_EQ(CodeOf([&] { WorkFile(mRoot / "no folder/disc.iso", false); }), fnfErr);
    EXPECT_EQ(CodeOf([&] { WorkFile(mSource, false); }), dupFNErr);
    EXPECT_EQ(CodeOf([&] { WorkFile("relative.iso", false); }), paramErr);
}

TEST_F(WorkFiles, MoreThanTheDiskHoldsIsRefusedAtOnce) {
    WorkFile file(mImage, false);
    EXPECT_EQ(CodeOf([&] { file.Reserve(UInt64(1) << 60); }), dskFulErr);
}

TEST_F(WorkFiles, LeftoversOfTheDeadGoAndThoseOfTheLivingStay) {
    WorkFile living(mRoot / "living.iso", false);
    const fs::path notes = mHome.Root() / "state/vantor/recorder/unfinished";
    Die(mRoot / "dead.iso");
    fs::create_symlink("1-2-3:" + (mRoot / ".gone.iso.part").string(), notes / "99999-2");
    std::ofstream(mRoot / "innocent") << "not ours";
    fs::create_symlink("1-2-3:" + (mRoot / "innocent").string(), notes / "99999-3");
    ASSERT_TRUE(fs::exists(mRoot / ".dead.iso.part"));
    WorkFile::RemoveLeftovers();
    EXPECT_THAT(NamesIn(mRoot), ElementsAre(".living.iso.part", "innocent", "source"));
    EXPECT_EQ(NamesIn(notes).size(), 2u);
}

TEST_F(WorkFiles, ANewWriteTakesThePlaceOfADeadOne) {
    Die(mImage);
    WorkFile file(mImage, false);
    file.Deliver();
    EXPECT_EQ(fs::file_size(mImage), 0u);
}

TEST_F(WorkFiles, SomebodysOwnFileOfTheUnfinishedNameStays) {
    std::ofstream(mRoot / ".disc.iso.part") << "precious";
    EXPECT_EQ(CodeOf([&] { WorkFile(mImage, true); }), dupFNErr);
    EXPECT_EQ(fs::file_size(mRoot / ".disc.iso.part"), 8u);
}

TEST_F(WorkFiles, AFileThatTookTheNameOfALeftoverStays) {
    Die(mImage);
    const fs::path part = mRoot / ".disc.iso.part";
    fs::rename(part, mRoot / "aside");  // so that its number is not used again
    std::ofstream(part) << "precious";
    WorkFile::RemoveLeftovers();
    EXPECT_EQ(fs::file_size(part), 8u);
}

TEST_F(WorkFiles, OnlyRegularFilesAreReplaced) {
    ASSERT_EQ(mkfifo(mImage.c_str(), 0600), 0);
    EXPECT_EQ(CodeOf([&] { WorkFile(mImage, true); }), dupFNErr);
    EXPECT_TRUE(fs::is_fifo(mImage));
    fs::remove(mImage);
    std::ofstream(mRoot / "target") << "precious";
    fs::create_symlink(mRoot / "target", mImage);
    EXPECT_EQ(CodeOf([&] { WorkFile(mImage, true); }), dupFNErr);
    fs::remove(mImage);
    WorkFile file(mImage, true);
    fs::create_symlink(mRoot / "target", mImage);
    EXPECT_EQ(CodeOf([&] { file.Deliver(); }), dupFNErr);
    EXPECT_TRUE(fs::is_symlink(mImage));
}

TEST_F(WorkFiles, AFolderThatMayOnlyBeWrittenToTakesTheFile) {
    fs::permissions(mRoot, fs::perms(0777));
    fs::create_directory(mRoot / "drop");
    fs::permissions(mRoot / "drop", fs::perms(0333));
    const fs::path goal = mRoot / "drop/disc.iso";
    {
        fs::path notes = mHome.Root() / "state/vantor/recorder/unfinished";
        fs::create_directories(notes);
        for (; notes != mHome.Root(); notes = notes.parent_path())
            fs::permissions(notes, fs::perms(0777));
        const AsAnybody anybody;
        WorkFile file(goal, false);
        EXPECT_EQ(CodeOf([&] { file.Deliver(); }), noErr);
    }
    EXPECT_TRUE(fs::exists(goal));
}

}  // namespace
