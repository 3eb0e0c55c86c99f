// Owns reading metadata from extended attributes alone.
#include "file_manager/attribute_metadata.h"

#include <Carbon/MacErrors.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string_view>

#include "file_manager/metadata_entries.h"

namespace carbon {

namespace {

constexpr const char* kFinderInfoAttribute = "user.com.apple.FinderInfo";
constexpr const char* kResourceForkAttribute = "user.com.apple.ResourceFork";

// A list of names, each with a zero behind it.
bool Holds(std::string_view inNames, const char* inName) {
    const std::string_view name(inName, std::string_view(inName).size() + 1);
    for (size_t at = inNames.find(name); at != std::string_view::npos;
         at = inNames.find(name, at + 1)) {
        if (at == 0 || inNames[at - 1] == 0) return true;
    }
    return false;
}

void TakeFinderInfo(const std::string& inPath, bool inIsFolder, Metadata* ioMetadata) {
    std::vector<UInt8> bytes(kFinderInfoSize + 1);
    const auto length = lgetxattr(inPath.c_str(), kFinderInfoAttribute, bytes.data(), bytes.size());
    if (length != SInt64(kFinderInfoSize)) return;
    bytes.resize(kFinderInfoSize);
    AppleDoubleDocument document;
    document.Set(kFinderInfoEntry, std::move(bytes));
    TakeEntries(document, inIsFolder, ioMetadata);
}

}  // namespace

Metadata MetadataInAttributes(const std::string& inPath, bool inIsFolder) {
    char names[1024];
    Metadata metadata;
    const auto length = llistxattr(inPath.c_str(), names, sizeof names);
    if (length < 0 && errno == ERANGE) {
        return ReadMetadata(inPath, &metadata) == noErr ? metadata : Metadata();
    }
    if (length <= 0) return metadata;
    const std::string_view all(names, size_t(length));
    if (Holds(all, kFinderInfoAttribute)) TakeFinderInfo(inPath, inIsFolder, &metadata);
    if (Holds(all, kResourceForkAttribute)) {
        const auto fork = lgetxattr(inPath.c_str(), kResourceForkAttribute, nullptr, 0);
        if (fork > 0) metadata.facts.resourceLength = UInt32(fork);
    }
    return metadata;
}

}  // namespace carbon
