// Owns the calls on file specs and on the default directory.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include "file_manager/catalog/names.h"
#include "file_manager/catalog/pathname.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volumes/volume_selection.h"

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
    const bool isNamed = inName && inName[0] > 0;
    const Volume* named = isNamed ? VolumeInPathname(*catalog, TextOfPascal(inName)) : nullptr;
    if (isNamed && !named) return nsvErr;
    const Volume* volume = named ? named : VolumeByNumber(*catalog, inVolume);
    if (!volume) return nsvErr;
    Folder folder;
    const SInt32 directory = inDirectory == 0 ? SInt32(fsRtDirID) : inDirectory;
    const OSErr error = catalog->AllFolders().FindById(volume->number, directory, &folder);
    if (error == noErr) SetCurrentDirectory({folder.volume, folder.id});
    return error;
}

OSErr GetDefault(WDPBRec* outRecord) {
    FSVolumeRefNum volume = 0;
    const OSErr error = GetDefault(outRecord->ioNamePtr, &volume, &outRecord->ioWDDirID);
    if (error != noErr) return error;
    outRecord->ioVRefNum = outRecord->ioWDVRefNum = volume;
    outRecord->ioWDProcID = 0;
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

OSErr HGetVol(StringPtr volName, FSVolumeRefNum* vRefNum, SInt32* dirID) {
    return carbon::GetDefault(volName, vRefNum, dirID);
}

OSErr HSetVol(ConstStr63Param volName, FSVolumeRefNum vRefNum, SInt32 dirID) {
    return carbon::SetDefault(volName, vRefNum, dirID);
}

OSErr PBHGetVolSync(WDPBPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(paramBlock,
                           [](WDPBRec& ioRecord) { return carbon::GetDefault(&ioRecord); });
}

OSErr PBHSetVolSync(WDPBPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(paramBlock, [](WDPBRec& inRecord) {
        return carbon::SetDefault(inRecord.ioNamePtr, inRecord.ioVRefNum, inRecord.ioWDDirID);
    });
}
