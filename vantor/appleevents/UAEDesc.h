// Composite descriptors.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// What is put in is copied and stays the caller's. Out descriptors are the caller's too; they are
// overwritten, not disposed, unless a call says so. Failures are thrown as LException.
class VANTOR_EXPORT UAEDesc {
  public:
    // A null `ioRecord` becomes a record first.
    static void AddKeyDesc(AEDesc* ioRecord, AEKeyword inKey, const AEDesc& inDesc);

    // A list that grows out of a single item: null becomes a copy of the item itself, an item
    // becomes a list of both. `inIndex` counts from 1, 0 appends; it is ignored for the first item.
    static void AddDesc(AEDesc* ioList, SInt32 inIndex, const AEDesc& inDesc);
    static void AddPtr(AEDesc* ioList, SInt32 inIndex, DescType inType, const void* inData,
                       Size inSize);

    // Specifies elements `inStart` to `inEnd` of class `inKind`, or only the one at `inStart` when
    // `inEnd` is not beyond it.
    static void MakeRange(const AEDesc& inSuperSpecifier, DescType inKind, SInt32 inStart,
                          SInt32 inEnd, AEDesc* outDesc);

    // `inPosition` is kAEBeginning, kAEEnd, kAEBefore, kAEAfter or kAEReplace. What `outDesc` held
    // is disposed.
    static void MakeInsertionLoc(const AEDesc& inTarget, DescType inPosition, AEDesc* outDesc);

    static void MakeBooleanDesc(Boolean inValue, AEDesc* outDesc);
};
