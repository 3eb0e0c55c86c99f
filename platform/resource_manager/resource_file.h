// An open resource file: its map in memory, and the data that are not in handles.
#pragma once

#include <Carbon/Resources.h>

#include <memory>
#include <string_view>

#include "resource_manager/carrier.h"
#include "resource_manager/fork.h"

namespace carbon {

class ResourceFile;

struct Resource {
    ResourceFile* file;
    ResType type;
    ResID id;
    ResAttributes attributes;
    std::string name;
    std::span<const UInt8> stored;  // the data as last written, in the fork or in `rewritten`
    std::vector<UInt8> rewritten;   // data written since the fork was
    Handle handle = nullptr;        // the one that was given out; it may have died since
};

// The handle of a resource, the one given out before if it lives; null when it has none.
Handle LiveHandle(const Resource& inResource);

// The data of a resource as the next update is to write them.
std::span<const UInt8> DataToWrite(const Resource& inResource);

struct ResourceType {
    ResType type;
    std::vector<std::unique_ptr<Resource>> resources;
};

class ResourceFile {
  public:
    // The System file: empty, and nothing can be put into it.
    ResourceFile() = default;
    explicit ResourceFile(std::unique_ptr<ForkCarrier> inCarrier)
        : mCarrier(std::move(inCarrier)) {}
    ~ResourceFile();
    ResourceFile(const ResourceFile&) = delete;
    ResourceFile& operator=(const ResourceFile&) = delete;

    // Reads the fork and its map; mapReadErr, eofErr and file codes.
    OSErr Read();
    // Writes the whole new fork if there is anything to write.
    OSErr Update();

    ResFileRefNum Number() const {
        return mCarrier ? mCarrier->Number() : ResFileRefNum(kSystemResFile);
    }
    const ForkCarrier* Carrier() const { return mCarrier.get(); }
    bool IsSystem() const { return !mCarrier; }
    // Whether changes reach the disk.
    bool IsWritten() const;

    size_t ForkSize() const { return mFork.size(); }
    std::vector<ResourceType>& Types() { return mTypes; }
    ResourceType* FindType(ResType inType);
    Resource* Find(ResType inType, ResID inID);
    Resource* FindNamed(ResType inType, ConstStr255Param inName);

    // dskFulErr when the disk has no room for the fork with `inMore` further bytes of data.
    OSErr CheckRoom(size_t inMore) const;
    // addRefFailed when the map is full.
    OSErr Add(ResType inType, ResID inID, std::string_view inName, Resource** outResource);
    void Remove(Resource* inResource);

    ResFileAttributes attributes = 0;

  private:
    StoredFork Contents() const;
    ForkSizes Sizes() const;
    bool FitsMap() const;
    void TakeOver(std::vector<UInt8> inFork);

    std::unique_ptr<ForkCarrier> mCarrier;  // null for the System file
    std::vector<UInt8> mFork;               // as it is on the disk
    std::array<UInt8, 240> mReserved{};
    std::vector<ResourceType> mTypes;
};

}  // namespace carbon
