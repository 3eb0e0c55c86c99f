// Events and records: parameters by keyword, attributes apart from them, the computed 'miss'.
#include <array>

#include "apple_event_manager/internal.h"
#include "platform/apple_event_manager/Desc.h"

namespace {

Desc Attribute(const Desc& inEvent, AEKeyword inKey, DescType inType = typeWildCard) {
    Desc found;
    EXPECT_EQ(AEGetAttributeDesc(&inEvent, inKey, inType, &found), noErr);
    return found;
}

// 0 when nothing is missed.
AEKeyword Missed(const Desc& inEvent) {
    UInt8 bytes[4] = {};
    DescType type = 0;
    Size size = 0;
    const OSErr result =
        AEGetAttributePtr(&inEvent, keyMissedKeywordAttr, typeWildCard, &type, bytes, 4, &size);
    if (result == errAEDescNotFound) return 0;
    EXPECT_EQ(result, noErr);
    EXPECT_EQ(type, DescType(typeKeyword));
    EXPECT_EQ(size, 4);
    return AEKeyword(bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3]);
}

void Put(Desc& ioRecord, AEKeyword inKey, std::string_view inText) {
    ASSERT_EQ(AEPutParamPtr(&ioRecord, inKey, typeChar, inText.data(), Size(inText.size())), noErr);
}

}  // namespace

TEST(Record, ReplacesAKeyInItsPlace) {
    Desc record = Record();
    Put(record, 'keyA', "1");
    Put(record, 'keyB', "2");
    Put(record, 'keyA', "longer than before");
    EXPECT_EQ(Keys(record), "keyAkeyB");
    EXPECT_EQ(Param(record, 'keyA').Bytes(), "longer than before");
    EXPECT_EQ(Param(record, 'keyB').Bytes(), "2");
}

TEST(Record, FindsEveryKeyAmongMany) {
    Desc record = Record();
    for (UInt32 i = 0; i < 1000; ++i) Put(record, 'k000' + i, std::to_string(i));
    for (UInt32 i = 0; i < 1000; ++i)
        ASSERT_EQ(Param(record, 'k000' + i).Bytes(), std::to_string(i));
    Put(record, 'k000' + 500, "replaced");
    EXPECT_EQ(Param(record, 'k000' + 500).Bytes(), "replaced");
    EXPECT_EQ(Param(record, 'k000' + 501).Bytes(), "501");
    EXPECT_EQ(AEDeleteParam(&record, 'k000' + 500), noErr);
    EXPECT_EQ(AEDeleteParam(&record, 'k000' + 500), errAEDescNotFound);
    EXPECT_EQ(Param(record, 'k000' + 999).Bytes(), "999");
    Put(record, 'last', "appended");
    EXPECT_EQ(Param(record, 'last').Bytes(), "appended");
    EXPECT_EQ(Count(record), 1000);
}

TEST(Record, CanBePutIntoItself) {
    Desc record = Record();
    Put(record, 'keyA', "1");
    EXPECT_EQ(AEPutParamDesc(&record, 'self', &record), noErr);
    EXPECT_EQ(Keys(record), "keyAself");
    EXPECT_EQ(Keys(Param(record, 'self')), "keyA");
}

