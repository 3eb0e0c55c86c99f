// Lists and arrays: positions, replacing, factoring, nesting, and the codes of misuse.
#include "platform/apple_event_manager/Desc.h"

namespace {

std::vector<SInt32> Values(const Desc& inList) {
    std::vector<SInt32> values;
    for (SInt32 i = 1; i <= Count(inList); ++i) {
        UInt8 bytes[4] = {};
        EXPECT_EQ(AEGetNthPtr(&inList, i, typeSInt32, nullptr, nullptr, bytes, 4, nullptr), noErr);
        values.push_back(EndianS32_BtoN(*reinterpret_cast<SInt32*>(bytes)));
    }
    return values;
}

OSErr Put(Desc& ioList, SInt32 inIndex, SInt32 inValue) {
    const Desc item = Long(inValue);
    return AEPutDesc(&ioList, inIndex, &item);
}

using Numbers = std::vector<SInt32>;

}  // namespace

TEST(List, AppendsAtZeroAndAtOnePastTheLast) {
    Desc list = List();
    EXPECT_EQ(Put(list, 1, 10), noErr);
    EXPECT_EQ(Put(list, 0, 20), noErr);
    EXPECT_EQ(Put(list, 3, 30), noErr);
    EXPECT_EQ(Values(list), (Numbers{10, 20, 30}));
}

TEST(List, RefusesIndexesBeyondTheNextOne) {
    Desc list = Longs({10});
    EXPECT_EQ(Put(list, 3, 1), errAEIllegalIndex);
    EXPECT_EQ(Put(list, -1, 1), errAEIllegalIndex);
    EXPECT_EQ(Put(list, 0x7FFFFFFF, 1), errAEIllegalIndex);
    EXPECT_EQ(Values(list), (Numbers{10}));
}

TEST(List, ReplacingKeepsTheOthersWhateverTheSizes) {
    Desc list = Longs({10, 20, 30});
    EXPECT_EQ(AEPutPtr(&list, 2, typeChar, "a longer text than a number", 27), noErr);
    EXPECT_EQ(Nth(list, 2).Bytes(), "a longer text than a number");
    EXPECT_EQ(Nth(list, 3).Bytes(), Big(SInt32(30)));
    EXPECT_EQ(AEPutPtr(&list, 2, typeChar, "", 0), noErr);
    EXPECT_EQ(Nth(list, 1).Bytes(), Big(SInt32(10)));
    EXPECT_EQ(Nth(list, 2).Bytes(), "");
    EXPECT_EQ(Nth(list, 3).Bytes(), Big(SInt32(30)));
    EXPECT_EQ(Count(list), 3);
}

TEST(List, DeletingMovesLaterItemsDown) {
    Desc list = Longs({10, 20, 30});
    EXPECT_EQ(AEDeleteItem(&list, 1), noErr);
    EXPECT_EQ(Values(list), (Numbers{20, 30}));
    EXPECT_EQ(AEDeleteItem(&list, 2), noErr);
    EXPECT_EQ(Values(list), (Numbers{20}));
    EXPECT_EQ(Put(list, 0, 40), noErr);
    EXPECT_EQ(Values(list), (Numbers{20, 40}));
    EXPECT_EQ(AEDeleteItem(&list, 3), errAEBadListItem);
    EXPECT_EQ(AEDeleteItem(&list, 0), errAEBadListItem);
}

TEST(List, FollowsAnyMixtureOfChangesAndLooks) {
    Desc list = List();
    Numbers model;
    UInt32 random = 1;
    const auto next = [&](size_t inBelow) {
        random = random * 1664525 + 1013904223;
        return SInt32((random >> 8) % inBelow);
    };
    for (SInt32 i = 0; i < 2000; ++i) {
        const SInt32 place = next(model.size() + 1), what = next(5);
        if (what < 2 || place == SInt32(model.size())) {
            ASSERT_EQ(Put(list, 0, i), noErr);
            model.push_back(i);
        } else if (what == 2) {
            ASSERT_EQ(AEDeleteItem(&list, place + 1), noErr);
            model.erase(model.begin() + place);
        } else if (what == 3) {
            const std::string longer = Big(SInt32(i)) + std::string(size_t(next(9)), 'x');
            ASSERT_EQ(AEPutPtr(&list, place + 1, typeSInt32, longer.data(), Size(longer.size())),
                      noErr);
            model[size_t(place)] = i;
        } else {
            ASSERT_EQ(Nth(list, place + 1).Bytes().substr(0, 4), Big(model[size_t(place)])) << i;
        }
    }
    ASSERT_EQ(Count(list), SInt32(model.size()));
    EXPECT_EQ(Values(list), model);
}

