// The MoreAE functions that address a process and make an event for it.
#include "vantor/appleevents/MoreAE.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/MoreAssert.h"
#include "vantor/process/MoreProc.h"

OSErr MoreAECreateProcessTarget(ProcessSerialNumber* pPSN, AEAddressDesc* pTarget) {
    // Kept: a null number swaps the halves of kCurrentProcess; the address names no process.
    const auto psn =
        BigEndianFromNative(pPSN != nullptr ? *pPSN : ProcessSerialNumber{kCurrentProcess, 0});
    return AECreateDesc(typeProcessSerialNumber, &psn, sizeof psn, pTarget);
}

OSErr MoreAECreateAppleEventProcessTarget(const ProcessSerialNumber* pPSN, AEEventClass pClass,
                                          AEEventID pID, AppleEvent* pAppleEvent) {
    const ProcessSerialNumber self = {0, kCurrentProcess};
    const auto psn = BigEndianFromNative(pPSN != nullptr ? *pPSN : self);
    AEAddressDesc target;
    OSErr err = AECreateDesc(typeProcessSerialNumber, &psn, sizeof psn, &target);
    if (err != noErr) return err;
    err = AECreateAppleEvent(pClass, pID, &target, kAutoGenerateReturnID, kAnyTransactionID,
                             pAppleEvent);
    AEDisposeDesc(&target);
    return err;
}

OSErr MoreAECreateAppleEventSelfTarget(AEEventClass pClass, AEEventID pID,
                                       AppleEvent* pAppleEvent) {
    const ProcessSerialNumber self = {0, kCurrentProcess};
    return MoreAECreateAppleEventProcessTarget(&self, pClass, pID, pAppleEvent);
}

OSErr MoreAECreateAppleEventSignatureTarget(OSType pCreator, OSType pType, AEEventClass pClass,
                                            AEEventID pID, AppleEvent* pAppleEvent) {
    ProcessSerialNumber psn;
    const OSErr err = MoreProcFindProcessBySignature(pCreator, pType, &psn);
    if (err != noErr) return err;
    return MoreAECreateAppleEventProcessTarget(&psn, pClass, pID, pAppleEvent);
}

OSErr MoreAECreateAppleEventCreatorTarget(AEEventClass pClass, AEEventID pID, OSType pCreator,
                                          AppleEvent* pAppleEvent) {
    MoreAssertQ(pAppleEvent != nil);
    if (pAppleEvent == nullptr) return paramErr;
    const OSType creator = BigEndianFromNative(pCreator);
    AEAddressDesc target;
    MoreAENullDesc(&target);
    OSErr err = AECreateDesc(typeApplSignature, &creator, sizeof creator, &target);
    if (err == noErr) {
        err = AECreateAppleEvent(pClass, pID, &target, kAutoGenerateReturnID, kAnyTransactionID,
                                 pAppleEvent);
    }
    MoreAEDisposeDesc(&target);
    return err;
}
