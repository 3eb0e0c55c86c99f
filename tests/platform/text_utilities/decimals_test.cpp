// Decimal numbers, their texts, and the 80-bit form.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

static_assert(sizeof(decimal) == 42 && offsetof(decimal, exp) == 2 && offsetof(decimal, sig) == 4);
static_assert(sizeof(decform) == 4 && offsetof(decform, digits) == 2);
static_assert(sizeof(extended80) == 10 && alignof(extended80) == 2);
static_assert(SIGDIGLEN == 36 && DECSTROUTLEN == 80 && FLOATDECIMAL == 0 && FIXEDDECIMAL == 1);

constexpr double kInfinity = std::numeric_limits<double>::infinity();

decimal ToDecimal(double inValue, char inStyle, SInt16 inDigits) {
    const decform form = {inStyle, 0, inDigits};
    decimal result;
    num2dec(&form, inValue, &result);
    return result;
}

decimal Decimal(const std::string& inDigits, SInt16 inExponent = 0, char inSign = 0) {
    decimal result = {};
    result.sgn = inSign;
    result.exp = inExponent;
    result.sig.length = UInt8(inDigits.size());
    inDigits.copy(reinterpret_cast<char*>(result.sig.text), SIGDIGLEN);
    return result;
}

std::string DigitsOf(const decimal& inDecimal) {
    return {reinterpret_cast<const char*>(inDecimal.sig.text), inDecimal.sig.length};
}

std::string TextOf(const decimal& inDecimal, char inStyle, SInt16 inDigits) {
    const decform form = {inStyle, 0, inDigits};
    char text[DECSTROUTLEN + 1];
    dec2str(&form, &inDecimal, text);
    return text;
}

std::string TextOf(double inValue, char inStyle, SInt16 inDigits) {
    return TextOf(ToDecimal(inValue, inStyle, inDigits), inStyle, inDigits);
}

TEST(num2dec, MakesExactlyTheDigitsAskedFor) {
    const decimal third = ToDecimal(1.0 / 3, FLOATDECIMAL, 5);
    EXPECT_EQ(DigitsOf(third), "33333");
    EXPECT_EQ(third.exp, -5);
    EXPECT_EQ(DigitsOf(ToDecimal(2, FLOATDECIMAL, 4)), "2000");
    EXPECT_EQ(DigitsOf(ToDecimal(7, FLOATDECIMAL, -3)), "7");
    EXPECT_EQ(DigitsOf(ToDecimal(7, FLOATDECIMAL, 99)).size(), 36u);
    EXPECT_EQ(ToDecimal(-1, FLOATDECIMAL, 1).sgn, 1);
}

TEST(num2dec, RoundsAtAFixedPlace) {
    const decimal value = ToDecimal(12.345, FIXEDDECIMAL, 2);
    EXPECT_EQ(DigitsOf(value), "1235");  // the double lies above the middle
    EXPECT_EQ(value.exp, -2);
    EXPECT_EQ(DigitsOf(ToDecimal(0.125, FIXEDDECIMAL, 2)), "12");
    EXPECT_EQ(DigitsOf(ToDecimal(0.375, FIXEDDECIMAL, 2)), "38");
    EXPECT_EQ(DigitsOf(ToDecimal(99.999, FIXEDDECIMAL, 2)), "10000");
    EXPECT_EQ(DigitsOf(ToDecimal(0.001, FIXEDDECIMAL, 2)), "0");
    EXPECT_EQ(DigitsOf(ToDecimal(1e300, FIXEDDECIMAL, 2)).size(), 36u);
    EXPECT_EQ(DigitsOf(ToDecimal(5e-324, FIXEDDECIMAL, 32767)).size(), 36u);
}