TEST(List, SaysThatAnItemIsMissing) {
    const Desc list = Longs({10});
    Desc item;
    DescType type = 0;
    Size size = 0;
    for (SInt32 index : {0, 2, -1}) {
        EXPECT_EQ(AEGetNthDesc(&list, index, typeWildCard, nullptr, &item), errAEDescNotFound);
        EXPECT_EQ(AEGetNthPtr(&list, index, typeWildCard, nullptr, &type, nullptr, 0, &size),
                  errAEDescNotFound);
        EXPECT_EQ(AESizeOfNthItem(&list, index, &type, &size), errAEDescNotFound);
        EXPECT_TRUE(item.IsNull());
    }
}

TEST(List, GivesKeywordTypeAndWholeSizeWithAnyOfThemUnwanted) {
    const Desc list = Longs({0x01020304});
    AEKeyword keyword = 0;
    DescType type = 0;
    Size size = 0;
    char buffer[2] = {};
    EXPECT_EQ(AEGetNthPtr(&list, 1, typeWildCard, &keyword, &type, buffer, 2, &size), noErr);
    EXPECT_EQ(keyword, AEKeyword(typeWildCard));
    EXPECT_EQ(type, DescType(typeSInt32));
    EXPECT_EQ(size, 4);
    EXPECT_EQ(std::string(buffer, 2), "\1\2");
    EXPECT_EQ(AEGetNthPtr(&list, 1, typeWildCard, nullptr, nullptr, nullptr, 0, nullptr), noErr);
    EXPECT_EQ(AESizeOfNthItem(&list, 1, nullptr, nullptr), noErr);
    EXPECT_EQ(AEGetNthPtr(&list, 1, typeWildCard, nullptr, nullptr, nullptr, 2, nullptr), paramErr);
}

TEST(List, CoercesWhatItGives) {
    const Desc list = Longs({42});
    EXPECT_EQ(Nth(list, 1, typeChar).Bytes(), "42");
    Desc item;
    EXPECT_EQ(AEGetNthDesc(&list, 1, typeFSS, nullptr, &item), errAECoercionFail);
    EXPECT_TRUE(item.IsNull());
    DescType type = 0;
    Size size = 0;
    char text[4] = {};
    EXPECT_EQ(AEGetNthPtr(&list, 1, typeChar, nullptr, &type, text, 4, &size), noErr);
    EXPECT_EQ(type, DescType(typeChar));
    EXPECT_EQ(size, 2);
    EXPECT_STREQ(text, "42");
}

TEST(List, HoldsNullAndEmptyItemsAndLists) {
    Desc list = List();
    const Desc null, empty('ccnt', ""), inner = Longs({1, 2});
    EXPECT_EQ(AEPutDesc(&list, 0, &null), noErr);
    EXPECT_EQ(AEPutDesc(&list, 0, &empty), noErr);
    EXPECT_EQ(AEPutDesc(&list, 0, &inner), noErr);
    EXPECT_TRUE(Nth(list, 1).IsNull());
    EXPECT_EQ(Nth(list, 2).Type(), DescType('ccnt'));
    EXPECT_EQ(Values(Nth(list, 3)), (Numbers{1, 2}));
}

TEST(List, CanBePutIntoItself) {
    Desc list = Longs({1, 2});
    EXPECT_EQ(AEPutDesc(&list, 0, &list), noErr);
    EXPECT_EQ(Count(list), 3);
    EXPECT_EQ(Values(Nth(list, 3)), (Numbers{1, 2}));
    EXPECT_EQ(AEPutDesc(&list, 1, &list), noErr);
    EXPECT_EQ(Count(Nth(list, 1)), 3);
}

