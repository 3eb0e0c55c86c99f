// Owns the list of volumes and the numbers that they keep.
#include "file_manager/volume_registry.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <map>

#include "file_manager/names.h"
#include "file_manager/object_status.h"
#include "file_manager/state_folder.h"

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
    if (!mDatabase && !mFolder.empty())
        mDatabase = Database::Open(mFolder + "/registry.db", kSchema);
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
    std::vector<std::pair<std::string, std::string>> folders;
    {
        Statement rows(*database, "SELECT path, name FROM folders WHERE start=? ORDER BY row");
        rows.Bind(StartOfSystem());
        while (rows.NextRow()) folders.emplace_back(rows.Bytes(0), rows.Bytes(1));
    }
    for (const auto& [path, name] : folders) {
        ObjectStatus status;
        if (!IsFolder(path, &status)) continue;
        Volume volume;
        volume.root = path;
        volume.device = status.identity.device;
        Add(std::move(volume), "folder " + path, name);
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

OSErr VolumeRegistry::MountFolder(const std::string& inPath, const std::string& inName,
                                  FSVolumeRefNum* outNumber) {
    Refresh();
    if (FindByRoot(inPath)) return volOnLinErr;
    Database* database = Open();
    if (!database) return ioErr;
    Statement add(*database, "INSERT OR REPLACE INTO folders(path, name, start) VALUES(?,?,?)");
    const auto name = inName.empty() ? LeafOfPath(inPath) : inName;
    if (!add.Bind(inPath).Bind(name).Bind(StartOfSystem()).Run()) return ioErr;
    Statement rename(*database, "UPDATE volumes SET name=? WHERE identity=?");
    if (!rename.Bind(UniqueName(name)).Bind("folder " + inPath).Run()) return ioErr;
    mChanges.Increment();
    RefreshFolders();
    const Volume* volume = FindByRoot(inPath);
    if (!volume) return ioErr;
    *outNumber = volume->number;
    return noErr;
}

OSErr VolumeRegistry::UnmountFolder(FSVolumeRefNum inNumber) {
    Refresh();
    const Volume* volume = Find(inNumber);
    if (!volume) return nsvErr;
    Database* database = Open();
    if (!database) return ioErr;
    Statement remove(*database, "DELETE FROM folders WHERE path=? RETURNING row");
    if (!remove.Bind(volume->root).NextRow()) return fBsyErr;
    if (!remove.Run()) return ioErr;
    mChanges.Increment();
    RefreshFolders();
    return noErr;
}

}  // namespace carbon
