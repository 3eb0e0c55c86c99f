// Names beside codes and in place of them, in what `vantor` shows of the recorder and of a program
// that brings a scripting definition.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>

#include <chrono>
#include <fstream>
#include <future>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/EventPeer.h"
#include "support/TemporaryHome.h"
#include "support/Vantor.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;
using Json = nlohmann::ordered_json;

TemporaryHome gHome;

constexpr const char* kDefinition =
    "<dictionary>\n"
    "<suite name='Peer Suite' code='Test'>\n"
    "<command name='say again' code='Testecho'>"
    "<parameter name='loudly' code='loud' type='boolean'/></command>\n"
    "<command name='be silent' code='Testnone'/>\n"
    "<class name='page' code='Page'><property name='title' code='titl' type='text'/></class>\n"
    "<enumeration name='mood' code='mood'><enumerator name='glad' code='gla1'/></enumeration>\n"
    "</suite></dictionary>\n";

// An application named Peer around the server of the event tests.
class Peer : public testing::Test {
  protected:
    Peer() {
        fs::create_directories(mContents / "Linux");
        fs::create_directories(mContents / "Resources");
        fs::create_directory_symlink(fs::path(ProgramFolder()).parent_path() / "lib",
                                     mContents / "lib");
        fs::copy_file(ProgramFolder() + "/event_server", mContents / "Linux/run");
        WriteInfo("Peer.sdef");
        Write("Resources/Peer.sdef", kDefinition);
    }
    ~Peer() override {
        if (mPid > 0) kill(mPid, SIGKILL);
        fs::remove_all(mContents.parent_path());
    }
    void WriteInfo(const std::string& inDefinition) {
        Write("Info.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
              "<key>CFBundleExecutable</key><string>run</string>"
              "<key>CFBundleName</key><string>Peer</string>"
              "<key>CFBundlePackageType</key><string>APPL</string>"
              "<key>CFBundleSignature</key><string>Peer</string>"
              "<key>CFBundleVersion</key><string>1.0</string>"
              "<key>OSAScriptingDefinition</key><string>" +
                  inDefinition + "</string></dict></plist>");
    }
    void Write(const std::string& inFile, const std::string& inText) {
        std::ofstream(mContents / inFile) << inText;
    }
    void Launch() {
        const auto result = Vantor({"launch", "Peer", "--json"});
        ASSERT_EQ(result.exitCode, 0) << result.errors << result.output;
        mPid = Json::parse(result.output)["pid"];
    }

    const fs::path mContents = gHome.Root() / "data/vantor/Applications/Peer.app/Contents";
    pid_t mPid = 0;
};

class NamedRecorder : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        const auto result = Vantor({"launch", "Calverin", "--json"});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        sPid = Json::parse(result.output)["pid"];
    }
    static void TearDownTestSuite() {
        if (sPid > 0) kill(sPid, SIGKILL);
    }
    static inline pid_t sPid = 0;
};

void ExpectRefusal(const std::vector<std::string>& inWords, const std::string& inSentence) {
    const auto result = Vantor(inWords);
    EXPECT_EQ(result.exitCode, 2) << inSentence;
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr(inSentence));
}

TEST_F(NamedRecorder, IsAskedByNamesAndAnswersWithThem) {
    EXPECT_EQ(Vantor({"get", "phase", "of", "disc", "1", "Calverin"}).output, "'idle'<idle>\n");
    EXPECT_EQ(Vantor({"get", "status code", "of", "disc", "first", "Calverin"}).output, "0\n");
    EXPECT_EQ(Vantor({"get", "status", "code", "of", "disc", "1", "Fv8k"}).output, "0\n");
    EXPECT_EQ(Vantor({"get", "Kind", "of", "Drive", "last", "Calverin", "--json"}).output,
              "{\"type\":\"enum\",\"code\":\"imag\",\"name\":\"image drive\"}\n");
}

TEST_F(NamedRecorder, IsChangedByNames) {
    const auto set = Vantor({"set", "name", "of", "disc", "1", "Calverin", "\"Photos\""});
    EXPECT_EQ(set.exitCode, 0) << set.errors;
    EXPECT_EQ(Vantor({"get", "pnam", "of", "Disc", "1", "Fv8k"}).output, "\"Photos\"\n");
}

TEST_F(NamedRecorder, NoNamesIsThePlainSyntax) {
    EXPECT_EQ(Vantor({"get", "phase", "of", "disc", "1", "Calverin", "--no-names"}).output,
              "'idle'\n");
}

