// The array as its users and derived classes see it.
#include "vantor/containers/LArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "vantor/containers/LComparator.h"
#include "vantor/containers/TArray.h"
#include "vantor/foundation/LException.h"

namespace {

// Shows what the array keeps to itself.
class Inside : public LArray {
  public:
    using LArray::LArray;
    UInt32 Allocated() const { return mDataAllocated; }
    UInt32 Stored() const { return mDataStored; }
    bool IsSorted() const { return mIsSorted != 0; }
    Handle Items() const { return mItemsHandle; }
};

template <typename Array = Inside>
void Fill(Array& ioArray, const std::vector<SInt32>& inValues) {
    for (const SInt32 value : inValues) ioArray.AddItem(&value);
}

std::vector<SInt32> Values(const LArray& inArray) {
    std::vector<SInt32> values;
    for (SInt32 i = 1; i <= inArray.GetCount(); ++i) {
        SInt32 value = 0;
        inArray.FetchItemAt(i, &value);
        values.push_back(value);
    }
    return values;
}

using Expected = std::vector<SInt32>;

TEST(LArray, GrowsByDoubling) {
    Inside array;
    const SInt32 value = 7;
    const UInt32 sizes[] = {4, 8, 16, 16, 32};
    for (const UInt32 size : sizes) {
        array.AddItem(&value);
        EXPECT_EQ(array.Allocated(), size);
    }
}

TEST(LArray, ShrinksByJustWhatWasRemoved) {
    Inside array;
    Fill(array, {1, 2, 3});
    ASSERT_EQ(array.Allocated(), 16u);
    array.RemoveItemsAt(1, 2);
    EXPECT_EQ(array.Allocated(), 12u);
    EXPECT_EQ(array.Stored(), 8u);
}

TEST(LArray, InitialCountReservesRoom) {
    Inside array(10, 8, nullptr, false);
    EXPECT_EQ(array.Allocated(), 80u);
    EXPECT_EQ(array.GetCount(), 0);
}

TEST(LArray, ItemsHandleIsTrimmedToTheItems) {
    Inside array;
    Fill(array, {1, 2, 3});
    EXPECT_EQ(GetHandleSize(array.GetItemsHandle()), 12);
}

TEST(LArray, LastIndexStandsForTheCount) {
    Inside array;
    SInt32 index = LArray::kIndexLast;
    EXPECT_FALSE(array.ValidIndex(index));
    Fill(array, {1, 2, 3, 4, 5});
    index = LArray::kIndexLast;
    EXPECT_TRUE(array.ValidIndex(index));
    EXPECT_EQ(index, 5);
}

TEST(LArray, BadIndexesAreRefusedNotFollowed) {
    Inside array;
    Fill(array, {1});
    SInt32 value = 99;
    for (const SInt32 index : {-1, 0, 2}) EXPECT_FALSE(array.FetchItemAt(index, &value));
    EXPECT_EQ(value, 99);
    array.RemoveItemsAt(1, 0);
    array.RemoveItemsAt(1, 2);
    EXPECT_EQ(array.AssignItemsAt(1, 2, &value), 0);
    EXPECT_EQ(Values(array), Expected({1}));
}

TEST(LArray, SizedFetchCopiesNoMoreThanAsked) {
    Inside array(8, nullptr, false);
    array.AddItem("12345678");
    char out[9] = "........";
    UInt32 size = 3;
    EXPECT_TRUE(array.FetchItemAt(1, out, size));
    EXPECT_EQ(size, 3u);
    EXPECT_STREQ(out, "123.....");
    size = 20;
    EXPECT_TRUE(array.FetchItemAt(1, out, size));
    EXPECT_EQ(size, 8u);
    size = 8;
    EXPECT_FALSE(array.FetchItemAt(2, out, size));
    EXPECT_EQ(size, 0u);
}

TEST(LArray, InsertPastTheEndAppendsEveryCopy) {
    Inside array;
    Fill(array, {1, 2});
    const SInt32 value = 9;
    EXPECT_EQ(array.InsertItemsAt(3, 99, &value), 3);
    EXPECT_EQ(Values(array), Expected({1, 2, 9, 9, 9}));
}

TEST(LArray, InsertBelowOneGoesToTheFront) {
    Inside array;
    Fill(array, {1, 2});
    const SInt32 value = 9;
    EXPECT_EQ(array.InsertItemsAt(2, -5, &value), 1);
    EXPECT_EQ(Values(array), Expected({9, 9, 1, 2}));
}

TEST(LArray, InsertOfNothingOrTooMuchChangesNothing) {
    Inside array;
    Fill(array, {1, 2});
    const SInt32 value = 9;
    EXPECT_EQ(array.InsertItemsAt(0, 1, &value), 0);
    EXPECT_THROW(array.InsertItemsAt(0xFFFFFFFFu, 1, &value), LException);
    EXPECT_THROW(array.InsertItemsAt(0x7FFFFFF0u, 1, &value), LException);
    EXPECT_EQ(Values(array), Expected({1, 2}));
}

TEST(LArray, NullItemMakesRoomOnly) {
    Inside array;
    Fill(array, {1, 2});
    EXPECT_EQ(array.InsertItemsAt(1, 2, nullptr), 2);
    EXPECT_EQ(array.GetCount(), 3);
    EXPECT_EQ(Values(array).back(), 2);
}

TEST(LArray, RemovalIsCutAtTheEnd) {
    Inside array;
    Fill(array, {1, 2, 3, 4, 5});
    array.RemoveItemsAt(2, 2);
    EXPECT_EQ(Values(array), Expected({1, 4, 5}));
    array.RemoveItemsAt(100, 2);
    EXPECT_EQ(Values(array), Expected({1}));
}

TEST(LArray, RemoveLastItemHandsItOut) {
    Inside array;
    SInt32 value = 0;
    EXPECT_FALSE(array.RemoveLastItem(&value));
    Fill(array, {1, 2});
    EXPECT_TRUE(array.RemoveLastItem(&value));
    EXPECT_EQ(value, 2);
    EXPECT_EQ(array.GetCount(), 1);
}

TEST(LArray, RemoveTakesTheFirstEqualItem) {
    Inside array;
    Fill(array, {3, 1, 3, 2});
    const SInt32 three = 3, ten = 10;
    array.Remove(&three);
    array.Remove(&ten);
    EXPECT_EQ(Values(array), Expected({1, 3, 2}));
}

TEST(LArray, AssignOverwritesUpToTheEnd) {
    Inside array;
    Fill(array, {1, 2, 3});
    const SInt32 value = 9;
    EXPECT_EQ(array.AssignItemsAt(5, 2, &value), 2);
    EXPECT_EQ(Values(array), Expected({1, 9, 9}));
}

TEST(LArray, AssignInASortedArrayPutsTheItemWhereItBelongs) {
    Inside array(4, nullptr, true);
    Fill(array, {1, 5, 9});
    const SInt32 value = 7;
    EXPECT_EQ(array.AssignItemsAt(1, 1, &value), 2);
    EXPECT_EQ(Values(array), Expected({5, 7, 9}));
}

TEST(LArray, SwapAndMoveKeepEveryItem) {
    Inside array;
    Fill(array, {1, 2, 3, 4, 5});
    array.SwapItems(1, 4);
    EXPECT_EQ(Values(array), Expected({4, 2, 3, 1, 5}));
    array.MoveItem(1, 3);
    EXPECT_EQ(Values(array), Expected({2, 3, 4, 1, 5}));
    array.MoveItem(LArray::kIndexLast, 1);
    EXPECT_EQ(Values(array), Expected({5, 2, 3, 4, 1}));
    array.MoveItem(1, 9);
    array.SwapItems(0, 1);
    EXPECT_EQ(Values(array), Expected({5, 2, 3, 4, 1}));
}

TEST(LArray, SwapAndMoveDoNothingWhileKeptSorted) {
    Inside array(4, nullptr, true);
    Fill(array, {3, 1, 2});
    array.SwapItems(1, 3);
    array.MoveItem(1, 3);
    EXPECT_EQ(Values(array), Expected({1, 2, 3}));
}

TEST(LArray, LockRefusesGrowthShrinkingAndAssignment) {
    Inside array, other;
    Fill(array, {3, 1, 2});
    Fill(other, {8});
    const SInt32 value = 9;
    SInt32 out = 0;
    {
        StArrayLocker lock(array);
        EXPECT_TRUE(array.IsLocked());
        EXPECT_EQ(array.AddItem(&value), 0);
        EXPECT_EQ(array.InsertItemsAt(1, 1, &value), 0);
        array.RemoveItemsAt(1, 1);
        EXPECT_FALSE(array.RemoveLastItem(&out));
        array = other;
        EXPECT_EQ(Values(array), Expected({3, 1, 2}));
        array.SwapItems(1, 2);
        array.AssignItemsAt(1, 3, &value);
        EXPECT_EQ(Values(array), Expected({1, 3, 9}));
        array.Sort();
    }
    EXPECT_FALSE(array.IsLocked());
    EXPECT_EQ(array.AddItem(&value), 4);
}

TEST(LArray, LocksAreCounted) {
    Inside array;
    Fill(array, {1});
    array.Lock();
    array.Lock();
    array.Unlock();
    EXPECT_TRUE(array.IsLocked());
    EXPECT_LT(HGetState(array.Items()), 0);
    array.Unlock();
    EXPECT_GE(HGetState(array.Items()), 0);
}

TEST(LArray, AdoptedHandleKeepsItsItems) {
    Handle handle = NewHandle(14);
    const SInt32 values[] = {4, 5, 6};
    BlockMoveData(values, *handle, sizeof values);
    HLock(handle);
    Inside array(4, handle, nullptr, false, false);
    EXPECT_EQ(Values(array), Expected({4, 5, 6}));
    EXPECT_GE(HGetState(handle), 0);
    EXPECT_EQ(array.Stored(), 14u);
}

TEST(LArray, ATrimmedAdoptedHandleHoldsItsWholeItemsOnly) {
    const Handle items = NewHandle(14);
    const SInt32 values[] = {3, 4, 5};
    BlockMoveData(values, *items, sizeof values);
    Inside array(4, items, nullptr, false, false);
    EXPECT_EQ(GetHandleSize(array.GetItemsHandle()), 12);
    EXPECT_GE(array.Allocated(), array.Stored());
    EXPECT_EQ(Values(Inside(array)), Expected({3, 4, 5}));
    array.RemoveItemsAt(1, 3);
    EXPECT_EQ(Values(array), Expected({3, 4}));
    EXPECT_EQ(GetHandleSize(array.Items()), 8);
    EXPECT_GE(array.Allocated(), array.Stored());
}

TEST(LArray, CopiesShareNothing) {
    Inside array;
    Fill(array, {1, 2});
    Inside copy(array);
    Fill(copy, {3});
    EXPECT_EQ(Values(array), Expected({1, 2}));
    EXPECT_EQ(Values(copy), Expected({1, 2, 3}));
    array = copy;
    EXPECT_EQ(Values(array), Expected({1, 2, 3}));
    array = *&array;
    EXPECT_EQ(Values(array), Expected({1, 2, 3}));
}

TEST(LArray, SortedInsertKeepsOrder) {
    Inside array(4, nullptr, true);
    Fill(array, {5, -3, 9, 0, 5});
    EXPECT_EQ(Values(array), Expected({-3, 0, 5, 5, 9}));
    EXPECT_EQ(array.InsertItemsAt(1, 1, nullptr), 0);
}

TEST(LArray, InsertIndexOfUnsortedArrayIsLast) {
    Inside array;
    Fill(array, {5, 3});
    const SInt32 value = 4;
    EXPECT_EQ(array.FetchInsertIndexOf(&value), 0x7FFFFFFF);
    array.Sort();
    EXPECT_EQ(array.FetchInsertIndexOf(&value), 2);
    EXPECT_EQ(array.FetchInsertIndexOf(nullptr), 0x7FFFFFFF);
    EXPECT_EQ(Inside().FetchInsertIndexOf(&value), 1);
}

TEST(LArray, FindsSortedOrNot) {
    Inside array;
    Fill(array, {5, 3, 8, 1});
    const SInt32 eight = 8, seven = 7;
    EXPECT_EQ(array.FetchIndexOf(&eight), 3);
    array.Sort();
    EXPECT_EQ(array.FetchIndexOf(&eight), 4);
    EXPECT_EQ(array.FetchIndexOf(&seven), 0);
    EXPECT_EQ(Inside().FetchIndexOf(&eight), 0);
}

TEST(LArray, AppendingForgetsTheOrder) {
    Inside array;
    Fill(array, {1, 2});
    array.Sort();
    EXPECT_TRUE(array.IsSorted());
    Fill(array, {0});
    EXPECT_FALSE(array.IsSorted());
    array.SetKeepSorted(true);
    EXPECT_EQ(Values(array), Expected({0, 1, 2}));
}

class Descending : public LLongComparator {
  public:
    static int sAlive;
    Descending() { ++sAlive; }
    ~Descending() override { --sAlive; }
    SInt32 Compare(const void* a, const void* b, UInt32 inSizeA, UInt32 inSizeB) const override {
        return LLongComparator::Compare(b, a, inSizeB, inSizeA);
    }
    SInt32 CompareToKey(const void* inItem, UInt32, const void* inKey) const override {
        return Compare(inItem, inKey, 4, 4);
    }
    LComparator* Clone() override { return new Descending; }
};
int Descending::sAlive = 0;

TEST(LArray, OwnedComparatorIsClonedAndDeleted) {
    {
        Inside array(4, new Descending, true);
        Fill(array, {1, 3, 2});
        EXPECT_EQ(Values(array), Expected({3, 2, 1}));
        const Inside copy(array);
        EXPECT_EQ(Descending::sAlive, 2);
        array.SetComparator(LLongComparator::GetComparator(), false);
        EXPECT_EQ(Descending::sAlive, 1);
        EXPECT_EQ(Values(array), Expected({1, 2, 3}));
        array.SetComparator(nullptr, true);
        EXPECT_EQ(Values(array), Expected({1, 2, 3}));
    }
    EXPECT_EQ(Descending::sAlive, 0);
}

TEST(LArray, SharedComparatorIsLeftAlone) {
    Descending descending;
    {
        Inside array;
        array.SetComparator(&descending, false);
        const Inside copy(array);
    }
    EXPECT_EQ(Descending::sAlive, 1);
}

TEST(LArray, KeysAreFoundByComparatorsThatKnowThem) {
    Inside array(4, new Descending, true);
    Fill(array, {1, 3, 2});
    const SInt32 two = 2;
    EXPECT_EQ(array.FetchIndexOfKey(&two), 2);
    EXPECT_EQ(array.FetchInsertIndexOfKey(&two), 2);
    Inside plain;
    Fill(plain, {2});
    EXPECT_EQ(plain.FetchIndexOfKey(&two), 0) << "the base comparator knows no keys";
}

TEST(LArray, SortAgreesWithTheStandardLibrary) {
    std::mt19937 random(1);
    for (const int count : {0, 1, 2, 10, 100, 1000}) {
        Inside array;
        Expected values;
        for (int i = 0; i < count; ++i) values.push_back(static_cast<SInt32>(random() % 1000));
        Fill(array, values);
        array.Sort();
        std::stable_sort(values.begin(), values.end());
        EXPECT_EQ(Values(array), values);
    }
}

TEST(LLongComparator, KeepsWrapWhenValuesAreFarApart) {
    const SInt32 largest = 0x7FFFFFFF, minusOne = -1;
    EXPECT_LT(LLongComparator().Compare(&largest, &minusOne, 4, 4), 0);
    Inside array;
    Fill(array, {-1, 0x7FFFFFFF});
    array.Sort();
    EXPECT_EQ(Values(array), Expected({0x7FFFFFFF, -1}));
}

TEST(LComparator, ComparesBytesThenLengths) {
    const LComparator comparator;
    EXPECT_LT(comparator.Compare("abc", "abd", 3, 3), 0);
    EXPECT_GT(comparator.Compare("\xFF", "\x01", 1, 1), 0);
    EXPECT_EQ(comparator.Compare("abc", "abcd", 3, 4), -1);
    EXPECT_TRUE(comparator.IsEqualTo("abc", "abc", 3, 3));
    EXPECT_EQ(comparator.CompareToKey("a", 1, "a"), 1);
    EXPECT_FALSE(comparator.IsEqualToKey("a", 1, "a"));
}

TEST(LArray, PokeKeepsTheSizeGivenWithinTheHandle) {
    Inside array;
    Fill(array, {0, 0});
    const SInt32 wide[] = {1, 2, 3, 4};
    array.AssignItemsAt(1, 1, wide, sizeof wide);
    EXPECT_EQ(Values(array), Expected({1, 2})) << "runs into the next place, not past the end";
}

TEST(TArray, FetchesAndFindsTypedItems) {
    TArray<ProcessSerialNumber> array;
    EXPECT_EQ(array.AddItem(ProcessSerialNumber{0, 5}), 1);
    EXPECT_EQ(array.AddItem(ProcessSerialNumber{0, 9}), 2);
    ProcessSerialNumber psn = {};
    EXPECT_TRUE(array.FetchItemAt(2, psn));
    EXPECT_EQ(psn.lowLongOfPSN, 9u);
    EXPECT_EQ(array.FetchIndexOf(ProcessSerialNumber{0, 9}), 2);
    EXPECT_EQ(array.FetchIndexOf(ProcessSerialNumber{1, 9}), 0);
    EXPECT_EQ(array.GetItemSize(), 8u);
}

// A class of another library that overrides hooks.
class Counting : public LArray {
  public:
    using LArray::LArray;
    int adjusted = 0, poked = 0;
    std::vector<SInt32> bytes;  // that storage and shifts were told of

