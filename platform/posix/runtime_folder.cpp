// Owns the choice of the runtime folder and the checks that keep it the user's own.
#include "posix/runtime_folder.h"

#include <Carbon/MacErrors.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <mutex>

#include "posix/os_err.h"

namespace carbon {
namespace {

constexpr mode_t kOthers = S_IRWXG | S_IRWXO;

// A link is refused even when it leads to a folder of the user's: whoever owns it can turn it
// round.
bool IsOwnFolder(const struct stat& inFacts) {
    return S_ISDIR(inFacts.st_mode) && inFacts.st_uid == geteuid() &&
           (inFacts.st_mode & kOthers) == 0;
}

std::string ChosenPath() {
    const char* base = getenv("XDG_RUNTIME_DIR");
    if (base != nullptr && base[0] == '/') return std::string(base) + "/vantor";
    return "/tmp/vantor-" + std::to_string(geteuid());
}

struct Answer {
    std::string path = ChosenPath();
    OSErr err = ClaimFolder(path);
};

}  // namespace

OSErr ClaimFolder(const std::string& inPath) {
    const bool made = mkdir(inPath.c_str(), S_IRWXU) == 0;
    if (!made && errno != EEXIST) {
        return errno == EACCES || errno == EPERM ? OSErr(permErr) : OSErrFromErrno(errno);
    }
    struct stat facts;
    if (lstat(inPath.c_str(), &facts) != 0) return OSErrFromErrno(errno);
    return IsOwnFolder(facts) ? OSErr(noErr) : OSErr(permErr);
}

OSErr RuntimeFolder(std::string* outPath) {
    // Never destroyed: threads that outlast main ask too.
    static const Answer& sAnswer = *new Answer;
    if (sAnswer.err == noErr) *outPath = sAnswer.path;
    return sAnswer.err;
}

}  // namespace carbon
