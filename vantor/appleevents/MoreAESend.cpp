// The MoreAE functions that send an event and read its reply.
#include "vantor/appleevents/MoreAE.h"
#include "vantor/foundation/BigEndian.h"

OSErr MoreAESendEventNoReturnValue(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent) {
    const AESendMode mode = pIdleUPP == nullptr ? kAENoReply : kAEWaitReply;
    AppleEvent reply = {typeNull, nullptr};
    OSErr err = AESend(pAppleEvent, &reply, mode, kAENormalPriority, kNoTimeOut, pIdleUPP, nullptr);
    // Kept: who does not wait does not hear of the handler's error.
    if (err == noErr && mode == kAEWaitReply) err = MoreAEGetHandlerError(&reply);
    AEDisposeDesc(&reply);
    return err;
}

OSErr MoreAESendEventReturnData(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent,
                                DescType pDesiredType, DescType* pActualType, void* pDataPtr,
                                Size pMaximumSize, Size* pActualSize) {
    if (pIdleUPP == nullptr) return paramErr;
    AppleEvent reply = {typeNull, nullptr};
    OSErr err =
        AESend(pAppleEvent, &reply, kAEWaitReply, kAENormalPriority, kNoTimeOut, pIdleUPP, nullptr);
    if (err != noErr) return err;
    err = MoreAEGetHandlerError(&reply);
    if (err == noErr && reply.descriptorType != typeNull) {
        err = AEGetParamPtr(&reply, keyDirectObject, pDesiredType, pActualType, pDataPtr,
                            pMaximumSize, pActualSize);
    }
    AEDisposeDesc(&reply);
    return err;
}

OSErr MoreAESendEventReturnSInt16(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent,
                                  SInt16* pValue) {
    SInt16 value = 0;
    DescType type;
    Size size = 0;  // stays so when nothing is read
    const OSErr err = MoreAESendEventReturnData(pIdleUPP, pAppleEvent, typeSInt16, &type, &value,
                                                sizeof value, &size);
    if (err == noErr && size > 0) *pValue = NativeFromBigEndian(value);
    return err;
}

OSErr MoreAESendEventReturnPString(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent,
                                   Str255 pValue) {
    DescType type;
    Size size;
    return MoreAESendEventReturnData(pIdleUPP, pAppleEvent, typePString, &type, pValue,
                                     sizeof(Str255), &size);
}

OSErr MoreAEGetHandlerError(const AppleEvent* pAEReply) {
    if (pAEReply->descriptorType == typeNull) return noErr;
    SInt16 handlerError = noErr;
    DescType type;
    Size size;
    const OSErr err = AEGetParamPtr(pAEReply, keyErrorNumber, typeSInt16, &type, &handlerError,
                                    sizeof handlerError, &size);
    if (err == errAEDescNotFound) return noErr;
    // Kept: no other failure of the read counts; what the buffer holds then, nothing, is success.
    return NativeFromBigEndian(handlerError);
}

Boolean MoreAESimpleIdleFunction(EventRecord*, SInt32* pSleepTime, RgnHandle* pMouseRgn) {
    *pSleepTime = 30;
    *pMouseRgn = nullptr;
    return false;
}
