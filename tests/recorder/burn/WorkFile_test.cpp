#include "burn/WorkFile.h"

#include <sys/file.h>
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
    std::ofstream(mRoot / ".dead.iso.part") << "half";
    fs::create_symlink(mRoot / ".dead.iso.part", notes / "99999-1");
    fs::create_symlink(mRoot / ".gone.iso.part", notes / "99999-2");
    std::ofstream(mRoot / "innocent") << "not ours";
    fs::create_symlink(mRoot / "innocent", notes / "99999-3");
    WorkFile::RemoveLeftovers();
    EXPECT_THAT(NamesIn(mRoot), ElementsAre(".living.iso.part", "innocent", "source"));
    EXPECT_EQ(NamesIn(notes).size(), 2u);
}

}  // namespace
