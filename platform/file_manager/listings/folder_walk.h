// The folder that is being walked by index, held open so that each entry costs little.
#pragma once

#include <string>
#include <string_view>

#include "file_manager/metadata/attribute_metadata.h"
#include "file_manager/numbers/folders.h"
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

    // Open, for calls that take a folder and a name.
    int File() const { return mFile.Get(); }

    // fnfErr when it is gone.
    OSErr StatusOf(const std::string& inDiskName, ObjectStatus* outStatus);
    // What the entry that was looked at last was then; null for any other one.
    const ObjectStatus* LastStatusOf(std::string_view inDiskName) const {
        return mFile && inDiskName == mLastName ? &mLastStatus : nullptr;
    }
    // What is kept in a file's extended attributes; false when that could not be told.
    bool ReadAttributes(const std::string& inDiskName, Metadata* outMetadata) const {
        return ReadAttributesAt(mFile.Get(), inDiskName, outMetadata);
    }

  private:
    Folder mFolder;
    UniqueFd mFile;
    UInt64 mEdition = 0;
    std::string mLastName;
    ObjectStatus mLastStatus;
};

}  // namespace carbon
