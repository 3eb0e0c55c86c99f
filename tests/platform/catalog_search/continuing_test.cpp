// Searches that stop and go on, and an index that is always true: changes by anyone, other
// processes, other volumes inside, damage.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <memory>
#include <thread>

#include "file_manager/catalog/objects.h"
#include "platform/catalog_search/SearchFixture.h"

namespace {

class ContinuedSearch : public SearchFixture {
  protected:
    // What other programs do is seen in the times of folders, which tick.
    static void WaitForATick() { std::this_thread::sleep_for(std::chrono::milliseconds(150)); }
    Strings All(SInt32 inRoom = 100) { return Search(mVolume, 0, inRoom).OnlyFiles().Names(); }
};

TEST_F(ContinuedSearch, GoesOnWhereTheArrayWasFull) {
    Strings all;
    for (int i = 0; i < 25; ++i) {
        const auto folder = "folder" + std::to_string(i % 3);
        MakeFolder("disk/" + folder);
        Write("disk/" + folder + "/file" + std::to_string(i));
        all.insert("file" + std::to_string(i));
    }
    for (const SInt32 room : {1, 4, 25, 26}) {
        Search search(mVolume, 0, room);
        search.OnlyFiles();
        Strings found;
        OSErr error = noErr;
        int calls = 0;
        while (error == noErr && calls++ < 100) {
            error = search.Run();
            for (const auto& name : search.Found()) {
                EXPECT_TRUE(found.insert(name).second) << "twice: " << name;
            }
            if (error == noErr) {
                EXPECT_EQ(search.block.ioActMatchCount, room);
            }
        }
        EXPECT_EQ(error, eofErr);
        EXPECT_EQ(found, all);
        EXPECT_EQ(search.Run(), eofErr) << "at the end it stays at the end";
        EXPECT_EQ(search.block.ioActMatchCount, 0);
    }
}

TEST_F(ContinuedSearch, TellsThatTheCatalogHasChanged) {
    for (int i = 0; i < 10; ++i) Write("disk/file" + std::to_string(i));
    Search search(mVolume, 0, 3);
    ASSERT_EQ(search.OnlyFiles().Run(), noErr);
    WaitForATick();
    Write("disk/new");
    EXPECT_EQ(search.Run(), catChangedErr);
    EXPECT_EQ(search.block.ioActMatchCount, 0);
    EXPECT_EQ(search.Run(), noErr) << "whoever goes on all the same gets further";
    EXPECT_EQ(search.block.ioActMatchCount, 3);
}

TEST_F(ContinuedSearch, DoesNotTakeAnotherVolumesPosition) {
    for (int i = 0; i < 10; ++i) Write("disk/file" + std::to_string(i));
    Search search(mVolume, 0, 3);
    ASSERT_EQ(search.OnlyFiles().Run(), noErr);
    FSVolumeRefNum other = 0;
    ASSERT_EQ(PlatformMountFolder(MakeFolder("other").c_str(), "Other", &other), noErr);
    search.block.ioVRefNum = other;
    EXPECT_EQ(search.Run(), catChangedErr);
    PlatformUnmountFolder(other);
}

TEST_F(ContinuedSearch, GetsThroughInTheSmallestTime) {
    Strings all;
    for (int i = 0; i < 600; ++i) {
        MakeFolder("disk/folder" + std::to_string(i));
        const auto name = "file" + std::to_string(i);
        Write("disk/folder" + std::to_string(i) + "/" + name);
        all.insert(name);
    }
    WaitForATick();
    Search search(mVolume, 0, 1000);
    search.OnlyFiles().block.ioSearchTime = -1;  // a microsecond
    Strings found;
    OSErr error = noErr;
    int calls = 0;
    for (; error == noErr && calls < 10000; ++calls) {
        error = search.Run();
        for (const auto& name : search.Found()) found.insert(name);
    }
    EXPECT_EQ(error, eofErr);
    EXPECT_EQ(found, all);
    EXPECT_GT(calls, 2);
}

// The first search reads the whole volume, and nobody else got to a file meanwhile.
TEST_F(ContinuedSearch, LetsOtherThreadsToTheCatalogOnItsWay) {
    constexpr int kFolders = 1500, kWanted = 3;
    for (int i = 0; i < kFolders; ++i) {
        const auto folder = "disk/folder" + std::to_string(i);
        MakeFolder(folder);
        Write(folder + "/file");
    }
    std::atomic<bool> isOver = false;
    OSErr result = noErr;
    Search search(mVolume, 0, kFolders + 1);
    auto catalog = std::make_unique<carbon::Catalog>();
    std::thread searcher([&] {
        result = search.OnlyFiles().Run();
        isOver = true;
    });
    // Each time the search waits for the catalog again, it has let this thread to it on its way.
    int turns = -1;
    for (; !isOver; ++turns) {
        while (!carbon::Catalog::IsAwaited() && !isOver) std::this_thread::yield();
        catalog->LetOthersIn();
    }
    catalog.reset();
    searcher.join();
    EXPECT_EQ(result, eofErr);
    EXPECT_EQ(search.block.ioActMatchCount, kFolders);
    EXPECT_GE(turns, kWanted);
}

// A search that begins has to see what was changed before it, whatever another one had looked at.
TEST_F(ContinuedSearch, BegunAnewDoesNotGoOnWhereAnotherStopped) {
    for (int i = 0; i < 600; ++i) MakeFolder("disk/folder" + std::to_string(i));
    EXPECT_EQ(All(), (Strings{}));
    WaitForATick();
    EXPECT_EQ(All(), (Strings{}));
    Search halted(mVolume, 0, 10);
    halted.OnlyFiles().block.ioSearchTime = -1;
    EXPECT_EQ(halted.Run(), noErr);
    Write("disk/new");
    EXPECT_EQ(All(), (Strings{"new"}));
}

TEST_F(ContinuedSearch, SeesWhatOtherProgramsDo) {
    MakeFolder("disk/folder");
    Write("disk/folder/one");
    EXPECT_EQ(All(), (Strings{"one"}));
    Write("disk/folder/two");
    EXPECT_EQ(All(), (Strings{"one", "two"}));
    std::filesystem::rename(Path("disk/folder/one"), Path("disk/folder/three"));
    EXPECT_EQ(All(), (Strings{"three", "two"}));
    std::filesystem::remove(Path("disk/folder/two"));
    EXPECT_EQ(All(), (Strings{"three"}));
    std::filesystem::rename(Path("disk/folder"), Path("disk/renamed"));
    EXPECT_EQ(All(), (Strings{"three"}));
    MakeFolder("disk/folder/deep/deeper");
    Write("disk/folder/deep/deeper/four");
    EXPECT_EQ(All(), (Strings{"three", "four"}));
    std::filesystem::remove_all(Path("disk/folder"));
    EXPECT_EQ(All(), (Strings{"three"}));
}

TEST_F(ContinuedSearch, FindsWhatItFoundAtItsPlace) {
    MakeFolder("disk/a/b/c");
    const auto path = Write("disk/a/b/c/wanted");
    Search search(mVolume, fsSBFullName);
    ASSERT_EQ(search.Name("wanted").Run(), eofErr);
    ASSERT_EQ(search.block.ioActMatchCount, 1);
    EXPECT_EQ(PathOf(search.matches[0]), path);
}

TEST_F(ContinuedSearch, SeesNewFinderInformation) {
    const auto path = Write("disk/file");
    Sign(path, 'ttxt', 'TEXT');
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 0).Names(), (Strings{"file"}));
    Sign(path, 'Mine', 'TEXT');
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 0).Names(), (Strings{}));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('Mine', 0).Names(), (Strings{"file"}));
}

