// Single descriptors: null and empty ones, copies, ranges, borrowed bytes, and the codes of misuse.
#include "platform/apple_event_manager/Desc.h"

static_assert(sizeof(AEDesc) == 4 + sizeof(void*));
static_assert(offsetof(AEDesc, dataHandle) == 4);
static_assert(sizeof(AEKeyDesc) == 8 + sizeof(void*));
static_assert(offsetof(AEKeyDesc, descContent) == 4);
static_assert(sizeof(AEArrayData) == sizeof(AEKeyDesc));
static_assert(typeSInt32 == 'long' && typeFSS == 'fss ' && typeProcessSerialNumber == 'psn ');
static_assert(keyMissedKeywordAttr == 'miss' && keyAddressAttr == 'addr');
static_assert(kAEWaitReply == 3 && kAEDontRecord == 0x1000 && kNoTimeOut == -2);
static_assert(errAECoercionFail == -1700 && errAEDescNotFound == -1701 && errAENotAEDesc == -1704);

namespace {

int gReturned = 0;

void CountReturn(const void*, Size inSize, SInt32 inRefCon) {
    EXPECT_EQ(inSize, 5);
    EXPECT_EQ(inRefCon, 77);
    ++gReturned;
}

}  // namespace

TEST(Descriptor, IsNullAfterInitializing) {
    AEDesc desc = {typeChar, reinterpret_cast<AEDataStorage>(16)};
    AEInitializeDesc(&desc);
    EXPECT_EQ(DescType(desc.descriptorType), DescType(typeNull));
    EXPECT_TRUE(desc.dataHandle == nullptr);
}

TEST(Descriptor, HasAHandleThoughItHasNoData) {
    const Desc empty('ccnt', "");
    EXPECT_TRUE((&empty)->dataHandle != nullptr);
    EXPECT_EQ(AEGetDescDataSize(&empty), 0);
}

TEST(Descriptor, IsNullWhenMadeOfTypeNullWithoutData) {
    EXPECT_TRUE(Desc(typeNull, "").IsNull());
}

TEST(Descriptor, KeepsTypeAndBytesOfAnyCode) {
    const Desc desc(typeAEList, "no list");
    EXPECT_EQ(desc.Type(), DescType(typeAEList));
    EXPECT_EQ(desc.Bytes(), "no list");
    SInt32 count = 0;
    EXPECT_EQ(AECountItems(&desc, &count), errAENotAEDesc);
}

TEST(Descriptor, RefusesImpossibleSizesAndStaysNull) {
    AEDesc desc = {typeChar, nullptr};
    EXPECT_EQ(AECreateDesc(typeChar, "abc", -1, &desc), paramErr);
    EXPECT_EQ(DescType(desc.descriptorType), DescType(typeNull));
    EXPECT_EQ(AECreateDesc(typeChar, nullptr, 3, &desc), paramErr);
    EXPECT_EQ(AECreateDesc(typeChar, "abc", 3, nullptr), paramErr);
    EXPECT_EQ(AECreateDesc(typeChar, "a", 0x7FFFFFFF, &desc), memFullErr);
    EXPECT_TRUE(desc.dataHandle == nullptr);
}

TEST(Descriptor, IsNullOnceDisposedAndDisposingAgainIsHarmless) {
    AEDesc desc = {typeNull, nullptr};
    ASSERT_EQ(AECreateDesc(typeChar, "abc", 3, &desc), noErr);
    EXPECT_EQ(AEDisposeDesc(&desc), noErr);
    EXPECT_EQ(DescType(desc.descriptorType), DescType(typeNull));
    EXPECT_TRUE(desc.dataHandle == nullptr);
    EXPECT_EQ(AEDisposeDesc(&desc), noErr);
    EXPECT_EQ(AEDisposeDesc(nullptr), noErr);
}

TEST(Descriptor, DuplicateIsIndependentOfItsSource) {
    Desc source = Text("first"), copy;
    ASSERT_EQ(AEDuplicateDesc(&source, &copy), noErr);
    ASSERT_EQ(AEReplaceDescData(typeUTF8Text, "second", 6, &source), noErr);
    EXPECT_EQ(copy.Type(), DescType(typeChar));
    EXPECT_EQ(copy.Bytes(), "first");
    EXPECT_EQ(source.Type(), DescType(typeUTF8Text));
    EXPECT_EQ(source.Bytes(), "second");
}

TEST(Descriptor, DuplicateOfNullIsNull) {
    const Desc null;
    Desc copy = Text("x");
    EXPECT_EQ(AEDuplicateDesc(&null, copy.Out()), noErr);
    EXPECT_TRUE(copy.IsNull());
    EXPECT_EQ(AEDuplicateDesc(nullptr, copy.Out()), paramErr);
}

