// Guards across removals of their file, forks and sudden deaths, and deletions on a walk's word.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "VolumeFixture.h"
#include "file_manager/metadata/object_guard.h"
#include "posix/runtime_folder.h"

namespace {

using carbon::ObjectGuard;

std::string GuardsPath() {
    std::string folder;
    EXPECT_EQ(carbon::RuntimeFolder(&folder), noErr);
    return folder + "/guards";
}

// Whether a new opening of the guards' file meets any lock.
bool IsAnyGuardHeld() {
    const int file = open(GuardsPath().c_str(), O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    const bool isHeld = fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    close(file);
    return isHeld;
}

class Guards : public FileFixture {};

TEST_F(Guards, AreLetGoWhenTheirHolderIs) {
    const auto path = Write("file");
    for (int i = 0; i < 3; ++i) {
        ObjectGuard guard;
        ASSERT_EQ(guard.Take(path), noErr);
        EXPECT_TRUE(IsAnyGuardHeld());
    }
    EXPECT_FALSE(IsAnyGuardHeld());
}

TEST_F(Guards, ExcludeEachOtherWithinOneProcess) {
    const auto path = Write("file");
    std::atomic<bool> isFirstGone = false;
    auto first = std::make_unique<ObjectGuard>();
    ASSERT_EQ(first->Take(path), noErr);
    const auto facts = first->Facts();
    std::thread other([&] {
        ObjectGuard second;
        EXPECT_EQ(second.TakeSeen(facts.st_dev, facts.st_ino), noErr);
        EXPECT_TRUE(isFirstGone);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    isFirstGone = true;
    first.reset();
    other.join();
}

TEST_F(Guards, AreInTheFileThatIsThereNow) {
    const auto path = Write("file");
    ASSERT_EQ(ObjectGuard().Take(path), noErr);
    unlink(GuardsPath().c_str());
    ObjectGuard guard;
    ASSERT_EQ(guard.Take(path), noErr);
    EXPECT_TRUE(IsAnyGuardHeld());
}

// The child was made while the opening lay idle, and lives on.
TEST_F(Guards, EndWithAKilledProcessThoughItsChildLives) {
    const auto path = Write("file");
    int told[2], alive[2];
    ASSERT_EQ(pipe(told) + pipe(alive), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        ObjectGuard().Take(path);
        if (fork() == 0) {
            char end = 1;
            close(alive[1]);
            if (write(told[1], &end, 1) != 1) _exit(1);
            _exit(int(read(alive[0], &end, 1)));  // when the test ends
        }
        ObjectGuard guard;
        const char isTaken = guard.Take(path) == noErr;
        if (write(told[1], &isTaken, 1) == 1) pause();
        _exit(1);
    }
    char isTaken = 0, isAlive = 0;  // in either order
    ASSERT_EQ(read(told[0], &isTaken, 1) + read(told[0], &isAlive, 1), 2);
    EXPECT_TRUE(isAlive);
    EXPECT_TRUE(isTaken);
    EXPECT_TRUE(IsAnyGuardHeld());
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_FALSE(IsAnyGuardHeld());
    for (const int end : {told[0], told[1], alive[0], alive[1]}) close(end);
}

class WalkedDeletion : public VolumeFixture {
  protected:
    // What a walk tells of, as whoever empties a folder asks for it.
    std::string First() { return Entry(2, 1); }
    OSErr Delete(const std::string& inName) { return HDelete(mVolume, 2, PString(inName)); }
    void SetUp() override {
        VolumeFixture::SetUp();
        for (const char* name : {"Disk/a", "Disk/b", "Disk/c"}) Write(name);
        EXPECT_EQ(Entry(2, 2), "b");  // begins the walk
        EXPECT_EQ(First(), "a");
    }
};

TEST_F(WalkedDeletion, LeavesTheOthers) {
    EXPECT_EQ(Delete("a"), noErr);
    EXPECT_EQ(Entries(2), (std::vector<std::string>{"b", "c"}));
    EXPECT_EQ(Delete("a"), fnfErr);
}

TEST_F(WalkedDeletion, TakesTheCompanionMadeSinceTheWalkToldOfIt) {
    const std::string companion("\0\5\x16\7\0\2\0\0", 8);
    Write("Disk/._a", companion + std::string(18, '\0'));
    EXPECT_EQ(Delete("a"), noErr);
    EXPECT_FALSE(Exists("Disk/._a"));
}

TEST_F(WalkedDeletion, IsOfWhatHasTheNameNow) {
    Write("Disk/other", "other");
    std::filesystem::rename(Path("Disk/other"), Path("Disk/a"));
    EXPECT_EQ(Delete("a"), noErr);
    EXPECT_FALSE(Exists("Disk/a"));
    Write("Disk/b2");
    EXPECT_EQ(First(), "b");
    std::filesystem::remove(Path("Disk/b"));
    EXPECT_EQ(Delete("b"), fnfErr);
    EXPECT_EQ(First(), "b2");
    std::filesystem::remove(Path("Disk/b2"));
    MakeFolder("Disk/b2/inside");
    EXPECT_EQ(Delete("b2"), fBsyErr);
}

TEST_F(WalkedDeletion, IsRefusedForAnOpenFork) {
    SInt16 number = 0;
    ASSERT_EQ(HOpenDF(mVolume, 2, PString("a"), fsRdPerm, &number), noErr);
    EXPECT_EQ(First(), "a");
    EXPECT_EQ(Delete("a"), fBsyErr);
    EXPECT_TRUE(Exists("Disk/a"));
    EXPECT_EQ(FSClose(number), noErr);
    EXPECT_EQ(Delete("a"), noErr);
}

TEST_F(WalkedDeletion, FollowsAFolderThatMovedMeanwhile) {
    MakeFolder("Disk/from/inner");
    Write("Disk/from/inner/x");
    Write("Disk/from/inner/y");
    MakeFolder("Disk/to");
    const SInt32 inner = Info(FolderID("from"), "inner").dirInfo.ioDrDirID;
    EXPECT_EQ(Entry(inner, 2), "y");
    EXPECT_EQ(Entry(inner, 1), "x");
    std::filesystem::rename(Path("Disk/from/inner"), Path("Disk/to/inner"));
    MakeFolder("Disk/from/inner");
    Write("Disk/from/inner/x");
    EXPECT_EQ(HDelete(mVolume, inner, PString("x")), noErr);
    EXPECT_TRUE(Exists("Disk/from/inner/x"));
    EXPECT_FALSE(Exists("Disk/to/inner/x"));
}

TEST_F(WalkedDeletion, IsRefusedOnALockedVolume) {
    mVolume = Mount("Locked", "Locked", kPlatformMountSoftwareLocked);
    Write("Locked/a");
    Write("Locked/b");
    EXPECT_EQ(Entry(2, 2), "b");
    EXPECT_EQ(First(), "a");
    EXPECT_EQ(Delete("a"), vLckdErr);
}

}  // namespace
