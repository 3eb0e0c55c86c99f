// Resolving object specifiers: from the description of an object to the application's own token.
//
// An application installs accessors, which find elements or properties in a container, and, for
// tests, callbacks that count and compare. A token is a descriptor of any type and content that the
// application chooses. Tables and callbacks belong to the calling process.
#ifndef CARBON_AEOBJECTS_H
#define CARBON_AEOBJECTS_H

#include <Carbon/AEDataModel.h>

// Operators and ordinals.
enum {
    kAEAND = 'AND ',
    kAEOR = 'OR  ',
    kAENOT = 'NOT ',
    kAEFirst = 'firs',
    kAELast = 'last',
    kAEMiddle = 'midd',
    kAEAny = 'any ',
    kAEAll = 'all ',
    kAENext = 'next',
    kAEPrevious = 'prev',
    keyAECompOperator = 'relo',
    keyAELogicalTerms = 'term',
    keyAELogicalOperator = 'logc',
    keyAEObject1 = 'obj1',
    keyAEObject2 = 'obj2'
};
// Keys of specifiers and ranges.
enum {
    keyAEDesiredClass = 'want',
    keyAEContainer = 'from',
    keyAEKeyForm = 'form',
    keyAEKeyData = 'seld',
    keyAERangeStart = 'star',
    keyAERangeStop = 'stop',
    keyAEIndex = 'kidx',
    keyAETest = 'ktst',
    keyAEWhoseRangeStart = 'wstr',
    keyAEWhoseRangeStop = 'wstp'
};
// Key forms.
enum {
    formAbsolutePosition = 'indx',
    formRelativePosition = 'rele',
    formTest = 'test',
    formRange = 'rang',
    formPropertyID = 'prop',
    formName = 'name',
    formUniqueID = 'ID  ',
    formWhose = 'whos'
};
// Types of the object model.
enum {
    typeObjectSpecifier = 'obj ',
    typeObjectBeingExamined = 'exmn',
    typeCurrentContainer = 'ccnt',
    typeToken = 'toke',
    typeRelativeDescriptor = 'rel ',
    typeAbsoluteOrdinal = 'abso',
    typeIndexDescriptor = 'inde',
    typeRangeDescriptor = 'rang',
    typeLogicalDescriptor = 'logi',
    typeCompDescriptor = 'cmpd',
    typeOSLTokenList = 'ostl',
    typeWhoseDescriptor = 'whos',
    typeWhoseRange = 'wrng'
};
// Flags of AEResolve. kAEIDoMarking works where mark callbacks are set.
enum {
    kAEIDoMinimum = 0x0000,
    kAEIDoWhose = 0x0001,             // the accessors take tests themselves
    kAEIDoMarking = 0x0004,           // matches are marked, see the mark callbacks
    kAEPassSubDescs = 0x0008,         // accessors get unresolved descriptors inside key data
    kAEResolveNestedLists = 0x0010,   // lists of containers are walked item by item
    kAEHandleSimpleRanges = 0x0020,   // ranges between plain positions come as positions
    kAEUseRelativeIterators = 0x0040  // tests step by next instead of by position
};

// Finds in `container` what is meant and makes its token.
typedef OSErr (*OSLAccessorProcPtr)(DescType desiredClass, const AEDesc* container,
                                    DescType containerClass, DescType form,
                                    const AEDesc* selectionData, AEDesc* value,
                                    SInt32 accessorRefcon);
// Compares two tokens or values; `result` is whether `oper` holds between them.
typedef OSErr (*OSLCompareProcPtr)(DescType oper, const AEDesc* obj1, const AEDesc* obj2,
                                   Boolean* result);
// Counts the elements of a class in a container.
typedef OSErr (*OSLCountProcPtr)(DescType desiredType, DescType containerClass,
                                 const AEDesc* container, SInt32* result);
// Disposes a token; errAEEventNotHandled leaves it to AEDisposeDesc.
typedef OSErr (*OSLDisposeTokenProcPtr)(AEDesc* unneededToken);
// Makes an empty mark token for elements of a class.
typedef OSErr (*OSLGetMarkTokenProcPtr)(const AEDesc* dContainerToken, DescType containerClass,
                                        AEDesc* result);
// Gives the place where the descriptor that an error is about is noted.
typedef OSErr (*OSLGetErrDescProcPtr)(AEDesc** appDescPtr);
// Adds an object to a mark token; marks count from 1.
typedef OSErr (*OSLMarkProcPtr)(const AEDesc* dToken, const AEDesc* markToken, SInt32 index);
// Keeps only the marks from newStart to newStop.
typedef OSErr (*OSLAdjustMarksProcPtr)(SInt32 newStart, SInt32 newStop, const AEDesc* markToken);

typedef OSLAccessorProcPtr OSLAccessorUPP;
typedef OSLCompareProcPtr OSLCompareUPP;
typedef OSLCountProcPtr OSLCountUPP;
typedef OSLDisposeTokenProcPtr OSLDisposeTokenUPP;
typedef OSLGetMarkTokenProcPtr OSLGetMarkTokenUPP;
typedef OSLGetErrDescProcPtr OSLGetErrDescUPP;
typedef OSLMarkProcPtr OSLMarkUPP;
typedef OSLAdjustMarksProcPtr OSLAdjustMarksUPP;

PLATFORM_DECLARATIONS_BEGIN

