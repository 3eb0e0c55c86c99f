// Pascal strings as objects: storage, editing, searching, comparing.
#include "vantor/strings/LString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <type_traits>

#include "support/PascalString.h"

namespace {

static_assert(std::is_abstract_v<LString> && std::has_virtual_destructor_v<LString>);
static_assert(sizeof(LStringRef) == sizeof(LString));

// The fields in their order, as a derived class of another library sees them.
struct Fields : public LStringRef {
    using LStringRef::LStringRef;
    static bool AreInOrder() {
        const auto text = &Fields::mStringPtr;
        const auto function = &Fields::mCompareFunc;
        const auto capacity = &Fields::mCapacity;
        Str255 storage = {};
        Fields fields(256, storage);
        return reinterpret_cast<char*>(&(fields.*text)) <
                   reinterpret_cast<char*>(&(fields.*function)) &&
               reinterpret_cast<char*>(&(fields.*function)) <
                   reinterpret_cast<char*>(&(fields.*capacity));
    }
};

std::string Letters(size_t inCount) {
    return std::string(inCount, 'a');
}

SInt16 AllEqual(const void*, const void*, UInt8, UInt8) {
    return 0;
}

TEST(LString, HasItsFieldsInOrder) {
    EXPECT_TRUE(Fields::AreInOrder());
}

TEST(LString, TruncatesWhatIsAppendedAtItsCapacity) {
    LStr255 string(PString(Letters(254)));
    string.Append("xyz", 3);
    EXPECT_EQ(string.Length(), 255);
    EXPECT_EQ(string[255], 'x');
    string.Append('y');
    string += PString("more");
    string += LStr255("more");
    EXPECT_EQ(TextOf(string), Letters(254) + "x");
}

TEST(LString, NeverWritesBeyondTheCapacityOfItsStorage) {
    unsigned char storage[12];
    std::memset(storage, '#', sizeof storage);
    LStringRef string(8, storage);
    string.Assign("abcdefghij", 10);
    EXPECT_EQ(TextOf(string), "abcdefg");
    string.Insert("XYZ", 3, 2);
    EXPECT_EQ(TextOf(string), "abcdefg");
    string.Remove(1, 2);
    string.Insert("XYZ", 3, 2);
    EXPECT_EQ(TextOf(string), "cXYdefg");
    string.Assign(SInt32{-123456789});
    EXPECT_EQ(TextOf(string), "-123456");
    string.Append("z", 1);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(storage) + 8, 4), "####");
}

TEST(LString, KeepsStoringOneCharacterWhateverTheCapacity) {
    unsigned char storage[2] = {0, 0};
    LStringRef(1, storage).Assign('x');
    EXPECT_EQ(TextOf(storage), "x");
}

TEST(LString, AssignsFromEverySource) {
    EXPECT_EQ(TextOf(LStr255()), "");
    EXPECT_EQ(TextOf(LStr255(ConstStringPtr{nullptr})), "");
    EXPECT_EQ(TextOf(LStr255(PString("abc"))), "abc");
    EXPECT_EQ(TextOf(LStr255('x')), "x");
    EXPECT_EQ(TextOf(LStr255(static_cast<unsigned char>(0xCA))), "\xCA");
    EXPECT_EQ(TextOf(LStr255("C string")), "C string");
    EXPECT_EQ(TextOf(LStr255(Letters(300).c_str())), Letters(255));
    EXPECT_EQ(TextOf(LStr255("abcdef", 3)), "abc");
    EXPECT_EQ(TextOf(LStr255(SInt32{-17})), "-17");
    EXPECT_EQ(TextOf(LStr255(SInt16{300})), "300");
    EXPECT_EQ(TextOf(LStr255(UInt32{'Fv8k'})), "Fv8k");
    LStr255 string;
    string = "next";
    const LStr255& same = string;
    string = same;
    EXPECT_EQ(TextOf(string), "next");
}

TEST(LString, AssignsTheBytesOfAHandle) {
    const Handle handle = NewHandle(300);
    std::memset(*handle, 'h', 300);
    EXPECT_EQ(TextOf(LStr255(handle)), std::string(255, 'h'));
    SetHandleSize(handle, 2);
    EXPECT_EQ(TextOf(LStr255(handle)), "hh");
    EXPECT_EQ(TextOf(LStr255(Handle{nullptr})), "");
    DisposeHandle(handle);
}