TEST(List, NestsThirtyTwoDeepAndNoDeeper) {
    Desc outer = List();
    for (int depth = 1; depth < 32; ++depth) {
        Desc next = List();
        ASSERT_EQ(AEPutDesc(&next, 0, &outer), noErr);
        outer = std::move(next);
    }
    Desc tooDeep = List();
    EXPECT_EQ(AEPutDesc(&tooDeep, 0, &outer), paramErr);
    EXPECT_EQ(Count(tooDeep), 0);
    Desc event = Event();
    EXPECT_EQ(AEPutParamDesc(&event, keyDirectObject, &outer), paramErr);
}

TEST(List, NestsAgainOnceTheDeepItemIsGone) {
    Desc deep = List();
    for (int depth = 1; depth < 31; ++depth) {
        Desc next = List();
        ASSERT_EQ(AEPutDesc(&next, 0, &deep), noErr);
        deep = std::move(next);
    }
    Desc list = Longs({1}), outer = List();
    ASSERT_EQ(AEPutDesc(&list, 0, &deep), noErr);
    EXPECT_EQ(AEPutDesc(&outer, 0, &list), paramErr);
    ASSERT_EQ(AEDeleteItem(&list, 2), noErr);
    EXPECT_EQ(AEPutDesc(&outer, 0, &list), noErr);
}

TEST(List, WantsAContainerOfTheRightKind) {
    Desc leaf = Long(1), record = Record(), null;
    SInt32 count = 0;
    for (AEDesc* desc : {&leaf, &null}) {
        EXPECT_EQ(AECountItems(desc, &count), errAENotAEDesc);
        EXPECT_EQ(AEPutPtr(desc, 0, typeChar, "x", 1), errAENotAEDesc);
        EXPECT_EQ(AEDeleteItem(desc, 1), errAENotAEDesc);
        EXPECT_EQ(AEGetNthPtr(desc, 1, typeWildCard, nullptr, nullptr, nullptr, 0, nullptr),
                  errAENotAEDesc);
        EXPECT_EQ(AESizeOfNthItem(desc, 1, nullptr, nullptr), errAENotAEDesc);
    }
    EXPECT_EQ(AEPutPtr(&record, 0, typeChar, "x", 1), errAEWrongDataType);
    EXPECT_EQ(AEPutPtr(nullptr, 0, typeChar, "x", 1), paramErr);
    EXPECT_EQ(AEPutPtr(&record, 0, typeChar, nullptr, 1), paramErr);
    EXPECT_EQ(AECountItems(&record, nullptr), paramErr);
}

TEST(List, GivesItemsOfRecordsAndEventsInOrderWithTheirKeywords) {
    Desc event = Event();
    ASSERT_EQ(AEPutParamPtr(&event, 'zzzz', typeChar, "z", 1), noErr);
    ASSERT_EQ(AEPutParamPtr(&event, 'aaaa', typeChar, "a", 1), noErr);
    AEKeyword keyword = 0;
    Desc item;
    EXPECT_EQ(Count(event), 2);
    EXPECT_EQ(AEGetNthDesc(&event, 1, typeWildCard, &keyword, &item), noErr);
    EXPECT_EQ(keyword, AEKeyword('zzzz'));
    EXPECT_EQ(AEGetNthDesc(&event, 2, typeWildCard, &keyword, item.Out()), noErr);
    EXPECT_EQ(keyword, AEKeyword('aaaa'));
    EXPECT_EQ(AEDeleteItem(&event, 1), noErr);
    EXPECT_EQ(Param(event, 'aaaa').Bytes(), "a");
    EXPECT_EQ(Count(event), 1);
}

TEST(List, FactoredByTypeRefusesOtherTypes) {
    const DescType type = typeFSS;
    Desc list;
    ASSERT_EQ(AECreateList(&type, kAEDescListFactorType, false, &list), noErr);
    EXPECT_EQ(AEPutPtr(&list, 0, typeFSS, "any size", 8), noErr);
    EXPECT_EQ(AEPutPtr(&list, 0, typeChar, "x", 1), errAEWrongDataType);
    EXPECT_EQ(Count(list), 1);
}

