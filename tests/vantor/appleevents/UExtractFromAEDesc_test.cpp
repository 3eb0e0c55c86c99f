// Typed values out of descriptors: coercion, truncation, and whose handle an alias is.
#include "vantor/appleevents/UExtractFromAEDesc.h"

#include <gtest/gtest.h>

#include "support/PascalString.h"
#include "support/Thrown.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace {

TEST(UExtractFromAEDesc, ReadsANumberThroughCoercion) {
    StAEDescriptor digits(PString("-1234")), number(SInt32{77});
    SInt32 value = 0;
    UExtractFromAEDesc::TheSInt32(digits, value);
    EXPECT_EQ(value, -1234);
    UExtractFromAEDesc::TheSInt32(number, value);
    EXPECT_EQ(value, 77);
}

TEST(UExtractFromAEDesc, KeepsCallingEveryFailedCoercionATypeError) {
    StAEDescriptor words(PString("words")), record;
    SInt32 value = 5;
    EXPECT_EQ(CodeThrownBy([&] { UExtractFromAEDesc::TheSInt32(words, value); }), errAETypeError);
    EXPECT_EQ(value, 5);
    Boolean truth = 3;
    EXPECT_EQ(CodeThrownBy([&] { UExtractFromAEDesc::TheBoolean(words, truth); }), errAETypeError);
    AliasHandle alias = nullptr;
    EXPECT_EQ(CodeThrownBy([&] { UExtractFromAEDesc::TheAlias(words, alias); }), errAETypeError);
    ASSERT_EQ(AECreateList(nullptr, 0, true, record), noErr);
    Str255 text;
    EXPECT_EQ(CodeThrownBy([&] { UExtractFromAEDesc::ThePString(record, text, 256); }),
              errAETypeError);
}

TEST(UExtractFromAEDesc, ReadsABoolean) {
    StAEDescriptor truth(Boolean{1});
    Boolean value = 0;
    UExtractFromAEDesc::TheBoolean(truth, value);
    EXPECT_EQ(value, 1);
}

TEST(UExtractFromAEDesc, KeepsCuttingLongTextWithoutAWord) {
    const std::string text(300, 'x');
    StAEDescriptor descriptor(typeChar, text.data(), 300);
    Str255 value;
    UExtractFromAEDesc::ThePString(descriptor, value, 256);
    EXPECT_EQ(TextOf(value), std::string(255, 'x'));
    unsigned char small[4] = {9, 9, 9, 9};
    UExtractFromAEDesc::ThePString(descriptor, small, 3);
    EXPECT_EQ(TextOf(small), "xx");
    EXPECT_EQ(small[3], 9) << "beyond the length given";
}

TEST(UExtractFromAEDesc, ReadsTheTextOfANumber) {
    StAEDescriptor number(SInt32{-5});
    Str255 value;
    UExtractFromAEDesc::ThePString(number, value, 256);
    EXPECT_EQ(TextOf(value), "-5");
}

TEST(UExtractFromAEDesc, CopiesNoMoreDataThanThereIsRoomFor) {
    StAEDescriptor text(PString("abcdef"));
    char data[4] = {0, 0, 0, 'z'};
    UExtractFromAEDesc::TheData(text, typeChar, data, 3);
    EXPECT_EQ(std::string(data, 4), "abcz");
}

TEST(UExtractFromAEDesc, GivesAnAliasInAHandleOfTheCallers) {
    StAEDescriptor descriptor(typeAlias, "alias bytes", 11);
    AliasHandle alias = nullptr;
    UExtractFromAEDesc::TheAlias(descriptor, alias);
    const auto handle = reinterpret_cast<Handle>(alias);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(GetHandleSize(handle), 11);
    EXPECT_EQ(std::string(*handle, 11), "alias bytes");
    EXPECT_GE(HGetState(handle), 0) << "not locked";
    DisposeHandle(handle);
}

TEST(UExtractFromAEDesc, PassesThePlatformsResultsOn) {
    StAEDescriptor text(PString("abc"));
    char data[3];
    EXPECT_EQ(UExtractFromAEDesc::AEGetDescDataSize(text), 3);
    EXPECT_EQ(UExtractFromAEDesc::AEGetDescData(text, data, 3), noErr);
    EXPECT_EQ(std::string(data, 3), "abc");
}

}  // namespace
