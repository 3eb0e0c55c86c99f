// `vantor send`, `get`, `set`, `launch` and `quit`, with the real recorder and a peer of the tests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/EventPeer.h"
#include "support/TemporaryHome.h"
#include "support/Vantor.h"

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;
using Json = nlohmann::ordered_json;

TemporaryHome gHome;

// A peer that answers, as a target on the command line.
struct Peer {
    Peer() { EXPECT_NE(server.Psn().lowLongOfPSN, 0u); }
    std::string Pid() const { return std::to_string(server.Pid()); }
    CommandResult Send(const std::string& inID, const std::string& inParameters,
                       std::vector<std::string> inOptions = {}) const {
        std::vector<std::string> words = {"send", Pid(), "Test", inID, inParameters};
        words.insert(words.end(), inOptions.begin(), inOptions.end());
        return Vantor(words);
    }
    EventPeer server = StartServer();
};

// The direct object of a reply in JSON.
Json Direct(const CommandResult& inResult) {
    EXPECT_EQ(inResult.exitCode, 0) << inResult.errors;
    const Json reply = Json::parse(inResult.output);
    for (const Json& parameter : reply["parameters"])
        if (parameter["key"] == "----") return parameter["value"];
    return {};
}

// The recorder, started by `vantor launch` and ended with the scope.
class Recorder : public testing::Test {
  protected:
    Recorder() {
        const auto result = Vantor({"launch", "Fv8k", "--json"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        mPid = Json::parse(result.output)["pid"];
    }
    ~Recorder() override {
        if (mPid > 0) kill(mPid, SIGKILL);
    }
    pid_t mPid = 0;
};

}  // namespace

TEST(SendCommand, PrintsTheReplyInTheSyntaxOfItsParameters) {
    const Peer peer;
    const auto result = peer.Send("echo", "'----':{ a: shor(3), b: [\"x\", yes] }");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output,
                StartsWith("'aevt'\\'ansr'{ '----':{ 'a   ':'shor'(3), 'b   ':[ \"x\", 'yes ' ] }, "
                           "&'addr':'psn '("));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST(SendCommand, LosesNothingInJson) {
    const Peer peer;
    const Json value = Direct(peer.Send(
        "echo",
        "'----':{ a:comp(-9223372036854775808), b:doub(\"2.5\"), c:doub($7FF8000000000001$), "
        "d:[1, [2]], e:'psn '($0000000000000001$), f:utxt(\"\xC3\xA9\"), g:type(pnam), "
        "h:bool($01$), i:true(), j:TEXT($410042$), '$00000001$':null(), k:long($01$) }",
        {"--json"}));
    EXPECT_EQ(value.dump(),
              R"({"type":"reco","fields":[)"
              R"({"key":"a   ","value":{"type":"comp","value":-9223372036854775808}},)"
              R"({"key":"b   ","value":{"type":"doub","value":2.5}},)"
              R"({"key":"c   ","value":{"type":"doub","hex":"7FF8000000000001"}},)"
              R"({"key":"d   ","value":{"type":"list","items":[{"type":"long","value":1},)"
              R"({"type":"list","items":[{"type":"long","value":2}]}]}},)"
              R"({"key":"e   ","value":{"type":"psn ","hex":"0000000000000001"}},)"
              "{\"key\":\"f   \",\"value\":{\"type\":\"utxt\",\"text\":\"\xC3\xA9\"}},"
              R"({"key":"g   ","value":{"type":"type","code":"pnam"}},)"
              R"({"key":"h   ","value":{"type":"bool","value":true}},)"
              R"({"key":"i   ","value":{"type":"true","hex":""}},)"
              R"({"key":"j   ","value":{"type":"TEXT","text":"A\u0000B"}},)"
              R"({"key":"$00000001$","value":{"type":"null","hex":""}},)"
              R"({"key":"k   ","value":{"type":"long","hex":"01"}}]})");
}

TEST(SendCommand, ShowsAMistakeWithAMarkUnderItsPlace) {
    const auto result = Vantor({"send", "Nope", "Test", "echo", "data: { caf\xC3\xA9 1 }"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors,
              "  data: { caf\xC3\xA9 1 }\n"
              "               ^\n"
              "vantor: At character 14: a ':' is expected between keyword and value [-1740]\n");
    EXPECT_THAT(result.output, IsEmpty());
}

TEST(SendCommand, MarksTheLineWithTheMistake) {
    const auto result = Vantor({"send", "Nope", "Test", "echo", "a: 1,\nb: $00$"});
    EXPECT_THAT(result.errors, StartsWith("  b: $00$\n     ^\nvantor: At character 10: "));
}

TEST(SendCommand, RefusesArgumentsThatNobodyGives) {
    for (const std::string text : {"a: @", "a: TEXT(@)", "a: alis(@@)"}) {
        const auto result = Vantor({"send", "Nope", "Test", "echo", text});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors, HasSubstr("write the value itself [-1740]"));
    }
    const Peer peer;
    EXPECT_EQ(Direct(peer.Send("echo", "'----':\"a@b\"", {"--json"}))["text"], "a@b");
}

TEST(SendCommand, TellsAnErrorInTheReplyAfterTheReply) {
    const Peer peer;
    const auto result = peer.Send("errn", "");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, StartsWith("'aevt'\\'ansr'{ 'errn':-1728, "));
    EXPECT_EQ(result.errors, "vantor: The program has no such object or property [-1728]\n");
    EXPECT_THAT(peer.Send("none", "").errors, EndsWith("not understand this event [-1708]\n"));
}

