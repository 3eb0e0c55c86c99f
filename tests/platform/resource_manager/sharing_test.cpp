// One file and several processes; writers that are killed; disks that are full; the program's own
// resources.
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <random>
#include <set>
#include <thread>

#include "platform/resource_manager/ForkFixture.h"
#include "support/Command.h"

namespace {

// A process with pipes to it.
class Peer {
  public:
    explicit Peer(const std::vector<std::string>& inWords) {
        int to[2], from[2];
        EXPECT_EQ(pipe2(to, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(from, O_CLOEXEC), 0);
        std::vector<char*> words;
        for (const auto& word : inWords) words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        mPid = fork();
        if (mPid == 0) {
            dup2(to[0], STDIN_FILENO);
            dup2(from[1], STDOUT_FILENO);
            execv(words[0], words.data());
            _exit(127);
        }
        close(to[0]);
        close(from[1]);
        mInput = to[1];
        mOutput = fdopen(from[0], "r");
    }
    ~Peer() { End(SIGKILL); }

    std::string Line() {
        char line[256] = "";
        return std::fgets(line, sizeof line, mOutput) ? std::string(line, std::strcspn(line, "\n"))
                                                      : "end";
    }
    void End(int inSignal) {
        if (mPid <= 0) return;
        kill(mPid, inSignal);
        waitpid(mPid, nullptr, 0);
        close(mInput);
        std::fclose(mOutput);
        mPid = -1;
    }

  private:
    pid_t mPid = -1;
    int mInput = -1;
    FILE* mOutput = nullptr;
};

class Sharing : public ForkFixture {
  protected:
    static std::string Program() { return ProgramFolder() + "/resource_peer"; }
    static std::string OwnString(const std::string& inProgram) {
        const auto result = RunCommand({inProgram, "own", "128"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.output;
    }
    FSSpec FileWithTwins() const {
        const FSSpec spec = NewFile();
        const auto number = Open(spec);
        Add('Same', 1, "tttt");
        Add('Same', 2, "tttt");
        Add('TEXT', 1, "stays");
        CloseResFile(number);
        return spec;
    }
    std::string CopyOfPeer(const std::string& inName) const {
        std::filesystem::copy_file(Program(), Path(inName));
        return Path(inName);
    }
    static void AddOwnString(const std::string& inText) {
        Add('STR ', 128, char(inText.size()) + inText);
    }
};

TEST_F(Sharing, OneProcessAtATimeMayWrite) {
    const FSSpec spec = FileWithTwins();
    Peer writer({Program(), "open", Path("file"), "3"});
    EXPECT_NE(writer.Line().substr(0, 3), "-1 ");
    EXPECT_EQ(FSpOpenResFile(&spec, fsRdWrPerm), -1);
    EXPECT_TRUE(ResError() == opWrErr || ResError() == permErr) << ResError();
    Open(spec, fsRdPerm);
    EXPECT_EQ(TextOfResource('TEXT', 1), "stays");
    writer.End(SIGKILL);
    const auto number = FSpOpenResFile(&spec, fsRdWrPerm);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_GT(number, 0);
}

TEST_F(Sharing, ForWhateverCanBeHadIsReadingWhileAnotherWrites) {
    const FSSpec spec = FileWithTwins();
    Peer writer({Program(), "open", Path("file"), "3"});
    writer.Line();
    const auto number = Open(spec, fsCurPerm);
    EXPECT_EQ(GetResFileAttrs(number), mapReadOnly);
}

// The update puts another file into the place of the one that was opened.
TEST_F(Sharing, ADataForkStaysItsWritersAfterAnUpdate) {
    const ResFileRefNum number = OpenNewDataFork("data");
    const auto opens = [&](const char* inPermission) {
        return RunCommand({Program(), "data", Path("data"), inPermission}).output.substr(0, 3) !=
               "-1 ";
    };
    for (ResID id = 1; id < 4; ++id) {
        Add('TEXT', id, "text");
        UpdateResFile(number);
        EXPECT_EQ(ResError(), noErr);
        EXPECT_FALSE(opens("3")) << id;
        EXPECT_TRUE(opens("1")) << id;
    }
    CloseResFile(number);
    EXPECT_TRUE(opens("3"));
}

TEST_F(Sharing, AnUpdateOfADataForkChangesNothingElseOfTheFile) {
    const auto path = Write("data", "");
    FSRef ref;
    ASSERT_EQ(RefOf(path, &ref), noErr);
    ASSERT_EQ(FSCreateResourceFork(&ref, 0, nullptr, 0), noErr);
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(chown(path.c_str(), 12345, 12346), 0);
    }
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    const bool hasAttributes = setxattr(path.c_str(), "user.note", "text", 4, 0) == 0;
    std::filesystem::create_hard_link(path, Path("second name"));
    const auto created = InfoOf(path).createDate;
    while (time(nullptr) + 2082844800 <= SInt64(created.lowSeconds) + 1)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ResFileRefNum number = -1;
    ASSERT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdWrPerm, &number), noErr);
    Add('TEXT', 128, "text");
    CloseResFile(number);
    ASSERT_EQ(ResError(), noErr);
    struct stat facts;
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0640u);
    EXPECT_EQ(facts.st_uid, isRoot ? 12345 : geteuid());
    EXPECT_EQ(facts.st_gid, isRoot ? 12346 : getegid());
    EXPECT_EQ(+InfoOf(path).createDate.lowSeconds, +created.lowSeconds);
    char note[5] = "";
    if (hasAttributes) {
        EXPECT_EQ(getxattr(path.c_str(), "user.note", note, 4), 4);
        EXPECT_STREQ(note, "text");
    }
    EXPECT_EQ(PathOf(ref), path) << "the reference was made before";
    EXPECT_LT(std::filesystem::file_size(Path("second name")), size_t(facts.st_size))
        << "another name keeps what was there";
}

