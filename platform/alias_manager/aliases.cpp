// Owns the calls that make, renew and resolve aliases.
#include <Carbon/Aliases.h>
#include <Carbon/MacErrors.h>

#include "alias_manager/describing.h"
#include "alias_manager/handles.h"
#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

OSErr Describe(const FSSpec* inFrom, const FSSpec& inTarget, AliasContents* outContents) {
    const Catalog catalog;
    Object from, target;
    if (const OSErr error = FindFrom(*catalog, inFrom, &from)) return error;
    if (const OSErr error = catalog->FindBySpec(inTarget, &target)) return error;
    return DescribeForAlias(*catalog, inFrom ? &from : nullptr, target, outContents);
}

OSErr Make(const FSSpec* inFrom, const FSSpec& inTarget, AliasHandle* outAlias) {
    *outAlias = nullptr;
    AliasContents contents;
    const OSErr error = Describe(inFrom, inTarget, &contents);
    return error ? error : MakeHandle(contents, outAlias);
}

OSErr MakeMinimal(const FSSpec& inTarget, AliasHandle* outAlias) {
    *outAlias = nullptr;
    AliasContents contents;
    const OSErr error = DescribeMinimally(*Catalog(), inTarget, &contents);
    return error ? error : MakeHandle(contents, outAlias);
}

// "Disk:" and "Disk:Folder:" mean the volume and the folder.
OSErr MakeFromPath(std::string_view inPath, ConstStr32Param inZone, ConstStr31Param inServer,
                   AliasHandle* outAlias) {
    *outAlias = nullptr;
    const size_t colon = inPath.find(':');
    if (colon == 0 || colon == std::string_view::npos) return bdNamErr;
    if (colon > kLongestVolumeName) return bdNamErr;
    AliasContents contents;
    contents.volumeName = inPath.substr(0, colon);
    contents.path = inPath;
    auto rest = inPath;
    if (rest.ends_with(':')) rest.remove_suffix(1);
    contents.name = rest.substr(rest.rfind(':') + 1);
    if (contents.name.empty() || contents.name.size() > kLongestSpecName) return bdNamErr;
    if (inZone) contents.zone = TextOfPascal(inZone);
    if (inServer) contents.server = TextOfPascal(inServer);
    return MakeHandle(contents, outAlias);
}

OSErr Update(const FSSpec* inFrom, const FSSpec& inTarget, AliasHandle ioAlias,
             Boolean* outWasChanged) {
    *outWasChanged = false;
    const auto old = ContentsOf(ioAlias);
    if (!old) return paramErr;
    AliasContents contents;
    contents.userType = old->userType;
    const OSErr error = Describe(inFrom, inTarget, &contents);
    return error ? error : ReplaceRecord(contents, ioAlias, outWasChanged);
}

// A call on references: those it was given as file specs, and what it found as a reference.
OSErr WithSpecs(const FSRef* inFrom, const FSRef* inTarget, auto inCall) {
    FSSpec from, target;
    OSErr error = SpecOfRef(inFrom, &from);
    if (error == noErr) error = SpecOfRef(inTarget, &target);
    return error ? error : inCall(inFrom ? &from : nullptr, &target);
}

}  // namespace

}  // namespace carbon

AliasFilterUPP NewAliasFilterUPP(AliasFilterProcPtr userRoutine) {
    return userRoutine;
}

void DisposeAliasFilterUPP(AliasFilterUPP) {}

Boolean InvokeAliasFilterUPP(CInfoPBRec* cpbPtr, Boolean* quitFlag, Ptr myDataPtr,
                             AliasFilterUPP userUPP) {
    return userUPP(cpbPtr, quitFlag, myDataPtr);
}

OSErr NewAlias(const FSSpec* fromFile, const FSSpec* target, AliasHandle* alias) {
    return target && alias ? carbon::Make(fromFile, *target, alias) : OSErr(paramErr);
}

