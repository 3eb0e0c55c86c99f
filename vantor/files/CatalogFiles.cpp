// Files in the catalog: their lengths, making one.
#include "vantor/files/Catalog.h"

namespace {

HParamBlockRec FileBlock(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    HParamBlockRec block = {};
    block.fileParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.fileParam.ioVRefNum = inVRefNum;
    block.fileParam.ioDirID = inDirID;
    return block;
}

}  // namespace

OSErr GetFileSize(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                  SInt32* outDataLength, SInt32* outResourceLength) {
    HParamBlockRec block = FileBlock(inVRefNum, inDirID, inName);
    const OSErr err = PBHGetFInfoSync(&block);
    if (err != noErr) return err;
    *outDataLength = block.fileParam.ioFlLgLen;
    *outResourceLength = block.fileParam.ioFlRLgLen;
    return noErr;
}

OSErr FSpGetFileSize(const FSSpec* inSpec, SInt32* outDataLength, SInt32* outResourceLength) {
    return GetFileSize(inSpec->vRefNum, inSpec->parID, inSpec->name, outDataLength,
                       outResourceLength);
}

OSErr HCreateMinimum(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName) {
    HParamBlockRec block = FileBlock(inVRefNum, inDirID, inName);
    return PBHCreateSync(&block);
}

OSErr FSpCreateMinimum(const FSSpec* inSpec) {
    return HCreateMinimum(inSpec->vRefNum, inSpec->parID, inSpec->name);
}
