// The comparisons that tests of the object model ask for.
#include <bit>
#include <cstring>

#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/appleevents/UExtractFromAEDesc.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

namespace {

template <typename T>
bool Compare(T inLeft, DescType inOperator, T inRight) {
    switch (inOperator) {
        case kAELessThan:
            return inLeft < inRight;
        case kAELessThanEquals:
            return inLeft <= inRight;
        case kAEEquals:
            return inLeft == inRight;
        case kAEGreaterThan:
            return inLeft > inRight;
        case kAEGreaterThanEquals:
            return inLeft >= inRight;
        default:
            return false;
    }
}

// The eight bytes of a value of a type that has so many.
UInt64 EightBytes(const AEDesc& inDesc, DescType inType) {
    UInt64 bytes = 0;
    UExtractFromAEDesc::TheData(inDesc, inType, &bytes, sizeof bytes);
    return NativeFromBigEndian(bytes);
}

bool CompareWide(const AEDesc& inLeft, DescType inOperator, const AEDesc& inRight,
                 DescType inType) {
    const auto left = SInt64(EightBytes(inLeft, inType));
    return Compare(left, inOperator, SInt64(EightBytes(inRight, inType)));
}

bool IsNumberOrDate(DescType inType) {
    switch (inType) {
        case typeSInt16:
        case typeSInt32:
        case typeMagnitude:
        case typeComp:
        case typeIEEE32BitFloatingPoint:
        case typeIEEE64BitFloatingPoint:
        case typeExtended:
        case typeLongDateTime:
            return true;
        default:
            return false;
    }
}

bool IsBoolean(DescType inType) {
    return inType == DescType(typeBoolean) || inType == DescType(typeTrue) ||
           inType == DescType(typeFalse);
}

bool IsFloat(const AEDesc& inDesc) {
    const DescType type = inDesc.descriptorType;
    return type == DescType(typeIEEE32BitFloatingPoint) ||
           type == DescType(typeIEEE64BitFloatingPoint) || type == DescType(typeExtended);
}

bool AreSameBooleans(const AEDesc& inLeft, const AEDesc& inRight) {
    Boolean left = false, right = false;
    UExtractFromAEDesc::TheBoolean(inLeft, left);
    UExtractFromAEDesc::TheBoolean(inRight, right);
    return left == right;
}

bool AreEqual(const AEDesc& inLeft, const AEDesc& inRight) {
    if (IsNumberOrDate(inLeft.descriptorType))
        return UAppleEventsMgr::CompareAsNumbers(inLeft, kAEEquals, inRight);
    if (IsBoolean(inLeft.descriptorType)) return AreSameBooleans(inLeft, inRight);
    return UAppleEventsMgr::CompareAsStrings(inLeft, kAEEquals, inRight);
}

// Whether the right string stands in the left one, from that character (from 0) on.
bool StandsAt(ConstStr255Param inLeft, int inAt, ConstStr255Param inRight) {
    const SInt16 length = inRight[0];
    return IdenticalText(inLeft + 1 + inAt, inRight + 1, length, length, nullptr) == 0;
}

bool Contains(ConstStr255Param inLeft, ConstStr255Param inRight) {
    for (int at = 0; at <= inLeft[0] - inRight[0]; ++at)
        if (StandsAt(inLeft, at, inRight)) return true;
    return false;
}

}  // namespace

bool UAppleEventsMgr::CompareDescriptors(const AEDesc& inLeft, DescType inComparisonOperator,
                                         const AEDesc& inRight) {
    switch (inComparisonOperator) {
        case kAEGreaterThan:
        case kAEGreaterThanEquals:
        case kAELessThan:
        case kAELessThanEquals:
            return CompareAsNumbers(inLeft, inComparisonOperator, inRight);
        case kAEEquals:
            return AreEqual(inLeft, inRight);
        case kAEBeginsWith:
        case kAEEndsWith:
        case kAEContains:
            return CompareAsStrings(inLeft, inComparisonOperator, inRight);
        default:
            LException::Throw(errAEEventNotHandled);
    }
}

bool UAppleEventsMgr::CompareAsNumbers(const AEDesc& inLeft, DescType inComparisonOperator,
                                       const AEDesc& inRight) {
    if (IsFloat(inLeft) || IsFloat(inRight))
        return CompareAsFloats(inLeft, inComparisonOperator, inRight);
    if (inLeft.descriptorType == DescType(typeLongDateTime) ||
        inRight.descriptorType == DescType(typeLongDateTime))
        return CompareAsDates(inLeft, inComparisonOperator, inRight);
    return CompareAsIntegers(inLeft, inComparisonOperator, inRight);
}

bool UAppleEventsMgr::CompareAsFloats(const AEDesc& inLeft, DescType inComparisonOperator,
                                      const AEDesc& inRight) {
    const auto left = std::bit_cast<double>(EightBytes(inLeft, typeIEEE64BitFloatingPoint));
    const auto right = std::bit_cast<double>(EightBytes(inRight, typeIEEE64BitFloatingPoint));
    return Compare(left, inComparisonOperator, right);
}

bool UAppleEventsMgr::CompareAsDates(const AEDesc& inLeft, DescType inComparisonOperator,
                                     const AEDesc& inRight) {
    return CompareWide(inLeft, inComparisonOperator, inRight, typeLongDateTime);
}

bool UAppleEventsMgr::CompareAsIntegers(const AEDesc& inLeft, DescType inComparisonOperator,
                                        const AEDesc& inRight) {
    return CompareWide(inLeft, inComparisonOperator, inRight, typeComp);
}

bool UAppleEventsMgr::CompareAsStrings(const AEDesc& inLeft, DescType inComparisonOperator,
                                       const AEDesc& inRight) {
    Str255 left, right;
    UExtractFromAEDesc::ThePString(inLeft, left, sizeof left);
    UExtractFromAEDesc::ThePString(inRight, right, sizeof right);
    if (left[0] < right[0]) return false;  // Kept: for every operator.
    switch (inComparisonOperator) {
        case kAEEquals:
            return IdenticalString(left, right, nullptr) == 0;
        case kAEBeginsWith:
            return StandsAt(left, 0, right);
        case kAEEndsWith:
            return StandsAt(left, left[0] - right[0], right);
        case kAEContains:
            return Contains(left, right);
        default:
            return false;
    }
}
