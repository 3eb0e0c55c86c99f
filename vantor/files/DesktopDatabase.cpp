// Opening the desktop database of a volume.
#include "vantor/files/DesktopDatabase.h"

#include "vantor/files/VolumeInfo.h"
#include "vantor/files/VolumeParameters.h"

OSErr DTOpen(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, SInt16* outDTRefNum,
             Boolean* outIsNew) {
    GetVolParmsInfoBuffer parameters = {};
    SInt32 size = 32;
    OSErr err = HGetVolParms(inVolName, inVRefNum, &parameters, &size);
    if (err != noErr) return err;
    if (!hasDesktopMgr(&parameters)) return paramErr;
    DTPBRec block = {};
    block.ioNamePtr = const_cast<StringPtr>(inVolName);
    block.ioVRefNum = inVRefNum;
    err = PBDTOpenInform(&block);
    *outIsNew = (block.ioTagInfo & 1) == 0;
    if (err == paramErr) {
        err = PBDTGetPath(&block);
        *outIsNew = false;
    }
    *outDTRefNum = block.ioDTRefNum;
    return err;
}
