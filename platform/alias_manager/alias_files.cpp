// Owns the calls on alias files: files that stand for another object.
#include <Carbon/Aliases.h>
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/Resources.h>

#include <cstring>

#include "alias_manager/handles.h"
#include "file_manager/catalog/finder_info.h"

namespace carbon {

namespace {

constexpr int kLongestChain = 32;  // aliases of aliases that come back to the first never end

OSErr Look(const FSSpec& inSpec, bool* outIsAlias, bool* outIsFolder) {
    const Catalog catalog;
    Object object;
    if (const OSErr error = catalog->FindBySpec(inSpec, &object)) return error;
    *outIsFolder = object.status.IsFolder();
    const Metadata metadata = MetadataOf(object);
    FInfo info;
    std::memcpy(&info, metadata.finderInfo, sizeof info);
    *outIsAlias = !*outIsFolder && (info.fdFlags & kIsAlias);
    return noErr;
}

// A handle of the caller's. The chain of resource files is left as it was.
OSErr ReadAlias(const FSSpec& inFile, AliasHandle* outAlias) {
    const SInt16 current = CurResFile();
    const SInt16 file = FSpOpenResFile(&inFile, fsRdPerm);
    if (file == kResFileNotOpened) return ResError();
    const Handle handle = Get1Resource(rAliasType, 0);
    OSErr error = ResError();
    if (handle) DetachResource(handle);
    CloseResFile(file);
    UseResFile(current);
    *outAlias = AliasHandle(handle);
    if (handle) return noErr;
    return error == noErr ? OSErr(resNotFound) : error;
}

OSErr FollowOne(FSSpec* ioSpec, UInt32 inFlags) {
    AliasHandle alias = nullptr;
    if (const OSErr error = ReadAlias(*ioSpec, &alias)) return error;
    FSSpec target;
    Boolean wasChanged;
    const UInt32 flags = inFlags & kResolveAliasTryFileIDFirst ? UInt32(kARMTryFileIDFirst) : 0;
    const OSErr error = ResolveHandle(ioSpec, flags, alias, &target, &wasChanged);
    DisposeHandle(Handle(alias));
    if (error == noErr) *ioSpec = target;
    return error;
}

OSErr Follow(FSSpec* ioSpec, bool inGoOn, UInt32 inFlags, Boolean* outIsFolder,
             Boolean* outWasAliased) {
    FSSpec spec = *ioSpec;
    bool isAlias = false, isFolder = false, wasAliased = false;
    for (int i = 0;; ++i) {
        if (const OSErr error = Look(spec, &isAlias, &isFolder)) return error;
        if (!isAlias || (wasAliased && !inGoOn)) break;
        if (i == kLongestChain) return fnfErr;
        if (const OSErr error = FollowOne(&spec, inFlags)) return error;
        wasAliased = true;
    }
    *ioSpec = spec;
    if (outIsFolder) *outIsFolder = isFolder;
    if (outWasAliased) *outWasAliased = wasAliased;
    return noErr;
}

}  // namespace

}  // namespace carbon

OSErr IsAliasFile(const FSSpec* fileFSSpec, Boolean* aliasFileFlag, Boolean* folderFlag) {
    if (!fileFSSpec || !aliasFileFlag || !folderFlag) return paramErr;
    bool isAlias = false, isFolder = false;
    const OSErr error = carbon::Look(*fileFSSpec, &isAlias, &isFolder);
    *aliasFileFlag = isAlias;
    *folderFlag = isFolder;
    return error;
}

OSErr FSIsAliasFile(const FSRef* fileRef, Boolean* aliasFileFlag, Boolean* folderFlag) {
    if (!fileRef) return paramErr;
    FSSpec spec;
    const OSErr error = carbon::SpecOfRef(fileRef, &spec);
    return error ? error : IsAliasFile(&spec, aliasFileFlag, folderFlag);
}

OSErr ResolveAliasFile(FSSpec* theSpec, Boolean resolveAliasChains, Boolean* targetIsFolder,
                       Boolean* wasAliased) {
    return ResolveAliasFileWithMountFlags(theSpec, resolveAliasChains, targetIsFolder, wasAliased,
                                          0);
}

OSErr ResolveAliasFileWithMountFlags(FSSpec* theSpec, Boolean resolveAliasChains,
                                     Boolean* targetIsFolder, Boolean* wasAliased,
                                     UInt32 mountFlags) {
    if (!theSpec) return paramErr;
    return carbon::Follow(theSpec, resolveAliasChains, mountFlags, targetIsFolder, wasAliased);
}

OSErr FSResolveAliasFile(FSRef* theRef, Boolean resolveAliasChains, Boolean* targetIsFolder,
                         Boolean* wasAliased) {
    return FSResolveAliasFileWithMountFlags(theRef, resolveAliasChains, targetIsFolder, wasAliased,
                                            0);
}

OSErr FSResolveAliasFileWithMountFlags(FSRef* theRef, Boolean resolveAliasChains,
                                       Boolean* targetIsFolder, Boolean* wasAliased,
                                       UInt32 mountFlags) {
    if (!theRef) return paramErr;
    FSSpec spec;
    OSErr error = carbon::SpecOfRef(theRef, &spec);
    if (error == noErr) {
        error = carbon::Follow(&spec, resolveAliasChains, mountFlags, targetIsFolder, wasAliased);
    }
    return error ? error : FSpMakeFSRef(&spec, theRef);
}
