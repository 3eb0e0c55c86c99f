// The recorder's object model from outside: every way to name drives and the disc, tests of their
// properties, many values in one answer, and what is refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

#include "cli/ResourceFile.h"
#include "cli/Terminology.h"
#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "vantor/api/Vantor.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAppleEventsMgr.h"

namespace {

namespace fs = std::filesystem;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Texts = std::vector<std::string>;

TemporaryHome gHome;

const std::string kAlpha = "alpha (image drive)", kBeta = "beta (image drive)",
                  kGamma = "gamma (image drive)";
constexpr const char* kApplication = "null()";

// Specifiers and tests in the text that AEBuildDesc reads.
std::string Element(const std::string& inClass, const std::string& inForm,
                    const std::string& inKey) {
    return "obj {want:type('" + inClass + "'), form:'" + inForm + "', seld:" + inKey +
           ", from:null()}";
}

std::string Drive(const std::string& inForm, const std::string& inKey) {
    return Element("Driv", inForm, inKey);
}

std::string PropertyOf(const std::string& inContainer, const std::string& inCode) {
    return "obj {want:type(prop), form:prop, seld:type('" + inCode + "'), from:" + inContainer +
           "}";
}

std::string Whose(const std::string& inCode, const std::string& inOperator,
                  const std::string& inValue) {
    return "cmpd{relo:'" + inOperator + "', obj1:" + PropertyOf("exmn()", inCode) +
           ", obj2:" + inValue + "}";
}

std::string Logic(const std::string& inOperator, const std::string& inTerms) {
    return "logi{logc:'" + inOperator + "', term:[" + inTerms + "]}";
}

// The drives of this test alone, whatever else the machine has.
std::string ImageDrivesWhose(const std::string& inTest) {
    return Drive("test", Logic("AND ", Whose("dKnd", "=   ", "'imag'") + ", " + inTest));
}

std::string Range(const std::string& inStart, const std::string& inStop) {
    return "rang{star:" + inStart + ", stop:" + inStop + "}";
}

// An event with its direct object and one parameter, which may be empty, as text; its answer.
class Asked {
  public:
    Asked(AEEventID inID, const std::string& inObject, const std::string& inParameters = "") {
        StAEDescriptor event;
        const std::string text =
            "'----':" + inObject + (inParameters.empty() ? "" : ", " + inParameters);
        AEBuildError mistake = {};
        EXPECT_EQ(MoreAECreateAppleEventSignatureTarget('Fv8k', 'APPL', 'core', inID, event),
                  noErr);
        EXPECT_EQ(AEBuildParameters(event, &mistake, text.c_str()), noErr)
            << text << " at " << mistake.fErrorPos;
        const OSErr err =
            AESend(event, mReply, kAEWaitReply, kAENormalPriority, 60 * 60, nullptr, nullptr);
        mError = err != noErr ? err : MoreAEGetHandlerError(mReply);
        mAnswer.GetOptionalParamDesc(mReply, keyDirectObject);
    }
    SInt32 Error() const { return mError; }
    bool IsList() const { return mAnswer.mDesc.descriptorType == DescType(typeAEList); }
    const AEDesc& Answer() const { return mAnswer.mDesc; }
    // The values of a list, or the only one.
    Texts Values() const {
        StAEDescriptor list;
        Texts values;
        SInt32 count = 0;
        EXPECT_EQ(mError, noErr);
        if (mError != noErr) return values;
        EXPECT_EQ(AECoerceDesc(mAnswer, typeAEList, list), noErr);
        EXPECT_EQ(AECountItems(list, &count), noErr);
        for (SInt32 i = 1; i <= count; ++i) values.push_back(Text(list, i));
        return values;
    }

  private:
    static std::string Text(const AEDesc* inList, SInt32 inIndex) {
        StAEDescriptor text;
        EXPECT_EQ(AEGetNthDesc(inList, inIndex, typeChar, nullptr, text), noErr);
        std::string bytes(size_t(AEGetDescDataSize(text)), '\0');
        EXPECT_EQ(AEGetDescData(text, bytes.data(), Size(bytes.size())), noErr);
        return bytes;
    }

