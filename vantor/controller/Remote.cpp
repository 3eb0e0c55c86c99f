// Events and properties of the recording application: addressing, reading, writing.
#include <algorithm>

#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/controller/CVantor.h"
#include "vantor/controller/Protocol.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

namespace {

// An event about a property of `inContainer`, or of the application when that is null.
void MakePropertyEvent(AEEventID inID, DescType inProperty, AEDesc* inContainer, AEDesc& outEvent) {
    CVantor::MakeMirelAppleEvent(kAECoreSuite, inID, outEvent);
    StAEDescriptor application, specifier;
    AEDesc* container = inContainer != nullptr ? inContainer : application;
    ThrowIfError(MoreAEOCreatePropertyObject(inProperty, container, specifier));
    ThrowIfError(AEPutParamDesc(&outEvent, keyDirectObject, specifier));
}

template <typename Value>
Value ReadProperty(DescType inProperty, DescType inType, AEDesc* inContainer) {
    Value value = 0;
    CVantor::GetMirelPropertyData(inProperty, inType, nullptr, &value, sizeof value, nullptr,
                                  inContainer);
    return NativeFromBigEndian(value);
}

}  // namespace

void CVantor::MakeMirelAppleEvent(UInt32 inClass, UInt32 inID, AEDesc& outEvent) {
    const auto psn = BigEndianFromNative(GetMirelPSN());
    StAEDescriptor target(typeProcessSerialNumber, &psn, sizeof psn);
    ThrowIfError(AECreateAppleEvent(inClass, inID, target, kAutoGenerateReturnID, kAnyTransactionID,
                                    &outEvent));
}

void CVantor::SendSimpleMirelEvent(UInt32 inClass, UInt32 inID) {
    StAEDescriptor event;
    MakeMirelAppleEvent(inClass, inID, event);
    ThrowIfError(MoreAESendEventNoReturnValue(GetAEIdleProc(), event));
}

AEDesc CVantor::GetDiscOneDesc() {
    AEDesc disc = {typeNull, nullptr};
    StAEDescriptor application;
    ThrowIfError(MoreAEOCreateObjSpecifierFormAbsPos(cMirelDisc, application, 1, false, &disc));
    return disc;
}

void CVantor::GetMirelPropertyData(UInt32 inProperty, UInt32 inDesiredType, UInt32* outActualType,
                                   void* outData, SInt32 inMaxSize, SInt32* outActualSize,
                                   AEDesc* inContainer) {
    UInt32 type;
    SInt32 size;
    if (outActualType == nullptr) outActualType = &type;
    if (outActualSize == nullptr) outActualSize = &size;
    StAEDescriptor event;
    MakePropertyEvent(kAEGetData, inProperty, inContainer, event);
    ThrowIfError(MoreAESendEventReturnData(GetAEIdleProc(), event, inDesiredType, outActualType,
                                           outData, inMaxSize, outActualSize));
}

void CVantor::SetMirelPropertyData(UInt32 inProperty, UInt32 inType, void* inData, SInt32 inSize,
                                   AEDesc* inContainer) {
    StAEDescriptor event;
    MakePropertyEvent(kAESetData, inProperty, inContainer, event);
    ThrowIfError(AEPutParamPtr(event, keyAEData, inType, inData, inSize));
    ThrowIfError(MoreAESendEventNoReturnValue(GetAEIdleProc(), event));
}

Boolean CVantor::GetMirelPropertyBoolean(UInt32 inProperty, AEDesc* inContainer) {
    return ReadProperty<Boolean>(inProperty, typeBoolean, inContainer);
}

SInt16 CVantor::GetMirelPropertySInt16(UInt32 inProperty, AEDesc* inContainer) {
    return ReadProperty<SInt16>(inProperty, typeSInt16, inContainer);
}

SInt32 CVantor::GetMirelPropertySInt32(UInt32 inProperty, AEDesc* inContainer) {
    return ReadProperty<SInt32>(inProperty, typeSInt32, inContainer);
}

void CVantor::GetMirelPropertyPString(unsigned char* outString, UInt32 inProperty,
                                      AEDesc* inContainer) {
    if (outString == nullptr) LException::Throw(paramErr);
    UInt32 type = typeNull;
    SInt32 size = 0;
    GetMirelPropertyData(inProperty, typePString, &type, outString, sizeof(Str255), &size,
                         inContainer);
    if (type != typeChar) return;
    // Plain text has no end of its own; the buffer may have held anything before.
    outString[std::min(size, 255)] = 0;
    CopyCStringToPascal(reinterpret_cast<const char*>(outString), outString);
}
