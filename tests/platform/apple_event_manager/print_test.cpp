// Printed descriptors: their looks, and that each can be built again as it was.
#include <algorithm>
#include <random>

#include "platform/apple_event_manager/Desc.h"

namespace {

std::string Printed(const AEDesc& inDesc) {
    Handle handle = nullptr;
    EXPECT_EQ(AEPrintDescToHandle(&inDesc, &handle), noErr);
    if (!handle) return {};
    const std::string text(*handle, size_t(GetHandleSize(handle)));
    DisposeHandle(handle);
    return text;
}

Desc Again(const std::string& inText) {
    Desc desc;
    AEBuildError error;
    EXPECT_EQ(AEBuildDesc(&desc, &error, inText.c_str()), noErr)
        << inText << ": " << error.fError << " at " << error.fErrorPos;
    return desc;
}

// Descriptors of every kind, from a seed.
class Generator {
  public:
    explicit Generator(UInt32 inSeed) : mRandom(inSeed) {}

    Desc Any(int inDepth) {
        switch (inDepth > 0 ? Below(8) : 0) {
            case 1:
                return AnyList(inDepth);
            case 2:
            case 3:
                return AnyRecord(inDepth);
            case 4:
                return AnyEvent(inDepth);
            default:
                return AnyLeaf();
        }
    }

  private:
    UInt32 Below(UInt32 inEnd) {
        return std::uniform_int_distribution<UInt32>(0, inEnd - 1)(mRandom);
    }
    std::string Bytes(size_t inSize) {
        std::string bytes(inSize, '\0');
        for (char& byte : bytes) byte = char(Below(256));
        return bytes;
    }
    std::string Characters(size_t inSize) {
        std::string text(inSize, '\0');
        for (char& c : text) c = char(' ' + Below(95));
        return text;
    }
    OSType AnyCode() {
        static constexpr OSType kCodes[] = {'----', 'obj ', 'it\'s', 'a"b ',
                                            '    ', 'want', 0,       ~0u};
        const UInt32 choice = Below(12);
        if (choice < std::size(kCodes)) return kCodes[choice];
        return choice == 11 ? OSType(mRandom()) : OSType('aaaa' + Below(20) + (Below(20) << 24));
    }
    DescType AnyType() {
        static constexpr DescType kTypes[] = {typeBoolean,
                                              typeSInt16,
                                              typeSInt32,
                                              typeUInt32,
                                              typeSInt64,
                                              typeIEEE32BitFloatingPoint,
                                              typeIEEE64BitFloatingPoint,
                                              typeExtended,
                                              typeChar,
                                              typeUTF8Text,
                                              typeUnicodeText,
                                              typeUTF16ExternalRepresentation,
                                              typePString,
                                              typeCString,
                                              typeType,
                                              typeEnumerated,
                                              typeKeyword,
                                              typeProperty,
                                              typeApplSignature,
                                              typeProcessSerialNumber,
                                              typeNull,
                                              typeTrue,
                                              typeAEList,
                                              typeAERecord,
                                              typeAppleEvent,
                                              typeAlias,
                                              typeFSS,
                                              typeFileURL,
                                              typeWildCard};
        return Below(10) == 0 ? AnyCode() : kTypes[Below(std::size(kTypes))];
    }
    Desc AnyLeaf() {
        static constexpr size_t kSizes[] = {0, 1, 2, 4, 4, 8, 8, 10, 17, 40};
        const size_t size = kSizes[Below(std::size(kSizes))];
        switch (Below(4)) {
            case 0:
                return Text(Characters(size));
            case 1:
                return Desc(AnyType(), Characters(size));
            case 2:
                return Desc(typeIEEE64BitFloatingPoint, Big(UInt64(0x3FF0 + Below(99)) << 48));
            default:
                return Desc(AnyType(), Bytes(size));
        }
    }
    Desc AnyList(int inDepth) {
        Desc list = List();
        for (UInt32 i = Below(5); i > 0; --i)
            EXPECT_EQ(AEPutDesc(&list, 0, &Any(inDepth - 1)), noErr);
        return list;
    }
    Desc AnyRecord(int inDepth) {
        Desc record = Record();
        for (UInt32 i = Below(5); i > 0; --i)
            EXPECT_EQ(AEPutParamDesc(&record, AnyCode(), &Any(inDepth - 1)), noErr);
        if (Below(2)) (&record)->descriptorType = AnyCode();
        return record;
    }
    Desc AnyEvent(int inDepth) {
        Desc event;
        EXPECT_EQ(AECreateAppleEvent(AnyCode(), AnyCode(), &AnyLeaf(), SInt16(Below(100)),
                                     SInt32(Below(9)), &event),
                  noErr);
        Desc optional = List();
        for (UInt32 i = Below(5); i > 0; --i) {
            const AEKeyword key = AnyCode();
            EXPECT_EQ(AEPutParamDesc(&event, key, &Any(inDepth - 1)), noErr);
            if (Below(2)) AEPutDesc(&optional, 0, &Code(typeKeyword, key));
        }
        if (Below(2)) AEPutAttributePtr(&event, keyTimeoutAttr, typeSInt32, "\0\0\0\7", 4);
        if (Below(2)) AEPutAttributeDesc(&event, keyOptionalKeywordAttr, &optional);
        if (Below(4) == 0) AEPutAttributeDesc(&event, 'csig', &AnyLeaf());
        return event;
    }