    StAEDescriptor mReply, mAnswer;
    SInt32 mError = noErr;
};

Asked Get(const std::string& inObject) {
    return {'getd', inObject};
}

Texts NamesOf(const std::string& inDrives) {
    return Get(PropertyOf(inDrives, "pnam")).Values();
}

SInt32 ErrorOf(const std::string& inDrives) {
    return Get(PropertyOf(inDrives, "pnam")).Error();
}

SInt32 DriveCount() {
    const Texts count = Asked('cnte', kApplication, "kocl:type('Driv')").Values();
    return std::stoi(count.at(0));
}

void WriteTo(const fs::path& inPath, const std::string& inText) {
    fs::create_directories(inPath.parent_path());
    std::ofstream(inPath) << inText;
}

// Three image drives, the last of the machine: alpha is empty (0), beta has a blank (383), gamma a
// disc that is full (127).
class Objects : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        const fs::path drives = gHome.Root() / "data/vantor/drives";
        fs::create_directories(drives / "alpha/tray");
        WriteTo(drives / "beta/tray/blank.iso", "");
        WriteTo(drives / "gamma/tray/full.iso", "something");
        for (const char* drive : {"alpha", "beta", "gamma"})
            WriteTo(drives / drive / "settings", "blanks manual\n");
        ASSERT_EQ(VantorInitiateSession(), noErr);
    }
    static void TearDownTestSuite() {
        EXPECT_EQ(VantorTerminateSession(), noErr);
        EXPECT_TRUE(Eventually([] { return !VantorIsMirelRunning(); }));
    }
};

TEST_F(Objects, AreFoundByPositionFromEitherEnd) {
    const SInt32 count = DriveCount();
    ASSERT_GE(count, 3);
    EXPECT_THAT(NamesOf(Drive("indx", std::to_string(count))), ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(Drive("indx", "-1")), ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(Drive("indx", "-3")), ElementsAre(kAlpha));
    EXPECT_THAT(NamesOf(Drive("indx", "\"-2\"")), ElementsAre(kBeta)) << "coerced to a number";
    EXPECT_EQ(NamesOf(Drive("indx", std::to_string(-count))), NamesOf(Drive("indx", "1")));
}

TEST_F(Objects, AreNotFoundBeyondEitherEnd) {
    const SInt32 count = DriveCount();
    for (const SInt32 position : {0, count + 1, -count - 1, 0x7FFFFFFF})
        EXPECT_EQ(ErrorOf(Drive("indx", std::to_string(position))), errAENoSuchObject) << position;
    EXPECT_EQ(ErrorOf(Drive("indx", "abso('what')")), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(Drive("indx", "\"one\"")), errAETypeError);
    EXPECT_EQ(ErrorOf(Drive("indx", "abso($00$)")), errAENoSuchObject);
}

TEST_F(Objects, AreFoundByOrdinal) {
    const std::string middle = std::to_string((DriveCount() + 1) / 2);
    EXPECT_EQ(NamesOf(Drive("indx", "abso('firs')")), NamesOf(Drive("indx", "1")));
    EXPECT_EQ(NamesOf(Drive("indx", "abso('midd')")), NamesOf(Drive("indx", middle)));
    EXPECT_THAT(NamesOf(Drive("indx", "abso('last')")), ElementsAre(kGamma));
    EXPECT_EQ(NamesOf(Drive("indx", "abso('any ')")).size(), 1u);
    const Asked every = Get(PropertyOf(Drive("indx", "abso('all ')"), "pnam"));
    EXPECT_TRUE(every.IsList());
    EXPECT_EQ(SInt32(every.Values().size()), DriveCount());
}