TEST_F(ContinuedSearch, SeesFinderInformationThatChangesUnderAnOpenFork) {
    const auto path = Write("disk/file");
    Sign(path, 'ttxt', 'TEXT');
    const FSSpec spec = SpecOf(path);
    int ready[2], done[2];
    ASSERT_EQ(pipe(ready) | pipe(done), 0);
    const pid_t child = fork();
    if (child == 0) {
        SInt16 file = 0;
        SInt32 count = 5;
        const bool isOpen =
            FSpOpenRF(&spec, fsRdWrPerm, &file) == noErr && FSWrite(file, &count, "12345") == noErr;
        char byte = char(isOpen);
        const bool isTold = write(ready[1], &byte, 1) == 1 && read(done[0], &byte, 1) == 1;
        _exit(isTold && isOpen ? 0 : 1);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_EQ(byte, 1);
    WaitForATick();
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 0).Names(), (Strings{"file"}));
    Sign(path, 'Mine', 'TEXT');
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('Mine', 0).Names(), (Strings{"file"}));
    ASSERT_EQ(write(done[1], &byte, 1), 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(ContinuedSearch, KeepsItsIndexAndItsTruthFromProcessToProcess) {
    Sign(Write("disk/one"), 'ttxt', 'TEXT');
    const auto ask = [&] { return Ask("search " + std::to_string(mVolume) + " ttxt"); };
    EXPECT_EQ(ask(), "-39 one");
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 0).Names(), (Strings{"one"}));
    Sign(Write("disk/two"), 'ttxt', 'TEXT');
    EXPECT_EQ(ask(), "-39 one two");
    std::filesystem::remove(Path("disk/one"));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 0).Names(), (Strings{"two"}));
    EXPECT_EQ(ask(), "-39 two");
}

