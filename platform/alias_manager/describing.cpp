// Owns what goes into an alias: place, name, number, dates, and the way from another file.
#include "alias_manager/describing.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

constexpr SInt64 kUnixEpoch = 2082844800;  // seconds from 1904 to 1970
constexpr SInt64 kNanoseconds = 1000000000;

void DescribeVolume(const Volume& inVolume, AliasContents* outContents) {
    outContents->volume = inVolume.number;
    outContents->volumeName = inVolume.name;
    outContents->volumeCreated = CreationOfVolume(inVolume);
}

// Below the volume's root; empty for the root itself.
std::string BelowRoot(const Volume& inVolume, const std::string& inPath) {
    const size_t root = inVolume.root == "/" ? 0 : inVolume.root.size();
    return inPath.size() > root ? inPath.substr(root + 1) : "";
}

// The names of the folders above, as file specs have them; the volume's name begins the path.
OSErr DescribePath(Objects& ioObjects, const Object& inTarget, AliasContents* outContents) {
    std::string path = std::string(TextOfPascal(inTarget.spec.name));
    Object object = inTarget;
    while (object.spec.parID != fsRtParID) {
        Folder folder;
        OSErr error =
            ioObjects.AllFolders().FindById(object.spec.vRefNum, object.spec.parID, &folder);
        if (error == noErr) error = ioObjects.FindFolder(folder, &object);
        if (error) return error;
        const std::string name(TextOfPascal(object.spec.name));
        if (outContents->parentName.empty()) outContents->parentName = name;
        path = name + ':' + path;
    }
    outContents->path = inTarget.spec.parID == fsRtParID ? path + ':' : path;
    return noErr;
}

OSErr DescribeFinderInfo(Objects& ioObjects, const Object& inTarget, AliasContents* outContents) {
    FSCatalogInfo info;
    const OSErr error =
        GetCatalogInfo(ioObjects, inTarget, kFSCatInfoCreateDate | kFSCatInfoFinderInfo, &info);
    if (error) return error;
    outContents->created = info.createDate.lowSeconds;
    if (inTarget.status.IsFolder()) return noErr;
    FInfo finder;
    std::memcpy(&finder, info.finderInfo, sizeof finder);
    outContents->type = finder.fdType;
    outContents->creator = finder.fdCreator;
    return noErr;
}

void DescribeWay(const std::string& inFrom, const std::string& inTarget,
                 AliasContents* outContents) {
    const auto from = PartsOfDiskPath(inFrom), target = PartsOfDiskPath(inTarget);
    const auto apart = std::mismatch(from.begin(), from.end(), target.begin(), target.end());
    // Where one holds the other, the way leads through the folder around both.
    const bool isInside = apart.first == from.end() || apart.second == target.end();
    outContents->levelsUp = SInt16(from.end() - apart.first + isInside);
    outContents->levelsDown = SInt16(target.end() - apart.second + isInside);
}

}  // namespace

std::vector<std::string> PartsOfDiskPath(const std::string& inPath) {
    std::vector<std::string> parts;
    for (size_t at = 0; at < inPath.size();) {
        const size_t end = std::min(inPath.find('/', at), inPath.size());
        if (end > at) parts.push_back(inPath.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

UInt32 CreationOfVolume(const Volume& inVolume) {
    ObjectStatus root;
    if (inVolume.isOnNetwork || StatusOfObject(inVolume.root, &root) != noErr) return 0;
    const SInt64 birth = root.identity.birth;
    return birth == 0 ? 0 : UInt32(birth / kNanoseconds + kUnixEpoch);
}

OSErr DescribeForAlias(Objects& ioObjects, const Object* inFrom, const Object& inTarget,
                       AliasContents* outContents) {
    const Volume* found = ioObjects.AllFolders().FindVolume(inTarget.spec.vRefNum);
    if (!found) return nsvErr;
    const Volume volume = *found;
    if (inFrom && inFrom->spec.vRefNum != volume.number) return diffVolErr;
    DescribeVolume(volume, outContents);
    outContents->isFolder = inTarget.status.IsFolder();
    outContents->parent = inTarget.spec.parID;
    outContents->name = std::string(TextOfPascal(inTarget.spec.name));
    outContents->number = NodeIDOf(ioObjects, inTarget);
    outContents->identity = Folders::KeptIdentity(volume, inTarget.status.identity);
    outContents->diskPath = BelowRoot(volume, inTarget.path);
    if (inFrom) DescribeWay(inFrom->path, inTarget.path, outContents);
    if (const OSErr error = DescribePath(ioObjects, inTarget, outContents)) return error;
    return DescribeFinderInfo(ioObjects, inTarget, outContents);
}

OSErr DescribeMinimally(Objects& ioObjects, const FSSpec& inTarget, AliasContents* outContents) {
    Object object;
    const OSErr error = ioObjects.FindBySpec(inTarget, &object);
    if (error != noErr && error != fnfErr) return error;
    if (error == fnfErr && object.path.empty()) return error;
    const Volume* volume = ioObjects.AllFolders().FindVolume(object.spec.vRefNum);
    if (!volume) return nsvErr;
    DescribeVolume(*volume, outContents);
    outContents->isFolder = error == noErr && object.status.IsFolder();
    outContents->parent = object.spec.parID;
    outContents->name = std::string(TextOfPascal(object.spec.name));
    return noErr;
}

}  // namespace carbon
