// `vantor monitor` beside programs that send each other events.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <future>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/EventPeer.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"
#include "support/Vantor.h"
#include "support/Watched.h"

namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;
using Json = nlohmann::json;

TemporaryHome gHome;

class MonitorCommand : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(mServer.Psn().lowLongOfPSN, 0u);
        ASSERT_EQ(GetCurrentProcess(&mSelf), noErr);
    }

    // Starts it; it is interrupted when it has written this.
    void Start(std::vector<std::string> inWords, const std::string& inLast) {
        inWords.insert(inWords.begin(), "monitor");
        mRunning = std::async(std::launch::async, [inWords, inLast] {
            CommandOptions options;
            options.interruptOnOutput = inLast;
            return Vantor(inWords, options);
        });
        ASSERT_TRUE(Eventually([] { return IsWatched(gHome); }));
    }
    CommandResult Result() {
        const CommandResult result = mRunning.get();
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_FALSE(IsWatched(gHome));
        return result;
    }
    static std::vector<Json> Lines(const std::string& inOutput) {
        std::vector<Json> lines;
        std::istringstream stream(inOutput);
        for (std::string line; std::getline(stream, line);) lines.push_back(Json::parse(line));
        return lines;
    }
    OSErr Ask(AEEventID inID, SInt32 inValue = 0, AESendMode inMode = kAEWaitReply) {
        OwnedDesc event, reply;
        MakeEvent(mServer.Psn(), inID, &event);
        PutLong(&event, keyDirectObject, inValue);
        return AESend(&event, &reply, inMode, kAENormalPriority, 600, nullptr, nullptr);
    }
    std::string Server() { return std::to_string(UInt32{mServer.Psn().lowLongOfPSN}); }

    EventPeer mServer = StartServer();
    ProcessSerialNumber mSelf;
    std::future<CommandResult> mRunning;
};

TEST_F(MonitorCommand, PairsWhatTwoOtherProgramsSayToEachOther) {
    Start({}, "#2 'Test'\\'echo' answered");
    EventPeer client("event_client", {Server(), "2"});
    EXPECT_EQ(client.Wait(), 0);
    const std::string output = Result().output;
    EXPECT_THAT(output, ContainsRegex("[0-9:.]+ #1 event_client \\([0-9]+\\) -> event_server \\(" +
                                      Server() + "\\)  'Test'.'echo' \\{ '----':0 \\}\n"));
    EXPECT_THAT(output, ContainsRegex("#1 'Test'.'echo' answered in [0-9.]+ ms  \\{ '----':0 \\}"));
    EXPECT_THAT(output, ContainsRegex("#2 'Test'.'echo' answered in [0-9.]+ ms  \\{ '----':1 \\}"));
}

TEST_F(MonitorCommand, TellsErrorsAndSendsWithoutAnswer) {
    Start({}, "#3 'Test'\\'die ' failed");
    EXPECT_EQ(Ask('fail'), noErr);
    EXPECT_EQ(Ask('add1', 0, kAENoReply), noErr);
    EXPECT_EQ(Ask('die '), connectionInvalid);
    const std::string output = Result().output;
    EXPECT_THAT(output, HasSubstr("#1 'Test'\\'fail' answered with error -10000 in "));
    EXPECT_THAT(output, HasSubstr("#2 'Test'\\'add1' sent in "));
    EXPECT_THAT(output, HasSubstr("#3 'Test'\\'die ' failed with error -609 in "));
}

TEST_F(MonitorCommand, JsonHoldsProcessesTimesAndParameters) {
    Start({"--json"}, "\"answered\"");
    EXPECT_EQ(Ask('echo', 77), noErr);
    const auto lines = Lines(Result().output);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["event"], "sent");
    EXPECT_EQ(lines[0]["sender"]["number"], UInt32{mSelf.lowLongOfPSN});
    EXPECT_EQ(lines[0]["target"]["name"], "event_server");
    EXPECT_EQ(lines[0]["class"], "Test");
    EXPECT_EQ(lines[0]["id"], "echo");
    EXPECT_EQ(lines[0]["reply"], "wait");
    const Json value = {{"key", "----"}, {"type", "long"}, {"text", "77"}};
    EXPECT_EQ(lines[0]["parameters"], Json::array({value}));
    EXPECT_EQ(lines[1]["number"], lines[0]["number"]);
    EXPECT_EQ(lines[1]["error"], 0);
    EXPECT_GT(lines[1]["milliseconds"], 0.0);
    EXPECT_EQ(lines[1]["parameters"], Json::array({value}));
}

TEST_F(MonitorCommand, ShowsOnlyWhatItIsAskedFor) {
    Start({"--class", "Test", "--id", "fail", "--process", "event_server"}, "answered");
    EXPECT_EQ(Ask('echo'), noErr);
    EXPECT_EQ(Ask('fail'), noErr);
    const std::string output = Result().output;
    EXPECT_THAT(output, Not(HasSubstr("echo")));
    EXPECT_THAT(output, HasSubstr("#1 'Test'\\'fail' answered"));
}

TEST_F(MonitorCommand, KnowsAProgramByItsNumberToo) {
    EventPeer other = StartServer();
    Start({"--process", std::to_string(UInt32{other.Psn().lowLongOfPSN})}, "answered");
    EXPECT_EQ(Ask('echo', 1), noErr);
    OwnedDesc event, reply;
    MakeEvent(other.Psn(), 'attr', &event);
    EXPECT_EQ(AESend(&event, &reply, kAEWaitReply, kAENormalPriority, 600, nullptr, nullptr),
              noErr);
    const std::string output = Result().output;
    EXPECT_THAT(output, Not(HasSubstr("echo")));
    EXPECT_THAT(output, HasSubstr("#1 'Test'\\'attr' answered"));
}

TEST_F(MonitorCommand, CodeThatIsTooLongIsRefusedWithTwo) {
    const auto result = Vantor({"monitor", "--class", "tests"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, HasSubstr("four characters"));
}

TEST_F(MonitorCommand, LongParameterIsShownByItsBeginning) {
    Start({}, "answered");
    OwnedDesc event, reply;
    MakeEvent(mServer.Psn(), 'size', &event);
    PutText(&event, keyDirectObject, std::string(5000, 'x'));
    PutText(&event, 'long', std::string(200'000, 'y'));
    EXPECT_EQ(AESend(&event, &reply, kAEWaitReply, kAENormalPriority, 600, nullptr, nullptr),
              noErr);
    const std::string output = Result().output;
    EXPECT_THAT(output, HasSubstr("'----':\"xxxx"));
    EXPECT_THAT(output, HasSubstr("'long':'TEXT', 200 KB"));
    EXPECT_LT(output.size(), 1000u);
}

}  // namespace
