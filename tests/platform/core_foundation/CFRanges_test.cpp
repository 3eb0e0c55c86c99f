// Ranges of arrays: sorting, searching, replacing; what dictionaries count; the null object.
#include <algorithm>
#include <random>

#include "CFSupport.h"

namespace {

const void* Number(SInt64 inNumber) {
    return reinterpret_cast<const void*>(inNumber);
}

Ref<CFMutableArrayRef> Numbers(const std::vector<int>& inNumbers) {
    Ref<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, nullptr));
    for (const int number : inNumbers) CFArrayAppendValue(array, Number(number));
    return array;
}

std::vector<int> NumbersOf(CFArrayRef inArray) {
    std::vector<int> numbers;
    for (CFIndex i = 0; i < CFArrayGetCount(inArray); ++i) {
        numbers.push_back(int(reinterpret_cast<SInt64>(CFArrayGetValueAtIndex(inArray, i))));
    }
    return numbers;
}

CFRange All(CFArrayRef inArray) {
    return CFRangeMake(0, CFArrayGetCount(inArray));
}

// By tens only, so that many values are equal.
CFComparisonResult CompareTens(const void* inOne, const void* inOther, void* ioCalls) {
    if (ioCalls) ++*static_cast<int*>(ioCalls);
    const SInt64 one = reinterpret_cast<SInt64>(inOne) / 10;
    const SInt64 other = reinterpret_cast<SInt64>(inOther) / 10;
    return (one > other) - (one < other);
}

using Vector = std::vector<int>;

TEST(CFArraySortValues, KeepsEqualValuesInTheirOrder) {
    std::mt19937 random(1);
    Vector numbers;
    for (int i = 0; i < 1000; ++i) numbers.push_back(int(random() % 300));
    const auto array = Numbers(numbers);
    int calls = 0;
    CFArraySortValues(array, CFRangeMake(100, 800), CompareTens, &calls);
    std::stable_sort(numbers.begin() + 100, numbers.begin() + 900,
                     [](int one, int other) { return one / 10 < other / 10; });
    EXPECT_EQ(NumbersOf(array), numbers);
    EXPECT_GT(calls, 800);
}

TEST(CFArraySortValues, SurvivesAComparatorThatContradictsItself) {
    const auto array = Numbers(Vector(500, 7));
    std::mt19937 random(2);
    CFArraySortValues(
        array, CFRangeMake(-3, 10000),
        [](const void*, const void*, void* ioRandom) {
            return CFComparisonResult((*static_cast<std::mt19937*>(ioRandom))() % 3) - 1;
        },
        &random);
    EXPECT_EQ(NumbersOf(array), Vector(500, 7));
}

TEST(CFArrayBSearchValues, FindsThePlaceOfAValue) {
    const auto array = Numbers({99, 10, 20, 30, 40, 0});
    const auto place = [&](SInt64 inNumber) {
        return CFArrayBSearchValues(array, CFRangeMake(1, 4), Number(inNumber), CompareTens,
                                    nullptr);
    };
    EXPECT_EQ(place(20), 2);
    EXPECT_EQ(place(5), 1);
    EXPECT_EQ(place(99), 5);
}

TEST(CFArray, CountsAndFindsTheLastInARange) {
    const auto array = Numbers({1, 2, 1, 3, 1});
    EXPECT_EQ(CFArrayGetCountOfValue(array, All(array), Number(1)), 3);
    EXPECT_EQ(CFArrayGetCountOfValue(array, CFRangeMake(1, 3), Number(1)), 1);
    EXPECT_EQ(CFArrayGetLastIndexOfValue(array, All(array), Number(1)), 4);
    EXPECT_EQ(CFArrayGetLastIndexOfValue(array, CFRangeMake(0, 4), Number(1)), 2);
    EXPECT_EQ(CFArrayGetLastIndexOfValue(array, All(array), Number(9)), kCFNotFound);
}

TEST(CFArray, ExchangesAndAppendsInsideItsBoundsOnly) {
    const auto array = Numbers({1, 2, 3});
    CFArrayExchangeValuesAtIndices(array, 0, 2);
    CFArrayExchangeValuesAtIndices(array, 0, 3);
    CFArrayExchangeValuesAtIndices(array, -1, 0);
    EXPECT_EQ(NumbersOf(array), (Vector{3, 2, 1}));
    CFArrayAppendArray(array, array, CFRangeMake(1, 100));
    EXPECT_EQ(NumbersOf(array), (Vector{3, 2, 1, 2, 1}));
}

TEST(CFArrayReplaceValues, KeepsValuesThatLeaveAndComeBack) {
    const Ref<CFStringRef> text = Str("text");
    const Ref<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(array, text);
    EXPECT_EQ(CFGetRetainCount(text), 2);
    const void* values[] = {text, text, text};
    CFArrayReplaceValues(array, CFRangeMake(0, 1), values, 3);
    EXPECT_EQ(CFGetRetainCount(text), 4);
    CFArrayReplaceValues(array, CFRangeMake(1, 50), nullptr, 0);
    EXPECT_EQ(CFGetRetainCount(text), 2);
    CFArrayReplaceValues(array, CFRangeMake(0, 1), values, -1);
    EXPECT_EQ(CFArrayGetCount(array), 1);
}

TEST(CFArray, ThatIsImmutableIsLeftAlone) {
    const Ref<CFArrayRef> array(CFArrayCreateCopy(nullptr, Numbers({2, 1})));
    auto* forced = const_cast<CFMutableArrayRef>(static_cast<CFArrayRef>(array));
    CFArraySortValues(forced, All(array), CompareTens, nullptr);
    CFArrayExchangeValuesAtIndices(forced, 0, 1);
    CFArrayAppendArray(forced, array, All(array));
    EXPECT_EQ(NumbersOf(array), (Vector{2, 1}));
}

TEST(CFDictionary, CountsKeysAndValues) {
    const Ref<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    CFDictionarySetValue(dictionary, Str("one"), Str("x"));
    CFDictionarySetValue(dictionary, Str("two"), Str("x"));
    EXPECT_EQ(CFDictionaryGetCountOfKey(dictionary, Str("one")), 1);
    EXPECT_EQ(CFDictionaryGetCountOfKey(dictionary, Str("three")), 0);
    EXPECT_EQ(CFDictionaryGetCountOfValue(dictionary, Str("x")), 2);
    EXPECT_TRUE(CFDictionaryContainsValue(dictionary, Str("x")));
    EXPECT_FALSE(CFDictionaryContainsValue(dictionary, Str("y")));
}

TEST(CFNull, IsOneImmortalObject) {
    EXPECT_EQ(CFGetTypeID(kCFNull), CFNullGetTypeID());
    EXPECT_EQ(CFGetRetainCount(kCFNull), 0x7FFFFFFF);
    EXPECT_EQ(TextOf(CFCopyDescription(kCFNull)), "<null>");
    EXPECT_TRUE(CFEqual(kCFNull, kCFNull));
}

TEST(CFShow, WritesEveryKindToStandardError) {
    const auto word = Str("café");
    const CFTypeRef values[] = {kCFNull, word, kCFBooleanTrue, CFLocaleGetSystem()};
    const Ref<CFArrayRef> array(
        CFArrayCreate(nullptr, const_cast<const void**>(values), 4, &kCFTypeArrayCallBacks));
    testing::internal::CaptureStderr();
    CFShow(array);
    CFShow(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "(<null>, caf\xC3\xA9, true, <CFLocale >)\n(null)\n");
}

}  // namespace
