// Owns the calls that make volumes of folders.
#include <Carbon/MacErrors.h>
#include <Platform/Platform.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "file_manager/catalog/objects.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr OptionBits kAllOptions = kPlatformMountParametersVersion1 * 2 - 1;

OSErr MountFolder(const char* inPath, const char* inName, OptionBits inOptions,
                  FSVolumeRefNum* outNumber) {
    if (inOptions & ~kAllOptions) return paramErr;
    char path[PATH_MAX];
    if (!realpath(inPath, path)) return OSErrFromErrno(errno);
    ObjectStatus status;
    if (const OSErr error = StatusOfObject(path, &status)) return error;
    if (!status.IsFolder()) return dirNFErr;
    const Catalog catalog;
    VolumeRegistry& registry = catalog->AllFolders().Registry();
    return registry.MountFolder(path, inName ? inName : "", inOptions, outNumber);
}

}  // namespace

}  // namespace carbon

OSErr PlatformMountFolderWithOptions(const char* path, const char* name, OptionBits options,
                                     FSVolumeRefNum* vRefNum) {
    return path && vRefNum ? carbon::MountFolder(path, name, options, vRefNum) : OSErr(paramErr);
}

OSErr PlatformMountFolder(const char* path, const char* name, FSVolumeRefNum* vRefNum) {
    return PlatformMountFolderWithOptions(path, name, 0, vRefNum);
}

OSErr PlatformUnmountFolder(FSVolumeRefNum vRefNum) {
    return carbon::Catalog()->AllFolders().Registry().UnmountFolder(vRefNum);
}
