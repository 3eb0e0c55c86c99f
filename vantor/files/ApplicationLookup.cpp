// The lookup of an application on one volume, in up to three places.
#include "vantor/files/DesktopDatabase.h"

#include <algorithm>
#include <cstring>

#include "vantor/files/CatalogSearch.h"
#include "vantor/files/DesktopFile.h"
#include "vantor/files/VolumeInfo.h"

namespace {

constexpr OSType kApplicationType = 'APPL';

// Where the answer goes.
struct Location {
    FSVolumeRefNum* vRefNum;
    SInt32* parID;
    StringPtr name;
};

// Cut to what fits into `inCapacity` bytes.
void CopyName(ConstStringPtr inName, StringPtr outName, std::size_t inCapacity) {
    const std::size_t length = std::min<std::size_t>(inName[0], inCapacity - 1);
    std::memmove(outName + 1, inName + 1, length);
    outName[0] = static_cast<UInt8>(length);
}

OSErr GetFileInfo(const Location& inPlace, FInfo* outInfo) {
    HParamBlockRec block = {};
    block.fileParam.ioNamePtr = inPlace.name;
    block.fileParam.ioVRefNum = *inPlace.vRefNum;
    block.fileParam.ioDirID = *inPlace.parID;
    const OSErr err = PBHGetFInfoSync(&block);
    *outInfo = block.fileParam.ioFlFndrInfo;
    return err;
}

bool IsApplicationOf(const FInfo& inInfo, OSType inCreator) {
    return inInfo.fdCreator == inCreator && inInfo.fdType == kApplicationType;
}

// Entries may be stale: each is good only if its file is still what it was.
OSErr AskDatabase(SInt16 inDTRefNum, FSVolumeRefNum inVRefNum, OSType inCreator,
                  const Location& outPlace) {
    constexpr SInt16 kMost = 0x7FFF;
    for (SInt32 index = 0; index <= kMost; ++index) {
        DTPBRec block = {};
        block.ioNamePtr = outPlace.name;
        block.ioDTRefNum = inDTRefNum;
        block.ioIndex = SInt16(index);
        block.ioFileCreator = inCreator;
        if (PBDTGetAPPLSync(&block) != noErr) break;
        *outPlace.vRefNum = inVRefNum;  // Kept: also for one that is turned down.
        *outPlace.parID = block.ioAPPLParID;
        FInfo info;
        if (GetFileInfo(outPlace, &info) == noErr && IsApplicationOf(info, inCreator)) return noErr;
    }
    return afpItemNotFound;
}

OSErr AskDesktopFile(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                     const Location& outPlace) {
    const OSErr err = GetAPPLFromDesktopFile(inVolName, inVRefNum, inCreator, outPlace.vRefNum,
                                             outPlace.parID, outPlace.name);
    FInfo info;
    // Kept: a file that cannot be looked at is as good as one that was found right.
    if (err != noErr || GetFileInfo(outPlace, &info) != noErr) return err;
    return IsApplicationOf(info, inCreator) ? OSErr{noErr} : OSErr{afpItemNotFound};
}

OSErr SearchCatalog(FSVolumeRefNum inVRefNum, OSType inCreator, const Location& outPlace) {
    FSSpec found;
    SInt32 count = 0;
    const OSErr err = CreatorTypeFileSearch(nullptr, inVRefNum, inCreator, kApplicationType, &found,
                                            1, &count, true);
    if (err != noErr && err != eofErr) return err;
    if (count == 0) return afpItemNotFound;
    *outPlace.vRefNum = found.vRefNum;
    *outPlace.parID = found.parID;
    CopyName(found.name, outPlace.name, sizeof found.name);
    return err;  // Kept: the end of the catalog comes with a good answer.
}

}  // namespace

OSErr DTXGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                 Boolean inSearchCatalog, FSVolumeRefNum* outVRefNum, SInt32* outParID,
                 StringPtr outName) {
    const Location place = {outVRefNum, outParID, outName};
    FSVolumeRefNum volume;
    OSErr err = DetermineVRefNum(inVolName, inVRefNum, &volume);
    if (err != noErr) return err;
    SInt16 database = 0;
    Boolean isNew = false;
    err = DTOpen(inVolName, inVRefNum, &database, &isNew);
    if (err == noErr)
        err = isNew ? OSErr{afpItemNotFound} : AskDatabase(database, volume, inCreator, place);
    if (err == paramErr) err = AskDesktopFile(inVolName, inVRefNum, inCreator, place);
    if (err == afpItemNotFound && inSearchCatalog) err = SearchCatalog(volume, inCreator, place);
    return err;
}

OSErr DTGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                FSVolumeRefNum* outVRefNum, SInt32* outParID, StringPtr outName) {
    return DTXGetAPPL(inVolName, inVRefNum, inCreator, true, outVRefNum, outParID, outName);
}

OSErr FSpDTXGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                    Boolean inSearchCatalog, FSSpec* outSpec) {
    Str255 name;  // a desktop file may hold names that no spec has room for
    CopyName(outSpec->name, name, sizeof outSpec->name);
    SInt32 parID = outSpec->parID;  // no SInt32* may point into it, where it is not aligned
    const OSErr err = DTXGetAPPL(inVolName, inVRefNum, inCreator, inSearchCatalog,
                                 &outSpec->vRefNum, &parID, name);
    outSpec->parID = parID;
    CopyName(name, outSpec->name, sizeof outSpec->name);
    return err;
}

OSErr FSpDTGetAPPL(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                   FSSpec* outSpec) {
    return FSpDTXGetAPPL(inVolName, inVRefNum, inCreator, true, outSpec);
}
