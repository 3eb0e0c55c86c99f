// Owns making files with an empty resource map.
#include <Carbon/MacErrors.h>
#include <Carbon/Script.h>
#include <unicode/unistr.h>

#include <algorithm>

#include "file_manager/catalog/catalog.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/object_changes.h"
#include "file_manager/metadata/metadata.h"
#include "resource_manager/fork_names.h"
#include "resource_manager/internal.h"

namespace carbon {

namespace {

// dupFNErr for a folder, and for a fork that holds something already.
OSErr CheckEmpty(const FSSpec& inSpec, ForkKind inKind) {
    FSRef ref;
    FSCatalogInfo info;
    OSErr error = FSpMakeFSRef(&inSpec, &ref);
    if (error == noErr)
        error =
            FSGetCatalogInfo(&ref, kFSCatInfoNodeFlags | kFSCatInfoDataSizes | kFSCatInfoRsrcSizes,
                             &info, nullptr, nullptr, nullptr);
    if (error != noErr) return error;
    const bool isFolder = info.nodeFlags & kFSNodeIsDirectoryMask;
    const UInt64 size = inKind == ForkKind::kData ? info.dataLogicalSize : info.rsrcLogicalSize;
    return isFolder || size > 0 ? OSErr(dupFNErr) : OSErr(noErr);
}

// The fork is opened for that, so that nobody writes to it meanwhile, and locks are seen.
OSErr WriteEmptyMap(const FSSpec& inSpec, ForkKind inKind) {
    if (const OSErr error = CheckEmpty(inSpec, inKind)) return error;
    std::vector<UInt8> bytes;
    std::unique_ptr<ForkCarrier> fork;
    OSErr error = BuildFork(StoredFork{}, &bytes);
    if (error == noErr) error = ForkCarrier::Open(inSpec, inKind, fsRdWrPerm, &fork);
    return error ? error : fork->Replace(bytes);
}

OSErr CreateBySpec(const FSSpec& inSpec, OSType inCreator, OSType inType, ScriptCode inScript) {
    std::string path;
    OSErr error = PathFromSpec(inSpec, &path);
    if (error == noErr) return WriteEmptyMap(inSpec, ForkKind::kResource);
    if (error == fnfErr) error = FSpCreate(&inSpec, inCreator, inType, inScript);
    if (error != noErr) return error;
    error = WriteEmptyMap(inSpec, ForkKind::kResource);
    if (error != noErr) FSpDelete(&inSpec);
    return error;
}

struct NewFile {
    const FSRef* parent;
    UniCharCount nameLength;
    const UniChar* name;
    FSCatalogInfoBitmap which;
    const FSCatalogInfo* info;
};

// Where the file is to be.
OSErr LocateNew(const NewFile& inFile, Located* outPlace) {
    std::string name;
    const auto* units = reinterpret_cast<const char16_t*>(inFile.name);
    icu::UnicodeString(units, SInt32(inFile.nameLength)).toUTF8String(name);
    if (name.find('\0') != std::string::npos) return bdNamErr;
    const Catalog catalog;
    Object parent;
    Folder folder;
    OSErr error = catalog->FindByRef(*inFile.parent, &parent);
    if (error == noErr) error = catalog->AllFolders().FindByPath(parent.path, &folder);
    if (error != noErr) return error;
    const Volume* volume = catalog->AllFolders().FindVolume(folder.volume);
    if (!volume) return nsvErr;
    outPlace->volume = *volume;
    return catalog->FindInFolder(folder, WithSeparatorsExchanged(name), &outPlace->object);
}

void SetFinderInfo(const NewFile& inFile, Metadata* ioMetadata) {
    if (inFile.which & kFSCatInfoFinderInfo)
        std::copy_n(inFile.info->finderInfo, 16, ioMetadata->finderInfo);
    if (inFile.which & kFSCatInfoFinderXInfo)
        std::copy_n(inFile.info->extFinderInfo, 16, ioMetadata->extFinderInfo);
}

OSErr CreateByName(const NewFile& inFile, ForkKind inKind, FSSpec* outSpec) {
    Located place;
    OSErr error = LocateNew(inFile, &place);
    if (error != fnfErr) return error ? error : OSErr(dupFNErr);
    const std::string& path = place.object.path;
    error = CreateFile(place, 0, 0, smSystemScript);
    if (error == noErr) error = SpecFromPath(path, outSpec);
    if (error != noErr) return error;
    if (inFile.info) error = ChangeMetadata(path, [&](Metadata* io) { SetFinderInfo(inFile, io); });
    if (error == noErr) error = WriteEmptyMap(*outSpec, inKind);
    if (error != noErr) FSpDelete(outSpec);
    return error;
}

OSErr Create(const NewFile& inFile, ForkKind inKind, FSRef* outRef, FSSpec* outSpec) {
    FSRef ref;
    FSSpec spec;
    OSErr error = FSMakeFSRefUnicode(inFile.parent, inFile.nameLength, inFile.name,
                                     kTextEncodingUnknown, &ref);
    if (error == noErr) {
        error = FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
        if (error == noErr) error = WriteEmptyMap(spec, inKind);
    } else if (error == fnfErr) {
        error = CreateByName(inFile, inKind, &spec);
    }
    if (error == noErr && outRef) error = FSpMakeFSRef(&spec, outRef);
    if (error == noErr && outSpec) *outSpec = spec;
    return error;
}

}  // namespace

}  // namespace carbon

using namespace carbon;

void FSpCreateResFile(const FSSpec* spec, OSType creator, OSType fileType, ScriptCode scriptTag) {
    Call(
        [&] { return spec ? CreateBySpec(*spec, creator, fileType, scriptTag) : OSErr(paramErr); });
}

void HCreateResFile(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName) {
    Call([&] {
        FSSpec spec;
        const OSErr error = FSMakeFSSpec(vRefNum, dirID, fileName, &spec);
        return error == noErr || error == fnfErr ? CreateBySpec(spec, 0, 0, smSystemScript) : error;
    });
}

void FSCreateResFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                     FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                     FSSpec* newSpec) {
    Call([&] {
        return Create({parentRef, nameLength, name, whichInfo, catalogInfo}, ForkKind::kResource,
                      newRef, newSpec);
    });
}

OSErr FSCreateResourceFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                           FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo,
                           UniCharCount forkNameLength, const UniChar* forkName, FSRef* newRef,
                           FSSpec* newSpec) {
    return Call([&] {
        ForkKind kind = ForkKind::kData;
        const OSErr error = ForkByName(forkNameLength, forkName, &kind);
        if (error != noErr) return error;
        return Create({parentRef, nameLength, name, whichInfo, catalogInfo}, kind, newRef, newSpec);
    });
}

OSErr FSCreateResourceFork(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName,
                           UInt32 flags) {
    return Call([&] {
        FSSpec spec;
        ForkKind kind = ForkKind::kData;
        if (flags != 0) return OSErr(paramErr);
        OSErr error = ForkByName(forkNameLength, forkName, &kind);
        if (error == noErr)
            error = FSGetCatalogInfo(ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
        return error ? error : WriteEmptyMap(spec, kind);
    });
}
