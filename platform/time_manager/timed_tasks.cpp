// Owns the calls of the Time Manager.
#include <Carbon/MacErrors.h>
#include <Carbon/Timer.h>
#include <time.h>

#include "time_manager/task_queue.h"

namespace carbon {

namespace {

OSErr Install(QElemPtr inTask, bool inIsExtended) {
    if (!inTask) return paramErr;
    TaskQueue::Shared().Install(reinterpret_cast<TMTask*>(inTask), inIsExtended);
    return noErr;
}

}  // namespace

}  // namespace carbon

TimerUPP NewTimerUPP(TimerProcPtr userRoutine) {
    return userRoutine;
}

void DisposeTimerUPP(TimerUPP) {}

void InvokeTimerUPP(TMTaskPtr tmTaskPtr, TimerUPP userUPP) {
    userUPP(tmTaskPtr);
}

void InsTime(QElemPtr tmTask) {
    InstallTimeTask(tmTask);
}

void InsXTime(QElemPtr tmTask) {
    InstallXTimeTask(tmTask);
}

OSErr InstallTimeTask(QElemPtr tmTask) {
    return carbon::Install(tmTask, false);
}

OSErr InstallXTimeTask(QElemPtr tmTask) {
    return carbon::Install(tmTask, true);
}

void PrimeTime(QElemPtr tmTask, SInt32 count) {
    PrimeTimeTask(tmTask, count);
}

OSErr PrimeTimeTask(QElemPtr tmTask, SInt32 count) {
    if (!tmTask) return paramErr;
    return carbon::TaskQueue::Shared().Prime(reinterpret_cast<TMTask*>(tmTask), count);
}

void RmvTime(QElemPtr tmTask) {
    RemoveTimeTask(tmTask);
}

OSErr RemoveTimeTask(QElemPtr tmTask) {
    if (!tmTask) return paramErr;
    return carbon::TaskQueue::Shared().Remove(reinterpret_cast<TMTask*>(tmTask));
}

void Microseconds(UnsignedWide* microTickCount) {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    const UInt64 micro = UInt64(now.tv_sec) * 1'000'000 + UInt64(now.tv_nsec) / 1000;
    *microTickCount = {UInt32(micro >> 32), UInt32(micro)};
}
