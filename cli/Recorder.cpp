// Owns the requests that only our recorder understands.
#include "Recorder.h"

#include "Failure.h"
#include "Interrupt.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace cli {
namespace {

constexpr OSType kRecorderSignature = 'Fv8k';
constexpr AEEventID kCancelJob = 'Cncl';

void ThrowIfRefused(OSErr inCode) {
    ThrowIfFailed(inCode, "ask the recorder");
}

void MakeSpecifier(Object inObject, StAEDescriptor& outSpecifier) {
    StAEDescriptor application;
    if (inObject.elementClass != 0)
        ThrowIfRefused(MoreAEOCreateObjSpecifierFormAbsPos(inObject.elementClass, application,
                                                           inObject.position, false, outSpecifier));
}

void MakeEvent(AEEventClass inClass, AEEventID inID, StAEDescriptor& outEvent) {
    ThrowIfRefused(
        MoreAECreateAppleEventSignatureTarget(kRecorderSignature, 'APPL', inClass, inID, outEvent));
}

void MakePropertyEvent(AEEventID inID, Object inObject, AEKeyword inProperty,
                       StAEDescriptor& outEvent) {
    StAEDescriptor container, property;
    MakeSpecifier(inObject, container);
    ThrowIfRefused(MoreAEOCreatePropertyObject(inProperty, container, property));
    MakeEvent(kAECoreSuite, inID, outEvent);
    ThrowIfRefused(AEPutParamDesc(outEvent, keyDirectObject, property));
}

// Sends the event and gives the reply's direct object as `inType`; null when there is none.
void Ask(const StAEDescriptor& inEvent, DescType inType, StAEDescriptor& outAnswer) {
    StAEDescriptor reply;
    ThrowIfRefused(AESend(inEvent, reply, kAEWaitReply, kAENormalPriority, kNoTimeOut,
                          IdleUntilInterrupt, nullptr));
    ThrowIfRefused(MoreAEGetHandlerError(reply));
    outAnswer.GetOptionalParamDesc(reply, keyDirectObject, inType);
}

void Get(Object inObject, AEKeyword inProperty, DescType inType, StAEDescriptor& outAnswer) {
    StAEDescriptor event;
    MakePropertyEvent(kAEGetData, inObject, inProperty, event);
    const UInt32 wanted = EndianU32_NtoB(inType);
    ThrowIfRefused(AEPutParamPtr(event, keyAERequestedType, typeType, &wanted, sizeof wanted));
    Ask(event, inType, outAnswer);
}

void Set(Object inObject, AEKeyword inProperty, DescType inType, const void* inData, Size inSize) {
    StAEDescriptor event, ignored;
    MakePropertyEvent(kAESetData, inObject, inProperty, event);
    ThrowIfRefused(AEPutParamPtr(event, keyAEData, inType, inData, inSize));
    Ask(event, typeWildCard, ignored);
}

std::string BytesOf(const AEDesc* inDesc) {
    std::string bytes(static_cast<size_t>(AEGetDescDataSize(inDesc)), '\0');
    ThrowIfRefused(AEGetDescData(inDesc, bytes.data(), static_cast<Size>(bytes.size())));
    return bytes;
}

UInt64 BigEndian(const std::string& inBytes) {
    UInt64 value = 0;
    for (const char byte : inBytes) value = value << 8 | static_cast<UInt8>(byte);
    return value;
}

}  // namespace

std::string GetText(Object inObject, AEKeyword inProperty) {
    StAEDescriptor answer;
    Get(inObject, inProperty, typeUTF8Text, answer);
    return BytesOf(answer);
}

SInt64 GetNumber(Object inObject, AEKeyword inProperty) {
    StAEDescriptor answer;
    Get(inObject, inProperty, typeSInt64, answer);
    return static_cast<SInt64>(BigEndian(BytesOf(answer)));
}

bool GetBoolean(Object inObject, AEKeyword inProperty) {
    StAEDescriptor answer;
    Get(inObject, inProperty, typeBoolean, answer);
    return BigEndian(BytesOf(answer)) != 0;
}

OSType GetCode(Object inObject, AEKeyword inProperty) {
    StAEDescriptor answer;
    Get(inObject, inProperty, typeWildCard, answer);
    return static_cast<OSType>(BigEndian(BytesOf(answer)));
}

std::vector<std::string> GetTexts(Object inObject, AEKeyword inProperty) {
    StAEDescriptor answer;
    Get(inObject, inProperty, typeAEList, answer);
    SInt32 count = 0;
    ThrowIfRefused(AECountItems(answer, &count));
    std::vector<std::string> texts;
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor item;
        ThrowIfRefused(AEGetNthDesc(answer, i, typeUTF8Text, nullptr, item));
        texts.push_back(BytesOf(item));
    }
    return texts;
}

void SetText(Object inObject, AEKeyword inProperty, const std::string& inUtf8) {
    Set(inObject, inProperty, typeUTF8Text, inUtf8.data(), static_cast<Size>(inUtf8.size()));
}

void SetBoolean(Object inObject, AEKeyword inProperty, bool inValue) {
    const Boolean value = inValue;
    Set(inObject, inProperty, typeBoolean, &value, sizeof value);
}

SInt32 CountElements(OSType inClass) {
    StAEDescriptor event, answer;
    MakeEvent(kAECoreSuite, kAECountElements, event);
    const UInt32 elementClass = EndianU32_NtoB(inClass);
    ThrowIfRefused(AEPutParamPtr(event, keyAEObjectClass, typeType, &elementClass, 4));
    Ask(event, typeSInt32, answer);
    return static_cast<SInt32>(BigEndian(BytesOf(answer)));
}

void AbandonJob() noexcept {
    try {
        StAEDescriptor event, none;
        MakeEvent(kRecorderSignature, kCancelJob, event);
        AESend(event, none, kAENoReply, kAENormalPriority, kAEDefaultTimeout, nullptr, nullptr);
    } catch (const Failure&) {
        return;  // no recorder, no job
    }
}

void CancelJob() {
    StAEDescriptor event, ignored;
    MakeEvent(kRecorderSignature, kCancelJob, event);
    Ask(event, typeWildCard, ignored);
}

}  // namespace cli
