// Owns the receiving of one packet, and of the file that may come with it.
#include "apple_event_manager/watching/watch_packet.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>

#include <cerrno>
#include <vector>

#include "posix/UniqueFd.h"

namespace carbon {

namespace {

constexpr size_t kRoom = kWatchHeaderSize + kLargestInline;

// All that came, so that none stays open.
std::vector<UniqueFd> FilesIn(msghdr* ioMessage) {
    std::vector<UniqueFd> files;
    for (cmsghdr* control = CMSG_FIRSTHDR(ioMessage); control != nullptr;
         control = CMSG_NXTHDR(ioMessage, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) continue;
        const size_t count = (control->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int file;
            std::memcpy(&file, CMSG_DATA(control) + i * sizeof file, sizeof file);
            files.emplace_back(file);
        }
    }
    return files;
}

// A file in memory that does not shrink: no other kind can be trusted not to keep its reader
// waiting. That it may be written to does no harm, since what was read is looked at only then.
bool IsSealed(int inFile, UInt32 inSize) {
    struct stat facts;
    const int seals = fcntl(inFile, F_GET_SEALS);
    return seals >= 0 && (seals & F_SEAL_SHRINK) != 0 && fstat(inFile, &facts) == 0 &&
           facts.st_size == off_t{inSize};
}

bool ReadFile(int inFile, UInt32 inSize, Buffer* outBytes) {
    if (!IsSealed(inFile, inSize)) return false;
    Buffer bytes(inSize);
    for (size_t at = 0; at < inSize;) {
        const ssize_t size =
            pread(inFile, bytes.Writable() + at, inSize - at, static_cast<off_t>(at));
        if (size == 0 || (size < 0 && errno != EINTR)) return false;
        if (size > 0) at += static_cast<size_t>(size);
    }
    *outBytes = std::move(bytes);
    return true;
}

}  // namespace

WatchPacketResult ReceiveWatchPacket(int inSocket, WatchHeader* outHeader, Buffer* outBytes) {
    UInt8 bytes[kRoom];
    alignas(cmsghdr) UInt8 control[CMSG_SPACE(sizeof(int))];
    iovec piece{bytes, sizeof bytes};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    const ssize_t size = recvmsg(inSocket, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    if (size < 0)
        return errno == EAGAIN || errno == EINTR ? WatchPacketResult::kNothing
                                                 : WatchPacketResult::kOver;
    const std::vector<UniqueFd> files = FilesIn(&message);
    if (size == 0 || message.msg_flags & (MSG_TRUNC | MSG_CTRUNC) || files.size() > 1)
        return WatchPacketResult::kOver;
    const std::span<const UInt8> packet(bytes, static_cast<size_t>(size));
    const auto header = DecodeWatchPacket(packet, !files.empty());
    if (!header) return WatchPacketResult::kOver;
    *outHeader = *header;
    if (files.empty())
        *outBytes = Buffer(packet.subspan(kWatchHeaderSize));
    else if (!ReadFile(files[0].Get(), header->size, outBytes))
        return WatchPacketResult::kOver;
    return WatchPacketResult::kReceived;
}

}  // namespace carbon
