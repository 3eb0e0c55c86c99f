// Owns bringing a resource's data into its handle.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>

#include <cstring>

#include "apple_event_manager/big_endian.h"
#include "resource_manager/internal.h"

namespace carbon {

namespace {

// The attribute, and what compressed data begin with. Data that lack it were never compressed.
constexpr ResAttributes kCompressed = 1;
constexpr UInt32 kCompressedSignature = 0xA89F6572;

bool IsCompressed(const Resource& inResource) {
    return inResource.attributes & kCompressed && inResource.stored.size() >= 4 &&
           ReadBigEndian<UInt32>(inResource.stored.data()) == kCompressedSignature;
}

OSErr MakeHandle(Resource& ioResource) {
    const Handle handle = NewEmptyHandle();
    if (!handle || !EnterResource(handle, &ioResource)) {
        DisposeHandle(handle);
        return memFullErr;
    }
    ioResource.handle = handle;
    return noErr;
}

void GiveUpHandle(Resource& ioResource) {
    ForgetResource(ioResource.handle);
    DisposeHandle(ioResource.handle);
    ioResource.handle = nullptr;
}

}  // namespace

OSErr FillHandle(Resource& ioResource) {
    if (IsCompressed(ioResource)) return CantDecompress;
    const Handle handle = ioResource.handle;
    ReallocateHandle(handle, Size(ioResource.stored.size()));
    if (!*handle) return memFullErr;
    std::memcpy(*handle, ioResource.stored.data(), ioResource.stored.size());
    const bool isLocked = ioResource.attributes & resLocked;
    const bool isPurgeable = ioResource.attributes & resPurgeable;
    HSetState(handle, SInt8(kHandleIsResourceMask | (isLocked ? kHandleLockedMask : 0) |
                            (isPurgeable ? kHandlePurgeableMask : 0)));
    return noErr;
}

OSErr HandleOf(Chain& inChain, Resource& ioResource, Handle* outHandle) {
    const bool isNew = !LiveHandle(ioResource);
    if (isNew) {
        if (const OSErr error = MakeHandle(ioResource)) return error;
    }
    if (!*ioResource.handle && inChain.isLoading) {
        if (const OSErr error = FillHandle(ioResource)) {
            if (isNew) GiveUpHandle(ioResource);
            return error;
        }
    }
    *outHandle = ioResource.handle;
    return noErr;
}

}  // namespace carbon
