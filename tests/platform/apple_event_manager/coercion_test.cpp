// Every row of the table of built-in coercions, and what is refused.
#include "platform/apple_event_manager/Desc.h"

#include <bit>

namespace {

struct Row {
    DescType from;
    std::string data;
    DescType to;
    std::string result;
};

std::ostream& operator<<(std::ostream& ioStream, const Row& inRow) {
    return ioStream << Big(inRow.from) << " to " << Big(inRow.to);
}

std::string Single(float inValue) {
    return Big(std::bit_cast<UInt32>(inValue));
}
std::string Double(double inValue) {
    return Big(std::bit_cast<UInt64>(inValue));
}
std::string Utf16(std::u16string_view inText) {
    std::string bytes;
    for (char16_t unit : inText) bytes += Big(UInt16(unit));
    return bytes;
}

// 1.5 and -2 in 80 bits.
const std::string kOneAndAHalf("\x3F\xFF\xC0\0\0\0\0\0\0\0", 10);
const std::string kMinusTwo("\xC0\x00\x80\0\0\0\0\0\0\0", 10);

OSErr Coerce(DescType inFrom, std::string_view inData, DescType inTo, Desc& outDesc) {
    return AECoercePtr(inFrom, inData.data(), Size(inData.size()), inTo, outDesc.Out());
}

class Coerces : public testing::TestWithParam<Row> {};
class Refuses : public testing::TestWithParam<Row> {};

const Row kCoercions[] = {
    // Text to numbers.
    {'TEXT', "42", 'shor', Big(SInt16(42))},
    {'TEXT', "-42", 'long', Big(SInt32(-42))},
    {'TEXT', "+42", 'long', Big(SInt32(42))},
    {'TEXT', " \t42\r\n", 'long', Big(SInt32(42))},
    {'TEXT', "4294967295", 'magn', Big(UInt32(0xFFFFFFFF))},
    {'TEXT', "9223372036854775807", 'comp', Big(SInt64(0x7FFFFFFFFFFFFFFF))},
    {'TEXT', "1.5", 'sing', Single(1.5f)},
    {'TEXT', "-0.1", 'doub', Double(-0.1)},
    {'TEXT', ".5e1", 'doub', Double(5)},
    {'TEXT', "1.5", 'exte', kOneAndAHalf},
    {'TEXT', "2.5", 'long', Big(SInt32(3))},
    {'TEXT', "1e3", 'long', Big(SInt32(1000))},
    {'STXT', "42", 'long', Big(SInt32(42))},
    {'utxt', Utf16(u"42"), 'long', Big(SInt32(42))},
    {'utf8', "42", 'comp', Big(SInt64(42))},
    {'ut16', Utf16(u"42"), 'long', Big(SInt32(42))},
    {'pstr', "\00242", 'long', Big(SInt32(42))},
    // Numbers to text.
    {'shor', Big(SInt16(-7)), 'TEXT', "-7"},
    {'long', Big(SInt32(100000)), 'TEXT', "100000"},
    {'magn', Big(UInt32(0xFFFFFFFF)), 'TEXT', "4294967295"},
    {'comp', Big(SInt64(-1)), 'utf8', "-1"},
    {'long', Big(SInt32(7)), 'utxt', Utf16(u"7")},
    {'long', Big(SInt32(7)), 'ut16', Utf16(u"7")},
    {'long', Big(SInt32(7)), 'STXT', "7"},
    {'long', Big(SInt32(42)), 'pstr', "\00242"},
    {'sing', Single(0.1f), 'TEXT', "0.1"},
    {'doub', Double(0.1), 'TEXT', "0.1"},
    {'doub', Double(3), 'TEXT', "3"},
    {'exte', kOneAndAHalf, 'TEXT', "1.5"},
    // Numbers to numbers.
    {'shor', Big(SInt16(-5)), 'long', Big(SInt32(-5))},
    {'shor', Big(SInt16(-5)), 'comp', Big(SInt64(-5))},
    {'long', Big(SInt32(-5)), 'shor', Big(SInt16(-5))},
    {'long', Big(SInt32(-1728)), 'shor', Big(SInt16(-1728))},
    {'long', Big(SInt32(5)), 'magn', Big(UInt32(5))},
    {'magn', Big(UInt32(0x80000000)), 'comp', Big(SInt64(0x80000000))},
    {'comp', Big(SInt64(1) << 40), 'doub', Double(1099511627776.0)},
    {'long', Big(SInt32(-2)), 'exte', kMinusTwo},
    {'exte', kMinusTwo, 'long', Big(SInt32(-2))},
    {'exte', kOneAndAHalf, 'doub', Double(1.5)},
    {'doub', Double(1.5), 'exte', kOneAndAHalf},
    {'doub', Double(0), 'exte', std::string(10, '\0')},
    {'doub', Double(2.5), 'long', Big(SInt32(3))},
    {'doub', Double(-2.5), 'long', Big(SInt32(-3))},
    {'doub', Double(2.4), 'shor', Big(SInt16(2))},
    {'doub', Double(0.1), 'sing', Single(0.1f)},
    {'sing', Single(0.5f), 'doub', Double(0.5)},
    // Text to text.
    {'TEXT', "caf\x8E", 'utf8', "caf\u00E9"},
    {'TEXT', "caf\x8E", 'utxt', Utf16(u"caf\u00E9")},
    {'TEXT', "caf\x8E", 'ut16', Utf16(u"caf\u00E9")},
    {'utf8', "caf\u00E9", 'TEXT', "caf\x8E"},
    {'utf8', "cafe\u0301", 'TEXT', "caf\x8E"},
    {'utf8', "a\u4E2Db", 'TEXT', "a?b"},
    {'utf8', "a\U0001F4BFb", 'TEXT', "a?b"},
    {'utf8', "\U0001F4BF", 'utxt', Utf16(u"\U0001F4BF")},
    {'utxt', Utf16(u"\U0001F4BF"), 'utf8', "\U0001F4BF"},
    {'utxt', Utf16(u"caf\u00E9"), 'TEXT', "caf\x8E"},
    {'ut16', Utf16(u"\uFEFFab"), 'TEXT', "ab"},
    {'ut16',
     std::string("\xFF\xFE"
                 "a\0b\0",
                 6),
     'TEXT', "ab"},
    {'TEXT', "abc", 'STXT', "abc"},
    {'STXT', "abc", 'TEXT', "abc"},
    {'TEXT', "abc", 'itxt', std::string(4, '\0') + "abc"},
    {'itxt', std::string(4, '\0') + "abc", 'TEXT', "abc"},
    {'itxt', std::string("\0\1\0\2", 4) + "caf\x8E", 'utf8', "caf\u00E9"},
    {'TEXT', "", 'utf8', ""},
    // Framed text.
    {'TEXT', "abc", 'pstr', "\003abc"},
    {'TEXT', "", 'pstr', std::string(1, '\0')},
    {'TEXT', std::string(255, 'x'), 'pstr', "\xFF" + std::string(255, 'x')},
    {'utf8', "caf\u00E9", 'pstr', "\004caf\x8E"},
    {'pstr', "\003abc", 'TEXT', "abc"},
    {'pstr', "\002abc", 'TEXT', "ab"},
    {'pstr', "\003abc", 'utf8', "abc"},
    {'TEXT', "abc", 'cstr', std::string("abc\0", 4)},
    {'cstr', std::string("abc\0def", 7), 'TEXT', "abc"},
    {'cstr', "abc", 'TEXT', "abc"},
    // Codes.
    {'TEXT', "pnam", 'type', "pnam"},
    {'TEXT', "yes ", 'enum', "yes "},
    {'TEXT', "keyA", 'keyw', "keyA"},
    {'utf8', "sele", 'prop', "sele"},
    {'utxt', Utf16(u"pnam"), 'type', "pnam"},
    {'type', "pnam", 'TEXT', "pnam"},
    {'enum', "yes ", 'utf8', "yes "},
    {'keyw', "keyA", 'TEXT', "keyA"},
    {'prop', "sele", 'utxt', Utf16(u"sele")},
    // Truth.
    {'true', "", 'bool', "\1"},
    {'fals', "", 'bool', std::string(1, '\0')},
    {'enum', "true", 'bool', "\1"},
    {'enum', "fals", 'bool', std::string(1, '\0')},
    {'bool', "\1", 'enum', "true"},
    {'bool', std::string(1, '\0'), 'enum', "fals"},
    {'shor', Big(SInt16(1)), 'bool', "\1"},
    {'shor', Big(SInt16(0)), 'bool', std::string(1, '\0')},
    {'long', Big(SInt32(1)), 'bool', "\1"},
    {'magn', Big(UInt32(0)), 'bool', std::string(1, '\0')},
    {'comp', Big(SInt64(1)), 'bool', "\1"},
    {'doub', Double(1), 'bool', "\1"},
    {'bool', "\1", 'shor', Big(SInt16(1))},
    {'bool', std::string(1, '\0'), 'shor', Big(SInt16(0))},
    {'bool', "\1", 'long', Big(SInt32(1))},
    // The same type, or any.
    {'long', "odd", 'long', "odd"},
    {'long', "odd", '****', "odd"},
};

const Row kRefusals[] = {
    {'TEXT', "", 'long', ""},
    {'TEXT', "  ", 'long', ""},
    {'TEXT', "twelve", 'long', ""},
    {'TEXT', "12 monkeys", 'long', ""},
    {'TEXT', "0x10", 'long', ""},
    {'TEXT', "+-1", 'long', ""},
    {'TEXT', "nan", 'doub', ""},
    {'TEXT', "inf", 'doub', ""},
    {'TEXT', "-inf", 'doub', ""},
    {'TEXT', "1e400", 'doub', ""},
    {'TEXT', "1e99999", 'exte', ""},
    {'TEXT', "40000", 'shor', ""},
    {'TEXT', std::string("4\0", 2), 'long', ""},
    {'TEXT', std::string(100000, '9'), 'doub', ""},
    {'long', Big(SInt32(100000)), 'shor', ""},
    {'long', Big(SInt32(-1)), 'magn', ""},
    {'magn', Big(UInt32(0x80000000)), 'long', ""},
    {'doub', Double(32767.5), 'shor', ""},
    {'doub', Double(9223372036854775808.0), 'comp', ""},
    {'doub', Double(1e300), 'sing', ""},
    {'doub', Double(std::numeric_limits<double>::quiet_NaN()), 'long', ""},
    {'doub', Double(std::numeric_limits<double>::infinity()), 'TEXT', ""},
    {'long', "\0\0\1", 'shor', ""},
    {'shor', Big(SInt16(2)), 'bool', ""},
    {'long', Big(SInt32(-1)), 'bool', ""},
    {'doub', Double(0.5), 'bool', ""},
    {'bool', "\1", 'TEXT', ""},
    {'bool', "\1\1", 'shor', ""},
    {'TEXT', "true", 'bool', ""},
    {'enum', "yes ", 'bool', ""},
    {'type', "true", 'bool', ""},
    {'TEXT', "pna", 'type', ""},
    {'TEXT', "pnam ", 'enum', ""},
    {'utf8', "caf\u00E9s", 'type', ""},
    {'type', "pn", 'TEXT', ""},
    {'type', "pnam", 'enum', ""},
    {'enum', "pnam", 'keyw', ""},
    {'keyw', "pnam", 'type', ""},
    {'type', "pnam", 'long', ""},
    {'long', "pnam", 'type', ""},
    {'TEXT', std::string(256, 'x'), 'pstr', ""},
    {'pstr', "", 'TEXT', ""},
    {'pstr', "\004abc", 'TEXT', ""},
    {'itxt', "abc", 'TEXT', ""},
    {'utxt', "odd", 'TEXT', ""},
    {'utxt', Utf16(u"a\xD800"), 'utf8', ""},
    {'utf8', "\xFF", 'TEXT', ""},
    {'utf8', "\xC0\x80", 'utxt', ""},
    {'null', "", 'long', ""},
    {'null', "", 'TEXT', ""},
    {'null', "", 'reco', ""},
    {'ldt ', std::string(8, '\0'), 'comp', ""},
    {'ldt ', std::string(8, '\0'), 'TEXT', ""},
    {'TEXT', "1904", 'ldt ', ""},
    {'sign', "Fv8k", 'psn ', ""},
    {'psn ', std::string(8, '\0'), 'sign', ""},
    {'TEXT', "x", 'reco', ""},
    {'what', "x", 'TEXT', ""},
    {'fss ', std::string(70, '\0'), 'TEXT', ""},
    {'fss ', "short", 'fsrf', ""},
    {'fsrf', std::string(80, '\xEE'), 'fss ', ""},
    {'alis', "no alias record", 'fss ', ""},
    {'alis', std::string(200, '\xFF'), 'fsrf', ""},
    {'fss ', std::string(70, '\0'), 'alis', ""},
    {'furl', "http://example.org/x", 'fss ', ""},
    {'furl', "file:///bad%0", 'fsrf', ""},
    {'furl', "file:///nul%00byte", 'fsrf', ""},
};

}  // namespace