TEST_F(Objects, AreFoundByNameAndIdentifier) {
    const std::string folder = gHome.Root() / "data/vantor/drives/beta";
    EXPECT_THAT(NamesOf(Drive("name", '"' + kBeta + '"')), ElementsAre(kBeta));
    EXPECT_THAT(NamesOf(Drive("ID  ", '"' + folder + '"')), ElementsAre(kBeta));
    EXPECT_EQ(ErrorOf(Drive("name", "\"delta\"")), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(Drive("ID  ", "\"/nowhere\"")), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(Element("Disc", "ID  ", "\"1\"")), errAEBadKeyForm);
    EXPECT_EQ(ErrorOf(Drive("rele", "'next'")), errAEBadKeyForm);
}

TEST_F(Objects, OfARangeAreAllBetweenItsEnds) {
    const auto at = [](const char* position) {
        return "obj {want:type('Driv'), form:indx, seld:" + std::string(position) +
               ", from:ccnt()}";
    };
    EXPECT_THAT(NamesOf(Drive("rang", Range(at("-3"), at("-2")))), ElementsAre(kAlpha, kBeta));
    EXPECT_THAT(NamesOf(Drive("rang", Range(at("-1"), at("-1")))), ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(Drive("rang", Range(Drive("name", '"' + kBeta + '"'), "-1"))),
                ElementsAre(kBeta, kGamma));
    EXPECT_EQ(ErrorOf(Drive("rang", Range(at("-1"), at("-2")))), errAEImpossibleRange);
    EXPECT_EQ(ErrorOf(Drive("rang", Range(at("-1"), at("9999")))), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(Drive("rang", Range("'Driv'(\"/nowhere\")", "-1"))), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(Drive("rang", "rang{star:1}")), errAEImpossibleRange);
}

TEST_F(Objects, MeetTestsWithEachComparisonOfNumbers) {
    const auto whose = [](const char* comparison) {
        return NamesOf(ImageDrivesWhose(Whose("mInf", comparison, "127")));
    };
    EXPECT_THAT(whose(">   "), ElementsAre(kBeta));
    EXPECT_THAT(whose(">=  "), ElementsAre(kBeta, kGamma));
    EXPECT_THAT(whose("<   "), ElementsAre(kAlpha));
    EXPECT_THAT(whose("<=  "), ElementsAre(kAlpha, kGamma));
    EXPECT_THAT(whose("=   "), ElementsAre(kGamma));
}

TEST_F(Objects, MeetTestsWithEachComparisonOfTexts) {
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Whose("pnam", "bgwt", "\"bet\""))), ElementsAre(kBeta));
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Whose("ID  ", "ends", "\"/gamma\""))),
                ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Whose("pnam", "cont", "\"amm\""))), ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Whose("pnam", "=   ", '"' + kAlpha + '"'))),
                ElementsAre(kAlpha));
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("pnam", "=   ", "\"alpha\""))), errAENoSuchObject);
}

TEST_F(Objects, MeetLogicalCombinationsOfTests) {
    const std::string empty = Whose("mInf", "=   ", "0"), full = Whose("mInf", "=   ", "127");
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Logic("OR  ", empty + ", " + full))),
                ElementsAre(kAlpha, kGamma));
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Logic("NOT ", empty))), ElementsAre(kBeta, kGamma));
    const std::string neither = Logic("NOT ", empty) + ", " + Logic("NOT ", full);
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Logic("AND ", neither))), ElementsAre(kBeta));
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Logic("AND ", empty + ", " + full))), errAENoSuchObject);
}

TEST_F(Objects, OfATestMayBeChosenByPosition) {
    const std::string notEmpty = ImageDrivesWhose(Whose("mInf", ">   ", "0"));
    const auto among = [&](const char* position) {
        return NamesOf("obj {want:type('Driv'), form:indx, seld:" + std::string(position) +
                       ", from:" + notEmpty + "}");
    };
    EXPECT_THAT(among("1"), ElementsAre(kBeta));
    EXPECT_THAT(among("-1"), ElementsAre(kGamma));
    EXPECT_THAT(among("abso('last')"), ElementsAre(kGamma));
}

