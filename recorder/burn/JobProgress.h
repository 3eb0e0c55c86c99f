// How far a job is: written by the engine thread, read by anyone.
#pragma once

#include <Carbon/MacTypes.h>

#include <chrono>
#include <mutex>
#include <string>

namespace recorder {

enum class Phase { Idle, Preparing, Writing, Verifying, Closing, Done, Cancelled, Failed };

// One moment of a job.
struct ProgressSnapshot {
    Phase phase = Phase::Idle;
    SInt32 status = 0;   // 0 idle or done, 2..79 preparing and writing, 80..99 verifying, 100
                         // closing, else the error; never 1
    SInt32 percent = 0;  // of the phase
    UInt64 bytesDone = 0, bytesTotal = 0;  // of the phase; total 0 while unknown
    UInt64 bytesPerSecond = 0;             // over the last seconds
    std::string text;                      // one sentence
    SInt32 errorCode = 0;
    std::string errorText;
};

class JobProgress {
  public:
    void Begin();  // a new job: preparing
    void Enter(Phase inPhase, UInt64 inBytesTotal);
    void Move(UInt64 inBytesDone);
    // What is being done within the phase, shown in the text, and the file it is done to; either
    // may be empty.
    void Doing(const std::string& inAction);
    void File(const std::string& inPath);
    void Found(UInt64 inItems, const std::string& inFolder);
    void End(Phase inPhase, SInt32 inCode, const std::string& inText);
    void Reset();  // back to idle, as if no job had been

    bool Busy() const;
    ProgressSnapshot Snapshot() const;
    SInt32 CurrentStatus() const;  // the snapshot's, for those who ask for nothing else

  private:
    using Clock = std::chrono::steady_clock;

    std::string Text() const;
    std::string Amounts() const;
    SInt32 Status() const;
    SInt32 ShownStatus() const;
    void Moved() { mLastMove = Clock::now(); }

    mutable std::mutex mMutex;
    Phase mPhase = Phase::Idle;
    UInt64 mDone = 0, mTotal = 0, mFound = 0;
    std::string mAction, mFile, mEndText;
    SInt32 mCode = 0;
    mutable SInt32 mHighest = 0;  // the status shown so far; it never falls during a job
    Clock::time_point mLastMove, mRateStart;
    UInt64 mRateBytes = 0, mRate = 0;
};

}  // namespace recorder
