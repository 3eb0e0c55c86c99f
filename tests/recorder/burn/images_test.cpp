// Whole discs onto image drives, read back by programs others wrote.
#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "recorder/EngineTest.h"

using namespace recorder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Images : public EngineTest {
  protected:
    BurnRequest ToImage() {
        BurnRequest request = Request(mDrives.Identifiers().back());
        request.goal.outputPath = mImage;
        return request;
    }
    BurnEngine::Snapshot Burn(const BurnRequest& inRequest) {
        mEngine.Start(inRequest);
        return End(mEngine);
    }
    fs::path Extracted() {
        const fs::path out = mRoot / "extracted";
        fs::create_directories(out);
        const auto result = RunCommand({"bsdtar", "-xpf", mImage, "-C", out});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return out;
    }
    CommandResult CheckSums() {
        return RunCommand({"xorriso", "-for_backup", "-abort_on", "SORRY", "-indev",
                           "stdio:" + mImage.string(), "-check_media", "event=FAILURE", "--"});
    }

    SystemDrives mDrives;
    BurnEngine mEngine{mDrives};
};

TEST_F(Images, HoldTheTreeByteForByteAndAreVerified) {
    WriteAwkwardNames(mSource);
    WriteManyFiles(mSource / "many", 500, 5000);
    Put(mSource / "large", 3'000'001);
    const auto end = Burn(ToImage());
    ASSERT_EQ(end.progress.status, 0) << end.progress.errorText;
    EXPECT_EQ(end.progress.phase, Phase::Done);
    EXPECT_TRUE(end.result.verified);
    EXPECT_EQ(end.result.path, mImage);
    EXPECT_THAT(DifferencesOf(mSource, Extracted() / "source"), IsEmpty());
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("disc.iso", "extracted", "source"));
}

TEST_F(Images, CarrySumsThatOthersCanCheck) {
    WriteManyFiles(mSource, 50, 5000);
    ASSERT_EQ(Burn(ToImage()).progress.status, 0);
    const auto session = CheckSums();
    EXPECT_EQ(session.exitCode, 0) << session.errors;
    EXPECT_THAT(session.output + session.errors, HasSubstr("md5_match"));
    const auto files =
        RunCommand({"xorriso", "-for_backup", "-return_with", "SORRY", "32", "-indev",
                    "stdio:" + mImage.string(), "-check_md5_r", "SORRY", "/", "--"});
    EXPECT_EQ(files.exitCode, 0) << files.errors;
    EXPECT_THAT(files.output + files.errors,
                HasSubstr("File contents and their MD5 checksums match"));
}

TEST_F(Images, KeepModesTimesAndHardLinks) {
    Put(mSource / "script", 100);
    fs::permissions(mSource / "script", fs::perms(0751));
    fs::create_hard_link(mSource / "script", mSource / "second name");
    const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, (mSource / "script").c_str(), times, 0), 0);
    ASSERT_EQ(Burn(ToImage()).progress.status, 0);
    const fs::path out = Extracted() / "source";
    struct stat facts = {}, second = {};
    ASSERT_EQ(stat((out / "script").c_str(), &facts), 0);
    ASSERT_EQ(stat((out / "second name").c_str(), &second), 0);
    EXPECT_EQ(facts.st_mode & 07777, mode_t(0751));
    EXPECT_EQ(facts.st_mtim.tv_sec, 1'000'000'000);
    EXPECT_EQ(facts.st_ino, second.st_ino);
}

TEST_F(Images, ShowTheFilesThroughJoliet) {
    const std::string name = "Long, with a comma, " + std::string(70, 'n') + ".txt";
    Put(mSource / name, 100);
    ASSERT_EQ(Burn(ToImage()).progress.status, 0);
    const auto listed = RunCommand({"isoinfo", "-J", "-f", "-i", mImage});
    EXPECT_THAT(listed.output, HasSubstr("/source/" + name));
}

