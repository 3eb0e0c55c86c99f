// Owns the open folder of a walk.
#include "file_manager/listings/folder_walk.h"

#include <fcntl.h>

namespace carbon {

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
    mLastName.clear();
    mFile.Reset(open(inFolder.path.c_str(), flags));
    ObjectStatus status;
    const bool isIt = mFile && StatusAt(mFile.Get(), "", &status) == noErr &&
                      status.identity.IsSameAs(inFolder.identity);
    if (!isIt) End();
    mFolder = inFolder;
    mEdition = inEdition;
}

OSErr FolderWalk::StatusOf(const std::string& inDiskName, ObjectStatus* outStatus) {
    mLastName.clear();
    if (const OSErr error = StatusAt(mFile.Get(), inDiskName, outStatus)) return error;
    mLastName = inDiskName;
    mLastStatus = *outStatus;
    return noErr;
}

}  // namespace carbon
