// Thousands of specifiers that nobody would write, put to the running recorder.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <thread>

#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "vantor/api/Vantor.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/process/MoreProc.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

TemporaryHome gHome;

constexpr int kEvents = 2000;
constexpr SInt32 kPatience = 30 * 60;  // ticks: an event that takes so long is a hang

// Writes objects in the text that AEBuildDesc reads: mostly such as there are, with something wrong
// now and then at every place.
class Imagination {
  public:
    explicit Imagination(unsigned inSeed) : mRandom(inSeed) {}

    bool Seldom() { return Below(8) == 0; }
    std::string Object(int inDepth) {
        if (inDepth == 0 || Seldom()) return Seldom() ? Value(inDepth) : "null()";
        const std::string form = Code(kForms);
        const bool isProperty = form == "'prop'";
        Texts keys = {"want:type(" + (isProperty && !Seldom() ? "'prop'" : Code(kClasses)) + ")",
                      "form:" + form, "seld:" + Key(form, inDepth - 1),
                      "from:" + Container(inDepth - 1)};
        if (Seldom()) keys.erase(keys.begin() + Below(4));
        if (Seldom()) keys.push_back(keys[0]);
        return Record("obj ", keys);
    }
    std::string Value(int inDepth) {
        switch (Below(inDepth > 0 ? 12 : 8)) {
            case 0:
                return One(kNumbers);
            case 1:
                return One(kNames);
            case 2:
                return Code(kProperties);
            case 3:
                return "abso(" + Code(kOrdinals) + ")";
            case 4:
                return One(kEmpty);
            case 5:
                return Code(kClasses) + "($000000017072$)";
            case 6:
                return "prop($706E616D44726976$)";
            case 7:
                return "doub($7FF8000000000000$)";
            case 8:
                return "[" + Value(inDepth - 1) + ", " + Object(inDepth - 1) + "]";
            case 9:
                return Record(One({"reco", "rang", "cmpd", "logi", "whos"}),
                              {"star:" + Value(inDepth - 1), "term:" + Object(inDepth - 1)});
            case 10:
                return Test(inDepth - 1);
            default:
                return Object(inDepth - 1);
        }
    }

  private:
    static inline const Texts kForms = {"indx", "indx", "name", "ID  ", "prop", "prop", "prop",
                                        "rang", "test", "test", "whos", "rele", "????"};
    static inline const Texts kClasses = {"Driv", "Driv", "Driv", "Disc", "Disc", "capp",
                                          "cobj", "Cake", "****", "null", "prop"};
    static inline const Texts kProperties = {"pnam", "ID  ", "mInf", "spac", "dKnd", "sCod",
                                             "sTxt", "vers", "pcls", "bTot", "rept", "what"};
    static inline const Texts kOrdinals = {"firs", "last", "midd", "any ", "all ", "next", "1st "};
    static inline const Texts kOperators = {
        "=   ", ">   ", ">=  ", "<   ", "<=  ", "bgwt", "ends", "cont", "!=  "};
    static inline const Texts kNumbers = {"0",  "1",          "2",           "3",
                                          "-1", "2147483647", "-2147483648", "127"};
    static inline const Texts kNames = {"\"alpha (image drive)\"", "\"alpha\"",  "\"\"",
                                        "utf8($E697A5$)",          "utxt($D8$)", "\"1\""};
    static inline const Texts kEmpty = {"exmn()", "ccnt()", "null()", "type($00$)", "TEXT()"};

    int Below(int inLimit) { return std::uniform_int_distribution<int>(0, inLimit - 1)(mRandom); }
    std::string One(const Texts& inTexts) { return inTexts[size_t(Below(int(inTexts.size())))]; }
    std::string Code(const Texts& inTexts) { return "'" + One(inTexts) + "'"; }
    static std::string Record(const std::string& inType, const Texts& inKeys) {
        std::string text;
        for (const std::string& key : inKeys) text += (text.empty() ? "" : ", ") + key;
        return "'" + inType + "'{" + text + "}";
    }

    std::string Key(const std::string& inForm, int inDepth) {
        if (Seldom()) return Value(inDepth);
        if (inForm == "'indx'")
            return Below(2) == 0 ? One(kNumbers) : "abso(" + Code(kOrdinals) + ")";
        if (inForm == "'prop'") return "type(" + Code(kProperties) + ")";
        if (inForm == "'rang'")
            return Record("rang", {"star:" + Bound(inDepth), "stop:" + Bound(inDepth)});
        if (inForm == "'test'") return Test(inDepth);
        if (inForm == "'whos'")
            return Record("whos", {"ktst:" + Test(inDepth), "kidx:" + Index(inDepth)});
        return One(kNames);
    }
    std::string Bound(int inDepth) {
        if (Below(2) == 0) return Object(inDepth);
        return Record("obj ",
                      {"want:type('Driv')", "form:'indx'", "seld:" + One(kNumbers), "from:ccnt()"});
    }
    std::string Index(int inDepth) {
        if (Below(3) != 0) return Value(inDepth);
        return Record("wrng", {"wstr:" + Value(0), "wstp:" + One(kNumbers)});
    }
    std::string Container(int inDepth) {
        if (Seldom()) return One(kEmpty);
        return Below(3) == 0 ? "null()" : Object(inDepth);
    }
    std::string Test(int inDepth) {
        if (inDepth <= 0 || Below(3) != 0)
            return Record("cmpd", {"relo:" + Code(kOperators), "obj1:" + Operand(inDepth),
                                   "obj2:" + Value(0)});
        const std::string terms =
            Test(inDepth - 1) + (Below(2) == 0 ? "" : ", " + Test(inDepth - 1));
        return Record("logi",
                      {"logc:" + Code({"AND ", "OR  ", "NOT ", "XOR "}), "term:[" + terms + "]"});
    }
    std::string Operand(int inDepth) {
        if (Seldom()) return Value(inDepth);
        return Record("obj ",
                      {"want:type('prop')", "form:'prop'", "seld:type(" + Code(kProperties) + ")",
                       "from:" + std::string(Seldom() ? "null()" : "exmn()")});
    }

