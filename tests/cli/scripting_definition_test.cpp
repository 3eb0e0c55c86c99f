// Scripting definitions: what becomes of their elements, and what is refused.
#include "cli/ScriptingDefinition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "cli/Failure.h"

namespace {

using cli::Notes;
using cli::Suites;
using cli::ValueTerm;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Files : public cli::DefinitionFiles {
  public:
    std::optional<std::string> Read(const std::string& inReference) override {
        ++asked;
        const auto found = texts.find(inReference);
        return found != texts.end() ? std::optional(found->second) : std::nullopt;
    }
    std::map<std::string, std::string> texts;
    int asked = 0;
};

struct Reading {
    Suites suites;
    Notes notes;
};

Reading Read(const std::string& inXml, Files inFiles = {}) {
    Reading reading;
    reading.suites = cli::ReadScriptingDefinition("a.sdef", inXml, inFiles, reading.notes);
    return reading;
}

// In a suite that begins in the first line.
std::string InSuite(const std::string& inElements) {
    return "<dictionary><suite name='S' code='Suit'>\n" + inElements + "\n</suite></dictionary>";
}

std::string Refusal(const std::string& inXml, Files inFiles = {}) {
    try {
        Read(inXml, std::move(inFiles));
    } catch (const cli::Failure& failure) {
        EXPECT_EQ(failure.Code(), errAECorruptData);
        return failure.what();
    }
    return "not refused";
}

TEST(ScriptingDefinition, CommandsHaveTwoCodesInOne) {
    const auto event = Read(InSuite("<command name='do' code='ClasID  ' description='Does.'>"
                                    "<direct-parameter type='text' optional='yes'/>"
                                    "<parameter name='with' code='with' type='integer'/>"
                                    "<result type='boolean'/></command>"))
                           .suites.at(0)
                           .events.at(0);
    EXPECT_EQ(event.eventClass, AEEventClass('Clas'));
    EXPECT_EQ(event.code, AEEventID('ID  '));
    EXPECT_EQ(event.description, "Does.");
    EXPECT_EQ(event.direct.type, OSType('ctxt'));
    EXPECT_TRUE(event.direct.Is(ValueTerm::kOptional));
    EXPECT_EQ(event.parameters.at(0).code, AEKeyword('with'));
    EXPECT_EQ(event.parameters.at(0).value.type, OSType(typeSInt32));
    EXPECT_EQ(event.reply.type, OSType(typeBoolean));
}

TEST(ScriptingDefinition, CodesMayBeHexadecimalOrMacRoman) {
    const auto suite = Read(InSuite("<command name='c' code='0x436c617300000001'/>"
                                    "<class name='k' code='0xFF00ff01'/>"
                                    "<class name='f' code='\xC6\x92old'/>"))
                           .suites.at(0);
    EXPECT_EQ(suite.events.at(0).eventClass, AEEventClass('Clas'));
    EXPECT_EQ(suite.events.at(0).code, AEEventID{1});
    EXPECT_EQ(suite.classes.at(0).code, OSType{0xFF00FF01});
    EXPECT_EQ(suite.classes.at(1).code, OSType{0xC46F6C64});
}

TEST(ScriptingDefinition, CodeOfAnotherLengthIsRefusedWithItsLine) {
    EXPECT_EQ(Refusal(InSuite("\n<class name='page' code='Pag'/>")),
              "a.sdef:3: the class 'page' has the code 'Pag', which has not 4 characters");
    for (const char* element :
         {"<class name='a' code='Pages'/>", "<class name='a' code=''/>", "<class name='a'/>",
          "<command name='a' code='Clas'/>", "<class name='a' code='0x1234567'/>",
          "<class name='a' code='\xE2\x82\xAC\xE2\x88\x9E\xE4\xB8\xAD.'/>", "<class code='Page'/>",
          "<command name='a' code='0x12345678'/>"})
        EXPECT_THAT(Refusal(InSuite(element)), HasSubstr("a.sdef:2: ")) << element;
}

TEST(ScriptingDefinition, TypesAreFoundByNameWhereverTheyStand) {
    const auto reading = Read(InSuite(
        "<class name='page' code='Page'><property name='p' code='prpp' type='mood'/>"
        "<property name='l' code='list' access='r'><type type='page' list='yes'/></property>"
        "<property name='o' code='oldl' type='list of list of text'/>"
        "<property name='e' code='eith'><type type='text'/><type type='page'/></property>"
        "</class><enumeration name='mood' code='mood'>"
        "<enumerator name='glad' code='glad'/></enumeration>"));
    const auto& properties = reading.suites.at(0).classes.at(0).properties;
    EXPECT_EQ(properties.at(0).value.type, OSType('mood'));
    EXPECT_EQ(properties.at(0).value.flags, ValueTerm::kEnumerated | ValueTerm::kWritable);
    EXPECT_EQ(properties.at(1).value.type, OSType('Page'));
    EXPECT_EQ(properties.at(1).value.flags, UInt16{ValueTerm::kList});
    EXPECT_EQ(properties.at(2).value.type, OSType('ctxt'));
    EXPECT_TRUE(properties.at(2).value.Is(ValueTerm::kList));
    EXPECT_EQ(properties.at(3).value.type, OSType(typeWildCard));
    EXPECT_THAT(reading.notes, IsEmpty());
}

TEST(ScriptingDefinition, TypeThatNobodyDefinesIsAnythingAndNotedOnce) {
    const auto reading =
        Read(InSuite("<class name='c' code='clas' inherits='item'>"
                     "<property name='p' code='prpp' type='item'/></class>"));
    const auto& properties = reading.suites.at(0).classes.at(0).properties;
    EXPECT_EQ(properties.at(0).code, OSType('c@#^'));
    EXPECT_EQ(properties.at(1).value.type, OSType(typeWildCard));
    EXPECT_THAT(reading.notes, ElementsAre("a.sdef:2: nothing is called 'item'"));
}

TEST(ScriptingDefinition, ExtensionsRecordsAndElementsBecomeClasses) {
    const auto suite = Read(InSuite("<class name='page' code='Page'><element type='line'>"
                                    "<accessor style='index'/><accessor style='id'/></element>"
                                    "<element type='line'/><contents type='text'/></class>"
                                    "<class-extension extends='page'>"
                                    "<property name='p' code='prpp' type='any'/></class-extension>"
                                    "<record-type name='line' code='Line'/>"
                                    "<value-type name='v' code='valu'/>"))
                           .suites.at(0);
    ASSERT_EQ(suite.classes.size(), 4u);
    EXPECT_EQ(suite.classes[1].code, OSType('Page'));
    EXPECT_EQ(suite.classes[0].properties.at(0).code, OSType('pcnt'));
    EXPECT_THAT(suite.classes[0].elements.at(0).forms,
                ElementsAre(OSType(formAbsolutePosition), OSType(formUniqueID)));
    EXPECT_EQ(suite.classes[0].elements.at(1).forms.size(), 5u);
}

TEST(ScriptingDefinition, MalformedXmlIsRefusedWithItsLine) {
    EXPECT_THAT(Refusal("<dictionary>\n<suite>\n</dictionary>"), HasSubstr("a.sdef:3: "));
    for (const char* xml : {"", "x", "<dictionary>", "<dictionary/><dictionary/>", "<a b=c/>",
                            "<dictionary>\xFF</dictionary>", "<dictionary>&amp</dictionary>"})
        EXPECT_THAT(Refusal(xml), HasSubstr("a.sdef")) << xml;
    EXPECT_THAT(Refusal("<plist/>"), HasSubstr("begins with <dictionary>"));
    EXPECT_THAT(Refusal(InSuite("<element/><class name='a' code='aaaa'><element><accessor "
                                "style='colour'/></element></class>")),
                HasSubstr("'colour' is no style"));
}

TEST(ScriptingDefinition, EntitiesAreRefusedBeforeTheyGrow) {
    std::string xml = "<!DOCTYPE dictionary [\n<!ENTITY a \"aaaaaaaaaa\">\n";
    for (char c = 'b'; c <= 'z'; ++c) {
        const std::string before = std::string("&") + char(c - 1) + ";";
        xml += std::string("<!ENTITY ") + c + " \"";
        for (int i = 0; i < 10; ++i) xml += before;
        xml += "\">\n";
    }
    EXPECT_EQ(Refusal(xml + "]>\n<dictionary><suite name='&z;' code='Suit'/></dictionary>"),
              "a.sdef:2: entities may not be declared here");
    EXPECT_THAT(Refusal("<!DOCTYPE dictionary [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>"
                        "<dictionary>&a;</dictionary>"),
                HasSubstr("entities may not be declared here"));
    EXPECT_THAT(Refusal("<!DOCTYPE dictionary [<!ENTITY % a SYSTEM \"file:///etc/passwd\"> %a;]>"
                        "<dictionary/>"),
                HasSubstr("entities may not be declared here"));
}

TEST(ScriptingDefinition, OutsideDocumentTypeIsNotNeeded) {
    EXPECT_EQ(Read("<!DOCTYPE dictionary SYSTEM \"file:///nowhere/sdef.dtd\">" + InSuite(""))
                  .suites.size(),
              1u);
}

TEST(ScriptingDefinition, DeepNestingIsRefused) {
    std::string open, close;
    for (int i = 0; i < 100'000; ++i) open += "<a>", close += "</a>";
    EXPECT_THAT(Refusal(InSuite(open + close)), HasSubstr("a.sdef:2: "));
    std::string type;
    for (int i = 0; i < 100'000; ++i) type += "list of ";
    EXPECT_EQ(Read(InSuite("<command name='a' code='ClasID  '><result type='" + type +
                           "text'/></command>"))
                  .suites[0]
                  .events[0]
                  .reply.type,
              OSType('ctxt'));
}

TEST(ScriptingDefinition, IncludesTakeSuitesAndWhatIsInThem) {
    Files files;
    files.texts["b.sdef"] = InSuite("<class name='b' code='bbbb'/>");
    const auto reading = Read(
        "<dictionary><include href='b.sdef'/><suite name='A' code='aaaa'>"
        "<include href='b.sdef'/><class name='c' code='cccc'/></suite>"
        "</dictionary>",
        files);
    ASSERT_EQ(reading.suites.size(), 2u);
    EXPECT_EQ(reading.suites[0].name, "S");
    ASSERT_EQ(reading.suites[1].classes.size(), 2u);
    EXPECT_EQ(reading.suites[1].classes[0].name, "b");
}

TEST(ScriptingDefinition, FileThatIsElsewhereIsNoted) {
    const auto reading = Read("<dictionary>\n<include href='/etc/passwd'/></dictionary>");
    EXPECT_THAT(reading.suites, IsEmpty());
    EXPECT_THAT(reading.notes,
                ElementsAre("a.sdef:2: '/etc/passwd' is not among the application's files"));
}

TEST(ScriptingDefinition, IncludingItselfEnds) {
    Files files;
    files.texts["a"] = "<dictionary><include href='a'/><include href='a'/></dictionary>";
    EXPECT_EQ(Refusal(files.texts["a"], files), "a:1: too much is included");
    files.texts["a"] = InSuite("<include href='a'/><include href='a'/>");
    EXPECT_EQ(Refusal(files.texts["a"], files), "a:2: too much is included");
}

TEST(ScriptingDefinition, ManyIncludesEnd) {
    Files files;
    files.texts["b"] = "<dictionary/>";
    std::string xml = "<dictionary>";
    for (int i = 0; i < 100; ++i) xml += "<include href='b'/>";
    EXPECT_EQ(Refusal(xml + "</dictionary>", files), "a.sdef:1: too much is included");
}

}  // namespace
