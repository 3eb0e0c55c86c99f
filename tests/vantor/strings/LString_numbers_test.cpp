// Strings and formatted numbers, with symbols of other regions.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/Thrown.h"
#include "vantor/strings/LString.h"

namespace {

std::optional<NumberParts> gSystemParts;  // instead of the system's own
bool gHasNoParts = false;

}  // namespace

void GetIntlResourceTable(ScriptCode inScript, SInt16 inTable, Handle* outHandle, SInt32* outOffset,
                          SInt32* outLength) {
    static NumberParts parts;
    static Ptr pointer;
    REAL_CALL(GetIntlResourceTable)(inScript, inTable, outHandle, outOffset, outLength);
    if (gHasNoParts) *outHandle = nullptr;
    if (!gSystemParts) return;
    parts = *gSystemParts;
    pointer = reinterpret_cast<Ptr>(&parts);
    *outHandle = &pointer;
    *outOffset = 0;
}

namespace {

class LStringNumbers : public testing::Test {
  protected:
    ~LStringNumbers() override {
        gSystemParts.reset();
        gHasNoParts = false;
    }
};

NumberParts SystemParts() {
    NumberParts parts;
    LString::GetSystemNumberParts(parts);
    return parts;
}

NumberParts GermanParts() {
    NumberParts parts = SystemParts();
    parts.data[tokDecPoint - 1].b = ',';
    parts.data[tokThousands - 1].b = '.';
    return parts;
}

NumberParts SwissParts() {
    NumberParts parts = SystemParts();
    parts.data[tokThousands - 1].b = '\'';
    return parts;
}

TEST_F(LStringNumbers, AreWrittenWithDigitsOfEitherStyle) {
    EXPECT_EQ(TextOf(LStr255(1.0, char{FLOATDECIMAL}, SInt16{5})), " 1.0000e+0");
    EXPECT_EQ(TextOf(LStr255(-3.14159, char{FIXEDDECIMAL}, SInt16{2})), "-3.14");
    EXPECT_EQ(TextOf(LStr255(2.5L, char{FIXEDDECIMAL}, SInt16{1})), "2.5");
    EXPECT_EQ(TextOf(LStr255(1.0, char{FIXEDDECIMAL}, SInt16{200})), "?");
}

TEST_F(LStringNumbers, AreCutAtTheCapacity) {
    unsigned char storage[4];
    LStringRef string(4, storage);
    string.Assign(123456.0, char{FIXEDDECIMAL}, SInt16{0});
    EXPECT_EQ(TextOf(string), "123");
}

TEST_F(LStringNumbers, AreWrittenInAFormat) {
    SInt8 result = 77;
    LStr255 string;
    string.Assign(1234.5L, PString("#,##0.00"), &result);
    EXPECT_EQ(TextOf(string), "1,234.50");
    EXPECT_EQ(result, fFormatOK);
    EXPECT_EQ(TextOf(LStr255(-0.5L, PString("0.0"))), "-0.5");
    string.Assign(1.0L, PString("0'"), &result);
    EXPECT_EQ(TextOf(string), "");
    EXPECT_EQ(result, fFormStrIsNAN);
}

TEST_F(LStringNumbers, AreWrittenWithTheTableThatIsGiven) {
    const NumberParts parts = GermanParts();
    NumFormatString format;
    ASSERT_EQ(StringToFormatRec(PString("#.##0,00"), &parts, &format), fFormatOK);
    EXPECT_EQ(TextOf(LStr255(1234.5L, format, parts)), "1.234,50");
}

TEST_F(LStringNumbers, AreReadInAFormatOrFreely) {
    SInt8 result = 77;
    EXPECT_EQ(LString::StringToLongDouble(PString("($1.50)"), PString("$0.00;($0.00)"), &result),
              -1.5L);
    EXPECT_EQ(result, fFormatOK);
    EXPECT_EQ(LString::StringToLongDouble(PString("7 "), PString("0.00"), &result), 7);
    EXPECT_EQ(result, fOutOfSynch);
    EXPECT_EQ(LString::StringToLongDouble(PString("9"), PString(""), nullptr), 9);
}

TEST_F(LStringNumbers, CarryAFormatOverToTheSymbolsOfTheSystem) {
    NumFormatString format;
    NumberParts parts;
    EXPECT_EQ(LString::FetchFloatFormat(PString("#.##0,00"), GermanParts(), format, parts),
              fFormatOK);
    EXPECT_EQ(TextOf(LStr255(1234.5L, format, parts)), "1,234.50");
}

TEST_F(LStringNumbers, KeepTheSecondAnswerWhereTheThousandsSymbolIsAQuote) {
    const NumberParts plain = SystemParts();
    gSystemParts = SwissParts();
    NumFormatString format;
    NumberParts parts;
    EXPECT_EQ(LString::FetchFloatFormat(PString("#,##0"), plain, format, parts), fFormatOK);
    EXPECT_EQ(TextOf(LStr255(1234.0L, format, parts)), "1'234");
    EXPECT_EQ(parts.data[tokLeftQuote - 1].b, 199);
    EXPECT_EQ(parts.data[tokRightQuote - 1].b, 200);
}

TEST_F(LStringNumbers, ThrowWhenTheSystemHasNoTable) {
    gHasNoParts = true;
    NumberParts parts;
    EXPECT_EQ(CodeThrownBy([&] { LString::GetSystemNumberParts(parts); }), SInt32{'nilP'});
    EXPECT_EQ(CodeThrownBy([] { LStr255(1.0L, PString("0")); }), SInt32{'nilP'});
}

}  // namespace
