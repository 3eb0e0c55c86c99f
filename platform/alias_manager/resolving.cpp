// Owns the places where an alias looks for its object, and their order.
#include "alias_manager/resolving.h"

#include <Carbon/MacErrors.h>

#include <algorithm>

#include "alias_manager/describing.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/pathname.h"
#include "file_manager/catalog/reference.h"
#include "file_manager/listings/folder_listing.h"

namespace carbon {

namespace {

// One search: on one volume, for one alias.
struct Search {
    Objects& objects;
    const AliasContents& contents;
    const Volume volume;
    OSErr error;  // what is told when nothing is found
    Object missing;

    OSErr ByPath(Object* outObject);
    OSErr ByNumber(Object* outObject);
    OSErr ByParent(Object* outObject);
    OSErr ByWay(const Object& inFrom, Object* outObject);
    bool IsIt(const Object& inObject) const;
    OSErr Take(OSErr inError, const Object& inObject);
};

// A part such as ".." would lead off the volume.
bool IsPlainPath(const std::string& inPath) {
    const auto parts = PartsOfDiskPath(inPath);
    return inPath.find('\0') == std::string::npos &&
           std::none_of(parts.begin(), parts.end(),
                        [](const auto& inPart) { return inPart == "." || inPart == ".."; });
}

bool Search::IsIt(const Object& inObject) const {
    return inObject.spec.vRefNum == volume.number &&
           (contents.IsMinimal() || inObject.status.IsFolder() == contents.isFolder);
}

// What was found counts when it is of the alias's kind and volume. The first place where only the
// object itself is missing is remembered.
OSErr Search::Take(OSErr inError, const Object& inObject) {
    if (inError == noErr && IsIt(inObject)) return noErr;
    if (inError == noErr) inError = fnfErr;
    const bool isPlace = inObject.spec.vRefNum == volume.number && !inObject.path.empty();
    if (inError == fnfErr && isPlace && error != fnfErr) {
        error = fnfErr;
        missing = inObject;
    }
    return inError;
}

OSErr Search::ByPath(Object* outObject) {
    if (contents.diskPath.empty() && contents.path.empty()) return fnfErr;
    if (!contents.diskPath.empty()) {
        if (!IsPlainPath(contents.diskPath)) return bdNamErr;
        const auto path = PathInFolder(volume.root, contents.diskPath);
        return Take(objects.FindByPath(path, outObject), *outObject);
    }
    // The name of the volume is the first part, and may be another by now.
    const auto colon = contents.path.find(':');
    if (colon == std::string::npos) return bdNamErr;
    const std::string path = contents.path.substr(colon);
    Str255 name;
    if (path.size() > sizeof name - 1) return bdNamErr;
    SetPascal(path, sizeof name - 1, name);
    return Take(FindByPathname(objects, volume.number, fsRtDirID, name, outObject), *outObject);
}

OSErr Search::ByNumber(Object* outObject) {
    if (contents.volume != volume.number || contents.identity.inode == 0) return fnfErr;
    Reference reference;
    reference.volume = volume.number;
    reference.parent = contents.parent;
    reference.isFolder = contents.isFolder;
    reference.identity = contents.identity;
    if (reference.identity.device == 0) reference.identity.device = volume.device;
    const OSErr found = objects.FindByRef(RefFromReference(reference), outObject);
    return found == noErr && !IsIt(*outObject) ? OSErr(fnfErr) : found;
}

OSErr Search::ByParent(Object* outObject) {
    if (contents.parent == 0 || contents.name.empty()) return fnfErr;
    FSSpec spec{};
    spec.vRefNum = volume.number;
    spec.parID = contents.parent;
    if (spec.parID == fsRtParID) {
        SetPascal(volume.name, kLongestSpecName, spec.name);
    } else {
        SetPascal(contents.name, kLongestSpecName, spec.name);
    }
    return Take(objects.FindBySpec(spec, outObject), *outObject);
}

OSErr Search::ByWay(const Object& inFrom, Object* outObject) {
    const auto parts = PartsOfDiskPath(contents.diskPath);
    const SInt32 up = contents.levelsUp, down = contents.levelsDown;
    if (up < 1 || down < 1 || size_t(down) > parts.size()) return fnfErr;
    if (!IsPlainPath(contents.diskPath)) return bdNamErr;
    std::string path = inFrom.path;
    for (SInt32 i = 0; i < up && path != "/"; ++i) path = ParentOfPath(path);
    for (auto part = parts.end() - down; part != parts.end(); ++part) {
        path = PathInFolder(path, *part);
    }
    const OSErr found = objects.FindByPath(path, outObject);
    return found == noErr && !IsIt(*outObject) ? OSErr(fnfErr) : found;
}

int RankOf(const Volume& inVolume, const AliasContents& inContents) {
    const bool isNamedSo = Folded(inVolume.name) == Folded(inContents.volumeName);
    const bool isAsOld =
        inContents.volumeCreated != 0 && CreationOfVolume(inVolume) == inContents.volumeCreated;
    if (inVolume.number == inContents.volume && (isNamedSo || isAsOld)) return 4;
    if (isNamedSo && isAsOld) return 3;
    if (isAsOld) return 2;
    return isNamedSo ? 1 : 0;
}

// The volume of the alias; others too when it may be any of several.
std::vector<Volume> VolumesOf(Objects& ioObjects, const AliasContents& inContents, bool inAll) {
    VolumeRegistry& registry = ioObjects.AllFolders().Registry();
    registry.Refresh();
    std::vector<Volume> volumes = registry.Volumes();
    std::stable_sort(volumes.begin(), volumes.end(), [&](const auto& inOne, const auto& inOther) {
        return RankOf(inOne, inContents) > RankOf(inOther, inContents);
    });
    if (inAll) return volumes;
    if (!volumes.empty() && RankOf(volumes.front(), inContents) == 0) return {};
    volumes.resize(std::min<size_t>(volumes.size(), 1));
    return volumes;
}

void Add(const Object& inObject, AliasMatches* ioMatches) {
    const bool isKnown =
        std::any_of(ioMatches->objects.begin(), ioMatches->objects.end(),
                    [&](const auto& inOther) { return inOther.path == inObject.path; });
    if (!isKnown) ioMatches->objects.push_back(inObject);
}

// Entries of the folder where the object was that have its dates, type and creator.
void AddLookalikes(Search& ioSearch, AliasMatches* ioMatches) {
    Folder folder;
    std::vector<std::string> names;
    Objects& objects = ioSearch.objects;
    const AliasContents& wanted = ioSearch.contents;
    if (objects.AllFolders().FindById(ioSearch.volume.number, wanted.parent, &folder) != noErr ||
        ReadFolder(folder.path, &names) != noErr) {
        return;
    }
    std::sort(names.begin(), names.end());
    for (const auto& name : names) {
        Object object;
        AliasContents contents;
        if (objects.FindInFolder(folder, name, &object) == noErr &&
            object.status.IsFolder() == wanted.isFolder &&
            DescribeForAlias(objects, nullptr, object, &contents) == noErr &&
            contents.created == wanted.created && contents.type == wanted.type &&
            contents.creator == wanted.creator) {
            Add(object, ioMatches);
        }
    }
}

void SearchOneVolume(Search& ioSearch, const Object* inFrom, UInt32 inRules, size_t inMost,
                     AliasMatches* ioMatches) {
    const bool isRelative = inFrom && inFrom->spec.vRefNum == ioSearch.volume.number;
    const auto tryOne = [&](bool inIsAsked, auto inFind) {
        Object object;
        if (!inIsAsked || ioMatches->objects.size() >= inMost) return;
        if (inFind(&object) == noErr) Add(object, ioMatches);
    };
    const auto byWay = [&](Object* outObject) { return ioSearch.ByWay(*inFrom, outObject); };
    const auto byNumber = [&](Object* outObject) { return ioSearch.ByNumber(outObject); };
    const bool isFast = inRules & (kARMSearch | kARMSearchMore);
    tryOne(isRelative && (inRules & kARMSearchRelFirst), byWay);
    tryOne(isFast && (inRules & kARMTryFileIDFirst), byNumber);
    // Kept: what was put in the recorded place wins over the object that was moved away.
    tryOne(isFast, [&](Object* outObject) { return ioSearch.ByPath(outObject); });
    tryOne(isFast, byNumber);
    tryOne(isFast, [&](Object* outObject) { return ioSearch.ByParent(outObject); });
    tryOne(isFast && isRelative, byWay);
    if (inRules & kARMSearchMore) AddLookalikes(ioSearch, ioMatches);
}

}  // namespace

OSErr FindMatches(Objects& ioObjects, const AliasContents& inContents, const Object* inFrom,
                  UInt32 inRules, size_t inMost, AliasMatches* outMatches) {
    const auto volumes = VolumesOf(ioObjects, inContents, inRules & kARMMultVols);
    OSErr result = nsvErr;
    for (const auto& volume : volumes) {
        Search search{ioObjects, inContents, volume, dirNFErr, {}};
        SearchOneVolume(search, inFrom, inRules, inMost, outMatches);
        outMatches->volumes.push_back(volume.number);
        if (result == fnfErr) continue;
        result = search.error;
        outMatches->missing = search.missing;
    }
    auto& objects = outMatches->objects;
    if (objects.size() > inMost) objects.resize(inMost);
    return objects.empty() ? result : OSErr(noErr);
}

}  // namespace carbon