TEST(LString, KeepsTheLengthByteInASubstringFromZero) {
    const LStr255 source("abcdef");
    LStr255 string;
    EXPECT_EQ(TextOf(string.Assign(source, 2, 3)), "bcd");
    EXPECT_EQ(TextOf(string.Assign(source, 5, 200)), "ef");
    EXPECT_EQ(TextOf(string.Assign(source, 7, 1)), "");
    EXPECT_EQ(TextOf(string.Assign(source, 2, 0)), "");
    EXPECT_EQ(TextOf(string.Assign(source, 0, 3)),
              "\x06"
              "ab");
    EXPECT_EQ(TextOf(source(0, 3)), "abc");
    EXPECT_EQ(TextOf(source(4, 99)), "def");
    EXPECT_EQ(TextOf(source(7, 1)), "");
}

TEST(LString, AssignsAPartOfItself) {
    LStr255 string("abcdef");
    EXPECT_EQ(TextOf(string.Assign(string, 3, 3)), "cde");
    EXPECT_EQ(TextOf(string.Append(string)), "cdecde");
    EXPECT_EQ(TextOf(string.Insert(string.TextPtr(), 6, 2)), "ccdecdedecde");
}

TEST(LString, InsertsAtTheNearestPlace) {
    EXPECT_EQ(TextOf(LStr255("cd").Insert("ab", 2, 0)), "abcd");
    EXPECT_EQ(TextOf(LStr255("cd").Insert("ab", 2, 9)), "cdab");
    EXPECT_EQ(TextOf(LStr255("cd").Insert("ab", 2, 2)), "cabd");
    EXPECT_EQ(TextOf(LStr255("").Insert("ab", 2, 1)), "ab");
    EXPECT_EQ(TextOf(LStr255(PString(Letters(254))).Insert("xy", 2, 1)), "x" + Letters(254));
}

TEST(LString, RemovesNoMoreThanThereIs) {
    EXPECT_EQ(TextOf(LStr255("abcdef").Remove(3, 200)), "ab");
    EXPECT_EQ(TextOf(LStr255("abcdef").Remove(7, 1)), "abcdef");
    EXPECT_EQ(TextOf(LStr255("abcdef").Remove(0, 2)), "cdef");
    EXPECT_EQ(TextOf(LStr255("abcdef").Remove(2, 0)), "abcdef");
    EXPECT_EQ(TextOf(LStr255("").Remove(0, 5)), "");
    EXPECT_EQ(TextOf(LStr255("abcdef").Replace(2, 3, "XY", 2)), "aXYef");
}

TEST(LString, AgreesWithANaiveModelOverRandomEdits) {
    std::mt19937 random(1);
    const auto pick = [&](UInt32 inBound) { return UInt8(random() % inBound); };
    LStr255 string;
    std::string model;
    for (int i = 0; i < 100000; ++i) {
        const std::string text(pick(40), char('a' + pick(26)));
        const UInt8 at = pick(256), count = pick(60);
        if (pick(2) == 0) {
            string.Insert(text.data(), UInt8(text.size()), at);
            const size_t place = std::min<size_t>(at > 0 ? at - 1u : 0u, model.size());
            model.insert(place, text.substr(0, 255 - model.size()));
        } else {
            string.Remove(at, count);
            if (at <= model.size() && !model.empty()) model.erase(at > 0 ? at - 1u : 0u, count);
        }
        ASSERT_EQ(TextOf(string), model);
    }
}

TEST(LString, SumsAreCutAtTheLongestString) {
    const LStr255 left("left ");
    unsigned char own[] = {2, 'm', 'y'};
    EXPECT_EQ(TextOf(left + LStr255("right")), "left right");
    EXPECT_EQ(TextOf(left + PString("right")), "left right");
    EXPECT_EQ(TextOf(left + own), "left my");
    EXPECT_EQ(TextOf(left + 'x'), "left x");
    EXPECT_EQ(TextOf(ConstStringPtr{own} + left), "myleft ");
    EXPECT_EQ(TextOf(own + left), "myleft ");
    EXPECT_EQ(TextOf('x' + left), "xleft ");
    EXPECT_EQ((LStr255(PString(Letters(200))) + LStr255(PString(Letters(200)))).Length(), 255);
}

