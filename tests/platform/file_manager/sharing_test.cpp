// What one process names, every other one finds: also after moves, deaths and damage.
#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <random>
#include <thread>

#include "FileFixture.h"

namespace {

class SharedNumbersTest : public FileFixture {
  protected:
    static std::filesystem::path Tables() { return Home().Root() / "state/vantor/volumes"; }

    // Starts the helper with its output in a pipe.
    struct Peer {
        pid_t pid;
        FILE* output;
    };
    Peer Start(const std::string& inCommand) {
        const auto program =
            std::filesystem::canonical("/proc/self/exe").parent_path() / "file_peer";
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        const pid_t pid = fork();
        if (pid == 0) {
            dup2(ends[1], STDOUT_FILENO);
            execl(program.c_str(), "file_peer", inCommand.c_str(), mFolder.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        return {pid, fdopen(ends[0], "r")};
    }
};

TEST_F(SharedNumbersTest, AgreeBetweenTwoProcesses) {
    MakeFolder("One/Two/Three");
    const auto path = Write("One/Two/Three/File");
    const auto theirs = Ask("spec " + path);
    EXPECT_EQ(theirs, "0 " + Described(SpecOf(path)));
    EXPECT_EQ(Ask("path " + Described(SpecOf(path))), "0 " + path);
}

TEST_F(SharedNumbersTest, FollowAFolderThatIsRenamedOrMoved) {
    MakeFolder("Top/Old/Deep");
    MakeFolder("Elsewhere");
    Write("Top/Old/Deep/File");
    const FSSpec spec = SpecOf(Path("Top/Old/Deep/File"));
    NumberOf(Path("Elsewhere"));
    std::filesystem::rename(Path("Top/Old"), Path("Top/New"));
    EXPECT_EQ(PathOf(spec), Path("Top/New/Deep/File"));
    EXPECT_EQ(Ask("path " + Described(spec)), "0 " + Path("Top/New/Deep/File"));
    std::filesystem::rename(Path("Top/New"), Path("Elsewhere/Moved"));
    EXPECT_EQ(Ask("path " + Described(spec)), "0 " + Path("Elsewhere/Moved/Deep/File"));
    EXPECT_EQ(PathOf(spec), Path("Elsewhere/Moved/Deep/File"));
    EXPECT_EQ(Described(SpecOf(Path("Elsewhere/Moved/Deep/File"))), Described(spec));
}

TEST_F(SharedNumbersTest, NeverMeanAFolderThatTookTheOldPlace) {
    MakeFolder("Place");
    Write("Place/File");
    const FSSpec spec = SpecOf(Path("Place/File"));
    std::filesystem::rename(Path("Place"), Path("Aside"));
    MakeFolder("Place");
    Write("Place/File");
    EXPECT_EQ(PathOf(spec), Path("Aside/File"));
    EXPECT_NE(+SpecOf(Path("Place/File")).parID, +spec.parID);
}

TEST_F(SharedNumbersTest, EndWithDirNFErrWhenTheFolderIsGone) {
    MakeFolder("Gone/Inner");
    Write("Gone/Inner/File");
    const FSSpec spec = SpecOf(Path("Gone/Inner/File"));
    std::filesystem::remove_all(Path("Gone"));
    EXPECT_EQ(PathOf(spec), "error -120");
    EXPECT_EQ(Ask("path " + Described(spec)), "-120 ");
    MakeFolder("Gone/Inner");
    Write("Gone/Inner/File");
    EXPECT_EQ(PathOf(spec), "error -120");
}

TEST_F(SharedNumbersTest, AgreeWhenManyProcessesMeetTheSameFoldersAtOnce) {
    for (int i = 0; i < 8; ++i) MakeFolder("Many/" + std::to_string(i) + "/Inner");
    std::vector<std::string> answers(16);
    std::vector<std::thread> askers;
    for (size_t i = 0; i < answers.size(); ++i) {
        askers.emplace_back([&, i] {
            for (int folder = 0; folder < 8; ++folder) {
                const auto path = Path("Many/" + std::to_string(folder) + "/Inner/..");
                answers[i] += Ask("spec " + path + "/Inner") + '\n';
            }
        });
    }
    for (auto& asker : askers) asker.join();
    for (const auto& answer : answers) EXPECT_EQ(answer, answers[0]);
    EXPECT_EQ(answers[0].find("-"), 2u);
}

TEST_F(SharedNumbersTest, StaySoundWhenProcessesAreKilledAtRandomMoments) {
    std::map<std::string, std::string> numbers;  // of what each process could still tell
    std::minstd_rand random(20261121);
    for (int round = 0; round < 64; ++round) {
        const Peer peer = Start("allocate");
        char line[4096];
        const int lines = 1 + int(random() % 4);
        for (int i = 0; i < lines && std::fgets(line, sizeof line, peer.output); ++i) {
            const std::string text(line, std::strcspn(line, "\n"));
            const auto blank = text.find(' ');
            EXPECT_TRUE(numbers.emplace(text.substr(0, blank), text.substr(blank + 1)).second)
                << text;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        kill(peer.pid, SIGKILL);
        std::fclose(peer.output);
        int status = 0;
        waitpid(peer.pid, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status));
    }
    EXPECT_GE(numbers.size(), 64u);
    for (const auto& [number, path] : numbers) EXPECT_EQ(std::to_string(NumberOf(path)), number);
    for (const auto& file : std::filesystem::directory_iterator(Tables())) {
        EXPECT_EQ(file.path().string().find("damaged"), std::string::npos);
        if (file.path().extension() != ".db") continue;
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file.path().c_str(), &database), SQLITE_OK);
        std::string result;
        sqlite3_exec(
            database, "PRAGMA integrity_check",
            [](void* outResult, int, char** inValues, char**) {
                *static_cast<std::string*>(outResult) = inValues[0];
                return 0;
            },
            &result, nullptr);
        sqlite3_close(database);
        EXPECT_EQ(result, "ok") << file.path();
    }
}

TEST_F(SharedNumbersTest, GiveWayToPrivateOnesWhereNothingCanBeWritten) {
    MakeFolder("Private");
    const auto path = Write("Private/" + std::string(100, 'p'));
    const auto answer = Ask("spec " + path, "XDG_STATE_HOME=/proc/nowhere");
    EXPECT_TRUE(answer.starts_with("0 -20000 10569646")) << answer;
    EXPECT_EQ(Ask("spec " + path), "0 " + Described(SpecOf(path)));
}

TEST_F(SharedNumbersTest, GoOnInAForkedChildAndItsParent) {
    MakeFolder("Parent");
    const SInt32 number = NumberOf(Path("Parent"));
    const pid_t pid = fork();
    if (pid == 0) {
        MakeFolder("Child");
        const bool isGood = NumberOf(Path("Parent")) == number && NumberOf(Path("Child")) > number;
        _exit(isGood ? 0 : 1);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_EQ(status, 0);
    MakeFolder("Later");
    EXPECT_GT(NumberOf(Path("Later")), NumberOf(Path("Child")));
}

TEST_F(SharedNumbersTest, StartInAFreshBlockAfterTheTableWasDamaged) {
    MakeFolder("Before");
    const SInt32 before = NumberOf(Path("Before"));
    ASSERT_LT(before, 0x01000000);
    for (const auto& file : std::filesystem::directory_iterator(Tables())) {
        const bool isTable = file.path().extension() == ".db" && file.path().stem() != "registry";
        if (!isTable) continue;
        std::filesystem::remove(file.path().string() + "-wal");
        std::filesystem::remove(file.path().string() + "-shm");
        std::filesystem::remove(file.path());
        std::ofstream(file.path()) << std::string(8192, 'z');
    }
    MakeFolder("After");
    EXPECT_GT(NumberOf(Path("After")), 0x01000000);
    // The old number was given by a table that is lost: it means nothing, and nothing else.
    FSSpec spec{};
    spec = SpecOf(Path("Before"));
    const auto theirs =
        Ask("path " + std::to_string(spec.vRefNum) + ' ' + std::to_string(before) + " 78");
    EXPECT_TRUE(theirs == "-120 ") << theirs;
    EXPECT_EQ(Ask("spec " + Path("After")), "0 " + Described(SpecOf(Path("After"))));
}

}  // namespace
