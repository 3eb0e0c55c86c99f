// Owns a resource file in memory: reading its map, finding, adding, removing, writing it anew.
#include "resource_manager/resource_file.h"

#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/StringCompare.h>

#include <algorithm>
#include <unordered_map>

#include "resource_manager/registry.h"

namespace carbon {

Handle LiveHandle(const Resource& inResource) {
    return FindResource(inResource.handle) == &inResource ? inResource.handle : nullptr;
}

std::span<const UInt8> DataToWrite(const Resource& inResource) {
    if (!(inResource.attributes & resChanged) || inResource.attributes & resProtected)
        return inResource.stored;
    const Handle handle = LiveHandle(inResource);
    if (!handle) return inResource.stored;
    if (!*handle) return {};  // purged
    return {reinterpret_cast<const UInt8*>(*handle), size_t(GetHandleSize(handle))};
}

ResourceFile::~ResourceFile() {
    for (const auto& type : mTypes) {
        for (const auto& resource : type.resources) {
            const Handle handle = LiveHandle(*resource);
            if (!handle) continue;
            ForgetResource(handle);
            DisposeHandle(handle);
        }
    }
}

bool ResourceFile::IsWritten() const {
    return mCarrier && mCarrier->IsWritable() && !(attributes & mapReadOnly);
}

OSErr ResourceFile::Read() {
    StoredFork fork;
    OSErr error = mCarrier->Read(&mFork);
    if (error == noErr) error = ParseFork(mFork, &fork);
    if (error != noErr) return error;
    mReserved = fork.reserved;
    std::unordered_map<ResType, size_t> places;  // a hostile map may have thousands of types
    for (auto& stored : fork.types) {
        const auto [place, isNew] = places.try_emplace(stored.type, mTypes.size());
        if (isNew) mTypes.push_back(ResourceType{stored.type, {}});
        for (auto& from : stored.resources) {
            mTypes[place->second].resources.push_back(
                std::make_unique<Resource>(Resource{this,
                                                    stored.type,
                                                    from.id,
                                                    ResAttributes(from.attributes & ~resChanged),
                                                    std::move(from.name),
                                                    from.data,
                                                    {}}));
        }
    }
    if (!mCarrier->IsWritable()) attributes = mapReadOnly;
    return noErr;
}

ResourceType* ResourceFile::FindType(ResType inType) {
    const auto isIt = [&](const auto& inEntry) { return inEntry.type == inType; };
    const auto found = std::find_if(mTypes.begin(), mTypes.end(), isIt);
    return found == mTypes.end() ? nullptr : &*found;
}

Resource* ResourceFile::Find(ResType inType, ResID inID) {
    ResourceType* type = FindType(inType);
    if (!type) return nullptr;
    for (const auto& resource : type->resources) {
        if (resource->id == inID) return resource.get();
    }
    return nullptr;
}

Resource* ResourceFile::FindNamed(ResType inType, ConstStr255Param inName) {
    ResourceType* type = FindType(inType);
    if (!type || !inName || inName[0] == 0) return nullptr;
    for (const auto& resource : type->resources) {
        Str255 name = {UInt8(resource->name.size())};
        std::copy(resource->name.begin(), resource->name.end(), name + 1);
        if (EqualString(name, inName, false, true)) return resource.get();
    }
    return nullptr;
}

StoredFork ResourceFile::Contents() const {
    StoredFork fork;
    fork.reserved = mReserved;
    for (const auto& type : mTypes) {
        StoredType& stored = fork.types.emplace_back(StoredType{type.type, {}});
        for (const auto& resource : type.resources) {
            stored.resources.push_back({resource->id, UInt8(resource->attributes & ~resChanged),
                                        resource->name, DataToWrite(*resource)});
        }
    }
    return fork;
}

ForkSizes ResourceFile::Sizes() const {
    ForkSizes sizes;
    for (const auto& type : mTypes) {
        sizes.AddType();
        for (const auto& resource : type.resources)
            sizes.AddResource(resource->name.size(), DataToWrite(*resource).size());
    }
    return sizes;
}

bool ResourceFile::FitsMap() const {
    ForkSizes sizes;
    for (const auto& type : mTypes) {
        sizes.AddType();
        for (const auto& resource : type.resources) sizes.AddResource(resource->name.size(), 0);
    }
    return sizes.FitMap();
}

OSErr ResourceFile::CheckRoom(size_t inMore) const {
    if (!IsWritten()) return noErr;
    const UInt64 free = mCarrier->FreeBytes();
    if (free > kLongestData + 4 * kLongestMapPart + inMore) return noErr;  // whatever is in it
    return Sizes().Total() + inMore > free ? OSErr(dskFulErr) : OSErr(noErr);
}

OSErr ResourceFile::Add(ResType inType, ResID inID, std::string_view inName,
                        Resource** outResource) {
    auto resource = std::make_unique<Resource>(
        Resource{this, inType, inID, resChanged, std::string(inName), {}, {}});
    ResourceType* type = FindType(inType);
    if (!type) type = &mTypes.emplace_back(ResourceType{inType, {}});
    type->resources.push_back(std::move(resource));
    *outResource = type->resources.back().get();
    if (FitsMap()) return noErr;
    Remove(*outResource);
    return addRefFailed;
}

void ResourceFile::Remove(Resource* inResource) {
    ResourceType* type = FindType(inResource->type);
    std::erase_if(type->resources,
                  [&](const auto& inEntry) { return inEntry.get() == inResource; });
    if (type->resources.empty()) mTypes.erase(mTypes.begin() + (type - mTypes.data()));
}

OSErr ResourceFile::Update() {
    if (!IsWritten() || !(attributes & mapChanged)) return noErr;
    std::vector<UInt8> fork;
    OSErr error = BuildFork(Contents(), &fork);
    if (error == noErr) error = mCarrier->Replace(fork);
    if (error == noErr) TakeOver(std::move(fork));
    return error;
}

// What was built of Contents() is the fork now; the data in it follow each other.
void ResourceFile::TakeOver(std::vector<UInt8> inFork) {
    size_t at = kFirstData;
    for (const auto& type : mTypes) {
        for (const auto& resource : type.resources) {
            const size_t length = DataToWrite(*resource).size();
            resource->stored = std::span(inFork).subspan(at + 4, length);
            at += 4 + length;
            resource->rewritten.clear();
            resource->attributes &= ~resChanged;
        }
    }
    mFork = std::move(inFork);  // which moves no bytes
    attributes &= ~(mapChanged | mapCompact);
}

}  // namespace carbon
