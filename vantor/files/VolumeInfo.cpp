// Asking the File Manager about one volume.
#include "vantor/files/VolumeInfo.h"

#include <algorithm>

namespace {

// A name for a call that overwrites it: the caller's stays as it is.
class NameCopy {
  public:
    explicit NameCopy(ConstStr255Param inName) {
        if (inName != nullptr) std::copy_n(inName, inName[0] + 1, mName);
        mGiven = inName != nullptr;
    }
    StringPtr Name() { return mGiven ? mName : nullptr; }
    // By name and number, or by the number alone.
    SInt16 Index() const { return mGiven ? SInt16{-1} : SInt16{0}; }

  private:
    Str255 mName = {};
    bool mGiven;
};

template <typename Block>
OSErr AskNoName(ConstStr255Param inPath, FSVolumeRefNum inVRefNum, Block* ioBlock,
                OSErr (*inAsk)(Block*)) {
    NameCopy name(inPath);
    ioBlock->ioVRefNum = inVRefNum;
    ioBlock->ioNamePtr = name.Name();
    ioBlock->ioVolIndex = name.Index();
    const OSErr err = inAsk(ioBlock);
    ioBlock->ioNamePtr = nullptr;  // the copy is gone
    return err;
}

UInt32 In32Bits(UInt64 inBytes) {
    constexpr UInt32 kTooMuch = 0xFFFFFE00;
    return inBytes >> 32 != 0 ? kTooMuch : UInt32(inBytes);
}

}  // namespace

OSErr HGetVolParms(ConstStr255Param inName, FSVolumeRefNum inVRefNum,
                   GetVolParmsInfoBuffer* inParms, SInt32* ioSize) {
    HParamBlockRec block = {};
    block.ioParam.ioNamePtr = const_cast<StringPtr>(inName);
    block.ioParam.ioVRefNum = inVRefNum;
    block.ioParam.ioBuffer = reinterpret_cast<Ptr>(inParms);
    block.ioParam.ioReqCount = *ioSize;
    const OSErr err = PBHGetVolParmsSync(&block);
    if (err == noErr) *ioSize = block.ioParam.ioActCount;
    return err;
}

OSErr GetVolumeInfoNoName(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                          HParamBlockRec* ioBlock) {
    if (ioBlock == nullptr) return paramErr;
    return AskNoName<HVolumeParam>(
        inPath, inVRefNum, &ioBlock->volumeParam, [](HVolumeParam* ioBlock) {
            return PBHGetVInfoSync(reinterpret_cast<HParmBlkPtr>(ioBlock));
        });
}

OSErr XGetVolumeInfoNoName(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                           XVolumeParam* ioBlock) {
    if (ioBlock == nullptr) return paramErr;
    ioBlock->ioXVersion = 0;
    return AskNoName<XVolumeParam>(inPath, inVRefNum, ioBlock, &PBXGetVolInfoSync);
}

OSErr DetermineVRefNum(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                       FSVolumeRefNum* outVRefNum) {
    HParamBlockRec block = {};
    const OSErr err = GetVolumeInfoNoName(inPath, inVRefNum, &block);
    if (err == noErr) *outVRefNum = block.volumeParam.ioVRefNum;
    return err;
}

OSErr GetCatInfoNoName(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                       CInfoPBRec* ioBlock) {
    if (ioBlock == nullptr) return paramErr;
    Str255 itself = {};
    const bool named = inName != nullptr && inName[0] != 0;
    ioBlock->dirInfo.ioNamePtr = named ? const_cast<StringPtr>(inName) : itself;
    ioBlock->dirInfo.ioFDirIndex = named ? SInt16{0} : SInt16{-1};
    ioBlock->dirInfo.ioVRefNum = inVRefNum;
    ioBlock->dirInfo.ioDrDirID = inDirID;
    const OSErr err = PBGetCatInfoSync(ioBlock);
    ioBlock->dirInfo.ioNamePtr = nullptr;
    return err;
}

OSErr XGetVInfo(FSVolumeRefNum inVolume, StringPtr outName, FSVolumeRefNum* outVRefNum,
                UInt64* outFreeBytes, UInt64* outTotalBytes) {
    XVolumeParam block = {};
    block.ioVRefNum = inVolume;
    block.ioNamePtr = outName;
    const OSErr err = PBXGetVolInfoSync(&block);
    if (err != noErr) return err;
    *outVRefNum = block.ioVRefNum;
    *outFreeBytes = block.ioVFreeBytes;
    *outTotalBytes = block.ioVTotalBytes;
    return noErr;
}

OSErr HGetVInfo(FSVolumeRefNum inVolume, StringPtr outName, FSVolumeRefNum* outVRefNum,
                UInt32* outFreeBytes, UInt32* outTotalBytes) {
    UInt64 freeBytes, totalBytes;
    const OSErr err = XGetVInfo(inVolume, outName, outVRefNum, &freeBytes, &totalBytes);
    if (err != noErr) return err;
    *outFreeBytes = In32Bits(freeBytes);
    *outTotalBytes = In32Bits(totalBytes);
    return noErr;
}

OSErr CheckVolLock(ConstStr255Param inPath, FSVolumeRefNum inVRefNum) {
    HParamBlockRec block = {};
    const OSErr err = GetVolumeInfoNoName(inPath, inVRefNum, &block);
    if (err != noErr) return err;
    if (block.volumeParam.ioVAtrb & kioVAtrbHardwareLockedMask) return wPrErr;
    return block.volumeParam.ioVAtrb & kioVAtrbSoftwareLockedMask ? OSErr{vLckdErr} : OSErr{noErr};
}

OSErr GetVolFileSystemID(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                         SInt16* outFileSystemID) {
    HParamBlockRec block = {};
    const OSErr err = GetVolumeInfoNoName(inPath, inVRefNum, &block);
    if (err == noErr) *outFileSystemID = block.volumeParam.ioVFSID;
    return err;
}
