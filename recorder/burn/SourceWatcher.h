// Follows the files of a job while libisofs reads them: which one is open, and whether one was not
// what it had been.
#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "burn/BurnFailure.h"
#include "burn/source_stream.h"

namespace recorder {

class SourceWatcher {
  public:
    // Reading stops as soon as `inStop` is true. Outlives every stream made with Watch().
    explicit SourceWatcher(const std::atomic<bool>& inStop);
    SourceWatcher(const SourceWatcher&) = delete;
    SourceWatcher& operator=(const SourceWatcher&) = delete;

    const SourceWatch* Watch() const { return &mWatch; }
    std::string Current() const;
    // The first file that failed.
    std::optional<BurnFailure> Failure() const;

  private:
    void Failed(const char* inPath, SourceFault inFault, int inError);

    const std::atomic<bool>& mStop;
    std::vector<unsigned char> mBuffer;
    SourceWatch mWatch;
    mutable std::mutex mMutex;
    std::string mCurrent;
    std::optional<BurnFailure> mFailure;
};

}  // namespace recorder
