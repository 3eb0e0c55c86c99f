// Building object specifiers and their parts.
#include <Carbon/AEObjects.h>
#include <Carbon/AEPackObject.h>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/data/access.h"

namespace carbon {
namespace {

// Puts together a record of the given type, key by key.
class RecordBuilder {
  public:
    RecordBuilder() : mStorage(Storage::Empty(Kind::Record, typeAERecord)) {}

    void AddCode(AEKeyword inKey, DescType inType, UInt32 inCode) {
        UInt8 bytes[sizeof inCode];
        WriteBigEndian(bytes, inCode);
        mStorage->Append(inKey, {inType, Kind::Leaf, bytes});
    }
    void AddDesc(AEKeyword inKey, const AEDesc& inDesc) {
        const Item item = ItemOf(inDesc);
        if (Storage::FitsNesting(item))
            mStorage->Append(inKey, item);
        else
            mResult = paramErr;
    }
    OSErr Finish(DescType inType, AEDesc* outDesc) {
        if (mResult == noErr) *outDesc = {inType, HandleOf(std::move(mStorage))};
        return mResult;
    }

  private:
    std::unique_ptr<Storage> mStorage;
    OSErr mResult = noErr;
};

void DisposeIf(Boolean inDispose, AEDesc* ioDesc) {
    if (inDispose && ioDesc) AEDisposeDesc(ioDesc);
}

OSErr MakeSpecifier(DescType inClass, const AEDesc* inContainer, DescType inForm,
                    const AEDesc* inKeyData, AEDesc* outDesc) {
    if (!inContainer || !inKeyData) return paramErr;
    RecordBuilder record;
    record.AddCode(keyAEDesiredClass, typeType, inClass);
    record.AddDesc(keyAEContainer, *inContainer);
    record.AddCode(keyAEKeyForm, typeEnumerated, inForm);
    record.AddDesc(keyAEKeyData, *inKeyData);
    return record.Finish(typeObjectSpecifier, outDesc);
}

OSErr MakeComparison(DescType inOperator, const AEDesc* inLeft, const AEDesc* inRight,
                     AEDesc* outDesc) {
    if (!inLeft || !inRight) return paramErr;
    RecordBuilder record;
    record.AddCode(keyAECompOperator, typeEnumerated, inOperator);
    record.AddDesc(keyAEObject1, *inLeft);
    record.AddDesc(keyAEObject2, *inRight);
    return record.Finish(typeCompDescriptor, outDesc);
}

OSErr MakeLogic(const AEDescList* inTerms, DescType inOperator, AEDesc* outDesc) {
    if (!inTerms) return paramErr;
    RecordBuilder record;
    record.AddCode(keyAELogicalOperator, typeEnumerated, inOperator);
    record.AddDesc(keyAELogicalTerms, *inTerms);
    return record.Finish(typeLogicalDescriptor, outDesc);
}

OSErr MakeRange(const AEDesc* inStart, const AEDesc* inStop, AEDesc* outDesc) {
    if (!inStart || !inStop) return paramErr;
    RecordBuilder record;
    record.AddDesc(keyAERangeStart, *inStart);
    record.AddDesc(keyAERangeStop, *inStop);
    return record.Finish(typeRangeDescriptor, outDesc);
}

// Builds into a descriptor of our own first: the result may be one of the inputs.
template <typename Body>
OSErr Building(AEDesc* outDesc, Boolean inDispose, AEDesc* ioFirst, AEDesc* ioSecond, Body inBody) {
    AEDesc built = kNullDesc;
    const OSErr result = Guarded([&] { return inBody(&built); });
    DisposeIf(inDispose, ioFirst);
    DisposeIf(inDispose, ioSecond);
    if (outDesc)
        *outDesc = built;
    else
        AEDisposeDesc(&built);
    return outDesc ? result : OSErr(paramErr);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSErr CreateOffsetDescriptor(SInt32 theOffset, AEDesc* theDescriptor) {
    UInt8 bytes[sizeof theOffset];
    WriteBigEndian(bytes, theOffset);
    return AECreateDesc(typeSInt32, bytes, sizeof bytes, theDescriptor);
}

OSErr CreateCompDescriptor(DescType comparisonOperator, AEDesc* operand1, AEDesc* operand2,
                           Boolean disposeInputs, AEDesc* theDescriptor) {
    return Building(theDescriptor, disposeInputs, operand1, operand2, [&](AEDesc* outDesc) {
        return MakeComparison(comparisonOperator, operand1, operand2, outDesc);
    });
}

OSErr CreateLogicalDescriptor(AEDescList* theLogicalTerms, DescType theLogicOperator,
                              Boolean disposeInputs, AEDesc* theDescriptor) {
    return Building(theDescriptor, disposeInputs, theLogicalTerms, nullptr, [&](AEDesc* outDesc) {
        return MakeLogic(theLogicalTerms, theLogicOperator, outDesc);
    });
}

OSErr CreateObjSpecifier(DescType desiredClass, AEDesc* theContainer, DescType keyForm,
                         AEDesc* keyData, Boolean disposeInputs, AEDesc* objSpecifier) {
    return Building(objSpecifier, disposeInputs, theContainer, keyData, [&](AEDesc* outDesc) {
        return MakeSpecifier(desiredClass, theContainer, keyForm, keyData, outDesc);
    });
}

OSErr CreateRangeDescriptor(AEDesc* rangeStart, AEDesc* rangeStop, Boolean disposeInputs,
                            AEDesc* theDescriptor) {
    return Building(theDescriptor, disposeInputs, rangeStart, rangeStop,
                    [&](AEDesc* outDesc) { return MakeRange(rangeStart, rangeStop, outDesc); });
}
