// Owns the open folder of a walk.
#include "file_manager/folder_walk.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>

namespace carbon {

namespace {

#ifdef SYS_listxattrat
constexpr long kListAttributesAt = SYS_listxattrat;
#else
constexpr long kListAttributesAt = 465;  // the same on every machine
#endif

}  // namespace

const Folder* FolderWalk::Find(FSVolumeRefNum inVolume, SInt32 inId, UInt64 inEdition) const {
    const bool isIt = mFile && mFolder.volume == inVolume && mFolder.id == inId;
    return isIt && mEdition == inEdition ? &mFolder : nullptr;
}

void FolderWalk::Start(const Folder& inFolder, UInt64 inEdition) {
    const int flags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    if (mFile && mFolder.identity.IsSameAs(inFolder.identity) && mFolder.path == inFolder.path) {
        mEdition = inEdition;  // it was looked at on the way
        return;
    }
    mFile.Reset(open(inFolder.path.c_str(), flags));
    ObjectStatus status;
    const bool isIt = mFile && StatusAt(mFile.Get(), "", &status) == noErr &&
                      status.identity.IsSameAs(inFolder.identity);
    if (!isIt) End();
    mFolder = inFolder;
    mEdition = inEdition;
}

OSErr FolderWalk::StatusOf(const std::string& inDiskName, ObjectStatus* outStatus) const {
    return StatusAt(mFile.Get(), inDiskName, outStatus);
}

bool FolderWalk::HasAttributes(const std::string& inDiskName) const {
    const auto length = syscall(kListAttributesAt, mFile.Get(), inDiskName.c_str(),
                                AT_SYMLINK_NOFOLLOW, nullptr, size_t(0));
    if (length >= 0 || errno != ENOSYS) return length > 0;
    return llistxattr(PathInFolder(mFolder.path, inDiskName).c_str(), nullptr, 0) > 0;
}

}  // namespace carbon
