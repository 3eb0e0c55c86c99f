// Numbers read from texts, with a format and without.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

#include "platform/text_utilities/NumberFixture.h"

namespace {

constexpr char kAmounts[] = "#,###,##0.00;(#,###,##0.00);'nothing'";

TEST(StringToExtended, TakesWhatTheFormatWritesAsExact) {
    EXPECT_EQ(Read("1,234.50", kAmounts), (Number{fFormatOK, 1234.5}));
    EXPECT_EQ(Read("(1,234.50)", kAmounts), (Number{fFormatOK, -1234.5}));
    EXPECT_EQ(Read("nothing", kAmounts), (Number{fFormatOK, 0}));
    EXPECT_EQ(Read("12.6%", "##0.0%"), (Number{fFormatOK, 0.126}));
    EXPECT_EQ(Read("1.23E+04", "0.00E+00"), (Number{fFormatOK, 12300}));
    EXPECT_EQ(Read("1.20E-2", "0.00E-0"), (Number{fFormatOK, 0.012}));
    EXPECT_EQ(Read("1.23E4", "0.00E-0"), (Number{fFormatOK, 12300}));
    EXPECT_EQ(Read("-5", "#"), (Number{fFormatOK, -5}));
    EXPECT_EQ(Read("+5", "+0"), (Number{fFormatOK, 5}));
    EXPECT_EQ(Read("555-1234", "###'-'####"), (Number{fFormatOK, 5551234}));
    EXPECT_EQ(Read("\xCA\xCA"
                   "42",
                   "^^^0"),
              (Number{fFormatOK, 42}));
}

TEST(StringToExtended, GuessesWhatFollowsTheFormatOnlyNearly) {
    EXPECT_EQ(Read("1234.50", kAmounts), (Number{fBestGuess, 1234.5}));
    EXPECT_EQ(Read("1,234.5", kAmounts), (Number{fBestGuess, 1234.5}));
    EXPECT_EQ(Read("12345", "###"), (Number{fBestGuess, 12345}));
    EXPECT_EQ(Read("0.126", "0.00"), (Number{fBestGuess, 0.126}));
}

TEST(StringToExtended, SaysHowATextDiffersFromTheFormat) {
    EXPECT_EQ(Read("5.00", "'$'0.00"), (Number{fMissingLiteral, 5}));
    EXPECT_EQ(Read("-5", kAmounts), (Number{fOutOfSynch, -5}));
    EXPECT_EQ(Read("5 dollars", kAmounts), (Number{fSpuriousChars, 5}));
    EXPECT_EQ(Read("5.0.0", kAmounts), (Number{fExtraDecimal, 5}));
    EXPECT_EQ(Read("5E+1E+1", kAmounts), (Number{fExtraExp, 50}));
    EXPECT_EQ(Read("5%%", kAmounts), (Number{fExtraPercent, 0.05}));
}

TEST(StringToExtended, ReadsAnyNumberWithAnEmptyFormat) {
    EXPECT_EQ(Read("1,234.5", ""), (Number{fFormatOK, 1234.5}));
    EXPECT_EQ(Read("2.75", ""), (Number{fFormatOK, 2.75}));
    EXPECT_EQ(Read("-17", ""), (Number{fFormatOK, -17}));
    EXPECT_EQ(Read(" +.5 ", ""), (Number{fFormatOK, 0.5}));
    EXPECT_EQ(Read("1e3", ""), (Number{fFormatOK, 1000}));
    EXPECT_EQ(Read("1.5E-3", ""), (Number{fFormatOK, 0.0015}));
    EXPECT_EQ(Read("50%", ""), (Number{fFormatOK, 0.5}));
    EXPECT_EQ(Read("$9", ""), (Number{fSpuriousChars, 9}));
    EXPECT_EQ(Read("1 2", ""), (Number{fSpuriousChars, 12}));
    EXPECT_EQ(Read("5E", ""), (Number{fSpuriousChars, 5}));
}

TEST(StringToExtended, GivesNaNForATextWithoutDigits) {
    for (const char* text : {"", "abc", "-", ".", "%"}) {
        const Number number = Read(text, "");
        EXPECT_EQ(number.status, fFormStrIsNAN) << text;
        EXPECT_TRUE(std::isnan(number.value)) << text;
        EXPECT_EQ(Read(text, kAmounts).status, fFormStrIsNAN) << text;
    }
}

TEST(StringToExtended, TellsNumbersOfAnyLengthApart) {
    EXPECT_EQ(Read("1" + std::string(254, '0'), ""), (Number{fFormatOK, 1e254}));
    EXPECT_EQ(Read("." + std::string(253, '0') + "1", ""), (Number{fFormatOK, 1e-254}));
    EXPECT_EQ(Read("1E+99999999999999999999", "").value, HUGE_VAL);
    EXPECT_EQ(Read("1E-99999999999999999999", "").value, 0);
}

TEST(StringToExtended, UnderstandsTheDigitsOfTheTable) {
    NumberParts parts = SystemParts();
    for (int i = 0; i < 10; ++i) parts.altNumTable.data[i].b = SInt16(0xB0 + i);
    EXPECT_EQ(Read("\xB1\xB2.5", Parse("").record, parts), (Number{fFormatOK, 12.5}));
}

TEST(StringToExtended, RefusesABadTable) {
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokThousands, '.');
    EXPECT_EQ(Read("1", Parse("0").record, parts).status, fBadPartsTable);
}

TEST(StringToExtended, ReadsBackEveryNumberThatIsWrittenFreely) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        const Text text = Format(value, "");
        ASSERT_EQ(text.status, fFormatOK);
        ASSERT_EQ(Read(text.text, ""), (Number{fFormatOK, value})) << text.text;
    }
}

TEST(StringToExtended, ReadsBackWhatAFormatWrites) {
    std::mt19937_64 random(2);
    std::uniform_int_distribution<SInt32> cents(-999999999, 999999999);
    for (int i = 0; i < 5000; ++i) {
        const double value = cents(random) / 100.0;
        const Text text = Format(value, kAmounts);
        ASSERT_EQ(Read(text.text, kAmounts).value, value) << text.text;
    }
}

}  // namespace
