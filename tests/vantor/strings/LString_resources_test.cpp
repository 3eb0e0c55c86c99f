// Strings and number parts from a host's resources.
#include "platform/resource_manager/ResourceFixture.h"
#include "support/Thrown.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/strings/LString.h"
#include "vantor/strings/PStr.h"

namespace {

class StringsFromResources : public ResourceFixture {
  protected:
    void SetUp() override {
        NumberParts parts;
        LString::GetSystemNumberParts(parts);  // whose handle stays
        ResourceFixture::SetUp();
        OpenNew();
        Add('STR ', 128, "\5alone");
        Add('STR#', 128, std::string("\0\2\5first\6second", 15));
    }
    // The system's symbols with point and comma exchanged, as a resource holds them.
    static std::string GermanTable() {
        NumberParts parts;
        LString::GetSystemNumberParts(parts);
        std::swap(parts.data[tokDecPoint - 1].b, parts.data[tokThousands - 1].b);
        SInt16 numbers[sizeof parts / 2];
        std::memcpy(numbers, &parts, sizeof numbers);
        for (SInt16& number : numbers) number = BigEndianFromNative(number);
        return {reinterpret_cast<const char*>(numbers), sizeof numbers};
    }
};

TEST_F(StringsFromResources, AnIndexMeansAListAndNoneASingleString) {
    LStr255 string;
    EXPECT_EQ(TextOf(string.Assign(SInt16{128}, SInt16{2})), "second");
    EXPECT_EQ(TextOf(string.Assign(SInt16{128}, SInt16{0})), "alone");
    EXPECT_EQ(TextOf(string.Assign(SInt16{128}, SInt16{-1})), "alone");
    EXPECT_EQ(TextOf(LStr255(SInt16{128}, SInt16{1})), "first");
}

TEST_F(StringsFromResources, WhatIsMissingIsEmpty) {
    for (const SInt16 index : {SInt16(0), SInt16(1)}) {
        LStr255 string("before");
        EXPECT_EQ(string.Assign(SInt16{999}, index).Length(), 0);
    }
    LStr255 string("before");
    EXPECT_EQ(string.Assign(SInt16{128}, SInt16{3}).Length(), 0);
}

TEST_F(StringsFromResources, AListThatLiesAboutItsCountGivesNothing) {
    Add('STR#', 129, std::string("\0\x09\5first\6sec", 12));
    LStr255 string;
    EXPECT_EQ(TextOf(string.Assign(SInt16{129}, SInt16{1})), "first");
    EXPECT_EQ(string.Assign(SInt16{129}, SInt16{2}).Length(), 0);
    EXPECT_EQ(string.Assign(SInt16{129}, SInt16{9}).Length(), 0);
}

TEST_F(StringsFromResources, ASmallStringCutsTheTextAndHoldsNothingBehindIt) {
    Str255 storage;
    std::memset(storage, '#', sizeof storage);
    LStringRef string(4, storage);
    EXPECT_EQ(TextOf(string.Assign(SInt16{128}, SInt16{2})), "sec");
    EXPECT_EQ(storage[4], '#');
    EXPECT_EQ(TextOf(string.Assign(SInt16{128}, SInt16{0})), "alo");
    EXPECT_EQ(storage[4], '#');
}

TEST_F(StringsFromResources, NumbersAreFormattedByAFormatInOtherSymbols) {
    Add('NoPt', 128, GermanTable());
    LStr255 string;
    SInt8 result = 99;
    string.Assign(1234.5L, PString("#.##0,00"), SInt16{128}, &result);
    EXPECT_EQ(TextOf(string), "1,234.50");
    EXPECT_EQ(result, fFormatOK);
    EXPECT_GE(HGetState(GetResource('NoPt', 128)), 0);  // not locked any more
}

TEST_F(StringsFromResources, MissingAndCutOffTablesAreThrown) {
    LStr255 string;
    const auto format = [&](SInt16 inID) {
        return CodeThrownBy([&] { string.Assign(1.0L, PString("0"), inID, nullptr); });
    };
    EXPECT_EQ(format(128), resNotFound);
    Add('NoPt', 129, "short");
    EXPECT_EQ(format(128), resNotFound);
    EXPECT_EQ(format(129), resNotFound);
}

TEST_F(StringsFromResources, PAddIndStringAppends) {
    Str255 string = "\3abc";
    PAddIndString(string, 128, 1);
    EXPECT_EQ(TextOf(string), "abcfirst");
    PAddIndString(string, 128, 3);
    EXPECT_EQ(TextOf(string), "abcfirst");
    string[0] = 253;
    PAddIndString(string, 128, 2);
    EXPECT_EQ(string[0], 255);
    EXPECT_EQ(string[255], 'e');
}

}  // namespace
