// The way from a sending program to those who watch it. Nothing here waits.
#pragma once

#include <mutex>
#include <span>

#include "apple_event_manager/watching/watch_frame.h"
#include "apple_event_manager/watching/watch_page.h"
#include "posix/UniqueFd.h"

namespace carbon {

class WatchLinks {
  public:
    WatchLinks();

    // Tells every monitor; `inBytes` are the event or the answer. What a monitor cannot take now,
    // because it reads too slowly, is counted on the page as missed.
    void Tell(WatchHeader inHeader, std::span<const UInt8> inBytes);

    // Whether they are those of this process, or were made by the one it was forked from.
    bool AreOwn() const;
    void Close();

  private:
    struct Link {
        MonitorNumber number = 0;
        UniqueFd socket;
        size_t inMemory = 0;  // bytes of files it may not have read yet
    };
    enum class Outcome { kSent, kFull, kGone };

    bool TellOne(Link* ioLink, MonitorNumber inNumber, const WatchHeader& inHeader,
                 std::span<const UInt8> inBytes);
    bool Connect(Link* outLink, MonitorNumber inNumber);
    Outcome Send(Link* ioLink, const WatchHeader& inHeader, std::span<const UInt8> inBytes);
    Outcome SendAttached(Link* ioLink, const WatchHeader& inHeader, std::span<const UInt8> inBytes);

    std::mutex mLock;
    Link mLinks[kMaximumMonitors];
    unsigned mForks;
};

// Those of the calling process.
WatchLinks& TheWatchLinks();

}  // namespace carbon
