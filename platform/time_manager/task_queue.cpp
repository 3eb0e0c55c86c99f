// Owns the queue of timed tasks and the thread on which they run.
#include "time_manager/task_queue.h"

#include <Carbon/MacErrors.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <limits>

#include "posix/fork_count.h"

namespace carbon {

namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::milliseconds;

// The program may look at the flag while the thread changes it.
void SetActive(TMTask* ioTask, bool inIsActive) {
    const auto bit = SInt16(kTMTaskActive);
    const std::atomic_ref<SInt16> type(ioTask->qType);
    inIsActive ? type.fetch_or(bit) : type.fetch_and(SInt16(~bit));
}

Clock::duration DurationOf(SInt32 inCount) {
    if (inCount >= 0) return milliseconds(inCount);
    return microseconds(-SInt64(inCount));
}

SInt32 CountOf(Clock::duration inLeft) {
    if (inLeft <= Clock::duration::zero()) return 0;
    constexpr SInt64 kMost = std::numeric_limits<SInt32>::max();
    const SInt64 micro = duration_cast<microseconds>(inLeft).count();
    if (micro <= kMost) return SInt32(-micro);
    return SInt32(std::min(kMost, SInt64(duration_cast<milliseconds>(inLeft).count())));
}

// Never 0, which asks for a new beginning.
SInt32 WakeUpWord(Moment inMoment) {
    const auto micro = duration_cast<microseconds>(inMoment.time_since_epoch()).count();
    return SInt32(UInt32(micro) | 1);
}

}  // namespace

TaskQueue::TaskQueue(unsigned inForks, const TaskQueue* inParents)
    : mForks(inForks), mParents(inParents) {}

TaskQueue& TaskQueue::Shared() {
    static std::atomic<TaskQueue*> sQueue = nullptr;
    TaskQueue* queue = sQueue;
    while (!queue || queue->mForks != ForkCount()) {
        auto* fresh = new TaskQueue(ForkCount(), queue);
        if (sQueue.compare_exchange_strong(queue, fresh)) return *fresh;
        delete fresh;
    }
    return *queue;
}

void TaskQueue::Install(TMTask* ioTask, bool inIsExtended) {
    const std::lock_guard lock(mMutex);
    mTasks[ioTask] = {inIsExtended, kNever, {}, 0};
    SetActive(ioTask, false);
}

OSErr TaskQueue::Prime(TMTask* ioTask, SInt32 inCount) {
    const std::lock_guard lock(mMutex);
    const auto found = mTasks.find(ioTask);
    if (found == mTasks.end()) return qErr;
    Waiting& waiting = found->second;
    const bool goesOn = waiting.isExtended && ioTask->tmWakeUp != 0 && waiting.last != Moment();
    waiting.wake = (goesOn ? waiting.last : Clock::now()) + DurationOf(inCount);
    waiting.order = ++mPrimed;
    if (waiting.isExtended) ioTask->tmWakeUp = WakeUpWord(waiting.wake);
    SetActive(ioTask, true);
    StartThread();
    mChanged.notify_one();
    return noErr;
}

OSErr TaskQueue::Remove(TMTask* ioTask) {
    std::unique_lock lock(mMutex);
    const auto found = mTasks.find(ioTask);
    if (found == mTasks.end()) return qErr;
    const Moment wake = found->second.wake;
    mTasks.erase(found);
    ioTask->tmCount = wake == kNever ? 0 : CountOf(wake - Clock::now());
    SetActive(ioTask, false);
    const UInt64 run = mRuns;
    mFinished.wait(lock, [&] { return !IsRunningElsewhere(ioTask) || mRuns != run; });
    return noErr;
}

bool TaskQueue::IsRunningElsewhere(const TMTask* inTask) const {
    return mRunning == inTask && mThread != std::this_thread::get_id();
}

// The program's signals are not for this thread.
void TaskQueue::StartThread() {
    if (mThread != std::thread::id()) return;
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread([this] { Run(); });
    mThread = thread.get_id();
    thread.detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TaskQueue::Tasks::iterator TaskQueue::NextTask() {
    const auto due = [](const auto& inEntry) {
        return std::pair(inEntry.second.wake, inEntry.second.order);
    };
    return std::min_element(
        mTasks.begin(), mTasks.end(),
        [&](const auto& inOne, const auto& inOther) { return due(inOne) < due(inOther); });
}

void TaskQueue::Run() {
    std::unique_lock lock(mMutex);
    for (;;) {
        const auto next = NextTask();
        if (next == mTasks.end() || next->second.wake == kNever) {
            mChanged.wait(lock);
        } else if (next->second.wake > Clock::now()) {
            mChanged.wait_until(lock, Moment(next->second.wake));
        } else {
            RunTask(lock, next);
        }
    }
}

// The task may be gone when its procedure returns.
void TaskQueue::RunTask(std::unique_lock<std::mutex>& ioLock, Tasks::iterator inTask) {
    TMTask* task = inTask->first;
    inTask->second.last = inTask->second.wake;
    inTask->second.wake = kNever;
    SetActive(task, false);
    mRunning = task;
    const TimerUPP procedure = task->tmAddr;
    ioLock.unlock();
    if (procedure) procedure(task);
    ioLock.lock();
    mRunning = nullptr;
    ++mRuns;
    mFinished.notify_all();
}

}  // namespace carbon