// The child waited for ever for what a thread of its parent had held.
TEST_F(Sharing, AChildOfAProcessWithThreadsMayUseTheChain) {
    const FSSpec spec = FileWithTwins();
    const auto number = Open(spec, fsRdPerm);
    std::atomic<bool> isOver = false;
    std::thread counting([&] {
        while (!isOver) CountResources('Same');
    });
    std::thread asking([&] {
        Boolean inChain = false;
        while (!isOver) FSpResourceFileAlreadyOpen(&spec, &inChain, nullptr);
    });
    for (int i = 0; i < 300; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(20);
            _exit(CurResFile() == number ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << i;
        if (status != 0) break;
    }
    isOver = true;
    counting.join();
    asking.join();
}

TEST_F(Sharing, AReaderKeepsTheForkThatItOpened) {
    const FSSpec spec = FileWithTwins();
    const auto reader = Open(spec, fsRdPerm);
    SetResLoad(false);
    const Handle handle = Get1Resource('Same', 1);
    SetResLoad(true);
    Peer writer({Program(), "churn", Path("file")});
    ASSERT_EQ(writer.Line(), "begun");
    const auto before = ForkOf();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (ForkOf() == before && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    EXPECT_NE(ForkOf(), before);
    LoadResource(handle);
    EXPECT_EQ(TextIn(handle), "tttt");
    EXPECT_EQ(HomeResFile(handle), reader);
}

TEST_F(Sharing, AWriterKilledAtAnyMomentLeavesTheOldForkOrTheNew) {
    const FSSpec spec = FileWithTwins();
    std::mt19937 random(1);
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        Peer writer({Program(), "churn", Path("file")});
        ASSERT_EQ(writer.Line(), "begun");
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 15000));
        writer.End(SIGKILL);
        const auto number = Open(spec, fsRdPerm);
        const auto text = TextOfResource('Same', 1);
        ASSERT_EQ(TextOfResource('Same', 2), text);
        ASSERT_EQ(text, std::string(text.size(), text[0])) << "a mixture";
        ASSERT_EQ(TextOfResource('TEXT', 1), "stays");
        seen.insert(text);
        CloseResFile(number);
    }
    EXPECT_GT(seen.size(), 3u) << "nothing was written between the kills";
}