TEST_F(Objects, OfATestMayBeChosenInTheSameStep) {
    const std::string notEmpty =
        Logic("AND ", Whose("dKnd", "=   ", "'imag'") + ", " + Whose("mInf", ">   ", "0"));
    const auto chosen = [&](const std::string& index) {
        return Drive("whos", "whos{ktst:" + notEmpty + ", kidx:" + index + "}");
    };
    EXPECT_THAT(NamesOf(chosen("2")), ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(chosen("-2")), ElementsAre(kBeta));
    EXPECT_THAT(NamesOf(chosen("abso('firs')")), ElementsAre(kBeta));
    EXPECT_THAT(NamesOf(chosen("abso('midd')")), ElementsAre(kBeta));
    EXPECT_THAT(NamesOf(chosen("abso('last')")), ElementsAre(kGamma));
    EXPECT_THAT(NamesOf(chosen("abso('all ')")), ElementsAre(kBeta, kGamma));
    EXPECT_THAT(NamesOf(chosen("wrng{wstr:1, wstp:abso('last')}")), ElementsAre(kBeta, kGamma));
    EXPECT_THAT(NamesOf(chosen("abso('any ')")),
                testing::AnyOf(ElementsAre(kBeta), ElementsAre(kGamma)));
    EXPECT_EQ(ErrorOf(chosen("3")), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(chosen("wrng{wstr:2, wstp:1}")), errAEImpossibleRange);
}

TEST_F(Objects, OfEachDiscWhoseStatusIsAboveNothingAreNone) {
    const auto discs = [](const char* comparison) {
        return Element("Disc", "test", Whose("sCod", comparison, "0"));
    };
    EXPECT_EQ(Get(discs(">   ")).Error(), errAENoSuchObject);
    const Asked idle = Get(discs("<=  "));
    EXPECT_EQ(idle.Error(), noErr);
    EXPECT_TRUE(idle.IsList());
}

// A test may speak of the other elements: its specifiers start anew.
TEST_F(Objects, MeetTestsThatNameOtherObjects) {
    const std::string beta = PropertyOf(Drive("name", '"' + kBeta + '"'), "mInf");
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Whose("mInf", "<   ", beta))),
                ElementsAre(kAlpha, kGamma));
    EXPECT_THAT(NamesOf(ImageDrivesWhose(Whose("mInf", "=   ", beta))), ElementsAre(kBeta));
    const std::string every = PropertyOf(Drive("indx", "abso('all ')"), "mInf");
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("mInf", "=   ", every))), errAETypeError) << "a list";
}

TEST_F(Objects, HaveNoElementsOfTheirOwn) {
    const auto of = [](const std::string& container) {
        return "obj {want:type('Driv'), form:indx, seld:1, from:" + container + "}";
    };
    EXPECT_EQ(ErrorOf(of(Drive("indx", "1"))), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(of(Drive("indx", "abso('all ')"))), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(of(Element("Disc", "indx", "1"))), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(of(PropertyOf(kApplication, "pnam"))), errAENoSuchObject);
}

TEST_F(Objects, OfTestsThatMakeNoSenseHaveTheirErrors) {
    const std::string empty = Whose("mInf", "=   ", "0");
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("mInf", "!=  ", "0"))), errAEEventNotHandled);
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("what", "=   ", "0"))), errAENoSuchObject);
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("mInf", ">   ", "\"much\""))), errAETypeError);
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("mInf", "=   ", "[1, 2]"))), errAETypeError);
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Whose("mInf", "=   ", "prop($00$)"))), errAETypeError);
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Logic("XOR ", empty))), errAENoSuchLogical);
    EXPECT_EQ(ErrorOf(ImageDrivesWhose(Logic("NOT ", empty + ", " + empty))), errAEWrongNumberArgs);
    EXPECT_EQ(ErrorOf(Drive("test", "17")), errAEBadTestKey);
}

