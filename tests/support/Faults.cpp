// The interposed calls: each passes on to the platform unless its fault is set.
#include "support/Faults.h"

#include "support/RealCall.h"

Faults gFaults;

namespace {
bool sAskedAboutResource = false;
}

Handle NewHandle(Size inSize) {
    if (!gFaults.newHandleFails) return REAL_CALL(NewHandle)(inSize);
    LMSetMemErr(memFullErr);
    return nullptr;
}

Handle TempNewHandle(Size inSize, OSErr* outError) {
    if (!gFaults.tempHandleFails) return REAL_CALL(TempNewHandle)(inSize, outError);
    *outError = noErr;
    return nullptr;
}

OSErr MemError() {
    const OSErr error = REAL_CALL(MemError)();
    return gFaults.memErrorIsLost ? OSErr{noErr} : error;
}

ResAttributes GetResAttrs(Handle inHandle) {
    sAskedAboutResource = inHandle == gFaults.isResource;
    return REAL_CALL(GetResAttrs)(inHandle);
}

OSErr ResError() {
    return sAskedAboutResource ? gFaults.resourceError : REAL_CALL(ResError)();
}

void ReleaseResource(Handle inHandle) {
    if (inHandle != gFaults.isResource) return REAL_CALL(ReleaseResource)(inHandle);
    gFaults.releasedResource = inHandle;
}
