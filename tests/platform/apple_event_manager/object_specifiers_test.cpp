// The builders of object specifiers: keys, types and order, and whose the inputs are afterwards.
#include "platform/apple_event_manager/Desc.h"

namespace {

void ExpectItem(const Desc& inRecord, AEKeyword inKey, DescType inType, std::string_view inBytes) {
    const Desc item = Param(inRecord, inKey);
    EXPECT_EQ(item.Type(), inType);
    EXPECT_EQ(item.Bytes(), inBytes);
}

}  // namespace

TEST(ObjectSpecifier, HoldsClassContainerFormAndKeyData) {
    Desc container, key = Code(typeType, 'pnam'), specifier;
    ASSERT_EQ(CreateObjSpecifier(cProperty, &container, formPropertyID, &key, false, &specifier),
              noErr);
    EXPECT_EQ(specifier.Type(), DescType(typeObjectSpecifier));
    EXPECT_TRUE(AECheckIsRecord(&specifier));
    EXPECT_EQ(Keys(specifier), "wantfromformseld");
    ExpectItem(specifier, keyAEDesiredClass, typeType, "prop");
    EXPECT_TRUE(Param(specifier, keyAEContainer).IsNull());
    ExpectItem(specifier, keyAEKeyForm, typeEnumerated, "prop");
    ExpectItem(specifier, keyAEKeyData, typeType, "pnam");
    EXPECT_EQ(key.Bytes(), "pnam");
}

TEST(ObjectSpecifier, NestsInItsContainer) {
    Desc none, one = Long(1), disc, key = Code(typeType, 'sCod'), specifier;
    ASSERT_EQ(CreateObjSpecifier('Disc', &none, formAbsolutePosition, &one, false, &disc), noErr);
    ASSERT_EQ(CreateObjSpecifier(cProperty, &disc, formPropertyID, &key, true, &specifier), noErr);
    EXPECT_TRUE(disc.IsNull());
    EXPECT_TRUE(key.IsNull());
    ExpectItem(Param(specifier, keyAEContainer), keyAEKeyData, typeSInt32, Big(SInt32(1)));
}

TEST(ObjectSpecifier, DisposesItsInputsEvenWhenItFails) {
    Desc key = Long(1), container = Text("x"), specifier = Text("old");
    EXPECT_EQ(
        CreateObjSpecifier('Disc', nullptr, formAbsolutePosition, &key, true, specifier.Out()),
        paramErr);
    EXPECT_TRUE(key.IsNull());
    EXPECT_TRUE(specifier.IsNull());
    EXPECT_EQ(
        CreateObjSpecifier('Disc', &container, formAbsolutePosition, nullptr, true, &specifier),
        paramErr);
    EXPECT_TRUE(container.IsNull());
    Desc kept = Long(1);
    EXPECT_EQ(CreateObjSpecifier('Disc', &kept, formAbsolutePosition, &kept, false, nullptr),
              paramErr);
    EXPECT_EQ(kept.Bytes(), Big(SInt32(1)));
}

TEST(ObjectSpecifier, MayReplaceOneOfItsInputs) {
    Desc object, one = Long(1);
    ASSERT_EQ(CreateObjSpecifier('Disc', &object, formAbsolutePosition, &one, true, &object),
              noErr);
    EXPECT_EQ(object.Type(), DescType(typeObjectSpecifier));
}

TEST(ObjectSpecifier, RefusesToNestTooDeep) {
    Desc object;
    OSErr result = noErr;
    int depth = 0;
    for (; result == noErr && depth < 100; ++depth) {
        Desc one = Long(1);
        result = CreateObjSpecifier('Disc', &object, formAbsolutePosition, &one, true, &object);
    }
    EXPECT_EQ(result, paramErr);
    EXPECT_EQ(depth, 33);
    EXPECT_TRUE(object.IsNull());
}

TEST(OffsetDescriptor, IsABigEndianLong) {
    Desc offset;
    ASSERT_EQ(CreateOffsetDescriptor(-2, &offset), noErr);
    EXPECT_EQ(offset.Type(), DescType(typeSInt32));
    EXPECT_EQ(offset.Bytes(), "\xFF\xFF\xFF\xFE");
    EXPECT_EQ(CreateOffsetDescriptor(1, nullptr), paramErr);
}

TEST(RangeDescriptor, HoldsStartAndStop) {
    Desc start = Long(1), stop = Long(5), range;
    ASSERT_EQ(CreateRangeDescriptor(&start, &stop, true, &range), noErr);
    EXPECT_EQ(range.Type(), DescType(typeRangeDescriptor));
    EXPECT_EQ(Keys(range), "starstop");
    ExpectItem(range, keyAERangeStop, typeSInt32, Big(SInt32(5)));
    EXPECT_TRUE(start.IsNull());
    EXPECT_TRUE(stop.IsNull());
    EXPECT_EQ(CreateRangeDescriptor(nullptr, &stop, true, range.Out()), paramErr);
}

TEST(CompDescriptor, HoldsOperatorAndOperands) {
    Desc left('exmn', ""), right = Long(5), comparison;
    ASSERT_EQ(CreateCompDescriptor(kAEGreaterThan, &left, &right, false, &comparison), noErr);
    EXPECT_EQ(comparison.Type(), DescType(typeCompDescriptor));
    EXPECT_EQ(Keys(comparison), "reloobj1obj2");
    ExpectItem(comparison, keyAECompOperator, typeEnumerated, ">   ");
    ExpectItem(comparison, keyAEObject1, typeObjectBeingExamined, "");
    ExpectItem(comparison, keyAEObject2, typeSInt32, Big(SInt32(5)));
}

TEST(LogicalDescriptor, HoldsOperatorAndTerms) {
    Desc terms = Longs({1, 2}), logic;
    ASSERT_EQ(CreateLogicalDescriptor(&terms, kAEAND, true, &logic), noErr);
    EXPECT_EQ(logic.Type(), DescType(typeLogicalDescriptor));
    EXPECT_EQ(Keys(logic), "logcterm");
    ExpectItem(logic, keyAELogicalOperator, typeEnumerated, "AND ");
    EXPECT_EQ(Count(Param(logic, keyAELogicalTerms)), 2);
    EXPECT_TRUE(terms.IsNull());
    EXPECT_EQ(CreateLogicalDescriptor(nullptr, kAEAND, false, logic.Out()), paramErr);
}
