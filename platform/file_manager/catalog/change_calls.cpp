// Owns the calls that make, delete, rename and move files and folders.
#include <Carbon/MacErrors.h>

#include "file_manager/catalog/names.h"
#include "file_manager/catalog/object_changes.h"
#include "file_manager/catalog/pathname.h"
#include "file_manager/listings/walked_deletion.h"
#include "file_manager/parameter_block.h"

namespace carbon {

namespace {

// Where an object of that name would come to be. dupFNErr when there is one.
OSErr LocatePlace(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                  ConstStr255Param inName, Located* outPlace) {
    if (!inName || inName[0] == 0) return bdNamErr;
    const OSErr error = Locate(ioObjects, inVolume, inDirectory, inName, outPlace);
    if (error == noErr) return dupFNErr;
    return error == fnfErr ? OSErr(noErr) : error;
}

OSErr Create(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName, OSType inCreator,
             OSType inType, ScriptCode inScript) {
    const Catalog catalog;
    Located place;
    const OSErr error = LocatePlace(*catalog, inVolume, inDirectory, inName, &place);
    return error == noErr ? CreateFile(place, inCreator, inType, inScript) : error;
}

OSErr MakeFolder(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName,
                 SInt32* outId) {
    const Catalog catalog;
    Located place;
    SInt32 id = 0;
    OSErr error = LocatePlace(*catalog, inVolume, inDirectory, inName, &place);
    if (error == noErr) error = CreateFolder(*catalog, place, &id);
    if (error == noErr && outId) *outId = id;
    return error;
}

OSErr Delete(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName) {
    const Catalog catalog;
    OSErr error = noErr;
    const auto name = inName ? TextOfPascal(inName) : std::string_view();
    if (DeleteWalked(*catalog, inVolume, inDirectory, name, &error)) return error;
    Located located;
    error = Locate(*catalog, inVolume, inDirectory, inName, &located);
    return error == noErr ? DeleteObject(*catalog, located) : error;
}

// Volumes keep their names, but for mounted folders.
OSErr RenameVolume(Objects& ioObjects, const Volume& inVolume, std::string_view inName) {
    if (inName.ends_with(':')) inName.remove_suffix(1);
    const bool isGood = !inName.empty() && inName.size() <= kLongestVolumeName &&
                        inName.find(':') == std::string_view::npos &&
                        inName.find('\0') == std::string_view::npos;
    if (!isGood) return bdNamErr;
    if (const OSErr error = CheckWritable(inVolume)) return error;
    return ioObjects.AllFolders().Registry().RenameFolder(inVolume.number, std::string(inName));
}

OSErr Rename(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inOldName,
             ConstStr255Param inNewName) {
    if (!inNewName) return paramErr;
    const Catalog catalog;
    Located located;
    const OSErr error = Locate(*catalog, inVolume, inDirectory, inOldName, &located);
    if (error != noErr) return error;
    const auto name = TextOfPascal(inNewName);
    if (IsRoot(located.object)) return RenameVolume(*catalog, located.volume, name);
    Folder parent;
    const OSErr found = FindParent(*catalog, located.object, &parent);
    return found == noErr ? MoveObject(*catalog, located, parent, name) : found;
}

// The folder that a move goes to.
OSErr LocateDestination(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                        ConstStr255Param inName, Folder* outFolder) {
    Located located;
    const OSErr error = Locate(ioObjects, inVolume, inDirectory, inName, &located);
    if (error != noErr) return error;
    if (!located.object.status.IsFolder()) return badMovErr;
    return ioObjects.AllFolders().FindByPath(located.object.path, outFolder);
}

struct Destination {
    FSVolumeRefNum volume;
    SInt32 directory;
    ConstStr255Param path;
    ConstStr255Param newName = nullptr;  // null for the one it has
};

OSErr Move(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName,
           const Destination& inDestination) {
    const Catalog catalog;
    Located located;
    OSErr error = Locate(*catalog, inVolume, inDirectory, inName, &located);
    if (error != noErr) return error;
    if (inDestination.newName && Lacks(located.volume, kPlatformMountNoMoveRename)) return paramErr;
    Folder folder;
    const FSVolumeRefNum volume =
        inDestination.volume != 0 ? inDestination.volume : located.volume.number;
    error =
        LocateDestination(*catalog, volume, inDestination.directory, inDestination.path, &folder);
    if (error != noErr) return error;
    const auto* name = inDestination.newName ? inDestination.newName : located.object.spec.name;
    return MoveObject(*catalog, located, folder, TextOfPascal(name));
}

// Both ends are on one volume, so the record's second number is not read.
OSErr MoveAndRename(const CopyParam& inRecord) {
    FSSpec source;
    const OSErr error =
        FSMakeFSSpec(inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr, &source);
    if (error != noErr) return error;
    const bool isRenamed = inRecord.ioCopyName && inRecord.ioCopyName[0] > 0;
    return Move(source.vRefNum, source.parID, source.name,
                {0, inRecord.ioNewDirID, inRecord.ioNewName,
                 isRenamed ? ConstStr255Param(inRecord.ioCopyName) : source.name});
}

OSErr MoveSpec(const FSSpec& inSource, const FSSpec& inDestination) {
    if (inSource.vRefNum != inDestination.vRefNum) return diffVolErr;
    return Move(inSource.vRefNum, inSource.parID, inSource.name,
                {inDestination.vRefNum, inDestination.parID, inDestination.name});
}

}  // namespace

}  // namespace carbon

