// Owns the page that says who watches.
#include "apple_event_manager/watching/watch_page.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "posix/UniqueFd.h"
#include "posix/os_err.h"
#include "posix/runtime_folder.h"
#include "posix/shared_memory.h"

namespace carbon {

namespace {

constexpr char kPageName[] = "/watchers.1";
constexpr off_t kPageSize = 4096;

WatchPage gNobody{};

bool IsOwnFile(const struct stat& inFacts) {
    return S_ISREG(inFacts.st_mode) && inFacts.st_uid == geteuid() &&
           (inFacts.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

// A file that was just made is empty, and zeros are a page on which nobody stands: whoever comes
// first makes it long enough.
OSErr OpenFile(const std::string& inPath, UniqueFd* outFile) {
    UniqueFd file(open(inPath.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    struct stat facts;
    if (!file || fstat(file.Get(), &facts) != 0)
        return errno == ELOOP ? OSErr{permErr} : OSErrFromErrno(errno);
    if (!IsOwnFile(facts)) return permErr;
    if (facts.st_size < kPageSize && ftruncate(file.Get(), kPageSize) != 0)
        return OSErrFromErrno(errno);
    *outFile = std::move(file);
    return noErr;
}

// Calls `inChange` until the word was changed by nobody else meanwhile.
template <typename Change>
bool ChangeMonitors(Change inChange) {
    std::atomic<UInt64>& monitors = TheWatchPage().monitors;
    UInt64 old = monitors;
    for (;;) {
        const UInt64 changed = inChange(old);
        if (changed == old) return false;
        if (monitors.compare_exchange_weak(old, changed)) return true;
    }
}

UInt64 InLane(int inLane, MonitorNumber inNumber) {
    return UInt64{inNumber} << (16 * inLane);
}

}  // namespace

constinit std::atomic<WatchPage*> gWatchPage = &gNobody;

// An earlier page stays mapped: other threads may be looking at it.
OSErr OpenWatchPage() {
    std::string folder;
    UniqueFd file;
    OSErr err = RuntimeFolder(&folder);
    if (!err) err = OpenFile(folder + kPageName, &file);
    if (err) return err;
    void* page = MapShared(file.Get(), kPageSize, WhenShortened::kLengthen, folder + kPageName);
    if (!page) return OSErrFromErrno(errno);
    gWatchPage = static_cast<WatchPage*>(page);
    return noErr;
}

int LaneOf(UInt64 inMonitors, MonitorNumber inNumber) {
    for (int lane = 0; lane < kMaximumMonitors; ++lane)
        if (MonitorIn(inMonitors, lane) == inNumber) return lane;
    return -1;
}

bool AddMonitor(MonitorNumber inNumber) {
    ChangeMonitors([&](UInt64 monitors) {
        const int lane = LaneOf(monitors, inNumber) < 0 ? LaneOf(monitors, 0) : -1;
        return lane < 0 ? monitors : monitors | InLane(lane, inNumber);
    });
    return LaneOf(TheWatchPage().monitors, inNumber) >= 0;
}

void RemoveMonitor(MonitorNumber inNumber) {
    ChangeMonitors([&](UInt64 monitors) {
        const int lane = LaneOf(monitors, inNumber);
        return lane < 0 ? monitors : monitors & ~InLane(lane, inNumber);
    });
}

std::string MonitorSocketPath(MonitorNumber inNumber) {
    std::string folder;
    char name[16];
    std::snprintf(name, sizeof name, "/watch.%x", inNumber);
    return RuntimeFolder(&folder) == noErr ? folder + name : std::string();
}

}  // namespace carbon