TEST(LString, FindsFromAPositionOn) {
    const LStr255 string("abcb");
    EXPECT_EQ(string.Find("b", 1, 1), 2);
    EXPECT_EQ(string.Find("b", 1, 3), 4);
    EXPECT_EQ(string.Find("b", 1, 5), 0);
    EXPECT_EQ(string.Find("b", 1, 0), 2);
    EXPECT_EQ(string.Find("cba", 3, 1), 0);
    EXPECT_EQ(string.Find("abcba", 5, 1), 0);
    EXPECT_EQ(string.ReverseFind("b", 1, 255), 4);
    EXPECT_EQ(string.ReverseFind("b", 1, 3), 2);
    EXPECT_EQ(string.ReverseFind("b", 1, 1), 0);
    EXPECT_EQ(string.ReverseFind("abcba", 5, 255), 0);
}

TEST(LString, TellsWhatItBeginsAndEndsWith) {
    const LStr255 string("abc");
    EXPECT_TRUE(string.BeginsWith("ab", 2));
    EXPECT_FALSE(string.BeginsWith("abcd", 4));
    EXPECT_TRUE(string.EndsWith("bc", 2));
    EXPECT_TRUE(string.EndsWith("abc", 3));
    EXPECT_FALSE(string.EndsWith("ab", 2));
    EXPECT_FALSE(string.EndsWith("xabc", 4));
}

TEST(LString, FindsItselfInBuffersOfAnyLength) {
    const LStr255 string("ab");
    const std::string buffer = std::string(1000, '-') + "ab--ab";
    const auto length = UInt32(buffer.size());
    EXPECT_EQ(string.FindWithin(buffer.data(), length, 1), 1001u);
    EXPECT_EQ(string.FindWithin(buffer.data(), length, 1002), 1005u);
    EXPECT_EQ(string.FindWithin(buffer.data(), length, 1006), 0u);
    EXPECT_EQ(string.FindWithin(buffer.data(), length, 0), 0u);
    EXPECT_EQ(string.FindWithin(buffer.data(), 1, 1), 0u);
    EXPECT_EQ(string.ReverseFindWithin(buffer.data(), length, length), 1005u);
    EXPECT_EQ(string.ReverseFindWithin(buffer.data(), length, 1004), 1001u);
    EXPECT_EQ(string.ReverseFindWithin(buffer.data(), length, 1000), 0u);
    EXPECT_EQ(string.ReverseFindWithin(buffer.data(), length, 0), 0u);
}

TEST(LString, SearchesWithTheFunctionThatItWasGiven) {
    EXPECT_EQ(LStr255("ABC").Find("b", 1, 1), 0);
    LString::sDefaultCompareFunc = LString::CompareIgnoringCase;
    const LStr255 string("ABC");
    LString::sDefaultCompareFunc = LString::ToolboxCompareText;
    EXPECT_EQ(string.Find("b", 1, 1), 2);
    EXPECT_EQ(string.GetCompareFunc(), LString::CompareIgnoringCase);
    EXPECT_EQ(LStr255(string).GetCompareFunc(), LString::CompareIgnoringCase);
    EXPECT_EQ((string + 'x').GetCompareFunc(), LString::CompareIgnoringCase);
    EXPECT_EQ(LStr255("x").GetCompareFunc(), LString::ToolboxCompareText);
    LString::sDefaultCompareFunc = AllEqual;
    EXPECT_EQ(LStr255("abc").Find("z", 1, 2), 2);
    LString::sDefaultCompareFunc = LString::ToolboxCompareText;
}

SInt16 Compare(LString::CompareFunc inFunction, const std::string& inA, const std::string& inB) {
    return inFunction(inA.data(), inB.data(), UInt8(inA.size()), UInt8(inB.size()));
}

TEST(LString, FindsBytesAsComparingThemAtEveryPlaceDoes) {
    LString::sDefaultCompareFunc = LString::CompareBytes;
    const LStr255 bytes("abcbcABC");
    LString::sDefaultCompareFunc = LString::ToolboxCompareText;
    const LStr255 texts("abcbcABC");
    for (const std::string text : {"", "a", "bc", "BC", "abcbcABC", "abcbcABCx", "x"})
        for (UInt8 start = 0; start < 12; ++start)
            EXPECT_EQ(bytes.Find(text.data(), UInt8(text.size()), start),
                      texts.Find(text.data(), UInt8(text.size()), start))
                << text << " from " << int(start);
}

