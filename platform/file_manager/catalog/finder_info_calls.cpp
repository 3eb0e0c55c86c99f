// Owns the calls that set what the Finder keeps: types, flags, dates, locks.
#include <Carbon/MacErrors.h>
#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/classic_dates.h"
#include "file_manager/catalog/finder_info.h"
#include "file_manager/catalog/located.h"
#include "file_manager/parameter_block.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

// What a record sets. A date of 0 is none: the creation and modification dates stay.
struct Settings {
    const void* finderInfo;
    const void* extFinderInfo = nullptr;
    UInt32 created = 0;
    UInt32 modified = 0;
    const UInt32* backedUp = nullptr;
};

OSErr SetModified(const Object& inObject, UInt32 inDate) {
    const auto time = UnixTimeOfClassicDate(inDate);
    const timespec& before = inObject.status.modified;
    const bool isSame = ClassicDate(before.tv_sec) == inDate;
    if (!time || (isSame && !inObject.status.IsFolder())) return noErr;
    // The part below a second stays where the date does.
    const timespec times[2] = {{0, UTIME_OMIT}, isSame ? before : timespec{*time, 0}};
    const int result = utimensat(AT_FDCWD, inObject.path.c_str(), times, AT_SYMLINK_NOFOLLOW);
    return result == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

void SetCreated(const Object& inObject, UInt32 inDate, Metadata* ioMetadata) {
    const auto time = UnixTimeOfClassicDate(inDate);
    const SInt64 now = CreationTimeOf(inObject.status, ioMetadata->facts);
    if (time && ClassicDate(now) != inDate) ioMetadata->facts.created = *time;
}

void SetBackedUp(UInt32 inDate, Metadata* ioMetadata) {
    const auto now = ioMetadata->facts.backedUp;
    if ((now ? ClassicDate(*now) : 0) != inDate)
        ioMetadata->facts.backedUp = UnixTimeOfClassicDate(inDate);
}

// The modification date comes last: a volume's root is touched by its own companion.
OSErr Apply(const Object& inObject, const Settings& inSettings) {
    const OSErr error = ChangeMetadata(inObject, [&](Metadata* ioMetadata) {
        std::memcpy(ioMetadata->finderInfo, inSettings.finderInfo, sizeof(FInfo));
        if (inSettings.extFinderInfo)
            std::memcpy(ioMetadata->extFinderInfo, inSettings.extFinderInfo, sizeof(FXInfo));
        SetCreated(inObject, inSettings.created, ioMetadata);
        if (inSettings.backedUp) SetBackedUp(*inSettings.backedUp, ioMetadata);
    });
    return error == noErr ? SetModified(inObject, inSettings.modified) : error;
}

// Folders stay open to change when locked: the Finder goes on keeping their windows.
OSErr CheckSettable(const Located& inLocated) {
    const bool isFolder = inLocated.object.status.IsFolder();
    return isFolder ? CheckWritable(inLocated.volume) : CheckChangeable(inLocated);
}

OSErr SetCatalogRecord(const CInfoPBRec& inRecord) {
    const HFileInfo& file = inRecord.hFileInfo;
    const Catalog catalog;
    Located located;
    OSErr error = Locate(*catalog, file.ioVRefNum, file.ioDirID, file.ioNamePtr, &located);
    if (error == noErr) error = CheckSettable(located);
    if (error != noErr) return error;
    // The records of files and folders have all of these at the same places.
    return Apply(located.object, {&file.ioFlFndrInfo, &file.ioFlXFndrInfo, file.ioFlCrDat,
                                  file.ioFlMdDat, &file.ioFlBkDat});
}

OSErr LocateFile(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                 ConstStr255Param inName, Located* outLocated) {
    const OSErr error = Locate(ioObjects, inVolume, inDirectory, inName, outLocated);
    if (error != noErr) return error;
    return outLocated->object.status.IsFolder() ? OSErr(fnfErr) : OSErr(noErr);
}

OSErr GetInfo(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName,
              FInfo* outInfo) {
    if (!outInfo) return paramErr;
    const Catalog catalog;
    Located located;
    const OSErr error = LocateFile(*catalog, inVolume, inDirectory, inName, &located);
    if (error != noErr) return error;
    const Metadata metadata = MetadataOf(located.object);
    std::memcpy(outInfo, metadata.finderInfo, sizeof *outInfo);
    return noErr;
}

OSErr SetInfo(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName,
              const Settings& inSettings) {
    const Catalog catalog;
    Located located;
    OSErr error = LocateFile(*catalog, inVolume, inDirectory, inName, &located);
    if (error == noErr) error = CheckChangeable(located);
    return error == noErr ? Apply(located.object, inSettings) : error;
}

OSErr SetLock(FSVolumeRefNum inVolume, SInt32 inDirectory, ConstStr255Param inName,
              bool inIsLocked) {
    const Catalog catalog;
    Located located;
    OSErr error = Locate(*catalog, inVolume, inDirectory, inName, &located);
    if (error == noErr) error = CheckWritable(located.volume);
    if (error != noErr) return error;
    const ObjectStatus& status = located.object.status;
    if (status.IsFolder() && Lacks(located.volume, kPlatformMountNoFolderLock))
        return afpObjectTypeErr;
    // Linux: what the system itself made immutable only the system's administrator releases.
    if (status.isImmutable) return inIsLocked ? OSErr(noErr) : OSErr(afpAccessDenied);
    return ChangeMetadata(located.object,
                          [&](Metadata* ioMetadata) { ioMetadata->facts.isLocked = inIsLocked; });
}

OSErr SetLock(const HFileParam& inRecord, bool inIsLocked) {
    return SetLock(inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr, inIsLocked);
}

}  // namespace

}  // namespace carbon

