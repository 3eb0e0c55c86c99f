// Owns opening, updating and closing resource files.
#include <Carbon/MacErrors.h>

#include "resource_manager/fork_names.h"
#include "resource_manager/internal.h"

namespace carbon {

namespace {

// Not more than the fork holds: where many resources claim the same data, a small fork would fill
// the memory.
void Preload(Chain& inChain, ResourceFile& ioFile) {
    size_t room = ioFile.ForkSize();
    for (const auto& type : ioFile.Types()) {
        for (const auto& resource : type.resources) {
            Handle handle = nullptr;
            const size_t size = resource->stored.size();
            if (!(resource->attributes & resPreload) || size > room) continue;
            room -= size;
            HandleOf(inChain, *resource, &handle);
        }
    }
}

// Gives the number of the file, or kResFileNotOpened.
template <typename FindSpec>
ResFileRefNum OpenSpec(ForkKind inKind, SInt8 inPermission, FindSpec inFindSpec) {
    ResFileRefNum number = kResFileNotOpened;
    Call([&] {
        FSSpec spec;
        const ChainAccess chain;
        chain->Attach();
        const OSErr error = inFindSpec(&spec);
        return error ? error : OpenOnChain(*chain, spec, inKind, inPermission, &number);
    });
    return number;
}

OSErr SpecOfRef(const FSRef* inRef, FSSpec* outSpec) {
    return FSGetCatalogInfo(inRef, kFSCatInfoNone, nullptr, nullptr, outSpec, nullptr);
}

}  // namespace

OSErr OpenOnChain(Chain& ioChain, const FSSpec& inSpec, ForkKind inKind, SInt8 inPermission,
                  ResFileRefNum* outNumber) {
    FSRef ref;
    if (const OSErr error = FSpMakeFSRef(&inSpec, &ref)) return error;
    if (inPermission != fsRdPerm) {
        if (const ResourceFile* open = ioChain.FindOpen(ref, inKind, true)) {
            *outNumber = open->Number();
            return noErr;
        }
    }
    std::unique_ptr<ForkCarrier> carrier;
    OSErr error = ForkCarrier::Open(inSpec, inKind, inPermission, &carrier);
    if (error != noErr) return error;
    auto file = std::make_unique<ResourceFile>(std::move(carrier));
    error = file->Read();
    if (error != noErr) return error;
    if (ioChain.isLoading) Preload(ioChain, *file);
    *outNumber = file->Number();
    ioChain.Push(std::move(file));
    return noErr;
}

}  // namespace carbon

using namespace carbon;

ResFileRefNum FSpOpenResFile(const FSSpec* spec, SignedByte permission) {
    return OpenSpec(ForkKind::kResource, permission, [&](FSSpec* outSpec) {
        if (!spec) return OSErr(paramErr);
        *outSpec = *spec;
        return OSErr(noErr);
    });
}

ResFileRefNum HOpenResFile(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName,
                           SInt8 permission) {
    return OpenSpec(ForkKind::kResource, permission, [&](FSSpec* outSpec) {
        return FSMakeFSSpec(vRefNum, dirID, fileName, outSpec);
    });
}

ResFileRefNum OpenRFPerm(ConstStr255Param fileName, FSVolumeRefNum vRefNum, SInt8 permission) {
    return HOpenResFile(vRefNum, 0, fileName, permission);
}

ResFileRefNum FSOpenResFile(const FSRef* ref, SInt8 permission) {
    return OpenSpec(ForkKind::kResource, permission,
                    [&](FSSpec* outSpec) { return SpecOfRef(ref, outSpec); });
}

OSErr FSOpenResourceFile(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName,
                         SInt8 permissions, ResFileRefNum* refNum) {
    ForkKind kind = ForkKind::kData;
    const auto find = [&](FSSpec* outSpec) {
        const OSErr error = ForkByName(forkNameLength, forkName, &kind);
        return error ? error : SpecOfRef(ref, outSpec);
    };
    FSSpec spec;
    ResFileRefNum number = kResFileNotOpened;
    const OSErr error = Call([&] { return refNum ? find(&spec) : OSErr(paramErr); });
    if (error == noErr)
        number = OpenSpec(kind, permissions, [&](FSSpec* outSpec) {
            *outSpec = spec;
            return OSErr(noErr);
        });
    if (refNum) *refNum = number;
    return ResError();
}

void UpdateResFile(ResFileRefNum refNum) {
    Call([&] {
        const ChainAccess chain;
        chain->Attach();
        ResourceFile* file = chain->Find(refNum);
        return file ? file->Update() : OSErr(resFNotFound);
    });
}

void CloseResFile(ResFileRefNum refNum) {
    Call([&] {
        const ChainAccess chain;
        chain->Attach();
        ResourceFile* file = chain->Find(refNum);
        if (!file) return OSErr(resFNotFound);
        if (file->IsSystem()) return OSErr(noErr);
        const OSErr error = file->Update();
        chain->Close(file);
        return error;
    });
}
