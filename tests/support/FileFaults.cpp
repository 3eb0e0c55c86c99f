// The calls in front of the platform's.
#include "support/FileFaults.h"

#include "support/RealCall.h"

FileFaults gFileFaults;

namespace {

// The hook's answer where the test has set one, else the platform's.
template <typename Hook, typename Call, typename... Arguments>
auto Answer(const Hook& inHook, Call inCall, Arguments... inArguments) {
    return inHook ? inHook(inArguments...) : inCall(inArguments...);
}

}  // namespace

OSErr PBHGetVInfoSync(HParmBlkPtr ioBlock) {
    return Answer(gFileFaults.getVolumeInfo, REAL_CALL(PBHGetVInfoSync), ioBlock);
}

OSErr PBHGetVolParmsSync(HParmBlkPtr ioBlock) {
    return Answer(gFileFaults.getVolumeParameters, REAL_CALL(PBHGetVolParmsSync), ioBlock);
}

OSErr PBHGetFInfoSync(HParmBlkPtr ioBlock) {
    return Answer(gFileFaults.getFileInfo, REAL_CALL(PBHGetFInfoSync), ioBlock);
}

OSErr PBGetCatInfoSync(CInfoPBPtr ioBlock) {
    return Answer(gFileFaults.getCatalogInfo, REAL_CALL(PBGetCatInfoSync), ioBlock);
}

OSErr PBDTOpenInform(DTPBPtr ioBlock) {
    return Answer(gFileFaults.openDatabaseInforming, REAL_CALL(PBDTOpenInform), ioBlock);
}

OSErr PBDTGetPath(DTPBPtr ioBlock) {
    return Answer(gFileFaults.openDatabase, REAL_CALL(PBDTGetPath), ioBlock);
}

OSErr PBDTGetAPPLSync(DTPBPtr ioBlock) {
    return Answer(gFileFaults.getApplication, REAL_CALL(PBDTGetAPPLSync), ioBlock);
}

OSErr PBCatSearchSync(CSParamPtr ioBlock) {
    return Answer(gFileFaults.searchCatalog, REAL_CALL(PBCatSearchSync), ioBlock);
}

OSErr PBReadSync(ParmBlkPtr ioBlock) {
    return Answer(gFileFaults.read, REAL_CALL(PBReadSync), ioBlock);
}

OSErr PBWriteSync(ParmBlkPtr ioBlock) {
    return Answer(gFileFaults.write, REAL_CALL(PBWriteSync), ioBlock);
}

OSErr FSWrite(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
    return Answer(gFileFaults.writeAtMark, REAL_CALL(FSWrite), inRefNum, ioCount, inBuffer);
}

OSErr SetEOF(SInt16 inRefNum, SInt32 inLength) {
    return Answer(gFileFaults.setLength, REAL_CALL(SetEOF), inRefNum, inLength);
}

ResFileRefNum FSpOpenResFile(const FSSpec* inSpec, SignedByte inPermission) {
    return Answer(gFileFaults.openResources, REAL_CALL(FSpOpenResFile), inSpec, inPermission);
}

OSErr FSClose(SInt16 inRefNum) {
    return Answer(gFileFaults.close, REAL_CALL(FSClose), inRefNum);
}

OSErr FlushVol(ConstStr63Param inName, FSVolumeRefNum inVRefNum) {
    return Answer(gFileFaults.flush, REAL_CALL(FlushVol), inName, inVRefNum);
}

Ptr NewPtr(Size inSize) {
    return Answer(gFileFaults.newPointer, REAL_CALL(NewPtr), inSize);
}
