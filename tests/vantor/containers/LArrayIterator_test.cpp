// Iterators over a changing array.
#include "vantor/containers/LArrayIterator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "vantor/containers/LArray.h"

namespace {

class LArrayIteratorTest : public ::testing::Test {
  protected:
    LArrayIteratorTest() {
        for (SInt32 i = 1; i <= 5; ++i) mArray.AddItem(&i);
    }

    LArray mArray;
    SInt32 mItem = 0;
};

TEST_F(LArrayIteratorTest, WalksBothWays) {
    LArrayIterator iterator(mArray);
    for (SInt32 i = 1; i <= 5; ++i) {
        EXPECT_TRUE(iterator.Next(&mItem));
        EXPECT_EQ(mItem, i);
    }
    EXPECT_FALSE(iterator.Next(&mItem));
    EXPECT_FALSE(iterator.Next(&mItem));
    for (SInt32 i = 5; i >= 1; --i) {
        EXPECT_TRUE(iterator.Previous(&mItem));
        EXPECT_EQ(mItem, i);
    }
    EXPECT_FALSE(iterator.Previous(&mItem));
    EXPECT_TRUE(iterator.Next(&mItem));
    EXPECT_EQ(mItem, 1);
}

TEST_F(LArrayIteratorTest, StartsWhereTold) {
    EXPECT_TRUE(LArrayIterator(mArray, 3).Current(&mItem));
    EXPECT_EQ(mItem, 3);
    EXPECT_FALSE(LArrayIterator(mArray, 0).Current(&mItem));
    EXPECT_EQ(LArrayIterator(mArray, 0).GetCurrentIndex(), LArrayIterator::kIterPosBeforeStart);
}

TEST_F(LArrayIteratorTest, NegativePositionsAndThosePastTheLastItemAreTheEnd) {
    for (const SInt32 position : {SInt32{LArrayIterator::kIterFromEnd},
                                  SInt32{LArrayIterator::kIterPosAfterEnd}, -4, -5, 6}) {
        LArrayIterator iterator(mArray, position);
        EXPECT_EQ(iterator.GetCurrentIndex(), LArrayIterator::kIterPosAfterEnd) << position;
        EXPECT_FALSE(iterator.Next(&mItem)) << position;
        EXPECT_TRUE(iterator.Previous(&mItem)) << position;
        EXPECT_EQ(mItem, 5) << position;
    }
}

TEST_F(LArrayIteratorTest, KeepsTheFollowerOfARemovedItemWhenOthersGo) {
    LArrayIterator iterator(mArray, 3);
    mArray.RemoveItemsAt(1, 3);  // the next one, 4, is the third now
    mArray.RemoveItemsAt(1, 1);  // and then the second, which the iterator does not hear of
    EXPECT_TRUE(iterator.Next(&mItem));
    EXPECT_EQ(mItem, 5);
}

TEST_F(LArrayIteratorTest, RemovedItemLeavesItsNeighboursReachable) {
    LArrayIterator forward(mArray, 3), backward(mArray, 3);
    mArray.RemoveItemsAt(3, 2);
    EXPECT_EQ(forward.GetCurrentIndex(), LArrayIterator::kIterPosCurrentRemoved);
    EXPECT_FALSE(forward.Current(&mItem));
    EXPECT_EQ(forward.PtrToCurrent(), nullptr);
    EXPECT_TRUE(forward.Next(&mItem));
    EXPECT_EQ(mItem, 5);
    EXPECT_TRUE(backward.Previous(&mItem));
    EXPECT_EQ(mItem, 1);
}

TEST_F(LArrayIteratorTest, RemovedLastItemIsFollowedByTheEnd) {
    LArrayIterator forward(mArray, 5), backward(mArray, 5);
    mArray.RemoveItemsAt(1, 5);
    EXPECT_FALSE(forward.Next(&mItem));
    EXPECT_TRUE(backward.Previous(&mItem));
    EXPECT_EQ(mItem, 4);
}

TEST_F(LArrayIteratorTest, StaysOnItsItemWhenOthersComeAndGo) {
    LArrayIterator iterator(mArray, 3);
    const SInt32 value = 77;
    mArray.InsertItemsAt(2, 1, &value);
    EXPECT_TRUE(iterator.Current(&mItem));
    EXPECT_EQ(mItem, 3);
    mArray.RemoveItemsAt(3, 1);
    EXPECT_TRUE(iterator.Current(&mItem));
    EXPECT_EQ(mItem, 3);
    mArray.RemoveItemsAt(1, LArray::kIndexLast);
    EXPECT_TRUE(iterator.Next(&mItem));
    EXPECT_EQ(mItem, 4);
}

TEST_F(LArrayIteratorTest, InsertionBeforeTheFollowerOfARemovedItemMovesIt) {
    LArrayIterator iterator(mArray, 3);
    mArray.RemoveItemsAt(1, 3);
    const SInt32 value = 77;
    mArray.InsertItemsAt(1, 1, &value);
    EXPECT_TRUE(iterator.Next(&mItem));
    EXPECT_EQ(mItem, 4);
}

TEST_F(LArrayIteratorTest, OutlivesItsArray) {
    auto array = std::make_unique<LArray>();
    const SInt32 value = 1;
    array->AddItem(&value);
    LArrayIterator iterator(*array, 1);
    array.reset();
    UInt32 size = 4;
    EXPECT_FALSE(iterator.Current(&mItem));
    EXPECT_FALSE(iterator.Next(&mItem, size));
    EXPECT_FALSE(iterator.Previous(&mItem));
    EXPECT_EQ(iterator.PtrToNext(), nullptr);
    iterator.ResetTo(1);
    EXPECT_EQ(iterator.GetCurrentIndex(), LArrayIterator::kIterPosArrayDied);
}

TEST_F(LArrayIteratorTest, AssignmentKillsTheIteratorsOfTheOldContents) {
    LArrayIterator iterator(mArray, 2);
    LArray other;
    mArray = other;
    EXPECT_FALSE(iterator.Next(&mItem));
}

TEST_F(LArrayIteratorTest, PointersShowItemsInPlace) {
    LArrayIterator iterator(mArray);
    EXPECT_EQ(iterator.PtrToNext(), mArray.GetItemPtr(1));
    EXPECT_EQ(iterator.PtrToNext(), mArray.GetItemPtr(2));
    EXPECT_EQ(iterator.PtrToPrevious(), mArray.GetItemPtr(1));
}

// The bookkeeping against a model that knows nothing but a vector of values: an iterator stays on
// its item, and after a removal of its item goes on with the one that followed or the one before.
TEST(LArrayIterator, FollowsItsItemThroughAHundredThousandChanges) {
    std::mt19937 random(7);
    LArray array;
    std::vector<SInt32> model;
    LArrayIterator iterator(array);
    SInt32 watched = 0, next = 1;  // the item stood on; 0 when there is none
    for (int step = 0; step < 100000; ++step) {
        const auto count = static_cast<SInt32>(model.size());
        const SInt32 at = 1 + static_cast<SInt32>(random() % (model.size() + 1));
        if (random() % 2 == 0 || count == 0) {
            array.InsertItemsAt(1, at, &next);
            model.insert(model.begin() + at - 1, next++);
        } else if (at <= count) {
            const auto many =
                std::min<SInt32>(count - at + 1, 1 + static_cast<SInt32>(random() % 3));
            array.RemoveItemsAt(static_cast<UInt32>(many), at);
            model.erase(model.begin() + at - 1, model.begin() + at - 1 + many);
        }
        ASSERT_EQ(array.GetCount(), static_cast<SInt32>(model.size()));
        const auto found = std::find(model.begin(), model.end(), watched);
        SInt32 item = 0;
        if (watched != 0 && found != model.end()) {
            ASSERT_TRUE(iterator.Current(&item));
            ASSERT_EQ(item, watched);
        } else {
            ASSERT_FALSE(iterator.Current(&item));
            const bool onward = random() % 2 == 0;
            const bool there = onward ? iterator.Next(&item) : iterator.Previous(&item);
            const auto place = static_cast<std::size_t>(at - (onward ? 1 : 2));
            if (watched != 0) {
                ASSERT_EQ(there, place < model.size());
            }
            if (watched != 0 && there) {
                ASSERT_EQ(item, model[place]);
            }
            if (!there)
                iterator.ResetTo(model.empty() ? 0
                                               : 1 + static_cast<SInt32>(random() % model.size()));
            watched = iterator.Current(&item) ? item : 0;
        }
    }
}

}  // namespace