TEST_F(Images, HybridsShowTypeAndCreatorThroughHFSPlus) {
    Put(mSource / "letter", 5);
    std::string companion("\x00\x05\x16\x07\x00\x02\x00\x00", 8);
    companion += std::string(16, '\0') + std::string("\x00\x01", 2);
    companion += std::string("\x00\x00\x00\x09\x00\x00\x00\x26\x00\x00\x00\x20", 12) + "TEXTttxt" +
                 std::string(24, '\0');
    std::ofstream(mSource / "._letter", std::ios::binary) << companion;
    BurnRequest request = ToImage();
    request.hfsPlus = true;
    request.goal.volumeName = "Both Worlds";
    ASSERT_EQ(Burn(request).progress.status, 0);
    EXPECT_EQ(CheckSums().exitCode, 0);
    const auto map =
        RunCommand({"sh", "-c", "mmls -B " + mImage.string() + " | awk '/HFS/ {print $3 + 0}'"});
    ASSERT_FALSE(map.output.empty()) << map.errors;
    const std::string start = std::to_string(std::stol(map.output));
    const auto listed = RunCommand(
        {"sh", "-c",
         "fls -o " + start + " -f hfs -r -p " + mImage.string() + " | grep 'source/letter'"});
    ASSERT_THAT(listed.output, HasSubstr("source/letter")) << listed.errors;
    const std::string inode = listed.output.substr(4, listed.output.find(':') - 4);
    const auto details = RunCommand({"istat", "-o", start, "-f", "hfs", mImage, inode});
    EXPECT_THAT(details.output, HasSubstr("TEXT"));
    EXPECT_THAT(details.output, HasSubstr("ttxt"));
}

TEST_F(Images, SimulationReadsEverythingAndLeavesNothing) {
    WriteManyFiles(mSource, 200, 5000);
    BurnRequest request = ToImage();
    request.goal.simulate = true;
    const auto end = Burn(request);
    EXPECT_EQ(end.progress.status, 0) << end.progress.errorText;
    EXPECT_FALSE(end.result.verified);
    EXPECT_THAT(end.progress.text, HasSubstr("Simulated"));
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
    EXPECT_THAT(NamesIn(fs::path(request.driveId) / "finished"), IsEmpty());
    EXPECT_THAT(NamesIn(fs::path(request.driveId) / "tray"), IsEmpty());
}

TEST_F(Images, GoWhereTheDriveChooses) {
    Put(mSource / "file", 10);
    BurnRequest request = Request(mDrives.Identifiers().back());
    request.goal.volumeName = "My/Disc";
    const fs::path drive = request.driveId;
    EXPECT_EQ(Burn(request).result.path, drive / "finished/My:Disc.iso");
    EXPECT_EQ(Burn(request).result.path, drive / "finished/My:Disc 2.iso");
    request.goal.eject = false;
    EXPECT_EQ(Burn(request).result.path, drive / "tray/My:Disc.iso");
    EXPECT_THAT(NamesIn(drive / "tray"), ElementsAre("My:Disc.iso"))
        << "the blank has been used up";
}

TEST_F(Images, ExistingFileIsRefusedUnlessReplaced) {
    Put(mSource / "file", 10);
    std::ofstream(mImage) << "precious";
    BurnRequest request = ToImage();
    EXPECT_EQ(Burn(request).progress.status, dupFNErr);
    EXPECT_EQ(fs::file_size(mImage), 8u);
    request.goal.replace = true;
    EXPECT_EQ(Burn(request).progress.status, 0);
    EXPECT_GT(fs::file_size(mImage), 32768u);
}

TEST_F(Images, ReportIsCompleteBeforeAnythingIsWritten) {
    Put(mSource / "file", 10);
    ASSERT_EQ(mkfifo((mSource / "a pipe").c_str(), 0600), 0);
    const auto end = Burn(ToImage());
    EXPECT_EQ(end.progress.status, 0);
    EXPECT_THAT(end.result.report,
                ElementsAre(HasSubstr("a pipe: a pipe cannot be put on a disc")));
    EXPECT_EQ(end.result.nodes, 2);
}