TEST(num2dec, RoundsInFrontOfThePointForNegativeCounts) {
    const decimal value = ToDecimal(1250, FIXEDDECIMAL, -2);
    EXPECT_EQ(DigitsOf(value), "12");
    EXPECT_EQ(value.exp, 2);
    EXPECT_EQ(DigitsOf(ToDecimal(1250.5, FIXEDDECIMAL, -2)), "13");
    EXPECT_EQ(DigitsOf(ToDecimal(51, FIXEDDECIMAL, -2)), "1");
    EXPECT_EQ(DigitsOf(ToDecimal(50, FIXEDDECIMAL, -2)), "0");
    EXPECT_EQ(DigitsOf(ToDecimal(50.25, FIXEDDECIMAL, -2)), "1");
    EXPECT_EQ(DigitsOf(ToDecimal(49.9, FIXEDDECIMAL, -2)), "0");
    EXPECT_EQ(DigitsOf(ToDecimal(9, FIXEDDECIMAL, -2)), "0");
    EXPECT_EQ(DigitsOf(ToDecimal(9, FIXEDDECIMAL, -32767)), "0");
}

TEST(num2dec, NamesWhatIsNoNumber) {
    EXPECT_EQ(DigitsOf(ToDecimal(kInfinity, FLOATDECIMAL, 5)), "I");
    EXPECT_EQ(DigitsOf(ToDecimal(-0.0, FLOATDECIMAL, 5)), "0");
    EXPECT_EQ(ToDecimal(-0.0, FLOATDECIMAL, 5).sgn, 1);
    EXPECT_EQ(
        DigitsOf(ToDecimal(std::bit_cast<double>(UInt64(0x7FF8022000000000)), FLOATDECIMAL, 5)),
        "N4011");
}

TEST(num2dec, FollowsTheRoundingMode) {
    std::fesetround(FE_UPWARD);
    const decimal up = ToDecimal(1.0 / 3, FLOATDECIMAL, 3);
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(DigitsOf(up), "334");
}

TEST(dec2num, IsTheInverseOfEnoughDigits) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        const decimal digits = ToDecimal(value, FLOATDECIMAL, 17);
        ASSERT_EQ(dec2num(&digits), value);
    }
}

TEST(dec2num, TakesNamesAndRefusesNonsense) {
    const auto value = [](const decimal& d) { return dec2num(&d); };
    EXPECT_EQ(value(Decimal("I", 0, 1)), -kInfinity);
    EXPECT_EQ(value(Decimal("0", 500)), 0);
    EXPECT_EQ(value(Decimal("1", 32767)), kInfinity);
    EXPECT_EQ(value(Decimal("1", -32768)), 0);
    EXPECT_EQ(std::bit_cast<UInt64>(value(Decimal("N4011"))), 0x7FF8022000000000u);
    EXPECT_TRUE(std::isnan(value(Decimal("12x"))));
    EXPECT_TRUE(std::isnan(value(Decimal(""))));
}

TEST(dec2str, WritesFloatingNumbersWithASpaceOrASign) {
    EXPECT_EQ(TextOf(1, FLOATDECIMAL, 5), " 1.0000e+0");
    EXPECT_EQ(TextOf(-0.00123, FLOATDECIMAL, 3), "-1.23e-3");
    EXPECT_EQ(TextOf(0, FLOATDECIMAL, 5), " 0.0000e+0");
    EXPECT_EQ(TextOf(5e200, FLOATDECIMAL, 1), " 5e+200");
    EXPECT_EQ(TextOf(Decimal("12", 3), FLOATDECIMAL, 1), " 1.2e+4");
}

TEST(dec2str, WritesFixedNumbersWithoutASpace) {
    EXPECT_EQ(TextOf(0, FIXEDDECIMAL, 2), "0.00");
    EXPECT_EQ(TextOf(3.14159, FIXEDDECIMAL, 2), "3.14");
    EXPECT_EQ(TextOf(-0.05, FIXEDDECIMAL, 2), "-0.05");
    EXPECT_EQ(TextOf(12, FIXEDDECIMAL, 0), "12");
    EXPECT_EQ(TextOf(Decimal("12", 2), FIXEDDECIMAL, 0), "1200");
    EXPECT_EQ(TextOf(Decimal("12", 2), FIXEDDECIMAL, 1), "1200.0");
    EXPECT_EQ(TextOf(Decimal("12", -4), FIXEDDECIMAL, 1), "0.0012");
    EXPECT_EQ(TextOf(Decimal("1234", -2), FIXEDDECIMAL, 3), "12.340");
}

