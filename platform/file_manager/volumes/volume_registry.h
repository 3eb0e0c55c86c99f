// The volumes of this user: which there are, what number and name each has, where each one's root
// is.
#pragma once

#include <Carbon/Files.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "file_manager/numbers/database.h"
#include "file_manager/numbers/shared_counter.h"
#include "file_manager/volumes/mounts.h"

namespace carbon {

struct Volume {
    FSVolumeRefNum number = 0;
    std::string name;       // MacRoman, at most 27 bytes
    std::string root;       // path
    std::string tablePath;  // where its numbers of folders are kept; empty when nowhere
    std::string type;       // of the file system; empty for a mounted folder
    std::string source;     // "/dev/sda1", "server:/path"
    UInt64 device = 0;
    OptionBits options = 0;  // kPlatformMountRemote and its like
    UInt32 backedUp = 0;     // as PBSetVInfo set it
    bool isFolder = false;   // mounted by PlatformMountFolder
    bool isReadOnly = false;
    bool isOnNetwork = false;
};

// In their order: the root, other mounts as they were mounted, folders mounted as volumes. A volume
// is known again by the file system's UUID (else its type and source) and the folder of it that is
// mounted, and keeps its number for good.
class VolumeRegistry {
  public:
    VolumeRegistry();

    // Reads again if a mount has come or gone, for one poll.
    void Refresh();
    // The same for folders mounted by any process of the user, for no system call.
    void RefreshFolders();
    // Another number after each reading.
    UInt64 Edition() const { return mEdition; }

    const std::vector<Volume>& Volumes() const { return mVolumes; }
    const Volume* Find(FSVolumeRefNum inNumber) const;
    const Volume* FindByName(std::string_view inName) const;  // MacRoman, without regard to case
    const Volume* FindByRoot(const std::string& inPath) const;
    // The innermost volume that a path lies on.
    const Volume& Containing(const std::string& inPath) const;

    // Tells every process of the user to forget what it remembers of volumes and numbers.
    void AnnounceChange() { mChanges.Increment(); }

    // A real path without symbolic links; the name may be empty for the folder's own.
    OSErr MountFolder(const std::string& inPath, const std::string& inName, OptionBits inOptions,
                      FSVolumeRefNum* outNumber);
    // A folder that was mounted as a server's volume of that name. afpAlreadyMounted, with its
    // number too; nsvErr when there was none.
    OSErr MountAgain(const std::string& inName, FSVolumeRefNum* outNumber);
    OSErr UnmountFolder(FSVolumeRefNum inNumber);
    // Of mounted folders only. The name is MacRoman; another volume may have it.
    OSErr RenameFolder(FSVolumeRefNum inNumber, const std::string& inName);
    OSErr ChangeFolder(FSVolumeRefNum inNumber, OptionBits inOptions, UInt32 inBackedUp);

    void Close();                            // before a fork
    void ForgetWatch() { mWatch.Forget(); }  // in the child

  private:
    void Read();
    Database* Open();
    void AddMounts();
    void AddFolders();
    void Add(Volume inVolume, const std::string& inIdentity, const std::string& inName);
    bool Register(const std::string& inIdentity, const std::string& inName, Volume* ioVolume);
    std::string UniqueName(const std::string& inName);
    const Volume* FindFolder(FSVolumeRefNum inNumber) const;
    OSErr Announce(bool inIsDone);

    std::string mFolder;
    std::unique_ptr<Database> mDatabase;
    MountWatch mWatch;
    SharedCounter mChanges;
    UInt64 mSeenChanges = 0;
    UInt64 mEdition = 0;
    std::vector<Volume> mVolumes;
};

}  // namespace carbon
