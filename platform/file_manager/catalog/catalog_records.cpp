// Owns the values in catalog records: where each one comes from.
#include "file_manager/catalog/catalog_records.h"

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/classic_dates.h"
#include "file_manager/catalog/finder_info.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/metadata/attribute_metadata.h"

namespace carbon {

namespace {

constexpr UInt64 kLongestTold = 0x7FFFFFFF;
constexpr UInt64 kForkBlock = 4096;  // a resource fork's space is counted in these

SInt32 Told(UInt64 inLength) {
    return SInt32(std::min(inLength, kLongestTold));
}

UInt64 Rounded(UInt64 inLength) {
    return (inLength + kForkBlock - 1) / kForkBlock * kForkBlock;
}

SInt8 AttributesOf(const Object& inObject, const AppleDoubleFacts& inFacts) {
    int attributes = 0;
    if (inFacts.isLocked || inObject.status.isImmutable) attributes |= kioFlAttribLockedMask;
    if (inObject.status.IsFolder()) {
        attributes |= kioFlAttribDirMask;
    } else {
        const auto& identity = inObject.status.identity;
        attributes |= OpenForkAttributes(identity.device, identity.inode);
    }
    return SInt8(attributes);
}

UInt32 CreationDate(const Object& inObject, const Metadata& inMetadata) {
    return ClassicDate(CreationTimeOf(inObject.status, inMetadata.facts));
}

UInt32 BackupDate(const Metadata& inMetadata) {
    return inMetadata.facts.backedUp ? ClassicDate(*inMetadata.facts.backedUp) : 0;
}

// Both records of a file have these fields.
template <typename Record>
void FillFile(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
              Record* outRecord) {
    const ObjectStatus& status = inObject.status;
    const UInt32 resourceLength = inMetadata.facts.resourceLength;
    outRecord->ioFRefNum = 0;
    outRecord->ioFlAttrib = AttributesOf(inObject, inMetadata.facts);
    std::memcpy(&outRecord->ioFlFndrInfo, inMetadata.finderInfo, sizeof(FInfo));
    outRecord->ioDirID = SInt32(NodeIDOf(ioObjects, inObject));
    outRecord->ioFlStBlk = 0;
    outRecord->ioFlLgLen = Told(status.size);
    outRecord->ioFlPyLen = Told(status.blocks * 512);
    outRecord->ioFlRStBlk = 0;
    outRecord->ioFlRLgLen = Told(resourceLength);
    outRecord->ioFlRPyLen = Told(Rounded(resourceLength));
    outRecord->ioFlCrDat = CreationDate(inObject, inMetadata);
    outRecord->ioFlMdDat = ClassicDate(status.modified.tv_sec);
}

void FillFileInfo(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
                  HFileInfo* outRecord) {
    FillFile(ioObjects, inObject, inMetadata, outRecord);
    outRecord->ioACUser = 0;
    outRecord->ioFlBkDat = BackupDate(inMetadata);
    std::memcpy(&outRecord->ioFlXFndrInfo, inMetadata.extFinderInfo, sizeof(FXInfo));
    outRecord->ioFlParID = inObject.spec.parID;
    outRecord->ioFlClpSiz = 0;
}

// A folder that may not be read has nothing to count.
UInt16 EntriesIn(Objects& ioObjects, const Folder& inFolder) {
    UInt32 count = 0;
    if (ioObjects.Listings().Count(inFolder, &count) != noErr) return 0;
    return UInt16(std::min<UInt32>(count, 0xFFFF));
}

void FillFolderInfo(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
                    DirInfo* outRecord) {
    Folder folder;
    const bool isKnown =
        ioObjects.AllFolders().FindSeen(inObject.path, inObject.status, &folder) == noErr;
    outRecord->ioFRefNum = 0;
    outRecord->ioFlAttrib = AttributesOf(inObject, inMetadata.facts);
    outRecord->ioACUser = SInt8(PrivilegesOf(inObject));
    std::memcpy(&outRecord->ioDrUsrWds, inMetadata.finderInfo, sizeof(DInfo));
    outRecord->ioDrDirID = folder.id;
    outRecord->ioDrNmFls = isKnown ? EntriesIn(ioObjects, folder) : UInt16(0);
    outRecord->ioDrCrDat = CreationDate(inObject, inMetadata);
    outRecord->ioDrMdDat = ClassicDate(inObject.status.modified.tv_sec);
    outRecord->ioDrBkDat = BackupDate(inMetadata);
    std::memcpy(&outRecord->ioDrFndrInfo, inMetadata.extFinderInfo, sizeof(DXInfo));
    outRecord->ioDrParID = inObject.spec.parID;
}

}  // namespace

Metadata MetadataOf(const Object& inObject, Beside inBeside) {
    if (inBeside == Beside::kUnknown) return MetadataOf(inObject);
    return MetadataInAttributes(inObject.path, inObject.status.IsFolder());
}

void FillRecord(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
                CInfoPBRec* outRecord) {
    if (inObject.status.IsFolder()) {
        FillFolderInfo(ioObjects, inObject, inMetadata, &outRecord->dirInfo);
    } else {
        FillFileInfo(ioObjects, inObject, inMetadata, &outRecord->hFileInfo);
    }
}

void FillRecord(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
                HFileParam* outRecord) {
    FillFile(ioObjects, inObject, inMetadata, outRecord);
}

}  // namespace carbon
