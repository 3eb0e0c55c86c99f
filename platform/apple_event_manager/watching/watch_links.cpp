// Owns the sending of copies to monitors: without waiting, and forgetting those that are gone.
#include "apple_event_manager/watching/watch_links.h"

#include <fcntl.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "posix/fork_count.h"
#include "posix/local_socket.h"

namespace carbon {

namespace {

constexpr int kWishedQueue = 1 << 20;       // bytes; the system may give less
constexpr size_t kMostInMemory = 64 << 20;  // bytes of large events that one monitor may owe
constexpr int kFlags = MSG_NOSIGNAL | MSG_DONTWAIT;

bool IsQueueEmpty(int inSocket) {
    int unread = 0;
    return ioctl(inSocket, SIOCOUTQ, &unread) == 0 && unread == 0;
}

bool WriteAll(int inFile, std::span<const UInt8> inBytes) {
    while (!inBytes.empty()) {
        const ssize_t written = write(inFile, inBytes.data(), inBytes.size());
        if (written <= 0 && errno != EINTR) return false;
        if (written > 0) inBytes = inBytes.subspan(static_cast<size_t>(written));
    }
    return true;
}

// A file that stays as long as it is. Not sealed against writing: for that the kernel waits until
// nobody has a hold on any page, a tenth of a second on a busy machine, and may give up.
UniqueFd SealedFile(std::span<const UInt8> inBytes) {
    UniqueFd file(memfd_create("event", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const bool isDone = file && WriteAll(file.Get(), inBytes) &&
                        fcntl(file.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW) == 0;
    return isDone ? std::move(file) : UniqueFd();
}

void Attach(int inFile, std::span<UInt8> outControl, msghdr* ioMessage) {
    ioMessage->msg_control = outControl.data();
    ioMessage->msg_controllen = outControl.size();
    cmsghdr* control = CMSG_FIRSTHDR(ioMessage);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof inFile);
    std::memcpy(CMSG_DATA(control), &inFile, sizeof inFile);
}

bool IsGone(int inErrno) {
    return inErrno == EPIPE || inErrno == ECONNRESET || inErrno == ENOTCONN;
}

ssize_t SendMessage(int inSocket, const msghdr& inMessage) {
    for (;;) {
        const ssize_t sent = sendmsg(inSocket, &inMessage, kFlags);
        if (sent >= 0 || errno != EINTR) return sent;
    }
}

}  // namespace

WatchLinks::WatchLinks() : mForks(ForkCount()) {}

bool WatchLinks::AreOwn() const {
    return mForks == ForkCount();
}

void WatchLinks::Close() {
    for (Link& link : mLinks) link.socket.Reset();
}

void WatchLinks::Tell(WatchHeader inHeader, std::span<const UInt8> inBytes) {
    inHeader.size = static_cast<UInt32>(inBytes.size());
    inHeader.isAttached = inBytes.size() > kLargestInline;
    WatchPage& page = TheWatchPage();
    const UInt64 monitors = page.monitors;
    const std::lock_guard lock(mLock);
    for (int lane = 0; lane < kMaximumMonitors; ++lane) {
        const MonitorNumber number = MonitorIn(monitors, lane);
        if (number != 0 && !TellOne(&mLinks[lane], number, inHeader, inBytes)) ++page.missed[lane];
    }
}

// False when it missed something. One that is gone misses nothing.
bool WatchLinks::TellOne(Link* ioLink, MonitorNumber inNumber, const WatchHeader& inHeader,
                         std::span<const UInt8> inBytes) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        const bool isConnected = ioLink->socket && ioLink->number == inNumber;
        if (!isConnected && !Connect(ioLink, inNumber))
            return LaneOf(TheWatchPage().monitors, inNumber) < 0;
        const Outcome outcome = Send(ioLink, inHeader, inBytes);
        if (outcome != Outcome::kGone) return outcome == Outcome::kSent;
        // Its number may be another monitor's now.
        ioLink->socket.Reset();
    }
    return false;
}

bool WatchLinks::Connect(Link* outLink, MonitorNumber inNumber) {
    outLink->number = inNumber;
    outLink->inMemory = 0;
    outLink->socket.Reset();
    const int error = ConnectLocalSocket(MonitorSocketPath(inNumber), &outLink->socket);
    if (error == ENOENT || error == ECONNREFUSED || error == EACCES) RemoveMonitor(inNumber);
    if (error != 0) return false;
    setsockopt(outLink->socket.Get(), SOL_SOCKET, SO_SNDBUF, &kWishedQueue, sizeof kWishedQueue);
    return true;
}

WatchLinks::Outcome WatchLinks::Send(Link* ioLink, const WatchHeader& inHeader,
                                     std::span<const UInt8> inBytes) {
    if (inHeader.isAttached) return SendAttached(ioLink, inHeader, inBytes);
    auto header = EncodeWatchHeader(inHeader);
    iovec pieces[2] = {{header.data(), header.size()},
                       {const_cast<UInt8*>(inBytes.data()), inBytes.size()}};
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    if (SendMessage(ioLink->socket.Get(), message) >= 0) return Outcome::kSent;
    return IsGone(errno) ? Outcome::kGone : Outcome::kFull;
}

// The memory of such files is held while a monitor leaves them unread, so it is limited.
WatchLinks::Outcome WatchLinks::SendAttached(Link* ioLink, const WatchHeader& inHeader,
                                             std::span<const UInt8> inBytes) {
    const int socket = ioLink->socket.Get();
    if (IsQueueEmpty(socket)) ioLink->inMemory = 0;
    if (ioLink->inMemory + inBytes.size() > kMostInMemory) return Outcome::kFull;
    const UniqueFd file = SealedFile(inBytes);
    if (!file) return Outcome::kFull;
    auto header = EncodeWatchHeader(inHeader);
    alignas(cmsghdr) UInt8 control[CMSG_SPACE(sizeof(int))] = {};
    iovec piece{header.data(), header.size()};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    Attach(file.Get(), control, &message);
    if (SendMessage(socket, message) < 0) return IsGone(errno) ? Outcome::kGone : Outcome::kFull;
    ioLink->inMemory += inBytes.size();
    return Outcome::kSent;
}

// Never destroyed: threads that outlast main send too. A forked child hangs up on what its parent
// opened, without its lock, which a thread that is not there any more may hold.
WatchLinks& TheWatchLinks() {
    static std::atomic<WatchLinks*> sLinks = nullptr;
    WatchLinks* links = sLinks;
    while (!links || !links->AreOwn()) {
        auto* fresh = new WatchLinks;
        if (!sLinks.compare_exchange_strong(links, fresh)) {
            delete fresh;
            continue;
        }
        if (links) links->Close();
        links = fresh;
    }
    return *links;
}

}  // namespace carbon
