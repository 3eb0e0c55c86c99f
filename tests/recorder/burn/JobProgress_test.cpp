#include "burn/JobProgress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace recorder;
using ::testing::HasSubstr;

namespace {

TEST(JobProgress, StatusIsNeverOneAndNeverFallsDuringAJob) {
    JobProgress progress;
    EXPECT_EQ(progress.CurrentStatus(), 0);
    progress.Begin();
    SInt32 last = 2;
    EXPECT_EQ(progress.CurrentStatus(), last);
    const auto check = [&] {
        const SInt32 status = progress.CurrentStatus();
        EXPECT_GE(status, last);
        EXPECT_LE(status, 100);
        last = status;
    };
    for (const Phase phase : {Phase::Writing, Phase::Verifying}) {
        progress.Enter(phase, 1000);
        check();
        for (const UInt64 done : {1, 10, 500, 400, 999, 1000, 2000}) {
            progress.Move(done);
            check();
        }
    }
    progress.Enter(Phase::Closing, 0);
    EXPECT_EQ(progress.CurrentStatus(), 100);
    progress.End(Phase::Done, 0, "Done.");
    EXPECT_EQ(progress.CurrentStatus(), 0);
}

TEST(JobProgress, PhasesKeepToTheirPartOfTheScale) {
    JobProgress progress;
    progress.Begin();
    progress.Enter(Phase::Writing, 1000);
    progress.Move(1000);
    EXPECT_EQ(progress.CurrentStatus(), 79);
    progress.Enter(Phase::Verifying, 1000);
    EXPECT_EQ(progress.CurrentStatus(), 80);
    progress.Move(1000);
    EXPECT_EQ(progress.CurrentStatus(), 99);
    EXPECT_EQ(progress.Snapshot().percent, 100);
}

TEST(JobProgress, AFailedJobShowsItsCodeUntilItIsForgotten) {
    JobProgress progress;
    progress.Begin();
    progress.End(Phase::Failed, -34, "Full.");
    EXPECT_EQ(progress.CurrentStatus(), -34);
    EXPECT_EQ(progress.Snapshot().errorText, "Full.");
    progress.Reset();
    EXPECT_EQ(progress.CurrentStatus(), 0);
    EXPECT_EQ(progress.Snapshot().errorText, "");
}

TEST(JobProgress, TextNamesPhaseAmountActionAndFile) {
    JobProgress progress;
    progress.Begin();
    progress.Found(1234, "/a/folder");
    EXPECT_THAT(progress.Snapshot().text, HasSubstr("Preparing: 1234 items found, folder"));
    progress.Enter(Phase::Writing, 40'000'000);
    progress.Move(12'000'000);
    progress.File("/a/file");
    EXPECT_EQ(progress.Snapshot().text, "Writing: 12 of 40 MB, file.");
    progress.Doing("forcing the data to the disk");
    EXPECT_THAT(progress.Snapshot().text, HasSubstr("forcing the data to the disk"));
}

}  // namespace
