// Opening with deny modes, and without where a volume has none.
#include "vantor/files/OpenForks.h"
#include "vantor/files/VolumeInfo.h"
#include "vantor/files/VolumeParameters.h"

namespace {

using OpenCall = OSErr (*)(HParmBlkPtr);

OSErr OpenDataFork(HParmBlkPtr ioBlock) {
    const OSErr err = PBHOpenDFSync(ioBlock);
    return err == paramErr ? PBHOpenSync(ioBlock) : err;
}

struct Calls {
    OpenCall openDeny, open;
};

constexpr Calls kDataFork = {&PBHOpenDenySync, &OpenDataFork};
constexpr Calls kResourceFork = {&PBHOpenRFDenySync, &PBHOpenRFSync};

// Wanting to write without denying anything is shared writing; else what is wanted, of which the
// bits mean the same here.
SInt8 PermissionFor(SInt16 inDenyModes) {
    if (inDenyModes == fsWrPerm || inDenyModes == fsRdWrPerm) return fsRdWrShPerm;
    return SInt8(inDenyModes % 4);
}

struct Object {
    FSVolumeRefNum volume;
    SInt32 dirID;
    ConstStr255Param name;
};

HParamBlockRec OpenBlock(const Object& inObject) {
    HParamBlockRec block = {};
    block.accessParam.ioNamePtr = const_cast<StringPtr>(inObject.name);
    block.accessParam.ioVRefNum = inObject.volume;
    block.accessParam.ioDirID = inObject.dirID;
    return block;
}

OSErr OpenWithDenyModes(const Object& inObject, SInt16 inDenyModes, OpenCall inOpen,
                        SInt16* outRefNum) {
    HParamBlockRec block = OpenBlock(inObject);
    block.accessParam.ioDenyModes = inDenyModes;
    const OSErr err = inOpen(&block);
    *outRefNum = block.accessParam.ioRefNum;
    return err;
}

OSErr OpenWithPermission(const Object& inObject, SInt16 inDenyModes, OpenCall inOpen,
                         SInt16* outRefNum) {
    if (inDenyModes & fsWrAccessPerm) {
        const OSErr locked = CheckVolLock(inObject.name, inObject.volume);
        if (locked != noErr) return locked;
    }
    HParamBlockRec block = OpenBlock(inObject);
    block.ioParam.ioPermssn = PermissionFor(inDenyModes);
    const OSErr err = inOpen(&block);
    *outRefNum = block.ioParam.ioRefNum;
    return err;
}

OSErr Open(const Object& inObject, SInt16 inDenyModes, const Calls& inCalls, SInt16* outRefNum) {
    GetVolParmsInfoBuffer parms = {};
    SInt32 size = 32;
    const OSErr err = HGetVolParms(inObject.name, inObject.volume, &parms, &size);
    if (err != noErr && err != paramErr) return err;
    if (err == noErr && hasOpenDeny(&parms)) {
        return OpenWithDenyModes(inObject, inDenyModes, inCalls.openDeny, outRefNum);
    }
    return OpenWithPermission(inObject, inDenyModes, inCalls.open, outRefNum);
}

}  // namespace

OSErr HOpenAware(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                 SInt16 inDenyModes, SInt16* outRefNum) {
    return Open({inVRefNum, inDirID, inName}, inDenyModes, kDataFork, outRefNum);
}

OSErr FSpOpenAware(const FSSpec* inSpec, SInt16 inDenyModes, SInt16* outRefNum) {
    return HOpenAware(inSpec->vRefNum, inSpec->parID, inSpec->name, inDenyModes, outRefNum);
}

OSErr HOpenRFAware(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                   SInt16 inDenyModes, SInt16* outRefNum) {
    return Open({inVRefNum, inDirID, inName}, inDenyModes, kResourceFork, outRefNum);
}

OSErr FSpOpenRFAware(const FSSpec* inSpec, SInt16 inDenyModes, SInt16* outRefNum) {
    return HOpenRFAware(inSpec->vRefNum, inSpec->parID, inSpec->name, inDenyModes, outRefNum);
}
