// Who watches the user's events: one page of memory in the runtime folder, mapped by every program.
//
// While nobody watches, a send looks at one word of it and makes no system call. A monitor is a
// number there and a socket of the same name; one that was killed is taken out by the next send.
#pragma once

#include <Carbon/MacTypes.h>

#include <atomic>
#include <string>

namespace carbon {

constexpr int kMaximumMonitors = 4;

struct WatchPage {
    std::atomic<UInt64> monitors;                  // four numbers of 16 bits; 0: nobody
    std::atomic<UInt32> missed[kMaximumMonitors];  // what could not be told to each, counts up
};

using MonitorNumber = UInt16;

// The caller's view of the page: an empty one of its own before OpenWatchPage.
extern std::atomic<WatchPage*> gWatchPage;

inline WatchPage& TheWatchPage() {
    return *gWatchPage.load(std::memory_order_relaxed);
}

inline bool IsSomebodyWatching() {
    return TheWatchPage().monitors.load(std::memory_order_relaxed) != 0;
}

// Maps the page, making it where there is none. Without success the caller goes on unwatched.
// permErr for a file that is not the user's own, ioErr, and the codes of RuntimeFolder.
OSErr OpenWatchPage();

inline MonitorNumber MonitorIn(UInt64 inMonitors, int inLane) {
    return static_cast<MonitorNumber>(inMonitors >> (16 * inLane));
}

// -1 when it is not there.
int LaneOf(UInt64 inMonitors, MonitorNumber inNumber);

// Whether the number is on the page afterwards; false when four others are.
bool AddMonitor(MonitorNumber inNumber);
void RemoveMonitor(MonitorNumber inNumber);

// Empty when there is no runtime folder.
std::string MonitorSocketPath(MonitorNumber inNumber);

}  // namespace carbon
