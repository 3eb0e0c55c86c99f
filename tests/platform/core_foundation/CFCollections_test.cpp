// Objects in general, allocators, data, numbers, dates, arrays and dictionaries.
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include "CFSupport.h"

namespace {

template <typename T>
Ref<CFNumberRef> Number(CFNumberType inType, T inValue) {
    return Ref<CFNumberRef>(CFNumberCreate(nullptr, inType, &inValue));
}

TEST(CFRetain, CountsFromManyThreads) {
    const auto string = Str("a text of some length");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < 10000; ++j) CFRelease(CFRetain(string));
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(CFGetRetainCount(string), 1);
}

TEST(CFRetainDeathTest, StopsTheProgramForNull) {
    EXPECT_DEATH(CFRetain(nullptr), "NULL");
    EXPECT_DEATH(CFRelease(nullptr), "NULL");
}

TEST(CFType, HasANumberAndANameForEachKind) {
    EXPECT_EQ(CFGetTypeID(CFSTR("")), CFStringGetTypeID());
    EXPECT_NE(CFStringGetTypeID(), CFNumberGetTypeID());
    EXPECT_EQ(TextOf(CFCopyTypeIDDescription(CFArrayGetTypeID())), "CFArray");
    EXPECT_FALSE(CFCopyTypeIDDescription(9999));
}

TEST(CFType, OfAnotherKindReadsAsEmpty) {
    EXPECT_EQ(CFStringGetLength(reinterpret_cast<CFStringRef>(kCFBooleanTrue)), 0);
    EXPECT_EQ(CFArrayGetCount(reinterpret_cast<CFArrayRef>(CFSTR("a"))), 0);
    EXPECT_EQ(CFStringFind(reinterpret_cast<CFStringRef>(kCFBooleanTrue), CFSTR("a"), 0).location,
              kCFNotFound);
    EXPECT_FALSE(CFEqual(kCFBooleanTrue, CFSTR("true")));
}

TEST(CFCopyDescription, EndsForAnArrayThatHoldsItself) {
    const Ref<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(array, array);
    EXPECT_NE(TextOf(CFCopyDescription(array)).find("..."), std::string::npos);
    CFArrayRemoveAllValues(array);
}

TEST(CFAllocator, NullGivesAndFreesNothing) {
    int local = 0;
    EXPECT_FALSE(CFAllocatorAllocate(kCFAllocatorNull, 8, 0));
    CFAllocatorDeallocate(kCFAllocatorNull, &local);
    EXPECT_FALSE(CFAllocatorAllocate(kCFAllocatorDefault, 0, 0));
    void* block = CFAllocatorReallocate(kCFAllocatorDefault, nullptr, 8, 0);
    EXPECT_TRUE(block);
    EXPECT_FALSE(CFAllocatorReallocate(kCFAllocatorDefault, block, 0, 0));
}

TEST(CFAllocator, OfAHostFreesWhatAStringTookOver) {
    static int freed;
    freed = 0;
    CFAllocatorContext context = {};
    context.deallocate = [](void*, void*) { ++freed; };
    const Ref<CFAllocatorRef> allocator(CFAllocatorCreate(nullptr, &context));
    EXPECT_EQ(
        TextOf(CFStringCreateWithCStringNoCopy(nullptr, "abc", kCFStringEncodingUTF8, allocator)),
        "abc");
    EXPECT_EQ(freed, 1);
    EXPECT_FALSE(
        CFStringCreateWithCStringNoCopy(nullptr, "\xFF", kCFStringEncodingUTF8, allocator));
    EXPECT_EQ(freed, 1);
}

