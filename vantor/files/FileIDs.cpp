// File IDs and exchanging contents.
#include "vantor/files/FileIDs.h"

#include <algorithm>

#include "vantor/files/Locations.h"
#include "vantor/files/VolumeInfo.h"

namespace {

HParamBlockRec IDBlock(FSVolumeRefNum inVRefNum, ConstStr255Param inName) {
    HParamBlockRec block = {};
    block.fidParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.fidParam.ioVRefNum = inVRefNum;
    return block;
}

}  // namespace

OSErr CreateFileIDRef(FSVolumeRefNum inVRefNum, SInt32 inParentID, ConstStr255Param inName,
                      SInt32* outFileID) {
    HParamBlockRec block = IDBlock(inVRefNum, inName);
    block.fidParam.ioSrcDirID = inParentID;
    const OSErr err = PBCreateFileIDRefSync(&block);
    if (err == noErr || err == fidExists) *outFileID = block.fidParam.ioFileID;
    return err;
}

OSErr FSpCreateFileIDRef(const FSSpec* inSpec, SInt32* outFileID) {
    return CreateFileIDRef(inSpec->vRefNum, inSpec->parID, inSpec->name, outFileID);
}

OSErr ResolveFileIDRef(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt32 inFileID,
                       SInt32* outParentID, StringPtr outName) {
    Str255 name = {};  // names the volume, then the file
    if (inVolumeName != nullptr) std::copy_n(inVolumeName, inVolumeName[0] + 1, name);
    HParamBlockRec block = IDBlock(inVRefNum, name);
    block.fidParam.ioFileID = inFileID;
    const OSErr err = PBResolveFileIDRefSync(&block);
    if (err != noErr) return err;
    *outParentID = block.fidParam.ioSrcDirID;
    if (outName != nullptr) std::copy_n(name, name[0] + 1, outName);
    return noErr;
}

OSErr FSpResolveFileIDRef(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt32 inFileID,
                          FSSpec* outSpec) {
    const OSErr err = DetermineVRefNum(inVolumeName, inVRefNum, &outSpec->vRefNum);
    if (err != noErr) return err;
    SInt32 parentID;
    Str255 name;
    const OSErr found = ResolveFileIDRef(inVolumeName, inVRefNum, inFileID, &parentID, name);
    if (found != noErr) return found;
    outSpec->parID = parentID;
    TruncPString(outSpec->name, name, sizeof outSpec->name - 1);
    return noErr;
}

OSErr DeleteFileIDRef(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt32 inFileID) {
    HParamBlockRec block = IDBlock(inVRefNum, inVolumeName);
    block.fidParam.ioFileID = inFileID;
    return PBDeleteFileIDRefSync(&block);
}

OSErr ExchangeFiles(FSVolumeRefNum inVRefNum, SInt32 inSourceDirID, ConstStr255Param inSourceName,
                    SInt32 inDestinationDirID, ConstStr255Param inDestinationName) {
    HParamBlockRec block = IDBlock(inVRefNum, inSourceName);
    block.fidParam.ioSrcDirID = inSourceDirID;
    block.fidParam.ioDestDirID = inDestinationDirID;
    block.fidParam.ioDestNamePtr = const_cast<StringPtr>(inDestinationName);
    return PBExchangeFilesSync(&block);
}
