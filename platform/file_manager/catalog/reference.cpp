// Owns the layout of references.
#include "file_manager/catalog/reference.h"

#include <cstring>

namespace carbon {

namespace {

struct Layout {
    UInt32 magic;
    FSVolumeRefNum volume;
    UInt8 isFolder;
    UInt8 nameLength;
    UInt64 device;
    UInt64 inode;
    SInt64 birth;
    SInt32 parent;
    char name[44];
};
static_assert(sizeof(Layout) == sizeof(FSRef), "a reference is full to the last byte");

constexpr UInt32 kMagic = 'FSr1';

}  // namespace

FSRef RefFromReference(const Reference& inReference) {
    Layout layout{};
    layout.magic = kMagic;
    layout.volume = inReference.volume;
    layout.isFolder = inReference.isFolder;
    layout.device = inReference.identity.device;
    layout.inode = inReference.identity.inode;
    layout.birth = inReference.identity.birth;
    layout.parent = inReference.parent;
    if (inReference.name.size() > sizeof layout.name) {
        const UInt64 hash = HashOfName(inReference.name);
        std::memcpy(layout.name, &hash, sizeof hash);
    } else {
        layout.nameLength = UInt8(inReference.name.size());
        std::memcpy(layout.name, inReference.name.data(), inReference.name.size());
    }
    FSRef ref;
    std::memcpy(&ref, &layout, sizeof ref);
    return ref;
}

// FNV-1a.
UInt64 HashOfName(std::string_view inDiskName) {
    UInt64 hash = 0xcbf29ce484222325;
    for (const char byte : inDiskName) hash = (hash ^ UInt8(byte)) * 0x100000001b3;
    return hash;
}

// References arrive in events, so nothing about their bytes is taken for granted.
std::optional<Reference> ReferenceFromRef(const FSRef& inRef) {
    Layout layout;
    std::memcpy(&layout, &inRef, sizeof layout);
    if (layout.magic != kMagic || layout.nameLength > sizeof layout.name) return std::nullopt;
    Reference reference;
    reference.volume = layout.volume;
    reference.parent = layout.parent;
    reference.isFolder = layout.isFolder != 0;
    reference.identity = {layout.device, layout.inode, layout.birth};
    reference.name.assign(layout.name, layout.nameLength);
    if (layout.nameLength == 0) {
        std::memcpy(&reference.nameHash, layout.name, sizeof reference.nameHash);
    }
    const bool isOneName = reference.name.find('/') == std::string::npos &&
                           reference.name.find('\0') == std::string::npos;
    const bool isDots = reference.name == "." || reference.name == "..";
    return isOneName && !isDots ? std::optional(reference) : std::nullopt;
}

}  // namespace carbon
