// Owns file IDs: numbers by which a file is found after it was renamed or moved.
#include <Carbon/MacErrors.h>

#include "file_manager/catalog/located.h"
#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/listings/folder_listing.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

bool HasIDs(const Volume& inVolume) {
    return !inVolume.tablePath.empty() && !Lacks(inVolume, kPlatformMountNoFileIDs);
}

OSErr CreateID(FIDParam* ioRecord) {
    const Catalog catalog;
    Located located;
    const OSErr error =
        Locate(*catalog, ioRecord->ioVRefNum, ioRecord->ioSrcDirID, ioRecord->ioNamePtr, &located);
    if (error != noErr) return error;
    const Object& object = located.object;
    if (!HasIDs(located.volume)) return paramErr;
    if (object.status.IsFolder()) return notAFileErr;
    IdTable& table = catalog->AllFolders().TableOf(located.volume);
    IdRecord record{0, object.spec.parID, object.diskName, false,
                    Folders::KeptIdentity(located.volume, object.status.identity)};
    const auto known = table.FindEntry(record.parent, record.name);
    if (known && !known->identity.IsSameAs(record.identity)) {
        record.id = known->id;
        table.Correct(record);
    }
    ioRecord->ioFileID = known ? known->id : table.Allocate(record);
    return known ? OSErr(fidExists) : OSErr(noErr);
}

// The record of a file's number on the volume that the block names.
OSErr FindRecord(Objects& ioObjects, const FIDParam& inRecord, Volume* outVolume,
                 IdRecord* outRecord) {
    const Volume* volume = VolumeByName(ioObjects, inRecord.ioNamePtr, inRecord.ioVRefNum);
    if (!volume) return nsvErr;
    if (!HasIDs(*volume)) return paramErr;
    *outVolume = *volume;
    if (inRecord.ioFileID == fsRtDirID) return notAFileErr;
    const auto record = ioObjects.AllFolders().TableOf(*outVolume).FindById(inRecord.ioFileID);
    if (!record) return fidNotFound;
    *outRecord = *record;
    return record->isFolder ? OSErr(notAFileErr) : OSErr(noErr);
}

// Somewhere else than in the folder where it was seen last.
OSErr FindMoved(Objects& ioObjects, const Volume& inVolume, IdRecord inRecord, Object* outObject) {
    Folders& folders = ioObjects.AllFolders();
    for (const auto& place : folders.LikelyFolders(inVolume)) {
        ObjectStatus status;
        const auto name = NameOfInode(place.path, inRecord.identity.inode, [&](const auto& inPath) {
            return StatusOfObject(inPath, &status) == noErr && !status.IsFolder() &&
                   Folders::KeptIdentity(inVolume, status.identity).IsSameAs(inRecord.identity);
        });
        if (!name) continue;
        inRecord.parent = place.id;
        inRecord.name = *name;
        folders.TableOf(inVolume).Correct(inRecord);
        return ioObjects.FindInFolder(place, *name, outObject);
    }
    return fidNotFound;
}

OSErr FindFile(Objects& ioObjects, const Volume& inVolume, const IdRecord& inRecord,
               Object* outObject) {
    Folders& folders = ioObjects.AllFolders();
    Folder parent;
    Entry entry;
    if (folders.FindById(inVolume.number, inRecord.parent, &parent) == noErr &&
        FollowRecordIn(folders, inVolume, parent, inRecord, &entry) == noErr) {
        return ioObjects.FindInFolder(parent, entry.diskName, outObject);
    }
    return FindMoved(ioObjects, inVolume, inRecord, outObject);
}

OSErr ResolveID(FIDParam* ioRecord) {
    const Catalog catalog;
    Volume volume;
    IdRecord record;
    Object object;
    OSErr error = FindRecord(*catalog, *ioRecord, &volume, &record);
    if (error == noErr) error = FindFile(*catalog, volume, record, &object);
    if (error != noErr) return error;
    ioRecord->ioSrcDirID = object.spec.parID;
    if (ioRecord->ioNamePtr)
        SetPascal(TextOfPascal(object.spec.name), kLongestSpecName, ioRecord->ioNamePtr);
    return noErr;
}

OSErr DeleteID(const FIDParam& inRecord) {
    const Catalog catalog;
    Volume volume;
    IdRecord record;
    const OSErr error = FindRecord(*catalog, inRecord, &volume, &record);
    if (error == noErr) catalog->AllFolders().TableOf(volume).Remove(record.id);
    return error;
}

}  // namespace

}  // namespace carbon

OSErr PBCreateFileIDRefSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fidParam,
                           [](FIDParam& ioRecord) { return carbon::CreateID(&ioRecord); });
}

OSErr PBResolveFileIDRefSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fidParam,
                           [](FIDParam& ioRecord) { return carbon::ResolveID(&ioRecord); });
}

OSErr PBDeleteFileIDRefSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fidParam,
                           [](FIDParam& inRecord) { return carbon::DeleteID(inRecord); });
}