OSErr PBSetCatInfoSync(CInfoPBPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->hFileInfo,
                           [&](HFileInfo&) { return carbon::SetCatalogRecord(*paramBlock); });
}

OSErr PBHSetFInfoSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam, [](HFileParam& inRecord) {
        carbon::Settings settings{&inRecord.ioFlFndrInfo};
        settings.created = inRecord.ioFlCrDat;
        settings.modified = inRecord.ioFlMdDat;
        return carbon::SetInfo(inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr, settings);
    });
}

OSErr HGetFInfo(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, FInfo* fndrInfo) {
    return carbon::GetInfo(vRefNum, dirID, fileName, fndrInfo);
}

OSErr HSetFInfo(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName,
                const FInfo* fndrInfo) {
    return fndrInfo ? carbon::SetInfo(vRefNum, dirID, fileName, {fndrInfo}) : OSErr(paramErr);
}

OSErr FSpGetFInfo(const FSSpec* spec, FInfo* fndrInfo) {
    return spec ? HGetFInfo(spec->vRefNum, spec->parID, spec->name, fndrInfo) : OSErr(paramErr);
}

OSErr FSpSetFInfo(const FSSpec* spec, const FInfo* fndrInfo) {
    return spec ? HSetFInfo(spec->vRefNum, spec->parID, spec->name, fndrInfo) : OSErr(paramErr);
}

OSErr HSetFLock(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName) {
    return carbon::SetLock(vRefNum, dirID, fileName, true);
}

OSErr HRstFLock(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName) {
    return carbon::SetLock(vRefNum, dirID, fileName, false);
}

OSErr FSpSetFLock(const FSSpec* spec) {
    return spec ? HSetFLock(spec->vRefNum, spec->parID, spec->name) : OSErr(paramErr);
}

OSErr FSpRstFLock(const FSSpec* spec) {
    return spec ? HRstFLock(spec->vRefNum, spec->parID, spec->name) : OSErr(paramErr);
}

OSErr PBHSetFLockSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam,
                           [](HFileParam& inRecord) { return carbon::SetLock(inRecord, true); });
}

OSErr PBHRstFLockSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fileParam,
                           [](HFileParam& inRecord) { return carbon::SetLock(inRecord, false); });
}
