// Owns the shorter way of deletion: when it can be gone, and its steps.
#include "file_manager/listings/walked_deletion.h"

#include <Carbon/MacErrors.h>
#include <sys/stat.h>
#include <unistd.h>

#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/object_changes.h"
#include "file_manager/forks/fork_locks.h"
#include "file_manager/metadata/object_guard.h"
#include "file_manager/volumes/capabilities.h"

namespace carbon {

namespace {

bool IsOrdinary(const ObjectStatus* inStatus) {
    return inStatus && S_ISREG(inStatus->mode) && !inStatus->isImmutable;
}

bool IsStill(int inFile, const ObjectIdentity& inIdentity) {
    struct stat facts;
    return fstat(inFile, &facts) == 0 && facts.st_dev == inIdentity.device &&
           facts.st_ino == inIdentity.inode;
}

// Under the guard, or somebody opens it between the look and the end.
bool Remove(const FolderWalk& inWalk, const std::string& inDiskName,
            const ObjectIdentity& inIdentity, OSErr* outError) {
    ObjectGuard guard;
    if (guard.TakeSeen(inIdentity.device, inIdentity.inode) != noErr) return false;
    const UniqueFd file = OpenToAsk(inWalk.File(), inDiskName);
    if (!file || !IsStill(file.Get(), inIdentity)) return false;
    *outError = IsAnyForkInUse(file.Get()) ? OSErr(fBsyErr) : OSErr(noErr);
    return *outError != noErr || unlinkat(inWalk.File(), inDiskName.c_str(), 0) == 0;
}

}  // namespace

bool DeleteWalked(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                  std::string_view inName, OSErr* outError) {
    VolumeRegistry& registry = ioObjects.AllFolders().Registry();
    registry.RefreshFolders();
    const FolderWalk& walk = ioObjects.Walk();
    const Folder* folder = walk.Find(inVolume, inDirectory, registry.Edition());
    const Volume* volume = registry.Find(inVolume);
    const ObjectStatus* status = folder && volume ? walk.LastStatusOf(inName) : nullptr;
    const std::string diskName(inName);
    if (!IsOrdinary(status) || !IsItsOwnSpecName(diskName)) return false;
    if (CheckWritable(*volume) != noErr || ioObjects.Listings().MayHaveCompanions(*folder))
        return false;
    if (!Remove(walk, diskName, status->identity, outError)) return false;
    if (*outError == noErr) ForgetFile(ioObjects, *volume, inDirectory, diskName);
    return true;
}

}  // namespace carbon
