// Owns the calls that open, close and describe a desktop database.
#include <Carbon/Files.h>
#include <sys/stat.h>

#include "desktop_manager/open_databases.h"
#include "file_manager/catalog/catalog.h"
#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

OSErr Open(DTPBRec& ioBlock, bool inTellsNewness) {
    bool wasEmpty = false;
    const OSErr error =
        OpenDesktop(ioBlock.ioNamePtr, ioBlock.ioVRefNum, &ioBlock.ioDTRefNum, &wasEmpty);
    if (inTellsNewness) ioBlock.ioTagInfo = wasEmpty ? 0 : 1;
    return error;
}

OSErr Reset(DTPBRec& ioBlock) {
    return WithDesktop(ioBlock.ioDTRefNum,
                       [](Objects&, FSVolumeRefNum, DesktopDatabase& ioDatabase) {
                           return ioDatabase.Clear() ? OSErr(noErr) : OSErr(ioErr);
                       });
}

OSErr Flush(DTPBRec& ioBlock) {
    return WithDesktop(ioBlock.ioDTRefNum,
                       [](Objects&, FSVolumeRefNum, DesktopDatabase& ioDatabase) {
                           return ioDatabase.Flush() ? OSErr(noErr) : OSErr(ioErr);
                       });
}

OSErr FindPath(SInt16 inNumber, std::string* outPath) {
    return WithDesktop(inNumber,
                       [&](Objects& ioObjects, FSVolumeRefNum inVolume, DesktopDatabase&) {
                           const Volume* volume = ioObjects.AllFolders().FindVolume(inVolume);
                           if (!volume) return OSErr(nsvErr);
                           *outPath = DesktopPath(*volume);
                           return OSErr(noErr);
                       });
}

OSErr GetInfo(DTPBRec& ioBlock) {
    std::string path;
    if (const OSErr error = FindPath(ioBlock.ioDTRefNum, &path)) return error;
    FSSpec spec;
    if (const OSErr error = SpecFromPath(path, &spec)) return error;
    struct stat facts;
    if (stat(path.c_str(), &facts) != 0) return ioErr;
    ioBlock.ioVRefNum = spec.vRefNum;
    ioBlock.ioDirID = spec.parID;
    ioBlock.ioIndex = 1;
    ioBlock.ioDTLgLen = SInt32(facts.st_size);
    ioBlock.ioDTPyLen = SInt32(facts.st_blocks * 512);
    if (ioBlock.ioNamePtr) SetPascal(TextOfPascal(spec.name), kLongestSpecName, ioBlock.ioNamePtr);
    return noErr;
}

}  // namespace

}  // namespace carbon

OSErr PBDTGetPath(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock,
                                    [](DTPBRec& ioBlock) { return carbon::Open(ioBlock, false); });
}

OSErr PBDTOpenInform(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock,
                                    [](DTPBRec& ioBlock) { return carbon::Open(ioBlock, true); });
}

OSErr PBDTCloseDown(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(
        paramBlock, [](DTPBRec& ioBlock) { return carbon::CloseDesktop(ioBlock.ioDTRefNum); });
}

OSErr PBDTGetInfoSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::GetInfo);
}

OSErr PBDTFlushSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Flush);
}

OSErr PBDTResetSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, carbon::Reset);
}

OSErr PBDTDeleteSync(DTPBPtr paramBlock) {
    return carbon::PerformOnDesktop(paramBlock, [](DTPBRec& ioBlock) {
        return carbon::DeleteDesktop(ioBlock.ioNamePtr, ioBlock.ioVRefNum);
    });
}
