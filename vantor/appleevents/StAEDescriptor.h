// One descriptor, owned by a scope.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Starts as the null descriptor unless told otherwise and disposes what it holds at the end. Values
// are native; the descriptor made from them holds them big-endian. Failures of the Apple Event
// Manager are thrown as LException with its code. A C++ `bool` would be taken for a number: pass a
// Boolean.
class VANTOR_EXPORT StAEDescriptor {
  public:
    StAEDescriptor();
    StAEDescriptor(const StAEDescriptor& inOther);
    StAEDescriptor(DescType inType, const void* inData, Size inSize);  // bytes, copied as they are
    explicit StAEDescriptor(Boolean inValue);                          // 'bool'
    explicit StAEDescriptor(SInt16 inValue);                           // 'shor'
    explicit StAEDescriptor(SInt32 inValue);                           // 'long'
    explicit StAEDescriptor(OSType inValue);                           // 'type'
    explicit StAEDescriptor(ConstStringPtr inText);                    // 'TEXT', no length byte
    explicit StAEDescriptor(const FSSpec& inSpec);                     // 'fss ', 70 bytes

    // One parameter of an event or a record; null when it is missing. From an event or a record,
    // any other failure leaves null too; from anything else (an object specifier, say) it throws.
    StAEDescriptor(const AEDesc& inDesc, AEKeyword inKeyword,
                   DescType inDesiredType = typeWildCard);
    ~StAEDescriptor();

    StAEDescriptor& operator=(const StAEDescriptor& inOther) { return Assign(inOther); }

    operator AEDesc&() { return mDesc; }
    operator AEDesc*() { return &mDesc; }
    operator const AEDesc*() const { return &mDesc; }

    // Each disposes what is held first, so a failure leaves null. They return this object.
    StAEDescriptor& Assign(const StAEDescriptor& inOther);
    StAEDescriptor& Assign(Boolean inValue);
    StAEDescriptor& Assign(SInt16 inValue);
    StAEDescriptor& Assign(SInt32 inValue);
    StAEDescriptor& Assign(OSType inValue);
    StAEDescriptor& Assign(ConstStringPtr inText);
    StAEDescriptor& Assign(const FSSpec& inSpec);

    // Back to the null descriptor.
    void Dispose();

    // A parameter that must be there; -1701 is thrown when it is not.
    void GetParamDesc(const AEDesc& inDesc, AEKeyword inKeyword,
                      DescType inDesiredType = typeWildCard);
    // A parameter that may be missing: null then. Other failures are thrown.
    void GetOptionalParamDesc(const AEDesc& inDesc, AEKeyword inKeyword,
                              DescType inDesiredType = typeWildCard);

    AEDesc mDesc;

  private:
    void InitToNull();
    StAEDescriptor& AssignData(DescType inType, const void* inData, Size inSize);
    void FetchFromCoerced(const AEDesc& inDesc, AEKeyword inKeyword, DescType inDesiredType);
};
