// Procedure pointers are plain function pointers: made from themselves, called directly.
#include <Carbon/AEDataModel.h>
#include <Carbon/AEObjects.h>

AECoerceDescUPP NewAECoerceDescUPP(AECoerceDescProcPtr userRoutine) {
    return userRoutine;
}
void DisposeAECoerceDescUPP(AECoerceDescUPP) {}
OSErr InvokeAECoerceDescUPP(const AEDesc* fromDesc, DescType toType, SInt32 handlerRefcon,
                            AEDesc* toDesc, AECoerceDescUPP userUPP) {
    return userUPP(fromDesc, toType, handlerRefcon, toDesc);
}

AECoercePtrUPP NewAECoercePtrUPP(AECoercePtrProcPtr userRoutine) {
    return userRoutine;
}
void DisposeAECoercePtrUPP(AECoercePtrUPP) {}
OSErr InvokeAECoercePtrUPP(DescType typeCode, const void* dataPtr, Size dataSize, DescType toType,
                           SInt32 handlerRefcon, AEDesc* result, AECoercePtrUPP userUPP) {
    return userUPP(typeCode, dataPtr, dataSize, toType, handlerRefcon, result);
}

AEDisposeExternalUPP NewAEDisposeExternalUPP(AEDisposeExternalProcPtr userRoutine) {
    return userRoutine;
}
void DisposeAEDisposeExternalUPP(AEDisposeExternalUPP) {}
void InvokeAEDisposeExternalUPP(const void* dataPtr, Size dataLength, SInt32 refcon,
                                AEDisposeExternalUPP userUPP) {
    return userUPP(dataPtr, dataLength, refcon);
}

AEEventHandlerUPP NewAEEventHandlerUPP(AEEventHandlerProcPtr userRoutine) {
    return userRoutine;
}
void DisposeAEEventHandlerUPP(AEEventHandlerUPP) {}
OSErr InvokeAEEventHandlerUPP(const AppleEvent* theAppleEvent, AppleEvent* reply,
                              SInt32 handlerRefcon, AEEventHandlerUPP userUPP) {
    return userUPP(theAppleEvent, reply, handlerRefcon);
}

OSLAccessorUPP NewOSLAccessorUPP(OSLAccessorProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLAccessorUPP(OSLAccessorUPP) {}
OSErr InvokeOSLAccessorUPP(DescType desiredClass, const AEDesc* container, DescType containerClass,
                           DescType form, const AEDesc* selectionData, AEDesc* value,
                           SInt32 accessorRefcon, OSLAccessorUPP userUPP) {
    return userUPP(desiredClass, container, containerClass, form, selectionData, value,
                   accessorRefcon);
}

OSLCompareUPP NewOSLCompareUPP(OSLCompareProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLCompareUPP(OSLCompareUPP) {}
OSErr InvokeOSLCompareUPP(DescType oper, const AEDesc* obj1, const AEDesc* obj2, Boolean* result,
                          OSLCompareUPP userUPP) {
    return userUPP(oper, obj1, obj2, result);
}

OSLCountUPP NewOSLCountUPP(OSLCountProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLCountUPP(OSLCountUPP) {}
OSErr InvokeOSLCountUPP(DescType desiredType, DescType containerClass, const AEDesc* container,
                        SInt32* result, OSLCountUPP userUPP) {
    return userUPP(desiredType, containerClass, container, result);
}

OSLDisposeTokenUPP NewOSLDisposeTokenUPP(OSLDisposeTokenProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLDisposeTokenUPP(OSLDisposeTokenUPP) {}
OSErr InvokeOSLDisposeTokenUPP(AEDesc* unneededToken, OSLDisposeTokenUPP userUPP) {
    return userUPP(unneededToken);
}

OSLGetMarkTokenUPP NewOSLGetMarkTokenUPP(OSLGetMarkTokenProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLGetMarkTokenUPP(OSLGetMarkTokenUPP) {}
OSErr InvokeOSLGetMarkTokenUPP(const AEDesc* dContainerToken, DescType containerClass,
                               AEDesc* result, OSLGetMarkTokenUPP userUPP) {
    return userUPP(dContainerToken, containerClass, result);
}

OSLGetErrDescUPP NewOSLGetErrDescUPP(OSLGetErrDescProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLGetErrDescUPP(OSLGetErrDescUPP) {}
OSErr InvokeOSLGetErrDescUPP(AEDesc** appDescPtr, OSLGetErrDescUPP userUPP) {
    return userUPP(appDescPtr);
}

OSLMarkUPP NewOSLMarkUPP(OSLMarkProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLMarkUPP(OSLMarkUPP) {}
OSErr InvokeOSLMarkUPP(const AEDesc* dToken, const AEDesc* markToken, SInt32 index,
                       OSLMarkUPP userUPP) {
    return userUPP(dToken, markToken, index);
}

OSLAdjustMarksUPP NewOSLAdjustMarksUPP(OSLAdjustMarksProcPtr userRoutine) {
    return userRoutine;
}
void DisposeOSLAdjustMarksUPP(OSLAdjustMarksUPP) {}
OSErr InvokeOSLAdjustMarksUPP(SInt32 newStart, SInt32 newStop, const AEDesc* markToken,
                              OSLAdjustMarksUPP userUPP) {
    return userUPP(newStart, newStop, markToken);
}
