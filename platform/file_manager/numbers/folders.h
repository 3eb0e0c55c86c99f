// Folders by number and by path, in the memory of this process.
#pragma once

#include <Carbon/Files.h>

#include <memory>
#include <unordered_map>

#include "file_manager/numbers/id_table.h"
#include "file_manager/volumes/volume_registry.h"

namespace carbon {

// A folder that is known to be where `path` says, or was when last looked at.
struct Folder {
    FSVolumeRefNum volume = 0;
    SInt32 id = 0;
    std::string path;
    ObjectIdentity identity;
};

// Keeps what the tables of numbers told: asking again for an unmoved folder costs one look at it.
class Folders {
  public:
    // The folder with this number, wherever it has moved: nsvErr, dirNFErr.
    OSErr FindById(FSVolumeRefNum inVolume, SInt32 inId, Folder* outFolder);
    // The folder at an absolute path, which gets a number if it has none. Links on the path are
    // followed. dirNFErr, afpAccessDenied.
    OSErr FindByPath(const std::string& inPath, Folder* outFolder);
    // The same for a real path and what was just seen there, without another look.
    OSErr FindSeen(const std::string& inPath, const ObjectStatus& inStatus, Folder* outFolder);
    // The folder with this identity, if it has a number and is found.
    OSErr FindByIdentity(FSVolumeRefNum inVolume, const ObjectIdentity& inIdentity,
                         const std::string& inName, Folder* outFolder);

    // Where else a moved object may be: folders used last, by this process and then by any.
    std::vector<Folder> LikelyFolders(const Volume& inVolume);

    VolumeRegistry& Registry() { return mRegistry; }
    IdTable& TableOf(const Volume& inVolume);
    // A volume by number; notices mounts and unmounts.
    const Volume* FindVolume(FSVolumeRefNum inNumber);
    // The identity as the table of a volume keeps it.
    static ObjectIdentity KeptIdentity(const Volume& inVolume, ObjectIdentity inIdentity);

    void CloseTables();

  private:
    struct Key {
        FSVolumeRefNum volume;
        SInt32 id;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key& inKey) const {
            return std::hash<UInt64>()(UInt64(UInt16(inKey.volume)) << 32 | UInt32(inKey.id));
        }
    };

    void Remember(const Folder& inFolder);
    void Forget(const Key& inKey);
    void ForgetAll();
    void NoticeFolders();
    void NoticeMounts();
    void NoticeEdition();
    OSErr FindRealPath(const std::string& inPath, Folder* outFolder, int inTries);
    OSErr TakeSeen(const std::string& inPath, const ObjectStatus& inStatus, Folder* outFolder,
                   int inTries);
    const Folder* Known(const std::string& inPath, const ObjectIdentity& inIdentity);
    OSErr FollowRecord(const Volume& inVolume, const IdRecord& inRecord, Folder* outFolder);
    OSErr SearchMoved(const Volume& inVolume, IdRecord inRecord, const Folder* inParent,
                      Folder* outFolder);
    SInt32 IdOf(const Volume& inVolume, const std::string& inPath, const ObjectIdentity& inIdentity,
                SInt32 inParent);
    bool IsStillAt(const Volume& inVolume, const IdRecord& inRecord);

    VolumeRegistry mRegistry;
    std::unordered_map<std::string, std::unique_ptr<IdTable>> mTables;
    std::unordered_map<Key, Folder, KeyHash> mById;
    std::unordered_map<std::string, Key> mByPath;
    UInt64 mEdition = 0;  // of the registry, when the two maps began
    int mDepth = 0;
    bool mIsSearching = false;
};

}  // namespace carbon
