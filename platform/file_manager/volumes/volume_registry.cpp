// Owns the list of volumes and the numbers that they keep.
#include "file_manager/volumes/volume_registry.h"

#include <Carbon/MacErrors.h>
#include <Platform/Platform.h>
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <map>

#include "file_manager/catalog/names.h"
#include "file_manager/catalog/object_status.h"
#include "file_manager/numbers/state_folder.h"

namespace carbon {

namespace {

constexpr FSVolumeRefNum kFirstNumber = -100;
// Numbers that could not be recorded mean nothing to other processes, so they lie apart.
constexpr FSVolumeRefNum kFirstPrivateNumber = -20000;

constexpr const char* kSchema =
    "CREATE TABLE volumes(number INTEGER PRIMARY KEY, identity BLOB UNIQUE NOT NULL,"
    " name BLOB NOT NULL);"
    "CREATE TABLE folders(row INTEGER PRIMARY KEY, path BLOB UNIQUE NOT NULL, name BLOB NOT NULL,"
    " start BLOB NOT NULL);";

// Made apart from the rest, since files of earlier versions lack it.
constexpr const char* kOptionsSchema =
    "CREATE TABLE IF NOT EXISTS options(path BLOB PRIMARY KEY, bits INTEGER NOT NULL,"
    " backup INTEGER NOT NULL)";

bool SetOptions(Database& inDatabase, const std::string& inPath, OptionBits inOptions,
                UInt32 inBackedUp) {
    Statement set(inDatabase, "INSERT OR REPLACE INTO options(path, bits, backup) VALUES(?,?,?)");
    return set.Bind(inPath).Bind(inOptions).Bind(inBackedUp).Run();
}

struct MountedFolder {
    std::string path;
    std::string name;
    OptionBits options;
    UInt32 backedUp;
};

// Folders are mounted until the computer restarts, like any volume that no table brings back.
std::string StartOfSystem() {
    std::ifstream file("/proc/sys/kernel/random/boot_id");
    std::string start;
    std::getline(file, start);
    return start;
}

UInt64 BlockDeviceOf(const Mount& inMount) {
    struct stat facts;
    const bool isBlock = stat(inMount.source.c_str(), &facts) == 0 && S_ISBLK(facts.st_mode);
    return isBlock ? facts.st_rdev : inMount.device;
}

// The name under which a folder of links (/dev/disk/by-uuid) knows a device.
std::string LinkTo(const std::string& inFolder, UInt64 inDevice) {
    std::string name;
    DIR* folder = opendir(inFolder.c_str());
    if (!folder) return name;
    while (const dirent* entry = readdir(folder)) {
        struct stat facts;
        const auto path = PathInFolder(inFolder, entry->d_name);
        if (stat(path.c_str(), &facts) == 0 && S_ISBLK(facts.st_mode) &&
            facts.st_rdev == inDevice) {
            name = entry->d_name;
            break;
        }
    }
    closedir(folder);
    return name;
}

std::string IdentityOf(const Mount& inMount) {
    const auto uuid = LinkTo("/dev/disk/by-uuid", BlockDeviceOf(inMount));
    if (!uuid.empty()) return "uuid " + uuid + ' ' + inMount.root;
    const auto identity = inMount.type + ' ' + inMount.source + ' ' + inMount.root;
    // Without a device behind it ("tmpfs", "overlay") the source tells nothing.
    const bool hasSource = inMount.source.find('/') != std::string::npos;
    return hasSource ? identity : identity + ' ' + inMount.point;
}

// udev writes what is no plain character as \x and two hexadecimal digits.
std::string WithoutEscapes(const std::string& inLabel) {
    std::string label;
    for (size_t i = 0; i < inLabel.size(); ++i) {
        if (inLabel.compare(i, 2, "\\x") == 0 && i + 3 < inLabel.size()) {
            label += char(std::strtoul(inLabel.substr(i + 2, 2).c_str(), nullptr, 16));
            i += 3;
        } else {
            label += inLabel[i];
        }
    }
    return label;
}

std::string NameOf(const Mount& inMount) {
    const auto label = WithoutEscapes(LinkTo("/dev/disk/by-label", BlockDeviceOf(inMount)));
    if (!label.empty()) return label;
    return inMount.point == "/" ? "Linux" : LeafOfPath(inMount.point);
}

// FNV-1a: a file name for an identity, the same in every process and version.
std::string TableName(const std::string& inIdentity) {
    UInt64 hash = 0xcbf29ce484222325;
    for (const char byte : inIdentity) hash = (hash ^ UInt8(byte)) * 0x100000001b3;
    char name[32];
    std::snprintf(name, sizeof name, "%016llx.db", static_cast<unsigned long long>(hash));
    return name;
}

bool IsFolder(const std::string& inPath, ObjectStatus* outStatus) {
    return StatusOfObject(inPath, outStatus) == noErr && outStatus->IsFolder();
}

bool IsWithin(const std::string& inPath, const std::string& inFolder) {
    if (inFolder == "/") return true;
    return inPath.starts_with(inFolder) &&
           (inPath.size() == inFolder.size() || inPath[inFolder.size()] == '/');
}

std::string VolumeName(const std::string& inDiskName, size_t inRoom) {
    const auto whole = SpecNameOf(inDiskName);
    std::string name = whole ? *whole : "Volume";
    std::replace(name.begin(), name.end(), ':', '-');
    return name.substr(0, inRoom);
}

}  // namespace

VolumeRegistry::VolumeRegistry()
    : mFolder(VolumesFolder()), mChanges(mFolder.empty() ? "" : mFolder + "/changes") {}

Database* VolumeRegistry::Open() {
    if (mDatabase && (mDatabase->IsDamaged() || mDatabase->IsReplaced())) {
        if (mDatabase->IsDamaged()) mDatabase->SetAside();
        mDatabase.reset();
    }
    if (!mDatabase && !mFolder.empty()) {
        mDatabase = Database::Open(mFolder + "/registry.db", kSchema);
        if (mDatabase) mDatabase->Execute(kOptionsSchema);
    }
    return mDatabase.get();
}

void VolumeRegistry::Close() {
    mDatabase.reset();
}

void VolumeRegistry::Refresh() {
    if (mWatch.HasChanged()) {
        Read();
    } else {
        RefreshFolders();
    }
}

void VolumeRegistry::RefreshFolders() {
    if (mVolumes.empty() || mChanges.Value() != mSeenChanges) Read();
}

void VolumeRegistry::Read() {
    ++mEdition;
    mSeenChanges = mChanges.Value();
    mVolumes.clear();
    AddMounts();
    AddFolders();
}

// Of mounts on one point the last is the one that is seen.
void VolumeRegistry::AddMounts() {
    const auto mounts = mWatch.Read();
    std::map<std::string, const Mount*> seen;
    for (const auto& mount : mounts) seen[mount.point] = &mount;
    const auto add = [this](const Mount& inMount) {
        Volume volume;
        volume.root = inMount.point;
        volume.device = inMount.device;
        volume.type = inMount.type;
        volume.source = inMount.source;
        // A server that does not answer must not stop everyone who asks for a volume.
        if (!IsOnNetwork(inMount)) {
            ObjectStatus status;
            if (!IsFolder(inMount.point, &status)) return;
            volume.device = status.identity.device;
        }
        volume.isReadOnly = inMount.isReadOnly;
        volume.isOnNetwork = IsOnNetwork(inMount);
        Add(std::move(volume), IdentityOf(inMount), NameOf(inMount));
    };
    add(*seen["/"]);
    for (const auto& mount : mounts) {
        if (mount.point != "/" && seen[mount.point] == &mount && IsVolume(mount)) add(mount);
    }
}

void VolumeRegistry::AddFolders() {
    Database* database = Open();
    if (!database) return;
    std::vector<MountedFolder> folders;
    {
        Statement rows(*database,
                       "SELECT path, name, IFNULL(bits, 0), IFNULL(backup, 0) FROM folders"
                       " LEFT JOIN options USING(path) WHERE start=? ORDER BY row");
        rows.Bind(StartOfSystem());
        while (rows.NextRow()) {
            folders.push_back({rows.Bytes(0), rows.Bytes(1), OptionBits(rows.Integer(2)),
                               UInt32(rows.Integer(3))});
        }
    }
    for (const auto& folder : folders) {
        ObjectStatus status;
        if (!IsFolder(folder.path, &status)) continue;
        Volume volume;
        volume.root = folder.path;
        volume.device = status.identity.device;
        volume.isFolder = true;
        volume.options = folder.options;
        volume.backedUp = folder.backedUp;
        volume.isReadOnly = folder.options & kPlatformMountHardwareLocked;
        Add(std::move(volume), "folder " + folder.path, folder.name);
    }
}

// One file system seen twice in the same way is one volume, at the place that came first.
void VolumeRegistry::Add(Volume inVolume, const std::string& inIdentity,
                         const std::string& inName) {
    if (!Register(inIdentity, inName, &inVolume)) {
        inVolume.number = FSVolumeRefNum(kFirstPrivateNumber - FSVolumeRefNum(mVolumes.size()));
        inVolume.name = UniqueName(inName);
    }
    if (!mFolder.empty()) inVolume.tablePath = mFolder + '/' + TableName(inIdentity);
    if (!Find(inVolume.number)) mVolumes.push_back(std::move(inVolume));
}

bool VolumeRegistry::Register(const std::string& inIdentity, const std::string& inName,
                              Volume* ioVolume) {
    Database* database = Open();
    if (!database) return false;
    const auto find = [&] {
        Statement row(*database, "SELECT number, name FROM volumes WHERE identity=?");
        if (!row.Bind(inIdentity).NextRow()) return false;
        ioVolume->number = FSVolumeRefNum(row.Integer(0));
        ioVolume->name = row.Bytes(1);
        return true;
    };
    if (find()) return true;
    Transaction transaction(*database);
    if (!transaction.IsOpen()) return false;
    if (find()) return true;
    {
        Statement lowest(*database, "SELECT MIN(number) FROM volumes");
        if (!lowest.NextRow()) return false;
        ioVolume->number =
            FSVolumeRefNum(lowest.Integer(0) < 0 ? lowest.Integer(0) - 1 : kFirstNumber);
    }
    ioVolume->name = UniqueName(inName);
    Statement add(*database, "INSERT INTO volumes(number, identity, name) VALUES(?,?,?)");
    if (ioVolume->number <= kFirstPrivateNumber) return false;
    if (!add.Bind(ioVolume->number).Bind(inIdentity).Bind(ioVolume->name).Run()) return false;
    return transaction.Commit();
}

// A full path begins with a volume's name, so no two that are there at once share one.
std::string VolumeRegistry::UniqueName(const std::string& inName) {
    std::string name = VolumeName(inName, kLongestVolumeName);
    for (int i = 2; FindByName(name); ++i) {
        const std::string number = ' ' + std::to_string(i);
        name = VolumeName(inName, kLongestVolumeName - number.size()) + number;
    }
    return name;
}

const Volume* VolumeRegistry::Find(FSVolumeRefNum inNumber) const {
    for (const auto& volume : mVolumes) {
        if (volume.number == inNumber) return &volume;
    }
    return nullptr;
}

const Volume* VolumeRegistry::FindByName(std::string_view inName) const {
    const auto folded = Folded(inName);
    for (const auto& volume : mVolumes) {
        if (Folded(volume.name) == folded) return &volume;
    }
    return nullptr;
}

const Volume* VolumeRegistry::FindByRoot(const std::string& inPath) const {
    for (const auto& volume : mVolumes) {
        if (volume.root == inPath) return &volume;
    }
    return nullptr;
}

const Volume& VolumeRegistry::Containing(const std::string& inPath) const {
    const Volume* innermost = &mVolumes.front();
    for (const auto& volume : mVolumes) {
        if (volume.root.size() > innermost->root.size() && IsWithin(inPath, volume.root)) {
            innermost = &volume;
        }
    }
    return *innermost;
}

const Volume* VolumeRegistry::FindFolder(FSVolumeRefNum inNumber) const {
    const Volume* volume = Find(inNumber);
    return volume && volume->isFolder ? volume : nullptr;
}

OSErr VolumeRegistry::Announce(bool inIsDone) {
    if (!inIsDone) return ioErr;
    mChanges.Increment();
    RefreshFolders();
    return noErr;
}

OSErr VolumeRegistry::MountFolder(const std::string& inPath, const std::string& inName,
                                  OptionBits inOptions, FSVolumeRefNum* outNumber) {
    Refresh();
    if (FindByRoot(inPath)) return volOnLinErr;
    Database* database = Open();
    if (!database || !SetOptions(*database, inPath, inOptions, 0)) return ioErr;
    Statement add(*database, "INSERT OR REPLACE INTO folders(path, name, start) VALUES(?,?,?)");
    const auto name = inName.empty() ? LeafOfPath(inPath) : inName;
    if (!add.Bind(inPath).Bind(name).Bind(StartOfSystem()).Run()) return ioErr;
    Statement rename(*database, "UPDATE volumes SET name=? WHERE identity=?");
    const bool isDone = rename.Bind(UniqueName(name)).Bind("folder " + inPath).Run();
    if (const OSErr error = Announce(isDone)) return error;
    const Volume* volume = FindByRoot(inPath);
    if (!volume) return ioErr;
    *outNumber = volume->number;
    return noErr;
}

OSErr VolumeRegistry::MountAgain(const std::string& inName, FSVolumeRefNum* outNumber) {
    Refresh();
    const Volume* volume = FindByName(inName);
    if (volume && volume->isFolder && (volume->options & kPlatformMountRemote)) {
        *outNumber = volume->number;
        return afpAlreadyMounted;
    }
    Database* database = Open();
    std::string path, name;
    OptionBits options = 0;
    if (database) {
        Statement rows(*database,
                       "SELECT path, name, bits FROM options JOIN volumes"
                       " ON identity = CAST('folder ' || path AS BLOB) WHERE bits & ?");
        rows.Bind(SInt64(kPlatformMountRemote));
        while (path.empty() && rows.NextRow()) {
            if (Folded(rows.Bytes(1)) != Folded(inName)) continue;
            path = rows.Bytes(0);
            name = rows.Bytes(1);
            options = OptionBits(rows.Integer(2));
        }
    }
    ObjectStatus status;
    if (path.empty() || !IsFolder(path, &status)) return nsvErr;
    return MountFolder(path, DiskNameOf(name), options, outNumber);
}

OSErr VolumeRegistry::UnmountFolder(FSVolumeRefNum inNumber) {
    Refresh();
    if (!Find(inNumber)) return nsvErr;
    const Volume* volume = FindFolder(inNumber);
    if (!volume) return fBsyErr;
    Database* database = Open();
    if (!database) return ioErr;
    Statement remove(*database, "DELETE FROM folders WHERE path=? RETURNING row");
    if (!remove.Bind(volume->root).NextRow()) return fBsyErr;
    return Announce(remove.Run());
}

OSErr VolumeRegistry::RenameFolder(FSVolumeRefNum inNumber, const std::string& inName) {
    Refresh();
    const Volume* volume = FindFolder(inNumber);
    if (!volume) return fBsyErr;
    const Volume* other = FindByName(inName);
    if (other && other != volume) return dupFNErr;
    Database* database = Open();
    if (!database) return ioErr;
    Statement rename(*database, "UPDATE volumes SET name=? WHERE number=?");
    return Announce(rename.Bind(inName).Bind(inNumber).Run());
}

OSErr VolumeRegistry::ChangeFolder(FSVolumeRefNum inNumber, OptionBits inOptions,
                                   UInt32 inBackedUp) {
    Refresh();
    const Volume* volume = FindFolder(inNumber);
    if (!volume) return wPrErr;
    Database* database = Open();
    return Announce(database && SetOptions(*database, volume->root, inOptions, inBackedUp));
}

}  // namespace carbon
