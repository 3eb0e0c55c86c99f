// Changes that take several steps on disk: a process killed before any of them leaves the old state
// or the new, and a step that fails undoes those before it.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <sstream>

#include "DiskFaults.h"
#include "VolumeFixture.h"
#include "file_manager/metadata/metadata.h"

namespace {

constexpr int kMostSteps = 500;

class StepsTest : public VolumeFixture {
  protected:
    void TearDown() override {
        gDiskFaults = {};
        VolumeFixture::TearDown();
    }

    // Runs `inBody` in a child that is killed before its change number `inStep`. False when it
    // ended before.
    static bool IsKilledAt(int inStep, const std::function<void()>& inBody) {
        const pid_t child = fork();
        if (child == 0) {
            gDiskFaults.killAt = inStep;
            inBody();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << status;
        return WIFSIGNALED(status);
    }

    void Exchange() const {
        const PString one("One"), two("Two");
        FSSpec first, second;
        FSMakeFSSpec(mVolume, 2, one, &first);
        FSMakeFSSpec(mVolume, 2, two, &second);
        FSpExchangeFiles(&first, &second);
    }
    void MakePair(bool inHasFirstFork, bool inHasSecondFork) const {
        for (const auto* name : {"One", "Two"}) {
            const bool isFirst = name[0] == 'O';
            const auto path = Write(std::string("Disk/") + name, std::string("data ") + name);
            carbon::RemoveMetadata(path);
            if (isFirst ? !inHasFirstFork : !inHasSecondFork) continue;
            const std::string fork = std::string("resources ") + name;
            const auto change = [&](carbon::Metadata* ioMetadata) {
                FInfo info{};
                info.fdType = isFirst ? 'ONE ' : 'TWO ';
                std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
                ioMetadata->facts.created = isFirst ? 1000000000 : 1100000000;
            };
            ASSERT_EQ(
                carbon::ReplaceResourceFork(path, std::vector<UInt8>(fork.begin(), fork.end())),
                noErr);
            ASSERT_EQ(carbon::ChangeMetadata(path, change), noErr);
        }
    }
    // Data, resources, type and date of a name.
    std::string StateOf(const std::string& inName) {
        const auto info = Info(2, inName).hFileInfo;
        std::vector<UInt8> fork;
        EXPECT_EQ(carbon::ReadResourceFork(Path("Disk/" + inName), &fork), noErr);
        std::ostringstream text;
        text << std::ifstream(Path("Disk/" + inName)).rdbuf() << ", "
             << std::string(fork.begin(), fork.end()) << ", " << info.ioFlFndrInfo.fdType;
        if (info.ioFlFndrInfo.fdType != 0) text << ", " << info.ioFlCrDat;
        return text.str();
    }
    std::string StateOfBoth() { return StateOf("One") + " / " + StateOf("Two"); }
};

TEST_F(StepsTest, AnExchangeKilledAtAnyOfThemIsWholeOrHasNotBegun) {
    for (const int forks : {0, 1, 2, 3}) {
        const auto make = [&] { MakePair(forks & 1, forks & 2); };
        make();
        const auto before = StateOfBoth();
        Exchange();
        const auto after = StateOfBoth();
        ASSERT_NE(before, after);
        bool hasBegun = false;
        int step = 1;
        for (; step < kMostSteps; ++step) {
            make();
            if (!IsKilledAt(step, [&] { Exchange(); })) break;
            const auto state = StateOfBoth();
            hasBegun = hasBegun || state == after;
            ASSERT_EQ(state, hasBegun ? after : before) << forks << ' ' << step;
        }
        EXPECT_TRUE(hasBegun);
        EXPECT_GT(step, 4);
        ASSERT_LT(step, kMostSteps);
        EXPECT_EQ(Entries(2), (std::vector<std::string>{"One", "Two"}));
    }
}

TEST_F(StepsTest, AnExchangeIsFinishedThoughThoseWhoFinishItAreKilledToo) {
    MakePair(true, true);
    const auto before = StateOfBoth();
    Exchange();
    const auto after = StateOfBoth();
    for (int step = 1; step < kMostSteps; ++step) {
        MakePair(true, true);
        if (!IsKilledAt(step, [&] { Exchange(); })) break;
        for (const int next : {1, 2, 3, 5, 8}) IsKilledAt(next, [&] { Info(2, "One"); });
        const auto state = StateOfBoth();
        ASSERT_TRUE(state == before || state == after) << step << ' ' << state;
    }
}

TEST_F(StepsTest, AnUpdateKilledAtAnyOfThemLeavesAFolderThatCanBeDeleted) {
    int step = 1;
    for (bool isKilled = true; isKilled && step < kMostSteps; ++step) {
        MakeFolder("Disk/Folder");
        const auto path = Write("Disk/Folder/Data", "");
        FSRef ref;
        ASSERT_EQ(RefOf(path, &ref), noErr);
        ASSERT_EQ(FSCreateResourceFork(&ref, 0, nullptr, 0), noErr);
        isKilled = IsKilledAt(step, [&] {
            ResFileRefNum number = -1;
            Handle handle = NewHandle(5000);
            FSOpenResourceFile(&ref, 0, nullptr, fsRdWrPerm, &number);
            AddResource(handle, 'TEXT', 128, nullptr);
            CloseResFile(number);
        });
        ResFileRefNum number = -1;
        ASSERT_EQ(RefOf(path, &ref), noErr);
        ASSERT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &number), noErr) << step;
        if (!isKilled) {
            EXPECT_EQ(Count1Resources('TEXT'), 1);
        }
        CloseResFile(number);
        ASSERT_EQ(HDelete(mVolume, 2, PString(":Folder:Data")), noErr);
        ASSERT_EQ(HDelete(mVolume, 2, PString("Folder")), noErr) << step;
    }
    EXPECT_GT(step, 3);
    EXPECT_LT(step, kMostSteps);
}

