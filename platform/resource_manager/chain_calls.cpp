// Owns the calls on the order of the files, and the load flag.
#include <Carbon/LowMem.h>
#include <Carbon/MacErrors.h>

#include <algorithm>

#include "memory_manager/mem_error.h"
#include "resource_manager/internal.h"

namespace carbon {

constinit thread_local OSErr gResError = noErr;

namespace {

// Runs the body with an open file, System file included.
template <typename Body>
OSErr WithFile(ResFileRefNum inNumber, Body inBody) {
    return Call([&] {
        const ChainAccess chain;
        chain->Attach();
        ResourceFile* file = chain->Find(inNumber);
        return file ? OSErr(inBody(*chain, file)) : OSErr(resFNotFound);
    });
}

Boolean TellIfOpen(const FSRef* inFile, Boolean* outInChain, ResFileRefNum* outNumber) {
    const ChainAccess chain;
    chain->Attach();
    const ResourceFile* file = chain->FindOpen(*inFile, ForkKind::kResource, false);
    if (outInChain) *outInChain = file && chain->Holds(file);
    if (outNumber) *outNumber = file ? file->Number() : ResFileRefNum(kResFileNotOpened);
    return file != nullptr;
}

}  // namespace

}  // namespace carbon

using namespace carbon;

OSErr ResError(void) {
    return gResError;
}

SInt16 LMGetResErr(void) {
    return gResError;
}

void LMSetResErr(SInt16 value) {
    SetResError(value);
}

void SetResLoad(Boolean load) {
    LMSetResLoad(load);
    SetResError(noErr);
}

Boolean LMGetResLoad(void) {
    return ChainAccess()->isLoading;
}

void LMSetResLoad(Boolean value) {
    ChainAccess()->isLoading = value;
}

ResFileRefNum CurResFile(void) {
    const ChainAccess chain;
    chain->Attach();
    return chain->Current().Number();
}

void UseResFile(ResFileRefNum refNum) {
    WithFile(refNum, [](Chain& ioChain, ResourceFile* inFile) -> OSErr {
        if (!ioChain.Holds(inFile)) return resFNotFound;
        ioChain.Use(inFile);
        return noErr;
    });
}

ResFileAttributes GetResFileAttrs(ResFileRefNum refNum) {
    ResFileAttributes attributes = 0;
    WithFile(refNum, [&](Chain&, const ResourceFile* inFile) {
        attributes = inFile->attributes;
        return noErr;
    });
    return attributes;
}

void SetResFileAttrs(ResFileRefNum refNum, ResFileAttributes attrs) {
    WithFile(refNum, [&](Chain&, ResourceFile* ioFile) {
        if (!ioFile->IsSystem()) ioFile->attributes = attrs;
        return noErr;
    });
    SetResError(noErr);  // Kept: a number that is none is no error here.
}

Boolean FSResourceFileAlreadyOpen(const FSRef* resourceFileRef, Boolean* inChain,
                                  ResFileRefNum* refNum) {
    const OSErr error = Call([&] { return ErrorUnless(resourceFileRef, paramErr); });
    return error == noErr && TellIfOpen(resourceFileRef, inChain, refNum);
}

Boolean FSpResourceFileAlreadyOpen(const FSSpec* resourceFile, Boolean* inChain,
                                   ResFileRefNum* refNum) {
    FSRef ref{};
    const OSErr error =
        Call([&] { return resourceFile ? FSpMakeFSRef(resourceFile, &ref) : OSErr(paramErr); });
    if (inChain) *inChain = false;
    if (refNum) *refNum = kResFileNotOpened;
    return error == noErr && TellIfOpen(&ref, inChain, refNum);
}

OSErr DetachResourceFile(ResFileRefNum refNum) {
    return WithFile(refNum, [](Chain& ioChain, ResourceFile* inFile) -> OSErr {
        return ErrorUnless(ioChain.Detach(inFile), resFNotFound);
    });
}

OSErr InsertResourceFile(ResFileRefNum refNum, RsrcChainLocation where) {
    return WithFile(refNum, [&](Chain& ioChain, ResourceFile* inFile) -> OSErr {
        if (where < kRsrcChainBelowSystemMap || where == 3 || where > kRsrcChainAboveAllMaps)
            return paramErr;
        return ErrorUnless(ioChain.Insert(inFile, where), resFNotFound);
    });
}

OSErr GetTopResourceFile(ResFileRefNum* refNum) {
    return Call([&] {
        const ChainAccess chain;
        chain->Attach();
        if (!refNum) return OSErr(paramErr);
        *refNum = chain->All().front()->Number();
        return OSErr(noErr);
    });
}

OSErr GetNextResourceFile(ResFileRefNum curRefNum, ResFileRefNum* nextRefNum) {
    return WithFile(curRefNum, [&](const Chain& inChain, const ResourceFile* inFile) -> OSErr {
        if (!nextRefNum) return paramErr;
        const auto all = inChain.All();
        const auto place = std::find(all.begin(), all.end(), inFile);
        if (place == all.end() || place + 1 == all.end()) return resFNotFound;
        *nextRefNum = (*(place + 1))->Number();
        return noErr;
    });
}
