// Owns the calls that tell about volumes, and the one that changes what may be changed of them.
#include <Carbon/MacErrors.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/classic_dates.h"
#include "file_manager/catalog/finder_info.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/pathname.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volumes/capabilities.h"
#include "file_manager/volumes/volume_selection.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr UInt16 kSignature = 0x4244;
constexpr SInt16 kLocalFileSystem = 0;
constexpr SInt16 kServerFileSystem = 2;
constexpr SInt16 kFirstDriver = -33;         // driver numbers lie below this one
constexpr UInt64 kLargestTold = 0x7FFFFFFF;  // 16-bit counts of blocks end at 2 GiB
constexpr UInt32 kLargestBlock = 0xFE00;
constexpr UInt32 kSector = 512;
constexpr UInt64 kMostBlocks = 0xFFFF;

// Blocks just large enough for 16 bits to count them.
UInt32 BlockSizeFor(UInt64 inTotal) {
    const UInt64 least = (inTotal + kMostBlocks - 1) / kMostBlocks;
    const UInt64 sectors = std::max<UInt64>((least + kSector - 1) / kSector, 1);
    return UInt32(std::min<UInt64>(sectors * kSector, kLargestBlock));
}

UInt16 BlocksOf(UInt64 inBytes, UInt32 inBlockSize) {
    return UInt16(std::min(inBytes, kLargestTold) / inBlockSize);
}

struct Space {
    UInt64 total = 0;
    UInt64 free = 0;  // to this user
    UInt64 files = 0;
};

OSErr SpaceOf(const Volume& inVolume, Space* outSpace) {
    struct statvfs facts;
    if (statvfs(inVolume.root.c_str(), &facts) != 0) return OSErrFromErrno(errno);
    outSpace->total = UInt64(facts.f_blocks) * facts.f_frsize;
    outSpace->free = UInt64(facts.f_bavail) * facts.f_frsize;
    outSpace->files = facts.f_files - std::min(facts.f_ffree, facts.f_files);
    return noErr;
}

SInt16 FlagsOf(Objects& ioObjects, const Volume& inVolume) {
    int flags = 0;
    if (inVolume.isReadOnly) flags |= kioVAtrbHardwareLockedMask;
    if (inVolume.options & kPlatformMountSoftwareLocked) flags |= kioVAtrbSoftwareLockedMask;
    if (CurrentDirectory(ioObjects).volume == inVolume.number) flags |= kioVAtrbDefaultVolumeMask;
    if (HasOpenForks(inVolume.number)) flags |= kioVAtrbFilesOpenMask;
    return SInt16(flags);
}

// Both records have these fields.
template <typename Record>
void PutSizes(const Space& inSpace, Record* outRecord) {
    const UInt32 size = BlockSizeFor(inSpace.total);
    outRecord->ioVAlBlkSiz = size;
    outRecord->ioVClpSiz = size;
    outRecord->ioVNmAlBlks = BlocksOf(inSpace.total, size);
    outRecord->ioVFrBlk = BlocksOf(inSpace.free, size);
    outRecord->ioVFilCnt = UInt32(std::min<UInt64>(inSpace.files, 0xFFFFFFFF));
    outRecord->ioVDirCnt = 0;
}

template <typename Record>
OSErr PutRoot(Objects& ioObjects, const Volume& inVolume, Record* outRecord) {
    Object root;
    Folder folder;
    if (const OSErr error = ioObjects.FindRoot(inVolume, &root)) return error;
    if (const OSErr error = ioObjects.AllFolders().FindByPath(inVolume.root, &folder)) return error;
    outRecord->ioVCrDate = ClassicDate(CreationTimeOf(root.status, MetadataOf(root).facts));
    outRecord->ioVLsMod = ClassicDate(root.status.modified.tv_sec);
    UInt32 files = 0;
    if (const OSErr error = ioObjects.Listings().CountFiles(folder, &files)) return error;
    outRecord->ioVNmFls = UInt16(std::min<UInt32>(files, 0xFFFF));
    return noErr;
}

template <typename Record>
void PutKind(Objects& ioObjects, const Volume& inVolume, Record* outRecord) {
    outRecord->ioVRefNum = inVolume.number;
    outRecord->ioVAtrb = FlagsOf(ioObjects, inVolume);
    outRecord->ioVBitMap = 0;
    outRecord->ioAllocPtr = 0;
    outRecord->ioAlBlSt = 0;
    outRecord->ioVNxtCNID = UInt32(ioObjects.AllFolders().TableOf(inVolume).NextNumber());
    outRecord->ioVSigWord = kSignature;
    outRecord->ioVDrvInfo = DriveOf(inVolume);
    outRecord->ioVDRefNum = SInt16(kFirstDriver - DriveOf(inVolume));
    outRecord->ioVFSID = IsRemote(inVolume) ? kServerFileSystem : kLocalFileSystem;
    outRecord->ioVBkUp = inVolume.backedUp;
    outRecord->ioVSeqNum = 0;
    outRecord->ioVWrCnt = 0;
    std::memset(outRecord->ioVFndrInfo, 0, sizeof outRecord->ioVFndrInfo);
}

template <typename Record>
OSErr GetVolume(Record* ioRecord, Space* outSpace) {
    const Catalog catalog;
    const Volume* found =
        VolumeByIndex(*catalog, ioRecord->ioVolIndex, ioRecord->ioNamePtr, ioRecord->ioVRefNum);
    if (!found) return nsvErr;
    const Volume volume = *found;
    if (const OSErr error = SpaceOf(volume, outSpace)) return error;
    if (const OSErr error = PutRoot(*catalog, volume, ioRecord)) return error;
    PutKind(*catalog, volume, ioRecord);
    PutSizes(*outSpace, ioRecord);
    if (ioRecord->ioNamePtr) SetPascal(volume.name, kLongestVolumeName, ioRecord->ioNamePtr);
    return noErr;
}

OSErr GetVolumeWithSizes(XVolumeParam* ioRecord) {
    if (ioRecord->ioXVersion != 0) return paramErr;
    Space space;
    if (const OSErr error = GetVolume(ioRecord, &space)) return error;
    ioRecord->ioVTotalBytes = space.total;
    ioRecord->ioVFreeBytes = space.free;
    return noErr;
}

OSErr SetVolume(const HVolumeParam& inRecord) {
    const Catalog catalog;
    const Volume* volume = VolumeByName(*catalog, inRecord.ioNamePtr, inRecord.ioVRefNum);
    if (!volume) return nsvErr;
    const bool isLocked = inRecord.ioVAtrb & kioVAtrbSoftwareLockedMask;
    const OptionBits others = volume->options & ~OptionBits(kPlatformMountSoftwareLocked);
    const OptionBits options = others | (isLocked ? kPlatformMountSoftwareLocked : 0);
    VolumeRegistry& registry = catalog->AllFolders().Registry();
    return registry.ChangeFolder(volume->number, options, inRecord.ioVBkUp);
}

}  // namespace

}  // namespace carbon

OSErr PBHGetVInfoSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->volumeParam, [](HVolumeParam& ioRecord) {
        carbon::Space space;
        return carbon::GetVolume(&ioRecord, &space);
    });
}

OSErr PBXGetVolInfoSync(XVolumeParamPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(
        paramBlock, [](XVolumeParam& ioRecord) { return carbon::GetVolumeWithSizes(&ioRecord); });
}

OSErr PBSetVInfoSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->volumeParam,
                           [](HVolumeParam& inRecord) { return carbon::SetVolume(inRecord); });
}