    std::mt19937 mRandom;
};

class StrangeObjects : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        const fs::path drives = gHome.Root() / "data/vantor/drives";
        for (const char* drive : {"alpha", "beta", "gamma"})
            fs::create_directories(drives / drive / "tray");
        ASSERT_EQ(VantorInitiateSession(), noErr);
    }
    static void TearDownTestSuite() {
        EXPECT_EQ(VantorTerminateSession(), noErr);
        EXPECT_TRUE(Eventually([] { return !VantorIsMirelRunning(); }));
    }
    static pid_t RecorderPid() {
        ProcessSerialNumber psn;
        pid_t pid = 0;
        EXPECT_EQ(MoreProcFindProcessBySignature('Fv8k', 'APPL', &psn), noErr);
        EXPECT_EQ(GetProcessPID(&psn, &pid), noErr);
        return pid;
    }
    // Whether the text could be built.
    bool Send(AEEventID inID, const std::string& inParameters, AEEventClass inClass = 'core') {
        StAEDescriptor event;
        EXPECT_EQ(MoreAECreateAppleEventSignatureTarget('Fv8k', 'APPL', inClass, inID, event),
                  noErr);
        AEBuildError mistake = {};
        if (AEBuildParameters(event, &mistake, inParameters.c_str()) != noErr) return false;
        mReply.Dispose();
        EXPECT_EQ(
            AESend(event, mReply, kAEWaitReply, kAENormalPriority, kPatience, nullptr, nullptr),
            noErr);
        return true;
    }
    bool HasAnswer() const {
        const StAEDescriptor answer(mReply.mDesc, keyDirectObject, typeWildCard);
        return answer.mDesc.descriptorType != DescType(typeNull);
    }

    StAEDescriptor mReply;
};

bool IsOfTheEventManager(SInt32 inCode) {
    return (inCode <= -1700 && inCode > -1800) || (inCode <= -10000 && inCode > -10030);
}

TEST_F(StrangeObjects, AreAnsweredOrRefusedAndTheRecorderLivesOn) {
    const pid_t pid = RecorderPid();
    Imagination imagination(5);
    std::map<SInt32, int> outcomes;
    for (int i = 0; i < kEvents; ++i) {
        const std::string object = imagination.Object(4);
        const bool isCount = i % 8 == 0;
        const std::string text = "'----':" + object + (isCount ? ", kocl:type('Driv')" : "");
        ASSERT_TRUE(Send(isCount ? 'cnte' : 'getd', text)) << text;
        const SInt32 error = MoreAEGetHandlerError(mReply);
        ++outcomes[error];
        if (error != noErr)
            ASSERT_TRUE(IsOfTheEventManager(error)) << error << " for " << text;
        else
            ASSERT_TRUE(HasAnswer() || object == "null()") << text;
    }
    EXPECT_EQ(RecorderPid(), pid);
    EXPECT_GT(outcomes[noErr], kEvents / 20) << "hardly one of them was an object";
    EXPECT_GT(outcomes.size(), 8u) << "they all went wrong at the same place";
    ASSERT_TRUE(Send('getd',
                     "'----':'obj '{want:type('prop'), form:'prop', seld:type('pnam'), "
                     "from:null()}"));
    EXPECT_EQ(MoreAEGetHandlerError(mReply), noErr);
}

TEST_F(StrangeObjects, AreNeitherChangedNorHarmfulAsValues) {
    const pid_t pid = RecorderPid();
    Imagination imagination(6);
    std::map<SInt32, int> outcomes;
    for (int i = 0; i < kEvents / 4; ++i) {
        const std::string text =
            "'----':" + imagination.Object(3) + ", data:" + imagination.Value(2);
        ASSERT_TRUE(Send('setd', text)) << text;
        ++outcomes[MoreAEGetHandlerError(mReply)];
        ASSERT_FALSE(HasAnswer()) << text;
    }
    EXPECT_EQ(RecorderPid(), pid);
    EXPECT_GT(outcomes[errAENotModifiable], 0);
}

// Parameters of every event but those that end the recorder, or write what another has added.
TEST_F(StrangeObjects, AreNoHarmInAnyParameter) {
    const pid_t pid = RecorderPid();
    const std::pair<AEEventClass, AEEventID> events[] = {
        {'core', 'getd'}, {'core', 'setd'}, {'core', 'cnte'}, {'core', 'crel'}, {'Fv8k', 'addD'},
        {'Fv8k', 'wrIt'}, {'Fv8k', 'Ejct'}, {'Fv8k', 'EndB'}, {'Fv8k', 'Cncl'}, {'aevt', 'oapp'}};
    const Texts keys = {"kfil", "kocl", "data", "rtyp", "ejWd", "Veri", "Asyn", "insh", "what"};
    Imagination imagination(7);
    for (int i = 0; i < kEvents / 4; ++i) {
        const auto& [eventClass, id] = events[size_t(i) % std::size(events)];
        std::string text = "'----':" + imagination.Object(2);
        for (const std::string& key : keys)
            if (imagination.Seldom()) text += ", '" + key + "':" + imagination.Value(2);
        ASSERT_TRUE(Send(id, text, eventClass)) << text;
        ASSERT_LE(MoreAEGetHandlerError(mReply), noErr) << text;
    }
    EXPECT_EQ(RecorderPid(), pid);
}

}  // namespace
