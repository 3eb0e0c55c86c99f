// The MoreAE functions for handlers: parameters, replies, senders.
#include "vantor/appleevents/MoreAE.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/MoreAssert.h"
#include "vantor/process/MoreProc.h"

namespace {

constexpr DescType kMissingValue = 'msng';

OSErr ReadTypeAttribute(const AppleEvent* inEvent, AEKeyword inKey, DescType* outType) {
    DescType actualType, type = 0;
    Size actualSize;
    const OSErr err =
        AEGetAttributePtr(inEvent, inKey, typeType, &actualType, &type, sizeof type, &actualSize);
    if (err == noErr) *outType = NativeFromBigEndian(type);
    return err;
}

OSErr ReadSender(const AppleEvent* pAppleEvent, ProcessSerialNumber* outSender) {
    DescType actualType = typeNull;
    Size actualSize = 0;
    ProcessSerialNumber senderPSN{};
    const OSErr err = AEGetAttributePtr(pAppleEvent, keyAddressAttr, typeProcessSerialNumber,
                                        &actualType, &senderPSN, sizeof senderPSN, &actualSize);
    MoreAssert(err == noErr);
    if (err != noErr) return err;
    MoreAssert(actualType == typeProcessSerialNumber);
    // The text that is shown has this space.
    // clang-format off
    MoreAssert(actualSize == sizeof (senderPSN));
    // clang-format on
    if (actualType != DescType(typeProcessSerialNumber) || actualSize != sizeof senderPSN)
        return paramErr;
    *outSender = NativeFromBigEndian(senderPSN);
    return noErr;
}

OSErr AppendItem(const AEDescList* inSource, SInt32 inIndex, AEDescList* ioDest) {
    AEKeyword junkKey;
    AEDesc item;
    MoreAENullDesc(&item);
    OSErr err = AEGetNthDesc(inSource, inIndex, typeWildCard, &junkKey, &item);
    if (err == noErr) err = AEPutDesc(ioDest, 0, &item);
    MoreAEDisposeDesc(&item);
    return err;
}

}  // namespace

OSErr MoreAEGotRequiredParams(const AppleEvent* pAppleEvent) {
    DescType type;
    Size size;
    const OSErr err = AEGetAttributePtr(pAppleEvent, keyMissedKeywordAttr, typeWildCard, &type,
                                        nullptr, 0, &size);
    if (err == errAEDescNotFound) return noErr;
    return err == noErr ? OSErr(errAEParamMissed) : err;
}

OSErr MoreAEMoreAESetReplyErrorNumber(OSErr pError, AppleEvent* pAEReply) {
    if (pAEReply->dataHandle == nullptr) return noErr;
    MoreAssert(pAEReply->descriptorType == typeAppleEvent);
    if (pAEReply->descriptorType != DescType(typeAppleEvent)) return paramErr;
    const OSErr number = BigEndianFromNative(pError);
    return AEPutParamPtr(pAEReply, keyErrorNumber, typeSInt16, &number, sizeof number);
}

OSErr MoreAEAddResultToReply(const AEDesc* pResult, AppleEvent* pAEReply, OSErr pError) {
    if (pAEReply->descriptorType == DescType(typeNull) ||
        pResult->descriptorType == DescType(typeNull))
        return pError;
    if (pError == noErr) return AEPutParamDesc(pAEReply, keyDirectObject, pResult);
    OSErr err = errAETypeError;
    if (pResult->descriptorType == DescType(typeChar))
        err = AEPutParamDesc(pAEReply, keyErrorString, pResult);
    else if (pResult->descriptorType == DescType(typeSInt32))
        err = AEPutParamDesc(pAEReply, keyErrorNumber, pResult);
    return err != noErr ? err : pError;
}

OSErr MoreAEExtractClassAndID(const AppleEvent* pAppleEvent, AEEventClass* pEventClass,
                              AEEventID* pEventID) {
    const OSErr err = ReadTypeAttribute(pAppleEvent, keyEventClassAttr, pEventClass);
    return err != noErr ? err : ReadTypeAttribute(pAppleEvent, keyEventIDAttr, pEventID);
}

OSErr MoreAEIsSenderFinder(const AppleEvent* pAppleEvent, Boolean* pIsFinder) {
    MoreAssert(pAppleEvent && pIsFinder);
    if (pAppleEvent == nullptr || pIsFinder == nullptr) return paramErr;
    MoreAssert(pAppleEvent->descriptorType == typeAppleEvent);
    if (pAppleEvent->descriptorType != DescType(typeAppleEvent)) return paramErr;
    MoreAssert(pAppleEvent->dataHandle);
    if (pAppleEvent->dataHandle == nullptr) return paramErr;
    ProcessSerialNumber sender;
    OSErr err = ReadSender(pAppleEvent, &sender);
    if (err != noErr) return err;
    ProcessInfoRec info;
    err = MoreProcGetProcessInformation(&sender, &info);
    if (err == noErr) *pIsFinder = info.processSignature == 'MACS' && info.processType == 'FNDR';
    return err;
}

OSErr MoreAEAppendListToList(const AEDescList* pSourceList, AEDescList* pDestList) {
    MoreAssertQ(pSourceList != nil);
    MoreAssertQ(pDestList != nil);
    SInt32 count = 0;
    OSErr err = AECountItems(pSourceList, &count);
    for (SInt32 i = 1; err == noErr && i <= count; ++i) err = AppendItem(pSourceList, i, pDestList);
    return err;
}

Boolean MoreAEHasAppleEvents() {
    static SInt32 sAnswer = -1;
    SInt32 response;
    if (sAnswer == -1 && Gestalt(gestaltAppleEventsAttr, &response) == noErr)
        sAnswer = response >> gestaltAppleEventsPresent & 1;
    return static_cast<Boolean>(sAnswer);  // Kept: true as long as there is no answer.
}

Boolean MoreAEIsMissingValue(const AEDesc* pDesc) {
    DescType value = 0;
    return pDesc->descriptorType == DescType(typeType) &&
           AEGetDescDataSize(pDesc) == Size(sizeof value) &&
           AEGetDescData(pDesc, &value, sizeof value) == noErr &&
           NativeFromBigEndian(value) == kMissingValue;
}

OSErr MoreAECreateMissingValue(AEDesc* pDesc) {
    const DescType value = BigEndianFromNative(kMissingValue);
    return AECreateDesc(typeType, &value, sizeof value, pDesc);
}
