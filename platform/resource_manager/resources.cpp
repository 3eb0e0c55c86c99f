// Owns ResError and the calls that ask about a resource or give it back.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/Resources.h>

#include "resource_manager/registry.h"

namespace carbon {
namespace {

constinit thread_local OSErr gResError = noErr;

// The resource, with the error of every call that is given another handle.
std::optional<LiveResource> Look(Handle inHandle) {
    const auto resource = FindResource(inHandle);
    SetResError(resource ? OSErr(noErr) : OSErr(resNotFound));
    return resource;
}

}  // namespace

void SetResError(OSErr inError) {
    gResError = inError;
}

}  // namespace carbon

using namespace carbon;

OSErr ResError(void) {
    return gResError;
}

ResAttributes GetResAttrs(Handle theResource) {
    const auto resource = Look(theResource);
    return ResAttributes(resource ? resource->attributes : 0);
}

ResFileRefNum HomeResFile(Handle theResource) {
    const auto resource = Look(theResource);
    return ResFileRefNum(resource ? resource->file : -1);
}

void ReleaseResource(Handle theResource) {
    const auto resource = Look(theResource);
    // Kept: a changed resource stays without a word, so that the change is not lost.
    if (!resource || resource->attributes & resChanged) return;
    ForgetResource(theResource);
    DisposeHandle(theResource);
}
