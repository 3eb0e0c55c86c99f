// The process table among real processes: order, liveness, damage.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include "platform/process_manager/Peer.h"
#include "process_manager/own_process.h"
#include "process_manager/process_table.h"
#include "process_manager/slots.h"
#include "process_manager/table_file.h"
#include "support/TemporaryHome.h"

namespace {

TemporaryHome sHome;

std::filesystem::path TablePath() {
    return sHome.Root() / "run/vantor" / carbon::kTableName;
}

std::vector<UInt32> ListedNumbers() {
    std::vector<UInt32> numbers;
    ProcessSerialNumber psn = {0, kNoProcess};
    while (GetNextProcess(&psn) == noErr) numbers.push_back(Low(psn));
    return numbers;
}

bool IsListed(const ProcessSerialNumber& inPsn) {
    const auto numbers = ListedNumbers();
    return std::count(numbers.begin(), numbers.end(), Low(inPsn)) == 1;
}

UInt32 OwnNumber() {
    ProcessSerialNumber psn = {};
    EXPECT_EQ(GetCurrentProcess(&psn), noErr);
    return Low(psn);
}

TEST(ProcessTable, ListsProcessesInTheOrderOfTheirLaunch) {
    const UInt32 own = OwnNumber();
    const Peer first, second, third;
    const auto numbers = ListedNumbers();
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    const std::vector<UInt32> expected = {own, Low(first.Psn()), Low(second.Psn()),
                                          Low(third.Psn())};
    EXPECT_EQ(numbers, expected);
}

TEST(ProcessTable, TwoProcessesSeeEachOther) {
    OwnNumber();
    Peer peer;
    EXPECT_EQ(peer.Ask('c'), 2);
    EXPECT_TRUE(IsListed(peer.Psn()));
}

TEST(ProcessTable, KilledProcessIsGoneBeforeItsParentAsksForIt) {
    OwnNumber();
    Peer peer;
    peer.Kill();
    EXPECT_FALSE(IsListed(peer.Psn()));
    EXPECT_FALSE(carbon::FindProcess(peer.Psn()));
}

TEST(ProcessTable, OrderlyEndRemovesTheEntry) {
    OwnNumber();
    Peer peer;
    peer.Quit();
    EXPECT_FALSE(IsListed(peer.Psn()));
}

TEST(ProcessTable, NumbersAreNeverUsedAgain) {
    OwnNumber();
    UInt32 last = 0;
    for (int round = 0; round < 5; ++round) {
        Peer peer;
        EXPECT_GT(Low(peer.Psn()), last);
        last = Low(peer.Psn());
        round % 2 == 0 ? peer.Kill() : peer.Quit();
    }
}

TEST(ProcessTable, EnumerationGoesOnBehindAProcessThatHasEndedMeanwhile) {
    OwnNumber();
    Peer first;
    const Peer second;
    ProcessSerialNumber psn = first.Psn();
    first.Kill();
    ASSERT_EQ(GetNextProcess(&psn), noErr);
    EXPECT_EQ(Low(psn), Low(second.Psn()));
}

TEST(ProcessTable, EndOfTheListIsNoProcessAndProcNotFound) {
    ProcessSerialNumber psn = {0, OwnNumber()};
    EXPECT_EQ(GetNextProcess(&psn), procNotFound);
    EXPECT_EQ(UInt32(psn.highLongOfPSN), 0u);
    EXPECT_EQ(Low(psn), UInt32(kNoProcess));
}

TEST(ProcessTable, NumberNeverGivenOutIsAParameterError) {
    for (const UInt32 low : {UInt32(kSystemProcess), OwnNumber() + 100000, 0xFFFFFFFFu}) {
        ProcessSerialNumber psn = {0, low};
        EXPECT_EQ(GetNextProcess(&psn), paramErr) << low;
    }
    ProcessSerialNumber psn = {1, OwnNumber()};
    EXPECT_EQ(GetNextProcess(&psn), paramErr);
}

TEST(ProcessTable, ForkedChildIsAProcessOfItsOwn) {
    const UInt32 own = OwnNumber();
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        ProcessSerialNumber psn = {};
        GetCurrentProcess(&psn);
        const bool written = write(pipes[1], &psn, sizeof psn) == sizeof psn;
        _exit(written && IsListed({0, own}) && IsListed(psn) ? 0 : 1);
    }
    ProcessSerialNumber psn = {};
    ASSERT_EQ(read(pipes[0], &psn, sizeof psn), ssize_t(sizeof psn));
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_GT(Low(psn), own);
    EXPECT_FALSE(IsListed(psn));
    EXPECT_TRUE(IsListed({0, own}));
}