  protected:
    void InternalAdjustAllocation(UInt32 inCount, UInt32 inBytes) override {
        ++adjusted;
        LArray::InternalAdjustAllocation(inCount, inBytes);
    }
    void PokeItem(SInt32 inIndex, const void* inItem, UInt32 inSize) override {
        ++poked;
        LArray::PokeItem(inIndex, inItem, inSize);
    }
    void AdjustStorage(SInt32 inItems, SInt32 inBytes) override {
        bytes.push_back(inBytes);
        LArray::AdjustStorage(inItems, inBytes);
    }
    void ShiftItems(SInt32 inFrom, SInt32 inTo, SInt32 inItems, SInt32 inBytes) override {
        bytes.push_back(inBytes);
        LArray::ShiftItems(inFrom, inTo, inItems, inBytes);
    }
};

TEST(LArray, CallsTheHooksOfADerivedClass) {
    Counting array;
    const SInt32 value = 1;
    array.AddItem(&value);
    array.InsertItemsAt(2, 1, &value);
    EXPECT_EQ(array.poked, 3);
    EXPECT_GE(array.adjusted, 2);
}

// Sorts through the hooks, since the array cannot know what this class does with them.
class Hooked : public LArray {
  public:
    using LArray::LArray;
};

// By the first byte only, so that many items are equal.
class FirstByteComparator : public LComparator {
  public:
    SInt32 Compare(const void* inOne, const void* inOther, UInt32, UInt32) const override {
        return *static_cast<const UInt8*>(inOne) - *static_cast<const UInt8*>(inOther);
    }
};

template <typename Array>
std::string Sorted(const std::string& inBytes, UInt32 inSize, LComparator* inComparator) {
    Array array(inSize, inComparator, false);
    for (size_t at = 0; at + inSize <= inBytes.size(); at += inSize) array.AddItem(&inBytes[at]);
    array.Sort();
    return std::string(static_cast<const char*>(array.GetItemPtr(1)), inBytes.size());
}

TEST(LArray, SortsPlainItemsAsItDoesThroughTheHooks) {
    std::mt19937 random(21);
    for (const UInt32 size : {1u, 2u, 4u, 6u, 8u, 16u, 60u}) {
        std::string bytes(size_t{size} * 1000, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random() % 7 * 40);
        EXPECT_EQ(Sorted<LArray>(bytes, size, nullptr), Sorted<Hooked>(bytes, size, nullptr));
        EXPECT_EQ(Sorted<LArray>(bytes, size, new FirstByteComparator),
                  Sorted<Hooked>(bytes, size, new FirstByteComparator));
    }
}

TEST(LArray, TellsTheHooksHowManyBytesComeAndGo) {
    Counting array;
    const SInt32 value = 1;
    array.AddItem(&value);
    array.InsertItemsAt(3, 1, &value);
    array.AddItem(&value, 2);
    array.RemoveItemsAt(2, 1);
    EXPECT_EQ(array.bytes, Expected({4, 12, 12, 2, -8, -8}));
}

class Stingy : public LArray {
  protected:
    void InternalAdjustAllocation(UInt32 inCount, UInt32 inBytes) override {
        if (inBytes > mDataStored + mItemSize) LException::Throw(memFullErr);
        LArray::InternalAdjustAllocation(inCount, inBytes);
    }
};

TEST(LArray, GrowsExactlyWhenDoublingFails) {
    Stingy array;
    for (SInt32 i = 1; i <= 5; ++i) EXPECT_EQ(array.AddItem(&i), i);
    EXPECT_EQ(Values(array), Expected({1, 2, 3, 4, 5}));
}

}  // namespace