TEST_F(Objects, OfTheDiscAnswerTheSameForms) {
    const auto whose = [](const char* comparison) {
        return Element("Disc", "test", Whose("sCod", comparison, "0"));
    };
    EXPECT_EQ(Get(PropertyOf(whose(">   "), "sTxt")).Error(), errAENoSuchObject) << "it is idle";
    const Asked idle = Get(PropertyOf(whose(">=  "), "sTxt"));
    EXPECT_TRUE(idle.IsList());
    EXPECT_THAT(idle.Values(), ElementsAre("Idle."));
    const Texts texts = Get(PropertyOf(Element("Disc", "indx", "abso('all ')"), "sTxt")).Values();
    EXPECT_THAT(texts, ElementsAre("Idle."));
    EXPECT_EQ(ErrorOf(Element("Disc", "indx", "2")), errAENoSuchObject);
}

TEST_F(Objects, AreChangedTogether) {
    const std::string everyDisc = Element("Disc", "indx", "abso('all ')");
    const auto rename = [&](const std::string& inName) {
        return Asked('setd', PropertyOf(everyDisc, "pnam"), "data:" + inName).Error();
    };
    ASSERT_EQ(rename("\"Holiday\""), noErr);
    EXPECT_THAT(NamesOf(Element("Disc", "name", "\"Holiday\"")), ElementsAre("Holiday"));
    EXPECT_EQ(ErrorOf(Element("Disc", "name", "\"Work\"")), errAENoSuchObject);
    EXPECT_EQ(
        Asked('setd', PropertyOf(Drive("indx", "abso('all ')"), "pnam"), "data:\"x\"").Error(),
        errAENotModifiable);
    EXPECT_EQ(rename("\"\""), noErr);
}

// MacRoman has neither of the two names, and would show both as question marks.
TEST_F(Objects, WhoseNamesMacRomanLacksAreToldApart) {
    const std::string name = "utf8($E697A5E69CAC$)", other = "utf8($E6BCA2E5AD97$)";
    const std::string disc = Element("Disc", "indx", "1");
    ASSERT_EQ(Asked('setd', PropertyOf(disc, "pnam"), "data:" + name).Error(), noErr);
    const auto found = [](const char* comparison, const std::string& inName) {
        return ErrorOf(Element("Disc", "test", Whose("pnam", comparison, inName)));
    };
    EXPECT_EQ(found("=   ", name), noErr);
    EXPECT_EQ(found("=   ", other), errAENoSuchObject);
    EXPECT_EQ(found("bgwt", "utf8($E697A5$)"), noErr);
    EXPECT_EQ(found("ends", "utf8($E69CAC$)"), noErr);
    EXPECT_EQ(found("cont", "utf8($E6BCA2$)"), errAENoSuchObject);
    EXPECT_EQ(found(">   ", other), errAETypeError);
    EXPECT_EQ(Asked('setd', PropertyOf(disc, "pnam"), "data:\"\"").Error(), noErr);
}

TEST_F(Objects, ThemselvesAreAnsweredAsSpecifiersThatCanBeUsed) {
    const Asked every = Get(Drive("indx", "abso('all ')"));
    ASSERT_TRUE(every.IsList());
    StAEDescriptor last, identifier;
    ASSERT_EQ(AEGetNthDesc(&every.Answer(), DriveCount(), typeObjectSpecifier, nullptr, last),
              noErr);
    ASSERT_EQ(AEGetKeyDesc(last, keyAEKeyData, typeChar, identifier), noErr);
    Str255 text;
    ASSERT_EQ(MoreAEGetPStringFromDescriptor(identifier, text), noErr);
    const std::string folder(reinterpret_cast<char*>(text) + 1, text[0]);
    EXPECT_EQ(folder, gHome.Root() / "data/vantor/drives/gamma");
    EXPECT_THAT(NamesOf(Drive("ID  ", '"' + folder + '"')), ElementsAre(kGamma));
    EXPECT_EQ(Get(Element("Disc", "indx", "-1")).Answer().descriptorType,
              DescType(typeObjectSpecifier));
}

