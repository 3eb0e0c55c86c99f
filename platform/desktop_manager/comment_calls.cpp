// Owns the calls on comments, which lie in the companions of their objects.
#include <Carbon/Files.h>

#include <algorithm>
#include <cstring>

#include "desktop_manager/open_databases.h"
#include "file_manager/catalog/pathname.h"
#include "file_manager/metadata/metadata.h"
#include "file_manager/volumes/capabilities.h"

namespace carbon {

namespace {

constexpr SInt32 kLongestComment = 200;

template <typename Work>
OSErr WithObject(DTPBRec& ioBlock, Work inWork) {
    return WithDesktop(
        ioBlock.ioDTRefNum, [&](Objects& ioObjects, FSVolumeRefNum inVolume, DesktopDatabase&) {
            Object object;
            const OSErr error =
                FindByPathname(ioObjects, inVolume, ioBlock.ioDirID, ioBlock.ioNamePtr, &object);
            return error ? error : OSErr(inWork(ioObjects, object));
        });
}

// The comment is on the volume itself, unlike all else that is kept by these calls.
OSErr Write(Objects& ioObjects, const Object& inObject, const std::string& inComment) {
    const Volume* volume = ioObjects.AllFolders().FindVolume(inObject.spec.vRefNum);
    if (const OSErr error = volume ? CheckWritable(*volume) : OSErr(nsvErr)) return error;
    return ChangeMetadata(inObject,
                          [&](Metadata* ioMetadata) { ioMetadata->facts.comment = inComment; });
}

OSErr Set(DTPBRec& ioBlock) {
    if (ioBlock.ioDTReqCount < 0 || (!ioBlock.ioDTBuffer && ioBlock.ioDTReqCount > 0)) {
        return paramErr;
    }
    const SInt32 length = std::min<SInt32>(ioBlock.ioDTReqCount, kLongestComment);
    const std::string comment(ioBlock.ioDTBuffer, size_t(length));
    return WithObject(ioBlock, [&](Objects& ioObjects, const Object& inObject) {
        return Write(ioObjects, inObject, comment);
    });
}

OSErr Get(DTPBRec& ioBlock) {
    ioBlock.ioDTActCount = 0;
    if (ioBlock.ioDTReqCount < 0 || !ioBlock.ioDTBuffer) return paramErr;
    return WithObject(ioBlock, [&](Objects&, const Object& inObject) {
        Metadata metadata;
        if (const OSErr error = ReadMetadata(inObject, &metadata)) return error;
        const auto& comment = metadata.facts.comment;
        if (comment.empty()) return OSErr(afpItemNotFound);
        const size_t length = std::min(comment.size(), size_t(ioBlock.ioDTReqCount));
        std::memcpy(ioBlock.ioDTBuffer, comment.data(), length);
        ioBlock.ioDTActCount = SInt32(length);
        return OSErr(noErr);
    });
}

OSErr Remove(DTPBRec& ioBlock) {
    return WithObject(ioBlock, [](Objects& ioObjects, const Object& inObject) {
        Metadata metadata;
        if (const OSErr error = ReadMetadata(inObject, &metadata)) return error;
        return metadata.facts.comment.empty() ? OSErr(afpItemNotFound)
                                              : Write(ioObjects, inObject, "");
    });
}

}  // namespace

}  // namespace carbon

OSErr PBDTSetCommentSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Set);
}

OSErr PBDTGetCommentSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Get);
}

OSErr PBDTRemoveCommentSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Remove);
}
