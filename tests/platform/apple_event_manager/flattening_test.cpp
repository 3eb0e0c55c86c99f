// The flattened form: what survives, and that no other bytes are taken for one.
#include <cstring>

#include "apple_event_manager/internal.h"
#include "platform/apple_event_manager/Desc.h"

namespace {

Desc Unflattened(const std::string& inBytes) {
    Desc desc;
    EXPECT_EQ(AEUnflattenDesc(inBytes.data(), &desc), noErr);
    return desc;
}

carbon::Buffer BufferOf(std::string_view inBytes) {
    return carbon::Buffer({reinterpret_cast<const UInt8*>(inBytes.data()), inBytes.size()});
}

OSStatus FromBytes(std::string_view inBytes, Desc& outDesc) {
    return carbon::DescFromBytes(BufferOf(inBytes), outDesc.Out());
}

Desc FullEvent() {
    Desc event = Event();
    const Desc list = Longs({1, 2, 3}), null;
    Desc record = Record();
    EXPECT_EQ(AEPutParamDesc(&record, 'list', &list), noErr);
    EXPECT_EQ(AEPutParamDesc(&event, keyDirectObject, &record), noErr);
    EXPECT_EQ(AEPutParamDesc(&event, 'null', &null), noErr);
    EXPECT_EQ(AEPutParamPtr(&event, 'odd ', typeChar, "abc", 3), noErr);
    EXPECT_EQ(AEPutAttributePtr(&event, keyTimeoutAttr, typeSInt32, "\0\0\2\x58", 4), noErr);
    return event;
}

// "AEd", version 1; type, kind, size; content with padding.
std::string Form(std::string_view inType, char inKind, std::string_view inContent) {
    std::string form = "AEd\1";
    form += inType;
    form += inKind;
    form += std::string(3, '\0') + Big(UInt32(inContent.size()));
    form += inContent;
    return form + std::string((4 - inContent.size() % 4) % 4, '\0');
}
std::string Item(std::string_view inType, char inKind, std::string_view inContent) {
    return Form(inType, inKind, inContent).substr(4);
}

}  // namespace

TEST(Flattening, HasTheseBytesOnEveryMachine) {
    EXPECT_EQ(Text("abc").Flat(), Form("TEXT", 0, "abc"));
    EXPECT_EQ(Longs({1}).Flat(), Form("list", 1, Big(UInt32(1)) + Item("long", 0, Big(SInt32(1)))));
    Desc record = Record();
    ASSERT_EQ(AEPutParamPtr(&record, 'keyA', typeTrue, nullptr, 0), noErr);
    EXPECT_EQ(record.Flat(), Form("reco", 2, Big(UInt32(1)) + "keyA" + Item("true", 0, "")));
    EXPECT_EQ(Desc().Flat(), Form("null", 0, ""));
}

TEST(Flattening, OfAnEventPutsParametersBeforeAttributes) {
    Desc event;
    ASSERT_EQ(AECreateAppleEvent('core', 'getd', nullptr, 7, 8, &event), noErr);
    ASSERT_EQ(AEPutParamPtr(&event, keyDirectObject, typeChar, "x", 1), noErr);
    const std::string parameters = "----" + Item("TEXT", 0, "x");
    const std::string attributes = "evcl" + Item("type", 0, "core") + "evid" +
                                   Item("type", 0, "getd") + "addr" + Item("null", 0, "") + "rtid" +
                                   Item("shor", 0, Big(SInt16(7))) + "tran" +
                                   Item("long", 0, Big(SInt32(8)));
    EXPECT_EQ(event.Flat(), Form("aevt", 3,
                                 Big(UInt32(1)) + Big(UInt32(parameters.size())) + Big(UInt32(5)) +
                                     parameters + attributes));
}

TEST(Flattening, BringsBackWholeEventsWithTheirAttributes) {
    const Desc event = FullEvent(), copy = Unflattened(event.Flat());
    EXPECT_EQ(copy.Flat(), event.Flat());
    EXPECT_EQ(copy.Type(), DescType(typeAppleEvent));
    Desc timeout;
    EXPECT_EQ(AEGetAttributeDesc(&copy, keyTimeoutAttr, typeSInt32, &timeout), noErr);
    EXPECT_EQ(timeout.Bytes(), Big(SInt32(600)));
    EXPECT_TRUE(Param(copy, 'null').IsNull());
    EXPECT_EQ(Count(Param(Param(copy, keyDirectObject), 'list')), 3);
}

TEST(Flattening, BringsBackNullEmptyAndRetypedOnes) {
    EXPECT_TRUE(Unflattened(Desc().Flat()).IsNull());
    EXPECT_EQ(Unflattened(Desc('ccnt', "").Flat()).Type(), DescType('ccnt'));
    Desc record = Record();
    (&record)->descriptorType = 'obj ';
    const Desc copy = Unflattened(record.Flat());
    EXPECT_EQ(copy.Type(), DescType('obj '));
    EXPECT_TRUE(AECheckIsRecord(&copy));
}

