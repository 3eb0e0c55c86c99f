// Owns the calls that tell about files and folders by name, by index and by number.
#include <Carbon/MacErrors.h>

#include <cstring>

#include "file_manager/catalog/catalog_records.h"
#include "file_manager/catalog/finder_info.h"
#include "file_manager/catalog/located.h"
#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/parameter_block.h"

namespace carbon {

namespace {

constexpr int kMostTries = 8;  // for entries that go while they are asked for

// What a listing led to.
struct Listed {
    Object object;
    Metadata metadata;
};

OSErr GetListing(Objects& ioObjects, const Folder& inFolder, UInt32 inIndex, bool inFilesOnly,
                 ListedEntry* outEntry) {
    FolderCache& listings = ioObjects.Listings();
    return inFilesOnly ? listings.GetFile(inFolder, inIndex, outEntry)
                       : listings.GetEntry(inFolder, inIndex, outEntry);
}

// A file in the folder being walked: all that is to be told of it is in its status and its
// attributes, and no path is needed, which could lead elsewhere by now. fnfErr for whatever else
// there is.
OSErr FindWalked(Objects& ioObjects, const Folder& inFolder, UInt32 inIndex, bool inFilesOnly,
                 Listed* outListed) {
    ListedEntry listed;
    Entry entry;
    FolderWalk& walk = ioObjects.Walk();
    if (GetListing(ioObjects, inFolder, inIndex, inFilesOnly, &listed) != noErr) return fnfErr;
    if (listed.isFolder || listed.hasCompanion) return fnfErr;
    if (walk.StatusOf(listed.diskName, &entry.status) != noErr) return fnfErr;
    if (entry.status.IsFolder()) return fnfErr;
    if (!walk.ReadAttributes(listed.diskName, &outListed->metadata)) return fnfErr;
    entry.diskName = std::move(listed.diskName);
    return ioObjects.TakeEntry(inFolder, entry, &outListed->object);
}

// The entry of that number. One that was listed and is gone is no entry: look again.
OSErr FindListed(Objects& ioObjects, const Folder& inFolder, UInt32 inIndex, bool inFilesOnly,
                 Listed* outListed) {
    for (int i = 0; i < kMostTries; ++i) {
        ListedEntry listed;
        const OSErr error = GetListing(ioObjects, inFolder, inIndex, inFilesOnly, &listed);
        if (error != noErr) return error;
        const OSErr found = ioObjects.FindInFolder(inFolder, listed.diskName, &outListed->object);
        const bool isAsListed = outListed->object.status.IsFolder() == listed.isFolder;
        if (found == noErr && (isAsListed || !inFilesOnly)) {
            // A root has its companion inside.
            const bool hasNone = !listed.hasCompanion && !IsRoot(outListed->object);
            const Beside beside = hasNone ? Beside::kNoCompanion : Beside::kUnknown;
            outListed->metadata = MetadataOf(outListed->object, beside);
            return noErr;
        }
        if (found != noErr && found != fnfErr) return found;
        ioObjects.Listings().Forget(inFolder);
    }
    return fnfErr;
}

// A walk begins with a look at the folder, and ends with one.
OSErr FindByIndex(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory, UInt32 inIndex,
                  bool inFilesOnly, Listed* outListed) {
    VolumeRegistry& registry = ioObjects.AllFolders().Registry();
    registry.RefreshFolders();
    const Folder* walked = ioObjects.Walk().Find(inVolume, inDirectory, registry.Edition());
    if (walked && FindWalked(ioObjects, *walked, inIndex, inFilesOnly, outListed) == noErr)
        return noErr;
    *outListed = {};
    Folder folder;
    OSErr error = LocateFolder(ioObjects, inVolume, inDirectory, nullptr, &folder);
    if (error == noErr) error = FindListed(ioObjects, folder, inIndex, inFilesOnly, outListed);
    if (error == noErr) {
        ioObjects.Walk().Start(folder, registry.Edition());
    } else {
        ioObjects.Walk().End();
    }
    return error;
}

// The name goes out wherever it did not come in.
void TellName(const Object& inObject, StringPtr outName) {
    if (outName) SetPascal(TextOfPascal(inObject.spec.name), kLongestSpecName, outName);
}

OSErr GetByIndex(CInfoPBRec* ioRecord) {
    const HFileInfo& info = ioRecord->hFileInfo;
    const Catalog catalog;
    Listed listed;
    const OSErr error = FindByIndex(*catalog, info.ioVRefNum, info.ioDirID,
                                    UInt32(info.ioFDirIndex), false, &listed);
    if (error != noErr) return error;
    TellName(listed.object, info.ioNamePtr);
    FillRecord(*catalog, listed.object, listed.metadata, ioRecord);
    return noErr;
}

OSErr GetByName(CInfoPBRec* ioRecord, bool inIsItself) {
    const HFileInfo& info = ioRecord->hFileInfo;
    const ConstStr255Param name = inIsItself ? nullptr : info.ioNamePtr;
    const Catalog catalog;
    Located located;
    const OSErr error = Locate(*catalog, info.ioVRefNum, info.ioDirID, name, &located);
    if (error != noErr) return inIsItself && error == fnfErr ? OSErr(dirNFErr) : error;
    if (inIsItself) TellName(located.object, info.ioNamePtr);
    FillRecord(*catalog, located.object, MetadataOf(located.object), ioRecord);
    return noErr;
}

OSErr GetCatalogRecord(CInfoPBRec* ioRecord) {
    const SInt16 index = ioRecord->hFileInfo.ioFDirIndex;
    return index > 0 ? GetByIndex(ioRecord) : GetByName(ioRecord, index < 0);
}

OSErr GetFileByIndex(HFileParam* ioRecord) {
    const Catalog catalog;
    Listed listed;
    const OSErr error = FindByIndex(*catalog, ioRecord->ioVRefNum, ioRecord->ioDirID,
                                    UInt32(ioRecord->ioFDirIndex), true, &listed);
    if (error != noErr) return error;
    TellName(listed.object, ioRecord->ioNamePtr);
    FillRecord(*catalog, listed.object, listed.metadata, ioRecord);
    return noErr;
}

OSErr GetFile(HFileParam* ioRecord) {
    if (ioRecord->ioFDirIndex > 0) return GetFileByIndex(ioRecord);
    const Catalog catalog;
    Located located;
    const OSErr error =
        Locate(*catalog, ioRecord->ioVRefNum, ioRecord->ioDirID, ioRecord->ioNamePtr, &located);
    if (error != noErr) return error;
    if (located.object.status.IsFolder()) return fnfErr;
    FillRecord(*catalog, located.object, MetadataOf(located.object), ioRecord);
    return noErr;
}

OSErr MakeSpec(HIOParam* ioRecord, SInt32 inDirectory) {
    if (!ioRecord->ioMisc) return paramErr;
    FSSpec spec;
    const OSErr error = FSMakeFSSpec(ioRecord->ioVRefNum, inDirectory, ioRecord->ioNamePtr, &spec);
    std::memcpy(ioRecord->ioMisc, &spec, sizeof spec);
    return error;
}

}  // namespace

}  // namespace carbon

OSErr PBMakeFSSpecSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    const SInt32 directory = paramBlock->fileParam.ioDirID;
    return carbon::Perform(&paramBlock->ioParam, [&](HIOParam& ioRecord) {
        return carbon::MakeSpec(&ioRecord, directory);
    });
}

OSErr PBGetCatInfoSync(CInfoPBPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->hFileInfo,
                           [&](HFileInfo&) { return carbon::GetCatalogRecord(paramBlock); });
}

OSErr PBGetXCatInfoSync(XCInfoPBPtr paramBlock) {
    if (!paramBlock) return paramErr;
    // Linux: a file has neither a short name nor a ProDOS type.
    return carbon::Perform(paramBlock, [](XCInfoPBRec&) { return OSErr(paramErr); });
}

OSErr PBHGetFInfoSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam,
                           [](HFileParam& ioRecord) { return carbon::GetFile(&ioRecord); });
}
