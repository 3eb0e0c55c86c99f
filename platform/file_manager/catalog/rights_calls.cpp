// Owns the calls on owners, groups and rights of folders and files.
#include <Carbon/MacErrors.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/located.h"
#include "file_manager/catalog/rights.h"
#include "file_manager/parameter_block.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr mode_t kRightsBits = 0777;
constexpr mode_t kModeBits = 07777;
constexpr UInt32 kTold = 0xFF000000;  // what is told about the caller, and is not set

struct Ownership {
    uid_t user;
    gid_t group;
    mode_t mode;
};

OSErr ChangeMode(const std::string& inPath, mode_t inMode) {
    return chmod(inPath.c_str(), inMode) == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

// All or nothing. The owner first: giving a file away clears some bits of its mode.
OSErr SetOwnership(const Object& inObject, const Ownership& inNew) {
    const ObjectStatus& status = inObject.status;
    const bool isGivenAway = inNew.user != status.user || inNew.group != status.group;
    if (status.IsLink()) return paramErr;
    if (geteuid() != 0 && geteuid() != status.user) return afpAccessDenied;
    if (isGivenAway && lchown(inObject.path.c_str(), inNew.user, inNew.group) != 0)
        return OSErrFromErrno(errno);
    const OSErr error = ChangeMode(inObject.path, inNew.mode);
    if (error != noErr && isGivenAway) {
        const int result = lchown(inObject.path.c_str(), status.user, status.group);
        return result == 0 ? error : OSErr(ioErr);
    }
    return error;
}

OSErr LocateForAccess(Objects& ioObjects, const AccessParam& inRecord, Located* outLocated) {
    const OSErr error =
        Locate(ioObjects, inRecord.ioVRefNum, inRecord.ioDirID, inRecord.ioNamePtr, outLocated);
    if (error != noErr) return error;
    if (Lacks(outLocated->volume, kPlatformMountNoAccessControl)) return paramErr;
    return outLocated->object.status.IsFolder() ? OSErr(noErr) : OSErr(fnfErr);
}

OSErr GetAccess(AccessParam* ioRecord) {
    const Catalog catalog;
    Located located;
    const OSErr error = LocateForAccess(*catalog, *ioRecord, &located);
    if (error != noErr) return error;
    const ObjectStatus& status = located.object.status;
    const bool isOwner = status.user == geteuid();
    ioRecord->ioACOwnerID = SInt32(status.user);
    ioRecord->ioACGroupID = SInt32(status.group);
    ioRecord->ioACAccess =
        SInt32(AccessFromMode(status.mode, UserAccessTo(located.object), isOwner));
    return noErr;
}

// The bits about the caller may come as they would be told afterwards, so that what was got from
// one folder can be set for another.
OSErr CheckAccess(UInt32 inAccess, const Ownership& inNew) {
    const UInt32 told = AccessFromMode(inNew.mode, OwnRights(inNew.mode, inNew.user, inNew.group),
                                       inNew.user == geteuid());
    const UInt32 asked = inAccess & kTold;
    return asked == 0 || asked == (told & kTold) ? OSErr(noErr) : OSErr(paramErr);
}

OSErr SetAccess(const AccessParam& inRecord) {
    const Catalog catalog;
    Located located;
    OSErr error = LocateForAccess(*catalog, inRecord, &located);
    if (error == noErr) error = CheckWritable(located.volume);
    if (error != noErr) return error;
    const auto access = UInt32(inRecord.ioACAccess);
    const mode_t others = located.object.status.mode & kModeBits & ~kRightsBits;
    const Ownership ownership{uid_t(inRecord.ioACOwnerID), gid_t(inRecord.ioACGroupID),
                              mode_t(others | ModeFromAccess(access))};
    error = CheckAccess(access, ownership);
    return error == noErr ? SetOwnership(located.object, ownership) : error;
}

OSErr LocateForeign(Objects& ioObjects, const ForeignPrivParam& inRecord, Located* outLocated) {
    return Locate(ioObjects, inRecord.ioVRefNum, inRecord.ioForeignPrivDirID, inRecord.ioNamePtr,
                  outLocated);
}

OSErr GetForeign(ForeignPrivParam* ioRecord) {
    const Catalog catalog;
    Located located;
    const OSErr error = LocateForeign(*catalog, *ioRecord, &located);
    if (error != noErr) return error;
    const ObjectStatus& status = located.object.status;
    ioRecord->ioForeignPrivActCount = 0;
    ioRecord->ioForeignPrivInfo1 = SInt32(status.user);
    ioRecord->ioForeignPrivInfo2 = SInt32(status.group);
    ioRecord->ioForeignPrivInfo3 = SInt32(status.mode & kModeBits);
    ioRecord->ioForeignPrivInfo4 = UserAccessTo(located.object);
    return noErr;
}

OSErr SetForeign(const ForeignPrivParam& inRecord) {
    const Catalog catalog;
    Located located;
    OSErr error = LocateForeign(*catalog, inRecord, &located);
    if (error == noErr) error = CheckWritable(located.volume);
    if (error != noErr) return error;
    if (inRecord.ioForeignPrivInfo3 & ~SInt32(kModeBits)) return paramErr;
    return SetOwnership(located.object,
                        {uid_t(inRecord.ioForeignPrivInfo1), gid_t(inRecord.ioForeignPrivInfo2),
                         mode_t(inRecord.ioForeignPrivInfo3)});
}

// Linux: no volume here is a server's that one logs in to, and none shares its folders.
OSErr RefuseServerCall(HParmBlkPtr ioBlock) {
    return ioBlock ? Perform(&ioBlock->fileParam, [](HFileParam&) { return OSErr(paramErr); })
                   : OSErr(paramErr);
}

}  // namespace

}  // namespace carbon

OSErr PBHGetDirAccessSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->accessParam,
                           [](AccessParam& ioRecord) { return carbon::GetAccess(&ioRecord); });
}

OSErr PBHSetDirAccessSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->accessParam,
                           [](AccessParam& inRecord) { return carbon::SetAccess(inRecord); });
}

OSErr PBHGetLogInInfoSync(HParmBlkPtr paramBlock) {
    return carbon::RefuseServerCall(paramBlock);
}

OSErr PBShareSync(HParmBlkPtr paramBlock) {
    return carbon::RefuseServerCall(paramBlock);
}

OSErr PBUnshareSync(HParmBlkPtr paramBlock) {
    return carbon::RefuseServerCall(paramBlock);
}

OSErr PBGetForeignPrivsSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->foreignPrivParam, [](ForeignPrivParam& ioRecord) {
        return carbon::GetForeign(&ioRecord);
    });
}

OSErr PBSetForeignPrivsSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->foreignPrivParam,
                           [](ForeignPrivParam& inRecord) { return carbon::SetForeign(inRecord); });
}
