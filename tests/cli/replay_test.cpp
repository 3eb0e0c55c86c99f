// `vantor monitor --capture` and `vantor replay`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fstream>
#include <future>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/DiscBytes.h"
#include "support/EventPeer.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"
#include "support/Vantor.h"
#include "support/Watched.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using Json = nlohmann::json;

TemporaryHome gHome;

std::string Contents(const fs::path& inFile) {
    std::ifstream file(inFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Reads files and folders, so that reading them for a disc changes no date any more, and lets the
// second in which they were made go by.
void LetAge(const fs::path& inFolder) {
    const std::time_t made = std::time(nullptr);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // past a tick of their clock
    for (const auto& item : fs::recursive_directory_iterator(inFolder)) {
        if (!item.is_regular_file()) continue;
        EXPECT_FALSE(Contents(item.path()).empty());
    }
    EXPECT_TRUE(Eventually([&] { return std::time(nullptr) > made + 1; }));
}

// Where two texts differ first, for people.
std::string FirstDifference(const std::string& inOne, const std::string& inOther) {
    const auto at = std::mismatch(inOne.begin(), inOne.end(), inOther.begin(), inOther.end());
    const auto byte = at.first - inOne.begin();
    return "block " + std::to_string(byte / 2048) + ", byte " + std::to_string(byte % 2048);
}

class Replay : public testing::Test {
  protected:
    void SetUp() override { fs::remove(mFile); }
    void TearDown() override { KillRecorder(); }

    // A monitor that captures to mFile, ready.
    void StartCapture(const std::vector<std::string>& inWords = {}) {
        std::vector<std::string> words = {"monitor", "--capture", mFile};
        words.insert(words.end(), inWords.begin(), inWords.end());
        mMonitor.emplace("vantor", words);
        ASSERT_TRUE(Eventually([] { return IsWatched(gHome); }));
    }
    // Ends it when the file holds that many records of that kind.
    void EndCapture(const std::string& inKind, size_t inCount, int inSignal = SIGINT) {
        EXPECT_TRUE(Eventually([&] { return Count(inKind) >= inCount; }));
        kill(mMonitor->Pid(), inSignal);
        EXPECT_EQ(mMonitor->Wait(), inSignal == SIGINT ? 0 : 128 + inSignal);
        mMonitor.reset();
    }
    size_t Count(const std::string& inKind) {
        const std::string bytes = Contents(mFile);
        size_t count = 0;
        for (size_t at = 0; (at = bytes.find("rcrd", at)) != std::string::npos; ++at)
            count += bytes.compare(at + 8, 4, inKind) == 0;
        return count;
    }
    static pid_t Recorder() {
        const auto processes = Vantor({"processes", "--json"});
        for (const auto& process : Json::parse(processes.output))
            if (process["signature"] == "Fv8k") return process["pid"];
        return 0;
    }
    static void KillRecorder() {
        if (const pid_t recorder = Recorder(); recorder > 0) kill(recorder, SIGKILL);
        EXPECT_TRUE(Eventually([] { return Recorder() == 0; }));
    }
    static OSErr Ask(EventPeer& ioServer, AEEventID inID, SInt32 inValue = 0) {
        OwnedDesc event, reply;
        MakeEvent(ioServer.Psn(), inID, &event);
        PutLong(&event, keyDirectObject, inValue);
        return AESend(&event, &reply, kAEWaitReply, kAENormalPriority, 600, nullptr, nullptr);
    }
    // A capture of 'echo', 'add1' and 'cnt?'.
    void CaptureThree() {
        EventPeer server = StartServer();
        ASSERT_NE(server.Psn().lowLongOfPSN, 0u);
        StartCapture();
        EXPECT_EQ(Ask(server, 'echo', 5), noErr);
        EXPECT_EQ(Ask(server, 'add1'), noErr);
        EXPECT_EQ(Ask(server, 'cnt?'), noErr);
        EndCapture("rply", 3);
    }
    static std::string NumberOf(EventPeer& ioServer) {
        return std::to_string(UInt32{ioServer.Psn().lowLongOfPSN});
    }

    const std::string mFile = gHome.Root() / "events";
    std::optional<EventPeer> mMonitor;
};

TEST_F(Replay, OfABurnWritesTheSameBytesWithAFreshRecorder) {
    const fs::path source = gHome.Root() / "source", image = gHome.Root() / "out.iso",
                   first = gHome.Root() / "first.iso";
    fs::create_directories(source / "folder");
    std::ofstream(source / "a file") << std::string(300'000, 'a');
    std::ofstream(source / "folder/another") << "contents";
    LetAge(source);
    ASSERT_EQ(Vantor({"mode", "simulation", "off"}).exitCode, 0);
    StartCapture({"--process", "Calverin"});
    const auto burn = Vantor({"burn", source, "--to", image});
    ASSERT_EQ(burn.exitCode, 0) << burn.errors;
    EndCapture("rply", 5);
    KillRecorder();
    fs::rename(image, first);

    const auto replay = Vantor({"replay", mFile});
    EXPECT_EQ(replay.exitCode, 0) << replay.errors;
    EXPECT_THAT(replay.output, HasSubstr(" events sent, "));
    ASSERT_TRUE(Eventually([&] { return fs::exists(image); }));
    size_t blanked = 0;
    const std::string then = WithoutMaking(Contents(first), &blanked);
    EXPECT_LT(blanked, 600u) << "of " << fs::file_size(first);
    const std::string now = WithoutMaking(Contents(image), &blanked);
    ASSERT_GT(then.size(), 300'000u);
    EXPECT_TRUE(now == then) << FirstDifference(now, then);
}

TEST_F(Replay, TellsOnlyWhereAnswersDiffer) {
    CaptureThree();
    EventPeer fresh = StartServer();
    const auto same = Vantor({"replay", mFile, "--to", NumberOf(fresh)});
    EXPECT_EQ(same.exitCode, 0) << same.errors;
    EXPECT_EQ(same.output, "3 events sent, 0 answered otherwise.\n");
    const auto other = Vantor({"replay", mFile, "--to", "event_server"});
    EXPECT_EQ(other.output,
              "#3 was answered { '----':1 }, now { '----':2 }\n"
              "3 events sent, 1 answered otherwise.\n");
    const auto json = Vantor({"replay", mFile, "--to", NumberOf(fresh), "--json"});
    EXPECT_THAT(json.output, HasSubstr("\"sent\":3,\"different\":1"));
}

TEST_F(Replay, KilledMonitorLeavesAFileThatCanBeReplayed) {
    EventPeer server = StartServer();
    StartCapture();
    EXPECT_EQ(Ask(server, 'echo', 5), noErr);
    EndCapture("rply", 1, SIGKILL);
    const auto replay = Vantor({"replay", mFile, "--to", NumberOf(server)});
    EXPECT_EQ(replay.output, "1 events sent, 0 answered otherwise.\n") << replay.errors;
}

TEST_F(Replay, SendsNothingOfAFileThatIsCutOffAnywhere) {
    CaptureThree();
    EventPeer fresh = StartServer();
    const std::string whole = Contents(mFile);
    const std::string cut = gHome.Root() / "cut";
    for (const size_t size : {whole.size() - 1, whole.size() - 150, size_t{20}, size_t{9}}) {
        std::ofstream(cut, std::ios::binary) << whole.substr(0, size);
        const auto result = Vantor({"replay", cut, "--to", NumberOf(fresh)});
        EXPECT_EQ(result.exitCode, 4);
        EXPECT_THAT(result.errors, HasSubstr("ends in the middle of"));
    }
    const auto whole3 = Vantor({"replay", mFile, "--to", NumberOf(fresh)});
    EXPECT_EQ(whole3.output, "3 events sent, 0 answered otherwise.\n");
}

TEST_F(Replay, FileOfAnotherKindOrVersionIsRefused) {
    std::ofstream(mFile) << std::string(200, 'x');
    EXPECT_THAT(Vantor({"replay", mFile}).errors, HasSubstr("does not begin like one"));
    std::ofstream(mFile, std::ios::binary) << std::string("VantorEv\0\0\0\2\0\0\0\0", 16);
    EXPECT_THAT(Vantor({"replay", mFile}).errors, HasSubstr("its version is 2"));
    const auto missing = Vantor({"replay", mFile + ".missing"});
    EXPECT_EQ(missing.exitCode, 4);
}

TEST_F(Replay, CaptureNeverOverwritesAFile) {
    std::ofstream(mFile) << "precious";
    const auto result = Vantor({"monitor", "--capture", mFile});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("is there already"));
    EXPECT_EQ(Contents(mFile), "precious");
    EXPECT_EQ(Vantor({"monitor", "--capture", mFile + "/none"}).exitCode, 4);
}

TEST_F(Replay, TargetThatDoesNotRunIsNamed) {
    CaptureThree();
    const auto result = Vantor({"replay", mFile, "--to", "nobody"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors,
                HasSubstr("No running program has the signature, name, PID or path 'nobody'"));
    EXPECT_EQ(Vantor({"replay", mFile}).exitCode, 2);
}

}  // namespace
