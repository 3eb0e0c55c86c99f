// Which volume a call means.
#pragma once

#include "file_manager/catalog/objects.h"

namespace carbon {

// By number; 0 is the default volume, a positive number a drive. Null when there is none.
const Volume* VolumeByNumber(Objects& ioObjects, FSVolumeRefNum inNumber);

// By name if that is a volume's path ("Disk:" or longer) and there is such a volume, else by
// number. The name may be null.
const Volume* VolumeByName(Objects& ioObjects, ConstStr255Param inName, FSVolumeRefNum inNumber);

// A positive index counts volumes from 1; 0 means the number, a negative one name and number.
const Volume* VolumeByIndex(Objects& ioObjects, SInt16 inIndex, ConstStr255Param inName,
                            FSVolumeRefNum inNumber);

// The number of the drive that a volume is in.
SInt16 DriveOf(const Volume& inVolume);

}  // namespace carbon
