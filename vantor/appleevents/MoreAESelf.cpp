// The MoreAE functions that send an event to the own process and wait for its answer.
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/foundation/BigEndian.h"

namespace {

AEIdleUPP gAEIdleUPP = nullptr;  // made on first use, never disposed

AEIdleUPP SelfIdle() {
    if (gAEIdleUPP == nullptr) gAEIdleUPP = NewAEIdleUPP(MoreAESimpleIdleFunction);
    return gAEIdleUPP;
}

// What a setter puts into 'data'.
struct NewValue {
    DescType mType;
    const void* mData;
    Size mSize;
};

OSErr PutProperty(AppleEvent* ioEvent, DescType inProperty) {
    AEDesc application = {typeNull, nullptr};
    AEDesc specifier = {typeNull, nullptr};
    OSErr err = MoreAEOCreatePropertyObject(inProperty, &application, &specifier);
    if (err == noErr) err = AEPutParamDesc(ioEvent, keyDirectObject, &specifier);
    AEDisposeDesc(&specifier);
    return err;
}

// Makes an event about a property of this application, sends it with `inSend`, disposes it.
template <typename Send>
OSErr TellSelf(AEEventClass inClass, AEEventID inID, DescType inProperty, const NewValue* inValue,
               Send inSend) {
    const AEIdleUPP idle = SelfIdle();
    AppleEvent event;
    OSErr err = MoreAECreateAppleEventSelfTarget(inClass, inID, &event);
    if (err != noErr) return err;
    err = PutProperty(&event, inProperty);
    if (err == noErr && inValue != nullptr) {
        err = AEPutParamPtr(&event, keyAEData, inValue->mType, inValue->mData, inValue->mSize);
    }
    if (err == noErr) err = inSend(idle, &event);
    AEDisposeDesc(&event);
    return err;
}

}  // namespace

OSErr MoreAESendToSelfNoReturnValue(AEEventClass pClass, AEEventID pID) {
    return TellSelf(pClass, pID, pSelection, nullptr, MoreAESendEventNoReturnValue);
}

OSErr MoreAESendToSelfReturnSInt16(AEEventClass pClass, AEEventID pID, SInt16* pValue) {
    return TellSelf(pClass, pID, pSelection, nullptr, [&](AEIdleUPP idle, const AppleEvent* event) {
        return MoreAESendEventReturnSInt16(idle, event, pValue);
    });
}

OSErr MoreAETellSelfToGetSInt16Property(DescType pProperty, SInt16* pValue) {
    return TellSelf(kAECoreSuite, kAEGetData, pProperty, nullptr,
                    [&](AEIdleUPP idle, const AppleEvent* event) {
                        return MoreAESendEventReturnSInt16(idle, event, pValue);
                    });
}

OSErr MoreAETellSelfToGetStr255Property(DescType pProperty, Str255 pValue) {
    return TellSelf(kAECoreSuite, kAEGetData, pProperty, nullptr,
                    [&](AEIdleUPP idle, const AppleEvent* event) {
                        return MoreAESendEventReturnPString(idle, event, pValue);
                    });
}

OSErr MoreAETellSelfToSetSInt16Property(DescType pProperty, SInt16 pValue) {
    const SInt16 data = BigEndianFromNative(pValue);
    const NewValue value = {typeSInt16, &data, sizeof data};
    return TellSelf(kAECoreSuite, kAESetData, pProperty, &value, MoreAESendEventNoReturnValue);
}

OSErr MoreAETellSelfToSetStr255Property(DescType pProperty, ConstStr255Param pValue) {
    const NewValue value = {typePString, pValue, pValue[0] + 1};
    return TellSelf(kAECoreSuite, kAESetData, pProperty, &value, MoreAESendEventNoReturnValue);
}
