#include "disc/RecorderState.h"

#include <atomic>
#include <set>

#include "recorder/EngineTest.h"
#include "recorder/FakeDrive.h"

using namespace recorder;

namespace {

constexpr HostId kFirst = 1, kSecond = 2;

class Hosts : public EngineTest {
  protected:
    Hosts() { Put(mSource / "file", 1000); }

    // What the call ends with when this host makes it.
    SInt32 As(HostId inHost, const std::function<void()>& inCall) {
        mState.ServeHost(inHost);
        try {
            inCall();
            return noErr;
        } catch (const BurnFailure& failure) {
            return failure.Code();
        }
    }
    SInt32 Make(HostId inHost) {
        return As(inHost, [&] { mState.MakeDisc(kDataDisc); });
    }
    SInt32 Add(HostId inHost) {
        return As(inHost, [&] { mState.AddItems({mSource}); });
    }
    SInt32 Write(HostId inHost) {
        return As(inHost, [&] { mEnd = mState.Write({}); });
    }
    ProgressSnapshot Seen(HostId inHost) {
        mState.ServeHost(inHost);
        EXPECT_EQ(mState.Progress().phase, mState.Job().progress.phase);
        return mState.Progress();
    }
    void Quiet() { ASSERT_TRUE(mState.Engine().WaitUntilQuiet(60'000)); }
    void WriteADisc(HostId inHost) {
        ASSERT_EQ(Make(inHost), noErr);
        ASSERT_EQ(Add(inHost), noErr);
        ASSERT_EQ(Write(inHost), noErr);
        Quiet();
    }

    std::set<HostId> mAlive = {kFirst, kSecond};
    DriveScript mScript;
    FakeDrives mDrives{mScript};
    RecorderState mState{mDrives, [this](HostId inHost) { return mAlive.contains(inHost); }};
    JobEnd mEnd;
};

TEST_F(Hosts, ADiscInTheMakingIsItsHostsAlone) {
    ASSERT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(Make(kSecond), fBsyErr);
    EXPECT_EQ(Add(kSecond), fBsyErr);
    EXPECT_EQ(Write(kSecond), fBsyErr);
    EXPECT_EQ(As(kSecond, [&] { mState.SetOutputPath("/other.iso"); }), fBsyErr);
    EXPECT_EQ(As(kSecond, [&] { mState.SetSimulating(true); }), fBsyErr);
    EXPECT_EQ(As(kSecond, [&] { mState.ChooseDrive("fake"); }), fBsyErr);
    EXPECT_EQ(Add(kFirst), noErr);
    EXPECT_EQ(Write(kFirst), noErr);
    Quiet();
}

TEST_F(Hosts, TheMediumOfADiscInTheMakingIsItsHostsAlone) {
    ASSERT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(As(kSecond, [&] { mState.RequestBlankDisc(); }), fBsyErr);
    EXPECT_EQ(As(kSecond, [&] { mState.Eject(); }), fBsyErr);
    EXPECT_EQ(As(kFirst, [&] { mState.RequestBlankDisc(); }), noErr);
    Quiet();
    EXPECT_EQ(As(kFirst, [&] { mState.Eject(); }), noErr);
    mAlive.erase(kFirst);
    EXPECT_EQ(As(kSecond, [&] { mState.Eject(); }), noErr);
}

TEST_F(Hosts, AJobIsCancelledByItsHostAndByOthersOnceThatHasDied) {
    std::atomic<bool> mayEnd = false;
    mScript.beforeFinish = [&] {
        while (!mayEnd) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    ASSERT_EQ(Make(kFirst), noErr);
    ASSERT_EQ(Add(kFirst), noErr);
    ASSERT_EQ(Write(kFirst), noErr);
    EXPECT_EQ(As(kSecond, [&] { mState.Cancel(); }), fBsyErr);
    EXPECT_EQ(As(kFirst, [&] { mState.Cancel(); }), noErr);
    mAlive.erase(kFirst);
    EXPECT_EQ(As(kSecond, [&] { mState.Cancel(); }), noErr);
    mayEnd = true;
    Quiet();
}

TEST_F(Hosts, CancellingWithoutAJobIsNoErrorForAnybody) {
    ASSERT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(As(kSecond, [&] { mState.Cancel(); }), noErr);
}

TEST_F(Hosts, AddedNamesAreRememberedAllOrNone) {
    Put(mSource / "other/file", 1);
    Put(mSource / "new", 1);
    const auto add = [&](std::vector<std::string> paths) {
        return As(kFirst, [&] { mState.AddItems(paths); });
    };
    ASSERT_EQ(Make(kFirst), noErr);
    ASSERT_EQ(add({mSource / "file"}), noErr);
    EXPECT_EQ(add({mSource / "new", mSource / "other/file"}), dupFNErr);
    EXPECT_EQ(add({mSource / "new", mSource / "new"}), dupFNErr);
    EXPECT_EQ(mState.Disc().paths.size(), 1u);
    EXPECT_EQ(add({mSource / "new"}), noErr);
    ASSERT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(add({mSource / "other/file"}), noErr) << "another disc";
}

TEST_F(Hosts, ARefusedChangeLeavesTheDiscToWhoeverComesNext) {
    const std::string zero("/a\0b", 4);
    EXPECT_EQ(As(kFirst, [&] { mState.SetOutputPath("relative.iso"); }), paramErr);
    EXPECT_EQ(As(kFirst, [&] { mState.SetOutputPath(zero); }), paramErr);
    EXPECT_EQ(As(kFirst, [&] { mState.SetVolumeName(zero); }), bdNamErr);
    EXPECT_EQ(As(kFirst, [&] { mState.SetVolumeName("\xFF"); }), bdNamErr);
    EXPECT_EQ(As(kFirst, [&] { mState.AddItems({mSource / "nothing"}); }), fnfErr);
    EXPECT_EQ(As(kFirst, [&] { mState.AddItems({zero}); }), paramErr);
    EXPECT_EQ(As(kFirst, [&] { mState.MakeDisc('Cake'); }), errAECantHandleClass);
    EXPECT_EQ(Write(kFirst), paramErr) << "nothing was added";
    EXPECT_EQ(Make(kSecond), noErr);
}

TEST_F(Hosts, ADiscThatCannotBeBegunLeavesTheLastJobKnown) {
    mScript.beforeFinish = [] { throw BurnFailure(ioErr, "The laser is tired."); };
    WriteADisc(kFirst);
    ASSERT_EQ(Make(kSecond), noErr);
    EXPECT_EQ(Make(kFirst), fBsyErr);
    EXPECT_EQ(Seen(kFirst).errorCode, ioErr);
    mAlive.erase(kSecond);
    EXPECT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(Seen(kFirst).phase, Phase::Idle);
}

TEST_F(Hosts, ADiscIsFreeOnceItIsWrittenOrItsHostHasLeftOrDied) {
    WriteADisc(kFirst);
    EXPECT_EQ(Make(kSecond), noErr);
    As(kSecond, [&] { mState.EndSession(); });
    EXPECT_EQ(Make(kFirst), noErr);
    mAlive.erase(kFirst);
    EXPECT_EQ(Make(kSecond), noErr);
}

TEST_F(Hosts, AFailedJobStaysKnownToItsHostWhateverOthersDo) {
    mScript.beforeFinish = [] { throw BurnFailure(ioErr, "The laser is tired."); };
    WriteADisc(kFirst);
    mScript.beforeFinish = nullptr;
    const JobEnd end = mEnd;
    WriteADisc(kSecond);
    EXPECT_EQ(Seen(kSecond).phase, Phase::Done);
    EXPECT_EQ(Seen(kFirst).phase, Phase::Failed);
    EXPECT_EQ(Seen(kFirst).errorCode, ioErr);
    EXPECT_EQ(Seen(kFirst).status, ioErr);
    ASSERT_TRUE(end->has_value());
    EXPECT_EQ((*end)->progress.errorCode, ioErr);
    EXPECT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(Seen(kFirst).phase, Phase::Idle);
}

TEST_F(Hosts, LeavingWaitsForOthersWithADiscInTheMaking) {
    ASSERT_EQ(Make(kSecond), noErr);
    As(kFirst, [&] { mState.QuitWhenDone(); });
    EXPECT_FALSE(mState.Turn());
    EXPECT_EQ(Add(kSecond), noErr);
    EXPECT_EQ(Write(kSecond), noErr);
    Quiet();
    EXPECT_FALSE(mState.Turn()) << "nobody has told the second how its disc is";
    As(kSecond, [&] { mState.EndSession(); });
    EXPECT_TRUE(mState.Turn());
}

TEST_F(Hosts, LeavingDoesNotWaitForTheDeadOrForWhoAsksForIt) {
    ASSERT_EQ(Make(kSecond), noErr);
    As(kFirst, [&] { mState.QuitWhenDone(); });
    EXPECT_FALSE(mState.Turn());
    mAlive.erase(kSecond);
    EXPECT_TRUE(mState.Turn());
    ASSERT_EQ(Make(kFirst), noErr);
    EXPECT_TRUE(mState.Turn());
}

TEST_F(Hosts, AStopLeavesAtOnce) {
    ASSERT_EQ(Make(kSecond), noErr);
    mState.StopAndQuit();
    EXPECT_TRUE(mState.Turn());
}

TEST_F(Hosts, DrivesStayAsTheyAreWhileOneEventIsDealtWith) {
    mState.ServeHost(kFirst);
    EXPECT_EQ(mState.Drives().size(), 1u);
    EXPECT_NE(mState.Drive("fake").mediaInfo, 0);
    mDrives.identifiers = {"fake", "another"};
    mScript.hasBlank = false;
    EXPECT_EQ(mState.Drives().size(), 1u);
    EXPECT_NE(mState.Drive("fake").mediaInfo, 0);
    mState.ServeHost(kFirst);
    EXPECT_EQ(mState.Drives().size(), 2u);
    EXPECT_EQ(mState.Drive("fake").mediaInfo, 0);
}

TEST_F(Hosts, AnOutputFileIsMadeByAnImageDriveWhateverIsChosen) {
    mDrives.identifiers = {"/dev/sr0", "/drives/image"};
    WriteADisc(kFirst);
    EXPECT_EQ(mDrives.Opened(), "/dev/sr0");
    ASSERT_EQ(Make(kFirst), noErr);
    EXPECT_EQ(As(kFirst, [&] { mState.SetOutputPath(mImage); }), noErr);
    ASSERT_EQ(Add(kFirst), noErr);
    ASSERT_EQ(Write(kFirst), noErr);
    Quiet();
    EXPECT_EQ(mDrives.Opened(), "/drives/image");
    EXPECT_EQ(mState.ChosenDrive(), "/dev/sr0");
}

TEST_F(Hosts, AnImageDriveInMemoryIsNoBurner) {
    std::string folder = "/dev/shm/vantor-test-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) GTEST_SKIP() << "no folder for memory here";
    mDrives.identifiers = {"/drives/image", folder};
    ASSERT_EQ(As(kFirst, [&] { mState.ChooseDrive(folder); }), noErr);
    EXPECT_EQ(As(kFirst, [&] { mState.SetOutputPath(mImage); }), noErr);
    ASSERT_EQ(Add(kFirst), noErr);
    ASSERT_EQ(Write(kFirst), noErr);
    Quiet();
    EXPECT_EQ(mDrives.Opened(), folder);
    fs::remove(folder);
}

}  // namespace