TEST(dec2str, AgreesWithPrintf) {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> values(-1e6, 1e6);
    for (int i = 0; i < 5000; ++i) {
        const double value = values(random);
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.3f", value);
        ASSERT_EQ(TextOf(value, FIXEDDECIMAL, 3), expected);
    }
}

TEST(dec2str, WritesAQuestionMarkForWhatIsTooLong) {
    EXPECT_EQ(TextOf(1e30, FIXEDDECIMAL, 48).size(), 80u);
    EXPECT_EQ(TextOf(1e30, FIXEDDECIMAL, 49), "?");
    EXPECT_EQ(TextOf(1, FLOATDECIMAL, 32767).substr(0, 3), "?");
    EXPECT_EQ(TextOf(Decimal("1", 32767), FIXEDDECIMAL, 0), "?");
    EXPECT_EQ(TextOf(Decimal("1", -32768), FIXEDDECIMAL, 0), "?");
}

TEST(dec2str, NamesWhatIsNoNumber) {
    EXPECT_EQ(TextOf(kInfinity, FLOATDECIMAL, 5), " INF");
    EXPECT_EQ(TextOf(-kInfinity, FLOATDECIMAL, 5), "-INF");
    EXPECT_EQ(TextOf(kInfinity, FIXEDDECIMAL, 5), "INF");
    EXPECT_EQ(TextOf(Decimal("N4011"), FIXEDDECIMAL, 5), "NAN(017)");
    EXPECT_EQ(TextOf(Decimal("N4024"), FLOATDECIMAL, 5), " NAN(036)");
    decimal tooLong = Decimal("1");
    tooLong.sig.length = 200;
    EXPECT_EQ(TextOf(tooLong, FIXEDDECIMAL, 5), "NAN(017)");
    EXPECT_EQ(TextOf(Decimal("zz"), FIXEDDECIMAL, 5), "NAN(017)");
}

struct Scan {
    std::string digits;
    SInt16 exponent;
    SInt16 index;
    SInt16 isPrefix;
    bool operator==(const Scan&) const = default;
};

Scan ScanText(const char* inText, SInt16 inIndex = 0) {
    decimal result;
    SInt16 index = inIndex, isPrefix = 77;
    str2dec(inText, &index, &result, &isPrefix);
    return {(result.sgn ? "-" : "") + DigitsOf(result), result.exp, index, isPrefix};
}

TEST(str2dec, ReadsNumbersInTheirForms) {
    EXPECT_EQ(ScanText("12"), (Scan{"12", 0, 2, 1}));
    EXPECT_EQ(ScanText(" \t-12.50"), (Scan{"-1250", -2, 8, 1}));
    EXPECT_EQ(ScanText(".05e+3"), (Scan{"5", 1, 6, 1}));
    EXPECT_EQ(ScanText("5."), (Scan{"5", 0, 2, 1}));
    EXPECT_EQ(ScanText("000"), (Scan{"0", 0, 3, 1}));
    EXPECT_EQ(ScanText("inf").digits, "I");
    EXPECT_EQ(ScanText("-NAN(36)").digits, "-N4024");
    EXPECT_EQ(ScanText("NaN").digits, "N4011");
}

TEST(str2dec, StopsBehindTheNumber) {
    EXPECT_EQ(ScanText("12abc"), (Scan{"12", 0, 2, 0}));
    EXPECT_EQ(ScanText("x7y", 1), (Scan{"7", 0, 2, 0}));
    EXPECT_EQ(ScanText("1.5e"), (Scan{"15", -1, 3, 1}));
    EXPECT_EQ(ScanText("1.5e+"), (Scan{"15", -1, 3, 1}));
    EXPECT_EQ(ScanText("1.5ex"), (Scan{"15", -1, 3, 0}));
}

