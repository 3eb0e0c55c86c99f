// Pascal strings, C strings and numbers.
#include <Carbon/NumberFormatting.h>
#include <Carbon/TextUtils.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

std::string TextOf(ConstStr255Param inString) {
    return {reinterpret_cast<const char*>(inString) + 1, inString[0]};
}

SInt32 NumberIn(const std::string& inText) {
    const std::string pascal = char(inText.size()) + inText;
    SInt32 number = 0x55555555;
    StringToNum(reinterpret_cast<ConstStr255Param>(pascal.data()), &number);
    return number;
}

std::string TextOfNumber(SInt32 inNumber) {
    UInt8 string[12];  // no more room than promised to be enough
    NumToString(inNumber, string);
    return TextOf(string);
}

TEST(NumToString, WritesPlainDecimals) {
    EXPECT_EQ(TextOfNumber(0), "0");
    EXPECT_EQ(TextOfNumber(-23), "-23");
    EXPECT_EQ(TextOfNumber(1234567), "1234567");
    EXPECT_EQ(TextOfNumber(INT32_MAX), "2147483647");
    EXPECT_EQ(TextOfNumber(INT32_MIN), "-2147483648");
}

TEST(StringToNum, KeepsTakingAnyCharacterForADigit) {
    EXPECT_EQ(NumberIn("CAT"), 314);
    EXPECT_EQ(NumberIn("+CAT"), 314);
    EXPECT_EQ(NumberIn("-CAT"), -314);
    EXPECT_EQ(NumberIn("2:"), 30);
    EXPECT_EQ(NumberIn(" 7"), 7);
    EXPECT_EQ(NumberIn("1,000"), 22000);
    EXPECT_EQ(NumberIn("1-2"), 232);  // a later '-' is the digit 13
    EXPECT_EQ(NumberIn("--1"), -131);
}

TEST(StringToNum, ReadsNumbers) {
    EXPECT_EQ(NumberIn("-23"), -23);
    EXPECT_EQ(NumberIn("055"), 55);
    EXPECT_EQ(NumberIn("+7"), 7);
    EXPECT_EQ(NumberIn(""), 0);
    EXPECT_EQ(NumberIn("-"), 0);
    EXPECT_EQ(NumberIn("+"), 0);
}

TEST(StringToNum, KeepsWrappingAt32Bits) {
    EXPECT_EQ(NumberIn("2147483648"), INT32_MIN);
    EXPECT_EQ(NumberIn("4294967295"), -1);
    EXPECT_EQ(NumberIn("-4294967295"), 1);
    EXPECT_EQ(NumberIn("-2147483648"), INT32_MIN);
    EXPECT_EQ(NumberIn(std::string(255, '0')), 0);
}

TEST(CopyCStringToPascal, CutsAt255Characters) {
    for (const size_t length : {0u, 1u, 254u, 255u, 256u, 1000u}) {
        const std::string text(length, 'x');
        Str255 string;
        CopyCStringToPascal(text.c_str(), string);
        EXPECT_EQ(TextOf(string), text.substr(0, 255));
        c2pstrcpy(string, text.c_str());
        EXPECT_EQ(TextOf(string), text.substr(0, 255));
    }
}

TEST(CopyCStringToPascal, WorksInPlace) {
    Str255 string;
    std::strcpy(reinterpret_cast<char*>(string), "in place");
    CopyCStringToPascal(reinterpret_cast<char*>(string), string);
    EXPECT_EQ(TextOf(string), "in place");
    CopyPascalStringToC(string, reinterpret_cast<char*>(string));
    EXPECT_STREQ(reinterpret_cast<char*>(string), "in place");
}

TEST(CopyCStringToPascal, TakesNullForTheEmptyString) {
    Str255 string = {9};
    CopyCStringToPascal(nullptr, string);
    EXPECT_EQ(string[0], 0);
    char text[] = "x";
    CopyPascalStringToC(nullptr, text);
    EXPECT_STREQ(text, "");
}

TEST(CopyPascalStringToC, EndsTheLongestStringToo) {
    Str255 string;
    std::memset(string, 'y', sizeof string);
    string[0] = 255;
    char text[256];
    p2cstrcpy(text, string);
    EXPECT_EQ(std::string(text), std::string(255, 'y'));
    string[0] = 3;
    CopyPascalStringToC(string, text);
    EXPECT_STREQ(text, "yyy");
}

}  // namespace
