// What handlers ask of the class: positions, comparisons, missed parameters.
#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/Thrown.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/foundation/BigEndian.h"

namespace {

using Mgr = UAppleEventsMgr;

StAEDescriptor Ordinal(DescType inOrdinal) {
    const DescType bytes = BigEndianFromNative(inOrdinal);
    return {typeAbsoluteOrdinal, &bytes, sizeof bytes};
}

SInt32 IndexOf(const StAEDescriptor& inKey, SInt32 inCount) {
    return Mgr::GetAbsolutePositionIndex(inKey.mDesc, inCount);
}

std::optional<SInt32> CodeOfIndex(SInt32 inIndex, SInt32 inCount) {
    return CodeThrownBy([&] { IndexOf(StAEDescriptor(inIndex), inCount); });
}

StAEDescriptor Wide(DescType inType, SInt64 inValue) {
    const SInt64 bytes = BigEndianFromNative(inValue);
    return {inType, &bytes, sizeof bytes};
}

StAEDescriptor Double(double inValue) {
    return Wide(typeIEEE64BitFloatingPoint, std::bit_cast<SInt64>(inValue));
}

// The number as a descriptor of this type.
StAEDescriptor Number(DescType inType, double inValue) {
    StAEDescriptor number;
    EXPECT_EQ(AECoerceDesc(Double(inValue), inType, number), noErr);
    return number;
}

StAEDescriptor Text(const char* inText) {
    return StAEDescriptor(PString(inText));
}

bool Holds(const StAEDescriptor& inLeft, DescType inOperator, const StAEDescriptor& inRight) {
    return Mgr::CompareDescriptors(inLeft.mDesc, inOperator, inRight.mDesc);
}

// The comparisons that hold, as the letters of: < less, l less or equal, = equal, g greater or
// equal, > greater.
std::string Holding(bool (*inCompare)(const AEDesc&, DescType, const AEDesc&),
                    const StAEDescriptor& inLeft, const StAEDescriptor& inRight) {
    static constexpr std::pair<char, DescType> kOperators[] = {{'<', kAELessThan},
                                                               {'l', kAELessThanEquals},
                                                               {'=', kAEEquals},
                                                               {'g', kAEGreaterThanEquals},
                                                               {'>', kAEGreaterThan}};
    std::string holding;
    for (const auto& [letter, code] : kOperators)
        if (inCompare(inLeft.mDesc, code, inRight.mDesc)) holding += letter;
    EXPECT_FALSE(inCompare(inLeft.mDesc, '?   ', inRight.mDesc));
    return holding;
}

TEST(AbsolutePosition, OrdinalsCountFromOne) {
    EXPECT_EQ(IndexOf(Ordinal(kAEFirst), 0), 1);
    EXPECT_EQ(IndexOf(Ordinal(kAEMiddle), 4), 2);
    EXPECT_EQ(IndexOf(Ordinal(kAEMiddle), 5), 3);
    EXPECT_EQ(IndexOf(Ordinal(kAELast), 7), 7);
    EXPECT_EQ(IndexOf(Ordinal(kAEMiddle), 0), 0);
    EXPECT_EQ(IndexOf(Ordinal(kAELast), 0), 0);
    EXPECT_EQ(CodeThrownBy([] { IndexOf(Ordinal(kAELast), -2); }), errAENoSuchObject);
    EXPECT_EQ(IndexOf(Ordinal(kAEAll), 3), -1);
    EXPECT_EQ(IndexOf(Ordinal('what'), 3), 0);
}

TEST(AbsolutePosition, AnyIsOneOfTheElements) {
    EXPECT_EQ(IndexOf(Ordinal(kAEAny), 0), 0);
    EXPECT_EQ(IndexOf(Ordinal(kAEAny), -3), 0);
    int counts[4] = {};
    for (int i = 0; i < 3000; ++i) {
        const SInt32 index = IndexOf(Ordinal(kAEAny), 3);
        ASSERT_GE(index, 1);
        ASSERT_LE(index, 3);
        ++counts[index];
    }
    for (int i = 1; i <= 3; ++i) EXPECT_GT(counts[i], 800);
}

TEST(AbsolutePosition, KeepsDrawingAmongSixteenBitsOfTheCount) {
    for (int i = 0; i < 100; ++i) {
        EXPECT_LE(IndexOf(Ordinal(kAEAny), 65536 + 2), 2);
        EXPECT_LE(IndexOf(Ordinal(kAEAny), 65536), 65536);
    }
}

TEST(AbsolutePosition, NegativeNumbersCountFromTheEnd) {
    EXPECT_EQ(IndexOf(StAEDescriptor(SInt32{-1}), 3), 3);
    EXPECT_EQ(IndexOf(StAEDescriptor(SInt32{-3}), 3), 1);
    EXPECT_EQ(CodeOfIndex(-4, 3), errAENoSuchObject);
    EXPECT_EQ(CodeOfIndex(-1, 0), errAENoSuchObject);
}

TEST(AbsolutePosition, NumbersFromZeroOnStayWhateverTheCount) {
    EXPECT_EQ(IndexOf(StAEDescriptor(SInt32{0}), 3), 0);
    EXPECT_EQ(IndexOf(StAEDescriptor(SInt32{9}), 3), 9);
    EXPECT_EQ(IndexOf(Text("2"), 3), 2) << "coerced";
    EXPECT_EQ(CodeThrownBy([] { IndexOf(Text("two"), 3); }), errAETypeError);
}

TEST(Comparison, NumbersGoByValueWhateverTheirTypes) {
    const StAEDescriptor seven(SInt32{7}), shortSeven(SInt16{7}), minusOne(SInt32{-1});
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, seven, shortSeven), "l=g");
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, minusOne, seven), "<l");
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, Double(7.5), seven), "g>");
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, seven, Double(7.5)), "<l");
    EXPECT_EQ(Holding(Mgr::CompareAsFloats, Double(0.5), Double(0.5)), "l=g");
}

