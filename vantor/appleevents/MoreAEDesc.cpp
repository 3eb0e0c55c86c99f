// The MoreAE functions that clear descriptors and read values out of them.
#include <algorithm>

#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/UExtractFromAEDesc.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/MoreAssert.h"

namespace {

// Reads `inMaxSize` bytes of the descriptor as `inType`; more data than that is -1700.
OSErr ReadCoerced(const AEDesc* inDesc, DescType inType, void* outData, Size inMaxSize,
                  Size* outActualSize) {
    AEDesc coerced = {typeNull, nullptr};
    OSErr err = AECoerceDesc(inDesc, inType, &coerced);
    if (err != noErr) return err;
    MoreAEGetRawDataFromDescriptor(&coerced, static_cast<Ptr>(outData), inMaxSize, outActualSize);
    if (*outActualSize > inMaxSize) err = errAECoercionFail;
    if (coerced.dataHandle != nullptr) AEDisposeDesc(&coerced);
    return err;
}

template <typename T>
OSErr ReadNumber(const AEDesc* inDesc, DescType inType, T* outValue) {
    T value = 0;
    Size size = 0;  // stays so when nothing is read
    const OSErr err = ReadCoerced(inDesc, inType, &value, sizeof value, &size);
    if (size > 0) *outValue = NativeFromBigEndian(value);
    return err;
}

}  // namespace

void MoreAENullDesc(AEDesc* desc) {
    MoreAssertQ(desc != nil);
    if (desc == nullptr) return;
    desc->descriptorType = typeNull;
    desc->dataHandle = nullptr;
}

void MoreAEDisposeDesc(AEDesc* desc) {
    MoreAssertQ(desc != nil);
    if (desc == nullptr) return;
    const OSErr junk = AEDisposeDesc(desc);
    MoreAssertQ(junk == noErr);
    MoreAENullDesc(desc);
}

void MoreAEGetRawDataFromDescriptor(const AEDesc* pDesc, Ptr pBuffer, Size pMaxSize,
                                    Size* pActualSize) {
    *pActualSize = 0;
    if (pDesc->dataHandle == nullptr) return;
    *pActualSize = UExtractFromAEDesc::AEGetDescDataSize(*pDesc);
    UExtractFromAEDesc::AEGetDescData(*pDesc, pBuffer, std::min(*pActualSize, pMaxSize));
}

OSErr MoreAEGetPStringFromDescriptor(const AEDesc* pDesc, StringPtr pString) {
    pString[0] = 0;
    Size size;
    const OSErr err = ReadCoerced(pDesc, typeChar, pString + 1, 255, &size);
    if (err == noErr) pString[0] = static_cast<unsigned char>(size);
    return err;
}

OSErr MoreAEGetCStringFromDescriptor(const AEDesc* pDesc, char* pString) {
    AEDesc text = {typeNull, nullptr};
    const OSErr err = AECoerceDesc(pDesc, typeChar, &text);
    if (err != noErr) return err;
    Size size;
    MoreAEGetRawDataFromDescriptor(&text, pString, 256, &size);
    pString[size] = 0;  // Kept: after the whole text's length, not after what was copied.
    if (text.dataHandle != nullptr) AEDisposeDesc(&text);
    return noErr;
}

OSErr MoreAEGetShortFromDescriptor(const AEDesc* pDesc, SInt16* pValue) {
    *pValue = 0;
    return ReadNumber(pDesc, typeSInt16, pValue);
}

OSErr MoreAEGetBooleanFromDescriptor(const AEDesc* pDesc, Boolean* pValue) {
    return ReadNumber(pDesc, typeBoolean, pValue);
}

OSErr MoreAEGetLongFromDescriptor(const AEDesc* pDesc, SInt32* pValue) {
    return ReadNumber(pDesc, typeSInt32, pValue);
}

// Kept: a type is read as a number, so a 'type' descriptor is refused with the coercion's code.
OSErr MoreAEGetOSTypeFromDescriptor(const AEDesc* pDesc, OSType* pValue) {
    return ReadNumber(pDesc, typeSInt32, pValue);
}

OSErr MoreAECopyDescriptorDataToHandle(const AEDesc* desc, Handle* descData) {
    MoreAssertQ(desc != nil);
    MoreAssertQ(descData != nil);
    if (desc == nullptr || descData == nullptr) return paramErr;
    MoreAssertQ(*descData == nil);
    const Size size = AEGetDescDataSize(desc);
    *descData = NewHandle(size);
    const OSErr err = MemError();
    if (err != noErr) return err;
    if (*descData == nullptr) return memFullErr;
    HLock(*descData);
    const OSErr junk = UExtractFromAEDesc::AEGetDescData(*desc, **descData, size);
    MoreAssertQ(junk == noErr);
    HUnlock(*descData);
    return noErr;
}
