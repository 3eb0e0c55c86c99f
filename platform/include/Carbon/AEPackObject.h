// Building object specifiers and the descriptors that go into them.
//
// Inputs are copied. `disposeInputs` true disposes the descriptors given, whether or not the call
// succeeds, and leaves the caller's copies null. The result is a record of the type named and is
// the null descriptor after a failure.
#ifndef CARBON_AEPACKOBJECT_H
#define CARBON_AEPACKOBJECT_H

#include <Carbon/AEDataModel.h>

PLATFORM_DECLARATIONS_BEGIN

// 'long', 4 bytes: positive counts from the beginning, negative from the end.
OSErr CreateOffsetDescriptor(SInt32 theOffset, AEDesc* theDescriptor);

// 'cmpd': compares two operands. `comparisonOperator` is kAEEquals or one of its kin.
OSErr CreateCompDescriptor(DescType comparisonOperator, AEDesc* operand1, AEDesc* operand2,
                           Boolean disposeInputs, AEDesc* theDescriptor);

// 'logi': joins a list of terms. `theLogicOperator` is kAEAND, kAEOR or kAENOT.
OSErr CreateLogicalDescriptor(AEDescList* theLogicalTerms, DescType theLogicOperator,
                              Boolean disposeInputs, AEDesc* theDescriptor);

// 'obj ': the elements of a class, or the property, that `keyData` picks from the container. A
// container that is the null descriptor means the application; a null pointer is a paramErr.
OSErr CreateObjSpecifier(DescType desiredClass, AEDesc* theContainer, DescType keyForm,
                         AEDesc* keyData, Boolean disposeInputs, AEDesc* objSpecifier);

// 'rang': from one object to another, both included.
OSErr CreateRangeDescriptor(AEDesc* rangeStart, AEDesc* rangeStop, Boolean disposeInputs,
                            AEDesc* theDescriptor);

PLATFORM_DECLARATIONS_END

#endif
