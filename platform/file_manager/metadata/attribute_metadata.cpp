// Owns reading metadata from extended attributes alone.
#include "file_manager/metadata/attribute_metadata.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "file_manager/catalog/object_status.h"
#include "file_manager/metadata/metadata_entries.h"

namespace carbon {

namespace {

constexpr const char kFinderInfoAttribute[] = "user.com.apple.FinderInfo";
constexpr SInt64 kLengthOfOne = sizeof kFinderInfoAttribute;  // of a list with that name only
constexpr const char* kResourceForkAttribute = "user.com.apple.ResourceFork";

#ifdef SYS_listxattrat
constexpr long kGetAttributeAt = SYS_getxattrat, kListAttributesAt = SYS_listxattrat;
#else
constexpr long kGetAttributeAt = 464, kListAttributesAt = 465;  // the same on every machine
#endif

struct AttributeArguments {
    alignas(8) UInt64 value;
    UInt32 size;
    UInt32 flags;
};

// Linux before 6.13 has attributes by path and by open file only.
bool KnowsAttributesAt() {
    static const bool sKnows =
        syscall(kListAttributesAt, -1, "", 0, nullptr, size_t(0)) >= 0 || errno != ENOSYS;
    return sKnows;
}

// An object by its name in an open folder, or by its path. Links are not followed.
struct NamedObject {
    int folder;
    const std::string& name;

    SInt64 List(char* outNames, size_t inRoom) const {
        if (folder == AT_FDCWD) return llistxattr(name.c_str(), outNames, inRoom);
        return syscall(kListAttributesAt, folder, name.c_str(), AT_SYMLINK_NOFOLLOW, outNames,
                       inRoom);
    }
    SInt64 Get(const char* inAttribute, UInt8* outBytes, size_t inRoom) const {
        if (folder == AT_FDCWD) return lgetxattr(name.c_str(), inAttribute, outBytes, inRoom);
        AttributeArguments arguments{reinterpret_cast<UInt64>(outBytes), UInt32(inRoom), 0};
        return syscall(kGetAttributeAt, folder, name.c_str(), AT_SYMLINK_NOFOLLOW, inAttribute,
                       &arguments, sizeof arguments);
    }
};

// A list of names, each with a zero behind it.
bool Holds(std::string_view inNames, const char* inName) {
    const std::string_view name(inName, std::string_view(inName).size() + 1);
    for (size_t at = inNames.find(name); at != std::string_view::npos;
         at = inNames.find(name, at + 1)) {
        if (at == 0 || inNames[at - 1] == 0) return true;
    }
    return false;
}

// Whether there is any, of whatever length.
bool ReadFinderInfo(const NamedObject& inObject, bool inIsFolder, Metadata* ioMetadata) {
    UInt8 bytes[kFinderInfoSize + 1];  // one that is longer is something else
    const auto length = inObject.Get(kFinderInfoAttribute, bytes, sizeof bytes);
    if (length == SInt64(kFinderInfoSize))
        TakeFinderInfo({bytes, kFinderInfoSize}, inIsFolder, ioMetadata);
    return length >= 0;
}

// False with the errno of the list, which ERANGE says is too long. Its length alone costs less, and
// says enough where it has room for nothing or for one name that is then found.
bool TakeAttributes(const NamedObject& inObject, bool inIsFolder, Metadata* ioMetadata) {
    char names[1024];
    auto length = inObject.List(nullptr, 0);
    if (length < 0) return errno == EOPNOTSUPP;
    if (length == 0) return true;
    if (length == kLengthOfOne && ReadFinderInfo(inObject, inIsFolder, ioMetadata)) return true;
    length = inObject.List(names, sizeof names);
    if (length < 0) return errno == EOPNOTSUPP;
    const std::string_view all(names, size_t(length));
    if (Holds(all, kFinderInfoAttribute)) ReadFinderInfo(inObject, inIsFolder, ioMetadata);
    if (Holds(all, kResourceForkAttribute)) {
        const auto fork = inObject.Get(kResourceForkAttribute, nullptr, 0);
        if (fork > 0) ioMetadata->facts.resourceLength = UInt32(fork);
    }
    return true;
}

template <typename Work>
bool ForFileAt(int inFolder, const std::string& inName, Work inWork) {
    if (KnowsAttributesAt()) return inWork(NamedObject{inFolder, inName});
    const auto path = PathInFolder("/proc/self/fd/" + std::to_string(inFolder), inName);
    return inWork(NamedObject{AT_FDCWD, path});
}

}  // namespace

Metadata MetadataInAttributes(const std::string& inPath, bool inIsFolder) {
    Metadata metadata;
    if (TakeAttributes({AT_FDCWD, inPath}, inIsFolder, &metadata) || errno != ERANGE)
        return metadata;
    return ReadMetadata(inPath, &metadata) == noErr ? metadata : Metadata();
}

bool ReadAttributesAt(int inFolder, const std::string& inName, Metadata* outMetadata) {
    *outMetadata = {};
    return ForFileAt(inFolder, inName, [&](const NamedObject& inObject) {
        return TakeAttributes(inObject, false, outMetadata);
    });
}

bool ReadFinderInfoAt(int inFolder, const std::string& inName, Metadata* outMetadata) {
    return ForFileAt(inFolder, inName, [&](const NamedObject& inObject) {
        return ReadFinderInfo(inObject, false, outMetadata);
    });
}

}  // namespace carbon
