// Owns the calls that tell where applications are.
#include <Carbon/Files.h>

#include "desktop_manager/open_databases.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/pathname.h"

namespace carbon {

namespace {

OSErr Add(DTPBRec& ioBlock) {
    return WithDesktop(ioBlock.ioDTRefNum, [&](Objects& ioObjects, FSVolumeRefNum inVolume,
                                               DesktopDatabase& ioDatabase) {
        Object object;
        const OSErr error =
            FindByPathname(ioObjects, inVolume, ioBlock.ioDirID, ioBlock.ioNamePtr, &object);
        if (error) return error;
        if (object.status.IsFolder() || object.spec.vRefNum != inVolume) return OSErr(fnfErr);
        const auto row = RowOf(object, ioBlock.ioFileCreator);
        return ioDatabase.Add(row) ? OSErr(noErr) : OSErr(ioErr);
    });
}

// The file may be gone, and its name may be spelled in another way than it was on disk.
OSErr Remove(DTPBRec& ioBlock) {
    return WithDesktop(ioBlock.ioDTRefNum, [&](Objects& ioObjects, FSVolumeRefNum inVolume,
                                               DesktopDatabase& ioDatabase) {
        Object object;
        const OSErr error =
            FindByPathname(ioObjects, inVolume, ioBlock.ioDirID, ioBlock.ioNamePtr, &object);
        if (error == dirNFErr) return OSErr(afpItemNotFound);
        if (error != noErr && error != fnfErr) return error;
        const auto name = Folded(TextOfPascal(object.spec.name));
        for (const auto& row : ioDatabase.All(false)) {
            if (row.creator != ioBlock.ioFileCreator || row.parent != object.spec.parID) continue;
            if (Folded(row.name) != name) continue;
            return ioDatabase.Remove(row) ? OSErr(noErr) : OSErr(ioErr);
        }
        return OSErr(afpItemNotFound);
    });
}

OSErr Get(DTPBRec& ioBlock) {
    if (ioBlock.ioIndex < 0) return paramErr;
    return WithDesktop(
        ioBlock.ioDTRefNum, [&](Objects&, FSVolumeRefNum, DesktopDatabase& ioDatabase) {
            const auto found = ioDatabase.Find(ioBlock.ioFileCreator, ioBlock.ioIndex);
            if (!found) return OSErr(afpItemNotFound);
            if (ioBlock.ioNamePtr) SetPascal(found->name, kLongestSpecName, ioBlock.ioNamePtr);
            ioBlock.ioAPPLParID = found->parent;
            ioBlock.ioTagInfo = SInt32(found->created);
            return OSErr(noErr);
        });
}

}  // namespace

}  // namespace carbon

OSErr PBDTAddAPPLSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Add);
}

OSErr PBDTRemoveAPPLSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Remove);
}

OSErr PBDTGetAPPLSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Get);
}
