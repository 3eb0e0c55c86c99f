// The object that a call names by volume, directory and name, with the volume it lies on.
#pragma once

#include "file_manager/catalog/objects.h"
#include "file_manager/volumes/capabilities.h"

namespace carbon {

struct Located {
    Object object;
    Volume volume;  // that the object lies on, or would
};

// As FindByPathname; drives are taken for volumes. fnfErr as there.
OSErr Locate(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
             ConstStr255Param inName, Located* outLocated);
OSErr Locate(Objects& ioObjects, const FSSpec& inSpec, Located* outLocated);

// A directory by its number, as `ioDirID` gives it. dirNFErr for what is no directory.
OSErr LocateFolder(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                   ConstStr255Param inName, Folder* outFolder);

// The folder that an object lies in. dirNFErr for a volume's root.
OSErr FindParent(Objects& ioObjects, const Object& inObject, Folder* outFolder);

// For changing an existing object: writable volume, and not locked (fLckdErr) itself.
OSErr CheckChangeable(const Located& inLocated);

bool IsRoot(const Object& inObject);
bool IsLocked(const Object& inObject);
bool HasCompanion(const Object& inObject);

}  // namespace carbon