TEST_F(Objects, OfEachGiveTheTypeThatIsAskedFor) {
    const std::string sizes = PropertyOf(Drive("indx", "abso('all ')"), "mInf");
    const Asked asked('getd', sizes, "rtyp:type('doub')");
    ASSERT_EQ(asked.Error(), noErr);
    DescType type = 0;
    Size size = 0;
    ASSERT_EQ(AESizeOfNthItem(&asked.Answer(), 1, &type, &size), noErr);
    EXPECT_EQ(type, DescType(typeIEEE64BitFloatingPoint));
    EXPECT_EQ(Asked('getd', sizes, "rtyp:type('fss ')").Error(), errAECoercionFail);
}

TEST_F(Objects, ThatAreUnknownHaveTheirErrors) {
    EXPECT_EQ(ErrorOf(Element("Cake", "indx", "1")), errAENoSuchObject);
    EXPECT_EQ(Get(PropertyOf(Drive("indx", "abso('all ')"), "what")).Error(), errAENoSuchObject);
    EXPECT_EQ(Get(PropertyOf(PropertyOf(kApplication, "pnam"), "pnam")).Error(), errAENoSuchObject);
    EXPECT_EQ(Get("17").Error(), errAENotAnObjSpec);
    EXPECT_EQ(Asked('getd', Drive("indx", "1"), "what:1").Error(), errAEParamMissed);
}

TEST_F(Objects, AreCountedInTheirContainer) {
    EXPECT_THAT(Asked('cnte', kApplication, "kocl:type('Disc')").Values(), ElementsAre("1"));
    EXPECT_THAT(Asked('cnte', kApplication, "kocl:type('Cake')").Values(), ElementsAre("0"));
    EXPECT_THAT(Asked('cnte', Drive("indx", "1"), "kocl:type('Disc')").Values(), ElementsAre("0"));
}

// One object of each class, by what the dictionary calls it.
std::string ObjectOf(OSType inClass) {
    if (inClass == OSType(cApplication)) return kApplication;
    return inClass == 'Disc' ? Element("Disc", "indx", "1") : Drive("indx", "-1");
}

std::string CharactersOf(OSType inCode) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += char(inCode >> shift);
    return text;
}

TEST_F(Objects, HaveEveryPropertyOfTheDictionary) {
    size_t count = 0;
    cli::Notes notes;
    for (const auto& suite : cli::TerminologyOf("Calverin", notes))
        for (const auto& term : suite.classes)
            for (const auto& property : term.properties) {
                const std::string code = CharactersOf(property.code);
                EXPECT_EQ(Get(PropertyOf(ObjectOf(term.code), code)).Error(), noErr) << code;
                ++count;
            }
    EXPECT_EQ(count, 31u);
}

TEST_F(Objects, AreAskedByTheEventsOfTheDictionaryAndNoOthers) {
    using Event = std::pair<OSType, OSType>;
    std::set<Event> named, installed;
    cli::Notes notes;
    for (const auto& suite : cli::TerminologyOf("Fv8k", notes))
        for (const auto& event : suite.events) named.insert({event.eventClass, event.code});
    const cli::ResourceFile file(ProgramFolder() +
                                 "/Calverin.app/Contents/Resources/Calverin.rsrc");
    const Handle table = Get1Resource('aedt', 128);
    ASSERT_NE(table, nullptr);
    const auto* words = reinterpret_cast<const UInt32*>(*table);
    for (Size i = 0; i < GetHandleSize(table) / 12; ++i)
        installed.insert({EndianU32_BtoN(words[3 * i]), EndianU32_BtoN(words[3 * i + 1])});
    EXPECT_EQ(named, installed);
    EXPECT_EQ(installed.size(), 13u);
}

}  // namespace