TEST_P(Coerces, Row) {
    const Row& row = GetParam();
    Desc result;
    ASSERT_EQ(Coerce(row.from, row.data, row.to, result), noErr);
    EXPECT_EQ(result.Bytes(), row.result);
    EXPECT_EQ(result.Type(), row.to == '****' ? row.from : row.to);
    const Desc source(row.from, row.data);
    Desc fromDesc;
    ASSERT_EQ(AECoerceDesc(&source, row.to, &fromDesc), noErr);
    EXPECT_EQ(fromDesc.Flat(), result.Flat());
}
INSTANTIATE_TEST_SUITE_P(Table, Coerces, testing::ValuesIn(kCoercions));

TEST_P(Refuses, Row) {
    const Row& row = GetParam();
    Desc result = Text("left over");
    EXPECT_EQ(Coerce(row.from, row.data, row.to, result), errAECoercionFail);
    EXPECT_TRUE(result.IsNull());
}
INSTANTIATE_TEST_SUITE_P(Table, Refuses, testing::ValuesIn(kRefusals));

TEST(Coercion, RoundTripsExtendedNumbersAtTheirLimits) {
    for (const std::string& bytes : {std::string("\x7F\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10),
                                     std::string("\x80\x01\x80\0\0\0\0\0\0\0", 10)}) {
        Desc text, back;
        ASSERT_EQ(Coerce(typeExtended, bytes, typeChar, text), noErr);
        ASSERT_EQ(Coerce(typeChar, text.Bytes(), typeExtended, back), noErr) << text.Bytes();
        EXPECT_EQ(back.Bytes(), bytes) << text.Bytes();
    }
}

TEST(Coercion, KeepsInfinityAndNoNumberAmongFloats) {
    Desc extended, single;
    const double infinity = std::numeric_limits<double>::infinity();
    ASSERT_EQ(Coerce('doub', Double(-infinity), 'exte', extended), noErr);
    EXPECT_EQ(extended.Bytes(), std::string("\xFF\xFF\x80\0\0\0\0\0\0\0", 10));
    ASSERT_EQ(Coerce('exte', extended.Bytes(), 'sing', single), noErr);
    EXPECT_EQ(single.Bytes(), Single(-std::numeric_limits<float>::infinity()));
}

TEST(Coercion, OfAnythingToAListMakesOneItem) {
    Desc leaf = Long(5), null, event = Event();
    Desc specifier = Record();
    (&specifier)->descriptorType = typeObjectSpecifier;
    for (AEDesc* source : {&leaf, &null, &event, &specifier}) {
        Desc list;
        ASSERT_EQ(AECoerceDesc(source, typeAEList, &list), noErr);
        EXPECT_EQ(Count(list), 1);
        EXPECT_EQ(Nth(list, 1).Type(), DescType(source->descriptorType));
    }
}

TEST(Coercion, OfARecordToAListGivesTheItemsWithoutKeys) {
    Desc record = Record(), list;
    ASSERT_EQ(AEPutParamPtr(&record, 'keyA', typeChar, "a", 1), noErr);
    ASSERT_EQ(AEPutParamPtr(&record, 'keyB', typeChar, "b", 1), noErr);
    ASSERT_EQ(AECoerceDesc(&record, typeAEList, &list), noErr);
    EXPECT_EQ(Count(list), 2);
    EXPECT_EQ(Nth(list, 2).Bytes(), "b");
}

TEST(Coercion, OfAListGoesThroughItsOnlyItem) {
    const Desc one = Longs({42}), none = Longs({}), two = Longs({1, 2});
    Desc nested = List(), result;
    ASSERT_EQ(AEPutDesc(&nested, 0, &one), noErr);
    EXPECT_EQ(AECoerceDesc(&one, typeChar, &result), noErr);
    EXPECT_EQ(result.Bytes(), "42");
    EXPECT_EQ(AECoerceDesc(&one, typeSInt32, result.Out()), noErr);
    EXPECT_EQ(result.Bytes(), Big(SInt32(42)));
    EXPECT_EQ(AECoerceDesc(&nested, typeSInt16, result.Out()), noErr);
    EXPECT_EQ(result.Bytes(), Big(SInt16(42)));
    EXPECT_EQ(AECoerceDesc(&none, typeSInt32, result.Out()), errAECoercionFail);
    EXPECT_EQ(AECoerceDesc(&two, typeSInt32, &result), errAECoercionFail);
    EXPECT_EQ(AECoerceDesc(&one, typeFSS, &result), errAECoercionFail);
    EXPECT_EQ(AECoerceDesc(&two, typeAERecord, &result), errAECoercionFail);
}

TEST(Coercion, OfARecordChangesOnlyTheTypeAndBack) {
    Desc record = Record(), specifier, back, result;
    ASSERT_EQ(AEPutParamPtr(&record, 'want', typeType, "docu", 4), noErr);
    for (DescType type : {DescType('obj '), DescType('insl'), DescType('rang'), DescType('mine')}) {
        ASSERT_EQ(AECoerceDesc(&record, type, specifier.Out()), noErr);
        EXPECT_EQ(specifier.Type(), type);
        EXPECT_EQ(specifier.Bytes(), record.Bytes());
        ASSERT_EQ(AECoerceDesc(&specifier, typeAERecord, back.Out()), noErr);
        EXPECT_EQ(back.Flat(), record.Flat());
    }
    for (DescType type : {DescType(typeChar), DescType(typeSInt32), DescType(typeAppleEvent),
                          DescType(typeNull), DescType(typeFSS)})
        EXPECT_EQ(AECoerceDesc(&record, type, &result), errAECoercionFail);
}

TEST(Coercion, OfAnEventToARecordGivesItsParameters) {
    Desc event = Event(), record, result;
    ASSERT_EQ(AEPutParamPtr(&event, 'keyA', typeChar, "a", 1), noErr);
    ASSERT_EQ(AECoerceDesc(&event, typeAERecord, &record), noErr);
    EXPECT_EQ(Count(record), 1);
    EXPECT_EQ(Param(record, 'keyA').Bytes(), "a");
    Size size = 0;
    EXPECT_EQ(AESizeOfAttribute(&record, keyEventClassAttr, nullptr, &size), errAENotAEDesc);
    EXPECT_EQ(AECoerceDesc(&event, 'obj ', &result), errAECoercionFail);
}

TEST(Coercion, OfAnEventToLaunchParametersPutsItBehindAnEventRecord) {
    Desc event = Event('aevt', 'oapp'), parameters;
    ASSERT_EQ(AEPutParamPtr(&event, 'srVR', typeBoolean, "\1", 1), noErr);
    ASSERT_EQ(AECoerceDesc(&event, typeAppParameters, &parameters), noErr);
    EXPECT_EQ(parameters.Type(), DescType(typeAppParameters));
    const std::string flat = event.Flat(), bytes = parameters.Bytes();
    EXPECT_EQ(bytes.substr(0, 6), std::string("\0\x17", 2) + "aevt");
    EXPECT_EQ(bytes.substr(10, 4), "oapp");
    EXPECT_EQ(bytes.substr(20, 4), Big(UInt32(flat.size())));
    EXPECT_EQ(bytes.substr(24), flat);
}

TEST(Coercion, WantsADescriptorAndAPlaceForTheResult) {
    Desc result;
    const Desc source = Long(1);
    EXPECT_EQ(AECoerceDesc(nullptr, typeChar, &result), paramErr);
    EXPECT_EQ(AECoerceDesc(&source, typeChar, nullptr), paramErr);
    EXPECT_EQ(AECoercePtr(typeChar, nullptr, 1, typeSInt32, &result), paramErr);
    EXPECT_EQ(AECoercePtr(typeChar, "1", -1, typeSInt32, &result), paramErr);
}
