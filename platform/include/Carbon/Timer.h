// Time Manager: procedures that run once a given time has passed, and the time since the start.
//
// A task runs on a thread of its own that all tasks of a process share, while the program goes on:
// what a task shares with the rest of the program must be atomic, and a task that takes long delays
// the others. Tasks do not survive a fork; the child has none.
#ifndef CARBON_TIMER_H
#define CARBON_TIMER_H

#include <Carbon/MacTypes.h>
#include <Carbon/OSUtils.h>

struct TMTask;

typedef void (*TimerProcPtr)(struct TMTask* tmTaskPtr);
typedef TimerProcPtr TimerUPP;

#pragma pack(push, 2)

// A task. It belongs to the caller and must stay where it is from InsTime to RmvTime.
struct TMTask {
    QElemPtr qLink;
    SInt16 qType;     // holds kTMTaskActive while the task waits for its time
    TimerUPP tmAddr;  // what to run; null for nothing
    SInt32
        tmCount;  // after RmvTime: the time that was left, as PrimeTime takes it; 0 when it had run
    SInt32 tmWakeUp;  // for tasks of InsXTime: 0 to count from now when the task is primed next,
                      // else left alone by the caller, to count from when it ran last
    SInt32 tmReserved;
};
typedef struct TMTask TMTask;
typedef TMTask* TMTaskPtr;

#pragma pack(pop)

enum { kTMTaskActive = 1 << 15 };

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers need no wrapping: New... returns the procedure, Dispose... does nothing,
// Invoke... calls it.
TimerUPP NewTimerUPP(TimerProcPtr userRoutine);
void DisposeTimerUPP(TimerUPP userUPP);
void InvokeTimerUPP(TMTaskPtr tmTaskPtr, TimerUPP userUPP);

// Puts a task (a TMTask) in the queue, where it waits to be primed. Putting it there again takes
// its time away. InsXTime is for tasks that prime themselves at a fixed interval: each interval
// begins when the one before was over, however late the task ran.
// The forms with a result return paramErr for null.
void InsTime(QElemPtr tmTask);
void InsXTime(QElemPtr tmTask);
OSErr InstallTimeTask(QElemPtr tmTask);
OSErr InstallXTimeTask(QElemPtr tmTask);

// Lets a task run once, and returns at once. A task may prime itself; one that waits already gets
// the new time.
//   count  milliseconds; negative: microseconds, negated; 0: as soon as it can
// The form with a result returns paramErr for null, qErr for a task that is not in the queue.
void PrimeTime(QElemPtr tmTask, SInt32 count);
OSErr PrimeTimeTask(QElemPtr tmTask, SInt32 count);

// Takes a task out of the queue. When this returns, the task is not running and will not run (but a
// task may remove itself, and then runs to its end). tmCount tells how much time was left:
// microseconds, negated, when they fit, else milliseconds.
// The form with a result returns paramErr for null, qErr for a task that is not in the queue.
void RmvTime(QElemPtr tmTask);
OSErr RemoveTimeTask(QElemPtr tmTask);

// Microseconds since the machine was started. The same in every process.
void Microseconds(UnsignedWide* microTickCount);

PLATFORM_DECLARATIONS_END

#endif
