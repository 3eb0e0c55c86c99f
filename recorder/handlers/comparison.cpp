// Owns how two operands are compared. The toolkit does it, for texts as far as MacRoman and 255
// characters go.
#include "handlers/comparison.h"

#include "handlers/properties.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

constexpr Size kLongestCompared = 255;

bool IsText(DescType inType) {
    return inType == typeChar || inType == typePString || inType == typeCString ||
           inType == typeUnicodeText || inType == typeUTF8Text;
}

void TakeOperand(RecorderState& inState, const AEDesc& inOperand, StAEDescriptor& outValue) {
    if (inOperand.descriptorType == DescType(cProperty))
        return GetProperty(inState, ObjectFrom(inOperand), outValue);
    ThrowIfError(AEDuplicateDesc(&inOperand, outValue));
}

// Whether it is no longer or stranger than what the toolkit compares; what MacRoman lacks does not
// come back from there.
bool MakePlain(StAEDescriptor& ioText) {
    StAEDescriptor plain;
    if (AECoerceDesc(ioText, typeChar, plain) != noErr) return false;
    if (AEGetDescDataSize(plain) > kLongestCompared || TextFrom(plain) != TextFrom(ioText))
        return false;
    std::swap(ioText.mDesc, plain.mDesc);
    return true;
}

// Byte by byte, so that no two different names are the same.
bool CompareExactly(const std::string& inLeft, DescType inOperator, const std::string& inRight) {
    switch (inOperator) {
        case kAEEquals:
            return inLeft == inRight;
        case kAEBeginsWith:
            return inLeft.starts_with(inRight);
        case kAEEndsWith:
            return inLeft.ends_with(inRight);
        case kAEContains:
            return inLeft.find(inRight) != std::string::npos;
        default:
            LException::Throw(errAETypeError);
    }
}

}  // namespace

bool CompareOperands(RecorderState& inState, const AEDesc& inLeft, DescType inOperator,
                     const AEDesc& inRight) {
    StAEDescriptor left, right;
    TakeOperand(inState, inLeft, left);
    TakeOperand(inState, inRight, right);
    const bool leftIsText = IsText(left.mDesc.descriptorType);
    const bool rightIsText = IsText(right.mDesc.descriptorType);
    const bool leftIsPlain = !leftIsText || MakePlain(left);
    const bool rightIsPlain = !rightIsText || MakePlain(right);
    if (leftIsText && rightIsText && !(leftIsPlain && rightIsPlain))
        return CompareExactly(TextFrom(left), inOperator, TextFrom(right));
    return UAppleEventsMgr::CompareDescriptors(left, inOperator, right);
}

}  // namespace recorder
