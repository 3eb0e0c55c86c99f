// The receiving end of a monitor: senders come in, what they tell comes out in the order of time.
#pragma once

#include <Carbon/AEDataModel.h>

#include <deque>
#include <optional>
#include <vector>

#include "apple_event_manager/data/buffer.h"
#include "apple_event_manager/watching/watch_frame.h"
#include "apple_event_manager/watching/watch_page.h"
#include "posix/UniqueFd.h"
#include "posix/deadline.h"

namespace carbon {

// Something seen; whoever takes it disposes the event.
struct Sighting {
    WatchHeader header;
    AppleEvent event{typeNull, nullptr};  // null with kEnded
};

// Belongs to one thread at a time. A sender that breaks the rules is hung up on.
class MonitorPort {
  public:
    MonitorPort() = default;
    ~MonitorPort();
    MonitorPort(const MonitorPort&) = delete;
    MonitorPort& operator=(const MonitorPort&) = delete;

    // Begins to watch. memFullErr when four others do; the codes of CheckIn and OpenWatchPage.
    OSErr Open();

    // The next one; nothing when none came in time or a signal was caught.
    std::optional<Sighting> Next(Moment inUntil);

    // What could not be told to this monitor since the last call.
    UInt32 TakeMissed();

  private:
    struct Sender {
        UniqueFd socket;
        UInt32 number;  // serial number, low word; 0: it had ended when it was asked for
    };

    bool Register();
    void StayRegistered();
    bool Wait(Moment inUntil);
    void Accept();
    void ReadAll();
    bool ReadSome(const Sender& inSender);
    bool Receive(const Sender& inSender, bool* outIsEmpty);
    bool Keep(const WatchHeader& inHeader, Buffer&& inBytes);

    MonitorNumber mNumber = 0;
    UniqueFd mListener;
    std::vector<Sender> mSenders;
    std::deque<Sighting> mSightings;
    size_t mBatch = 0;         // bytes of them
    UInt32 mMissedBefore = 0;  // the page's count when it was last looked at
    UInt32 mMissed = 0;
    int mLane = -1;
    Moment mNextLook{};      // at the page
    Moment mAcceptsAgain{};  // after descriptors ran out
};

}  // namespace carbon
