// Owns the calls that ask about a resource, load it or give it back.
#include <Carbon/MacMemory.h>

#include <algorithm>

#include "resource_manager/with_resource.h"

namespace carbon {

namespace {

void TellInfo(const Resource& inResource, ResID* outID, ResType* outType, StringPtr outName) {
    if (outID) *outID = inResource.id;
    if (outType) *outType = inResource.type;
    if (!outName) return;
    outName[0] = UInt8(inResource.name.size());
    std::copy(inResource.name.begin(), inResource.name.end(), outName + 1);
}

}  // namespace

}  // namespace carbon

using namespace carbon;

ResFileRefNum HomeResFile(Handle theResource) {
    ResFileRefNum number = -1;
    WithResource(theResource, [&](const Resource& inResource) {
        number = inResource.file->Number();
        return noErr;
    });
    return number;
}

ResAttributes GetResAttrs(Handle theResource) {
    ResAttributes attributes = 0;
    WithResource(theResource, [&](const Resource& inResource) {
        attributes = inResource.attributes;
        return noErr;
    });
    return attributes;
}

void GetResInfo(Handle theResource, ResID* theID, ResType* theType, Str255 name) {
    WithResource(theResource, [&](const Resource& inResource) {
        TellInfo(inResource, theID, theType, name);
        return noErr;
    });
}

void LoadResource(Handle theResource) {
    WithResource(
        theResource,
        [](Resource& ioResource) {
            return *ioResource.handle ? OSErr(noErr) : FillHandle(ioResource);
        },
        noErr);
}

void ReleaseResource(Handle theResource) {
    WithResource(theResource, [&](Resource& ioResource) -> OSErr {
        // Kept: a changed resource stays without a word, so that the change is not lost.
        if (ioResource.attributes & resChanged) return noErr;
        ioResource.handle = nullptr;
        ForgetResource(theResource);
        DisposeHandle(theResource);
        return noErr;
    });
}

void DetachResource(Handle theResource) {
    WithResource(theResource, [&](Resource& ioResource) -> OSErr {
        if (ioResource.attributes & resChanged) return resAttrErr;
        ioResource.handle = nullptr;
        ForgetResource(theResource);
        return noErr;
    });
}
