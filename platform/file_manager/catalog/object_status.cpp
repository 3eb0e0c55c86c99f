// Owns the conversion from statx to what the File Manager asks about an object.
#include "file_manager/catalog/object_status.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/sysmacros.h>

#include <cerrno>

#include "posix/os_err.h"

namespace carbon {

namespace {

timespec TimeOf(const statx_timestamp& inTime) {
    return {inTime.tv_sec, long(inTime.tv_nsec)};
}

SInt64 BirthOf(const struct statx& inFacts) {
    if (!(inFacts.stx_mask & STATX_BTIME)) return 0;
    return SInt64(inFacts.stx_btime.tv_sec) * 1000000000 + inFacts.stx_btime.tv_nsec;
}

ObjectStatus StatusFromFacts(const struct statx& inFacts) {
    ObjectStatus status;
    status.identity = {makedev(inFacts.stx_dev_major, inFacts.stx_dev_minor), inFacts.stx_ino,
                       BirthOf(inFacts)};
    status.mode = inFacts.stx_mode;
    status.links = inFacts.stx_nlink;
    status.user = inFacts.stx_uid;
    status.group = inFacts.stx_gid;
    status.size = inFacts.stx_size;
    status.blocks = inFacts.stx_blocks;
    status.isImmutable = inFacts.stx_attributes & STATX_ATTR_IMMUTABLE;
    status.modified = TimeOf(inFacts.stx_mtime);
    status.changed = TimeOf(inFacts.stx_ctime);
    status.accessed = TimeOf(inFacts.stx_atime);
    return status;
}

}  // namespace

OSErr StatusAt(int inFolder, const std::string& inName, ObjectStatus* outStatus) {
    struct statx facts;
    const int itself = inName.empty() ? AT_EMPTY_PATH : 0;
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | itself;
    if (statx(inFolder, inName.c_str(), flags, STATX_BASIC_STATS | STATX_BTIME, &facts) != 0) {
        return OSErrFromErrno(errno);
    }
    *outStatus = StatusFromFacts(facts);
    return noErr;
}

OSErr StatusOfObject(const std::string& inPath, ObjectStatus* outStatus) {
    return inPath.empty() ? OSErr(fnfErr) : StatusAt(AT_FDCWD, inPath, outStatus);
}

std::string PathInFolder(const std::string& inFolder, const std::string& inName) {
    std::string path;
    path.reserve(inFolder.size() + 1 + inName.size());
    path = inFolder;
    if (path.empty() || path.back() != '/') path += '/';
    return path += inName;
}

std::string ParentOfPath(const std::string& inPath) {
    const auto slash = inPath.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : inPath.substr(0, slash);
}

std::string LeafOfPath(const std::string& inPath) {
    return inPath.substr(inPath.rfind('/') + 1);
}

}  // namespace carbon
