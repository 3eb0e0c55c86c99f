// Owns the comparisons of names (by the file system's tables) and texts (for a reader).
#include <Carbon/StringCompare.h>

#include <algorithm>
#include <span>

#include "text_utilities/folding.h"

namespace carbon {
namespace {

using Bytes = std::span<const UInt8>;

Bytes BytesOf(ConstStr255Param inString) {
    return {inString + 1, inString[0]};
}

Bytes BytesOf(const void* inText, SInt16 inLength) {
    return {static_cast<const UInt8*>(inText), size_t(std::max<SInt16>(inLength, 0))};
}

SInt16 Order(size_t inFirst, size_t inSecond) {
    return SInt16(inFirst < inSecond ? -1 : inFirst > inSecond);
}

// Where both are long enough to tell: the first difference in what `inValue` makes of the bytes.
template <class Value>
SInt16 CompareCommonPart(Bytes inFirst, Bytes inSecond, Value inValue) {
    const size_t length = std::min(inFirst.size(), inSecond.size());
    for (size_t i = 0; i < length; ++i)
        if (const SInt16 order = Order(inValue(inFirst[i]), inValue(inSecond[i]))) return order;
    return 0;
}

template <class Value>
SInt16 Compare(Bytes inFirst, Bytes inSecond, Value inValue) {
    const SInt16 order = CompareCommonPart(inFirst, inSecond, inValue);
    return order ? order : Order(inFirst.size(), inSecond.size());
}

SInt16 CompareNames(Bytes inFirst, Bytes inSecond, const ByteTable& inFolding) {
    // The hard space and the space share a position, so they are equal whatever counts.
    return Compare(inFirst, inSecond, [&](UInt8 c) { return kNameOrder[inFolding[c]]; });
}

SInt16 ComparePrimaries(Bytes inFirst, Bytes inSecond) {
    return Compare(inFirst, inSecond, [](UInt8 c) { return kTextPrimaries[c]; });
}

SInt16 CompareTexts(Bytes inFirst, Bytes inSecond) {
    if (const SInt16 order = ComparePrimaries(inFirst, inSecond)) return order;
    return CompareCommonPart(inFirst, inSecond, [](UInt8 c) { return kTextSecondaries[c]; });
}

// Kept: 0 means alike, the other way round than EqualString.
SInt16 Differ(Bytes inFirst, Bytes inSecond) {
    return ComparePrimaries(inFirst, inSecond) != 0;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

Boolean EqualString(ConstStr255Param str1, ConstStr255Param str2, Boolean caseSensitive,
                    Boolean diacSensitive) {
    return RelString(str1, str2, caseSensitive, diacSensitive) == 0;
}

SInt16 RelString(ConstStr255Param str1, ConstStr255Param str2, Boolean caseSensitive,
                 Boolean diacSensitive) {
    return CompareNames(BytesOf(str1), BytesOf(str2), NameFolding(caseSensitive, diacSensitive));
}

SInt16 CompareText(const void* aPtr, const void* bPtr, SInt16 aLen, SInt16 bLen, Handle) {
    return CompareTexts(BytesOf(aPtr, aLen), BytesOf(bPtr, bLen));
}

SInt16 CompareString(ConstStr255Param aStr, ConstStr255Param bStr, Handle) {
    return CompareTexts(BytesOf(aStr), BytesOf(bStr));
}

SInt16 IdenticalText(const void* aPtr, const void* bPtr, SInt16 aLen, SInt16 bLen, Handle) {
    return Differ(BytesOf(aPtr, aLen), BytesOf(bPtr, bLen));
}

SInt16 IdenticalString(ConstStr255Param aStr, ConstStr255Param bStr, Handle) {
    return Differ(BytesOf(aStr), BytesOf(bStr));
}
