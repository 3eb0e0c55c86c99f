// Owns putting a new file in the place of an old one.
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstdlib>

#include "posix/UniqueFd.h"
#include "posix/os_err.h"
#include "resource_manager/carrier.h"

namespace carbon {

namespace {

// Beside the file, so that it can take its place; a name that no listing shows.
std::string NameBeside(const std::string& inPath) {
    return inPath.substr(0, inPath.rfind('/') + 1) + "._new-XXXXXX";
}

bool WriteAll(int inFile, const std::vector<UInt8>& inBytes) {
    size_t done = 0;
    while (done < inBytes.size()) {
        const auto count = write(inFile, inBytes.data() + done, inBytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += size_t(count);
    }
    return true;
}

// What the file system lets the user copy of them; the rest is not the user's.
void CopyAttributes(int inFrom, int inTo) {
    std::vector<char> names(65536), value(65536);
    const auto length = flistxattr(inFrom, names.data(), names.size());
    for (const char* name = names.data(); name < names.data() + length;
         name += std::char_traits<char>::length(name) + 1) {
        const auto size = fgetxattr(inFrom, name, value.data(), value.size());
        if (size >= 0) (void)!fsetxattr(inTo, name, value.data(), size_t(size), 0);
    }
}

OSErr Fill(const std::string& inPath, int inNew, const std::vector<UInt8>& inBytes) {
    const UniqueFd old(open(inPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    struct stat status;
    if (!old || fstat(old.Get(), &status) != 0) return OSErrFromErrno(errno);
    CopyAttributes(old.Get(), inNew);
    (void)!fchown(inNew, uid_t(-1), status.st_gid);  // a group that is not the user's own stays
    if (fchmod(inNew, status.st_mode & 07777) != 0 || !WriteAll(inNew, inBytes) ||
        fdatasync(inNew) != 0)
        return OSErrFromErrno(errno);
    return noErr;
}

}  // namespace

OSErr ReplaceFile(const std::string& inPath, const std::vector<UInt8>& inBytes) {
    std::string name = NameBeside(inPath);
    const UniqueFd file(mkostemp(name.data(), O_CLOEXEC));
    if (!file) return OSErrFromErrno(errno);
    OSErr error = Fill(inPath, file.Get(), inBytes);
    if (error == noErr && rename(name.c_str(), inPath.c_str()) != 0) error = OSErrFromErrno(errno);
    if (error != noErr) unlink(name.c_str());
    return error;
}

}  // namespace carbon
