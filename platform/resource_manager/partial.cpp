// Owns the calls that work on a resource's data without its handle.
#include <Carbon/MacMemory.h>

#include <algorithm>
#include <cstring>

#include "resource_manager/with_resource.h"

namespace carbon {

namespace {

// What tells the caller that the handle has data too, which may differ.
OSErr TellIfLoaded(const Resource& inResource) {
    return *inResource.handle ? OSErr(resourceInMemory) : OSErr(noErr);
}

OSErr Read(const Resource& inResource, SInt32 inOffset, void* outBytes, SInt32 inCount) {
    const SInt64 end = SInt64{inOffset} + inCount;
    if (inOffset < 0 || inCount < 0 || end > SInt64(inResource.stored.size()))
        return inputOutOfBounds;
    if (inCount > 0 && !outBytes) return paramErr;
    if (inCount > 0) std::memcpy(outBytes, inResource.stored.data() + inOffset, size_t(inCount));
    return TellIfLoaded(inResource);
}

OSErr Resize(Resource& ioResource, size_t inSize) {
    std::vector<UInt8> data(ioResource.stored.begin(), ioResource.stored.end());
    if (inSize > data.size()) {
        const size_t more = inSize - data.size();
        if (const OSErr error = ioResource.file->CheckRoom(more)) return error;
    }
    data.resize(inSize);
    ioResource.rewritten = std::move(data);
    ioResource.stored = ioResource.rewritten;
    ioResource.file->attributes |= mapChanged;
    return noErr;
}

OSErr Write(Resource& ioResource, SInt32 inOffset, const void* inBytes, SInt32 inCount) {
    const SInt64 end = SInt64{inOffset} + inCount;
    if (inOffset < 0 || inCount < 0 || end > maxSize) return inputOutOfBounds;
    if (inCount > 0 && !inBytes) return paramErr;
    if (ioResource.attributes & resProtected) return resAttrErr;
    const size_t before = ioResource.stored.size();
    if (const OSErr error = Resize(ioResource, std::max(before, size_t(end)))) return error;
    if (inCount > 0) std::memcpy(ioResource.rewritten.data() + inOffset, inBytes, size_t(inCount));
    return size_t(end) > before ? OSErr(writingPastEnd) : TellIfLoaded(ioResource);
}

}  // namespace

}  // namespace carbon

using namespace carbon;

SInt32 GetResourceSizeOnDisk(Handle theResource) {
    SInt32 size = -1;
    WithResource(theResource, [&](const Resource& inResource) {
        size = SInt32(inResource.stored.size());
        return noErr;
    });
    return size;
}

SInt32 GetMaxResourceSize(Handle theResource) {
    return GetResourceSizeOnDisk(theResource);
}

void ReadPartialResource(Handle theResource, SInt32 offset, void* buffer, SInt32 count) {
    WithResource(theResource, [&](const Resource& inResource) {
        return Read(inResource, offset, buffer, count);
    });
}

void WritePartialResource(Handle theResource, SInt32 offset, const void* buffer, SInt32 count) {
    WithResource(theResource,
                 [&](Resource& ioResource) { return Write(ioResource, offset, buffer, count); });
}

void SetResourceSize(Handle theResource, SInt32 newSize) {
    WithResource(theResource, [&](Resource& ioResource) {
        if (newSize < 0) return OSErr(paramErr);
        if (ioResource.attributes & resProtected) return OSErr(resAttrErr);
        const OSErr error = Resize(ioResource, size_t(newSize));
        return error ? error : TellIfLoaded(ioResource);
    });
}
