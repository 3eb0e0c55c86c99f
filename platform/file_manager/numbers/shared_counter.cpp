// Owns the mapping of a shared counter's file.
#include "file_manager/numbers/shared_counter.h"

#include <fcntl.h>

#include "posix/UniqueFd.h"
#include "posix/shared_memory.h"

namespace carbon {

static_assert(std::atomic<UInt64>::is_always_lock_free);

SharedCounter::SharedCounter(const std::string& inPath) {
    const UniqueFd file(open(inPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    // With its place on the disk: the first counting on a full one would end the process.
    if (!file || posix_fallocate(file.Get(), 0, sizeof mOwn) != 0) return;
    void* memory = MapShared(file.Get(), sizeof mOwn, WhenShortened::kLengthen, inPath);
    if (memory) mValue = static_cast<std::atomic<UInt64>*>(memory);
}

SharedCounter::~SharedCounter() {
    if (mValue != &mOwn) UnmapShared(mValue, sizeof mOwn);
}

}  // namespace carbon