// Plain pointers, as in AEDataModel.h.
OSLAccessorUPP NewOSLAccessorUPP(OSLAccessorProcPtr userRoutine);
OSLCompareUPP NewOSLCompareUPP(OSLCompareProcPtr userRoutine);
OSLCountUPP NewOSLCountUPP(OSLCountProcPtr userRoutine);
OSLDisposeTokenUPP NewOSLDisposeTokenUPP(OSLDisposeTokenProcPtr userRoutine);
OSLGetMarkTokenUPP NewOSLGetMarkTokenUPP(OSLGetMarkTokenProcPtr userRoutine);
OSLGetErrDescUPP NewOSLGetErrDescUPP(OSLGetErrDescProcPtr userRoutine);
OSLMarkUPP NewOSLMarkUPP(OSLMarkProcPtr userRoutine);
OSLAdjustMarksUPP NewOSLAdjustMarksUPP(OSLAdjustMarksProcPtr userRoutine);
void DisposeOSLAccessorUPP(OSLAccessorUPP userUPP);
void DisposeOSLCompareUPP(OSLCompareUPP userUPP);
void DisposeOSLCountUPP(OSLCountUPP userUPP);
void DisposeOSLDisposeTokenUPP(OSLDisposeTokenUPP userUPP);
void DisposeOSLGetMarkTokenUPP(OSLGetMarkTokenUPP userUPP);
void DisposeOSLGetErrDescUPP(OSLGetErrDescUPP userUPP);
void DisposeOSLMarkUPP(OSLMarkUPP userUPP);
void DisposeOSLAdjustMarksUPP(OSLAdjustMarksUPP userUPP);
OSErr InvokeOSLAccessorUPP(DescType desiredClass, const AEDesc* container, DescType containerClass,
                           DescType form, const AEDesc* selectionData, AEDesc* value,
                           SInt32 accessorRefcon, OSLAccessorUPP userUPP);
OSErr InvokeOSLCompareUPP(DescType oper, const AEDesc* obj1, const AEDesc* obj2, Boolean* result,
                          OSLCompareUPP userUPP);
OSErr InvokeOSLCountUPP(DescType desiredType, DescType containerClass, const AEDesc* container,
                        SInt32* result, OSLCountUPP userUPP);
OSErr InvokeOSLDisposeTokenUPP(AEDesc* unneededToken, OSLDisposeTokenUPP userUPP);
OSErr InvokeOSLGetMarkTokenUPP(const AEDesc* dContainerToken, DescType containerClass,
                               AEDesc* result, OSLGetMarkTokenUPP userUPP);
OSErr InvokeOSLGetErrDescUPP(AEDesc** appDescPtr, OSLGetErrDescUPP userUPP);
OSErr InvokeOSLMarkUPP(const AEDesc* dToken, const AEDesc* markToken, SInt32 index,
                       OSLMarkUPP userUPP);
OSErr InvokeOSLAdjustMarksUPP(SInt32 newStart, SInt32 newStop, const AEDesc* markToken,
                              OSLAdjustMarksUPP userUPP);

// Once before the others; harmless to repeat. noErr.
OSErr AEObjectInit(void);

// Callbacks of this process; each may be null. Tests need the count and the compare callback,
// marking the mark callbacks: without them AEResolve leaves the key form to the accessor.
OSErr AESetObjectCallbacks(OSLCompareUPP myCompareProc, OSLCountUPP myCountProc,
                           OSLDisposeTokenUPP myDisposeTokenProc,
                           OSLGetMarkTokenUPP myGetMarkTokenProc, OSLMarkUPP myMarkProc,
                           OSLAdjustMarksUPP myAdjustMarksProc,
                           OSLGetErrDescUPP myGetErrDescProcPtr);

// Turns a specifier into a token, from the outermost container inwards, one accessor call a level;
// the application is a null token of class typeNull. Tokens in between are disposed. The caller
// disposes the result with AEDisposeToken.
// Returns errAENotAnObjSpec for anything but a specifier, errAEAccessorNotFound, errAENoSuchObject
// for a position or a test that nothing meets, or whatever an accessor or a callback returned.
OSErr AEResolve(const AEDesc* objectSpecifier, SInt16 callbackFlags, AEDesc* theToken);

// Accessors: for a class (cProperty for properties) in containers whose token has the given type;
// typeWildCard stands for any. The application's table goes before the system's, the exact pair
// before wild cards, a wild container before a wild class. Installing replaces an equal entry;
// getting and removing answer errAEAccessorNotFound when there is none.
OSErr AEInstallObjectAccessor(DescType desiredClass, DescType containerType,
                              OSLAccessorUPP theAccessor, SInt32 accessorRefcon,
                              Boolean isSysHandler);
OSErr AERemoveObjectAccessor(DescType desiredClass, DescType containerType,
                             OSLAccessorUPP theAccessor, Boolean isSysHandler);
OSErr AEGetObjectAccessor(DescType desiredClass, DescType containerType, OSLAccessorUPP* accessor,
                          SInt32* accessorRefcon, Boolean isSysHandler);

// Calls the accessor for the class and the type of the container's token; errAEAccessorNotFound.
OSErr AECallObjectAccessor(DescType desiredClass, const AEDesc* containerToken,
                           DescType containerClass, DescType keyForm, const AEDesc* keyData,
                           AEDesc* token);

// Hands the token to the dispose callback; AEDisposeDesc when there is none or it does not care.
// The token is the null descriptor afterwards.
OSErr AEDisposeToken(AEDesc* theToken);

PLATFORM_DECLARATIONS_END

#endif
