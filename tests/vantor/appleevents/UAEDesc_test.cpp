// Composite descriptors: records, growing lists, ranges, insertion locations.
#include "vantor/appleevents/UAEDesc.h"

#include <gtest/gtest.h>

#include "support/PascalString.h"
#include "support/ScriptedRecorder/EventText.h"
#include "support/Thrown.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace {

TEST(UAEDesc, MakesARecordOfNull) {
    StAEDescriptor record;
    UAEDesc::AddKeyDesc(record, 'one ', StAEDescriptor(SInt32{1}));
    UAEDesc::AddKeyDesc(record, 'two ', StAEDescriptor(Boolean{1}));
    UAEDesc::AddKeyDesc(record, 'one ', StAEDescriptor(SInt16{3}));
    EXPECT_EQ(TextOfDesc(record), "reco {one =shor 0003; two =bool 01}");
}

TEST(UAEDesc, AddingAKeyToANumberThrows) {
    StAEDescriptor number(SInt32{1});
    EXPECT_EQ(CodeThrownBy([&] { UAEDesc::AddKeyDesc(number, 'one ', number); }), errAENotAEDesc);
}

TEST(UAEDesc, KeepsASingleItemFromBeingAList) {
    StAEDescriptor list;
    UAEDesc::AddDesc(list, 7, StAEDescriptor(SInt32{1}));
    EXPECT_EQ(TextOfDesc(list), "long 00000001");
    UAEDesc::AddDesc(list, 0, StAEDescriptor(SInt32{2}));
    EXPECT_EQ(TextOfDesc(list), "list [long 00000001, long 00000002]");
    UAEDesc::AddDesc(list, 1, StAEDescriptor(SInt32{9}));
    EXPECT_EQ(TextOfDesc(list), "list [long 00000009, long 00000002]");
}

TEST(UAEDesc, AnIndexBeyondTheListThrows) {
    StAEDescriptor list;
    ASSERT_EQ(AECreateList(nullptr, 0, false, list), noErr);
    EXPECT_EQ(CodeThrownBy([&] { UAEDesc::AddDesc(list, 2, StAEDescriptor(SInt32{1})); }),
              errAEIllegalIndex);
}

TEST(UAEDesc, AddsBytesAsItems) {
    StAEDescriptor list;
    UAEDesc::AddPtr(list, 0, typeChar, "a", 1);
    UAEDesc::AddPtr(list, 0, typeChar, "b", 1);
    EXPECT_EQ(TextOfDesc(list), "list [TEXT 61, TEXT 62]");
}

TEST(UAEDesc, ARangeNamesBothBoundsInTheCurrentContainer) {
    StAEDescriptor application, range;
    UAEDesc::MakeRange(application, 'Disc', 3, 5, range);
    const std::string bound = "obj  {want=type 'Disc'; from=ccnt; form=enum 'indx'; seld=long ";
    EXPECT_EQ(TextOfDesc(range),
              "obj  {want=type 'Disc'; from=null; form=enum 'rang'; seld=rang {star=" + bound +
                  "00000003}; stop=" + bound + "00000005}}}");
}

TEST(UAEDesc, KeepsBoundsThatRunBackwardsASingleElement) {
    StAEDescriptor application;
    for (const SInt32 end : {3, 5}) {
        StAEDescriptor element;
        UAEDesc::MakeRange(application, 'Disc', 5, end, element);
        EXPECT_EQ(TextOfDesc(element),
                  "obj  {want=type 'Disc'; from=null; form=enum 'indx'; seld=long 00000005}");
    }
}

TEST(UAEDesc, AnInsertionLocationReplacesWhatWasThere) {
    StAEDescriptor application, location(SInt32{1});
    UAEDesc::MakeInsertionLoc(application, kAEEnd, location);
    EXPECT_EQ(TextOfDesc(location), "insl {kobj=null; kpos=enum 'end '}");
}

TEST(UAEDesc, MakesABoolean) {
    StAEDescriptor truth;
    UAEDesc::MakeBooleanDesc(1, truth);
    EXPECT_EQ(TextOfDesc(truth), "bool 01");
}

}  // namespace
