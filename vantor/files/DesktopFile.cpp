// Finding the desktop file and reading its list of applications.
#include "vantor/files/DesktopFile.h"

#include "vantor/files/ApplicationList.h"
#include "vantor/files/VolumeInfo.h"

namespace {

OSErr AskIndexedFile(FSVolumeRefNum inVRefNum, SInt16 inIndex, StringPtr outName, FInfo* outInfo) {
    HParamBlockRec block = {};
    block.fileParam.ioNamePtr = outName;
    block.fileParam.ioVRefNum = inVRefNum;
    block.fileParam.ioFDirIndex = inIndex;
    block.fileParam.ioDirID = fsRtDirID;
    const OSErr err = PBHGetFInfoSync(&block);
    *outInfo = block.fileParam.ioFlFndrInfo;
    return err;
}

}  // namespace

OSErr GetDesktopFileName(FSVolumeRefNum inVRefNum, StringPtr outName) {
    constexpr SInt16 kMost = 0x7FFF;
    for (SInt16 index = 1;; ++index) {
        FInfo info;
        const OSErr err = AskIndexedFile(inVRefNum, index, outName, &info);
        if (err != noErr) return err;
        if (info.fdType == 'FNDR' && info.fdCreator == 'ERIK') return noErr;
        if (index == kMost) return fnfErr;
    }
}

StDesktopFile::StDesktopFile(FSVolumeRefNum inVRefNum, ConstStr255Param inName)
    : mPrevious(CurResFile()), mRefNum(-1) {
    SetResLoad(false);
    mRefNum = HOpenResFile(inVRefNum, fsRtDirID, inName, fsRdPerm);
    mError = mRefNum == -1 ? ResError() : OSErr{noErr};
    SetResLoad(true);
}

StDesktopFile::~StDesktopFile() {
    if (mRefNum == -1) return;
    UseResFile(mPrevious);
    CloseResFile(mRefNum);
}

OSErr GetAPPLFromDesktopFile(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                             FSVolumeRefNum* outVRefNum, SInt32* outParID, StringPtr outName) {
    FSVolumeRefNum volume;
    OSErr err = DetermineVRefNum(inVolName, inVRefNum, &volume);
    if (err != noErr) return err;
    Str255 name;
    err = GetDesktopFileName(volume, name);
    if (err != noErr) return err == fnfErr ? OSErr{afpItemNotFound} : err;
    const StDesktopFile file(volume, name);
    if (!file.IsOpen()) return afpItemNotFound;
    const Handle list = Get1Resource('APPL', 0);  // goes with the file
    if (list == nullptr || GetHandleSize(list) == 0) return afpItemNotFound;
    if (!ApplicationList(list).Find(inCreator, outParID, outName)) return afpItemNotFound;
    *outVRefNum = volume;
    return noErr;
}
