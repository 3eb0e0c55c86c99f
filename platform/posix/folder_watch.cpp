// Owns the kernel's notices of changes in folders.
#include "posix/folder_watch.h"

#include <sys/inotify.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <filesystem>

#include "posix/fork_count.h"

namespace carbon {
namespace {

constexpr uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE |
                              IN_MODIFY | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;

}  // namespace

FolderWatch::FolderWatch()
    : mQueue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), mForks(ForkCount()), mBlind(!mQueue) {}

bool FolderWatch::AddExisting(const std::string& inFolder) {
    return inotify_add_watch(mQueue.Get(), inFolder.c_str(), kChanges | IN_ONLYDIR) >= 0;
}

void FolderWatch::Add(const std::string& inFolder) {
    for (std::filesystem::path folder = inFolder; !mBlind; folder = folder.parent_path()) {
        if (AddExisting(folder.string())) return;
        const bool missing = errno == ENOENT || errno == ENOTDIR;
        mBlind = !missing || folder == folder.parent_path();
    }
}

void FolderWatch::AddFile(const std::string& inFile) {
    if (!mBlind) mBlind = inotify_add_watch(mQueue.Get(), inFile.c_str(), kChanges) < 0;
}

bool FolderWatch::HasChanged() {
    if (mBlind || mForks != ForkCount()) return true;
    int waiting = 0;  // bytes; asking for their number costs less than trying to read them
    const bool quiet = ioctl(mQueue.Get(), FIONREAD, &waiting) == 0 && waiting == 0;
    mBlind = !quiet;  // once seen, a change stays seen until there is a new watch
    return !quiet;
}

}  // namespace carbon
