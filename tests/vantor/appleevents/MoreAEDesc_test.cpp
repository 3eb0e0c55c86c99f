// Reading descriptors with result codes, and what too much data does.
#include <gtest/gtest.h>

#include "support/DebuggerTexts.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace {

OSErr sDisposeError = noErr;  // what disposing a descriptor reports after it is done

}  // namespace

OSErr AEDisposeDesc(AEDesc* ioDesc) {
    const OSErr error = REAL_CALL(AEDisposeDesc)(ioDesc);
    return sDisposeError != noErr ? sDisposeError : error;
}

namespace {

TEST(MoreAEDesc, BecomesNullWithAndWithoutDisposing) {
    AEDesc desc;
    ASSERT_EQ(AECreateDesc(typeChar, "a", 1, &desc), noErr);
    MoreAEDisposeDesc(&desc);
    EXPECT_EQ(desc.descriptorType, typeNull);
    EXPECT_EQ(+desc.dataHandle, nullptr);
    desc = {'abcd', nullptr};
    MoreAENullDesc(&desc);
    EXPECT_EQ(desc.descriptorType, typeNull);
}

TEST(MoreAEDesc, NullPointersAreShown) {
    const DebuggerTexts shown;
    MoreAENullDesc(nullptr);
    MoreAEDisposeDesc(nullptr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List(2, "MoreAssertQ failure: desc != nil"));
}

TEST(MoreAEDesc, AFailureOfDisposingIsShownAndNothingElse) {
    const DebuggerTexts shown;
    AEDesc desc;
    ASSERT_EQ(AECreateDesc(typeChar, "a", 1, &desc), noErr);
    sDisposeError = memFullErr;
    MoreAEDisposeDesc(&desc);
    sDisposeError = noErr;
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{"MoreAssertQ failure: junk == noErr"});
    EXPECT_EQ(desc.descriptorType, typeNull);
}

TEST(MoreAEDesc, LeavesTheVariableAloneWhenNothingIsRead) {
    const StAEDescriptor words(PString("words"));
    Boolean truth = 7;
    SInt32 value = 77;
    EXPECT_EQ(MoreAEGetBooleanFromDescriptor(words, &truth), errAECoercionFail);
    EXPECT_EQ(truth, 7);
    EXPECT_EQ(MoreAEGetLongFromDescriptor(words, &value), errAECoercionFail);
    EXPECT_EQ(value, 77);
}

TEST(MoreAEDesc, RawDataIsCutToTheRoomAndFullySized) {
    char data[4] = "...";
    Size size = 9;
    MoreAEGetRawDataFromDescriptor(StAEDescriptor(PString("abcdef")), data, 2, &size);
    EXPECT_STREQ(data, "ab.");
    EXPECT_EQ(size, 6);
    MoreAEGetRawDataFromDescriptor(StAEDescriptor(), data, 2, &size);
    EXPECT_EQ(size, 0);
}

TEST(MoreAEDesc, APascalStringOfTooMuchTextIsRefusedAndEmpty) {
    const std::string text(300, 'x');
    Str255 value = "\003old";
    EXPECT_EQ(MoreAEGetPStringFromDescriptor(StAEDescriptor(typeChar, text.data(), 300), value),
              errAECoercionFail);
    EXPECT_EQ(value[0], 0);
    EXPECT_EQ(MoreAEGetPStringFromDescriptor(StAEDescriptor(typeChar, text.data(), 255), value),
              noErr);
    EXPECT_EQ(TextOf(value), std::string(255, 'x'));
}

TEST(MoreAEDesc, KeepsEndingACStringAfterTheWholeTextsLength) {
    const std::string text(300, 'x');
    char value[301];
    std::memset(value, '.', sizeof value);
    EXPECT_EQ(MoreAEGetCStringFromDescriptor(StAEDescriptor(typeChar, text.data(), 300), value),
              noErr);
    EXPECT_EQ(std::string(value, 256), std::string(256, 'x'));
    EXPECT_EQ(std::string(value + 256, 44), std::string(44, '.')) << "only 256 are copied";
    EXPECT_EQ(value[300], 0);
    EXPECT_EQ(MoreAEGetCStringFromDescriptor(StAEDescriptor(SInt32{42}), value), noErr);
    EXPECT_STREQ(value, "42");
}

