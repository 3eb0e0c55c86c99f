// Finding the desktop file and reading its list of applications.
#include "vantor/files/DesktopFile.h"

#include <cstring>

#include "vantor/files/VolumeInfo.h"
#include "vantor/foundation/BigEndian.h"

namespace {

// The list of applications: creator, directory and name of each, packed, at even offsets.
class ApplicationList {
  public:
    explicit ApplicationList(Handle inList) : mList(inList), mSize(GetHandleSize(inList)) {}

    // True when there is one; `outName` holds 256 bytes.
    bool Find(OSType inCreator, SInt32* outParID, StringPtr outName) {
        for (SInt32 at = 0; at + 9 <= mSize; at += EntryLength(at)) {
            if (NumberAt(at) == inCreator && IsWhole(at)) {
                *outParID = SInt32(NumberAt(at + 4));
                std::memcpy(outName, *mList + at + 8, std::size_t{NameLength(at)} + 1);
                return true;
            }
        }
        return false;
    }

  private:
    UInt8 NameLength(SInt32 inAt) const { return static_cast<UInt8>((*mList)[inAt + 8]); }
    SInt32 EntryLength(SInt32 inAt) const { return (9 + NameLength(inAt) + 1) & ~1; }
    bool IsWhole(SInt32 inAt) const { return inAt + 9 + NameLength(inAt) <= mSize; }
    UInt32 NumberAt(SInt32 inAt) const {
        UInt32 number;
        std::memcpy(&number, *mList + inAt, sizeof number);
        return NativeFromBigEndian(number);
    }

    Handle mList;
    SInt32 mSize;
};

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
