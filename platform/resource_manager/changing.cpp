// Owns the calls that change resources and the map they are in.
#include <Carbon/MacMemory.h>

#include "memory_manager/internal.h"
#include "resource_manager/with_resource.h"

namespace carbon {

namespace {

std::string_view TextOf(ConstStr255Param inName) {
    if (!inName) return {};
    return {reinterpret_cast<const char*>(inName) + 1, inName[0]};
}

OSErr AddTo(ResourceFile& ioFile, Handle inData, ResType inType, ResID inID,
            std::string_view inName) {
    if (ioFile.IsSystem() || !HandleGeneration(inData) || FindResource(inData)) return addResFailed;
    const Size size = *inData ? GetHandleSize(inData) : 0;
    Resource* resource = nullptr;
    OSErr error = ioFile.CheckRoom(size_t(size));
    if (error == noErr) error = ioFile.Add(inType, inID, inName, &resource);
    if (error != noErr) return error == dskFulErr ? error : OSErr(addResFailed);
    if (!EnterResource(inData, resource)) {
        ioFile.Remove(resource);
        return memFullErr;
    }
    resource->handle = inData;
    ioFile.attributes |= mapChanged;
    return noErr;
}

OSErr Change(Resource& ioResource) {
    if (ioResource.attributes & resProtected) return resAttrErr;
    const ResAttributes before = ioResource.attributes;
    ioResource.attributes |= resChanged;  // so that the room for the data in the handle counts
    if (const OSErr error = ioResource.file->CheckRoom(0)) {
        ioResource.attributes = before;
        return error;
    }
    ioResource.file->attributes |= mapChanged;
    return noErr;
}

OSErr Write(Resource& ioResource) {
    const bool isChanged = ioResource.attributes & resChanged;
    if (!isChanged || ioResource.attributes & resProtected || !ioResource.file->IsWritten())
        return noErr;
    const auto data = DataToWrite(ioResource);
    std::vector<UInt8> copy(data.begin(), data.end());
    ioResource.rewritten = std::move(copy);
    ioResource.stored = ioResource.rewritten;
    ioResource.attributes &= ~resChanged;
    ioResource.file->attributes |= mapChanged;  // the data wait for the update
    return noErr;
}

}  // namespace

}  // namespace carbon

using namespace carbon;

void AddResource(Handle theData, ResType theType, ResID theID, ConstStr255Param name) {
    Call([&] {
        const ChainAccess chain;
        chain->Attach();
        return AddTo(chain->Current(), theData, theType, theID, TextOf(name));
    });
}

void ChangedResource(Handle theResource) {
    WithResource(theResource, Change);
}

void WriteResource(Handle theResource) {
    WithResource(theResource, Write);
}

void SetResInfo(Handle theResource, ResID theID, ConstStr255Param name) {
    WithResource(theResource, [&](Resource& ioResource) {
        if (ioResource.attributes & resProtected) return OSErr(resAttrErr);
        if (!TextOf(name).empty()) ioResource.name = TextOf(name);
        ioResource.id = theID;
        return OSErr(noErr);
    });
}

void SetResAttrs(Handle theResource, ResAttributes attrs) {
    WithResource(theResource, [&](Resource& ioResource) {
        ioResource.attributes = attrs & 0xFF;
        ioResource.file->attributes |= mapChanged;
        return noErr;
    });
}

void RemoveResource(Handle theResource) {
    Call([&] {
        const ChainAccess chain;
        Resource* resource = FindResource(theResource);
        if (!resource || resource->attributes & resProtected || resource->file != &chain->Current())
            return OSErr(rmvResFailed);
        ForgetResource(theResource);
        resource->file->attributes |= mapChanged;
        resource->file->Remove(resource);
        return OSErr(noErr);
    });
}
