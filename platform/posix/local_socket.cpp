// Owns the making of local sockets and the question who is at the other end.
#include "posix/local_socket.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>

#include "posix/os_err.h"

namespace carbon {

namespace {

// A path that is too long for a socket address is reached through its open folder.
class SocketAddress {
  public:
    explicit SocketAddress(const std::string& inPath) {
        std::string path = inPath;
        if (path.size() >= sizeof mAddress.sun_path) path = Shortened(inPath);
        mAddress.sun_family = AF_UNIX;
        if (path.size() < sizeof mAddress.sun_path)
            std::memcpy(mAddress.sun_path, path.data(), path.size());
    }
    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&mAddress); }
    bool IsUsable() const { return mAddress.sun_path[0] != 0; }

  private:
    std::string Shortened(const std::string& inPath) {
        const size_t slash = inPath.rfind('/');
        if (slash == std::string::npos) return inPath;
        mFolder.Reset(open(inPath.substr(0, slash + 1).c_str(), O_PATH | O_CLOEXEC));
        return "/proc/self/fd/" + std::to_string(mFolder.Get()) + inPath.substr(slash);
    }

    UniqueFd mFolder;
    sockaddr_un mAddress{};
};

UniqueFd NewSocket() {
    return UniqueFd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

}  // namespace

OSErr ListenOnLocalSocket(const std::string& inPath, UniqueFd* outSocket) {
    UniqueFd listener = NewSocket();
    if (!listener) return OSErrFromErrno(errno);
    const SocketAddress address(inPath);
    if (!address.IsUsable()) return bdNamErr;
    if (unlink(inPath.c_str()) != 0 && errno != ENOENT) return OSErrFromErrno(errno);
    // On Linux the file takes the socket's own permissions, so it is never open to others.
    if (fchmod(listener.Get(), 0600) != 0 ||
        bind(listener.Get(), address.Get(), sizeof(sockaddr_un)) != 0 ||
        listen(listener.Get(), SOMAXCONN) != 0)
        return OSErrFromErrno(errno);
    *outSocket = std::move(listener);
    return noErr;
}

int ConnectLocalSocket(const std::string& inPath, UniqueFd* outSocket) {
    UniqueFd peer = NewSocket();
    if (!peer) return errno;
    const SocketAddress address(inPath);
    if (!address.IsUsable()) return ENAMETOOLONG;
    if (connect(peer.Get(), address.Get(), sizeof(sockaddr_un)) != 0) return errno;
    if (!PeerOfSameUser(peer.Get())) return EACCES;
    if (fcntl(peer.Get(), F_SETFL, 0) != 0) return errno;
    *outSocket = std::move(peer);
    return 0;
}

UniqueFd AcceptLocalSocket(int inListener) {
    return UniqueFd(accept4(inListener, nullptr, nullptr, SOCK_CLOEXEC));
}

std::optional<pid_t> PeerOfSameUser(int inSocket) {
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (getsockopt(inSocket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return {};
    if (credentials.uid != geteuid()) return {};
    return credentials.pid;
}

}  // namespace carbon
