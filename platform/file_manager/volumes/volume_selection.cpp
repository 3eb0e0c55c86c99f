// Owns the rules by which name, number and index choose a volume.
#include "file_manager/volumes/volume_selection.h"

#include "file_manager/catalog/names.h"
#include "file_manager/catalog/pathname.h"

namespace carbon {

namespace {

constexpr SInt16 kNumberOfDriveZero = -99;  // so that the first volume is in drive 1

}  // namespace

SInt16 DriveOf(const Volume& inVolume) {
    return SInt16(kNumberOfDriveZero - inVolume.number);
}

const Volume* VolumeByNumber(Objects& ioObjects, FSVolumeRefNum inNumber) {
    if (inNumber == 0) inNumber = CurrentDirectory(ioObjects).volume;
    if (inNumber > 0) inNumber = FSVolumeRefNum(kNumberOfDriveZero - inNumber);
    return ioObjects.AllFolders().FindVolume(inNumber);
}

const Volume* VolumeByName(Objects& ioObjects, ConstStr255Param inName, FSVolumeRefNum inNumber) {
    const Volume* named = inName ? VolumeInPathname(ioObjects, TextOfPascal(inName)) : nullptr;
    // Kept: a name that is no volume's path counts for nothing, and the number decides. Callers who
    // want a volume of that name or none give -32768, which no volume has.
    return named ? named : VolumeByNumber(ioObjects, inNumber);
}

const Volume* VolumeByIndex(Objects& ioObjects, SInt16 inIndex, ConstStr255Param inName,
                            FSVolumeRefNum inNumber) {
    if (inIndex < 0) return VolumeByName(ioObjects, inName, inNumber);
    if (inIndex == 0) return VolumeByNumber(ioObjects, inNumber);
    VolumeRegistry& registry = ioObjects.AllFolders().Registry();
    registry.Refresh();
    const auto& volumes = registry.Volumes();
    return size_t(inIndex) <= volumes.size() ? &volumes[size_t(inIndex) - 1] : nullptr;
}

}  // namespace carbon