TEST(CFNumber, IsEqualByValueAcrossTypes) {
    const auto one = Number(kCFNumberSInt8Type, SInt8{1}), real = Number(kCFNumberFloat64Type, 1.0);
    EXPECT_TRUE(CFEqual(one, real));
    EXPECT_EQ(CFHash(one), CFHash(real));
    EXPECT_EQ(CFNumberCompare(Number(kCFNumberSInt64Type, INT64_MAX),
                              Number(kCFNumberFloat64Type, 9223372036854775808.0), nullptr),
              kCFCompareLessThan);
    EXPECT_EQ(CFNumberCompare(kCFNumberNaN, kCFNumberNegativeInfinity, nullptr),
              kCFCompareLessThan);
    EXPECT_EQ(CFNumberCompare(kCFNumberNaN, kCFNumberNaN, nullptr), kCFCompareEqualTo);
    EXPECT_EQ(CFNumberCompare(one, kCFNumberNaN, nullptr), kCFCompareGreaterThan);
}

TEST(CFNumber, SaysWhetherAValueWasLost) {
    SInt8 small = 0;
    EXPECT_FALSE(CFNumberGetValue(Number(kCFNumberIntType, 300), kCFNumberSInt8Type, &small));
    EXPECT_EQ(small, 127);
    EXPECT_TRUE(CFNumberGetValue(Number(kCFNumberIntType, -5), kCFNumberCharType, &small));
    EXPECT_EQ(small, -5);
    EXPECT_FALSE(CFNumberGetValue(Number(kCFNumberDoubleType, 2.5), kCFNumberSInt8Type, &small));
    EXPECT_EQ(small, 2);
    EXPECT_FALSE(CFNumberGetValue(kCFNumberNaN, kCFNumberSInt8Type, &small));
    EXPECT_EQ(small, 0);
    long native = 0;
    EXPECT_TRUE(
        CFNumberGetValue(Number(kCFNumberSInt64Type, SInt64{1} << 40), kCFNumberLongType, &native));
    EXPECT_EQ(native, 1L << 40);
    EXPECT_FALSE(CFNumberGetValue(kCFNumberNaN, 99, &small));
    EXPECT_FALSE(CFNumberCreate(nullptr, 99, &small));
}

TEST(CFNumber, KnowsHowItIsKept) {
    const auto number = Number(kCFNumberShortType, short{1});
    EXPECT_EQ(CFNumberGetType(number), kCFNumberSInt16Type);
    EXPECT_EQ(CFNumberGetByteSize(number), 2);
    EXPECT_FALSE(CFNumberIsFloatType(number));
    EXPECT_TRUE(CFNumberIsFloatType(kCFNumberNaN));
    EXPECT_TRUE(CFBooleanGetValue(kCFBooleanTrue));
    EXPECT_FALSE(CFBooleanGetValue(kCFBooleanFalse));
}

TEST(CFDate, IsOrderedInTime) {
    const Ref<CFDateRef> early(CFDateCreate(nullptr, 1)), late(CFDateCreate(nullptr, 3.5));
    EXPECT_EQ(CFDateCompare(early, late, nullptr), kCFCompareLessThan);
    EXPECT_EQ(CFDateGetTimeIntervalSinceDate(late, early), 2.5);
    EXPECT_TRUE(CFEqual(early, Ref<CFDateRef>(CFDateCreate(nullptr, 1))));
    EXPECT_EQ(TextOf(CFCopyDescription(early)), "2001-01-01 00:00:01 +0000");
    EXPECT_GT(CFAbsoluteTimeGetCurrent(), 7e8);
    EXPECT_FALSE(TextOf(CFCopyDescription(Ref<CFDateRef>(CFDateCreate(nullptr, 1e300)))).empty());
}

