// Owns the calls between numbers and names of users and groups.
#include <Carbon/MacErrors.h>
#include <grp.h>
#include <pwd.h>

#include <optional>
#include <string>
#include <vector>

#include "file_manager/catalog/names.h"
#include "file_manager/parameter_block.h"
#include "file_manager/volumes/capabilities.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

constexpr size_t kLongestName = 31;

struct Someone {
    SInt16 type;  // kReturnNextUser or kReturnNextGroup
    SInt32 id;
    std::string name;  // UTF-8
};

// The catalog is held while the system's lists are read: they have one reader a process.
std::optional<Someone> UserOf(const passwd* inEntry) {
    if (!inEntry) return std::nullopt;
    return Someone{kReturnNextUser, SInt32(inEntry->pw_uid), inEntry->pw_name};
}

std::optional<Someone> GroupOf(const group* inEntry) {
    if (!inEntry) return std::nullopt;
    return Someone{kReturnNextGroup, SInt32(inEntry->gr_gid), inEntry->gr_name};
}

void TakeNearer(std::optional<Someone> inFound, SInt32 inAfter, std::optional<Someone>* ioNearest) {
    const bool isBehind = inFound && UInt32(inFound->id) > UInt32(inAfter);
    if (isBehind && (!*ioNearest || UInt32(inFound->id) < UInt32((*ioNearest)->id)))
        *ioNearest = std::move(inFound);
}

std::optional<Someone> NextAfter(SInt16 inTypes, SInt32 inId) {
    std::optional<Someone> nearest;
    if (inTypes & kReturnNextUser) {
        setpwent();
        while (const passwd* entry = getpwent()) TakeNearer(UserOf(entry), inId, &nearest);
        endpwent();
    }
    if (inTypes & kReturnNextGroup) {
        setgrent();
        while (const group* entry = getgrent()) TakeNearer(GroupOf(entry), inId, &nearest);
        endgrent();
    }
    return nearest;
}

void PutName(const Someone& inSomeone, StringPtr outName) {
    if (outName) SetPascal(SpecNameOf(inSomeone.name).value_or(""), kLongestName, outName);
}

OSErr CheckVolume(Objects& ioObjects, const ObjParam& inRecord, OptionBits inWithout) {
    const Volume* volume = VolumeByName(ioObjects, inRecord.ioNamePtr, inRecord.ioVRefNum);
    if (!volume) return nsvErr;
    return Lacks(*volume, inWithout) ? OSErr(paramErr) : OSErr(noErr);
}

OSErr MapID(ObjParam* ioRecord) {
    const Catalog catalog;
    const OSErr error = CheckVolume(*catalog, *ioRecord, kPlatformMountNoAccessControl);
    if (error != noErr) return error;
    std::optional<Someone> someone;
    if (ioRecord->ioObjType == kOwnerID2Name) {
        someone = UserOf(getpwuid(uid_t(ioRecord->ioObjID)));
    } else if (ioRecord->ioObjType == kGroupID2Name) {
        someone = GroupOf(getgrgid(gid_t(ioRecord->ioObjID)));
    } else {
        return paramErr;
    }
    if (!someone) return fnfErr;
    PutName(*someone, ioRecord->ioObjNamePtr);
    return noErr;
}

OSErr MapName(ObjParam* ioRecord) {
    const Catalog catalog;
    const OSErr error = CheckVolume(*catalog, *ioRecord, kPlatformMountNoAccessControl);
    if (error != noErr) return error;
    if (!ioRecord->ioObjNamePtr) return paramErr;
    const auto name = DiskNameOf(TextOfPascal(ioRecord->ioObjNamePtr));
    std::optional<Someone> someone;
    if (ioRecord->ioObjType == kOwnerName2ID) {
        someone = UserOf(getpwnam(name.c_str()));
    } else if (ioRecord->ioObjType == kGroupName2ID) {
        someone = GroupOf(getgrnam(name.c_str()));
    } else {
        return paramErr;
    }
    if (!someone) return fnfErr;
    ioRecord->ioObjID = someone->id;
    return noErr;
}

OSErr GetNext(ObjParam* ioRecord) {
    const Catalog catalog;
    const OSErr error = CheckVolume(*catalog, *ioRecord, kPlatformMountNoUserGroupList);
    if (error != noErr) return error;
    const SInt16 types = ioRecord->ioObjType;
    if (types < kReturnNextUser || types > kReturnNextUG) return paramErr;
    const auto next = NextAfter(types, ioRecord->ioObjID);
    if (!next) return fnfErr;
    ioRecord->ioObjType = next->type;
    ioRecord->ioObjID = next->id;
    PutName(*next, ioRecord->ioObjNamePtr);
    return noErr;
}

}  // namespace

}  // namespace carbon

OSErr PBHMapIDSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->objParam,
                           [](ObjParam& ioRecord) { return carbon::MapID(&ioRecord); });
}

OSErr PBHMapNameSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->objParam,
                           [](ObjParam& ioRecord) { return carbon::MapName(&ioRecord); });
}

OSErr PBGetUGEntrySync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->objParam,
                           [](ObjParam& ioRecord) { return carbon::GetNext(&ioRecord); });
}