TEST_F(ContinuedSearch, WorksOnInAChild) {
    Write("disk/one");
    EXPECT_EQ(All(), (Strings{"one"}));
    const pid_t child = fork();
    if (child == 0) {
        Write("disk/two");
        _exit(All() == Strings{"one", "two"} ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(All(), (Strings{"one", "two"}));
}

TEST_F(ContinuedSearch, LeavesVolumesInsideToThemselves) {
    MakeFolder("disk/inner/folder");
    Write("disk/inner/folder/theirs");
    Write("disk/ours");
    EXPECT_EQ(All(), (Strings{"ours", "theirs"}));
    FSVolumeRefNum inner = 0;
    ASSERT_EQ(PlatformMountFolder(Path("disk/inner").c_str(), "Inner", &inner), noErr);
    EXPECT_EQ(All(), (Strings{"ours"}));
    EXPECT_EQ(Search(mVolume).Names(), (Strings{"ours", "Disk"}));
    EXPECT_EQ(Search(inner).OnlyFiles().Names(), (Strings{"theirs"}));
    ASSERT_EQ(PlatformUnmountFolder(inner), noErr);
    EXPECT_EQ(All(), (Strings{"ours", "theirs"}));
}

TEST_F(ContinuedSearch, SurvivesFoldersThatVanishMeanwhile) {
    for (int i = 0; i < 40; ++i) {
        MakeFolder("disk/stays" + std::to_string(i));
        Write("disk/stays" + std::to_string(i) + "/file" + std::to_string(i));
    }
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver) {
            std::error_code ignored;
            std::filesystem::create_directories(Path("disk/comes/and/goes"), ignored);
            std::ofstream(Path("disk/comes/and/goes/now"));
            std::filesystem::remove_all(Path("disk/comes"), ignored);
        }
    });
    for (int i = 0; i < 50; ++i) {
        Search search(mVolume);
        const OSErr error = search.OnlyFiles().Run();
        EXPECT_EQ(error, eofErr);
        auto found = search.Found();
        found.erase("now");
        EXPECT_EQ(found.size(), 40u);
    }
    isOver = true;
    other.join();
}

TEST_F(ContinuedSearch, IsTrueAfterAProcessWasKilledWhileReading) {
    for (int round = 0; round < 15; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            for (int i = 0;; ++i) {
                const auto folder = "disk/" + std::to_string(round) + '-' + std::to_string(i);
                MakeFolder(folder);
                Write(folder + "/file " + std::to_string(round) + '-' + std::to_string(i));
                All();
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(7 * round));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        Strings expected;
        for (const auto& each : std::filesystem::recursive_directory_iterator(Path("disk"))) {
            if (each.is_regular_file()) expected.insert(each.path().filename());
        }
        EXPECT_EQ(All(5000), expected) << round;
    }
}

TEST_F(ContinuedSearch, ReadsAgainAfterDamage) {
    Write("disk/one");
    EXPECT_EQ(All(), (Strings{"one"}));
    const auto file = IndexFile();
    const pid_t child = fork();  // closes the file here
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    std::ofstream(file, std::ios::binary) << std::string(16384, 'x');
    std::filesystem::remove(file.string() + "-wal");
    EXPECT_EQ(All(), (Strings{"one"}));
    EXPECT_TRUE(std::filesystem::exists(file.string() + ".damaged-1"));
}

TEST_F(ContinuedSearch, ReadsAgainWhenItsFileIsGone) {
    Write("disk/one");
    EXPECT_EQ(All(), (Strings{"one"}));
    const auto file = IndexFile();
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::filesystem::remove(file.string() + suffix);
    }
    Write("disk/two");
    EXPECT_EQ(All(), (Strings{"one", "two"}));
}

TEST_F(ContinuedSearch, ListsTenThousandFilesOfOneFolder) {
    for (int i = 0; i < 10000; ++i) Write("disk/file" + std::to_string(i), "");
    Search search(mVolume, 0, 20000);
    ASSERT_EQ(search.OnlyFiles().Run(), eofErr);
    EXPECT_EQ(search.block.ioActMatchCount, 10000);
}

}  // namespace
