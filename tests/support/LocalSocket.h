// The client's end of a local socket of packets, for tests that say what no program of ours would.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

#include "posix/UniqueFd.h"

// Empty when nobody listens there.
inline carbon::UniqueFd ConnectTo(const std::string& inPath) {
    carbon::UniqueFd socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    inPath.copy(address.sun_path, sizeof address.sun_path - 1);
    if (connect(socket.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        socket.Reset();
    return socket;
}