TEST_F(NamedRecorder, QuotedCodeIsNoName) {
    const auto result = Vantor({"get", "'name'", "of", "disc", "1", "Calverin"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("no such object or property [-1728]"));
}

TEST_F(NamedRecorder, TakesEventsAndParametersByName) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"core", "cnte", "kocl:type(Driv)"},
                                               {"count", "each: type(drive)"},
                                               {"<count>", "<each>: type(<drive>)"}}) {
        std::vector<std::string> all = {"send", "Calverin"};
        all.insert(all.end(), words.begin(), words.end());
        const auto result = Vantor(all);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_THAT(result.output, StartsWith("'aevt'\\'ansr'{ '----':1, "));
    }
    EXPECT_EQ(Vantor({"send", "Calverin", "end", "session"}).exitCode, 0);
}

TEST_F(NamedRecorder, UnknownNamesAreRefusedWithNearOnes) {
    ExpectRefusal(
        {"get", "staus code", "of", "disc", "1", "Calverin"},
        "vantor: Calverin has no property called 'staus code'; it has 'status code' [-50]\n");
    ExpectRefusal({"send", "Calverin", "ejct disc"}, "no event called 'ejct disc'");
    ExpectRefusal({"send", "Calverin", "count", "each: type(<driev>)"},
                  "  each: type(<driev>)\n"
                  "             ^\n"
                  "vantor: At character 12: Calverin has no value called 'driev'; it has 'drive'");
    ExpectRefusal({"send", "Calverin", "write", "asynchronosly: true()"},
                  "it has 'asynchronously'");
}

TEST_F(NamedRecorder, DictionaryOfWhatDoesNotRunServesToo) {
    ExpectRefusal({"get", "phase", "of", "disc", "1", "Nobody"}, "no application 'Nobody'");
    ExpectRefusal({"send", "Nobody", "do it"}, "'do it' is no code");
}