TEST(MoreAEDesc, NumbersAreCoercedAndNative) {
    SInt16 shortValue = 9;
    Boolean truth = 9;
    SInt32 longValue = 9;
    EXPECT_EQ(MoreAEGetShortFromDescriptor(StAEDescriptor(SInt32{-2}), &shortValue), noErr);
    EXPECT_EQ(shortValue, -2);
    EXPECT_EQ(MoreAEGetBooleanFromDescriptor(StAEDescriptor(Boolean{1}), &truth), noErr);
    EXPECT_EQ(truth, 1);
    EXPECT_EQ(MoreAEGetLongFromDescriptor(StAEDescriptor(SInt16{-2}), &longValue), noErr);
    EXPECT_EQ(longValue, -2);
}

TEST(MoreAEDesc, AShortThatCannotBeReadIsZeroAndOthersStay) {
    const StAEDescriptor words(PString("words"));
    SInt16 shortValue = 9;
    SInt32 longValue = 9;
    EXPECT_EQ(MoreAEGetShortFromDescriptor(words, &shortValue), errAECoercionFail);
    EXPECT_EQ(shortValue, 0);
    EXPECT_EQ(MoreAEGetLongFromDescriptor(words, &longValue), errAECoercionFail);
    EXPECT_EQ(longValue, 9);
}

// A host's own coercion that gives more data than its type has.
OSErr GiveTooMuch(const AEDesc*, DescType inType, SInt32, AEDesc* outDesc) {
    return AECreateDesc(inType, "\001\002\003\004\005", 5, outDesc);
}

TEST(MoreAEDesc, MoreDataThanAValueHoldsIsRefused) {
    const StAEDescriptor odd('odd ', "x", 1);
    for (const DescType type :
         {DescType{typeSInt16}, DescType{typeBoolean}, DescType{typeSInt32}}) {
        ASSERT_EQ(AEInstallCoercionHandler('odd ', type, GiveTooMuch, 0, true, false), noErr);
    }
    SInt16 shortValue;
    Boolean truth;
    SInt32 longValue;
    EXPECT_EQ(MoreAEGetShortFromDescriptor(odd, &shortValue), errAECoercionFail);
    EXPECT_EQ(MoreAEGetBooleanFromDescriptor(odd, &truth), errAECoercionFail);
    EXPECT_EQ(MoreAEGetLongFromDescriptor(odd, &longValue), errAECoercionFail);
    for (const DescType type :
         {DescType{typeSInt16}, DescType{typeBoolean}, DescType{typeSInt32}}) {
        AERemoveCoercionHandler('odd ', type, GiveTooMuch, false);
    }
}

TEST(MoreAEDesc, KeepsReadingATypeAsANumber) {
    OSType value = 0;
    EXPECT_EQ(MoreAEGetOSTypeFromDescriptor(StAEDescriptor(SInt32{'abcd'}), &value), noErr);
    EXPECT_EQ(value, OSType{'abcd'});
    EXPECT_EQ(MoreAEGetOSTypeFromDescriptor(StAEDescriptor(OSType{'abcd'}), &value),
              errAECoercionFail);
}

TEST(MoreAEDesc, DataGoesIntoAHandleOfTheCallers) {
    Handle handle = nullptr;
    EXPECT_EQ(MoreAECopyDescriptorDataToHandle(StAEDescriptor(PString("abc")), &handle), noErr);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(std::string(*handle, 3), "abc");
    EXPECT_GE(HGetState(handle), 0) << "not locked";
    DisposeHandle(handle);
}

TEST(MoreAEDesc, BadPlacesForAHandleAreShown) {
    const DebuggerTexts shown;
    const StAEDescriptor text(PString("abc"));
    EXPECT_EQ(MoreAECopyDescriptorDataToHandle(text, nullptr), paramErr);
    const Handle old = NewHandle(1);
    Handle handle = old;
    EXPECT_EQ(MoreAECopyDescriptorDataToHandle(nullptr, &handle), paramErr);
    EXPECT_EQ(handle, old);
    EXPECT_EQ(MoreAECopyDescriptorDataToHandle(text, &handle), noErr);
    EXPECT_EQ(shown.Texts(), (DebuggerTexts::List{"MoreAssertQ failure: descData != nil",
                                                  "MoreAssertQ failure: desc != nil",
                                                  "MoreAssertQ failure: *descData == nil"}));
    DisposeHandle(handle);
    DisposeHandle(old);
}

}  // namespace
