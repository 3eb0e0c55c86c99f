// The calls in front of the platform's.
#include "support/FileFaults.h"

#include "support/RealCall.h"

FileFaults gFileFaults;

OSErr PBHGetVInfoSync(HParmBlkPtr ioBlock) {
    const auto& hook = gFileFaults.getVolumeInfo;
    return hook ? hook(ioBlock) : REAL_CALL(PBHGetVInfoSync)(ioBlock);
}

OSErr PBHGetVolParmsSync(HParmBlkPtr ioBlock) {
    const auto& hook = gFileFaults.getVolumeParameters;
    return hook ? hook(ioBlock) : REAL_CALL(PBHGetVolParmsSync)(ioBlock);
}

OSErr PBHGetFInfoSync(HParmBlkPtr ioBlock) {
    const auto& hook = gFileFaults.getFileInfo;
    return hook ? hook(ioBlock) : REAL_CALL(PBHGetFInfoSync)(ioBlock);
}

OSErr PBGetCatInfoSync(CInfoPBPtr ioBlock) {
    const auto& hook = gFileFaults.getCatalogInfo;
    return hook ? hook(ioBlock) : REAL_CALL(PBGetCatInfoSync)(ioBlock);
}

OSErr PBDTOpenInform(DTPBPtr ioBlock) {
    const auto& hook = gFileFaults.openDatabaseInforming;
    return hook ? hook(ioBlock) : REAL_CALL(PBDTOpenInform)(ioBlock);
}

OSErr PBDTGetPath(DTPBPtr ioBlock) {
    const auto& hook = gFileFaults.openDatabase;
    return hook ? hook(ioBlock) : REAL_CALL(PBDTGetPath)(ioBlock);
}

OSErr PBDTGetAPPLSync(DTPBPtr ioBlock) {
    const auto& hook = gFileFaults.getApplication;
    return hook ? hook(ioBlock) : REAL_CALL(PBDTGetAPPLSync)(ioBlock);
}

OSErr PBCatSearchSync(CSParamPtr ioBlock) {
    const auto& hook = gFileFaults.searchCatalog;
    return hook ? hook(ioBlock) : REAL_CALL(PBCatSearchSync)(ioBlock);
}

OSErr PBReadSync(ParmBlkPtr ioBlock) {
    const auto& hook = gFileFaults.read;
    return hook ? hook(ioBlock) : REAL_CALL(PBReadSync)(ioBlock);
}

OSErr PBWriteSync(ParmBlkPtr ioBlock) {
    const auto& hook = gFileFaults.write;
    return hook ? hook(ioBlock) : REAL_CALL(PBWriteSync)(ioBlock);
}

OSErr FSWrite(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
    const auto& hook = gFileFaults.writeAtMark;
    return hook ? hook(inRefNum, ioCount, inBuffer)
                : REAL_CALL(FSWrite)(inRefNum, ioCount, inBuffer);
}

OSErr SetEOF(SInt16 inRefNum, SInt32 inLength) {
    const auto& hook = gFileFaults.setLength;
    return hook ? hook(inRefNum, inLength) : REAL_CALL(SetEOF)(inRefNum, inLength);
}

ResFileRefNum FSpOpenResFile(const FSSpec* inSpec, SignedByte inPermission) {
    const auto& hook = gFileFaults.openResources;
    return hook ? hook(inSpec) : REAL_CALL(FSpOpenResFile)(inSpec, inPermission);
}

OSErr FSClose(SInt16 inRefNum) {
    const auto& hook = gFileFaults.close;
    return hook ? hook(inRefNum) : REAL_CALL(FSClose)(inRefNum);
}

OSErr FlushVol(ConstStr63Param inName, FSVolumeRefNum inVRefNum) {
    const auto& hook = gFileFaults.flush;
    return hook ? hook(inVRefNum) : REAL_CALL(FlushVol)(inName, inVRefNum);
}

Ptr NewPtr(Size inSize) {
    const auto& hook = gFileFaults.newPointer;
    return hook ? hook(inSize) : REAL_CALL(NewPtr)(inSize);
}
