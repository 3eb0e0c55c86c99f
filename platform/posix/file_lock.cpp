// Owns waiting for a lock file, up to a deadline.
#include "posix/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <thread>

namespace carbon {

FileLock::FileLock(const std::string& inPath, std::chrono::milliseconds inPatience)
    : mFile(open(inPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
    const auto deadline = std::chrono::steady_clock::now() + inPatience;
    while (mFile && !(mHeld = flock(mFile.Get(), LOCK_EX | LOCK_NB) == 0) &&
           std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

}  // namespace carbon
