// Reading and writing comments.
#include "vantor/files/Comments.h"

#include <algorithm>

#include "vantor/files/CatalogEntry.h"
#include "vantor/files/DesktopDatabase.h"
#include "vantor/files/DesktopFile.h"
#include "vantor/files/VolumeInfo.h"

namespace {

constexpr UInt8 kLongestComment = 200;

DTPBRec CommentBlock(SInt16 inDTRefNum, SInt32 inDirID, ConstStr255Param inName) {
    DTPBRec block = {};
    block.ioDTRefNum = inDTRefNum;
    block.ioDirID = inDirID;
    block.ioNamePtr = const_cast<StringPtr>(inName);
    return block;
}

OSErr ReadComment(SInt16 inDTRefNum, SInt32 inDirID, ConstStr255Param inName,
                  StringPtr outComment) {
    DTPBRec block = CommentBlock(inDTRefNum, inDirID, inName);
    block.ioDTBuffer = reinterpret_cast<Ptr>(outComment + 1);
    block.ioDTReqCount = 255;
    const OSErr err = PBDTGetCommentSync(&block);
    if (err == noErr) outComment[0] = UInt8(block.ioDTActCount);
    return err;
}

// The number of an object's comment in the desktop file; 0 when it has none.
OSErr GetCommentID(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                   SInt16* outID) {
    CatalogEntry entry;
    const OSErr err = entry.Read(inVRefNum, inDirID, inName);
    if (err == noErr) {
        *outID = entry.IsFolder() ? entry.info.dirInfo.ioDrFndrInfo.frComment
                                  : entry.info.hFileInfo.ioFlXFndrInfo.fdComment;
    }
    return err;
}

// From the current resource file, which holds comments as Pascal strings.
bool CopyCommentResource(SInt16 inID, StringPtr outComment) {
    const Handle resource = Get1Resource('FCMT', inID);
    const Size size = resource != nullptr ? GetHandleSize(resource) : 0;
    if (size <= 0) return false;
    const UInt8* const text = reinterpret_cast<const UInt8*>(*resource);
    outComment[0] = UInt8(std::min<Size>(text[0], size - 1));
    std::copy_n(text + 1, outComment[0], outComment + 1);
    return true;
}

bool ReadDesktopFileComment(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                            StringPtr outComment) {
    SInt16 id = 0;
    FSVolumeRefNum volume;
    Str255 desktopName;
    if (GetCommentID(inVRefNum, inDirID, inName, &id) != noErr || id == 0) return false;
    if (DetermineVRefNum(inName, inVRefNum, &volume) != noErr) return false;
    if (GetDesktopFileName(volume, desktopName) != noErr) return false;
    const StDesktopFile desktop(volume, desktopName);
    return desktop.IsOpen() && CopyCommentResource(id, outComment);
}

}  // namespace

OSErr DTSetComment(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                   ConstStr255Param inComment) {
    SInt16 desktop;
    Boolean isNew;
    const OSErr err = DTOpen(inName, inVRefNum, &desktop, &isNew);
    if (err != noErr) return err;
    DTPBRec block = CommentBlock(desktop, inDirID, inName);
    block.ioDTBuffer = reinterpret_cast<Ptr>(const_cast<StringPtr>(inComment + 1));
    block.ioDTReqCount = std::min(inComment[0], kLongestComment);
    return PBDTSetCommentSync(&block);
}

OSErr FSpDTSetComment(const FSSpec* inSpec, ConstStr255Param inComment) {
    return DTSetComment(inSpec->vRefNum, inSpec->parID, inSpec->name, inComment);
}

OSErr DTGetComment(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                   StringPtr outComment) {
    if (outComment == nullptr) return paramErr;
    outComment[0] = 0;
    SInt16 desktop;
    Boolean isNew;
    if (DTOpen(inName, inVRefNum, &desktop, &isNew) == noErr) {
        return isNew ? OSErr{noErr} : ReadComment(desktop, inDirID, inName, outComment);
    }
    const bool found = ReadDesktopFileComment(inVRefNum, inDirID, inName, outComment);
    return found ? OSErr{noErr} : OSErr{afpItemNotFound};
}

OSErr FSpDTGetComment(const FSSpec* inSpec, StringPtr outComment) {
    return DTGetComment(inSpec->vRefNum, inSpec->parID, inSpec->name, outComment);
}

OSErr DTCopyComment(FSVolumeRefNum inSourceVRefNum, SInt32 inSourceDirID,
                    ConstStr255Param inSourceName, FSVolumeRefNum inDestinationVRefNum,
                    SInt32 inDestinationDirID, ConstStr255Param inDestinationName) {
    Str255 comment;
    const OSErr err = DTGetComment(inSourceVRefNum, inSourceDirID, inSourceName, comment);
    if (err != noErr || comment[0] == 0) return err;
    return DTSetComment(inDestinationVRefNum, inDestinationDirID, inDestinationName, comment);
}

OSErr FSpDTCopyComment(const FSSpec* inSource, const FSSpec* inDestination) {
    return DTCopyComment(inSource->vRefNum, inSource->parID, inSource->name, inDestination->vRefNum,
                         inDestination->parID, inDestination->name);
}
