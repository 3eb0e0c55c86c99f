// The tasks of this process that wait for their time, and the thread that runs them.
#pragma once

#include <Carbon/Timer.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_map>

#include "posix/deadline.h"

namespace carbon {

class TaskQueue {
  public:
    // The queue of this process; a forked child gets one of its own.
    static TaskQueue& Shared();

    void Install(TMTask* ioTask, bool inIsExtended);
    // `inCount` as in PrimeTime. qErr for a task that is not installed.
    OSErr Prime(TMTask* ioTask, SInt32 inCount);
    // Returns when the task is not running any more, or runs and called this itself. qErr.
    OSErr Remove(TMTask* ioTask);

  private:
    struct Waiting {
        bool isExtended = false;
        Moment wake = kNever;  // not primed
        Moment last{};         // when it was due last
        UInt64 order = 0;      // of the tasks due at one moment, the one primed first runs first
    };
    using Tasks = std::unordered_map<TMTask*, Waiting>;

    explicit TaskQueue(unsigned inForks, const TaskQueue* inParents);
    void StartThread();
    void Run();
    void RunTask(std::unique_lock<std::mutex>& ioLock, Tasks::iterator inTask);
    Tasks::iterator NextTask();
    bool IsRunningElsewhere(const TMTask* inTask) const;

    const unsigned mForks;
    // What a child was born with: kept, never used.
    [[maybe_unused]] const TaskQueue* const mParents;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::condition_variable mFinished;
    Tasks mTasks;
    UInt64 mPrimed = 0;
    UInt64 mRuns = 0;
    const TMTask* mRunning = nullptr;
    std::thread::id mThread;
};

}  // namespace carbon