TEST(Comparison, NothingIsTrueOfWhatIsNoNumber) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Holding(Mgr::CompareAsFloats, Double(none), Double(none)), "");
}

TEST(Comparison, LowWordsAreUnsignedAndHighWordsSigned) {
    const auto left = Wide(typeComp, 0x00000001'80000000), right = Wide(typeComp, 0x1'00000001);
    EXPECT_EQ(Holding(Mgr::CompareAsIntegers, left, right), "g>");
    EXPECT_EQ(Holding(Mgr::CompareAsIntegers, Wide(typeComp, -1), right), "<l");
    EXPECT_EQ(
        Holding(Mgr::CompareAsDates, Wide(typeLongDateTime, 0x80000000), Wide(typeLongDateTime, 1)),
        "g>");
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, Wide(typeLongDateTime, -5),
                      Wide(typeLongDateTime, 0x80000000)),
              "<l");
}

TEST(Comparison, EqualityGoesByTheTypeOfTheLeftSide) {
    for (const DescType type : {DescType(typeSInt16), DescType(typeSInt32), DescType(typeMagnitude),
                                DescType(typeComp), DescType(typeIEEE32BitFloatingPoint),
                                DescType(typeIEEE64BitFloatingPoint), DescType(typeExtended)})
        EXPECT_TRUE(Holds(Number(type, 2), kAEEquals, Text(" 2"))) << "no number: " << type;
    EXPECT_FALSE(Holds(Text("2"), kAEEquals, Text(" 2"))) << "as texts";
    const auto date = Wide(typeLongDateTime, 2), later = Wide(typeLongDateTime, 3);
    EXPECT_TRUE(Holds(date, kAEEquals, date));
    EXPECT_FALSE(Holds(date, kAEEquals, later));
    const StAEDescriptor truth(Boolean{true}), lie(Boolean{false});
    EXPECT_TRUE(Holds(StAEDescriptor(typeTrue, "", 0), kAEEquals, truth));
    EXPECT_TRUE(Holds(StAEDescriptor(typeFalse, "", 0), kAEEquals, lie));
    EXPECT_FALSE(Holds(StAEDescriptor(typeFalse, "", 0), kAEEquals, truth));
    EXPECT_FALSE(Holds(StAEDescriptor(Boolean{2}), kAEEquals, truth)) << "the bytes count";
}

TEST(Comparison, OneSideThatIsAFractionMakesBothFractions) {
    for (const DescType type : {DescType(typeIEEE32BitFloatingPoint),
                                DescType(typeIEEE64BitFloatingPoint), DescType(typeExtended)}) {
        const StAEDescriptor seven(SInt32{7}), more = Number(type, 7.25);
        EXPECT_EQ(Holding(Mgr::CompareAsNumbers, more, seven), "g>");
        EXPECT_EQ(Holding(Mgr::CompareAsNumbers, seven, more), "<l");
    }
}

OSErr DateOfDay(const AEDesc* inDay, DescType, SInt32, AEDesc* outDate) {
    UInt8 day = 0;
    AEGetDescData(inDay, &day, sizeof day);
    const SInt64 seconds = BigEndianFromNative(SInt64{day} * 24 * 60 * 60);
    return AECreateDesc(typeLongDateTime, &seconds, sizeof seconds, outDate);
}

TEST(Comparison, OneSideThatIsADateMakesBothDates) {
    const auto coercion = reinterpret_cast<AECoercionHandlerUPP>(DateOfDay);
    ASSERT_EQ(AEInstallCoercionHandler('day ', typeLongDateTime, coercion, 0, true, false), noErr);
    const auto noon = Wide(typeLongDateTime, 36 * 60 * 60);
    const StAEDescriptor day('day ', "\x01", 1);
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, day, noon), "<l");
    EXPECT_EQ(Holding(Mgr::CompareAsNumbers, noon, day), "g>");
    AERemoveCoercionHandler('day ', typeLongDateTime, coercion, false);
}

