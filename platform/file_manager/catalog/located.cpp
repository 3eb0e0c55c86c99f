// Owns the steps with which most calls begin: find the object, see whether it may be changed.
#include "file_manager/catalog/located.h"

#include <Carbon/MacErrors.h>
#include <unistd.h>

#include "file_manager/catalog/finder_info.h"
#include "file_manager/catalog/pathname.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

OSErr TakeVolume(Objects& ioObjects, OSErr inError, Located* ioLocated) {
    if (inError != noErr && inError != fnfErr) return inError;
    const Volume* volume = ioObjects.AllFolders().Registry().Find(ioLocated->object.spec.vRefNum);
    if (!volume) return nsvErr;
    ioLocated->volume = *volume;
    return inError;
}

}  // namespace

OSErr Locate(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
             ConstStr255Param inName, Located* outLocated) {
    if (inVolume > 0) {
        const Volume* volume = VolumeByNumber(ioObjects, inVolume);
        if (!volume) return nsvErr;
        inVolume = volume->number;
    }
    const OSErr error =
        FindByPathname(ioObjects, inVolume, inDirectory, inName, &outLocated->object);
    return TakeVolume(ioObjects, error, outLocated);
}

OSErr Locate(Objects& ioObjects, const FSSpec& inSpec, Located* outLocated) {
    return Locate(ioObjects, inSpec.vRefNum, inSpec.parID, inSpec.name, outLocated);
}

OSErr LocateFolder(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                   ConstStr255Param inName, Folder* outFolder) {
    const bool isPlain = inVolume < 0 && inDirectory > fsRtParID && (!inName || inName[0] == 0);
    if (isPlain) return ioObjects.AllFolders().FindById(inVolume, inDirectory, outFolder);
    Located located;
    const OSErr error = Locate(ioObjects, inVolume, inDirectory, inName, &located);
    if (error != noErr) return error == fnfErr ? OSErr(dirNFErr) : error;
    if (!located.object.status.IsFolder()) return dirNFErr;
    return ioObjects.AllFolders().FindByPath(located.object.path, outFolder);
}

OSErr FindParent(Objects& ioObjects, const Object& inObject, Folder* outFolder) {
    if (IsRoot(inObject)) return dirNFErr;
    return ioObjects.AllFolders().FindById(inObject.spec.vRefNum, inObject.spec.parID, outFolder);
}

OSErr CheckChangeable(const Located& inLocated) {
    if (const OSErr error = CheckWritable(inLocated.volume)) return error;
    return IsLocked(inLocated.object) ? OSErr(fLckdErr) : OSErr(noErr);
}

bool IsRoot(const Object& inObject) {
    return inObject.spec.parID == fsRtParID;
}

// Only a companion can tell of a lock, and most objects have none.
bool IsLocked(const Object& inObject) {
    if (inObject.status.isImmutable) return true;
    return HasCompanion(inObject) && MetadataOf(inObject).facts.isLocked;
}

bool HasCompanion(const Object& inObject) {
    return access(CompanionPath(inObject.path, IsRoot(inObject)).c_str(), F_OK) == 0;
}

}  // namespace carbon
