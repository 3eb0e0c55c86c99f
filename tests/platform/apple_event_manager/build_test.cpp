// Values and events built from text: what each form makes, and where each mistake is seen.
#include <cstring>

#include "platform/apple_event_manager/Desc.h"

namespace {

template <typename... Arguments>
Desc Built(const char* inText, Arguments... inArguments) {
    Desc desc;
    AEBuildError error = {99, 99};
    EXPECT_EQ(AEBuildDesc(&desc, &error, inText, inArguments...), noErr)
        << inText << ": " << error.fError << " at " << error.fErrorPos;
    EXPECT_EQ(error.fError, UInt32(aeBuildSyntaxNoErr));
    EXPECT_EQ(error.fErrorPos, 0u);
    return desc;
}

template <typename... Arguments>
Desc BuiltEvent(const char* inText, Arguments... inArguments) {
    Desc event;
    EXPECT_EQ(AEBuildAppleEvent('core', 'setd', typeApplSignature, "Fv8k", 4, 7, 8, &event, nullptr,
                                inText, inArguments...),
              noErr)
        << inText;
    return event;
}

void ExpectLeaf(const char* inText, DescType inType, const std::string& inBytes) {
    const Desc desc = Built(inText);
    EXPECT_EQ(desc.Type(), inType) << inText;
    EXPECT_EQ(desc.Bytes(), inBytes) << inText;
}

struct Mistake {
    const char* text;
    UInt32 code;
    UInt32 position;
};

void ExpectMistake(const Mistake& inMistake) {
    Desc desc;
    AEBuildError error = {99, 99};
    EXPECT_EQ(AEBuildDesc(&desc, &error, inMistake.text), errAEBuildSyntaxError) << inMistake.text;
    EXPECT_EQ(error.fError, inMistake.code) << inMistake.text;
    EXPECT_EQ(error.fErrorPos, inMistake.position) << inMistake.text;
    EXPECT_TRUE(desc.IsNull());
}

std::string Nested(int inLevels, const char* inOpening, const char* inClosing) {
    std::string text;
    for (int i = 0; i < inLevels; ++i) text += inOpening;
    text += '1';
    for (int i = 0; i < inLevels; ++i) text += inClosing;
    return text;
}

static_assert(sizeof(AEBuildError) == 8 && offsetof(AEBuildError, fErrorPos) == 4);

}  // namespace

TEST(Build, NumbersAreLongsAndWiderOnesComps) {
    ExpectLeaf("123", typeSInt32, Big(SInt32(123)));
    ExpectLeaf(" -5 ", typeSInt32, Big(SInt32(-5)));
    ExpectLeaf("2147483648", typeSInt64, Big(SInt64(2147483648)));
    ExpectLeaf("-9223372036854775808", typeSInt64, std::string("\x80\0\0\0\0\0\0\0", 8));
    ExpectMistake({"9223372036854775808", aeBuildSyntaxBadData, 0});
}

TEST(Build, CodesAreEnumeratedWithOrWithoutQuotes) {
    ExpectLeaf("abcd", typeEnumerated, "abcd");
    ExpectLeaf("ID", typeEnumerated, "ID  ");
    ExpectLeaf("'ab d'", typeEnumerated, "ab d");
    ExpectLeaf("'----'", typeEnumerated, "----");
    ExpectLeaf(">=", typeEnumerated, ">=  ");
    ExpectLeaf("'$00FF2741$'", typeEnumerated, std::string("\0\xFF'A", 4));
    ExpectLeaf("'$ab$'", typeEnumerated, "$ab$");
}

TEST(Build, TypesCoerceNumbersAndTexts) {
    ExpectLeaf("shor(3)", typeSInt16, Big(SInt16(3)));
    ExpectLeaf("magn(4294967295)", typeUInt32, "\xFF\xFF\xFF\xFF");
    ExpectLeaf("doub(\"2.5\")", typeIEEE64BitFloatingPoint, Big(UInt64(0x4004000000000000)));
    ExpectLeaf("sing(2)", typeIEEE32BitFloatingPoint, Big(UInt32(0x40000000)));
    ExpectLeaf("utxt(\"ab\")", typeUnicodeText, std::string("\0a\0b", 4));
    ExpectLeaf("pstr(\"ab\")", typePString, "\2ab");
    ExpectLeaf("TEXT(12)", typeChar, "12");
    ExpectLeaf("bool(true)", typeBoolean, "\1");
    ExpectLeaf("long(shor(-1))", typeSInt32, Big(SInt32(-1)));
}

