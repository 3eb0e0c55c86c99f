// Owns the queue of notifications.
#include <Carbon/MacErrors.h>
#include <Carbon/Notification.h>

#include "posix/across_forks.h"
#include "system_services/hooks.h"
#include "system_services/pascal_text.h"

namespace carbon {
namespace {

constinit std::mutex gQueueMutex;
const HeldAcrossForks sHeld(gQueueMutex);
constinit QElemPtr gQueue = nullptr;

QElemPtr ElementOf(NMRecPtr inRequest) {
    return reinterpret_cast<QElemPtr>(inRequest);
}

bool RemovesItself(NMRecPtr inRequest) {
    return reinterpret_cast<intptr_t>(inRequest->nmResp) == -1;
}

OSErr Check(NMRecPtr inRequest) {
    if (!inRequest) return paramErr;
    return inRequest->qType == nmType ? OSErr(noErr) : OSErr(nmTypErr);
}

// The queue begins after the null element. Links are read through the records, whose packing may
// put them at any even address.
QElemPtr Next(QElemPtr inElement) {
    return inElement ? inElement->qLink : gQueue;
}

void SetNext(QElemPtr inElement, QElemPtr inNext) {
    if (inElement)
        inElement->qLink = inNext;
    else
        gQueue = inNext;
}

// The element before the request, or the last one if the request is not in the queue.
QElemPtr FindBefore(NMRecPtr inRequest) {
    QElemPtr before = nullptr;
    while (Next(before) && Next(before) != ElementOf(inRequest)) before = Next(before);
    return before;
}

bool Enqueue(NMRecPtr inRequest) {
    const std::lock_guard lock(gQueueMutex);
    const QElemPtr before = FindBefore(inRequest);
    if (Next(before)) return false;
    inRequest->qLink = nullptr;
    SetNext(before, ElementOf(inRequest));
    return true;
}

OSErr Dequeue(NMRecPtr inRequest) {
    const std::lock_guard lock(gQueueMutex);
    const QElemPtr before = FindBefore(inRequest);
    if (!Next(before)) return qErr;
    SetNext(before, inRequest->qLink);
    inRequest->qLink = nullptr;
    return noErr;
}

// Linux: shown and answered at once, since no program in front has to give way first.
void Show(NMRecPtr inRequest) {
    if (inRequest->nmStr) WriteText(Utf8FromPascal(inRequest->nmStr) + '\n');
    if (RemovesItself(inRequest))
        Dequeue(inRequest);
    else if (inRequest->nmResp)
        inRequest->nmResp(inRequest);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

NMUPP NewNMUPP(NMProcPtr userRoutine) {
    return userRoutine;
}

void DisposeNMUPP(NMUPP) {}

void InvokeNMUPP(NMRecPtr nmReqPtr, NMUPP userUPP) {
    userUPP(nmReqPtr);
}

OSErr NMInstall(NMRecPtr nmReqPtr) {
    if (const OSErr err = Check(nmReqPtr)) return err;
    if (Enqueue(nmReqPtr)) Show(nmReqPtr);
    return noErr;
}

OSErr NMRemove(NMRecPtr nmReqPtr) {
    if (const OSErr err = Check(nmReqPtr)) return err;
    return Dequeue(nmReqPtr);
}
