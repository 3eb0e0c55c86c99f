// Walking the mounted volumes and asking their desktop databases.
#include "vantor/files/UVolume.h"

#include "vantor/files/VolumeParameters.h"
#include "vantor/foundation/LException.h"

namespace {

// Asks for the volume at an index; the name, which may be null, receives its name.
OSErr AskIndexedVolume(HParamBlockRec& outBlock, SInt16 inIndex, StringPtr outName) {
    outBlock = {};
    outBlock.volumeParam.ioNamePtr = outName;
    outBlock.volumeParam.ioVolIndex = inIndex;
    return PBHGetVInfoSync(&outBlock);
}

bool IsNotFound(OSErr inError) {
    return inError == fnfErr || inError == afpItemNotFound;
}

SInt16 OpenDesktopDatabase(FSVolumeRefNum inVRefNum) {
    DTPBRec block = {};
    block.ioVRefNum = inVRefNum;
    ThrowIfError(PBDTGetPath(&block));
    return block.ioDTRefNum;
}

}  // namespace

SInt16 UVolume::GetNumVolumes() {
    constexpr SInt16 kMost = 0x7FFF;
    HParamBlockRec block;
    Str255 name;
    SInt16 last = 0;
    while (last < kMost && AskIndexedVolume(block, SInt16(last + 1), name) == noErr) ++last;
    return last;
}

bool UVolume::IsSearchable(SInt16 inIndex) {
    HParamBlockRec block;
    Str255 name;
    ThrowIfError(AskIndexedVolume(block, inIndex, name));
    return block.volumeParam.ioVFSID == 0;
}

SInt16 UVolume::GetIndVolume(SInt16 inIndex) {
    HParamBlockRec block;
    ThrowIfError(AskIndexedVolume(block, inIndex, nullptr));
    return block.volumeParam.ioVRefNum;
}

bool UVolume::VolHasDesktopDB(SInt16 inVRefNum) {
    constexpr SInt32 kParametersLength = 32;
    GetVolParmsInfoBuffer parameters = {};
    HParamBlockRec block = {};
    block.ioParam.ioVRefNum = inVRefNum;
    block.ioParam.ioBuffer = reinterpret_cast<Ptr>(&parameters);
    block.ioParam.ioReqCount = kParametersLength;
    ThrowIfError(PBHGetVolParmsSync(&block));
    return hasDesktopMgr(&parameters);
}

bool UVolume::FindAppOnVolume(OSType inCreator, SInt16 inVRefNum, FSSpec& outSpec) {
    DTPBRec block = {};
    block.ioDTRefNum = OpenDesktopDatabase(inVRefNum);
    block.ioFileCreator = inCreator;
    block.ioNamePtr = outSpec.name;
    const OSErr err = PBDTGetAPPLSync(&block);
    // Kept: the file spec is written in part also when nothing was found.
    outSpec.vRefNum = inVRefNum;
    outSpec.parID = block.ioAPPLParID;
    if (IsNotFound(err)) return false;
    ThrowIfError(err);
    return true;
}

bool UVolume::FindApp(OSType inCreator, FSSpec& outSpec) {
    const SInt16 count = GetNumVolumes();
    for (SInt32 index = 1; index <= count; ++index) {
        if (!IsSearchable(SInt16(index))) continue;
        const SInt16 volume = GetIndVolume(SInt16(index));
        if (VolHasDesktopDB(volume) && FindAppOnVolume(inCreator, volume, outSpec)) return true;
    }
    return false;
}

bool UVolume::IsApplication(const FSSpec& inSpec) {
    FInfo info;
    ThrowIfError(FSpGetFInfo(&inSpec, &info));
    const OSType type = info.fdType;
    return type == 'APPL' || type == 'appe' || type == 'APPC' || type == 'APPD';
}
