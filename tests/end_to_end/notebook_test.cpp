// The example application as other programs meet it: launched, asked, changed, watched, asked to
// quit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>

#include <future>

#include "support/Eventually.h"
#include "support/Notebook.h"
#include "support/TemporaryHome.h"
#include "support/Vantor.h"
#include "support/Watched.h"

namespace {

using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;

TemporaryHome gHome;

// Three notes: Shopping (2), Tax (5) and one without a name.
class NotebookTest : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* properties : {", prdt:{ pnam:\"Shopping\", body:\"Milk\", prio:2 }",
                                       ", prdt:{ pnam:\"Tax\", prio:5 }", ""})
            EXPECT_THAT(mNotebook.Send("crel", std::string("kocl:type(note)") + properties),
                        HasSubstr("'form':'ID  ', 'seld':"));
    }
    // The names of the notes that meet a test.
    std::string NamesOf(const std::string& inTest) const {
        return mNotebook.Send("getd",
                              "'----':obj{ want:type(prop), from:obj{ want:type(note), "
                              "from:null(), form:test, seld:" +
                                  inTest + " }, form:prop, seld:type(pnam) }");
    }
    static std::string Comparison(const std::string& inProperty, const std::string& inOperator,
                                  const std::string& inValue) {
        return "cmpd{ relo:'" + inOperator +
               "', obj1:obj{ want:type(prop), from:exmn(), form:prop, seld:type(" + inProperty +
               ") }, obj2:" + inValue + " }";
    }

    const Notebook mNotebook{VantorProgram()};
};

TEST_F(NotebookTest, NotesAreFoundByNumberOrdinalNameAndIdentifier) {
    EXPECT_EQ(mNotebook.Get({"pnam", "of", "note", "1"}), "'utf8'(\"Shopping\")");
    EXPECT_EQ(mNotebook.Get({"pnam", "of", "note", "-2"}), "'utf8'(\"Tax\")");
    EXPECT_EQ(mNotebook.Get({"pnam", "of", "note", "last"}), "'utf8'()");
    EXPECT_EQ(mNotebook.Get({"prio", "of", "note", "Tax"}), "5");
    EXPECT_EQ(mNotebook.Get({"body", "of", "note", "id=1"}), "'utf8'(\"Milk\")");
    EXPECT_EQ(mNotebook.Get({"prio", "of", "note", "all"}), "[ 2, 5, 0 ]");
}

TEST_F(NotebookTest, TestsChooseNotesByNumbersAndTexts) {
    EXPECT_THAT(NamesOf(Comparison("prio", ">   ", "2")), HasSubstr("'----':[ 'utf8'(\"Tax\") ]"));
    EXPECT_THAT(NamesOf(Comparison("prio", "<=  ", "2")),
                HasSubstr("'----':[ 'utf8'(\"Shopping\"), 'utf8'() ]"));
    EXPECT_THAT(NamesOf(Comparison("pnam", "bgwt", "\"shop\"")),
                HasSubstr("'----':[ 'utf8'(\"Shopping\") ]"));
    EXPECT_THAT(NamesOf("logi{ logc:'OR  ', term:[" + Comparison("pnam", "=   ", "\"Tax\"") + ", " +
                        Comparison("body", "cont", "\"ilk\"") + "] }"),
                HasSubstr("'----':[ 'utf8'(\"Shopping\"), 'utf8'(\"Tax\") ]"));
}

TEST_F(NotebookTest, PropertiesAreSetOfOneAndOfMany) {
    EXPECT_EQ(
        mNotebook.Vantor({"set", "pnam", "of", "note", "3", "Notebook", "\"K\u00e4se\""}).exitCode,
        0);
    EXPECT_EQ(mNotebook.Get({"prio", "of", "note", "K\u00e4se"}), "0");
    EXPECT_EQ(mNotebook.Vantor({"set", "prio", "of", "note", "all", "Notebook", "7"}).exitCode, 0);
    EXPECT_EQ(mNotebook.Get({"prio", "of", "note", "all"}), "[ 7, 7, 7 ]");
}