TEST_F(StepsTest, ACopyOnADiskWithoutNamelessFilesIsSeenWholeOrNotAtAll) {
    gDiskFaults.hasNoNamelessFiles = true;
    int step = 1;
    for (bool isKilled = true; isKilled && step < kMostSteps; ++step) {
        MakePair(true, false);
        const SInt32 folder = NumberOf(MakeFolder("Disk/Folder"));
        isKilled = IsKilledAt(step, [&] {
            const PString name("One");
            HParamBlockRec block{};
            block.copyParam.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
            block.copyParam.ioVRefNum = block.copyParam.ioDstVRefNum = mVolume;
            block.copyParam.ioDirID = 2;
            block.copyParam.ioNewDirID = folder;
            if (PBHCopyFileSync(&block) != noErr) _exit(1);
        });
        const auto names = Entries(folder);
        if (!isKilled || !names.empty()) {
            EXPECT_EQ(names, std::vector<std::string>{"One"});
            const auto info = Info(folder, "One").hFileInfo;
            EXPECT_EQ(+info.ioFlFndrInfo.fdType, UInt32('ONE '));
            EXPECT_EQ(+info.ioFlLgLen, 8);
            EXPECT_EQ(+info.ioFlRLgLen, 13);
            ASSERT_EQ(HDelete(mVolume, folder, PString("One")), noErr);
        }
        ASSERT_EQ(HDelete(mVolume, 2, PString("Folder")), noErr) << step;
    }
    EXPECT_GT(step, 3);
    EXPECT_LT(step, kMostSteps);
}

TEST_F(StepsTest, AMoveOnADiskWithoutLinksLeavesTheMetadataUnderEitherName) {
    gDiskFaults.hasNoLinks = true;
    int step = 1;
    for (bool isKilled = true; isKilled && step < kMostSteps; ++step) {
        MakePair(true, false);
        const SInt32 folder = NumberOf(MakeFolder("Disk/Folder"));
        isKilled = IsKilledAt(step, [&] {
            if (CatMove(mVolume, 2, PString("One"), folder, nullptr) != noErr) _exit(1);
        });
        const bool isMoved = Exists("Disk/Folder/One");
        ASSERT_NE(Exists("Disk/One"), isMoved) << step;
        const auto info = Info(isMoved ? folder : 2, "One").hFileInfo;
        ASSERT_EQ(+info.ioFlFndrInfo.fdType, UInt32('ONE ')) << step;
        ASSERT_EQ(+info.ioFlRLgLen, 13) << step;
        if (isMoved) {
            ASSERT_EQ(HDelete(mVolume, folder, PString("One")), noErr);
        }
        ASSERT_EQ(HDelete(mVolume, 2, PString("Folder")), noErr) << step;
    }
    EXPECT_GT(step, 3);
    EXPECT_LT(step, kMostSteps);
    EXPECT_FALSE(Exists("Disk/._One"));
}

TEST_F(StepsTest, AMoveThatCannotTakeTheCompanionAlongIsUndone) {
    gDiskFaults.hasNoLinks = true;
    const auto path = Write("Disk/File");
    const auto change = [](carbon::Metadata* ioMetadata) { ioMetadata->facts.comment = "kept"; };
    ASSERT_EQ(carbon::ChangeMetadata(path, change), noErr);
    // Too long for a companion's name, not for the file's own.
    EXPECT_EQ(carbon::MoveWithMetadata(path, Path("Disk/" + std::string(254, 'n'))), bdNamErr);
    carbon::Metadata metadata;
    ASSERT_EQ(carbon::ReadMetadata(path, &metadata), noErr);
    EXPECT_EQ(metadata.facts.comment, "kept");
    EXPECT_EQ(carbon::MoveWithMetadata(path, Path("Disk/Other")), noErr);
    ASSERT_EQ(carbon::ReadMetadata(Path("Disk/Other"), &metadata), noErr);
    EXPECT_EQ(metadata.facts.comment, "kept");
}

}  // namespace
