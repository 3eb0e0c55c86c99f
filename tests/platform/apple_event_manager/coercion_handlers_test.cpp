// Coercion handlers: which one is asked, in which order, and what its answer means.
#include "platform/apple_event_manager/Desc.h"

namespace {

std::string gAsked;

// Notes its reference constant; its refusal is a reference constant of 'nope'.
OSErr FromDesc(const AEDesc* inFrom, DescType inType, SInt32 inRefCon, AEDesc* outDesc) {
    gAsked += Big(inRefCon);
    EXPECT_NE(inFrom, nullptr);
    if (inRefCon == 'nope') return errAECoercionFail;
    if (inRefCon == 'errr') return -12345;
    return AECreateDesc(inType, "desc", 4, outDesc);
}

OSErr FromPtr(DescType inFrom, const void* inData, Size inSize, DescType inType, SInt32 inRefCon,
              AEDesc* outDesc) {
    gAsked += Big(inRefCon);
    EXPECT_EQ(inFrom, DescType('from'));
    const std::string reversed(static_cast<const char*>(inData), size_t(inSize));
    return AECreateDesc(inType, std::string(reversed.rbegin(), reversed.rend()).data(), inSize,
                        outDesc);
}

OSErr AnswerWithText(DescType, const void* inData, Size inSize, DescType, SInt32, AEDesc* outDesc) {
    return AECreateDesc(typeChar, inData, inSize, outDesc);
}

OSErr FillAndFail(const AEDesc*, DescType inType, SInt32, AEDesc* outDesc) {
    EXPECT_EQ(AECreateDesc(inType, "half", 4, outDesc), noErr);
    return -12345;
}

AECoercionHandlerUPP AsHandler(AECoercePtrUPP inHandler) {
    return reinterpret_cast<AECoercionHandlerUPP>(reinterpret_cast<void*>(inHandler));
}

class CoercionHandler : public testing::Test {
  protected:
    ~CoercionHandler() override {
        for (const auto& entry : mInstalled)
            AERemoveCoercionHandler(entry.from, entry.to, nullptr, entry.isSystem);
        gAsked.clear();
    }
    void Install(DescType inFrom, DescType inTo, SInt32 inRefCon, Boolean inIsSystem = false,
                 AECoercionHandlerUPP inHandler = FromDesc, Boolean inTakesDesc = true) {
        ASSERT_EQ(
            AEInstallCoercionHandler(inFrom, inTo, inHandler, inRefCon, inTakesDesc, inIsSystem),
            noErr);
        mInstalled.push_back({inFrom, inTo, inIsSystem});
    }
    OSErr Coerce(DescType inFrom, DescType inTo, Desc& outDesc) {
        gAsked.clear();
        const Desc source(inFrom, "data");
        return AECoerceDesc(&source, inTo, outDesc.Out());
    }

  private:
    struct Entry {
        DescType from, to;
        Boolean isSystem;
    };
    std::vector<Entry> mInstalled;
};

}  // namespace

TEST_F(CoercionHandler, ExactPairsGoBeforeWildCardsAndTheApplicationBeforeTheSystem) {
    Install(typeWildCard, typeWildCard, 'nope', true);
    Install('from', 'to  ', 'nope', true);
    Install(typeWildCard, typeWildCard, 'nope');
    Install(typeWildCard, 'to  ', 'nope');
    Install('from', typeWildCard, 'nope');
    Install('from', 'to  ', 'nope');
    Desc result;
    EXPECT_EQ(Coerce('from', 'to  ', result), errAECoercionFail);
    EXPECT_EQ(gAsked.size(), 6u * 4);
    Install('from', typeWildCard, 'half');
    EXPECT_EQ(Coerce('from', 'to  ', result), noErr);
    EXPECT_EQ(gAsked, "nopehalf");
    EXPECT_EQ(result.Bytes(), "desc");
}

TEST_F(CoercionHandler, GoesBeforeTheBuiltInOnesWhichComeWhenItDeclines) {
    Install(typeSInt32, typeChar, 'mine');
    const Desc number = Long(42);
    Desc text;
    ASSERT_EQ(AECoerceDesc(&number, typeChar, &text), noErr);
    EXPECT_EQ(text.Bytes(), "desc");
    Install(typeSInt32, typeChar, 'nope');
    ASSERT_EQ(AECoerceDesc(&number, typeChar, text.Out()), noErr);
    EXPECT_EQ(text.Bytes(), "42");
}

TEST_F(CoercionHandler, EndsTheCoercionWithAnyOtherError) {
    Install(typeSInt32, typeChar, 'errr');
    const Desc number = Long(42);
    Desc text;
    EXPECT_EQ(AECoerceDesc(&number, typeChar, &text), -12345);
    EXPECT_TRUE(text.IsNull());
}

