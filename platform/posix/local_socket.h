// Local sockets between processes of one user. They carry packets: each send arrives as one receive
// or not at all.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/types.h>

#include <optional>
#include <string>

#include "posix/UniqueFd.h"

namespace carbon {

// Opens a socket at `inPath`, in place of whatever file is there, that only this user may connect
// to.
OSErr ListenOnLocalSocket(const std::string& inPath, UniqueFd* outSocket);

// Connects without waiting; calls on the socket wait unless they say otherwise. 0 or an errno:
// ENOENT or ECONNREFUSED when nobody listens, EAGAIN when too many are knocking, EACCES when the
// other end belongs to another user.
int ConnectLocalSocket(const std::string& inPath, UniqueFd* outSocket);

// The next caller, as its socket; nothing when there is none (any more).
UniqueFd AcceptLocalSocket(int inListener);

// The process at the other end, as the kernel recorded it; nothing when it belongs to another user.
std::optional<pid_t> PeerOfSameUser(int inSocket);

}  // namespace carbon
