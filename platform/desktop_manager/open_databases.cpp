// Owns opening and closing desktop databases, and what happens when one is damaged.
#include "desktop_manager/open_databases.h"

#include <Carbon/MacErrors.h>
#include <unistd.h>

#include <algorithm>
#include <map>

#include "file_manager/before_fork.h"
#include "file_manager/volumes/capabilities.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

// Far from the numbers of open forks, so that one is not taken for the other.
constexpr SInt16 kFirstNumber = 0x7000;
constexpr int kMostTries = 2;

struct OpenDesktops {
    std::vector<FSVolumeRefNum> volumes;                                // by number; 0: closed
    std::map<std::string, std::unique_ptr<DesktopDatabase>> databases;  // by path
};

// Used with the catalog held.
OpenDesktops& Desktops() {
    static auto& sDesktops = *new OpenDesktops;
    static const bool sIsRegistered = [] {
        CloseBeforeFork([] { sDesktops.databases.clear(); });
        return true;
    }();
    static_cast<void>(sIsRegistered);
    return sDesktops;
}

// Linux: the database of a volume that may not be written is as good as any, since it lies
// elsewhere.
OSErr FindNamed(Objects& ioObjects, ConstStr255Param inName, FSVolumeRefNum inVolume,
                Volume* outVolume) {
    const Volume* volume = VolumeByName(ioObjects, inName, inVolume);
    if (!volume) return nsvErr;
    *outVolume = *volume;
    const bool hasPlace = !volume->tablePath.empty();
    const bool hasNone = !hasPlace || Lacks(*volume, kPlatformMountNoDesktopManager);
    return hasNone ? OSErr(extFSErr) : OSErr(noErr);
}

OSErr VolumeOfNumber(Objects& ioObjects, SInt16 inNumber, Volume* outVolume) {
    const auto& volumes = Desktops().volumes;
    const int index = inNumber - kFirstNumber;
    if (index < 0 || size_t(index) >= volumes.size() || volumes[size_t(index)] == 0) {
        return rfNumErr;
    }
    const Volume* volume = ioObjects.AllFolders().FindVolume(volumes[size_t(index)]);
    if (!volume) return nsvErr;
    *outVolume = *volume;
    return noErr;
}

// A volume's number; else the first one that is free, for they would run out.
SInt16 NumberOf(FSVolumeRefNum inVolume) {
    auto& volumes = Desktops().volumes;
    auto place = std::find(volumes.begin(), volumes.end(), inVolume);
    if (place == volumes.end()) place = std::find(volumes.begin(), volumes.end(), 0);
    if (place == volumes.end()) place = volumes.insert(place, inVolume);
    *place = inVolume;
    return SInt16(kFirstNumber + (place - volumes.begin()));
}

// A file that another process has set aside or deleted meanwhile is not used any further.
DesktopDatabase* Find(const std::string& inPath) {
    auto& databases = Desktops().databases;
    const auto found = databases.find(inPath);
    if (found == databases.end()) return nullptr;
    if (!found->second->IsReplaced()) return found->second.get();
    databases.erase(found);
    return nullptr;
}

DesktopDatabase* FindOrOpen(const std::string& inPath) {
    if (inPath.empty()) return nullptr;
    if (DesktopDatabase* database = Find(inPath)) return database;
    auto database = DesktopDatabase::Open(inPath);
    return database ? (Desktops().databases[inPath] = std::move(database)).get() : nullptr;
}

void Drop(const std::string& inPath) {
    Desktops().databases[inPath]->SetAside();
    Desktops().databases.erase(inPath);
}

// One try of `inWork`. `outIsDamaged` tells that another one may do better.
OSErr Try(Objects& ioObjects, const Volume& inVolume, const DesktopWork& inWork,
          bool* outIsDamaged) {
    const auto path = DesktopPath(inVolume);
    DesktopDatabase* database = FindOrOpen(path);
    if (!database) return ioErr;
    const OSErr result = inWork(ioObjects, inVolume.number, *database);
    *outIsDamaged = database->IsDamaged();
    if (!*outIsDamaged) return result;
    Drop(path);
    return desktopDamagedErr;
}

template <typename FindVolume>
OSErr WorkOn(FindVolume inFindVolume, const DesktopWork& inWork) {
    OSErr result = ioErr;
    for (int i = 0; i < kMostTries; ++i) {
        const Catalog catalog;
        Volume volume;
        bool isDamaged = false;
        if (const OSErr error = inFindVolume(*catalog, &volume)) return error;
        result = Try(*catalog, volume, inWork, &isDamaged);
        if (!isDamaged) return result;
    }
    return result;
}

}  // namespace

std::string DesktopPath(const Volume& inVolume) {
    const auto& table = inVolume.tablePath;
    return table.empty() ? "" : table.substr(0, table.rfind('.')) + ".desktop.db";
}

OSErr OpenDesktop(ConstStr255Param inName, FSVolumeRefNum inVolume, SInt16* outNumber,
                  bool* outWasEmpty) {
    *outNumber = 0;
    const auto programs = ProgramsToLearn();
    const auto find = [&](Objects& ioObjects, Volume* outVolume) {
        return FindNamed(ioObjects, inName, inVolume, outVolume);
    };
    bool wasNew = false;
    const auto work = [&](Objects& ioObjects, FSVolumeRefNum inFound, DesktopDatabase& ioDatabase) {
        wasNew = ioDatabase.TakeNewness() || wasNew;
        Learn(ioObjects, inFound, programs, ioDatabase);
        *outWasEmpty = wasNew && ioDatabase.IsEmpty();
        *outNumber = NumberOf(inFound);
        return OSErr(noErr);
    };
    const OSErr error = WorkOn(find, work);
    if (error) *outNumber = 0;
    return error;
}

OSErr CloseDesktop(SInt16 inNumber) {
    const Catalog catalog;
    Volume volume;
    const OSErr error = VolumeOfNumber(*catalog, inNumber, &volume);
    if (error == rfNumErr) return error;
    if (error == noErr) Desktops().databases.erase(DesktopPath(volume));
    Desktops().volumes[size_t(inNumber - kFirstNumber)] = 0;
    return noErr;
}

OSErr DeleteDesktop(ConstStr255Param inName, FSVolumeRefNum inVolume) {
    const Catalog catalog;
    Volume volume;
    const OSErr error = FindNamed(*catalog, inName, inVolume, &volume);
    if (error) return error;
    for (const auto open : Desktops().volumes) {
        if (open == volume.number) return fBsyErr;
    }
    const auto path = DesktopPath(volume);
    Desktops().databases.erase(path);
    if (unlink(path.c_str()) != 0) return fnfErr;
    for (const char* suffix : {"-wal", "-shm"}) unlink((path + suffix).c_str());
    return noErr;
}

OSErr WithDesktop(SInt16 inNumber, const DesktopWork& inWork) {
    const auto find = [&](Objects& ioObjects, Volume* outVolume) {
        return VolumeOfNumber(ioObjects, inNumber, outVolume);
    };
    return WorkOn(find, inWork);
}

}  // namespace carbon
