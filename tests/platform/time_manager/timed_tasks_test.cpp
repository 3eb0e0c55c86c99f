// Timed tasks: when they run, when they do not, and what is left of their time.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kPatience = 10s;

template <typename Condition>
bool Within(Clock::duration inPatience, Condition inCondition) {
    const auto deadline = Clock::now() + inPatience;
    while (!inCondition()) {
        if (Clock::now() > deadline) return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

// A task that counts its runs. The record comes first, so that its address is the task's.
struct Counter {
    TMTask task{};
    std::atomic<int> runs = 0;
    std::atomic<int> mostRuns = 1;  // primes itself until then
    SInt32 interval = 0;
    std::atomic<bool> isInside = false, mayLeave = true;
    std::atomic<bool> removesItself = false;
    Clock::time_point last;

    Counter() { task.tmAddr = Run; }
    QElemPtr Element() { return reinterpret_cast<QElemPtr>(&task); }
    bool IsActive() const { return task.qType & kTMTaskActive; }

    static void Run(TMTaskPtr inTask) {
        auto* counter = reinterpret_cast<Counter*>(inTask);
        counter->last = Clock::now();
        counter->isInside = true;
        while (!counter->mayLeave) std::this_thread::yield();
        if (counter->removesItself) RmvTime(counter->Element());
        if (++counter->runs < counter->mostRuns) PrimeTime(counter->Element(), counter->interval);
        counter->isInside = false;
    }
};

TEST(TimeManager, RunsATaskOnceOnAnotherThread) {
    static std::thread::id sThread;
    struct Local {
        static void Note(TMTaskPtr) { sThread = std::this_thread::get_id(); }
    };
    TMTask note{};
    note.tmAddr = NewTimerUPP(Local::Note);
    Counter counter;
    InsTime(reinterpret_cast<QElemPtr>(&note));
    InsTime(counter.Element());
    PrimeTime(reinterpret_cast<QElemPtr>(&note), 0);
    PrimeTime(counter.Element(), 0);
    ASSERT_TRUE(Within(kPatience, [&] { return counter.runs == 1; }));
    EXPECT_NE(sThread, std::this_thread::get_id());
    EXPECT_FALSE(counter.IsActive());
    RmvTime(counter.Element());
    RmvTime(reinterpret_cast<QElemPtr>(&note));
    EXPECT_EQ(SInt32(counter.task.tmCount), 0);
}

TEST(TimeManager, NeverRunsATaskBeforeItsTime) {
    for (const SInt32 count : {20, -20000}) {
        Counter counter;
        InsTime(counter.Element());
        const auto start = Clock::now();
        PrimeTime(counter.Element(), count);
        EXPECT_TRUE(Within(kPatience, [&] { return counter.runs == 1; }));
        RmvTime(counter.Element());
        EXPECT_GE(counter.last - start, 20ms);
    }
}

TEST(TimeManager, RunsTasksInTheOrderOfTheirTimes) {
    Counter late, early;
    InsTime(late.Element());
    InsTime(early.Element());
    PrimeTime(late.Element(), 40);
    PrimeTime(early.Element(), 5);
    ASSERT_TRUE(Within(kPatience, [&] { return late.runs == 1; }));
    EXPECT_EQ(early.runs, 1);
    EXPECT_LT(early.last, late.last);
    RmvTime(late.Element());
    RmvTime(early.Element());
}

TEST(TimeManager, RemovingTellsTheTimeLeftInMicrosecondsNegated) {
    Counter counter;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 60000);
    EXPECT_TRUE(counter.IsActive());
    RmvTime(counter.Element());
    EXPECT_FALSE(counter.IsActive());
    EXPECT_LT(SInt32(counter.task.tmCount), -30'000'000);
    EXPECT_GE(SInt32(counter.task.tmCount), -60'000'000);
    EXPECT_EQ(counter.runs, 0);
}

TEST(TimeManager, RemovingTellsTheTimeLeftInMillisecondsWhenMicrosecondsDoNotFit) {
    Counter counter;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 4'000'000);
    RmvTime(counter.Element());
    EXPECT_GT(SInt32(counter.task.tmCount), 3'900'000);
    EXPECT_LE(SInt32(counter.task.tmCount), 4'000'000);
}

TEST(TimeManager, RemovingWaitsForATaskThatIsRunning) {
    Counter counter;
    counter.mayLeave = false;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 0);
    ASSERT_TRUE(Within(kPatience, [&] { return counter.isInside.load(); }));
    std::atomic<bool> isRemoved = false;
    std::thread remover([&] {
        RmvTime(counter.Element());
        EXPECT_FALSE(counter.isInside);
        isRemoved = true;
    });
    EXPECT_FALSE(Within(20ms, [&] { return isRemoved.load(); }));
    counter.mayLeave = true;
    remover.join();
    EXPECT_EQ(counter.runs, 1);
}

