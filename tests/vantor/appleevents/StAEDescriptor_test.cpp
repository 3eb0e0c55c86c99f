// The owned descriptor: what each value becomes, byte by byte, and how parameters are fetched.
#include "vantor/appleevents/StAEDescriptor.h"

#include <gtest/gtest.h>

#include "support/Descriptors.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/Thrown.h"

namespace {

int sFetches = 0;  // calls that fetch a parameter or make another type of one

}  // namespace

OSErr AEGetParamDesc(const AppleEvent* inEvent, AEKeyword inKey, DescType inType, AEDesc* outDesc) {
    ++sFetches;
    return REAL_CALL(AEGetParamDesc)(inEvent, inKey, inType, outDesc);
}

OSErr AECoerceDesc(const AEDesc* inDesc, DescType inType, AEDesc* outDesc) {
    ++sFetches;
    return REAL_CALL(AECoerceDesc)(inDesc, inType, outDesc);
}

namespace {

using Bytes = std::vector<UInt8>;

TEST(StAEDescriptor, StartsAsTheNullDescriptor) {
    const StAEDescriptor descriptor;
    EXPECT_EQ(descriptor.mDesc.descriptorType, typeNull);
    EXPECT_EQ(+descriptor.mDesc.dataHandle, nullptr);
}

TEST(StAEDescriptor, HoldsEveryScalarInItsBigEndianBytes) {
    const auto check = [](const StAEDescriptor& inDesc, DescType inType, const Bytes& inBytes) {
        EXPECT_EQ(inDesc.mDesc.descriptorType, inType);
        EXPECT_EQ(BytesOf(inDesc), inBytes);
    };
    check(StAEDescriptor(Boolean{2}), 'bool', {2});
    check(StAEDescriptor(SInt16{-2}), 'shor', {0xFF, 0xFE});
    check(StAEDescriptor(SInt32{0x01020304}), 'long', {1, 2, 3, 4});
    check(StAEDescriptor(OSType{'Fv8k'}), 'type', {'F', 'v', '8', 'k'});
    check(StAEDescriptor(PString("ab")), 'TEXT', {'a', 'b'});
    check(StAEDescriptor(PString("")), 'TEXT', {});
}

TEST(StAEDescriptor, HoldsAFileAs70Bytes) {
    const FSSpec spec = {-2, 0x01020304, "\003abc"};
    const StAEDescriptor descriptor(spec);
    const Bytes bytes = BytesOf(descriptor);
    EXPECT_EQ(descriptor.mDesc.descriptorType, DescType{'fss '});
    ASSERT_EQ(bytes.size(), 70u);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 10),
              (Bytes{0xFF, 0xFE, 1, 2, 3, 4, 3, 'a', 'b', 'c'}));
}

TEST(StAEDescriptor, CopiesShareNothing) {
    StAEDescriptor original(SInt32{7});
    StAEDescriptor copy(original), assigned;
    assigned = original;
    EXPECT_NE(+copy.mDesc.dataHandle, +original.mDesc.dataHandle);
    original.Dispose();
    EXPECT_EQ(BytesOf(copy), (Bytes{0, 0, 0, 7}));
    EXPECT_EQ(BytesOf(assigned), (Bytes{0, 0, 0, 7}));
}

TEST(StAEDescriptor, AssigningToItselfChangesNothing) {
    StAEDescriptor descriptor(SInt32{7});
    const AEDataStorage handle = descriptor.mDesc.dataHandle;
    EXPECT_EQ(&descriptor.Assign(static_cast<const StAEDescriptor&>(descriptor)), &descriptor);
    EXPECT_EQ(+descriptor.mDesc.dataHandle, handle);
    EXPECT_EQ(BytesOf(descriptor), (Bytes{0, 0, 0, 7}));
}

TEST(StAEDescriptor, AssignmentsReplaceAndChain) {
    StAEDescriptor descriptor;
    descriptor.Assign(SInt16{1}).Assign(Boolean{1}).Assign(OSType{'abcd'});
    EXPECT_EQ(descriptor.mDesc.descriptorType, typeType);
    EXPECT_EQ(BytesOf(descriptor), (Bytes{'a', 'b', 'c', 'd'}));
    descriptor.Dispose();
    descriptor.Dispose();
    EXPECT_EQ(descriptor.mDesc.descriptorType, typeNull);
}

