// Making and reading the events of class 'Test' that the event tests and their peers speak in.
#pragma once

#include <Carbon/Carbon.h>

#include <cstring>
#include <string>

constexpr AEEventClass kTestClass = 'Test';

// A descriptor that is disposed with its scope.
struct OwnedDesc : AEDesc {
    OwnedDesc() { AEInitializeDesc(this); }
    ~OwnedDesc() { AEDisposeDesc(this); }
    OwnedDesc(const OwnedDesc&) = delete;
    OwnedDesc& operator=(const OwnedDesc&) = delete;
};

// Its fields may lie at odd addresses, so that nothing may refer to them.
inline DescType TypeOf(const AEDesc& inDesc) {
    return inDesc.descriptorType;
}

inline ProcessSerialNumber Numbered(UInt32 inLow) {
    return {0, inLow};
}

inline OSErr MakeEvent(const ProcessSerialNumber& inTarget, AEEventID inID, AppleEvent* outEvent,
                       AEEventClass inClass = kTestClass) {
    const UInt32 bytes[2] = {EndianU32_NtoB(inTarget.highLongOfPSN),
                             EndianU32_NtoB(inTarget.lowLongOfPSN)};
    OwnedDesc address;
    OSErr err = AECreateDesc(typeProcessSerialNumber, bytes, sizeof bytes, &address);
    if (!err)
        err = AECreateAppleEvent(inClass, inID, &address, kAutoGenerateReturnID, kAnyTransactionID,
                                 outEvent);
    return err;
}

inline OSErr PutLong(AppleEvent* ioEvent, AEKeyword inKey, SInt32 inValue) {
    const SInt32 bytes = EndianS32_NtoB(inValue);
    return AEPutParamPtr(ioEvent, inKey, typeSInt32, &bytes, sizeof bytes);
}

// `inMissing` when there is no such number.
inline SInt32 LongIn(const AppleEvent& inEvent, AEKeyword inKey, SInt32 inMissing = -99999) {
    SInt32 bytes;
    if (AEGetParamPtr(&inEvent, inKey, typeSInt32, nullptr, &bytes, sizeof bytes, nullptr) != noErr)
        return inMissing;
    return EndianS32_BtoN(bytes);
}

inline SInt32 LongAttribute(const AppleEvent& inEvent, AEKeyword inKey, SInt32 inMissing = -99999) {
    SInt32 bytes;
    if (AEGetAttributePtr(&inEvent, inKey, typeSInt32, nullptr, &bytes, sizeof bytes, nullptr) !=
        noErr)
        return inMissing;
    return EndianS32_BtoN(bytes);
}

inline OSErr PutText(AppleEvent* ioEvent, AEKeyword inKey, const std::string& inText) {
    return AEPutParamPtr(ioEvent, inKey, typeChar, inText.data(), static_cast<Size>(inText.size()));
}

inline std::string TextIn(const AppleEvent& inEvent, AEKeyword inKey) {
    Size size = 0;
    if (AESizeOfParam(&inEvent, inKey, nullptr, &size) != noErr) return {};
    std::string text(static_cast<size_t>(size), '\0');
    AEGetParamPtr(&inEvent, inKey, typeChar, nullptr, text.data(), size, nullptr);
    return text;
}

// What the sender of an event received by this process is.
inline ProcessSerialNumber SenderOf(const AppleEvent& inEvent) {
    UInt32 bytes[2] = {};
    AEGetAttributePtr(&inEvent, keyAddressAttr, typeProcessSerialNumber, nullptr, bytes,
                      sizeof bytes, nullptr);
    return {EndianU32_BtoN(bytes[0]), EndianU32_BtoN(bytes[1])};
}
