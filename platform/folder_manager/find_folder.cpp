// Owns the calls of the Folder Manager: which places a request may mean, and making them.
#include <Carbon/Folders.h>
#include <Carbon/MacErrors.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "file_manager/catalog/pathname.h"
#include "file_manager/volumes/capabilities.h"
#include "folder_manager/places.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

// A folder, and the volume it must be on (0 for any).
struct Candidates {
    std::vector<std::string> places;
    FSVolumeRefNum volume = 0;
    bool areOpenToAll = false;  // they are in folders in which anyone may make others
};

const Volume* VolumeAsked(Objects& ioObjects, FSVolumeRefNum inAsked) {
    Folders& folders = ioObjects.AllFolders();
    folders.Registry().Refresh();
    if (inAsked == kOnSystemDisk) return &folders.Registry().Volumes().front();
    if (inAsked == 0) inAsked = CurrentDirectory(ioObjects).volume;
    return folders.FindVolume(inAsked);
}

bool IsDomain(FSVolumeRefNum inAsked) {
    return inAsked > kOnSystemDisk && inAsked <= kClassicDomain;
}

// The user's trash and temporary items are where the home is, as a volume's.
std::vector<std::string> PlacesOfUser(Objects& ioObjects, OSType inType) {
    if (auto place = PlaceOfUser(inType); !place.empty()) return {place};
    Folder home;
    const auto path = PlaceOfUser(kCurrentUserFolderType);
    if (ioObjects.AllFolders().FindByPath(path, &home) != noErr) return {};
    const Volume* volume = ioObjects.AllFolders().FindVolume(home.volume);
    return volume ? PlacesOnVolume(Volume(*volume), inType) : std::vector<std::string>();
}

OSErr FindCandidates(Objects& ioObjects, FSVolumeRefNum inAsked, OSType inType,
                     Candidates* outCandidates) {
    if (inAsked == kUserDomain || inAsked == kOnAppropriateDisk) {
        outCandidates->places = PlacesOfUser(ioObjects, inType);
    } else if (inAsked == kLocalDomain) {
        outCandidates->places = {PlaceOfMachine(inType)};
    } else if (!IsDomain(inAsked)) {
        const Volume* volume = VolumeAsked(ioObjects, inAsked);
        if (!volume) return nsvErr;
        outCandidates->volume = volume->number;
        auto& places = outCandidates->places;
        if (inType == kTrashFolderType) places.push_back(PlaceOfUser(inType));
        for (auto& place : PlacesOnVolume(Volume(*volume), inType)) places.push_back(place);
        if (places.empty()) places = {PlaceOfUser(inType)};
    }
    outCandidates->areOpenToAll = inType == kTemporaryFolderType && inAsked != kLocalDomain;
    return noErr;
}

// Whoever was there first could have made a folder or a link of that name for the user to fall
// into.
bool IsUsersOwn(const std::string& inPlace) {
    for (const auto& path : {inPlace, ParentOfPath(inPlace)}) {
        struct stat facts;
        if (lstat(path.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode)) return false;
        if (facts.st_uid != geteuid()) return false;
    }
    return true;
}

// The innermost folder of a path that is there: it tells which volume the others would be on.
std::string ExistingPartOf(std::string inPath) {
    ObjectStatus status;
    while (inPath != "/" && StatusOfObject(inPath, &status) == fnfErr)
        inPath = ParentOfPath(inPath);
    return inPath;
}

bool IsOnVolume(Objects& ioObjects, const std::string& inPath, FSVolumeRefNum inVolume) {
    Folder folder;
    return ioObjects.AllFolders().FindByPath(ExistingPartOf(inPath), &folder) == noErr &&
           folder.volume == inVolume;
}

OSErr MakeFolders(const std::string& inPath) {
    ObjectStatus status;
    const OSErr error = StatusOfObject(inPath, &status);
    if (error != fnfErr && error != dirNFErr) return error;
    const OSErr parentError = MakeFolders(ParentOfPath(inPath));
    if (parentError) return parentError;
    if (mkdir(inPath.c_str(), 0700) == 0 || errno == EEXIST) return noErr;
    return OSErrFromErrno(errno);
}

// Names stand in a path with links, so a folder that was found may be on another volume yet.
OSErr FindPlace(Objects& ioObjects, const Candidates& inCandidates, bool inMayMake,
                Folder* outFolder) {
    OSErr result = fnfErr;
    for (const auto& place : inCandidates.places) {
        const FSVolumeRefNum volume = inCandidates.volume;
        if (place.empty() || (volume != 0 && !IsOnVolume(ioObjects, place, volume))) continue;
        OSErr error = inMayMake ? MakeFolders(place) : OSErr(noErr);
        if (error == noErr) error = ioObjects.AllFolders().FindByPath(place, outFolder);
        if (error == noErr && inCandidates.areOpenToAll && !IsUsersOwn(place)) error = permErr;
        if (error == noErr && (volume == 0 || outFolder->volume == volume)) return noErr;
        if (error != noErr && error != dirNFErr) result = error;
    }
    return result;
}

OSErr Find(Objects& ioObjects, FSVolumeRefNum inAsked, OSType inType, bool inMayMake,
           Folder* outFolder) {
    Candidates candidates;
    if (const OSErr error = FindCandidates(ioObjects, inAsked, inType, &candidates)) return error;
    const OSErr error = FindPlace(ioObjects, candidates, false, outFolder);
    if (error != fnfErr || !inMayMake) return error;
    const Volume* volume = ioObjects.AllFolders().FindVolume(candidates.volume);
    if (const OSErr locked = volume ? CheckWritable(*volume) : OSErr(noErr)) return locked;
    return FindPlace(ioObjects, candidates, true, outFolder);
}

OSErr FindRef(FSVolumeRefNum inAsked, OSType inType, bool inMayMake, FSRef* outRef) {
    const Catalog catalog;
    Folder folder;
    if (const OSErr error = Find(*catalog, inAsked, inType, inMayMake, &folder)) return error;
    Object object;
    const OSErr error = catalog->FindFolder(folder, &object);
    if (error == noErr) *outRef = catalog->RefTo(object);
    return error;
}

}  // namespace

}  // namespace carbon

OSErr FindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder,
                 FSVolumeRefNum* foundVRefNum, SInt32* foundDirID) {
    carbon::Folder folder;
    const OSErr error =
        carbon::Find(*carbon::Catalog(), vRefNum, folderType, createFolder, &folder);
    if (foundVRefNum) *foundVRefNum = error ? FSVolumeRefNum(0) : folder.volume;
    if (foundDirID) *foundDirID = error ? 0 : folder.id;
    return error;
}

OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder,
                   FSRef* foundRef) {
    return foundRef ? carbon::FindRef(vRefNum, folderType, createFolder, foundRef)
                    : OSErr(paramErr);
}