TEST_F(Images, TooLargeForTheBlankIsADiskFull) {
    std::ofstream(fs::path(mDrives.Identifiers().back()) / "settings");
    fs::create_directories(mDrives.Identifiers().back());
    std::ofstream(fs::path(mDrives.Identifiers().back()) / "settings") << "kind cd\n";
    WriteSparseFile(mSource / "huge", 800'000'000);
    const auto end = Burn(ToImage());
    EXPECT_EQ(end.progress.status, dskFulErr);
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

TEST_F(Images, FullDiskIsToldWithoutLeavingAFile) {
    const fs::path small = mRoot / "small";
    fs::create_directory(small);
    if (mount("tmpfs", small.c_str(), "tmpfs", 0, "size=2m") != 0)
        GTEST_SKIP() << "only the administrator may mount a small disk";
    Put(mSource / "file", 3'000'000);
    BurnRequest request = ToImage();
    request.goal.outputPath = small / "disc.iso";
    const auto end = Burn(request);
    EXPECT_EQ(end.progress.status, dskFulErr);
    EXPECT_THAT(end.progress.errorText, HasSubstr("MB are free"));
    EXPECT_THAT(NamesIn(small), IsEmpty());
    umount(small.c_str());
}

TEST_F(Images, ManualDriveWaitsForADiscAndSaysSo) {
    const fs::path drive = mDrives.Identifiers().back();
    fs::create_directories(drive);
    std::ofstream(drive / "settings") << "blanks manual\n";
    Put(mSource / "file", 10);
    BurnRequest request = ToImage();
    mEngine.Start(request);
    ASSERT_TRUE(Eventually(
        [&] { return mEngine.Progress().text.find("waiting for a blank") != std::string::npos; }));
    EXPECT_EQ(mEngine.Status(), 2);
    std::ofstream(drive / "tray/blank.iso").close();
    EXPECT_EQ(End(mEngine).progress.status, 0);
    request.mayAskForDisc = false;
    request.goal.replace = true;
    EXPECT_EQ(Burn(request).progress.status, kNoDiscErr);
}

TEST_F(Images, BusyEngineRefusesAnotherJob) {
    const fs::path drive = mDrives.Identifiers().back();
    fs::create_directories(drive);
    std::ofstream(drive / "settings") << "blanks manual\n";
    mEngine.RequestBlankDisc(drive, 60);
    EXPECT_THROW(mEngine.Start(ToImage()), BurnFailure);
    EXPECT_THROW(mEngine.Eject(drive), BurnFailure);
    mEngine.Cancel();
    EXPECT_EQ(End(mEngine).progress.status, userCanceledErr);
}

TEST_F(Images, BlankDiscIsThereAfterARequest) {
    const std::string drive = mDrives.Identifiers().back();
    mEngine.RequestBlankDisc(drive, 60);
    EXPECT_EQ(End(mEngine).progress.status, 0);
    EXPECT_EQ(mEngine.Probe(drive).mediaInfo, kMediumImage | kMediumBlank);
    mEngine.Eject(drive);
    EXPECT_EQ(mEngine.Probe(drive).mediaInfo, 0);
}

TEST_F(Images, SizeIsMeasuredInTheBackground) {
    Put(mSource / "one", 3000);
    Put(mSource / "two", 1);
    mEngine.Measure({mSource});
    ASSERT_TRUE(mEngine.WaitUntilQuiet(60'000));
    EXPECT_EQ(mEngine.Take().contentKiB, 6);
}

// The program is killed while it writes; the next one cleans up after it.
TEST_F(Images, KilledJobLeavesNothingAfterTheNextStart) {
    for (int i = 0; i < 4; ++i) WriteSparseFile(mSource / std::to_string(i), 1ll << 30);
    const pid_t child = fork();
    if (child == 0) {
        const std::string program = ProgramFolder() + "/record_disc";
        execl(program.c_str(), program.c_str(), mImage.c_str(), mSource.c_str(), nullptr);
        _exit(127);
    }
    const fs::path part = mRoot / ".disc.iso.part";
    ASSERT_TRUE(Eventually([&] { return fs::exists(part); }));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(fs::exists(part));
    SystemDrives drives;
    BurnEngine next(drives);
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

}  // namespace
