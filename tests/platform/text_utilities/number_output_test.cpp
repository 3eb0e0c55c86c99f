// Numbers written in formats.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/text_utilities/NumberFixture.h"

namespace {

struct Case {
    const char* format;
    double value;
    const char* text;
    FormatStatus status = fFormatOK;
};

class NumberCases : public testing::TestWithParam<Case> {};

TEST_P(NumberCases, AreWrittenAsTheFormatSays) {
    const Case& c = GetParam();
    EXPECT_EQ(Format(c.value, c.format), (Text{c.status, c.text})) << c.format << " " << c.value;
}

constexpr char kAmounts[] = "###,###.##;-###,###.##;0";
constexpr char kDollars[] = "'$'###,###,###.00;('$'###,###,###.00)";
constexpr char kBrackets[] = "###,##0.00;(###.##);0";

INSTANTIATE_TEST_SUITE_P(
    Parts, NumberCases,
    testing::Values(Case{kAmounts, 1234.5, "1,234.5"}, Case{kAmounts, -1234.5, "-1,234.5"},
                    Case{kAmounts, 0, "0"}, Case{kAmounts, 12, "12."}, Case{kAmounts, -0.0, "0"},
                    Case{kDollars, 1234567, "$1,234,567.00"}, Case{kDollars, 0, "$.00"},
                    Case{kDollars, -9.5, "($9.50)"}, Case{kBrackets, 1.239, "1.24"},
                    Case{kBrackets, -1234, "(1234.)", fFormatOverflow},
                    Case{kBrackets, -12.5, "(12.5)"}, Case{kBrackets, 0, "0"},
                    Case{"0.0;;'none'", -1, ""}, Case{"0.0;;'none'", 0, "none"},
                    Case{"0;'minus' 0", -3, "minus 3"}, Case{"#", -5, "-5"},
                    Case{"'$'0", -5, "-$5"}));

INSTANTIATE_TEST_SUITE_P(
    Places, NumberCases,
    testing::Values(Case{"000.###", 1.2, "001.2"},
                    Case{"###.###", 999.999999999, "1000.", fFormatOverflow},
                    Case{"###.###", 0, "."}, Case{"###", 0, ""}, Case{"0##", 5, "005"},
                    Case{"^^^0", 42,
                         "\xCA\xCA"
                         "42"},
                    Case{"^,^^0", 42,
                         "\xCA\xCA\xCA"
                         "42"},
                    Case{"0.0^^", 1.5, "1.5\xCA\xCA"}, Case{"0.#0#", 1, "1.00"},
                    Case{"0.#0#", 1.125, "1.125"}, Case{".##", 12.5, "12.5", fFormatOverflow},
                    Case{"0,000", 12, "0,012"}, Case{"#,##0", 1234567, "1234,567", fFormatOverflow},
                    Case{"#,##0", 12, "12"}, Case{"0.###,###", 0.1234, "0.123,4"},
                    Case{"0.###,###", 0.123, "0.123"}, Case{"###'-'####", 5551234, "555-1234"},
                    Case{"0", 0.5, "0"}, Case{"0", 1.5, "2"}, Case{"0", 2.5, "2"},
                    Case{"0.00", 0.005, "0.01"},
                    Case{"0.0", 1e22, "10000000000000000000000.0", fFormatOverflow}));

INSTANTIATE_TEST_SUITE_P(
    Symbols, NumberCases,
    testing::Values(Case{"00%", 0.25, "25%"}, Case{"0%", 0.25, "25%", fFormatOverflow},
                    Case{"##0.0%", 0.1255, "12.6%"}, Case{"0%", 0, "0%"}, Case{"+0", 5, "+5"},
                    Case{"+0", -5, "-5"}, Case{"-0", 5, "5"}, Case{"-0", -5, "-5"},
                    Case{"0-", -5, "5-"}, Case{"0;0;-", 0, "-"}, Case{"\\'0\\'", 7, "'7'"},
                    Case{"'it\\'s '0", 7, "it's 7"}, Case{"$ (0)*/:", 7, "$ (7)*/:"},
                    Case{"'a;b'0", 1, "a;b1"}));

INSTANTIATE_TEST_SUITE_P(
    Exponents, NumberCases,
    testing::Values(Case{"0.00E+00", 12345, "1.23E+04"}, Case{"0.00E+00", 0.00012345, "1.23E-04"},
                    Case{"0.00E-0", 12345, "1.23E4"}, Case{"0.00E-0", 0.012, "1.20E-2"},
                    Case{"##0.##E+0", 12345, "123.45E+2"}, Case{"0.0E+0", 9.99, "1.0E+1"},
                    Case{"0.0E+0", 0, "0.0E+0"}, Case{".00E+0", 5, ".50E+1"},
                    Case{"0E+0", 1e100, "1E+100", fFormatOverflow}, Case{"0E+##", 5, "5E+"},
                    Case{"0.0E+0", -15, "-1.5E+1"}, Case{"0%E+0", 0.5, "5%E+1"}));

INSTANTIATE_TEST_SUITE_P(WithoutFormat, NumberCases,
                         testing::Values(Case{"", 1234.5, "1234.5"}, Case{"", -0.1, "-0.1"},
                                         Case{"", 1e100, "1E+100"}, Case{"", 1e-7, "1E-07"}));

TEST(ExtendedToString, AnswersWhatIsNoNumberWithItsName) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Format(infinity, "0.00"), (Text{fFormStrIsNAN, "INF"}));
    EXPECT_EQ(Format(-infinity, "0.00"), (Text{fFormStrIsNAN, "-INF"}));
    EXPECT_EQ(Format(std::nan(""), "0.00"), (Text{fFormStrIsNAN, "NAN"}));
}

