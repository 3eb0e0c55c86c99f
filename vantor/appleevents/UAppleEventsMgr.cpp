// Events to the own process, and the modes that sending by class uses.
#include "vantor/appleevents/UAppleEventsMgr.h"

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAEDesc.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

AEAddressDesc UAppleEventsMgr::sSelfTargetAddr = {typeNull, nullptr};
AEDescList UAppleEventsMgr::sAnyType = {typeNull, nullptr};
Boolean UAppleEventsMgr::sDontExecuteWorks = false;

namespace {

// Managers up to 1.1.7 execute an event that was only to be recorded.
constexpr SInt32 kLastVersionThatAlwaysExecutes = 0x01017FFF;

Boolean CanRecordOnly() {
    SInt32 version = 0;
    return AEManagerInfo(keyAEVersion, &version) == noErr &&
           version > kLastVersionThatAlwaysExecutes;
}

}  // namespace

void UAppleEventsMgr::Initialize() {
    sSelfTargetAddr = {typeNull, nullptr};
    sAnyType = {typeNull, nullptr};
    MakeSelfTargetAddr(sSelfTargetAddr);
    sDontExecuteWorks = CanRecordOnly();
    ThrowIfError(AECreateList(nullptr, 0, false, &sAnyType));
    const DescType any = BigEndianFromNative(DescType{typeWildCard});
    UAEDesc::AddPtr(&sAnyType, 0, typeType, &any, sizeof any);
}

void UAppleEventsMgr::MakeSelfTargetAddr(AEDesc& outAddress) {
    const auto self = BigEndianFromNative(ProcessSerialNumber{0, kCurrentProcess});
    ThrowIfError(AECreateDesc(typeProcessSerialNumber, &self, sizeof self, &outAddress));
}

void UAppleEventsMgr::MakeAppleEvent(AEEventClass inClass, AEEventID inID, AppleEvent& outEvent) {
    ThrowIfError(AECreateAppleEvent(inClass, inID, &sSelfTargetAddr, kAutoGenerateReturnID,
                                    kAnyTransactionID, &outEvent));
}

void UAppleEventsMgr::SendAppleEvent(AppleEvent& inEvent, Boolean inExecute) {
    OSErr error = noErr;
    if (inExecute || sDontExecuteWorks) {
        const AESendMode mode = inExecute ? kAENoReply : kAENoReply | kAEDontExecute;
        StAEDescriptor reply;
        error =
            AESend(&inEvent, reply, mode, kAENormalPriority, kAEDefaultTimeout, nullptr, nullptr);
    }
    AEDisposeDesc(&inEvent);
    ThrowIfError(error);
}

void UAppleEventsMgr::SendAppleEventWithReply(const AppleEvent& inEvent, AppleEvent& outReply,
                                              Boolean inExecute) {
    // Kept: what is not to be executed is executed all the same and only not recorded.
    const AESendMode mode = inExecute ? kAEWaitReply : kAEWaitReply | kAEDontRecord;
    ThrowIfError(
        AESend(&inEvent, &outReply, mode, kAENormalPriority, kAEDefaultTimeout, nullptr, nullptr));
}

OSErr UAppleEventsMgr::InteractWithUser(Boolean inThrowFail, SInt32 inTimeOut, NMRec* inNMRec) {
    const AEIdleUPP idle = NewAEIdleUPP(AEIdleProc);
    const OSErr error = AEInteractWithUser(inTimeOut, inNMRec, idle);
    DisposeAEIdleUPP(idle);
    if (inThrowFail) ThrowIfError(error);
    return error;
}

Boolean UAppleEventsMgr::AEIdleProc(EventRecord*, SInt32* outSleepTime, RgnHandle* outMouseRgn) {
    *outSleepTime = 6;
    *outMouseRgn = nullptr;
    return false;
}
