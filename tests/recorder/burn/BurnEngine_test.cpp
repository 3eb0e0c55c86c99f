// What happens when things go wrong in the middle of a job.
#include "burn/BurnEngine.h"

#include <fcntl.h>
#include <unistd.h>

#include <future>

#include "recorder/EngineTest.h"
#include "recorder/FakeDrive.h"

using namespace recorder;
using ::testing::HasSubstr;

namespace {

class Engine : public EngineTest {
  protected:
    Engine() {
        // More than libisofs reads ahead, so that the last files are still to come when the first
        // block is written.
        for (int i = 0; i < 40; ++i)
            Put(mSource / ("file " + std::to_string(10 + i)), 500'000, unsigned(i));
    }
    BurnEngine::Snapshot Burn() {
        mEngine.Start(Request("fake"));
        return End(mEngine);
    }
    // Does it once, when the first piece is being written.
    void DuringTheWrite(const std::function<void()>& inDeed) {
        mScript.beforeWrite = [inDeed](UInt64 offset) {
            if (offset == 0) inDeed();
        };
    }
    void ExpectFailure(SInt32 inCode, const std::string& inNamed) {
        const auto end = Burn();
        EXPECT_EQ(end.progress.status, inCode);
        EXPECT_EQ(end.progress.phase, Phase::Failed);
        EXPECT_THAT(end.progress.errorText, HasSubstr(inNamed));
        EXPECT_FALSE(mScript.finished);
        EXPECT_TRUE(mScript.abandoned);
        EXPECT_FALSE(end.result.verified);
    }

    DriveScript mScript;
    FakeDrives mDrives{mScript};
    BurnEngine mEngine{mDrives};
};

TEST_F(Engine, WritesVerifiesAndFinishes) {
    const auto end = Burn();
    EXPECT_EQ(end.progress.status, 0) << end.progress.errorText;
    EXPECT_TRUE(end.result.verified);
    EXPECT_TRUE(mScript.finished);
    EXPECT_EQ(end.result.nodes, 41);
}

TEST_F(Engine, PhasesComeInOrderAndStatusNeverFalls) {
    std::vector<Phase> phases;
    SInt32 last = 2;
    const auto look = [&](UInt64) {
        const auto now = mEngine.Progress();
        if (phases.empty() || phases.back() != now.phase) phases.push_back(now.phase);
        EXPECT_GE(now.status, last);
        EXPECT_NE(now.text, "");
        last = now.status;
    };
    mScript.beforeWrite = mScript.beforeRead = look;
    mScript.beforeFinish = [&] { look(0); };
    ASSERT_EQ(Burn().progress.status, 0);
    EXPECT_THAT(phases, ::testing::ElementsAre(Phase::Writing, Phase::Verifying, Phase::Closing));
    EXPECT_EQ(last, 100);
}

TEST_F(Engine, TextNamesTheFileBeingWritten) {
    std::atomic<bool> named = false;
    mScript.beforeWrite = [&](UInt64) {
        if (mEngine.Progress().text.find("file ") != std::string::npos) named = true;
    };
    ASSERT_EQ(Burn().progress.status, 0);
    EXPECT_TRUE(named);
}

TEST_F(Engine, FlippedByteInAFileIsFoundAndTheFileNamed) {
    mScript.afterWrite = [](std::vector<UInt8>& disc) { disc[disc.size() / 2] ^= 1; };
    ExpectFailure(dataVerErr, "the file /source/file ");
}

TEST_F(Engine, FlippedByteNamesTheVeryFileAmongSmallOnes) {
    fs::remove_all(mSource);
    for (int i = 0; i < 200; ++i) Put(mSource / ("small " + std::to_string(i)), 0);
    for (int i = 0; i < 200; ++i)
        std::ofstream(mSource / ("small " + std::to_string(i))) << "content of number " << i << ".";
    mScript.afterWrite = [](std::vector<UInt8>& disc) {
        const std::string wanted = "content of number 77.";
        *std::search(disc.begin(), disc.end(), wanted.begin(), wanted.end()) ^= 1;
    };
    ExpectFailure(dataVerErr, "the file /source/small 77.");
}

TEST_F(Engine, FlippedByteOutsideFilesIsFound) {
    for (const size_t place : {size_t(100), size_t(16 * 2048 + 40), size_t(20 * 2048 + 3)}) {
        mScript.afterWrite = [place](std::vector<UInt8>& disc) { disc[place] ^= 0x80; };
        mScript.abandoned = false;
        ExpectFailure(dataVerErr, "differs from what was written");
    }
}

TEST_F(Engine, FlippedLastByteIsFound) {
    mScript.afterWrite = [](std::vector<UInt8>& disc) { disc.back() ^= 1; };
    ExpectFailure(dataVerErr, "differs from what was written");
}

TEST_F(Engine, WithoutVerificationNothingIsReadBack) {
    mScript.beforeRead = [](UInt64) { throw BurnFailure(ioErr, "read"); };
    BurnRequest request = Request("fake");
    request.verify = false;
    mEngine.Start(request);
    const auto end = End(mEngine);
    EXPECT_EQ(end.progress.status, 0);
    EXPECT_FALSE(end.result.verified);
}

TEST_F(Engine, SourceThatVanishesStopsTheJobAndIsNamed) {
    DuringTheWrite([&] { fs::remove(mSource / "file 49"); });
    ExpectFailure(fnfErr, "file 49");
}

TEST_F(Engine, SourceThatGrowsStopsTheJobAndIsNamed) {
    DuringTheWrite([&] { std::ofstream(mSource / "file 49", std::ios::app) << "more"; });
    ExpectFailure(ioErr, "file 49: changed");
}

TEST_F(Engine, SourceThatShrinksStopsTheJobAndIsNamed) {
    DuringTheWrite([&] { fs::resize_file(mSource / "file 49", 1000); });
    ExpectFailure(ioErr, "file 49: changed");
}

TEST_F(Engine, SourceReplacedByAnotherOfItsSizeStopsTheJob) {
    DuringTheWrite([&] {
        Put(mSource / "other", 500'000, 99);
        fs::rename(mSource / "other", mSource / "file 49");
    });
    ExpectFailure(ioErr, "file 49: changed");
}

TEST_F(Engine, SourceReplacedByAPipeDoesNotHangTheJob) {
    DuringTheWrite([&] {
        fs::remove(mSource / "file 49");
        ASSERT_EQ(mkfifo((mSource / "file 49").c_str(), 0600), 0);
    });
    ExpectFailure(ioErr, "file 49: changed");
}

TEST_F(Engine, SourceThatChangesWhileItIsReadStopsTheJob) {
    fs::remove_all(mSource);
    Put(mSource / "big", 30'000'000);
    DuringTheWrite([&] {
        const int fd = open((mSource / "big").c_str(), O_WRONLY);
        EXPECT_EQ(pwrite(fd, "changed", 7, 29'000'000), 7);
        close(fd);
    });
    ExpectFailure(ioErr, "big: changed");
}

TEST_F(Engine, SourceThatShrinksWhileItIsReadStopsTheJob) {
    fs::remove_all(mSource);
    Put(mSource / "big", 30'000'000);
    DuringTheWrite([&] { fs::resize_file(mSource / "big", 25'000'000); });
    ExpectFailure(ioErr, "big: changed");
}

TEST_F(Engine, UnreadableSourceStopsTheJobBeforeItBegins) {
    fs::permissions(mSource / "file 20", fs::perms::none);
    const AsAnybody anybody;
    const auto end = Burn();
    EXPECT_EQ(end.progress.status, afpAccessDenied);
    EXPECT_THAT(end.progress.errorText, HasSubstr("file 20"));
    EXPECT_FALSE(mScript.abandoned) << "no disc was begun";
}

TEST_F(Engine, DriveErrorIsTheJobsError) {
    mScript.beforeWrite = [](UInt64 offset) {
        if (offset > 1'000'000) throw BurnFailure(ioErr, "The laser is broken.");
    };
    ExpectFailure(ioErr, "The laser is broken.");
}

TEST_F(Engine, TooSmallADiscIsToldBeforeWriting) {
    mScript.capacity = 1'000'000;
    mScript.beforeWrite = [](UInt64) { throw BurnFailure(ioErr, "wrote"); };
    ExpectFailure(dskFulErr, "too small");
}

TEST_F(Engine, AnotherJobRunsAfterAFailedOne) {
    mScript.beforeWrite = [](UInt64) { throw BurnFailure(ioErr, "once"); };
    ExpectFailure(ioErr, "once");
    mScript.beforeWrite = nullptr;
    EXPECT_EQ(Burn().progress.status, 0);
}

class Cancel : public Engine {
  protected:
    // Cancels in that moment and expects the end within two seconds.
    void At(const std::function<bool(const ProgressSnapshot&)>& inMoment) {
        mEngine.Start(Request("fake"));
        ASSERT_TRUE(Eventually([&] { return inMoment(mEngine.Progress()); }))
            << mEngine.Progress().text;
        mEngine.Cancel();
        EXPECT_TRUE(mEngine.WaitUntilQuiet(2000)) << mEngine.Progress().text;
        EXPECT_EQ(mEngine.Status(), userCanceledErr);
        EXPECT_EQ(mEngine.Progress().phase, Phase::Cancelled);
        EXPECT_FALSE(mScript.finished);
    }
    static void Slowly(UInt64) { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }
};

TEST_F(Cancel, StopsPreparation) {
    mScript.beforeWrite = Slowly;
    At([](const auto& now) { return now.phase == Phase::Preparing; });
}

TEST_F(Cancel, StopsWriting) {
    mScript.beforeWrite = Slowly;
    At([](const auto& now) { return now.phase == Phase::Writing && now.bytesDone > 0; });
}

TEST_F(Cancel, StopsVerification) {
    mScript.beforeRead = Slowly;
    At([](const auto& now) { return now.phase == Phase::Verifying && now.bytesDone > 0; });
}

TEST_F(Cancel, StopsTheLookForTheDamagedFile) {
    const std::string looking = "looking for the damaged file";
    const auto isLooking = [&](const auto& now) {
        return now.text.find(looking) != std::string::npos;
    };
    mScript.afterWrite = [](std::vector<UInt8>& disc) { disc[disc.size() / 2] ^= 1; };
    mScript.beforeRead = [&](UInt64) {
        if (isLooking(mEngine.Progress()))
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
    };
    At(isLooking);
}

TEST_F(Cancel, StopsTheWaitForADisc) {
    mScript.hasBlank = false;
    At([](const auto& now) {
        return now.text.find("waiting for a blank disc") != std::string::npos;
    });
}

TEST_F(Cancel, LeavesAMeasurementAlone) {
    mEngine.Measure({mSource});
    mEngine.Start(Request("fake"));
    mEngine.Cancel();
    const auto end = End(mEngine);
    EXPECT_EQ(end.progress.status, userCanceledErr);
    EXPECT_FALSE(end.measuring);
    EXPECT_GT(end.contentKiB, 0);
}

TEST_F(Engine, WorksAndEjectsWhileALargeTreeIsMeasured) {
    mEngine.Measure({"/proc", "/sys", "/usr"});
    mEngine.Eject("fake");
    EXPECT_FALSE(mScript.hasBlank);
    EXPECT_TRUE(mEngine.Take().measuring);
    mScript.hasBlank = true;
    mEngine.Start(Request("fake"));
    EXPECT_TRUE(Eventually([&] { return !mEngine.Busy(); }));
    EXPECT_TRUE(mScript.finished);
    mEngine.Measure({mSource});
    EXPECT_GT(End(mEngine).contentKiB, 0) << "the last order counts";
}

TEST_F(Cancel, WithoutAJobDoesNothing) {
    mEngine.Cancel();
    EXPECT_EQ(mEngine.Status(), 0);
    EXPECT_EQ(Burn().progress.status, 0) << "and does not reach the next job";
}

TEST_F(Cancel, IsForgottenByTheNextJob) {
    mScript.beforeWrite = Slowly;
    At([](const auto& now) { return now.phase == Phase::Writing; });
    mScript.beforeWrite = nullptr;
    EXPECT_EQ(Burn().progress.status, 0);
}

TEST_F(Cancel, EndOfTheEngineStopsTheJob) {
    DriveScript script;
    script.beforeWrite = Slowly;
    FakeDrives drives(script);
    {
        BurnEngine engine(drives);
        engine.Start(Request("fake"));
        ASSERT_TRUE(Eventually([&] { return engine.Progress().phase == Phase::Writing; }));
    }
    EXPECT_FALSE(script.finished);
    EXPECT_TRUE(script.abandoned);
}

}  // namespace
