// Owns the order of things in a job: plan, write, read back, finish.
#include "burn/BurnJob.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "burn/BlockSums.h"
#include "burn/PageBuffer.h"
#include "burn/SourceTree.h"
#include "burn/SourceWatcher.h"
#include "burn/damage.h"

namespace recorder {
namespace {

constexpr size_t kReadBackChunk = 1024 * 1024;
constexpr int kPatienceForDisc = 600;  // seconds

// Sums what passes, and says how far it is.
class ObservedStream : public ImageStream {
  public:
    ObservedStream(ImageStream& inStream, BlockSums& inSums, const SourceWatcher& inWatcher,
                   JobProgress& inProgress)
        : mStream(inStream), mSums(inSums), mWatcher(inWatcher), mProgress(inProgress) {}

    UInt64 Size() const override { return mStream.Size(); }
    void Read(UInt8* outData, size_t inSize) override {
        mStream.Read(outData, inSize);
        // A file that changed was noticed when it was closed; its bytes are worth nothing.
        if (const auto failure = mWatcher.Failure()) throw *failure;
        mSums.Add(outData, inSize);
        mDone += inSize;
        mProgress.File(mWatcher.Current());
        mProgress.Move(mDone);
    }

  private:
    ImageStream& mStream;
    BlockSums& mSums;
    const SourceWatcher& mWatcher;
    JobProgress& mProgress;
    UInt64 mDone = 0;
};

std::string DefaultVolumeName(const std::vector<std::string>& inPaths) {
    return inPaths.empty() ? "Untitled" : LeafName(inPaths.front());
}

}  // namespace

void WaitForBlankDisc(Drive& inDrive, const JobContext& inContext, int inSeconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(inSeconds);
    while (!inDrive.HasBlankDisc()) {
        inContext.CheckStop();
        if (std::chrono::steady_clock::now() >= deadline)
            throw BurnFailure(kNoDiscErr, "No blank disc was put into the drive.");
        inContext.progress.Doing("waiting for a blank disc to be put into the drive");
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

BurnJob::BurnJob(Drive& inDrive, const BurnRequest& inRequest, const JobContext& inContext,
                 std::function<void(const BurnResult&)> inPlanned)
    : mDrive(inDrive), mRequest(inRequest), mContext(inContext), mPlanned(std::move(inPlanned)) {
    mResult.simulated = mRequest.goal.simulate;
    if (mRequest.goal.volumeName.empty())
        mRequest.goal.volumeName = DefaultVolumeName(mRequest.paths);
}

SourceTree BurnJob::Plan() {
    SourceTree tree =
        WalkSources(mRequest.paths, mRequest.hfsPlus, [&](size_t found, const std::string& folder) {
            mContext.progress.Found(found, folder);
            return !mContext.stop.load();
        });
    mResult.report = tree.report;
    mResult.report.insert(mResult.report.end(), tree.unreadable.begin(), tree.unreadable.end());
    mResult.nodes = SInt32(tree.nodes.size() - 1);
    mPlanned(mResult);
    // A disc that silently lacks what was asked for is worse than none.
    if (!tree.unreadable.empty())
        throw BurnFailure(
            afpAccessDenied,
            tree.unreadable.front() + (tree.unreadable.size() == 1 ? "." : ", and others."));
    return tree;
}

void BurnJob::WaitForDisc() {
    if (!mRequest.goal.simulate && mRequest.mayAskForDisc)
        WaitForBlankDisc(mDrive, mContext, kPatienceForDisc);
}

void BurnJob::Write(Recording& inRecording, ImageStream& inStream, const SourceWatcher& inWatcher) {
    ObservedStream observed(inStream, *mSums, inWatcher, mContext.progress);
    mContext.progress.Enter(Phase::Writing, inStream.Size());
    inRecording.Write(observed, mContext);
    if (const auto failure = inWatcher.Failure()) throw *failure;
    mContext.CheckStop();
}

void BurnJob::Verify(Recording& inRecording, UInt64 inSize) {
    mContext.progress.Enter(Phase::Verifying, inSize);
    mContext.progress.Doing("reading the disc back");
    inRecording.PrepareReadBack();
    const PageBuffer chunk(kReadBackChunk);
    for (UInt64 offset = 0; offset < inSize;) {
        mContext.CheckStop();
        const size_t count = size_t(std::min<UInt64>(kReadBackChunk, inSize - offset));
        inRecording.ReadBack(offset, chunk.Data(), count);
        if (const auto bad = mSums->FirstDifference(offset, chunk.Data(), count)) {
            mContext.progress.Doing("looking for the damaged file");
            throw BurnFailure(
                dataVerErr, "The disc differs from what was written, in " +
                                WhatLiesAt(inRecording, mContext, inSize, *bad, BlockSums::kBlock) +
                                ".");
        }
        offset += count;
        mContext.progress.Move(offset);
    }
    mResult.verified = true;
}

BurnResult BurnJob::Run() {
    BlockSums sums;
    mSums = &sums;
    const SourceTree tree = Plan();
    WaitForDisc();
    const auto recording = mDrive.Begin(mRequest.goal);
    SourceWatcher watcher(mContext.stop);
    mContext.progress.Doing("laying out the disc");
    DiscImage image(tree, {mRequest.goal.volumeName, mRequest.hfsPlus}, watcher,
                    [&] { return !mContext.stop.load(); });
    const auto stream = image.Open();
    recording->Reserve(stream->Size());
    Write(*recording, *stream, watcher);
    if (mRequest.verify && !mRequest.goal.simulate) Verify(*recording, stream->Size());
    mContext.CheckStop();
    mContext.progress.Enter(Phase::Closing, stream->Size());
    mContext.progress.Move(stream->Size());
    mResult.path = recording->Finish();
    return mResult;
}

}  // namespace recorder
