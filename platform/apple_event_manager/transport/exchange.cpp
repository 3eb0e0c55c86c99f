// Owns the opening and closing of connections and the wait for all of them.
#include "apple_event_manager/transport/exchange.h"

#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "apple_event_manager/limits.h"
#include "posix/local_socket.h"
#include "posix/os_err.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

constexpr UInt64 kListenerTag = 1;
constexpr UInt64 kBellTag = 2;
constexpr size_t kMaximumUnsent = 2 * size_t{kMaximumMessageSize};
constexpr int kPacketsAtATime = 64;
constexpr Clock::duration kListenerRest = std::chrono::milliseconds(100);

bool IsOutOfMeans(int inErrno) {
    return inErrno == EMFILE || inErrno == ENFILE || inErrno == ENOBUFS || inErrno == ENOMEM;
}

Exchange* NewExchange() {
    auto* exchange = new Exchange;
    pthread_atfork(nullptr, nullptr, [] { TheExchange().BecomeChild(); });
    return exchange;
}

}  // namespace

Exchange& TheExchange() {
    static Exchange* exchange = NewExchange();
    return *exchange;
}

void Exchange::BecomeChild() {
    for (auto& [id, connection] : mConnections) connection->BreakWaiters();
    mConnections.clear();
    mLastFound = nullptr;
    mClients = 0;
    mByPeer.clear();
    mUnwatched.clear();
    // Another thread of the parent may have been at it just then, so it is left behind as it is.
    static_cast<void>(mBoard.release());
    mBoard = std::make_unique<Board>();
    mListener.Reset();
    mEpoll.Reset();
    mBell.Reset();
    mPath.clear();
    mListenerWatchedFor = 0;
    mWakeUp = false;
    TheEventQueue().Clear();
}

