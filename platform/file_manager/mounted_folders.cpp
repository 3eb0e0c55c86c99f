// Owns the calls that make volumes of folders.
#include <Carbon/MacErrors.h>
#include <Platform/Platform.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "file_manager/objects.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

OSErr MountFolder(const char* inPath, const char* inName, FSVolumeRefNum* outNumber) {
    char path[PATH_MAX];
    if (!realpath(inPath, path)) return OSErrFromErrno(errno);
    ObjectStatus status;
    if (const OSErr error = StatusOfObject(path, &status)) return error;
    if (!status.IsFolder()) return dirNFErr;
    const Catalog catalog;
    return catalog->AllFolders().Registry().MountFolder(path, inName ? inName : "", outNumber);
}

}  // namespace

}  // namespace carbon

OSErr PlatformMountFolder(const char* path, const char* name, FSVolumeRefNum* vRefNum) {
    return path && vRefNum ? carbon::MountFolder(path, name, vRefNum) : OSErr(paramErr);
}

OSErr PlatformUnmountFolder(FSVolumeRefNum vRefNum) {
    return carbon::Catalog()->AllFolders().Registry().UnmountFolder(vRefNum);
}
