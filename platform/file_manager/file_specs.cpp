// Owns the calls on file specs and on the default directory.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <cstring>

#include "file_manager/finder_info.h"
#include "file_manager/names.h"
#include "file_manager/pathname.h"

static_assert(sizeof(FSSpec) == 70, "specs travel in events and files");
static_assert(sizeof(FSRef) == 80, "references travel in events");

namespace carbon {

namespace {

OSErr MakeSpec(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName,
               FSSpec* outSpec) {
    const Catalog catalog;
    Object object;
    const OSErr error = FindByPathname(*catalog, inVolume, inDirectory, inName, &object);
    *outSpec = error == noErr || error == fnfErr ? object.spec : FSSpec{};
    return error;
}

OSErr MakeRef(const FSSpec& inSpec, FSRef* outRef) {
    const Catalog catalog;
    Object object;
    const OSErr error = catalog->FindBySpec(inSpec, &object);
    if (error == noErr) *outRef = catalog->RefTo(object);
    return error;
}

OSErr GetFinderInfo(const FSSpec& inSpec, FInfo* outInfo) {
    const Catalog catalog;
    Object object;
    if (const OSErr error = catalog->FindBySpec(inSpec, &object)) return error;
    if (object.status.IsFolder()) return fnfErr;
    const Metadata metadata = MetadataOf(object);
    std::memcpy(outInfo, metadata.finderInfo, sizeof *outInfo);
    return noErr;
}

OSErr GetDefault(StringPtr outName, FSVolumeRefNum* outVolume, SInt32* outDirectory) {
    const Catalog catalog;
    Objects& objects = *catalog;
    const DefaultDirectory current = CurrentDirectory(objects);
    const Volume* volume = objects.AllFolders().FindVolume(current.volume);
    if (!volume) return nsvErr;
    if (outName) SetPascal(volume->name, kLongestVolumeName, outName);
    if (outVolume) *outVolume = current.volume;
    if (outDirectory) *outDirectory = current.id;
    return noErr;
}

OSErr SetDefault(ConstStr63Param inName, FSVolumeRefNum inVolume, SInt32 inDirectory) {
    const Catalog catalog;
    Objects& objects = *catalog;
    const Volume* named = inName ? VolumeInPathname(objects, TextOfPascal(inName)) : nullptr;
    if (inName && inName[0] > 0 && !named) return nsvErr;
    if (inVolume == 0 && !named) inVolume = CurrentDirectory(objects).volume;
    if (named) inVolume = named->number;
    Folder folder;
    const SInt32 directory = inDirectory == 0 ? SInt32(fsRtDirID) : inDirectory;
    if (const OSErr error = objects.AllFolders().FindById(inVolume, directory, &folder))
        return error;
    SetCurrentDirectory({folder.volume, folder.id});
    return noErr;
}

}  // namespace

}  // namespace carbon

OSErr FSMakeFSSpec(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, FSSpec* spec) {
    return spec ? carbon::MakeSpec(vRefNum, dirID, fileName, spec) : OSErr(paramErr);
}

OSErr FSpMakeFSRef(const FSSpec* source, FSRef* newRef) {
    return source && newRef ? carbon::MakeRef(*source, newRef) : OSErr(paramErr);
}

OSErr FSpGetFInfo(const FSSpec* spec, FInfo* fndrInfo) {
    return spec && fndrInfo ? carbon::GetFinderInfo(*spec, fndrInfo) : OSErr(paramErr);
}

OSErr HGetVol(StringPtr volName, FSVolumeRefNum* vRefNum, SInt32* dirID) {
    return carbon::GetDefault(volName, vRefNum, dirID);
}

OSErr HSetVol(ConstStr63Param volName, FSVolumeRefNum vRefNum, SInt32 dirID) {
    return carbon::SetDefault(volName, vRefNum, dirID);
}
