// Owns the calls on icons.
#include <Carbon/Files.h>

#include <algorithm>
#include <cstring>

#include "desktop_manager/open_databases.h"

namespace carbon {

namespace {

OSErr Add(DTPBRec& ioBlock) {
    if (ioBlock.ioDTReqCount < 0 || (!ioBlock.ioDTBuffer && ioBlock.ioDTReqCount > 0)) {
        return paramErr;
    }
    return WithDesktop(
        ioBlock.ioDTRefNum, [&](Objects&, FSVolumeRefNum, DesktopDatabase& ioDatabase) {
            const DesktopIcon icon{ioBlock.ioFileCreator, ioBlock.ioFileType, ioBlock.ioIconType,
                                   ioBlock.ioTagInfo,
                                   std::string(ioBlock.ioDTBuffer, size_t(ioBlock.ioDTReqCount))};
            const auto old = ioDatabase.FindIcon(icon.creator, icon.type, icon.kind);
            if (old && old->bits.size() != icon.bits.size()) return OSErr(afpIconTypeError);
            return ioDatabase.Add(icon) ? OSErr(noErr) : OSErr(ioErr);
        });
}

OSErr Get(DTPBRec& ioBlock) {
    ioBlock.ioDTActCount = 0;
    if (ioBlock.ioDTReqCount < 0 || !ioBlock.ioDTBuffer) return paramErr;
    return WithDesktop(
        ioBlock.ioDTRefNum, [&](Objects&, FSVolumeRefNum, DesktopDatabase& ioDatabase) {
            const auto icon =
                ioDatabase.FindIcon(ioBlock.ioFileCreator, ioBlock.ioFileType, ioBlock.ioIconType);
            if (!icon) return OSErr(afpItemNotFound);
            const size_t length = std::min(icon->bits.size(), size_t(ioBlock.ioDTReqCount));
            std::memcpy(ioBlock.ioDTBuffer, icon->bits.data(), length);
            ioBlock.ioDTActCount = SInt32(length);
            return OSErr(noErr);
        });
}

OSErr GetInfo(DTPBRec& ioBlock) {
    if (ioBlock.ioIndex < 1) return paramErr;
    return WithDesktop(
        ioBlock.ioDTRefNum, [&](Objects&, FSVolumeRefNum, DesktopDatabase& ioDatabase) {
            const auto icon = ioDatabase.FindIcon(ioBlock.ioFileCreator, ioBlock.ioIndex);
            if (!icon) return OSErr(afpItemNotFound);
            ioBlock.ioFileType = icon->type;
            ioBlock.ioIconType = icon->kind;
            ioBlock.ioTagInfo = icon->tag;
            ioBlock.ioDTActCount = SInt32(icon->bits.size());
            return OSErr(noErr);
        });
}

}  // namespace

}  // namespace carbon

OSErr PBDTAddIconSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Add);
}

OSErr PBDTGetIconSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Get);
}

OSErr PBDTGetIconInfoSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::GetInfo);
}
