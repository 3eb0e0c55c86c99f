// What a host does with a disc: files, writing, status, blank discs.
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/controller/CVantor.h"
#include "vantor/controller/Protocol.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"
#include "vantor/process/UProcess.h"

namespace {

constexpr SInt16 kAsTheApplicationIsSet = -1;

// A reference to the first disc, owned by a scope.
class StDiscOne {
  public:
    StDiscOne() : mDisc(CVantor::GetDiscOneDesc()) {}
    ~StDiscOne() { AEDisposeDesc(&mDisc); }
    StDiscOne(const StDiscOne&) = delete;
    StDiscOne& operator=(const StDiscOne&) = delete;
    operator AEDesc*() { return &mDisc; }

  private:
    AEDesc mDisc;
};

void MakeDiscEvent(AEEventID inID, AEDesc& outEvent) {
    CVantor::MakeMirelAppleEvent(kMirelEventClass, inID, outEvent);
    StDiscOne disc;
    ThrowIfError(AEPutParamDesc(&outEvent, keyDirectObject, disc));
}

void PutBoolean(AEDesc* ioEvent, AEKeyword inKey, Boolean inValue) {
    ThrowIfError(AEPutParamPtr(ioEvent, inKey, typeBoolean, &inValue, sizeof inValue));
}

void PutChoice(AEDesc* ioEvent, AEKeyword inKey, SInt16 inChoice) {
    if (inChoice != kAsTheApplicationIsSet) PutBoolean(ioEvent, inKey, inChoice != 0);
}

void PutFiles(AEDesc* ioEvent, const FSSpec* inFiles, SInt32 inCount) {
    StAEDescriptor list;
    ThrowIfError(AECreateList(nullptr, 0, false, list));
    for (SInt32 i = 0; i < inCount; ++i) {
        const FSSpec file = BigEndianFromNative(inFiles[i]);
        ThrowIfError(AEPutPtr(list, i + 1, typeFSS, &file, sizeof file));
    }
    ThrowIfError(AEPutParamDesc(ioEvent, keyAEFile, list));
}

void Send(const AppleEvent* inEvent) {
    ThrowIfError(MoreAESendEventNoReturnValue(CVantor::GetAEIdleProc(), inEvent));
}

void AskForBlankDisc() {
    CVantor::BringMirelToFront();
    CVantor::SendSimpleMirelEvent(kMirelEventClass, kMirelRequestBlankDisc);
    CVantor::BringMeToFront();
}

bool WasCancelled(SInt32 inStatusCode) {
    return inStatusCode == userCanceledErr || inStatusCode == 1;
}

SInt32 ReadDiscSInt32(DescType inProperty) {
    StDiscOne disc;
    return CVantor::GetMirelPropertySInt32(inProperty, disc);
}

}  // namespace

void CVantor::MakeNewDisc(UInt32 inDiscClass) {
    const DescType discClass = BigEndianFromNative(inDiscClass);
    StAEDescriptor event;
    MakeMirelAppleEvent(kAECoreSuite, kAECreateElement, event);
    ThrowIfError(AEPutParamPtr(event, keyAEObjectClass, typeType, &discClass, sizeof discClass));
    Send(event);
}

void CVantor::AddFiles(FSSpec* inFiles, SInt32 inCount) {
    StAEDescriptor event;
    MakeDiscEvent(kMirelAddFiles, event);
    PutFiles(event, inFiles, inCount);
    Send(event);
}

void CVantor::WriteDisc(SInt16 inWriteMode, SInt16 inEject, SInt16 inVerify, bool,
                        bool inBringToFront) {
    if (inBringToFront) BringMirelToFront();
    StAEDescriptor event;
    MakeDiscEvent(kMirelWrite, event);
    PutChoice(event, keyMirelEject, inEject);
    PutChoice(event, keyMirelVerify, inVerify);
    PutBoolean(event, keyMirelQuit, false);  // Kept: whatever the caller asked for.
    PutBoolean(event, keyMirelAsynchronous, true);
    if (sCurrentVantor != nullptr && sCurrentVantor->mHaveBlankDisc) {
        PutBoolean(event, keyMirelAskUser, false);
    }
    if (inWriteMode == 1) {
        const DescType session = BigEndianFromNative(DescType{kMirelWriteAsSession});
        // Kept: writing goes on without this parameter when it cannot be put.
        AEPutParamPtr(event, keyMirelWriteAs, typeEnumerated, &session, sizeof session);
    }
    Send(event);
}

Boolean CVantor::IsMirelBusy() {
    if (!IsMirelRunning(nullptr)) return false;
    const SInt32 status = GetMirelStatusCode();
    return status >= 1 && status <= 101;
}

Boolean CVantor::GetMirelServerMode() {
    return GetMirelPropertyBoolean(pMirelServerMode, nullptr);
}

void CVantor::SetMirelServerMode(Boolean inOn) {
    // Kept: the byte goes out as it came, 0 and 1 or not; so in simulation mode.
    SetMirelPropertyData(pMirelServerMode, typeBoolean, &inOn, sizeof inOn, nullptr);
}

Boolean CVantor::GetMirelSimulationMode() {
    return GetMirelPropertyBoolean(pMirelSimulationMode, nullptr);
}

void CVantor::SetMirelSimulationMode(Boolean inOn) {
    SetMirelPropertyData(pMirelSimulationMode, typeBoolean, &inOn, sizeof inOn, nullptr);
}

SInt32 CVantor::GetMirelStatusCode() {
    return ReadDiscSInt32(pMirelStatusCode);
}

void CVantor::GetMirelStatusText(Str255 outText) {
    StDiscOne disc;
    GetMirelPropertyPString(outText, pMirelStatusText, disc);
}

SInt32 CVantor::GetMirelDiscSize() {
    return ReadDiscSInt32(pMirelDiscSize);
}

SInt32 CVantor::GetMirelMediaInfo() {
    return GetMirelPropertySInt32(pMirelMediaInfo, nullptr);
}

SInt32 CVantor::RequestBlankDisc() {
    try {
        AskForBlankDisc();
    } catch (const LException& exception) {
        const SInt32 code = exception.GetErrorCode();
        return code == errAEEventNotHandled ? 0 : code;  // Kept: an answer, not an exception.
    }
    if (WasCancelled(GetMirelStatusCode())) return userCanceledErr;
    const SInt32 media = GetMirelMediaInfo();
    if (sCurrentVantor != nullptr) sCurrentVantor->mHaveBlankDisc = media > 0;
    return media;
}

void CVantor::EjectDisc() {
    SendSimpleMirelEvent(kMirelEventClass, kMirelEject);
}

void CVantor::BringMirelToFront() {
    UProcess::SetFront(GetMirelPSN());
}
