// Owns what the file streams of a job report.
#include "burn/SourceWatcher.h"

namespace recorder {

SourceWatcher::SourceWatcher(const std::atomic<bool>& inStop)
    : mStop(inStop), mBuffer(kSourceBufferSize) {
    mWatch.context = this;
    mWatch.buffer = mBuffer.data();
    mWatch.stopped = [](void* self) {
        return static_cast<SourceWatcher*>(self)->mStop.load() ? 1 : 0;
    };
    mWatch.opened = [](void* self, const char* path) {
        auto* watcher = static_cast<SourceWatcher*>(self);
        const std::lock_guard lock(watcher->mMutex);
        watcher->mCurrent = path;
    };
    mWatch.failed = [](void* self, const char* path, SourceFault fault, int error) {
        static_cast<SourceWatcher*>(self)->Failed(path, fault, error);
    };
}

void SourceWatcher::Failed(const char* inPath, SourceFault inFault, int inError) {
    const std::lock_guard lock(mMutex);
    if (mFailure) return;
    if (inFault == kSourceChanged)
        mFailure =
            BurnFailure(ioErr, std::string(inPath) + ": changed while the disc was being written.");
    else
        mFailure = FailureFromErrno(inError, inPath);
}

std::string SourceWatcher::Current() const {
    const std::lock_guard lock(mMutex);
    return mCurrent;
}

std::optional<BurnFailure> SourceWatcher::Failure() const {
    const std::lock_guard lock(mMutex);
    return mFailure;
}

}  // namespace recorder
