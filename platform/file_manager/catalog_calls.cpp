// Owns the calls that tell about files and folders by name, by index and by number.
#include <Carbon/MacErrors.h>

#include <cstring>

#include "file_manager/catalog_records.h"
#include "file_manager/located.h"
#include "file_manager/names.h"
#include "file_manager/parameter_block.h"

namespace carbon {

namespace {

constexpr int kMostTries = 8;  // for entries that go while they are asked for

// The entry of that number. One that was listed and is gone is no entry: look again.
OSErr FindListed(Objects& ioObjects, const Folder& inFolder, UInt32 inIndex, bool inFilesOnly,
                 ListedEntry* outEntry, Object* outObject) {
    FolderCache& listings = ioObjects.Listings();
    for (int i = 0; i < kMostTries; ++i) {
        const OSErr error = inFilesOnly ? listings.GetFile(inFolder, inIndex, outEntry)
                                        : listings.GetEntry(inFolder, inIndex, outEntry);
        if (error != noErr) return error;
        const OSErr found = ioObjects.FindInFolder(inFolder, outEntry->diskName, outObject);
        const bool isListedAs = outObject->status.IsFolder() == outEntry->isFolder;
        if (found == noErr && (isListedAs || !inFilesOnly)) return noErr;
        if (found != noErr && found != fnfErr) return found;
        listings.Forget(inFolder);
    }
    return fnfErr;
}

// The name goes out wherever it did not come in.
void TellName(const Object& inObject, StringPtr outName) {
    if (outName) SetPascal(TextOfPascal(inObject.spec.name), kLongestSpecName, outName);
}

OSErr GetByIndex(CInfoPBRec* ioRecord) {
    const HFileInfo& info = ioRecord->hFileInfo;
    const Catalog catalog;
    Folder folder;
    const OSErr error = LocateFolder(*catalog, info.ioVRefNum, info.ioDirID, nullptr, &folder);
    if (error != noErr) return error;
    ListedEntry entry;
    Object object;
    const auto index = UInt32(info.ioFDirIndex);
    const OSErr found = FindListed(*catalog, folder, index, false, &entry, &object);
    if (found != noErr) return found;
    TellName(object, info.ioNamePtr);
    FillRecord(*catalog, object, entry.hasCompanion, ioRecord);
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
    FillRecord(*catalog, located.object, true, ioRecord);
    return noErr;
}

OSErr GetCatalogRecord(CInfoPBRec* ioRecord) {
    const SInt16 index = ioRecord->hFileInfo.ioFDirIndex;
    return index > 0 ? GetByIndex(ioRecord) : GetByName(ioRecord, index < 0);
}

OSErr GetFileByIndex(HFileParam* ioRecord) {
    const Catalog catalog;
    Folder folder;
    const OSErr error =
        LocateFolder(*catalog, ioRecord->ioVRefNum, ioRecord->ioDirID, nullptr, &folder);
    if (error != noErr) return error;
    ListedEntry entry;
    Object object;
    const auto index = UInt32(ioRecord->ioFDirIndex);
    const OSErr found = FindListed(*catalog, folder, index, true, &entry, &object);
    if (found != noErr) return found;
    TellName(object, ioRecord->ioNamePtr);
    FillRecord(*catalog, object, entry.hasCompanion, ioRecord);
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
    FillRecord(*catalog, located.object, true, ioRecord);
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
