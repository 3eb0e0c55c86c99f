// Owns the notices that one process gives another without an event.
#include "apple_event_manager/transport/transport.h"

#include <Carbon/Endian.h>
#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>
#include <sys/socket.h>

#include <cstring>

#include "apple_event_manager/transport/exchange.h"
#include "apple_event_manager/transport/received.h"
#include "posix/local_socket.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

std::vector<UInt8> FrameOf(const Notice& inNotice) {
    const bool isObituary = inNotice.kind == ControlKind::kApplicationDied;
    const FrameHeader header{static_cast<FrameKind>(inNotice.kind),
                             isObituary ? UInt32{kObituarySize} : 0,
                             CurrentProcess().psn.lowLongOfPSN};
    const auto encoded = EncodeHeader(header);
    std::vector<UInt8> frame(encoded.begin(), encoded.end());
    if (!isObituary) return frame;
    const ProcessSerialNumber about = BigEndian(inNotice.about);
    const SInt32 status = EndianS32_NtoB(inNotice.status);
    frame.resize(kFrameHeaderSize + kObituarySize);
    std::memcpy(&frame[kFrameHeaderSize], &about, sizeof about);
    std::memcpy(&frame[kFrameHeaderSize + sizeof about], &status, sizeof status);
    return frame;
}

// A connection of its own, so that any thread may tell; it is rare enough.
OSErr Tell(const ProcessEntry& inProcess, const Notice& inNotice) {
    UniqueFd socket;
    if (ConnectLocalSocket(inProcess.SocketPath(), &socket) != 0) return connectionInvalid;
    const auto frame = FrameOf(inNotice);
    const ssize_t sent =
        send(socket.Get(), frame.data(), frame.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return sent < 0 ? OSErr{connectionInvalid} : OSErr{noErr};
}

}  // namespace

OSErr StartListening(const std::string& inPath) {
    return TheExchange().Listen(inPath);
}

void StopListening() {
    TheExchange().StopListening();
}

OSErr SendControl(const ProcessSerialNumber& inTarget, ControlKind inKind,
                  const ProcessSerialNumber& inAbout, SInt32 inStatus) {
    const auto process = FindProcess(inTarget);
    if (!process) return procNotFound;
    const Notice notice{inKind, inAbout, inStatus};
    if (process->psn.lowLongOfPSN != CurrentProcess().psn.lowLongOfPSN)
        return Tell(*process, notice);
    TheExchange().Post(notice);
    return noErr;
}

}  // namespace carbon