TEST(TimeManager, ATaskMayRemoveItself) {
    Counter counter;
    counter.removesItself = true;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 0);
    ASSERT_TRUE(Within(kPatience, [&] { return counter.runs == 1; }));
    EXPECT_EQ(RemoveTimeTask(counter.Element()), qErr);
}

TEST(TimeManager, ATaskMayPrimeItselfAgain) {
    Counter counter;
    counter.mostRuns = 5;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 1);
    EXPECT_TRUE(Within(kPatience, [&] { return counter.runs == 5; }));
    RmvTime(counter.Element());
}

// Each interval begins where the one before ended, so late runs do not add up.
TEST(TimeManager, AnExtendedTaskKeepsItsIntervalHoweverLateItRan) {
    struct Late {
        TMTask task{};
        std::atomic<int> runs = 0;
        UInt32 wakes[5] = {};
        static void Run(TMTaskPtr inTask) {
            auto* late = reinterpret_cast<Late*>(inTask);
            const auto until = Clock::now() + 12ms;  // longer than two intervals
            while (Clock::now() < until) std::this_thread::yield();
            const int run = late->runs;
            late->wakes[run] = UInt32(late->task.tmWakeUp);
            if (run < 4) PrimeTime(reinterpret_cast<QElemPtr>(inTask), 5);
            ++late->runs;
        }
    } late;
    late.task.tmAddr = Late::Run;
    InsXTime(reinterpret_cast<QElemPtr>(&late.task));
    PrimeTime(reinterpret_cast<QElemPtr>(&late.task), 1);
    ASSERT_TRUE(Within(kPatience, [&] { return late.runs == 5; }));
    RmvTime(reinterpret_cast<QElemPtr>(&late.task));
    for (int i = 1; i < 5; ++i) EXPECT_EQ(late.wakes[i] - late.wakes[i - 1], 5000u) << i;
}

TEST(TimeManager, AnExtendedTaskBeginsAnewWhenItsWakeUpWordIsCleared) {
    Counter counter;
    InsXTime(counter.Element());
    PrimeTime(counter.Element(), 0);
    ASSERT_TRUE(Within(kPatience, [&] { return counter.runs == 1; }));
    EXPECT_NE(SInt32(counter.task.tmWakeUp), 0);
    const auto due = counter.last;
    while (Clock::now() < due + 25ms) std::this_thread::yield();
    counter.task.tmWakeUp = 0;
    counter.mostRuns = 0;
    const auto start = Clock::now();
    PrimeTime(counter.Element(), 20);
    ASSERT_TRUE(Within(kPatience, [&] { return counter.runs == 2; }));
    EXPECT_GE(counter.last - start, 20ms);
    RmvTime(counter.Element());
}

TEST(TimeManager, PrimingAgainReplacesTheTime) {
    Counter counter;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 3'600'000);
    PrimeTime(counter.Element(), 1);
    EXPECT_TRUE(Within(kPatience, [&] { return counter.runs == 1; }));
    RmvTime(counter.Element());
}

TEST(TimeManager, TellsOfTasksThatAreNotInTheQueue) {
    Counter counter;
    EXPECT_EQ(PrimeTimeTask(counter.Element(), 1), qErr);
    EXPECT_EQ(RemoveTimeTask(counter.Element()), qErr);
    EXPECT_EQ(InstallTimeTask(nullptr), paramErr);
    EXPECT_EQ(InstallXTimeTask(nullptr), paramErr);
    EXPECT_EQ(PrimeTimeTask(nullptr, 1), paramErr);
    EXPECT_EQ(RemoveTimeTask(nullptr), paramErr);
}

TEST(TimeManager, AChildHasNoTasksOfItsParentAndRunsItsOwn) {
    Counter counter;
    InsTime(counter.Element());
    PrimeTime(counter.Element(), 3'600'000);
    const pid_t child = fork();
    if (child == 0) {
        if (RemoveTimeTask(counter.Element()) != qErr) _exit(1);
        InsTime(counter.Element());
        PrimeTime(counter.Element(), 1);
        _exit(Within(kPatience, [&] { return counter.runs == 1; }) ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(RemoveTimeTask(counter.Element()), noErr);
}

TEST(TimeManager, MicrosecondsGoWithTheTicks) {
    UnsignedWide before, after;
    Microseconds(&before);
    const UInt32 ticks = TickCount();
    Microseconds(&after);
    const auto wide = [](const UnsignedWide& inTime) {
        return UInt64(inTime.hi) << 32 | inTime.lo;
    };
    EXPECT_LE(wide(before), wide(after));
    EXPECT_LE(wide(before) * 60 / 1'000'000, ticks);
    EXPECT_GE(wide(after) * 60 / 1'000'000 + 1, ticks);
}

static_assert(offsetof(TMTask, qType) == offsetof(QElem, qType), "a task is a queue element");
static_assert(sizeof(TMTask) == 14 + 2 * sizeof(void*));

}  // namespace
