// Building records, growing lists, ranges and insertion locations.
#include "vantor/appleevents/UAEDesc.h"

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

namespace {

// The item becomes the first of a list.
void BecomeList(AEDesc* ioItem) {
    StAEDescriptor item;
    ThrowIfError(AEDuplicateDesc(ioItem, item));
    ThrowIfError(AEDisposeDesc(ioItem));
    ThrowIfError(AECreateList(nullptr, 0, false, ioItem));
    ThrowIfError(AEPutDesc(ioItem, 0, item));
}

void MakeElement(DescType inKind, AEDesc* inContainer, SInt32 inIndex, AEDesc* outDesc) {
    StAEDescriptor offset;
    ThrowIfError(CreateOffsetDescriptor(inIndex, offset));
    ThrowIfError(
        CreateObjSpecifier(inKind, inContainer, formAbsolutePosition, offset, false, outDesc));
}

}  // namespace

void UAEDesc::AddKeyDesc(AEDesc* ioRecord, AEKeyword inKey, const AEDesc& inDesc) {
    if (ioRecord->descriptorType == typeNull) {
        ThrowIfError(AECreateList(nullptr, 0, true, ioRecord));
    }
    ThrowIfError(AEPutParamDesc(ioRecord, inKey, &inDesc));
}

void UAEDesc::AddDesc(AEDesc* ioList, SInt32 inIndex, const AEDesc& inDesc) {
    if (ioList->descriptorType == typeNull) {
        ThrowIfError(AEDuplicateDesc(&inDesc, ioList));  // Kept: one item is no list.
        return;
    }
    if (ioList->descriptorType != typeAEList) BecomeList(ioList);
    ThrowIfError(AEPutDesc(ioList, inIndex, &inDesc));
}

void UAEDesc::AddPtr(AEDesc* ioList, SInt32 inIndex, DescType inType, const void* inData,
                     Size inSize) {
    AddDesc(ioList, inIndex, StAEDescriptor(inType, inData, inSize));
}

void UAEDesc::MakeRange(const AEDesc& inSuperSpecifier, DescType inKind, SInt32 inStart,
                        SInt32 inEnd, AEDesc* outDesc) {
    AEDesc super = inSuperSpecifier;  // borrowed: the builders only read it
    if (inEnd <= inStart) {
        MakeElement(inKind, &super, inStart, outDesc);  // Kept: bounds are never swapped.
        return;
    }
    StAEDescriptor current(typeCurrentContainer, nullptr, 0);
    StAEDescriptor start, end, range;
    MakeElement(inKind, current, inStart, start);
    MakeElement(inKind, current, inEnd, end);
    ThrowIfError(CreateRangeDescriptor(start, end, false, range));
    ThrowIfError(CreateObjSpecifier(inKind, &super, formRange, range, false, outDesc));
}

void UAEDesc::MakeInsertionLoc(const AEDesc& inTarget, DescType inPosition, AEDesc* outDesc) {
    const DescType position = BigEndianFromNative(inPosition);
    StAEDescriptor record;
    ThrowIfError(AECreateList(nullptr, 0, true, record));
    ThrowIfError(AEPutParamDesc(record, keyAEObject, &inTarget));
    ThrowIfError(AEPutParamPtr(record, keyAEPosition, typeEnumerated, &position, sizeof position));
    ThrowIfError(AEDisposeDesc(outDesc));
    ThrowIfError(AECoerceDesc(record, typeInsertionLoc, outDesc));
}

void UAEDesc::MakeBooleanDesc(Boolean inValue, AEDesc* outDesc) {
    ThrowIfError(AECreateDesc(typeBoolean, &inValue, sizeof inValue, outDesc));
}