TEST(Comparison, TextsOfDigitsAreOrderedAsNumbers) {
    EXPECT_TRUE(Holds(Text("10"), kAEGreaterThan, Text("9")));
    EXPECT_TRUE(Holds(Text("10"), kAEGreaterThanEquals, Text("9")));
    EXPECT_TRUE(Holds(Text("9"), kAELessThan, Text("10")));
    EXPECT_TRUE(Holds(Text("9"), kAELessThanEquals, Text("10")));
    EXPECT_EQ(CodeThrownBy([] { Holds(Text("a"), kAELessThan, Text("b")); }), errAETypeError);
}

TEST(Comparison, TextsCountUpTo255Characters) {
    const std::string text(300, 'a');
    const StAEDescriptor whole(typeChar, text.data(), 300), cut(typeChar, text.data(), 255);
    EXPECT_TRUE(Holds(whole, kAEEquals, cut));
    EXPECT_TRUE(Holds(cut, kAEBeginsWith, whole));
}

TEST(Comparison, OperatorsAreHandedToTheRightKind) {
    EXPECT_TRUE(Holds(StAEDescriptor(SInt32{2}), kAEGreaterThan, Text("1")));
    EXPECT_TRUE(Holds(StAEDescriptor(SInt32{2}), kAEEquals, Text("2")));
    EXPECT_TRUE(Holds(StAEDescriptor(Boolean{true}), kAEEquals, StAEDescriptor(typeTrue, "", 0)));
    EXPECT_FALSE(Holds(StAEDescriptor(Boolean{true}), kAEEquals, StAEDescriptor(Boolean{false})));
    EXPECT_TRUE(Holds(Text("12"), kAEEquals, StAEDescriptor(SInt32{12}))) << "as texts";
    EXPECT_FALSE(Holds(Text("012"), kAEEquals, StAEDescriptor(SInt32{12}))) << "as texts";
    EXPECT_EQ(CodeThrownBy([] { Holds(Text("a"), 'like', Text("a")); }), errAEEventNotHandled);
    EXPECT_EQ(CodeThrownBy([] { Holds(StAEDescriptor(SInt32{1}), kAEEquals, Text("one")); }),
              errAETypeError);
}

TEST(Comparison, TextsBeginEndAndContain) {
    EXPECT_TRUE(Holds(Text("abcd"), kAEBeginsWith, Text("abc")));
    EXPECT_FALSE(Holds(Text("xabc"), kAEBeginsWith, Text("abc")));
    EXPECT_TRUE(Holds(Text("xabc"), kAEEndsWith, Text("abc")));
    EXPECT_FALSE(Holds(Text("abcx"), kAEEndsWith, Text("abc")));
    EXPECT_TRUE(Holds(Text("xabcx"), kAEContains, Text("abc")));
    EXPECT_TRUE(Holds(Text("xxabc"), kAEContains, Text("abc")));
    EXPECT_FALSE(Holds(Text("xabxc"), kAEContains, Text("abc")));
    EXPECT_TRUE(Holds(Text("abc"), kAEContains, Text("")));
    EXPECT_TRUE(Holds(Text("abc"), kAEEquals, Text("abc")));
    EXPECT_FALSE(Holds(Text("abcd"), kAEEquals, Text("abc")));
    EXPECT_FALSE(Mgr::CompareAsStrings(Text("abc").mDesc, kAEGreaterThan, Text("abc").mDesc));
}

TEST(Comparison, KeepsAShorterLeftTextFalseForEveryOperator) {
    for (const DescType code : {DescType(kAEBeginsWith), DescType(kAEEndsWith),
                                DescType(kAEContains), DescType(kAEEquals)})
        EXPECT_FALSE(Holds(Text("abc"), code, Text("abcd")));
    EXPECT_FALSE(Holds(Text("bc"), kAEEndsWith, Text("\2bc"))) << "its length counts as none of it";
}

