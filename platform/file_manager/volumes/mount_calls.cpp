// Owns the calls that unmount volumes, and the records by which a server's volume is mounted again.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/names.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volumes/capabilities.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

constexpr std::string_view kServer = "localhost";
constexpr std::string_view kZone = "*";

OSErr Unmount(ConstStr255Param inName, FSVolumeRefNum inNumber) {
    const Catalog catalog;
    const Volume* volume = VolumeByName(*catalog, inName, inNumber);
    if (!volume) return nsvErr;
    if (HasOpenForks(volume->number)) return fBsyErr;
    return catalog->AllFolders().Registry().UnmountFolder(volume->number);
}

// Puts a string behind what the record holds already and notes where it lies.
void Append(std::string_view inText, AFPVolMountInfo* ioRecord, SInt16* outOffset) {
    *outOffset = ioRecord->length;
    SetPascal(inText, inText.size(), reinterpret_cast<UInt8*>(ioRecord) + ioRecord->length);
    ioRecord->length = SInt16(ioRecord->length + 1 + SInt16(inText.size()));
}

AFPVolMountInfo MountRecordOf(const Volume& inVolume) {
    AFPVolMountInfo record{};
    record.length = offsetof(AFPVolMountInfo, AFPData);
    record.media = AppleShareMediaType;
    record.uamType = kNoUserAuthentication;
    Append(kZone, &record, &record.zoneNameOffset);
    Append(kServer, &record, &record.serverNameOffset);
    Append(inVolume.name, &record, &record.volNameOffset);
    return record;
}

// Only what PBVolumeMount takes again.
OSErr FindRecord(const IOParam& inRecord, AFPVolMountInfo* outRecord) {
    if (!inRecord.ioBuffer) return paramErr;
    const Catalog catalog;
    const Volume* volume = VolumeByName(*catalog, inRecord.ioNamePtr, inRecord.ioVRefNum);
    if (!volume) return nsvErr;
    if (!volume->isFolder || !IsRemote(*volume)) return paramErr;
    *outRecord = MountRecordOf(*volume);
    return noErr;
}

OSErr GetRecordSize(const IOParam& inRecord) {
    AFPVolMountInfo record;
    if (const OSErr error = FindRecord(inRecord, &record)) return error;
    std::memcpy(inRecord.ioBuffer, &record.length, sizeof record.length);
    return noErr;
}

OSErr GetRecord(const IOParam& inRecord) {
    AFPVolMountInfo record;
    if (const OSErr error = FindRecord(inRecord, &record)) return error;
    std::memcpy(inRecord.ioBuffer, &record, size_t(record.length));
    return noErr;
}

// A string of a record, which may claim to lie anywhere.
std::string_view StringAt(const char* inRecord, SInt16 inLength, SInt16 inOffset) {
    if (inOffset <= 0 || inOffset >= inLength) return {};
    const auto* string = reinterpret_cast<const UInt8*>(inRecord) + inOffset;
    return inOffset + 1 + string[0] <= inLength ? TextOfPascal(string) : std::string_view();
}

OSErr MountServer(IOParam* ioRecord) {
    if (!ioRecord->ioBuffer) return paramErr;
    VolMountInfoHeader head;
    std::memcpy(&head, ioRecord->ioBuffer, sizeof head);
    const auto size = SInt16(offsetof(AFPVolMountInfo, AFPData));
    if (head.media != AppleShareMediaType || head.length < size) return paramErr;
    AFPVolMountInfo record{};
    std::memcpy(&record, ioRecord->ioBuffer, size_t(size));
    const auto server = StringAt(ioRecord->ioBuffer, head.length, record.serverNameOffset);
    const auto name = StringAt(ioRecord->ioBuffer, head.length, record.volNameOffset);
    // Linux: servers are mounted by the system; only folders that stand for one come by this call.
    if (Folded(server) != kServer) return afpNoServer;
    const Catalog catalog;
    VolumeRegistry& registry = catalog->AllFolders().Registry();
    return registry.MountAgain(std::string(name), &ioRecord->ioVRefNum);
}

}  // namespace

}  // namespace carbon

OSErr UnmountVol(ConstStr63Param volName, FSVolumeRefNum vRefNum) {
    return carbon::Unmount(volName, vRefNum);
}

OSErr PBUnmountVol(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->volumeParam, [](VolumeParam& inRecord) {
        return carbon::Unmount(inRecord.ioNamePtr, inRecord.ioVRefNum);
    });
}

OSErr PBGetVolMountInfoSize(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->ioParam,
                           [](IOParam& inRecord) { return carbon::GetRecordSize(inRecord); });
}

OSErr PBGetVolMountInfo(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->ioParam,
                           [](IOParam& inRecord) { return carbon::GetRecord(inRecord); });
}

OSErr PBVolumeMount(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->ioParam,
                           [](IOParam& ioRecord) { return carbon::MountServer(&ioRecord); });
}