TEST(ProcessTable, ProcessOutlivesTheThreadThatRegisteredIt) {
    OwnNumber();
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        ProcessSerialNumber psn = {};
        std::thread([&] { GetCurrentProcess(&psn); }).join();
        if (write(pipes[1], &psn, sizeof psn) == sizeof psn) pause();
        _exit(1);
    }
    ProcessSerialNumber psn = {};
    ASSERT_EQ(read(pipes[0], &psn, sizeof psn), ssize_t(sizeof psn));
    EXPECT_TRUE(IsListed(psn));
    EXPECT_TRUE(IsListed(psn));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_FALSE(IsListed(psn));
}

ino_t TableInode() {
    struct stat facts = {};
    stat(TablePath().c_str(), &facts);
    return facts.st_ino;
}

// Which processes have lost the thread that held their entry, as the file has it.
bool HasLostItsOwner(UInt32 inNumber) {
    const auto layout = std::make_unique<carbon::TableLayout>();
    std::ifstream file(TablePath(), std::ios::binary);
    file.read(reinterpret_cast<char*>(layout.get()), sizeof *layout);
    for (const carbon::Slot& slot : layout->slots) {
        if (slot.number == inNumber) return slot.ownerLost != 0;
    }
    ADD_FAILURE() << "no entry " << inNumber;
    return false;
}

TEST(ProcessTable, NextCallHoldsTheEntryAgainThatAnEndedThreadHeld) {
    OwnNumber();
    int answers[2], questions[2];
    ASSERT_EQ(pipe(answers), 0);
    ASSERT_EQ(pipe(questions), 0);
    const pid_t child = fork();
    if (child == 0) {
        UInt32 number = 0;
        std::thread([&] { number = OwnNumber(); }).join();
        for (char go; write(answers[1], &number, sizeof number) == sizeof number;)
            if (read(questions[0], &go, 1) == 1) ListedNumbers();
        _exit(1);
    }
    UInt32 number = 0;
    ASSERT_EQ(read(answers[0], &number, sizeof number), ssize_t(sizeof number));
    EXPECT_TRUE(IsListed({0, number}));
    EXPECT_TRUE(HasLostItsOwner(number));
    ASSERT_EQ(write(questions[1], "g", 1), 1);
    ASSERT_EQ(read(answers[0], &number, sizeof number), ssize_t(sizeof number));
    EXPECT_FALSE(HasLostItsOwner(number));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_FALSE(IsListed({0, number}));
}

TEST(ProcessTable, ProgramThatCallsUpAnotherInItsPlaceIsGone) {
    OwnNumber();
    Peer peer;
    const ProcessSerialNumber psn = peer.Psn();
    ASSERT_TRUE(IsListed(psn));
    EXPECT_EQ(peer.Ask('e'), 77);  // said by the other program
    EXPECT_FALSE(IsListed(psn));
}

TEST(ProcessTable, ProgramThatCallsUpItselfIsANewProcess) {
    OwnNumber();
    Peer peer;
    const int again = peer.Ask('r');
    EXPECT_GT(UInt32(again), Low(peer.Psn()));
    EXPECT_FALSE(IsListed(peer.Psn()));
    EXPECT_EQ(peer.Ask('c'), 2);
}

TEST(ProcessTable, KilledAtAnyInstantOfItsRegistrationLeavesASoundTable) {
    const UInt32 own = OwnNumber();
    const ino_t before = TableInode();
    for (int round = 0; round < 200; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            OwnNumber();
            pause();
        }
        for (int yielded = 0; yielded < round; ++yielded) sched_yield();
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    EXPECT_EQ(ListedNumbers(), std::vector<UInt32>{own});
    Peer peer;  // checks the whole file before it uses it
    EXPECT_EQ(peer.Ask('c'), 2);
    EXPECT_EQ(TableInode(), before);
}

