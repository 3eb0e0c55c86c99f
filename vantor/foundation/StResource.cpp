// The guard of a resource, and the one that deletes it.
#include "vantor/foundation/StResource.h"

#include "vantor/foundation/LException.h"

StResource::StResource(ResType inType, ResIDT inID, Boolean inThrowFail, Boolean inGet1)
    : mResourceH(nullptr) {
    GetResource(inType, inID, inThrowFail, inGet1);
}

StResource::StResource(ResType inType, ConstStr255Param inName, Boolean inThrowFail, Boolean inGet1)
    : mResourceH(nullptr) {
    GetResource(inType, inName, inThrowFail, inGet1);
}

StResource::~StResource() {
    Dispose();
}

Handle StResource::GetResource(ResType inType, ResIDT inID, Boolean inThrowFail, Boolean inGet1) {
    Dispose();
    return Hold(inGet1 ? ::Get1Resource(inType, inID) : ::GetResource(inType, inID), inThrowFail);
}

Handle StResource::GetResource(ResType inType, ConstStr255Param inName, Boolean inThrowFail,
                               Boolean inGet1) {
    Dispose();
    return Hold(inGet1 ? ::Get1NamedResource(inType, inName) : ::GetNamedResource(inType, inName),
                inThrowFail);
}

Handle StResource::GetIndResource(ResType inType, SInt16 inIndex, Boolean inThrowFail,
                                  Boolean inGet1) {
    Dispose();
    return Hold(inGet1 ? ::Get1IndResource(inType, inIndex) : ::GetIndResource(inType, inIndex),
                inThrowFail);
}

Handle StResource::Hold(Handle inHandle, Boolean inThrowFail) {
    mResourceH = inHandle;
    if (inHandle == nullptr && inThrowFail) ThrowResourceError();
    return inHandle;
}

void StResource::Adopt(Handle inHandle) {
    if (inHandle == mResourceH) return;
    Dispose();
    mResourceH = inHandle;
}

void StResource::Detach() {
    if (mResourceH != nullptr) ::DetachResource(mResourceH);
}

void StResource::Dispose() {
    if (mResourceH != nullptr) {
        ::GetResAttrs(mResourceH);
        if (ResError() == noErr) {
            ::ReleaseResource(mResourceH);
        } else {
            ::DisposeHandle(mResourceH);
        }
    }
    mResourceH = nullptr;
}

StDeleteResource::StDeleteResource(ResType inType, ResIDT inID, Boolean inThrowFail, Boolean inGet1)
    : StResource(inType, inID, inThrowFail, inGet1) {}

StDeleteResource::~StDeleteResource() {
    if (mResourceH == nullptr) return;
    ::RemoveResource(mResourceH);
    ::DisposeHandle(mResourceH);
    mResourceH = nullptr;
}
