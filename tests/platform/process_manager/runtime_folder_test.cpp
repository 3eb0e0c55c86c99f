// Whom the runtime folder may belong to.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/process_manager/Peer.h"
#include "posix/runtime_folder.h"
#include "support/TemporaryHome.h"

namespace {

namespace fs = std::filesystem;

TemporaryHome sHome;

std::string Place(const std::string& inName) {
    const auto path = sHome.Root() / inName;
    fs::remove_all(path);
    return path.string();
}

TEST(RuntimeFolder, IsMadeForTheUserAlone) {
    const std::string path = Place("new");
    const mode_t mask = umask(0);
    EXPECT_EQ(carbon::ClaimFolder(path), noErr);
    umask(mask);
    struct stat facts;
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700u);
    EXPECT_EQ(carbon::ClaimFolder(path), noErr);
}

TEST(RuntimeFolder, LinkIsRefusedEvenToAFolderOfTheUsers) {
    const std::string target = Place("target"), link = Place("link");
    ASSERT_EQ(carbon::ClaimFolder(target), noErr);
    fs::create_directory_symlink(target, link);
    EXPECT_EQ(carbon::ClaimFolder(link), permErr);
}

TEST(RuntimeFolder, FolderOpenToOthersIsRefused) {
    const std::string path = Place("open");
    for (const mode_t mode : {0777u, 0710u, 0701u}) {
        fs::remove_all(path);
        mkdir(path.c_str(), 0700);
        chmod(path.c_str(), mode);
        EXPECT_EQ(carbon::ClaimFolder(path), permErr) << mode;
    }
}

TEST(RuntimeFolder, FileInItsPlaceIsRefused) {
    const std::string path = Place("file");
    std::ofstream(path) << "file";
    EXPECT_EQ(carbon::ClaimFolder(path), permErr);
}

TEST(RuntimeFolder, FolderOfSomeoneElseIsRefused) {
    const std::string path = geteuid() == 0 ? Place("foreign") : "/usr";
    if (geteuid() == 0) {
        ASSERT_EQ(mkdir(path.c_str(), 0700), 0);
        ASSERT_EQ(chown(path.c_str(), 12345, 12345), 0);
    }
    EXPECT_EQ(carbon::ClaimFolder(path), permErr);
}

// Every call that needs the table answers the same, again and again, and none waits.
TEST(RuntimeFolder, CallsAnswerPermErrWhenItIsRefused) {
    const std::string runtime = Place("runtime");
    fs::create_directory(runtime);
    fs::create_directory_symlink("/tmp", runtime + "/vantor");
    setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
    EXPECT_EQ(Peer().FirstAnswer(), permErr);
    for (int round = 0; round < 2; ++round) {
        ProcessSerialNumber psn = {0, kNoProcess};
        ProcessInfoRec info = {};
        info.processInfoLength = 60;
        EXPECT_EQ(GetCurrentProcess(&psn), permErr);
        EXPECT_EQ(GetNextProcess(&psn), permErr);
        EXPECT_EQ(GetFrontProcess(&psn), permErr);
        psn = {0, kCurrentProcess};
        EXPECT_EQ(GetProcessInformation(&psn, &info), permErr);
        EXPECT_EQ(SetFrontProcess(&psn), permErr);
        EXPECT_EQ(WakeUpProcess(&psn), permErr);
        EXPECT_EQ(KillProcess(&psn), permErr);
    }
}

}  // namespace
