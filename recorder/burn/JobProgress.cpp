// Owns what a job shows while it runs: status, percentage, rate and the sentence.
#include "burn/JobProgress.h"

#include <algorithm>
#include <cstdio>

#include "burn/SourceTree.h"

namespace recorder {
namespace {

constexpr SInt32 kFirstStatus = 2, kLastWriting = 79, kFirstVerifying = 80, kLastVerifying = 99,
                 kClosing = 100;
constexpr auto kRateWindow = std::chrono::seconds(2), kPatience = std::chrono::seconds(3);

SInt32 Scale(SInt32 inFrom, SInt32 inTo, UInt64 inDone, UInt64 inTotal) {
    if (inTotal == 0) return inFrom;
    return inFrom +
           SInt32(double(inTo - inFrom) * double(std::min(inDone, inTotal)) / double(inTotal));
}

std::string Megabytes(UInt64 inBytes) {
    char text[40];
    std::snprintf(text, sizeof text, inBytes < 10'000'000 ? "%.1f" : "%.0f", double(inBytes) / 1e6);
    return text;
}

const char* Name(Phase inPhase) {
    switch (inPhase) {
        case Phase::Preparing:
            return "Preparing";
        case Phase::Writing:
            return "Writing";
        case Phase::Verifying:
            return "Verifying";
        default:
            return "Closing";
    }
}

}  // namespace

void JobProgress::Begin() {
    const std::lock_guard lock(mMutex);
    mPhase = Phase::Preparing;
    mDone = mTotal = mFound = mRate = 0;
    mAction = mFile = mEndText = {};
    mCode = 0;
    mHighest = kFirstStatus;
    Moved();
}

void JobProgress::Enter(Phase inPhase, UInt64 inBytesTotal) {
    const std::lock_guard lock(mMutex);
    mPhase = inPhase;
    mDone = mRateBytes = mRate = 0;
    mTotal = inBytesTotal;
    mAction = mFile = {};
    mRateStart = Clock::now();
    Moved();
}

void JobProgress::Move(UInt64 inBytesDone) {
    const std::lock_guard lock(mMutex);
    mDone = inBytesDone;
    Moved();
    const auto elapsed = mLastMove - mRateStart;
    const double seconds = std::chrono::duration<double>(elapsed).count();
    if (seconds > 0.05) mRate = UInt64(double(mDone - mRateBytes) / seconds);
    if (elapsed < kRateWindow) return;
    mRateStart = mLastMove;
    mRateBytes = mDone;
}

void JobProgress::Doing(const std::string& inAction) {
    const std::lock_guard lock(mMutex);
    mAction = inAction;
    mFile = {};
    Moved();
}

void JobProgress::File(const std::string& inPath) {
    const std::lock_guard lock(mMutex);
    mFile = inPath;
    Moved();
}

void JobProgress::Found(UInt64 inItems, const std::string& inFolder) {
    const std::lock_guard lock(mMutex);
    mFound = inItems;
    mFile = inFolder;
    Moved();
}

void JobProgress::End(Phase inPhase, SInt32 inCode, const std::string& inText) {
    const std::lock_guard lock(mMutex);
    mPhase = inPhase;
    mCode = inCode;
    mEndText = inText;
}

void JobProgress::Reset() {
    const std::lock_guard lock(mMutex);
    mPhase = Phase::Idle;
    mCode = 0;
    mDone = mTotal = mRate = 0;
    mEndText = {};
}

bool JobProgress::Busy() const {
    const std::lock_guard lock(mMutex);
    return mPhase != Phase::Idle && mPhase < Phase::Done;
}

SInt32 JobProgress::Status() const {
    switch (mPhase) {
        case Phase::Idle:
        case Phase::Done:
            return 0;
        case Phase::Cancelled:
        case Phase::Failed:
            return mCode;
        case Phase::Preparing:
            return kFirstStatus;
        case Phase::Writing:
            return Scale(kFirstStatus, kLastWriting, mDone, mTotal);
        case Phase::Verifying:
            return Scale(kFirstVerifying, kLastVerifying, mDone, mTotal);
        case Phase::Closing:
            break;
    }
    return kClosing;
}

std::string JobProgress::Amounts() const {
    if (mPhase == Phase::Preparing && mFound > 0) return std::to_string(mFound) + " items found";
    if (mTotal == 0 || mPhase == Phase::Closing) return {};
    return Megabytes(mDone) + " of " + Megabytes(mTotal) + " MB";
}

std::string JobProgress::Text() const {
    if (mPhase == Phase::Idle) return "Idle.";
    if (mPhase >= Phase::Done) return mEndText;
    std::string text = Name(mPhase);
    const char* separator = ": ";
    for (const auto& part : {Amounts(), mAction, LeafName(mFile)}) {
        if (part.empty()) continue;
        text += separator + part;
        separator = ", ";
    }
    const auto still = Clock::now() - mLastMove;
    if (still >= kPatience)
        text += " (waiting for the files or the drive for " +
                std::to_string(std::chrono::duration_cast<std::chrono::seconds>(still).count()) +
                " seconds)";
    return text + ".";
}

SInt32 JobProgress::ShownStatus() const {
    const SInt32 status = Status();
    if (mPhase == Phase::Idle || mPhase >= Phase::Done) return status;
    return mHighest = std::max(mHighest, status);
}

SInt32 JobProgress::CurrentStatus() const {
    const std::lock_guard lock(mMutex);
    return ShownStatus();
}

ProgressSnapshot JobProgress::Snapshot() const {
    const std::lock_guard lock(mMutex);
    ProgressSnapshot snapshot;
    snapshot.phase = mPhase;
    snapshot.status = ShownStatus();
    snapshot.percent = mPhase == Phase::Done ? 100 : Scale(0, 100, mDone, mTotal);
    snapshot.bytesDone = mDone;
    snapshot.bytesTotal = mTotal;
    snapshot.bytesPerSecond = mRate;
    snapshot.text = Text();
    snapshot.errorCode = mCode;
    if (mCode != 0) snapshot.errorText = mEndText;
    return snapshot;
}

}  // namespace recorder
