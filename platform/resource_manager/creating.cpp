// Owns making files with an empty resource map.
#include <Carbon/MacErrors.h>
#include <Carbon/Script.h>
#include <fcntl.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cerrno>

#include "file_manager/catalog.h"
#include "file_manager/metadata.h"
#include "file_manager/names.h"
#include "file_manager/object_status.h"
#include "posix/UniqueFd.h"
#include "posix/os_err.h"
#include "resource_manager/fork_names.h"
#include "resource_manager/internal.h"

namespace carbon {

namespace {

// Whether there is nothing in a fork that a map would replace; dupFNErr for a folder as well.
OSErr CheckEmpty(const std::string& inPath, ForkKind inKind) {
    ObjectStatus status;
    if (const OSErr error = StatusOfObject(inPath, &status)) return error;
    if (status.IsFolder()) return dupFNErr;
    if (inKind == ForkKind::kData) return status.size == 0 ? OSErr(noErr) : OSErr(dupFNErr);
    Metadata metadata;
    const OSErr error = ReadMetadata(inPath, &metadata);
    return error == noErr && metadata.facts.resourceLength > 0 ? OSErr(dupFNErr) : error;
}

OSErr WriteEmptyMap(const std::string& inPath, ForkKind inKind) {
    std::vector<UInt8> bytes;
    OSErr error = CheckEmpty(inPath, inKind);
    if (error == noErr) error = BuildFork(StoredFork{}, &bytes);
    if (error != noErr) return error;
    return inKind == ForkKind::kData ? ReplaceFile(inPath, bytes)
                                     : ReplaceResourceFork(inPath, bytes);
}

OSErr PathInFolderOf(const FSRef& inParent, UniCharCount inLength, const UniChar* inName,
                     std::string* outPath) {
    if (inLength == 0 || !inName) return errFSMissingName;
    if (inLength > 255) return errFSNameTooLong;
    std::string folder, name;
    if (const OSErr error = PathFromRef(inParent, &folder)) return error;
    const auto* units = reinterpret_cast<const char16_t*>(inName);
    icu::UnicodeString(units, SInt32(inLength)).toUTF8String(name);
    name = WithSeparatorsExchanged(name);
    if (name == "." || name == ".." || IsCompanionName(name) ||
        name.find('\0') != std::string::npos)
        return bdNamErr;
    *outPath = PathInFolder(folder, name);
    return noErr;
}

OSErr MakeEmptyFile(const std::string& inPath) {
    const UniqueFd file(open(inPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    return file ? OSErr(noErr) : OSErrFromErrno(errno);
}

struct NewFile {
    const FSRef* parent;
    UniCharCount nameLength;
    const UniChar* name;
    FSCatalogInfoBitmap which;
    const FSCatalogInfo* info;
};

void SetFinderInfo(const NewFile& inFile, Metadata* ioMetadata) {
    if (!inFile.info) return;
    if (inFile.which & kFSCatInfoFinderInfo)
        std::copy_n(inFile.info->finderInfo, 16, ioMetadata->finderInfo);
    if (inFile.which & kFSCatInfoFinderXInfo)
        std::copy_n(inFile.info->extFinderInfo, 16, ioMetadata->extFinderInfo);
}

OSErr CreateAt(const std::string& inPath, const NewFile& inFile, ForkKind inKind) {
    if (const OSErr error = MakeEmptyFile(inPath)) return error;
    RemoveMetadata(inPath);  // of a file that is gone
    OSErr error = ChangeMetadata(inPath, [&](Metadata* io) { SetFinderInfo(inFile, io); });
    if (error == noErr) error = WriteEmptyMap(inPath, inKind);
    if (error != noErr) {
        RemoveMetadata(inPath);
        unlink(inPath.c_str());
    }
    return error;
}

OSErr CreateBySpec(const FSSpec& inSpec, OSType inCreator, OSType inType, ScriptCode inScript) {
    std::string path;
    OSErr error = PathFromSpec(inSpec, &path);
    if (error == noErr) return WriteEmptyMap(path, ForkKind::kResource);
    if (error == fnfErr) error = FSpCreate(&inSpec, inCreator, inType, inScript);
    if (error == noErr) error = PathFromSpec(inSpec, &path);
    if (error != noErr) return error;
    error = WriteEmptyMap(path, ForkKind::kResource);
    if (error != noErr) FSpDelete(&inSpec);
    return error;
}

OSErr Create(const NewFile& inFile, ForkKind inKind, FSRef* outRef, FSSpec* outSpec) {
    FSRef ref;
    std::string path;
    OSErr error = FSMakeFSRefUnicode(inFile.parent, inFile.nameLength, inFile.name,
                                     kTextEncodingUnknown, &ref);
    if (error == noErr) {
        error = PathFromRef(ref, &path);
        if (error == noErr) error = WriteEmptyMap(path, inKind);
    } else if (error == fnfErr) {
        error = PathInFolderOf(*inFile.parent, inFile.nameLength, inFile.name, &path);
        if (error == noErr) error = CreateAt(path, inFile, inKind);
    }
    if (error == noErr && outRef) error = RefFromPath(path, outRef);
    if (error == noErr && outSpec) error = SpecFromPath(path, outSpec);
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
        std::string path;
        ForkKind kind = ForkKind::kData;
        if (!ref || flags != 0) return OSErr(paramErr);
        OSErr error = ForkByName(forkNameLength, forkName, &kind);
        if (error == noErr) error = PathFromRef(*ref, &path);
        return error ? error : WriteEmptyMap(path, kind);
    });
}