TEST(str2dec, LeavesTheIndexWithoutANumber) {
    EXPECT_EQ(ScanText("abc"), (Scan{"N4011", 0, 0, 0}));
    EXPECT_EQ(ScanText(""), (Scan{"N4011", 0, 0, 1}));
    EXPECT_EQ(ScanText("-"), (Scan{"N4011", 0, 0, 1}));
    EXPECT_EQ(ScanText("in"), (Scan{"N4011", 0, 0, 1}));
}

TEST(str2dec, KeepsThirtySixDigitsAndTheSizeOfTheRest) {
    EXPECT_EQ(ScanText("1234567890123456789012345678901234567890"),
              (Scan{"123456789012345678901234567890123456", 4, 40, 1}));
    EXPECT_EQ(ScanText("1e999999999999").exponent, 32767);
}

extended80 Packed(double inValue) {
    extended80 packed;
    dtox80(&inValue, &packed);
    return packed;
}

void ExpectWords(double inValue, UInt16 inExponent, UInt16 inFirst, UInt16 inSecond = 0) {
    const extended80 packed = Packed(inValue);
    EXPECT_EQ(UInt16(packed.exp), inExponent) << inValue;
    EXPECT_EQ(packed.man[0], inFirst) << inValue;
    EXPECT_EQ(packed.man[1], inSecond) << inValue;
}

TEST(dtox80, PutsTheBitsWhereTheyBelong) {
    ExpectWords(1, 0x3FFF, 0x8000);
    ExpectWords(-2, 0xC000, 0x8000);
    ExpectWords(1.5, 0x3FFF, 0xC000);
    ExpectWords(0, 0, 0);
    ExpectWords(kInfinity, 0x7FFF, 0x8000);
    ExpectWords(-kInfinity, 0xFFFF, 0x8000);
    ExpectWords(5e-324, 0x3BCD, 0x8000);  // normal here
}

TEST(x80tod, GivesEveryDoubleBack) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 100000; ++i) {
        UInt64 bits = random();
        if (i % 4 == 0) bits &= ~(UInt64(0x7FF) << 52);  // the smallest ones
        const double value = std::bit_cast<double>(bits);
        if (std::isnan(value)) continue;
        const extended80 packed = Packed(value);
        ASSERT_EQ(std::bit_cast<UInt64>(x80tod(&packed)), bits);
    }
}

#if LDBL_MANT_DIG == 64
TEST(x80tod, RoundsAsTheProcessorDoes) {
    std::mt19937_64 random(6);
    for (int i = 0; i < 100000; ++i) {
        const UInt64 mantissa = random() | UInt64(1) << 63;
        const int exponent = int(random() % 2200) - 1130;
        const long double exact = std::ldexp(static_cast<long double>(mantissa), exponent - 63);
        const extended80 packed = {SInt16(exponent + 16383),
                                   {UInt16(mantissa >> 48), UInt16(mantissa >> 32),
                                    UInt16(mantissa >> 16), UInt16(mantissa)}};
        ASSERT_EQ(x80tod(&packed), static_cast<double>(exact)) << exponent;
    }
}
#endif

TEST(x80tod, TakesEveryPatternForSomething) {
    const extended80 large = {0x7FFE, {0x8000, 0, 0, 0}}, small = {1, {0x8000, 0, 0, 0}};
    const extended80 unnormal = {0x4000, {0x4000, 0, 0, 0}}, nan = {0x7FFF, {0x8000, 0, 0, 1}};
    EXPECT_EQ(x80tod(&large), kInfinity);
    EXPECT_EQ(x80tod(&small), 0);
    EXPECT_EQ(x80tod(&unnormal), 1);
    EXPECT_TRUE(std::isnan(x80tod(&nan)));
}

}  // namespace