TEST(ExtendedToString, UsesTheSymbolsOfTheTableItIsGiven) {
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokDecPoint, ',');
    SetSymbol(&parts, tokThousands, '.');
    EXPECT_EQ(Format(1234.5, Parse("#,##0.00").record, parts), (Text{fFormatOK, "1.234,50"}));
}

TEST(ExtendedToString, ShowsSymbolsOfTwoBytes) {
    NumberParts parts = SystemParts();
    parts.data[tokPercent - 1].b = SInt16(0x8193);
    EXPECT_EQ(Format(0.5, Parse("00%").record, parts), (Text{fFormatOK, "50\x81\x93"}));
}

TEST(ExtendedToString, RefusesATableThatLacksANeededSymbol) {
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokPercent, '\0');
    EXPECT_EQ(Format(0.5, Parse("0%").record, parts), (Text{fBadPartsTable, ""}));
    EXPECT_EQ(Format(0.5, Parse("0.0").record, parts), (Text{fFormatOK, "0.5"}));
}

TEST(ExtendedToString, CutsWhatIsLongerThanAStringAndSaysSo) {
    const Text text = Format(1e300, "0");
    EXPECT_EQ(text.status, fFormatOverflow);
    EXPECT_EQ(text.text, "100000000000000005250476025520442025" + std::string(219, '0'));
}

TEST(ExtendedToString, FillsHostileWidthsWithoutOverrunningTheString) {
    const Text zeros = Format(1, std::string(255, '0'));
    EXPECT_EQ(zeros.status, fFormStrIsNAN);  // one more than a record holds
    EXPECT_EQ(Format(1, std::string(254, '0')).text, std::string(253, '0') + "1");
    EXPECT_EQ(Format(1, "0." + std::string(252, '0')).text, "1." + std::string(252, '0'));
    EXPECT_EQ(Format(-1, "0." + std::string(252, '0')).text, "-1." + std::string(252, '0'));
    EXPECT_EQ(Format(123, "0." + std::string(252, '0')),
              (Text{fFormatOverflow, "123." + std::string(251, '0')}));
}

TEST(ExtendedToString, AnswersRecordsThatHoldNoFormat) {
    NumFormatString record = {};
    EXPECT_EQ(Format(1, record), (Text{fFormStrIsNAN, ""}));
    record = Parse("0.00").record;
    record.fVersion = 1;
    EXPECT_EQ(Format(1, record), (Text{fFormStrIsNAN, ""}));
    record = Parse("0.00").record;
    record.data[0] = 1;  // no token that a format has
    EXPECT_EQ(Format(1, record), (Text{fFormStrIsNAN, ""}));
    record = {2, fVNumber, {tokEscape}};  // nothing behind it
    EXPECT_EQ(Format(1, record), (Text{fFormStrIsNAN, ""}));
}

}  // namespace
