// Handing mount records to and from the File Manager.
#include "vantor/files/MountRecords.h"

namespace {

ParamBlockRec VolumeBlock(ConstStr255Param inName, FSVolumeRefNum inVRefNum, void* inBuffer) {
    ParamBlockRec block = {};
    block.ioParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.ioParam.ioVRefNum = inVRefNum;
    block.ioParam.ioBuffer = static_cast<Ptr>(inBuffer);
    return block;
}

}  // namespace

OSErr GetVolMountInfoSize(ConstStr255Param inName, FSVolumeRefNum inVRefNum, SInt16* outSize) {
    ParamBlockRec block = VolumeBlock(inName, inVRefNum, outSize);
    return PBGetVolMountInfoSize(&block);
}

OSErr GetVolMountInfo(ConstStr255Param inName, FSVolumeRefNum inVRefNum, void* outRecord) {
    ParamBlockRec block = VolumeBlock(inName, inVRefNum, outRecord);
    return PBGetVolMountInfo(&block);
}

OSErr VolumeMount(const void* inRecord, FSVolumeRefNum* outVRefNum) {
    ParamBlockRec block = VolumeBlock(nullptr, 0, const_cast<void*>(inRecord));
    const OSErr err = PBVolumeMount(&block);
    if (err == noErr) *outVRefNum = block.ioParam.ioVRefNum;
    return err;
}
