// What programs built against the library count on: the order of virtual functions and of fields.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "vantor/containers/LArray.h"
#include "vantor/containers/LArrayIterator.h"
#include "vantor/containers/LComparator.h"
#include "vantor/controller/CVantor.h"
#include "vantor/files/LFile.h"
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StHandle.h"
#include "vantor/foundation/StPointer.h"

namespace {

// On this machine a pointer to a virtual member starts with 1 + the offset of its slot. The first
// two slots are destructors, to which nothing can point.
template <typename Member>
std::size_t Slot(Member inMember) {
    std::size_t parts[2];
    static_assert(sizeof parts == sizeof inMember);
    std::memcpy(parts, &inMember, sizeof parts);
    return (parts[0] - 1) / sizeof(void*);
}

using Slots = std::vector<std::size_t>;

Slots From2To(std::size_t inLast) {
    Slots slots;
    for (std::size_t slot = 2; slot <= inLast; ++slot) slots.push_back(slot);
    return slots;
}

TEST(Slots, OfTheControllerAndTheException) {
    EXPECT_EQ((Slots{Slot(&CVantor::InitiateSelf), Slot(&CVantor::TerminateSelf)}), From2To(3));
    EXPECT_EQ(Slot(&LException::what), 2u);
}

TEST(Slots, OfAComparator) {
    EXPECT_EQ((Slots{Slot(&LComparator::Compare), Slot(&LComparator::IsEqualTo),
                     Slot(&LComparator::CompareToKey), Slot(&LComparator::IsEqualToKey),
                     Slot(&LComparator::Clone)}),
              From2To(6));
}

class OpenArray : public LArray {
  public:
    using LArray::AdjustStorage;
    using LArray::GrabItemRangeSize;
    using LArray::InternalAdjustAllocation;
    using LArray::InternalCopyItem;
    using LArray::InternalMoveItem;
    using LArray::InternalSwapItems;
    using LArray::PeekItem;
    using LArray::PokeItem;
    using LArray::ShiftItems;
    using LArray::StoreNewItems;

    std::vector<const void*> Fields() const {
        return {this,          &mItemSize,  &mItemCount,     &mDataStored, &mDataAllocated,
                &mItemsHandle, &mLockCount, &mFirstIterator, &mComparator, &mOwnsComparator,
                &mIsSorted,    &mKeepSorted};
    }
};

TEST(Slots, OfAnArray) {
    using Fetch = Boolean (LArray::*)(SInt32, void*) const;
    using SizedFetch = Boolean (LArray::*)(SInt32, void*, UInt32&) const;
    using RemoveLast = Boolean (LArray::*)(void*);
    using SizedRemoveLast = Boolean (LArray::*)(void*, UInt32&);
    EXPECT_EQ((Slots{Slot(&LArray::GetItemSize),
                     Slot(&LArray::GrabItemSize),
                     Slot(Fetch{&LArray::FetchItemAt}),
                     Slot(SizedFetch{&LArray::FetchItemAt}),
                     Slot(&LArray::FetchIndexOf),
                     Slot(&LArray::AddItem),
                     Slot(&LArray::InsertItemsAt),
                     Slot(&LArray::RemoveItemsAt),
                     Slot(RemoveLast{&LArray::RemoveLastItem}),
                     Slot(SizedRemoveLast{&LArray::RemoveLastItem}),
                     Slot(&LArray::AssignItemsAt),
                     Slot(&LArray::SwapItems),
                     Slot(&LArray::MoveItem),
                     Slot(&LArray::Remove),
                     Slot(&LArray::GetItemPtr),
                     Slot(&LArray::AdjustAllocation),
                     Slot(&LArray::Sort),
                     Slot(&LArray::FetchIndexOfKey),
                     Slot(&LArray::FetchInsertIndexOf),
                     Slot(&LArray::FetchInsertIndexOfKey),
                     Slot(&OpenArray::PeekItem),
                     Slot(&OpenArray::PokeItem),
                     Slot(&OpenArray::InternalAdjustAllocation),
                     Slot(&OpenArray::AdjustStorage),
                     Slot(&OpenArray::ShiftItems),
                     Slot(&OpenArray::StoreNewItems),
                     Slot(&OpenArray::InternalSwapItems),
                     Slot(&OpenArray::InternalMoveItem),
                     Slot(&OpenArray::InternalCopyItem),
                     Slot(&OpenArray::GrabItemRangeSize)}),
              From2To(31));
}

class OpenFile : public LFile {
  public:
    std::vector<const void*> Fields() const {
        return {this, &mSpec, &mDataForkRefNum, &mResourceForkRefNum};
    }
};

TEST(Slots, OfAFile) {
    EXPECT_EQ(
        (Slots{Slot(&LFile::SetSpecifier), Slot(&LFile::MakeAlias), Slot(&LFile::CreateNewFile),
               Slot(&LFile::CreateNewDataFile), Slot(&LFile::OpenDataFork),
               Slot(&LFile::CloseDataFork), Slot(&LFile::ReadDataFork), Slot(&LFile::WriteDataFork),
               Slot(&LFile::OpenResourceFork), Slot(&LFile::CloseResourceFork)}),
        From2To(11));
}

TEST(Fields, OfAFileStandInTheirOrder) {
    const auto fields = OpenFile().Fields();
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
}

class OpenIterator : public LArrayIterator {
  public:
    using LArrayIterator::LArrayIterator;
    std::vector<const void*> Fields() const {
        return {this, &mNextIterator, &mCurrentIndex, &mNextIndex};
    }
    // A reference has no address of its own: its place is the gap of a pointer.
    std::ptrdiff_t Gap() const {
        return reinterpret_cast<const char*>(&mCurrentIndex) -
               reinterpret_cast<const char*>(&mNextIterator);
    }
};

TEST(Fields, OfAnArrayAndItsIteratorStandInTheirOrder) {
    OpenArray array;
    const auto fields = array.Fields();
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
    const OpenIterator iterator(array);
    const auto more = iterator.Fields();
    EXPECT_TRUE(std::is_sorted(more.begin(), more.end()));
    EXPECT_EQ(iterator.Gap(), static_cast<std::ptrdiff_t>(2 * sizeof(void*)));
}

struct OpenHandleBlock : StHandleBlock {
    static constexpr std::size_t kFlagSize = sizeof(mOwns);
};

struct OpenPointerBlock : StPointerBlock {
    static constexpr std::size_t kFlagSize = sizeof(mOwns);
};

TEST(Fields, OfOwnershipAreWords) {
    EXPECT_EQ(OpenHandleBlock::kFlagSize, 4u);
    EXPECT_EQ(OpenPointerBlock::kFlagSize, 4u);
}

}  // namespace
