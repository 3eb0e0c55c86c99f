// Formats read from texts and written back.
#include <gtest/gtest.h>

#include <cstddef>

#include "platform/text_utilities/NumberFixture.h"

namespace {

static_assert(sizeof(NumberParts) == 172 && alignof(NumberParts) == 2);
static_assert(offsetof(NumberParts, data) == 2 && offsetof(NumberParts, pePlus) == 64);
static_assert(offsetof(NumberParts, peMinus) == 86 && offsetof(NumberParts, peMinusPlus) == 108);
static_assert(offsetof(NumberParts, altNumTable) == 130 && offsetof(NumberParts, reserved) == 152);
static_assert(sizeof(WideChar) == 2 && sizeof(WideCharArr) == 22 && sizeof(FVector) == 4);
static_assert(sizeof(NumFormatString) == 256 && offsetof(NumFormatString, data) == 2);
static_assert(sizeof(TripleInt) == 12 && sizeof(FormatStatus) == 2 &&
              sizeof(FormatResultType) == 1);

FormatStatus StatusOf(const std::string& inFormat) {
    return Parse(inFormat).status;
}

TEST(StringToFormatRec, TakesEveryPublishedFormat) {
    EXPECT_EQ(StatusOf("###,###.##;-###,###.##;0"), fFormatOK);
    EXPECT_EQ(StatusOf("'$'###,###,###.00;('$'###,###,###.00)"), fFormatOK);
    EXPECT_EQ(StatusOf("###,##0.00;(###.##);0"), fFormatOK);
    EXPECT_EQ(StatusOf("^^^.0E+00"), fFormatOK);
}

TEST(StringToFormatRec, NamesWhatIsWrongWithAFormat) {
    EXPECT_EQ(StatusOf(""), fEmptyFormatString);
    EXPECT_EQ(StatusOf("''"), fEmptyFormatString);
    EXPECT_EQ(StatusOf("#x#"), fSpuriousChars);
    EXPECT_EQ(StatusOf("0'abc"), fMissingDelimiter);
    EXPECT_EQ(StatusOf("0'"), fMissingDelimiter);
    EXPECT_EQ(StatusOf("'abc\\'"), fMissingDelimiter);
    EXPECT_EQ(StatusOf("0\\"), fMissingLiteral);
    EXPECT_EQ(StatusOf("0'abc\\"), fMissingLiteral);
    EXPECT_EQ(StatusOf("0.0.0"), fExtraDecimal);
    EXPECT_EQ(StatusOf("0E+0.0"), fExtraDecimal);
    EXPECT_EQ(StatusOf("0E+0E-0"), fExtraExp);
    EXPECT_EQ(StatusOf("0%%"), fExtraPercent);
    EXPECT_EQ(StatusOf("0;0;0;0"), fExtraSeparator);
    EXPECT_EQ(StatusOf("0.0%E+0;0.0%E+0;0.0%E+0"), fFormatOK);
}

TEST(StringToFormatRec, SkipsUnknownCharactersButKeepsTheRest) {
    EXPECT_EQ(Format(12.5, Parse("about 00.0 ok").record), (Text{fFormatOK, " 12.5 "}));
}

TEST(StringToFormatRec, LeavesNoUsableFormatAfterAnError) {
    for (const char* format : {"0'abc", "0.0.0", "0E+0E+0", "0%%", "0;0;0;0", "0\\"}) {
        EXPECT_EQ(Format(1, format), (Text{fFormStrIsNAN, ""})) << format;
        EXPECT_EQ(Read("1", format).status, fFormStrIsNAN) << format;
        EXPECT_EQ(Canonical(format), (Text{fFormStrIsNAN, ""})) << format;
    }
}

TEST(StringToFormatRec, RefusesATableInWhichTwoSymbolsAreTheSame) {
    for (int first = 1; first <= tokDecPoint; ++first)
        for (int second = first + 1; second <= tokDecPoint; ++second) {
            if (first == tokReserved || second == tokReserved) continue;
            NumberParts parts = SystemParts();
            parts.data[second - 1] = parts.data[first - 1];
            const bool isAllowed = (first == tokLeftQuote && second == tokRightQuote) ||
                                   (first == tokLeadPlacer && second == tokLeader);
            // The quotes are the same to begin with, so a symbol like one is like both.
            EXPECT_EQ(Parse("0", parts).status == fBadPartsTable, !isAllowed)
                << first << " and " << second;
        }
}

TEST(StringToFormatRec, TakesQuotesThatDifferWhenTheThousandsSymbolIsAQuote) {
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokThousands, '\'');
    EXPECT_EQ(Parse("#'##0", parts).status, fBadPartsTable);
    SetSymbol(&parts, tokLeftQuote, '\xC7');
    SetSymbol(&parts, tokRightQuote, '\xC8');
    const ParsedFormat parsed = Parse(
        "#'##0 \xC7"
        "CHF\xC8",
        parts);
    EXPECT_EQ(parsed.status, fFormatOK);
    EXPECT_EQ(Format(1234, parsed.record, parts), (Text{fFormatOK, "1'234 CHF"}));
}

