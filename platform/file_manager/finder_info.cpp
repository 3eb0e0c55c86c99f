// Owns the choice of where Finder information comes from, and its way into the machine's byte
// order.
#include "file_manager/finder_info.h"

#include <Carbon/Endian.h>
#include <sys/xattr.h>

#include <cstring>

namespace carbon {

namespace {

constexpr size_t kSize = 32;
constexpr const char* kAttribute = "user.com.apple.FinderInfo";

std::optional<std::vector<UInt8>> InfoInAttribute(const std::string& inPath) {
    std::vector<UInt8> info(kSize + 1);
    const auto length = lgetxattr(inPath.c_str(), kAttribute, info.data(), info.size());
    if (length != ssize_t(kSize)) return std::nullopt;
    info.resize(kSize);
    return info;
}

// Consecutive big-endian numbers, each two or four bytes wide, in place.
void ToNative(UInt8* ioBytes, std::initializer_list<int> inWidths) {
    for (const int width : inWidths) {
        if (width == 4) {
            UInt32 number;
            std::memcpy(&number, ioBytes, sizeof number);
            number = EndianU32_BtoN(number);
            std::memcpy(ioBytes, &number, sizeof number);
        } else {
            UInt16 number;
            std::memcpy(&number, ioBytes, sizeof number);
            number = EndianU16_BtoN(number);
            std::memcpy(ioBytes, &number, sizeof number);
        }
        ioBytes += width;
    }
}

void TakeFileInfo(Metadata* ioMetadata) {
    ToNative(ioMetadata->finderInfo, {4, 4, 2, 2, 2, 2});
    // Script and flags are two bytes of their own and stay as they are.
    ToNative(ioMetadata->extFinderInfo, {2, 2, 2, 2});
    ToNative(ioMetadata->extFinderInfo + 10, {2, 4});
}

void TakeFolderInfo(Metadata* ioMetadata) {
    ToNative(ioMetadata->finderInfo, {2, 2, 2, 2, 2, 2, 2, 2});
    ToNative(ioMetadata->extFinderInfo, {2, 2, 4});
    ToNative(ioMetadata->extFinderInfo + 10, {2, 4});
}

}  // namespace

Metadata MetadataOf(const Object& inObject) {
    Metadata metadata;
    const bool isRoot = inObject.spec.parID == fsRtParID;
    auto facts = ReadAppleDouble(CompanionPath(inObject.path, isRoot));
    auto info = facts ? facts->finderInfo : InfoInAttribute(inObject.path);
    if (facts) metadata.facts = std::move(*facts);
    if (!info) return metadata;
    std::memcpy(metadata.finderInfo, info->data(), sizeof metadata.finderInfo);
    std::memcpy(metadata.extFinderInfo, info->data() + 16, sizeof metadata.extFinderInfo);
    inObject.status.IsFolder() ? TakeFolderInfo(&metadata) : TakeFileInfo(&metadata);
    return metadata;
}

}  // namespace carbon
