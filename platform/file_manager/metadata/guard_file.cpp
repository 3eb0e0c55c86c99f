// Owns the openings of the guards' file that wait for the next guard.
#include "file_manager/metadata/guard_file.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cerrno>

#include "posix/os_err.h"
#include "posix/runtime_folder.h"

namespace carbon {

namespace {

constexpr int kNone = -1;

std::array<std::atomic<int>, 4> sIdle{kNone, kNone, kNone, kNone};
std::atomic<unsigned> sForks = 0;  // counted before and after, for what is opened between

// A lock belongs to an opening, and a child that kept one would keep its parent's locks. Nothing
// here waits, so that this is safe whatever the other threads were at.
void CloseInChild() {
    for (auto& idle : sIdle) UniqueFd(idle.exchange(kNone));
}

void WatchForks() {
    static const auto sCount = [] { ++sForks; };
    static const int sInstalled = pthread_atfork(sCount, sCount, CloseInChild);
    static_cast<void>(sInstalled);
}

// Whoever opens the file anew would hold locks on another one.
bool IsRemoved(int inFile) {
    struct stat facts;
    return fstat(inFile, &facts) != 0 || facts.st_nlink == 0;
}

UniqueFd TakeIdle() {
    for (auto& idle : sIdle) {
        UniqueFd file(idle.exchange(kNone));
        if (file && !IsRemoved(file.Get())) return file;
    }
    return UniqueFd();
}

}  // namespace

OSErr GuardFile::Open() {
    WatchForks();
    mForks = sForks;
    mFile = TakeIdle();
    if (mFile) return noErr;
    std::string folder;
    if (const OSErr error = RuntimeFolder(&folder)) return error;
    const auto path = folder + "/guards";
    mFile.Reset(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    return mFile ? OSErr(noErr) : OSErrFromErrno(errno);
}

// One that a child has too is not used again.
GuardFile::~GuardFile() {
    if (!mFile || mForks != sForks) return;
    for (auto& idle : sIdle) {
        int none = kNone;
        if (!idle.compare_exchange_strong(none, mFile.Get())) continue;
        mFile.Release();
        return;
    }
}

}  // namespace carbon