// The resource file of a program with tables of handlers, open as the current one.
class InstallHandlers : public testing::Test {
  protected:
    InstallHandlers() {
        FSpCreateResFile(&mFile, 'Test', 'rsrc', smSystemScript);
        EXPECT_EQ(ResError(), noErr);
    }
    ~InstallHandlers() override {
        if (mOpen > 0) CloseResFile(mOpen);
        for (const AEEventID id : {'one ', 'two ', 'thre'})
            AERemoveEventHandler('test', id, nullptr, false);
    }
    static std::string Entry(AEEventID inID, SInt32 inRefCon, AEEventClass inClass = 'test') {
        return BigEndianText(inClass) + BigEndianText(inID) + BigEndianText(UInt32(inRefCon));
    }
    void Install() {
        mOpen = FSpOpenResFile(&mFile, fsRdPerm);
        ASSERT_GT(mOpen, 0);
        Mgr::InstallAEHandlers(Handler);
    }
    static OSErr Handler(const AppleEvent*, AppleEvent*, SInt32) { return noErr; }
    // The reference constant an event's handler gets; empty when none is installed.
    static std::optional<SInt32> RefConOf(AEEventID inID) {
        AEEventHandlerUPP handler = nullptr;
        SInt32 refCon = 0;
        if (AEGetEventHandler('test', inID, &handler, &refCon, false) != noErr) return std::nullopt;
        EXPECT_EQ(handler, Handler);
        return refCon;
    }

    MountedVolume mVolume;
    FSSpec mFile = mVolume.Spec("Program");
    ResFileRefNum mOpen = 0;
};

TEST_F(InstallHandlers, EveryEntryOfEveryTableIsInstalled) {
    AddResourceTo(mFile, 'aedt', 128, Entry('one ', 1) + Entry('two ', -2));
    AddResourceTo(mFile, 'aedt', 5, Entry('thre', 3));
    Install();
    EXPECT_EQ(RefConOf('one '), 1);
    EXPECT_EQ(RefConOf('two '), -2);
    EXPECT_EQ(RefConOf('thre'), 3);
}

TEST_F(InstallHandlers, WhatDoesNotFillAnEntryIsIgnored) {
    AddResourceTo(mFile, 'aedt', 128, Entry('one ', 1) + Entry('two ', 2).substr(0, 11));
    Install();
    EXPECT_EQ(RefConOf('one '), 1);
    EXPECT_EQ(RefConOf('two '), std::nullopt);
}

TEST_F(InstallHandlers, ATableIsReleasedWhateverComesOfIt) {
    AddResourceTo(mFile, 'aedt', 128, Entry('one ', 1));
    mOpen = FSpOpenResFile(&mFile, fsRdPerm);
    ASSERT_GT(mOpen, 0);
    for (AEEventHandlerProcPtr handler : {AEEventHandlerProcPtr(nullptr), &Handler}) {
        CodeThrownBy([&] { Mgr::InstallAEHandlers(handler); });
        SetResLoad(false);
        const Handle table = Get1Resource('aedt', 128);
        SetResLoad(true);
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(*table, nullptr) << "still in memory";
    }
}

TEST_F(InstallHandlers, NoTableInstallsNothing) {
    Install();
    EXPECT_EQ(RefConOf('one '), std::nullopt);
}

TEST_F(InstallHandlers, AFailureIsThrownAndEndsTheInstalling) {
    AddResourceTo(mFile, 'aedt', 128, Entry('one ', 1) + Entry('two ', 2));
    mOpen = FSpOpenResFile(&mFile, fsRdPerm);
    EXPECT_EQ(CodeThrownBy([] { Mgr::InstallAEHandlers(nullptr); }), paramErr);
    EXPECT_EQ(RefConOf('one '), std::nullopt);
}

TEST(MissedParameters, AreThrownUntilTheyAreRead) {
    StAEDescriptor event;
    const StAEDescriptor self = [] {
        StAEDescriptor address;
        Mgr::MakeSelfTargetAddr(address);
        return address;
    }();
    ASSERT_EQ(
        AECreateAppleEvent('test', 'tell', self, kAutoGenerateReturnID, kAnyTransactionID, event),
        noErr);
    EXPECT_EQ(CodeThrownBy([&] { Mgr::CheckForMissedParams(event); }), std::nullopt);
    ASSERT_EQ(AEPutParamDesc(event, keyDirectObject, StAEDescriptor(SInt32{1})), noErr);
    EXPECT_EQ(CodeThrownBy([&] { Mgr::CheckForMissedParams(event); }), errAEParamMissed);
    StAEDescriptor read;
    ASSERT_EQ(AEGetParamDesc(event, keyDirectObject, typeWildCard, read), noErr);
    EXPECT_EQ(CodeThrownBy([&] { Mgr::CheckForMissedParams(event); }), std::nullopt);
}

TEST(MissedParameters, OtherErrorsOfTheAttributeAreThrown) {
    const StAEDescriptor number(SInt32{1});
    StAEDescriptor junk;
    DescType type;
    Size size;
    const OSErr error =
        AEGetAttributePtr(number, keyMissedKeywordAttr, typeWildCard, &type, nullptr, 0, &size);
    ASSERT_NE(error, noErr);
    ASSERT_NE(error, errAEDescNotFound);
    EXPECT_EQ(CodeThrownBy([&] { Mgr::CheckForMissedParams(number.mDesc); }), error);
}

}  // namespace