TEST(Record, RefusesEverythingThatIsNoRecord) {
    Desc leaf = Long(1), list = List(), null, found;
    DescType type = 0;
    Size size = 0;
    for (AEDesc* desc : {&leaf, &list, &null}) {
        EXPECT_EQ(AEPutParamPtr(desc, 'keyA', typeChar, "x", 1), errAENotAEDesc);
        EXPECT_EQ(AEGetParamPtr(desc, 'keyA', typeChar, &type, nullptr, 0, &size), errAENotAEDesc);
        EXPECT_EQ(AEGetParamDesc(desc, 'keyA', typeChar, &found), errAENotAEDesc);
        EXPECT_EQ(AESizeOfParam(desc, 'keyA', &type, &size), errAENotAEDesc);
        EXPECT_EQ(AEDeleteParam(desc, 'keyA'), errAENotAEDesc);
        EXPECT_EQ(AEGetAttributePtr(desc, 'evcl', typeType, &type, nullptr, 0, &size),
                  errAENotAEDesc);
        EXPECT_EQ(AEPutAttributePtr(desc, 'timo', typeSInt32, "1234", 4), errAENotAEDesc);
    }
    EXPECT_EQ(AEGetParamPtr(nullptr, 'keyA', typeChar, &type, nullptr, 0, &size), paramErr);
    EXPECT_EQ(AEGetParamDesc(nullptr, 'keyA', typeChar, &found), paramErr);
    EXPECT_EQ(AEPutParamPtr(nullptr, 'keyA', typeChar, "x", 1), paramErr);
    EXPECT_EQ(AEDeleteParam(nullptr, 'keyA'), paramErr);
}

TEST(Record, HasNoAttributes) {
    Desc record = Record();
    Size size = 0;
    EXPECT_EQ(AESizeOfAttribute(&record, keyEventClassAttr, nullptr, &size), errAENotAEDesc);
}

TEST(Record, GivesTypeAfterCoercionAndTheWholeSizeThoughTheBufferIsSmall) {
    Desc record = Record();
    Put(record, 'numb', "123456");
    char buffer[3] = "--";
    DescType type = 0;
    Size size = 0;
    EXPECT_EQ(AEGetParamPtr(&record, 'numb', typeWildCard, &type, buffer, 2, &size), noErr);
    EXPECT_STREQ(buffer, "12");
    EXPECT_EQ(type, DescType(typeChar));
    EXPECT_EQ(size, 6);
    EXPECT_EQ(AEGetParamPtr(&record, 'numb', typeSInt32, &type, nullptr, 0, &size), noErr);
    EXPECT_EQ(type, DescType(typeSInt32));
    EXPECT_EQ(size, 4);
    EXPECT_EQ(AEGetParamPtr(&record, 'numb', typeFSS, &type, buffer, 2, &size), errAECoercionFail);
    EXPECT_EQ(AEGetParamPtr(&record, 'none', typeChar, &type, buffer, 2, &size), errAEDescNotFound);
    EXPECT_EQ(AEGetParamPtr(&record, 'numb', typeChar, nullptr, buffer, 2, nullptr), noErr);
    EXPECT_EQ(AEGetParamPtr(&record, 'numb', typeChar, nullptr, nullptr, 2, nullptr), paramErr);
    EXPECT_EQ(AEGetParamPtr(&record, 'numb', typeChar, nullptr, buffer, -2, nullptr), paramErr);
    EXPECT_EQ(AESizeOfParam(&record, 'numb', &type, &size), noErr);
    EXPECT_EQ(type, DescType(typeChar));
    EXPECT_EQ(size, 6);
}

TEST(Event, HasItsFiveAttributesAndNoParameters) {
    const std::string psn("\0\0\0\0\0\0\0\2", 8);
    const Desc target(typeProcessSerialNumber, psn);
    Desc event;
    ASSERT_EQ(AECreateAppleEvent('core', 'getd', &target, 77, 88, &event), noErr);
    EXPECT_EQ(event.Type(), DescType(typeAppleEvent));
    EXPECT_EQ(Count(event), 0);
    EXPECT_EQ(Attribute(event, keyEventClassAttr).Bytes(), "core");
    EXPECT_EQ(Attribute(event, keyEventClassAttr).Type(), DescType(typeType));
    EXPECT_EQ(Attribute(event, keyEventIDAttr).Bytes(), "getd");
    EXPECT_EQ(Attribute(event, keyAddressAttr, typeProcessSerialNumber).Bytes(), psn);
    EXPECT_EQ(Attribute(event, keyReturnIDAttr, typeSInt16).Bytes(), Big(SInt16(77)));
    EXPECT_EQ(Attribute(event, keyReturnIDAttr, typeSInt32).Bytes(), Big(SInt32(77)));
    EXPECT_EQ(Attribute(event, keyTransactionIDAttr, typeSInt32).Bytes(), Big(SInt32(88)));
}