TEST_F(Peer, NamesOfItsScriptingDefinitionStandBesideItsCodes) {
    Launch();
    const auto result =
        Vantor({"send", "Peer", "say again", "'----': Page { title: \"x\", a: glad }"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output,
                StartsWith("'aevt'\\'ansr'{ '----':'Page'<page>{ 'titl'<title>:\"x\", "
                           "'a   ':'gla1'<glad> }, "));
    const size_t begin = result.output.find("'----'"), end = result.output.find(", &'addr'");
    const std::string shown = result.output.substr(begin, end - begin);
    const auto again = Vantor({"send", "Peer", "say again", shown});
    EXPECT_EQ(again.exitCode, 0) << shown << again.errors;
    EXPECT_THAT(again.output, StartsWith(result.output.substr(0, 60)));
}

TEST_F(Peer, JsonHasNamesInMembersOfTheirOwn) {
    Launch();
    const auto result =
        Vantor({"send", "Peer", "Test", "echo", "'----': Page { titl: \"x\", a: gla1 }", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(Json::parse(result.output)["parameters"][0]["value"].dump(),
              R"({"type":"Page","typeName":"page","fields":[)"
              R"({"key":"titl","name":"title","value":{"type":"TEXT","text":"x"}},)"
              R"({"key":"a   ","value":{"type":"enum","code":"gla1","name":"glad"}}]})");
}

// Runs a monitor until it has shown this, while the peer is asked again and again.
CommandResult Monitor(const std::vector<std::string>& inOptions, const std::string& inLast) {
    std::vector<std::string> words = {"monitor", "--process", "Peer"};
    words.insert(words.end(), inOptions.begin(), inOptions.end());
    CommandOptions options;
    options.interruptOnOutput = inLast;
    auto running = std::async(std::launch::async, [&] { return Vantor(words, options); });
    while (running.wait_for(std::chrono::milliseconds(50)) != std::future_status::ready) {
        Vantor({"send", "Peer", "Test", "none"});
        Vantor({"send", "Peer", "Test", "echo", "'----':gla1, loud:true()"});
    }
    return running.get();
}

TEST_F(Peer, MonitorNamesEventsParametersAndValues) {
    Launch();
    const auto result = Monitor({}, "'echo'<say again> answered");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("'Test'\\'echo'<say again> { '----':'gla1'<glad>, "
                                         "'loud'<loudly>:'true'() }"));
    EXPECT_THAT(result.output, HasSubstr("ms  { '----':'gla1'<glad> }"));
}

TEST_F(Peer, MonitorShowsOnlyEventsOfAName) {
    Launch();
    const auto result = Monitor({"--name", "Say Again", "--json"}, "\"answered\"");
    EXPECT_THAT(result.output, Not(HasSubstr("be silent")));
    const Json sent = Json::parse(result.output.substr(0, result.output.find('\n')));
    EXPECT_EQ(sent["id"], "echo");
    EXPECT_EQ(sent["name"], "say again");
    EXPECT_EQ(sent["parameters"][0].dump(),
              R"({"key":"----","type":"enum","text":"'gla1'","named":"'gla1'<glad>"})");
    EXPECT_EQ(sent["parameters"][1]["name"], "loudly");
}

TEST_F(Peer, DamagedDefinitionIsToldAndItsCodesStillServe) {
    Write("Resources/Peer.sdef", "<dictionary>\n<suite>\n</dictionary>");
    Launch();
    const auto result = Vantor({"send", "Peer", "Test", "echo", "'----':gla1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors,
                StartsWith("vantor: the names of Peer are not known: Peer.sdef:3: "));
    EXPECT_THAT(result.output, StartsWith("'aevt'\\'ansr'{ '----':'gla1', "));
    const auto shown = Vantor({"dictionary", "Peer"});
    EXPECT_EQ(shown.exitCode, 1);
    EXPECT_THAT(shown.errors, MatchesRegex("vantor: Peer\\.sdef:3: [^\n]*\\[-1702\\]\n"));
}

TEST_F(Peer, DamagedResourcesAreToldAndItsCodesStillServe) {
    const std::string text = gHome.Root() / "text";
    std::ofstream(text) << "resource 'aete' 0\nbyte 1 0\nshort 0 0 1\nbyte 200\n";
    const auto made = RunCommand(
        {ProgramFolder() + "/compile_resources", text, mContents / "Resources/Peer.rsrc"});
    ASSERT_EQ(made.exitCode, 0) << made.errors;
    Launch();
    const auto result = Vantor({"send", "Peer", "Test", "echo", "'----':gla1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("the names of Peer are not known: The application's"));
    EXPECT_THAT(result.output, StartsWith("'aevt'\\'ansr'{ '----':'gla1', "));
    ExpectRefusal({"send", "Peer", "say again"}, "Peer's dictionary cannot be read");
}

TEST_F(Peer, DefinitionIsNamedWithOrWithoutExtension) {
    const auto with = Vantor({"dictionary", "Peer"});
    EXPECT_EQ(with.exitCode, 0) << with.errors;
    EXPECT_THAT(with.output, HasSubstr("say again  event 'Test' 'echo'"));
    EXPECT_THAT(with.output, HasSubstr("mood  enumeration 'mood'"));
    WriteInfo("Peer");
    EXPECT_EQ(Vantor({"dictionary", "Peer"}).output, with.output);
    EXPECT_EQ(Vantor({"dictionary", mContents / "Resources/Peer.sdef"}).output, with.output);
}

TEST_F(Peer, DefinitionOutsideOfTheBundleIsRefused) {
    fs::copy_file(mContents / "Resources/Peer.sdef", mContents / "Peer.sdef");
    WriteInfo("../Peer.sdef");
    const auto result = Vantor({"dictionary", "Peer"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("elsewhere [-1702]"));
    WriteInfo("Nothing");
    EXPECT_EQ(Vantor({"dictionary", "Peer"}).exitCode, 4);
}

TEST_F(Peer, IncludesStayInTheFolder) {
    Write("Resources/more.sdef", kDefinition);
    Write("secret.sdef", kDefinition);
    Write("Resources/Peer.sdef",
          "<dictionary><include href='more.sdef'/><include href='../secret.sdef'/>"
          "<include href='/dev/zero'/></dictionary>");
    const auto result = Vantor({"dictionary", "Peer", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(Json::parse(result.output).size(), 1u);
    EXPECT_THAT(result.errors, HasSubstr("'../secret.sdef' is not among the application's files"));
    EXPECT_THAT(result.errors, HasSubstr("'/dev/zero' is not among"));
}

TEST_F(Peer, ItsOwnResourcesComeBeforeItsDefinition) {
    const std::string text = gHome.Root() / "text";
    std::ofstream(text) << "resource 'aete' 0\nbyte 1 0\nshort 0 0\nlist\n"
                           "suite \"By resource\" \"\" 'SUIT' 1 1\nshort 0 0 0 0\nend\n";
    const auto made = RunCommand(
        {ProgramFolder() + "/compile_resources", text, mContents / "Resources/Peer.rsrc"});
    ASSERT_EQ(made.exitCode, 0) << made.errors;
    const auto result = Vantor({"dictionary", "Peer"});
    EXPECT_THAT(result.output, HasSubstr("By resource"));
    EXPECT_THAT(result.output, Not(HasSubstr("say again")));
}

TEST_F(Peer, NamesCannotFoolTheTerminal) {
    Write("Resources/Peer.sdef",
          "<dictionary><suite name='a\xC2\x9B"
          "31m' code='Test'><command name='b&#x85;c' "
          "code='Testecho' description='d\xC2\x9B'/></suite></dictionary>");
    const auto result = Vantor({"dictionary", "Peer"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("a?31m  suite 'Test'\n"));
    EXPECT_THAT(result.output, HasSubstr("b?c  event"));
    EXPECT_THAT(result.output, Not(HasSubstr("\xC2\x9B")));
}

}  // namespace