TEST(Build, DataThatNoCoercionConcernsTakesTheType) {
    ExpectLeaf("type(prop)", typeType, "prop");
    ExpectLeaf("furl(\"file:///x\")", typeFileURL, "file:///x");
    ExpectLeaf("'psn '($00000000 0000000c$)", typeProcessSerialNumber,
               std::string("\0\0\0\0\0\0\0\xC", 8));
    ExpectLeaf("bool($01$)", typeBoolean, "\1");
    ExpectLeaf("long($01$)", typeSInt32, "\1");
    ExpectLeaf("kpid(77)", typeKernelProcessID, Big(SInt32(77)));
}

TEST(Build, EmptyParenthesesHoldNoData) {
    ExpectLeaf("'true'()", typeTrue, "");
    ExpectLeaf("\"\"", typeChar, "");
    EXPECT_TRUE(Built("null()").IsNull());
    EXPECT_FALSE(Built("'ccnt'()").IsNull());
}

TEST(Build, ListsAndRecordsNest) {
    const Desc list = Built("[1, [two, \"three\"], []]");
    EXPECT_EQ(Count(list), 3);
    EXPECT_EQ(Nth(Nth(list, 2), 2).Bytes(), "three");
    EXPECT_EQ(Count(Nth(list, 3)), 0);
    const Desc record = Built("{ keyA: 1, 'k b ': obj { want:type(cwin), from:null() } }");
    EXPECT_EQ(record.Type(), DescType(typeAERecord));
    EXPECT_EQ(Keys(record), "keyAk b ");
    const Desc specifier = Param(record, 'k b ');
    EXPECT_EQ(specifier.Type(), DescType('obj '));
    EXPECT_TRUE(AECheckIsRecord(&specifier));
    EXPECT_TRUE(Param(specifier, 'from').IsNull());
    EXPECT_EQ(Built("rang({a:1})").Type(), DescType('rang'));
}

TEST(Build, LastValueOfAKeyStays) {
    const Desc record = Built("{ a: 1, b: 2, a: 3 }");
    EXPECT_EQ(Keys(record), "a   b   ");
    EXPECT_EQ(Param(record, 'a   ').Bytes(), Big(SInt32(3)));
}