TEST(Event, AddressMayBeAnythingOrNothing) {
    const Desc strange('what', "ever"), null;
    Desc event;
    EXPECT_EQ(AECreateAppleEvent('a   ', 'b   ', &strange, 0, 0, &event), noErr);
    EXPECT_EQ(Attribute(event, keyAddressAttr).Type(), DescType('what'));
    EXPECT_EQ(AECreateAppleEvent('a   ', 'b   ', &null, 0, 0, event.Out()), noErr);
    EXPECT_TRUE(Attribute(event, keyAddressAttr).IsNull());
    EXPECT_EQ(AECreateAppleEvent('a   ', 'b   ', nullptr, 0, 0, event.Out()), noErr);
    EXPECT_TRUE(Attribute(event, keyAddressAttr).IsNull());
    EXPECT_EQ(AECreateAppleEvent('a   ', 'b   ', nullptr, 0, 0, nullptr), paramErr);
}

TEST(Event, GeneratedReturnIDsDiffer) {
    const Desc first = Event(), second = Event();
    EXPECT_NE(Attribute(first, keyReturnIDAttr).Bytes(),
              Attribute(second, keyReturnIDAttr).Bytes());
    EXPECT_NE(Attribute(first, keyReturnIDAttr).Bytes(), Big(SInt16(-1)));
}

TEST(Event, KeepsAttributesAndParametersOfOneNameApart) {
    Desc event = Event();
    Put(event, 'from', "a parameter");
    Put(event, 'evcl', "another");
    const Desc address = Code(typeApplSignature, 'Fv8k');
    ASSERT_EQ(AEPutAttributeDesc(&event, keyOriginalAddressAttr, &address), noErr);
    EXPECT_EQ(Param(event, 'from').Bytes(), "a parameter");
    EXPECT_EQ(Attribute(event, keyOriginalAddressAttr).Bytes(), "Fv8k");
    EXPECT_EQ(Attribute(event, keyEventClassAttr).Bytes(), "core");
    EXPECT_EQ(Count(event), 2);
}

TEST(Event, AttributesSurviveParametersThatComeGoAndGrow) {
    Desc event = Event();
    Put(event, 'keyA', "1");
    Put(event, 'keyB', "2");
    Put(event, 'keyA', std::string(1000, 'x'));
    EXPECT_EQ(Attribute(event, keyEventIDAttr).Bytes(), "getd");
    EXPECT_EQ(AEDeleteParam(&event, 'keyA'), noErr);
    EXPECT_EQ(Attribute(event, keyEventIDAttr).Bytes(), "getd");
    EXPECT_EQ(Param(event, 'keyB').Bytes(), "2");
    const std::string timeout = Big(SInt32(600));
    EXPECT_EQ(AEPutAttributePtr(&event, keyTimeoutAttr, typeSInt32, timeout.data(), 4), noErr);
    Put(event, 'keyC', "3");
    EXPECT_EQ(Attribute(event, keyTimeoutAttr).Bytes(), timeout);
    EXPECT_EQ(Keys(event), "keyBkeyC");
}