OSErr FSNewAlias(const FSRef* fromFile, const FSRef* target, AliasHandle* inAlias) {
    if (!target || !inAlias) return paramErr;
    *inAlias = nullptr;
    return carbon::WithSpecs(fromFile, target, [&](const FSSpec* inFrom, const FSSpec* inTarget) {
        return carbon::Make(inFrom, *inTarget, inAlias);
    });
}

OSErr NewAliasMinimal(const FSSpec* target, AliasHandle* alias) {
    return target && alias ? carbon::MakeMinimal(*target, alias) : OSErr(paramErr);
}

OSErr FSNewAliasMinimal(const FSRef* target, AliasHandle* inAlias) {
    if (!target || !inAlias) return paramErr;
    *inAlias = nullptr;
    return carbon::WithSpecs(nullptr, target, [&](const FSSpec*, const FSSpec* inTarget) {
        return carbon::MakeMinimal(*inTarget, inAlias);
    });
}

OSErr NewAliasMinimalFromFullPath(SInt16 fullPathLength, const void* fullPath,
                                  ConstStr32Param zoneName, ConstStr31Param serverName,
                                  AliasHandle* alias) {
    if (!fullPath || !alias || fullPathLength < 0) return paramErr;
    const std::string_view path(static_cast<const char*>(fullPath), size_t(fullPathLength));
    return carbon::MakeFromPath(path, zoneName, serverName, alias);
}

OSErr UpdateAlias(const FSSpec* fromFile, const FSSpec* target, AliasHandle alias,
                  Boolean* wasChanged) {
    if (!target || !alias || !wasChanged) return paramErr;
    return carbon::Update(fromFile, *target, alias, wasChanged);
}

OSErr FSUpdateAlias(const FSRef* fromFile, const FSRef* target, AliasHandle alias,
                    Boolean* wasChanged) {
    if (!target || !alias || !wasChanged) return paramErr;
    return carbon::WithSpecs(fromFile, target, [&](const FSSpec* inFrom, const FSSpec* inTarget) {
        return carbon::Update(inFrom, *inTarget, alias, wasChanged);
    });
}

OSErr ResolveAlias(const FSSpec* fromFile, AliasHandle alias, FSSpec* target, Boolean* wasChanged) {
    return ResolveAliasWithMountFlags(fromFile, alias, target, wasChanged, 0);
}

OSErr ResolveAliasWithMountFlags(const FSSpec* fromFile, AliasHandle alias, FSSpec* target,
                                 Boolean* wasChanged, UInt32 mountFlags) {
    if (!alias || !target || !wasChanged) return paramErr;
    return carbon::ResolveHandle(fromFile, mountFlags, alias, target, wasChanged);
}

OSErr FSResolveAlias(const FSRef* fromFile, AliasHandle alias, FSRef* target, Boolean* wasChanged) {
    return FSResolveAliasWithMountFlags(fromFile, alias, target, wasChanged, 0);
}

OSErr FSResolveAliasWithMountFlags(const FSRef* fromFile, AliasHandle alias, FSRef* target,
                                   Boolean* wasChanged, UInt32 mountFlags) {
    if (!alias || !target || !wasChanged) return paramErr;
    return carbon::WithSpecs(fromFile, nullptr, [&](const FSSpec* inFrom, FSSpec* outTarget) {
        const OSErr error = carbon::ResolveHandle(inFrom, mountFlags, alias, outTarget, wasChanged);
        return error ? error : FSpMakeFSRef(outTarget, target);
    });
}

OSErr FollowFinderAlias(const FSSpec* fromFile, AliasHandle alias, Boolean, FSSpec* target,
                        Boolean* wasChanged) {
    return ResolveAliasWithMountFlags(fromFile, alias, target, wasChanged, 0);
}

OSErr FSFollowFinderAlias(FSRef* fromFile, AliasHandle alias, Boolean, FSRef* target,
                          Boolean* wasChanged) {
    return FSResolveAliasWithMountFlags(fromFile, alias, target, wasChanged, 0);
}