TEST(List, FactoredByTypeSizeAndBeginningRefusesOthers) {
    struct {
        DescType type = typeChar;
        Size size = 4;
        char beginning[2] = {'a', 'b'};
    } factoring;
    Desc list, bySize;
    ASSERT_EQ(AECreateList(&factoring, 10, false, &list), noErr);
    ASSERT_EQ(AECreateList(&factoring, kAEDescListFactorTypeAndSize, false, &bySize), noErr);
    EXPECT_EQ(AEPutPtr(&list, 0, typeChar, "abcd", 4), noErr);
    EXPECT_EQ(AEPutPtr(&list, 0, typeChar, "xbcd", 4), errAEWrongDataType);
    EXPECT_EQ(AEPutPtr(&bySize, 0, typeChar, "xbcd", 4), noErr);
    EXPECT_EQ(AEPutPtr(&bySize, 0, typeChar, "abc", 3), errAEWrongDataType);
    EXPECT_EQ(Nth(list, 1).Bytes(), "abcd");
}

TEST(List, RefusesImpossibleFactoring) {
    const DescType type = typeFSS;
    Desc list;
    EXPECT_EQ(AECreateList(nullptr, 4, false, &list), paramErr);
    EXPECT_EQ(AECreateList(&type, 3, false, &list), paramErr);
    EXPECT_EQ(AECreateList(&type, -1, false, &list), paramErr);
    EXPECT_EQ(AECreateList(&type, 4, true, &list), paramErr);
    EXPECT_EQ(AECreateList(nullptr, 0, false, nullptr), paramErr);
    EXPECT_TRUE(list.IsNull());
}

TEST(Array, OfPackedDataHasNoGapsAndOfDataBeginsEvenly) {
    Desc list = List();
    const char packed[] = "abcdef";
    ASSERT_EQ(AEPutArray(&list, kAEPackedArray, reinterpret_cast<const AEArrayData*>(packed),
                         typeChar, 3, 2),
              noErr);
    EXPECT_EQ(Nth(list, 1).Bytes(), "abc");
    EXPECT_EQ(Nth(list, 2).Bytes(), "def");
    alignas(AEArrayData) char even[8] = "-------";
    DescType type = 0;
    Size size = 0;
    SInt32 count = 0;
    EXPECT_EQ(AEGetArray(&list, kAEDataArray, reinterpret_cast<AEArrayData*>(even), 7, &type, &size,
                         &count),
              noErr);
    EXPECT_STREQ(even, "abc-def");
    EXPECT_EQ(type, DescType(typeChar));
    EXPECT_EQ(size, 3);
    EXPECT_EQ(count, 2);
    ASSERT_EQ(AEPutArray(&list, kAEDataArray, reinterpret_cast<AEArrayData*>(even), typeChar, 3, 2),
              noErr);
    EXPECT_EQ(Nth(list, 2).Bytes(), "def");
}