TEST(Descriptor, GivesAsManyBytesAsFitWithoutAnError) {
    const Desc desc = Text("abcdef");
    char buffer[4] = "xyz";
    EXPECT_EQ(AEGetDescData(&desc, buffer, 3), noErr);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(AEGetDescData(&desc, nullptr, 0), noErr);
    EXPECT_EQ(AEGetDescData(&desc, nullptr, 3), paramErr);
    EXPECT_EQ(AEGetDescData(&desc, buffer, -1), paramErr);
    EXPECT_EQ(AEGetDescData(nullptr, buffer, 1), paramErr);
}

TEST(Descriptor, GivesOnlyRangesInsideTheData) {
    const Desc desc = Text("abcdef");
    char buffer[4] = "xyz";
    EXPECT_EQ(AEGetDescDataRange(&desc, buffer, 2, 3), noErr);
    EXPECT_STREQ(buffer, "cde");
    EXPECT_EQ(AEGetDescDataRange(&desc, buffer, 6, 0), noErr);
    EXPECT_EQ(AEGetDescDataRange(&desc, buffer, 4, 3), errAEBufferTooSmall);
    EXPECT_EQ(AEGetDescDataRange(&desc, buffer, -1, 2), errAEBufferTooSmall);
    EXPECT_EQ(AEGetDescDataRange(&desc, buffer, 0x7FFFFFFF, 0x7FFFFFFF), errAEBufferTooSmall);
    EXPECT_EQ(AEGetDescDataRange(&desc, nullptr, 0, 1), paramErr);
    EXPECT_STREQ(buffer, "cde");
}

TEST(Descriptor, ReplacingTheDataOfNullAndOfAListMakesALeaf) {
    Desc null;
    EXPECT_EQ(AEReplaceDescData(typeChar, "abc", 3, &null), noErr);
    EXPECT_EQ(null.Bytes(), "abc");
    Desc list = Longs({1, 2});
    EXPECT_EQ(AEReplaceDescData(typeChar, "abc", 3, &list), noErr);
    SInt32 count = 0;
    EXPECT_EQ(AECountItems(&list, &count), errAENotAEDesc);
    EXPECT_EQ(AEReplaceDescData(typeChar, nullptr, 3, &list), paramErr);
    EXPECT_EQ(list.Bytes(), "abc");
}

TEST(Descriptor, BorrowedBytesAreReadInPlaceAndReturnedOnce) {
    char lent[] = "abcde";
    gReturned = 0;
    Desc desc;
    ASSERT_EQ(AECreateDescFromExternalPtr(typeChar, lent, 5, CountReturn, 77, &desc), noErr);
    lent[0] = 'X';
    EXPECT_EQ(desc.Bytes(), "Xbcde");
    Desc copy;
    ASSERT_EQ(AEDuplicateDesc(&desc, &copy), noErr);
    EXPECT_EQ(gReturned, 0);
    desc.Out();
    EXPECT_EQ(gReturned, 1);
    EXPECT_EQ(copy.Bytes(), "Xbcde");
}

TEST(Descriptor, BorrowedBytesSurviveFlatteningAndAreReturnedThen) {
    gReturned = 0;
    Desc desc;
    ASSERT_EQ(AECreateDescFromExternalPtr(typeChar, "abcde", 5, CountReturn, 77, &desc), noErr);
    EXPECT_EQ(desc.Flat(), Text("abcde").Flat());
    desc.Out();
    EXPECT_EQ(gReturned, 1);
}

TEST(Descriptor, BorrowingNeedsNoCallback) {
    Desc desc;
    EXPECT_EQ(AECreateDescFromExternalPtr(typeChar, "abc", 3, nullptr, 0, &desc), noErr);
    EXPECT_EQ(AECreateDescFromExternalPtr(typeChar, nullptr, 3, nullptr, 0, desc.Out()), paramErr);
    EXPECT_TRUE(desc.IsNull());
}

TEST(Descriptor, IsARecordByItsItemsNotByItsType) {
    Desc record = Record();
    EXPECT_TRUE(AECheckIsRecord(&record));
    (&record)->descriptorType = 'obj ';
    EXPECT_TRUE(AECheckIsRecord(&record));
    const Desc event = Event(), list = List(), leaf(typeAERecord, "");
    EXPECT_TRUE(AECheckIsRecord(&event));
    EXPECT_FALSE(AECheckIsRecord(&list));
    EXPECT_FALSE(AECheckIsRecord(&leaf));
    EXPECT_FALSE(AECheckIsRecord(nullptr));
}

TEST(ProcedurePointer, IsThePlainFunctionAndDisposingAnythingIsHarmless) {
    EXPECT_EQ(NewAEDisposeExternalUPP(CountReturn), CountReturn);
    gReturned = 0;
    InvokeAEDisposeExternalUPP("abcde", 5, 77, CountReturn);
    EXPECT_EQ(gReturned, 1);
    DisposeAEDisposeExternalUPP(CountReturn);
    DisposeAEDisposeExternalUPP(nullptr);
}