TEST(StringToFormatRec, TakesTextsWithControlCharacters) {
    EXPECT_EQ(Format(5, std::string("'\x01\x0D\x0E'0")), (Text{fFormatOK,
                                                               "\x01\x0D\x0E"
                                                               "5"}));
}

TEST(StringToFormatRec, RefusesAFormatThatItsRecordCannotHold) {
    EXPECT_EQ(StatusOf(std::string(254, '#')), fFormatOK);
    EXPECT_EQ(StatusOf(std::string(255, '#')), fFormStrIsNAN);
    EXPECT_EQ(StatusOf("'" + std::string(200, '\x01') + "'"), fFormStrIsNAN);
}

TEST(FormatRecToString, WritesAFormatInOneWay) {
    EXPECT_EQ(Canonical("###,###.##;-###,###.##;0"), (Text{fFormatOK, "###,###.##;-###,###.##;0"}));
    EXPECT_EQ(Canonical("'$'0.00;('$'0.00)"), (Text{fFormatOK, "$0.00;($0.00)"}));
    EXPECT_EQ(Canonical("'US$ '0E+0"), (Text{fFormatOK, "'US$ '0E+0"}));
    EXPECT_EQ(Canonical("'it'\\''s'0"), (Text{fFormatOK, "'it\\'s'0"}));
    EXPECT_EQ(Canonical("abc#0"), (Text{fFormatOK, "#0"}));
}

TEST(FormatRecToString, TranslatesToOtherSymbols) {
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokDecPoint, ',');
    SetSymbol(&parts, tokThousands, '.');
    SetSymbol(&parts, tokLeftQuote, '\xC7');
    SetSymbol(&parts, tokRightQuote, '\xC8');
    EXPECT_EQ(Canonical("#,##0.00' x'", parts), (Text{fFormatOK, "#.##0,00\xC7 x\xC8"}));
}

TEST(FormatRecToString, WritesEvenSymbolsThatAreTheSame) {
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokThousands, '\'');
    EXPECT_EQ(Canonical("#,##0.00", parts), (Text{fFormatOK, "#'##0.00"}));
}

TEST(FormatRecToString, TellsWhereThePartsStand) {
    const ParsedFormat parsed = Parse("0.00;(0.00)");
    const NumberParts parts = SystemParts();
    Str255 text;
    TripleInt positions;
    ASSERT_EQ(FormatRecToString(&parsed.record, &parts, text, positions), fFormatOK);
    EXPECT_EQ(positions[fPositive].start, 0);
    EXPECT_EQ(positions[fPositive].length, 4);
    EXPECT_EQ(positions[fNegative].start, 5);
    EXPECT_EQ(positions[fNegative].length, 6);
    EXPECT_EQ(positions[fZero].length, 0);
}

TEST(FormatRecToString, AnswersWhatItCannotWrite) {
    EXPECT_EQ(Canonical(""), (Text{fEmptyFormatString, ""}));
    NumberParts parts = SystemParts();
    SetSymbol(&parts, tokPercent, '\0');
    EXPECT_EQ(Canonical("0%", parts), (Text{fBadPartsTable, ""}));
    // Each character needs a pair of quotes, more than a text holds.
    std::string format;
    for (int i = 0; i < 80; ++i) format += "#\\x";
    EXPECT_EQ(Canonical(format), (Text{fFormatOverflow, ""}));
}

}  // namespace