OSErr Exchange::Prepare() {
    if (mEpoll) return noErr;
    const std::lock_guard lock(mBoard->lock);
    UniqueFd epoll(epoll_create1(EPOLL_CLOEXEC));
    UniqueFd bell(eventfd(mBoard->notices.empty() ? 0 : 1, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!epoll || !bell) return OSErrFromErrno(errno);
    mEpoll = std::move(epoll);
    mBell = std::move(bell);
    UInt32 watched = 0;
    Watch(mBell.Get(), kBellTag, EPOLLIN, &watched);
    return noErr;
}

OSErr Exchange::Listen(const std::string& inPath) {
    if (const OSErr err = Prepare()) return err;
    if (const OSErr err = ListenOnLocalSocket(inPath, &mListener)) return err;
    mPath = inPath;
    mListenerWatchedFor = 0;
    Watch(mListener.Get(), kListenerTag, EPOLLIN, &mListenerWatchedFor);
    return noErr;
}

void Exchange::StopListening() {
    if (!mPath.empty()) unlink(mPath.c_str());
    mPath.clear();
    mListener.Reset();
    mListenerWatchedFor = 0;
}

void Exchange::Watch(int inSocket, UInt64 inTag, UInt32 inEvents, UInt32* ioWatched) {
    if (inEvents == *ioWatched) return;
    epoll_event event{inEvents, {.u64 = inTag}};
    const int change = inEvents == 0     ? EPOLL_CTL_DEL
                       : *ioWatched == 0 ? EPOLL_CTL_ADD
                                         : EPOLL_CTL_MOD;
    if (epoll_ctl(mEpoll.Get(), change, inSocket, &event) == 0) *ioWatched = inEvents;
}

void Exchange::WatchListener() {
    if (mListener) Watch(mListener.Get(), kListenerTag, EPOLLIN, &mListenerWatchedFor);
}

// Who knocks while there is no room waits in the kernel: watched, the listener would end every
// wait at once. Room comes with a connection that closes, or unseen from here.
void Exchange::RestListener() {
    mListenerRestsUntil = Clock::now() + kListenerRest;
    Watch(mListener.Get(), kListenerTag, 0, &mListenerWatchedFor);
}

// The moment at which a wait ends for the listener's sake.
Moment Exchange::WakeListener() {
    if (!mListener || mListenerWatchedFor != 0) return kNever;
    if (Clock::now() < mListenerRestsUntil) return mListenerRestsUntil;
    WatchListener();
    return kNever;
}

// A connection that holds too much is left alone: what its peer sends waits in the kernel.
void Exchange::WatchConnection(Connection* inConnection) {
    UInt32 events = 0;
    if (!inConnection->HoldsTooMuch() && !inConnection->isRetired) events |= EPOLLIN;
    if (inConnection->HasUnsent()) events |= EPOLLOUT;
    Watch(inConnection->Socket(), inConnection->ID(), events, &inConnection->watchedFor);
}

Connection* Exchange::Find(ConnectionID inID) {
    if (mLastFound && mLastFound->ID() == inID) return mLastFound;
    const auto found = mConnections.find(inID);
    if (found == mConnections.end()) return nullptr;
    return mLastFound = found->second.get();
}

Connection* Exchange::Connected(const ProcessSerialNumber& inPeer) {
    const auto found = mByPeer.find(inPeer.lowLongOfPSN);
    if (found == mByPeer.end()) return nullptr;
    found->second->lastUse = ++mUses;
    return found->second;
}

Exchange::ConnectResult Exchange::Connect(const ProcessSerialNumber& inPeer,
                                          const std::string& inPath) {
    if (Prepare() != noErr || !MakeRoom()) return ConnectResult::kNoRoom;
    UniqueFd socket;
    switch (ConnectLocalSocket(inPath, &socket)) {
        case 0:
            mByPeer[inPeer.lowLongOfPSN] =
                Add(std::move(socket), inPeer, Connection::Direction::kOutgoing);
            return ConnectResult::kConnected;
        case EAGAIN:
            return ConnectResult::kBusy;
        case ENOENT:
        case ECONNREFUSED:
            return ConnectResult::kNobodyListens;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
            return ConnectResult::kNoRoom;
        default:
            return ConnectResult::kRefused;
    }
}

Connection* Exchange::Add(UniqueFd inSocket, const ProcessSerialNumber& inPeer,
                          Connection::Direction inDirection) {
    const ConnectionID id = ++mLastID;
    auto made = std::make_unique<Connection>(id, std::move(inSocket), inPeer, inDirection);
    mUnwatched.push_back(id);
    Connection* connection = mConnections.emplace(id, std::move(made)).first->second.get();
    connection->lastUse = ++mUses;
    if (!connection->IsOutgoing()) ++mClients;
    return connection;
}

// To be called when one is known to knock: room is made for it alone, and asked for the next only
// while there is some, since whoever makes room loses a connection by it.
void Exchange::Accept() {
    do {
        if (!MakeRoom()) return RestListener();
        UniqueFd socket = AcceptLocalSocket(mListener.Get());
        if (!socket) {
            if (IsOutOfMeans(errno)) RestListener();
            return;
        }
        AcceptOne(std::move(socket));
    } while (mConnections.size() < kMaximumConnections);
}

// Another user is hung up on. A caller may have ended already; what it sent before still counts,
// under the number that it says it had.
void Exchange::AcceptOne(UniqueFd inSocket) {
    const auto pid = PeerOfSameUser(inSocket.Get());
    if (!pid) return;
    const auto peer = FindProcessByPid(*pid);
    try {
        Add(std::move(inSocket), peer ? peer->psn : ProcessSerialNumber{0, kNoProcess},
            Connection::Direction::kIncoming);
    } catch (const std::bad_alloc&) {
        // No memory for one more peer: it is hung up on, the others go on.
    }
}

// The one that goes is the longest idle, in the order in which this process opened, accepted and
// read them: what a peer sent that was not read yet is no use of its connection so far.
bool Exchange::MakeRoom() {
    while (mConnections.size() >= kMaximumConnections) {
        Connection* oldest = nullptr;
        for (auto& [id, connection] : mConnections) {
            const bool isIdle = connection->HoldsNothing() && !connection->HasUnsent() &&
                                connection->AwaitedCount() == 0 && !connection->isRetired &&
                                !connection->IsReceiving();
            if (isIdle && (!oldest || connection->lastUse < oldest->lastUse))
                oldest = connection.get();
        }
        if (!oldest) return false;
        Retire(oldest);
    }
    return true;
}

// No more events are taken from the peer, who opens another connection when it has some. Those that
// were under way are still dealt with.
void Exchange::Retire(Connection* inConnection) {
    if (inConnection->IsOutgoing()) return Close(inConnection->ID());
    shutdown(inConnection->Socket(), SHUT_RD);
    Frame frame;
    for (auto result = Connection::ReceiveResult::kPart;
         result == Connection::ReceiveResult::kPart;) {
        result = inConnection->Receive(false, &frame);
        if (result == Connection::ReceiveResult::kFrame && Handle(inConnection, std::move(frame)))
            result = Connection::ReceiveResult::kPart;
    }
    inConnection->isRetired = true;
    Settle(inConnection);
}

void Exchange::Close(ConnectionID inID) {
    const auto found = mConnections.find(inID);
    if (found == mConnections.end()) return;
    const auto peer = mByPeer.find(found->second->Peer().lowLongOfPSN);
    if (peer != mByPeer.end() && peer->second == found->second.get()) mByPeer.erase(peer);
    if (!found->second->IsOutgoing()) --mClients;
    mLastFound = nullptr;
    mConnections.erase(found);
    WatchListener();
}

// Brings what is watched, and whether the connection lives on, in line with its state.
void Exchange::Settle(Connection* inConnection) {
    if (inConnection->TakesNoMore()) {
        const auto peer = mByPeer.find(inConnection->Peer().lowLongOfPSN);
        if (peer != mByPeer.end() && peer->second == inConnection) mByPeer.erase(peer);
    }
    const bool isDone =
        inConnection->IsOutgoing()
            ? inConnection->TakesNoMore() && inConnection->AwaitedCount() == 0
            : inConnection->isRetired && inConnection->HoldsNothing() && !inConnection->HasUnsent();
    if (isDone || inConnection->UnsentBytes() > kMaximumUnsent)
        Close(inConnection->ID());
    else if (inConnection->watchedFor != 0 || inConnection->HasUnsent() ||
             !inConnection->IsOutgoing())
        WatchConnection(inConnection);
}

void Exchange::Pump(Moment inUntil) {
    if (Prepare() != noErr) return;
    for (const ConnectionID id : std::exchange(mUnwatched, {}))
        if (Connection* connection = Find(id)) WatchConnection(connection);
    const Moment until = std::min(inUntil, WakeListener());
    epoll_event events[kPacketsAtATime];
    const int count = epoll_wait(mEpoll.Get(), events, kPacketsAtATime, MillisecondsUntil(until));
    for (int i = 0; i < count; ++i) Happened(events[i].data.u64, events[i].events);
}

bool Exchange::PumpOne(Connection* inConnection) {
    return Readable(inConnection, true);
}

void Exchange::PumpForEvent(Moment inUntil) {
    Connection* talker = mClients == 1 ? Find(std::exchange(mTalker, 0)) : nullptr;
    const bool mayWait = talker && !talker->isRetired && !talker->HoldsTooMuch() &&
                         (inUntil == kNever || inUntil - Clock::now() > kPatience);
    if (!mayWait || !PumpOne(talker)) Pump(inUntil);
}

void Exchange::Happened(UInt64 inTag, UInt32 inEvents) {
    if (inTag == kListenerTag) return Accept();
    if (inTag == kBellTag) return TakeNotices();
    Connection* connection = Find(inTag);
    if (!connection) return;
    if (inEvents & EPOLLOUT) {
        connection->Flush();
        Settle(connection);
        connection = Find(inTag);
    }
    // One that was retired since the kernel was asked has been read to its end already: its replies
    // are still to come.
    const bool isRead = connection && !connection->isRetired;
    if (isRead && inEvents & (EPOLLIN | EPOLLHUP | EPOLLERR)) Readable(connection, false);
}

// One frame at a time, so that no peer keeps the others waiting.
bool Exchange::Readable(Connection* inConnection, bool inMayWait) {
    Frame frame;
    for (int i = 0; i < kPacketsAtATime; ++i) {
        switch (inConnection->Receive(inMayWait, &frame)) {
            case Connection::ReceiveResult::kNothing:
                return i > 0;
            case Connection::ReceiveResult::kPart:
                break;
            case Connection::ReceiveResult::kClosed:
                Close(inConnection->ID());
                return true;
            case Connection::ReceiveResult::kFrame:
                if (!Handle(inConnection, std::move(frame))) Close(inConnection->ID());
                return true;
        }
    }
    return true;
}

void Exchange::Post(const Notice& inNotice) {
    const std::lock_guard lock(mBoard->lock);
    mBoard->notices.push_back(inNotice);
    if (mBell) eventfd_write(mBell.Get(), 1);
}

void Exchange::TakeNotices() {
    std::vector<Notice> notices;
    {
        const std::lock_guard lock(mBoard->lock);
        eventfd_t ignored;
        eventfd_read(mBell.Get(), &ignored);
        notices.swap(mBoard->notices);
    }
    for (const Notice& notice : notices) HandleNotice(notice);
}

}  // namespace carbon