OSErr HCreate(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, OSType creator,
              OSType fileType) {
    return carbon::Create(vRefNum, dirID, fileName, creator, fileType, 0);
}

OSErr FSpCreate(const FSSpec* spec, OSType creator, OSType fileType, ScriptCode scriptTag) {
    if (!spec) return paramErr;
    return carbon::Create(spec->vRefNum, spec->parID, spec->name, creator, fileType, scriptTag);
}

OSErr PBHCreateSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam, [](HFileParam& inRecord) {
        return carbon::Create(inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr, 0, 0, 0);
    });
}

OSErr DirCreate(FSVolumeRefNum vRefNum, SInt32 parentDirID, ConstStr255Param directoryName,
                SInt32* createdDirID) {
    return carbon::MakeFolder(vRefNum, parentDirID, directoryName, createdDirID);
}

OSErr FSpDirCreate(const FSSpec* spec, ScriptCode, SInt32* createdDirID) {
    if (!spec) return paramErr;
    return carbon::MakeFolder(spec->vRefNum, spec->parID, spec->name, createdDirID);
}

OSErr PBDirCreateSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam, [](HFileParam& ioRecord) {
        return carbon::MakeFolder(ioRecord.ioVRefNum, ioRecord.ioDirID, ioRecord.ioNamePtr,
                                  &ioRecord.ioDirID);
    });
}

OSErr HDelete(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName) {
    return carbon::Delete(vRefNum, dirID, fileName);
}

OSErr FSpDelete(const FSSpec* spec) {
    return spec ? carbon::Delete(spec->vRefNum, spec->parID, spec->name) : OSErr(paramErr);
}

OSErr PBHDeleteSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam, [](HFileParam& inRecord) {
        return carbon::Delete(inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr);
    });
}

OSErr HRename(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param oldName,
              ConstStr255Param newName) {
    return carbon::Rename(vRefNum, dirID, oldName, newName);
}

OSErr FSpRename(const FSSpec* spec, ConstStr255Param newName) {
    if (!spec) return paramErr;
    return carbon::Rename(spec->vRefNum, spec->parID, spec->name, newName);
}

OSErr PBHRenameSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    const SInt32 directory = paramBlock->fileParam.ioDirID;
    return carbon::Perform(&paramBlock->ioParam, [&](HIOParam& inRecord) {
        return carbon::Rename(inRecord.ioVRefNum, directory, inRecord.ioNamePtr,
                              reinterpret_cast<ConstStr255Param>(inRecord.ioMisc));
    });
}

OSErr CatMove(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param oldName, SInt32 newDirID,
              ConstStr255Param newName) {
    return carbon::Move(vRefNum, dirID, oldName, {0, newDirID, newName});
}

OSErr FSpCatMove(const FSSpec* source, const FSSpec* dest) {
    return source && dest ? carbon::MoveSpec(*source, *dest) : OSErr(paramErr);
}

OSErr PBCatMoveSync(CMovePBPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(paramBlock, [](CMovePBRec& inRecord) {
        return CatMove(inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr,
                       inRecord.ioNewDirID, inRecord.ioNewName);
    });
}

OSErr PBHMoveRenameSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->copyParam,
                           [](CopyParam& inRecord) { return carbon::MoveAndRename(inRecord); });
}