TEST_F(NotebookTest, ReplyHasTheTypeThatWasAskedFor) {
    EXPECT_THAT(mNotebook.Send("getd",
                               "'----':obj{ want:type(prop), from:obj{ want:type(note), "
                               "from:null(), form:indx, seld:2 }, form:prop, seld:type(prio) }, "
                               "rtyp:type(TEXT)"),
                HasSubstr("'----':\"5\""));
}

TEST_F(NotebookTest, DeletedNumberIsNotUsedAgain) {
    mNotebook.Send("delo", "'----':obj{ want:type(note), from:null(), form:indx, seld:3 }");
    EXPECT_THAT(mNotebook.Send("cnte", "kocl:type(note)"), HasSubstr("'----':2,"));
    EXPECT_THAT(mNotebook.Send("crel", "kocl:type(note)"), HasSubstr("'seld':4"));
}

TEST_F(NotebookTest, MistakesAreAnsweredWithTheirCodesAndChangeNothing) {
    EXPECT_THAT(mNotebook.Get({"pnam", "of", "note", "4"}), EndsWith("[-1728]"));
    EXPECT_THAT(mNotebook.Get({"pnam", "of", "note", "-4"}), EndsWith("[-1728]"));
    EXPECT_THAT(mNotebook.Get({"colr", "of", "note", "1"}), EndsWith("[-1728]"));
    EXPECT_THAT(mNotebook.Get({"pnam", "of", "page", "1"}), EndsWith("[-1728]"));
    EXPECT_THAT(mNotebook.Send("cnte", ""), HasSubstr("[-1701]"));
    EXPECT_THAT(mNotebook.Send("cnte", "kocl:type(note), what:1"), HasSubstr("[-1715]"));
    EXPECT_THAT(mNotebook.Send("crel", "kocl:type(note), prdt:{ pnam:\"A\", prio:\"high\" }"),
                HasSubstr("[-10001]"));
    EXPECT_THAT(mNotebook.Send("setd",
                               "'----':obj{ want:type(prop), from:null(), form:prop, "
                               "seld:type(pnam) }, data:\"Other\""),
                HasSubstr("[-10003]"));
    EXPECT_THAT(NamesOf("cmpd{ relo:'>   ', obj1:prop($0000$), obj2:1 }"), HasSubstr("[-10001]"));
    EXPECT_THAT(mNotebook.Send("none", ""), HasSubstr("[-1708]"));
    EXPECT_EQ(mNotebook.Get({"prio", "of", "note", "all"}), "[ 2, 5, 0 ]");
}

TEST_F(NotebookTest, MonitorNamesItsEvents) {
    auto monitor = std::async(std::launch::async, [] {
        CommandOptions options;
        options.interruptOnOutput = "'----':";
        return Vantor({"monitor", "--process", "Notebook"}, options);
    });
    ASSERT_TRUE(Eventually([] { return IsWatched(gHome); }));
    mNotebook.Get({"prio", "of", "note", "Tax"});
    EXPECT_THAT(monitor.get().output, ContainsRegex("vantor.*Notebook.*.getd.<get>"));
}

TEST_F(NotebookTest, DictionaryGivesItsWordsTheirCodes) {
    const auto result = mNotebook.Vantor({"dictionary", "Notebook"});
    EXPECT_THAT(result.output, HasSubstr("make  event 'core' 'crel'"));
    EXPECT_THAT(result.output, HasSubstr("'prio'  priority"));
    EXPECT_EQ(mNotebook.Get({"priority", "of", "note", "Tax"}), "5");
}

TEST_F(NotebookTest, EndsWhenItIsAskedToQuit) {
    EXPECT_EQ(mNotebook.Vantor({"quit", "NtBk"}).exitCode, 0);
    EXPECT_TRUE(Eventually([&] { return kill(mNotebook.Pid(), 0) != 0; }));
}

}  // namespace
