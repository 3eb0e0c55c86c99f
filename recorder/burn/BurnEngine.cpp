// Owns the engine's thread and its queue.
#include "burn/BurnEngine.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <future>
#include <limits>
#include <utility>

#include "burn/ImageDrive.h"
#include "burn/SourceTree.h"
#include "burn/WorkFile.h"
#include "burn/libraries.h"

namespace recorder {
namespace {

std::string Ended(const BurnResult& inResult) {
    if (inResult.simulated) return "Simulated: everything could be read, nothing was written.";
    std::string text = inResult.path.empty() ? "The disc is written"
                                             : "Done: " + LeafName(inResult.path) + " is written";
    return text + (inResult.verified ? " and verified." : ".");
}

}  // namespace

BurnEngine::BurnEngine(DriveSource& inDrives) : mDrives(inDrives) {
    std::signal(SIGXFSZ,
                SIG_IGN);  // a limit on file sizes is an error of the write, not of the process
    WorkFile::RemoveLeftovers();
    std::promise<void> started;
    mThread = std::thread([&] {
        try {
            StartLibraries();
            started.set_value();
        } catch (...) {
            return started.set_exception(std::current_exception());
        }
        Loop();
        FinishLibraries();
    });
    try {
        started.get_future().get();
        mMeasurer = std::thread([this] { MeasureLoop(); });
    } catch (...) {
        End();
        throw;
    }
}

BurnEngine::~BurnEngine() {
    End();
}

void BurnEngine::End() {
    {
        const std::lock_guard lock(mMutex);
        mQuit = true;
        mStop = true;
    }
    mWake.notify_all();
    for (std::thread* thread : {&mThread, &mMeasurer})
        if (thread->joinable()) thread->join();
}

void BurnEngine::Loop() {
    for (;;) {
        Task task;
        {
            std::unique_lock lock(mMutex);
            mWake.wait(lock, [&] { return mQuit || !mTasks.empty(); });
            if (mQuit) return;
            task = std::move(mTasks.front());
            mTasks.pop_front();
        }
        task();
    }
}

void BurnEngine::Post(Task inTask) {
    {
        const std::lock_guard lock(mMutex);
        mTasks.push_back(std::move(inTask));
    }
    mWake.notify_all();
}

void BurnEngine::RunNow(const Task& inTask) {
    if (Busy()) throw BurnFailure(fBsyErr, "The drive is busy with a disc.");
    std::promise<void> done;
    Post([&] {
        try {
            inTask();
            done.set_value();
        } catch (...) {
            done.set_exception(std::current_exception());
        }
    });
    done.get_future().get();
}

bool BurnEngine::Busy() const {
    const std::lock_guard lock(mMutex);
    return mBusy;
}

// Busy only with a job that is in the queue.
void BurnEngine::BeginJob(JobWork inWork) {
    {
        const std::lock_guard lock(mMutex);
        if (mBusy) throw BurnFailure(fBsyErr, "Another disc is being written.");
        mTasks.emplace_back([this, work = std::move(inWork)] { RunJob(work); });
        mBusy = true;
        mStop = false;
        mResult = {};
        mProgress.Begin();
    }
    mWake.notify_all();
}

bool BurnEngine::WaitUntilQuiet(int inMilliseconds) {
    std::unique_lock lock(mMutex);
    return mQuiet.wait_for(lock, std::chrono::milliseconds(inMilliseconds),
                           [&] { return !mBusy && !IsMeasuring(); });
}

void BurnEngine::RunJob(const JobWork& inWork) {
    Phase phase = Phase::Done;
    SInt32 code = noErr;
    std::string text;
    try {
        text = inWork();
    } catch (const BurnFailure& failure) {
        code = mStop.load() ? SInt32(userCanceledErr)
                            : failure.Code();  // what breaks during a stop is its consequence
        phase = code == userCanceledErr ? Phase::Cancelled : Phase::Failed;
        text = code == userCanceledErr ? "Cancelled." : failure.what();
    } catch (const std::bad_alloc&) {
        phase = Phase::Failed;
        code = memFullErr;
        text = "There is not enough memory.";
    } catch (const std::exception& exception) {
        phase = Phase::Failed;
        code = ioErr;
        text = exception.what();
    }
    {
        const std::lock_guard lock(mMutex);
        mBusy = false;
        mProgress.End(phase, code, text);
    }
    mQuiet.notify_all();
}

std::string BurnEngine::Work(const BurnRequest& inRequest) {
    const auto drive = mDrives.Open(inRequest.driveId);
    const JobContext context{mProgress, mStop};
    const auto keep = [&](const BurnResult& result) {
        const std::lock_guard lock(mMutex);
        mResult = result;
    };
    BurnJob job(*drive, inRequest, context, keep);
    const BurnResult result = job.Run();
    keep(result);
    return Ended(result);
}

void BurnEngine::Start(const BurnRequest& inRequest) {
    BeginJob([this, inRequest] { return Work(inRequest); });
}

void BurnEngine::RequestBlankDisc(const std::string& inDriveId, int inSeconds) {
    BeginJob([=, this] {
        const JobContext context{mProgress, mStop};
        WaitForBlankDisc(*mDrives.Open(inDriveId), context, inSeconds);
        return std::string("A blank disc is in the drive.");
    });
}

void BurnEngine::Cancel() {
    const std::lock_guard lock(mMutex);
    if (mBusy) mStop = true;
}

void BurnEngine::Measure(const std::vector<std::string>& inPaths) {
    {
        const std::lock_guard lock(mMutex);
        mToMeasure = inPaths;
        ++mMeasureOrder;
    }
    mWake.notify_all();
}

// A thread of its own: a tree may be so large that neither jobs nor questions can wait behind it.
void BurnEngine::MeasureLoop() {
    std::unique_lock lock(mMutex);
    for (;;) {
        mWake.wait(lock, [&] { return mQuit || mToMeasure; });
        if (mQuit) return;
        const std::vector<std::string> paths = *std::exchange(mToMeasure, std::nullopt);
        const unsigned order = mMeasureOrder;
        mIsWalking = true;
        lock.unlock();
        const UInt64 bytes = BytesOf(paths, order);
        lock.lock();
        mIsWalking = false;
        mContentKiB = SInt32(std::min<UInt64>(bytes / 1024, std::numeric_limits<SInt32>::max()));
        mQuiet.notify_all();
    }
}

// A later order makes this one worthless.
UInt64 BurnEngine::BytesOf(const std::vector<std::string>& inPaths, unsigned inOrder) const {
    try {
        return WalkSources(inPaths, false,
                           [&](size_t, const std::string&) {
                               return !mQuit.load() && inOrder == mMeasureOrder.load();
                           })
            .contentBytes;
    } catch (const std::exception&) {
        return 0;  // what is wrong with the items is said when they are written
    }
}

void BurnEngine::Forget() {
    const std::lock_guard lock(mMutex);
    if (mBusy) return;
    mProgress.Reset();
    mResult = {};
}

BurnEngine::Snapshot BurnEngine::Take() const {
    const std::lock_guard lock(mMutex);
    return {mProgress.Snapshot(), mResult, mContentKiB, IsMeasuring()};
}

SInt32 BurnEngine::ContentKiB() const {
    const std::lock_guard lock(mMutex);
    return mContentKiB;
}

bool BurnEngine::Measuring() const {
    const std::lock_guard lock(mMutex);
    return IsMeasuring();
}

DriveInfo BurnEngine::Probe(const std::string& inDriveId) {
    const std::shared_ptr<Drive> drive = mDrives.Open(inDriveId);
    if (dynamic_cast<ImageDrive*>(drive.get()) != nullptr)
        return drive->Probe();  // a look into a folder
    DriveInfo info;
    RunNow([&] { info = drive->Probe(); });
    return info;
}

void BurnEngine::Eject(const std::string& inDriveId) {
    const std::shared_ptr<Drive> drive = mDrives.Open(inDriveId);
    RunNow([&] { drive->Eject(); });
}

}  // namespace recorder