TEST(Event, CoercesAttributesToTheirOwnTypes) {
    Desc event = Event();
    EXPECT_EQ(AEPutAttributePtr(&event, keyTimeoutAttr, typeChar, "600", 3), noErr);
    EXPECT_EQ(Attribute(event, keyTimeoutAttr).Type(), DescType(typeSInt32));
    EXPECT_EQ(Attribute(event, keyTimeoutAttr).Bytes(), Big(SInt32(600)));
    EXPECT_EQ(AEPutAttributePtr(&event, keyReturnIDAttr, typeSInt32, "\0\1\0\0", 4),
              errAECoercionFail);
    EXPECT_EQ(AEPutAttributePtr(&event, keyTransactionIDAttr, typeSInt16, "\0\5", 2), noErr);
    EXPECT_EQ(Attribute(event, keyTransactionIDAttr).Bytes(), Big(SInt32(5)));
    EXPECT_EQ(AEPutAttributePtr(&event, keyOptionalKeywordAttr, typeKeyword, "keyA", 4), noErr);
    EXPECT_EQ(Attribute(event, keyOptionalKeywordAttr).Type(), DescType(typeAEList));
    EXPECT_EQ(AEPutAttributePtr(&event, keyAddressAttr, typeChar, "as it is", 8), noErr);
    EXPECT_EQ(Attribute(event, keyAddressAttr).Type(), DescType(typeChar));
    EXPECT_EQ(AEPutAttributePtr(&event, 'mine', typeChar, "own", 3), noErr);
    EXPECT_EQ(Attribute(event, 'mine').Bytes(), "own");
}

TEST(Event, RefusesToSetWhatOnlyTheManagerSets) {
    Desc event = Event();
    for (AEKeyword key :
         {keyInteractLevelAttr, keyEventSourceAttr, keyMissedKeywordAttr, keyReplyRequestedAttr}) {
        EXPECT_EQ(AEPutAttributePtr(&event, key, typeSInt32, "\0\0\0\1", 4), paramErr);
        EXPECT_EQ(AESizeOfAttribute(&event, key, nullptr, nullptr), errAEDescNotFound);
    }
    EXPECT_EQ(carbon::SetEventAttribute(&event, keyEventSourceAttr, typeSInt16, "\0\2", 2), noErr);
    EXPECT_EQ(Attribute(event, keyEventSourceAttr).Bytes(), Big(SInt16(2)));
}

TEST(Event, MissesTheFirstParameterThatWasNotFetched) {
    Desc event = Event();
    EXPECT_EQ(Missed(event), 0u);
    Put(event, 'keyA', "1");
    Put(event, 'keyB', "2");
    EXPECT_EQ(Missed(event), AEKeyword('keyA'));
    Param(event, 'keyA');
    EXPECT_EQ(Missed(event), AEKeyword('keyB'));
    char buffer[1];
    ASSERT_EQ(AEGetParamPtr(&event, 'keyB', typeChar, nullptr, buffer, 1, nullptr), noErr);
    EXPECT_EQ(Missed(event), 0u);
}

