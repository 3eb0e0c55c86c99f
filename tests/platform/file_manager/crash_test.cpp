// Whatever befalls a writer, its files keep the old state or have the new one, never a mixture.
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <random>
#include <thread>

#include "ForkFixture.h"
#include "file_manager/metadata/metadata.h"

namespace {

constexpr int kKills = 100;

class CrashTest : public ForkFixture {
  protected:
    // Starts the helper on a command of its own and kills it at a random moment. True if it had
    // been at work until then.
    static bool StartAndKill(const std::string& inCommand, const std::string& inPath,
                             std::minstd_rand* ioRandom) {
        const auto program =
            std::filesystem::canonical("/proc/self/exe").parent_path() / "fork_peer";
        const pid_t pid = fork();
        if (pid == 0) {
            execl(program.c_str(), "fork_peer", inCommand.c_str(), inPath.c_str(), nullptr);
            _exit(127);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(20000 + (*ioRandom)() % 30000));
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFSIGNALED(status);
    }

    // Runs `inBody` on a disk of its own with so many bytes, in a child process; its result is the
    // child's exit code. 99 where this user may mount nothing.
    template <typename Body>
    static int OnSmallDisk(const std::string& inFolder, const char* inSize, Body inBody) {
        const pid_t pid = fork();
        if (pid == 0) {
            const int spaces = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS;
            const std::string options = std::string("mode=0777,size=") + inSize;
            if (unshare(spaces) != 0 ||
                mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                mount("none", inFolder.c_str(), "tmpfs", 0, options.c_str()) != 0)
                _exit(99);
            _exit(inBody(inFolder));
        }
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(CrashTest, OfAProcessChangingMetadataLeavesOneWholeState) {
    const auto path = Write("File");
    ASSERT_EQ(carbon::ReplaceResourceFork(path, std::vector<UInt8>(5000, 'r')), noErr);
    std::minstd_rand random(20261121);
    bool hasWorked = false;
    for (int round = 0; round < kKills; ++round) {
        ASSERT_TRUE(StartAndKill("change", path, &random));
        carbon::Metadata read;
        ASSERT_EQ(carbon::ReadMetadata(path, &read), noErr);
        ASSERT_EQ(read.companion, carbon::CompanionState::kSound);
        const UInt8 mark = read.finderInfo[0];
        hasWorked = hasWorked || mark != 0;
        if (mark == 0) continue;
        for (const UInt8 byte : read.finderInfo) ASSERT_EQ(byte, mark) << round;
        for (const UInt8 byte : read.extFinderInfo) ASSERT_EQ(byte, mark) << round;
        ASSERT_EQ(read.facts.created, mark);
        for (const char byte : read.facts.comment) ASSERT_EQ(UInt8(byte), mark);
        std::vector<UInt8> fork;
        ASSERT_EQ(carbon::ReadResourceFork(path, &fork), noErr);
        ASSERT_EQ(fork, std::vector<UInt8>(5000, 'r'));
    }
    EXPECT_TRUE(hasWorked);
    // What a killed writer left unfinished is the next one's to clear away.
    ASSERT_EQ(carbon::ChangeMetadata(path, [](carbon::Metadata* io) { io->finderInfo[0] = 99; }),
              noErr);
    for (const auto& entry : std::filesystem::directory_iterator(mFolder)) {
        EXPECT_EQ(entry.path().string().find("unfinished"), std::string::npos);
    }
}

TEST_F(CrashTest, OfAProcessReplacingForksLeavesAWholeOne) {
    const auto path = Write("File");
    std::minstd_rand random(4711);
    bool hasWorked = false;
    for (int round = 0; round < kKills; ++round) {
        ASSERT_TRUE(StartAndKill("replace", path, &random));
        std::vector<UInt8> fork;
        ASSERT_EQ(carbon::ReadResourceFork(path, &fork), noErr);
        if (fork.empty()) continue;
        hasWorked = true;
        // Each fork has a byte of its own, and a length that goes with it.
        ASSERT_TRUE(std::all_of(fork.begin(), fork.end(), [&](UInt8 byte) {
            return byte == fork.front();
        })) << round;
        bool hasItsLength = false;
        for (UInt32 i = fork.front(); i < 100000 && !hasItsLength; i += 256)
            hasItsLength = fork.size() == 1 + i * 7919 % 100000;
        ASSERT_TRUE(hasItsLength) << round << ' ' << fork.size();
    }
    EXPECT_TRUE(hasWorked);
}

TEST_F(CrashTest, OfAWriterInPlaceLeavesTheMetadataWhole) {
    const auto path = Write("File");
    ASSERT_EQ(carbon::ChangeMetadata(path, [](carbon::Metadata* io) { io->finderInfo[0] = 7; }),
              noErr);
    std::minstd_rand random(7);
    for (int round = 0; round < 20; ++round) {
        ForkPeer peer;
        ASSERT_EQ(peer.Open(path, "resource", fsRdWrPerm), noErr);
        const auto length = 1 + random() % 60000;
        EXPECT_EQ(peer.Ask("write " + peer.Number() + "0 " + std::string(length, 'w')).substr(0, 2),
                  "0 ");
        peer.Kill();
        carbon::Metadata read;
        ASSERT_EQ(carbon::ReadMetadata(path, &read), noErr);
        ASSERT_EQ(read.companion, carbon::CompanionState::kSound);
        ASSERT_EQ(read.finderInfo[0], 7);
        ASSERT_GE(+read.facts.resourceLength, length);
    }
}

TEST_F(CrashTest, OfADiskWithoutRoomLeavesTheOldState) {
    const int result = OnSmallDisk(MakeFolder("Disk"), "64k", [](const std::string& inDisk) {
        const auto path = inDisk + "/File";
        std::ofstream(path) << "data";
        const std::vector<UInt8> old(20000, 'o'), large(60000, 'l');
        if (carbon::ReplaceResourceFork(path, old) != noErr) return 1;
        if (carbon::ReplaceResourceFork(path, large) != dskFulErr) return 2;
        std::ofstream(inDisk + "/Filler") << std::string(30000, 'f');
        const auto lock = [](carbon::Metadata* io) { io->facts.isLocked = true; };
        if (carbon::ChangeMetadata(path, lock) != dskFulErr) return 3;
        std::vector<UInt8> fork;
        carbon::Metadata metadata;
        if (carbon::ReadResourceFork(path, &fork) != noErr || fork != old) return 4;
        if (carbon::ReadMetadata(path, &metadata) != noErr || metadata.facts.isLocked) return 5;
        std::filesystem::remove(inDisk + "/Filler");
        if (carbon::ChangeMetadata(path, lock) != noErr) return 6;
        return 0;
    });
    if (result == 99) GTEST_SKIP() << "this user may mount nothing";
    EXPECT_EQ(result, 0);
}

TEST_F(CrashTest, OfADiskWithoutRoomIsToldToWhoWritesOrGrowsAFork) {
    for (const bool isResource : {false, true}) {
        const auto body = [&](const std::string& inDisk) {
            const auto path = inDisk + "/File";
            std::ofstream(path) << "";
            const FSSpec spec = SpecOf(path);
            SInt16 fork = 0;
            const auto open = isResource ? FSpOpenRF : FSpOpenDF;
            if (open(&spec, fsRdWrPerm, &fork) != noErr) return 1;
            if (Put(fork, "begin") != noErr || SetEOF(fork, 100000) != dskFulErr) return 2;
            SInt32 length = 0, count = 100000;
            if (GetEOF(fork, &length) != noErr || length != 5) return 3;
            if (Allocate(fork, &count) != dskFulErr || count != 0) return 4;
            const std::string text(100000, 't');
            count = SInt32(text.size());
            if (FSWrite(fork, &count, text.data()) != dskFulErr) return 5;
            if (count <= 0 || count >= 65536) return 6;
            if (GetEOF(fork, &length) != noErr || length != 5 + count) return 7;
            if (SetEOF(fork, 5) != noErr || All(fork) != "begin") return 8;
            return FSClose(fork) == noErr ? 0 : 9;
        };
        const int result = OnSmallDisk(MakeFolder("Disk"), "64k", body);
        if (result == 99) GTEST_SKIP() << "this user may mount nothing";
        EXPECT_EQ(result, 0) << isResource;
    }
}

TEST_F(CrashTest, OfNothingButAReadOnlyDiskIsToldAsSuch) {
    const int result = OnSmallDisk(MakeFolder("Disk"), "64k", [](const std::string& inDisk) {
        const auto path = inDisk + "/File";
        std::ofstream(path) << "data";
        if (carbon::ReplaceResourceFork(path, std::vector<UInt8>(3, 'r')) != noErr) return 1;
        if (mount("none", inDisk.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) return 99;
        const auto lock = [](carbon::Metadata* io) { io->facts.isLocked = true; };
        if (carbon::ChangeMetadata(path, lock) != wPrErr) return 2;
        const FSSpec spec = SpecOf(path);
        SInt16 fork = 0;
        if (FSpOpenDF(&spec, fsRdWrPerm, &fork) != wrPermErr) return 3;
        if (FSpOpenRF(&spec, fsRdWrPerm, &fork) != wrPermErr) return 4;
        if (FSpOpenRF(&spec, fsCurPerm, &fork) != noErr || All(fork) != "rrr") return 5;
        return Put(fork, "x") == wrPermErr && FSClose(fork) == noErr ? 0 : 6;
    });
    if (result == 99) GTEST_SKIP() << "this user may mount nothing";
    EXPECT_EQ(result, 0);
}

}  // namespace
