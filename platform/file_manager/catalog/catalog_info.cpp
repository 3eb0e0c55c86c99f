// Owns the values of an FSCatalogInfo: where each one comes from.
#include "file_manager/catalog/catalog_info.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <unicode/unistr.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/finder_info.h"
#include "file_manager/catalog/names.h"
#include "file_manager/listings/folder_listing.h"

namespace carbon {

namespace {

constexpr SInt64 kUnixEpoch = 2082844800;  // seconds from 1904 to 1970
constexpr UInt64 kForkBlock = 4096;        // a resource fork's space is counted in these
constexpr UInt32 kFirstFileNumber = 0x40000000;
constexpr SInt64 kNanoseconds = 1000000000;

UTCDateTime DateOf(SInt64 inSeconds, SInt64 inNanoseconds) {
    const UInt64 seconds = UInt64(inSeconds + kUnixEpoch);
    return {UInt16(seconds >> 32), UInt32(seconds), UInt16(inNanoseconds * 65536 / kNanoseconds)};
}

UTCDateTime DateOf(const timespec& inTime) {
    return DateOf(inTime.tv_sec, inTime.tv_nsec);
}

// The date that the companion keeps, else the moment of birth, else the oldest one known.
UTCDateTime CreationOf(const ObjectStatus& inStatus, const AppleDoubleFacts& inFacts) {
    if (inFacts.created) return DateOf(*inFacts.created, 0);
    const SInt64 birth = inStatus.identity.birth;
    return birth > 0 ? DateOf(birth / kNanoseconds, birth % kNanoseconds)
                     : DateOf(inStatus.modified);
}

UInt16 FlagsOf(const ObjectStatus& inStatus, const AppleDoubleFacts& inFacts) {
    UInt16 flags = 0;
    if (inFacts.isLocked || inStatus.isImmutable) flags |= kFSNodeLockedMask;
    if (inStatus.IsFolder()) flags |= kFSNodeIsDirectoryMask;
    if (!inStatus.IsFolder() && inStatus.links > 1) flags |= kFSNodeHardLinkMask;
    return flags;
}

bool MayUser(const std::string& inPath, int inMode) {
    return faccessat(AT_FDCWD, inPath.c_str(), inMode, AT_EACCESS) == 0;
}

// User, group, then a zero byte, a byte for the user's access, and 16 bits for the mode.
void PutPermissions(const Object& inObject, UInt32* outPermissions) {
    const UInt8 access[2] = {0, UserAccessTo(inObject)};
    const UInt16 mode = UInt16(inObject.status.mode);
    outPermissions[0] = inObject.status.user;
    outPermissions[1] = inObject.status.group;
    std::memcpy(&outPermissions[2], access, sizeof access);
    std::memcpy(reinterpret_cast<char*>(&outPermissions[2]) + 2, &mode, sizeof mode);
    outPermissions[3] = 0;
}

void PutDates(const ObjectStatus& inStatus, const AppleDoubleFacts& inFacts,
              FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo) {
    if (inWhich & kFSCatInfoCreateDate) outInfo->createDate = CreationOf(inStatus, inFacts);
    if (inWhich & kFSCatInfoContentMod) outInfo->contentModDate = DateOf(inStatus.modified);
    if (inWhich & kFSCatInfoAttrMod) outInfo->attributeModDate = DateOf(inStatus.changed);
    if (inWhich & kFSCatInfoAccessDate) outInfo->accessDate = DateOf(inStatus.accessed);
    if (inWhich & kFSCatInfoBackupDate) {
        outInfo->backupDate = inFacts.backedUp ? DateOf(*inFacts.backedUp, 0) : UTCDateTime{};
    }
}

// A folder has no forks.
void PutSizes(const ObjectStatus& inStatus, const AppleDoubleFacts& inFacts,
              FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo) {
    const bool isFolder = inStatus.IsFolder();
    if (inWhich & kFSCatInfoDataSizes) {
        outInfo->dataLogicalSize = isFolder ? 0 : inStatus.size;
        outInfo->dataPhysicalSize = isFolder ? 0 : inStatus.blocks * 512;
    }
    if (inWhich & kFSCatInfoRsrcSizes) {
        const UInt64 length = isFolder ? 0 : inFacts.resourceLength;
        outInfo->rsrcLogicalSize = length;
        outInfo->rsrcPhysicalSize = (length + kForkBlock - 1) / kForkBlock * kForkBlock;
    }
}

void PutPlace(Objects& ioObjects, const Object& inObject, FSCatalogInfoBitmap inWhich,
              FSCatalogInfo* outInfo) {
    if (inWhich & kFSCatInfoVolume) outInfo->volume = inObject.spec.vRefNum;
    if (inWhich & kFSCatInfoParentDirID) outInfo->parentDirID = UInt32(inObject.spec.parID);
    if (inWhich & kFSCatInfoNodeID) outInfo->nodeID = NodeIDOf(ioObjects, inObject);
    if (inWhich & kFSCatInfoTextEncoding) {
        const bool isRoman = SpecNameOf(inObject.diskName).has_value();
        outInfo->textEncodingHint = isRoman ? 0 : TextEncoding(kTextEncodingUnknown);
    }
}

void PutAccess(const Object& inObject, FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo) {
    const FSCatalogInfoBitmap permissions = kFSCatInfoPermissions | kFSCatInfoUserAccess;
    if (inWhich & permissions) PutPermissions(inObject, outInfo->permissions);
    if (inWhich & kFSCatInfoSharingFlags) outInfo->sharingFlags = 0;
    if (inWhich & kFSCatInfoUserPrivs) outInfo->userPrivileges = PrivilegesOf(inObject);
}

constexpr FSCatalogInfoBitmap kFromCompanion = kFSCatInfoNodeFlags | kFSCatInfoCreateDate |
                                               kFSCatInfoBackupDate | kFSCatInfoFinderInfo |
                                               kFSCatInfoFinderXInfo | kFSCatInfoRsrcSizes;

}  // namespace

void SetUnicodeName(const std::string& inDiskName, HFSUniStr255* outName) {
    constexpr UInt32 kLongestUnicodeName = 255;
    const auto name = icu::UnicodeString::fromUTF8(WithSeparatorsExchanged(inDiskName));
    const auto length = std::min<UInt32>(UInt32(name.length()), kLongestUnicodeName);
    outName->length = UInt16(length);
    name.extract(0, SInt32(length), reinterpret_cast<char16_t*>(outName->unicode));
}

void PutFinderInfo(const Metadata& inMetadata, FSCatalogInfoBitmap inWhich,
                   FSCatalogInfo* outInfo) {
    if (inWhich & kFSCatInfoFinderInfo) {
        std::memcpy(outInfo->finderInfo, inMetadata.finderInfo, sizeof inMetadata.finderInfo);
    }
    if (inWhich & kFSCatInfoFinderXInfo) {
        std::memcpy(outInfo->extFinderInfo, inMetadata.extFinderInfo,
                    sizeof inMetadata.extFinderInfo);
    }
}

SInt64 CreationTimeOf(const ObjectStatus& inStatus, const AppleDoubleFacts& inFacts) {
    if (inFacts.created) return *inFacts.created;
    const SInt64 birth = inStatus.identity.birth;
    return birth > 0 ? birth / kNanoseconds : inStatus.modified.tv_sec;
}

UInt8 UserAccessTo(const Object& inObject) {
    if (inObject.status.IsLink()) return 7;
    const bool mayBeAll = inObject.status.mode & 0111;
    if (mayBeAll && MayUser(inObject.path, R_OK | W_OK | X_OK)) return 7;
    return UInt8((MayUser(inObject.path, R_OK) ? 4 : 0) | (MayUser(inObject.path, W_OK) ? 2 : 0) |
                 (MayUser(inObject.path, X_OK) ? 1 : 0));
}

UInt8 PrivilegesOf(const Object& inObject) {
    if (!inObject.status.IsFolder()) return 0;
    const UInt8 access = UserAccessTo(inObject);
    UInt8 forbidden = 0;
    if ((access & 5) != 5) forbidden |= 0x03;
    if (!(access & 2)) forbidden |= 0x04;
    if (inObject.status.user != geteuid()) forbidden |= 0x80;
    return forbidden;
}

UInt32 NodeIDOf(Objects& ioObjects, const Object& inObject) {
    if (!inObject.status.IsFolder()) {
        return kFirstFileNumber + UInt32(inObject.status.identity.inode & 0x3FFFFFFF);
    }
    Folder folder;
    const OSErr error = ioObjects.AllFolders().FindByPath(inObject.path, &folder);
    return error == noErr ? UInt32(folder.id) : 0;
}

OSErr GetCatalogInfo(Objects& ioObjects, const Object& inObject, FSCatalogInfoBitmap inWhich,
                     FSCatalogInfo* outInfo) {
    const Metadata metadata = inWhich & kFromCompanion ? MetadataOf(inObject) : Metadata{};
    PutPlace(ioObjects, inObject, inWhich, outInfo);
    PutDates(inObject.status, metadata.facts, inWhich, outInfo);
    PutSizes(inObject.status, metadata.facts, inWhich, outInfo);
    PutAccess(inObject, inWhich, outInfo);
    if (inWhich & kFSCatInfoNodeFlags)
        outInfo->nodeFlags = FlagsOf(inObject.status, metadata.facts);
    PutFinderInfo(metadata, inWhich, outInfo);
    if (!(inWhich & kFSCatInfoValence)) return noErr;
    outInfo->valence = 0;
    if (!inObject.status.IsFolder()) return noErr;
    return CountEntries(inObject.path, &outInfo->valence);
}

}  // namespace carbon