TEST(SendCommand, EndsTheWaitAfterTheTimeItWasGiven) {
    const Peer peer;
    const auto result = peer.Send("hold", "", {"--timeout", "0.2"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "vantor: The program did not answer in time [-1712]\n");
}

TEST(SendCommand, WithoutReplyPrintsNothing) {
    const Peer peer;
    const auto result = peer.Send("add1", "", {"--no-reply"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output + result.errors, IsEmpty());
    EXPECT_EQ(Direct(peer.Send("cnt?", "", {"--json"}))["value"], 1);
}

TEST(SendCommand, FindsTargetsByNameAndPath) {
    const Peer peer;
    for (const std::string& target :
         {std::string("EVENT_server"), ProgramFolder() + "/event_server"})
        EXPECT_EQ(Vantor({"send", target, "Test", "cnt?"}).exitCode, 0) << target;
}

TEST(SendCommand, SaysWhoIsNotRunning) {
    const auto result = Vantor({"send", "Nobody here", "core", "getd"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("'Nobody here'"));
    EXPECT_THAT(result.errors, EndsWith("[-600]\n"));
    EXPECT_EQ(Vantor({"send", "Nobody here", "cores", "getd"}).exitCode, 2);
}

TEST_F(Recorder, AnswersWhatIsAskedAndKeepsWhatIsSet) {
    EXPECT_THAT(Vantor({"get", "simM", "Fv8k"}).output, "'bool'($00$)\n");
    const auto set = Vantor({"set", "simM", "Fv8k", "true"});
    EXPECT_EQ(set.exitCode, 0) << set.errors;
    EXPECT_EQ(Vantor({"get", "simM", "Fv8k", "--json"}).output,
              "{\"type\":\"bool\",\"value\":true}\n");
}

TEST_F(Recorder, HasObjectsByNumberOrdinalAndName) {
    const auto named = Vantor({"set", "pnam", "of", "Disc", "first", "Calverin", "\"Photos\""});
    EXPECT_EQ(named.exitCode, 0) << named.errors;
    for (const char* which : {"1", "first", "last"})
        EXPECT_THAT(Vantor({"get", "pnam", "of", "Disc", which, "Fv8k", "--json"}).output,
                    HasSubstr("\"text\":\"Photos\""))
            << which;
    const auto none = Vantor({"get", "pnam", "of", "Disc", "7", "Fv8k"});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_THAT(none.errors, HasSubstr("[-1728]"));
}

TEST_F(Recorder, RefusesWordsThatNameNoObject) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"get"},
                                               {"get", "Fv8k"},
                                               {"get", "a", "of", "Fv8k"},
                                               {"get", "a", "b", "c", "Fv8k"},
                                               {"get", "toolong", "Fv8k"},
                                               {"set", "a", "Fv8k"},
                                               {"set", "a", "Fv8k", "[1"}})
        EXPECT_EQ(Vantor(words).exitCode, 2) << words.size();
}

TEST_F(Recorder, RunsAlreadyAndQuitsWhenAsked) {
    EXPECT_THAT(Vantor({"launch", "Calverin"}).output,
                MatchesRegex("Calverin \\(PID [0-9]+\\) runs\\.\n"));
    const auto quit = Vantor({"quit", "Fv8k"});
    EXPECT_EQ(quit.exitCode, 0) << quit.errors;
    EXPECT_THAT(quit.output, MatchesRegex("Calverin \\(PID [0-9]+\\) quits\\.\n"));
    EXPECT_EQ(Vantor({"quit", "Fv8k"}).exitCode, 1);
}

TEST(LaunchCommand, NamesWhatIsNoApplication) {
    const auto result = Vantor({"launch", "No such thing"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, EndsWith("[-10814]\n"));
    const auto none = Vantor({"launch", gHome.Root() / "none.app"});
    EXPECT_EQ(none.exitCode, 4);
    EXPECT_THAT(none.errors, EndsWith("[-43]\n"));
}

// Starts a watch and, once that has told of this peer, ends it by Ctrl-C.
CommandResult WatchUntil(const std::string& inOutput, std::vector<std::string> inOptions = {}) {
    CommandOptions options;
    options.interruptOnOutput = inOutput;
    inOptions.insert(inOptions.begin(), {"processes", "--watch"});
    return Vantor(inOptions, options);
}

TEST(ProcessesCommand, WatchesUntilItIsInterrupted) {
    const Peer peer;
    const auto result = WatchUntil("event_server");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(peer.Pid()));
}

TEST(ProcessesCommand, TellsOfProgramsThatComeAndGo) {
    std::atomic<bool> isOver = false;
    std::thread comings([&] {
        while (!isOver) {
            EventPeer peer = StartServer();
            EXPECT_NE(peer.Psn().lowLongOfPSN, 0u);
            for (int i = 0; i < 50 && !isOver; ++i) usleep(20'000);
        }
    });
    for (const std::string word : {"launched", "ended"}) {
        const auto result = WatchUntil("{\"event\":\"" + word, {"--json"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_THAT(result.output, HasSubstr("{\"event\":\"" + word + "\",\"number\":"));
        EXPECT_THAT(result.output, HasSubstr("\"name\":\"event_server\""));
    }
    isOver = true;
    comings.join();
}

TEST(MessageCommands, HelpShowsExamplesAndExitStatuses) {
    const auto send = Vantor({"send", "--help"});
    EXPECT_EQ(send.exitCode, 0);
    EXPECT_THAT(send.output, HasSubstr("vantor send Calverin core cnte"));
    EXPECT_THAT(Vantor({"get", "--help"}).output, HasSubstr("vantor get pnam of Driv last"));
}