TEST(Event, MissesWhatWasOnlyMeasuredOrCouldNotBeCoerced) {
    Desc event = Event(), found;
    Put(event, 'keyA', "no number");
    Size size = 0;
    EXPECT_EQ(AESizeOfParam(&event, 'keyA', nullptr, &size), noErr);
    EXPECT_EQ(AEGetParamPtr(&event, 'keyA', typeWildCard, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(AEGetParamDesc(&event, 'keyA', typeSInt32, &found), errAECoercionFail);
    EXPECT_EQ(AEGetNthDesc(&event, 1, typeWildCard, nullptr, &found), noErr);
    EXPECT_EQ(Missed(event), AEKeyword('keyA'));
}

TEST(Event, MissesNoOptionalParameter) {
    Desc event = Event(), optional = List();
    Put(event, 'keyA', "1");
    Put(event, 'keyB', "2");
    ASSERT_EQ(AEPutPtr(&optional, 0, typeKeyword, "keyA", 4), noErr);
    ASSERT_EQ(AEPutAttributeDesc(&event, keyOptionalKeywordAttr, &optional), noErr);
    EXPECT_EQ(Missed(event), AEKeyword('keyB'));
    ASSERT_EQ(AEPutPtr(&optional, 0, typeKeyword, "keyB", 4), noErr);
    ASSERT_EQ(AEPutAttributeDesc(&event, keyOptionalKeywordAttr, &optional), noErr);
    EXPECT_EQ(Missed(event), 0u);
}

TEST(Event, KeepsItsOwnAccountOfWhatWasFetched) {
    Desc event = Event(), copy;
    Put(event, 'keyA', "1");
    Param(event, 'keyA');
    ASSERT_EQ(AEDuplicateDesc(&event, &copy), noErr);
    EXPECT_EQ(Missed(event), 0u);
    EXPECT_EQ(Missed(copy), AEKeyword('keyA'));
    EXPECT_EQ(event.Flat(), copy.Flat());
    Put(event, 'keyA', "changed");
    EXPECT_EQ(Missed(event), AEKeyword('keyA'));
}

TEST(Event, ForgetsWhatWasFetchedWithTheParameter) {
    Desc event = Event();
    Put(event, 'keyA', "1");
    Put(event, 'keyB', "2");
    Param(event, 'keyA');
    ASSERT_EQ(AEDeleteParam(&event, 'keyA'), noErr);
    EXPECT_EQ(Missed(event), AEKeyword('keyB'));
}

TEST(Event, KeepsAccountOfMoreParametersThanAnybodySends) {
    Desc event = Event();
    std::vector<AEKeyword> missed;
    for (AEKeyword key = 1; key <= 150; ++key) {
        Put(event, key, "x");
        missed.push_back(key);
    }
    for (AEKeyword step = 0; !missed.empty(); ++step) {
        const size_t place = step * 37 % missed.size();
        if (step % 3 == 0)
            ASSERT_EQ(AEDeleteParam(&event, missed[place]), noErr);
        else
            Param(event, missed[place]);
        missed.erase(missed.begin() + SInt32(place));
        ASSERT_EQ(Missed(event), missed.empty() ? 0 : missed[0]) << step;
    }
}

TEST(Event, ListTakenFromItIsWholeAndApart) {
    Desc event = Event(), list = List();
    for (SInt32 i = 0; i < 1000; ++i) {
        const Desc item = Long(i);
        ASSERT_EQ(AEPutDesc(&list, 0, &item), noErr);
    }
    ASSERT_EQ(AEPutParamDesc(&event, 'kfil', &list), noErr);
    const std::string before = event.Flat();
    Desc taken = Param(event, 'kfil'), again = Param(event, 'kfil');
    EXPECT_EQ(taken.Flat(), list.Flat());
    ASSERT_EQ(AEDeleteItem(&taken, 1), noErr);
    ASSERT_EQ(AEPutPtr(&taken, 0, typeChar, "more", 4), noErr);
    EXPECT_EQ(Count(taken), 1000);
    EXPECT_EQ(event.Flat(), before);
    Put(event, 'kfil', "nothing left");
    EXPECT_EQ(again.Flat(), list.Flat());
    event = Desc();
    EXPECT_EQ(Nth(again, 1000).Bytes(), Big(SInt32(999)));
}

TEST(Event, ReplyCarriesReturnIDTransactionAndAddressOfTheRequest) {
    const Desc target = Code(typeApplSignature, 'Fv8k');
    Desc request, reply;
    ASSERT_EQ(AECreateAppleEvent('core', 'getd', &target, 7, 8, &request), noErr);
    ASSERT_EQ(carbon::MakeReply(request, &reply), noErr);
    EXPECT_EQ(Count(reply), 0);
    EXPECT_EQ(Attribute(reply, keyEventClassAttr).Bytes(), "aevt");
    EXPECT_EQ(Attribute(reply, keyEventIDAttr).Bytes(), "ansr");
    EXPECT_EQ(Attribute(reply, keyReturnIDAttr).Bytes(), Big(SInt16(7)));
    EXPECT_EQ(Attribute(reply, keyTransactionIDAttr).Bytes(), Big(SInt32(8)));
    EXPECT_EQ(Attribute(reply, keyAddressAttr).Bytes(), "Fv8k");
    const Desc record = Record();
    EXPECT_EQ(carbon::MakeReply(record, reply.Out()), errAENotAEDesc);
}