TEST(Build, TakesArgumentsInOrder) {
    const char bytes[] = {1, 2, 3};
    const Desc given = Longs({4, 5});
    const Desc list = Built(
        "[shor(@), long(@), magn(@), comp(@), doub(@), sing(@), bool(@), type(@), TEXT(@), "
        "rdat(@), @]",
        -2, SInt32(-3), UInt32(0xFFFFFFFF), SInt64(1) << 40, 2.5, 0.5, 7, OSType('cwin'), "text",
        Size(sizeof bytes), bytes, &given);
    EXPECT_EQ(Nth(list, 1).Bytes(), Big(SInt16(-2)));
    EXPECT_EQ(Nth(list, 2).Bytes(), Big(SInt32(-3)));
    EXPECT_EQ(Nth(list, 3).Bytes(), "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(Nth(list, 4).Bytes(), Big(SInt64(1) << 40));
    EXPECT_EQ(Nth(list, 5).Bytes(), Big(UInt64(0x4004000000000000)));
    EXPECT_EQ(Nth(list, 6).Bytes(), Big(UInt32(0x3F000000)));
    EXPECT_EQ(Nth(list, 7).Bytes(), "\1");
    EXPECT_EQ(Nth(list, 8).Bytes(), "cwin");
    EXPECT_EQ(Nth(list, 9).Bytes(), "text");
    EXPECT_EQ(Nth(list, 10).Bytes(), "\1\2\3");
    EXPECT_EQ(Nth(list, 11).Flat(), given.Flat());
}

TEST(Build, TakesAHandlesBytesWithTwoSigns) {
    Handle handle = nullptr;
    ASSERT_EQ(PtrToHand("alias", &handle, 5), noErr);
    const Desc alias = Built("alis(@@)", handle);
    DisposeHandle(handle);
    EXPECT_EQ(alias.Type(), DescType(typeAlias));
    EXPECT_EQ(alias.Bytes(), "alias");
}

TEST(Build, RefusesNullArgumentsAndArgumentsTooDeep) {
    Desc desc;
    const AEDesc* none = nullptr;
    EXPECT_EQ(AEBuildDesc(&desc, nullptr, "[1, @]", none), paramErr);
    EXPECT_TRUE(desc.IsNull());
    EXPECT_EQ(AEBuildDesc(&desc, nullptr, "TEXT(@)", static_cast<const char*>(nullptr)), paramErr);
    EXPECT_EQ(AEBuildDesc(&desc, nullptr, nullptr), paramErr);
    EXPECT_EQ(AEBuildDesc(nullptr, nullptr, "1"), paramErr);
    const Desc deep = Built(Nested(32, "[", "]").c_str());
    EXPECT_EQ(AEBuildDesc(&desc, nullptr, "[@]", &deep), paramErr);
}

TEST(Build, NestsThirtyTwoLevelsAndPointsAtTheNextOne) {
    for (const char* brackets : {"[]", "()"}) {
        const bool isList = brackets[0] == '[';
        const char* opening = isList ? "[" : "long(";
        const char* closing = isList ? "]" : ")";
        Built(Nested(32, opening, closing).c_str());
        const std::string deeper = Nested(33, opening, closing);
        ExpectMistake({deeper.c_str(), aeBuildSyntaxBadDesc,
                       UInt32(32 * std::strlen(opening) + std::strlen(opening) - 1)});
    }
    ExpectMistake({std::string(100000, '[').c_str(), aeBuildSyntaxBadDesc, 32});
}

TEST(Build, NamesEachMistakeAndItsPlace) {
    for (const Mistake& mistake : std::initializer_list<Mistake>{
             {"abcde", aeBuildSyntaxBadToken, 0},
             {"[ 'abcde' ]", aeBuildSyntaxBadToken, 2},
             {"''", aeBuildSyntaxBadToken, 0},
             {"12ab", aeBuildSyntaxBadToken, 2},
             {"\x01", aeBuildSyntaxBadToken, 0},
             {"~a", aeBuildSyntaxBadToken, 0},
             {"", aeBuildSyntaxBadEOF, 0},
             {"[1, ", aeBuildSyntaxBadEOF, 4},
             {"{ a: ", aeBuildSyntaxBadEOF, 5},
             {"shor(", aeBuildSyntaxBadEOF, 5},
             {"1 2", aeBuildSyntaxNoEOF, 2},
             {"[1] ]", aeBuildSyntaxNoEOF, 4},
             {"[-x]", aeBuildSyntaxBadNegative, 1},
             {"-", aeBuildSyntaxBadNegative, 0},
             {"[ 'ab", aeBuildSyntaxMissingQuote, 2},
             {"long($0G$)", aeBuildSyntaxBadHex, 7},
             {"long($000$)", aeBuildSyntaxOddHex, 9},
             {"long($00", aeBuildSyntaxNoCloseHex, 5},
             {"[$00$]", aeBuildSyntaxUncoercedHex, 1},
             {"{ a: \"text }", aeBuildSyntaxNoCloseString, 5},
             {"[ , ]", aeBuildSyntaxBadDesc, 2},
             {"core\\getd 1", aeBuildSyntaxBadDesc, 10},
             {"shor(100000)", aeBuildSyntaxBadData, 5},
             {"long(\"x\")", aeBuildSyntaxBadData, 5},
             {"long( : )", aeBuildSyntaxBadData, 6},
             {"long(1", aeBuildSyntaxNoCloseParen, 6},
             {"long(1 2)", aeBuildSyntaxNoCloseParen, 7},
             {"[1 2]", aeBuildSyntaxNoCloseBracket, 3},
             {"[1", aeBuildSyntaxNoCloseBracket, 2},
             {"{ a:1 b:2 }", aeBuildSyntaxNoCloseBrace, 6},
             {"{ a:1", aeBuildSyntaxNoCloseBrace, 5},
             {"{ 5: 1 }", aeBuildSyntaxNoKey, 2},
             {"{ -: 1 }", aeBuildSyntaxNoKey, 2},
             {"{ a 1 }", aeBuildSyntaxNoColon, 4},
             {"TEXT([1])", aeBuildSyntaxCoercedList, 5},
             {"[ @@ ]", aeBuildSyntaxUncoercedDoubleAt, 2},
         })
        ExpectMistake(mistake);
}

TEST(BuildEvent, HasTargetNumbersAndParameters) {
    const Desc event = BuiltEvent("'----':TEXT(@), data:[1,2]", "direct");
    Desc same;
    ASSERT_EQ(AECreateAppleEvent('core', 'setd', &Desc(typeApplSignature, "Fv8k"), 7, 8, &same),
              noErr);
    EXPECT_EQ(AEPutParamDesc(&same, keyDirectObject, &Text("direct")), noErr);
    EXPECT_EQ(AEPutParamDesc(&same, 'data', &Longs({1, 2})), noErr);
    EXPECT_EQ(event.Flat(), same.Flat());
    EXPECT_EQ(BuiltEvent(nullptr).Flat(), BuiltEvent("").Flat());
}

TEST(BuildEvent, TildesMakeParametersOptional) {
    Desc event = BuiltEvent("~a:1, b:2, ~c:3");
    EXPECT_EQ(AEBuildParameters(&event, nullptr, "~d:4"), noErr);
    Desc optional;
    ASSERT_EQ(AEGetAttributeDesc(&event, keyOptionalKeywordAttr, typeAEList, &optional), noErr);
    ASSERT_EQ(Count(optional), 3);
    EXPECT_EQ(Nth(optional, 3, typeKeyword).Bytes(), "d   ");
    AEKeyword missed = 0;
    ASSERT_EQ(
        AEGetAttributePtr(&event, keyMissedKeywordAttr, typeKeyword, nullptr, &missed, 4, nullptr),
        noErr);
    EXPECT_EQ(EndianU32_BtoN(missed), AEKeyword('b   '));
}

TEST(BuildEvent, AmpersandsSetAttributes) {
    Desc event = BuiltEvent("a:1, &timo:60, &csig:65536");
    Desc value;
    EXPECT_EQ(AEGetAttributeDesc(&event, 'csig', typeSInt32, &value), noErr);
    EXPECT_EQ(value.Bytes(), Big(SInt32(65536)));
    EXPECT_EQ(Count(event), 1);
}

TEST(BuildEvent, LeavesTheEventAloneAfterAMistake) {
    Desc event = BuiltEvent("a:1");
    const std::string before = event.Flat();
    AEBuildError error;
    EXPECT_EQ(AEBuildParameters(&event, &error, "a:2, b:3, &timo:5, c"), errAEBuildSyntaxError);
    EXPECT_EQ(error.fError, UInt32(aeBuildSyntaxNoColon));
    EXPECT_EQ(error.fErrorPos, 20u);
    EXPECT_EQ(event.Flat(), before);
    Desc record = Record();
    EXPECT_EQ(AEBuildParameters(&record, nullptr, "a:2"), errAENotAEDesc);
    EXPECT_EQ(AEBuildParameters(&event, nullptr, "a:1}"), errAEBuildSyntaxError);
    EXPECT_EQ(AEBuildAppleEvent('core', 'setd', typeApplSignature, "Fv8k", 4, 0, 0, event.Out(),
                                &error, "a:"),
              errAEBuildSyntaxError);
}

TEST(BuildEvent, CanBePartOfAValue) {
    const Desc list = Built("[ core\\getd { a:1, &tran:5 } ]");
    const Desc event = Nth(list, 1);
    EXPECT_EQ(event.Type(), DescType(typeAppleEvent));
    Desc id;
    EXPECT_EQ(AEGetAttributeDesc(&event, keyEventIDAttr, typeType, &id), noErr);
    EXPECT_EQ(id.Bytes(), "getd");
}