TEST(Flattening, MeasuresWithoutABufferAndWritesNothingIntoASmallOne) {
    const Desc desc = Text("abcdef");
    const Size size = AESizeOfFlattenedDesc(&desc);
    Size actual = 0;
    EXPECT_EQ(AEFlattenDesc(&desc, nullptr, 0, &actual), noErr);
    EXPECT_EQ(actual, size);
    std::string buffer(size_t(size), '-');
    EXPECT_EQ(AEFlattenDesc(&desc, buffer.data(), size - 1, &actual), errAEBufferTooSmall);
    EXPECT_EQ(buffer, std::string(size_t(size), '-'));
    EXPECT_EQ(AEFlattenDesc(&desc, buffer.data(), size, nullptr), noErr);
    EXPECT_EQ(buffer, desc.Flat());
    EXPECT_EQ(AEFlattenDesc(nullptr, buffer.data(), size, nullptr), paramErr);
    EXPECT_EQ(AESizeOfFlattenedDesc(nullptr), 0);
}

TEST(Flattening, RefusesForeignBytes) {
    Desc desc = Text("x");
    EXPECT_EQ(AEUnflattenDesc("something else entirely", desc.Out()), paramErr);
    EXPECT_TRUE(desc.IsNull());
    EXPECT_EQ(AEUnflattenDesc(nullptr, &desc), paramErr);
    std::string nextVersion = Text("abc").Flat();
    nextVersion[3] = 2;
    EXPECT_EQ(AEUnflattenDesc(nextVersion.data(), &desc), paramErr);
    const std::string huge = "AEd\1TEXT" + std::string(4, '\0') + "\xFF\xFF\xFF\xFF";
    EXPECT_EQ(AEUnflattenDesc(huge.data(), &desc), paramErr);
}

TEST(Flattening, RefusesEveryTruncationAndEveryExtension) {
    const std::string whole = FullEvent().Flat();
    Desc desc;
    for (size_t size = 0; size < whole.size(); ++size)
        ASSERT_EQ(FromBytes(std::string_view(whole).substr(0, size), desc), errAECorruptData)
            << size;
    EXPECT_EQ(FromBytes(whole + std::string(4, '\0'), desc), errAECorruptData);
    EXPECT_TRUE(desc.IsNull());
    EXPECT_EQ(FromBytes(whole, desc), noErr);
}

TEST(Flattening, SurvivesEveryChangedByte) {
    const std::string whole = FullEvent().Flat();
    for (size_t i = 0; i < whole.size(); ++i) {
        for (const char change : {'\1', '\x80', '\xFF'}) {
            std::string bytes = whole;
            bytes[i] = char(bytes[i] ^ change);
            Desc desc;
            if (FromBytes(bytes, desc) == noErr)
                EXPECT_EQ(desc.Flat(), bytes);
            else
                EXPECT_TRUE(desc.IsNull());
        }
    }
}

TEST(Flattening, RefusesCountsKindsAndPaddingThatAreWrong) {
    const std::string one = Item("long", 0, Big(SInt32(1)));
    Desc desc;
    EXPECT_EQ(FromBytes(Form("list", 1, Big(UInt32(2)) + one), desc), errAECorruptData);
    EXPECT_EQ(FromBytes(Form("list", 1, Big(UInt32(0)) + one), desc), errAECorruptData);
    EXPECT_EQ(FromBytes(Form("list", 1, Big(0xFFFFFFFFu) + one), desc), errAECorruptData);
    EXPECT_EQ(FromBytes(Form("list", 1, ""), desc), errAECorruptData);
    EXPECT_EQ(FromBytes(Form("list", 4, Big(UInt32(0))), desc), errAECorruptData);
    EXPECT_EQ(FromBytes(Form("aevt", 3, Big(UInt32(0))), desc), errAECorruptData);
    const std::string beyond = Big(UInt32(0)) + Big(UInt32(4)) + Big(UInt32(0));
    EXPECT_EQ(FromBytes(Form("aevt", 3, beyond), desc), errAECorruptData);
    std::string padded = Form("TEXT", 0, "abc");
    padded.back() = 'x';
    EXPECT_EQ(FromBytes(padded, desc), errAECorruptData);
    std::string reserved = Form("TEXT", 0, "abc");
    reserved[10] = 1;
    EXPECT_EQ(FromBytes(reserved, desc), errAECorruptData);
}

TEST(Flattening, TakesThirtyTwoLevelsAndRefusesMore) {
    std::string item = Item("list", 1, Big(UInt32(0)));
    for (int depth = 1; depth < 32; ++depth) item = Item("list", 1, Big(UInt32(1)) + item);
    Desc desc;
    EXPECT_EQ(FromBytes("AEd\1" + item, desc), noErr);
    EXPECT_EQ(FromBytes(Form("list", 1, Big(UInt32(1)) + item), desc), errAECorruptData);
    for (int depth = 0; depth < 500; ++depth) item = Item("list", 1, Big(UInt32(1)) + item);
    EXPECT_EQ(FromBytes("AEd\1" + item, desc), errAECorruptData);
}

TEST(Flattening, AdoptsTheBufferItIsGiven) {
    carbon::Buffer bytes = BufferOf(FullEvent().Flat());
    const UInt8* place = bytes.Data();
    Desc desc;
    ASSERT_EQ(carbon::DescFromBytes(std::move(bytes), &desc), noErr);
    EXPECT_EQ(carbon::EventBytes(desc).data(), place);
}
