// Owns the registration of a monitor and the reading from those who send to it.
#include "apple_event_manager/watching/monitor_port.h"

#include <Carbon/MacErrors.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/limits.h"
#include "apple_event_manager/transport/received.h"
#include "apple_event_manager/watching/watch_packet.h"
#include "posix/local_socket.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

constexpr Clock::duration kLookAgainAfter = std::chrono::seconds(1);
constexpr Clock::duration kRestWithoutDescriptors = std::chrono::milliseconds(100);
constexpr int kPacketsAtATime = 64;
constexpr size_t kLargestBatch = 64 << 20;

// Those that were killed are still on the page when nobody has sent anything since.
void RemoveDeadMonitors() {
    const UInt64 monitors = TheWatchPage().monitors;
    for (int lane = 0; lane < kMaximumMonitors; ++lane) {
        const MonitorNumber number = MonitorIn(monitors, lane);
        UniqueFd socket;
        const int error = number == 0 ? 0 : ConnectLocalSocket(MonitorSocketPath(number), &socket);
        if (error != ECONNREFUSED && error != ENOENT) continue;
        RemoveMonitor(number);
        unlink(MonitorSocketPath(number).c_str());
    }
}

// Derived from the process, so that no other one chooses it at the same time; a process with
// several monitors takes the next ones.
MonitorNumber FreeNumber() {
    const UInt64 monitors = TheWatchPage().monitors;
    auto number = static_cast<MonitorNumber>(CurrentProcess().psn.lowLongOfPSN);
    while (number == 0 || LaneOf(monitors, number) >= 0) ++number;
    return number;
}

UInt32 NumberOfPeer(pid_t inPid) {
    const auto process = FindProcessByPid(inPid);
    return process ? process->psn.lowLongOfPSN : 0;
}

}  // namespace

MonitorPort::~MonitorPort() {
    if (mListener) {
        RemoveMonitor(mNumber);
        unlink(MonitorSocketPath(mNumber).c_str());
    }
    for (Sighting& sighting : mSightings) AEDisposeDesc(&sighting.event);
}

OSErr MonitorPort::Open() {
    OSErr err = CheckIn();
    if (!err) err = OpenWatchPage();
    if (err) return err;
    RemoveDeadMonitors();
    mNumber = FreeNumber();
    err = ListenOnLocalSocket(MonitorSocketPath(mNumber), &mListener);
    if (err) return err;
    return Register() ? OSErr{noErr} : OSErr{memFullErr};
}

bool MonitorPort::Register() {
    if (!AddMonitor(mNumber)) return false;
    const int lane = LaneOf(TheWatchPage().monitors, mNumber);
    if (lane >= 0 && lane != mLane) {
        mLane = lane;
        mMissedBefore = TheWatchPage().missed[lane];
    }
    return lane >= 0;
}

// The page may have been removed with its folder, and any program of the user's may write to it.
void MonitorPort::StayRegistered() {
    if (Clock::now() < mNextLook) return;
    mNextLook = Clock::now() + kLookAgainAfter;
    Register();
}

UInt32 MonitorPort::TakeMissed() {
    if (mLane >= 0 && LaneOf(TheWatchPage().monitors, mNumber) == mLane) {
        const UInt32 count = TheWatchPage().missed[mLane];
        mMissed += count - mMissedBefore;
        mMissedBefore = count;
    }
    return std::exchange(mMissed, 0);
}

std::optional<Sighting> MonitorPort::Next(Moment inUntil) {
    StayRegistered();
    while (mSightings.empty()) {
        if (!Wait(inUntil)) return {};
    }
    const Sighting sighting = mSightings.front();
    mSightings.pop_front();
    return sighting;
}

// False when the time is over or a signal was caught.
bool MonitorPort::Wait(Moment inUntil) {
    const Moment now = Clock::now();
    const Moment until = std::min(inUntil, now + kLookAgainAfter);
    std::vector<pollfd> waited{{now < mAcceptsAgain ? -1 : mListener.Get(), POLLIN, 0}};
    for (const Sender& sender : mSenders) waited.push_back({sender.socket.Get(), POLLIN, 0});
    if (poll(waited.data(), waited.size(), MillisecondsUntil(until)) < 0) return false;
    StayRegistered();
    if (waited[0].revents != 0) Accept();
    ReadAll();
    return !mSightings.empty() || Clock::now() < inUntil;
}

void MonitorPort::Accept() {
    for (;;) {
        UniqueFd socket = AcceptLocalSocket(mListener.Get());
        if (!socket) break;
        const auto pid = PeerOfSameUser(socket.Get());
        if (pid && mSenders.size() < size_t{kMaximumConnections})
            mSenders.push_back({std::move(socket), NumberOfPeer(*pid)});
    }
    if (errno == EMFILE || errno == ENFILE) mAcceptsAgain = Clock::now() + kRestWithoutDescriptors;
}

// Several at once, so that what different programs tell can be put in order.
void MonitorPort::ReadAll() {
    mBatch = 0;
    std::erase_if(mSenders, [this](const Sender& sender) { return !ReadSome(sender); });
    std::stable_sort(mSightings.begin(), mSightings.end(),
                     [](const Sighting& first, const Sighting& second) {
                         return first.header.time < second.header.time;
                     });
}

// False when the connection is over.
bool MonitorPort::ReadSome(const Sender& inSender) {
    bool isEmpty = false;
    for (int i = 0; i < kPacketsAtATime && !isEmpty && mBatch < kLargestBatch; ++i)
        if (!Receive(inSender, &isEmpty)) return false;
    return true;
}

bool MonitorPort::Receive(const Sender& inSender, bool* outIsEmpty) {
    WatchHeader header;
    Buffer bytes;
    switch (ReceiveWatchPacket(inSender.socket.Get(), &header, &bytes)) {
        case WatchPacketResult::kNothing:
            *outIsEmpty = true;
            return true;
        case WatchPacketResult::kOver:
            return false;
        case WatchPacketResult::kReceived:
            break;
    }
    if (inSender.number != 0 && inSender.number != header.sender) return false;
    return Keep(header, std::move(bytes));
}

bool MonitorPort::Keep(const WatchHeader& inHeader, Buffer&& inBytes) {
    Sighting sighting{inHeader};
    mBatch += inBytes.Size();
    if (inHeader.kind != WatchKind::kEnded) {
        if (DescFromBytes(std::move(inBytes), &sighting.event) != noErr) return false;
        if (!IsAppleEvent(sighting.event)) return AEDisposeDesc(&sighting.event), false;
    }
    mSightings.push_back(sighting);
    return true;
}

}  // namespace carbon