TEST_F(Sharing, AFullDiskLeavesTheOldForkAndTheChanges) {
    const std::string small = MakeFolder("small");
    if (mount("tmpfs", small.c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "only the administrator may mount a small disk";
    struct Unmount {
        std::string path;
        ~Unmount() { umount2(path.c_str(), MNT_DETACH); }
    } unmount{small};
    const FSSpec spec = SpecOf(Write("small/file"));
    FSpCreateResFile(&spec, 0, 0, smSystemScript);
    const auto number = Open(spec);
    Add('TEXT', 128, "old");
    UpdateResFile(number);
    ASSERT_EQ(ResError(), noErr);
    const auto before = ForkOf("small/file");

    const Handle large = HandleTo(std::string(3000000, 'x'));
    AddResource(large, 'Big ', 1, nullptr);
    EXPECT_EQ(ResError(), dskFulErr);
    DisposeHandle(large);
    const Handle handle = Get1Resource('TEXT', 128);
    PtrToXHand(std::string(3000000, 'y').c_str(), handle, 3000000);
    ChangedResource(handle);
    EXPECT_EQ(ResError(), dskFulErr);
    EXPECT_EQ(GetResAttrs(handle), 0);

    // The room goes between the promise and the update.
    Change(handle, std::string(300000, 'z'));
    std::ofstream(small + "/filler") << std::string(2000000, 'f');
    UpdateResFile(number);
    EXPECT_EQ(ResError(), dskFulErr);
    EXPECT_EQ(ForkOf("small/file"), before);
    EXPECT_EQ(GetResAttrs(handle), resChanged);
    std::filesystem::remove(small + "/filler");
    UpdateResFile(number);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_GT(ForkOf("small/file").size(), 300000u);
    CloseResFile(number);
}

TEST_F(Sharing, AProgramWithoutResourcesBeginsAtTheSystemFile) {
    EXPECT_EQ(OwnString(Program()), "system none\n");
}

TEST_F(Sharing, ABundlesResourcesAreTheFirstOfTheChain) {
    const std::string contents = MakeFolder("Test.app/Contents");
    MakeFolder("Test.app/Contents/MacOS");
    MakeFolder("Test.app/Contents/Resources");
    Write("Test.app/Contents/Info.plist",
          "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleExecutable</key>"
          "<string>Test</string></dict></plist>");
    const auto program = CopyOfPeer("Test.app/Contents/MacOS/Test");
    const auto resources = contents + "/Resources/Test.rsrc";
    NewDataForkFile(resources);
    const auto number = OpenDataFork(resources, fsRdWrPerm);
    AddOwnString("from the bundle");
    CloseResFile(number);
    EXPECT_EQ(OwnString(program), "own from the bundle\n");
}

TEST_F(Sharing, AProgramFilesResourceForkIsItsOwn) {
    const auto program = CopyOfPeer("program");
    EXPECT_EQ(OwnString(program), "system none\n");
    const FSSpec spec = SpecOf(program);
    FSpCreateResFile(&spec, 0, 0, smSystemScript);
    Open(spec);
    AddOwnString("from the fork");
    CloseResFile(CurResFile());
    EXPECT_EQ(OwnString(program), "own from the fork\n");
}

TEST_F(Sharing, AProgramWithDamagedResourcesHasNone) {
    const auto program = CopyOfPeer("program");
    ASSERT_EQ(carbon::ReplaceResourceFork(program, std::vector<UInt8>(300, 0xEE)), noErr);
    EXPECT_EQ(OwnString(program), "system none\n");
}

}  // namespace
