// Owns finding resources: by ID, name and index, in the chain and in the current file.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <bitset>
#include <unordered_set>

#include "resource_manager/internal.h"

namespace carbon {

namespace {

using Files = std::span<ResourceFile* const>;

enum class Where { kChain, kCurrentFile };

Files FilesIn(const Chain& inChain, Where inWhere) {
    return inWhere == Where::kChain ? inChain.Searched() : inChain.CurrentAlone();
}

// Runs the body with the files to search.
template <typename Body>
void Search(Where inWhere, Body inBody) {
    Call([&] {
        const ChainAccess chain;
        chain->Attach();
        return OSErr(inBody(*chain, FilesIn(*chain, inWhere)));
    });
}

// The first resource that `inFind` finds in a file. Without one the error is that of a missing
// resource where there are others of the type.
template <typename Find>
Handle FindFirst(Where inWhere, ResType inType, Find inFind) {
    Handle handle = nullptr;
    Search(inWhere, [&](Chain& inChain, Files inFiles) {
        OSErr error = noErr;  // Kept: a type that is nowhere is no error.
        for (ResourceFile* file : inFiles) {
            if (Resource* resource = inFind(*file)) return HandleOf(inChain, *resource, &handle);
            if (file->FindType(inType)) error = resNotFound;
        }
        return error;
    });
    return handle;
}

Handle FindByID(Where inWhere, ResType inType, ResID inID) {
    return FindFirst(inWhere, inType,
                     [&](ResourceFile& inFile) { return inFile.Find(inType, inID); });
}

Handle FindByName(Where inWhere, ResType inType, ConstStr255Param inName) {
    return FindFirst(inWhere, inType,
                     [&](ResourceFile& inFile) { return inFile.FindNamed(inType, inName); });
}

Handle FindByIndex(Where inWhere, ResType inType, ResourceIndex inIndex) {
    Handle handle = nullptr;
    Search(inWhere, [&](Chain& inChain, Files inFiles) {
        size_t left = inIndex > 0 ? size_t(inIndex) : ~size_t{0};
        for (ResourceFile* file : inFiles) {
            const ResourceType* type = file->FindType(inType);
            if (!type) continue;
            if (left <= type->resources.size())
                return HandleOf(inChain, *type->resources[left - 1], &handle);
            left -= type->resources.size();
        }
        return OSErr(resNotFound);
    });
    return handle;
}

ResourceCount CountOf(Where inWhere, ResType inType) {
    size_t count = 0;
    Search(inWhere, [&](Chain&, Files inFiles) {
        for (ResourceFile* file : inFiles) {
            if (const ResourceType* type = file->FindType(inType)) count += type->resources.size();
        }
        return noErr;
    });
    return ResourceCount(std::min<size_t>(count, 32767));
}

// Each type once, those of the first file first.
std::vector<ResType> TypesIn(Files inFiles) {
    std::vector<ResType> types;
    std::unordered_set<ResType> seen;
    for (ResourceFile* file : inFiles) {
        for (const auto& type : file->Types()) {
            if (seen.insert(type.type).second) types.push_back(type.type);
        }
    }
    return types;
}

ResourceCount CountTypesIn(Where inWhere) {
    size_t count = 0;
    Search(inWhere, [&](Chain&, Files inFiles) {
        count = TypesIn(inFiles).size();
        return noErr;
    });
    return ResourceCount(count);
}

void TypeByIndex(Where inWhere, ResType* outType, ResourceIndex inIndex) {
    Search(inWhere, [&](Chain&, Files inFiles) -> OSErr {
        if (!outType) return paramErr;
        const auto& first = inFiles.front()->Types();  // most loops end here, and need no list
        if (inIndex > 0 && size_t(inIndex) <= first.size()) {
            *outType = first[size_t(inIndex) - 1].type;
            return noErr;
        }
        const auto types = TypesIn(inFiles);
        const bool isThere = inIndex > 0 && size_t(inIndex) <= types.size();
        *outType = isThere ? types[size_t(inIndex) - 1] : 0;
        return noErr;
    });
}

using IDs = std::bitset<65536>;

// Each file is walked through once: a type may have thousands of resources.
IDs TakenIDs(Files inFiles, ResType inType) {
    IDs taken;
    for (ResourceFile* file : inFiles) {
        const ResourceType* type = file->FindType(inType);
        if (!type) continue;
        for (const auto& resource : type->resources) taken.set(UInt16(resource->id));
    }
    return taken;
}

// Application IDs first, as those below 128 are the system's.
ResID FreeID(Where inWhere, ResType inType) {
    ResID free = 0;
    Search(inWhere, [&](Chain&, Files inFiles) {
        const IDs taken = TakenIDs(inFiles, inType);
        constexpr int kFirst = 128, kIDs = 32768;
        for (int i = 0; i < kIDs; ++i) {
            free = ResID((kFirst + i) % kIDs);
            if (!taken.test(UInt16(free))) break;
        }
        return noErr;
    });
    return free;
}

}  // namespace

}  // namespace carbon

using namespace carbon;

ResourceCount CountResources(ResType theType) {
    return CountOf(Where::kChain, theType);
}

ResourceCount Count1Resources(ResType theType) {
    return CountOf(Where::kCurrentFile, theType);
}

Handle GetIndResource(ResType theType, ResourceIndex itemIndex) {
    return FindByIndex(Where::kChain, theType, itemIndex);
}

Handle Get1IndResource(ResType theType, ResourceIndex itemIndex) {
    return FindByIndex(Where::kCurrentFile, theType, itemIndex);
}

Handle GetResource(ResType theType, ResID theID) {
    return FindByID(Where::kChain, theType, theID);
}

Handle Get1Resource(ResType theType, ResID theID) {
    return FindByID(Where::kCurrentFile, theType, theID);
}

Handle GetNamedResource(ResType theType, ConstStr255Param name) {
    return FindByName(Where::kChain, theType, name);
}

Handle Get1NamedResource(ResType theType, ConstStr255Param name) {
    return FindByName(Where::kCurrentFile, theType, name);
}

ResourceCount CountTypes(void) {
    return CountTypesIn(Where::kChain);
}

ResourceCount Count1Types(void) {
    return CountTypesIn(Where::kCurrentFile);
}

void GetIndType(ResType* theType, ResourceIndex itemIndex) {
    TypeByIndex(Where::kChain, theType, itemIndex);
}

void Get1IndType(ResType* theType, ResourceIndex itemIndex) {
    TypeByIndex(Where::kCurrentFile, theType, itemIndex);
}

ResID UniqueID(ResType theType) {
    return FreeID(Where::kChain, theType);
}

ResID Unique1ID(ResType theType) {
    return FreeID(Where::kCurrentFile, theType);
}