TEST(ProcessTable, ManyProcessesRegisteringAtOnceGetDifferentNumbers) {
    OwnNumber();
    constexpr int kMany = 128;
    int start[2], answers[2];
    ASSERT_EQ(pipe(start), 0);
    ASSERT_EQ(pipe(answers), 0);
    std::vector<pid_t> children;
    for (int each = 0; each < kMany; ++each) {
        children.push_back(fork());
        if (children.back() != 0) continue;
        char go;
        close(start[1]);
        if (read(start[0], &go, 1) != 0) _exit(1);  // all begin when the pipe closes
        const UInt32 number = OwnNumber();
        _exit(write(answers[1], &number, sizeof number) == sizeof number ? pause() : 1);
    }
    close(start[1]);
    std::vector<UInt32> numbers(kMany);
    for (UInt32& number : numbers)
        ASSERT_EQ(read(answers[0], &number, sizeof number), ssize_t(sizeof number));
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(std::unique(numbers.begin(), numbers.end()), numbers.end());
    EXPECT_EQ(ListedNumbers().size(), std::size_t(kMany) + 1);
    for (const pid_t child : children) kill(child, SIGKILL);
    for (const pid_t child : children) waitpid(child, nullptr, 0);
    EXPECT_EQ(ListedNumbers().size(), 1u);
}

void ExpectRebuiltAround(Peer& ioPeer) {
    const UInt32 own = OwnNumber();
    EXPECT_TRUE(IsListed({0, own}));
    EXPECT_EQ(ioPeer.Ask('c'), 2);
    EXPECT_TRUE(IsListed(ioPeer.Psn()));
    EXPECT_EQ(OwnNumber(), own);
    const Peer later;
    EXPECT_GT(Low(later.Psn()), std::max(own, Low(ioPeer.Psn())));
    EXPECT_EQ(ioPeer.Ask('c'), 3);
}

TEST(ProcessTable, TruncatedFileIsSetAsideAndRebuilt) {
    OwnNumber();
    Peer peer;
    std::filesystem::resize_file(TablePath(), 100);
    ExpectRebuiltAround(peer);
    EXPECT_TRUE(std::filesystem::exists(TablePath().string() + ".damaged"));
}

// Between the question whether the file is whole and the reading of it.
TEST(ProcessTable, FileThatIsTruncatedUnderAReaderHasNoEntriesForIt) {
    const UInt32 own = OwnNumber();
    carbon::TableFile* table = nullptr;
    ASSERT_EQ(carbon::CurrentTable(&table), noErr);
    std::filesystem::resize_file(TablePath(), 0);
    EXPECT_EQ((*table)->header.slotsUsed.load(), 0u);
    EXPECT_EQ(carbon::FindLivingSlot(*table, own), nullptr);
    EXPECT_FALSE(table->IsCurrent());
    EXPECT_TRUE(IsListed({0, own})) << "in the new table";
}

TEST(ProcessTable, OverwrittenFileIsSetAsideAndRebuilt) {
    OwnNumber();
    Peer peer;
    std::fstream(TablePath(), std::ios::in | std::ios::out | std::ios::binary) << "garbage garbage";
    ExpectRebuiltAround(peer);
}

TEST(ProcessTable, RemovedFileIsReplaced) {
    OwnNumber();
    Peer peer;
    std::filesystem::remove(TablePath());
    ExpectRebuiltAround(peer);
}

TEST(ProcessTable, GarbageAmongTheEntriesIsNoticedByTheNextProgram) {
    OwnNumber();
    {
        std::fstream file(TablePath(), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(offsetof(carbon::TableLayout, slots) + 900 * sizeof(carbon::Slot));
        file << std::string(sizeof(carbon::Slot), '#');
    }
    Peer peer;
    ExpectRebuiltAround(peer);
}

}  // namespace
