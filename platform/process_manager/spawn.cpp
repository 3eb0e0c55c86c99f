// Owns posix_spawn and waiting for one child.
#include "process_manager/spawn.h"

#include <Carbon/LSInfo.h>
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

#include "posix/UniqueFd.h"
#include "posix/base_folders.h"

namespace carbon {
namespace {

constexpr off_t kLongestConsole = 1 << 20;  // bytes; begun anew beyond

// Without a state folder the error output is lost, the launch is not.
std::string ConsolePath() {
    const std::string folder = StateFolder();
    const std::string path = folder.empty() ? "/dev/null" : folder + "/console.log";
    struct stat facts;
    const bool tooLong = stat(path.c_str(), &facts) == 0 && facts.st_size > kLongestConsole;
    const int mode = O_WRONLY | O_CREAT | O_CLOEXEC | (tooLong ? O_TRUNC : 0);
    const UniqueFd file(open(path.c_str(), mode, 0600));
    return file ? path : "/dev/null";
}

class Actions {
  public:
    Actions() {
        const std::string console = ConsolePath();
        posix_spawn_file_actions_init(&mActions);
        posix_spawn_file_actions_addopen(&mActions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&mActions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&mActions, 2, console.c_str(), O_WRONLY | O_APPEND, 0);
        posix_spawn_file_actions_addclosefrom_np(&mActions, 3);
        posix_spawn_file_actions_addchdir_np(&mActions, "/");
    }
    ~Actions() { posix_spawn_file_actions_destroy(&mActions); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    const posix_spawn_file_actions_t* Get() const { return &mActions; }

  private:
    posix_spawn_file_actions_t mActions;
};

class Attributes {
  public:
    Attributes() {
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&mAttributes);
        posix_spawnattr_setsigmask(&mAttributes, &none);
        posix_spawnattr_setsigdefault(&mAttributes, &all);
        posix_spawnattr_setflags(
            &mAttributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Attributes() { posix_spawnattr_destroy(&mAttributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* Get() const { return &mAttributes; }

  private:
    posix_spawnattr_t mAttributes;
};

OSErr OSErrFromSpawn(int inErrno) {
    switch (inErrno) {
        case 0:
            return noErr;
        case ENOEXEC:
        case EINVAL:
        case ELIBBAD:
            return kLSExecutableIncorrectFormat;
        case EACCES:
        case EPERM:
            return kLSNoLaunchPermissionErr;
        case ENOENT:
        case ENOTDIR:
            return kLSNoExecutableErr;
        case ENOMEM:
        case EAGAIN:
            return memFullErr;
        default:
            return kLSUnknownErr;
    }
}

SInt32 AwaitEnd(pid_t inPid) {
    siginfo_t info = {};
    int result;
    do {
        result = waitid(P_PID, id_t(inPid), &info, WEXITED);
    } while (result != 0 && errno == EINTR);
    if (result != 0) return 0;
    return info.si_code == CLD_EXITED ? info.si_status : -info.si_status;
}

}  // namespace

OSErr Spawn(const std::string& inExecutable, pid_t* outPid) {
    const Actions actions;
    const Attributes attributes;
    std::string name = inExecutable;
    char* words[] = {name.data(), nullptr};
    return OSErrFromSpawn(
        posix_spawn(outPid, inExecutable.c_str(), actions.Get(), attributes.Get(), words, environ));
}

// The host's signals stay with the host's threads.
void WhenEnded(pid_t inPid, std::function<void(SInt32)> inThen) {
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread([inPid, then = std::move(inThen)] { then(AwaitEnd(inPid)); }).detach();
    } catch (const std::system_error&) {
        // No more threads here. The launch has succeeded all the same; nobody learns of the end.
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace carbon
