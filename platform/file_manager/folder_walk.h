// The folder that is being walked by index, held open so that each entry costs little.
#pragma once

#include <string>

#include "file_manager/folders.h"
#include "posix/UniqueFd.h"

namespace carbon {

// Only one is held, until its end is reached or another one is walked: what is open cannot be
// unmounted by the system.
class FolderWalk {
  public:
    // The folder with this number, if it is the one held and the volumes are the same as then.
    const Folder* Find(FSVolumeRefNum inVolume, SInt32 inId, UInt64 inEdition) const;
    void Start(const Folder& inFolder, UInt64 inEdition);
    void End() { mFile.Reset(); }

    // fnfErr when it is gone.
    OSErr StatusOf(const std::string& inDiskName, ObjectStatus* outStatus) const;
    // Whether an entry has extended attributes.
    bool HasAttributes(const std::string& inDiskName) const;

  private:
    Folder mFolder;
    UniqueFd mFile;
    UInt64 mEdition = 0;
};

}  // namespace carbon