TEST(CFData, ChangesInsideItsBoundsOnly) {
    const Ref<CFMutableDataRef> data(CFDataCreateMutable(nullptr, 4));
    const UInt8 bytes[] = {1, 2, 3};
    CFDataAppendBytes(data, bytes, 3);
    CFDataAppendBytes(data, bytes, 3);
    EXPECT_EQ(CFDataGetLength(data), 3);
    CFDataReplaceBytes(data, CFRangeMake(1, 1), CFDataGetBytePtr(data), 2);
    EXPECT_EQ(TextOf(CFCopyDescription(data)), "<01010203>");
    CFDataDeleteBytes(data, CFRangeMake(-1, 2));
    CFDataIncreaseLength(data, 1);
    EXPECT_EQ(TextOf(CFCopyDescription(data)), "<01020300>");
    UInt8 read[4] = {};
    CFDataGetBytes(data, CFRangeMake(2, 99), read);
    EXPECT_EQ(read[0], 3);
    EXPECT_FALSE(CFDataCreate(nullptr, bytes, -1));
    EXPECT_FALSE(CFDataGetMutableBytePtr(const_cast<CFMutableDataRef>(
        static_cast<CFDataRef>(Ref<CFDataRef>(CFDataCreate(nullptr, bytes, 3))))));
}

TEST(CFArray, KeepsItsValuesAndAnswersNullOutside) {
    const Ref<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    const auto value = Str("a value");
    CFArrayAppendValue(array, value);
    CFArrayInsertValueAtIndex(array, 0, CFSTR("first"));
    CFArrayInsertValueAtIndex(array, 9, CFSTR("nowhere"));
    EXPECT_EQ(CFArrayGetCount(array), 2);
    EXPECT_EQ(CFGetRetainCount(value), 2);
    EXPECT_EQ(CFArrayGetFirstIndexOfValue(array, CFRangeMake(0, 2), Str("a value")), 1);
    EXPECT_FALSE(CFArrayGetValueAtIndex(array, 2));
    EXPECT_FALSE(CFArrayGetValueAtIndex(array, -1));
    CFArraySetValueAtIndex(array, 1, CFSTR("other"));
    EXPECT_EQ(CFGetRetainCount(value), 1);
    const Ref<CFArrayRef> copy(CFArrayCreateCopy(nullptr, array));
    EXPECT_TRUE(CFEqual(copy, array));
    CFArrayRemoveValueAtIndex(array, 0);
    EXPECT_FALSE(CFEqual(copy, array));
    EXPECT_FALSE(CFArrayCreate(nullptr, nullptr, -1, nullptr));
    CFArrayAppendValue(const_cast<CFMutableArrayRef>(static_cast<CFArrayRef>(copy)), value);
    EXPECT_EQ(CFArrayGetCount(copy), 2);
}

TEST(CFDictionary, FindsValuesByEqualKeys) {
    const Ref<CFMutableDictionaryRef> pairs(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    const auto value = Str("a value"), key = Str("key");
    CFDictionaryAddValue(pairs, key, value);
    CFDictionaryAddValue(pairs, Str("key"), CFSTR("ignored"));
    EXPECT_EQ(CFDictionaryGetValue(pairs, Str("key")), value);
    EXPECT_EQ(CFGetRetainCount(value), 2);
    CFDictionaryReplaceValue(pairs, CFSTR("none"), CFSTR("x"));
    EXPECT_EQ(CFDictionaryGetCount(pairs), 1);
    const Ref<CFDictionaryRef> copy(CFDictionaryCreateCopy(nullptr, pairs));
    CFDictionarySetValue(pairs, CFSTR("key"), CFSTR("new"));
    EXPECT_EQ(Text(static_cast<CFStringRef>(CFDictionaryGetValue(pairs, key))), "new");
    EXPECT_FALSE(CFEqual(copy, pairs));
    CFDictionaryRemoveValue(pairs, CFSTR("key"));
    EXPECT_FALSE(CFDictionaryContainsKey(pairs, key));
    EXPECT_EQ(CFDictionaryGetCount(copy), 1);
}

TEST(CFDictionary, TellsANullValueFromNone) {
    const Ref<CFMutableDictionaryRef> pairs(
        CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr));
    int key = 0;
    const void* value = &key;
    EXPECT_FALSE(CFDictionaryGetValueIfPresent(pairs, &key, &value));
    CFDictionarySetValue(pairs, &key, nullptr);
    EXPECT_TRUE(CFDictionaryGetValueIfPresent(pairs, &key, &value));
    EXPECT_FALSE(value);
}

}  // namespace