TEST(Array, GivesOnlyWholeElements) {
    const Desc list = Longs({1, 2, 3});
    alignas(AEArrayData) char buffer[12] = {};
    SInt32 count = 0;
    EXPECT_EQ(AEGetArray(&list, kAEPackedArray, reinterpret_cast<AEArrayData*>(buffer), 11, nullptr,
                         nullptr, &count),
              noErr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(std::string(buffer, 12), Big(SInt32(1)) + Big(SInt32(2)) + std::string(4, '\0'));
}

TEST(Array, RefusesItemsThatAreNotAlike) {
    Desc list = Longs({1});
    ASSERT_EQ(AEPutPtr(&list, 0, typeChar, "abcd", 4), noErr);
    alignas(AEArrayData) char buffer[64] = {};
    auto* array = reinterpret_cast<AEArrayData*>(buffer);
    for (AEArrayType type : {kAEDataArray, kAEPackedArray})
        EXPECT_EQ(AEGetArray(&list, type, array, 64, nullptr, nullptr, nullptr),
                  errAEWrongDataType);
    EXPECT_EQ(AEGetArray(&list, kAEHandleArray, array, 64, nullptr, nullptr, nullptr),
              errAEWrongDataType);
    EXPECT_EQ(AEGetArray(&list, kAEKeyDescArray, array, 64, nullptr, nullptr, nullptr),
              errAEWrongDataType);
    EXPECT_EQ(AEGetArray(&list, 5, array, 64, nullptr, nullptr, nullptr), paramErr);
}

TEST(Array, OfHandlesGivesNewHandles) {
    Desc list = List();
    ASSERT_EQ(AEPutPtr(&list, 0, typeChar, "ab", 2), noErr);
    ASSERT_EQ(AEPutPtr(&list, 0, typeChar, "cde", 3), noErr);
    Handle handles[2] = {};
    SInt32 count = 0;
    ASSERT_EQ(AEGetArray(&list, kAEHandleArray, reinterpret_cast<AEArrayData*>(handles),
                         sizeof handles, nullptr, nullptr, &count),
              noErr);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(std::string(*handles[1], size_t(GetHandleSize(handles[1]))), "cde");
    Desc copy = List();
    EXPECT_EQ(
        AEPutArray(&copy, kAEHandleArray, reinterpret_cast<AEArrayData*>(handles), typeChar, 0, 2),
        noErr);
    EXPECT_EQ(copy.Flat(), list.Flat());
    for (Handle handle : handles) DisposeHandle(handle);
}

TEST(Array, OfDescriptorsAndKeyDescriptorsRoundTrips) {
    Desc list = Longs({7}), record = Record();
    ASSERT_EQ(AEPutPtr(&list, 0, typeChar, "x", 1), noErr);
    ASSERT_EQ(AEPutParamPtr(&record, 'keyA', typeChar, "y", 1), noErr);
    AEDesc descs[2] = {};
    SInt32 count = 0;
    ASSERT_EQ(AEGetArray(&list, kAEDescArray, reinterpret_cast<AEArrayData*>(descs), sizeof descs,
                         nullptr, nullptr, &count),
              noErr);
    Desc listCopy = List();
    EXPECT_EQ(AEPutArray(&listCopy, kAEDescArray, reinterpret_cast<AEArrayData*>(descs), 0, 0, 2),
              noErr);
    EXPECT_EQ(listCopy.Flat(), list.Flat());
    AEKeyDesc pair = {};
    ASSERT_EQ(AEGetArray(&record, kAEKeyDescArray, reinterpret_cast<AEArrayData*>(&pair),
                         sizeof pair, nullptr, nullptr, &count),
              noErr);
    EXPECT_EQ(AEKeyword(pair.descKey), AEKeyword('keyA'));
    Desc recordCopy = Record();
    EXPECT_EQ(
        AEPutArray(&recordCopy, kAEKeyDescArray, reinterpret_cast<AEArrayData*>(&pair), 0, 0, 1),
        noErr);
    EXPECT_EQ(recordCopy.Flat(), record.Flat());
    for (AEDesc& desc : descs) AEDisposeDesc(&desc);
    AEDisposeDesc(&pair.descContent);
}

TEST(Array, PutReplacesEverythingOrNothing) {
    const DescType type = typeSInt32;
    Desc list;
    ASSERT_EQ(AECreateList(&type, kAEDescListFactorType, false, &list), noErr);
    const std::string two = Big(SInt32(5)) + Big(SInt32(6));
    const auto* array = reinterpret_cast<const AEArrayData*>(two.data());
    ASSERT_EQ(AEPutArray(&list, kAEPackedArray, array, typeSInt32, 4, 2), noErr);
    EXPECT_EQ(AEPutArray(&list, kAEPackedArray, array, typeChar, 4, 1), errAEWrongDataType);
    EXPECT_EQ(Values(list), (Numbers{5, 6}));
    EXPECT_EQ(AEPutArray(&list, kAEPackedArray, nullptr, typeSInt32, 4, 0), noErr);
    EXPECT_EQ(Count(list), 0);
    EXPECT_EQ(AEPutArray(&list, kAEPackedArray, nullptr, typeSInt32, 4, 1), paramErr);
    EXPECT_EQ(AEPutArray(&list, kAEKeyDescArray, array, typeSInt32, 4, 1), errAEWrongDataType);
    Desc leaf = Long(1);
    EXPECT_EQ(AEPutArray(&leaf, kAEPackedArray, array, typeSInt32, 4, 1), errAENotAEDesc);
}