TEST(LString, ComparesBytesWithoutSigns) {
    EXPECT_EQ(Compare(LString::CompareBytes, "ab", "abc"), -1);
    EXPECT_EQ(Compare(LString::CompareBytes, "b", "abc"), 1);
    EXPECT_EQ(Compare(LString::CompareBytes, "\xFF", "a"), 1);
    EXPECT_EQ(Compare(LString::CompareBytes, "abc", "abc"), 0);
    EXPECT_EQ(Compare(LString::CompareBytes, "", ""), 0);
}

TEST(LString, ComparesTextsAsTheSystemDoes) {
    EXPECT_EQ(Compare(LString::ToolboxCompareText, "a", "B"), -1);
    EXPECT_EQ(Compare(LString::ToolboxCompareText, "a", "A"), 1);
    EXPECT_EQ(Compare(LString::CompareIgnoringCase, "a", "A"), 0);
    EXPECT_EQ(Compare(LString::CompareIgnoringCase, "\x8E", "\x83"), 0);  // e with an accent
    EXPECT_EQ(Compare(LString::CompareIgnoringCase, "a", "B"), -1);
}

TEST(LString, ConvertsToNumbersAndCodes) {
    EXPECT_EQ(static_cast<UInt32>(LStr255("TEXT")), 0x54455854u);
    EXPECT_EQ(static_cast<UInt32>(LStr255("ab")), 0x6162u);
    EXPECT_EQ(static_cast<UInt32>(LStr255("TEXTS")), 0x54455854u);
    EXPECT_EQ(static_cast<UInt32>(LStr255("")), 0u);
    EXPECT_EQ(static_cast<SInt32>(LStr255("-23")), -23);
    EXPECT_EQ(static_cast<double>(LStr255("1,234.5")), 1234.5);
    EXPECT_EQ(static_cast<long double>(LStr255("2.75")), 2.75L);
}

TEST(LString, CountsCStringsToTheLongestPascalString) {
    EXPECT_EQ(LString::CStringLength(Letters(300).c_str()), 255);
    EXPECT_EQ(LString::CStringLength(nullptr), 0);
    EXPECT_EQ(LString::CStringLength(""), 0);
}

TEST(LString, CopiesAndAppendsPlainStringsToTheirSizes) {
    unsigned char string[8] = {7, '#', '#', '#', '#', '#', '#', '#'};
    LString::CopyPStr(PString("abcdef"), string, 4);
    EXPECT_EQ(TextOf(string), "abc");
    EXPECT_EQ(string[4], '#');
    LString::AppendPStr(string, PString("xyz"), 6);
    EXPECT_EQ(TextOf(string), "abcxy");
    EXPECT_EQ(string[6], '#');
    LString::CopyPStr(nullptr, string, 4);
    EXPECT_EQ(TextOf(string), "");
}

TEST(LString, TurnsStringsRoundInPlace) {
    char text[300];
    std::strcpy(text, "abc");
    EXPECT_EQ(TextOf(LString::CToPStr(text)), "abc");
    EXPECT_STREQ(LString::PToCStr(reinterpret_cast<StringPtr>(text)), "abc");
    std::strcpy(text, Letters(299).c_str());
    EXPECT_EQ(TextOf(LString::CToPStr(text)), Letters(255));
    EXPECT_EQ(LString::CToPStr(nullptr), nullptr);
    EXPECT_EQ(LString::PToCStr(nullptr), nullptr);
}

TEST(LString, KeepsReadingFourBytesWhateverTheLength) {
    Str255 string;
    LString::FourCharCodeToPStr('TEXT', string);
    EXPECT_EQ(TextOf(string), "TEXT");
    string[0] = 1;
    UInt32 code;
    LString::PStrToFourCharCode(string, code);
    EXPECT_EQ(code, UInt32{'TEXT'});
}

TEST(LStringRef, IsPutToAnotherStringByAssignment) {
    Str255 first = {1, 'a'}, second = {1, 'b'};
    LStringRef reference(256, first), other(10, second);
    reference = other;
    reference.Append('x');
    EXPECT_EQ(TextOf(first), "a");
    EXPECT_EQ(TextOf(second), "bx");
    const LStringRef copy(reference);
    EXPECT_EQ(static_cast<ConstStringPtr>(copy), second);
    reference.SetStringRef(256, first);
    reference = "text";  // not from a reference: the text
    EXPECT_EQ(TextOf(first), "text");
}

}  // namespace