TEST_F(CoercionHandler, LeavesNothingBehindWhenItFillsAndFails) {
    Install('from', 'to  ', 0, false, FillAndFail);
    Desc result;
    EXPECT_EQ(Coerce('from', 'to  ', result), -12345);
    EXPECT_TRUE(result.IsNull());
}

TEST_F(CoercionHandler, IsNotAskedForTheSameTypeOrAnyType) {
    Install(typeWildCard, typeWildCard, 'mine');
    Desc result;
    EXPECT_EQ(Coerce('from', 'from', result), noErr);
    EXPECT_EQ(Coerce('from', typeWildCard, result), noErr);
    EXPECT_EQ(gAsked, "");
    EXPECT_EQ(result.Bytes(), "data");
}

TEST_F(CoercionHandler, TakesBytesWhenInstalledSo) {
    Install('from', 'to  ', 'ptr ', false, AsHandler(FromPtr), false);
    Desc result;
    EXPECT_EQ(Coerce('from', 'to  ', result), noErr);
    EXPECT_EQ(result.Bytes(), "atad");
    Desc record = Record();
    ASSERT_EQ(AEPutParamPtr(&record, 'keyA', 'from', "xy", 2), noErr);
    EXPECT_EQ(Param(record, 'keyA', 'to  ').Bytes(), "yx");
}

TEST_F(CoercionHandler, MayAnswerWithAnotherTypeThanAsked) {
    Install('from', typePString, 0, false, AsHandler(AnswerWithText), false);
    Desc record = Record();
    ASSERT_EQ(AEPutParamPtr(&record, 'keyA', 'from', "xy", 2), noErr);
    DescType type = 0;
    char buffer[8] = {};
    EXPECT_EQ(AEGetParamPtr(&record, 'keyA', typePString, &type, buffer, 8, nullptr), noErr);
    EXPECT_EQ(type, DescType(typeChar));
    EXPECT_STREQ(buffer, "xy");
}

TEST_F(CoercionHandler, ReplacesTheEntryOfItsPairInItsTableOnly) {
    Install('from', 'to  ', 'one ');
    Install('from', 'to  ', 'two ');
    Install('from', 'to  ', 'syst', true);
    AECoercionHandlerUPP handler = nullptr;
    SInt32 refCon = 0;
    Boolean takesDesc = false;
    EXPECT_EQ(AEGetCoercionHandler('from', 'to  ', &handler, &refCon, &takesDesc, false), noErr);
    EXPECT_EQ(handler, FromDesc);
    EXPECT_EQ(refCon, SInt32('two '));
    EXPECT_TRUE(takesDesc);
    EXPECT_EQ(AEGetCoercionHandler('from', 'to  ', nullptr, &refCon, nullptr, true), noErr);
    EXPECT_EQ(refCon, SInt32('syst'));
}

TEST_F(CoercionHandler, IsFoundAndRemovedOnlyUnderItsOwnPair) {
    Install('from', 'to  ', 'mine');
    EXPECT_EQ(AEGetCoercionHandler('from', 'else', nullptr, nullptr, nullptr, false),
              errAEHandlerNotFound);
    EXPECT_EQ(AEGetCoercionHandler('from', 'to  ', nullptr, nullptr, nullptr, true),
              errAEHandlerNotFound);
    EXPECT_EQ(AERemoveCoercionHandler('from', 'to  ', FillAndFail, false), errAEHandlerNotFound);
    EXPECT_EQ(AERemoveCoercionHandler('from', 'to  ', FromDesc, false), noErr);
    EXPECT_EQ(AERemoveCoercionHandler('from', 'to  ', FromDesc, false), errAEHandlerNotFound);
    EXPECT_EQ(AEInstallCoercionHandler('from', 'to  ', nullptr, 0, true, false), paramErr);
}

TEST_F(CoercionHandler, ServesAttributesAndTheItemsOfLists) {
    Install('from', typeSInt32, 0, false, FromDesc);
    Desc event = Event(), list = List();
    ASSERT_EQ(AEPutAttributePtr(&event, keyTimeoutAttr, 'from', "x", 1), noErr);
    Desc timeout;
    EXPECT_EQ(AEGetAttributeDesc(&event, keyTimeoutAttr, typeWildCard, &timeout), noErr);
    EXPECT_EQ(timeout.Bytes(), "desc");
    ASSERT_EQ(AEPutPtr(&list, 0, 'from', "x", 1), noErr);
    EXPECT_EQ(Nth(list, 1, typeSInt32).Bytes(), "desc");
}
