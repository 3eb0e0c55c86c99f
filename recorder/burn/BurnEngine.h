// The engine: one thread that owns libburn, libisofs and the drives, and works on one job at a
// time; another one measures. Any thread may call it; no call waits for them, except where said.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "burn/BurnJob.h"
#include "burn/DriveShelf.h"
#include "burn/JobProgress.h"

namespace recorder {

class BurnEngine {
  public:
    struct Snapshot {
        ProgressSnapshot progress;
        BurnResult result;      // of the running or the last job
        SInt32 contentKiB = 0;  // of what was last measured
        bool measuring = false;
    };

    // Removes what an earlier process left unfinished. Throws when the disc libraries cannot be
    // started.
    explicit BurnEngine(DriveSource& inDrives);
    // Cancels what runs and waits for its end.
    ~BurnEngine();
    BurnEngine(const BurnEngine&) = delete;
    BurnEngine& operator=(const BurnEngine&) = delete;

    // fBsyErr while something runs.
    void Start(const BurnRequest& inRequest);
    // Has a blank disc put into the drive: a job of its own, which ends as soon as there is one.
    void RequestBlankDisc(const std::string& inDriveId, int inSeconds);
    // Ends the running job within two seconds. Nothing happens when there is none.
    void Cancel();
    // The size of these items, in the background.
    void Measure(const std::vector<std::string>& inPaths);
    // Forgets how the last job ended. Nothing happens while one runs.
    void Forget();

    bool Busy() const;
    // Waits until nothing runs and nothing is measured, or so much time has passed; whether that is
    // so.
    bool WaitUntilQuiet(int inMilliseconds);
    SInt32 Status() const { return mProgress.CurrentStatus(); }
    ProgressSnapshot Progress() const { return mProgress.Snapshot(); }
    Snapshot Take() const;
    // Parts of it, for those who ask often: a report may have many lines.
    SInt32 ContentKiB() const;
    bool Measuring() const;
    // Waits for the engine: fBsyErr while a job runs in a burner that only the engine may ask.
    // nsDrvErr without such a drive.
    DriveInfo Probe(const std::string& inDriveId);
    void Eject(const std::string& inDriveId);

  private:
    using Task = std::function<void()>;

    void Loop();
    void Post(Task inTask);
    void RunNow(const Task& inTask);  // on the engine's thread, while it is idle; waits
    void MeasureLoop();
    UInt64 BytesOf(const std::vector<std::string>& inPaths, unsigned inOrder) const;
    bool IsMeasuring() const { return mIsWalking || mToMeasure.has_value(); }
    void End();
    using JobWork = std::function<std::string()>;  // gives the sentence it ends with

    void BeginJob(JobWork inWork);
    void RunJob(const JobWork& inWork);
    std::string Work(const BurnRequest& inRequest);

    DriveSource& mDrives;
    JobProgress mProgress;
    std::atomic<bool> mStop = false, mQuit = false;
    std::atomic<unsigned> mMeasureOrder = 0;  // of the last one
    mutable std::mutex mMutex;
    std::condition_variable mWake, mQuiet;
    std::deque<Task> mTasks;
    bool mBusy = false;
    BurnResult mResult;
    SInt32 mContentKiB = 0;
    std::optional<std::vector<std::string>> mToMeasure;
    bool mIsWalking = false;
    std::thread mThread, mMeasurer;  // last: they use all of the above
};

}  // namespace recorder