TEST(StAEDescriptor, ConvertsToWhatPlatformCallsTake) {
    StAEDescriptor descriptor(SInt32{1});
    AEDesc& reference = descriptor;
    AEDesc* pointer = descriptor;
    const AEDesc* constant = static_cast<const StAEDescriptor&>(descriptor);
    EXPECT_EQ(&reference, pointer);
    EXPECT_EQ(constant, pointer);
}

class StAEDescriptorFetching : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(AECreateList(nullptr, 0, true, mRecord), noErr);
        ASSERT_EQ(AEPutParamDesc(mRecord, 'text', StAEDescriptor(PString("word"))), noErr);
        ASSERT_EQ(AEPutParamDesc(mRecord, 'numb', StAEDescriptor(SInt32{5})), noErr);
    }
    StAEDescriptor mRecord;
};

TEST_F(StAEDescriptorFetching, FromNullStaysNullAndAsksNobody) {
    const StAEDescriptor none;
    sFetches = 0;
    const StAEDescriptor fetched(none.mDesc, 'numb', typeSInt32);
    EXPECT_EQ(sFetches, 0);
    EXPECT_EQ(fetched.mDesc.descriptorType, typeNull);
}

TEST_F(StAEDescriptorFetching, TakesAParameterCoerced) {
    sFetches = 0;
    const StAEDescriptor fetched(mRecord.mDesc, 'numb', typeSInt16);
    EXPECT_EQ(sFetches, 1);
    EXPECT_EQ(fetched.mDesc.descriptorType, typeSInt16);
    EXPECT_EQ(BytesOf(fetched), (Bytes{0, 5}));
}

TEST_F(StAEDescriptorFetching, KeepsSilentAboutARecordsMissingOrUncoercibleParameter) {
    EXPECT_EQ(StAEDescriptor(mRecord.mDesc, 'none', typeSInt32).mDesc.descriptorType, typeNull);
    EXPECT_EQ(StAEDescriptor(mRecord.mDesc, 'text', typeSInt32).mDesc.descriptorType, typeNull);
}

TEST_F(StAEDescriptorFetching, LooksIntoOtherRecordTypes) {
    StAEDescriptor custom;
    ASSERT_EQ(AECoerceDesc(mRecord, 'cust', custom), noErr);
    EXPECT_EQ(BytesOf(StAEDescriptor(custom.mDesc, 'numb', typeSInt32)), (Bytes{0, 0, 0, 5}));
    EXPECT_EQ(StAEDescriptor(custom.mDesc, 'none', typeSInt32).mDesc.descriptorType, typeNull);
    EXPECT_EQ(CodeThrownBy([&] { StAEDescriptor(custom.mDesc, 'text', typeSInt32); }),
              errAECoercionFail);
}

TEST_F(StAEDescriptorFetching, ThrowsForWhatIsNoRecord) {
    const StAEDescriptor number(SInt32{1});
    EXPECT_EQ(CodeThrownBy([&] { StAEDescriptor(number.mDesc, 'numb', typeSInt32); }),
              errAECoercionFail);
}

TEST_F(StAEDescriptorFetching, ARequiredParameterMustBeThere) {
    StAEDescriptor fetched(SInt32{9});
    fetched.GetParamDesc(mRecord, 'numb', typeSInt32);
    EXPECT_EQ(BytesOf(fetched), (Bytes{0, 0, 0, 5}));
    EXPECT_EQ(CodeThrownBy([&] { fetched.GetParamDesc(mRecord, 'none', typeSInt32); }),
              errAEDescNotFound);
    EXPECT_EQ(fetched.mDesc.descriptorType, typeNull);
}

TEST_F(StAEDescriptorFetching, AnOptionalParameterMayBeMissingButNotWrong) {
    StAEDescriptor fetched(SInt32{9});
    fetched.GetOptionalParamDesc(mRecord, 'none', typeSInt32);
    EXPECT_EQ(fetched.mDesc.descriptorType, typeNull);
    EXPECT_EQ(CodeThrownBy([&] { fetched.GetOptionalParamDesc(mRecord, 'text', typeSInt32); }),
              errAECoercionFail);
}

}  // namespace