    std::mt19937 mRandom;
};

}  // namespace

TEST(Print, GivesWhatTenThousandDescriptorsAreBuiltOfAgain) {
    Generator generator(20261121);
    for (int i = 0; i < 10000; ++i) {
        const Desc desc = generator.Any(4);
        const std::string text = Printed(desc);
        ASSERT_EQ(Again(text).Flat(), desc.Flat()) << text;
        ASSERT_TRUE(std::all_of(text.begin(), text.end(), [](char c) {
            return c >= ' ' && c <= '~';
        })) << text;
    }
}

TEST(Print, ShowsValuesAsPeopleWriteThem) {
    EXPECT_EQ(Printed(Long(-5)), "-5");
    EXPECT_EQ(Printed(Text("a b")), "\"a b\"");
    EXPECT_EQ(Printed(Code(typeEnumerated, 'yes ')), "'yes '");
    EXPECT_EQ(Printed(Code(typeType, 'cwin')), "'type'('cwin')");
    EXPECT_EQ(Printed(Desc(typeSInt16, Big(SInt16(3)))), "'shor'(3)");
    EXPECT_EQ(Printed(Desc(typeUInt32, "\xFF\xFF\xFF\xFF")), "'magn'(4294967295)");
    EXPECT_EQ(Printed(Desc(typeSInt64, Big(SInt64(1) << 62))), "'comp'(4611686018427387904)");
    EXPECT_EQ(Printed(Desc(typeIEEE64BitFloatingPoint, Big(UInt64(0x4004000000000000)))),
              "'doub'(\"2.5\")");
    EXPECT_EQ(Printed(Desc(typeUTF8Text, "abc")), "'utf8'(\"abc\")");
    EXPECT_EQ(Printed(Desc(typeTrue, "")), "'true'()");
    EXPECT_EQ(Printed(Desc()), "'null'()");
    EXPECT_EQ(Printed(List()), "[]");
    EXPECT_EQ(Printed(Longs({1, 2})), "[ 1, 2 ]");
}

TEST(Print, WritesBytesThatHaveNoTextInHexadecimal) {
    EXPECT_EQ(Printed(Text("a\"b")), "'TEXT'($612262$)");
    EXPECT_EQ(Printed(Text("a\r")), "'TEXT'($610D$)");
    EXPECT_EQ(Printed(Text("\x8E")), "'TEXT'($8E$)");
    EXPECT_EQ(Printed(Desc(typeSInt32, "\1")), "'long'($01$)");
    EXPECT_EQ(Printed(Desc(typeBoolean, "\1")), "'bool'($01$)");
    EXPECT_EQ(Printed(Desc('it\'s', "x")), "'$69742773$'($78$)");
    const Desc notANumber(typeIEEE64BitFloatingPoint, Big(UInt64(0x7FF8000000000001)));
    EXPECT_EQ(Printed(notANumber), "'doub'($7FF8000000000001$)");
}

TEST(Print, ShowsEventsWithTheirAttributes) {
    Desc event;
    ASSERT_EQ(AEBuildAppleEvent('core', 'getd', typeApplSignature, "Fv8k", 4, 7, 0, &event, nullptr,
                                "'----':obj{want:type(prop), from:null()}, ~a:1"),
              noErr);
    EXPECT_EQ(Printed(event),
              "'core'\\'getd'{ '----':'obj '{ 'want':'type'('prop'), 'from':'null'() }, ~'a   ':1, "
              "&'addr':'sign'('Fv8k'), &'rtid':'shor'(7), &'tran':0 }");
}

TEST(Print, KeepsRecordsApartFromTheBytesOfOne) {
    EXPECT_EQ(Printed(Desc(typeAERecord, "")), "'reco'()");
    EXPECT_EQ(Printed(Record()), "{}");
    EXPECT_EQ(Printed(Desc(typeAEList, "")), "'list'()");
}

TEST(Print, RefusesNullPointers) {
    Handle handle = nullptr;
    EXPECT_EQ(AEPrintDescToHandle(nullptr, &handle), paramErr);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(AEPrintDescToHandle(&Long(1), nullptr), paramErr);
}
