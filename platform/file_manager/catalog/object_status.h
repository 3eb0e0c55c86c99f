// What one call to the kernel tells about a file, and which file it is.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/stat.h>

#include <string>

namespace carbon {

// One object for as long as it exists: an inode number is given to another file later, the moment
// of birth is not. `birth` is in nanoseconds of Unix time, 0 where the file system keeps none.
struct ObjectIdentity {
    UInt64 device = 0;
    UInt64 inode = 0;
    SInt64 birth = 0;

    bool IsSameAs(const ObjectIdentity& inOther) const {
        return inode == inOther.inode && device == inOther.device &&
               (birth == inOther.birth || birth == 0 || inOther.birth == 0);
    }
};

struct ObjectStatus {
    ObjectIdentity identity;
    mode_t mode = 0;
    UInt32 links = 0;
    uid_t user = 0;
    gid_t group = 0;
    UInt64 size = 0;    // bytes
    UInt64 blocks = 0;  // of 512 bytes
    bool isImmutable = false;
    timespec modified{};
    timespec changed{};
    timespec accessed{};

    bool IsFolder() const { return S_ISDIR(mode); }
    bool IsLink() const { return S_ISLNK(mode); }
};

// Never follows a symbolic link at the end of the path. fnfErr, dirNFErr, afpAccessDenied.
OSErr StatusOfObject(const std::string& inPath, ObjectStatus* outStatus);
// The same for a name in an open folder; an empty one is the folder itself.
OSErr StatusAt(int inFolder, const std::string& inName, ObjectStatus* outStatus);

// `inFolder` and a name in it as one path; the root's own slash is not doubled.
std::string PathInFolder(const std::string& inFolder, const std::string& inName);

// An absolute path without its last part, and that part; the root's parent is itself.
std::string ParentOfPath(const std::string& inPath);
std::string LeafOfPath(const std::string& inPath);

}  // namespace carbon
