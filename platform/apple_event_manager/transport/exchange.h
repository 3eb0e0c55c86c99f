// Every connection of this process, and the one place where it waits for any of them.
//
// Belongs to the thread that runs the event loop, except Post. A fork's child starts with an empty
// one: what the parent waits for is not the child's.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "apple_event_manager/handling/event_queue.h"
#include "apple_event_manager/transport/connection.h"
#include "apple_event_manager/transport/transport.h"

namespace carbon {

// What SendControl says, to another thread's event loop or over a connection.
struct Notice {
    ControlKind kind;
    ProcessSerialNumber about;
    SInt32 status;
};

class Exchange {
  public:
    OSErr Listen(const std::string& inPath);
    void StopListening();

    Connection* Find(ConnectionID inID);
    // The connection to that process that takes events, or null. Connect opens it.
    //   kBusy   too many are knocking; may go better later
    //   kNoRoom too many connections or descriptors here
    enum class ConnectResult { kConnected, kNobodyListens, kBusy, kRefused, kNoRoom };
    ConnectResult Connect(const ProcessSerialNumber& inPeer, const std::string& inPath);
    Connection* Connected(const ProcessSerialNumber& inPeer);
    // To be called after a send that was not kSent.
    void Settle(Connection* inConnection);

    // Waits until `inUntil` for something to happen, deals with all that did, and returns.
    void Pump(Moment inUntil);
    // The same for a process between two events. When one client alone has just been served, its
    // next event is likely to follow at once and is waited for first, with one call to the kernel.
    void PumpForEvent(Moment inUntil);
    // Waits at most kPatience for this connection alone, with one call to the kernel.
    bool PumpOne(Connection* inConnection);  // whether something came

    OSErr Reply(const Origin& inOrigin, std::span<const UInt8> inReply);
    OSErr ResetTimer(const Origin& inOrigin);
    void Release(const Origin& inOrigin);

    void Post(const Notice& inNotice);  // from any thread
    bool TakeWakeUp() { return std::exchange(mWakeUp, false); }

    void BecomeChild();  // right after a fork

  private:
    OSErr Prepare();
    Connection* Add(UniqueFd inSocket, const ProcessSerialNumber& inPeer,
                    Connection::Direction inDirection);
    void Accept();
    void AcceptOne(UniqueFd inSocket);
    bool MakeRoom();
    void Retire(Connection* inConnection);
    void Close(ConnectionID inID);
    void Watch(int inSocket, UInt64 inTag, UInt32 inEvents, UInt32* ioWatched);
    void WatchListener();
    void RestListener();
    Moment WakeListener();
    void WatchConnection(Connection* inConnection);
    void Happened(UInt64 inTag, UInt32 inEvents);
    bool Readable(Connection* inConnection, bool inMayWait);
    bool Handle(Connection* inConnection, Frame&& inFrame);
    bool HandleEvent(Connection* inConnection, Frame&& inFrame);
    bool HandleReply(Connection* inConnection, Frame&& inFrame);
    void HandleNotice(const Notice& inNotice);
    void TakeNotices();

    UniqueFd mListener;
    UniqueFd mEpoll;
    UniqueFd mBell;  // an eventfd, rung by Post
    std::string mPath;
    UInt32 mListenerWatchedFor = 0;
    Moment mListenerRestsUntil{};  // while it is not watched
    UInt64 mLastID = 15;           // smaller ones tag the listener and the bell
    UInt64 mUses = 0;
    int mClients = 0;          // incoming connections
    ConnectionID mTalker = 0;  // that of the last event
    std::unordered_map<ConnectionID, std::unique_ptr<Connection>> mConnections;
    Connection* mLastFound = nullptr;
    std::unordered_map<UInt32, Connection*> mByPeer;  // outgoing ones that take events
    std::vector<ConnectionID> mUnwatched;             // new ones, not yet known to epoll
    bool mWakeUp = false;
    // What other threads left for this one.
    struct Board {
        std::mutex lock;
        std::vector<Notice> notices;
    };
    std::unique_ptr<Board> mBoard = std::make_unique<Board>();
};

Exchange& TheExchange();

}  // namespace carbon
